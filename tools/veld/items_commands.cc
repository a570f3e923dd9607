// veld items: items documents (a root whose attributes are root tags, holding
// one element per item with name, value, type and extra).
#include <string>

#include "veld/items/kvo_general_items.h"

#include "commands.h"

namespace veld::cli {

namespace {

void Load(KvoGeneralItems& items, const std::string& file, const Args& args) {
  std::string message;
  if (!items.ParseFile(file, args.Has("keys"), args.Get("item-tag"), &message)) {
    throw Failure(message + " (" + file + ")");
  }
}

int List(const Args& args) {
  KvoGeneralItems items;
  Load(items, args.At(0), args);
  std::string out;
  for (int32_t i = 1; i <= items.RootTagCount(); ++i) {
    auto tag = items.RootTagItem(i);
    out += "@" + tag->Name + "\t" + tag->Value + "\n";
  }
  for (const auto& item : items) {
    out +=
        item->Name + "\t" + item->Value + "\t" + item->TypeString + "\t" + item->ExtraValue + "\n";
  }
  Out(out);
  return kExitOk;
}

int Convert(const Args& args) {
  KvoGeneralItems items;
  Load(items, args.At(0), args);
  const std::string root = args.Get("root", "group");
  const std::string tag = args.Get("tag", "option");
  std::string message;
  if (args.Positional().size() > 1) {
    if (!items.SaveFile(args.At(1), root, tag, &message)) throw Failure(message);
    return kExitOk;
  }
  std::string xml;
  if (!items.Save(xml, root, tag, &message)) throw Failure(message);
  Out(xml + "\n");
  return kExitOk;
}

const FlagSpec kItemTag{"item-tag", "TAG",
                        "read the elements named TAG (default: the name of the root's first "
                        "child)"};
const FlagSpec kKeys{"keys", "", "use the names as keys: a repeated name (ignoring case) fails"};

}  // namespace

Group ItemsCommands() {
  return {"items",
          "list and convert items documents (name/value lists in XML)",
          "Items documents: a root element whose attributes are root tags, holding one\n"
          "element per item with the attributes name, value, type and extra.",
          {
              {"list",
               "print the root tags and items of an items document",
               "FILE",
               1,
               1,
               {kItemTag, kKeys},
               "Prints one line per root tag (\"@name<TAB>value\"), then one per item\n"
               "(\"name<TAB>value<TAB>type<TAB>extra\").\n\n"
               "example: veld items list settings.xml\n",
               List},
              {"convert",
               "read an items document and write it in the library's form",
               "FILE [OUT]",
               1,
               2,
               {kItemTag,
                kKeys,
                {"root", "NAME", "name of the root element (default group)"},
                {"tag", "NAME", "name of the item elements (default option)"}},
               "Writes to OUT, or to standard output. Keys are not written; values read from\n"
               "element text become attributes.\n\n"
               "example: veld items convert --item-tag col --root row --tag col in.xml out.xml\n",
               Convert},
          }};
}

}  // namespace veld::cli
