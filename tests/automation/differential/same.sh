#!/usr/bin/env bash
# Whether PRINTOUT is the one that is kept: same.sh PRINTOUT. With ZUL_DIFFERENTIAL_WRITE=1 it becomes that one.
set -euo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
if [ "${ZUL_DIFFERENTIAL_WRITE:-}" = 1 ]; then
    xz -9 -c "$1" >"$here/expected.txt.xz"
elif ! xz -dc "$here/expected.txt.xz" | cmp -s - "$1"; then
    xz -dc "$here/expected.txt.xz" | diff - "$1" | head -n 40
    echo "$1 is not what is expected of Windows"
    exit 1
fi
