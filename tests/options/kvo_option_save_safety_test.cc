// What a save refuses to do: write text that would not load again, replace a
// read-only file, or follow a link planted where it writes its copies.
#include <filesystem>
#include <string>

#include <gtest/gtest.h>

#include "veld/options/kvo_option.h"

#include "option_testing.h"
#include "support/testing.h"

namespace veld {
namespace {

using ::veld::testing::HeldOption;
using ::veld::testing::ReadFile;
using ::veld::testing::TempDir;

namespace fs = std::filesystem;

constexpr char kPrevious[] =
    "<config><section id=\"a\"><group id=\"g\"><option name=\"n\" value=\"previous\"/>"
    "</group></section></config>";
constexpr char kNotRepresentable[] =
    "Option data holds characters that an XML file cannot hold; nothing was saved.";

class KvoOptionSaveSafetyTest : public ::testing::Test {
 protected:
  void SetUp() override { file_ = dir_.Write("options.xml", kPrevious); }

  TempDir dir_;
  HeldOption option_;
  std::string file_;
};

class KvoOptionUnrepresentableTextTest : public KvoOptionSaveSafetyTest,
                                         public ::testing::WithParamInterface<const char*> {};

TEST_P(KvoOptionUnrepresentableTextTest, ValueXmlCannotHoldIsRefusedAndTheFileKept) {
  dir_.Write("options.xml.bak", "kept");
  ASSERT_TRUE(option_.LoadOption(file_));
  ASSERT_TRUE(option_.SetOption("n", std::string("x") + GetParam() + "y", "a", "g"));

  EXPECT_FALSE(option_.SaveOption(file_, "a"));

  EXPECT_CHECK_FAILED(option_, kNotRepresentable);
  EXPECT_EQ(ReadFile(file_), kPrevious);
  EXPECT_EQ(ReadFile(file_ + ".bak"), "kept");
}

TEST_P(KvoOptionUnrepresentableTextTest, NameXmlCannotHoldIsRefusedAndTheFileKept) {
  ASSERT_TRUE(option_.LoadOption(file_));
  if (!option_.SetOption(std::string("n") + GetParam(), "v", "a", "g")) {
    // Refused as a name already: what is held still saves and loads.
    ASSERT_TRUE(option_.SaveOption(file_, "a"));
    HeldOption loaded;
    EXPECT_TRUE(loaded.LoadOption(file_));
    return;
  }

  EXPECT_FALSE(option_.SaveOption(file_, "a"));

  EXPECT_CHECK_FAILED(option_, kNotRepresentable);
  EXPECT_EQ(ReadFile(file_), kPrevious);
}

INSTANTIATE_TEST_SUITE_P(Texts, KvoOptionUnrepresentableTextTest,
                         ::testing::Values("\x01", "\xFF", "\xED\xA0\x80", "\xEF\xBF\xBE",
                                           "\xC0\xAF", "\xF4\x90\x80\x80"));

TEST_F(KvoOptionSaveSafetyTest, TextXmlCanHoldIsSavedAndLoadsBack) {
  const std::string value = "tab\there \xC3\xA9 \xF0\x9F\x98\x80 <&> \"'";
  ASSERT_TRUE(option_.SetOption("n", value, "a", "g"));

  ASSERT_TRUE(option_.SaveOption(file_, "a"));

  HeldOption loaded;
  ASSERT_TRUE(loaded.LoadOption(file_));
  EXPECT_EQ(loaded.GetOption("n", "a", "g"), value);
}

TEST_F(KvoOptionSaveSafetyTest, ReadOnlyFileIsRefusedWithPermissionDeniedAndKept) {
  fs::permissions(file_, fs::perms::owner_read | fs::perms::group_read | fs::perms::others_read);
  ASSERT_TRUE(option_.SetOption("n", "new", "a", "g"));

  EXPECT_FALSE(option_.SaveOption(file_, "a"));

  EXPECT_RECORDED(option_, 70, "Permission denied");
  EXPECT_EQ(ReadFile(file_), kPrevious);
  EXPECT_EQ(fs::status(file_).permissions() & fs::perms::all,
            fs::perms::owner_read | fs::perms::group_read | fs::perms::others_read);
  EXPECT_FALSE(fs::exists(file_ + ".bak"));
}

#ifndef _WIN32  // symbolic links and POSIX modes; see tests/WindowsExclusions.cmake
TEST_F(KvoOptionSaveSafetyTest, LinkPlantedAtTheBackupNameIsNotFollowed) {
  const std::string victim = dir_.Write("victim.txt", "untouched");
  fs::create_symlink(victim, file_ + ".bak");
  ASSERT_TRUE(option_.SetOption("n", "new", "a", "g"));

  ASSERT_TRUE(option_.SaveOption(file_, "a"));

  EXPECT_EQ(ReadFile(victim), "untouched");
  EXPECT_FALSE(fs::exists(fs::symlink_status(file_ + ".bak")));
  HeldOption loaded;
  ASSERT_TRUE(loaded.LoadOption(file_));
  EXPECT_EQ(loaded.GetOption("n", "a", "g"), "new");
}

TEST_F(KvoOptionSaveSafetyTest, SaveThroughALinkedOptionFileReplacesItsTarget) {
  const std::string link = dir_.File("linked.xml");
  fs::create_symlink(file_, link);
  ASSERT_TRUE(option_.SetOption("n", "new", "a", "g"));

  ASSERT_TRUE(option_.SaveOption(link, "a"));

  EXPECT_TRUE(fs::is_symlink(link));
  HeldOption loaded;
  ASSERT_TRUE(loaded.LoadOption(file_));
  EXPECT_EQ(loaded.GetOption("n", "a", "g"), "new");
  EXPECT_FALSE(fs::exists(file_ + ".bak"));
}

TEST_F(KvoOptionSaveSafetyTest, LinkThatLeadsNowhereIsRefusedWithPathNotFound) {
  const std::string link = dir_.File("dangling.xml");
  fs::create_symlink(dir_.File("missing.xml"), link);

  EXPECT_FALSE(option_.SaveOption(link, "a"));

  EXPECT_RECORDED(option_, 76, "Path not found");
  EXPECT_FALSE(fs::exists(dir_.File("missing.xml")));
}

TEST_F(KvoOptionSaveSafetyTest, SavedFileKeepsThePermissionsOfTheFileItReplaces) {
  fs::permissions(file_, fs::perms::owner_read | fs::perms::owner_write);
  ASSERT_TRUE(option_.SetOption("n", "new", "a", "g"));

  ASSERT_TRUE(option_.SaveOption(file_, "a"));

  EXPECT_EQ(fs::status(file_).permissions() & fs::perms::all,
            fs::perms::owner_read | fs::perms::owner_write);
}
#endif

TEST_F(KvoOptionSaveSafetyTest, InternalEntitiesReadAsTheirTextAndSaveAsLoadableText) {
  dir_.Write("entities.xml",
             "<!DOCTYPE config [<!ENTITY e \"hello\"><!ENTITY f \"&e; &amp; more\">]>"
             "<config><section id=\"a\"><group id=\"g\"><option name=\"n\" value=\"&e;-x\"/>"
             "<option name=\"m\" value=\"[&f;]\"/>&f;</group></section></config>");
  ASSERT_TRUE(option_.LoadOption(dir_.File("entities.xml")));

  EXPECT_EQ(option_.GetOption("n", "a", "g"), "hello-x");
  EXPECT_EQ(option_.GetOption("m", "a", "g"), "[hello & more]");
  ASSERT_TRUE(option_.SaveOption(file_));

  HeldOption loaded;
  ASSERT_TRUE(loaded.LoadOption(file_));
  EXPECT_EQ(loaded.GetOption("n", "a", "g"), "hello-x");
  EXPECT_EQ(loaded.GetOption("m", "a", "g"), "[hello & more]");
  EXPECT_EQ(ReadFile(file_).find("&e;"), std::string::npos);
}

}  // namespace
}  // namespace veld
