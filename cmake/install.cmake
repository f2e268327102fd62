# Library, headers, CMake package and pkg-config file.
include(CMakePackageConfigHelpers)

install(TARGETS corvane EXPORT corvaneTargets LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})
foreach(header IN LISTS CORVANE_PUBLIC_HEADERS)
  get_filename_component(folder ${header} DIRECTORY)
  install(FILES ${header} DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/${folder})
endforeach()
if(CORVANE_CLIENT_TAGS_DIR)
  install(FILES ${CORVANE_CLIENT_TAGS_DIR}/corvane/session/mysql_fwd.h
    DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/corvane/session)
endif()

set(CORVANE_PACKAGE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/corvane)
install(EXPORT corvaneTargets NAMESPACE corvane:: DESTINATION ${CORVANE_PACKAGE_DIR})
configure_package_config_file(cmake/corvaneConfig.cmake.in ${PROJECT_BINARY_DIR}/corvaneConfig.cmake
  INSTALL_DESTINATION ${CORVANE_PACKAGE_DIR})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/corvaneConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/corvaneConfig.cmake ${PROJECT_BINARY_DIR}/corvaneConfigVersion.cmake
  DESTINATION ${CORVANE_PACKAGE_DIR})

# Found from where the file lies, so that an installed tree can be moved.
file(RELATIVE_PATH CORVANE_PC_TO_PREFIX /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
configure_file(cmake/corvane.pc.in ${PROJECT_BINARY_DIR}/corvane.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/corvane.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
