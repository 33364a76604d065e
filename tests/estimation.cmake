pwc_test(estimation_test
    SOURCES ${CMAKE_CURRENT_LIST_DIR}/estimation_test.cpp
    AREAS pwc_engine pwc_panel pwc_lator pwc_data)
pwc_test(estimation_drc_test
    SOURCES ${CMAKE_CURRENT_LIST_DIR}/estimation_drc_test.cpp
    AREAS pwc_engine pwc_panel pwc_lator pwc_data)
if(TARGET pwc_host)
    find_package(nlohmann_json REQUIRED)
    pwc_test(estimation_host_test
        SOURCES ${CMAKE_CURRENT_LIST_DIR}/estimation_host_test.cpp
        AREAS pwc_host nlohmann_json::nlohmann_json)
endif()
