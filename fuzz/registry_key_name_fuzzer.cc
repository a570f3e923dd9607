// Feeds arbitrary text to the splitting of full key names and checks that it
// either gives one of the seven roots or raises the library's own check
// failure with one of its two messages.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "registry/registry_access.h"
#include "veld/runtime/automation_error.h"

namespace {

void Check(bool condition) {
  if (!condition) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string text(reinterpret_cast<const char*>(data), size);
  try {
    veld::RegistryKeyPath path = veld::SplitFullKeyName(text);
    Check(path.root >= veld::kHkeyClassesRoot && path.root <= veld::kHkeyDynData);
    Check(path.sub_key.size() < text.size());
  } catch (const veld::AutomationError& error) {
    Check(error.Number() == -1);
    const std::string& message = error.Description();
    Check(message == "Invalid registry key name." ||
          message.rfind("Invalid main key name specified - ", 0) == 0);
  }
  return 0;
}
