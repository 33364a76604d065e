# bench_rss: peak memory of one design in a process of its own.
# pwc_dump: every result and the calculation log, for comparing two builds.
foreach(tool bench_rss pwc_dump)
    pwc_bench(${tool} NO_BENCHMARK_LIB
        SOURCES ${CMAKE_CURRENT_LIST_DIR}/${tool}.cpp ${CMAKE_CURRENT_LIST_DIR}/designs.cpp
        AREAS pwc_engine pwc_panel pwc_lator pwc_data)
endforeach()
