#include "veld/platform/regional_settings.h"

#include <cstdlib>
#include <optional>
#include <string>

#include <gtest/gtest.h>

#include "veld/platform/platform.h"

#include "support/testing.h"

namespace veld {
namespace {

struct LocaleCase {
  const char* id;
  const char* short_date;
  const char* long_time;
  const char* decimal;
  const char* grouping;
  const char* january;
};

TEST(RegionalSettingsTest, PatternsAreThoseAWindowsUserSees) {
  const LocaleCase cases[] = {
      {"en-US", "M/d/yyyy", "h:mm:ss tt", ".", ",", "January"},
      {"en-GB", "dd/MM/yyyy", "HH:mm:ss", ".", ",", "January"},
      {"de-DE", "dd.MM.yyyy", "HH:mm:ss", ",", ".", "Januar"},
      {"fr-FR", "dd/MM/yyyy", "HH:mm:ss", ",", " ", "janvier"},
      {"ja-JP", "yyyy/MM/dd", "H:mm:ss", ".", ",", "1\xE6\x9C\x88"},
  };
  // Where Wine's locale data differs from what Windows shows.
  const struct {
    std::string id;
    std::string short_date;
    std::string grouping;
  } wine[] = {
      {"de-DE", "d.M.yyyy", "."}, {"fr-FR", "dd/MM/yyyy", "\xC2\xA0"}, {"ja-JP", "yyyy/M/d", ","}};
  for (auto c : cases) {
    for (const auto& w : wine) {
      if (testing::RunningOnWine() && w.id == c.id) {
        c.short_date = w.short_date.c_str();
        c.grouping = w.grouping.c_str();
      }
    }
    const auto settings = RegionalSettingsForLocale(c.id);
    EXPECT_EQ(settings->locale_id, c.id);
    EXPECT_EQ(settings->short_date_pattern, c.short_date) << c.id;
    EXPECT_EQ(settings->long_time_pattern, c.long_time) << c.id;
    EXPECT_EQ(settings->decimal_symbol, c.decimal) << c.id;
    EXPECT_EQ(settings->grouping_symbol, c.grouping) << c.id;
    EXPECT_EQ(settings->month_names[0], c.january) << c.id;
  }
}

TEST(RegionalSettingsTest, AmericanDetails) {
  const auto us = RegionalSettingsForLocale("en-US");
  EXPECT_EQ(us->long_date_pattern, "dddd, MMMM d, yyyy");
  EXPECT_EQ(us->am_designator, "AM");
  EXPECT_EQ(us->pm_designator, "PM");
  EXPECT_EQ(us->date_separator, "/");
  EXPECT_EQ(us->time_separator, ":");
  EXPECT_EQ(us->list_separator, ",");
  EXPECT_EQ(us->currency_symbol, "$");
  EXPECT_EQ(us->currency_positive_format, 0);
  EXPECT_EQ(us->currency_negative_format, 0);
  EXPECT_EQ(us->first_day_of_week, 1);
  EXPECT_EQ(us->abbreviated_month_names[11], "Dec");
  EXPECT_EQ(us->day_names[0], "Sunday");
  EXPECT_EQ(us->abbreviated_day_names[6], "Sat");
}

TEST(RegionalSettingsTest, GermanDetails) {
  const auto de = RegionalSettingsForLocale("de-DE");
  EXPECT_EQ(de->date_separator, ".");
  EXPECT_EQ(de->list_separator, ";");
  EXPECT_EQ(de->currency_symbol, "\xE2\x82\xAC");
  EXPECT_EQ(de->currency_positive_format, 3);
  EXPECT_EQ(de->currency_negative_format, 8);
  EXPECT_EQ(de->first_day_of_week, 2);
  EXPECT_EQ(de->day_names[0], "Sonntag");
  EXPECT_EQ(de->month_names[2], "M\xC3\xA4rz");
}

TEST(RegionalSettingsTest, LocaleNamesAreNormalised) {
  EXPECT_EQ(RegionalSettingsForLocale("de_DE.UTF-8@euro")->locale_id, "de-DE");
  EXPECT_EQ(RegionalSettingsForLocale("C")->locale_id, "en-US");
  EXPECT_EQ(RegionalSettingsForLocale("POSIX")->locale_id, "en-US");
  EXPECT_EQ(RegionalSettingsForLocale("")->locale_id, "en-US");
  EXPECT_EQ(RegionalSettingsForLocale("de-DE"), RegionalSettingsForLocale("de_DE"));
}

TEST(RegionalSettingsTest, UnknownLocalesStillGiveSettings) {
  const auto settings = RegionalSettingsForLocale("zz-ZZ");
  EXPECT_FALSE(settings->short_date_pattern.empty());
  EXPECT_FALSE(settings->month_names[0].empty());
  const auto junk = RegionalSettingsForLocale("\x01\xFF;rm -rf");
  EXPECT_EQ(junk->locale_id, "en-US");
}

#ifndef _WIN32  // LANG and LC_*: the POSIX process locale; see tests/WindowsExclusions.cmake
// Sets environment variables for a scope and restores them afterwards.
class ScopedEnv {
 public:
  void Set(const char* name, const char* value) {
    const char* old = std::getenv(name);
    saved_.push_back({name, old ? std::optional<std::string>(old) : std::nullopt});
    if (value == nullptr) {
      unsetenv(name);
    } else {
      setenv(name, value, 1);
    }
  }
  ~ScopedEnv() {
    for (auto it = saved_.rbegin(); it != saved_.rend(); ++it) {
      if (it->second) {
        setenv(it->first.c_str(), it->second->c_str(), 1);
      } else {
        unsetenv(it->first.c_str());
      }
    }
  }

