// KvoGeneralItem and KvoGeneralItems. The list is a Python sequence too:
// len(), iteration, items[i] (0-based, negative from the end) and
// items["key"]; Item(v) keeps the interface's 1-based positions.
#include <memory>
#include <string>

#include "veld/items/kvo_general_item.h"
#include "veld/items/kvo_general_items.h"

#include "bindings.h"

namespace veld_python {

void BindItems(py::module_& m) {
  using veld::KvoGeneralItem;
  using veld::KvoGeneralItems;
  using ItemPtr = std::shared_ptr<KvoGeneralItem>;

  py::class_<KvoGeneralItem, ItemPtr>(m, "KvoGeneralItem")
      .def(py::init<>())
      .def_readwrite("Name", &KvoGeneralItem::Name)
      .def_readwrite("Value", &KvoGeneralItem::Value)
      .def_readwrite("TypeString", &KvoGeneralItem::TypeString)
      .def_readwrite("ExtraValue", &KvoGeneralItem::ExtraValue)
      .def("__repr__", [](const KvoGeneralItem& item) {
        return "<KvoGeneralItem " + item.Name + "=" + item.Value + ">";
      });

  py::class_<KvoGeneralItems, std::shared_ptr<KvoGeneralItems>>(m, "KvoGeneralItems")
      .def(py::init<>())
      .def_property_readonly("Count", &KvoGeneralItems::Count)
      .def("__len__", &KvoGeneralItems::Count)
      // Iterates over the items as they were when the loop began, so that
      // changing the list inside the loop is safe.
      .def("__iter__",
           [](const KvoGeneralItems& items) {
             py::list snapshot;
             for (const ItemPtr& item : items) snapshot.append(item);
             return py::iter(snapshot);
           })
      .def("__getitem__",
           [](const KvoGeneralItems& items, int64_t position) {
             const int64_t count = items.Count();
             if (position < 0) position += count;
             if (position < 0 || position >= count)
               throw py::index_error("item index out of range");
             return items.Item(veld::Variant(static_cast<int32_t>(position + 1)));
           })
      .def("__getitem__", [](const KvoGeneralItems& items,
                             const std::string& key) { return items.Item(veld::Variant(key)); })
      .def("Item", &KvoGeneralItems::Item, py::arg("vntIndexKey"))
      .def("Remove", &KvoGeneralItems::Remove, py::arg("vntIndexKey"))
      .def("Add", &KvoGeneralItems::Add, py::arg("Name"), py::arg("Value") = "",
           py::arg("TypeString") = "", py::arg("ExtraValue") = "", py::arg("sKey") = "")
      .def("AddItem", &KvoGeneralItems::AddItem, py::arg("cItem"), py::arg("sKey") = "")
      .def("GetItemByName", &KvoGeneralItems::GetItemByName, py::arg("sName"))
      .def("GetItemValueByName", &KvoGeneralItems::GetItemValueByName, py::arg("sName"),
           py::arg("sDefault") = veld::Variant(""))
      .def("SetItemValueByName", &KvoGeneralItems::SetItemValueByName, py::arg("sName"),
           py::arg("sValue"))
      .def("SetItemValueByNameAdd", &KvoGeneralItems::SetItemValueByNameAdd, py::arg("sName"),
           py::arg("sValue"), py::arg("TypeString") = veld::Variant(""), py::arg("ExtraValue") = "",
           py::arg("sKey") = "")
      .def("RemoveItemByName", &KvoGeneralItems::RemoveItemByName, py::arg("sName"))
      .def("GetItemValue", &KvoGeneralItems::GetItemValue, py::arg("vtIndexKey"))
      .def("SetItemValue", &KvoGeneralItems::SetItemValue, py::arg("vtIndexKey"), py::arg("sValue"))
      .def("RootTagCount", &KvoGeneralItems::RootTagCount)
      .def("RootTagItem", &KvoGeneralItems::RootTagItem, py::arg("vntIndexKey"))
      .def(
          "GetRootTag",
          [](const KvoGeneralItems& items, const std::string& name) {
            std::string value;
            const int32_t found = items.GetRootTag(name, &value);
            return py::make_tuple(found, value);
          },
          py::arg("sName"))
      .def("SetRootTag", &KvoGeneralItems::SetRootTag, py::arg("sName"), py::arg("sValue"))
      .def("SetRootTagItem", &KvoGeneralItems::SetRootTagItem, py::arg("cItem"))
      .def("RemoveRootTag", &KvoGeneralItems::RemoveRootTag, py::arg("vntIndexKey"))
      .def("Reset", &KvoGeneralItems::Reset)
      .def(
          "CopyFrom",
          [](KvoGeneralItems& self, const std::shared_ptr<KvoGeneralItems>& other) {
            return self.CopyFrom(other);
          },
          py::arg("cNewItem"))
      .def(
          "Save",
          [](const KvoGeneralItems& items, const std::string& root, const std::string& tag) {
            std::string xml;
            std::string error;
            const bool ok = items.Save(xml, root, tag, &error);
            return py::make_tuple(ok, xml, error);
          },
          py::arg("sRootKey") = "group", py::arg("sItemTag") = "option")
      .def(
          "SaveFile",
          [](const KvoGeneralItems& items, const std::string& file, const std::string& root,
             const std::string& tag) {
            std::string error;
            const bool ok = items.SaveFile(file, root, tag, &error);
            return py::make_tuple(ok, error);
          },
          py::arg("sFilename"), py::arg("sRootKey") = "group", py::arg("sItemTag") = "option")
      .def(
          "Parse",
          [](KvoGeneralItems& items, const std::string& xml, bool name_as_key,
             const std::string& tag) {
            std::string error;
            const bool ok = items.Parse(xml, name_as_key, tag, &error);
            return py::make_tuple(ok, error);
          },
          py::arg("sItemsXml"), py::arg("bNameAsKey") = false, py::arg("sItemTag") = "")
      .def(
          "ParseFile",
          [](KvoGeneralItems& items, const std::string& file, bool name_as_key,
             const std::string& tag) {
            std::string error;
            bool ok = false;
            {
              py::gil_scoped_release release;
              ok = items.ParseFile(file, name_as_key, tag, &error);
            }
            return py::make_tuple(ok, error);
          },
          py::arg("sFilename"), py::arg("bNameAsKey") = false, py::arg("sItemTag") = "");
}

}  // namespace veld_python
