// The Qt list adapter against the headless list it is built on, over the
// 8-column generated lists of list_view_bench (en-US), at 100k and 1M rows:
//   - ListView_LoadData into a fresh list, and for the adapter the view's
//     update that follows (Sync, then one turn of the event loop with the
//     view shown offscreen), vs the same load into a HeadlessListView;
//   - ListView_SortData of the date column, the same way.
// The counter `widgets` is the number of widgets the application has after
// the work: it must not grow with the row count.
#include <QApplication>
#include <QTreeView>
#include <cstdint>
#include <memory>
#include <string>

#include <benchmark/benchmark.h>

#include "veld/controls/headless_list_view.h"
#include "veld/controls/kvo_data_ctrl_helper.h"
#include "veld/qt/qt_list_view.h"

#include "list_view_data.h"

namespace {

constexpr int32_t kDateColumn = 4;

// Brings the adapter's view up to date the way a running application would.
void Show(veld::HeadlessListView&) {}
void Show(veld::QtListView& list) {
  list.Sync();
  QApplication::processEvents();
}

std::unique_ptr<veld::HeadlessListView> NewList(veld::HeadlessListView*) {
  return std::make_unique<veld::HeadlessListView>();
}
std::unique_ptr<veld::QtListView> NewList(veld::QtListView*) {
  auto list = std::make_unique<veld::QtListView>();
  list->View()->resize(800, 600);
  list->View()->show();
  return list;
}

template <class List>
void BM_Load(benchmark::State& state) {
  InstallAmerican();
  veld::KvoDataCtrlHelper helper;
  if (!helper.LoadXml(Cached(state.range(0)))) state.SkipWithError("load failed");
  for (auto _ : state) {
    state.PauseTiming();
    auto list = NewList(static_cast<List*>(nullptr));
    Show(*list);
    state.ResumeTiming();
    helper.ListView_InitializeColumns(list.get(), kSpec);
    if (!helper.ListView_LoadData(list.get())) state.SkipWithError("load failed");
    Show(*list);
    state.PauseTiming();
    state.counters["widgets"] = static_cast<double>(QApplication::allWidgets().size());
    list.reset();
    QApplication::processEvents();
    state.ResumeTiming();
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

template <class List>
void BM_SortDates(benchmark::State& state) {
  InstallAmerican();
  veld::KvoDataCtrlHelper helper;
  helper.LoadXml(Cached(state.range(0)));
  auto list = NewList(static_cast<List*>(nullptr));
  helper.ListView_InitializeColumns(list.get(), kSpec);
  helper.ListView_LoadData(list.get());
  Show(*list);
  for (auto _ : state) {
    helper.ListView_SortData(list.get(), kDateColumn);
    Show(*list);
  }
  if (!helper.GetLastError().empty()) state.SkipWithError("sort failed");
  state.counters["widgets"] = static_cast<double>(QApplication::allWidgets().size());
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

void BM_HeadlessListLoad(benchmark::State& state) { BM_Load<veld::HeadlessListView>(state); }
void BM_QtListLoad(benchmark::State& state) {
  BM_Load<veld::QtListView>(state);
  state.SetLabel("baseline=BM_HeadlessListLoad");
}
void BM_HeadlessListSortDates(benchmark::State& state) {
  BM_SortDates<veld::HeadlessListView>(state);
}
void BM_QtListSortDates(benchmark::State& state) {
  BM_SortDates<veld::QtListView>(state);
  state.SetLabel("baseline=BM_HeadlessListSortDates");
}

BENCHMARK(BM_HeadlessListLoad)->Arg(100000)->Arg(1000000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_QtListLoad)->Arg(100000)->Arg(1000000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_HeadlessListSortDates)->Arg(100000)->Arg(1000000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_QtListSortDates)->Arg(100000)->Arg(1000000)->Unit(benchmark::kMillisecond);

}  // namespace

int main(int argc, char** argv) {
  if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication app(argc, argv);
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}
