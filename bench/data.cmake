pwc_bench(bench_data SOURCES bench_data.cpp AREAS pwc_data)
