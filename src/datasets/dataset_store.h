// The held dataset document of a dataset object, with the indexes that make
// lookups by data ID, row ID and row position cheap, and the tree walks that
// replace whole-document XPath scans and text round trips.
//
// The owning object is the only writer of its document: every change to the
// held tree goes through this class (or is followed by Forget), so that the
// indexes stay valid. Where caller text is part of an XPath expression in a
// way that could change its meaning (an apostrophe, a character the XPath
// engine refuses), the expression itself is evaluated instead of an index.
#ifndef VELD_DATASETS_DATASET_STORE_H_
#define VELD_DATASETS_DATASET_STORE_H_

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include <libxml/tree.h>

#include "datasets/row_order.h"
#include "veld/xml/xml_document.h"

namespace veld::datasets_internal {

// Messages of the dataset classes.
inline constexpr char kNoDataId[] = "No data ID specified.";
inline constexpr char kNoDataOrRowId[] = "No Data ID/Row ID specified.";
inline constexpr char kFailedLoadDataXml[] = "Failed to load data xml.";
inline constexpr char kFailedLoadDataRowXml[] = "Failed to load data row xml.";
inline constexpr char kFailedLoadDatasetFile[] = "Failed to load dataset file.";
inline constexpr char kFailedLoadDatasetXml[] = "Failed to load dataset xml.";
inline constexpr char kFailedRemoveOldData[] = "Failed to remove old data.";
inline constexpr char kDataIdNotFound[] = "Specified data id cannot be found.";
inline constexpr char kFailedRemoveData[] = "Failed to remove specified data - ";
inline constexpr char kDataRowIdNotFound[] = "Specified data/row id cannot be found.";
inline constexpr char kInvalidRowToAdd[] = "Invalid data ID or row content to add.";
inline constexpr char kInvalidRowIdToUpdate[] = "Invalid data/row ID to update.";
inline constexpr char kDataRowNotFound[] = "Specified data/row cannot be found.";
inline constexpr char kFailedRemoveRow[] = "Failed to remove specified data row - ";
inline constexpr char kKeyColumnNotSpecified[] = "Key column name not specified.";
inline constexpr char kDataElementNotFound[] = "Specified Data element can't be found - ";
inline constexpr char kInvalidRowContent[] = "Invalid data row content.";
inline constexpr char kInvalidRowToInsert[] = "Invalid data ID or row index content to insert.";
inline constexpr char kInvalidRowIndexToUpdate[] = "Invalid data/row index to update.";
inline constexpr char kReplaceDataError[] = "Replace data error.";
inline constexpr char kInvalidIndexValue[] = "Invalid index value.";
inline constexpr char kIndexOutOfBounds[] = "Specified index value out of bounds.";

// "Invalid data index (" + n + ")."
std::string InvalidDataIndex(int32_t n);
// "Specified data index (" + n + ") out of boundary."
std::string DataIndexOutOfBoundary(int32_t n);
// "Specified data row index (" + n + ") out of boundary."
std::string DataRowIndexOutOfBoundary(int32_t n);
// "Specified data not found(" + id + ")."
std::string DataNotFound(const std::string& id);
// "Specified row cannot be found(" + name + "=" + value + ")."
std::string RowNotFound(const std::string& name, const std::string& value);
// "Invalid data ID - " + id + "."
std::string InvalidDataId(const std::string& id);

// True when `text` between apostrophes forms an XPath string literal that
// the engine reads back unchanged: no apostrophe, only characters allowed in
// XML, well-formed UTF-8. Only then may an index stand in for the predicate.
bool IsPlainLiteral(std::string_view text);

// True for an element without namespace whose name is `name`, which is what
// an XPath name test without prefix matches.
bool IsNamed(const xmlNode* node, const char* name);

// The value of the attribute `name` without namespace, or null when absent.
const xmlAttr* FindPlainAttribute(const xmlNode* element, const char* name);
std::string AttributeValue(const xmlAttr* attr);
// True when `attr` is present and its value is exactly `text`.
bool AttributeEquals(const xmlAttr* attr, std::string_view text);

// What a subtree holds that matters when it is moved instead of being copied
// or written out and read back.
struct SubtreeFacts {
  // Namespaces or entity references anywhere: moving differs from copying.
  bool foreign = false;
  // Whitespace-only text: reading the subtree's text back would drop it.
  bool blank_text = false;
  // An element named `nested_name` below the top node.
  bool nested = false;
  // A "row" element inside another "row" element.
  bool row_in_row = false;
};
SubtreeFacts ScanSubtree(const xmlNode* top, const char* nested_name);

// The rows "//data[1]/row[@index!='0' or not (@index)]" selects, in document
// order. `first` starts the top-level sibling list; `parent_is_first_data`
// says whether their parent counts as a first data element. `nested` is set
// when a selected row lies inside another selected one.
void CollectMarkedRows(xmlNodePtr first, bool parent_is_first_data, std::vector<xmlNodePtr>& out,
                       bool& nested);
// The same for a document whose only element is `top`. With `flat` (no
// "data" element below `top`) only the children of `top` are looked at.
void CollectMarkedRowsOf(xmlNodePtr top, std::vector<xmlNodePtr>& out, bool& nested,
                         bool flat = false);
// The cols "//row[1]/col" selects in a document, in document order.
void CollectFirstRowCols(xmlNodePtr first, bool parent_is_first_row, std::vector<xmlNodePtr>& out,
                         bool& nested);

// Takes `node` out of wherever it is and links it into `parent` (of the held
// document) before `ref` (null: at the end). A node of another document is
// adopted: its names and texts become the held document's.
void MoveNode(xmlNodePtr node, xmlNodePtr parent, xmlNodePtr ref);

class DatasetStore {
 public:
  explicit DatasetStore(XmlDocument& dom) : dom_(dom) {}
  DatasetStore(const DatasetStore&) = delete;
  DatasetStore& operator=(const DatasetStore&) = delete;

