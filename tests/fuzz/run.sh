#!/usr/bin/env bash
# Runs the fuzz targets of a build, each on a copy of its corpus, as many at a time as there are processors:
#
#     run.sh BUILD SECONDS [TARGET…]                    all or these, for so many seconds each
#     ZUL_FUZZ_RUNS=10000000 run.sh BUILD 0 [TARGET…]   for so many runs each; with both, until the first is reached
#
# ZUL_FUZZ_JOBS is how many run at a time; with a number in ZUL_FUZZ_SEED the same inputs are tried in the same order.
# ZUL_FUZZ_OPTIONS are libFuzzer's own, for a long run "-max_len=512 -entropic=0": a long input takes the time of many
# short ones, and a choice among thousands of inputs that is weighed anew at every run that of half the runs.
# What ends a target stands in the build folder, beside its log.
set -euo pipefail
build=$(cd "$1" && pwd)
seconds=$2
shift 2
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
if [ $# -eq 0 ]; then
    mapfile -t targets < <(cd "$here/corpus" && printf '%s\n' *)
else
    targets=("$@")
fi

# Small caches of freed memory: most targets make and free a few texts a run, and the caches take longer than they do.
# One mebibyte still holds what a run frees, and makes a third more runs than sixteen.
export ASAN_OPTIONS=${ASAN_OPTIONS:-quarantine_size_mb=1:malloc_context_size=8}
export LSAN_OPTIONS=${LSAN_OPTIONS:-suppressions=$here/../lsan.supp:print_suppressions=0}
# The compiler's checks for undefined behaviour only tell of it otherwise.
export UBSAN_OPTIONS=${UBSAN_OPTIONS:-halt_on_error=1:print_stacktrace=1}
export QT_QPA_PLATFORM=offscreen LC_ALL=it_IT.UTF-8
export here build seconds

run_target() {
    local name=$1 work=$build/corpus-$1
    rm -rf "$work"
    cp -r "$here/corpus/$name" "$work"
    # shellcheck disable=SC2086 # several options
    if ! "$build/bin/$name" -max_total_time="$seconds" -runs="${ZUL_FUZZ_RUNS:--1}" -seed="${ZUL_FUZZ_SEED:-0}" \
        -timeout=20 -rss_limit_mb=2048 -artifact_prefix="$build/$name-" \
        ${ZUL_FUZZ_OPTIONS:-} "$work" </dev/null >"$build/$name.log" 2>&1; then
        tail -n 60 "$build/$name.log" >&2
        echo "fuzz target $name failed" >&2
        return 255
    fi
    echo "$name: $(grep -o 'Done [0-9]* runs' "$build/$name.log" || true)"
}
export -f run_target
printf '%s\n' "${targets[@]}" | xargs -P "${ZUL_FUZZ_JOBS:-$(nproc)}" -I{} bash -c 'run_target {}'
