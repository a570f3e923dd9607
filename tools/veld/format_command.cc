// veld format: the classic Format function on the command line.
#include <string>

#include "veld/runtime/automation_error.h"
#include "veld/runtime/format.h"

#include "commands.h"
#include "locale_scope.h"

namespace veld::cli {

namespace {

bool IsIsoDate(const std::string& text) {
  if (text.size() < 10) return false;
  for (size_t i = 0; i < 10; ++i) {
    const bool digit = text[i] >= '0' && text[i] <= '9';
    if ((i == 4 || i == 7) ? (text[i] != '-' && text[i] != '/') : !digit) return false;
  }
  return true;
}

// The value as typed: a number in the invariant form ("1234.5"), a date in
// ISO form ("2010-12-19 18:00"), else text (which Format itself then reads
// by the locale, as it reads text).
Variant ValueOf(const std::string& text, bool as_text) {
  if (as_text) return Variant(text);
  try {
    return Variant(Variant(text).ToDouble());
  } catch (const AutomationError&) {
  }
  if (IsIsoDate(text)) {
    try {
      return CDate(Variant(text));
    } catch (const AutomationError&) {
    }
  }
  return Variant(text);
}

int RunFormat(const Args& args) {
  const LocaleScope locale(args);
  const std::string pattern = args.Positional().size() > 1 ? args.At(1) : "";
  const Variant result = Format(ValueOf(args.At(0), args.Has("text")), pattern);
  Out((result.IsNull() ? std::string() : result.AsString()) + "\n");
  return kExitOk;
}

}  // namespace

Command FormatCommand() {
  return Command{
      "format",
      "write a value through a display format, as the classic Format function does",
      "VALUE [PATTERN]",
      1,
      2,
      {{"locale", "ID", "regional settings of this locale (de-DE, en_GB.UTF-8, ...)"},
       {"text", "", "take VALUE as text even when it is a number or an ISO date"}},
      "VALUE is a number in the invariant form (1234.5, -0.001, 1e6), a date in ISO\n"
      "form (2010-12-19 or 2010-12-19 18:00:00), or text. PATTERN is a named format\n"
      "(\"Standard\", \"Short Date\", ...) or a user-defined numeric, date or text pattern;\n"
      "without it the value is written as the classic runtime writes it.\n"
      "Without --locale the process locale (LC_ALL, LC_TIME, LANG) applies.\n"
      "\n"
      "example: veld format --locale de-DE 1234.5 \"#,##0.00\"   prints 1.234,50\n",
      RunFormat};
}

}  // namespace veld::cli
