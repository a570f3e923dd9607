#include "veld/foundation/worker_frame.h"

#include <new>
#include <stdexcept>
#include <string>

#include <gtest/gtest.h>

#include "foundation/frame_settings.h"
#include "veld/platform/platform.h"

#include "support/testing.h"

namespace veld {
namespace {

// A worker class with a few recording methods, presenting itself to the frame
// with the settings of one of the library's classes.
class ProbeWorker : public DocumentFrame {
 public:
  explicit ProbeWorker(const FrameSettings& settings) : DocumentFrame(settings) {}

  bool CheckSection(const std::string& sSectionID) {
    bool result = false;
    Recorded([&] {
      if (sSectionID.empty()) Fail("No Section ID specified.");
      result = true;
    });
    return result;
  }

  bool SelectNodes(const std::string& xpath) {
    bool result = false;
    Recorded([&] {
      m_cXmlDom.SelectNodes(xpath);
      result = true;
    });
    return result;
  }

  bool RemoveFile(const std::string& path) {
    bool result = false;
    Recorded([&] {
      CurrentPlatform().RemoveFile(path);
      result = true;
    });
    return result;
  }

  // Sets its result, then fails: the result stays as it stood.
  std::string SetThenFail() {
    std::string result;
    Recorded([&] {
      result = "partial";
      Fail("Failed half way.");
      result = "done";
    });
    return result;
  }

  // Changes the document, then fails: the change stays.
  bool AppendThenFail() {
    bool result = false;
    Recorded([&] {
      XmlNode root = GetRootElement();
      root.AppendChild(m_cXmlDom.CreateElement("section"));
      Fail("Failed after appending.");
      result = true;
    });
    return result;
  }

  bool ThrowStd() {
    bool result = false;
    Recorded([&] {
      throw std::runtime_error("standard failure");
      result = true;
    });
    return result;
  }

  bool ThrowBadAlloc() {
    bool result = false;
    Recorded([&] {
      throw std::bad_alloc();
      result = true;
    });
    return result;
  }

