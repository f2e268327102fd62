#!/bin/bash
# page_project_test.sh PAGE PROGRAM BUILD_DIR SOURCE_DIR COMPILER [LINE...]: the CMake project on a page, behind lines
# that it leaves out, and with the page's C++ as the file PROGRAM, is built with the installed library; its tests pass.
# 77 (skipped) without a server.
set -euo pipefail
# shellcheck disable=SC2034 # used by scratch.sh
page=$1 program=$2 build=$3 source=$4 compiler=$5
shift 5
PATH=$PATH:/usr/sbin type -P mariadbd >/dev/null || { echo "no server: mariadbd is not installed"; exit 77; }
# shellcheck source-path=SCRIPTDIR
. "$source/tests/install/scratch.sh"

shown() {  # LANGUAGE
  awk -v fence="\`\`\`$1" '$0 == fence { inside = 1; next } $0 == "```" { inside = 0 } inside' "$page"
}

project=$folder/project
install_into "$folder/prefix"
mkdir "$project"
{ printf '%s\n' "$@" && shown cmake; } >"$project/CMakeLists.txt"
shown cpp >"$project/$program.cpp"
cp "$source/tools/private-server" "$project"
configure "$project" -DCMAKE_PREFIX_PATH="$folder/prefix"
quietly cmake --build "$project/build"
[[ -x $project/build/$program ]] || fail "there is no $program"
if shown cmake | grep -q '^add_test'; then quietly ctest --test-dir "$project/build" --no-tests=error; fi
count 1 "CMake projects on pages" "built with the installed library, their tests pass"
