target_sources(unit_tests PRIVATE ${CMAKE_CURRENT_LIST_DIR}/map_buffer_test.cpp)
