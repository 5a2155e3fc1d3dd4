#!/usr/bin/env bash
# run.sh HOST LIBRARY: a host shows the component's main window on a display of its own; somebody closes it after a while,
# and the host says what its own loop and window did meanwhile. With ZUL_NO_WINDOW set there is no display.
set -euo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
if [ "${3:-}" != inside ] && [ -z "${ZUL_NO_WINDOW:-}" ]; then
    command -v Xvfb >/dev/null || { echo "no Xvfb"; exit 77; }
    exec "$here/../on-display.sh" 1400x900x24 "$0" "$1" "$2" inside
fi
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
printf '[{B7A0C731-6521-48C8-8DA9-B7465A7FF35B}]\nProgID=Zul_MessageBuilder.SmsCreator\nLibrary=%s\n' "$2" \
    >"$folder/zul.ini"
export ZUL_AUTOMATION_SYSTEM_REGISTRY=$folder HOME=$folder QT_QPA_PLATFORM=xcb XDG_RUNTIME_DIR=$folder
chmod 700 "$folder"
[ -n "${ZUL_NO_WINDOW:-}" ] || "$here/close_window.py" Zul_MessageBuilder 2 ${ZUL_PICTURE:+"$ZUL_PICTURE"} &
"$1" >"$folder/said" || { tail -n 5 "$folder/said" >&2; exit 1; }
tail -n 1 "$folder/said"
wait
