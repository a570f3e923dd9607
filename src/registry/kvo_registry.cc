#include "veld/registry/kvo_registry.h"

#include <exception>
#include <string>

#include "foundation/frame_settings.h"
#include "foundation/xml_utils.h"
#include "registry/registry_access.h"
#include "registry/registry_messages.h"
#include "runtime/code_page.h"
#include "runtime/text.h"
#include "veld/platform/platform.h"
#include "veld/registry/registry_backend.h"
#include "veld/runtime/automation_error.h"
#include "veld/xml/xml_document.h"
#include "veld/xml/xml_node_list.h"

namespace veld {

namespace {

RegistryBackend& Backend() { return CurrentPlatform().Registry(); }

// The name buffer of the enumeration: 256 characters, so value names are
// limited to 255.
constexpr uint32_t kEnumNameBufferSize = 256;

bool WriteValue(RegistryBackend& backend, const std::string& full_key_name,
                const std::string& value_name, uint32_t type, const uint8_t* data, uint32_t size) {
  ScopedRegistryKey key(backend, OpenFullKey(backend, full_key_name, kKeyWrite));
  std::string name = ToAnsiBytes(value_name);
  CheckRegistryResult(backend.SetValue(key.get(), name.c_str(), type, data, size));
  return true;
}

}  // namespace

KvoRegistry::KvoRegistry() : WorkerFrame(kRegistryFrame) {}

KvoRegistry::~KvoRegistry() = default;

bool KvoRegistry::CreateKey(const std::string& sFullKeyName) {
  bool result = false;
  Recorded([&] {
    RegistryBackend& backend = Backend();
    RegistryKeyPath path = SplitFullKeyName(sFullKeyName);
    std::string sub_key = ToAnsiBytes(path.sub_key);
    RegistryHandle handle = 0;
    CheckRegistryResult(backend.CreateKey(path.root, sub_key.c_str(), &handle));
    backend.CloseKey(handle);
    result = true;
  });
  return result;
}

bool KvoRegistry::DeleteKey(const std::string& sFullKeyName) {
  bool result = false;
  Recorded([&] {
    RegistryKeyPath path = SplitFullKeyName(sFullKeyName);
    std::string sub_key = ToAnsiBytes(path.sub_key);
    CheckRegistryResult(Backend().DeleteKey(path.root, sub_key.c_str()));
    result = true;
  });
  return result;
}

int32_t KvoRegistry::GetStringValue(const std::string& sFullKeyName, const std::string& sValueName,
                                    std::string& sValue) {
  int32_t result = -1;
  sValue.clear();
  Recorded([&] {
    RegistryBackend& backend = Backend();
    ScopedRegistryKey key(backend, OpenFullKey(backend, sFullKeyName, kKeyRead));
    std::string value;
    int32_t length = ReadStringValue(backend, key.get(), ToAnsiBytes(sValueName), value);
    sValue = std::move(value);
    result = length;
  });
  return result;
}

int32_t KvoRegistry::GetDWORDValue(const std::string& sFullKeyName, const std::string& sValueName,
                                   int32_t& lValue) {
  int32_t result = -1;
  lValue = 0;
  Recorded([&] {
    RegistryBackend& backend = Backend();
    ScopedRegistryKey key(backend, OpenFullKey(backend, sFullKeyName, kKeyRead));
    lValue = ReadNumberValue(backend, key.get(), ToAnsiBytes(sValueName));
    result = 0;
  });
  return result;
}

int32_t KvoRegistry::GetBinaryValue(const std::string& sFullKeyName, const std::string& sValueName,
                                    std::vector<uint8_t>& byteValue) {
  int32_t result = -1;
  Recorded([&] {
    RegistryBackend& backend = Backend();
    ScopedRegistryKey key(backend, OpenFullKey(backend, sFullKeyName, kKeyRead));
    result = ReadBinaryValue(backend, key.get(), ToAnsiBytes(sValueName), byteValue);
  });
  return result;
}

bool KvoRegistry::SetStringValue(const std::string& sFullKeyName, const std::string& sValueName,
                                 const std::string& sValue) {
  bool result = false;
  Recorded([&] {
    // The ANSI text goes without a terminating zero; the registry adds one.
    std::string bytes = ToAnsiBytes(sValue);
    result = WriteValue(Backend(), sFullKeyName, sValueName, kRegSz,
                        reinterpret_cast<const uint8_t*>(bytes.data()),
                        static_cast<uint32_t>(bytes.size()));
  });
  return result;
}

bool KvoRegistry::SetDWORDValue(const std::string& sFullKeyName, const std::string& sValueName,
                                int32_t lValue) {
  bool result = false;
  Recorded([&] {
    auto number = static_cast<uint32_t>(lValue);
    const uint8_t bytes[4] = {static_cast<uint8_t>(number), static_cast<uint8_t>(number >> 8),
                              static_cast<uint8_t>(number >> 16),
                              static_cast<uint8_t>(number >> 24)};
    result = WriteValue(Backend(), sFullKeyName, sValueName, kRegDword, bytes, sizeof bytes);
  });
  return result;
}

bool KvoRegistry::SetBinaryValue(const std::string& sFullKeyName, const std::string& sValueName,
                                 const std::vector<uint8_t>& byteValue) {
  bool result = false;
  Recorded([&] {
    RegistryBackend& backend = Backend();
    ScopedRegistryKey key(backend, OpenFullKey(backend, sFullKeyName, kKeyWrite));
    // An array without elements has no bounds to write from.
    if (byteValue.empty()) RaiseError(errnum::kSubscriptOutOfRange);
    std::string name = ToAnsiBytes(sValueName);
    CheckRegistryResult(backend.SetValue(key.get(), name.c_str(), kRegBinary, byteValue.data(),
                                         static_cast<uint32_t>(byteValue.size())));
    result = true;
  });
  return result;
}

bool KvoRegistry::GetKeyValuesToXml(const std::string& sFullKeyName, std::string& sValuesXml,
                                    const std::string& sXmlRootTag, const std::string& sGroupID) {
  bool result = false;
  sValuesXml.clear();
  Recorded([&] {
    std::string root_tag = Trim(sXmlRootTag);
    if (root_tag.empty()) Fail(kNoRootTagSpecified);
    RegistryBackend& backend = Backend();
    ScopedRegistryKey key(backend, OpenFullKey(backend, sFullKeyName, kKeyRead));
    XmlDocument document;
    XmlNode root = document.CreateElement(root_tag);
    document.AppendChild(root);
    root.SetAttribute("id", sGroupID);
    for (uint32_t index = 0;; ++index) {
      std::string buffer(kEnumNameBufferSize, ' ');
      uint32_t name_size = kEnumNameBufferSize;
      uint32_t type = 0;
      int32_t code =
          backend.EnumValue(key.get(), index, buffer.data(), &name_size, &type, nullptr, nullptr);
      if (code == regerr::kNoMoreItems) break;
      // 234 comes when the data does not fit, and no data buffer is given.
      if (code != regerr::kSuccess && code != regerr::kMoreData) CheckRegistryResult(code);
      std::string name = Trim(buffer);
      if (!name.empty()) name.pop_back();
      std::string text;
      // A value that cannot be read is written with an empty or zero text; its
      // failure is recorded and the enumeration goes on.
      auto read = [&](auto&& reader, const char* fallback) {
        try {
          text = reader();
        } catch (...) {
          text = fallback;
          std::exception_ptr failure = std::current_exception();
          Recorded([&] { std::rethrow_exception(failure); });
        }
      };
      if (type == kRegSz) {
        read(
            [&] {
              std::string value;
              ReadStringValue(backend, key.get(), name, value);
              return value;
            },
            "");
      } else if (type == kRegDword) {
        read([&] { return std::to_string(ReadNumberValue(backend, key.get(), name)); }, "0");
      } else {
        name.clear();
      }
      if (!name.empty()) {
        XmlNode option = document.CreateElement("option");
        option.SetAttribute("name", FromAnsiBytes(name));
        option.SetAttribute("value", text);
        root.AppendChild(option);
      }
    }
    std::string xml = document.Xml();
    // Text that would not load again must not pass for values XML.
    if (!XmlDocument().LoadXml(xml)) Fail(kValuesNotRepresentable);
    sValuesXml = std::move(xml);
    result = true;
  });
  return result;
}

bool KvoRegistry::SetKeyValuesFromXml(const std::string& sFullKeyName,
                                      const std::string& sValuesXml) {
  bool result = false;
  Recorded([&] {
    if (Trim(sValuesXml).empty()) Fail(kNoValuesSpecified);
    // Not checked: when the key cannot be created, the first write says why.
    CreateKey(sFullKeyName);
    XmlDocument document;
    if (!document.LoadXml(sValuesXml)) Fail(kFailedToLoadValues);
    XmlNodeList options = document.SelectNodes("//option[@name!='']");
    for (const XmlNode& option : options) {
      std::string name = GetNodeAttribute(option, "name", "");
      std::string value = GetNodeAttribute(option, "value", "");
      if (Trim(name).empty()) continue;
      if (!SetStringValue(sFullKeyName, name, value)) return;
    }
    result = true;
  });
  return result;
}

}  // namespace veld
