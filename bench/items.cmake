# Items documents: Parse and Save against a raw libxml2 parse.
veld_benchmark(NAME items_bench SRCS items_bench.cc DEPS LibXml2::LibXml2)
