// The declared type of a database column, read the way a typed database
// reads it, and the conversion of text to a value of that type.
#ifndef VELD_TABLESTORE_FIELD_TYPE_H_
#define VELD_TABLESTORE_FIELD_TYPE_H_

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

namespace veld {

enum class FieldKind {
  kAny,       // no declared type (or BLOB): the text is stored as it is
  kInteger,   // whole numbers in [min, max]
  kReal,      // floating point
  kDecimal,   // NUMERIC(p, s): rounded to s decimals, at most p digits
  kBoolean,   // stored as 1 or 0
  kDate,      // "yyyy-mm-dd"
  kTime,      // "hh:mm:ss"
  kDateTime,  // "yyyy-mm-dd hh:mm:ss"
  kText,      // text of at most `length` characters (0: no limit)
};

struct FieldType {
  FieldKind kind = FieldKind::kAny;
  int64_t min = 0;
  int64_t max = 0;
  int32_t length = 0;
  int32_t precision = 0;
  int32_t scale = 0;
  // For kDecimal: 10^scale, and the bound 10^(precision - scale) that the
  // rounded magnitude must stay below.
  double scale_factor = 1.0;
  double limit = 0.0;
};

// The type of a column from its declared type text ("INTEGER",
// "VARCHAR(20)", "NUMERIC(10,2)", "DATETIME", ...), case-insensitively.
FieldType ClassifyDeclaredType(std::string_view declared);

using FieldValue = std::variant<int64_t, double, std::string>;

// The value of `text` as a value of `type`, or nullopt when it does not
// convert (not a number, out of range, not a date, too long, ...).
std::optional<FieldValue> ConvertText(const FieldType& type, std::string_view text);
// The same into `out`, reusing the text buffer `out` may hold; false (and
// `out` unspecified) when the text does not convert.
bool ConvertTextInto(const FieldType& type, std::string_view text, FieldValue& out);

// The date and time forms the conversion reads, each with optional blanks
// around it: "yyyy-mm-dd", "yyyy-mm-dd hh:mm[:ss]" (also with "T"),
// "m/d/yyyy", "m/d/yyyy h:mm[:ss] [AM|PM]", "h:mm[:ss] [AM|PM]".
struct ParsedDateTime {
  bool has_date = false;
  bool has_time = false;
  int year = 0, month = 0, day = 0, hour = 0, minute = 0, second = 0;
};
std::optional<ParsedDateTime> ParseDateTimeText(std::string_view text);

}  // namespace veld

#endif  // VELD_TABLESTORE_FIELD_TYPE_H_
