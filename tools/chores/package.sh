# shellcheck shell=bash disable=SC2154  # part of ./run
# The Debian packages.

# What debian/control asks for, as packages.
package_build_dependencies() {
  sed -n '/^Build-Depends/,/^Standards-Version/s/^ \([a-z0-9+.-]*\).*/\1/p' debian/control |
    sed -e 's/^debhelper-compat$/debhelper/' -e 's/^dh-sequence-sphinxdoc$/sphinx-common/'
}

# As somebody does who has nothing but the source package; but for the unit tests, which ./run test runs, unless
# DEB_BUILD_OPTIONS says otherwise.
package() {
  only_options "" "" "$@"
  local folder=build/packages dependencies
  mapfile -t dependencies < <(package_build_dependencies)
  need package "${dependencies[@]}" "${build_packages[@]}" "${server_packages[@]}" dpkg-dev fakeroot lintian
  rm -rf "$folder"
  mkdir -p "$folder"
  step "Building the source package"
  (cd "$folder" && dpkg-source --build ../.. && dpkg-source --extract corvane_*.dsc source)
  step "Building the packages from it"
  export DEB_BUILD_OPTIONS=${DEB_BUILD_OPTIONS-terse nocheck parallel=$(nproc)}
  (cd "$folder/source" && dpkg-buildpackage --unsigned-source --unsigned-changes)
  step "Looking the packages over with lintian"
  lintian --allow-root --info --fail-on error,warning "$folder"/*.changes
  step "Trying the packages"
  tools/private-server run -- tests/install/packages_test.sh "$folder" "$PWD"
  step "Built:"
  ls -1 "$folder"/*.dsc "$folder"/*.tar.* "$folder"/*.deb
}
