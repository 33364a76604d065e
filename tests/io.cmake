pwc_test(io_test
    SOURCES ${CMAKE_CURRENT_LIST_DIR}/io_banks_test.cpp
            ${CMAKE_CURRENT_LIST_DIR}/io_types_test.cpp
            ${CMAKE_CURRENT_LIST_DIR}/io_power_test.cpp
    AREAS pwc_engine pwc_panel pwc_lator pwc_data)
