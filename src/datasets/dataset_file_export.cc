#include "datasets/dataset_file_export.h"

#include <cstdint>
#include <exception>
#include <memory>
#include <new>
#include <utility>
#include <vector>

#include "datasets/dataset_common.h"
#include "datasets/dataset_progress.h"
#include "datasets/dataset_store.h"
#include "items/items_element.h"
#include "runtime/text.h"
#include "veld/datasets/kvo_dataset_o.h"
#include "xml/xml_parser.h"
#include "xml/xml_tree.h"

namespace veld::datasets_internal {

namespace xi = xml_internal;

namespace {

// Thrown by the scan to stop at a shape that needs the whole document.
struct NeedsDocument {};

// The data id a scratch dataset files rows under when a row must go through
// its text.
constexpr char kScratchId[] = "R";

bool IsNamedNoNs(const xmlNode* node, const char* name) {
  return node->ns == nullptr && xmlStrEqual(node->name, xi::XmlText(name));
}

// The reading-rows units of one data element: its data rows, and all "row"
// elements below it (the totals count those).
struct DataUnits {
  int64_t data_rows = 0;
  int64_t all_rows = 0;
};

// Which data element a pass exports.
enum class Pass {
  kCount,      // none: counts the units and finds the target
  kEachMatch,  // every one with the id, starting over at each
  kOrdinal,    // the one at a known position among the selected
};

// One pass over the file, told of its elements by the parser. Frees each
// part of the tree as soon as it is done with, so that memory stays that of
// one row.
class FileScan final : public xi::ParseListener {
 public:
  FileScan(const FileExportRequest& request, Pass pass, int64_t target_ordinal = 0,
           int64_t target_rows = 0)
      : request_(request),
        pass_(pass),
        target_ordinal_(target_ordinal),
        target_rows_(target_rows),
        root_only_(request.data_xpath == "/*/data" || request.data_xpath.empty()) {
    const std::string& id = request.table.sDataID;
    // The export finds its data element as BuildDataXPath does: by the id
    // compared without case; an id with blanks at its ends matches no held
    // id that way, and is then looked up trimmed, exactly.
    exact_only_ = Trim(id) != id;
    wanted_lower_ = LCase(exact_only_ ? Trim(id) : id);
    wanted_exact_ = Trim(id);
  }

  void ElementStarted(xmlNodePtr element) override {
    ++depth_;
    if (depth_ == 1 && element->doc->intSubset != nullptr) throw NeedsDocument();
    const bool is_data = IsNamedNoNs(element, "data");
    if (data_depth_ != 0) {
      if (is_data) throw NeedsDocument();
      if (xmlStrEqual(element->name, xi::XmlText("row"))) ++units_.all_rows;
      if (row_depth_ == 0 && depth_ == data_depth_ + 1 && IsNamedNoNs(element, "row")) {
        row_depth_ = depth_;
        row_crossing_ = false;
      }
      NotePrefixes(element);
      return;
    }
    if (is_data && (!root_only_ || depth_ == 2)) StartData(element);
  }

  void ElementEnded(xmlNodePtr element) override {
    const int depth = depth_--;
    if (row_depth_ != 0) {
      // Below a row, everything stays until the row is complete.
      if (depth > row_depth_) return;
      row_depth_ = 0;
      if (IsDataRow(element)) {
        ++units_.data_rows;
        if (row_crossing_ && request_.held == HeldRow::kCols) {
          // ParseFile fails on this data element: nothing more to write.
          data_row_failed_ = true;
          StopExport();
        } else if (exporting_) {
          WriteRow(element);
        }
      }
    } else if (depth == data_depth_) {
      data_depth_ = 0;
      exporting_ = false;
      if (data_crossing_ || data_row_failed_) {
        NoteParseFailure(
            Captured([&] { Check(data_crossing_ ? kFailedLoadDataXml : kFailedLoadDataRowXml); }));
      }
      if (pass_ == Pass::kCount) units_list_.push_back(units_);
    }
    if (depth >= 2) FreeThrough(element);
  }

