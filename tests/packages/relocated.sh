#!/usr/bin/env bash
# relocated.sh SOURCE BUILD: installed under one prefix, moved to another, every part finds the others: the three hosts of
# docs/embedding.md are built against it by pkg-config and by CMake, and run; zulhost plays a scenario.
set -euo pipefail
source=$1
build=$2
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
export HOME=$folder/home XDG_STATE_HOME=$folder/state QT_QPA_PLATFORM=offscreen LC_ALL=C.UTF-8
mkdir "$HOME"

cmake --install "$build" --prefix "$folder/first" >"$folder/install.log"
prefix="$folder/another place à"
mv "$folder/first" "$prefix"

fail() { echo "$*" >&2; exit 1; }
if grep -rlaF -e "$folder/first" -e "$build/" "$prefix" | grep -v -e '\.md$'; then
    fail "these files know where they were built or first installed"
fi

# A registration of this prefix.
mkdir "$folder/classes"
printf '[{B7A0C731-6521-48C8-8DA9-B7465A7FF35B}]\nProgID=Zul_MessageBuilder.SmsCreator\nLibrary=%s\n' \
    "$prefix/lib/zul-messagebuilder/libZul_MessageBuilder.so" >"$folder/classes/zul.ini"
export ZUL_AUTOMATION_SYSTEM_REGISTRY=$folder/classes

examples=$prefix/share/doc/zul-messagebuilder-dev/examples/embed
for file in host.cpp host.c host.py; do
    [ "$(wc -l <"$examples/$file")" -lt 150 ] || fail "$file has become too long for a page"
done

# By pkg-config, as the page says; a blank in the prefix is what a shell's word splitting cannot do, hence the link.
ln -s "$prefix" "$folder/plain"
export PKG_CONFIG_PATH=$folder/plain/lib/pkgconfig
flags=$(pkg-config --cflags --libs zul-automation)
# shellcheck disable=SC2086 # several words are meant
c++ -std=c++17 "$examples/host.cpp" -o "$folder/host-cpp" $flags
# shellcheck disable=SC2086
cc -std=c11 "$examples/host.c" -o "$folder/host-c" $flags
[ -f "$(pkg-config --variable=idldir zul-automation)/Zul_MessageBuilder.idl" ] || fail "no IDL"

# By CMake.
mkdir "$folder/project"
cat >"$folder/project/CMakeLists.txt" <<'END'
cmake_minimum_required(VERSION 3.25)
project(host LANGUAGES C CXX)
set(CMAKE_CXX_STANDARD 17)
find_package(Zul_MessageBuilder 1 REQUIRED)
add_executable(host-cmake ${EXAMPLES}/host.cpp)
target_link_libraries(host-cmake PRIVATE Zul::Automation)
add_library(contracts OBJECT ${EXAMPLES}/host.c)
target_link_libraries(contracts PRIVATE Zul::Contracts)
if(NOT EXISTS "${Zul_MessageBuilder_COMPONENT_DIR}/libZul_MessageBuilder.so")
  message(FATAL_ERROR "no component in ${Zul_MessageBuilder_COMPONENT_DIR}")
endif()
END
cmake -S "$folder/project" -B "$folder/project/build" -DCMAKE_PREFIX_PATH="$prefix" -DEXAMPLES="$examples" \
    >"$folder/cmake.log" || { cat "$folder/cmake.log" >&2; exit 1; }
cmake --build "$folder/project/build" >"$folder/build.log" || { cat "$folder/build.log" >&2; exit 1; }

export LD_LIBRARY_PATH=$prefix/lib
for host in "$folder/host-cpp" "$folder/host-c" "$folder/project/build/host-cmake" "python3 $examples/host.py"; do
    # shellcheck disable=SC2086 # the interpreter and its script
    [ "$(case $host in python3*) python3 "$examples/host.py" --quiet ;; *) "$host" --quiet ;; esac)" = "isOkPressed false" ] ||
        fail "$host did not answer"
done
unset LD_LIBRARY_PATH

# A grep that says nothing ends at what it looks for, and breaks off who still writes: these are read to their end.
# The two hosts of docs/host.md, which load the component from a folder.
# shellcheck disable=SC2086
c++ -std=c++17 "$examples/../MinimalHost.cpp" -o "$folder/minimal" $flags
for host in "$folder/minimal" "python3 $folder/plain/share/doc/zul-messagebuilder-dev/examples/host.py"; do
    # shellcheck disable=SC2086 # the interpreter and its script
    LD_LIBRARY_PATH=$prefix/lib $host "$prefix/lib/zul-messagebuilder" --quiet | grep -ix 'isOkPressed false' | cat >/dev/null ||
        fail "$host did not answer"
done
"$source/tests/packages/links.py" "$prefix"

version=$("$prefix/bin/zulhost" --version)
[ "$version" = "zulhost $(pkg-config --modversion zul-automation)" ] || fail "versions differ: $version"
"$prefix/bin/zulhost" --database "$folder/demo.db" --create-demo 20
(cd "$folder" && "$prefix/bin/zulhost" --database demo.db --scenario "$source/tests/packages/first.scenario") |
    tee "$folder/played" | grep '^return ShowForm' | cat >/dev/null || { cat "$folder/played" >&2; fail "zulhost did not play"; }

# Every option of the program stands in its manual page.
"$prefix/bin/zulhost" --help | grep -o -- '--[a-z-]*' | sort -u | while read -r option; do
    zcat "$prefix/share/man/man1/zulhost.1.gz" | sed 's/\\-/-/g' | grep -F -- "$option" | cat >/dev/null ||
        fail "$option is not in the manual page"
done
desktop-file-validate "$prefix/share/applications/org.zul.zulhost.desktop"
appstreamcli validate --no-net "$prefix/share/metainfo/org.zul.zulhost.metainfo.xml" >"$folder/appstream.log" ||
    { cat "$folder/appstream.log" >&2; exit 1; }
echo "found, built, run: $version"
