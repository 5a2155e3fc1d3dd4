#!/usr/bin/env bash
# Builds the component for Windows and tests it under Wine, without a display of this machine's: test-windows.sh
# [x86_64|i686] [CTEST-ARGUMENT…]. The unit tests that do not need Linux, hosts of other kinds, every scenario with the
# lines that are expected on Linux, automation's answers, the installer. Ends with CTest's summary. Where no Wine for
# programs of 32 bits is to be had (packaging/windows/wine32.sh), i686 is built and not tested.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")"

arch=x86_64
case ${1:-} in x86_64 | i686) arch=$1 && shift ;; esac
packaging/install.sh build run windows "windows-$arch" windows-test
locale -a | grep -qix 'it_IT.utf-\?8' || localedef -i it_IT -f UTF-8 it_IT.UTF-8 || true

echo "== build windows-$arch"
mkdir -p build
log=build/build-windows-$arch.log
packaging/windows/build.sh "$arch" >"$log" 2>&1 || { tail -n 60 "$log" >&2; exit 1; }
echo "== package windows-$arch"
packaging/windows/installer.sh "$arch"

run=()
if [ "$arch" = i686 ]; then
    run=(packaging/windows/wine32.sh)
    if ! "${run[@]}" true; then
        echo "windows-i686 is built, and not tested."
        exit 0
    fi
    other=build/windows-x86_64
    if [ -e $other/dist ]; then
        echo "== both widths on one Windows"
        "${run[@]}" tests/on-display.sh 1920x1080x24 tests/windows/both-widths.sh $other build/windows-i686
    fi
fi
exec "${run[@]}" tests/windows/under-wine.sh "$arch" "$@"
