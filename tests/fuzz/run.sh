#!/usr/bin/env bash
# Runs every fuzz target of a build for a few seconds each, on a copy of its corpus: run.sh BUILD SECONDS.
set -euo pipefail
build=$1
seconds=$2
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
for corpus in "$here"/corpus/*/; do
    name=$(basename "$corpus")
    work=$build/corpus-$name
    rm -rf "$work"
    cp -r "$corpus" "$work"
    if ! "$build/bin/$name" -max_total_time="$seconds" -timeout=10 -rss_limit_mb=2048 -artifact_prefix="$build/" \
        "$work" >"$build/$name.log" 2>&1; then
        tail -n 40 "$build/$name.log" >&2
        echo "fuzz target $name failed" >&2
        exit 1
    fi
    echo "$name: $(grep -o 'Done [0-9]* runs' "$build/$name.log" || true)"
done
