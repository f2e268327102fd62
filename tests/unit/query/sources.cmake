target_sources(unit_tests PRIVATE
  ${CMAKE_CURRENT_LIST_DIR}/attribute_functions_test.cpp
  ${CMAKE_CURRENT_LIST_DIR}/attribute_predicates_test.cpp
  ${CMAKE_CURRENT_LIST_DIR}/comparison_test.cpp
  ${CMAKE_CURRENT_LIST_DIR}/data_predicates_test.cpp
  ${CMAKE_CURRENT_LIST_DIR}/expression_test.cpp
  ${CMAKE_CURRENT_LIST_DIR}/filter_test.cpp
  ${CMAKE_CURRENT_LIST_DIR}/group_attribute_test.cpp
  ${CMAKE_CURRENT_LIST_DIR}/group_comparison_test.cpp
  ${CMAKE_CURRENT_LIST_DIR}/order_test.cpp
  ${CMAKE_CURRENT_LIST_DIR}/overridden_column_test.cpp
  ${CMAKE_CURRENT_LIST_DIR}/project_test.cpp
  ${CMAKE_CURRENT_LIST_DIR}/setter_test.cpp
)
