// The save sequence of KvoOption under a file system that fails on cue. The
// new content is written under a name of its own, the old file gets a second
// name ".bak", the new file is renamed over the old one and the ".bak" name is
// removed. Whichever step fails, and however (a refused call, a short write, a
// failed flush), the file's name holds the whole old or the whole new
// content, nothing half-written is left behind and the held document never
// changes.
#include <filesystem>
#include <fstream>
#include <set>
#include <string>
#include <string_view>
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

// How a failing call fails.
enum class Fault {
  kRefused,     // raises before doing anything: 70 "Permission denied"
  kShortWrite,  // writes half of the bytes, then raises 61 "Disk full"
  kFailedFlush  // writes every byte, then raises 57 "Device I/O error"
};

class FaultyFileSystem : public ForwardingPlatform {
 public:
  // The call (counted from 1 over the file operations below) that fails; 0
  // for none.
  int fail_call = 0;
  Fault fault = Fault::kRefused;

  // The file operations asked for, in order.
  std::vector<std::string> calls;

  std::string WriteFileBeside(const std::string& path, std::string_view bytes) override {
    if (Count("write " + Name(path))) {
      if (fault == Fault::kRefused) RaiseError(errnum::kPermissionDenied);
      // What a failing write leaves: a partly or wholly written new file,
      // which the platform removes before it reports the failure.
      std::string partial = path + ".~partial.tmp";
      std::string_view part =
          fault == Fault::kShortWrite ? bytes.substr(0, bytes.size() / 2) : bytes;
      std::ofstream(partial, std::ios::binary)
          .write(part.data(), static_cast<std::streamsize>(part.size()));
      fs::remove(partial);
      RaiseError(fault == Fault::kShortWrite ? 61 : 57);
    }
    return ForwardingPlatform::WriteFileBeside(path, bytes);
  }

  void LinkFile(const std::string& from, const std::string& to) override {
    if (Count("link " + Name(from) + " " + Name(to))) RaiseError(errnum::kPermissionDenied);
    ForwardingPlatform::LinkFile(from, to);
  }

  void RenameFile(const std::string& from, const std::string& to) override {
    if (Count("rename " + Name(to))) RaiseError(errnum::kPermissionDenied);
    ForwardingPlatform::RenameFile(from, to);
  }

  void RemoveFile(const std::string& path) override {
    if (Count("remove " + Name(path))) RaiseError(errnum::kPermissionDenied);
    ForwardingPlatform::RemoveFile(path);
  }

 private:
  // Notes a call; true when it is the one to fail.
  bool Count(std::string call) {
    calls.push_back(std::move(call));
    return static_cast<int>(calls.size()) == fail_call;
  }
  // Temporary names vary; they show as "(new)".
  static std::string Name(const std::string& path) {
    std::string name = fs::path(path).filename().string();
    return name.find(".~") != std::string::npos ? "(new)" : name;
  }
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

  // The names in the directory, so that a test sees anything left behind.
  std::set<std::string> Names() const {
    std::set<std::string> names;
    for (const auto& entry : fs::directory_iterator(dir_.Path())) {
      names.insert(entry.path().filename().string());
    }
    return names;
  }

  TempDir dir_;
  HeldOption option_;
  FaultyFileSystem fs_;
  std::string file_;
  std::string backup_;
};

const std::vector<std::string> kSaveOverExistingFile = {
    "write options.xml", "remove options.xml.bak", "link options.xml options.xml.bak",
    "rename options.xml", "remove options.xml.bak"};

TEST_F(KvoOptionSaveFaultsTest, SuccessfulSaveWritesAsideLinksBackupRenamesAndRemovesBackup) {
  EXPECT_TRUE(Save());

  EXPECT_EQ(fs_.calls, kSaveOverExistingFile);
  EXPECT_EQ(ReadFile(file_), kHeld);
  EXPECT_EQ(Names(), std::set<std::string>{"options.xml"});
  EXPECT_EQ(option_.HeldXml(), kHeld);
}

TEST_F(KvoOptionSaveFaultsTest, SaveOfNewFileMakesNoBackup) {
  file_ = dir_.File("fresh.xml");

  EXPECT_TRUE(Save());

  EXPECT_EQ(fs_.calls, (std::vector<std::string>{"write fresh.xml", "rename fresh.xml",
                                                 "remove fresh.xml.bak"}));
  EXPECT_EQ(ReadFile(file_), kHeld);
  EXPECT_FALSE(fs::exists(file_ + ".bak"));
}

