# Appending to a typed SQLite table through the table store against raw SQLite.
veld_benchmark(NAME tablestore_bench SRCS tablestore_bench.cc DEPS SQLite::SQLite3)
