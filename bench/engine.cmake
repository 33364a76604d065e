pwc_bench(bench_engine
    SOURCES ${CMAKE_CURRENT_LIST_DIR}/bench_engine.cpp ${CMAKE_CURRENT_LIST_DIR}/designs.cpp
    AREAS pwc_engine pwc_panel pwc_lator pwc_data)
# The process benchmark spawns the pwc command of the same tree.
if(TARGET pwc_cli)
    add_dependencies(bench_engine pwc_cli)
    target_compile_definitions(bench_engine PRIVATE PWC_BENCH_PWC="$<TARGET_FILE:pwc_cli>")
else()
    target_compile_definitions(bench_engine PRIVATE PWC_BENCH_PWC="")
endif()
