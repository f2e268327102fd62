# Programs and projects of somebody else's. The compilers are named here on purpose: a library that one of them has built
# serves programs that the other builds.
set(scripts ${CMAKE_CURRENT_SOURCE_DIR})
set(built ${PROJECT_BINARY_DIR} ${PROJECT_SOURCE_DIR})

foreach(compiler IN ITEMS g++ clang++)
  foreach(standard IN ITEMS 17 23)
    add_test(NAME installed_find_package_${compiler}_c++${standard}
      COMMAND ${scripts}/installed_test.sh find_package ${built} ${compiler} ${standard})
    set_tests_properties(installed_find_package_${compiler}_c++${standard} PROPERTIES SKIP_RETURN_CODE 77)
  endforeach()
endforeach()
add_test(NAME installed_pkg_config COMMAND ${scripts}/installed_test.sh pkg_config ${built} ${CMAKE_CXX_COMPILER})
add_test(NAME installed_quick_start COMMAND ${scripts}/quick_start_test.sh ${built} ${CMAKE_CXX_COMPILER})
set_tests_properties(installed_quick_start PROPERTIES SKIP_RETURN_CODE 77 RESOURCE_LOCK server LABELS any_server)
add_test(NAME installed_layouts COMMAND ${scripts}/layout_test.sh ${built} ${CMAKE_CXX_COMPILER})
add_test(NAME installed_refusals COMMAND ${scripts}/refused_test.sh ${built} ${CMAKE_CXX_COMPILER})
add_test(NAME installed_by_recipes COMMAND ${scripts}/recipes_test.sh ${built} ${CMAKE_CXX_COMPILER})

foreach(way IN ITEMS add_subdirectory fetch_content)
  add_test(NAME part_by_${way}
    COMMAND ${scripts}/part_test.sh ${way} ${built} ${CMAKE_CXX_COMPILER} ${CMAKE_CXX_COMPILER_LAUNCHER})
  set_tests_properties(part_by_${way} PROPERTIES PROCESSORS 2 TIMEOUT 600)
endforeach()
add_test(NAME installed_as_shown COMMAND ${scripts}/snippets_test.py ${PROJECT_SOURCE_DIR})
add_test(NAME project_of_first-program COMMAND ${scripts}/page_project_test.sh
  ${PROJECT_SOURCE_DIR}/docs/first-program.md first ${built} ${CMAKE_CXX_COMPILER})
add_test(NAME project_of_private-server COMMAND ${scripts}/page_project_test.sh
  ${PROJECT_SOURCE_DIR}/docs/private-server.md my_tests ${built} ${CMAKE_CXX_COMPILER}
  "cmake_minimum_required(VERSION 3.25)" "project(my LANGUAGES CXX)" "enable_testing()"
  "find_package(corvane REQUIRED)")
set_tests_properties(project_of_first-program project_of_private-server PROPERTIES SKIP_RETURN_CODE 77 TIMEOUT 120)
