#!/bin/bash
# installed_test.sh WAY BUILD_DIR SOURCE_DIR COMPILER [STANDARD]: installs the built library into a scratch folder,
# builds the consumer against it by WAY, find_package or pkg_config, and runs it. 77 (skipped) without the compiler.
set -euo pipefail
way=$1 build=$2 source=$3 compiler=$4 standard=${5:-17}
type -P "$compiler" >/dev/null || { echo "no $compiler here"; exit 77; }
# shellcheck source-path=SCRIPTDIR
. "$source/tests/install/scratch.sh"

prefix=$folder/prefix project=$folder/project
install_into "$prefix"
make_project "$way" "$project"
library=$(dirname "$(find "$prefix" -name libcorvane.mysql.so)")
if [[ $way == find_package ]]; then
  configure "$project" -DCMAKE_PREFIX_PATH="$prefix" -DCMAKE_CXX_STANDARD="$standard" \
    -DCMAKE_CXX_FLAGS="-Wall -Wextra -Werror" -DCMAKE_EXPORT_COMPILE_COMMANDS=ON
  grep -Eq -e "-std=(gnu|c)\+\+($standard|2b) " "$project/build/compile_commands.json" || fail "not C++$standard"
  quietly cmake --build "$project/build"
  ninja -C "$project/build" -t deps >"$project/headers"
  ! grep -E 'mysql\.h|/boost/' "$project/headers" || fail "the client library's headers or Boost were read"
  grep -q "prefix/include/corvane/corvane.h" "$project/headers" || fail "these are not the installed headers"
  runs "$project/build/program"
  [[ $(ldd "$project/build/program") == *"libcorvane.mysql.so.0 => $library/"* ]] || fail "another library was found"
else
  PKG_CONFIG_PATH=$library/pkgconfig quietly make -C "$project" CXX="$compiler"
  runs "$project/program"
fi
count 1 "consumers of the installed library built" "compiles without warnings, finds the library, prints"
