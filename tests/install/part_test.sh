#!/bin/bash
# part_test.sh WAY BUILD_DIR SOURCE_DIR COMPILER [LAUNCHER]: a project that has the library as a part, by
# add_subdirectory or fetch_content; nothing of the library's but the library itself comes to it. The library is
# compiled anew, for both, with what the project sets; a compiler cache keeps that short from the second time on.
set -euo pipefail
way=$1 build=$2 source=$3 compiler=$4 launcher=${5:-}
# shellcheck source-path=SCRIPTDIR
. "$source/tests/install/scratch.sh"

if [[ -z $launcher ]] && launcher=$(type -P ccache); then export CCACHE_DIR=$build/ccache; fi
project=$folder/project
make_project "$way" "$project"
options=(-DCMAKE_CXX_COMPILER_LAUNCHER="$launcher")
if [[ $way == add_subdirectory ]]; then  # a project that demands much
  options+=(-DCORVANE_FOLDER="$source" -DCMAKE_PROJECT_corvane_INCLUDE="$source/tests/install/consumers/demanding.cmake"
    -DCMAKE_CXX_STANDARD=23 -DCMAKE_CXX_FLAGS="-Wall -Wextra -Werror" -DCMAKE_UNITY_BUILD=ON -DBUILD_SHARED_LIBS=OFF
    -DCMAKE_COMPILE_WARNING_AS_ERROR=ON -DCMAKE_CXX_VISIBILITY_PRESET=hidden -DCMAKE_VISIBILITY_INLINES_HIDDEN=ON
    -DCMAKE_RUNTIME_OUTPUT_DIRECTORY="$project/out" -DCMAKE_LIBRARY_OUTPUT_DIRECTORY="$project/out")
  program=$project/out/program
else
  options+=(-DCORVANE_ARCHIVE=unread.tar.gz -DFETCHCONTENT_SOURCE_DIR_CORVANE="$source")
  program=$project/build/program
fi
configure "$project" "${options[@]}"

# What the finders remember has their names; all else has the library's, or was there before.
foreign=$(sed -n 's/^\([A-Za-z_][^:=]*\):.*/\1/p' "$project/build/CMakeCache.txt" | grep -v -e '-ADVANCED$' |
  grep -Ev '^_*(CORVANE|pkg_config_checked_CORVANE|corvane|consumer|CMAKE|Boost|boost|PKG_CONFIG|pkgcfg_lib_CORVANE|FETCHCONTENT|FIND_PACKAGE)_' |
  grep -Ev '^(BUILD_SHARED_LIBS|prefix_result)$' || true)
[[ -z $foreign ]] || fail "variables without the library's name are in the project's cache: $foreign"
! grep '^CMAKE_INSTALL_LIBDIR' "$project/build/CMakeCache.txt" || fail "the project's folders were settled for it"
targets=$(cmake --build "$project/build" --target help)
grep -q corvane <<<"$targets" || fail "the targets are not listed"
! grep -Ew '(unit|fault|live)_tests|demo|bench' <<<"$targets" || fail "the project got tests, examples or timings"

quietly cmake --build "$project/build" --parallel 2
runs "$program"
[[ $(find "$project" -name 'libcorvane.mysql.so' | wc -l) == 1 ]] || fail "where is the library?"
ctest --test-dir "$project/build" --show-only >"$folder/log" 2>&1 || true
grep -q 'Total Tests: 0' "$folder/log" || { cat "$folder/log"; fail "the project got tests"; }
quietly cmake --install "$project/build" --prefix "$folder/installed"
[[ ! -e $folder/installed ]] || fail "the project installs what it has not asked for"
count 1 "projects with the library as a part built" "prints, and got no tests, installed files, flags or variables"
