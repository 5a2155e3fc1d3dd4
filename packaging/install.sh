#!/usr/bin/env bash
# Installs the Debian packages that a task needs: install.sh build run [test] [bench].
# As root it installs what is missing; otherwise it names what is missing and ends with 1.
set -euo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)

wanted=()
while read -r kind name; do
    case " $* " in *" $kind "*) wanted+=("$name") ;; esac
done < <(grep -v '^#' "$here/packages.txt")

missing=()
for name in "${wanted[@]}"; do
    if [ "$(dpkg-query -W -f='${db:Status-Status}' "$name" 2>/dev/null || true)" != installed ]; then
        missing+=("$name")
    fi
done
[ ${#missing[@]} -eq 0 ] && exit 0

if [ "$(id -u)" != 0 ]; then
    echo "These Debian packages are missing: ${missing[*]}" >&2
    echo "Install them as root: apt-get install ${missing[*]}" >&2
    exit 1
fi
export DEBIAN_FRONTEND=noninteractive
echo "Installing: ${missing[*]}"
apt-get update -qq
apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
