// veld view: the controls KvoDataCtrlHelper fills from a dataset file, shown
// as text (headless controls, so no display is needed).
#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "veld/controls/headless_image_combo.h"
#include "veld/controls/headless_list_view.h"
#include "veld/controls/headless_tree_view.h"
#include "veld/controls/kvo_data_ctrl_helper.h"
#include "veld/runtime/automation_error.h"

#include "commands.h"
#include "locale_scope.h"

namespace veld::cli {

namespace {

[[noreturn]] void Fail(KvoDataCtrlHelper& helper) { throw Failure(helper.GetLastError()); }

// FIELD=VALUE; the value may be empty, the field may not.
std::pair<std::string, std::string> FilterOf(const Args& args) {
  if (!args.Has("filter")) return {};
  const std::string filter = args.Get("filter");
  const size_t equals = filter.find('=');
  if (equals == std::string::npos || equals == 0)
    throw UsageError("--filter needs FIELD=VALUE, not '" + filter + "'");
  return {filter.substr(0, equals), filter.substr(equals + 1)};
}

std::string Required(const Args& args, const std::string& flag) {
  if (!args.Has(flag)) throw UsageError("--" + flag + " is required");
  return args.Get(flag);
}

// Draws the nodes under `first` and its siblings with box-drawing lines.
void Draw(Node* first, std::string& out) {
  struct Pending {
    Node* node;
    std::string prefix;  // drawn before the branch of this node
    bool root;
  };
  std::vector<Pending> stack;
  // Siblings are pushed last to first, so that they come off in order.
  auto push_level = [&stack](Node* child, const std::string& prefix, bool root) {
    std::vector<Node*> level;
    for (Node* n = child; n != nullptr; n = n->Next()) level.push_back(n);
    for (auto it = level.rbegin(); it != level.rend(); ++it) stack.push_back({*it, prefix, root});
  };
  push_level(first, "", true);
  while (!stack.empty()) {
    Pending pending = std::move(stack.back());
    stack.pop_back();
    Node* node = pending.node;
    const bool last = node->Next() == nullptr;
    std::string child_prefix;
    if (pending.root) {
      out += node->Text() + "\n";
    } else {
      out += pending.prefix + (last ? "\u2514\u2500\u2500 " : "\u251c\u2500\u2500 ") +
             node->Text() + "\n";
      child_prefix = pending.prefix + (last ? "    " : "\u2502   ");
    }
    if (node->Child() != nullptr) push_level(node->Child(), child_prefix, false);
  }
}

int ViewTree(const Args& args) {
  const std::string key = Required(args, "key");
  const std::string parent = Required(args, "parent");
  const std::string text = Required(args, "text");
  const auto [filter_field, filter_value] = FilterOf(args);
  KvoDataCtrlHelper helper;
  if (!helper.LoadFile(args.At(0))) Fail(helper);
  HeadlessTreeView tree;
  if (!helper.TreeView_LoadData(&tree, key, parent, text, args.Get("text2"), args.Get("tag", "tag"),
                                "", "", Variant::Missing(), filter_field, filter_value))
    Fail(helper);
  // The helper adds roots one after another, so the first root added is the
  // first of its level.
  std::string out;
  NodeCollection& nodes = tree.Nodes();
  for (int32_t i = 1; i <= nodes.Count(); ++i) {
    Node& node = nodes.Item(Variant(i));
    if (node.Parent() == nullptr) {
      Draw(&node, out);
      break;
    }
  }
  Out(out);
  return kExitOk;
}

int ViewCombo(const Args& args) {
  const std::string key = Required(args, "key");
  const std::string text = Required(args, "text");
  const auto [filter_field, filter_value] = FilterOf(args);
  const Variant selected =
      args.Has("select") ? Variant(KvoDataCtrlHelper::GenerateKeyFromIDString(args.Get("select")))
                         : Variant::Missing();
  KvoDataCtrlHelper helper;
  if (!helper.LoadFile(args.At(0))) Fail(helper);
  HeadlessImageCombo combo;
  const bool loaded =
      args.Has("parent")
          ? helper.ImageCombo_LoadHierData(&combo, key, args.Get("parent"), text, args.Get("text2"),
                                           args.Get("tag", "tag"), selected, filter_field,
                                           filter_value)
          : helper.ImageCombo_LoadData(&combo, key, text, args.Get("text2"), args.Get("tag", "tag"),
                                       selected, filter_field, filter_value);
  if (!loaded) Fail(helper);
  // One line per item: "* " marks the selected one, two blanks per level of
  // indentation; the carriage return between two texts shows as a blank.
  std::string out;
  ComboItemCollection& items = combo.ComboItems();
  for (int32_t i = 1; i <= items.Count(); ++i) {
    ComboItem& item = items.Item(Variant(i));
    std::string shown = item.Text();
    for (char& c : shown) {
      if (c == '\r') c = ' ';
    }
    out += (item.Selected() ? "* " : "  ") +
           std::string(2 * std::max<int>(item.Indentation(), 0), ' ') + shown + "\n";
  }
  Out(out);
  return kExitOk;
}

// The width of a text on a terminal: its characters (UTF-8 lead bytes).
size_t Width(const std::string& text) {
  size_t width = 0;
  for (const char c : text) {
    if ((static_cast<unsigned char>(c) & 0xC0) != 0x80) ++width;
  }
  return width;
}

std::string Pad(const std::string& text, size_t width, int32_t alignment) {
  const size_t gap = width > Width(text) ? width - Width(text) : 0;
  if (alignment == 1) return std::string(gap, ' ') + text;
  if (alignment == 2) return std::string(gap / 2, ' ') + text + std::string(gap - gap / 2, ' ');
  return text + std::string(gap, ' ');
}

int ViewList(const Args& args) {
  const std::string spec_file = Required(args, "columns");
  std::vector<int32_t> sorts;
  for (const std::string& sort : args.GetAll("sort")) {
    try {
      sorts.push_back(Variant(sort).ToLong());
    } catch (const AutomationError&) {
      throw UsageError("--sort needs a column number, not '" + sort + "'");
    }
  }
  const LocaleScope locale(args);
  XmlDocument spec;
  if (!spec.Load(spec_file))
    throw Failure("cannot read the column spec " + spec_file + ": " + spec.ParseError().Reason());
  KvoDataCtrlHelper helper;
  if (!helper.LoadFile(args.At(0))) Fail(helper);
  HeadlessListView list;
  if (!helper.ListView_InitializeColumns(&list, spec.Xml())) Fail(helper);
  if (!helper.ListView_LoadData(&list, args.Get("key", "_guid_"))) Fail(helper);
  for (const int32_t column : sorts) {
    helper.ListView_SortData(&list, column);
    if (!helper.GetLastError().empty()) Fail(helper);
  }

  // The captions, a rule, then one line per item, each column as wide as its
  // widest cell and aligned as the column is.
  ColumnHeaderCollection& headers = list.ColumnHeaders();
  ListItemCollection& items = list.ListItems();
  const int32_t columns = headers.Count();
  std::vector<std::vector<std::string>> table(static_cast<size_t>(items.Count()) + 1);
  std::vector<size_t> widths(static_cast<size_t>(columns), 0);
  std::vector<int32_t> alignments(static_cast<size_t>(columns), 0);
  for (int32_t c = 1; c <= columns; ++c) {
    ColumnHeader& header = headers.Item(Variant(c));
    table[0].push_back(header.Text());
    alignments[c - 1] = header.Alignment();
  }
  for (int32_t i = 1; i <= items.Count(); ++i) {
    ListItem& item = items.Item(Variant(i));
    for (int32_t c = 1; c <= columns; ++c) table[i].push_back(item.SubItems(c - 1));
  }
  for (const auto& row : table) {
    for (size_t c = 0; c < row.size(); ++c) widths[c] = std::max(widths[c], Width(row[c]));
  }
  std::string out;
  auto line = [&](const std::vector<std::string>& row) {
    std::string text;
    for (size_t c = 0; c < row.size(); ++c) {
      if (c > 0) text += "  ";
      text += Pad(row[c], widths[c], alignments[c]);
    }
    while (!text.empty() && text.back() == ' ') text.pop_back();
    out += text + "\n";
  };
  line(table[0]);
  std::vector<std::string> rule;
  for (const size_t width : widths) rule.push_back(std::string(width, '-'));
  line(rule);
  for (size_t i = 1; i < table.size(); ++i) line(table[i]);
  Out(out);
  return kExitOk;
}

}  // namespace

Group ViewCommands() {
  return {"view",
          "show the controls the data helper fills from a dataset file",
          "The rows of the file's first data element, loaded by KvoDataCtrlHelper into\n"
          "headless controls and printed. Rows whose index is 0 are left out; field names\n"
          "match the data's col names without regard to case.",
          {
              {"tree",
               "draw the tree built from key and parent key columns",
               "FILE",
               1,
               1,
               {{"key", "FIELD", "the col that identifies a row (required)"},
                {"parent", "FIELD", "the col that names the parent row's key (required)"},
                {"text", "FIELD", "the col shown as the node's text (required)"},
                {"text2", "FIELD", "a second text, shown as \"[text]   text2\""},
                {"tag", "FIELD", "the col kept as the node's tag (default tag)"},
                {"filter", "FIELD=VALUE", "only the rows whose col FIELD equals VALUE"}},
               "Parents must come before their children in the data: a row whose parent comes\n"
               "later, or a duplicate key, fails the load with the helper's message (exit 1).\n\n"
               "example: veld view tree --key id --parent parent --text name departments.xml\n",
               ViewTree},
              {"list",
               "print the list view the helper fills, as an aligned table",
               "FILE",
               1,
               1,
               {{"columns", "SPEC.xml",
                 "the column spec: <cols><col name= field= type= format= "
                 "align= width=/>... (required)"},
                {"key", "FIELD", "the col that identifies a row (default _guid_)"},
                {"sort", "N",
                 "click the header of column N (repeat: --sort 2 --sort 2 sorts "
                 "descending)"},
                {"locale", "ID", "regional settings of this locale (de-DE, en_GB.UTF-8, ...)"}},
               "Cells are shown exactly as the list shows them: dates in the locale's short\n"
               "date, numbers through their column's format, a single blank for an empty cell.\n"
               "Columns are as wide as their widest cell and aligned as its col asks.\n\n"
               "example: veld view list --columns examples/columns.xml --sort 3 orders.xml\n",
               ViewList},
              {"combo",
               "list the items of the image combo, indented by level, the selected one marked",
               "FILE",
               1,
               1,
               {{"key", "FIELD", "the col that identifies a row (required)"},
                {"text", "FIELD", "the col shown as the item's text (required)"},
                {"text2", "FIELD", "a second text, shown after the first"},
                {"parent", "FIELD", "indent each item under the item of this col's key"},
                {"tag", "FIELD", "the col kept as the item's tag (default tag)"},
                {"filter", "FIELD=VALUE", "only the rows whose col FIELD equals VALUE"},
                {"select", "ID", "select the item of this row id (default: the first)"}},
               "Each line is \"* \" for the selected item or two blanks, then two blanks per\n"
               "level of indentation, then the text. With --parent an item is indented one level\n"
               "under its parent's item when the parent row comes earlier in the data.\n\n"
               "example: veld view combo --key id --text name --parent parent departments.xml\n",
               ViewCombo},
          }};
}

}  // namespace veld::cli
