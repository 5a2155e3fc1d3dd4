#!/usr/bin/env bash
# on-display.sh WIDTHxHEIGHTxDEPTH COMMAND…: runs a command on a display of its own, which ends with it. The server itself
# looks for a free number and says it: two that begin at once never take the same.
set -euo pipefail
size=$1
shift
said=$(mktemp)
Xvfb -displayfd 3 -screen 0 "$size" -nolisten tcp 3>"$said" 2>/dev/null &
server=$!
trap 'kill $server 2>/dev/null; rm -f "$said"' EXIT
for _ in $(seq 600); do
    [ ! -s "$said" ] || break
    kill -0 $server 2>/dev/null || { echo "Xvfb does not start" >&2; exit 1; }
    sleep 0.05
done
DISPLAY=:$(cat "$said")
export DISPLAY
"$@"
