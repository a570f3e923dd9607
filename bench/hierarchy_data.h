// Generated hierarchies for the control benchmarks: `count` rows of 8 cols
// (id, parent, name, note, tag, half, amount, code) forming a tree of about
// ten levels, written in pre-order (each parent directly before its
// subtree), so every parent row comes before its children.
#ifndef VELD_BENCH_HIERARCHY_DATA_H_
#define VELD_BENCH_HIERARCHY_DATA_H_

#include <cmath>
#include <cstdint>
#include <string>
#include <vector>

namespace veld_bench {

inline std::string HierarchyXml(int64_t count) {
  // Node i's parent is (i - 1) / branching: about ten levels for `count`.
  const auto branching = static_cast<int64_t>(std::ceil(std::pow(static_cast<double>(count), 0.1)));
  std::string xml = "<dataset><data id=\"tree\">";
  xml.reserve(static_cast<size_t>(count) * 300);
  std::vector<int64_t> pending{0};
  while (!pending.empty()) {
    const int64_t i = pending.back();
    pending.pop_back();
    const std::string id = std::to_string(i);
    const std::string parent = i == 0 ? "" : std::to_string((i - 1) / branching);
    xml += "<row><col name=\"id\" value=\"" + id + "\"/><col name=\"parent\" value=\"" + parent +
           "\"/><col name=\"name\" value=\"Node " + id + "\"/><col name=\"note\" value=\"note " +
           id + "\"/><col name=\"tag\" value=\"t" + id + "\"/><col name=\"half\" value=\"" +
           std::to_string(i % 2) + "\"/><col name=\"amount\" value=\"" +
           std::to_string(i * 7 % 1000) + ".25\"/><col name=\"code\" value=\"C" + id + "\"/></row>";
    // Children pushed last to first, so that they come off in order.
    for (int64_t c = branching; c >= 1; --c) {
      const int64_t child = i * branching + c;
      if (child < count) pending.push_back(child);
    }
  }
  return xml + "</data></dataset>";
}

// The text of the last count asked for, kept between benchmarks.
inline const std::string& CachedHierarchyXml(int64_t count) {
  static int64_t cached_count = -1;
  static std::string cached;
  if (cached_count != count) {
    cached = HierarchyXml(count);
    cached_count = count;
  }
  return cached;
}

}  // namespace veld_bench

#endif  // VELD_BENCH_HIERARCHY_DATA_H_
