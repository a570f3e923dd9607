// Passes each call to advapi32 unchanged. The only work is mapping handles:
// the predefined roots are 32-bit values that the API sign-extends on 64-bit
// Windows, while the backend interface keeps their classic values.
#include "registry/windows/windows_registry.h"

#define NOMINMAX
#define WIN32_LEAN_AND_MEAN
#include <windows.h>

namespace veld {

namespace {

bool IsPredefined(RegistryHandle key) { return key >= kHkeyClassesRoot && key <= kHkeyDynData; }

HKEY ToHkey(RegistryHandle key) {
  if (IsPredefined(key)) {
    return reinterpret_cast<HKEY>(
        static_cast<intptr_t>(static_cast<int32_t>(static_cast<uint32_t>(key))));
  }
  return reinterpret_cast<HKEY>(key);
}

RegistryHandle FromHkey(HKEY key) {
  auto value = reinterpret_cast<uintptr_t>(key);
  for (RegistryHandle root = kHkeyClassesRoot; root <= kHkeyDynData; ++root) {
    if (ToHkey(root) == key) return root;
  }
  return value;
}

int32_t Result(LONG code) { return static_cast<int32_t>(code); }

class WindowsRegistryBackend final : public RegistryBackend {
 public:
  int32_t OpenKey(RegistryHandle key, const char* sub_key, uint32_t sam_desired,
                  RegistryHandle* result) override {
    if (result == nullptr) return regerr::kInvalidParameter;
    HKEY opened = nullptr;
    LONG code = ::RegOpenKeyExA(ToHkey(key), sub_key, 0, sam_desired, &opened);
    *result = code == ERROR_SUCCESS ? FromHkey(opened) : 0;
    return Result(code);
  }

  int32_t CreateKey(RegistryHandle key, const char* sub_key, RegistryHandle* result) override {
    if (result == nullptr) return regerr::kInvalidParameter;
    HKEY created = nullptr;
    LONG code = ::RegCreateKeyA(ToHkey(key), sub_key, &created);
    *result = code == ERROR_SUCCESS ? FromHkey(created) : 0;
    return Result(code);
  }

  int32_t DeleteKey(RegistryHandle key, const char* sub_key) override {
    return Result(::RegDeleteKeyA(ToHkey(key), sub_key == nullptr ? "" : sub_key));
  }

  int32_t QueryValue(RegistryHandle key, const char* value_name, uint32_t* type, uint8_t* data,
                     uint32_t* data_size) override {
    DWORD dword_type = type != nullptr ? *type : 0;
    DWORD size = data_size != nullptr ? *data_size : 0;
    LONG code = ::RegQueryValueExA(ToHkey(key), value_name, nullptr,
                                   type != nullptr ? &dword_type : nullptr, data,
                                   data_size != nullptr ? &size : nullptr);
    if (type != nullptr) *type = dword_type;
    if (data_size != nullptr) *data_size = size;
    return Result(code);
  }

  int32_t SetValue(RegistryHandle key, const char* value_name, uint32_t type, const uint8_t* data,
                   uint32_t data_size) override {
    return Result(::RegSetValueExA(ToHkey(key), value_name, 0, type, data, data_size));
  }

  int32_t DeleteValue(RegistryHandle key, const char* value_name) override {
    return Result(::RegDeleteValueA(ToHkey(key), value_name));
  }

  int32_t EnumValue(RegistryHandle key, uint32_t index, char* name, uint32_t* name_size,
                    uint32_t* type, uint8_t* data, uint32_t* data_size) override {
    DWORD length = name_size != nullptr ? *name_size : 0;
    DWORD dword_type = type != nullptr ? *type : 0;
    DWORD size = data_size != nullptr ? *data_size : 0;
    LONG code = ::RegEnumValueA(ToHkey(key), index, name, name_size != nullptr ? &length : nullptr,
                                nullptr, type != nullptr ? &dword_type : nullptr, data,
                                data_size != nullptr ? &size : nullptr);
    if (name_size != nullptr) *name_size = length;
    if (type != nullptr) *type = dword_type;
    if (data_size != nullptr) *data_size = size;
    return Result(code);
  }

  int32_t CloseKey(RegistryHandle key) override { return Result(::RegCloseKey(ToHkey(key))); }
};

}  // namespace

RegistryBackend& WindowsRegistry() {
  static WindowsRegistryBackend* backend = new WindowsRegistryBackend();  // lives for the process
  return *backend;
}

}  // namespace veld
