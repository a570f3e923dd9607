// Loads arbitrary bytes as option XML text into a KvoOption. A failed load
// must record one of the two load messages and leave the held document
// alone. A successful one must survive reading, writing and removing every
// option it holds, and its saved text must load into a new object and save
// again unchanged. Nothing may crash, leak or raise.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>

#include "veld/options/kvo_option.h"
#include "veld/xml/xml_node_list.h"

namespace {

void Check(bool condition) {
  if (!condition) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string text(reinterpret_cast<const char*>(data), size);
  veld::KvoOption option;
  std::string empty;
  Check(option.SaveOptionToXml(empty));

  if (!option.LoadOptionFromXml(text)) {
    const std::string error = option.GetLastError();
    Check(error == "No option xml specified." ||
          error == "Faield to load option data(Not a valid xml format?).");
    std::string after;
    Check(option.SaveOptionToXml(after) && after == empty);
    return 0;
  }
  Check(option.GetLastError().empty());

  std::string saved;
  Check(option.SaveOptionToXml(saved));
  veld::KvoOption reloaded;
  Check(reloaded.LoadOptionFromXml(saved));
  std::string saved_again;
  Check(reloaded.SaveOptionToXml(saved_again) && saved_again == saved);

  // Every option of every group, read through the widened lookups.
  veld::XmlNodeList options = option.GetOptionGroup("", "");
  Check(!options.IsNull());
  std::shared_ptr<veld::KvoGeneralItems> items = option.GetGroupOptions("", "");
  Check(items != nullptr || options.Length() == 0);
  for (const veld::XmlNode& node : options) {
    const std::string name = node.GetAttribute("name");
    (void)option.GetOption(name, "", "", "default");
    const bool found = option.GetLastError().empty();
    (void)option.Decode(node.GetAttribute("value"));
    // With no section or group id an option can only be updated, never
    // created: exactly those that the lookup finds.
    Check(option.SetOption(name, "changed", "", "") == found);
  }
  Check(option.SetOption("fuzz", "value", "section", "group"));
  Check(option.GetOption("fuzz", "section", "group") == "value");
  Check(option.SetOptionGroup("section", "copy", options));
  Check(option.RemoveOption("", "", ""));
  Check(option.RemoveOptionGroup("", ""));
  Check(option.RemoveSection(""));
  std::string cleared;
  Check(option.SaveOptionToXml(cleared) && cleared == empty);
  return 0;
}
