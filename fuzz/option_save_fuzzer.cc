// Sets an option whose name and value are arbitrary bytes and saves it over a
// file that loads. Either the save succeeds and the file loads back into the
// same document, or it fails and the file is byte for byte what it was.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <string>

#include "veld/options/kvo_option.h"

#include "fuzz_support.h"

namespace {

using veld_fuzz::Check;

constexpr char kPrevious[] =
    "<config><section id=\"s\"><group id=\"g\"><option name=\"n\" value=\"previous\"/>"
    "</group></section></config>";

const std::string& File() {
  static const veld_fuzz::ScratchDir dir;
  static const std::string file = dir.File("options.xml");
  return file;
}

std::string Read(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size == 0) return 0;
  const std::string bytes(reinterpret_cast<const char*>(data) + 1, size - 1);
  const size_t split = data[0] % (bytes.size() + 1);
  const std::string name = bytes.substr(0, split);
  const std::string value = bytes.substr(split);
  const std::string& file = File();
  std::ofstream(file, std::ios::binary | std::ios::trunc) << kPrevious;
  ::unlink((file + ".bak").c_str());

  veld::KvoOption options;
  Check(options.LoadOption(file));
  if (!options.SetOption(name, value, "s", "g")) return 0;
  if (!options.SaveOption(file)) {
    Check(Read(file) == kPrevious);
    return 0;
  }
  veld::KvoOption loaded;
  Check(loaded.LoadOption(file));
  std::string held;
  std::string reloaded;
  Check(options.SaveOptionToXml(held));
  Check(loaded.SaveOptionToXml(reloaded));
  Check(held == reloaded);
  return 0;
}
