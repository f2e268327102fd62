#!/bin/sh
# misuse.sh COMPILER STANDARD SOURCE_DIR: every misuse in misuse.cpp is refused, for its own reason and not for a slip
# that all of them share.
set -eu
compiler=$1 standard=$2 source=$3
command -v "$compiler" >/dev/null || { echo "no $compiler here"; exit 77; }
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT

# What all of them include is compiled once.
echo '#include <corvane/corvane.h>' >"$folder/all.h"
"$compiler" "-std=$standard" -w "-I$source" -x c++-header "$folder/all.h" -o "$folder/all.h.gch"
compile() {
  "$compiler" "-std=$standard" -fsyntax-only -w "-DMISUSE=$1" "-I$source" -include "$folder/all.h" \
    "$source/tests/compile/misuse.cpp"
}
compile 0
last=$(sed -n 's/^#elif MISUSE == \([0-9]*\).*/\1/p' "$source/tests/compile/misuse.cpp" | tail -n 1)
misuse=1
failed=0
while [ "$misuse" -le "$last" ]; do
  if compile "$misuse" 2>/dev/null; then
    echo "misuse $misuse compiles"
    failed=1
  fi
  misuse=$((misuse + 1))
done
exit $failed
