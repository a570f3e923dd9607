// The baseline most benchmarks set their figures against: a raw libxml2 parse
// of the same text, with the options the library reads documents with, and
// the document freed.
#ifndef VELD_BENCH_RAW_PARSE_H_
#define VELD_BENCH_RAW_PARSE_H_

#include <string>

#include <benchmark/benchmark.h>
#include <libxml/parser.h>

namespace veld_bench {

// Runs the benchmark's loop: one parse of `text` per iteration.
inline void RawLibxml2ParseLoop(benchmark::State& state, const std::string& text) {
  for (auto _ : state) {
    xmlDocPtr doc = xmlReadMemory(text.data(), static_cast<int>(text.size()), nullptr, nullptr,
                                  XML_PARSE_NONET | XML_PARSE_IGNORE_ENC);
    benchmark::DoNotOptimize(doc);
    xmlFreeDoc(doc);
  }
}

}  // namespace veld_bench

#endif  // VELD_BENCH_RAW_PARSE_H_
