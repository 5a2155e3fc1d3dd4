#!/usr/bin/env bash
# Whether PRINTOUT is the one that is kept: same.sh PRINTOUT [DIFFERENCES]. DIFFERENCES is a file that says what may differ
# (compare.py). Without it ZUL_DIFFERENTIAL_WRITE=1 makes the printout the one that is kept.
set -euo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
if [ -n "${2:-}" ]; then
    "$here/compare.py" "$here/expected.txt.xz" "$1" "$2"
elif [ "${ZUL_DIFFERENTIAL_WRITE:-}" = 1 ]; then
    xz -9 -c "$1" >"$here/expected.txt.xz"
elif ! xz -dc "$here/expected.txt.xz" | cmp -s - "$1"; then
    xz -dc "$here/expected.txt.xz" | diff - "$1" | head -n 40
    echo "$1 is not what is expected of Windows"
    exit 1
fi
