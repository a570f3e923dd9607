// Random dataset files exported to fresh SQLite files twice: by ParseFile and
// SaveDataToMDBTable on the held document, and by ExportFileToMDBTable,
// which streams the file. Results, last errors, progress reports and the
// tables must be the same.
#include <cstdint>
#include <random>
#include <string>
#include <tuple>
#include <vector>

#include <gtest/gtest.h>

#include "datasets/dataset_file_export.h"
#include "veld/datasets/kvo_dataset.h"
#include "veld/datasets/kvo_dataset_o.h"
#include "veld/xmlhelper/kvo_progress_updater.h"

#include "support/sqlite_file.h"
#include "support/testing.h"

namespace veld {
namespace {

namespace di = datasets_internal;

using Report = std::tuple<int32_t, int32_t, std::string>;

// Builds random dataset documents with the shapes that matter to the export.
class DatasetFileMaker {
 public:
  explicit DatasetFileMaker(uint32_t seed) : rng_(seed) {}

  // A document; `needs_document` tells whether it has a shape that the
  // stream leaves to the held document.
  std::string Make(bool& needs_document) {
    needs_document_ = false;
    std::string out;
    if (Chance(30)) out += "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";
    doctype_ = Chance(4);
    if (doctype_) {
      needs_document_ = true;
      out += "<!DOCTYPE dataset [<!ENTITY co \"Acme &amp; Co\">]>";
    }
    // A prefix declared on the root and used inside data elements is
    // missing from their texts, which ParseFile loads on their own.
    root_prefix_ = Chance(15);
    if (root_prefix_) {
      out += "<dataset xmlns:y=\"urn:y\">";
    } else {
      out += Chance(15) ? "<dataset xmlns:x=\"urn:x\">" : "<dataset>";
    }
    const int data_count = Pick(0, 4);
    for (int d = 0; d < data_count; ++d) {
      Space(out, 1);
      if (Chance(10)) out += "<!-- data follows -->";
      const bool wrapped = Chance(10);
      if (wrapped) out += "<group>";
      Data(out, 1);
      if (wrapped) out += "</group>";
    }
    Space(out, 0);
    out += "</dataset>";
    if (Chance(12)) {
      // A malformed tail: the end cut off, or an element left open.
      if (Chance(50)) {
        out.resize(out.size() - static_cast<size_t>(Pick(1, 12)));
      } else {
        out.insert(out.size() - 10, "<open>");
      }
    }
    needs_document = needs_document_;
    return out;
  }

  std::string RandomId() {
    static const char* const kIds[] = {"D1", "d1", "D2", "X", " D1", ""};
    return kIds[Pick(0, 5)];
  }

  bool Chance(int percent) { return Pick(0, 99) < percent; }
  int Pick(int low, int high) { return std::uniform_int_distribution<int>(low, high)(rng_); }

 private:
  void Space(std::string& out, int depth) {
    if (pretty_) out += "\n" + std::string(static_cast<size_t>(depth) * 2, ' ');
  }

  void Data(std::string& out, int depth) {
    pretty_ = Chance(50);
    static const char* const kIds[] = {"D1", "d1", "D2", "D2", "", "d2"};
    std::string guid = kIds[Pick(0, 5)];
    if (Chance(3)) {
      guid = Chance(50) ? "D1 " : "a'b";
      needs_document_ = true;
    }
    out += "<data";
    if (!guid.empty() || Chance(50)) out += " guid=\"" + Escape(guid) + "\"";
    if (Chance(10)) out += " other=\"o\"";
    // Likewise a prefix declared on the data element, for its rows' texts.
    data_prefix_ = Chance(15);
    if (data_prefix_) out += " xmlns:z=\"urn:z\"";
    if (Chance(3)) out += std::string(" ") + OuterPrefix() + ":k=\"1\"";
    out += ">";
    const int rows = Pick(0, 6);
    for (int r = 0; r < rows; ++r) {
      Space(out, depth + 1);
      Row(out, depth + 1, 0);
    }
    if (depth < 3 && Chance(3)) {
      needs_document_ = true;
      Data(out, depth + 1);
    }
    if (Chance(10)) out += "<meta name=\"id\" value=\"99\"/>";
    Space(out, depth);
    out += "</data>";
  }

