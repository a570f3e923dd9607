// Progress of Parse and SaveDataToMDBTable told to an attached notifier.
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "veld/datasets/kvo_dataset.h"
#include "veld/datasets/kvo_dataset_o.h"
#include "veld/xmlhelper/kvo_progress_updater.h"

#include "support/sqlite_file.h"
#include "support/testing.h"

namespace veld {
namespace {

struct Heard {
  int32_t total;
  int32_t current;
  std::string status;
};

std::string Rows(int count) {
  std::string xml = "<dataset><data guid=\"D\">";
  for (int i = 0; i < count; ++i) {
    xml += "<row><col name=\"n\" value=\"" + std::to_string(i) + "\"/></row>";
  }
  return xml + "</data></dataset>";
}

template <class Dataset>
class DatasetProgressTest : public ::testing::Test {
 protected:
  void SetUp() override {
    updater_ = std::make_shared<KvoProgressUpdater>();
    connection_ =
        updater_->Connect([this](int32_t total, int32_t current, const std::string& status) {
          heard_.push_back({total, current, status});
        });
  }

  void ExpectOrderlyProgress(int32_t total, const std::string& status) {
    ASSERT_FALSE(heard_.empty());
    EXPECT_LE(heard_.size(), 202u);
    int32_t last = -1;
    for (const Heard& heard : heard_) {
      EXPECT_EQ(heard.total, total);
      EXPECT_GT(heard.current, last);
      EXPECT_EQ(heard.status, status);
      last = heard.current;
    }
    EXPECT_EQ(last, total);
  }

  std::shared_ptr<KvoProgressUpdater> updater_;
  Connection connection_;
  std::vector<Heard> heard_;
  Dataset dataset_;
};

using DatasetClasses = ::testing::Types<KvoDatasetO, KvoDataset>;
TYPED_TEST_SUITE(DatasetProgressTest, DatasetClasses);

TYPED_TEST(DatasetProgressTest, ParseTellsProgressOverTheRows) {
  this->dataset_.SetProgressUpdater(this->updater_);
  ASSERT_TRUE(this->dataset_.Parse(Rows(5000)));
  this->ExpectOrderlyProgress(5000, "Reading rows");
  EXPECT_GE(this->heard_.size(), 100u);
}

TYPED_TEST(DatasetProgressTest, ResultsAreTheSameWithAndWithoutProgress) {
  TypeParam plain;
  ASSERT_TRUE(plain.Parse(Rows(300)));
  this->dataset_.SetProgressUpdater(this->updater_);
  ASSERT_TRUE(this->dataset_.Parse(Rows(300)));
  std::string with;
  std::string without;
  this->dataset_.Save(with);
  plain.Save(without);
  // Row ids are new on every parse; the rest is the same.
  EXPECT_EQ(with.size(), without.size());
  EXPECT_EQ(this->dataset_.GetDataRowCount("D"), 300);
}

TYPED_TEST(DatasetProgressTest, DetachedNotifierHearsNothing) {
  this->dataset_.SetProgressUpdater(this->updater_);
  this->dataset_.SetProgressUpdater(nullptr);
  ASSERT_TRUE(this->dataset_.Parse(Rows(100)));
  EXPECT_TRUE(this->heard_.empty());
}

TYPED_TEST(DatasetProgressTest, ExportTellsProgressAndAThrowingListenerStopsIt) {
  testing::TempDir dir;
  const std::string db = dir.File("t.db");
  testing::SqliteExec(db, "CREATE TABLE t (n INTEGER)");
  ASSERT_TRUE(this->dataset_.Parse(Rows(1000)));
  this->dataset_.SetProgressUpdater(this->updater_);
  ASSERT_TRUE(this->dataset_.SaveDataToMDBTable("D", db, "t")) << this->dataset_.GetLastError();
  this->ExpectOrderlyProgress(1000, "Exporting rows to t");

  Connection stopper = this->updater_->Connect([](int32_t, int32_t current, const std::string&) {
    if (current >= 500) throw std::runtime_error("stopped by the listener");
  });
  EXPECT_FALSE(this->dataset_.SaveDataToMDBTable("D", db, "t", "", "", true));
  EXPECT_EQ(this->dataset_.GetLastError(), "stopped by the listener(ERR#: 440)");
  // The first export only.
  EXPECT_EQ(testing::SqliteRows(db, "SELECT count(*) FROM t"), testing::SqliteRowList{{"1000"}});
}

}  // namespace
}  // namespace veld
