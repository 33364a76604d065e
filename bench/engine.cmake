pwc_bench(bench_engine
    SOURCES ${CMAKE_CURRENT_LIST_DIR}/bench_engine.cpp
    AREAS pwc_engine pwc_panel pwc_lator pwc_data)