// Every call of the sequence failing in turn, in every way a call can fail.
TEST_F(KvoOptionSaveFaultsTest, EveryFailingStepLeavesTheWholeOldOrTheWholeNewFile) {
  for (Fault fault : {Fault::kRefused, Fault::kShortWrite, Fault::kFailedFlush}) {
    for (int call = 1; call <= static_cast<int>(kSaveOverExistingFile.size()); ++call) {
      SCOPED_TRACE("call " + std::to_string(call) + " fault " + std::to_string(int(fault)));
      dir_.Write("options.xml", kPrevious);
      fs::remove(backup_);
      fs_.calls.clear();
      fs_.fail_call = call;
      fs_.fault = fault;

      const bool saved = Save();

      const std::string& step = kSaveOverExistingFile[call - 1];
      const bool essential = step.rfind("write", 0) == 0 || step.rfind("rename", 0) == 0;
      EXPECT_EQ(saved, !essential);
      EXPECT_EQ(ReadFile(file_), saved ? kHeld : kPrevious);
      // What may stay beside the file is a complete copy of the old content.
      std::set<std::string> names = Names();
      names.erase("options.xml");
      if (names.count("options.xml.bak") != 0) {
        EXPECT_EQ(ReadFile(backup_), kPrevious);
        names.erase("options.xml.bak");
      }
      EXPECT_TRUE(names.empty()) << *names.begin();
      EXPECT_EQ(option_.HeldXml(), kHeld);
      HeldOption reloaded;
      EXPECT_TRUE(reloaded.LoadOption(file_));
    }
  }
}

TEST_F(KvoOptionSaveFaultsTest, FailedWriteIsRecordedAsTheDocumentSaveReportsIt) {
  fs_.fail_call = 1;

  EXPECT_FALSE(Save());

  EXPECT_RECORDED(option_, -2147024891, "Access is denied.");
  EXPECT_EQ(option_.GetLastError(), "Access is denied.(ERR#: -2147024891)");
  EXPECT_EQ(fs_.calls, std::vector<std::string>{"write options.xml"});
  EXPECT_EQ(ReadFile(file_), kPrevious);
  EXPECT_FALSE(fs::exists(backup_));
}

TEST_F(KvoOptionSaveFaultsTest, ShortWriteOnAFullDiskIsRecordedAndChangesNothing) {
  fs_.fail_call = 1;
  fs_.fault = Fault::kShortWrite;

  EXPECT_FALSE(Save());

  EXPECT_RECORDED(option_, -2147467259, "There is not enough space on the disk.");
  EXPECT_EQ(ReadFile(file_), kPrevious);
  EXPECT_EQ(Names(), std::set<std::string>{"options.xml"});
}

TEST_F(KvoOptionSaveFaultsTest, FailedRenameKeepsTheOldFileAndItsBackup) {
  fs_.fail_call = 4;

  EXPECT_FALSE(Save());

  EXPECT_EQ(option_.GetLastError(), "Access is denied.(ERR#: -2147024891)");
  EXPECT_EQ(ReadFile(file_), kPrevious);
  EXPECT_EQ(ReadFile(backup_), kPrevious);
  EXPECT_EQ(Names(), (std::set<std::string>{"options.xml", "options.xml.bak"}));
}

TEST_F(KvoOptionSaveFaultsTest, FailedBackupIsIgnoredAndTheSaveCompletes) {
  fs_.fail_call = 3;

  EXPECT_TRUE(Save());

  EXPECT_EQ(option_.GetLastError(), "");
  EXPECT_EQ(ReadFile(file_), kHeld);
  EXPECT_FALSE(fs::exists(backup_));
}

TEST_F(KvoOptionSaveFaultsTest, FailedBackupRemovalLeavesBackupAndTheSaveSucceeds) {
  fs_.fail_call = 5;

  EXPECT_TRUE(Save());

  EXPECT_EQ(option_.GetLastError(), "");
  EXPECT_EQ(ReadFile(file_), kHeld);
  EXPECT_EQ(ReadFile(backup_), kPrevious);
}

TEST_F(KvoOptionSaveFaultsTest, BackupReplacesAnOlderBackup) {
  dir_.Write("options.xml.bak", "<config><section id=\"old\"/></config>");
  fs_.fail_call = 4;

  EXPECT_FALSE(Save());

  EXPECT_EQ(ReadFile(backup_), kPrevious);
}

TEST_F(KvoOptionSaveFaultsTest, IgnoredFailuresLeaveTheCurrentRuntimeErrorCleared) {
  fs_.fail_call = 3;
  try {
    RaiseError(errnum::kOverflow);
  } catch (const AutomationError&) {
  }

  EXPECT_TRUE(Save());

  EXPECT_EQ(Err().Number(), 0);
}

TEST_F(KvoOptionSaveFaultsTest, SaveAfterAnInterruptedSaveRestoresTheBackupFirst) {
  // What an interrupted save of an earlier version left: only the copy.
  fs::rename(file_, backup_);

  HeldOption loaded;
  EXPECT_TRUE(loaded.LoadOption(file_));

  EXPECT_EQ(loaded.HeldXml(), kPrevious);
  EXPECT_EQ(ReadFile(file_), kPrevious);
  EXPECT_FALSE(fs::exists(backup_));
}

TEST_F(KvoOptionSaveFaultsTest, InterruptedSaveThenSaveKeepsTheBackupUntilTheNewFileIsIn) {
  fs::rename(file_, backup_);
  fs_.fail_call = 2;

  EXPECT_FALSE(Save());

  EXPECT_EQ(fs_.calls, (std::vector<std::string>{"rename options.xml", "write options.xml"}));
  EXPECT_EQ(ReadFile(file_), kPrevious);
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
