#include "veld/runtime/variant.h"

#include <string_view>
#include <type_traits>

#include "runtime/date_time.h"
#include "runtime/numeric.h"
#include "runtime/text.h"
#include "veld/runtime/automation_error.h"

namespace veld {

namespace {

constexpr int32_t kInvalidUseOfNull = 94;

// Null and Missing convert to nothing. Null raises 94 like every classic
// conversion of Null. Missing is the "parameter not found" error value:
// the automation conversions of an error value fail with a type mismatch,
// which is what a caller passing Missing where a value is needed should see.
[[noreturn]] void RaiseNotConvertible(const Variant& value) {
  RaiseError(value.IsNull() ? kInvalidUseOfNull : errnum::kTypeMismatch);
}

std::string_view TrimBlanks(std::string_view text) {
  const size_t first = text.find_first_not_of(" \t");
  if (first == std::string_view::npos) return {};
  const size_t last = text.find_last_not_of(" \t");
  return text.substr(first, last - first + 1);
}

}  // namespace

VarType Variant::Type() const {
  // The cases follow the order of the alternatives in value_.
  using Value = decltype(value_);
  static_assert(std::is_same_v<std::variant_alternative_t<2, Value>, MissingTag>);
  static_assert(std::is_same_v<std::variant_alternative_t<8, Value>, DateValue>);
  static_assert(std::variant_size_v<Value> == 10);
  switch (value_.index()) {
    case 0:
      return VarType::kEmpty;
    case 1:
      return VarType::kNull;
    case 2:
      return VarType::kError;
    case 3:
      return VarType::kBoolean;
    case 4:
      return VarType::kByte;
    case 5:
      return VarType::kInteger;
    case 6:
      return VarType::kLong;
    case 7:
      return VarType::kDouble;
    case 8:
      return VarType::kDate;
    default:
      return VarType::kString;
  }
}

bool Variant::IsNumeric() const {
  switch (Type()) {
    case VarType::kBoolean:
    case VarType::kByte:
    case VarType::kInteger:
    case VarType::kLong:
    case VarType::kDouble:
    case VarType::kDate:
      return true;
    default:
      return false;
  }
}

std::string Variant::ToString() const {
  switch (Type()) {
    case VarType::kEmpty:
      return std::string();
    case VarType::kBoolean:
      return AsBool() ? "True" : "False";
    case VarType::kByte:
      return std::to_string(AsByte());
    case VarType::kInteger:
      return std::to_string(AsInteger());
    case VarType::kLong:
      return std::to_string(AsLong());
    case VarType::kDouble:
      return DoubleToText(AsDouble());
    case VarType::kDate:
      return DateToText(AsDate());
    case VarType::kString:
      return AsString();
    default:
      RaiseNotConvertible(*this);
  }
}

int32_t Variant::ToLong() const {
  switch (Type()) {
    case VarType::kEmpty:
      return 0;
    case VarType::kBoolean:
      return AsBool() ? -1 : 0;
    case VarType::kByte:
      return AsByte();
    case VarType::kInteger:
      return AsInteger();
    case VarType::kLong:
      return AsLong();
    case VarType::kDouble:
      return DoubleToLong(AsDouble());
    case VarType::kDate:
      return DoubleToLong(AsDate());
    case VarType::kString:
      return veld::ToLong(AsString());
    default:
      RaiseNotConvertible(*this);
  }
}

int16_t Variant::ToInteger() const {
  switch (Type()) {
    case VarType::kEmpty:
      return 0;
    case VarType::kBoolean:
      return AsBool() ? -1 : 0;
    case VarType::kByte:
      return AsByte();
    case VarType::kInteger:
      return AsInteger();
    case VarType::kLong:
      if (AsLong() < -32768 || AsLong() > 32767) RaiseError(errnum::kOverflow);
      return static_cast<int16_t>(AsLong());
    case VarType::kDouble:
      return DoubleToInteger(AsDouble());
    case VarType::kDate:
      return DoubleToInteger(AsDate());
    case VarType::kString:
      return veld::ToInteger(AsString());
    default:
      RaiseNotConvertible(*this);
  }
}

double Variant::ToDouble() const {
  switch (Type()) {
    case VarType::kEmpty:
      return 0.0;
    case VarType::kBoolean:
      return AsBool() ? -1.0 : 0.0;
    case VarType::kByte:
      return AsByte();
    case VarType::kInteger:
      return AsInteger();
    case VarType::kLong:
      return AsLong();
    case VarType::kDouble:
      return AsDouble();
    case VarType::kDate:
      return AsDate();
    case VarType::kString:
      return veld::ToDouble(AsString());
    default:
      RaiseNotConvertible(*this);
  }
}

bool Variant::ToBool() const {
  switch (Type()) {
    case VarType::kEmpty:
      return false;
    case VarType::kBoolean:
      return AsBool();
    case VarType::kByte:
      return AsByte() != 0;
    case VarType::kInteger:
      return AsInteger() != 0;
    case VarType::kLong:
      return AsLong() != 0;
    case VarType::kDouble:
      return AsDouble() != 0.0;
    case VarType::kDate:
      return AsDate() != 0.0;
    case VarType::kString: {
      const std::string_view text = TrimBlanks(AsString());
      if (EqualsIgnoreCase(text, "True")) return true;
      if (EqualsIgnoreCase(text, "False")) return false;
      return veld::ToDouble(AsString()) != 0.0;
    }
    default:
      RaiseNotConvertible(*this);
  }
}

}  // namespace veld
