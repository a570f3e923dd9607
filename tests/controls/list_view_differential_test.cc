// ListView_InitializeColumns and ListView_LoadData against a plain reading of
// their algorithm kept here: the row XPath, one XPath per cell, the cell
// formatting per cell, and the list's own calls. Random dataset documents
// and random column specs are loaded both ways, under en-US and de-DE, and
// every cell, key, tag and icon, the selection, the results and the messages
// compared.
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "runtime/text.h"
#include "veld/controls/headless_list_view.h"
#include "veld/controls/kvo_data_ctrl_helper.h"

#include "plain_reading.h"
#include "support/locale_platform.h"

namespace veld {
namespace {

using testing::Pick;

class Helper : public KvoDataCtrlHelper {
 public:
  XmlDocument& Data() { return m_cXmlDom; }
};

// "col[@name='field']/@value": the value of the first col so named that has one.
bool CellValue(const XmlNode& row, const std::string& field, std::string& value) {
  const XmlNode attribute = row.SelectSingleNode("col[@name='" + field + "']/@value");
  value = attribute.IsNull() ? "" : attribute.NodeValue();
  return !attribute.IsNull();
}

bool ReferenceLoad(XmlDocument& data, ListView& list, std::string key_field, std::string tag_field,
                   const Variant& selected, std::string& message) {
  std::vector<std::string> fields, codes;
  try {
    ColumnHeaderCollection& headers = list.ColumnHeaders();
    if (headers.Count() == 0) {
      message = "No column defined for the list view.";
      return false;
    }
    for (int32_t i = 1; i <= headers.Count(); ++i) {
      fields.push_back(headers.Item(Variant(i)).Key());
      codes.push_back(headers.Item(Variant(i)).Tag());
    }
    // Each name takes the spelling of the first col that matches it.
    const XmlNode sample = data.SelectSingleNode("//data[1]/row[1]");
    if (!sample.IsNull()) {
      std::vector<std::string*> names = {&key_field, &tag_field};
      for (std::string& field : fields) names.push_back(&field);
      for (std::string* name : names) {
        XmlNodeList cols = sample.SelectNodes("col[@name!='']");
        for (int32_t i = 0; i < cols.Length(); ++i) {
          const std::string spelt = Trim(cols.Item(i).GetAttribute("name"));
          if (LCase(Trim(*name)) == LCase(spelt)) {
            *name = spelt;
            break;
          }
        }
      }
    }
    ListItemCollection& items = list.ListItems();
    items.Clear();
    list.SetSorted(false);
    XmlNodeList rows = data.SelectNodes("//data[1]/row[@index!='0' or not (@index)]");
    for (int32_t r = 0; r < rows.Length(); ++r) {
      const XmlNode row = rows.Item(r);
      ListItem& item = items.Add();
      try {
        std::string value;
        if (CellValue(row, key_field, value))
          item.SetKey(value.empty() || Trim(value).empty() ? "" : "K" + Trim(value));
        if (CellValue(row, fields[0], value)) {
          if (codes[0] == "p" && !Trim(value).empty()) {
            item.SetIcon(Trim(value));
            item.SetSmallIcon(Trim(value));
          } else {
            item.SetText(KvoDataCtrlHelper::ListView_FormatColumnData(Trim(value), codes[0]));
          }
        }
        for (size_t c = 1; c < fields.size(); ++c) {
          CellValue(row, fields[c], value);
          item.SetSubItems(static_cast<int32_t>(c),
                           KvoDataCtrlHelper::ListView_FormatColumnData(Trim(value), codes[c]));
        }
        if (!tag_field.empty() && CellValue(row, tag_field, value)) item.SetTag(value);
      } catch (...) {
        items.Remove(Variant(item.Index()));
        throw;
      }
    }
    if (items.Count() > 0) {
      try {
        items.Item(selected).SetSelected(true);
      } catch (...) {
      }
      if (list.SelectedItem() == nullptr) items.Item(Variant(int32_t{1})).SetSelected(true);
      list.SelectedItem()->EnsureVisible();
    }
  } catch (const AutomationError& error) {
    message = testing::RecordedMessage(error);
    return false;
  }
  return true;
}

std::string Describe(HeadlessListView& list) {
  std::string out;
  const int32_t columns = list.ColumnHeaders().Count();
  for (int32_t i = 1; i <= list.ListItems().Count(); ++i) {
    ListItem& item = list.ListItems().Item(Variant(i));
    out += item.Key() + "|" + item.Icon() + "|" + item.SmallIcon() + "|" + item.Tag() + "|" +
           (item.Selected() ? "S" : "") + (list.VisibleItem() == &item ? "V" : "");
    for (int32_t c = 0; c < columns; ++c) out += "|" + item.SubItems(c);
    out += "\n";
  }
  return out;
}

std::string RandomSpec(std::mt19937& random) {
  const std::vector<std::string> fields = {"id",  "text",  "TEXT",   " text ",  "grp",
                                           "tag", "other", "parent", "missing", ""};
  const std::vector<std::string> types = {"text", "integer",  "double",  "date",
                                          "time", "datetime", "boolean", "icon",
                                          "",     "odd",      "Date "};
  const std::vector<std::string> formats = {"#,##0.00", "0.0", "Standard", "yyyy", "", "@@"};
  std::string spec = "<cols>";
  const int count = std::uniform_int_distribution<int>(0, 5)(random);
  for (int c = 0; c < count; ++c) {
    spec += "<col name=\"C" + std::to_string(c) + "\" field=\"" + Pick(random, fields) +
            "\" type=\"" + Pick(random, types) + "\" format=\"" + Pick(random, formats) + "\"/>";
  }
  return spec + "</cols>";
}

TEST(ListViewDifferentialTest, HelperAgreesWithThePlainReading) {
  std::mt19937 random(20261125);
  int loaded = 0;
  int failed = 0;
  for (int round = 0; round < 1500; ++round) {
    testing::ScopedLocale locale(round % 3 == 0 ? "de-DE" : "en-US");
    const std::string xml = testing::RandomDatasetDocument(random);
    const std::string spec = RandomSpec(random);
    const std::string key_field =
        Pick(random, std::vector<std::string>{"id", "ID", " Id ", "_guid_"});
    const std::string tag_field = Pick(random, std::vector<std::string>{"", "tag", "TAG", "grp"});
    const Variant selected = Pick(random, std::vector<Variant>{Variant::Missing(), Variant("Ka"),
                                                               Variant(int32_t{2}), Variant()});
    Helper helper;
    ASSERT_TRUE(helper.LoadXml(xml));
    HeadlessListView by_helper;
    HeadlessListView by_reference;
    const bool spec_ok = helper.ListView_InitializeColumns(&by_helper, spec);
    helper.ListView_InitializeColumns(&by_reference, spec);
    if (!spec_ok) continue;  // duplicate or numeric fields: ListViewHelperTest covers them
    const bool helper_result = helper.ListView_LoadData(&by_helper, key_field, selected, tag_field);
    std::string message;
    const bool reference_result =
        ReferenceLoad(helper.Data(), by_reference, key_field, tag_field, selected, message);
    ASSERT_EQ(helper_result, reference_result) << xml << "\n" << spec;
    if (!helper_result) {
      ASSERT_EQ(helper.GetLastError(), message) << xml << "\n" << spec;
      ++failed;
    } else {
      ++loaded;
    }
    ASSERT_EQ(Describe(by_helper), Describe(by_reference)) << xml << "\n" << spec;
  }
  EXPECT_GT(loaded, 300);
  EXPECT_GT(failed, 30);
}

}  // namespace
}  // namespace veld
