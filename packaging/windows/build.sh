#!/usr/bin/env bash
# Builds the component for Windows on Debian: build.sh [x86_64|i686] [TARGET…]. As root it installs what it needs first.
# The libraries that it links are built once, from Debian's source packages, into ~/.cache/zul-windows (ZUL_WINDOWS_CACHE
# names another folder); the results stand in build/windows-x86_64/bin or build/windows-i686/bin.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/../.."

arch=x86_64
case ${1:-} in x86_64 | i686) arch=$1 && shift ;; esac
targets=()
[ $# -eq 0 ] || targets=(--target "$@")

packaging/install.sh build windows "windows-$arch"
dependencies=$(packaging/windows/dependencies.sh "$arch")
mkdir -p build
log=build/configure-windows-$arch.log
# What was found in the libraries of an earlier recipe is looked for anew.
before=$(sed -n 's/^ZUL_WINDOWS_DEPENDENCIES:[A-Z]*=//p' "build/windows-$arch/CMakeCache.txt" 2>/dev/null || true)
fresh=()
[ "$before" = "$dependencies" ] || fresh=(--fresh)
cmake "${fresh[@]}" --preset "windows-$arch" -DZUL_WINDOWS_DEPENDENCIES="$dependencies" >"$log" 2>&1 || { cat "$log" >&2; exit 1; }
cmake --build --preset "windows-$arch" -j "${ZUL_JOBS:-$(nproc)}" "${targets[@]}"

# Qt's libraries and plug-ins stand beside what needs them: the component with its host, and the sender.
for bin in "build/windows-$arch"/bin{,/ZulSmsSender}; do
    mkdir -p "$bin"
    cp -u "$dependencies"/bin/Qt6*Zul.dll "$bin/"
    for folder in platforms imageformats iconengines; do
        [ ! -d "$dependencies/plugins/$folder" ] || cp -ru "$dependencies/plugins/$folder" "$bin/"
    done
done
# Qt's own texts in the language of the windows; the sender shows none of them.
mkdir -p "build/windows-$arch/bin/translations"
cp -u /usr/share/qt6/translations/qtbase_it.qm "build/windows-$arch/bin/translations/"
# Programs elsewhere in the build folder, the tests, look for both where an installation of Qt has them.
ln -sfn bin "build/windows-$arch/plugins"
ln -sfn bin/translations "build/windows-$arch/translations"
