target_sources(unit_tests PRIVATE
  ${CMAKE_CURRENT_LIST_DIR}/allocator_test.cpp
  ${CMAKE_CURRENT_LIST_DIR}/append_to_test.cpp
  ${CMAKE_CURRENT_LIST_DIR}/attribute_test.cpp
  ${CMAKE_CURRENT_LIST_DIR}/domain_test.cpp
)
