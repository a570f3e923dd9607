# Dataset benchmarks. bench_dataset_gen writes dataset files; bench_dataset_phase
# runs one measured phase per process (see its header comment);
# dataset_compare.py runs them at 10k, 100k and 1M rows and prints each figure
# next to its baseline from the same run.
veld_benchmark(NAME bench_dataset_gen SRCS dataset_gen.cc)
veld_benchmark(NAME bench_dataset_phase SRCS dataset_phase.cc)

# Export of a data element to a typed SQLite table against raw SQLite inserts,
# and ParseFile + export against a raw libxml2 parse + raw inserts.
veld_benchmark(NAME export_bench SRCS export_bench.cc DEPS SQLite::SQLite3 LibXml2::LibXml2)

# One export of a dataset file per process, streamed or through the held
# document; file_export_compare.py runs it at 100k, 1M and 10M rows next to
# the held path and an lxml + pandas script.
veld_benchmark(NAME bench_file_export_phase SRCS file_export_phase.cc DEPS SQLite::SQLite3)
