// Appending rows to a typed SQLite table through the table store, next to the
// baseline of raw SQLite: one prepared INSERT in one transaction binding the
// same values, already converted to the column types.
//
// Rows of 8 columns: id INTEGER, code VARCHAR(20), name VARCHAR(50),
// qty INTEGER, price NUMERIC(10,2), ordered DATE, paid BOOLEAN, note TEXT.
// 10k, 100k and 1M rows; the table is emptied between iterations, untimed.
// Run bench/compare.py on the binary to see each figure next to its baseline.
#include <sqlite3.h>
#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include "veld/tablestore/table_store.h"

namespace {

constexpr int kColumns = 8;

struct Fixture {
  std::string dir;
  std::string path;
  std::vector<std::vector<std::string>> rows;
};

void Exec(sqlite3* db, const char* sql) {
  if (sqlite3_exec(db, sql, nullptr, nullptr, nullptr) != SQLITE_OK) {
    std::fprintf(stderr, "%s: %s\n", sql, sqlite3_errmsg(db));
    std::abort();
  }
}

const Fixture& Prepared(int64_t count) {
  static Fixture fixture;
  if (fixture.dir.empty()) {
    char pattern[] = "/tmp/veld-bench-XXXXXX";
    fixture.dir = mkdtemp(pattern);
    fixture.path = fixture.dir + "/orders.db";
    sqlite3* db = nullptr;
    sqlite3_open(fixture.path.c_str(), &db);
    Exec(db,
         "CREATE TABLE orders (id INTEGER, code VARCHAR(20), name VARCHAR(50), qty INTEGER, "
         "price NUMERIC(10,2), ordered DATE, paid BOOLEAN, note TEXT)");
    sqlite3_close(db);
  }
  if (static_cast<int64_t>(fixture.rows.size()) != count) {
    fixture.rows.clear();
    fixture.rows.reserve(static_cast<size_t>(count));
    for (int64_t i = 0; i < count; ++i) {
      const std::string n = std::to_string(i);
      fixture.rows.push_back({n, "C-" + n, "Customer number " + n, std::to_string(i % 97),
                              std::to_string(i % 1000) + ".25",
                              "2026-" + std::string(i % 12 < 9 ? "0" : "") +
                                  std::to_string(i % 12 + 1) + "-15",
                              i % 2 ? "True" : "False", "note for order " + n});
    }
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
  const Fixture& fixture = Prepared(state.range(0));
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
    for (const auto& row : fixture.rows) {
      sqlite3_bind_int64(insert, 1, std::strtoll(row[0].c_str(), nullptr, 10));
      sqlite3_bind_text(insert, 2, row[1].data(), static_cast<int>(row[1].size()), SQLITE_STATIC);
      sqlite3_bind_text(insert, 3, row[2].data(), static_cast<int>(row[2].size()), SQLITE_STATIC);
      sqlite3_bind_int64(insert, 4, std::strtoll(row[3].c_str(), nullptr, 10));
      sqlite3_bind_double(insert, 5, std::strtod(row[4].c_str(), nullptr));
      sqlite3_bind_text(insert, 6, row[5].data(), static_cast<int>(row[5].size()), SQLITE_STATIC);
      sqlite3_bind_int64(insert, 7, row[6] == "True" ? 1 : 0);
      sqlite3_bind_text(insert, 8, row[7].data(), static_cast<int>(row[7].size()), SQLITE_STATIC);
      if (sqlite3_step(insert) != SQLITE_DONE) state.SkipWithError("insert failed");
      sqlite3_reset(insert);
    }
    sqlite3_finalize(insert);
    Exec(db, "COMMIT");
    sqlite3_close(db);
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

void BM_TableStoreAppend(benchmark::State& state) {
  const Fixture& fixture = Prepared(state.range(0));
  for (auto _ : state) {
    state.PauseTiming();
    EmptyTable(fixture.path);
    state.ResumeTiming();
    auto store = veld::OpenTableStore("Data Source=" + fixture.path);
    store->BeginTrans();
    auto cursor = store->OpenTable("orders");
    for (const auto& row : fixture.rows) {
      cursor->AddNew();
      for (int i = 0; i < kColumns; ++i) cursor->SetFieldValue(i, row[static_cast<size_t>(i)]);
      cursor->Update();
    }
    store->CommitTrans();
  }
  state.SetLabel("baseline=BM_RawSqliteInsert");
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

void Sizes(benchmark::internal::Benchmark* bench) {
  bench->Arg(10'000)->Arg(100'000)->Arg(1'000'000)->Unit(benchmark::kMillisecond);
}

BENCHMARK(BM_RawSqliteInsert)->Apply(Sizes);
BENCHMARK(BM_TableStoreAppend)->Apply(Sizes);

}  // namespace

BENCHMARK_MAIN();
