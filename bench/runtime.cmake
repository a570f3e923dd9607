# Display formats and dates from text against the C library's equivalents.
veld_benchmark(NAME format_bench SRCS format_bench.cc)
