// Dataset XML for the control tests, written inline: rows of cols, and a
// document of one data element holding them.
#ifndef VELD_TESTS_CONTROLS_DATASET_TEXT_H_
#define VELD_TESTS_CONTROLS_DATASET_TEXT_H_

#include <string>
#include <utility>
#include <vector>

namespace veld::testing {

// <row ATTRIBUTES><col name="N" value="V"/>...</row>; names and values are
// written as given (escape them yourself).
inline std::string Row(const std::vector<std::pair<std::string, std::string>>& cols,
                       const std::string& attributes = "") {
  std::string xml = "<row" + attributes + ">";
  for (const auto& [name, value] : cols)
    xml += "<col name=\"" + name + "\" value=\"" + value + "\"/>";
  return xml + "</row>";
}

// <dataset><data>ROWS</data></dataset>.
inline std::string Data(const std::vector<std::string>& rows) {
  std::string xml = "<dataset><data>";
  for (const auto& row : rows) xml += row;
  return xml + "</data></dataset>";
}

}  // namespace veld::testing

#endif  // VELD_TESTS_CONTROLS_DATASET_TEXT_H_