  // After the parse: the outcome, rolled back or committed.
  FileExportOutcome Finish(const xi::StreamResult& parsed) {
    if (!parsed.ok) {
      table_.reset();
      Check(kFailedLoadDatasetFile);
    }
    if (parse_failure_) {
      table_.reset();
      std::rethrow_exception(parse_failure_);
    }
    if (request_.require_data && !data_found_) {
      table_.reset();
      return FileExportOutcome::kDataMissing;
    }
    if (!attempted_) BeginAttempt();
    if (export_failure_) std::rethrow_exception(export_failure_);
    table_->Commit();
    return FileExportOutcome::kExported;
  }

  // Abandons whatever was written.
  void RollBack() { table_.reset(); }

  bool data_found() const { return data_found_; }
  int64_t target_ordinal() const { return target_found_; }
  // Where ParseFile would fail: the ordinal of that data element (0: it
  // would not) and its failure.
  int64_t failing_ordinal() const { return failing_ordinal_; }
  const std::exception_ptr& parse_failure() const { return parse_failure_; }
  const std::vector<DataUnits>& units() const { return units_list_; }

 private:
  void StartData(xmlNodePtr data) {
    const std::string id = DatasetStore::GuidOf(data);
    // ParseFile makes such ids into several elements or fails on them.
    if (Trim(id) != id || id.find('\'') != std::string::npos) throw NeedsDocument();
    data_depth_ = depth_;
    units_ = {};
    ++ordinal_;
    data_crossing_ = false;
    data_row_failed_ = false;
    NotePrefixes(data);
    // An element without an id gets a new one, which no export can name.
    if (id.empty() || LCase(id) != wanted_lower_) return;
    if (!class_seen_) {
      // The first of the ids that differ only by case is the one kept.
      class_seen_ = true;
      target_exists_ = !exact_only_ || id == wanted_exact_;
      data_found_ = !exact_only_;
    }
    if (!target_exists_) return;
    target_found_ = ordinal_;
    if (parse_failure_ || data_crossing_) return;
    if (pass_ == Pass::kEachMatch || (pass_ == Pass::kOrdinal && ordinal_ == target_ordinal_)) {
      BeginAttempt();
    }
  }

  // ParseFile loads the text of each data element, and of each of its data
  // rows, on its own. A namespace declared above the data element, or (for
  // a row) above the row, is missing from that text, so a prefix bound by
  // it makes the text fail to load. Notes such uses by `element`.
  void NotePrefixes(const xmlNode* element) {
    NotePrefix(element, element->ns);
    for (const xmlAttr* attr = element->properties; attr != nullptr; attr = attr->next) {
      NotePrefix(element, attr->ns);
    }
  }

  void NotePrefix(const xmlNode* element, const xmlNs* ns) {
    // The xml prefix is bound in every text.
    if (ns == nullptr || (ns->prefix != nullptr && xmlStrEqual(ns->prefix, xi::XmlText("xml")))) {
      return;
    }
    int declared_at = 0;
    int depth = depth_;
    for (const xmlNode* node = element; node != nullptr && declared_at == 0;
         node = node->parent, --depth) {
      for (const xmlNs* def = node->nsDef; def != nullptr; def = def->next) {
        if (def == ns) declared_at = depth;
      }
    }
    if (declared_at < data_depth_) {
      data_crossing_ = true;
      StopExport();
    } else if (row_depth_ != 0 && declared_at < row_depth_) {
      row_crossing_ = true;
    }
  }

  // What `raise` throws.
  template <class Raise>
  static std::exception_ptr Captured(Raise raise) {
    try {
      raise();
    } catch (...) {
      return std::current_exception();
    }
    return nullptr;
  }

  // Records the first data element on which ParseFile fails, and why.
  void NoteParseFailure(std::exception_ptr failure) {
    if (!parse_failure_) {
      failing_ordinal_ = ordinal_;
      parse_failure_ = std::move(failure);
    }
    StopExport();
  }

