// ImageCombo_LoadHierData of 10k, 100k and 1M pre-ordered rows
// (hierarchy_data.h) into a HeadlessImageCombo, next to a raw libxml2 parse
// of the same text; a parent is found through the combo's key index.
#include <memory>

#include <benchmark/benchmark.h>

#include "veld/controls/headless_image_combo.h"
#include "veld/controls/kvo_data_ctrl_helper.h"

#include "hierarchy_data.h"
#include "raw_parse.h"

namespace {

void BM_RawLibxml2ParseOfTheCombo(benchmark::State& state) {
  const std::string& text = veld_bench::CachedHierarchyXml(state.range(0));
  veld_bench::RawLibxml2ParseLoop(state, text);
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

void BM_ImageComboLoadHierData(benchmark::State& state) {
  veld::KvoDataCtrlHelper helper;
  if (!helper.LoadXml(veld_bench::CachedHierarchyXml(state.range(0))))
    state.SkipWithError("load failed");
  for (auto _ : state) {
    auto combo = std::make_unique<veld::HeadlessImageCombo>();
    if (!helper.ImageCombo_LoadHierData(combo.get(), "id", "parent", "name", "note") ||
        combo->ComboItems().Count() != state.range(0))
      state.SkipWithError(helper.GetLastError().c_str());
    state.PauseTiming();  // the combo's destruction is not the load's
    combo.reset();
    state.ResumeTiming();
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
  state.SetLabel("baseline=BM_RawLibxml2ParseOfTheCombo");
}

BENCHMARK(BM_RawLibxml2ParseOfTheCombo)
    ->Arg(10000)
    ->Arg(100000)
    ->Arg(1000000)
    ->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ImageComboLoadHierData)
    ->Arg(10000)
    ->Arg(100000)
    ->Arg(1000000)
    ->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
