#!/usr/bin/env bash
# Builds the component for Windows and tests it under Wine, without a display of this machine's: test-windows.sh
# [x86_64|i686] [CTEST-ARGUMENT…]. The unit tests that do not need Linux, hosts of other kinds, every scenario with the
# lines that are expected on Linux, automation's answers, the installer. Ends with CTest's summary. Where no Wine of 32
# bits is installed, i686 is built and not tested.
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
built=$PWD/build/windows-$arch
echo "== package windows-$arch"
packaging/windows/installer.sh "$arch"

. tests/wine.sh "$arch"
if [ ! -x "$ZUL_WINE" ]; then
    echo "No Wine for $arch is installed ($ZUL_WINE): built, not tested."
    exit 0
fi

# The FTP server of the scenarios is a program of this machine's.
g++ -std=c++20 -O1 -I . tests/scenario/FtpServe.cpp tests/ftp/ScriptedServer.cpp tests/ftp/SocketsPosix.cpp -o "$built/ftpserve" -pthread
export ZUL_FTPSERVE=$built/ftpserve

# A Windows of its own, of an Italian user whose dates are those of Windows' own setting.
wine_prefix "$built/wine"
trap wine_end EXIT

# Qt's libraries stand beside the component.
export WINEPATH="Z:${built//\//\\}\\bin"

if [ "$arch" = x86_64 ]; then
    echo "== automation's answers"
    tests/automation/differential/windows.sh "$built/tests/differential.exe" "$built/tests/automation/differential" \
        >"$built/differential.txt"
    tests/automation/differential/same.sh "$built/differential.txt"
fi

echo "== test windows-$arch"
tests/on-display.sh 1920x1080x24 ctest --preset "windows-$arch" -j "${ZUL_JOBS:-$(nproc)}" "$@"