  void StopExport() {
    table_.reset();
    exporting_ = false;
  }

  // Starts the export over: what an earlier element of the same id wrote is
  // rolled back, as its rows were replaced.
  void BeginAttempt() {
    table_.reset();
    export_failure_ = nullptr;
    attempted_ = true;
    written_ = 0;
    try {
      table_ = std::make_unique<TableExport>(request_.table);
      exporting_ = pass_ != Pass::kCount;
    } catch (...) {
      Fail(std::current_exception());
    }
  }

  void Fail(std::exception_ptr failure) {
    table_.reset();
    export_failure_ = std::move(failure);
    exporting_ = false;
  }

  static bool IsDataRow(const xmlNode* row) {
    const xmlAttr* index = FindPlainAttribute(row, "index");
    return index == nullptr || !AttributeEquals(index, "0");
  }

  void WriteRow(xmlNodePtr row) {
    try {
      xi::DropBlankTextBelow(row);
      if (!ReadHeldRow(row)) return;
      table_->Write(cols_);
      ++written_;
      if (request_.updater != nullptr) {
        const int64_t step = target_rows_ / 200 > 0 ? target_rows_ / 200 : 1;
        if (written_ % step == 0 || written_ == target_rows_) {
          request_.updater->ProgressChangeNotify(static_cast<int32_t>(target_rows_),
                                                 static_cast<int32_t>(written_),
                                                 "Exporting rows to " + request_.table.sTableName);
        }
      }
    } catch (...) {
      Fail(std::current_exception());
    }
  }

  // Fills cols_ with what the held row would read. False when ParseFile
  // would have failed on the row (parse_failure_ then says why).
  bool ReadHeldRow(xmlNodePtr row) {
    if (request_.held == HeldRow::kWhole) {
      if (!items_internal::ReadPlainNamesAndValues(row, cols_.names, cols_.values)) {
        // The held row carries the declarations of the namespaces it uses
        // from its data element; so does a copy of it.
        xmlNodePtr copy = xmlDocCopyNode(row, row->doc, 1);
        if (copy == nullptr) throw std::bad_alloc();
        std::unique_ptr<xmlNode, decltype(&xmlFreeNode)> owned(copy, xmlFreeNode);
        ParseRowCols(NodeText(copy), cols_);
      }
      return true;
    }
    const SubtreeFacts facts = ScanSubtree(row, "row");
    if (!facts.foreign && !facts.blank_text && !facts.nested &&
        items_internal::ReadPlainColsOf(row, cols_.names, cols_.values)) {
      return true;
    }
    // Anything else goes through a dataset of its own, as ParseFile takes
    // the row: from its text.
    if (!scratch_) scratch_ = std::make_unique<KvoDatasetO>();
    scratch_->Reset();
    if (!scratch_->AddDataRow(kScratchId, "", NodeText(row), "")) {
      NoteParseFailure(Captured([&] { scratch_->RaiseLastError(); }));
      return false;
    }
    std::string held;
    if (!scratch_->GetDataRowByIndex(kScratchId, 1, held)) scratch_->RaiseLastError();
    ParseRowCols(held, cols_);
    return true;
  }

  // Frees `element` and its preceding siblings: everything its parent holds
  // so far, all of it read.
  static void FreeThrough(xmlNodePtr element) {
    xmlNodePtr parent = element->parent;
    for (xmlNodePtr node = parent->children; node != nullptr;) {
      xmlNodePtr next = node->next;
      const bool last = node == element;
      xmlUnlinkNode(node);
      xmlFreeNode(node);
      if (last) break;
      node = next;
    }
  }

  const FileExportRequest& request_;
  const Pass pass_;
  const int64_t target_ordinal_;
  const int64_t target_rows_;
  const bool root_only_;
  bool exact_only_ = false;
  std::string wanted_lower_;
  std::string wanted_exact_;

