// The control interfaces, the three headless controls and KvoDataCtrlHelper.
//
// Elements (ListItem, ComboItem, Node, ...) are views into their control:
// each keeps its control alive, and, as in C++, is valid until it is
// removed or its collection cleared.
#include <string>

#include "veld/controls/headless_image_combo.h"
#include "veld/controls/headless_list_view.h"
#include "veld/controls/headless_tree_view.h"
#include "veld/controls/kvo_data_ctrl_helper.h"

#include "bindings.h"

namespace veld_python {

namespace {

using veld::Variant;
constexpr auto kInternal = py::return_value_policy::reference_internal;
const auto kMissing = Variant::Missing();

void BindListView(py::module_& m) {
  using veld::ColumnHeader;
  using veld::ColumnHeaderCollection;
  using veld::ListItem;
  using veld::ListItemCollection;
  using veld::ListSubItem;
  using veld::ListView;

  py::class_<ColumnHeader>(m, "ColumnHeader")
      .def_property_readonly("Index", &ColumnHeader::Index)
      .def_property("Key", &ColumnHeader::Key, &ColumnHeader::SetKey)
      .def_property("Text", &ColumnHeader::Text, &ColumnHeader::SetText)
      .def_property("Width", &ColumnHeader::Width, &ColumnHeader::SetWidth)
      .def_property("Alignment", &ColumnHeader::Alignment, &ColumnHeader::SetAlignment)
      .def_property("Tag", &ColumnHeader::Tag, &ColumnHeader::SetTag);
  py::class_<ColumnHeaderCollection>(m, "ColumnHeaderCollection")
      .def_property_readonly("Count", &ColumnHeaderCollection::Count)
      .def("__len__", &ColumnHeaderCollection::Count)
      .def("Item", &ColumnHeaderCollection::Item, py::arg("vIndexKey"), kInternal)
      .def("Add", &ColumnHeaderCollection::Add, py::arg("Index") = kMissing,
           py::arg("Key") = kMissing, py::arg("Text") = kMissing, py::arg("Width") = kMissing,
           py::arg("Alignment") = kMissing, py::arg("Icon") = kMissing, kInternal)
      .def("Remove", &ColumnHeaderCollection::Remove, py::arg("vIndexKey"))
      .def("Clear", &ColumnHeaderCollection::Clear);
  py::class_<ListSubItem>(m, "ListSubItem")
      .def_property_readonly("Index", &ListSubItem::Index)
      .def_property("Text", &ListSubItem::Text, &ListSubItem::SetText)
      .def_property("ForeColor", &ListSubItem::ForeColor, &ListSubItem::SetForeColor);
  py::class_<ListItem>(m, "ListItem")
      .def_property_readonly("Index", &ListItem::Index)
      .def_property("Key", &ListItem::Key, &ListItem::SetKey)
      .def_property("Text", &ListItem::Text, &ListItem::SetText)
      .def_property("Icon", &ListItem::Icon, &ListItem::SetIcon)
      .def_property("SmallIcon", &ListItem::SmallIcon, &ListItem::SetSmallIcon)
      .def_property("Tag", &ListItem::Tag, &ListItem::SetTag)
      .def_property("Selected", &ListItem::Selected, &ListItem::SetSelected)
      .def_property("ForeColor", &ListItem::ForeColor, &ListItem::SetForeColor)
      .def("EnsureVisible", &ListItem::EnsureVisible)
      .def("SubItems", &ListItem::SubItems, py::arg("n"))
      .def("SetSubItems", &ListItem::SetSubItems, py::arg("n"), py::arg("text"))
      .def("ListSubItems", &ListItem::ListSubItems, py::arg("n"), kInternal);
  py::class_<ListItemCollection>(m, "ListItemCollection")
      .def_property_readonly("Count", &ListItemCollection::Count)
      .def("__len__", &ListItemCollection::Count)
      .def("Item", &ListItemCollection::Item, py::arg("vIndexKey"), kInternal)
      .def("Add", &ListItemCollection::Add, py::arg("Index") = kMissing, py::arg("Key") = kMissing,
           py::arg("Text") = kMissing, py::arg("Icon") = kMissing, py::arg("SmallIcon") = kMissing,
           kInternal)
      .def("Remove", &ListItemCollection::Remove, py::arg("vIndexKey"))
      .def("Clear", &ListItemCollection::Clear);
  py::class_<ListView, veld::Control>(m, "ListView")
      .def("ColumnHeaders", &ListView::ColumnHeaders, kInternal)
      .def("ListItems", &ListView::ListItems, kInternal)
      .def_property_readonly("SelectedItem", &ListView::SelectedItem, kInternal)
      .def_property("Sorted", &ListView::Sorted, &ListView::SetSorted)
      .def_property("SortKey", &ListView::SortKey, &ListView::SetSortKey)
      .def_property("SortOrder", &ListView::SortOrder, &ListView::SetSortOrder);
  py::class_<veld::HeadlessListView, ListView>(m, "HeadlessListView")
      .def(py::init<>())
      .def_property_readonly("VisibleItem", &veld::HeadlessListView::VisibleItem, kInternal);
}

void BindImageCombo(py::module_& m) {
  using veld::ComboItem;
  using veld::ComboItemCollection;
  using veld::ImageCombo;
  py::class_<ComboItem>(m, "ComboItem")
      .def_property_readonly("Index", &ComboItem::Index)
      .def_property("Key", &ComboItem::Key, &ComboItem::SetKey)
      .def_property("Text", &ComboItem::Text, &ComboItem::SetText)
      .def_property("Tag", &ComboItem::Tag, &ComboItem::SetTag)
      .def_property("Indentation", &ComboItem::Indentation, &ComboItem::SetIndentation)
      .def_property("Image", &ComboItem::Image, &ComboItem::SetImage)
      .def_property("SelImage", &ComboItem::SelImage, &ComboItem::SetSelImage)
      .def_property("Selected", &ComboItem::Selected, &ComboItem::SetSelected);
  py::class_<ComboItemCollection>(m, "ComboItemCollection")
      .def_property_readonly("Count", &ComboItemCollection::Count)
      .def("__len__", &ComboItemCollection::Count)
      .def("Item", &ComboItemCollection::Item, py::arg("vIndexKey"), kInternal)
      .def("Add", &ComboItemCollection::Add, py::arg("Index") = kMissing, py::arg("Key") = kMissing,
           py::arg("Text") = kMissing, py::arg("Image") = kMissing, py::arg("SelImage") = kMissing,
           py::arg("Indentation") = kMissing, kInternal)
      .def("Remove", &ComboItemCollection::Remove, py::arg("vIndexKey"))
      .def("Clear", &ComboItemCollection::Clear);
  py::class_<ImageCombo, veld::Control>(m, "ImageCombo")
      .def("ComboItems", &ImageCombo::ComboItems, kInternal)
      .def_property("Text", &ImageCombo::Text, &ImageCombo::SetText)
      .def_property("SelectedItem", &ImageCombo::SelectedItem, &ImageCombo::SetSelectedItem,
                    kInternal)
      .def("Refresh", &ImageCombo::Refresh);
  py::class_<veld::HeadlessImageCombo, ImageCombo>(m, "HeadlessImageCombo")
      .def(py::init<>())
      .def_property_readonly("RefreshCount", &veld::HeadlessImageCombo::RefreshCount);
}

void BindTreeView(py::module_& m) {
  using veld::Node;
  using veld::NodeCollection;
  using veld::TreeView;
  m.attr("tvwFirst") = static_cast<int32_t>(veld::tvwFirst);
  m.attr("tvwLast") = static_cast<int32_t>(veld::tvwLast);
  m.attr("tvwNext") = static_cast<int32_t>(veld::tvwNext);
  m.attr("tvwPrevious") = static_cast<int32_t>(veld::tvwPrevious);
  m.attr("tvwChild") = static_cast<int32_t>(veld::tvwChild);
  py::class_<Node>(m, "Node")
      .def_property_readonly("Index", &Node::Index)
      .def_property("Key", &Node::Key, &Node::SetKey)
      .def_property("Text", &Node::Text, &Node::SetText)
      .def_property("Tag", &Node::Tag, &Node::SetTag)
      .def_property("Image", &Node::Image, &Node::SetImage)
      .def_property("SelectedImage", &Node::SelectedImage, &Node::SetSelectedImage)
      .def_property_readonly("Children", &Node::Children)
      .def_property_readonly("Parent", &Node::Parent, py::return_value_policy::reference)
      .def_property_readonly("Child", &Node::Child, py::return_value_policy::reference)
      .def_property_readonly("Next", &Node::Next, py::return_value_policy::reference)
      .def_property("Expanded", &Node::Expanded, &Node::SetExpanded)
      .def_property("Selected", &Node::Selected, &Node::SetSelected)
      .def("EnsureVisible", &Node::EnsureVisible);
  py::class_<NodeCollection>(m, "NodeCollection")
      .def_property_readonly("Count", &NodeCollection::Count)
      .def("__len__", &NodeCollection::Count)
      .def("Item", &NodeCollection::Item, py::arg("vIndexKey"), kInternal)
      .def("Add", &NodeCollection::Add, py::arg("Relative") = kMissing,
           py::arg("Relationship") = kMissing, py::arg("Key") = kMissing,
           py::arg("Text") = kMissing, py::arg("Image") = kMissing,
           py::arg("SelectedImage") = kMissing, kInternal)
      .def("Remove", &NodeCollection::Remove, py::arg("vIndexKey"))
      .def("Clear", &NodeCollection::Clear);
  py::class_<TreeView, veld::Control>(m, "TreeView")
      .def("Nodes", &TreeView::Nodes, kInternal)
      .def_property_readonly("SelectedItem", &TreeView::SelectedItem, kInternal);
  py::class_<veld::HeadlessTreeView, TreeView>(m, "HeadlessTreeView").def(py::init<>());
}

void BindHelper(py::module_& m) {
  using veld::Control;
  using veld::KvoDataCtrlHelper;
  using H = KvoDataCtrlHelper;
  py::class_<H>(m, "KvoDataCtrlHelper")
      .def(py::init<>())
      .def("GetLastError", &H::GetLastError)
      .def("RaiseLastError", &H::RaiseLastError)
      .def("Reset", &H::Reset)
      .def("LoadXml", &H::LoadXml, py::arg("sDataXml"), ReleaseGil())
      .def("LoadFile", &H::LoadFile, py::arg("sXmlFile"), ReleaseGil())
      .def("RemoveDataRow", &H::RemoveDataRow, py::arg("sFilterColName"),
           py::arg("sFilterColValue"), py::arg("sFilterOperator") = "=")
      .def("RemoveDataRowEx", &H::RemoveDataRowEx, py::arg("sFilterXPath"),
           py::arg("sFilterColName") = "")
      .def_static("GenerateKeyFromIDString", &H::GenerateKeyFromIDString, py::arg("sIDString"))
      .def_static("GetIDStringFromKey", &H::GetIDStringFromKey, py::arg("sKey"))
      .def("ListView_InitializeColumns", &H::ListView_InitializeColumns, py::arg("cListViewCtrl"),
           py::arg("sColsSpec"))
      .def("ListView_LoadData", &H::ListView_LoadData, py::arg("cListViewCtrl"),
           py::arg("sKeyFieldName") = "_guid_", py::arg("vtSelectedItem") = kMissing,
           py::arg("sTagFieldName") = "", ReleaseGil())
      .def("ListView_AddItem", &H::ListView_AddItem, py::arg("cListViewCtrl"),
           py::arg("sDataItemXml"), py::arg("sKeyFieldName") = "_guid_",
           py::arg("bSelectIt") = true, py::arg("sTagFieldName") = "")
      .def("ListView_UpdateItem", &H::ListView_UpdateItem, py::arg("cListViewCtrl"),
           py::arg("sDataID"), py::arg("sDataItemXml"), py::arg("sKeyFieldName") = "_guid_",
           py::arg("bSelectIt") = true, py::arg("sTagFieldName") = "")
      .def_static("ListView_FormatColumnData", &H::ListView_FormatColumnData, py::arg("sRawData"),
                  py::arg("sFmtStr"))
      .def("ListView_SortData", &H::ListView_SortData, py::arg("cListViewCtrl"),
           py::arg("nColIndex") = 1, ReleaseGil())
      .def("ListView_SelectItemByIDString", &H::ListView_SelectItemByIDString,
           py::arg("cListViewCtrl"), py::arg("sIDString"), py::arg("bEnsureVisible") = true)
      .def("ListView_GetSelectedItemIDString", WithOutput<H>(&H::ListView_GetSelectedItemIDString),
           py::arg("cListViewCtrl"))
      .def("ListView_GetSelectedItemTag", WithOutput<H>(&H::ListView_GetSelectedItemTag),
           py::arg("cListViewCtrl"))
      .def("ListView_GetRowColumnData", WithOutput<H>(&H::ListView_GetRowColumnData),
           py::arg("cListViewCtrl"), py::arg("nRow"), py::arg("nCol"))
      .def("ListView_SetRowColumnData", &H::ListView_SetRowColumnData, py::arg("cListViewCtrl"),
           py::arg("nRow"), py::arg("nCol"), py::arg("sData") = kMissing,
           py::arg("nForeColor") = kMissing)
      .def("ListView_SetRowColumnForeColor", &H::ListView_SetRowColumnForeColor,
           py::arg("cListViewCtrl"), py::arg("nRow"), py::arg("nCol"), py::arg("nForeColor"))
      .def("ListView_GetColumnIndex", &H::ListView_GetColumnIndex, py::arg("cListViewCtrl"),
           py::arg("sColKey"))
      .def("ImageCombo_LoadData", &H::ImageCombo_LoadData, py::arg("cImgComboCtrl"),
           py::arg("sKeyFieldName"), py::arg("sTextFieldName"), py::arg("sTextFieldName2") = "",
           py::arg("sTagFieldName") = "tag", py::arg("vtSelectedItem") = kMissing,
           py::arg("sFilterFieldName") = "", py::arg("sFilterValue") = "",
           py::arg("sFilterOperator") = "=", ReleaseGil())
      .def("ImageCombo_LoadHierData", &H::ImageCombo_LoadHierData, py::arg("cImgComboCtrl"),
           py::arg("sKeyFieldName"), py::arg("sParentKeyFieldName"), py::arg("sTextFieldName"),
           py::arg("sTextFieldName2") = "", py::arg("sTagFieldName") = "tag",
           py::arg("vtSelectedItem") = kMissing, py::arg("sFilterFieldName") = "",
           py::arg("sFilterValue") = "", ReleaseGil())
      .def("ImageCombo_SelectItemByText", &H::ImageCombo_SelectItemByText, py::arg("cImgComboCtrl"),
           py::arg("sText"))
      .def("ImageCombo_SelectItemByTag", &H::ImageCombo_SelectItemByTag, py::arg("cImgComboCtrl"),
           py::arg("sTag"))
      .def("ImageCombo_SelectItemByIDString", &H::ImageCombo_SelectItemByIDString,
           py::arg("cImgComboCtrl"), py::arg("sIDString"))
      .def("ImageCombo_GetSelectedItemIDString",
           WithOutput<H>(&H::ImageCombo_GetSelectedItemIDString), py::arg("cImgComboCtrl"))
      .def("ImageCombo_GetSelectedItemTag", WithOutput<H>(&H::ImageCombo_GetSelectedItemTag),
           py::arg("cImgComboCtrl"))
      .def(
          "ImageCombo_GetSelectedItemText",
          [](H& self, Control* combo) {
            Variant first;
            Variant second;
            const bool ok = self.ImageCombo_GetSelectedItemText(combo, &first, &second);
            return py::make_tuple(ok, first, second);
          },
          py::arg("cImgComboCtrl"))
      .def("TreeView_LoadData", &H::TreeView_LoadData, py::arg("cTreeViewCtrl"),
           py::arg("sKeyFieldName"), py::arg("sParentKeyFieldName"), py::arg("sTextFieldName"),
           py::arg("sTextFieldName2") = "", py::arg("sTagFieldName") = "tag",
           py::arg("sFolderImg") = "", py::arg("sItemImg") = "",
           py::arg("vtSelectedItem") = kMissing, py::arg("sFilterFieldName") = "",
           py::arg("sFilterValue") = "", ReleaseGil())
      .def("TreeView_GetSelectedItemIDString", WithOutput<H>(&H::TreeView_GetSelectedItemIDString),
           py::arg("cTreeViewCtrl"))
      .def("TreeView_GetSelectedItemTag", WithOutput<H>(&H::TreeView_GetSelectedItemTag),
           py::arg("cTreeViewCtrl"))
      .def("TreeView_SelectItemByIDString", &H::TreeView_SelectItemByIDString,
           py::arg("cTreeViewCtrl"), py::arg("sIDString"));
}

}  // namespace

void BindControls(py::module_& m) {
  py::class_<veld::Control>(m, "Control");
  BindListView(m);
  BindImageCombo(m);
  BindTreeView(m);
  BindHelper(m);
}

}  // namespace veld_python
