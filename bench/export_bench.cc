// Export of a data element into a typed SQLite table, next to its baselines
// from the same run:
//   - BM_DatasetExport / BM_DatasetOExport: SaveDataToMDBTable of a held
//     data element (KvoDataset / KvoDatasetO) against BM_RawSqliteInsert,
//     one prepared INSERT in one transaction binding the same values,
//     converted to the same column types;
//   - BM_ParseFileAndExport / BM_ParseFileAndExportO: ParseFile of the
//     dataset file and the export (KvoDataset / KvoDatasetO), against
//     BM_RawParseAndInsert, a raw libxml2 parse of the same file
//     (xmlReadFile) plus the raw inserts.
//
// Rows of 8 columns: id INTEGER, code VARCHAR(20), name VARCHAR(50),
// qty INTEGER, price NUMERIC(10,2), ordered DATE, paid BOOLEAN, note TEXT.
// 10k, 100k and 1M rows, all benchmarks of one size next to each other; the
// table is emptied between iterations, untimed. Run bench/compare.py on the
// binary to see each figure next to its baseline.
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <benchmark/benchmark.h>
#include <libxml/parser.h>
#include <sqlite3.h>
#include <stdlib.h>
#include <unistd.h>

#include "veld/datasets/kvo_dataset.h"
#include "veld/datasets/kvo_dataset_o.h"

