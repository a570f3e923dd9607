// The regional settings read through GetLocaleInfoEx, checked against the
// pictures and names a Windows user of each locale sees, and the ANSI code
// page of the system's locale.
#define NOMINMAX
#define WIN32_LEAN_AND_MEAN
#include <string>

#include <gtest/gtest.h>
#include <windows.h>

#include "runtime/code_page.h"
#include "veld/platform/platform.h"
#include "veld/platform/regional_settings.h"

namespace veld {
namespace {

TEST(WindowsRegionalTest, American) {
  const auto us = RegionalSettingsForLocale("en-US");
  EXPECT_EQ(us->locale_id, "en-US");
  EXPECT_EQ(us->short_date_pattern, "M/d/yyyy");
  EXPECT_EQ(us->long_time_pattern, "h:mm:ss tt");
  EXPECT_EQ(us->am_designator, "AM");
  EXPECT_EQ(us->pm_designator, "PM");
  EXPECT_EQ(us->decimal_symbol, ".");
  EXPECT_EQ(us->grouping_symbol, ",");
  EXPECT_EQ(us->date_separator, "/");
  EXPECT_EQ(us->time_separator, ":");
  EXPECT_EQ(us->currency_symbol, "$");
  EXPECT_EQ(us->first_day_of_week, 1);
  EXPECT_EQ(us->month_names[0], "January");
  EXPECT_EQ(us->abbreviated_month_names[11], "Dec");
  EXPECT_EQ(us->day_names[0], "Sunday");
  EXPECT_EQ(us->abbreviated_day_names[6], "Sat");
}

TEST(WindowsRegionalTest, German) {
  const auto de = RegionalSettingsForLocale("de_DE.UTF-8");
  EXPECT_EQ(de->locale_id, "de-DE");
  // Windows shows "dd.MM.yyyy"; Wine's locale data has "d.M.yyyy".
  EXPECT_TRUE(de->short_date_pattern == "dd.MM.yyyy" || de->short_date_pattern == "d.M.yyyy")
      << de->short_date_pattern;
  EXPECT_EQ(de->date_separator, ".");
  EXPECT_EQ(de->long_time_pattern, "HH:mm:ss");
  EXPECT_EQ(de->decimal_symbol, ",");
  EXPECT_EQ(de->grouping_symbol, ".");
  EXPECT_EQ(de->list_separator, ";");
  EXPECT_EQ(de->first_day_of_week, 2);
  EXPECT_EQ(de->month_names[0], "Januar");
  EXPECT_EQ(de->month_names[2], "M\xC3\xA4rz");
  EXPECT_EQ(de->day_names[0], "Sonntag");
}

TEST(WindowsRegionalTest, CAndPosixAreAmerican) {
  EXPECT_EQ(RegionalSettingsForLocale("C")->locale_id, "en-US");
  EXPECT_EQ(RegionalSettingsForLocale("POSIX")->short_date_pattern, "M/d/yyyy");
}

TEST(WindowsCodePageTest, TheAnsiCodePageIsTheSystemsOwn) {
  EXPECT_EQ(Platform::Default().AnsiCodePage(), "windows-" + std::to_string(::GetACP()));
  // Through it, text goes to bytes and back: "Café" in that code page.
  const std::string cafe = "Caf\xC3\xA9";
  const std::string bytes = ToAnsiBytes(cafe);
  if (::GetACP() == 1252) EXPECT_EQ(bytes, "Caf\xE9");
  EXPECT_EQ(FromAnsiBytes(bytes), cafe);
}

TEST(WindowsRegionalTest, TheUsersLocaleHasAName) {
  EXPECT_FALSE(ProcessLocaleId().empty());
  EXPECT_FALSE(RegionalSettingsForLocale(ProcessLocaleId())->short_date_pattern.empty());
}

}  // namespace
}  // namespace veld
