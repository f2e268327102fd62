#!/bin/sh
# examples_copied_test.sh BUILD_DIR SOURCE_DIR COMPILER: a copy of the folder examples, alone, is built against the
# installed library, and the programs start.
set -eu
build=$1 source=$2 compiler=$3
folder=$(mktemp -d -p "${CORVANE_TEST_SERVER_DIR:-${TMPDIR:-/tmp}}")  # goes with the server, if not before
trap 'rm -rf "$folder"' EXIT
trap 'exit 143' TERM INT HUP

say() {
  if ! "$@" >"$folder/log" 2>&1; then
    cat "$folder/log"
    exit 1
  fi
}

say cmake --install "$build" --prefix "$folder/prefix"
cp -r "$source/examples" "$folder/my copy"
launcher=$(sed -n 's/^CMAKE_CXX_COMPILER_LAUNCHER:[A-Z]*=//p' "$build/CMakeCache.txt")
export CCACHE_BASEDIR="$folder" CCACHE_NOHASHDIR=true  # should that be the launcher: the folder's name does not matter
generator=$(sed -n 's/^CMAKE_GENERATOR:INTERNAL=//p' "$build/CMakeCache.txt")
say cmake -G "$generator" -S "$folder/my copy" -B "$folder/my build" -DCMAKE_PREFIX_PATH="$folder/prefix" \
  -DCMAKE_CXX_COMPILER="$compiler" -DCMAKE_CXX_COMPILER_LAUNCHER="$launcher" -DCMAKE_CXX_FLAGS="-Wall -Wextra -Werror"
say cmake --build "$folder/my build" --target examples --parallel 2

count=0
for program in "$folder/my build"/[0-9][0-9]_*; do
  if [ ! -f "$program" ]; then continue; fi
  status=0
  "$program" 2>"$folder/usage" || status=$?
  [ "$status" = 2 ] || { echo "$program ends with $status"; cat "$folder/usage"; exit 1; }
  count=$((count + 1))
done
[ "$count" = "$(find "$source/examples" -name '[0-9][0-9]_*.cpp' | wc -l)" ] || { echo "$count programs"; exit 1; }
