#!/bin/sh
# readme_test.sh PAGE LIBRARY COMPILER [OPTION...]: the C++ blocks of a Markdown page, one behind the other, are a
# program. It compiles without a warning and prints what the page's text blocks show. 77 (skipped) without a server.
set -eu
page=$1 library=$2 compiler=$3
shift 3
[ -n "${CORVANE_TEST_PORT:-}" ] || { echo "no server: CORVANE_TEST_PORT is not set"; exit 77; }
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT

blocks() {  # LANGUAGE
  awk -v fence="\`\`\`$1" '$0 == fence { inside = 1; next } $0 == "```" { inside = 0 } inside' "$page"
}
blocks cpp >"$folder/program.cpp"
blocks text >"$folder/expected"
for part in program.cpp expected; do
  [ -s "$folder/$part" ] || { echo "$page shows no $part"; exit 1; }
done

if grep -q '^#include <gtest/' "$folder/program.cpp"; then googletest=-lgtest; else googletest=; fi
"$compiler" -std=c++17 -Wall -Wextra -Werror "$@" "$folder/program.cpp" -o "$folder/program" \
  "$library" "-Wl,-rpath,$(dirname "$library")" $googletest

# shellcheck disable=SC2153  # these come from the environment
where="$CORVANE_TEST_DATABASE/$CORVANE_TEST_HOST:$CORVANE_TEST_PORT"
"$folder/program" "$CORVANE_TEST_USER:$CORVANE_TEST_PASSWORD@$where" "$CORVANE_TEST_HOST" "$CORVANE_TEST_PORT" \
  "$CORVANE_TEST_USER" "$CORVANE_TEST_PASSWORD" "$CORVANE_TEST_DATABASE" >"$folder/printed"
diff -u "$folder/expected" "$folder/printed"
