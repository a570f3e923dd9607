// Raising the control collections' errors with their texts.
#ifndef VELD_CONTROLS_CONTROL_ERRORS_H_
#define VELD_CONTROLS_CONTROL_ERRORS_H_

#include <cstdint>
#include <string>

#include "veld/runtime/variant.h"

namespace veld::controls_internal {

[[noreturn]] void RaiseControlError(int32_t number);

// The key an Add or SetKey argument names: "" for Missing and Empty, the
// text of anything else (raising 94 for Null).
std::string KeyArgument(const Variant& value);

// Text, image and similar arguments: "" for Missing and Empty.
std::string TextArgument(const Variant& value);

// Raises 35603 for a key that is numeric text.
void CheckKeyForm(const std::string& key);

}  // namespace veld::controls_internal

#endif  // VELD_CONTROLS_CONTROL_ERRORS_H_
