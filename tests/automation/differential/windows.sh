#!/usr/bin/env bash
# Prints what PROGRAM, built for Windows, answers under Wine: windows.sh PROGRAM FOLDER. FOLDER holds its type library. An
# Italian's answers, on the day on which run.sh asks too.
set -euo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
. "$here/../../wine.sh"

folder=$(cd "$2" && pwd)
# A clock of its own means a Wine of its own; this one has no display either.
wine_prefix "${WINEPREFIX:-$2/wine}-still"
# The program that stops a clock does not stop that of 32 bits.
clock=(faketime '2024-06-15 12:00:00')
[ "${WINEARCH:-}" != win32 ] || clock=()
LC_ALL=it_IT.UTF-8 TZ=UTC NO_FAKE_STAT=1 "${clock[@]}" \
    "$ZUL_WINE" "$1" "Z:${folder//\//\\}" 2>/dev/null | tr -d '\r'