  // Drops every index; they are rebuilt from the tree on demand.
  void Forget();

  XmlDocument& dom() { return dom_; }
  xmlDocPtr doc();
  // The document element, or null.
  xmlNodePtr Root();
  // The document element, created as "dataset" when there is none.
  xmlNodePtr EnsureRoot();

  // --- Data elements ("/*/data") ---

  int32_t DataCount();
  // The data element at 1-based `n`, or null.
  xmlNodePtr DataAt(int32_t n);
  // The "guid" of a data element ("" when absent).
  static std::string GuidOf(const xmlNode* element);
  // The stored ID of the first data element whose lower-cased ID equals the
  // lower-cased `id`; "" when `id` is empty or none matches.
  std::string ExactDataId(const std::string& id);
  // True when some data element's ID (or "" for one without) equals `id`
  // ignoring case.
  bool HasDataId(const std::string& id);

  // A data selection as the data path of `id` makes it.
  struct DataRef {
    std::string xpath;
    // The matches are known without evaluating the path.
    bool indexed = true;
    std::vector<xmlNodePtr> matches;
  };
  // The reference stays valid until the next call.
  const DataRef& ResolveData(const std::string& id);
  // The nodes the data path of `id` selects (evaluating it when needed).
  std::vector<xmlNodePtr> SelectData(const std::string& id);
  xmlNodePtr FirstData(const std::string& id);

  // --- Rows ---

  // All "row" children of `data`, in order.
  const std::vector<xmlNodePtr>& RowsOf(xmlNodePtr data);
  // The same, addressed by position.
  RowOrder& OrderOf(xmlNodePtr data);
  // The rows of `data` whose "guid" is exactly `guid`; `count` tells how many
  // there are (the first is returned).
  xmlNodePtr RowByGuid(xmlNodePtr data, const std::string& guid, int32_t& count);

