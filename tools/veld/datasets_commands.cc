// veld datasets: dataset documents (dataset > data[@guid] > row > col[@name,
// @value]) read by position, searched by key column, exported to tables.
#include <memory>
#include <string>
#include <vector>

#include "veld/datasets/kvo_dataset.h"
#include "veld/xmlhelper/kvo_progress_updater.h"

#include "commands.h"
#include "progress_bar.h"

namespace veld::cli {

namespace {

[[noreturn]] void Fail(KvoDataset& dataset) { throw Failure(dataset.GetLastError()); }

// Draws the dataset's progress events on standard error, when that is a
// terminal; otherwise attaches nothing.
class DatasetProgress {
 public:
  explicit DatasetProgress(KvoDataset& dataset) {
    if (!bar_.Enabled()) return;
    updater_ = std::make_shared<KvoProgressUpdater>();
    connection_ =
        updater_->Connect([this](int32_t total, int32_t current, const std::string& status) {
          bar_.Update(total, current, status);
        });
    dataset.SetProgressUpdater(updater_);
  }
  // Ends the current bar, so that the next phase starts a line of its own.
  void EndPhase() { bar_.Finish(); }

 private:
  ProgressBar bar_;
  std::shared_ptr<KvoProgressUpdater> updater_;
  Connection connection_;
};

void Load(KvoDataset& dataset, const std::string& file) {
  DatasetProgress progress(dataset);
  const bool loaded = dataset.ParseFile(file);
  progress.EndPhase();
  dataset.SetProgressUpdater(nullptr);
  if (!loaded) Fail(dataset);
}

int32_t RowCount(KvoDataset& dataset, const std::string& data_id) {
  if (!dataset.ExistData(data_id)) throw Failure("no data element '" + data_id + "'");
  const int32_t count = dataset.GetDataRowCount(data_id);
  if (count < 0) Fail(dataset);
  return count;
}

int Summary(const Args& args) {
  KvoDataset dataset;
  Load(dataset, args.At(0));
  std::string out;
  const int32_t count = dataset.GetDataCount();
  for (int32_t i = 1; i <= count; ++i) {
    std::string id;
    if (!dataset.GetDataID(i, id)) Fail(dataset);
    const int32_t rows = dataset.GetDataRowCountByIndex(i);
    if (rows < 0) Fail(dataset);
    out += id + "\t" + std::to_string(rows) + "\n";
  }
  Out(out);
  return kExitOk;
}

int Rows(const Args& args) {
  KvoDataset dataset;
  Load(dataset, args.At(0));
  const std::string& data_id = args.At(1);
  const int32_t count = RowCount(dataset, data_id);
  int32_t first = 1;
  int32_t shown = count;
  try {
    if (args.Has("from")) first = std::stoi(args.Get("from"));
    if (args.Has("count")) shown = std::stoi(args.Get("count"));
  } catch (const std::logic_error&) {
    throw UsageError("--from and --count take whole numbers");
  }
  if (first < 1 || shown < 0) throw UsageError("--from starts at 1; --count is not negative");
  std::string out;
  for (int32_t i = first; i <= count && i < first + shown; ++i) {
    std::string row;
    if (!dataset.GetDataRow(data_id, i, row)) Fail(dataset);
    out += row + "\n";
  }
  Out(out);
  return kExitOk;
}

int Find(const Args& args) {
  KvoDataset dataset;
  Load(dataset, args.At(0));
  RowCount(dataset, args.At(1));
  std::vector<std::string> rows;
  if (dataset.GetDataRowArrayByKeyCol(args.At(1), args.At(2), args.At(3), rows) < 0) {
    Fail(dataset);
  }
  std::string out;
  for (const std::string& row : rows) out += row + "\n";
  Out(out);
  return kExitOk;
}

int Export(const Args& args) {
  // The file is streamed to the table, never held whole, so that files
  // larger than memory export too.
  KvoDataset dataset;
  const std::string& data_id = args.At(1);
  bool found = true;
  DatasetProgress progress(dataset);
  const bool exported =
      dataset.ExportFileToMDBTable(args.At(0), data_id, args.At(2), args.At(3), args.Get("user"),
                                   args.Get("password"), args.Has("clear"), "//data", &found);
  progress.EndPhase();
  if (!found) throw Failure("no data element '" + data_id + "'");
  if (!exported) Fail(dataset);
  return kExitOk;
}

}  // namespace

Group DatasetsCommands() {
  return {"datasets",
          "summarise, show and search dataset documents; export rows to a table",
          "Dataset documents: a dataset root holding data elements (guid), each holding\n"
          "row elements of col elements (name, value).",
          {
              {"summary",
               "print each data element's id and number of rows",
               "FILE",
               1,
               1,
               {},
               "example: veld datasets summary orders.xml\n",
               Summary},
              {"rows",
               "print rows of a data element, one per line",
               "FILE DATAID",
               2,
               2,
               {{"from", "N", "first row, from 1 (default 1)"},
                {"count", "N", "number of rows (default all)"}},
               "example: veld datasets rows --from 1 --count 5 orders.xml orders\n",
               Rows},
              {"find",
               "print the rows whose col NAME has the value VALUE",
               "FILE DATAID NAME VALUE",
               4,
               4,
               {},
               "example: veld datasets find orders.xml orders customer C-0042\n",
               Find},
              {"export",
               "write the rows of a data element into an existing database table",
               "FILE DATAID DATABASE TABLE",
               4,
               4,
               {{"user", "NAME", "database user"},
                {"password", "TEXT", "database password"},
                {"clear", "", "delete the table's records first"}},
               "DATABASE is an SQLite file, or odbc:DSN. Fields take the value of the row's\n"
               "col of the same name (ignoring case); all rows commit together or not at all.\n\n"
               "example: veld datasets export --clear orders.xml orders shop.db orders\n",
               Export},
          }};
}

}  // namespace veld::cli
