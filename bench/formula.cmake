pwc_bench(bench_formula SOURCES ${CMAKE_CURRENT_LIST_DIR}/bench_formula.cpp
    AREAS pwc_engine pwc_panel pwc_lator pwc_data)
