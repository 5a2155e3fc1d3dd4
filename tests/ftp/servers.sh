#!/bin/bash
# Brings the FTP servers that the integration tests run against into a folder, without installing them: two of
# them refuse to stand side by side on one machine.
#
#   servers.sh FOLDER
#
# Leaves FOLDER/vsftpd, FOLDER/pure-ftpd, FOLDER/pure-pw, FOLDER/python (with pyftpdlib) and FOLDER/lib (shared
# libraries that this machine lacks). Does nothing when they are there already.
set -eu

target=${1:?usage: servers.sh FOLDER}
mkdir -p "$target"
target=$(cd "$target" && pwd)

complete() {
  [ -x "$target/vsftpd" ] && [ -x "$target/pure-ftpd" ] && [ -x "$target/pure-pw" ] \
    && [ -d "$target/python/pyftpdlib" ] && [ -e "$target/complete" ]
}
complete && exit 0

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
mkdir -p "$work/root" "$target/lib"

fetch() {
  (cd "$work" && rm -f ./*.deb && apt-get -qq -o APT::Sandbox::User=root download "$@") || return 1
  for package in "$work"/*.deb; do
    dpkg -x "$package" "$work/root"
  done
}

servers=(vsftpd pure-ftpd pure-ftpd-common python3-pyftpdlib)
if ! fetch "${servers[@]}"; then
  # A fresh machine has no package lists yet.
  apt-get -qq update
  fetch "${servers[@]}"
fi

programs=("$work/root/usr/sbin/vsftpd" "$work/root/usr/sbin/pure-ftpd" "$work/root/usr/bin/pure-pw")
libraries() {
  local folders
  folders=$(find "$work/root" -name '*.so*' -printf '%h\n' | sort -u | paste -sd: -)
  LD_LIBRARY_PATH=$folders ldd "${programs[@]}" 2>/dev/null
}
if libraries | grep 'not found' | cat >/dev/null; then
  needed=$(apt-cache depends --recurse --no-recommends --no-suggests --no-conflicts --no-breaks --no-replaces \
    --no-enhances --no-pre-depends vsftpd pure-ftpd | grep -E '^lib(wrap|nsl|cap|pam0g|audit|sodium|ssl3|crypt|tirpc|event|mysql|mariadb|pq|ldap)' \
    | sort -u)
  # One after the other: one that cannot be had may be one that is not missing.
  for package in $needed; do
    libraries | grep 'not found' | cat >/dev/null || break
    fetch "$package" || true
  done
fi
if libraries | grep 'not found'; then
  echo "servers.sh: the libraries above could not be obtained" >&2
  exit 1
fi

# Only what the machine lacks: its own libraries fit its own loader best.
for library in $(ldd "${programs[@]}" 2>/dev/null | awk '/not found/ { print $1 }' | sort -u); do
  cp -L "$(find "$work/root" -name "$library" | head -n 1)" "$target/lib/"
done
# What those need in turn.
for _ in 1 2 3; do
  for library in $(LD_LIBRARY_PATH="$target/lib" ldd "${programs[@]}" 2>/dev/null | awk '/not found/ { print $1 }' | sort -u); do
    cp -L "$(find "$work/root" -name "$library" | head -n 1)" "$target/lib/"
  done
done
cp "${programs[@]}" "$target/"
rm -rf "$target/python"
mkdir "$target/python"
cp -r "$work/root/usr/lib/python3/dist-packages/pyftpdlib" "$target/python/"
touch "$target/complete"
