pwc_test(formula_test
    SOURCES ${CMAKE_CURRENT_LIST_DIR}/formula_models_test.cpp
            ${CMAKE_CURRENT_LIST_DIR}/formula_equations_test.cpp
            ${CMAKE_CURRENT_LIST_DIR}/formula_numbers_test.cpp
    AREAS pwc_engine pwc_panel pwc_lator pwc_data)
