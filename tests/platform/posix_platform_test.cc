#include <cstdio>
#include <cstring>
#include <set>
#include <string>

#include <errno.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include "platform/posix/posix_error.h"
#include "veld/platform/platform.h"

#include "support/testing.h"

namespace veld {
namespace {

using ::veld::testing::ReadFile;
using ::veld::testing::TempDir;

TEST(PosixPlatformTest, ProductName) {
  EXPECT_EQ(Platform::Default().ProductName(), "Veld Common Utility Library");
}

TEST(PosixPlatformTest, TwipsPerPixelIs15) {
  EXPECT_EQ(Platform::Default().TwipsPerPixelX(), 15);
  EXPECT_EQ(Platform::Default().TwipsPerPixelY(), 15);
}

TEST(PosixPlatformTest, AnsiCodePageIsWindows1252) {
  EXPECT_EQ(Platform::Default().AnsiCodePage(), "windows-1252");
}

TEST(PosixPlatformTest, MessageLoopPassDoesNothing) {
  ::testing::internal::CaptureStderr();
  Platform::Default().DoEvents();
  EXPECT_EQ(::testing::internal::GetCapturedStderr(), "");
}

TEST(PosixPlatformTest, MessageBoxWritesToStandardErrorAndAnswersOk) {
  ::testing::internal::CaptureStderr();
  int32_t answer = Platform::Default().ShowMessageBox("Something failed", 16, "");
  std::string written = ::testing::internal::GetCapturedStderr();
  EXPECT_EQ(answer, 1);
  EXPECT_EQ(written, "Veld Common Utility Library: Something failed\n");
}

TEST(PosixPlatformTest, GuidsAreNewEachTime) {
  std::set<std::string> seen;
  for (int i = 0; i < 1000; ++i) {
    Guid guid;
    ASSERT_EQ(Platform::Default().CreateGuid(guid), 0);
    char text[40];
    std::snprintf(text, sizeof text, "%08X%04X%04X%02X%02X%02X%02X%02X%02X%02X%02X", guid.Data1,
                  guid.Data2, guid.Data3, guid.Data4[0], guid.Data4[1], guid.Data4[2],
                  guid.Data4[3], guid.Data4[4], guid.Data4[5], guid.Data4[6], guid.Data4[7]);
    seen.insert(text);
  }
  EXPECT_EQ(seen.size(), 1000u);
}

TEST(PosixPlatformTest, FileExistsOnlyForOrdinaryFiles) {
  TempDir dir;
  std::string file = dir.Write("a.xml", "<a/>");
  std::string hidden = dir.Write(".hidden.xml", "<a/>");
  Platform& platform = Platform::Default();
  EXPECT_TRUE(platform.FileExists(file));
  EXPECT_FALSE(platform.FileExists(dir.Path()));
  EXPECT_FALSE(platform.FileExists(hidden));
  EXPECT_FALSE(platform.FileExists(dir.File("missing.xml")));
  EXPECT_FALSE(platform.FileExists(""));
  EXPECT_FALSE(platform.FileExists(file + "/below"));
  EXPECT_FALSE(platform.FileExists(std::string("a\0b", 3)));
}

TEST(PosixPlatformTest, CopyFileReplacesTheTarget) {
  TempDir dir;
  std::string from = dir.Write("from.xml", "new content");
  std::string to = dir.Write("to.xml", "old content that is longer");
  Platform::Default().FileCopy(from, to);
  EXPECT_EQ(ReadFile(to), "new content");
  EXPECT_EQ(ReadFile(from), "new content");
}

TEST(PosixPlatformTest, CopyOfMissingFileRaisesFileNotFound) {
  TempDir dir;
  EXPECT_RAISES(Platform::Default().FileCopy(dir.File("missing"), dir.File("to")), 53,
                "File not found");
  EXPECT_FALSE(Platform::Default().FileExists(dir.File("to")));
}

TEST(PosixPlatformTest, CopyIntoMissingDirectoryRaisesPathNotFound) {
  TempDir dir;
  std::string from = dir.Write("from.xml", "x");
  // The missing directory is reported by the system as "no such file".
  EXPECT_RAISES(Platform::Default().FileCopy(from, dir.File("no/such/dir/to")), 53,
                "File not found");
  EXPECT_RAISES(Platform::Default().FileCopy(from, from + "/below"), 76, "Path not found");
}

TEST(PosixPlatformTest, DeleteFileRemovesIt) {
  TempDir dir;
  std::string file = dir.Write("a.xml", "x");
  Platform::Default().RemoveFile(file);
  EXPECT_FALSE(Platform::Default().FileExists(file));
}

TEST(PosixPlatformTest, DeleteOfMissingFileRaisesFileNotFound) {
  TempDir dir;
  EXPECT_RAISES(Platform::Default().RemoveFile(dir.File("missing")), 53, "File not found");
}

TEST(PosixPlatformTest, DeleteOfDirectoryRaisesPathFileAccessError) {
  TempDir dir;
  EXPECT_RAISES(Platform::Default().RemoveFile(dir.Path()), 75, "Path/File access error");
}

TEST(PosixErrorTest, SystemErrorsMapToClassicFileErrors) {
  EXPECT_EQ(PosixErrorNumber(ENOENT), 53);
  EXPECT_EQ(PosixErrorNumber(ENOTDIR), 76);
  EXPECT_EQ(PosixErrorNumber(EACCES), 70);
  EXPECT_EQ(PosixErrorNumber(EPERM), 70);
  EXPECT_EQ(PosixErrorNumber(EROFS), 70);
  EXPECT_EQ(PosixErrorNumber(EEXIST), 58);
  EXPECT_EQ(PosixErrorNumber(ENOSPC), 61);
  EXPECT_EQ(PosixErrorNumber(EISDIR), 75);
}

TEST(PosixErrorTest, RaisedWithTheClassicText) {
  EXPECT_RAISES(RaisePosixError(EACCES, "x"), 70, "Permission denied");
  EXPECT_RAISES(RaisePosixError(ENOSPC, "x"), 61, "Disk full");
}

}  // namespace
}  // namespace veld

namespace veld {
namespace {

TEST(PosixPlatformTest, GuidsAreRandomVersionFour) {
  Platform& platform = Platform::Default();
  for (int i = 0; i < 1000; ++i) {
    Guid guid;
    ASSERT_EQ(platform.CreateGuid(guid), 0);
    EXPECT_EQ(guid.Data3 >> 12, 4);
    EXPECT_EQ(guid.Data4[0] >> 6, 2);
  }
}

TEST(PosixPlatformTest, ForkedChildMakesOtherGuidsThanItsParent) {
  Platform& platform = Platform::Default();
  Guid first;
  ASSERT_EQ(platform.CreateGuid(first), 0);  // the parent's pool is filled
  int channel[2];
  ASSERT_EQ(pipe(channel), 0);
  const pid_t child = fork();
  ASSERT_GE(child, 0);
  if (child == 0) {
    Guid guid;
    platform.CreateGuid(guid);
    _exit(write(channel[1], &guid, sizeof guid) == sizeof guid ? 0 : 1);
  }
  close(channel[1]);
  Guid from_child;
  const bool read_all = read(channel[0], &from_child, sizeof from_child) == sizeof from_child;
  close(channel[0]);
  int status = 0;
  waitpid(child, &status, 0);
  ASSERT_TRUE(read_all);
  Guid from_parent;
  ASSERT_EQ(platform.CreateGuid(from_parent), 0);
  EXPECT_NE(std::memcmp(&from_child, &from_parent, sizeof from_parent), 0);
}

}  // namespace
}  // namespace veld
