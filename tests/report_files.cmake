pwc_test(report_files_test
    SOURCES ${CMAKE_CURRENT_LIST_DIR}/report_files_test.cpp
    AREAS pwc_engine pwc_panel pwc_lator pwc_data)
