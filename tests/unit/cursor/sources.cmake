target_sources(unit_tests PRIVATE
  ${CMAKE_CURRENT_LIST_DIR}/deleter_test.cpp
  ${CMAKE_CURRENT_LIST_DIR}/updater_test.cpp
)
