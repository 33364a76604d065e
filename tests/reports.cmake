pwc_test(reports_test
    SOURCES ${CMAKE_CURRENT_LIST_DIR}/report_text_test.cpp
            ${CMAKE_CURRENT_LIST_DIR}/report_html_test.cpp
    AREAS pwc_engine pwc_panel pwc_lator pwc_data)

# Headless Chromium; skips itself when the browser is not installed.
pwc_test(reports_browser_test
    SOURCES ${CMAKE_CURRENT_LIST_DIR}/report_browser_test.cpp
    AREAS pwc_engine pwc_panel pwc_lator pwc_data)
target_compile_definitions(reports_browser_test PRIVATE
    PWC_TEST_BINARY_DIR="${CMAKE_CURRENT_BINARY_DIR}")

if(TARGET pwc_host)
    pwc_test(reports_host_test
        SOURCES ${CMAKE_CURRENT_LIST_DIR}/report_host_test.cpp
        AREAS pwc_host)
endif()
