#!/usr/bin/env bash
# The installer INSTALLER.EXE under Wine, in the prefix and on the display of test-windows.sh: installer.sh INSTALLER.EXE.
# Installed for one user and for all over an older version, used, installed once more over itself, taken away: the registry
# and the disk are as before but for what an operator's work has left.
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
. "$here/../wine-path.sh"
installer=$1
arch=${1%.exe}
arch=${arch##*-}
wine=${ZUL_WINE:-/usr/lib/wine/wine64}
export WINEDEBUG=${WINEDEBUG:--all}
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
clsid='{B7A0C731-6521-48C8-8DA9-B7465A7FF35B}'
uninstall='Software\Microsoft\Windows\CurrentVersion\Uninstall'
unset WINEPATH # an installation needs nothing but itself

fail() { echo "$1"; exit 1; }
query() { "$wine" reg query "$@" 2>/dev/null | tr -d '\r'; }
dump() {
    local key
    for key in 'HKCU\Software\Classes' 'HKLM\Software\Classes' "HKCU\\$uninstall" "HKLM\\$uninstall" 'HKCU\Software\TESK'; do
        query "$key" /s || true
    done
}

# An older version, of the same files and one that the newer has no more; quick to make.
dist=$(cd "$(dirname "$installer")" && pwd)
echo old >"$folder/gone.txt"
{
    cat "$dist/install.nsh"
    printf 'SetOutPath "$INSTDIR\\docs"\nFile "%s"\n' "$folder/gone.txt"
} >"$folder/install.nsh"
{
    echo 'Delete "$INSTDIR\docs\gone.txt"'
    cat "$dist/uninstall.nsh"
} >"$folder/uninstall.nsh"
makensis -V1 -INPUTCHARSET UTF8 '-XSetCompressor /FINAL zlib' -DVERSION=0.9.0 -DARCH="$arch" \
    -DSTAGE="$dist/$(basename "$installer" .exe)" -DOUTPUT="$folder/older.exe" \
    -DINSTALL="$folder/install.nsh" -DUNINSTALL="$folder/uninstall.nsh" "$here/../../packaging/windows/installer.nsi"

for mode in CurrentUser AllUsers; do
    home=$folder/$mode/"Città € 😀 & C"
    mkdir -p "$(dirname "$home")"
    hive=HKCU
    [ $mode = CurrentUser ] || hive=HKLM
    "$wine" reg delete 'HKCU\Software\TESK' /f >/dev/null 2>&1 || true
    "$wine" reg add 'HKCU\Software\TESK\ZUL\Options' /v PathCartellaSMSSender /d 'C:\Sender' /f >/dev/null
    dump >"$folder/before"

    for time in older first again; do
        program=$installer
        [ $time != older ] || program=$folder/older.exe
        # Its folder is the rest of the line, without quotes around it: one argument for each word.
        read -r -a place <<<"$(native "$home")"
        "$wine" "$program" /S /$mode "/D=${place[0]}" "${place[@]:1}" || fail "$mode, $time: the installer ended with $?"
        [ -e "$home/bin/Zul_MessageBuilder.dll" ] || fail "$mode, $time: no library"
        registered=$(query "$hive\\Software\\Classes\\CLSID\\$clsid\\InprocServer32" /ve)
        [[ $registered == *'Zul_MessageBuilder.dll'* ]] || fail "$mode, $time: not registered: $registered"
        entry=$(query "$hive\\$uninstall\\Zul_MessageBuilder-$arch")
        if [ $time = older ]; then
            [[ $entry == *DisplayVersion*0.9.0* && -e $home/docs/gone.txt ]] || fail "$mode: not the older version: $entry"
            echo kept >"$home/bin/Zul_Messagebuilder.log"
        else
            [[ $entry == *DisplayVersion* && $entry != *0.9.0* ]] || fail "$mode, $time: not the newer version: $entry"
            [ ! -e "$home/docs/gone.txt" ] || fail "$mode: a file of the older version stays"
            grep -q kept "$home/bin/Zul_Messagebuilder.log" || fail "$mode, $time: the log is gone"
        fi
    done
    for file in licences/LGPL-3 licences/qt.txt idl/Zul_MessageBuilder.idl include/Zul_MessageBuilder.h \
        bin/Zul_MessageBuilder.tlb bin/Zul_MessageBuilder.manifest bin/ZulSmsSender/ZULSms_Sender.exe docs/host.md bin/translations/qtbase_it.qm; do
        [ -e "$home/$file" ] || fail "$mode: no $file"
    done

    # Used as it stands: the host opens the component's window.
    printf '%s\n' 'call ShowOptions' 'print txtPathSMSSender' 'click cmdAnnulla' 'call DiscardOptionsForm' >"$folder/use.scenario"
    "$wine" "$home/bin/zulhost.exe" --database "$(native "$folder/$mode.db")" --create-demo 3
    (cd "$folder" && "$wine" "$home/bin/zulhost.exe" --database "$mode.db" --scenario use.scenario) \
        >"$folder/used" 2>&1 || fail "$mode: the host ended with $?: $(cat "$folder/used")"
    grep -q 'Sender' "$folder/used" || fail "$mode: the window does not show the setting: $(cat "$folder/used")"

    # While a program has the library loaded, nothing is done.
    mkfifo "$folder/$mode.lines"
    (cd "$folder" && exec "$wine" "$home/bin/zulhost.exe" --database "$mode.db" --scenario - <"$mode.lines") \
        >"$folder/holds" 2>&1 &
    holder=$!
    exec 9>"$folder/$mode.lines"
    printf '%s\n' 'call ShowOptions' 'print txtPathSMSSender' >&9
    for ((i = 0; i < 600; ++i)); do
        ! grep -q 'Sender' "$folder/holds" || break
        sleep 0.1
    done
    code=0
    "$wine" "$installer" /S /$mode "/D=${place[0]}" "${place[@]:1}" || code=$?
    [ $code = 2 ] || fail "$mode: over a library in use the installer ended with $code"
    [ -e "$home/bin/zulhost.exe" ] || fail "$mode: what was in use is gone"
    printf '%s\n' 'click cmdAnnulla' 'call DiscardOptionsForm' >&9
    exec 9>&-
    wait $holder || fail "$mode: the program that used it ended with $?: $(cat "$folder/holds")"

    "$wine" "$home/uninstall.exe" /S /$mode "_?=${place[0]}" "${place[@]:1}" || fail "$mode: the uninstaller ended with $?"
    rm "$home/uninstall.exe" # which cannot take itself away when it is waited for
    left=$(cd "$home" && find . -type f)
    [ "$left" = ./bin/Zul_Messagebuilder.log ] || fail "$mode: left behind: $left"
    dump >"$folder/after"
    diff "$folder/before" "$folder/after" || fail "$mode: the registry is not as before"
done
