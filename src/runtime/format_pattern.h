// Format patterns compiled into token lists, so that a column of a million
// values is formatted without reading its pattern again. CompilePattern
// keeps the last patterns of each thread in a small cache.
#ifndef VELD_RUNTIME_FORMAT_PATTERN_H_
#define VELD_RUNTIME_FORMAT_PATTERN_H_

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace veld {

struct RegionalSettings;

namespace format_internal {

// Patterns longer than this are cut, as the classic function cuts them.
inline constexpr size_t kMaxPatternLength = 257;

enum class NamedFormat {
  kNone,
  kGeneralNumber,
  kCurrency,
  kFixed,
  kStandard,
  kPercent,
  kScientific,
  kYesNo,
  kTrueFalse,
  kOnOff,
  kGeneralDate,
  kLongDate,
  kMediumDate,
  kShortDate,
  kLongTime,
  kMediumTime,
  kShortTime,
};

// --- numeric sections ---

struct NumberItem {
  enum class Kind {
    kLiteral,
    kIntDigit,
    kDecimalPoint,
    kFracDigit,
    kExponent,
    kExpDigit,
    kDateSeparator,
    kTimeSeparator
  };
  Kind kind = Kind::kLiteral;
  std::string text;  // kLiteral: the text; kExponent: "E" or "e"
  int index = 0;     // kIntDigit / kFracDigit / kExpDigit: position, 0 = leftmost
};

struct NumberSection {
  std::vector<NumberItem> items;
  bool empty = true;  // no characters at all: the first section stands in
  int int_digits = 0;
  int min_int_digits = 0;  // placeholders from the leftmost "0" to the point
  int frac_digits = 0;
  int min_frac_digits = 0;  // placeholders up to the last "0" after the point
  bool decimal_point = false;
  bool grouping = false;
  int thousands_scale = 0;  // each divides by 1000
  int percent = 0;          // each multiplies by 100
  bool scientific = false;
  bool exponent_plus = false;
  int exp_digits = 0;
  int min_exp_digits = 0;
  bool HasDigits() const { return int_digits + frac_digits > 0 || decimal_point; }
};

// --- date sections and Windows pictures ---

enum class DateToken {
  kLiteral,
  kDateSeparator,
  kTimeSeparator,
  kGeneral,    // c
  kDay,        // d
  kDay2,       // dd
  kDayAbbr,    // ddd
  kDayName,    // dddd
  kShortDate,  // ddddd
  kLongDate,   // dddddd
  kWeekday,    // w
  kWeek,       // ww
  kMonth,
  kMonth2,
  kMonthAbbr,
  kMonthName,
  kQuarter,
  kDayOfYear,  // y
  kYear1,      // a picture's "y": the year in the century without padding
  kYear2,
  kYear4,
  kHour,  // 0-23
  kHour2,
  kHour12,  // 1-12
  kHour12_2,
  kMinute,
  kMinute2,
  kSecond,
  kSecond2,
  kLongTime,         // ttttt
  kAmPmUpper,        // AM/PM
  kAmPmLower,        // am/pm
  kAPUpper,          // A/P
  kAPLower,          // a/p
  kAmPmLocale,       // AMPM, a picture's "tt"
  kAmPmLocaleFirst,  // a picture's "t"
};

struct DateItem {
  DateToken token = DateToken::kLiteral;
  std::string text;  // kLiteral only
};

using DateSection = std::vector<DateItem>;

// --- text sections ---

struct TextItem {
  enum class Kind { kLiteral, kCharOrSpace, kCharOrNothing };
  Kind kind = Kind::kLiteral;
  std::string text;
};

struct TextSection {
  std::vector<TextItem> items;
  bool empty = true;
  int placeholders = 0;
  bool lower = false;
  bool upper = false;
  bool left_to_right = false;
};

// --- the compiled pattern ---

enum class PatternKind { kNone, kNamed, kNumeric, kDate, kText };

struct CompiledPattern {
  PatternKind kind = PatternKind::kNone;
  NamedFormat named = NamedFormat::kNone;
  std::vector<NumberSection> number_sections;  // 1 to 4
  DateSection date;
  std::vector<TextSection> text_sections;  // 1 or 2
};

// The compiled form of `pattern` (cut to kMaxPatternLength), from the
// thread's cache when it was compiled before.
std::shared_ptr<const CompiledPattern> CompilePattern(std::string_view pattern);

// A numeric section of its own, outside the cache (for named formats).
NumberSection CompileNumberSection(std::string_view section);

// A Windows picture (veld/platform/regional_settings.h) as date tokens.
DateSection CompilePicture(std::string_view picture);

// The date tokens of a user-defined date pattern's first section.
DateSection CompileDateSection(std::string_view section);

}  // namespace format_internal
}  // namespace veld

#endif  // VELD_RUNTIME_FORMAT_PATTERN_H_
