// One export of a dataset file to a fresh SQLite table per process, so that
// the peak memory (VmHWM) is that export's alone:
//   bench_file_export_phase PHASE FILE DATABASE
// Prints "PHASE wall_seconds cpu_seconds rows peak_kib". The file is one
// written by bench_dataset_gen; DATABASE is made anew with a typed table
// "items" of its eight cols (untimed). Phases:
//   held      KvoDatasetO::ParseFile, then SaveDataToMDBTable
//   streamed  KvoDatasetO::ExportFileToMDBTable
// Wall time counts: an export writes a database file and waits for it.
#include <cstdio>
#include <string>

#include <sqlite3.h>

#include "veld/datasets/kvo_dataset_o.h"

#include "process_stats.h"

namespace {

constexpr char kDataId[] = "5E8F2A4C9B7D4E1FA3C6B0D2E4F6A8C0";

using veld_bench::PeakKib;
using veld_bench::Seconds;

bool MakeDatabase(const char* path) {
  std::remove(path);
  sqlite3* db = nullptr;
  bool ok = sqlite3_open(path, &db) == SQLITE_OK &&
            sqlite3_exec(db,
                         "CREATE TABLE items (code VARCHAR(20), kind VARCHAR(4), title TEXT, "
                         "qty INTEGER, price NUMERIC(10,2), date DATE, flag BOOLEAN, note TEXT)",
                         nullptr, nullptr, nullptr) == SQLITE_OK;
  sqlite3_close(db);
  return ok;
}

long RowCount(const char* path) {
  sqlite3* db = nullptr;
  sqlite3_stmt* statement = nullptr;
  long rows = -1;
  if (sqlite3_open(path, &db) == SQLITE_OK &&
      sqlite3_prepare_v2(db, "SELECT count(*) FROM items", -1, &statement, nullptr) == SQLITE_OK &&
      sqlite3_step(statement) == SQLITE_ROW) {
    rows = static_cast<long>(sqlite3_column_int64(statement, 0));
  }
  sqlite3_finalize(statement);
  sqlite3_close(db);
  return rows;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 4) {
    std::fprintf(stderr, "usage: %s held|streamed FILE DATABASE\n", argv[0]);
    return 2;
  }
  const std::string phase = argv[1];
  const char* file = argv[2];
  const char* database = argv[3];
  if (phase != "held" && phase != "streamed") {
    std::fprintf(stderr, "unknown phase %s\n", argv[1]);
    return 2;
  }
  if (!MakeDatabase(database)) return 1;

  veld::KvoDatasetO dataset;
  const double wall = Seconds(CLOCK_MONOTONIC);
  const double cpu = Seconds(CLOCK_PROCESS_CPUTIME_ID);
  const bool ok = phase == "held" ? dataset.ParseFile(file) &&
                                        dataset.SaveDataToMDBTable(kDataId, database, "items")
                                  : dataset.ExportFileToMDBTable(file, kDataId, database, "items");
  const double wall_seconds = Seconds(CLOCK_MONOTONIC) - wall;
  const double cpu_seconds = Seconds(CLOCK_PROCESS_CPUTIME_ID) - cpu;
  if (!ok) {
    std::fprintf(stderr, "%s: %s\n", argv[1], dataset.GetLastError().c_str());
    return 1;
  }
  std::printf("%s %.6f %.6f %ld %ld\n", argv[1], wall_seconds, cpu_seconds, RowCount(database),
              PeakKib());
  return 0;
}
