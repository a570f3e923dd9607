// Variant: the automation runtime's tagged value.
//
// A Variant holds one of: Empty (never assigned), Null, Missing (an optional
// argument the caller left out), Boolean, Byte, Integer (16-bit), Long
// (32-bit), Double, Date or String. Conversions follow the classic automation
// rules: numbers convert to text as "5" or "2.5", booleans as "True"/"False",
// and conversions to whole numbers round halves to the even neighbour.
#ifndef VELD_RUNTIME_VARIANT_H_
#define VELD_RUNTIME_VARIANT_H_

#include <cstdint>
#include <string>
#include <variant>

#include "veld/export.h"

namespace veld {

// The classic VarType numbers of the kinds a Variant can hold. Missing is an
// Error-typed value (the "parameter not found" marker).
enum class VarType : int32_t {
  kEmpty = 0,
  kNull = 1,
  kInteger = 2,
  kLong = 3,
  kDouble = 5,
  kDate = 7,
  kString = 8,
  kError = 10,
  kBoolean = 11,
  kByte = 17,
};

class VELD_EXPORT Variant {
 public:
  // Empty.
  Variant() = default;
  Variant(bool value) : value_(value) {}
  Variant(uint8_t value) : value_(value) {}
  Variant(int16_t value) : value_(value) {}
  Variant(int32_t value) : value_(value) {}
  Variant(double value) : value_(value) {}
  Variant(const char* value) : value_(std::string(value)) {}
  Variant(std::string value) : value_(std::move(value)) {}

  static Variant Empty() { return Variant(); }
  static Variant Null() { return Variant(NullTag{}); }
  static Variant Missing() { return Variant(MissingTag{}); }
  // A date as the classic serial number: days since 1899-12-30, the fraction
  // being the time of day.
  static Variant Date(double serial) { return Variant(DateValue{serial}); }

  VarType Type() const;
  bool IsEmpty() const { return std::holds_alternative<std::monostate>(value_); }
  bool IsNull() const { return std::holds_alternative<NullTag>(value_); }
  bool IsMissing() const { return std::holds_alternative<MissingTag>(value_); }
  bool IsString() const { return std::holds_alternative<std::string>(value_); }
  // True for Byte, Integer, Long, Double, Boolean and Date.
  bool IsNumeric() const;

  // The classic text conversion: Empty gives "", numbers "5" / "2.5",
  // Boolean "True"/"False", Date its general display form. Null and Missing
  // raise 94 "Invalid use of Null" / 13 "Type mismatch".
  std::string ToString() const;
  // Conversion to a 32-bit integer (CLng): numbers round half to even, text is
  // parsed by the loose numeric rules; raises 6 on overflow, 13 on text that is
  // not numeric, 94 on Null. Empty gives 0.
  int32_t ToLong() const;
  // Conversion to a 16-bit integer (CInt), same rules as ToLong.
  int16_t ToInteger() const;
  // Conversion to a double (CDbl); raises 13 on text that is not numeric.
  double ToDouble() const;
  // Conversion to a boolean (CBool): numbers are True when not 0, text "True"
  // and "False" (any case) or numeric text.
  bool ToBool() const;

  // The held value of a given kind; call only when Type() says so.
  bool AsBool() const { return std::get<bool>(value_); }
  uint8_t AsByte() const { return std::get<uint8_t>(value_); }
  int16_t AsInteger() const { return std::get<int16_t>(value_); }
  int32_t AsLong() const { return std::get<int32_t>(value_); }
  double AsDouble() const { return std::get<double>(value_); }
  double AsDate() const { return std::get<DateValue>(value_).serial; }
  const std::string& AsString() const { return std::get<std::string>(value_); }

  // Same kind and same value.
  friend bool operator==(const Variant& a, const Variant& b) { return a.value_ == b.value_; }

 private:
  struct NullTag {
    friend bool operator==(NullTag, NullTag) { return true; }
  };
  struct MissingTag {
    friend bool operator==(MissingTag, MissingTag) { return true; }
  };
  struct DateValue {
    double serial;
    friend bool operator==(DateValue a, DateValue b) { return a.serial == b.serial; }
  };
  explicit Variant(NullTag tag) : value_(tag) {}
  explicit Variant(MissingTag tag) : value_(tag) {}
  explicit Variant(DateValue date) : value_(date) {}

  std::variant<std::monostate, NullTag, MissingTag, bool, uint8_t, int16_t, int32_t, double,
               DateValue, std::string>
      value_;
};

}  // namespace veld

#endif  // VELD_RUNTIME_VARIANT_H_
