// CDate and IsDate (declared in veld/runtime/format.h).
#include <cmath>

#include "runtime/date_parse.h"
#include "runtime/date_time.h"
#include "veld/platform/platform.h"
#include "veld/platform/regional_settings.h"
#include "veld/runtime/automation_error.h"
#include "veld/runtime/format.h"

namespace veld {

Variant CDate(const Variant& value) {
  switch (value.Type()) {
    case VarType::kNull:
      RaiseError(94);  // Invalid use of Null
    case VarType::kDate:
      return value;
    case VarType::kEmpty:
      return Variant::Date(0);
    case VarType::kString: {
      const auto serial = ParseDateText(value.AsString(), *CurrentPlatform().Regional());
      if (!serial) RaiseError(errnum::kTypeMismatch);
      return Variant::Date(*serial);
    }
    case VarType::kError:
      RaiseError(errnum::kTypeMismatch);
    default: {
      const double serial = value.ToDouble();
      if (!IsValidDateSerial(serial)) RaiseError(errnum::kOverflow);
      return Variant::Date(serial);
    }
  }
}

bool IsDate(const Variant& value) {
  if (value.Type() == VarType::kDate) return true;
  if (!value.IsString()) return false;
  return ParseDateText(value.AsString(), *CurrentPlatform().Regional()).has_value();
}

}  // namespace veld
