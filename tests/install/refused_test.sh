#!/bin/bash
# refused_test.sh BUILD_DIR SOURCE_DIR COMPILER: where something is missing or does not serve, cmake says what, and how to
# get it. Each case first is such a place; what makes it one is faked as little as can be.
set -euo pipefail
build=$1 source=$2 compiler=$3
# shellcheck source-path=SCRIPTDIR
. "$source/tests/install/scratch.sh"
cases=0

# A message's words stand in it in this order, whatever lines they were broken into.
says() {  # WORDS
  [[ $(tr -s ' \n' ' ' <"$folder/said") == *"$1"* ]] || { cat "$folder/said"; fail "this is not said: $1"; }
  cases=$((cases + 1))
}

refuses() {  # SOURCE [OPTION of cmake...]
  local project=$1
  shift
  rm -rf "$folder/refused"
  ! cmake -G Ninja -S "$project" -B "$folder/refused" -DCMAKE_CXX_COMPILER="$compiler" "$@" >"$folder/said" 2>&1 ||
    fail "cmake does not mind: $*"
}

# A compiler that gives itself out as an older one, or has another standard library before its own.
make_compiler() {  # NAME [OPTION...]
  printf '#!/bin/sh\nexec "%s" %s "$@"\n' "$(type -P "$compiler")" "${*:2}" >"$folder/$1"
  chmod +x "$folder/$1"
}

package_config() {  # WORDS
  printf 'prefix=/opt/client\nName: c\nDescription: c\nVersion: 5.5.1\nCflags: -I%s/client\nLibs:\n' "$folder" \
    >"$folder/client/mysqlclient.pc"
}

the_library() {
  refuses "$source" -DCMAKE_SYSTEM_NAME=FreeBSD
  says "Corvane is built for Linux, and this is FreeBSD."
  refuses "$source" -DCMAKE_CXX_FLAGS=-m32 -DCMAKE_TRY_COMPILE_TARGET_TYPE=STATIC_LIBRARY
  says "Corvane is built for 64-bit little-endian machines"
  echo 'set(CMAKE_CXX_BYTE_ORDER BIG_ENDIAN)' >"$folder/big_endian.cmake"
  refuses "$source" -DCMAKE_PROJECT_corvane_INCLUDE="$folder/big_endian.cmake"
  says "Corvane is built for 64-bit little-endian machines"

  # The library of gcc 10 reads no floating-point numbers in <charconv>.
  mkdir "$folder/old_headers"
  printf '#include <system_error>\nnamespace std { struct from_chars_result { char const* ptr; errc ec; }; }\n' \
    >"$folder/old_headers/charconv"
  make_compiler old_library "-isystem $folder/old_headers"
  compiler=$folder/old_library refuses "$source"
  says "Corvane needs a C++17 compiler with the standard library of gcc 11 or later"
  says "$folder/old_library. Debian, Ubuntu: apt-get install g++"

  refuses "$source" -DCMAKE_DISABLE_FIND_PACKAGE_Boost=ON
  says "Boost 1.74 or later, of its library date_time; none was found. Debian, Ubuntu: apt-get install libboost-date-time-dev"
  mkdir -p "$folder/boost/include/boost"
  touch "$folder/boost/include/boost/config.hpp"
  printf '#define BOOST_VERSION 106600\n#define BOOST_LIB_VERSION "1_66"\n' >"$folder/boost/include/boost/version.hpp"
  refuses "$source" -DBOOST_ROOT="$folder/boost" -DBoost_NO_SYSTEM_PATHS=ON -DBoost_NO_BOOST_CMAKE=ON
  says "of its library date_time; 1.66.0 was found."

  refuses "$source" -DPKG_CONFIG_EXECUTABLE=/nowhere/pkg-config
  says "Corvane needs pkg-config"
  says "apt-get install pkg-config"
  PKG_CONFIG_LIBDIR=/nowhere refuses "$source"
  says "pkg-config knows of none, neither as mysqlclient nor as libmariadb or mariadb. Debian, Ubuntu: apt-get install default-libmysqlclient-dev"
  mkdir "$folder/client"
  package_config
  export PKG_CONFIG_LIBDIR=$folder/client
  refuses "$source"
  says "pkg-config found mysqlclient 5.5.1 in /opt/client, which is not whole: with its options mysql.h cannot be included"
  printf 'struct st_mysql; typedef st_mysql MYSQL; enum mysql_option { MYSQL_OPT_READ_TIMEOUT };\n' >"$folder/client/mysql.h"
  refuses "$source"
  says "pkg-config found mysqlclient 5.5.1 in /opt/client, which is too old, or not whole"
  unset PKG_CONFIG_LIBDIR
  # Once it is cured, the same folder can be configured: nothing of the refusal is remembered.
  quietly cmake -DCORVANE_BUILD_TESTS=OFF "$folder/refused"
}

consume() {  # FIND_PACKAGE [OPTION of cmake...]
  mkdir -p "$folder/consumer"
  printf 'cmake_minimum_required(VERSION 3.16)\nproject(consumer LANGUAGES CXX)\n%s\n' "$1" >"$folder/consumer/CMakeLists.txt"
  refuses "$folder/consumer" -DCMAKE_PREFIX_PATH="$folder/prefix" "${@:2}"
}

the_package() {
  install_into "$folder/prefix"
  consume 'find_package(corvane 0.2 REQUIRED)'
  says 'corvaneConfig.cmake, version: 0.1.0'
  consume 'find_package(corvane 1.0 REQUIRED)'
  says 'corvaneConfig.cmake, version: 0.1.0'
  consume 'find_package(corvane 0.1.1 REQUIRED)'
  says 'corvaneConfig.cmake, version: 0.1.0'
  consume 'find_package(corvane REQUIRED COMPONENTS oracle)'
  says "Corvane has no components, and 'oracle' is asked for."
  make_compiler gcc8 -U__GNUC__ -D__GNUC__=8
  compiler=$folder/gcc8
  consume 'find_package(corvane REQUIRED)'
  says "Corvane needs gcc 9, clang 9 or later, and this is GNU 8."
  says "Choose another with cmake --fresh -DCMAKE_CXX_COMPILER=..."
}

# Each header by itself, as it is for those who set the wrong options: one message, before all that follows from it.
the_headers() {
  local header option message
  for header in $(cd "$folder/prefix/include" && find corvane -name '*.h'); do
    for option in -std=c++14 "-std=c++17 -fno-rtti" "-std=c++17 -fno-exceptions"; do
      # shellcheck disable=SC2086 # options are words
      printf '#include "%s"\n' "$header" | "$compiler" $option "-I$folder/prefix/include" -fsyntax-only -x c++ - \
        >"$folder/said" 2>&1 || true
      case $option in
        *14) message="Corvane needs C++17: compile with -std=c++17 or later." ;;
        *rtti) message="Corvane needs run-time type information: compile without -fno-rtti." ;;
        *) message="Corvane needs exceptions: compile without -fno-exceptions." ;;
      esac
      [[ -s $folder/said ]] || continue  # one that does not mind
      [[ $(grep -m 1 'error:' "$folder/said") == *"$message"* ]] || { cat "$folder/said"; fail "$header $option"; }
      (($(grep -c 'error:' "$folder/said") == 2)) || { cat "$folder/said"; fail "$header $option: more is said"; }
      cases=$((cases + 1))
    done
  done
}

the_library
the_package
compiler=$3
the_headers
count "$cases" "wrong surroundings and options" "refused with a message that names the cure"
