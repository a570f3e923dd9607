// The control helper's list view columns, loading and cell formatting.
#include "controls/ctrl_messages.h"
#include "controls/data_rows.h"
#include "controls/list_view_columns.h"
#include "foundation/this_utils.h"
#include "foundation/xml_utils.h"
#include "runtime/locale_number.h"
#include "runtime/numeric.h"
#include "runtime/text.h"
#include "veld/controls/kvo_data_ctrl_helper.h"
#include "veld/platform/platform.h"
#include "veld/platform/regional_settings.h"
#include "veld/runtime/automation_error.h"
#include "veld/runtime/format.h"
#include "veld/xml/xml_node_list.h"

namespace veld {

namespace messages = ctrl_messages;

namespace controls_internal {

ListView& RequireListView(Control* control) {
  auto* list = dynamic_cast<ListView*>(control);
  if (list == nullptr) RaiseError(errnum::kCheckFailed, messages::kListViewRequired);
  return *list;
}

ColumnDefinitions ReadColumnDefinitions(ListView& list) {
  ColumnHeaderCollection& headers = list.ColumnHeaders();
  const int32_t count = headers.Count();
  if (count == 0) RaiseError(errnum::kCheckFailed, messages::kNoColumns);
  ColumnDefinitions out;
  out.fields.reserve(static_cast<size_t>(count));
  out.codes.reserve(static_cast<size_t>(count));
  for (int32_t i = 1; i <= count; ++i) {
    ColumnHeader& header = headers.Item(Variant(i));
    out.fields.push_back(header.Key());
    out.codes.push_back(header.Tag());
  }
  return out;
}

void FillItem(ListItem& item, const XmlNode& row, const ColumnDefinitions& columns,
              const std::string& key_field, const std::string& tag_field) {
  std::string value;
  if (ReadColValue(row, key_field, value))
    item.SetKey(KvoDataCtrlHelper::GenerateKeyFromIDString(Trim(value)));
  // The first column: an icon for code "p" with a value, else the text; a
  // row without the column leaves the text as it is.
  if (ReadColValue(row, columns.fields[0], value)) {
    value = Trim(value);
    if (columns.codes[0] == "p" && !value.empty()) {
      item.SetIcon(value);
      item.SetSmallIcon(value);
    } else {
      item.SetText(KvoDataCtrlHelper::ListView_FormatColumnData(value, columns.codes[0]));
    }
  }
  for (size_t i = 1; i < columns.fields.size(); ++i) {
    if (!ReadColValue(row, columns.fields[i], value)) value.clear();
    item.SetSubItems(static_cast<int32_t>(i),
                     KvoDataCtrlHelper::ListView_FormatColumnData(Trim(value), columns.codes[i]));
  }
  if (!tag_field.empty() && ReadColValue(row, tag_field, value)) item.SetTag(value);
}

}  // namespace controls_internal

namespace {

using controls_internal::ColumnDefinitions;
using controls_internal::FillItem;
using controls_internal::ReadColumnDefinitions;
using controls_internal::RequireListView;

// The type code of a spec column; `previous` for a type it does not know.
std::string TypeCode(const std::string& type, const std::string& format,
                     const std::string& previous) {
  if (type == "icon") return "p";
  if (type == "boolean" || type == "bool") return "b";
  if (type == "date") return "d";
  if (type == "time") return "t";
  if (type == "datetime") return "dt";
  if (type == "integer") return "i";
  if (type == "double") return format;
  if (type == "text") return "s";
  return previous;
}

// Adds an item at the end, fills it, and removes it again when the fill
// fails (the failure then goes on to the caller).
ListItem& AddFilled(ListView& list, const XmlNode& row, const ColumnDefinitions& columns,
                    const std::string& key_field, const std::string& tag_field) {
  ListItemCollection& items = list.ListItems();
  ListItem& item = items.Add();
  try {
    FillItem(item, row, columns, key_field, tag_field);
  } catch (...) {
    try {
      items.Remove(Variant(item.Index()));
    } catch (...) {
    }
    throw;
  }
  return item;
}

// Matches the key, tag and column field names to a sample row.
void MatchFields(const XmlNode& sample, ColumnDefinitions& columns, std::string& key_field,
                 std::string& tag_field) {
  std::vector<std::string*> names = {&key_field, &tag_field};
  for (std::string& field : columns.fields) names.push_back(&field);
  controls_internal::MatchFieldNamesLower(sample, names);
}

// What ListView_AddItem and ListView_UpdateItem fill an item from: the
// list's columns, the first row of the item document, and the field names
// matched to that row.
struct ItemSource {
  ItemSource(ListView& list, const std::string& xml, const std::string& key, const std::string& tag)
      : columns(ReadColumnDefinitions(list)), key_field(key), tag_field(tag) {
    XmlDocument item;
    if (!item.LoadXml(xml)) RaiseError(errnum::kCheckFailed, messages::kLoadItemXmlFailed);
    row = item.SelectSingleNode("//row[1]");
    if (row.IsNull()) RaiseError(errnum::kCheckFailed, messages::kNoDataElement);
    MatchFields(row, columns, key_field, tag_field);
  }

