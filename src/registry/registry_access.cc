#include "registry/registry_access.h"

#include "registry/registry_messages.h"
#include "runtime/code_page.h"
#include "runtime/text.h"
#include "veld/runtime/automation_error.h"

namespace veld {

namespace {

struct RootName {
  const char* name;
  RegistryHandle handle;
};

constexpr RootName kRoots[] = {
    {"HKEY_CLASSES_ROOT", kHkeyClassesRoot},
    {"HKEY_CURRENT_USER", kHkeyCurrentUser},
    {"HKEY_LOCAL_MACHINE", kHkeyLocalMachine},
    {"HKEY_USERS", kHkeyUsers},
    {"HKEY_PERFORMANCE_DATA", kHkeyPerformanceData},
    {"HKEY_CURRENT_CONFIG", kHkeyCurrentConfig},
    {"HKEY_DYN_DATA", kHkeyDynData},
};

[[noreturn]] void FailCheck(const std::string& message) {
  RaiseError(ErrorInfo{errnum::kCheckFailed, message});
}

// Length in characters as the caller counts them (UTF-16 code units).
int32_t CharacterCount(const std::string& utf8) {
  int32_t count = 0;
  for (unsigned char byte : utf8) {
    if ((byte & 0xC0) != 0x80) ++count;
    if (byte >= 0xF0) ++count;  // a character outside the BMP is a surrogate pair
  }
  return count;
}

uint8_t* Bytes(std::string& text) { return reinterpret_cast<uint8_t*>(text.data()); }

}  // namespace

RegistryKeyPath SplitFullKeyName(const std::string& full_key_name) {
  std::string name = Trim(full_key_name);
  if (!name.empty() && name.back() == '\\') name.pop_back();
  if (UCase(name.substr(0, 5)) != "HKEY_") FailCheck(kInvalidRegistryKeyName);
  RegistryKeyPath path;
  std::string root_part = name;
  size_t separator = name.find('\\');
  if (separator != std::string::npos) {
    root_part = name.substr(0, separator);
    path.sub_key = name.substr(separator + 1);
  }
  std::string root = UCase(Trim(root_part));
  for (const RootName& entry : kRoots) {
    if (root == entry.name) {
      path.root = entry.handle;
      return path;
    }
  }
  FailCheck(kInvalidMainKeyName + root_part);
}

void CheckRegistryResult(int32_t code) {
  if (code != regerr::kSuccess) FailCheck(RegistryErrorText(code));
}

ScopedRegistryKey::~ScopedRegistryKey() {
  if (handle_ != 0) backend_.CloseKey(handle_);
}

RegistryHandle OpenFullKey(RegistryBackend& backend, const std::string& full_key_name,
                           uint32_t access) {
  RegistryKeyPath path = SplitFullKeyName(full_key_name);
  std::string sub_key = ToAnsiBytes(path.sub_key);
  RegistryHandle handle = 0;
  CheckRegistryResult(backend.OpenKey(path.root, sub_key.c_str(), access, &handle));
  return handle;
}

int32_t ReadStringValue(RegistryBackend& backend, RegistryHandle key, const std::string& value_name,
                        std::string& value) {
  uint32_t type = 0;
  uint32_t size = 0;
  CheckRegistryResult(backend.QueryValue(key, value_name.c_str(), &type, nullptr, &size));
  // The value is read into blanks two longer than its size, then trimmed and
  // stripped of its last character, which is taken for the terminating zero.
  // Leading blanks of the value are lost this way; callers depend on that.
  std::string buffer(static_cast<size_t>(size) + 2, ' ');
  uint32_t buffer_size = size + 2;
  CheckRegistryResult(
      backend.QueryValue(key, value_name.c_str(), &type, Bytes(buffer), &buffer_size));
  std::string text = Trim(buffer);
  if (!text.empty()) text.pop_back();
  value = FromAnsiBytes(text);
  return CharacterCount(value);
}

int32_t ReadNumberValue(RegistryBackend& backend, RegistryHandle key,
                        const std::string& value_name) {
  uint8_t bytes[4] = {0, 0, 0, 0};
  uint32_t size = sizeof bytes;
  uint32_t type = 0;
  CheckRegistryResult(backend.QueryValue(key, value_name.c_str(), &type, bytes, &size));
  uint32_t number = uint32_t{bytes[0]} | (uint32_t{bytes[1]} << 8) | (uint32_t{bytes[2]} << 16) |
                    (uint32_t{bytes[3]} << 24);
  return static_cast<int32_t>(number);
}

int32_t ReadBinaryValue(RegistryBackend& backend, RegistryHandle key, const std::string& value_name,
                        std::vector<uint8_t>& bytes) {
  uint32_t type = 0;
  uint32_t size = 0;
  CheckRegistryResult(backend.QueryValue(key, value_name.c_str(), &type, nullptr, &size));
  if (size >= 1) {
    std::vector<uint8_t> buffer(size);
    uint32_t buffer_size = size;
    CheckRegistryResult(
        backend.QueryValue(key, value_name.c_str(), &type, buffer.data(), &buffer_size));
    buffer.resize(buffer_size);
    bytes = std::move(buffer);
  }
  return static_cast<int32_t>(size);
}

}  // namespace veld
