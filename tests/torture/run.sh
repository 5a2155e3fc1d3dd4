#!/usr/bin/env bash
# The attacks of docs/reliability.md, for so many minutes (60): run.sh [MINUTES [BUILD]]. BUILD is a build folder, as a
# rule that of the sanitizers. Ends with 1 when one of them found something.
set -uo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
minutes=${1:-60}
build=${2:-$here/../../build/asan}
failed=0
# Half of the time is for the operations, a quarter for the operator, the rest in equal parts.
rounds=$((minutes * 2 + 2))
attack() {
    echo "== $*"
    "$@" || failed=1
}
attack python3 "$here/fail_each.py" "$build" --minutes "$(python3 -c "print($minutes / 2)")"
attack python3 "$here/random_operator.py" "$build" 1000000000 --minutes "$(python3 -c "print($minutes / 4)")"
attack python3 "$here/kills.py" "$build" "$rounds" --operations "$((rounds / 4 + 1))"
attack python3 "$here/disk.py" "$build" "$rounds"
attack python3 "$here/contents.py" "$build" "$((rounds * 5))"
attack python3 "$here/surroundings.py" "$build"
attack python3 "$here/ageing.py" "$build" "$((minutes * 10 + 10))"
exit $failed
