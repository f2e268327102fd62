#!/bin/bash
# example_test.sh KIND PROGRAM EXPECTED: an example prints what EXPECTED holds, alone and two at once, says so when it is
# called wrongly or cannot go on, and leaves nothing in its schema, wherever it fails. KIND tells how that is brought
# about: of an example with `temporary` tables only, each statement is refused in turn; one with `shared` tables has to
# drop these, and is refused each kind of statement. 77 (skipped) without a server or without the client mariadb.
set -euo pipefail
kind=$1 program=$2 expected=$3
[[ -n ${CORVANE_TEST_PORT:-} ]] || { echo "no server: CORVANE_TEST_PORT is not set"; exit 77; }
type -P mariadb >/dev/null || { echo "no mariadb client here"; exit 77; }

folder=$(mktemp -d -p "${CORVANE_TEST_SERVER_DIR:-${TMPDIR:-/tmp}}")  # goes with the server, if not before
schema=examples_$$_$RANDOM user=example_$RANDOM
# shellcheck disable=SC2153  # these come from the environment
server=$schema/$CORVANE_TEST_HOST:$CORVANE_TEST_PORT
export MYSQL_PWD=$CORVANE_TEST_PASSWORD
sql() {
  mariadb --no-defaults -N -h "$CORVANE_TEST_HOST" -P "$CORVANE_TEST_PORT" -u "$CORVANE_TEST_USER" -e "$1"
}

clean_up() {
  sql "DROP DATABASE IF EXISTS $schema; DROP USER '$user'@'%'" >/dev/null 2>&1 || true
  rm -rf "$folder"
}
trap clean_up EXIT
trap 'exit 143' TERM INT HUP

fail() {
  echo "$*"
  tail -n 20 "$folder"/* 2>/dev/null || true
  exit 1
}

# Runs the program; its output goes to the files out and err.
try() {  # ARGUMENT...
  status=0
  "$program" "$@" >"$folder/out" 2>"$folder/err" || status=$?
}

shows_an_error() {  # TEXT
  ((status == 1)) || fail "it ends with $status, and not with 1"
  grep -q "^$program: .*" "$folder/err" || fail "it does not say who complains"
  grep -q "$1" "$folder/err" || fail "it does not say: $1"
}

tally() {  # COUNT WHAT
  echo "$2: $1"
  if [[ -n ${CORVANE_TALLY:-} ]]; then
    printf '%d\t%s\tstatus 1, message, no table left behind\n' "$1" "$2" >>"$CORVANE_TALLY"
  fi
}

leaves_nothing() {
  [[ -z $(sql "SELECT table_name FROM information_schema.tables WHERE table_schema = '$schema'") ]] ||
    fail "it leaves tables behind: $1"
}

prints_what_is_expected() {
  local connection=$CORVANE_TEST_USER:$CORVANE_TEST_PASSWORD@$server other
  try "$connection"
  ((status == 0)) || fail "it ends with $status"
  diff -u "$expected" "$folder/out" || fail "it prints something else"
  [[ ! -s $folder/err ]] || fail "it complains"

  "$program" "$connection" >"$folder/other" 2>&1 &
  other=$!
  try "$connection"
  wait $other || fail "one of two at once ends with $?"
  ((status == 0)) || fail "one of two at once ends with $status"
  diff -u "$expected" "$folder/out" || fail "one of two at once prints something else"
  diff -u "$expected" "$folder/other" || fail "one of two at once prints something else"
  leaves_nothing "after three runs"

  status=0
  "$program" "$connection" >/dev/full 2>"$folder/err" || status=$?
  shows_an_error "cannot write to the standard output"
}

says_how_it_is_called() {
  for arguments in "" "a:b@c/d:1 more"; do
    # shellcheck disable=SC2086  # words
    try $arguments
    ((status == 2)) || fail "with the arguments '$arguments' it ends with $status, and not with 2"
    [[ $(<"$folder/err") == "Usage: $program user:password@database/host:port" ]] || fail "it does not say how to call it"
    [[ ! -s $folder/out ]] || fail "it prints something"
  done
}

# In the background, since the library waits a second before it says so.
try_without_server() {
  try "user:password@$schema/127.0.0.1:1"
  shows_an_error "mysql_real_connect failed"
  shows_an_error "Error 200[23] (.*onnect"
  [[ ! -s $folder/out ]] || fail "it prints something"
}

# Has the server allow the user so many statements in an hour, from now on, or 0 for any number.
allow() {  # COUNT
  sql "GRANT USAGE ON *.* TO '$user'@'%' WITH MAX_QUERIES_PER_HOUR $1; FLUSH USER_RESOURCES"
}

fails_cleanly_at_each_statement() {
  local count=0
  sql "GRANT CREATE TEMPORARY TABLES ON $schema.* TO '$user'@'%'"
  status=1
  while ((status != 0)); do
    ((++count < 200)) || fail "it does not get through with so many statements"
    allow $count
    try "$user:secret@$server"
    if ((status != 0)); then shows_an_error "Error 1226 "; fi
  done
  leaves_nothing "when one of $count statements is refused"
  ((count > 5)) || fail "only $count statements were refused"
  tally $((count - 1)) "statements of examples refused in turn"
}

fails_cleanly_at_each_kind_of_statement() {
  local count=0 privilege
  sql "GRANT CREATE, DROP ON $schema.* TO '$user'@'%'"
  for privilege in INSERT SELECT "CREATE TEMPORARY TABLES" UPDATE DELETE; do
    try "$user:secret@$server"
    if ((status == 0)); then break; fi
    shows_an_error "Error 1[01]4[24] "
    leaves_nothing "without the privilege $privilege"
    count=$((count + 1))
    sql "GRANT $privilege ON $schema.* TO '$user'@'%'"
  done
  try "$user:secret@$server"
  ((status == 0)) || fail "it ends with $status with all privileges"
  ((count > 1)) || fail "only $count kinds of statements were refused"
  tally $count "kinds of statements of examples refused in turn"
}

sql "CREATE DATABASE $schema; CREATE USER '$user'@'%' IDENTIFIED BY 'secret'"
mkdir "$folder/without"
(folder=$folder/without && try_without_server) &
without_server=$!
prints_what_is_expected
says_how_it_is_called
case $kind in
  temporary) fails_cleanly_at_each_statement ;;
  shared) fails_cleanly_at_each_kind_of_statement ;;
  *) fail "no kind of tables: $kind" ;;
esac
wait $without_server || exit 1
