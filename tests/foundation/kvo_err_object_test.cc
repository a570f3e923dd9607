#include "veld/foundation/kvo_err_object.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "veld/platform/platform.h"

#include "support/testing.h"

namespace veld {
namespace {

// Remembers every message box instead of showing it.
class RecordingPlatform : public ForwardingPlatform {
 public:
  struct Box {
    std::string text;
    int32_t style;
    std::string title;
  };
  int32_t ShowMessageBox(const std::string& text, int32_t style,
                         const std::string& title) override {
    boxes.push_back({text, style, title});
    return 1;
  }
  std::vector<Box> boxes;
};

class KvoErrObjectTest : public ::testing::Test {
 protected:
  void SetUp() override { Err().Clear(); }
  KvoErrObject err_;
};

TEST_F(KvoErrObjectTest, FreshObjectHoldsNoFailure) {
  EXPECT_EQ(err_.Number(), 0);
  EXPECT_EQ(err_.Description(), "");
  EXPECT_TRUE(err_.Source().IsEmpty());
  EXPECT_TRUE(err_.HelpContext().IsEmpty());
  EXPECT_EQ(err_.HelpFile(), "");
  EXPECT_EQ(err_.GetErrorMsg(), "");
  EXPECT_FALSE(err_.Raise());
}

TEST_F(KvoErrObjectTest, FreshObjectShowsNoMessageBox) {
  RecordingPlatform platform;
  ScopedPlatform installed(platform);
  err_.ShowError();
  EXPECT_TRUE(platform.boxes.empty());
}

TEST_F(KvoErrObjectTest, CheckFailureShowsMessageAlone) {
  err_.SetError2(-1, "No Section ID specified.");
  EXPECT_EQ(err_.GetErrorMsg(), "No Section ID specified.");
}

TEST_F(KvoErrObjectTest, OtherNumbersGetTheNumberTag) {
  err_.SetError2(5, "Invalid procedure call or argument");
  EXPECT_EQ(err_.GetErrorMsg(), "Invalid procedure call or argument(ERR#: 5)");
  err_.SetError2(53, "File not found");
  EXPECT_EQ(err_.GetErrorMsg(), "File not found(ERR#: 53)");
}

TEST_F(KvoErrObjectTest, NegativeNumberTagKeepsItsSign) {
  err_.SetError2(-2147467259, "Unspecified error");
  EXPECT_EQ(err_.GetErrorMsg(), "Unspecified error(ERR#: -2147467259)");
}

TEST_F(KvoErrObjectTest, NumberZeroGivesEmptyMessageDespiteDescription) {
  err_.SetError2(0, "M");
  EXPECT_EQ(err_.Description(), "M");
  EXPECT_EQ(err_.GetErrorMsg(), "");
  EXPECT_FALSE(err_.Raise());
}

TEST_F(KvoErrObjectTest, MissingSourceTakesTheDefaultSource) {
  err_.SetDefaultErrorInfo(Variant("Veld Common Utility Library"));
  err_.SetError2(-1, "M");
  EXPECT_EQ(err_.Source(), Variant("Veld Common Utility Library"));
}

TEST_F(KvoErrObjectTest, MissingSourceWithoutDefaultIsEmpty) {
  err_.SetError2(-1, "M");
  EXPECT_TRUE(err_.Source().IsEmpty());
}

TEST_F(KvoErrObjectTest, EmptyStringSourceIsKeptAsEmptyString) {
  err_.SetDefaultErrorInfo(Variant("Default"));
  err_.SetError2(-1, "M", "", Variant::Missing(), Variant(""));
  EXPECT_EQ(err_.Source(), Variant(""));
  EXPECT_FALSE(err_.Source().IsEmpty());
}

TEST_F(KvoErrObjectTest, DescriptionPrefixIsDropped) {
  err_.SetDefaultErrorInfo(Variant("Default"), "KvoOption");
  err_.SetError2(-1, "M");
  EXPECT_EQ(err_.Description(), "M");
  EXPECT_EQ(err_.GetErrorMsg(), "M");
}

TEST_F(KvoErrObjectTest, SetError2StoresHelpFileAndContext) {
  err_.SetError2(7, "Out of memory", "help.chm", Variant(int32_t{1000007}), Variant("src"));
  EXPECT_EQ(err_.Number(), 7);
  EXPECT_EQ(err_.HelpFile(), "help.chm");
  EXPECT_EQ(err_.HelpContext(), Variant(int32_t{1000007}));
  EXPECT_EQ(err_.Source(), Variant("src"));
}

TEST_F(KvoErrObjectTest, MissingHelpContextStaysMissing) {
  err_.SetError2(7, "Out of memory");
  EXPECT_TRUE(err_.HelpContext().IsMissing());
}

TEST_F(KvoErrObjectTest, NewFailureKeepsNothingOfTheOldOne) {
  err_.SetError2(7, "Out of memory", "help.chm", Variant(int32_t{3}), Variant("src"));
  err_.SetError2(-1, "M");
  EXPECT_EQ(err_.HelpFile(), "");
  EXPECT_TRUE(err_.HelpContext().IsMissing());
}

TEST_F(KvoErrObjectTest, SetErrorWithNullCopiesTheCurrentRuntimeError) {
  Err().Set(ErrorInfo{53, "File not found", "Some.Source", "file.hlp", 42});
  err_.SetDefaultErrorInfo(Variant("Default"));
  err_.SetError(nullptr);
  EXPECT_EQ(err_.Number(), 53);
  EXPECT_EQ(err_.Description(), "File not found");
  EXPECT_EQ(err_.Source(), Variant("Some.Source"));
  EXPECT_EQ(err_.HelpFile(), "file.hlp");
  EXPECT_EQ(err_.HelpContext(), Variant(int32_t{42}));
}

TEST_F(KvoErrObjectTest, SetErrorWithoutArgumentCopiesTheCurrentRuntimeError) {
  Err().Set(ErrorInfo{6, "Overflow", "", "", 0});
  err_.SetError();
  EXPECT_EQ(err_.Number(), 6);
  EXPECT_EQ(err_.GetErrorMsg(), "Overflow(ERR#: 6)");
  // The source is always passed on, so an empty one stays "", not the default.
  EXPECT_EQ(err_.Source(), Variant(""));
}

TEST_F(KvoErrObjectTest, SetErrorFromAGivenObjectLeavesItAsItWas) {
  ErrObject other;
  other.Set(ErrorInfo{9, "Subscript out of range", "X", "", 0});
  Err().Set(ErrorInfo{6, "Overflow"});
  err_.SetError(&other);
  EXPECT_EQ(err_.Number(), 9);
  EXPECT_EQ(other.Number(), 9);
  EXPECT_EQ(Err().Number(), 6);
}

TEST_F(KvoErrObjectTest, RaiseRaisesTheRecordWithTheCurrentSource) {
  err_.SetError2(5, "Invalid procedure call or argument", "h.hlp", Variant(int32_t{7}),
                 Variant("StoredSource"));
  Err().Set(ErrorInfo{1, "x", "CurrentSource"});
  try {
    err_.Raise();
    FAIL() << "Raise returned";
  } catch (const AutomationError& error) {
    EXPECT_EQ(error.Number(), 5);
    EXPECT_EQ(error.Description(), "Invalid procedure call or argument");
    EXPECT_EQ(error.Source(), "CurrentSource");
    EXPECT_EQ(error.HelpFile(), "h.hlp");
    EXPECT_EQ(error.HelpContext(), 7);
  }
  EXPECT_EQ(Err().Number(), 5);
  EXPECT_EQ(Err().Source(), "CurrentSource");
}

TEST_F(KvoErrObjectTest, RecordStaysAfterRaise) {
  err_.SetError2(-1, "M");
  EXPECT_RAISES(err_.Raise(), -1, "M");
  EXPECT_EQ(err_.Number(), -1);
  EXPECT_EQ(err_.GetErrorMsg(), "M");
  EXPECT_RAISES(err_.Raise(), -1, "M");
}

TEST_F(KvoErrObjectTest, ClearLeavesSourceNullUnlikeAFreshObject) {
  err_.SetError2(5, "x", "", Variant::Missing(), Variant("s"));
  err_.Clear();
  EXPECT_EQ(err_.Number(), 0);
  EXPECT_EQ(err_.Description(), "");
  EXPECT_TRUE(err_.Source().IsNull());
  EXPECT_EQ(err_.HelpFile(), "");
  EXPECT_EQ(err_.HelpContext(), Variant(int32_t{0}));
  KvoErrObject fresh;
  EXPECT_TRUE(fresh.Source().IsEmpty());
  EXPECT_FALSE(fresh.Source() == err_.Source());
}

TEST_F(KvoErrObjectTest, ClearKeepsTheDefaultSource) {
  err_.SetDefaultErrorInfo(Variant("Default"));
  err_.Clear();
  err_.SetError2(-1, "M");
  EXPECT_EQ(err_.Source(), Variant("Default"));
}

TEST_F(KvoErrObjectTest, ShowErrorShowsTheMessageWithCriticalIcon) {
  RecordingPlatform platform;
  ScopedPlatform installed(platform);
  err_.SetError2(53, "File not found");
  err_.ShowError();
  ASSERT_EQ(platform.boxes.size(), 1u);
  EXPECT_EQ(platform.boxes[0].text, "File not found(ERR#: 53)");
  EXPECT_EQ(platform.boxes[0].style, 16);
  EXPECT_EQ(platform.boxes[0].title, "");
  // Showing does not clear.
  EXPECT_EQ(err_.Number(), 53);
}

#ifndef _WIN32  // see tests/WindowsExclusions.cmake
TEST_F(KvoErrObjectTest, DefaultMessageBoxWritesToStandardError) {
  err_.SetError2(-1, "No Section ID specified.");
  ::testing::internal::CaptureStderr();
  err_.ShowError();
  std::string written = ::testing::internal::GetCapturedStderr();
  EXPECT_NE(written.find("No Section ID specified."), std::string::npos) << written;
}
#endif

}  // namespace
}  // namespace veld
