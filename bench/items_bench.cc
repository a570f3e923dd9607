// Items documents: KvoGeneralItems::Parse and Save of 10k, 100k and 1M items,
// next to the baseline of a raw libxml2 parse (xmlReadMemory with the options
// the library's parser uses, document freed) of the same text.
//
// Each item is <option name="itemNNNNNNN" value="value N" type="int"/>, under
// a root with two attributes. Run bench/compare.py on the binary to see each
// figure next to its baseline.

#include <cstdint>
#include <string>

#include <benchmark/benchmark.h>

#include "veld/items/kvo_general_items.h"

#include "raw_parse.h"

namespace {

std::string ItemsText(int64_t count) {
  std::string text = "<group id=\"bench\" lang=\"en\">";
  for (int64_t i = 0; i < count; ++i) {
    const std::string n = std::to_string(i);
    text += "<option name=\"item" + n + "\" value=\"value " + n + "\" type=\"int\"/>";
  }
  text += "</group>";
  return text;
}

const std::string& CachedText(int64_t count) {
  static int64_t cached_count = -1;
  static std::string cached;
  if (cached_count != count) {
    cached = ItemsText(count);
    cached_count = count;
  }
  return cached;
}

void SetCounters(benchmark::State& state, const std::string& text) {
  state.SetItemsProcessed(state.iterations() * state.range(0));
  state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(text.size()));
}

void BM_RawLibxml2Parse(benchmark::State& state) {
  const std::string& text = CachedText(state.range(0));
  veld_bench::RawLibxml2ParseLoop(state, text);
  SetCounters(state, text);
}

void BM_ItemsParse(benchmark::State& state) {
  const std::string& text = CachedText(state.range(0));
  for (auto _ : state) {
    veld::KvoGeneralItems items;
    if (!items.Parse(text) || items.Count() != state.range(0)) state.SkipWithError("parse failed");
    benchmark::DoNotOptimize(items);
  }
  state.SetLabel("baseline=BM_RawLibxml2Parse");
  SetCounters(state, text);
}

void BM_ItemsParseNameAsKey(benchmark::State& state) {
  const std::string& text = CachedText(state.range(0));
  for (auto _ : state) {
    veld::KvoGeneralItems items;
    if (!items.Parse(text, true)) state.SkipWithError("parse failed");
    benchmark::DoNotOptimize(items);
  }
  state.SetLabel("baseline=BM_RawLibxml2Parse");
  SetCounters(state, text);
}

void BM_ItemsSave(benchmark::State& state) {
  const std::string& text = CachedText(state.range(0));
  veld::KvoGeneralItems items;
  if (!items.Parse(text)) state.SkipWithError("parse failed");
  std::string xml;
  for (auto _ : state) {
    if (!items.Save(xml)) state.SkipWithError("save failed");
    benchmark::DoNotOptimize(xml);
  }
  state.SetLabel("baseline=BM_RawLibxml2Parse");
  SetCounters(state, text);
}

void Sizes(benchmark::internal::Benchmark* bench) {
  bench->Arg(10'000)->Arg(100'000)->Arg(1'000'000)->Unit(benchmark::kMillisecond);
}

BENCHMARK(BM_RawLibxml2Parse)->Apply(Sizes);
BENCHMARK(BM_ItemsParse)->Apply(Sizes);
BENCHMARK(BM_ItemsParseNameAsKey)->Apply(Sizes);
BENCHMARK(BM_ItemsSave)->Apply(Sizes);

}  // namespace

BENCHMARK_MAIN();
