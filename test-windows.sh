#!/usr/bin/env bash
# Builds the component for Windows (64 bits) and tests it under Wine, without a display of this machine's: the unit tests
# that do not need Linux, hosts of other kinds, every scenario with the lines that are expected on Linux, and automation's
# answers, of which a printout is kept for the tests on Linux. Arguments go to CTest. Ends with CTest's summary.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")"

packaging/install.sh build run windows windows-x86_64 windows-test
locale -a | grep -qix 'it_IT.utf-\?8' || localedef -i it_IT -f UTF-8 it_IT.UTF-8 || true

echo "== build windows-x86_64"
mkdir -p build
packaging/windows/build.sh x86_64 >build/build-windows-x86_64.log 2>&1 ||
    { tail -n 60 build/build-windows-x86_64.log >&2; exit 1; }
built=$PWD/build/windows-x86_64

# The FTP server of the scenarios is a program of this machine's.
g++ -std=c++20 -O1 -I . tests/scenario/FtpServe.cpp tests/ftp/ScriptedServer.cpp -o "$built/ftpserve" -pthread
export ZUL_FTPSERVE=$built/ftpserve

# A Windows of its own, of an Italian user whose dates are those of Windows' own setting.
. tests/wine.sh
wine_prefix "$built/wine"

# Qt's libraries stand beside the component.
export WINEPATH="Z:${built//\//\\}\\bin"

echo "== automation's answers"
tests/automation/differential/windows.sh "$built/tests/differential.exe" "$built/tests/automation/differential" \
    >"$built/differential.txt"
tests/automation/differential/same.sh "$built/differential.txt"

echo "== test windows-x86_64"
xvfb-run -a --server-args='-screen 0 1920x1080x24' ctest --preset windows-x86_64 "$@"
