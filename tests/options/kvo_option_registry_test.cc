#include <cstdlib>
#include <string>

#include <gtest/gtest.h>

#include "veld/options/kvo_option.h"
#include "veld/registry/kvo_registry.h"

#include "option_testing.h"
#include "support/scoped_registry.h"
#include "support/testing.h"

namespace veld {
namespace {

using testing::HeldOption;

constexpr char kKey[] = "HKEY_CURRENT_USER\\Software\\VeldTest\\Options";

class KvoOptionRegistryTest : public ::testing::Test {
 protected:
  // Never the user's own store.
  testing::ScopedTestRegistry registry_;
};

TEST_F(KvoOptionRegistryTest, GroupSurvivesARoundTripThroughTheRegistry) {
  HeldOption saved;
  ASSERT_TRUE(saved.SetOption("width", "800", "main", "general"));
  ASSERT_TRUE(saved.SetOption("title", "Caf\xC3\xA9 & <bar>", "main", "general"));
  ASSERT_TRUE(saved.SaveOptionToRegistry(kKey, "main")) << saved.GetLastError();

  HeldOption loaded;
  ASSERT_TRUE(loaded.LoadOptionFromRegistry(kKey, "main")) << loaded.GetLastError();
  EXPECT_EQ(loaded.GetOption("width", "main", "general"), "800");
  EXPECT_EQ(loaded.GetOption("title", "main", "general"), "Caf\xC3\xA9 & <bar>");
}

TEST_F(KvoOptionRegistryTest, LoadingAGroupLeavesTheSectionWithOnlyThatGroup) {
  HeldOption source;
  ASSERT_TRUE(source.SetOption("a", "from registry", "s", "general"));
  ASSERT_TRUE(source.SaveOptionToRegistry(kKey, "s"));

  HeldOption option;
  ASSERT_TRUE(option.SetOption("a", "held", "s", "general"));
  ASSERT_TRUE(option.SetOption("b", "other group", "s", "second"));
  ASSERT_TRUE(option.SetOption("c", "other section", "t", "general"));
  ASSERT_TRUE(option.LoadOptionFromRegistry(kKey, "s", "general"));
  EXPECT_EQ(option.HeldXml(),
            "<config><section id=\"t\"><group id=\"general\"><option name=\"c\" value=\"other "
            "section\"/></group></section><section id=\"s\"><group id=\"general\"><option "
            "name=\"a\" value=\"from registry\"/></group></section></config>");
}

TEST_F(KvoOptionRegistryTest, RegistryFailureOnLoadBecomesTheRecord) {
  const std::string missing = std::string(kKey) + "\\Missing";
  KvoRegistry registry;
  std::string values;
  ASSERT_FALSE(registry.GetKeyValuesToXml(missing, values));
  const std::string expected = registry.GetLastError();
  ASSERT_FALSE(expected.empty());
  int32_t expected_number = 0;
  try {
    registry.RaiseLastError();
  } catch (const AutomationError& error) {
    expected_number = error.Number();
  }

  HeldOption option;
  ASSERT_TRUE(option.SetOption("a", "1", "s", "general"));
  const std::string before = option.HeldXml();
  EXPECT_FALSE(option.LoadOptionFromRegistry(missing, "s"));
  EXPECT_EQ(option.GetLastError(), expected);
  EXPECT_EQ(option.RecordedNumber(), expected_number);
  EXPECT_EQ(option.HeldXml(), before);
}

TEST_F(KvoOptionRegistryTest, RegistryFailureOnSaveBecomesTheRecord) {
  const std::string bad_root = "HKEY_NO_SUCH_ROOT\\Software\\Veld";
  KvoRegistry registry;
  ASSERT_FALSE(registry.SetKeyValuesFromXml(
      bad_root, "<group id=\"general\"><option name=\"a\" value=\"1\"/></group>"));
  const std::string expected = registry.GetLastError();
  ASSERT_FALSE(expected.empty());

  HeldOption option;
  ASSERT_TRUE(option.SetOption("a", "1", "s", "general"));
  EXPECT_FALSE(option.SaveOptionToRegistry(bad_root, "s"));
  EXPECT_EQ(option.GetLastError(), expected);
}

TEST_F(KvoOptionRegistryTest, SavingAGroupTheSectionLacksPassesEmptyText) {
  KvoRegistry registry;
  const bool direct = registry.SetKeyValuesFromXml(kKey, "");
  const std::string expected = registry.GetLastError();

  HeldOption option;
  ASSERT_TRUE(option.SetOption("a", "1", "s", "other"));
  EXPECT_EQ(option.SaveOptionToRegistry(kKey, "s", "general"), direct);
  EXPECT_EQ(option.GetLastError(), expected);
}

TEST_F(KvoOptionRegistryTest, GroupIdIsMatchedWithItsBlanksWhenSaving) {
  HeldOption option;
  // SetOption trims the group id; the save looks it up as given.
  ASSERT_TRUE(option.SetOption("a", "1", "s", " g "));
  EXPECT_EQ(option.GetOption("a", "s", " g "), "1");

  KvoRegistry registry;
  const bool empty_result = registry.SetKeyValuesFromXml(kKey, "");
  EXPECT_EQ(option.SaveOptionToRegistry(kKey, "s", " g "), empty_result);
  std::string values;
  registry.GetKeyValuesToXml(kKey, values, "group", "g");
  EXPECT_EQ(values.find("name=\"a\""), std::string::npos) << values;

  EXPECT_TRUE(option.SaveOptionToRegistry(kKey, "s", "g")) << option.GetLastError();
  ASSERT_TRUE(registry.GetKeyValuesToXml(kKey, values, "group", "g"));
  EXPECT_NE(values.find("name=\"a\" value=\"1\""), std::string::npos) << values;
}

TEST_F(KvoOptionRegistryTest, SavingASectionTheDocumentLacksStillWritesNothingAndSucceeds) {
  HeldOption option;
  KvoRegistry registry;
  const bool empty_result = registry.SetKeyValuesFromXml(kKey, "");
  EXPECT_EQ(option.SaveOptionToRegistry(kKey, "nosuch"), empty_result);
}

}  // namespace
}  // namespace veld