namespace {

struct Row {
  std::string id, code, name, qty, price, ordered, paid, note;
};

struct Fixture {
  std::string dir;
  std::string path;  // the database
  std::string xml_file;
  int64_t count = -1;
  std::vector<Row> rows;
  std::string xml;
  std::unique_ptr<veld::KvoDataset> dataset;
  std::unique_ptr<veld::KvoDatasetO> dataset_o;
};

void Exec(sqlite3* db, const char* sql) {
  if (sqlite3_exec(db, sql, nullptr, nullptr, nullptr) != SQLITE_OK) {
    std::fprintf(stderr, "%s: %s\n", sql, sqlite3_errmsg(db));
    std::abort();
  }
}

Fixture& TheFixture() {
  static Fixture fixture;
  return fixture;
}

Fixture& Prepared(int64_t count) {
  Fixture& fixture = TheFixture();
  if (fixture.path.empty()) {
    char pattern[] = "/tmp/veld-export-XXXXXX";
    fixture.dir = mkdtemp(pattern);
    fixture.path = fixture.dir + "/shop.db";
    fixture.xml_file = fixture.dir + "/orders.xml";
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
    fixture.dataset.reset();
    fixture.dataset_o.reset();
    std::string& xml = fixture.xml;
    xml = "<dataset><data guid=\"orders\">";
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
    std::ofstream(fixture.xml_file, std::ios::binary) << xml;
  }
  return fixture;
}

veld::KvoDataset& Held(Fixture& fixture) {
  if (!fixture.dataset) {
    fixture.dataset_o.reset();  // one held document at a time
    fixture.dataset = std::make_unique<veld::KvoDataset>();
    if (!fixture.dataset->Parse(fixture.xml)) std::abort();
  }
  return *fixture.dataset;
}

veld::KvoDatasetO& HeldO(Fixture& fixture) {
  if (!fixture.dataset_o) {
    fixture.dataset.reset();
    fixture.dataset_o = std::make_unique<veld::KvoDatasetO>();
    if (!fixture.dataset_o->Parse(fixture.xml)) std::abort();
  }
  return *fixture.dataset_o;
}

void EmptyTable(const std::string& path) {
  sqlite3* db = nullptr;
  sqlite3_open(path.c_str(), &db);
  Exec(db, "DELETE FROM orders");
  sqlite3_close(db);
}

// One prepared INSERT in one transaction, binding each row's values
// converted to the column types.
bool RawInsert(const Fixture& fixture) {
  sqlite3* db = nullptr;
  sqlite3_open_v2(fixture.path.c_str(), &db, SQLITE_OPEN_READWRITE, nullptr);
  Exec(db, "BEGIN IMMEDIATE");
  sqlite3_stmt* insert = nullptr;
  sqlite3_prepare_v2(db, "INSERT INTO orders VALUES (?1, ?2, ?3, ?4, ?5, ?6, ?7, ?8)", -1, &insert,
                     nullptr);
  auto text = [insert](int index, const std::string& value) {
    sqlite3_bind_text(insert, index, value.data(), static_cast<int>(value.size()), SQLITE_STATIC);
  };
  bool ok = true;
  for (const Row& row : fixture.rows) {
    sqlite3_bind_int64(insert, 1, std::strtoll(row.id.c_str(), nullptr, 10));
    text(2, row.code);
    text(3, row.name);
    sqlite3_bind_int64(insert, 4, std::strtoll(row.qty.c_str(), nullptr, 10));
    sqlite3_bind_double(insert, 5, std::strtod(row.price.c_str(), nullptr));
    text(6, row.ordered);
    sqlite3_bind_int64(insert, 7, row.paid == "True" ? 1 : 0);
    text(8, row.note);
    if (sqlite3_step(insert) != SQLITE_DONE) ok = false;
    sqlite3_reset(insert);
  }
  sqlite3_finalize(insert);
  Exec(db, "COMMIT");
  sqlite3_close(db);
  return ok;
}

void BM_RawSqliteInsert(benchmark::State& state) {
  Fixture& fixture = Prepared(state.range(0));
  for (auto _ : state) {
    state.PauseTiming();
    EmptyTable(fixture.path);
    state.ResumeTiming();
    if (!RawInsert(fixture)) state.SkipWithError("insert failed");
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

template <class Dataset>
void ExportHeld(benchmark::State& state, Dataset& dataset, const Fixture& fixture) {
  for (auto _ : state) {
    state.PauseTiming();
    EmptyTable(fixture.path);
    state.ResumeTiming();
    if (!dataset.SaveDataToMDBTable("orders", fixture.path, "orders")) {
      state.SkipWithError(dataset.GetLastError().c_str());
    }
  }
  state.SetLabel("baseline=BM_RawSqliteInsert");
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

void BM_DatasetExport(benchmark::State& state) {
  Fixture& fixture = Prepared(state.range(0));
  ExportHeld(state, Held(fixture), fixture);
}

void BM_DatasetOExport(benchmark::State& state) {
  Fixture& fixture = Prepared(state.range(0));
  ExportHeld(state, HeldO(fixture), fixture);
}

void BM_RawParseAndInsert(benchmark::State& state) {
  Fixture& fixture = Prepared(state.range(0));
  fixture.dataset.reset();
  fixture.dataset_o.reset();
  for (auto _ : state) {
    state.PauseTiming();
    EmptyTable(fixture.path);
    state.ResumeTiming();
    xmlDocPtr doc = xmlReadFile(fixture.xml_file.c_str(), nullptr, XML_PARSE_NONET);
    if (doc == nullptr) state.SkipWithError("parse failed");
    xmlFreeDoc(doc);
    if (!RawInsert(fixture)) state.SkipWithError("insert failed");
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

template <class Dataset>
void ParseFileAndExport(benchmark::State& state) {
  Fixture& fixture = Prepared(state.range(0));
  for (auto _ : state) {
    state.PauseTiming();
    EmptyTable(fixture.path);
    state.ResumeTiming();
    Dataset dataset;
    if (!dataset.ParseFile(fixture.xml_file) ||
        !dataset.SaveDataToMDBTable("orders", fixture.path, "orders")) {
      state.SkipWithError(dataset.GetLastError().c_str());
    }
  }
  state.SetLabel("baseline=BM_RawParseAndInsert");
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

void BM_ParseFileAndExport(benchmark::State& state) { ParseFileAndExport<veld::KvoDataset>(state); }

void BM_ParseFileAndExportO(benchmark::State& state) {
  ParseFileAndExport<veld::KvoDatasetO>(state);
}

}  // namespace

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  // Each size's benchmarks run next to each other, so that the rows are made
  // once per size and each figure has its baseline from moments before.
  for (int64_t rows : {10'000, 100'000, 1'000'000}) {
    for (auto [name, function] : {std::pair{"BM_RawSqliteInsert", &BM_RawSqliteInsert},
                                  std::pair{"BM_DatasetExport", &BM_DatasetExport},
                                  std::pair{"BM_DatasetOExport", &BM_DatasetOExport},
                                  std::pair{"BM_RawParseAndInsert", &BM_RawParseAndInsert},
                                  std::pair{"BM_ParseFileAndExport", &BM_ParseFileAndExport},
                                  std::pair{"BM_ParseFileAndExportO", &BM_ParseFileAndExportO}}) {
      benchmark::RegisterBenchmark(name, function)->Arg(rows)->Unit(benchmark::kMillisecond);
    }
  }
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  const Fixture& fixture = TheFixture();
  if (!fixture.dir.empty()) {
    std::remove(fixture.path.c_str());
    std::remove(fixture.xml_file.c_str());
    rmdir(fixture.dir.c_str());
  }
  return 0;
}
