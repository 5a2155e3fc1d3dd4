#!/usr/bin/env bash
# Installs what the tests need, builds everything, and runs every test: the release build under the Italian
# and once under the US locale, the fuzz targets for a short while, and the whole suite under the sanitizers.
# clang-tidy looks at what changed since the whole tree was clean, with --tidy-all at everything.
# Ends with CTest's summary.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")"

tidy=(tests/house/tidy.sh)
case ${1:-} in
    "") ;;
    --tidy-all) tidy+=(--all) ;;
    *) echo "usage: $0 [--tidy-all]" >&2 && exit 2 ;;
esac

packaging/install.sh build run test
mkdir -p build
jobs=$(nproc)

# The C library's side of the two locales; Qt has its own.
for locale in it_IT en_US; do
    locale -a | grep -qix "$locale.utf-\?8" || localedef -i "$locale" -f UTF-8 "$locale.UTF-8" || true
done

tests/ftp/servers.sh build/ftp-servers
export ZUL_FTP_SERVERS_DIR=$PWD/build/ftp-servers

build() {
    echo "== build $1"
    cmake --preset "$1" >"build/configure-$1.log" 2>&1 || { cat "build/configure-$1.log" >&2; exit 1; }
    cmake --build --preset "$1" -j "$jobs" >"build/build-$1.log" 2>&1 || { tail -n 60 "build/build-$1.log" >&2; exit 1; }
}

build release
build fuzz
build asan

echo "== clang-tidy"
"${tidy[@]}"

echo "== fuzz targets"
# The same inputs each time, so that who changed something is told of that and not of luck; longer runs try others.
ZUL_FUZZ_SEED=1 ZUL_FUZZ_RUNS=20000 tests/fuzz/run.sh build/fuzz 8

# A run that fails shows its failures and ends here.
suite() {
    echo "== test $1 under $2"
    ZUL_TEST_LOCALE=$2 ctest --preset "$1" -j "$jobs"
}

suite release en_US.UTF-8
suite release it_IT.UTF-8
suite asan it_IT.UTF-8
