// Dataset files exported to a table: the bytes as a file, exported by
// ExportFileToMDBTable (streamed) and by ParseFile + SaveDataToMDBTable (the
// held document), each into a fresh SQLite table. Both classes; the results,
// the recorded messages and the tables must be the same.
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <fstream>
#include <string>
#include <vector>

#include <sqlite3.h>

#include "veld/datasets/kvo_dataset.h"
#include "veld/datasets/kvo_dataset_o.h"

#include "fuzz_support.h"

namespace {

using veld_fuzz::Check;

// A directory of the process's own for the file and the database.
struct Scratch {
  veld_fuzz::ScratchDir dir;
  std::string file = dir.File("data.xml");
  std::string database = dir.File("t.db");
};

const Scratch& TheScratch() {
  static const Scratch scratch;
  return scratch;
}

void FreshTable(const std::string& database) {
  std::remove(database.c_str());
  sqlite3* db = nullptr;
  Check(sqlite3_open(database.c_str(), &db) == SQLITE_OK);
  Check(sqlite3_exec(db,
                     "CREATE TABLE t (a INTEGER, b TEXT, c NUMERIC(10,2));"
                     "INSERT INTO t VALUES (0, 'before', NULL)",
                     nullptr, nullptr, nullptr) == SQLITE_OK);
  sqlite3_close(db);
}

std::vector<std::string> TableOf(const std::string& database) {
  std::vector<std::string> rows;
  sqlite3* db = nullptr;
  sqlite3_stmt* statement = nullptr;
  Check(sqlite3_open(database.c_str(), &db) == SQLITE_OK);
  Check(sqlite3_prepare_v2(db, "SELECT quote(a) || quote(b) || quote(c) FROM t ORDER BY rowid", -1,
                           &statement, nullptr) == SQLITE_OK);
  while (sqlite3_step(statement) == SQLITE_ROW) {
    rows.emplace_back(reinterpret_cast<const char*>(sqlite3_column_text(statement, 0)));
  }
  sqlite3_finalize(statement);
  sqlite3_close(db);
  return rows;
}

struct Outcome {
  bool result;
  std::string error;
  std::vector<std::string> table;
  bool operator==(const Outcome&) const = default;
};

bool ParseFileOf(veld::KvoDatasetO& dataset, const std::string& file) {
  return dataset.ParseFile(file);
}
bool ParseFileOf(veld::KvoDataset& dataset, const std::string& file) {
  return dataset.ParseFile(file);
}

template <class Dataset>
void ExportAlike(const std::string& data_id) {
  const Scratch& scratch = TheScratch();
  Outcome outcomes[2];
  for (int streamed = 0; streamed < 2; ++streamed) {
    FreshTable(scratch.database);
    Dataset dataset;
    Outcome& outcome = outcomes[streamed];
    outcome.result =
        streamed != 0 ? dataset.ExportFileToMDBTable(scratch.file, data_id, scratch.database, "t")
                      : ParseFileOf(dataset, scratch.file) &&
                            dataset.SaveDataToMDBTable(data_id, scratch.database, "t");
    outcome.error = dataset.GetLastError();
    outcome.table = TableOf(scratch.database);
  }
  Check(outcomes[0] == outcomes[1]);
}

}  // namespace

// The first line of the input is the data id, the rest the file.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::vector<std::string> parts =
      veld_fuzz::SplitInput(std::string_view(reinterpret_cast<const char*>(data), size), '\n', 2);
  {
    std::ofstream out(TheScratch().file, std::ios::binary | std::ios::trunc);
    out << parts[1];
  }
  ExportAlike<veld::KvoDatasetO>(parts[0]);
  ExportAlike<veld::KvoDataset>(parts[0]);
  return 0;
}
