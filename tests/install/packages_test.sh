#!/bin/bash
# packages_test.sh FOLDER SOURCE_DIR: installs the Debian packages of FOLDER into a scratch root that has the packages of
# this system, so that what they depend on is checked; builds README's program against them and runs it on a server;
# and removes them. Needs nobody to be root.
set -euo pipefail
packages=$1 source=$2 build=$(realpath "$1")
# shellcheck source-path=SCRIPTDIR
. "$source/tests/install/scratch.sh"

root=$folder/root
mkdir -p "$root"/var/lib/dpkg/{info,updates,triggers}
cp /var/lib/dpkg/info/*.list "$root/var/lib/dpkg/info/"
sed '/^Package: libcorvane/,/^$/d' /var/lib/dpkg/status >"$root/var/lib/dpkg/status"
mapfile -t names < <(for package in "$packages"/*.deb; do dpkg-deb --field "$package" Package; done)
as_root=()
if ((EUID != 0)); then as_root=(fakeroot); fi

# Triggers, which are other packages' scripts, are left out: they would be run in a root without programs.
dpkg_there() {
  quietly "${as_root[@]}" dpkg --root="$root" --log=/dev/null --force-not-root --force-script-chrootless --no-triggers "$@"
}

dpkg_there --install "$packages"/*.deb
for name in "${names[@]}"; do
  [[ $(dpkg-query --admindir="$root/var/lib/dpkg" -W -f '${db:Status-Status}' "$name") == installed ]] ||
    fail "$name is not installed"
done

library=$(find "$root/usr/lib" -name libcorvane.mysql.so)
export PKG_CONFIG_PATH=${library%/*}/pkgconfig
[[ $(pkg-config --variable=libdir corvane) == "$root"/* ]] || fail "another installation was found"
# shellcheck disable=SC2046 # options are words
"$source/tests/install/readme_test.sh" "$source/README.md" "$library" c++ $(pkg-config --cflags --libs corvane)

project=$folder/project compiler=c++
make_project find_package "$project"
configure "$project" -DCMAKE_PREFIX_PATH="$root/usr"
quietly cmake --build "$project/build"
runs "$project/build/program"
[[ -e $root/usr/share/doc/libcorvane-doc/html/index.html ]] || fail "the site is missing"

dpkg_there --purge "${names[@]}"
! find "$root" -path "$root/var/lib/dpkg" -prune -o ! -type d -print | grep . || fail "this stays behind"
echo "The packages can be installed, README's program and a consumer are built with them and run, and they go away whole."
