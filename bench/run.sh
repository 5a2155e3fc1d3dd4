#!/usr/bin/env bash
# Builds the benchmarks and prints their table, ratios first: run.sh [TOPIC …] [CUSTOMERS …]. Topics are search, grid,
# rows, contents, prepare, server and window; without any all of them. Customers are 1000 100000 1000000 when none are named.
# Databases are made once in build/bench/data; every run works on a copy.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

packaging/install.sh build run bench
mkdir -p build
cmake --preset bench >build/configure-bench.log 2>&1 || { cat build/configure-bench.log >&2; exit 1; }
cmake --build --preset bench --target zulbench limit GridBench FirstWindow NoWindowHost ServerBench >build/build-bench.log 2>&1 || {
    tail -n 40 build/build-bench.log >&2
    exit 1
}
exec python3 bench/table.py build/bench "$@"
