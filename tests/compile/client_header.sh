#!/bin/sh
# client_header.sh COMPILER SOURCE_DIR INCLUDE...: the forward declarations of the handle types agree with the client
# library's header, whichever of the two comes first.
set -eu
compiler=$1 source=$2
shift 2
command -v "$compiler" >/dev/null || { echo "no $compiler here"; exit 77; }
includes=""
for folder in "$@"; do includes="$includes -I$folder"; done
check() {
  # shellcheck disable=SC2086  # the folders are several words
  printf '%s\n' "$@" 'MYSQL* handle(MYSQL* h); MYSQL* handle(MYSQL* h) { mysql_close(h); return h; }' \
    'void take(ASSession& s); void take(ASSession& s) { MYSQL_RES* r = s.FetchMultiple(); mysql_free_result(r); }' |
    "$compiler" -std=c++17 -fsyntax-only -Wall -Wextra -Werror $includes "-I$source" -x c++ -
}
check '#include <corvane/corvane.h>' '#include <mysql.h>'
check '#include <mysql.h>' '#include <corvane/corvane.h>'
