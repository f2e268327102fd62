target_sources(fault_tests PRIVATE ${CMAKE_CURRENT_LIST_DIR}/record_statements_test.cpp)
