// The streamed export of a dataset file when things go wrong late: a file
// that turns malformed after a million good rows, a process killed with
// SIGKILL half-way through, a disk that fills up. The table must be as it
// was before the call, and the message the one the held-document path
// (ParseFile, then SaveDataToMDBTable) gives. These tests fork, mount and
// send signals, so they are POSIX-only.
#include <cstdio>
#include <fstream>
#include <memory>
#include <string>

#include <gtest/gtest.h>
#include <sched.h>
#include <signal.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include "veld/datasets/kvo_dataset.h"
#include "veld/datasets/kvo_dataset_o.h"
#include "veld/xmlhelper/kvo_progress_updater.h"

#include "support/child_process.h"
#include "support/sqlite_file.h"
#include "support/testing.h"

namespace veld {
namespace {

constexpr char kSchema[] =
    "CREATE TABLE t (id INTEGER, name TEXT);"
    "INSERT INTO t VALUES (-1, 'before');";

const testing::SqliteRowList kTableBefore = {{"-1", "before"}};

testing::SqliteRowList TableOf(const std::string& db) {
  return testing::SqliteRows(db, "SELECT id, name FROM t ORDER BY rowid");
}

// Writes a dataset file of `rows` rows with an id and a name of
// `name_length` characters, followed by `tail` (the end of a well-formed
// file when empty).
std::string WriteDatasetFile(const std::string& path, int rows, int name_length,
                             const std::string& tail = "") {
  std::ofstream out(path, std::ios::binary);
  out << "<dataset><data guid=\"D\">";
  const std::string name(static_cast<size_t>(name_length), 'n');
  for (int i = 1; i <= rows; ++i) {
    out << "<row><col name=\"id\" value=\"" << i << "\"/><col name=\"name\" value=\"" << name
        << "\"/></row>";
  }
  out << (tail.empty() ? std::string("</data></dataset>") : tail);
  return path;
}

bool ParseFileOf(KvoDatasetO& dataset, const std::string& file) { return dataset.ParseFile(file); }
bool ParseFileOf(KvoDataset& dataset, const std::string& file) { return dataset.ParseFile(file); }

struct Outcome {
  bool result = true;
  std::string error;
  testing::SqliteRowList table;
};

template <class Dataset>
Outcome HeldExport(const std::string& file, const std::string& db) {
  Dataset dataset;
  Outcome outcome;
  outcome.result = ParseFileOf(dataset, file) && dataset.SaveDataToMDBTable("D", db, "t");
  outcome.error = dataset.GetLastError();
  outcome.table = TableOf(db);
  return outcome;
}

template <class Dataset>
Outcome StreamedExport(const std::string& file, const std::string& db) {
  Dataset dataset;
  Outcome outcome;
  outcome.result = dataset.ExportFileToMDBTable(file, "D", db, "t");
  outcome.error = dataset.GetLastError();
  outcome.table = TableOf(db);
  return outcome;
}

template <class Dataset>
class DatasetFileExportFailureTest : public ::testing::Test {
 protected:
  std::string FreshDatabase(const std::string& name) {
    const std::string path = dir_.File(name);
    std::remove(path.c_str());
    testing::SqliteExec(path, kSchema);
    return path;
  }

