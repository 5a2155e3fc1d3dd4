#!/usr/bin/env bash
# Makes the Debian packages of what ./run.sh and ./test.sh build: zul-messagebuilder, zul-messagebuilder-dev, zulhost.
# They come to stand in build/release/packages.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

packaging/install.sh build run package
mkdir -p build
cmake --preset release >build/configure-release.log 2>&1 || { cat build/configure-release.log >&2; exit 1; }
cmake --build --preset release --target zulhost Zul_MessageBuilder zul_sender zul_idl_files
rm -rf build/release/packages
(cd build/release && cpack >../packages.log 2>&1) || { cat build/packages.log >&2; exit 1; }
ls build/release/packages/*.deb
