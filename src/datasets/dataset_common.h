// Steps shared by the two dataset classes. Each may raise; the public
// methods that call them record the failure.
#ifndef VELD_DATASETS_DATASET_COMMON_H_
#define VELD_DATASETS_DATASET_COMMON_H_

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include <libxml/tree.h>

#include "datasets/dataset_progress.h"
#include "datasets/dataset_store.h"
#include "veld/items/kvo_general_items.h"
#include "veld/xml/xml_document.h"

namespace veld::datasets_internal {

// Raises the library's own check failure (number -1) with `message`.
[[noreturn]] void Check(const std::string& message);

// The node written out as text.
std::string NodeText(xmlNodePtr node);

// The "guid" of the root element of a data text; "" for a blank text or a
// root without one. Raises "Failed to load data xml." for malformed text.
std::string GetDataIDFromXml(const std::string& data_xml);

// The data element with that ID, appended when missing. Raises "No data ID
// specified." for an empty ID.
xmlNodePtr EnsureDataElement(DatasetStore& store, const std::string& id);

// Removes all element children of the data elements the ID selects.
void RemoveDataChildren(DatasetStore& store, const std::string& id);

// The rows of the data element `data_id` (first match) whose col named
// `name` has the value `value`, both trimmed and escaped. Raises "Key column
// name not specified." and "Specified data not found(ID).".
std::vector<xmlNodePtr> KeyColRows(DatasetStore& store, const std::string& data_id,
                                   const std::string& name, const std::string& value);

// The key-column results: `out` gets `text_of(row)` for each row and the
// count is returned; with no rows, `out` is left as it was and 0 returned.
template <class TextOf>
int32_t TextsOfRows(const std::vector<xmlNodePtr>& rows, std::vector<std::string>& out,
                    TextOf text_of) {
  if (rows.empty()) return 0;
  std::vector<std::string> texts;
  texts.reserve(rows.size());
  for (xmlNodePtr row : rows) texts.push_back(text_of(row));
  out = std::move(texts);
  return static_cast<int32_t>(out.size());
}

// A new collection parsed from a row text; raises the parse message.
std::shared_ptr<KvoGeneralItems> RowXmlToItems(const std::string& row_xml);

// A text parsed on first use.
class LazyDocument {
 public:
  explicit LazyDocument(const std::string& text) : text_(text) {}
  // The parsed document, or nullptr when the text is malformed.
  XmlDocument* Get();

 private:
  const std::string& text_;
  bool tried_ = false;
  bool ok_ = false;
  XmlDocument doc_;
};

// The held document loaded from a whole dataset text or file, with its
// content taken out of the tree (kept alive by `keep`) and a new empty
// "dataset" root in its place.
struct TakenSource {
  // The nodes the data path selected, in document order.
  std::vector<xmlNodePtr> nodes;
  // One selected node lies inside another.
  bool nested = false;
  // The source holds no namespaces, entity references, whitespace-only text
  // or elements inside elements of the same name: its data elements can be
  // taken as they are, without looking through them first.
  bool plain = false;
  XmlNode keep;
};
// Raises `load_message` when the source does not load and the XPath error
// for a bad path; `reset` is run first in both cases.
TakenSource TakeSource(DatasetStore& store, const std::string& source, bool is_file,
                       const std::string& data_xpath, const std::function<void()>& reset);

// How a data element of a loaded source was taken in place.
enum class InPlace {
  kAdded,     // added
  kFailed,    // adding failed, and the failure was recorded
  kNotTaken,  // left to AddData of the element's text
};

// The body of Parse and ParseFile of both classes. The held document is
// loaded from `source` (see TakeSource), and each node the data path selects
// is added as AddData("", its text) adds it: by `add_in_place(node, facts,
// progress)` when the node is an element whose content reads the same in
// place as from its text, otherwise, or when that declines, by
// `add_text(text)`. False when an add fails.
template <class AddInPlace, class AddText>
bool LoadDatasetWith(DatasetStore& store, KvoProgressUpdater* updater, const std::string& source,
                     bool is_file, const std::string& data_xpath,
                     const std::function<void()>& reset, AddInPlace add_in_place,
                     AddText add_text) {
  TakenSource taken = TakeSource(store, source, is_file, data_xpath, reset);
  ProgressSteps progress(updater, updater != nullptr ? CountRows(taken.nodes) : 0, "Reading rows");
  // Each data element advances the progress by one per data row, then by
  // its other rows, whichever way it is added: the reports depend on the
  // document alone.
  for (xmlNodePtr node : taken.nodes) {
    const int64_t all_rows = updater != nullptr ? CountRows({node}) : 0;
    const int64_t before = progress.current();
    InPlace outcome = InPlace::kNotTaken;
    if (!taken.nested && node->type == XML_ELEMENT_NODE) {
      // A plain source needs no look through its data elements.
      const SubtreeFacts facts = taken.plain ? SubtreeFacts{} : ScanSubtree(node, "data");
      if (!facts.foreign && !facts.blank_text) outcome = add_in_place(node, facts, progress);
    }
    if (outcome == InPlace::kFailed) return false;
    if (outcome == InPlace::kNotTaken) {
      int64_t data_rows = 0;
      if (updater != nullptr && node->type == XML_ELEMENT_NODE) {
        std::vector<xmlNodePtr> rows;
        bool nested = false;
        CollectMarkedRowsOf(node, rows, nested);
        data_rows = static_cast<int64_t>(rows.size());
      }
      if (!add_text(NodeText(node))) return false;
      for (int64_t i = 0; i < data_rows; ++i) progress.Advance(1);
    }
    progress.Advance(all_rows - (progress.current() - before));
  }
  progress.Finish();
  return true;
}

}  // namespace veld::datasets_internal

#endif  // VELD_DATASETS_DATASET_COMMON_H_
