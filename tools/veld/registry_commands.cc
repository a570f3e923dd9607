// veld registry: keys and values addressed by full key paths
// ("HKEY_CURRENT_USER\Software\Veld"). Off Windows the registry is the
// library's SQLite store ($VELD_REGISTRY_FILE).
#include <cstdio>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "veld/options/kvo_option.h"
#include "veld/registry/kvo_registry.h"

#include "commands.h"
#include "file_lock.h"

namespace veld::cli {

namespace {

[[noreturn]] void Fail(WorkerFrame& worker) { throw Failure(worker.GetLastError()); }

std::string Type(const Args& args) {
  const std::string type = args.Get("type", "string");
  if (type != "string" && type != "dword" && type != "binary") {
    throw UsageError("--type must be string, dword or binary");
  }
  return type;
}

std::string ToHex(const std::vector<uint8_t>& bytes) {
  std::string text;
  char pair[3];
  for (uint8_t byte : bytes) {
    std::snprintf(pair, sizeof pair, "%02X", byte);
    text += pair;
  }
  return text;
}

std::vector<uint8_t> FromHex(const std::string& text) {
  auto digit = [](char c) -> int {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    return -1;
  };
  if (text.size() % 2 != 0) throw UsageError("a binary value is an even number of hex digits");
  std::vector<uint8_t> bytes;
  for (size_t i = 0; i < text.size(); i += 2) {
    const int high = digit(text[i]);
    const int low = digit(text[i + 1]);
    if (high < 0 || low < 0) throw UsageError("a binary value is written in hex digits");
    bytes.push_back(static_cast<uint8_t>(high * 16 + low));
  }
  return bytes;
}

int Get(const Args& args) {
  KvoRegistry registry;
  const std::string type = Type(args);
  if (type == "dword") {
    int32_t value = 0;
    if (registry.GetDWORDValue(args.At(0), args.At(1), value) < 0) Fail(registry);
    Out(std::to_string(value) + "\n");
  } else if (type == "binary") {
    std::vector<uint8_t> bytes;
    if (registry.GetBinaryValue(args.At(0), args.At(1), bytes) < 0) Fail(registry);
    Out(ToHex(bytes) + "\n");
  } else {
    std::string value;
    if (registry.GetStringValue(args.At(0), args.At(1), value) < 0) Fail(registry);
    Out(value + "\n");
  }
  return kExitOk;
}

int Set(const Args& args) {
  KvoRegistry registry;
  const std::string type = Type(args);
  if (!registry.CreateKey(args.At(0))) Fail(registry);
  bool written = false;
  if (type == "dword") {
    int32_t value = 0;
    try {
      size_t used = 0;
      value = std::stoi(args.At(2), &used, 0);
      if (used != args.At(2).size()) throw std::invalid_argument("trailing text");
    } catch (const std::logic_error&) {
      throw UsageError("a dword value is a 32-bit number");
    }
    written = registry.SetDWORDValue(args.At(0), args.At(1), value);
  } else if (type == "binary") {
    written = registry.SetBinaryValue(args.At(0), args.At(1), FromHex(args.At(2)));
  } else {
    written = registry.SetStringValue(args.At(0), args.At(1), args.At(2));
  }
  if (!written) Fail(registry);
  return kExitOk;
}

int Dump(const Args& args) {
  KvoRegistry registry;
  std::string xml;
  if (!registry.GetKeyValuesToXml(args.At(0), xml, args.Get("root", "group"),
                                  args.Get("group", "general"))) {
    Fail(registry);
  }
  Out(xml + "\n");
  return kExitOk;
}

int Load(const Args& args) {
  std::ifstream file(FilePath(args.At(1)), std::ios::binary);
  if (!file) throw Failure("cannot read " + args.At(1));
  // A pipe or device may never end: read up to a limit.
  constexpr size_t kLimit = size_t{64} << 20;
  std::string text;
  char chunk[64 * 1024];
  while (file.read(chunk, sizeof chunk) || file.gcount() > 0) {
    text.append(chunk, static_cast<size_t>(file.gcount()));
    if (text.size() > kLimit) throw Failure(args.At(1) + " is larger than 64 MiB");
  }
  if (file.bad()) throw Failure("cannot read " + args.At(1));
  KvoRegistry registry;
  if (!registry.SetKeyValuesFromXml(args.At(0), text)) Fail(registry);
  return kExitOk;
}

int Delete(const Args& args) {
  KvoRegistry registry;
  if (!registry.DeleteKey(args.At(0))) Fail(registry);
  return kExitOk;
}

int ToRegistry(const Args& args) {
  if (!args.Has("section")) throw UsageError("--section is required");
  KvoOption options;
  if (!options.LoadOption(args.At(0))) throw Failure(options.GetLastError());
  if (!options.SaveOptionToRegistry(args.At(1), args.Get("section"),
                                    args.Get("group", "general"))) {
    throw Failure(options.GetLastError());
  }
  return kExitOk;
}

int FromRegistry(const Args& args) {
  if (!args.Has("section")) throw UsageError("--section is required");
  FileLock lock(args.At(0));
  KvoOption options;
  // A file that an interrupted save left only as FILE.bak is taken up again.
  const bool existing = FileExists(args.At(0)) || FileExists(args.At(0) + ".bak");
  if (existing && !options.LoadOption(args.At(0))) throw Failure(options.GetLastError());
  if (!options.LoadOptionFromRegistry(args.At(1), args.Get("section"),
                                      args.Get("group", "general"))) {
    throw Failure(options.GetLastError());
  }
  if (!options.SaveOption(args.At(0))) throw Failure(options.GetLastError());
  return kExitOk;
}

const FlagSpec kType{"type", "TYPE", "string (default), dword or binary (hex digits)"};
const FlagSpec kSection{"section", "ID", "the option section (required)"};
const FlagSpec kGroup{"group", "ID", "the option group (default general)"};

}  // namespace

Group RegistryCommands() {
  return {"registry",
          "read and write registry values; mirror option groups to and from keys",
          "Keys are full paths: HKEY_CURRENT_USER\\Software\\Example. Off Windows the\n"
          "registry is an SQLite file: $VELD_REGISTRY_FILE, else\n"
          "$XDG_DATA_HOME/veld/registry.db, else ~/.local/share/veld/registry.db.",
          {
              {"get",
               "print a value",
               "KEY NAME",
               2,
               2,
               {kType},
               "Leading blanks of a string value are not kept, as the library reads them.\n\n"
               "example: veld registry get HKEY_CURRENT_USER\\\\Software\\\\Example Width\n",
               Get},
              {"set",
               "write a value, creating the key when needed",
               "KEY NAME VALUE",
               3,
               3,
               {kType},
               "example: veld registry set --type dword HKEY_CURRENT_USER\\\\Software\\\\Example "
               "Width 800\n",
               Set},
              {"dump",
               "print a key's string and number values as XML",
               "KEY",
               1,
               1,
               {{"root", "NAME", "root element (default group)"},
                {"group", "ID", "its id attribute (default general)"}},
               "example: veld registry dump HKEY_CURRENT_USER\\\\Software\\\\Example\n",
               Dump},
              {"load",
               "write the option elements of an XML file as string values of KEY",
               "KEY FILE",
               2,
               2,
               {},
               "example: veld registry load HKEY_CURRENT_USER\\\\Software\\\\Example values.xml\n",
               Load},
              {"delete",
               "delete a key that has no subkeys",
               "KEY",
               1,
               1,
               {},
               "example: veld registry delete HKEY_CURRENT_USER\\\\Software\\\\Example\n",
               Delete},
              {"to-registry",
               "copy an option group of FILE to the values of KEY",
               "FILE KEY",
               2,
               2,
               {kSection, kGroup},
               "example: veld registry to-registry --section main app.xml "
               "HKEY_CURRENT_USER\\\\Software\\\\Example\n",
               ToRegistry},
              {"from-registry",
               "replace an option section of FILE with the values of KEY as one group",
               "FILE KEY",
               2,
               2,
               {kSection, kGroup},
               "The section keeps only that group. FILE is created when it does not exist.\n\n"
               "example: veld registry from-registry --section main app.xml "
               "HKEY_CURRENT_USER\\\\Software\\\\Example\n",
               FromRegistry},
          }};
}

}  // namespace veld::cli