  testing::TempDir dir_;
};

using DatasetClasses = ::testing::Types<KvoDatasetO, KvoDataset>;
TYPED_TEST_SUITE(DatasetFileExportFailureTest, DatasetClasses);

TYPED_TEST(DatasetFileExportFailureTest, FileMalformedAfterAMillionRowsLeavesTheTableAsItWas) {
  // A million rows are read and written before the cut-off end shows.
  const std::string file =
      WriteDatasetFile(this->dir_.File("cut.xml"), 1000000, 1, "<row><col name=\"id\" val");
  const Outcome streamed = StreamedExport<TypeParam>(file, this->FreshDatabase("streamed.db"));
  EXPECT_FALSE(streamed.result);
  EXPECT_EQ(streamed.error, "Failed to load dataset file.");
  EXPECT_EQ(streamed.table, kTableBefore);

  const Outcome held = HeldExport<TypeParam>(file, this->FreshDatabase("held.db"));
  EXPECT_FALSE(held.result);
  EXPECT_EQ(held.error, streamed.error);
  EXPECT_EQ(held.table, kTableBefore);
}

TYPED_TEST(DatasetFileExportFailureTest, ProcessKilledHalfWayLeavesTheTableAsItWas) {
  const std::string file = WriteDatasetFile(this->dir_.File("rows.xml"), 200000, 20);
  const std::string db = this->FreshDatabase("killed.db");
  const bool killed = testing::KillChildWhenReady([&](const std::function<void()>& ready) {
    TypeParam dataset;
    auto updater = std::make_shared<KvoProgressUpdater>();
    Connection connection =
        updater->Connect([&](int32_t total, int32_t current, const std::string& status) {
          // Half the rows are in the open transaction, many of them already
          // spilled from SQLite's cache into the file.
          if (status == "Exporting rows to t" && current >= total / 2) ready();
        });
    dataset.SetProgressUpdater(updater);
    dataset.ExportFileToMDBTable(file, "D", db, "t");
  });
  ASSERT_TRUE(killed) << "the child ended before it was half-way through the export";
  EXPECT_EQ(TableOf(db), kTableBefore);

  // Nothing of the killed export is in the way of the next one.
  const Outcome again = StreamedExport<TypeParam>(file, db);
  EXPECT_TRUE(again.result) << again.error;
  EXPECT_EQ(again.table.size(), 200001u);
}

// Runs the held and the streamed export in a child whose database lives on a
// file system too small for the rows: a tmpfs of its own mount namespace, or,
// where mounting is not allowed, a file-size limit. Returns the outcomes and
// whether the file system was a real, full one.
template <class Dataset>
void ExportToFullDisk(const testing::TempDir& dir, const std::string& file, Outcome& held,
                      Outcome& streamed, bool& tmpfs) {
  const std::string small = dir.File("small");
  const std::string results = dir.File("results");
  ASSERT_EQ(mkdir(small.c_str(), 0700), 0);
  const std::string seed = dir.File("seed.db");
  testing::SqliteExec(seed, kSchema);
  const std::string seed_bytes = testing::ReadFile(seed);
  ASSERT_FALSE(seed_bytes.empty());
  const int code = testing::RunInChild([&] {
    const bool mounted = unshare(CLONE_NEWNS) == 0 &&
                         mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 &&
                         mount("tmpfs", small.c_str(), "tmpfs", 0, "size=256k") == 0;
    if (!mounted) {
      signal(SIGXFSZ, SIG_IGN);
      rlimit limit{256 * 1024, 256 * 1024};
      if (setrlimit(RLIMIT_FSIZE, &limit) != 0) return 3;
    }
    std::ofstream out(results, std::ios::binary);
    out << (mounted ? "tmpfs" : "rlimit") << '\n';
    const std::string db = small + "/t.db";
    for (int pass = 0; pass < 2; ++pass) {
      { std::ofstream(db, std::ios::binary) << seed_bytes; }
      const Outcome outcome =
          pass == 0 ? HeldExport<Dataset>(file, db) : StreamedExport<Dataset>(file, db);
      out << outcome.result << '\n' << outcome.error << '\n' << outcome.table.size() << '\n';
      for (const auto& row : outcome.table) out << row.at(0) << '\n' << row.at(1) << '\n';
      std::remove(db.c_str());
      std::remove((db + "-journal").c_str());
    }
    return out.good() ? 0 : 4;
  });
  ASSERT_EQ(code, 0);
  std::ifstream in(results, std::ios::binary);
  std::string kind;
  std::getline(in, kind);
  tmpfs = kind == "tmpfs";
  for (Outcome* outcome : {&held, &streamed}) {
    std::string line;
    std::getline(in, line);
    outcome->result = line == "1";
    std::getline(in, outcome->error);
    std::getline(in, line);
    const int rows = std::stoi(line);
    for (int i = 0; i < rows; ++i) {
      std::vector<std::string> row(2);
      std::getline(in, row[0]);
      std::getline(in, row[1]);
      outcome->table.push_back(row);
    }
  }
  ASSERT_TRUE(in.good());
}

TYPED_TEST(DatasetFileExportFailureTest, DiskFillingUpLeavesTheTableAndGivesTheHeldPathsMessage) {
  // About 3 MB of table for a file system of 256 KiB.
  const std::string file = WriteDatasetFile(this->dir_.File("rows.xml"), 20000, 120);
  Outcome held;
  Outcome streamed;
  bool tmpfs = false;
  ExportToFullDisk<TypeParam>(this->dir_, file, held, streamed, tmpfs);
  if (this->HasFatalFailure()) return;
  EXPECT_FALSE(held.result);
  EXPECT_FALSE(streamed.result);
  EXPECT_EQ(streamed.error, held.error);
  EXPECT_EQ(streamed.error, tmpfs ? "database or disk is full(ERR#: -2147217900)"
                                  : "disk I/O error(ERR#: -2147217900)");
  EXPECT_EQ(held.table, kTableBefore);
  EXPECT_EQ(streamed.table, kTableBefore);
}

}  // namespace
}  // namespace veld
