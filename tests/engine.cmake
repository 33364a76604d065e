pwc_test(engine_test
    SOURCES ${CMAKE_CURRENT_LIST_DIR}/engine_setup_test.cpp
            ${CMAKE_CURRENT_LIST_DIR}/engine_driver_test.cpp
    AREAS pwc_engine pwc_panel pwc_lator pwc_data)
