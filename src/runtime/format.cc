#include "veld/runtime/format.h"

#include <cmath>
#include <optional>
#include <vector>

#include "runtime/date_parse.h"
#include "runtime/date_time.h"
#include "runtime/format_pattern.h"
#include "runtime/format_render.h"
#include "runtime/locale_number.h"
#include "runtime/numeric.h"
#include "runtime/text.h"
#include "veld/platform/platform.h"
#include "veld/platform/regional_settings.h"
#include "veld/runtime/automation_error.h"

namespace veld {

namespace fi = format_internal;

namespace {

constexpr int32_t kInvalidUseOfNull = 94;


// A formatted text, or nullopt for Null.
using Result = std::optional<std::string>;

// What a value is, once text has been read as a number or a date.
struct Operand {
  enum class Kind { kEmpty, kNull, kNumber, kDate, kText } kind = Kind::kEmpty;
  double number = 0;  // kNumber and kDate (the serial)
  std::string text;   // kText: text that is neither a number nor a date
};

// A value for a numeric or date pattern.
Operand Read(const Variant& value, const RegionalSettings& regional) {
  Operand out;
  switch (value.Type()) {
    case VarType::kEmpty:
      return out;
    case VarType::kNull:
      out.kind = Operand::Kind::kNull;
      return out;
    case VarType::kDate:
      out.kind = Operand::Kind::kDate;
      out.number = value.AsDate();
      return out;
    case VarType::kString: {
      const std::string& text = value.AsString();
      if (auto number = ParseNumberInLocale(text, regional)) {
        out.kind = Operand::Kind::kNumber;
        out.number = *number;
      } else if (auto serial = ParseDateText(text, regional)) {
        out.kind = Operand::Kind::kDate;
        out.number = *serial;
      } else {
        out.kind = Operand::Kind::kText;
        out.text = text;
      }
      return out;
    }
    case VarType::kBoolean:
      out.kind = Operand::Kind::kNumber;
      out.number = value.AsBool() ? -1 : 0;
      return out;
    case VarType::kError:
      RaiseError(errnum::kTypeMismatch);
    default:
      out.kind = Operand::Kind::kNumber;
      out.number = value.ToDouble();
      return out;
  }
}

// CStr with the locale's decimal symbol.
std::string NumberText(const Variant& value, const RegionalSettings& regional) {
  if (value.Type() != VarType::kDouble) return value.ToString();
  std::string text = DoubleToText(value.AsDouble());
  if (regional.decimal_symbol != ".") {
    const size_t point = text.find('.');
    if (point != std::string::npos) text.replace(point, 1, regional.decimal_symbol);
  }
  return text;
}

std::string DoubleText(double number, const RegionalSettings& regional) {
  return NumberText(Variant(number), regional);
}

void RequireDate(double serial) {
  if (!IsValidDateSerial(serial)) RaiseError(errnum::kInvalidProcedureCall);
}

// The value as a text pattern sees it.
std::string PlainText(const Variant& value, const RegionalSettings& regional) {
  switch (value.Type()) {
    case VarType::kEmpty:
    case VarType::kNull:
      return {};
    case VarType::kString:
      return value.AsString();
    case VarType::kDate: {
      RequireDate(value.AsDate());
      std::string out;
      fi::RenderGeneralDate(value.AsDate(), regional, out);
      return out;
    }
    case VarType::kError:
      RaiseError(errnum::kTypeMismatch);
    default:
      return NumberText(value, regional);
  }
}

void RenderText(const fi::TextSection& section, std::string_view value, std::string& out) {
  std::string cased = section.lower   ? LCase(value)
                      : section.upper ? UCase(value)
                                      : std::string(value);
  std::vector<std::string_view> chars;
  for (size_t i = 0; i < cased.size();) {
    size_t length = 1;
    while (i + length < cased.size() &&
           (static_cast<unsigned char>(cased[i + length]) & 0xC0) == 0x80)
      ++length;
    chars.emplace_back(cased.data() + i, length);
    i += length;
  }
  const int n = static_cast<int>(chars.size());
  const int p = section.placeholders;
  if (p == 0) {
    for (const fi::TextItem& item : section.items) out += item.text;
    out += cased;
    return;
  }
  // Placeholder k shows character k - skip; with more characters than
  // placeholders the last one takes the rest.
  const int skip = n < p && !section.left_to_right ? p - n : 0;
  int k = 0;
  for (const fi::TextItem& item : section.items) {
    if (item.kind == fi::TextItem::Kind::kLiteral) {
      out += item.text;
      continue;
    }
    const int from = k - skip;
    const int to = k == p - 1 ? std::max(n, from + 1) : from + 1;
    if (from >= 0 && from < n) {
      for (int c = from; c < to && c < n; ++c) out += chars[c];
    } else if (item.kind == fi::TextItem::Kind::kCharOrSpace) {
      out.push_back(' ');
    }
    ++k;
  }
}

Result FormatWithText(const fi::CompiledPattern& compiled, const Variant& value,
                      const RegionalSettings& regional) {
  const auto& sections = compiled.text_sections;
  const bool blank =
      value.IsNull() || value.IsEmpty() || (value.IsString() && value.AsString().empty());
  std::string out;
  if (blank && sections.size() >= 2) {
    RenderText(sections[1], "", out);
    return out;
  }
  if (value.IsNull()) return std::nullopt;
  RenderText(sections[0], PlainText(value, regional), out);
  return out;
}

Result FormatNumber(const fi::CompiledPattern& compiled, const Operand& operand,
                    const RegionalSettings& regional) {
  const auto& sections = compiled.number_sections;
  std::string out;
  if (operand.kind == Operand::Kind::kNull) {
    if (sections.size() < 4 || sections[3].empty) return std::nullopt;
    fi::RenderNumber(sections[3], 0, regional, out);
    return out;
  }
  if (operand.kind == Operand::Kind::kText) return operand.text;
  const double number = operand.number;
  if (!std::isfinite(number)) return DoubleText(number, regional);
  const fi::NumberSection* section = &sections[0];
  bool minus = false;
  if (number < 0) {
    if (sections.size() >= 2 && !sections[1].empty) {
      section = &sections[1];
    } else {
      minus = true;
    }
  } else if (number == 0 && sections.size() >= 3 && !sections[2].empty) {
    section = &sections[2];
  }
  if (minus) out.push_back('-');
  fi::RenderNumber(*section, std::fabs(number), regional, out);
  return out;
}

Result FormatDate(const fi::DateSection& items, const Operand& operand,
                  const RegionalSettings& regional, int first_day, int first_week) {
  if (operand.kind == Operand::Kind::kNull) return std::nullopt;
  if (operand.kind == Operand::Kind::kText) return operand.text;
  RequireDate(operand.number);
  std::string out;
  fi::RenderDate(items, operand.number, regional, first_day, first_week, out);
  return out;
}

const fi::NumberSection& Section(std::string_view text) {
  // Compiled once per pattern text; the few named patterns only.
  thread_local std::vector<std::pair<std::string, fi::NumberSection>> compiled;
  for (const auto& [key, section] : compiled) {
    if (key == text) return section;
  }
  compiled.emplace_back(std::string(text), fi::CompileNumberSection(text));
  return compiled.back().second;
}

const fi::DateSection& DatePattern(std::string_view text) {
  thread_local std::vector<std::pair<std::string, fi::DateSection>> compiled;
  for (const auto& [key, items] : compiled) {
    if (key == text) return items;
  }
  compiled.emplace_back(std::string(text), fi::CompileDateSection(text));
  return compiled.back().second;
}

std::string Currency(double number, const RegionalSettings& regional) {
  std::string pattern = "#,##0";
  if (regional.currency_digits > 0)
    pattern += "." + std::string(std::min(regional.currency_digits, 9), '0');
  std::string digits;
  fi::RenderNumber(Section(pattern), std::fabs(number), regional, digits);
  const std::string& s = regional.currency_symbol;
  if (!(number < 0)) {
    switch (regional.currency_positive_format) {
      case 1:
        return digits + s;
      case 2:
        return s + " " + digits;
      case 3:
        return digits + " " + s;
      default:
        return s + digits;
    }
  }
  switch (regional.currency_negative_format) {
    case 1:
      return "-" + s + digits;
    case 2:
      return s + "-" + digits;
    case 3:
      return s + digits + "-";
    case 4:
      return "(" + digits + s + ")";
    case 5:
      return "-" + digits + s;
    case 6:
      return digits + "-" + s;
    case 7:
      return digits + s + "-";
    case 8:
      return "-" + digits + " " + s;
    case 9:
      return "-" + s + " " + digits;
    case 10:
      return digits + " " + s + "-";
    case 11:
      return s + " " + digits + "-";
    case 12:
      return s + " -" + digits;
    case 13:
      return digits + "- " + s;
    case 14:
      return "(" + s + " " + digits + ")";
    case 15:
      return "(" + digits + " " + s + ")";
    default:
      return "(" + s + digits + ")";
  }
}

Result FormatNamed(fi::NamedFormat named, const Variant& value, const RegionalSettings& regional) {
  const Operand operand = Read(value, regional);
  if (operand.kind == Operand::Kind::kNull) return std::nullopt;
  if (operand.kind == Operand::Kind::kText) return operand.text;
  const double number = operand.number;
  auto numeric = [&](std::string_view pattern) -> Result {
    if (!std::isfinite(number)) return DoubleText(number, regional);
    std::string out;
    if (number < 0) out.push_back('-');
    fi::RenderNumber(Section(pattern), std::fabs(number), regional, out);
    return out;
  };
  auto date = [&](const fi::DateSection& items) -> Result {
    RequireDate(number);
    std::string out;
    fi::RenderDate(items, number, regional, 1, 1, out);
    return out;
  };
  switch (named) {
    case fi::NamedFormat::kGeneralNumber:
      if (operand.kind == Operand::Kind::kDate || value.Type() != VarType::kDouble)
        return DoubleText(number, regional);
      return NumberText(value, regional);
    case fi::NamedFormat::kCurrency:
      if (!std::isfinite(number)) return DoubleText(number, regional);
      return Currency(number, regional);
    case fi::NamedFormat::kFixed:
      return numeric("0.00");
    case fi::NamedFormat::kStandard:
      return numeric("#,##0.00");
    case fi::NamedFormat::kPercent:
      return numeric("0.00%");
    case fi::NamedFormat::kScientific:
      return numeric("0.00E+00");
    case fi::NamedFormat::kYesNo:
      return std::string(number != 0 ? "Yes" : "No");
    case fi::NamedFormat::kTrueFalse:
      return std::string(number != 0 ? "True" : "False");
    case fi::NamedFormat::kOnOff:
      return std::string(number != 0 ? "On" : "Off");
    case fi::NamedFormat::kGeneralDate: {
      RequireDate(number);
      std::string out;
      fi::RenderGeneralDate(number, regional, out);
      return out;
    }
    case fi::NamedFormat::kLongDate:
      return date(fi::PicturesOf(regional).long_date);
    case fi::NamedFormat::kMediumDate:
      return date(DatePattern("d-mmm-yy"));
    case fi::NamedFormat::kShortDate:
      return date(fi::PicturesOf(regional).short_date);
    case fi::NamedFormat::kLongTime:
      return date(fi::PicturesOf(regional).long_time);
    case fi::NamedFormat::kMediumTime:
      return date(DatePattern("h:mm AMPM"));
    case fi::NamedFormat::kShortTime:
      return date(DatePattern("hh:mm"));
    case fi::NamedFormat::kNone:
      break;
  }
  return std::nullopt;
}

Result FormatUnpatterned(const Variant& value, const RegionalSettings& regional) {
  switch (value.Type()) {
    case VarType::kEmpty:
      return std::string();
    case VarType::kNull:
      return std::nullopt;
    case VarType::kString:
      return value.AsString();
    default:
      return PlainText(value, regional);
  }
}

}  // namespace

namespace {

Result FormatResult(const Variant& value, std::string_view pattern, int32_t firstDayOfWeek,
                    int32_t firstWeekOfYear) {
  if (firstDayOfWeek < 0 || firstDayOfWeek > 7 || firstWeekOfYear < 0 || firstWeekOfYear > 3)
    RaiseError(errnum::kInvalidProcedureCall);
  if (value.IsMissing()) RaiseError(errnum::kTypeMismatch);
  const std::shared_ptr<const RegionalSettings> regional = CurrentPlatform().Regional();
  const int first_day = firstDayOfWeek == 0 ? regional->first_day_of_week : firstDayOfWeek;
  const int first_week = firstWeekOfYear == 0 ? 1 : firstWeekOfYear;
  const std::shared_ptr<const fi::CompiledPattern> compiled = fi::CompilePattern(pattern);
  switch (compiled->kind) {
    case fi::PatternKind::kNone:
      return FormatUnpatterned(value, *regional);
    case fi::PatternKind::kNamed:
      return FormatNamed(compiled->named, value, *regional);
    case fi::PatternKind::kNumeric:
      return FormatNumber(*compiled, Read(value, *regional), *regional);
    case fi::PatternKind::kDate:
      return FormatDate(compiled->date, Read(value, *regional), *regional, first_day, first_week);
    case fi::PatternKind::kText:
      return FormatWithText(*compiled, value, *regional);
  }
  return std::nullopt;
}

}  // namespace

Variant Format(const Variant& value, std::string_view pattern, int32_t firstDayOfWeek,
               int32_t firstWeekOfYear) {
  Result result = FormatResult(value, pattern, firstDayOfWeek, firstWeekOfYear);
  if (!result) return Variant::Null();
  return Variant(std::move(*result));
}

std::string FormatText(const Variant& value, std::string_view pattern, int32_t firstDayOfWeek,
                       int32_t firstWeekOfYear) {
  Result result = FormatResult(value, pattern, firstDayOfWeek, firstWeekOfYear);
  if (!result) RaiseError(kInvalidUseOfNull);
  return std::move(*result);
}

}  // namespace veld
