#!/bin/bash
# quick_start_test.sh BUILD_DIR SOURCE_DIR COMPILER: the README's program with the installed library, found by
# pkg-config. 77 (skipped) without a server.
set -euo pipefail
build=$1 source=$2 compiler=$3
# shellcheck source-path=SCRIPTDIR
. "$source/tests/install/scratch.sh"

install_into "$folder/prefix"
library=$(find "$folder/prefix" -name libcorvane.mysql.so)
export PKG_CONFIG_PATH=${library%/*}/pkgconfig
# shellcheck disable=SC2046 # options are words
"$source/tests/install/readme_test.sh" "$source/README.md" "$library" "$compiler" $(pkg-config --cflags --libs corvane)
