// Display formats over a column of a million values, each next to the
// C library's nearest equivalent measured in the same run:
//   - Format(x, "#,##0.00") over doubles vs snprintf("%.2f") plus inserting
//     the group separators;
//   - Format(date, "yyyy/mm/dd hh:nn:ss") and the short date vs strftime of
//     the same broken-down times;
//   - CDate of ISO texts vs sscanf("%d-%d-%d").
// Settings are en-US, installed through the platform.
#include <cstdio>
#include <cstring>
#include <ctime>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include "veld/runtime/format.h"

#include "american_settings.h"

namespace {

constexpr int kCount = 1000000;

const std::vector<double>& Doubles() {
  static const std::vector<double> values = [] {
    std::vector<double> out;
    out.reserve(kCount);
    uint64_t state = 88172645463325252ull;
    for (int i = 0; i < kCount; ++i) {
      state ^= state << 13;
      state ^= state >> 7;
      state ^= state << 17;
      out.push_back(static_cast<double>(state % 100000000000ull) / 1000.0 - 5e7);
    }
    return out;
  }();
  return values;
}

// Serials from 1950 to 2050 with a time of day, and their broken-down times.
const std::vector<double>& Serials() {
  static const std::vector<double> values = [] {
    std::vector<double> out;
    out.reserve(kCount);
    for (int i = 0; i < kCount; ++i)
      out.push_back(18264.0 + static_cast<double>(i) * 36524 / kCount + (i % 86400) / 86400.0);
    return out;
  }();
  return values;
}

const std::vector<std::tm>& BrokenDown() {
  static const std::vector<std::tm> values = [] {
    std::vector<std::tm> out;
    out.reserve(kCount);
    for (const double serial : Serials()) {
      const auto seconds = static_cast<time_t>((serial - 25569.0) * 86400.0);
      std::tm tm{};
      gmtime_r(&seconds, &tm);
      out.push_back(tm);
    }
    return out;
  }();
  return values;
}

const std::vector<std::string>& IsoTexts() {
  static const std::vector<std::string> values = [] {
    std::vector<std::string> out;
    out.reserve(kCount);
    char buffer[32];
    for (const std::tm& tm : BrokenDown()) {
      std::strftime(buffer, sizeof buffer, "%Y-%m-%d", &tm);
      out.emplace_back(buffer);
    }
    return out;
  }();
  return values;
}

void Counters(benchmark::State& state) { state.SetItemsProcessed(state.iterations() * kCount); }

void BM_SnprintfGrouped(benchmark::State& state) {
  const auto& values = Doubles();
  for (auto _ : state) {
    size_t total = 0;
    for (const double x : values) {
      char plain[64];
      const int n = std::snprintf(plain, sizeof plain, "%.2f", x);
      // Group the integer digits by three.
      char grouped[96];
      int start = plain[0] == '-' ? 1 : 0;
      const char* point = static_cast<const char*>(std::memchr(plain, '.', n));
      const int int_digits = static_cast<int>(point - plain) - start;
      int out = 0;
      if (start) grouped[out++] = '-';
      for (int i = 0; i < int_digits; ++i) {
        grouped[out++] = plain[start + i];
        const int left = int_digits - 1 - i;
        if (left > 0 && left % 3 == 0) grouped[out++] = ',';
      }
      std::memcpy(grouped + out, point, static_cast<size_t>(n - (point - plain)));
      out += static_cast<int>(n - (point - plain));
      std::string text(grouped, static_cast<size_t>(out));
      total += text.size();
    }
    benchmark::DoNotOptimize(total);
  }
  Counters(state);
}

void BM_FormatGroupedTwoDecimals(benchmark::State& state) {
  veld_bench::InstallAmerican();
  const auto& values = Doubles();
  for (auto _ : state) {
    size_t total = 0;
    for (const double x : values) total += veld::FormatText(x, "#,##0.00").size();
    benchmark::DoNotOptimize(total);
  }
  Counters(state);
  state.SetLabel("baseline=BM_SnprintfGrouped");
}

void BM_StrftimeDateTime(benchmark::State& state) {
  const auto& times = BrokenDown();
  for (auto _ : state) {
    size_t total = 0;
    char buffer[32];
    for (const std::tm& tm : times) {
      const size_t n = std::strftime(buffer, sizeof buffer, "%Y/%m/%d %H:%M:%S", &tm);
      total += std::string(buffer, n).size();
    }
    benchmark::DoNotOptimize(total);
  }
  Counters(state);
}

void BM_FormatDateTimePattern(benchmark::State& state) {
  veld_bench::InstallAmerican();
  const auto& serials = Serials();
  for (auto _ : state) {
    size_t total = 0;
    for (const double serial : serials)
      total += veld::FormatText(veld::Variant::Date(serial), "yyyy/mm/dd hh:nn:ss").size();
    benchmark::DoNotOptimize(total);
  }
  Counters(state);
  state.SetLabel("baseline=BM_StrftimeDateTime");
}

void BM_StrftimeShortDate(benchmark::State& state) {
  const auto& times = BrokenDown();
  for (auto _ : state) {
    size_t total = 0;
    char buffer[32];
    for (const std::tm& tm : times) {
      const size_t n = std::strftime(buffer, sizeof buffer, "%m/%d/%Y", &tm);
      total += std::string(buffer, n).size();
    }
    benchmark::DoNotOptimize(total);
  }
  Counters(state);
}

void BM_FormatShortDate(benchmark::State& state) {
  veld_bench::InstallAmerican();
  const auto& serials = Serials();
  for (auto _ : state) {
    size_t total = 0;
    for (const double serial : serials)
      total += veld::FormatText(veld::Variant::Date(serial), "Short Date").size();
    benchmark::DoNotOptimize(total);
  }
  Counters(state);
  state.SetLabel("baseline=BM_StrftimeShortDate");
}

void BM_SscanfIsoDate(benchmark::State& state) {
  const auto& texts = IsoTexts();
  for (auto _ : state) {
    int64_t total = 0;
    for (const std::string& text : texts) {
      int y = 0, m = 0, d = 0;
      if (std::sscanf(text.c_str(), "%d-%d-%d", &y, &m, &d) == 3) total += y + m + d;
    }
    benchmark::DoNotOptimize(total);
  }
  Counters(state);
}

void BM_CDateIsoText(benchmark::State& state) {
  veld_bench::InstallAmerican();
  const auto& texts = IsoTexts();
  for (auto _ : state) {
    double total = 0;
    for (const std::string& text : texts) total += veld::CDate(veld::Variant(text)).AsDate();
    benchmark::DoNotOptimize(total);
  }
  Counters(state);
  state.SetLabel("baseline=BM_SscanfIsoDate");
}

BENCHMARK(BM_SnprintfGrouped)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_FormatGroupedTwoDecimals)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_StrftimeDateTime)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_FormatDateTimePattern)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_StrftimeShortDate)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_FormatShortDate)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_SscanfIsoDate)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_CDateIsoText)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
