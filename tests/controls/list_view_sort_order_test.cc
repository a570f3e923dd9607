// ListView_SortData's order for every column type, checked against an
// independent sort of the same values: by value for integers, numbers with
// a display pattern, dates, times and date-times (non-negative numbers: the
// sign characters of the sortable form order as the collation orders them),
// by the locale's collation for text.
#include <algorithm>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#ifdef _WIN32
#define NOMINMAX
#define WIN32_LEAN_AND_MEAN
#include <windows.h>
#else
#include <unicode/ucol.h>
#endif

#include "veld/controls/headless_list_view.h"
#include "veld/controls/kvo_data_ctrl_helper.h"

#include "support/locale_platform.h"

namespace veld {
namespace {

struct Value {
  std::string raw;  // as the data holds it
  double order;     // the value it sorts by
};

class ListViewSortOrderTest : public ::testing::TestWithParam<const char*> {
 protected:
  // Loads the values into column 2 (column 1 holds the row number) and
  // returns the row numbers after one click on column 2, or two.
  std::vector<int> SortedRows(const std::string& type, const std::string& format,
                              const std::vector<Value>& values, bool twice) {
    testing::ScopedLocale locale(GetParam());
    KvoDataCtrlHelper helper;
    HeadlessListView list;
    EXPECT_TRUE(helper.ListView_InitializeColumns(
        &list,
        "<cols><col name=\"N\" field=\"n\" type=\"text\"/><col name=\"V\" field=\"v\" type=\"" +
            type + "\" format=\"" + format + "\"/></cols>"));
    std::string xml = "<dataset><data>";
    for (size_t i = 0; i < values.size(); ++i)
      xml += "<row><col name=\"n\" value=\"" + std::to_string(i) + "\"/><col name=\"v\" value=\"" +
             values[i].raw + "\"/></row>";
    EXPECT_TRUE(helper.LoadXml(xml + "</data></dataset>"));
    EXPECT_TRUE(helper.ListView_LoadData(&list, "n"));
    helper.ListView_SortData(&list, 2);
    if (twice) helper.ListView_SortData(&list, 2);
    std::vector<int> rows;
    for (int32_t i = 1; i <= list.ListItems().Count(); ++i)
      rows.push_back(std::stoi(list.ListItems().Item(Variant(i)).Text()));
    return rows;
  }

  void ExpectTyped(const std::string& type, const std::string& format,
                   const std::vector<Value>& values) {
    std::vector<int> expected(values.size());
    for (size_t i = 0; i < values.size(); ++i) expected[i] = static_cast<int>(i);
    std::stable_sort(expected.begin(), expected.end(),
                     [&](int a, int b) { return values[a].order < values[b].order; });
    std::vector<int> got = SortedRows(type, format, values, false);
    // Equal values may come in either order only if their texts differ; the
    // generated values are distinct, so the order is exact.
    EXPECT_EQ(got, expected) << type << " " << GetParam();
    std::reverse(expected.begin(), expected.end());
    EXPECT_EQ(SortedRows(type, format, values, true), expected) << type << " descending";
  }