  void Row(std::string& out, int depth, int nesting) {
    const bool prefixed = Chance(5);
    const std::string tag = prefixed ? "x:row" : "row";
    out += "<" + tag;
    if (prefixed) out += " xmlns:x=\"urn:x\"";
    if (Chance(30)) out += " guid=\"R" + std::to_string(Pick(1, 9)) + "\"";
    if (Chance(15)) {
      static const char* const kIndex[] = {"0", "1", " 0", "00"};
      out += " index=\"" + std::string(kIndex[Pick(0, 3)]) + "\"";
    }
    if (Chance(5)) out += " xml:space=\"preserve\"";
    if (Chance(4)) out += std::string(" ") + OuterPrefix() + ":k=\"1\"";
    out += ">";
    if (Chance(8)) out += "<note name=\"id\" value=\"7\"/>";
    if (Chance(4)) out += std::string("<") + OuterPrefix() + ":note/>";
    const int cols = Pick(0, 5);
    for (int c = 0; c < cols; ++c) {
      if (pretty_) out += "\n" + std::string(static_cast<size_t>(depth + 1) * 2, ' ');
      Col(out);
    }
    if (nesting == 0 && Chance(3)) Row(out, depth + 1, 1);
    if (Chance(5)) out += "<!-- end -->";
    if (pretty_) out += "\n" + std::string(static_cast<size_t>(depth) * 2, ' ');
    out += "</" + tag + ">";
  }

  void Col(std::string& out) {
    static const char* const kNames[] = {"id", "ID", "name", "amount", "Amount", "extra", ""};
    const std::string name = kNames[Pick(0, 6)];
    std::string value = Value();
    const int form = Pick(0, 9);
    if (form == 0) {
      // The value as the col's text.
      out += "<col name=\"" + name + "\">" + value + "</col>";
    } else if (form == 1) {
      out += "<col name=\"" + name + "\"><![CDATA[" + std::to_string(Pick(0, 99)) + "]]></col>";
    } else if (form == 2) {
      out += "<x:col xmlns:x=\"urn:x\" name=\"" + name + "\" value=\"" + value + "\"/>";
    } else if (form == 3) {
      out += "<col x:flag=\"1\" xmlns:x=\"urn:x\" name=\"" + name + "\" value=\"" + value + "\"/>";
    } else {
      out += "<col name=\"" + name + "\" value=\"" + value + "\"/>";
    }
  }

  // A prefix declared on the root or the data element, or "x" with a
  // declaration of its own.
  const char* OuterPrefix() {
    if (root_prefix_ && (!data_prefix_ || Chance(50))) return "y";
    if (data_prefix_) return "z";
    return "xml";
  }

  std::string Value() {
    switch (Pick(0, 9)) {
      case 0:
        return "";
      case 1:
        return "abc";  // does not convert to a number
      case 2:
        return "Tom &amp; Jerry";
      case 3:
        return "&#233;t&#233;";
      case 4:
        return doctype_ ? "&co;" : "1.5";
      case 5:
        return "  7 ";
      default:
        return std::to_string(Pick(-50, 5000));
    }
  }

  static std::string Escape(const std::string& text) {
    std::string out;
    for (char c : text) out += c == '\'' ? std::string("&apos;") : std::string(1, c);
    return out;
  }