  ColumnDefinitions columns;
  std::string key_field;
  std::string tag_field;
  XmlNode row;
};

}  // namespace

std::string KvoDataCtrlHelper::ListView_FormatColumnData(const std::string& sRawData,
                                                         const std::string& sFmtStr) {
  if (sRawData.empty()) return " ";
  std::string out;
  try {
    if (sFmtStr == "p") {
      // An icon column shows no text.
    } else if (sFmtStr == "b") {
      const auto number = ParseNumberInLocale(sRawData, *CurrentPlatform().Regional());
      out = number ? (*number != 0 ? "Y" : "N") : Trim(sRawData);
    } else if (sFmtStr == "s") {
      out = sRawData;
    } else if (sFmtStr == "i") {
      const auto number = ParseNumberInLocale(sRawData, *CurrentPlatform().Regional());
      if (number) out = std::to_string(DoubleToLong(*number));
    } else if (sFmtStr == "d") {
      out = FormatText(CDate(Variant(sRawData)), "Short Date");
    } else if (sFmtStr == "t") {
      out = FormatText(CDate(Variant(sRawData)), "Long Time");
    } else if (sFmtStr == "dt") {
      out = FormatText(CDate(Variant(sRawData)), "General Date");
    } else {
      out = FormatText(Variant(sRawData), sFmtStr, 1, 1);
    }
  } catch (...) {
    out.clear();
  }
  // A cell is never empty: the control treats an empty subitem differently.
  return out.empty() ? " " : out;
}

bool KvoDataCtrlHelper::ListView_InitializeColumns(Control* cListViewCtrl,
                                                   const std::string& sColsSpec) {
  bool result = false;
  Recorded([&] {
    ListView& list = RequireListView(cListViewCtrl);
    ColumnHeaderCollection& headers = list.ColumnHeaders();
    headers.Clear();
    XmlDocument spec;
    if (!spec.LoadXml(sColsSpec)) Fail(messages::kInvalidColumnSpec);
    const int32_t twips = CurrentPlatform().TwipsPerPixelX();
    XmlNodeList cols = spec.SelectNodes("/*/col[@name!='']");
    std::string code;  // carried from column to column
    for (int32_t i = 0; i < cols.Length(); ++i) {
      const XmlNode col = cols.Item(i);
      const std::string name = GetNodeAttribute(col, "name", "");
      const std::string field = Trim(GetNodeAttribute(col, "field", ""));
      const std::string type = LCase(Trim(GetNodeAttribute(col, "type", "")));
      const std::string format = LCase(Trim(GetNodeAttribute(col, "format", "")));
      const std::string align = LCase(Trim(GetNodeAttribute(col, "align", "")));
      const int32_t width = ToLongOrDefault(Trim(GetNodeAttribute(col, "width", "")), 15);
      const int32_t alignment = align == "center" ? 2 : align == "right" ? 1 : 0;
      code = TypeCode(type, format, code);
      ColumnHeader& header =
          headers.Add(Variant::Missing(), Variant(field), Variant(name),
                      Variant(static_cast<double>(width) * twips), Variant(alignment));
      header.SetTag(code);
    }
    result = true;
  });
  return result;
}

bool KvoDataCtrlHelper::ListView_LoadData(Control* cListViewCtrl, const std::string& sKeyFieldName,
                                          const Variant& vtSelectedItem,
                                          const std::string& sTagFieldName) {
  bool result = false;
  Recorded([&] {
    ListView& list = RequireListView(cListViewCtrl);
    ColumnDefinitions columns = ReadColumnDefinitions(list);
    std::string key_field = sKeyFieldName;
    std::string tag_field = sTagFieldName;
    MatchFields(m_cXmlDom.SelectSingleNode("//data[1]/row[1]"), columns, key_field, tag_field);
    ListItemCollection& items = list.ListItems();
    items.Clear();
    list.SetSorted(false);
    XmlNodeList rows = m_cXmlDom.SelectNodes("//data[1]/row[@index!='0' or not (@index)]");
    const int32_t count = rows.Length();
    for (int32_t i = 0; i < count; ++i)
      AddFilled(list, rows.Item(i), columns, key_field, tag_field);

    // From here on failures are ignored.
    if (items.Count() > 0) {
      try {
        items.Item(vtSelectedItem).SetSelected(true);
      } catch (...) {
      }
      try {
        if (list.SelectedItem() == nullptr) items.Item(Variant(int32_t{1})).SetSelected(true);
        if (ListItem* selected = list.SelectedItem()) selected->EnsureVisible();
      } catch (...) {
      }
    }
    result = true;
  });
  return result;
}

int32_t KvoDataCtrlHelper::ListView_AddItem(Control* cListViewCtrl, const std::string& sDataItemXml,
                                            const std::string& sKeyFieldName, bool bSelectIt,
                                            const std::string& sTagFieldName) {
  int32_t result = -1;
  Recorded([&] {
    ListView& list = RequireListView(cListViewCtrl);
    const ItemSource source(list, sDataItemXml, sKeyFieldName, sTagFieldName);
    ListItem& item =
        AddFilled(list, source.row, source.columns, source.key_field, source.tag_field);
    if (bSelectIt) item.SetSelected(true);
    result = item.Index();
  });
  return result;
}

int32_t KvoDataCtrlHelper::ListView_UpdateItem(Control* cListViewCtrl, const std::string& sDataID,
                                               const std::string& sDataItemXml,
                                               const std::string& sKeyFieldName, bool bSelectIt,
                                               const std::string& sTagFieldName) {
  int32_t result = -1;
  Recorded([&] {
    ListView& list = RequireListView(cListViewCtrl);
    const ItemSource source(list, sDataItemXml, sKeyFieldName, sTagFieldName);
    // An exact keyed lookup; the control's own error when it refuses. No
    // item can have the empty key, so an empty id finds nothing.
    const std::string key = GenerateKeyFromIDString(sDataID);
    if (key.empty()) Fail(messages::kItemNotFound);
    ListItem& item = list.ListItems().Item(Variant(key));
    FillItem(item, source.row, source.columns, source.key_field, source.tag_field);
    if (bSelectIt) item.SetSelected(true);
    result = item.Index();
  });
  return result;
}

}  // namespace veld