  // Rows as the row path of a data ID and a row ID selects them
  // (BuildDataXPath + "/row" + "[@guid='" + row ID + "']").
  std::vector<xmlNodePtr> SelectRowsById(const std::string& data_id, const std::string& row_id);
  std::string RowXPathById(const std::string& data_id, const std::string& row_id);
  // Rows as BuildDataXPath + "/row" + "[" + n + "]" (no predicate for n < 0).
  std::vector<xmlNodePtr> SelectRowsByPosition(const std::string& data_id, int32_t n);
  std::string RowXPathByPosition(const std::string& data_id, int32_t n);

  // The row at 1-based `n` of the one data element the data path of
  // `data_id` selects, taken from the index without building a selection;
  // null when the path selects no or several data elements, needs the XPath
  // itself, or has no row there.
  xmlNodePtr IndexedRowAt(const std::string& data_id, int32_t n);
  // The first row of `row`'s data element whose "guid" equals `row`'s, which
  // is what looking `row` up by its ID selects first; null when that lookup
  // must be left to the row path itself (no or an empty guid, blanks around
  // it, or characters the index cannot stand in for).
  xmlNodePtr FirstRowWithIdOf(xmlNodePtr row);

  // --- Changes (keep the indexes right) ---

  // Creates a data element with that "guid" at the end of the root.
  xmlNodePtr AppendData(const std::string& guid);
  // Creates an element "row" with that "guid" at the end of `data`.
  xmlNodePtr AppendNewRow(xmlNodePtr data, const std::string& guid);
  // Links `node` (of any document) into `data` before `ref` (null: at the end).
  void InsertChild(xmlNodePtr data, xmlNodePtr node, xmlNodePtr ref);
  // Takes `node` (a node of the held tree) out of it.
  void Remove(xmlNodePtr node);
  // Puts `node` (of any document) in the place of `old`, a child of `data`.
  void Replace(xmlNodePtr data, xmlNodePtr node, xmlNodePtr old);
  // Takes all element children of `parent` out of the tree.
  void RemoveElementChildren(xmlNodePtr parent);
  // Removes what `xpath` selects from the document, as RemoveSelectedNodes.
  void RemoveSelected(const std::string& xpath);
  // Wraps a raw node of the held document.
  XmlNode Wrap(xmlNodePtr node);

 private:
  struct DataInfo {
    xmlNodePtr node;
    bool has_guid;
    std::string guid;
    std::string lower;
  };
  struct GuidSlot {
    xmlNodePtr first = nullptr;
    int32_t count = 0;
  };
  struct RowIndex {
    bool order_valid = false;
    RowOrder order;
    bool guid_valid = false;
    std::unordered_map<std::string, GuidSlot> by_guid;
    // Rows of by_guid beyond the first of their ID: 0 when IDs are unique.
    int64_t repeated = 0;
  };

  void Sync();
  void EnsureDataList();
  RowIndex& IndexOf(xmlNodePtr data);
  // The index of `data` with its row IDs known.
  RowIndex& GuidIndexOf(xmlNodePtr data);
  // Called before `node` leaves the tree.
  void NoteRemoval(xmlNodePtr node);
  DataRef Resolve(const std::string& id);

  XmlDocument& dom_;
  xmlDocPtr synced_doc_ = nullptr;
  // Changes whenever the data elements may have changed.
  uint64_t data_version_ = 0;
  bool resolved_valid_ = false;
  uint64_t resolved_version_ = 0;
  std::string resolved_id_;
  DataRef resolved_;
  // Reused by FirstRowWithIdOf.
  std::string guid_scratch_;
  bool data_valid_ = false;
  std::vector<DataInfo> data_;
  std::unordered_map<xmlNodePtr, RowIndex> rows_;
};

}  // namespace veld::datasets_internal

#endif  // VELD_DATASETS_DATASET_STORE_H_
