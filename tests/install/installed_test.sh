#!/bin/sh
# installed_test.sh BUILD_DIR SOURCE_DIR COMPILER: installs the built library into a scratch folder, builds the consumer
# against it by find_package and by pkg-config, and runs both. The library must not be found anywhere else.
set -eu
build=$1 source=$2 compiler=$3
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
prefix=$folder/prefix
expected="7 'it\\'s'
1
Incompatible types for ASStr::operator == (). 
refused"

check() {
  printed=$("$@" 2>"$folder/stderr")
  [ "$printed" = "$expected" ] || { echo "$1 printed:"; echo "$printed"; exit 1; }
}

cmake --install "$build" --prefix "$prefix" >"$folder/install.log"
library=$(dirname "$(find "$prefix" -name libcorvane.mysql.so)")
readelf -d "$library/libcorvane.mysql.so" | grep -q 'SONAME.*libcorvane\.mysql\.so\.[0-9]'
if find "$prefix" -path '*internal*' | grep .; then echo "private headers are installed"; exit 1; fi

generator=$(sed -n 's/^CMAKE_GENERATOR:INTERNAL=//p' "$build/CMakeCache.txt")
cmake -G "$generator" -S "$source/tests/install/consumer" -B "$folder/cmake" -DCMAKE_PREFIX_PATH="$prefix" \
  -DCMAKE_CXX_COMPILER="$compiler" >"$folder/configure.log"
cmake --build "$folder/cmake" >"$folder/build.log" || { cat "$folder/build.log"; exit 1; }
check "$folder/cmake/consumer"

PKG_CONFIG_PATH=$library/pkgconfig
export PKG_CONFIG_PATH
# shellcheck disable=SC2046  # flags are words
"$compiler" -std=c++17 -Wall -Wextra -Werror "$source/tests/install/consumer/main.cpp" -o "$folder/by_pkg_config" \
  $(pkg-config --cflags --libs corvane)
LD_LIBRARY_PATH=$library check "$folder/by_pkg_config"
