pwc_test(fabric_clocks_ram_test
    SOURCES ${CMAKE_CURRENT_LIST_DIR}/fabric_clocks_test.cpp
            ${CMAKE_CURRENT_LIST_DIR}/fabric_blockram_test.cpp
    AREAS pwc_engine pwc_panel pwc_lator pwc_data)
