#!/usr/bin/env bash
# Builds the libraries that the Windows build links, from Debian's source packages: dependencies.sh x86_64|i686.
# Its last line of output is the folder with all of them.
#
# Each library is a recipe in dependencies/. What a recipe made is kept under a hash of all it depends on, so a second
# run only looks, and a change of one recipe builds that library alone. The folder for CMake holds links to them all.
set -euo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
arch=${1:?x86_64 or i686}
cache=${ZUL_WINDOWS_CACHE:-$HOME/.cache/zul-windows}
jobs=${ZUL_JOBS:-$(nproc)}
toolchain=$here/../../cmake/mingw-$arch.cmake
libraries="qtbase qtsvg curl sqlite fmt spdlog googletest"

launcher=$(command -v ccache || true)
# The compiler's cache sees through the folder's name, and takes precompiled headers. It learns from the compiler which
# headers a source has read: to read them all once more beforehand costs a miss a tenth, and with Windows' a quarter.
export CCACHE_BASEDIR=$cache CCACHE_NOHASHDIR=1 CCACHE_DEPEND=1
export CCACHE_SLOPPINESS=pch_defines,time_macros,include_file_mtime,include_file_ctime

# cmake_build OPTION…: configures, builds and installs $work/source into $prefix.
cmake_build() {
    local launchers=()
    if [ -n "$launcher" ]; then
        launchers=(-DCMAKE_C_COMPILER_LAUNCHER="$launcher" -DCMAKE_CXX_COMPILER_LAUNCHER="$launcher")
    fi
    cmake -G Ninja -S "$work/source" -B "$work/build" -DCMAKE_BUILD_TYPE=Release -DCMAKE_INSTALL_PREFIX="$prefix" \
        -DCMAKE_TOOLCHAIN_FILE="$toolchain" -DZUL_WINDOWS_DEPENDENCIES="$work/needed" "${launchers[@]}" "$@"
    cmake --build "$work/build" -j "$jobs"
    cmake --install "$work/build"
}

# The hash of what a library depends on: its recipe, how recipes are built, the toolchain, the compiler, the libraries
# that it needs.
declare -A hashes
hash_of() {
    local needs="" stand_in=""
    . "$here/dependencies/$1.sh"
    local needed="" name
    for name in $needs; do needed+=${hashes[$name]}; done
    hashes[$1]=$({
        [ -z "$stand_in" ] || find "$here/$stand_in" -type f -print0 | sort -z | xargs -0 cat
        cat "$here/dependencies/$1.sh" "$toolchain" "$here/../../cmake/mingw.cmake"
        declare -f cmake_build unpack
        "$arch-w64-mingw32-g++-posix" --version
        echo "$needed"
    } | sha256sum | cut -c1-16)
}

# Apt offers source packages once they are asked for: the same places as for the others, in a file of our own.
offer_sources() {
    local list=/etc/apt/sources.list.d/zul-source-packages.sources codename
    [ "$(id -u)" = 0 ] || return 0
    codename=$(. /etc/os-release && echo "$VERSION_CODENAME")
    [ ! -e "$list" ] || return 0
    "$here/source_packages.py" "$codename" >"$list"
    apt-get update -qq
}

# unpack NAME: the original archive of a source package, into $work/source. Debian's own changes serve Debian. Where the
# archive does not offer it, the recipe's stand-in takes its place, if it has one.
unpack() {
    local archive
    mkdir -p "$cache/sources" "$work/source"
    archive() { compgen -G "$cache/sources/$1_*.orig.tar.[gx]z" | sort -V | tail -n 1; }
    if [ -z "$(archive "$1")" ]; then
        offer_sources
        (cd "$cache/sources" && apt-get source -qq --download-only "$1") || true
    fi
    if [ -n "$(archive "$1")" ]; then
        tar -xf "$(archive "$1")" -C "$work/source" --strip-components=1
    elif [ -n "$stand_in" ]; then
        # Into the log, and to whoever waits for the build: behind what stands there, should that be a file.
        echo "The source package $1 cannot be had; $stand_in stands in for it."
        echo "   The source package $1 cannot be had; $stand_in stands in for it." >&3
        cp -r "$here/$stand_in/." "$work/source/"
    else
        return 1
    fi
}

all=""
for library in $libraries; do
    hash_of "$library"
    all+=${hashes[$library]}
done
result=$cache/$arch-$(echo "$all" | sha256sum | cut -c1-16)
if [ -d "$result" ]; then
    echo "$result"
    exit 0
fi

for library in $libraries; do
    kept=$cache/parts/$arch-$library-${hashes[$library]}
    [ ! -d "$kept" ] || continue
    echo "== $library for $arch" >&2
    needs="" stand_in=""
    . "$here/dependencies/$library.sh"
    # A build that was broken off goes on where it was.
    work=$cache/building/$arch-$library-${hashes[$library]}
    mkdir -p "$work/needed" "$cache/logs"
    for name in $needs; do cp -alf "$cache/parts/$arch-$name-${hashes[$name]}/." "$work/needed/"; done
    prefix=$work/result
    log=$cache/logs/$arch-$library.log
    SECONDS=0
    set +e
    (
        set -e
        [ -e "$work/unpacked" ] || unpack "$source"
        touch "$work/unpacked"
        build
    ) 3>&2 >"$log" 2>&1
    status=$?
    set -e
    if [ $status != 0 ]; then
        tail -n 40 "$log" >&2
        echo "$library was not built; the whole log is $log" >&2
        exit 1
    fi
    mkdir -p "$cache/parts"
    mv "$prefix" "$kept"
    rm -rf "$work"
    echo "   $((SECONDS / 60)) min $((SECONDS % 60)) s" >&2
done

rm -rf "$result.new"
mkdir -p "$result.new"
for library in $libraries; do cp -al "$cache/parts/$arch-$library-${hashes[$library]}/." "$result.new/"; done
mv "$result.new" "$result"
echo "$result"
