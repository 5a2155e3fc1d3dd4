#!/usr/bin/env bash
# The components of both widths on one Windows, where wine32.sh has both Wines: both-widths.sh BUILD-OF-64 BUILD-OF-32. Each
# kind of host finds the library of its own kind, neither registration nor its end touches the other, the workstation's
# settings are the same for both, and a user's installations stand in folders of their own.
set -euo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
. "$here/../wine.sh"
. "$here/../wine-path.sh"
folder=$(mktemp -d)
trap 'wine_end; rm -rf "$folder"' EXIT
wine_prefix "$folder/wine"

declare -A built=([64]=$(cd "$1" && pwd) [32]=$(cd "$2" && pwd)) system=([64]=system32 [32]=syswow64)
fail() { echo "$1"; exit 1; }
# in_width 64|32 PROGRAM…: one of the system's programs, of that width.
in_width() {
    local width=$1 program=$2
    shift 2
    "$ZUL_WINE" "C:\\windows\\${system[$width]}\\$program.exe" "$@" | tr -d '\r'
}
registers() {
    local width=$1
    shift
    WINEPATH=$(native "${built[$width]}/bin") in_width "$width" regsvr32 /s "$@" \
        "$(native "${built[$width]}/bin/Zul_MessageBuilder.dll")" || fail "$width: regsvr32 $* failed"
}

cat >"$folder/host.vbs" <<'SCRIPT'
On Error Resume Next
Set creator = CreateObject("Zul_MessageBuilder.SmsCreator")
If Err.Number <> 0 Then
    WScript.Echo "none"
Else
    creator.idUtente = 7
    WScript.Echo creator.idUtente
End If
SCRIPT
# expect 64|32 ANSWER WHEN: what a host of that width says.
expect() {
    local said
    said=$(WINEPATH=$(native "${built[$1]}/bin") in_width "$1" cscript //nologo "$(native "$folder/host.vbs")")
    [ "$said" = "$2" ] || fail "$3: a host of $1 bits says \"$said\", not \"$2\""
}

# For all users: Wine has no classes of a user's for each width.
dump() {
    local width
    for width in 64 32; do
        in_width "$width" reg query 'HKLM\Software\Classes' /s
    done
}
for first in 64 32; do
    second=$((96 - first))
    expect $first none "before"
    expect $second none "before"
    # Script hosts have made themselves known when they first ran.
    [ -e "$folder/before" ] || dump >"$folder/before"
    registers $first
    expect $first 7 "alone"
    expect $second none "alone"
    registers $second
    expect $first 7 "both"
    expect $second 7 "both"
    registers $first /u
    expect $first none "the second alone"
    expect $second 7 "the second alone"
    registers $second /u
    expect $second none "after"
done
dump >"$folder/after"
diff "$folder/before" "$folder/after" || fail "the registry is not as it was"

# What one stores, the other reads.
plays() {
    local width=$1
    cat >"$folder/options.scenario"
    "$ZUL_WINE" "${built[$width]}/bin/zulhost.exe" --database "$(native "$folder/x.db")" \
        --scenario "$(native "$folder/options.scenario")" 2>/dev/null | tr -d '\r'
}
"$ZUL_WINE" "${built[64]}/bin/zulhost.exe" --database "$(native "$folder/x.db")" --create-demo 1 >/dev/null 2>&1
for width in 64 32; do
    other=$((96 - width))
    printf '%s\n' 'call ShowOptions' "type txtPathSMSSender \"Città $width\"" 'click cmdSalva' | plays $width >/dev/null
    printf '%s\n' 'call ShowOptions' 'print txtPathSMSSender' 'close' | plays $other >"$folder/read"
    grep -qF "Città $width" "$folder/read" || fail "$other bits read: $(cat "$folder/read")"
done
for width in 64 32; do
    "$ZUL_WINE" "${built[$width]}"/dist/*.exe /S /CurrentUser || fail "$width: the installer ended with $?"
done
installed=("$WINEPREFIX"/drive_c/users/*/AppData/Local/Programs/*/bin/Zul_MessageBuilder.dll)
[ ${#installed[@]} = 2 ] || fail "installed: ${installed[*]}"
echo "both widths, side by side"
