#!/usr/bin/env bash
# Compares what PROGRAM answers here with the expected printout: run.sh PROGRAM. Both are an Italian's answers, on a day
# that stands still: a date without a year is one of this year.
set -euo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
printout=$(mktemp)
trap 'rm -f "$printout"' EXIT

# The program leaves to the system what the system may have freed, and the clock's library comes before the sanitizers'.
export ASAN_OPTIONS="${ASAN_OPTIONS:-}:detect_leaks=0:verify_asan_link_order=0"
LC_ALL=it_IT.UTF-8 TZ=UTC faketime '2024-06-15 12:00:00' "$1" "$here" >"$printout"
"$here/compare.py" "$here/expected.txt.xz" "$printout" "$here/differences.txt"
