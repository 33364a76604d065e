pwc_test(engine_test
    SOURCES ${CMAKE_CURRENT_LIST_DIR}/engine_setup_test.cpp
            ${CMAKE_CURRENT_LIST_DIR}/engine_driver_test.cpp
    AREAS pwc_engine pwc_panel pwc_lator pwc_data)
pwc_test(engine_power_test
    SOURCES ${CMAKE_CURRENT_LIST_DIR}/engine_power_test.cpp
            ${CMAKE_CURRENT_LIST_DIR}/engine_theta_save_test.cpp
    AREAS pwc_engine pwc_panel pwc_lator pwc_data)
pwc_test(engine_totals_test
    SOURCES ${CMAKE_CURRENT_LIST_DIR}/engine_totals_test.cpp
    AREAS pwc_engine pwc_panel pwc_lator pwc_data)
