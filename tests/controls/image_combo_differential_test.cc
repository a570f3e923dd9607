// ImageCombo_LoadData and ImageCombo_LoadHierData against a plain reading of
// their algorithm kept here (XPath per cell, the combo's own lookups), over
// random dataset documents; every item's key, text, tag and indentation, the
// selection, the refreshes, the results and the messages are compared.
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "runtime/text.h"
#include "veld/controls/headless_image_combo.h"
#include "veld/controls/kvo_data_ctrl_helper.h"

#include "plain_reading.h"

namespace veld {
namespace {

using testing::Cell;
using testing::Pick;

struct Args {
  bool hierarchical = false;
  std::string key, parent, text, text2, tag, filter_field, filter_value, filter_operator;
  Variant selected;
};

class Helper : public KvoDataCtrlHelper {
 public:
  XmlDocument& Data() { return m_cXmlDom; }
};

bool ReferenceLoad(XmlDocument& data, HeadlessImageCombo& combo, Args a, std::string& message) {
  ComboItemCollection& items = combo.ComboItems();
  items.Clear();
  combo.SetText("");
  try {
    if (a.hierarchical) {
      testing::MatchFieldsUpper(data,
                                {&a.key, &a.parent, &a.text, &a.text2, &a.tag, &a.filter_field});
    } else {
      testing::MatchFieldsUpper(data, {&a.key, &a.text, &a.text2, &a.tag, &a.filter_field});
    }
    XmlNodeList rows = testing::FilteredRows(
        data, a.filter_field, a.hierarchical ? "=" : a.filter_operator, a.filter_value);
    for (int32_t i = 0; i < rows.Length(); ++i) {
      const XmlNode row = rows.Item(i);
      std::string key, parent, text, text2, tag;
      Cell(row, a.key, key);
      if (a.hierarchical) Cell(row, a.parent, parent);
      Cell(row, a.text, text);
      if (!a.text2.empty() && Cell(row, a.text2, text2))
        text = text + "\r" + (Trim(text).empty() ? "" : " ") + text2;
      if (!a.tag.empty()) Cell(row, a.tag, tag);
      if (key.empty() || text.empty()) continue;
      int32_t indentation = 0;
      if (a.hierarchical && !parent.empty()) {
        for (int32_t k = 1; k <= items.Count(); ++k) {
          ComboItem& item = items.Item(Variant(k));
          if (item.Key() == "K" + parent) indentation = item.Indentation() + 1;
        }
      }
      ComboItem& item =
          items.Add(Variant::Missing(), Variant("K" + key), Variant(text), Variant::Missing(),
                    Variant::Missing(), a.hierarchical ? Variant(indentation) : Variant::Missing());
      item.SetTag(tag);
    }
  } catch (const AutomationError& error) {
    message = testing::RecordedMessage(error);
    return false;
  }
  if (items.Count() > 0) {
    try {
      items.Item(a.selected).SetSelected(true);
    } catch (...) {
    }
    if (combo.SelectedItem() == nullptr) items.Item(Variant(int32_t{1})).SetSelected(true);
    if (!a.hierarchical) combo.Refresh();
  }
  return true;
}

std::string Describe(HeadlessImageCombo& combo) {
  std::string out =
      "text=" + combo.Text() + " refreshes=" + std::to_string(combo.RefreshCount()) + "\n";
  ComboItemCollection& items = combo.ComboItems();
  for (int32_t i = 1; i <= items.Count(); ++i) {
    ComboItem& item = items.Item(Variant(i));
    out += item.Key() + "|" + item.Text() + "|" + item.Tag() + "|" +
           std::to_string(item.Indentation()) + "|" + (item.Selected() ? "S" : "") + "\n";
  }
  return out;
}

Args RandomArgs(std::mt19937& random) {
  Args a;
  a.hierarchical = random() % 2 == 0;
  a.key = Pick(random, std::vector<std::string>{"id", "ID", " Id ", "id", "missing"});
  a.parent = Pick(random, std::vector<std::string>{"parent", "PARENT", "parent", "", "id"});
  a.text = Pick(random, std::vector<std::string>{"text", "TEXT", "text", "te'xt", "tag"});
  a.text2 = Pick(random, std::vector<std::string>{"", "", "text2", "other"});
  a.tag = Pick(random, std::vector<std::string>{"tag", "", "grp"});
  a.filter_field = Pick(random, std::vector<std::string>{"", "", "", "grp", "GRP", "g'rp"});
  a.filter_value = Pick(random, std::vector<std::string>{"x", " x ", "y", "it's", "6"});
  a.filter_operator = Pick(random, std::vector<std::string>{"=", "!=", ">", "<=", "=="});
  a.selected = Pick(random, std::vector<Variant>{Variant::Missing(), Variant("Ka"),
                                                 Variant(int32_t{2}), Variant("Kzz"), Variant()});
  return a;
}

TEST(ImageComboDifferentialTest, HelperAgreesWithThePlainReading) {
  std::mt19937 random(1125);
  int loaded = 0;
  int failed = 0;
  int indented = 0;
  for (int round = 0; round < 6000; ++round) {
    const std::string xml = testing::RandomDatasetDocument(random);
    const Args a = RandomArgs(random);
    Helper helper;
    ASSERT_TRUE(helper.LoadXml(xml)) << xml;
    HeadlessImageCombo by_helper;
    const bool helper_result =
        a.hierarchical
            ? helper.ImageCombo_LoadHierData(&by_helper, a.key, a.parent, a.text, a.text2, a.tag,
                                             a.selected, a.filter_field, a.filter_value)
            : helper.ImageCombo_LoadData(&by_helper, a.key, a.text, a.text2, a.tag, a.selected,
                                         a.filter_field, a.filter_value, a.filter_operator);
    HeadlessImageCombo by_reference;
    std::string message;
    const bool reference_result = ReferenceLoad(helper.Data(), by_reference, a, message);
    ASSERT_EQ(helper_result, reference_result) << xml;
    if (!helper_result) {
      ASSERT_EQ(helper.GetLastError(), message) << xml;
      ++failed;
    } else {
      ++loaded;
    }
    ASSERT_EQ(Describe(by_helper), Describe(by_reference)) << xml;
    for (int32_t i = 1; i <= by_helper.ComboItems().Count(); ++i) {
      if (by_helper.ComboItems().Item(Variant(i)).Indentation() > 0) {
        ++indented;
        break;
      }
    }
  }
  EXPECT_GT(loaded, 100);
  EXPECT_GT(failed, 100);
  EXPECT_GT(indented, 15);
}

}  // namespace
}  // namespace veld
