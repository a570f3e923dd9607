// Parses arbitrary text as an items document. The first byte picks the
// options (names as keys, the item tag); the rest is the text. A failed parse
// must leave the collection empty with a message; a successful one must save,
// and the saved text must parse back to the items that have a name.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "veld/items/kvo_general_items.h"

namespace {

void Check(bool condition) {
  if (!condition) std::abort();
}

const char* const kItemTags[] = {"", "", "option", "*", "note", "option[1]", "#text", "a:b"};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size == 0) return 0;
  const bool name_as_key = (data[0] & 0x80) != 0;
  const std::string item_tag = kItemTags[data[0] & 0x07];
  const std::string text(reinterpret_cast<const char*>(data + 1), size - 1);

  veld::KvoGeneralItems items;
  std::string message;
  if (!items.Parse(text, name_as_key, item_tag, &message)) {
    Check(items.Count() == 0 && items.RootTagCount() == 0);
    Check(!message.empty());
    return 0;
  }
  int32_t named = 0;
  for (const auto& item : items) named += item->Name.empty() ? 0 : 1;

  std::string xml;
  if (!items.Save(xml, "group", "option", &message)) return 0;  // e.g. a blank root tag name
  veld::KvoGeneralItems back;
  Check(back.Parse(xml, false, "option", &message));
  // A default namespace declaration puts the saved items into that
  // namespace, where the item tag no longer selects them.
  if (items.GetRootTag("xmlns") == 0) Check(back.Count() == named);
  Check(back.RootTagCount() == items.RootTagCount());
  return 0;
}