  void DropDocument() { m_cXmlDom = XmlDocument(); }
  XmlNode Root() { return GetRootElement(); }
  std::string DocumentXml() const { return m_cXmlDom.Xml(); }
  const KvoErrObject& Record() const { return m_cErrObj; }
  KvoErrObject& MutableRecord() { return m_cErrObj; }
};

// A worker without a document, like the registry class.
class BareWorker : public WorkerFrame {
 public:
  BareWorker() : WorkerFrame(kRegistryFrame) {}
  bool CheckKey(const std::string& key) {
    bool result = false;
    Recorded([&] {
      if (key.empty()) Fail("No key specified.");
      result = true;
    });
    return result;
  }
};

class WorkerFrameTest : public ::testing::Test {
 protected:
  void SetUp() override { Err().Clear(); }
};

TEST_F(WorkerFrameTest, NewObjectHasNoLastError) {
  ProbeWorker worker(kOptionFrame);
  EXPECT_EQ(worker.GetLastError(), "");
  EXPECT_NO_THROW(worker.RaiseLastError());
  BareWorker bare;
  EXPECT_EQ(bare.GetLastError(), "");
  EXPECT_NO_THROW(bare.RaiseLastError());
}

TEST_F(WorkerFrameTest, MissingArgumentRecordsCheckMessageWithoutTag) {
  ProbeWorker worker(kOptionFrame);
  EXPECT_FALSE(worker.CheckSection(""));
  EXPECT_EQ(worker.Record().Number(), -1);
  EXPECT_EQ(worker.GetLastError(), "No Section ID specified.");
}

TEST_F(WorkerFrameTest, SuccessfulCallClearsTheLastError) {
  ProbeWorker worker(kOptionFrame);
  ASSERT_FALSE(worker.CheckSection(""));
  EXPECT_TRUE(worker.SelectNodes("/*"));
  EXPECT_EQ(worker.GetLastError(), "");
  EXPECT_EQ(worker.Record().Number(), 0);
}

TEST_F(WorkerFrameTest, FailingDomOperationRecordsItsOwnNumber) {
  ProbeWorker worker(kOptionFrame);
  EXPECT_FALSE(worker.SelectNodes("/*[@id='unbalanced]"));
  EXPECT_EQ(worker.Record().Number(), -2147467259);
  std::string message = worker.GetLastError();
  const std::string tag = "(ERR#: -2147467259)";
  ASSERT_GT(message.size(), tag.size());
  EXPECT_EQ(message.substr(message.size() - tag.size()), tag);
}

TEST_F(WorkerFrameTest, FailingFileOperationRecordsItsOwnNumber) {
  ::veld::testing::TempDir dir;
  ProbeWorker worker(kOptionFrame);
  EXPECT_FALSE(worker.RemoveFile(dir.File("missing.xml")));
  EXPECT_EQ(worker.GetLastError(), "File not found(ERR#: 53)");
}

TEST_F(WorkerFrameTest, CheckFailureGetsTheClassAsSource) {
  ProbeWorker option(kOptionFrame);
  option.CheckSection("");
  EXPECT_EQ(option.Record().Source(), Variant("VeldCommonUtility.KvoOption"));
  ProbeWorker helper(kDataCtrlHelperFrame);
  helper.CheckSection("");
  EXPECT_EQ(helper.Record().Source(), Variant("VeldCommonUtility.KvoDataCtrlHelper"));
  EXPECT_EQ(Err().Source(), "VeldCommonUtility.KvoDataCtrlHelper");
}

TEST_F(WorkerFrameTest, RecordedFailureHasNoHelpFileOrContext) {
  ProbeWorker worker(kOptionFrame);
  worker.CheckSection("");
  EXPECT_EQ(worker.Record().HelpFile(), "");
  EXPECT_EQ(worker.Record().HelpContext(), Variant(int32_t{0}));
}

TEST_F(WorkerFrameTest, DefaultSourceIsTheProductName) {
  ProbeWorker worker(kOptionFrame);
  worker.MutableRecord().SetError2(-1, "M");
  EXPECT_EQ(worker.Record().Source(), Variant("Veld Common Utility Library"));
  EXPECT_EQ(worker.Record().Description(), "M");
}

TEST_F(WorkerFrameTest, RaiseLastErrorRaisesTheRecordedFailure) {
  ProbeWorker worker(kOptionFrame);
  worker.CheckSection("");
  EXPECT_RAISES(worker.RaiseLastError(), -1, "No Section ID specified.");
}

TEST_F(WorkerFrameTest, RaiseLastErrorTwiceRaisesTwice) {
  ::veld::testing::TempDir dir;
  ProbeWorker worker(kOptionFrame);
  worker.RemoveFile(dir.File("missing.xml"));
  EXPECT_RAISES(worker.RaiseLastError(), 53, "File not found");
  EXPECT_RAISES(worker.RaiseLastError(), 53, "File not found");
  EXPECT_EQ(worker.GetLastError(), "File not found(ERR#: 53)");
}

TEST_F(WorkerFrameTest, FailureResultStaysAsItStood) {
  ProbeWorker worker(kOptionFrame);
  EXPECT_EQ(worker.SetThenFail(), "partial");
  EXPECT_EQ(worker.GetLastError(), "Failed half way.");
}

TEST_F(WorkerFrameTest, FailureLeavesDocumentChangesInPlace) {
  ProbeWorker worker(kOptionFrame);
  EXPECT_FALSE(worker.AppendThenFail());
  EXPECT_EQ(worker.DocumentXml(), "<config><section/></config>");
  EXPECT_EQ(worker.GetLastError(), "Failed after appending.");
}

TEST_F(WorkerFrameTest, StandardExceptionsAreRecordedNotThrown) {
  ProbeWorker worker(kOptionFrame);
  EXPECT_FALSE(worker.ThrowStd());
  EXPECT_EQ(worker.GetLastError(), "standard failure(ERR#: 440)");
  EXPECT_FALSE(worker.ThrowBadAlloc());
  EXPECT_EQ(worker.GetLastError(), "Out of memory(ERR#: 7)");
}

TEST_F(WorkerFrameTest, ResetOfOptionClassClearsTheLastError) {
  ProbeWorker worker(kOptionFrame);
  worker.CheckSection("");
  worker.Reset();
  EXPECT_EQ(worker.GetLastError(), "");
}

TEST_F(WorkerFrameTest, ResetOfDatasetClassesClearsTheLastError) {
  for (const FrameSettings* settings : {&kDatasetOFrame, &kDatasetFrame}) {
    ProbeWorker worker(*settings);
    worker.CheckSection("");
    worker.Reset();
    EXPECT_EQ(worker.GetLastError(), "") << settings->class_name;
  }
}

TEST_F(WorkerFrameTest, ResetOfXmlHelperClassKeepsTheLastError) {
  for (const FrameSettings* settings : {&kXmlHelperFrame, &kDataCtrlHelperFrame}) {
    ProbeWorker worker(*settings);
    worker.CheckSection("");
    worker.Reset();
    EXPECT_EQ(worker.GetLastError(), "No Section ID specified.") << settings->class_name;
  }
}

TEST_F(WorkerFrameTest, ResetOfOptionClassLeavesOnlyAnEmptyConfigRoot) {
  ProbeWorker worker(kOptionFrame);
  EXPECT_EQ(worker.DocumentXml(), "<config/>");
  worker.AppendThenFail();
  worker.Reset();
  EXPECT_EQ(worker.DocumentXml(), "<config/>");
}

TEST_F(WorkerFrameTest, ResetOfDatasetClassesLeavesAnEmptyDatasetRoot) {
  EXPECT_EQ(ProbeWorker(kDatasetOFrame).DocumentXml(), "<dataset/>");
  EXPECT_EQ(ProbeWorker(kDatasetFrame).DocumentXml(), "<dataset/>");
}

TEST_F(WorkerFrameTest, ResetOfHelperClassesLeavesAnEmptyDocument) {
  EXPECT_EQ(ProbeWorker(kXmlHelperFrame).DocumentXml(), "");
  EXPECT_EQ(ProbeWorker(kDataCtrlHelperFrame).DocumentXml(), "");
}

TEST_F(WorkerFrameTest, RootStepCreatesTheRootWhenMissing) {
  ProbeWorker worker(kDatasetOFrame);
  worker.DropDocument();
  EXPECT_EQ(worker.DocumentXml(), "");
  XmlNode root = worker.Root();
  ASSERT_TRUE(root);
  EXPECT_EQ(root.NodeName(), "dataset");
  EXPECT_EQ(worker.DocumentXml(), "<dataset/>");
  // A second call returns the same root and adds nothing.
  EXPECT_EQ(worker.Root(), root);
  EXPECT_EQ(worker.DocumentXml(), "<dataset/>");
}

TEST_F(WorkerFrameTest, RootStepIsARecordingStep) {
  ProbeWorker worker(kOptionFrame);
  worker.CheckSection("");
  worker.Root();
  EXPECT_EQ(worker.GetLastError(), "");
}

TEST_F(WorkerFrameTest, NodeHeldAcrossResetStaysUsable) {
  ProbeWorker worker(kOptionFrame);
  XmlNode old_root = worker.Root();
  worker.Reset();
  EXPECT_EQ(old_root.NodeName(), "config");
  EXPECT_EQ(old_root.Xml(), "<config/>");
  EXPECT_NE(worker.Root(), old_root);
}

TEST_F(WorkerFrameTest, BareWorkerRecordsLikeTheOthers) {
  BareWorker bare;
  EXPECT_FALSE(bare.CheckKey(""));
  EXPECT_EQ(bare.GetLastError(), "No key specified.");
  EXPECT_TRUE(bare.CheckKey("HKEY_CURRENT_USER"));
  EXPECT_EQ(bare.GetLastError(), "");
}

}  // namespace
}  // namespace veld
