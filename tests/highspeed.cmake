# SERDES and PCS, DSP and hard blocks, on the mid-range sample architectures.
pwc_test(highspeed_test
    SOURCES ${CMAKE_CURRENT_LIST_DIR}/highspeed_serdes_test.cpp
            ${CMAKE_CURRENT_LIST_DIR}/highspeed_dsp_faba_test.cpp
    AREAS pwc_engine pwc_panel pwc_lator pwc_data)

# The pwc command on the new families.
if(TARGET pwc_host)
    find_package(nlohmann_json REQUIRED)
    pwc_test(highspeed_cli_test
        SOURCES ${CMAKE_CURRENT_LIST_DIR}/highspeed_cli_test.cpp
        AREAS pwc_host nlohmann_json::nlohmann_json)
endif()
