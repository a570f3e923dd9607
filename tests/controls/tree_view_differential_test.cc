// TreeView_LoadData against a plain reading of its algorithm kept here: the
// row XPath, one relative XPath per cell, and the control's own lookups.
// Random dataset documents (random parents, missing cols, index "0" rows,
// duplicate keys, namespaces, entity references, filters) are loaded both
// ways and the trees, results and messages compared node by node.
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "runtime/text.h"
#include "veld/controls/headless_tree_view.h"
#include "veld/controls/kvo_data_ctrl_helper.h"
#include "veld/runtime/automation_error.h"
#include "veld/xml/xml_document.h"
#include "veld/xml/xml_node_list.h"

#include "plain_reading.h"

namespace veld {
namespace {

using testing::Cell;
using testing::Pick;

struct Args {
  std::string key, parent, text, text2, tag, folder, item, filter_field, filter_value;
  Variant selected;
};

class Helper : public KvoDataCtrlHelper {
 public:
  XmlDocument& Data() { return m_cXmlDom; }
};

// The plain reading. Returns the result and, on failure, the message.
bool ReferenceLoad(XmlDocument& data, TreeView& tree, Args a, std::string& message) {
  NodeCollection& nodes = tree.Nodes();
  nodes.Clear();
  try {
    testing::MatchFieldsUpper(data,
                              {&a.key, &a.parent, &a.text, &a.text2, &a.tag, &a.filter_field});
    XmlNodeList rows = testing::FilteredRows(data, a.filter_field, "=", a.filter_value);
    for (int32_t i = 0; i < rows.Length(); ++i) {
      const XmlNode row = rows.Item(i);
      std::string key, parent, text, text2, tag;
      Cell(row, a.key, key);
      Cell(row, a.parent, parent);
      Cell(row, a.text, text);
      if (!a.text2.empty() && Cell(row, a.text2, text2))
        text = (Trim(text).empty() ? "" : "[" + text + "]   ") + text2;
      if (!a.tag.empty()) Cell(row, a.tag, tag);
      if (key.empty() || text.empty()) continue;
      Node& node = parent.empty() ? nodes.Add(Variant::Missing(), Variant::Missing(),
                                              Variant("K" + key), Variant(text))
                                  : nodes.Add(Variant("K" + parent), Variant(tvwChild),
                                              Variant("K" + key), Variant(text));
      node.SetTag(tag);
    }
  } catch (const AutomationError& error) {
    message = testing::RecordedMessage(error);
    return false;
  }
  if (nodes.Count() > 0) {
    try {
      nodes.Item(a.selected).SetSelected(true);
    } catch (...) {
    }
    if (tree.SelectedItem() == nullptr) nodes.Item(Variant(int32_t{1})).SetSelected(true);
  }
  for (int32_t i = 1; i <= nodes.Count(); ++i) {
    Node& node = nodes.Item(Variant(i));
    if (node.Children() > 0) {
      if (!a.folder.empty()) node.SetImage(a.folder);
    } else if (!a.item.empty()) {
      node.SetImage(a.item);
    }
  }
  return true;
}

std::string Describe(TreeView& tree) {
  std::string out;
  NodeCollection& nodes = tree.Nodes();
  for (int32_t i = 1; i <= nodes.Count(); ++i) {
    Node& node = nodes.Item(Variant(i));
    out += node.Key() + "|" + node.Text() + "|" + node.Tag() + "|" + node.Image() + "|" +
           (node.Parent() ? node.Parent()->Key() : "-") + "|" + (node.Selected() ? "S" : "") + "|" +
           std::to_string(node.Children()) + "\n";
  }
  return out;
}

Args RandomArgs(std::mt19937& random) {
  Args a;
  a.key = Pick(random, std::vector<std::string>{"id", "ID", " Id ", "missing"});
  a.parent = Pick(random, std::vector<std::string>{"parent", "PARENT", "", "id"});
  a.text = Pick(random, std::vector<std::string>{"text", "TEXT", "te'xt", "tag"});
  a.text2 = Pick(random, std::vector<std::string>{"", "", "text2", "other"});
  a.tag = Pick(random, std::vector<std::string>{"tag", "", "grp"});
  a.folder = Pick(random, std::vector<std::string>{"", "folder"});
  a.item = Pick(random, std::vector<std::string>{"", "item"});
  a.filter_field = Pick(random, std::vector<std::string>{"", "", "grp", "GRP", "g'rp"});
  a.filter_value = Pick(random, std::vector<std::string>{"x", " x ", "y", "it's"});
  a.selected = Pick(random, std::vector<Variant>{Variant::Missing(), Variant("Ka"),
                                                 Variant(int32_t{2}), Variant("Kzz"), Variant()});
  return a;
}

TEST(TreeViewDifferentialTest, HelperAgreesWithThePlainReading) {
  std::mt19937 random(20261125);
  int loaded = 0;
  int failed = 0;
  for (int round = 0; round < 1500; ++round) {
    const std::string xml = testing::RandomDatasetDocument(random);
    const Args a = RandomArgs(random);
    Helper helper;
    ASSERT_TRUE(helper.LoadXml(xml)) << xml;
    HeadlessTreeView by_helper;
    const bool helper_result =
        helper.TreeView_LoadData(&by_helper, a.key, a.parent, a.text, a.text2, a.tag, a.folder,
                                 a.item, a.selected, a.filter_field, a.filter_value);
    HeadlessTreeView by_reference;
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
  }
  // Both outcomes were exercised.
  EXPECT_GT(loaded, 100);
  EXPECT_GT(failed, 100);
}

}  // namespace
}  // namespace veld
