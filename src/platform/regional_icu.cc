// Regional settings from ICU's locale data, mapped to the Windows pictures.
//
// ICU's patterns differ from what a Windows user of the same locale sees in
// small ways that matter to callers: its short date often has a two-digit
// year (en-US "M/d/yy") where Windows shows four, its medium time carries
// U+202F before the designator, and it spells fields in its own letters.
// The conversion below keeps the field order and literals of ICU's pattern
// and writes each field the Windows way.
#include <memory>
#include <string>

#include <unicode/calendar.h>
#include <unicode/datefmt.h>
#include <unicode/dcfmtsym.h>
#include <unicode/decimfmt.h>
#include <unicode/dtfmtsym.h>
#include <unicode/locid.h>
#include <unicode/numfmt.h>
#include <unicode/smpdtfmt.h>
#include <unicode/unistr.h>

#include "platform/locale_id.h"
#include "veld/platform/regional_settings.h"

namespace veld {

namespace {

std::string ToUtf8(const icu::UnicodeString& text) {
  std::string out;
  text.toUTF8String(out);
  return out;
}

// Narrow and ordinary no-break spaces become plain blanks: callers compare
// and print these texts, and Windows writes a plain blank in their place.
std::string Plain(const icu::UnicodeString& text) {
  icu::UnicodeString copy(text);
  copy.findAndReplace(icu::UnicodeString(static_cast<UChar>(0x202F)), icu::UnicodeString(" "));
  copy.findAndReplace(icu::UnicodeString(static_cast<UChar>(0x00A0)), icu::UnicodeString(" "));
  return ToUtf8(copy);
}

// ICU pattern -> Windows picture. Literal text stays quoted; fields are
// rewritten; the year is always written with four digits when
// `four_digit_year` is set.
std::string ToWindowsPicture(const icu::UnicodeString& pattern, bool four_digit_year) {
  const std::string text = Plain(pattern);
  std::string out;
  size_t i = 0;
  while (i < text.size()) {
    const char c = text[i];
    if (c == '\'') {
      // Quoted literal; '' is a single quote.
      size_t end = i + 1;
      std::string literal;
      while (end < text.size()) {
        if (text[end] == '\'') {
          if (end + 1 < text.size() && text[end + 1] == '\'') {
            literal.push_back('\'');
            end += 2;
            continue;
          }
          break;
        }
        literal.push_back(text[end++]);
      }
      if (i + 1 == end && end < text.size()) {
        out += "''";  // '' outside quotes: one quote character
      } else {
        out += "'" + literal + "'";
      }
      i = end + 1;
      continue;
    }
    if (!((c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'))) {
      out.push_back(c);
      ++i;
      continue;
    }
    size_t run = 1;
    while (i + run < text.size() && text[i + run] == c) ++run;
    i += run;
    switch (c) {
      case 'y':
      case 'Y':
      case 'u':
        out += (run == 2 && !four_digit_year) ? "yy" : "yyyy";
        break;
      case 'M':
      case 'L':
        out += std::string(std::min<size_t>(run, 4), 'M');
        break;
      case 'd':
        out += std::string(std::min<size_t>(run, 2), 'd');
        break;
      case 'E':
      case 'c':
      case 'e':
        out += run >= 4 ? "dddd" : "ddd";
        break;
      case 'h':
      case 'K':
        out += std::string(std::min<size_t>(run, 2), 'h');
        break;
      case 'H':
      case 'k':
        out += std::string(std::min<size_t>(run, 2), 'H');
        break;
      case 'm':
        out += std::string(std::min<size_t>(run, 2), 'm');
        break;
      case 's':
        out += std::string(std::min<size_t>(run, 2), 's');
        break;
      case 'a':
      case 'b':
      case 'B':
        out += "tt";
        break;
      default:
        // Zones, eras and the like have no Windows picture: dropped, with
        // the blank that stood before them.
        while (!out.empty() && out.back() == ' ') out.pop_back();
        break;
    }
  }
  while (!out.empty() && out.back() == ' ') out.pop_back();
  return out;
}

// The first character between two fields of a picture ("/" in "M/d/yyyy").
std::string SeparatorOf(const std::string& picture, const std::string& fallback) {
  bool seen_field = false;
  for (size_t i = 0; i < picture.size(); ++i) {
    const char c = picture[i];
    const bool letter = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
    if (letter) {
      seen_field = true;
    } else if (seen_field && c != '\'' && c != ' ' && c != ',') {
      // One UTF-8 character.
      size_t len = 1;
      while (i + len < picture.size() &&
             (static_cast<unsigned char>(picture[i + len]) & 0xC0) == 0x80)
        ++len;
      return picture.substr(i, len);
    }
  }
  return fallback;
}

std::string SymbolOf(const icu::DecimalFormatSymbols& symbols,
                     icu::DecimalFormatSymbols::ENumberFormatSymbol which) {
  return Plain(symbols.getSymbol(which));
}

// Windows' positive and negative currency numbers from ICU's currency and
// accounting patterns: where the symbol stands, whether a blank separates
// it, and whether negatives are bracketed.
void CurrencyForms(const icu::Locale& locale, RegionalSettings& out) {
  UErrorCode status = U_ZERO_ERROR;
  std::unique_ptr<icu::NumberFormat> currency(
      icu::NumberFormat::createInstance(locale, UNUM_CURRENCY_ACCOUNTING, status));
  if (U_FAILURE(status) || currency == nullptr) return;
  auto* decimal = dynamic_cast<icu::DecimalFormat*>(currency.get());
  if (decimal == nullptr) return;
  icu::UnicodeString pattern;
  const std::string text = Plain(decimal->toPattern(pattern));
  const size_t semicolon = text.find(';');
  const std::string positive = text.substr(0, semicolon);
  const std::string negative = semicolon == std::string::npos ? "" : text.substr(semicolon + 1);
  const std::string sign = "\xC2\xA4";  // U+00A4, the currency placeholder
  const size_t symbol = positive.find(sign);
  const size_t digit = positive.find_first_of("#0");
  if (symbol == std::string::npos || digit == std::string::npos) return;
  const bool before = symbol < digit;
  const bool spaced =
      before ? positive.find(' ', symbol) != std::string::npos && positive.find(' ', symbol) < digit
             : positive.find(' ') != std::string::npos;
  out.currency_positive_format = before ? (spaced ? 2 : 0) : (spaced ? 3 : 1);
  const bool bracketed = negative.find('(') != std::string::npos;
  if (before) {
    out.currency_negative_format = bracketed ? (spaced ? 14 : 0) : (spaced ? 9 : 1);
  } else {
    out.currency_negative_format = bracketed ? (spaced ? 15 : 4) : (spaced ? 8 : 5);
  }
  out.currency_digits = currency->getMinimumFractionDigits();
}

}  // namespace

std::shared_ptr<const RegionalSettings> BuildRegionalSettings(const std::string& tag) {
  auto out = std::make_shared<RegionalSettings>();
  UErrorCode status = U_ZERO_ERROR;
  icu::Locale locale = icu::Locale::forLanguageTag(tag, status);
  if (U_FAILURE(status) || locale.isBogus()) {
    status = U_ZERO_ERROR;
    locale = icu::Locale::getRoot();
  }
  out->locale_id = tag;

  status = U_ZERO_ERROR;
  icu::DateFormatSymbols date_symbols(locale, status);
  if (U_SUCCESS(status)) {
    int32_t count = 0;
    const icu::UnicodeString* months = date_symbols.getMonths(count);
    for (int32_t i = 0; i < count && i < 12; ++i) out->month_names[i] = Plain(months[i]);
    months = date_symbols.getShortMonths(count);
    for (int32_t i = 0; i < count && i < 12; ++i)
      out->abbreviated_month_names[i] = Plain(months[i]);
    // ICU's weekday arrays are 1-based (index 0 unused), Sunday first.
    const icu::UnicodeString* days = date_symbols.getWeekdays(count);
    for (int32_t i = 1; i < count && i <= 7; ++i) out->day_names[i - 1] = Plain(days[i]);
    days = date_symbols.getShortWeekdays(count);
    for (int32_t i = 1; i < count && i <= 7; ++i)
      out->abbreviated_day_names[i - 1] = Plain(days[i]);
    const icu::UnicodeString* am_pm = date_symbols.getAmPmStrings(count);
    if (count >= 2) {
      out->am_designator = Plain(am_pm[0]);
      out->pm_designator = Plain(am_pm[1]);
    }
  }

  auto picture = [&](icu::DateFormat* format, bool four_digit_year, std::string& into) {
    std::unique_ptr<icu::DateFormat> owned(format);
    auto* simple = dynamic_cast<icu::SimpleDateFormat*>(owned.get());
    if (simple == nullptr) return;
    icu::UnicodeString pattern;
    into = ToWindowsPicture(simple->toPattern(pattern), four_digit_year);
  };
  picture(icu::DateFormat::createDateInstance(icu::DateFormat::kShort, locale), true,
          out->short_date_pattern);
  picture(icu::DateFormat::createDateInstance(icu::DateFormat::kFull, locale), true,
          out->long_date_pattern);
  picture(icu::DateFormat::createTimeInstance(icu::DateFormat::kMedium, locale), false,
          out->long_time_pattern);
  out->date_separator = SeparatorOf(out->short_date_pattern, "/");
  out->time_separator = SeparatorOf(out->long_time_pattern, ":");

  status = U_ZERO_ERROR;
  icu::DecimalFormatSymbols number_symbols(locale, status);
  if (U_SUCCESS(status)) {
    out->decimal_symbol =
        SymbolOf(number_symbols, icu::DecimalFormatSymbols::kDecimalSeparatorSymbol);
    out->grouping_symbol =
        SymbolOf(number_symbols, icu::DecimalFormatSymbols::kGroupingSeparatorSymbol);
    out->currency_symbol = SymbolOf(number_symbols, icu::DecimalFormatSymbols::kCurrencySymbol);
  }
  // Windows' list separator is ";" wherever the comma is the decimal symbol.
  out->list_separator = out->decimal_symbol == "," ? ";" : ",";
  CurrencyForms(locale, *out);

  status = U_ZERO_ERROR;
  std::unique_ptr<icu::Calendar> calendar(icu::Calendar::createInstance(locale, status));
  if (U_SUCCESS(status)) {
    const UCalendarDaysOfWeek first = calendar->getFirstDayOfWeek(status);
    if (U_SUCCESS(status))
      out->first_day_of_week = static_cast<int32_t>(first);  // UCAL_SUNDAY is 1
  }
  return out;
}

}  // namespace veld
