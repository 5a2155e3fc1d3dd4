#!/usr/bin/env bash
# on-display.sh WIDTHxHEIGHTxDEPTH COMMAND…: runs a command on a display of its own, which ends with it. The server itself
# looks for a free number and says it: two that begin at once never take the same. One that dies before it has said
# it, as when another was a moment quicker, is started again; the command never runs without a display.
set -euo pipefail
size=$1
shift
patience=${ZUL_DISPLAY_PATIENCE:-120} # seconds; many tests at once may be slow to start one
said=$(mktemp)
server=
stop() {
    if [ -n "$server" ]; then
        kill "$server" 2>/dev/null || true
        wait "$server" 2>/dev/null || true # so that its number is free again
    fi
    rm -f "$said"
}
trap stop EXIT

start() {
    : >"$said"
    # Without -noreset the server begins anew when its last program ends, and refuses the next one meanwhile.
    Xvfb -displayfd 3 -screen 0 "$size" -nolisten tcp -noreset 3>"$said" 2>/dev/null &
    server=$!
}

start
restarts=10
end=$((SECONDS + patience))
# The number is whole when its line is.
until [ "$(wc -l <"$said")" -gt 0 ]; do
    if ! kill -0 "$server" 2>/dev/null; then
        [ "$restarts" -gt 0 ] || { echo "Xvfb does not start" >&2; exit 1; }
        restarts=$((restarts - 1))
        wait "$server" 2>/dev/null || true
        sleep "0.$((1 + RANDOM % 5))" # those that got into each other's way begin again apart
        start
    elif [ "$SECONDS" -ge "$end" ]; then
        echo "Xvfb has named no display in $patience seconds" >&2
        exit 1
    fi
    sleep 0.05
done
DISPLAY=:$(head -n 1 "$said")
export DISPLAY
"$@"
