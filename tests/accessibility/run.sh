#!/bin/sh
# run.sh PYTHON ZULHOST: the main job by assistive tools, on a display and a session bus of its own. 77 where Xvfb, a
# message bus or the accessibility bus is missing.
set -e
python="$1" host="$2"
here="$(cd "$(dirname "$0")" && pwd)"
for tool in Xvfb dbus-run-session; do
    command -v "$tool" > /dev/null || { echo "no $tool"; exit 77; }
done
[ -x /usr/libexec/at-spi-bus-launcher ] || { echo "no accessibility bus"; exit 77; }
"$python" -c 'import gi; gi.require_version("Atspi", "2.0")' 2> /dev/null || { echo "no Atspi for $python"; exit 77; }

folder="$(mktemp -d)"
trap 'rm -rf "$folder"' EXIT
mkdir -m 700 "$folder/run"
export XDG_RUNTIME_DIR="$folder/run" XDG_CONFIG_HOME="$folder/config" XDG_DATA_HOME="$folder/data"
export PYTHONDONTWRITEBYTECODE=1
QT_QPA_PLATFORM=offscreen "$host" --database "$folder/demo.db" --create-demo 200
# Only a platform with a display has a bridge to the bus.
export QT_QPA_PLATFORM=xcb QT_LINUX_ACCESSIBILITY_ALWAYS_ON=1
"$here/../on-display.sh" 1280x960x24 dbus-run-session -- "$python" "$here/mainjob.py" "$host" "$folder/demo.db"
