// Regional settings from Windows' own locale data (GetLocaleInfoEx): the
// pictures, symbols and names are those the control panel shows.
#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <memory>
#include <string>

#include <windows.h>

#include "platform/locale_id.h"
#include "runtime/windows/wide_text.h"
#include "veld/platform/regional_settings.h"

namespace veld {

namespace {

// One text item; `fallback` when the locale has none.
std::string Info(const std::wstring& name, LCTYPE type, const std::string& fallback) {
  wchar_t buffer[256];
  const int length = GetLocaleInfoEx(name.c_str(), type, buffer, 256);
  if (length <= 1) return fallback;
  return Narrow(std::wstring_view(buffer, static_cast<size_t>(length - 1)));
}

int32_t Number(const std::wstring& name, LCTYPE type, int32_t fallback) {
  DWORD value = 0;
  if (GetLocaleInfoEx(name.c_str(), type | LOCALE_RETURN_NUMBER, reinterpret_cast<LPWSTR>(&value),
                      sizeof(value) / sizeof(wchar_t)) == 0)
    return fallback;
  return static_cast<int32_t>(value);
}

}  // namespace

std::shared_ptr<const RegionalSettings> BuildRegionalSettings(const std::string& tag) {
  auto out = std::make_shared<RegionalSettings>();
  out->locale_id = tag;
  // A locale Windows does not know reads the invariant locale's data, as
  // ICU reads its root locale's.
  std::wstring name = Widen(tag);
  if (!IsValidLocaleName(name.c_str())) name = LOCALE_NAME_INVARIANT;
  out->short_date_pattern = Info(name, LOCALE_SSHORTDATE, out->short_date_pattern);
  out->long_date_pattern = Info(name, LOCALE_SLONGDATE, out->long_date_pattern);
  out->long_time_pattern = Info(name, LOCALE_STIMEFORMAT, out->long_time_pattern);
  out->am_designator = Info(name, LOCALE_S1159, "");
  out->pm_designator = Info(name, LOCALE_S2359, "");
  out->decimal_symbol = Info(name, LOCALE_SDECIMAL, out->decimal_symbol);
  out->grouping_symbol = Info(name, LOCALE_STHOUSAND, out->grouping_symbol);
  out->list_separator = Info(name, LOCALE_SLIST, out->list_separator);
  out->date_separator = Info(name, LOCALE_SDATE, out->date_separator);
  out->time_separator = Info(name, LOCALE_STIME, out->time_separator);
  out->currency_symbol = Info(name, LOCALE_SCURRENCY, out->currency_symbol);
  out->currency_positive_format = Number(name, LOCALE_ICURRENCY, 0);
  out->currency_negative_format = Number(name, LOCALE_INEGCURR, 0);
  out->currency_digits = Number(name, LOCALE_ICURRDIGITS, 2);
  // LOCALE_IFIRSTDAYOFWEEK counts from Monday (0) to Sunday (6).
  out->first_day_of_week = (Number(name, LOCALE_IFIRSTDAYOFWEEK, 6) + 1) % 7 + 1;
  for (int i = 0; i < 12; ++i) {
    out->month_names[i] = Info(name, LOCALE_SMONTHNAME1 + i, "");
    out->abbreviated_month_names[i] = Info(name, LOCALE_SABBREVMONTHNAME1 + i, "");
  }
  // LOCALE_SDAYNAME1 is Monday; the settings start with Sunday.
  for (int i = 0; i < 7; ++i) {
    const int monday_based = (i + 6) % 7;
    out->day_names[i] = Info(name, LOCALE_SDAYNAME1 + monday_based, "");
    out->abbreviated_day_names[i] = Info(name, LOCALE_SABBREVDAYNAME1 + monday_based, "");
  }
  return out;
}

std::string ProcessLocaleId() {
  wchar_t buffer[LOCALE_NAME_MAX_LENGTH];
  const int length = GetUserDefaultLocaleName(buffer, LOCALE_NAME_MAX_LENGTH);
  if (length <= 1) return "en-US";
  return NormalizeLocaleId(Narrow(std::wstring_view(buffer, static_cast<size_t>(length - 1))));
}

}  // namespace veld
