// veld options: option documents (config > section[@id] > group[@id] >
// option[@name, @value]).
#include <string>
#include <vector>

#include "veld/options/kvo_option.h"

#include "commands.h"
#include "file_lock.h"

namespace veld::cli {

namespace {

// Stops the command with the option store's recorded failure.
[[noreturn]] void Fail(KvoOption& options) { throw Failure(options.GetLastError()); }

// Loads every section of `file`; a file that does not exist yet is an empty
// document when `may_be_new`. A file that an interrupted save left only as
// FILE.bak is not new: the load takes it up again.
void LoadAll(KvoOption& options, const std::string& file, bool may_be_new) {
  if (may_be_new && !FileExists(file) && !FileExists(file + ".bak")) return;
  if (!options.LoadOption(file)) Fail(options);
}

void SaveAll(KvoOption& options, const std::string& file) {
  if (!options.SaveOption(file)) Fail(options);
}

std::vector<std::string> SplitIds(const std::string& text) {
  std::vector<std::string> ids;
  size_t start = 0;
  for (;;) {
    const size_t comma = text.find(',', start);
    ids.push_back(text.substr(start, comma - start));
    if (comma == std::string::npos) break;
    start = comma + 1;
  }
  return ids;
}

int Get(const Args& args) {
  KvoOption options;
  LoadAll(options, args.At(0), false);
  const std::string value =
      options.GetOption(args.At(1), args.Get("section"), args.Get("group"), args.Get("default"));
  if (!options.GetLastError().empty() && !args.Has("default")) Fail(options);
  Out(value + "\n");
  return kExitOk;
}

int Set(const Args& args) {
  FileLock lock(args.At(0));
  KvoOption options;
  LoadAll(options, args.At(0), true);
  if (!options.SetOption(args.At(1), args.At(2), args.Get("section"), args.Get("group"))) {
    Fail(options);
  }
  SaveAll(options, args.At(0));
  return kExitOk;
}

int List(const Args& args) {
  KvoOption options;
  LoadAll(options, args.At(0), false);
  auto items = options.GetGroupOptions(args.Get("section"), args.Get("group"));
  if (items == nullptr) {
    if (!options.GetLastError().empty()) Fail(options);
    throw Failure("no options in section '" + args.Get("section") + "', group '" +
                  args.Get("group") + "' of " + args.At(0));
  }
  std::string out;
  for (const auto& item : *items) out += item->Name + "\t" + item->Value + "\n";
  Out(out);
  return kExitOk;
}

int Remove(const Args& args) {
  if (!args.Has("section")) throw UsageError("--section is required");
  FileLock lock(args.At(0));
  KvoOption options;
  LoadAll(options, args.At(0), false);
  bool removed = false;
  if (args.Has("name")) {
    removed = options.RemoveOption(args.Get("section"), args.Get("group"), args.Get("name"));
  } else if (args.Has("group")) {
    removed = options.RemoveOptionGroup(args.Get("section"), args.Get("group"));
  } else {
    removed = options.RemoveSection(args.Get("section"));
  }
  if (!removed) Fail(options);
  SaveAll(options, args.At(0));
  return kExitOk;
}

int Merge(const Args& args) {
  FileLock lock(args.At(1));
  KvoOption options;
  LoadAll(options, args.At(1), true);
  std::vector<std::string> ids = SplitIds(args.Get("sections"));
  if (!options.LoadOptions(args.At(0), ids)) Fail(options);
  SaveAll(options, args.At(1));
  return kExitOk;
}

int Encode(const Args& args) {
  KvoOption options;
  Out(options.Encode(Variant(args.At(0))) + "\n");
  return kExitOk;
}

int Decode(const Args& args) {
  KvoOption options;
  Out(options.Decode(Variant(args.At(0))) + "\n");
  return kExitOk;
}

const FlagSpec kSection{"section", "ID", "the section id"};
const FlagSpec kGroup{"group", "ID", "the group id"};

}  // namespace

Group OptionsCommands() {
  return {"options",
          "read and change option documents; encode and decode values",
          "Option documents: a root holding section elements (id), which hold group\n"
          "elements (id), which hold option elements (name, value). Files are rewritten\n"
          "whole: the new file is written beside the old one and renamed over it, and\n"
          "the old one is kept as FILE.bak meanwhile. Commands that change a file hold\n"
          "a lock on FILE.lock, so veld processes changing one file take turns.",
          {
              {"get",
               "print the value of one option",
               "FILE NAME",
               2,
               2,
               {kSection, kGroup, {"default", "TEXT", "print TEXT when the option is missing"}},
               "A missing option fails, unless --default is given.\n\n"
               "example: veld options get --section main --group window app.xml width\n",
               Get},
              {"set",
               "set one option, creating its group and section when missing",
               "FILE NAME VALUE",
               3,
               3,
               {kSection, kGroup},
               "A FILE that does not exist yet is created.\n\n"
               "example: veld options set --section main --group window app.xml width 800\n",
               Set},
              {"list",
               "print the options of a group (name<TAB>value), skipping empty values",
               "FILE",
               1,
               1,
               {kSection, kGroup},
               "example: veld options list --section main --group window app.xml\n",
               List},
              {"remove",
               "remove a section, a group or an option",
               "FILE",
               1,
               1,
               {kSection, kGroup, {"name", "NAME", "the option's name"}},
               "With --name removes that option, with --group alone that group, else the\n"
               "whole section.\n\n"
               "example: veld options remove --section main --group window app.xml\n",
               Remove},
              {"merge",
               "load sections from SOURCE into TARGET, replacing sections of the same id",
               "SOURCE TARGET",
               2,
               2,
               {{"sections", "ID,ID", "the section ids to take (default: all)"}},
               "example: veld options merge --sections main,print defaults.xml app.xml\n",
               Merge},
              {"encode",
               "print TEXT encoded the way option values are hidden",
               "TEXT",
               1,
               1,
               {},
               "example: veld options encode secret\n",
               Encode},
              {"decode",
               "print the plain text of an encoded value (other text as it is)",
               "TEXT",
               1,
               1,
               {},
               "example: veld options decode -e...e-\n",
               Decode},
          }};
}

}  // namespace veld::cli
