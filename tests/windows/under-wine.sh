#!/usr/bin/env bash
# Tests what is built for Windows, under Wine on a display of its own: under-wine.sh x86_64|i686 [CTEST-ARGUMENT…]. For
# i686 it runs where Wine for programs of 32 bits is (packaging/windows/wine32.sh).
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/../.."
arch=$1
shift
built=$PWD/build/windows-$arch

. tests/wine.sh "$arch"
# The FTP server of the scenarios is a program of this machine's.
g++ -std=c++20 -O1 -I . tests/scenario/FtpServe.cpp tests/ftp/{ScriptedServer,SocketsPosix}.cpp -o "$built/ftpserve" -pthread
export ZUL_FTPSERVE=$built/ftpserve

# A Windows of its own, of an Italian user whose dates are those of Windows' own setting.
wine_prefix "$built/wine"
trap wine_end EXIT

# Qt's libraries stand beside the component.
export WINEPATH="Z:${built//\//\\}\\bin"

echo "== automation's answers"
tests/automation/differential/windows.sh "$built/tests/differential.exe" "$built/tests/automation/differential" \
    >"$built/differential.txt"
differences=()
[ "$arch" = x86_64 ] || differences=("tests/automation/differential/differences-$arch.txt")
tests/automation/differential/same.sh "$built/differential.txt" "${differences[@]}"

wine_end # the next programs are on a display
echo "== test windows-$arch"
tests/on-display.sh 1920x1080x24 ctest --preset "windows-$arch" -j "${ZUL_JOBS:-$(nproc)}" "$@"
