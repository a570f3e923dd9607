#include "veld/foundation/kvo_utils.h"

#include <cstdio>

#include "runtime/numeric.h"
#include "veld/platform/platform.h"

namespace veld {

std::string KvoUtils::KvoGenerateGUID(KvoGuidFormatEnum nFormat) {
  Guid guid;
  if (CurrentPlatform().CreateGuid(guid) != 0) return "";
  // The same digits as KvoNumberToHexStr of each field with its classic
  // signed type and width, written directly: row ids are made by the million.
  char part1[9];
  char part2[5];
  char part3[5];
  char part4[5];
  char part5[13];
  std::snprintf(part1, sizeof part1, "%08X", static_cast<unsigned>(guid.Data1));
  std::snprintf(part2, sizeof part2, "%04X", static_cast<unsigned>(guid.Data2));
  std::snprintf(part3, sizeof part3, "%04X", static_cast<unsigned>(guid.Data3));
  std::snprintf(part4, sizeof part4, "%02X%02X", guid.Data4[0], guid.Data4[1]);
  std::snprintf(part5, sizeof part5, "%02X%02X%02X%02X%02X%02X", guid.Data4[2], guid.Data4[3],
                guid.Data4[4], guid.Data4[5], guid.Data4[6], guid.Data4[7]);
  switch (nFormat) {
    case KVO_GUID_FORMAT_GENERAL:
      return std::string("{") + part1 + "-" + part2 + "-" + part3 + "-" + part4 + "-" + part5 + "}";
    case Kvo_GUID_FORMAT_PUREDATA:
      return std::string(part1) + part2 + part3 + part4 + part5;
    default:
      return "";
  }
}

Variant KvoUtils::KvoNumberToHexStr(const Variant& nValue, const Variant& nDigits) {
  if (nValue.IsNull()) return Variant::Null();
  std::string text = Hex(nValue);
  int32_t digits = nDigits.IsMissing() ? 0 : nDigits.ToLong();
  if (digits > 0 && static_cast<int32_t>(text.size()) < digits) {
    text.insert(0, static_cast<size_t>(digits) - text.size(), '0');
  }
  return Variant(text);
}

}  // namespace veld
