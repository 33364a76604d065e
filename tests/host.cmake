# The pwc command, run in-process through its library and once as a program.
if(TARGET pwc_host)
    find_package(nlohmann_json REQUIRED)
    pwc_test(host_test
        SOURCES ${CMAKE_CURRENT_LIST_DIR}/host_cli_test.cpp
        AREAS pwc_host nlohmann_json::nlohmann_json)
    target_compile_definitions(host_test PRIVATE PWC_CLI_BINARY="$<TARGET_FILE:pwc_cli>")
    add_dependencies(host_test pwc_cli)
endif()
