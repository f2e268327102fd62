# Library, headers, CMake package, pkg-config file and docs. The components are there for who wants only some of them.
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

target_include_directories(corvane PUBLIC "$<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>")
install(TARGETS corvane EXPORT corvaneTargets
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT corvane_library NAMELINK_COMPONENT corvane_development)
foreach(header IN LISTS CORVANE_PUBLIC_HEADERS)
  get_filename_component(folder ${header} DIRECTORY)
  install(FILES ${header} DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/${folder} COMPONENT corvane_development)
endforeach()
if(CORVANE_CLIENT_TAGS_DIR)
  install(FILES ${CORVANE_CLIENT_TAGS_DIR}/corvane/session/mysql_fwd.h
    DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/corvane/session COMPONENT corvane_development)
endif()

# Before 1.0 a program asks for the minor version that it was written for, and gets no other.
set(CORVANE_PACKAGE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/corvane)
install(EXPORT corvaneTargets NAMESPACE corvane:: DESTINATION ${CORVANE_PACKAGE_DIR} COMPONENT corvane_development)
configure_package_config_file(cmake/corvaneConfig.cmake.in ${PROJECT_BINARY_DIR}/corvaneConfig.cmake
  INSTALL_DESTINATION ${CORVANE_PACKAGE_DIR} NO_SET_AND_CHECK_MACRO NO_CHECK_REQUIRED_COMPONENTS_MACRO)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/corvaneConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/corvaneConfig.cmake ${PROJECT_BINARY_DIR}/corvaneConfigVersion.cmake
  DESTINATION ${CORVANE_PACKAGE_DIR} COMPONENT corvane_development)

# Found from where the file lies, so that an installed tree can be moved. Folders that were given whole stay so. Blanks
# would end an option.
set(CORVANE_PC_PREFIX ${CMAKE_INSTALL_PREFIX})
if(NOT IS_ABSOLUTE "${CMAKE_INSTALL_LIBDIR}")
  file(RELATIVE_PATH CORVANE_PC_PREFIX /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
  string(REGEX REPLACE "/$" "" CORVANE_PC_PREFIX "\${pcfiledir}/${CORVANE_PC_PREFIX}")
endif()
foreach(kind IN ITEMS LIB INCLUDE)
  set(CORVANE_PC_${kind}DIR "${CMAKE_INSTALL_${kind}DIR}")
  if(NOT IS_ABSOLUTE "${CORVANE_PC_${kind}DIR}")
    string(PREPEND CORVANE_PC_${kind}DIR "\${prefix}/")
  endif()
endforeach()
foreach(folder IN ITEMS PREFIX LIBDIR INCLUDEDIR)
  string(REPLACE " " "\\ " CORVANE_PC_${folder} "${CORVANE_PC_${folder}}")
endforeach()
configure_file(cmake/corvane.pc.in ${PROJECT_BINARY_DIR}/corvane.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/corvane.pc
  DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT corvane_development)

# Side by side as in the source tree, so that the links hold; and the site, when ./run docs has built it.
install(FILES README.md CHANGELOG.md CONTRIBUTING.md SECURITY.md DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT corvane_documentation)
install(DIRECTORY docs examples
  DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT corvane_documentation PATTERN docs/site EXCLUDE)
install(DIRECTORY build/docs/html DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT corvane_documentation OPTIONAL)
