#!/usr/bin/env bash
# Builds the release preset and opens the main window through the reference host; further arguments go to
# zulhost. Without a display it plays the tour instead and says where the pictures are.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")"

packaging/install.sh build run
mkdir -p build
cmake --preset release >build/configure.log 2>&1 || { cat build/configure.log >&2; exit 1; }
cmake --build --preset release --target zulhost Zul_MessageBuilder zul_sender

if [ $# -gt 0 ]; then
    exec build/release/bin/zulhost "$@"
fi
if [ -n "${DISPLAY:-}" ] || [ -n "${WAYLAND_DISPLAY:-}" ]; then
    exec build/release/bin/zulhost
fi

# The tour plays on a database of its own, in the folder where its pictures go.
tour=build/tour
rm -rf "$tour"
mkdir -p "$tour"
host=$PWD/build/release/bin/zulhost
script=$PWD/docs/tour.scenario
"$host" --database "$tour/tour.db" --create-demo 1000
(cd "$tour" && LC_ALL=${LC_ALL:-it_IT.UTF-8} "$host" --database tour.db --scenario "$script")
echo "No display: the tour was played instead. Its pictures are in $PWD/$tour"
