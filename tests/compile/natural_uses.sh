#!/bin/sh
# natural_uses.sh COMPILER STANDARD SOURCE_DIR LIBRARY: builds natural_uses.cpp against the shared library and runs it.
set -eu
compiler=$1 standard=$2 source=$3 library=$4
command -v "$compiler" >/dev/null || { echo "no $compiler here"; exit 77; }
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
directory=$(dirname "$library")
"$compiler" "-std=$standard" -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Werror -I"$source" \
  "$source/tests/compile/natural_uses.cpp" -o "$folder/natural_uses" "$library" -Wl,-rpath,"$directory"
"$folder/natural_uses"
