#!/bin/bash
# recipes_test.sh BUILD_DIR SOURCE_DIR COMPILER: what can be checked of the recipes in packaging/ and debian/ without the
# tools that read them: that they can be parsed, say the library's version, set options that exist and copy what exists.
# The vcpkg port runs with stand-ins for vcpkg's commands, which configure and install the library that is built.
set -euo pipefail
build=$1 source=$2 compiler=$3
# shellcheck source-path=SCRIPTDIR
. "$source/tests/install/scratch.sh"
port=$source/packaging/vcpkg/corvane conan=$source/packaging/conan

version=$(sed -n 's/^project(corvane VERSION \([0-9.]*\) .*/\1/p' "$source/CMakeLists.txt")
[[ $(python3 -c 'import json, sys; print(json.load(open(sys.argv[1]))["version"])' "$port/vcpkg.json") == "$version" ]] ||
  fail "the vcpkg port has another version than $version"
[[ $(sed -n '1s/^corvane (\(.*\)) .*/\1/p' "$source/debian/changelog") == "$version" ]] ||
  fail "the Debian packages have another version than $version"

options=$(grep -hoE 'CORVANE_(BUILD_[A-Z]+|WERROR|INSTALL)\b' "$port/portfile.cmake" "$conan/conanfile.py" "$source/debian/rules")
for option in $options; do
  grep -q "^option($option " "$source/CMakeLists.txt" || fail "there is no option $option"
done
for recipe in "$conan/conanfile.py" "$conan/test_package/conanfile.py"; do
  python3 -c 'import ast, sys; ast.parse(open(sys.argv[1]).read())' "$recipe" || fail "$recipe is not Python"
done
# What the Conan recipe exports is enough to configure and install.
mkdir -p "$folder/exported/build"
for part in $(sed -nE 's/^ *(for part in|papers =) \((.*)\):?$/\2/p' "$conan/conanfile.py" | sed 's/\*papers//' | tr -d '",*'); do
  cp -r "$source/$part" "$folder/exported" || fail "the Conan recipe copies $part, which is not there"
done
quietly cmake -G Ninja -S "$folder/exported" -B "$folder/exported/build" -DCMAKE_CXX_COMPILER="$compiler" \
  -DCORVANE_BUILD_TESTS=OFF -DCORVANE_BUILD_EXAMPLES=OFF
cp -a "$build"/libcorvane.mysql.so* "$folder/exported/build"
quietly cmake --install "$folder/exported/build" --prefix "$folder/conan"

cat >"$folder/vcpkg.cmake" <<'END'
set(PORT corvane)
set(CURRENT_PACKAGES_DIR ${SCRATCH}/package)
macro(vcpkg_check_linkage what)
endmacro()
macro(vcpkg_find_acquire_program name)
  find_program(${name} pkg-config REQUIRED)
endmacro()
function(vcpkg_cmake_configure)
  cmake_parse_arguments(PARSE_ARGV 0 arg "" SOURCE_PATH OPTIONS)
  execute_process(COMMAND_ERROR_IS_FATAL ANY COMMAND ${CMAKE_COMMAND} -G Ninja -S ${arg_SOURCE_PATH} -B ${SCRATCH}/build
    -DCMAKE_CXX_COMPILER=${COMPILER} -DCMAKE_INSTALL_PREFIX=${CURRENT_PACKAGES_DIR} ${arg_OPTIONS})
endfunction()
function(vcpkg_cmake_install)
  file(GLOB library ${BUILT}/libcorvane.mysql.so*)
  file(COPY ${library} DESTINATION ${SCRATCH}/build)
  execute_process(COMMAND_ERROR_IS_FATAL ANY COMMAND ${CMAKE_COMMAND} --install ${SCRATCH}/build)
endfunction()
function(vcpkg_cmake_config_fixup)
  cmake_parse_arguments(PARSE_ARGV 0 arg "" CONFIG_PATH "")
  if(NOT EXISTS ${CURRENT_PACKAGES_DIR}/${arg_CONFIG_PATH}/corvaneConfig.cmake)
    message(FATAL_ERROR "no package in ${arg_CONFIG_PATH}")
  endif()
endfunction()
function(vcpkg_fixup_pkgconfig)
endfunction()
set(CMAKE_CURRENT_LIST_DIR ${PORT_DIR})
include(${PORT_DIR}/portfile.cmake)
END
quietly cmake -DSCRATCH="$folder" -DPORT_DIR="$port" -DBUILT="$build" -DCOMPILER="$compiler" -P "$folder/vcpkg.cmake"
for file in include/corvane/corvane.h lib/libcorvane.mysql.so share/corvane/usage share/corvane/copyright; do
  [[ -e $folder/package/$file ]] || fail "the vcpkg port does not install $file"
done
[[ ! -e $folder/package/share/doc ]] || fail "the vcpkg port installs docs"

make_project find_package "$folder/project"
cp "$conan"/test_package/{CMakeLists.txt,main.cpp} "$folder/project"
configure "$folder/project" -DCMAKE_PREFIX_PATH="$folder/package"
quietly cmake --build "$folder/project/build"
[[ $("$folder/project/build/program") == "'it\\'s'" ]] || fail "the program of the Conan recipe prints something else"
count 3 "recipes for packages" "parsed; version, options and files are there; vcpkg's with stand-ins for its commands"
