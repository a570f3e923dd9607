#include "controls/control_errors.h"

#include "veld/controls/control_observer.h"

#include "runtime/numeric.h"
#include "veld/controls/control.h"
#include "veld/runtime/automation_error.h"

namespace veld {

Control::~Control() = default;
ControlObserver::~ControlObserver() = default;

namespace controls_internal {

void RaiseControlError(int32_t number) {
  switch (number) {
    case ctlerr::kIndexOutOfBounds:
      RaiseError(number, "Index out of bounds");
    case ctlerr::kElementNotFound:
      RaiseError(number, "Element not found");
    case ctlerr::kKeyNotUnique:
      RaiseError(number, "Key is not unique in collection");
    case ctlerr::kInvalidKey:
      RaiseError(number, "Invalid key");
    case ctlerr::kInvalidPropertyValue:
      RaiseError(number, "Invalid property value");
    default:
      RaiseError(number);
  }
}

std::string KeyArgument(const Variant& value) {
  if (value.IsMissing() || value.IsEmpty()) return {};
  return value.ToString();
}

std::string TextArgument(const Variant& value) {
  if (value.IsMissing() || value.IsEmpty()) return {};
  return value.ToString();
}

void CheckKeyForm(const std::string& key) {
  if (!key.empty() && IsNumeric(key)) RaiseControlError(ctlerr::kInvalidKey);
}

}  // namespace controls_internal
}  // namespace veld
