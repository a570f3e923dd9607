# Data-bound control helpers: tree loading and row removal against a raw
# libxml2 parse.
veld_benchmark(NAME tree_view_bench SRCS tree_view_bench.cc DEPS LibXml2::LibXml2)
veld_benchmark(NAME image_combo_bench SRCS image_combo_bench.cc DEPS LibXml2::LibXml2)
veld_benchmark(NAME list_view_bench SRCS list_view_bench.cc DEPS LibXml2::LibXml2 ICU::i18n ICU::uc)
