#include "veld/runtime/variant.h"

#include <optional>
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

// The value of a numeric kind as a double, which holds every Byte, Integer,
// Long and Date exactly (Boolean True is -1); nullopt for the other kinds.
std::optional<double> NumberOf(const Variant& value) {
  switch (value.Type()) {
    case VarType::kBoolean:
      return value.AsBool() ? -1.0 : 0.0;
    case VarType::kByte:
      return value.AsByte();
    case VarType::kInteger:
      return value.AsInteger();
    case VarType::kLong:
      return value.AsLong();
    case VarType::kDouble:
      return value.AsDouble();
    case VarType::kDate:
      return value.AsDate();
    default:
      return std::nullopt;
  }
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

bool Variant::IsNumeric() const { return NumberOf(*this).has_value(); }

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
  if (IsEmpty()) return 0;
  if (IsString()) return veld::ToLong(AsString());
  if (const std::optional<double> number = NumberOf(*this)) return DoubleToLong(*number);
  RaiseNotConvertible(*this);
}

int16_t Variant::ToInteger() const {
  if (IsEmpty()) return 0;
  if (IsString()) return veld::ToInteger(AsString());
  if (const std::optional<double> number = NumberOf(*this)) return DoubleToInteger(*number);
  RaiseNotConvertible(*this);
}

double Variant::ToDouble() const {
  if (IsEmpty()) return 0.0;
  if (IsString()) return veld::ToDouble(AsString());
  if (const std::optional<double> number = NumberOf(*this)) return *number;
  RaiseNotConvertible(*this);
}

bool Variant::ToBool() const {
  if (IsEmpty()) return false;
  if (IsString()) {
    const std::string_view text = TrimBlanks(AsString());
    if (EqualsIgnoreCase(text, "True")) return true;
    if (EqualsIgnoreCase(text, "False")) return false;
    return veld::ToDouble(AsString()) != 0.0;
  }
  if (const std::optional<double> number = NumberOf(*this)) return *number != 0.0;
  RaiseNotConvertible(*this);
}

}  // namespace veld
