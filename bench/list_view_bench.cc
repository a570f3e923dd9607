// KvoDataCtrlHelper's list views over generated datasets with 8 typed
// columns (text, integer, double "#,##0.00", date, datetime, boolean, a
// second text and a second integer), each next to its baseline from the
// same run:
//   - ListView_LoadData of 10k, 100k and 1M rows into a HeadlessListView vs a
//     raw libxml2 parse of the same text;
//   - ListView_SortData of one column of each type at 100k and 1M vs sorting
//     the same column texts with ICU collation keys built once and
//     std::stable_sort;
//   - ListView_SelectItemByIDString of the last of 1M items (one scan).
// Settings are en-US, installed through the platform.
#include <algorithm>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>
#include <unicode/ucol.h>
#include <unicode/ustring.h>

#include "veld/controls/headless_list_view.h"
#include "veld/controls/kvo_data_ctrl_helper.h"
#include "veld/platform/platform.h"
#include "veld/platform/regional_settings.h"

#include "list_view_data.h"
#include "raw_parse.h"

namespace {

// A helper holding the rows of `count` and a list filled from them.
struct Filled {
  veld::KvoDataCtrlHelper helper;
  veld::HeadlessListView list;
  int64_t count = -1;
};

Filled& FilledList(int64_t count) {
  InstallAmerican();
  static auto* filled = new Filled();
  if (filled->count != count) {
    delete filled;
    filled = new Filled();
    filled->helper.LoadXml(Cached(count));
    filled->helper.ListView_InitializeColumns(&filled->list, kSpec);
    filled->helper.ListView_LoadData(&filled->list);
    filled->count = count;
  }
  return *filled;
}

void BM_RawLibxml2ParseOfTheList(benchmark::State& state) {
  const std::string& text = Cached(state.range(0));
  veld_bench::RawLibxml2ParseLoop(state, text);
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

void BM_ListViewLoadData(benchmark::State& state) {
  InstallAmerican();
  veld::KvoDataCtrlHelper helper;
  if (!helper.LoadXml(Cached(state.range(0)))) state.SkipWithError("load failed");
  for (auto _ : state) {
    auto list = std::make_unique<veld::HeadlessListView>();
    helper.ListView_InitializeColumns(list.get(), kSpec);
    if (!helper.ListView_LoadData(list.get()) || list->ListItems().Count() != state.range(0))
      state.SkipWithError(helper.GetLastError().c_str());
    state.PauseTiming();  // the list's destruction is not the load's
    list.reset();
    state.ResumeTiming();
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
  state.SetLabel("baseline=BM_RawLibxml2ParseOfTheList");
}

// Baseline: the column's current texts sorted by ICU collation keys built
// once per text, with std::stable_sort.
void BM_CollationKeySort(benchmark::State& state) {
  Filled& filled = FilledList(state.range(0));
  const auto column = static_cast<int32_t>(state.range(1));
  std::vector<std::string> texts;
  for (int32_t i = 1; i <= filled.list.ListItems().Count(); ++i)
    texts.push_back(filled.list.ListItems().Item(veld::Variant(i)).SubItems(column - 1));
  UErrorCode status = U_ZERO_ERROR;
  UCollator* collator = ucol_open("en_US", &status);
  ucol_setStrength(collator, UCOL_SECONDARY);
  for (auto _ : state) {
    std::vector<std::pair<std::string, size_t>> keyed;
    keyed.reserve(texts.size());
    for (size_t i = 0; i < texts.size(); ++i) {
      std::u16string utf16(texts[i].size(), u'\0');
      int32_t length = 0;
      status = U_ZERO_ERROR;
      u_strFromUTF8(utf16.data(), static_cast<int32_t>(utf16.size()), &length, texts[i].data(),
                    static_cast<int32_t>(texts[i].size()), &status);
      std::string key(64, '\0');
      int32_t needed = ucol_getSortKey(collator, utf16.data(), length,
                                       reinterpret_cast<uint8_t*>(key.data()), 64);
      if (needed > 64) {
        key.resize(static_cast<size_t>(needed));
        ucol_getSortKey(collator, utf16.data(), length, reinterpret_cast<uint8_t*>(key.data()),
                        needed);
      }
      key.resize(static_cast<size_t>(needed));
      keyed.emplace_back(std::move(key), i);
    }
    std::stable_sort(keyed.begin(), keyed.end(),
                     [](const auto& a, const auto& b) { return a.first < b.first; });
    benchmark::DoNotOptimize(keyed);
  }
  ucol_close(collator);
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

void BM_ListViewSortData(benchmark::State& state) {
  Filled& filled = FilledList(state.range(0));
  const auto column = static_cast<int32_t>(state.range(1));
  for (auto _ : state) filled.helper.ListView_SortData(&filled.list, column);
  if (!filled.helper.GetLastError().empty()) state.SkipWithError("sort failed");
  state.SetItemsProcessed(state.iterations() * state.range(0));
  state.SetLabel("baseline=BM_CollationKeySort");
}

void BM_ListViewSelectLastByIDString(benchmark::State& state) {
  Filled& filled = FilledList(state.range(0));
  veld::ListItemCollection& items = filled.list.ListItems();
  const std::string id =
      veld::KvoDataCtrlHelper::GetIDStringFromKey(items.Item(veld::Variant(items.Count())).Key());
  for (auto _ : state) {
    if (!filled.helper.ListView_SelectItemByIDString(&filled.list, id))
      state.SkipWithError("not found");
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

BENCHMARK(BM_RawLibxml2ParseOfTheList)
    ->Arg(10000)
    ->Arg(100000)
    ->Arg(1000000)
    ->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ListViewLoadData)
    ->Arg(10000)
    ->Arg(100000)
    ->Arg(1000000)
    ->Unit(benchmark::kMillisecond);
// Columns: 1 text, 2 integer, 3 double, 4 date, 5 datetime, 6 boolean.
BENCHMARK(BM_CollationKeySort)
    ->ArgsProduct({{100000, 1000000}, {1, 2, 3, 4, 5, 6}})
    ->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ListViewSortData)
    ->ArgsProduct({{100000, 1000000}, {1, 2, 3, 4, 5, 6}})
    ->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ListViewSelectLastByIDString)->Arg(1000000)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
