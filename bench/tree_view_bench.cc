// KvoDataCtrlHelper over large hierarchies (hierarchy_data.h): TreeView_LoadData
// of 10k, 100k and 1M pre-ordered rows (about ten levels, 8 cols per row) into a
// HeadlessTreeView, next to a raw libxml2 parse of the same text
// (xmlReadMemory, document freed), and RemoveDataRow of half the rows of
// 10k and 100k, which must stay one pass (flat time per row).
#include <cstdint>
#include <memory>
#include <string>

#include <benchmark/benchmark.h>

#include "veld/controls/headless_tree_view.h"
#include "veld/controls/kvo_data_ctrl_helper.h"

#include "hierarchy_data.h"
#include "raw_parse.h"

namespace {

void Counters(benchmark::State& state) {
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

void BM_RawLibxml2ParseOfTheTree(benchmark::State& state) {
  const std::string& text = veld_bench::CachedHierarchyXml(state.range(0));
  veld_bench::RawLibxml2ParseLoop(state, text);
  Counters(state);
}

void BM_TreeViewLoadData(benchmark::State& state) {
  veld::KvoDataCtrlHelper helper;
  if (!helper.LoadXml(veld_bench::CachedHierarchyXml(state.range(0))))
    state.SkipWithError("load failed");
  for (auto _ : state) {
    auto tree = std::make_unique<veld::HeadlessTreeView>();
    if (!helper.TreeView_LoadData(tree.get(), "id", "parent", "name", "note", "tag", "folder",
                                  "item") ||
        tree->Nodes().Count() != state.range(0))
      state.SkipWithError(helper.GetLastError().c_str());
    state.PauseTiming();  // the tree's destruction is not the load's
    tree.reset();
    state.ResumeTiming();
  }
  Counters(state);
  state.SetLabel("baseline=BM_RawLibxml2ParseOfTheTree");
}

void BM_RemoveDataRowHalf(benchmark::State& state) {
  const std::string& text = veld_bench::CachedHierarchyXml(state.range(0));
  for (auto _ : state) {
    state.PauseTiming();
    auto helper = std::make_unique<veld::KvoDataCtrlHelper>();
    if (!helper->LoadXml(text)) state.SkipWithError("load failed");
    state.ResumeTiming();
    if (!helper->RemoveDataRow("half", "1")) state.SkipWithError(helper->GetLastError().c_str());
    state.PauseTiming();
    helper.reset();
    state.ResumeTiming();
  }
  Counters(state);
}

BENCHMARK(BM_RawLibxml2ParseOfTheTree)
    ->Arg(10000)
    ->Arg(100000)
    ->Arg(1000000)
    ->Unit(benchmark::kMillisecond);
BENCHMARK(BM_TreeViewLoadData)
    ->Arg(10000)
    ->Arg(100000)
    ->Arg(1000000)
    ->Unit(benchmark::kMillisecond);
BENCHMARK(BM_RemoveDataRowHalf)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
