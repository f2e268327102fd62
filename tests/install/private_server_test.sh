#!/bin/sh
# private_server_test.sh SCRIPT PAGE: tools/private-server works where somebody has copied it to: it sets all variables
# that the page names, gives the command's status on, reads the options of the server's folder, and leaves nothing
# behind. 77 (skipped) without the server's package.
set -eu
script=$1 page=$2
PATH=$PATH:/usr/sbin
command -v mariadbd >/dev/null || { echo "no mariadbd: it is in the package mariadb-server-core"; exit 77; }
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT

cp "$script" "$folder/"
cd "$folder"
variables=$(sed -n 's/^| `\(CORVANE\|MYSQL\)_.*/&/p' "$page" | cut -d '|' -f 2 | tr -d '`, ' |
  sed 's/\(CORVANE\|MYSQL\)_/ &/g')
count=$(echo "$variables" | wc -w)
[ "$count" -ge 11 ] || { echo "$page names $count variables: $variables"; exit 1; }
cat >steps.sh <<'END'
for variable; do
  eval "value=\${$variable:-}"
  [ -n "$value" ] || { echo "$variable is not set"; exit 1; }
done
[ -S "$CORVANE_TEST_SOCKET" ] || { echo "there is no socket"; exit 1; }
echo --no-such-option-of-a-server >"$CORVANE_TEST_SERVER_DIR/options"
"$CORVANE_TEST_SERVER_TOOL" stop "$CORVANE_TEST_SERVER_DIR" || exit 2
if "$CORVANE_TEST_SERVER_TOOL" start "$CORVANE_TEST_SERVER_DIR" 2>/dev/null; then echo "the options are not read"; exit 3; fi
rm "$CORVANE_TEST_SERVER_DIR/options"
"$CORVANE_TEST_SERVER_TOOL" start "$CORVANE_TEST_SERVER_DIR" || exit 4
echo "$CORVANE_TEST_SERVER_DIR" >where
exit 43
END
status=0
# shellcheck disable=SC2086  # names are words
env -u CORVANE_TEST_SERVER ./private-server run -- sh "$folder/steps.sh" $variables || status=$?
[ "$status" = 43 ] || { echo "it ended with $status instead of 43"; exit 1; }
[ ! -e "$(cat where)" ] || { echo "$(cat where) is still there"; exit 1; }