 private:
  std::vector<std::pair<std::string, std::optional<std::string>>> saved_;
};

TEST(ProcessLocaleTest, DefaultPlatformFollowsLang) {
  ScopedEnv env;
  env.Set("LC_ALL", nullptr);
  env.Set("LC_TIME", nullptr);
  env.Set("LANG", "de_DE.UTF-8");
  EXPECT_EQ(ProcessLocaleId(), "de-DE");
  EXPECT_EQ(Platform::Default().Regional()->short_date_pattern, "dd.MM.yyyy");
}

TEST(ProcessLocaleTest, LcAllThenLcTimeThenLang) {
  ScopedEnv env;
  env.Set("LANG", "fr_FR.UTF-8");
  env.Set("LC_TIME", "en_GB.UTF-8");
  env.Set("LC_ALL", "ja_JP.UTF-8");
  EXPECT_EQ(ProcessLocaleId(), "ja-JP");
  env.Set("LC_ALL", "");
  EXPECT_EQ(ProcessLocaleId(), "en-GB");
  env.Set("LC_TIME", nullptr);
  EXPECT_EQ(ProcessLocaleId(), "fr-FR");
}

TEST(ProcessLocaleTest, CAndPosixAndNothingAreAmerican) {
  ScopedEnv env;
  env.Set("LC_ALL", nullptr);
  env.Set("LC_TIME", nullptr);
  env.Set("LANG", "C.UTF-8");
  EXPECT_EQ(ProcessLocaleId(), "en-US");
  env.Set("LANG", "POSIX");
  EXPECT_EQ(ProcessLocaleId(), "en-US");
  env.Set("LANG", nullptr);
  EXPECT_EQ(ProcessLocaleId(), "en-US");
  EXPECT_EQ(Platform::Default().Regional()->short_date_pattern, "M/d/yyyy");
}

TEST(ProcessLocaleTest, InstalledPlatformsOverrideTheSettings) {
  class German : public ForwardingPlatform {
   public:
    std::shared_ptr<const RegionalSettings> Regional() override {
      return RegionalSettingsForLocale("de-DE");
    }
  } german;
  ScopedPlatform scope(german);
  EXPECT_EQ(CurrentPlatform().Regional()->decimal_symbol, ",");
}

#endif

}  // namespace
}  // namespace veld
