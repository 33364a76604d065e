pwc_test(statistics_test
    SOURCES ${CMAKE_CURRENT_LIST_DIR}/statistics_test.cpp
    AREAS pwc_engine pwc_panel pwc_lator pwc_data)
pwc_test(debug_pages_test
    SOURCES ${CMAKE_CURRENT_LIST_DIR}/debug_pages_test.cpp
    AREAS pwc_engine pwc_panel pwc_lator pwc_data)
