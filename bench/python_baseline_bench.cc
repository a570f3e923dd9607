// The C++ side of bench/python_bench.py: the work its Python loops do, done
// in C++ over the same dataset file ($VELD_BENCH_DATASET, written by the
// script), so that the script can set the module's figures against them:
//   - reading every row of the data element "rows" with GetDataRowByIndex;
//   - filling a HeadlessListView with ListView_LoadData.
#include <cstdlib>
#include <memory>
#include <string>

#include <benchmark/benchmark.h>

#include "veld/controls/headless_list_view.h"
#include "veld/controls/kvo_data_ctrl_helper.h"
#include "veld/datasets/kvo_dataset_o.h"

#include "american_settings.h"

namespace {

const char kSpec[] =
    "<cols><col name=\"Name\" field=\"name\"/><col name=\"Qty\" field=\"qty\" type=\"integer\"/>"
    "<col name=\"Day\" field=\"day\" type=\"date\"/></cols>";

const char* DatasetFile(benchmark::State& state) {
  const char* path = std::getenv("VELD_BENCH_DATASET");
  if (path == nullptr) state.SkipWithError("VELD_BENCH_DATASET is not set");
  return path;
}

void BM_ReadEveryRowCxx(benchmark::State& state) {
  const char* path = DatasetFile(state);
  if (path == nullptr) return;
  veld::KvoDatasetO dataset;
  if (!dataset.ParseFile(path)) state.SkipWithError("parse failed");
  const int32_t count = dataset.GetDataRowCount("rows");
  std::string row;
  for (auto _ : state) {
    for (int32_t i = 1; i <= count; ++i) {
      dataset.GetDataRowByIndex("rows", i, row);
      benchmark::DoNotOptimize(row);
    }
  }
  state.SetItemsProcessed(state.iterations() * count);
}

void BM_FillHeadlessListCxx(benchmark::State& state) {
  const char* path = DatasetFile(state);
  if (path == nullptr) return;
  veld_bench::InstallAmerican();
  veld::KvoDataCtrlHelper helper;
  if (!helper.LoadFile(path)) state.SkipWithError("load failed");
  for (auto _ : state) {
    auto list = std::make_unique<veld::HeadlessListView>();
    helper.ListView_InitializeColumns(list.get(), kSpec);
    if (!helper.ListView_LoadData(list.get())) state.SkipWithError("fill failed");
    state.PauseTiming();  // the list's destruction is not the fill's
    list.reset();
    state.ResumeTiming();
  }
}

BENCHMARK(BM_ReadEveryRowCxx)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_FillHeadlessListCxx)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
