pwc_test(lator_test
    SOURCES lator_calculator_test.cpp lator_formula_test.cpp lator_boolean_test.cpp
    AREAS pwc_lator)
