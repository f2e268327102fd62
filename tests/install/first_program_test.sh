#!/bin/sh
# first_program_test.sh PAGE LIBRARY COMPILER [OPTION...]: what the page says that goes wrong first goes wrong so. Each
# message that comes is shown by the page, word by word. 77 (skipped) without a server.
set -eu
page=$1 library=$2 compiler=$3
shift 3
[ -n "${CORVANE_TEST_PORT:-}" ] || { echo "no server: CORVANE_TEST_PORT is not set"; exit 77; }
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
export LC_ALL=C

awk '$0 == "```cpp" { inside = 1; next } $0 == "```" { inside = 0 } inside' "$page" >"$folder/first.cpp"
unset PKG_CONFIG_PATH LD_LIBRARY_PATH MYSQL_TCP_PORT
export MYSQL_UNIX_PORT="$folder/socket"  # where there is no server, whatever the system has

shows() {  # MESSAGE LOG
  grep -qF -- "$1" "$2" || { echo "not said: $1"; head "$2"; exit 1; }
  grep -qF -- "$1" "$page" || { echo "not on the page: $1"; exit 1; }
}

refused() {  # MESSAGE COMMAND...
  message=$1
  shift
  if "$@" >"$folder/log" 2>&1; then echo "it works: $*"; exit 1; fi
  sed -i -e "s#$MYSQL_UNIX_PORT#/run/mysqld/mysqld.sock#" -e 's/ (-[0-9]*))$/ (-2))/' "$folder/log"
  shows "$message" "$folder/log"
}

cd "$folder"
case $("$compiler" --version) in
  *clang*) missing="'corvane/corvane.h' file not found" ;;
  *) missing='fatal error: corvane/corvane.h: No such file or directory' ;;
esac
refused "$missing" "$compiler" -std=c++17 -nostdinc -I"$folder" -c first.cpp
refused 'Package corvane was not found in the pkg-config search path.' \
  env PKG_CONFIG_LIBDIR="$folder" pkg-config --cflags corvane
refused 'undefined reference to `typeinfo for AException'"'" "$compiler" -std=c++17 "$@" first.cpp
"$compiler" -std=c++17 "$@" first.cpp -o first "$library"
# A library that is installed for the whole system would be found.
if PATH=$PATH:/sbin:/usr/sbin ldconfig -p | grep -q libcorvane.mysql.so.0; then
  echo "not tried: a program that does not find the library, since it is installed on this system"
else
  refused 'error while loading shared libraries: libcorvane.mysql.so.0: cannot open shared object file: No such file or directory' \
    ./first x
fi

LD_LIBRARY_PATH=$(dirname "$library")
export LD_LIBRARY_PATH
user=$CORVANE_TEST_USER password=$CORVANE_TEST_PASSWORD database=$CORVANE_TEST_DATABASE
# shellcheck disable=SC2153  # these come from the environment
server=$CORVANE_TEST_HOST:$CORVANE_TEST_PORT
refused usage ./first
refused "Error 2002 (Can't connect to server on '127.0.0.1' (" ./first "$user:$password@$database/127.0.0.1:1"
refused "Error 2002 (Can't connect to local server through socket '/run/mysqld/mysqld.sock' (2))" \
  ./first "$user:$password@$database"
refused "Error 2002 (Can't connect to local server through socket '/run/mysqld/mysqld.sock' (2))" \
  ./first "$user:$password@$database/localhost:$CORVANE_TEST_PORT"
refused "Error 2005 (Unknown server host 'corvane' (-2))" ./first "$user:$password@$CORVANE_TEST_HOST/corvane:1"
refused "Error 1045 (Access denied for user '$user'@'127.0.0.1' (using password: YES))" \
  ./first "$user:not-$password@$database/$server"
refused "Error 1049 (Unknown database 'nosuch')" ./first "$user:$password@nosuch/$server"
