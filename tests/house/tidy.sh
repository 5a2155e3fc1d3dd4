#!/usr/bin/env bash
# clang-tidy by .clang-tidy, as errors: tidy.sh [--all] looks at the sources that changed since the commit named in
# tests/house/tidy-clean-at, where the whole tree was clean, or at all of them. A header counts as a change of every
# source that stands beside it under the same name.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/../.."

clean_at=$(cat tests/house/tidy-clean-at)
if [ "${1:-}" = --all ] || ! git cat-file -e "$clean_at^{commit}" 2>/dev/null; then
    mapfile -t changed < <(git ls-files)
else
    mapfile -t changed < <(git diff --name-only --diff-filter=d "$clean_at")
fi

sources=()
for file in "${changed[@]}"; do
    case $file in
        docs/* | tests/fuzz/* | bench/*) ;;
        *.cpp) sources+=("$file") ;;
        *.h) [ -f "${file%.h}.cpp" ] && sources+=("${file%.h}.cpp") ;;
    esac
done
[ ${#sources[@]} -eq 0 ] && { echo "No source changed since the tree was clean."; exit 0; }

# Sources of a target are looked at together, as they are compiled, since most of the time goes into the headers that
# they share. A build folder of its own, for the command lines and the generated headers alone.
build=build/tidy
cmake -G Ninja -B "$build" -DCMAKE_BUILD_TYPE=Debug -DZUL_UNITY=ON >/dev/null
ninja -C "$build" $(ninja -C "$build" -t targets all |
    sed -n 's/^\([a-z_]*_autogen\): phony$/\1/p; s/^\(.*\.h\): CUSTOM_COMMAND$/\1/p') >/dev/null
printf '%s\n' "${sources[@]}" | sort -u | tests/house/tidy_units.py "$build" >"$build/units"
echo "clang-tidy: ${#sources[@]} sources in $(wc -l <"$build/units") units"

# The sources are included by their unit: what may be told of headers may be told of them too.
rooms=$(sed -n "s/^HeaderFilterRegex: '\(.*\)\\\\.h\\$'$/\1/p" .clang-tidy)
[ -n "$rooms" ]
off=-bugprone-suspicious-include
# A test hands objects to Qt's parents and timers, which the analysis does not follow; the leak checker of the asan
# preset sees every leak that is real. It has hosts that throw where nobody may, and puts texts together as they read best.
off_in_tests=$off,-clang-analyzer-cplusplus.NewDeleteLeaks,-bugprone-exception-escape
off_in_tests+=,-performance-inefficient-string-concatenation
tidy() {
    xargs -r -n 1 -P "$(nproc)" clang-tidy-14 -p "$build" --quiet --extra-arg=-Wno-shadow \
        --extra-arg=-Wno-unknown-warning-option --header-filter="$rooms\\.(h|cpp)\$" --checks="$1" \
        2> >(grep -v ' warnings\? generated\.$' >&2)
}
clean=true
{ grep -v /tests/ "$build/units" || true; } | tidy "$off" || clean=false
{ grep /tests/ "$build/units" || true; } | tidy "$off_in_tests" || clean=false
$clean
