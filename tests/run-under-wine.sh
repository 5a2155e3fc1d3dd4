#!/usr/bin/env bash
# Runs a Windows program under Wine with the locale of the run: Italian unless ZUL_TEST_LOCALE names another. The
# prefix, the display and the libraries are those that test-windows.sh has set up (WINEPREFIX, DISPLAY, WINEPATH).
export LC_ALL=${ZUL_TEST_LOCALE:-it_IT.UTF-8} WINEDEBUG=${WINEDEBUG:--all}
# Wine's services, which the first program of all starts, keep its output open for as long as any other runs: whoever
# reads it through a pipe would wait for them. What a program that hangs has said so far stands in the file.
output=$1.out
"${ZUL_WINE:-/usr/lib/wine/wine64}" "$@" >"$output" 2>&1
code=$?
cat "$output"
exit $code
