// Splits the input at its first line break into an XPath expression and a
// document. The document is loaded with KvoXmlHelper::LoadXml; the expression
// goes to GetXmlByXPath, GetElemAttribute and RemoveNodes. No member may let a
// failure escape, and each must report failure and success consistently.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>

#include "veld/xmlhelper/kvo_xml_helper.h"

namespace {

void Check(bool condition) {
  if (!condition) std::abort();
}

// A call succeeded exactly when nothing is recorded.
void CheckRecord(veld::KvoXmlHelper& helper, bool succeeded) {
  Check(succeeded == helper.GetLastError().empty());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string input(reinterpret_cast<const char*>(data), size);
  const size_t line_break = input.find('\n');
  const std::string xpath = input.substr(0, line_break);
  const std::string xml = line_break == std::string::npos ? "<r a=\"1\"><b c=\"2\">t</b><b/></r>"
                                                          : input.substr(line_break + 1);

  veld::KvoXmlHelper helper;
  bool loaded = helper.LoadXml(xml);
  CheckRecord(helper, loaded);

  std::string text = "unset";
  bool selected = helper.GetXmlByXPath(xpath, text);
  CheckRecord(helper, selected);
  if (!selected) Check(text.empty());

  std::shared_ptr<veld::KvoGeneralItems> items = helper.GetElemAttribute(xpath);
  if (items != nullptr) {
    Check(helper.GetLastError().empty());
    for (const auto& item : *items) Check(item->TypeString.empty() && item->ExtraValue.empty());
  }

  bool removed = helper.RemoveNodes(xpath);
  CheckRecord(helper, removed);
  // The document stays usable whatever was removed.
  std::string after;
  Check(helper.GetXmlByXPath("/", after));
  if (!loaded) Check(after.empty());
  return 0;
}
