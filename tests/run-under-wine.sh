#!/usr/bin/env bash
# Runs a Windows program under Wine with the locale of the run: Italian unless ZUL_TEST_LOCALE names another. The
# prefix, the display and the libraries are those that test-windows.sh has set up (WINEPREFIX, DISPLAY, WINEPATH).
export LC_ALL=${ZUL_TEST_LOCALE:-it_IT.UTF-8} WINEDEBUG=${WINEDEBUG:--all}
exec "${ZUL_WINE:-/usr/lib/wine/wine64}" "$@"
