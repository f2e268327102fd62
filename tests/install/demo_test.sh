#!/bin/bash
# demo_test.sh BEHAVIOUR DEMO: runs the demo on a private server of its own, which it may kill. 77 (skipped) where no
# server is installed.
set -euo pipefail
behaviour=$1 demo=$2
tool=$(realpath "$(dirname "$0")/../../tools/private-server")
if [[ -z ${CORVANE_DEMO_TEST:-} ]]; then
  [[ -n ${CORVANE_TEST_SERVER:-} ]] || PATH=$PATH:/usr/sbin type -P mariadbd >/dev/null || { echo "no server: mariadbd is not installed"; exit 77; }
  exec "$tool" run -- env CORVANE_DEMO_TEST=1 "$0" "$behaviour" "$demo"
fi
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT

fail() {
  echo "$*"
  cat "$folder/out" "$folder/err"
  exit 1
}

# A small folder of time zones, so that what is printed can be written out here.
small_zones() {
  mkdir "$folder/zoneinfo"
  printf '# countries\nCI\tC\303\264te d'\''Ivoire\nDE\tGermany\nCH\tSwitzerland\n' >"$folder/zoneinfo/iso3166.tab"
  printf 'DE\t+5230+01322\tEurope/Berlin\tmost of Germany\nCH,DE\t+4723+00832\tEurope/Zurich\nCI\t+0519-00402\tAfrica/Abidjan\n' \
    >"$folder/zoneinfo/zone1970.tab"
  export TZDIR=$folder/zoneinfo
}

shows() {  # RESULT
  grep -Eq "^    result  $1\$" "$folder/out" || fail "missing: $1"
}

shows_everything() {
  "$demo" >"$folder/out" 2>"$folder/err" || fail "the demo ended with $?"
  [[ ! -s $folder/err ]] || fail "the demo complains"
  grep -q '^Everything was as expected' "$folder/out" || fail "it says nothing of the end"
  ! grep -E 'NOT AS EXPECTED|WRONG' "$folder/out" || fail "not everything was as expected"
  local countries zones most
  countries=$(grep -vc '^#' "${TZDIR:-/usr/share/zoneinfo}/iso3166.tab")
  zones=$(grep -vc '^#' "${TZDIR:-/usr/share/zoneinfo}/zone1970.tab")
  grep -Eq "tz_country +$countries rows +$countries expected +ok" "$folder/out" || fail "countries are missing"
  grep -Eq "tz_zone +$zones rows +$zones expected +ok" "$folder/out" || fail "zones are missing"

  # Of the questions: that all were asked, that the aliases are explained, and one answer.
  (($(grep -c 'rows\?, the same as found in the files$' "$folder/out") == 6)) || fail "questions are missing"
  (($(grep -c '^    tables  T[0-9]' "$folder/out") == 5)) || fail "it does not say which table is which"
  most=$(grep -v '^#' "${TZDIR:-/usr/share/zoneinfo}/zone1970.tab" | cut -f 1 | tr , '\n' | sort | uniq -c |
    sort -k 1,1nr -k 2 | sed -n '1s/^ *\([0-9]*\) \(..\)$/\2  .* \1/p')
  grep -Eq "^ {12}$most\$" "$folder/out" || fail "the country with most zones is missing"

  # Of the rest: the numbers of rows, as the file's columns of codes and coordinates have them.
  local lines west south links linked
  lines=$(grep -v '^#' "${TZDIR:-/usr/share/zoneinfo}/zone1970.tab")
  west=$(cut -f 2 <<<"$lines" | grep -Ec '^.[0-9]+-')
  south=$(sed -n 's/^\([A-Z,]*\)\t-.*/\1/p' <<<"$lines" | tr , '\n' | wc -l)
  links=$(cut -f 1 <<<"$lines" | tr , '\n' | wc -l)
  linked=$(cut -f 1 <<<"$lines" | tr , '\n' | sort -u | wc -l)
  shows "$west rows changed, .*"
  shows "$zones longitudes are as calculated from the files"
  shows "$south rows deleted, .*"
  shows "$((links - south)) rows left, the same as the northern ones in the files"
  shows "all $links links are there again"
  shows "1 2 3 4 5 6 were given, none twice; the table holds 6"
  shows "$links names are as in the files"
  shows "$linked SELECTs, one for each country; $((links - linked)) answers came from memory"
  shows "for a second session same.name is 'Renamed'"
  shows "country.name still is 'Renamed', from memory"
  shows "country.name is '.*' again"
  shows "[0-9]+ rows, the same as by ASCursor"
  shows "and the same as found in the files"
  (($(grep -Ec '^ ?[0-9]+  [A-Z]' "$folder/out") == 23)) || fail "steps are missing"
}

loads_only() {
  small_zones
  "$demo" --load-only >"$folder/out" 2>"$folder/err" || fail "the demo ended with $?"
  [[ ! -s $folder/err ]] || fail "the demo complains"
  cat >"$folder/expected" <<END
Loaded into corvane@corvane/127.0.0.1:$CORVANE_TEST_PORT:
  tz_country           3 rows
  tz_zone              3 rows
  tz_zone_country      4 rows
  tz_file              3 rows
END
  diff -u "$folder/expected" "$folder/out" || fail "it prints something else"
}

# Kills the server while the demo waits before a step.
killed_before_step() {  # NUMBER
  small_zones
  mkfifo "$folder/enter"
  "$demo" --pause <"$folder/enter" >"$folder/out" 2>"$folder/err" &
  local pid=$! enter status=0
  exec {enter}>"$folder/enter"
  for ((step = 1; step < $1; step++)); do echo >&$enter; done
  until (($(grep -c 'Enter goes on' "$folder/out") == $1)); do
    kill -0 $pid 2>/dev/null || fail "the demo ended before step $1"
    sleep 0.02
  done
  "$CORVANE_TEST_SERVER_TOOL" kill "$CORVANE_TEST_SERVER_DIR"
  exec {enter}>&-
  wait $pid || status=$?
  ((status == 1)) || fail "the demo ended with $status"
  grep -q '^demo: cannot connect to the database server: .*Error 20[01][0-9] (.*)$' "$folder/err" ||
    fail "it does not say what happened"
}

reports_a_server_killed_at_first() { killed_before_step 1; }
reports_a_server_killed_midway() { killed_before_step 5; }
reports_a_server_killed_near_the_end() { killed_before_step 23; }

leaves_other_tables_alone() {
  small_zones
  export MYSQL_PWD=$CORVANE_TEST_PASSWORD
  local sql=(mariadb --no-defaults -N -h "$CORVANE_TEST_HOST" -P "$CORVANE_TEST_PORT" -u "$CORVANE_TEST_USER" "$CORVANE_TEST_DATABASE" -e)
  type -P mariadb >/dev/null || { echo "no mariadb client here"; exit 77; }
  "${sql[@]}" "CREATE TABLE tz_zone (mine INT); INSERT INTO tz_zone VALUES (7)"
  local status=0
  "$demo" --load-only >"$folder/out" 2>"$folder/err" || status=$?
  ((status == 1)) || fail "the demo ended with $status"
  grep -q "^demo: the database holds tables of these names that are not the demo's: " "$folder/err" || fail "it does not say why"
  [[ $("${sql[@]}" "SELECT mine FROM tz_zone") == 7 ]] || fail "the table was changed"
}

$behaviour
