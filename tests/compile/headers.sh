#!/bin/sh
# headers.sh COMPILER STANDARD SOURCE_DIR HEADER...: each header compiles alone, and twice, without a warning.
set -eu
compiler=$1 standard=$2 source=$3
shift 3
command -v "$compiler" >/dev/null || { echo "no $compiler here"; exit 77; }
failed=0
for header in "$@"; do
  printf '#include "%s"\n#include "%s"\n' "$header" "$header" |
    "$compiler" "-std=$standard" -fsyntax-only -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Werror \
      "-I$source" -x c++ - || { echo "$header does not compile alone"; failed=1; }
done
exit $failed
