# shellcheck shell=bash disable=SC2154 # the scripts beside this one set build, source and compiler
# A scratch folder, below what is built so that one left by a killed test is in nobody's way, and what is done with it.
folder=$(mktemp -d "$build/scratch.XXXXXX")
trap 'rm -rf "$folder"' EXIT

fail() {
  echo "$*"
  exit 1
}

# Shows the output of a command only when it fails.
quietly() {
  "$@" >"$folder/log" 2>&1 || { cat "$folder/log"; fail "failed: $*"; }
}

install_into() {  # PREFIX
  quietly cmake --install "$build" --prefix "$1"
}

# The consumer's project as its user has it: a program and how it is built.
make_project() {  # WAY FOLDER
  cp -r "$source/tests/install/consumers/$1" "$2"
  cp "$source/tests/install/consumers/main.cpp" "$2"
}

configure() {  # PROJECT [OPTION of cmake...]
  local project=$1
  shift
  quietly cmake -G Ninja -S "$project" -B "$project/build" -DCMAKE_CXX_COMPILER="$compiler" "$@"
}

runs() {  # PROGRAM
  "$1" >"$folder/printed" 2>"$folder/complaints" || fail "$1 ended with $?"
  diff -u "$source/tests/install/consumers/expected" "$folder/printed" || fail "$1 prints something else"
}

count() {  # NUMBER TRIED CHECKED
  echo "$1 $2: $3"
  if [[ -n ${CORVANE_TALLY:-} ]]; then printf '%s\t%s\t%s\n' "$@" >>"$CORVANE_TALLY"; fi
}
