pwc_test(panel_test
    SOURCES ${CMAKE_CURRENT_LIST_DIR}/panel_text_test.cpp ${CMAKE_CURRENT_LIST_DIR}/panel_panel_test.cpp
    AREAS pwc_panel pwc_data)
