// Shared helpers of the test suite.
#ifndef VELD_TESTS_SUPPORT_TESTING_H_
#define VELD_TESTS_SUPPORT_TESTING_H_

#include <cstdint>
#include <filesystem>
#include <string>

#include <gtest/gtest.h>

#include "veld/runtime/automation_error.h"
#include "veld/xml/xml_document.h"

namespace veld::testing {

// Runs `statement`, expects it to raise an AutomationError with the given
// number and description, and expects the thread's current runtime error to
// hold the same facts.
#define EXPECT_RAISES(statement, number, description)                             \
  do {                                                                            \
    bool veld_raised_ = false;                                                    \
    try {                                                                         \
      statement;                                                                  \
    } catch (const ::veld::AutomationError& veld_error_) {                        \
      veld_raised_ = true;                                                        \
      EXPECT_EQ(veld_error_.Number(), (number));                                  \
      EXPECT_EQ(veld_error_.Description(), (description));                        \
      EXPECT_EQ(::veld::Err().Number(), (number));                                \
      EXPECT_EQ(::veld::Err().Description(), (description));                      \
    }                                                                             \
    EXPECT_TRUE(veld_raised_) << "expected " #statement " to raise " << (number); \
  } while (0)

// A directory under the system's temporary directory, removed with all its
// contents when the object goes.
class TempDir {
 public:
  TempDir();
  ~TempDir();
  TempDir(const TempDir&) = delete;
  TempDir& operator=(const TempDir&) = delete;

  const std::string& Path() const { return path_; }
  // Path of `name` inside the directory.
  std::string File(const std::string& name) const;
  // Writes `content` to `name` inside the directory and returns its path.
  std::string Write(const std::string& name, const std::string& content) const;

 private:
  std::string path_;
};

// The path named by UTF-8 `name` (std::filesystem would read a plain string
// in the ANSI code page on Windows).
std::filesystem::path Utf8Path(const std::string& name);

// A document loaded from `text`; a failure to load fails the test.
XmlDocument Loaded(const std::string& text);

// Reads a whole file; "" when it cannot be read.
std::string ReadFile(const std::string& path);

// Sets or removes an environment variable of the process.
void SetEnv(const std::string& name, const std::string& value);
void UnsetEnv(const std::string& name);

// True when the process is a Windows program running under Wine, whose
// locale data differs from Windows' own in a few places.
bool RunningOnWine();

// The most memory the process has held so far, in KiB (its peak resident
// set on POSIX, its peak working set on Windows).
long PeakMemoryKib();

}  // namespace veld::testing

#endif  // VELD_TESTS_SUPPORT_TESTING_H_
