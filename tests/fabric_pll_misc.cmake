pwc_test(fabric_pll_misc_test
    SOURCES ${CMAKE_CURRENT_LIST_DIR}/fabric_pll_test.cpp
            ${CMAKE_CURRENT_LIST_DIR}/fabric_misc_efb_test.cpp
    AREAS pwc_engine pwc_panel pwc_lator pwc_data)
