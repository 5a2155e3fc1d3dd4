#!/usr/bin/env bash
# What the files of FOLDER load: imports.sh FOLDER ARCH. Each is the system's or stands in the folder under a name of our
# own, so that a host's Qt or C++ library of another version is never taken for it; the library exports its five
# entry points and nothing else.
set -euo pipefail
folder=$1 arch=$2
dump() { "$arch-w64-mingw32-objdump" -p "$1"; }
# Windows 10 has them all, which Qt 6 wants too.
system=" advapi32.dll bcrypt.dll comctl32.dll comdlg32.dll crypt32.dll dwmapi.dll gdi32.dll imm32.dll kernel32.dll mpr.dll
 msvcrt.dll netapi32.dll odbc32.dll ole32.dll oleaut32.dll secur32.dll setupapi.dll shell32.dll shlwapi.dll user32.dll
 userenv.dll uxtheme.dll version.dll winmm.dll winspool.drv wldap32.dll ws2_32.dll wtsapi32.dll d3d9.dll d3d11.dll dxgi.dll
 dwrite.dll authz.dll shcore.dll api-ms-win-core-synch-l1-2-0.dll api-ms-win-core-winrt-l1-1-0.dll
 api-ms-win-core-winrt-string-l1-1-0.dll "
failed=0
while IFS= read -r file; do
    while read -r name; do
        lower=${name,,}
        [[ $system != *[[:space:]]"$lower"[[:space:]]* ]] || continue
        if [[ $name != *Zul.dll || (! -e $(dirname "$file")/$name && ! -e $folder/$name) ]]; then
            echo "$file loads $name"
            failed=1
        fi
    done < <(dump "$file" | sed -n 's/^\s*DLL Name: //p')
done < <(find "$folder" -iname '*.dll' -o -name '*.exe')

exports=$(dump "$folder/Zul_MessageBuilder.dll" | sed -n '/Ordinal\/Name Pointer/,/^$/s/^\s*\[ *[0-9]*\] //p' | sort | tr '\n' ' ')
wanted="DllCanUnloadNow DllGetClassObject DllInstall DllRegisterServer DllUnregisterServer "
[ "$exports" = "$wanted" ] || { echo "the library exports: $exports"; failed=1; }
exit $failed
