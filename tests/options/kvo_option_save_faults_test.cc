// The save sequence of KvoOption under a file system that fails on cue: the
// copy to ".bak", the delete of the old file, the write of the new one, the
// removal of the backup. Whatever fails, the previous content survives in the
// file or in its ".bak" copy, and the held document never changes.
//
// The document's own write does not go through the platform, so the test
// platform makes it fail from the step before it: when told to, it deletes
// the old file for real and leaves a directory of the same name in its place,
// which the write then cannot open. That obstacle either lifts when the
// backup is copied back (a passing fault) or stays (a lasting one).
#include <filesystem>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "veld/options/kvo_option.h"
#include "veld/platform/platform.h"
#include "veld/runtime/automation_error.h"

#include "option_testing.h"
#include "support/testing.h"

namespace veld {
namespace {

using ::veld::testing::HeldOption;
using ::veld::testing::ReadFile;
using ::veld::testing::TempDir;

namespace fs = std::filesystem;

class FaultyFileSystem : public ForwardingPlatform {
 public:
  // Copies to this path fail with 70 "Permission denied".
  std::string fail_copy_to;
  // Deleting this path fails with 70 "Permission denied".
  std::string fail_remove_of;
  // Deleting this path succeeds and leaves a directory in its place, so that
  // the next write of a file there fails.
  std::string block_write_of;
  // Whether a copy onto the blocked path first clears the obstacle.
  bool obstacle_lifts_on_copy = false;

  // The file operations asked for, in order.
  std::vector<std::string> calls;

  void FileCopy(const std::string& from, const std::string& to) override {
    calls.push_back("copy " + Name(from) + " " + Name(to));
    if (to == fail_copy_to) RaiseError(errnum::kPermissionDenied);
    if (to == block_write_of && obstacle_lifts_on_copy) fs::remove(to);
    ForwardingPlatform::FileCopy(from, to);
  }

  void RemoveFile(const std::string& path) override {
    calls.push_back("remove " + Name(path));
    if (path == fail_remove_of) RaiseError(errnum::kPermissionDenied);
    ForwardingPlatform::RemoveFile(path);
    if (path == block_write_of) fs::create_directory(path);
  }

 private:
  static std::string Name(const std::string& path) { return fs::path(path).filename().string(); }
};

constexpr char kHeld[] =
    "<config><section id=\"a\"><group id=\"g\"><option name=\"n\" value=\"new\"/></group>"
    "</section></config>";
constexpr char kPrevious[] =
    "<config><section id=\"a\"><group id=\"g\"><option name=\"n\" value=\"previous\"/>"
    "</group></section></config>";

class KvoOptionSaveFaultsTest : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_TRUE(option_.LoadOptionFromXml(kHeld));
    file_ = dir_.Write("options.xml", kPrevious);
    backup_ = file_ + ".bak";
  }

  bool Save() {
    ScopedPlatform installed(fs_);
    return option_.SaveOption(file_);
  }

  TempDir dir_;
  HeldOption option_;
  FaultyFileSystem fs_;
  std::string file_;
  std::string backup_;
};

TEST_F(KvoOptionSaveFaultsTest, SuccessfulSaveCopiesDeletesWritesAndRemovesBackup) {
  EXPECT_TRUE(Save());

  EXPECT_EQ(fs_.calls, (std::vector<std::string>{"copy options.xml options.xml.bak",
                                                 "remove options.xml", "remove options.xml.bak"}));
  EXPECT_EQ(ReadFile(file_), kHeld);
  EXPECT_FALSE(fs::exists(backup_));
  EXPECT_EQ(option_.HeldXml(), kHeld);
}

TEST_F(KvoOptionSaveFaultsTest, SaveOfNewFileMakesNoBackup) {
  file_ = dir_.File("fresh.xml");

  EXPECT_TRUE(Save());

  // Nothing to back up; the removal of a backup is tried all the same.
  EXPECT_EQ(fs_.calls, std::vector<std::string>{"remove fresh.xml.bak"});
  EXPECT_EQ(ReadFile(file_), kHeld);
  EXPECT_FALSE(fs::exists(file_ + ".bak"));
}

TEST_F(KvoOptionSaveFaultsTest, FailedCopyToBackupIsIgnoredAndTheSaveCompletes) {
  fs_.fail_copy_to = backup_;

  EXPECT_TRUE(Save());

  EXPECT_EQ(option_.GetLastError(), "");
  // The old file is deleted even without a backup; the new one is written.
  EXPECT_EQ(fs_.calls, (std::vector<std::string>{"copy options.xml options.xml.bak",
                                                 "remove options.xml", "remove options.xml.bak"}));
  EXPECT_EQ(ReadFile(file_), kHeld);
  EXPECT_FALSE(fs::exists(backup_));
  EXPECT_EQ(option_.HeldXml(), kHeld);
}

