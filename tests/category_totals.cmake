pwc_test(category_totals_test
    SOURCES ${CMAKE_CURRENT_LIST_DIR}/category_totals_test.cpp
    AREAS pwc_engine pwc_panel pwc_lator pwc_data)
