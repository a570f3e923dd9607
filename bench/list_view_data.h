// The list the list-view benchmarks fill: a column spec of 8 typed columns
// (text, integer, double "#,##0.00", date, datetime, boolean, a second text
// and a second integer), generated dataset text of any row count (the same
// count always gives the same text), and en-US settings installed through
// the platform.
#ifndef VELD_BENCH_LIST_VIEW_DATA_H_
#define VELD_BENCH_LIST_VIEW_DATA_H_

#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>

#include "american_settings.h"

namespace {

using veld_bench::InstallAmerican;

const char kSpec[] =
    "<cols><col name=\"Name\" field=\"name\" type=\"text\"/>"
    "<col name=\"Qty\" field=\"qty\" type=\"integer\"/>"
    "<col name=\"Price\" field=\"price\" type=\"double\" format=\"#,##0.00\"/>"
    "<col name=\"Day\" field=\"day\" type=\"date\"/>"
    "<col name=\"At\" field=\"at\" type=\"datetime\"/>"
    "<col name=\"Paid\" field=\"paid\" type=\"boolean\"/>"
    "<col name=\"Note\" field=\"note\" type=\"text\"/>"
    "<col name=\"Code\" field=\"code\" type=\"integer\"/></cols>";

std::string Rows(int64_t count) {
  std::string xml = "<dataset><data id=\"orders\">";
  xml.reserve(static_cast<size_t>(count) * 420);
  uint64_t state = 88172645463325252ull;
  auto next = [&state] {
    state ^= state << 13;
    state ^= state >> 7;
    state ^= state << 17;
    return state;
  };
  for (int64_t i = 0; i < count; ++i) {
    const uint64_t r = next();
    char day[16];
    std::snprintf(day, sizeof day, "%04d-%02d-%02d", 1990 + static_cast<int>(r % 35),
                  1 + static_cast<int>(r / 35 % 12), 1 + static_cast<int>(r / 420 % 28));
    char at[24];
    std::snprintf(at, sizeof at, "%s %02d:%02d:%02d", day, static_cast<int>(r / 7 % 24),
                  static_cast<int>(r / 11 % 60), static_cast<int>(r / 13 % 60));
    xml += "<row><col name=\"_guid_\" value=\"" + std::to_string(i) +
           "ABCDEF0123456789ABCDEF01234\"/>" + "<col name=\"name\" value=\"Customer " +
           std::to_string(r % 100000) + "\"/>" + "<col name=\"qty\" value=\"" +
           std::to_string(r % 1000) + "\"/>" + "<col name=\"price\" value=\"" +
           std::to_string(r % 1000000) + "." + std::to_string(r % 100) + "\"/>" +
           "<col name=\"day\" value=\"" + day + "\"/>" + "<col name=\"at\" value=\"" + at + "\"/>" +
           "<col name=\"paid\" value=\"" + (r % 3 == 0 ? "0" : "1") + "\"/>" +
           "<col name=\"note\" value=\"note " + std::to_string(r % 977) + "\"/>" +
           "<col name=\"code\" value=\"" + std::to_string(r % 100000000) + "\"/></row>";
  }
  return xml + "</data></dataset>";
}

const std::string& Cached(int64_t count) {
  static int64_t cached_count = -1;
  static std::string cached;
  if (cached_count != count) {
    cached = Rows(count);
    cached_count = count;
  }
  return cached;
}

}  // namespace

#endif  // VELD_BENCH_LIST_VIEW_DATA_H_
