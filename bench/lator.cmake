pwc_bench(bench_lator SOURCES bench_lator.cpp AREAS pwc_lator)
