// Feeds arbitrary text to SetKeyValuesFromXml against an in-memory store and
// reads the key back with GetKeyValuesToXml. Neither may raise; a successful
// write must leave a key whose values read back as a document that loads.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "registry/sqlite/sqlite_registry.h"
#include "veld/platform/platform.h"
#include "veld/registry/kvo_registry.h"
#include "veld/xml/xml_document.h"

namespace {

void Check(bool condition) {
  if (!condition) std::abort();
}

class InMemoryRegistryPlatform : public veld::ForwardingPlatform {
 public:
  veld::RegistryBackend& Registry() override { return store_; }

 private:
  veld::SqliteRegistry store_{":memory:"};
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static InMemoryRegistryPlatform* platform = new InMemoryRegistryPlatform();
  veld::ScopedPlatform scoped(*platform);
  const std::string text(reinterpret_cast<const char*>(data), size);
  const std::string key = "HKEY_CURRENT_USER\\Software\\Fuzz";

  veld::KvoRegistry reg;
  reg.DeleteKey(key);
  bool written = reg.SetKeyValuesFromXml(key, text);
  if (!written) Check(!reg.GetLastError().empty());
  std::string xml;
  if (reg.GetKeyValuesToXml(key, xml)) {
    veld::XmlDocument document;
    Check(document.LoadXml(xml));
  } else {
    Check(xml.empty());
  }
  return 0;
}
