// RegistryBackend: the registry as the library reaches it.
//
// KvoRegistry is written once against this interface. Its members mirror the
// ANSI registry calls of Win32 (RegOpenKeyExA, RegCreateKeyA, RegDeleteKeyA,
// RegQueryValueExA, RegSetValueExA, RegEnumValueA, RegCloseKey, plus
// RegDeleteValueA), take the same arguments and return the same Win32 result
// codes, so that the Windows backend is a thin layer over advapi32 and every
// other backend can be checked against the real registry by one conformance
// suite. Names and string data are bytes in the platform's "ANSI" code page.
//
// The process's backend comes from veld::CurrentPlatform().Registry(): the
// Windows registry on Windows, an SQLite file elsewhere (see the README). A
// test or host installs its own (in memory, failing on cue) through a
// platform that overrides Registry().
//
// This header depends on nothing but the standard library, so that a backend
// and the conformance suite can be built on their own.
#ifndef VELD_REGISTRY_REGISTRY_BACKEND_H_
#define VELD_REGISTRY_REGISTRY_BACKEND_H_

#include <cstdint>

#include "veld/export.h"

namespace veld {

// A key handle: a predefined root or a handle returned by OpenKey/CreateKey.
// 0 is never a valid handle.
using RegistryHandle = uintptr_t;

// The predefined roots, by their classic 32-bit values.
inline constexpr RegistryHandle kHkeyClassesRoot = 0x80000000u;
inline constexpr RegistryHandle kHkeyCurrentUser = 0x80000001u;
inline constexpr RegistryHandle kHkeyLocalMachine = 0x80000002u;
inline constexpr RegistryHandle kHkeyUsers = 0x80000003u;
inline constexpr RegistryHandle kHkeyPerformanceData = 0x80000004u;
inline constexpr RegistryHandle kHkeyCurrentConfig = 0x80000005u;
inline constexpr RegistryHandle kHkeyDynData = 0x80000006u;

// Access masks the library opens keys with.
inline constexpr uint32_t kKeyRead = 0x20019u;
inline constexpr uint32_t kKeyWrite = 0x20006u;
inline constexpr uint32_t kKeyAllAccess = 0xF003Fu;

// Value types.
inline constexpr uint32_t kRegNone = 0;
inline constexpr uint32_t kRegSz = 1;
inline constexpr uint32_t kRegExpandSz = 2;
inline constexpr uint32_t kRegBinary = 3;
inline constexpr uint32_t kRegDword = 4;
inline constexpr uint32_t kRegMultiSz = 7;

// Win32 result codes the backends return.
namespace regerr {
inline constexpr int32_t kSuccess = 0;
inline constexpr int32_t kFileNotFound = 2;
inline constexpr int32_t kAccessDenied = 5;
inline constexpr int32_t kInvalidHandle = 6;
inline constexpr int32_t kOutOfMemory = 14;
inline constexpr int32_t kInvalidParameter = 87;
inline constexpr int32_t kBadPathName = 161;
inline constexpr int32_t kMoreData = 234;
inline constexpr int32_t kNoMoreItems = 259;
inline constexpr int32_t kBadDb = 1009;
inline constexpr int32_t kCantWrite = 1013;
inline constexpr int32_t kIoFailed = 1016;
inline constexpr int32_t kKeyDeleted = 1018;
}  // namespace regerr

// Longest key name component and value name, in characters.
inline constexpr uint32_t kMaxKeyNameLength = 255;
inline constexpr uint32_t kMaxValueNameLength = 16383;

class VELD_EXPORT RegistryBackend {
 public:
  RegistryBackend() = default;
  RegistryBackend(const RegistryBackend&) = delete;
  RegistryBackend& operator=(const RegistryBackend&) = delete;
  virtual ~RegistryBackend() = default;

  // RegOpenKeyExA: opens `sub_key` (null or "" for `key` itself) under `key`
  // with the access mask `sam_desired`. On success stores the new handle in
  // `*result` (which must not be null); on failure stores 0. Returns 2 when
  // the key does not exist.
  virtual int32_t OpenKey(RegistryHandle key, const char* sub_key, uint32_t sam_desired,
                          RegistryHandle* result) = 0;

  // RegCreateKeyA: opens `sub_key` under `key` with full access, creating it
  // and every missing key above it. With an empty subkey on a root, stores the
  // root itself.
  virtual int32_t CreateKey(RegistryHandle key, const char* sub_key, RegistryHandle* result) = 0;

  // RegDeleteKeyA: deletes the leaf key `sub_key` under `key` with all its
  // values. A key that still has subkeys is not deleted (5).
  virtual int32_t DeleteKey(RegistryHandle key, const char* sub_key) = 0;

  // RegQueryValueExA: reads value `value_name` (null or "" for the default
  // value). `type`, `data` and `data_size` may each be null; with `data`
  // null, only the size (in bytes) is reported. A short buffer gives 234 and
  // the full size in `*data_size`.
  virtual int32_t QueryValue(RegistryHandle key, const char* value_name, uint32_t* type,
                             uint8_t* data, uint32_t* data_size) = 0;

  // RegSetValueExA: writes `data_size` bytes of `data` as value `value_name`
  // with type `type`. String types get a terminating zero when the data does
  // not end with one.
  virtual int32_t SetValue(RegistryHandle key, const char* value_name, uint32_t type,
                           const uint8_t* data, uint32_t data_size) = 0;

  // RegDeleteValueA: removes value `value_name`.
  virtual int32_t DeleteValue(RegistryHandle key, const char* value_name) = 0;

  // RegEnumValueA: the value at `index` (0-based, creation order). `name`
  // receives the name and its terminating zero; `*name_size` is the buffer's
  // size in characters on entry and the name's length without its zero on
  // success. `type`, `data` and `data_size` are as in QueryValue. Returns 259
  // past the last value.
  virtual int32_t EnumValue(RegistryHandle key, uint32_t index, char* name, uint32_t* name_size,
                            uint32_t* type, uint8_t* data, uint32_t* data_size) = 0;

  // RegCloseKey: releases a handle. Closing a predefined root does nothing.
  virtual int32_t CloseKey(RegistryHandle key) = 0;
};

}  // namespace veld

#endif  // VELD_REGISTRY_REGISTRY_BACKEND_H_