TEST_F(KvoOptionSaveFaultsTest, FailedDeleteIsIgnoredAndTheFileIsOverwritten) {
  fs_.fail_remove_of = file_;

  EXPECT_TRUE(Save());

  EXPECT_EQ(option_.GetLastError(), "");
  EXPECT_EQ(ReadFile(file_), kHeld);
  EXPECT_FALSE(fs::exists(backup_));
  EXPECT_EQ(option_.HeldXml(), kHeld);
}

TEST_F(KvoOptionSaveFaultsTest, FailedWriteRestoresTheFileFromItsBackup) {
  fs_.block_write_of = file_;
  fs_.obstacle_lifts_on_copy = true;

  EXPECT_FALSE(Save());

  EXPECT_RECORDED(option_, -2147024891, "Access is denied.");
  EXPECT_EQ(option_.GetLastError(), "Access is denied.(ERR#: -2147024891)");
  EXPECT_EQ(fs_.calls,
            (std::vector<std::string>{"copy options.xml options.xml.bak", "remove options.xml",
                                      "copy options.xml.bak options.xml"}));
  EXPECT_EQ(ReadFile(file_), kPrevious);
  // The backup stays on disk after a failed save.
  EXPECT_EQ(ReadFile(backup_), kPrevious);
  EXPECT_EQ(option_.HeldXml(), kHeld);
}

TEST_F(KvoOptionSaveFaultsTest, FailedWriteWhoseRestoreAlsoFailsKeepsTheBackup) {
  fs_.block_write_of = file_;

  EXPECT_FALSE(Save());

  EXPECT_EQ(option_.GetLastError(), "Access is denied.(ERR#: -2147024891)");
  EXPECT_FALSE(fs::is_regular_file(file_));
  EXPECT_EQ(ReadFile(backup_), kPrevious);
  EXPECT_EQ(option_.HeldXml(), kHeld);
}

TEST_F(KvoOptionSaveFaultsTest, FailedCopyAndFailedWriteTogetherLoseTheOldFile) {
  // Two faults in one save: the old file is deleted even though no backup
  // could be made, so a failing write leaves neither. The sequence is kept as
  // callers have always seen it; this pins it.
  fs_.fail_copy_to = backup_;
  fs_.block_write_of = file_;

  EXPECT_FALSE(Save());

  EXPECT_EQ(option_.GetLastError(), "Access is denied.(ERR#: -2147024891)");
  EXPECT_EQ(fs_.calls,
            (std::vector<std::string>{"copy options.xml options.xml.bak", "remove options.xml"}));
  EXPECT_FALSE(fs::is_regular_file(file_));
  EXPECT_FALSE(fs::exists(backup_));
  EXPECT_EQ(option_.HeldXml(), kHeld);
}

TEST_F(KvoOptionSaveFaultsTest, FailedBackupRemovalLeavesBackupAndTheSaveSucceeds) {
  fs_.fail_remove_of = backup_;

  EXPECT_TRUE(Save());

  EXPECT_EQ(option_.GetLastError(), "");
  EXPECT_EQ(ReadFile(file_), kHeld);
  EXPECT_EQ(ReadFile(backup_), kPrevious);
}

TEST_F(KvoOptionSaveFaultsTest, BackupReplacesAnOlderBackup) {
  dir_.Write("options.xml.bak", "older backup");
  fs_.block_write_of = file_;

  EXPECT_FALSE(Save());

  EXPECT_EQ(ReadFile(backup_), kPrevious);
}

TEST_F(KvoOptionSaveFaultsTest, IgnoredFailuresLeaveTheCurrentRuntimeErrorAlone) {
  fs_.fail_copy_to = backup_;
  fs_.fail_remove_of = file_;
  Err().Clear();

  EXPECT_TRUE(Save());

  EXPECT_EQ(Err().Number(), 0);
}

class FailingGuidPlatform : public ForwardingPlatform {
 public:
  int32_t CreateGuid(Guid& guid) override { RaiseError(errnum::kOutOfMemory); }
};

TEST(KvoOptionGuidTest, GenerateGuidFailureReachesTheCallerAndIsNotRecorded) {
  HeldOption option;
  EXPECT_FALSE(option.LoadOptionFromXml(""));
  FailingGuidPlatform platform;
  ScopedPlatform installed(platform);

  EXPECT_RAISES(option.GenerateGUID(), 7, "Out of memory");

  EXPECT_EQ(option.GetLastError(), "No option xml specified.");
}

}  // namespace
}  // namespace veld
