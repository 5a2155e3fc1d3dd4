#!/usr/bin/env bash
# Makes what is handed out for Windows: installer.sh [x86_64|i686], after build.sh. An installer and a zip for copying,
# both with the library and Qt's parts, licences, type libraries, headers, contracts, documents, the reference host and
# the stand-in sender. They stand in build/windows-ARCH/dist/.
set -euo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
cd "$here/../.."
arch=${1:-x86_64}

packaging/install.sh windows-installer
built=build/windows-$arch
version=$(sed -n 's/^project(.* VERSION \([0-9.]*\).*/\1/p' CMakeLists.txt)
dist=$built/dist
name=Zul_MessageBuilder-$version-$arch
stage=$dist/$name
rm -rf "$dist"
mkdir -p "$stage"/{bin/ZulSmsSender,idl,include,docs,licences}

cp "$built"/bin/{Zul_MessageBuilder.dll,Zul_MessageBuilder.manifest,zulhost.exe} "$built"/bin/*.tlb "$stage/bin/"
cp "$built/bin/ZulSmsSender/ZULSms_Sender.exe" "$stage/bin/ZulSmsSender/"
for folder in bin bin/ZulSmsSender; do
    cp "$built"/bin/Qt6{Core,Gui,Widgets}Zul.dll "$stage/$folder/"
    if compgen -G "$built/bin/Qt6Svg*.dll" >/dev/null; then cp "$built"/bin/Qt6Svg*.dll "$stage/$folder/"; fi
    for plugins in platforms imageformats iconengines; do cp -r "$built/bin/$plugins" "$stage/$folder/"; done
    # Screens for tests alone.
    rm -f "$stage/$folder"/platforms/{qoffscreen,qminimal}*.dll
done
cp -r "$built/bin/translations" "$stage/bin/"
find "$stage/bin" -name '*.dll' -o -name '*.exe' | xargs "$arch-w64-mingw32-strip" --strip-unneeded

cp idl/*.idl "$stage/idl/"
cp "$built"/idl/Zul_*.h "$stage/include/"
cp docs/host.md docs/windows.md docs/scenarios.md CHANGELOG.md "$stage/docs/"
cp docs/operatore.md "$stage/docs/"
cp -r docs/examples "$stage/docs/"

# What the parts of others want to be said; Debian keeps it with each package.
sed "s/@VERSION@/$version/" "$here/NOTICE.txt" >"$stage/licences/NOTICE.txt"
cp /usr/share/common-licenses/{LGPL-3,GPL-3} "$stage/licences/"
licence() { cp "/usr/share/doc/$2/copyright" "$stage/licences/$1.txt"; }
licence qt libqt6core6
licence qt-translations qt6-translations-l10n
licence curl libcurl4-openssl-dev
licence sqlite libsqlite3-dev
licence fmt libfmt-dev
licence spdlog libspdlog-dev
licence gcc-runtime gcc-mingw-w64-base
licence mingw-w64-runtime "mingw-w64-${arch/_/-}-dev"

# The lists of files for the installer, and for taking away what it put there.
mapfile -t folders < <(cd "$stage" && find . -type d | sort)
{
    for folder in "${folders[@]}"; do
        compgen -G "$stage/$folder/*" >/dev/null || continue
        windows=${folder#.}
        echo "SetOutPath \"\$INSTDIR${windows//\//\\}\""
        find "$stage/$folder" -maxdepth 1 -type f | sort | sed "s|.*|File \"$PWD/&\"|"
    done
} >"$dist/install.nsh"
{
    (cd "$stage" && find . -type f | sort) | sed 's|^\.||; s|/|\\|g; s|.*|Delete "$INSTDIR&"|'
    printf '%s\n' "${folders[@]}" | sort -r | sed '/^\.$/d; s|^\.||; s|/|\\|g; s|.*|RMDir "$INSTDIR&"|'
} >"$dist/uninstall.nsh"

makensis -V2 -WX -INPUTCHARSET UTF8 -DVERSION="$version" -DARCH="$arch" -DSTAGE="$PWD/$stage" \
    -DOUTPUT="$PWD/$dist/$name.exe" -DINSTALL="$PWD/$dist/install.nsh" -DUNINSTALL="$PWD/$dist/uninstall.nsh" \
    "$here/installer.nsi"
(cd "$dist" && cmake -E tar cf "$name.zip" --format=zip "$name")
echo "$dist/$name.exe"
echo "$dist/$name.zip"
