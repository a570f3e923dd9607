// General helpers shared by the worker classes: file existence, text to
// number with a default, and new GUID texts.
#ifndef VELD_FOUNDATION_THIS_UTILS_H_
#define VELD_FOUNDATION_THIS_UTILS_H_

#include <cstdint>
#include <string>
#include <string_view>

#include "veld/foundation/kvo_enums.h"

namespace veld {

// True when `path` names an existing ordinary file (no directory, hidden or
// system file). Any failure of the search gives false.
bool FileExists(const std::string& path);

// `text` as a 32-bit integer when it is numeric by the loose rules (blanks
// around it, a sign, decimals, an exponent), decimals rounded half to even;
// `default_value` when it is not numeric or out of the 32-bit range. Never
// raises.
int32_t ToLongOrDefault(std::string_view text, int32_t default_value);

// A new GUID text in the given format, as KvoUtils::KvoGenerateGUID makes it.
// Failures reach the caller.
std::string NewGuidText(KvoGuidFormatEnum format);

}  // namespace veld

#endif  // VELD_FOUNDATION_THIS_UTILS_H_
