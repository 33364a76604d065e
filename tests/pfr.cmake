pwc_test(pfr_test
    SOURCES ${CMAKE_CURRENT_LIST_DIR}/pfr_test.cpp
    AREAS pwc_engine pwc_panel pwc_lator pwc_data)
if(TARGET pwc_host)
    find_package(nlohmann_json REQUIRED)
    pwc_test(pfr_cli_test
        SOURCES ${CMAKE_CURRENT_LIST_DIR}/pfr_cli_test.cpp
        AREAS pwc_host nlohmann_json::nlohmann_json)
endif()
