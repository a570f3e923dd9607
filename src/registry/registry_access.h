// The steps KvoRegistry builds its operations from: splitting a full key
// name, opening keys, and the string, number and binary readers. Each raises
// AutomationError on failure (number -1 with the registry's error text for a
// registry result code), for the calling method to record.
#ifndef VELD_REGISTRY_REGISTRY_ACCESS_H_
#define VELD_REGISTRY_REGISTRY_ACCESS_H_

#include <cstdint>
#include <string>
#include <vector>

#include "veld/registry/registry_backend.h"

namespace veld {

// A full key name split into its predefined root and the subkey path (UTF-8,
// as written after the first backslash).
struct RegistryKeyPath {
  RegistryHandle root = 0;
  std::string sub_key;
};

// Splits "HKEY_...\sub\key". Raises "Invalid registry key name." when the name
// does not start with HKEY_, and "Invalid main key name specified - " + root
// for an unknown root.
RegistryKeyPath SplitFullKeyName(const std::string& full_key_name);

// Raises the registry error text of `code` when it is not 0.
void CheckRegistryResult(int32_t code);

// An open key, closed when the object goes.
class ScopedRegistryKey {
 public:
  ScopedRegistryKey(RegistryBackend& backend, RegistryHandle handle)
      : backend_(backend), handle_(handle) {}
  ~ScopedRegistryKey();
  ScopedRegistryKey(const ScopedRegistryKey&) = delete;
  ScopedRegistryKey& operator=(const ScopedRegistryKey&) = delete;
  RegistryHandle get() const { return handle_; }

 private:
  RegistryBackend& backend_;
  RegistryHandle handle_;
};

// Opens the key a full key name names with `access`; raises on failure.
RegistryHandle OpenFullKey(RegistryBackend& backend, const std::string& full_key_name,
                           uint32_t access);

// The readers, on an open key; `value_name` is in ANSI bytes. ReadString
// returns the text in UTF-8 and its length in characters.
int32_t ReadStringValue(RegistryBackend& backend, RegistryHandle key, const std::string& value_name,
                        std::string& value);
int32_t ReadNumberValue(RegistryBackend& backend, RegistryHandle key,
                        const std::string& value_name);
int32_t ReadBinaryValue(RegistryBackend& backend, RegistryHandle key, const std::string& value_name,
                        std::vector<uint8_t>& bytes);

}  // namespace veld

#endif  // VELD_REGISTRY_REGISTRY_ACCESS_H_