  int depth_ = 0;
  int data_depth_ = 0;
  int row_depth_ = 0;
  int64_t ordinal_ = 0;
  DataUnits units_;
  // Within the current data element: a prefix bound outside it; within the
  // current row: a prefix bound outside the row; a data row whose text
  // would not load.
  bool data_crossing_ = false;
  bool row_crossing_ = false;
  bool data_row_failed_ = false;
  std::vector<DataUnits> units_list_;

  bool class_seen_ = false;
  bool target_exists_ = false;
  bool data_found_ = false;
  int64_t target_found_ = 0;

  bool exporting_ = false;
  bool attempted_ = false;
  int64_t written_ = 0;
  std::unique_ptr<TableExport> table_;
  std::exception_ptr export_failure_;
  std::exception_ptr parse_failure_;
  int64_t failing_ordinal_ = 0;
  RowCols cols_;
  std::unique_ptr<KvoDatasetO> scratch_;
};

bool StreamsDataPath(const std::string& data_xpath) {
  return data_xpath == "//data" || data_xpath == "/*/data" || data_xpath.empty();
}

// Runs one pass. kNeedsDocument (nothing written) when the file needs the
// whole document.
template <class Done>
FileExportOutcome RunPass(FileScan& scan, const std::string& file, Done done) {
  xi::StreamResult parsed;
  try {
    parsed = xi::StreamFileDocument(file, scan);
  } catch (const NeedsDocument&) {
    scan.RollBack();
    return FileExportOutcome::kNeedsDocument;
  }
  return done(parsed);
}

}  // namespace

void ParseRowCols(const std::string& row_xml, RowCols& cols) {
  KvoGeneralItems items;
  std::string message;
  if (!items.Parse(row_xml, false, "", &message)) RaiseError(errnum::kCheckFailed, message);
  cols.Assign(items);
}

FileExportOutcome ExportDatasetFile(const FileExportRequest& request) {
  if (!StreamsDataPath(request.data_xpath)) return FileExportOutcome::kNeedsDocument;
  if (request.updater == nullptr) {
    FileScan scan(request, Pass::kEachMatch);
    return RunPass(scan, request.file,
                   [&](const xi::StreamResult& parsed) { return scan.Finish(parsed); });
  }

  // With a notifier, ParseFile's reports come first and need the totals, and
  // the export's need its row count: a first pass counts.
  FileScan count(request, Pass::kCount);
  int64_t target = 0;
  const FileExportOutcome counted =
      RunPass(count, request.file, [&](const xi::StreamResult& parsed) {
        if (!parsed.ok) Check(kFailedLoadDatasetFile);
        target = count.target_ordinal();
        return FileExportOutcome::kExported;
      });
  if (counted == FileExportOutcome::kNeedsDocument) return counted;

  // ParseFile's reports: the data elements it adds, up to one it fails on.
  int64_t total = 0;
  for (const DataUnits& units : count.units()) total += units.all_rows;
  ProgressSteps reading(request.updater, total, "Reading rows");
  const size_t added = count.failing_ordinal() != 0
                           ? static_cast<size_t>(count.failing_ordinal() - 1)
                           : count.units().size();
  for (size_t d = 0; d < added; ++d) {
    const DataUnits& units = count.units()[d];
    for (int64_t i = 0; i < units.data_rows; ++i) reading.Advance(1);
    reading.Advance(units.all_rows - units.data_rows);
  }
  if (count.parse_failure()) std::rethrow_exception(count.parse_failure());
  reading.Finish();
  if (request.require_data && !count.data_found()) return FileExportOutcome::kDataMissing;

  if (target == 0) {
    // Nothing to read: the export of no rows.
    TableExport table(request.table);
    table.Commit();
    return FileExportOutcome::kExported;
  }
  const int64_t rows = count.units()[static_cast<size_t>(target - 1)].data_rows;
  FileScan scan(request, Pass::kOrdinal, target, rows);
  return RunPass(scan, request.file,
                 [&](const xi::StreamResult& parsed) { return scan.Finish(parsed); });
}

}  // namespace veld::datasets_internal
