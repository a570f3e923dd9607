// Export of a held data element into a typed SQLite table
// (KvoDataset::SaveDataToMDBTable), next to the baseline of raw SQLite: one
// prepared INSERT in one transaction binding the same values, converted to
// the same column types.
//
// Rows of 8 columns: id INTEGER, code VARCHAR(20), name VARCHAR(50),
// qty INTEGER, price NUMERIC(10,2), ordered DATE, paid BOOLEAN, note TEXT.
// 10k, 100k and 1M rows; the table is emptied between iterations, untimed.
// Run bench/compare.py on the binary to see each figure next to its baseline.
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>
#include <sqlite3.h>
#include <stdlib.h>

#include "veld/datasets/kvo_dataset.h"

namespace {

struct Row {
  std::string id, code, name, qty, price, ordered, paid, note;
};

struct Fixture {
  std::string path;
  int64_t count = -1;
  std::vector<Row> rows;
  std::unique_ptr<veld::KvoDataset> dataset;
};

void Exec(sqlite3* db, const char* sql) {
  if (sqlite3_exec(db, sql, nullptr, nullptr, nullptr) != SQLITE_OK) {
    std::fprintf(stderr, "%s: %s\n", sql, sqlite3_errmsg(db));
    std::abort();
  }
}

Fixture& Prepared(int64_t count) {
  static Fixture fixture;
  if (fixture.path.empty()) {
    char pattern[] = "/tmp/veld-export-XXXXXX";
    fixture.path = std::string(mkdtemp(pattern)) + "/shop.db";
    sqlite3* db = nullptr;
    sqlite3_open(fixture.path.c_str(), &db);
    Exec(db,
         "CREATE TABLE orders (id INTEGER, code VARCHAR(20), name VARCHAR(50), qty INTEGER, "
         "price NUMERIC(10,2), ordered DATE, paid BOOLEAN, note TEXT)");
    sqlite3_close(db);
  }
  if (fixture.count != count) {
    fixture.count = count;
    fixture.rows.clear();
    std::string xml = "<dataset><data guid=\"orders\">";
    for (int64_t i = 0; i < count; ++i) {
      const std::string n = std::to_string(i);
      char date[16];
      std::snprintf(date, sizeof date, "2026-%02d-15", static_cast<int>(i % 12 + 1));
      Row row{n,
              "C-" + n,
              "Customer number " + n,
              std::to_string(i % 97),
              std::to_string(i % 1000) + ".25",
              date,
              i % 2 ? "True" : "False",
              "note for order " + n};
      xml += "<row><col name=\"id\" value=\"" + row.id + "\"/><col name=\"code\" value=\"" +
             row.code + "\"/><col name=\"name\" value=\"" + row.name +
             "\"/><col name=\"qty\" value=\"" + row.qty + "\"/><col name=\"price\" value=\"" +
             row.price + "\"/><col name=\"ordered\" value=\"" + row.ordered +
             "\"/><col name=\"paid\" value=\"" + row.paid + "\"/><col name=\"note\" value=\"" +
             row.note + "\"/></row>";
      fixture.rows.push_back(std::move(row));
    }
    xml += "</data></dataset>";
    fixture.dataset = std::make_unique<veld::KvoDataset>();
    if (!fixture.dataset->Parse(xml)) std::abort();
  }
  return fixture;
}

void EmptyTable(const std::string& path) {
  sqlite3* db = nullptr;
  sqlite3_open(path.c_str(), &db);
  Exec(db, "DELETE FROM orders");
  sqlite3_close(db);
}

void BM_RawSqliteInsert(benchmark::State& state) {
  Fixture& fixture = Prepared(state.range(0));
  for (auto _ : state) {
    state.PauseTiming();
    EmptyTable(fixture.path);
    state.ResumeTiming();
    sqlite3* db = nullptr;
    sqlite3_open_v2(fixture.path.c_str(), &db, SQLITE_OPEN_READWRITE, nullptr);
    Exec(db, "BEGIN IMMEDIATE");
    sqlite3_stmt* insert = nullptr;
    sqlite3_prepare_v2(db, "INSERT INTO orders VALUES (?1, ?2, ?3, ?4, ?5, ?6, ?7, ?8)", -1,
                       &insert, nullptr);
    auto text = [insert](int index, const std::string& value) {
      sqlite3_bind_text(insert, index, value.data(), static_cast<int>(value.size()), SQLITE_STATIC);
    };
    for (const Row& row : fixture.rows) {
      sqlite3_bind_int64(insert, 1, std::strtoll(row.id.c_str(), nullptr, 10));
      text(2, row.code);
      text(3, row.name);
      sqlite3_bind_int64(insert, 4, std::strtoll(row.qty.c_str(), nullptr, 10));
      sqlite3_bind_double(insert, 5, std::strtod(row.price.c_str(), nullptr));
      text(6, row.ordered);
      sqlite3_bind_int64(insert, 7, row.paid == "True" ? 1 : 0);
      text(8, row.note);
      if (sqlite3_step(insert) != SQLITE_DONE) state.SkipWithError("insert failed");
      sqlite3_reset(insert);
    }
    sqlite3_finalize(insert);
    Exec(db, "COMMIT");
    sqlite3_close(db);
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

void BM_DatasetExport(benchmark::State& state) {
  Fixture& fixture = Prepared(state.range(0));
  for (auto _ : state) {
    state.PauseTiming();
    EmptyTable(fixture.path);
    state.ResumeTiming();
    if (!fixture.dataset->SaveDataToMDBTable("orders", fixture.path, "orders")) {
      state.SkipWithError(fixture.dataset->GetLastError().c_str());
    }
  }
  state.SetLabel("baseline=BM_RawSqliteInsert");
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

void Sizes(benchmark::internal::Benchmark* bench) {
  bench->Arg(10'000)->Arg(100'000)->Arg(1'000'000)->Unit(benchmark::kMillisecond);
}

// The baseline and the export of one size run next to each other.
BENCHMARK(BM_RawSqliteInsert)->Apply(Sizes);
BENCHMARK(BM_DatasetExport)->Apply(Sizes);

}  // namespace

BENCHMARK_MAIN();
