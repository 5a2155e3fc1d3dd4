#!/usr/bin/env bash
# packages.sh SOURCE BUILD: the Debian packages of BUILD, installed into a root of their own (this system with a layer
# over it that goes away afterwards), used there by an ordinary user, and removed. 77 where no such root can be made.
set -euo pipefail
source=$1
build=$2
fail() { echo "$*" >&2; exit 1; }

if [ "${3:-}" != inside ]; then
    rm -rf "$build/packages"
    (cd "$build" && cpack >"$build/cpack.log" 2>&1) || { cat "$build/cpack.log" >&2; exit 1; }
    ls "$build"/packages/*.deb
    if command -v lintian >/dev/null; then
        # Errors alone: what Debian asks of an upload (a bug that it closes, names after libraries) is not asked here.
        lintian --fail-on error --suppress-tags bogus-mail-host,bogus-mail-host-in-debian-changelog "$build"/packages/*.deb
    fi

    [ "$(id -u)" = 0 ] || { echo "not root: no root of their own"; exit 77; }
    # A mount namespace of its own: what is mounted there goes with it.
    unshare -m true 2>/dev/null || { echo "no mount namespaces here"; exit 77; }
    exec unshare -m "$0" "$source" "$build" inside
fi
layer=$(mktemp -d)
trap 'umount -R "$layer" 2>/dev/null; rmdir "$layer"' EXIT
mount -t tmpfs none "$layer"
mkdir "$layer/upper" "$layer/work" "$layer/root"
mount -t overlay overlay -o "lowerdir=/,upperdir=$layer/upper,workdir=$layer/work" "$layer/root" ||
    { echo "no overlay here"; exit 77; }
root=$layer/root
mount -t proc none "$root/proc"
mount --bind /dev "$root/dev"
mkdir -p "$root/packages" "$root/tmp"
mount -t tmpfs none "$root/tmp"
chmod 1777 "$root/tmp"
cp "$build"/packages/*.deb "$root/packages"
cp "$source/tests/packages/first.scenario" "$root/packages"
inside() { chroot "$root" env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin LC_ALL=C.UTF-8 DEBIAN_FRONTEND=noninteractive "$@"; }
# An ordinary user, whose home is empty.
user=4321
mkdir "$root/tmp/home"
chown $user:$user "$root/tmp/home"
as_user() {
    inside setpriv --reuid $user --regid $user --clear-groups env HOME=/tmp/home QT_QPA_PLATFORM=offscreen \
        XDG_RUNTIME_DIR=/tmp/home "$@"
}
files() { (cd "$layer/upper" && find . -path ./packages -prune -o -path ./tmp -prune -o \
    -path ./var/lib/dpkg -prune -o -path ./var/log -prune -o -path ./var/cache -prune -o ! -type d -print | sort); }

before=$(files)
inside sh -c 'dpkg -i /packages/*.deb' \
    >"$root/tmp/dpkg.log" 2>&1 || { cat "$root/tmp/dpkg.log" >&2; exit 1; }
[ -f "$root/etc/zul-automation/zul-messagebuilder.ini" ] || fail "not registered for all users"

echo "== the page, followed by an ordinary user"
inside cp -r /usr/share/doc/zul-messagebuilder-dev/examples/embed /tmp/embed
chown -R $user "$root/tmp/embed"
# A grep that says nothing ends at what it looks for, and breaks off who still writes.
for host in 'c++ -std=c++17 host.cpp' 'cc -std=c11 host.c'; do
    as_user sh -c "cd /tmp/embed && $host -o host \$(pkg-config --cflags --libs zul-automation) && ./host --quiet" |
        grep -x 'isOkPressed false' | cat >/dev/null || fail "$host"
done
as_user python3 /tmp/embed/host.py --quiet | grep -x 'isOkPressed false' | cat >/dev/null || fail "host.py"

echo "== zulhost"
as_user zulhost --scenario /packages/first.scenario >"$root/tmp/played" || { cat "$root/tmp/played" >&2; exit 1; }
grep -q '^return ShowForm' "$root/tmp/played" || { cat "$root/tmp/played" >&2; fail "the window was not shown"; }
[ -f "$root/tmp/home/.local/share/zulhost/demo.db" ] || fail "no demonstration database"
[ -d "$root/tmp/home/.local/state/zul-messagebuilder" ] || fail "the layout has no folder of the user's"
as_user find /tmp/home/.local/state/zul-messagebuilder -type f
[ -z "$(find "$root/usr/lib/zul-messagebuilder" -name '*.log' -o -name '*.ini')" ] || fail "written beside the library"

echo "== a user's own registration comes first"
mkdir -p "$root/tmp/home/.local/share/Zul"
printf '[{B7A0C731-6521-48C8-8DA9-B7465A7FF35B}]\nProgID=Zul_MessageBuilder.SmsCreator\nLibrary=/nowhere/lib.so\n' \
    >"$root/tmp/home/.local/share/Zul/automation-classes.ini"
as_user python3 /tmp/embed/host.py --quiet >/dev/null 2>&1 && fail "the user's entry was passed over"

echo "== removed"
inside dpkg --purge zulhost zul-messagebuilder-dev zul-messagebuilder >"$root/tmp/dpkg.log" 2>&1 ||
    { cat "$root/tmp/dpkg.log" >&2; exit 1; }
# The caches are the system's own, made anew at every change of an icon or a library.
caches='^./etc/ld.so.cache$|/icon-theme.cache$|/mimeinfo.cache$'
left=$(comm -13 <(echo "$before") <(files) | grep -vE "$caches" | while read -r file; do
    # What is gone leaves a mark in the layer.
    [ -e "$root/$file" ] && echo "$file"
done || true)
[ -z "$left" ] || fail "left behind: $left"
[ ! -e "$root/etc/zul-automation" ] || fail "the registration is left behind"
echo "installed, used, removed"
