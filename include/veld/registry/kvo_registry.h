// KvoRegistry: the registry through full key paths written as text.
//
// A full key name is a root name ("HKEY_CLASSES_ROOT", "HKEY_CURRENT_USER",
// "HKEY_LOCAL_MACHINE", "HKEY_USERS", "HKEY_PERFORMANCE_DATA",
// "HKEY_CURRENT_CONFIG" or "HKEY_DYN_DATA", in any case), optionally followed
// by a backslash and a subkey path: "HKEY_CURRENT_USER\Software\Veld". Each
// operation opens what it needs, does one thing and closes again; no handle is
// kept between calls. Texts are UTF-8 here and go to the registry in the
// platform's "ANSI" code page.
//
// Like every worker class, KvoRegistry never lets a failure escape: each
// operation clears the last error, and on failure records it (number -1 and a
// fixed message for the library's own checks and for registry result codes)
// and returns false, or -1 for the Get... operations. Read it with
// GetLastError or raise it with RaiseLastError. KvoRegistry has no document
// and therefore no Reset.
//
// The registry itself is veld::CurrentPlatform().Registry(): the Windows
// registry on Windows, an SQLite store elsewhere (see registry_backend.h).
#ifndef VELD_REGISTRY_KVO_REGISTRY_H_
#define VELD_REGISTRY_KVO_REGISTRY_H_

#include <cstdint>
#include <string>
#include <vector>

#include "veld/export.h"
#include "veld/foundation/worker_frame.h"

namespace veld {

class VELD_EXPORT KvoRegistry : public WorkerFrame {
 public:
  KvoRegistry();
  ~KvoRegistry();

  // Creates the key and every missing key above it; true when the key exists
  // afterwards (created or already there). With a bare root name, succeeds on
  // the root itself.
  bool CreateKey(const std::string& sFullKeyName);

  // Deletes a key with its values; true when it was deleted. A key that still
  // has subkeys, and a root, are not deleted ("Access denied.").
  bool DeleteKey(const std::string& sFullKeyName);

  // Reads a value as text into `sValue` (an empty `sValueName` is the key's
  // default value) and returns its length in characters; -1 on failure, with
  // `sValue` "". Leading blanks of the stored text are lost, and the last
  // stored character is taken for the terminating zero and dropped: callers
  // of the original component depend on both. The stored type is not checked.
  int32_t GetStringValue(const std::string& sFullKeyName, const std::string& sValueName,
                         std::string& sValue);

  // Reads 4 bytes of a value as a number into `lValue`; returns 0, or -1 on
  // failure with `lValue` 0. The stored type is not checked.
  int32_t GetDWORDValue(const std::string& sFullKeyName, const std::string& sValueName,
                        int32_t& lValue);

  // Reads a value's bytes into `byteValue` (resized to exactly the value's
  // size) and returns their number; a value of no bytes returns 0 and leaves
  // `byteValue` as it was; -1 on failure.
  int32_t GetBinaryValue(const std::string& sFullKeyName, const std::string& sValueName,
                         std::vector<uint8_t>& byteValue);

  // Write a string (type 1), 32-bit number (type 4) or binary (type 3) value
  // into an existing key; true when written. The key is not created: call
  // CreateKey first. An empty byte array fails with "Subscript out of range"
  // (number 9).
  bool SetStringValue(const std::string& sFullKeyName, const std::string& sValueName,
                      const std::string& sValue);
  bool SetDWORDValue(const std::string& sFullKeyName, const std::string& sValueName,
                     int32_t lValue);
  bool SetBinaryValue(const std::string& sFullKeyName, const std::string& sValueName,
                      const std::vector<uint8_t>& byteValue);

  // The string and number values of a key as XML, in the registry's order:
  // <group id="general"><option name="..." value="..."/>...</group>, with the
  // root tag and id given. Other types and the default value are left out;
  // numbers are written as signed decimal text. True with the text in
  // `sValuesXml`; false with `sValuesXml` "". A value that cannot be read is
  // written with "" (or "0") and its failure stays recorded, though the call
  // returns true.
  bool GetKeyValuesToXml(const std::string& sFullKeyName, std::string& sValuesXml,
                         const std::string& sXmlRootTag = "group",
                         const std::string& sGroupID = "general");

  // Creates the key when needed and writes every "option" element of the
  // document (at any depth) that has a non-blank "name" as a string value with
  // the text of its "value" attribute. True when all were written; on the
  // first failed write returns false, keeping the values written before.
  bool SetKeyValuesFromXml(const std::string& sFullKeyName, const std::string& sValuesXml);
};

}  // namespace veld

#endif  // VELD_REGISTRY_KVO_REGISTRY_H_
