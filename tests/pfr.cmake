pwc_test(pfr_test
    SOURCES ${CMAKE_CURRENT_LIST_DIR}/pfr_test.cpp
    AREAS pwc_engine pwc_panel pwc_lator pwc_data)