  std::mt19937 rng_;
  bool pretty_ = false;
  bool doctype_ = false;
  bool needs_document_ = false;
  bool root_prefix_ = false;
  bool data_prefix_ = false;
};

struct Outcome {
  bool result = false;
  std::string error;
  std::vector<Report> reports;
  testing::SqliteRowList table;
};

// A database with the table the exports write, holding one row already.
std::string FreshDatabase(const testing::TempDir& dir, const std::string& name) {
  const std::string path = dir.File(name);
  std::remove(path.c_str());
  testing::SqliteExec(path,
                      "CREATE TABLE t (id INTEGER, name TEXT, amount NUMERIC(10,2), extra TEXT);"
                      "INSERT INTO t VALUES (-1, 'before', 0, NULL);");
  return path;
}

testing::SqliteRowList TableOf(const std::string& path) {
  return testing::SqliteRows(path, "SELECT id, name, amount, extra FROM t ORDER BY rowid");
}

struct Case {
  std::string file;
  std::string data_id;
  std::string data_xpath = "//data";
  bool clear = false;
  bool progress = false;
  // Asks whether the data element is there (the pbDataFound argument).
  bool require = false;
};

// Runs `run(dataset, database)` on a fresh dataset of the class and a fresh
// database, with the progress reports collected when asked.
template <class Dataset, class Run>
Outcome Export(const testing::TempDir& dir, const std::string& db_name, const Case& c, Run run) {
  Outcome outcome;
  const std::string db = FreshDatabase(dir, db_name);
  Dataset dataset;
  auto updater = std::make_shared<KvoProgressUpdater>();
  Connection connection =
      updater->Connect([&](int32_t total, int32_t current, const std::string& status) {
        outcome.reports.emplace_back(total, current, status);
      });
  if (c.progress) dataset.SetProgressUpdater(updater);
  outcome.result = run(dataset, db);
  outcome.error = dataset.GetLastError();
  outcome.table = TableOf(db);
  return outcome;
}

bool ParseFileOf(KvoDatasetO& dataset, const Case& c) {
  return dataset.ParseFile(c.file, "", c.data_xpath);
}
bool ParseFileOf(KvoDataset& dataset, const Case& c) {
  return dataset.ParseFile(c.file, c.data_xpath);
}

template <class Dataset>
void ExpectSameOutcome(const testing::TempDir& dir, const Case& c) {
  // Without the data element, a required export stops after ParseFile.
  bool missing = false;
  Outcome held = Export<Dataset>(dir, "held.db", c, [&](Dataset& dataset, const std::string& db) {
    if (!ParseFileOf(dataset, c)) return false;
    missing = c.require && !dataset.ExistData(c.data_id);
    return !missing && dataset.SaveDataToMDBTable(c.data_id, db, "t", "", "", c.clear);
  });
  if (missing) held.error = "Specified data id cannot be found.";
  bool found = false;
  const Outcome streamed =
      Export<Dataset>(dir, "streamed.db", c, [&](Dataset& dataset, const std::string& db) {
        return dataset.ExportFileToMDBTable(c.file, c.data_id, db, "t", "", "", c.clear,
                                            c.data_xpath, c.require ? &found : nullptr);
      });
  EXPECT_EQ(streamed.result, held.result);
  EXPECT_EQ(streamed.error, held.error);
  if (c.require) {
    EXPECT_EQ(found, !missing);
  }
  EXPECT_EQ(streamed.table, held.table);
  EXPECT_EQ(streamed.reports, held.reports);
}

template <class Dataset>
class DatasetFileExportDifferentialTest : public ::testing::Test {};

using DatasetClasses = ::testing::Types<KvoDatasetO, KvoDataset>;
TYPED_TEST_SUITE(DatasetFileExportDifferentialTest, DatasetClasses);

TYPED_TEST(DatasetFileExportDifferentialTest, RandomFilesExportAlikeThroughBothPaths) {
  testing::TempDir dir;
  DatasetFileMaker maker(20261125);
  int streamed = 0;
  int exported_rows = 0;
  constexpr int kCases = 300;
  for (int i = 0; i < kCases; ++i) {
    bool needs_document = false;
    const std::string text = maker.Make(needs_document);
    Case c;
    c.file = dir.Write("data.xml", text);
    c.data_id = maker.RandomId();
    c.clear = maker.Chance(50);
    c.progress = maker.Chance(50);
    c.require = maker.Chance(20);
    if (maker.Chance(10)) c.data_xpath = maker.Chance(50) ? "/*/data" : "";
    SCOPED_TRACE("case " + std::to_string(i) + ", id '" + c.data_id + "', clear " +
                 std::to_string(c.clear) + ", progress " + std::to_string(c.progress) +
                 ", require " + std::to_string(c.require) + ", path '" + c.data_xpath + "':\n" +
                 text);
    ExpectSameOutcome<TypeParam>(dir, c);

    // The stream takes every file without the rare shapes.
    di::FileExportRequest request;
    request.file = c.file;
    request.data_xpath = c.data_xpath;
    request.table = {c.data_id, FreshDatabase(dir, "direct.db"), "t", "", "", c.clear};
    di::FileExportOutcome outcome = di::FileExportOutcome::kExported;
    try {
      outcome = di::ExportDatasetFile(request);
    } catch (...) {
      // A recorded failure: the stream took the file.
    }
    if (!needs_document) {
      EXPECT_NE(outcome, di::FileExportOutcome::kNeedsDocument);
    }
    if (outcome != di::FileExportOutcome::kNeedsDocument) ++streamed;
    exported_rows += static_cast<int>(TableOf(request.table.sMDBFile).size());
    if (::testing::Test::HasFailure()) break;
  }
  // The cases are worth something: most were streamed and rows were written.
  EXPECT_GT(streamed, kCases * 3 / 4);
  EXPECT_GT(exported_rows, kCases / 2);
}

}  // namespace
}  // namespace veld
