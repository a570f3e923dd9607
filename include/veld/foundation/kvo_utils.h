// KvoUtils: new GUID texts and hexadecimal texts.
//
// GUID texts serve as unique identifiers of rows and items. Neither member
// records failures: they reach the caller as AutomationError.
#ifndef VELD_FOUNDATION_KVO_UTILS_H_
#define VELD_FOUNDATION_KVO_UTILS_H_

#include <string>

#include "veld/export.h"
#include "veld/foundation/kvo_enums.h"
#include "veld/runtime/variant.h"

namespace veld {

class VELD_EXPORT KvoUtils {
 public:
  KvoUtils() = default;
  KvoUtils(const KvoUtils&) = delete;
  KvoUtils& operator=(const KvoUtils&) = delete;

  // A new GUID: KVO_GUID_FORMAT_GENERAL gives the 38-character registry form
  // "{XXXXXXXX-XXXX-XXXX-XXXX-XXXXXXXXXXXX}" in upper case,
  // Kvo_GUID_FORMAT_PUREDATA the same 32 digits alone. Any other format, and a
  // failure of the platform's GUID generator, gives "".
  std::string KvoGenerateGUID(KvoGuidFormatEnum nFormat = KVO_GUID_FORMAT_GENERAL);

  // The hexadecimal text of `nValue` (upper case, no prefix, no leading
  // zeros; a negative value as the two's complement of its own width: 4 digits
  // for a 16-bit Integer, 8 for a Long; a fraction rounded half to even first),
  // padded with leading "0" to `nDigits` characters when it is shorter. A
  // longer text is never cut; `nDigits` of 0 or less means no padding. Null
  // gives Null. Values outside the 32-bit range raise 6 "Overflow", text that
  // is not numeric 13 "Type mismatch".
  Variant KvoNumberToHexStr(const Variant& nValue, const Variant& nDigits = Variant(int16_t{0}));
};

}  // namespace veld

#endif  // VELD_FOUNDATION_KVO_UTILS_H_
