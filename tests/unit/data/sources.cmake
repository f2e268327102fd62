target_sources(unit_tests PRIVATE
  ${CMAKE_CURRENT_LIST_DIR}/blob_test.cpp
  ${CMAKE_CURRENT_LIST_DIR}/data_test.cpp
  ${CMAKE_CURRENT_LIST_DIR}/dcurrency_test.cpp
  ${CMAKE_CURRENT_LIST_DIR}/double_test.cpp
  ${CMAKE_CURRENT_LIST_DIR}/geometry_test.cpp
  ${CMAKE_CURRENT_LIST_DIR}/guid_test.cpp
  ${CMAKE_CURRENT_LIST_DIR}/int64_test.cpp
  ${CMAKE_CURRENT_LIST_DIR}/int_test.cpp
  ${CMAKE_CURRENT_LIST_DIR}/literal_test.cpp
  ${CMAKE_CURRENT_LIST_DIR}/real_blob_test.cpp
  ${CMAKE_CURRENT_LIST_DIR}/str_test.cpp
  ${CMAKE_CURRENT_LIST_DIR}/time_test.cpp
  ${CMAKE_CURRENT_LIST_DIR}/vstr_test.cpp
)
