// Drives KvoDataCtrlHelper with arbitrary documents and arguments: the input
// is split at 0x01 bytes into the document, the RemoveDataRow column, value
// and operator, a RemoveDataRowEx expression and column, and the tree
// loader's key, parent, text, second text and filter field and value. No
// member may raise; a member that fails must say why; every node the tree
// holds is keyed "K" + a non-empty id, and a node that is not a root hangs
// under a node the tree holds.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

#include "veld/controls/headless_tree_view.h"
#include "veld/controls/kvo_data_ctrl_helper.h"

#include "fuzz_support.h"

using veld_fuzz::Check;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string_view input(reinterpret_cast<const char*>(data), size);
  const std::vector<std::string> parts = veld_fuzz::SplitInput(input, '\x01', 12);

  veld::KvoDataCtrlHelper helper;
  if (!helper.LoadXml(parts[0])) Check(helper.GetLastError() == "Failed to load xml data.");
  if (!helper.RemoveDataRow(parts[1], parts[2], parts[3].empty() ? "=" : parts[3]))
    Check(!helper.GetLastError().empty());
  if (!helper.RemoveDataRowEx(parts[4].empty() ? "true()" : parts[4], parts[5]))
    Check(!helper.GetLastError().empty());

  veld::HeadlessTreeView tree;
  const bool loaded =
      helper.TreeView_LoadData(&tree, parts[6], parts[7], parts[8], parts[9], "tag", "folder",
                               "item", veld::Variant("K1"), parts[10], parts[11]);
  if (!loaded) Check(!helper.GetLastError().empty());
  veld::NodeCollection& nodes = tree.Nodes();
  for (int32_t i = 1; i <= nodes.Count(); ++i) {
    veld::Node& node = nodes.Item(veld::Variant(i));
    Check(node.Key().size() > 1 && node.Key()[0] == 'K');
    Check(!node.Text().empty());
    if (node.Parent() != nullptr)
      Check(&nodes.Item(veld::Variant(node.Parent()->Key())) == node.Parent());
    if (loaded) Check(node.Image() == (node.Children() > 0 ? "folder" : "item"));
  }
  if (loaded && nodes.Count() > 0) Check(tree.SelectedItem() != nullptr);
  std::string id;
  if (helper.TreeView_GetSelectedItemIDString(&tree, id)) {
    Check(helper.TreeView_SelectItemByIDString(&tree, id));
  }
  return 0;
}
