#include "veld/foundation/kvo_utils.h"

#include "runtime/numeric.h"
#include "veld/platform/platform.h"

namespace veld {

std::string KvoUtils::KvoGenerateGUID(KvoGuidFormatEnum nFormat) {
  Guid guid;
  if (CurrentPlatform().CreateGuid(guid) != 0) return "";
  auto hex = [this](const Variant& value, int16_t digits) {
    return KvoNumberToHexStr(value, Variant(digits)).AsString();
  };
  // The fields are handed over with the signed types of the classic GUID
  // structure's declaration, so that their two's complement gives the digits.
  std::string part1 = hex(Variant(static_cast<int32_t>(guid.Data1)), 8);
  std::string part2 = hex(Variant(static_cast<int16_t>(guid.Data2)), 4);
  std::string part3 = hex(Variant(static_cast<int16_t>(guid.Data3)), 4);
  std::string part4 = hex(Variant(guid.Data4[0]), 2) + hex(Variant(guid.Data4[1]), 2);
  std::string part5;
  for (int i = 2; i < 8; ++i) part5 += hex(Variant(guid.Data4[i]), 2);
  switch (nFormat) {
    case KVO_GUID_FORMAT_GENERAL:
      return "{" + part1 + "-" + part2 + "-" + part3 + "-" + part4 + "-" + part5 + "}";
    case Kvo_GUID_FORMAT_PUREDATA:
      return part1 + part2 + part3 + part4 + part5;
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
