#!/usr/bin/env bash
# on-display.sh with servers of all kinds in the place of the real one: a command gets a whole display or does not run.
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT

# play WHAT-THE-SERVER-DOES: what the command saw, or "failed".
play() {
    printf '#!/usr/bin/env bash\n%s\n' "$1" >"$folder/Xvfb"
    chmod +x "$folder/Xvfb"
    # shellcheck disable=SC2016 # DISPLAY is the command's
    PATH="$folder:$PATH" ZUL_DISPLAY_PATIENCE=2 "$here/on-display.sh" 640x480x24 sh -c 'echo "$DISPLAY"' 2>/dev/null ||
        echo failed
}

expect() {
    if [ "$2" != "$3" ]; then
        echo "$1: $2, not $3" >&2
        exit 1
    fi
}

expect "a server that says its number in pieces" \
    "$(play 'printf 1 >&3; sleep 0.5; echo 2 >&3; exec sleep 30')" ":12"
expect "a server whose number was taken at its first start" \
    "$(play 'f='"$folder"'/second; [ -e $f ] || { touch $f; exit 1; }; echo 7 >&3; exec sleep 30')" ":7"
expect "a server that never says a number" "$(play 'exec sleep 30')" "failed"
expect "a server that never starts" "$(play 'exit 1')" "failed"
echo "commands run on a display or not at all"
