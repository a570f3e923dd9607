// The control helper's tree view members.
#include "controls/ctrl_messages.h"
#include "controls/data_rows.h"
#include "runtime/text.h"
#include "veld/controls/kvo_data_ctrl_helper.h"
#include "veld/controls/tree_view.h"
#include "veld/runtime/automation_error.h"
#include "veld/xml/xml_node_list.h"

namespace veld {

namespace messages = ctrl_messages;
using controls_internal::ReadCol;

namespace {

TreeView& RequireTree(Control* control) {
  auto* tree = dynamic_cast<TreeView*>(control);
  if (tree == nullptr) RaiseError(errnum::kCheckFailed, messages::kTreeViewRequired);
  return *tree;
}

}  // namespace

bool KvoDataCtrlHelper::TreeView_LoadData(
    Control* cTreeViewCtrl, const std::string& sKeyFieldName,
    const std::string& sParentKeyFieldName, const std::string& sTextFieldName,
    const std::string& sTextFieldName2, const std::string& sTagFieldName,
    const std::string& sFolderImg, const std::string& sItemImg, const Variant& vtSelectedItem,
    const std::string& sFilterFieldName, const std::string& sFilterValue) {
  bool result = false;
  Recorded([&] {
    TreeView& tree = RequireTree(cTreeViewCtrl);
    NodeCollection& nodes = tree.Nodes();
    nodes.Clear();

    std::string key_field = sKeyFieldName;
    std::string parent_field = sParentKeyFieldName;
    std::string text_field = sTextFieldName;
    std::string text2_field = sTextFieldName2;
    std::string tag_field = sTagFieldName;
    std::string filter_field = sFilterFieldName;
    controls_internal::MatchFieldNamesUpper(m_cXmlDom, {&key_field, &parent_field, &text_field,
                                                        &text2_field, &tag_field, &filter_field});

    std::string filter = controls_internal::kActiveRow;
    if (!filter_field.empty())
      filter += controls_internal::ColumnMatch(filter_field, "=", sFilterValue);
    XmlNodeList rows =
        m_cXmlDom.SelectNodes(std::string(controls_internal::kFirstDataRows) + "[" + filter + "]");

    std::string key, parent, text, text2, tag;
    const int32_t count = rows.Length();
    for (int32_t i = 0; i < count; ++i) {
      const XmlNode row = rows.Item(i);
      ReadCol(row, key_field, key);
      ReadCol(row, parent_field, parent);
      ReadCol(row, text_field, text);
      if (!text2_field.empty() && ReadCol(row, text2_field, text2)) {
        text = (Trim(text).empty() ? std::string() : "[" + text + "]   ") + text2;
      }
      tag.clear();
      if (!tag_field.empty()) ReadCol(row, tag_field, tag);
      if (key.empty() || text.empty()) continue;
      Node& node = parent.empty()
                       ? nodes.Add(Variant::Missing(), Variant::Missing(),
                                   Variant(GenerateKeyFromIDString(key)), Variant(text))
                       : nodes.Add(Variant(GenerateKeyFromIDString(parent)), Variant(tvwChild),
                                   Variant(GenerateKeyFromIDString(key)), Variant(text));
      node.SetTag(tag);
    }

    // From here on failures are ignored.
    const int32_t added = nodes.Count();
    if (added > 0) {
      try {
        nodes.Item(vtSelectedItem).SetSelected(true);
      } catch (...) {
      }
      try {
        if (tree.SelectedItem() == nullptr) nodes.Item(Variant(int32_t{1})).SetSelected(true);
      } catch (...) {
      }
    }
    for (int32_t i = 1; i <= added; ++i) {
      try {
        Node& node = nodes.Item(Variant(i));
        if (node.Children() > 0) {
          if (!sFolderImg.empty()) node.SetImage(sFolderImg);
        } else if (!sItemImg.empty()) {
          node.SetImage(sItemImg);
        }
      } catch (...) {
      }
    }
    result = true;
  });
  return result;
}

bool KvoDataCtrlHelper::TreeView_GetSelectedItemIDString(Control* cTreeViewCtrl,
                                                         std::string& sIDString) {
  bool result = false;
  Recorded([&] {
    Node* selected = RequireTree(cTreeViewCtrl).SelectedItem();
    if (selected == nullptr) Fail(messages::kNoItemSelected);
    sIDString = GetIDStringFromKey(selected->Key());
    result = true;
  });
  return result;
}

bool KvoDataCtrlHelper::TreeView_GetSelectedItemTag(Control* cTreeViewCtrl,
                                                    std::string& sIDString) {
  bool result = false;
  Recorded([&] {
    Node* selected = RequireTree(cTreeViewCtrl).SelectedItem();
    if (selected == nullptr) Fail(messages::kNoItemSelected);
    sIDString = selected->Tag();
    result = true;
  });
  return result;
}

bool KvoDataCtrlHelper::TreeView_SelectItemByIDString(Control* cTreeViewCtrl,
                                                      const std::string& sIDString) {
  bool result = false;
  Recorded([&] {
    TreeView& tree = RequireTree(cTreeViewCtrl);
    const std::string key = GenerateKeyFromIDString(sIDString);
    Node* found = nullptr;
    try {
      found = &tree.Nodes().Item(Variant(key));
    } catch (...) {
    }
    if (found == nullptr) Fail(messages::kItemNotFound);
    found->SetSelected(true);
    found->EnsureVisible();
    result = true;
  });
  return result;
}

}  // namespace veld
