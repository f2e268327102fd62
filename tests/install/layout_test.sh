#!/bin/bash
# layout_test.sh BUILD_DIR SOURCE_DIR COMPILER: the ways to lay out an installed tree. Each is configured anew, since the
# folders are settled then; the library itself is the one that is built already, put in its place.
set -euo pipefail
build=$1 source=$2 compiler=$3
# shellcheck source-path=SCRIPTDIR
. "$source/tests/install/scratch.sh"

prepare() {  # [OPTION of cmake...]
  rm -rf "$folder/configured"
  quietly cmake -G Ninja -S "$source" -B "$folder/configured" -DCMAKE_CXX_COMPILER="$compiler" \
    -DCORVANE_BUILD_TESTS=OFF -DCORVANE_BUILD_EXAMPLES=OFF "$@"
  cp -a "$build"/libcorvane.mysql.so* "$folder/configured/"
}

# A consumer finds the library by CMake and by pkg-config, in the tree whose libraries lie in LIBDIR.
serves() {  # PREFIX LIBDIR
  local prefix=$1 libdir=$2 project=$folder/project flags
  [[ -e $libdir/libcorvane.mysql.so.0 && -e $libdir/cmake/corvane/corvaneConfigVersion.cmake ]] || fail "not in $libdir"
  rm -rf "$project"
  make_project find_package "$project"
  configure "$project" -DCMAKE_PREFIX_PATH="$prefix"
  quietly cmake --build "$project/build"
  runs "$project/build/program"

  eval "flags=($(PKG_CONFIG_PATH=$libdir/pkgconfig pkg-config --cflags --libs corvane))"  # blanks are escaped
  quietly "$compiler" -std=c++17 "$project/main.cpp" "${flags[@]}" -o "$project/by_pkg_config"
  LD_LIBRARY_PATH=$libdir runs "$project/by_pkg_config"
}

# The docs, and that what they link to is there with them.
has_docs() {  # FOLDER
  local page link missing=0
  for page in README.md CHANGELOG.md docs/session.md docs/performance.md docs/performance/results.md examples/demo/main.cpp; do
    [[ -e $1/$page ]] || fail "$1/$page is missing"
  done
  [[ ! -e $1/docs/site ]] || fail "what the site is made from is installed"
  while IFS=: read -r page link; do
    [[ -e $(dirname "$page")/$link ]] || { echo "$page leads to $link, which is not there"; missing=1; }
  done < <(grep -rPo --include='*.md' '\]\((?!https:|#)\K[^)# ]+' "$1")
  ((missing == 0)) || fail "links lead nowhere"
}

prepare -DCMAKE_INSTALL_PREFIX=/usr -DCMAKE_INSTALL_LIBDIR=lib/x86_64-linux-gnu
DESTDIR=$folder/staged quietly cmake --install "$folder/configured"
[[ $(ls "$folder/staged") == usr ]] || fail "installed beside the stage"
! find "$folder/staged" -path '*internal*' | grep . || fail "private headers are installed"
! grep -rF -e "$folder" -e "$source" "$folder/staged/usr/lib" "$folder/staged/usr/include" --include='*.cmake' \
  --include='*.pc' --include='*.h' || fail "names folders of the machine where it was built"
readelf -d "$folder/staged/usr/lib/x86_64-linux-gnu/libcorvane.mysql.so" >"$folder/log"
grep -q 'SONAME.*\[libcorvane\.mysql\.so\.0\]' "$folder/log" || fail "no name with a version"
! grep -E 'RPATH|RUNPATH' "$folder/log" || fail "the library brings a search path along"
has_docs "$folder/staged/usr/share/doc/corvane"
mkdir "$folder/else where"
mv "$folder/staged/usr" "$folder/else where/moved"
serves "$folder/else where/moved" "$folder/else where/moved/lib/x86_64-linux-gnu"

prepare -DCMAKE_INSTALL_PREFIX="$folder/whole" -DCMAKE_INSTALL_LIBDIR="$folder/libraries of mine/lib" \
  -DCMAKE_INSTALL_INCLUDEDIR="headers of mine"
quietly cmake --install "$folder/configured"
serves "$folder/libraries of mine" "$folder/libraries of mine/lib"

prepare -DCMAKE_INSTALL_PREFIX="$folder/parts"
quietly cmake --install "$folder/configured" --component corvane_library
[[ $(cd "$folder/parts" && find . ! -type d -printf '%f ') == 'libcorvane.mysql.so.0.1.0 libcorvane.mysql.so.0 ' ||
  $(cd "$folder/parts" && find . ! -type d -printf '%f ') == 'libcorvane.mysql.so.0 libcorvane.mysql.so.0.1.0 ' ]] ||
  fail "more than the library is installed with it"
count 3 "layouts of an installed tree" "found by CMake and pkg-config, staged, moved, whole folders, parts"
