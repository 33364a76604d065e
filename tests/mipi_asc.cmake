pwc_test(mipi_asc_test
    SOURCES ${CMAKE_CURRENT_LIST_DIR}/mipi_asc_test.cpp
    AREAS pwc_engine pwc_panel pwc_lator pwc_data)
