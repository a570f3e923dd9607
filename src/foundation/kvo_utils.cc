#include "veld/foundation/kvo_utils.h"

#include <cstdint>
#include <string>

#include "runtime/numeric.h"
#include "veld/platform/platform.h"

namespace veld {

namespace {

// Appends `value` as `digits` upper-case hex digits.
void PutHex(std::string& out, uint32_t value, int digits) {
  static constexpr char kHex[] = "0123456789ABCDEF";
  for (int shift = (digits - 1) * 4; shift >= 0; shift -= 4) out += kHex[(value >> shift) & 0xF];
}

}  // namespace

std::string KvoUtils::KvoGenerateGUID(KvoGuidFormatEnum nFormat) {
  Guid guid;
  if (CurrentPlatform().CreateGuid(guid) != 0) return "";
  if (nFormat != KVO_GUID_FORMAT_GENERAL && nFormat != Kvo_GUID_FORMAT_PUREDATA) return "";
  // The same digits as KvoNumberToHexStr of each field with its classic
  // signed type and width, written directly: row ids are made by the million.
  const bool general = nFormat == KVO_GUID_FORMAT_GENERAL;
  std::string text;
  text.reserve(38);
  if (general) text += '{';
  PutHex(text, guid.Data1, 8);
  if (general) text += '-';
  PutHex(text, guid.Data2, 4);
  if (general) text += '-';
  PutHex(text, guid.Data3, 4);
  if (general) text += '-';
  PutHex(text, guid.Data4[0], 2);
  PutHex(text, guid.Data4[1], 2);
  if (general) text += '-';
  for (int i = 2; i < 8; ++i) PutHex(text, guid.Data4[i], 2);
  if (general) text += '}';
  return text;
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
