#!/usr/bin/env bash
# Runs a command where Debian's Wine for programs of 32 bits is to be had: wine32.sh COMMAND…. Ends with 127, and says why,
# where it is not.
#
# Where wine32 is installed, the command just runs. Elsewhere, as root, Debian's i386 packages are unpacked once into a
# folder of the cache (~/.cache/zul-windows, or ZUL_WINDOWS_CACHE), and the command sees them beside this machine's own
# files in /usr, it and what it starts alone. Nothing is installed: the machine would have to take the same versions of all
# its libraries for i386 too, which the archive need not have.
set -euo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
cache=${ZUL_WINDOWS_CACHE:-$HOME/.cache/zul-windows}
packages=wine32

none() {
    echo "There is no Wine for programs of 32 bits: $1" >&2
    exit 127
}

[ ! -x /usr/lib/wine/wine ] || exec "$@"
[ "$(id -u)" = 0 ] || none "wine32:i386 is not installed, and only root can unpack it for the test alone."
[ "$(readlink /lib)" = usr/lib ] || none "/lib is no link to /usr/lib here."

root=$cache/wine32-$(sha256sum "$here/wine32.sh" | cut -c1-16)
if [ ! -d "$root" ]; then
    # An apt of its own, which knows of nothing installed and of i386 alone.
    apt=$cache/building/wine32
    rm -rf "$apt"
    mkdir -p "$apt"/{state/lists/partial,cache/archives/partial,root/usr/lib}
    : >"$apt/status"
    "$here/source_packages.py" "$(. /etc/os-release && echo "$VERSION_CODENAME")" deb >"$apt/list.sources"
    options=(-qq -o APT::Architecture=i386 -o APT::Architectures=i386 -o APT::Sandbox::User=root
        -o Dir::State="$apt/state" -o Dir::State::status="$apt/status" -o Dir::Cache="$apt/cache"
        -o Dir::Etc::sourcelist="$apt/list.sources" -o Dir::Etc::sourceparts=- -o Acquire::Languages=none)
    # Of several archives one may not answer: what the others offer is enough.
    apt-get "${options[@]}" update >"$apt/log" 2>&1 || true
    apt-get "${options[@]}" install -y --download-only --no-install-recommends "$packages" >>"$apt/log" 2>&1 ||
        none "$(tail -n 5 "$apt/log")"
    # Packages name /lib for what stands in /usr/lib.
    ln -s usr/lib "$apt/root/lib"
    for package in "$apt"/cache/archives/*.deb; do
        dpkg-deb --fsys-tarfile "$package" | tar -x -C "$apt/root" --keep-directory-symlink
    done
    # What the package does when it is installed: Wine takes a library for its own that says so behind the first bytes.
    zlib=$apt/root/usr/i686-w64-mingw32/lib/zlib1.dll
    { head -c 64 "$zlib" && printf 'Wine builtin DLL' && head -c 16 /dev/zero && tail -c +97 "$zlib"; } \
        >"$apt/root/usr/lib/i386-linux-gnu/wine/i386-windows/zlib1.dll"
    [ -x "$apt/root/usr/lib/wine/wine" ] || none "the packages hold no /usr/lib/wine/wine."
    # The rest is this machine's: programs, documents, what the libraries read.
    mkdir -p "$apt/kept/usr"/{lib,share}
    mv "$apt"/root/usr/lib/{i386-linux-gnu,ld-linux.so.2,wine} "$apt/kept/usr/lib/"
    mv "$apt/root/usr/share/wine" "$apt/kept/usr/share/"
    mv "$apt/kept" "$root"
    rm -rf "$apt"
fi

# Of two loaders, Debian's i386 one and that of a compiler for both widths, the first finds the libraries.
export ZUL_WINE_ROOT=$root
exec unshare --mount bash -c '
    mount -t overlay -o "ro,lowerdir=$ZUL_WINE_ROOT/usr:/usr" zul-wine32 /usr || exit 127
    exec "$@"' wine32 "$@"
