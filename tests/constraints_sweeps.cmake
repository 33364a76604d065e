pwc_test(constraints_sweeps_test
    SOURCES ${CMAKE_CURRENT_LIST_DIR}/constraints_test.cpp
            ${CMAKE_CURRENT_LIST_DIR}/graph_test.cpp
    AREAS pwc_engine pwc_panel pwc_lator pwc_data)
if(TARGET pwc_host)
    find_package(nlohmann_json REQUIRED)
    pwc_test(sweep_host_test
        SOURCES ${CMAKE_CURRENT_LIST_DIR}/sweep_host_test.cpp
        AREAS pwc_host nlohmann_json::nlohmann_json)
endif()
