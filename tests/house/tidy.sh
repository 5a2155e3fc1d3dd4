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

echo "clang-tidy: up to ${#sources[@]} sources"
# A build folder without unity, for the command lines and the generated headers alone.
cmake --preset debug >/dev/null
ninja -C build/debug $(ninja -C build/debug -t targets all |
    sed -n 's/^\(zul_[a-z_]*_autogen\): phony$/\1/p; s/^\(.*\.h\): CUSTOM_COMMAND$/\1/p') >/dev/null
known=$(grep -o '"file": "[^"]*"' build/debug/compile_commands.json)
printf '%s\n' "${sources[@]}" | sort -u | while read -r file; do
    grep -qF "/$file\"" <<<"$known" && printf '%s\0' "$file"
done | xargs -0 -r -n 4 -P "$(nproc)" clang-tidy-14 -p build/debug --quiet 2> >(grep -v ' warnings\? generated\.$' >&2)
