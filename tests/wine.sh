# For scripts that run Windows programs: Debian's Wine for programs of 64 bits, or with the argument i686 of 32, and a
# prefix of its own.
if [ "${1:-}" = i686 ]; then
    export ZUL_WINE=${ZUL_WINE:-/usr/lib/wine/wine} WINEARCH=win32
else
    export ZUL_WINE=${ZUL_WINE:-/usr/lib/wine/wine64}
fi
export WINEDEBUG=${WINEDEBUG:--all} LC_ALL=${ZUL_TEST_LOCALE:-it_IT.UTF-8}
# No debugger that waits, no menus on this machine, none of the parts that would be fetched.
export WINEDLLOVERRIDES='mscoree=;mshtml=;winemenubuilder.exe=;winedbg.exe='

# wine_prefix FOLDER: makes the prefix where there is none, and uses it.
wine_prefix() {
    export WINEPREFIX=$1
    [ ! -e "$WINEPREFIX/set-up" ] || return 0
    mkdir -p "$WINEPREFIX"
    "$ZUL_WINE" wineboot -i >/dev/null 2>&1
    # Wine takes Italy's short date from another table than Windows.
    "$ZUL_WINE" reg add 'HKCU\Control Panel\International' /v sShortDate /d dd/MM/yyyy /f >/dev/null 2>&1
    # The display has no window manager: with one to wait for, each window takes two seconds to go.
    "$ZUL_WINE" reg add 'HKCU\Software\Wine\X11 Driver' /v Managed /d N /f >/dev/null 2>&1
    # Its desktop began without a display, and would stay without one for the programs that come next.
    wine_end
    touch "$WINEPREFIX/set-up"
}

# wine_end: ends what still runs in the prefix, Wine's services too, and waits for that.
wine_end() {
    local server
    server=$(dirname "$ZUL_WINE")/wineserver
    "$server" -k 2>/dev/null || true
    "$server" -w 2>/dev/null || true
}
