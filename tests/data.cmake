pwc_test(data_test
    SOURCES data_store_test.cpp data_format_test.cpp data_util_test.cpp
    AREAS pwc_data)