  std::mt19937 random_{7};
};

TEST_P(ListViewSortOrderTest, IntegersByValue) {
  std::vector<Value> values;
  std::vector<int> used;
  while (values.size() < 200) {
    const int n = static_cast<int>(random_() % 100000000);
    if (std::find(used.begin(), used.end(), n) != used.end()) continue;
    used.push_back(n);
    values.push_back({std::to_string(n), static_cast<double>(n)});
  }
  ExpectTyped("integer", "", values);
}

TEST_P(ListViewSortOrderTest, PatternedNumbersByValue) {
  std::vector<Value> values;
  for (int i = 0; i < 200; ++i) {
    const int64_t cents = static_cast<int64_t>(random_() % 10000000) * 200 + i;  // distinct
    const std::string decimal = std::string(GetParam()) == "de-DE" ? "," : ".";
    values.push_back(
        {std::to_string(cents / 100) + decimal + std::to_string(10 + cents % 90),
         static_cast<double>(cents / 100) + static_cast<double>(10 + cents % 90) / 100.0});
  }
  ExpectTyped("double", "#,##0.00", values);
}

TEST_P(ListViewSortOrderTest, DatesTimesAndDateTimesByValue) {
  std::vector<Value> dates, times, stamps;
  for (int i = 0; i < 150; ++i) {
    const int year = 1950 + i;  // distinct dates
    const int month = 1 + static_cast<int>(random_() % 12);
    const int day = 1 + static_cast<int>(random_() % 28);
    char text[32];
    std::snprintf(text, sizeof text, "%04d-%02d-%02d", year, month, day);
    dates.push_back({text, year * 10000.0 + month * 100 + day});
    const int seconds = i * 571 % 86400;
    std::snprintf(text, sizeof text, "%02d:%02d:%02d", seconds / 3600, seconds / 60 % 60,
                  seconds % 60);
    times.push_back({text, static_cast<double>(seconds)});
    std::snprintf(text, sizeof text, "%04d-%02d-%02d %02d:%02d:%02d", 2000 + i % 7, month, day,
                  seconds / 3600, seconds / 60 % 60, seconds % 60);
    stamps.push_back({text, (i % 7) * 1e10 + month * 1e8 + day * 1e6 + seconds});
  }
  ExpectTyped("date", "", dates);
  ExpectTyped("time", "", times);
  // Two stamps may share a day and second only if equal; they are distinct.
  ExpectTyped("datetime", "", stamps);
}

// The locale's case-insensitive collation: ICU at secondary strength on
// POSIX, CompareStringEx's string sort on Windows.
bool Less(const std::string& locale, const std::string& a, const std::string& b) {
#ifdef _WIN32
  auto wide = [](const std::string& utf8) {
    std::wstring out(utf8.size(), L'\0');
    out.resize(static_cast<size_t>(::MultiByteToWideChar(CP_UTF8, 0, utf8.data(),
                                                         static_cast<int>(utf8.size()), out.data(),
                                                         static_cast<int>(out.size()))));
    return out;
  };
  const std::wstring name = wide(locale), wa = wide(a), wb = wide(b);
  return ::CompareStringEx(name.c_str(), NORM_IGNORECASE | SORT_STRINGSORT, wa.data(),
                           static_cast<int>(wa.size()), wb.data(), static_cast<int>(wb.size()),
                           nullptr, nullptr, 0) == CSTR_LESS_THAN;
#else
  UErrorCode status = U_ZERO_ERROR;
  UCollator* collator = ucol_open(locale == "de-DE" ? "de_DE" : "en_US", &status);
  ucol_setStrength(collator, UCOL_SECONDARY);
  const bool less = ucol_strcollUTF8(collator, a.data(), static_cast<int32_t>(a.size()), b.data(),
                                     static_cast<int32_t>(b.size()), &status) == UCOL_LESS;
  ucol_close(collator);
  return less;
#endif
}

TEST_P(ListViewSortOrderTest, TextByTheLocalesCollation) {
  const std::vector<std::string> words = {"apple", "Äpfel",  "Zebra",  "zebra ", "birne",
                                          "Birne", "éclair", "eclair", "Ölbaum", "ol",
                                          "10",    "9",      "a-b",    "a b"};
  std::vector<Value> values;
  for (const auto& word : words) values.push_back({word, 0});
  std::vector<int> got = SortedRows("text", "", values, false);
  std::vector<int> expected(words.size());
  for (size_t i = 0; i < words.size(); ++i) expected[i] = static_cast<int>(i);
  std::stable_sort(expected.begin(), expected.end(),
                   [&](int a, int b) { return Less(GetParam(), words[a], words[b]); });
  EXPECT_EQ(got, expected);
}

TEST_P(ListViewSortOrderTest, NegativeNumbersComeBeforeTheOthers) {
  const std::vector<Value> values = {{"5", 5}, {"-3", -3}, {"0", 0}, {"-20", -20}, {"7", 7}};
  const std::vector<int> got = SortedRows("integer", "", values, false);
  // "-" sorts before "+" in the collation; among negatives the digits of the
  // magnitude decide, so -3 comes before -20.
  EXPECT_EQ(got, (std::vector<int>{1, 3, 2, 0, 4}));
}

INSTANTIATE_TEST_SUITE_P(Locales, ListViewSortOrderTest, ::testing::Values("en-US", "de-DE"),
                         [](const auto& info) {
                           return std::string(info.param) == "en-US" ? "EnUs" : "DeDe";
                         });

}  // namespace
}  // namespace veld
