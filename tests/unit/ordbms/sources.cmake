target_sources(unit_tests PRIVATE
  ${CMAKE_CURRENT_LIST_DIR}/comparison_test.cpp
  ${CMAKE_CURRENT_LIST_DIR}/field_name_test.cpp
  ${CMAKE_CURRENT_LIST_DIR}/old_cursor_test.cpp
  ${CMAKE_CURRENT_LIST_DIR}/old_filter_test.cpp
  ${CMAKE_CURRENT_LIST_DIR}/rdbms_test.cpp
)
