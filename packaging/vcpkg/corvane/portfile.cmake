# An overlay port, for the tree that it lies in:
#
#   vcpkg install corvane --triplet x64-linux-dynamic --overlay-ports=packaging/vcpkg
#
# Not run: vcpkg was not at hand where this was written. Its commands and their arguments were only checked against
# stand-ins of the same names, by tests/install/recipes_test.sh; neither the build with vcpkg's own Boost and client
# library nor vcpkg's checks of the installed files have been seen to pass.

vcpkg_check_linkage(ONLY_DYNAMIC_LIBRARY)
get_filename_component(SOURCE_PATH "${CMAKE_CURRENT_LIST_DIR}/../../.." ABSOLUTE)

vcpkg_find_acquire_program(PKGCONFIG)
vcpkg_cmake_configure(
  SOURCE_PATH "${SOURCE_PATH}"
  OPTIONS
    -DCORVANE_BUILD_TESTS=OFF
    -DCORVANE_BUILD_EXAMPLES=OFF
    -DCORVANE_WERROR=OFF
    "-DPKG_CONFIG_EXECUTABLE=${PKGCONFIG}"
)
vcpkg_cmake_install()
vcpkg_cmake_config_fixup(CONFIG_PATH lib/cmake/corvane)
vcpkg_fixup_pkgconfig()

# Headers once, and no docs, as vcpkg wants it.
file(REMOVE_RECURSE
  "${CURRENT_PACKAGES_DIR}/debug/include"
  "${CURRENT_PACKAGES_DIR}/debug/share"
  "${CURRENT_PACKAGES_DIR}/share/doc"
)
file(INSTALL "${CMAKE_CURRENT_LIST_DIR}/usage" DESTINATION "${CURRENT_PACKAGES_DIR}/share/${PORT}")
file(WRITE "${CURRENT_PACKAGES_DIR}/share/${PORT}/copyright" "The owner of Corvane has not chosen a licence yet.\n")
