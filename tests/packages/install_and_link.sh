#!/usr/bin/env bash
# Installs the library and links it in each way that is offered: install_and_link.sh BUILD_FOLDER SCRATCH_FOLDER
set -euo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)
build=$1 scratch=$2
prefix=$scratch/installed

rm -rf "$scratch"
mkdir -p "$scratch"
cmake --install "$build" --prefix "$prefix" >"$scratch/install.log"
cmake_folder=$(dirname "$(find "$prefix" -name orbinel-config.cmake)")
modules=$(dirname "$(find "$prefix" -name orbinel.pc)")

echo "== find_package"
for project in "$root/tests/consumer" "$prefix/share/orbinel/examples/application"; do
    folder=$scratch/$(basename "$project")
    cmake -S "$project" -B "$folder" -DCMAKE_PREFIX_PATH="$prefix" >"$folder.log"
    cmake --build "$folder"
done
"$scratch/consumer/consumer"

echo "== pkg-config"
read -ra flags < <(PKG_CONFIG_PATH=$modules pkg-config --cflags --libs "orbinel-linux >= 13.9" orbinel-headless)
"${CXX:-c++}" -std=c++20 "$root/tests/consumer/main.cpp" "${flags[@]}" -o "$scratch/by_modules"
LD_LIBRARY_PATH=$(dirname "$modules") "$scratch/by_modules"

# The libraries would be built once more: what is asked is whether they can be added, and whether what links them
# compiles. The consumer of this build is linked in the same way.
echo "== add_subdirectory"
mkdir "$scratch/parent"
cat >"$scratch/parent/CMakeLists.txt" <<END
cmake_minimum_required(VERSION 3.25)
project(parent LANGUAGES C CXX)
add_subdirectory("$root" orbinel)
add_subdirectory("$root/tests/consumer" consumer)
if(DEFINED CACHE{BUILD_SHARED_LIBS} OR TARGET orbinel_tool)
    message(FATAL_ERROR "The library takes more of the project than its own targets")
endif()
END
cmake -S "$scratch/parent" -B "$scratch/parent/build" >"$scratch/parent.log"
[[ ${CMAKE_GENERATOR:-} != Ninja ]] ||
    cmake --build "$scratch/parent/build" --target consumer/CMakeFiles/consumer.dir/main.cpp.o

# expect_refusal SENTENCE ARGUMENTS…: find_package(orbinel ARGUMENTS…) fails and says so, in whatever lines.
expect_refusal() {
    local sentence=$1
    shift
    mkdir -p "$scratch/refused"
    printf '%s\n' "cmake_minimum_required(VERSION 3.25)" "project(refused LANGUAGES CXX)" \
        "find_package(orbinel $* REQUIRED)" >"$scratch/refused/CMakeLists.txt"
    if cmake -S "$scratch/refused" -B "$scratch/refused/build" -DCMAKE_PREFIX_PATH="$prefix" >"$scratch/refused.log" 2>&1; then
        echo "find_package(orbinel $*) should not succeed"
        return 1
    fi
    tr -s ' \n' ' ' <"$scratch/refused.log" | grep -qF "$sentence" || { cat "$scratch/refused.log" && return 1; }
}

echo "== what is not there"
rm -f "$cmake_folder"/orbinel-gtk-*
expect_refusal 'orbinel is installed without its component "gtk"' COMPONENTS gtk
expect_refusal 'orbinel has no component "qt"' COMPONENTS qt
expect_refusal 'version: 13.9.0' 14.0
