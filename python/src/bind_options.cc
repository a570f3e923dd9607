// KvoOption and KvoRegistry, and the small DOM surface they exchange
// (XmlDocument, XmlNodeList, XmlNode: enough to read and pass node lists).
#include <cstdint>
#include <string>
#include <vector>

#include <pybind11/stl.h>

#include "veld/options/kvo_option.h"
#include "veld/registry/kvo_registry.h"
#include "veld/xml/xml_document.h"
#include "veld/xml/xml_node.h"
#include "veld/xml/xml_node_list.h"

#include "bindings.h"

namespace veld_python {

namespace {

void BindXml(py::module_& m) {
  using veld::XmlDocument;
  using veld::XmlNode;
  using veld::XmlNodeList;
  py::class_<XmlNode>(m, "XmlNode")
      .def_property_readonly("Xml", &XmlNode::Xml)
      .def_property_readonly("NodeName", &XmlNode::NodeName)
      .def_property_readonly("Text", &XmlNode::Text)
      .def("GetAttribute", &XmlNode::GetAttribute, py::arg("name"));
  py::class_<XmlNodeList>(m, "XmlNodeList")
      .def(py::init<>())
      .def_property_readonly("Length", &XmlNodeList::Length)
      .def("__len__", &XmlNodeList::Length)
      .def("Item", &XmlNodeList::Item, py::arg("index"))  // 0-based, as in the DOM
      .def("__getitem__", [](const XmlNodeList& list, int32_t index) {
        if (index < 0) index += list.Length();
        if (index < 0 || index >= list.Length()) throw py::index_error("node index out of range");
        return list.Item(index);
      });
  py::class_<XmlDocument>(m, "XmlDocument")
      .def(py::init<>())
      .def("LoadXml", &XmlDocument::LoadXml, py::arg("text"))
      .def("Load", &XmlDocument::Load, py::arg("path"), ReleaseGil())
      .def_property_readonly("Xml", &XmlDocument::Xml)
      .def("SelectNodes", &XmlDocument::SelectNodes, py::arg("xpath"));
}

void BindRegistry(py::module_& m) {
  using veld::KvoRegistry;
  py::class_<KvoRegistry>(m, "KvoRegistry")
      .def(py::init<>())
      .def("GetLastError", &KvoRegistry::GetLastError)
      .def("RaiseLastError", &KvoRegistry::RaiseLastError)
      .def("CreateKey", &KvoRegistry::CreateKey, py::arg("sFullKeyName"))
      .def("DeleteKey", &KvoRegistry::DeleteKey, py::arg("sFullKeyName"))
      .def("GetStringValue", WithOutput<KvoRegistry>(&KvoRegistry::GetStringValue),
           py::arg("sFullKeyName"), py::arg("sValueName"))
      .def("GetDWORDValue", WithOutput<KvoRegistry>(&KvoRegistry::GetDWORDValue),
           py::arg("sFullKeyName"), py::arg("sValueName"))
      .def(
          "GetBinaryValue",
          [](KvoRegistry& self, const std::string& key, const std::string& name) {
            std::vector<uint8_t> value;
            const int32_t result = self.GetBinaryValue(key, name, value);
            return py::make_tuple(
                result, py::bytes(reinterpret_cast<const char*>(value.data()), value.size()));
          },
          py::arg("sFullKeyName"), py::arg("sValueName"))
      .def("SetStringValue", &KvoRegistry::SetStringValue, py::arg("sFullKeyName"),
           py::arg("sValueName"), py::arg("sValue"))
      .def("SetDWORDValue", &KvoRegistry::SetDWORDValue, py::arg("sFullKeyName"),
           py::arg("sValueName"), py::arg("lValue"))
      .def(
          "SetBinaryValue",
          [](KvoRegistry& self, const std::string& key, const std::string& name,
             const py::bytes& bytes) {
            const std::string raw = bytes;
            return self.SetBinaryValue(key, name, std::vector<uint8_t>(raw.begin(), raw.end()));
          },
          py::arg("sFullKeyName"), py::arg("sValueName"), py::arg("byteValue"))
      .def(
          "GetKeyValuesToXml",
          [](KvoRegistry& self, const std::string& key, const std::string& root,
             const std::string& group) {
            std::string xml;
            const bool ok = self.GetKeyValuesToXml(key, xml, root, group);
            return py::make_tuple(ok, xml);
          },
          py::arg("sFullKeyName"), py::arg("sXmlRootTag") = "group",
          py::arg("sGroupID") = "general")
      .def("SetKeyValuesFromXml", &KvoRegistry::SetKeyValuesFromXml, py::arg("sFullKeyName"),
           py::arg("sValuesXml"));
}

}  // namespace

void BindOptions(py::module_& m) {
  using veld::KvoOption;
  BindXml(m);
  BindRegistry(m);
  // The section lists of the plural members are only read.
  using Sections = std::vector<std::string>;
  py::class_<KvoOption>(m, "KvoOption")
      .def(py::init<>())
      .def("GetLastError", &KvoOption::GetLastError)
      .def("RaiseLastError", &KvoOption::RaiseLastError)
      .def("Reset", &KvoOption::Reset)
      .def("LoadOption", &KvoOption::LoadOption, py::arg("sOptFile"), py::arg("sSectionID") = "",
           ReleaseGil())
      .def(
          "LoadOptions",
          [](KvoOption& self, const std::string& file, Sections sections) {
            py::gil_scoped_release release;
            return self.LoadOptions(file, sections);
          },
          py::arg("sOptFile"), py::arg("sSectionID"))
      .def("LoadOptionFromXml", &KvoOption::LoadOptionFromXml, py::arg("sXml"),
           py::arg("sSectionID") = "")
      .def(
          "LoadOptionsFromXml",
          [](KvoOption& self, const std::string& xml, Sections sections) {
            return self.LoadOptionsFromXml(xml, sections);
          },
          py::arg("sXml"), py::arg("sSectionID"))
      .def("SaveOption", &KvoOption::SaveOption, py::arg("sOptFile"), py::arg("sSectionID") = "",
           ReleaseGil())
      .def(
          "SaveOptions",
          [](KvoOption& self, const std::string& file, Sections sections) {
            py::gil_scoped_release release;
            return self.SaveOptions(file, sections);
          },
          py::arg("sOptFile"), py::arg("sSectionID"))
      .def(
          "SaveOptionToXml",
          [](KvoOption& self, const std::string& section) {
            std::string xml;
            const bool ok = self.SaveOptionToXml(xml, section);
            return py::make_tuple(ok, xml);
          },
          py::arg("sSectionID") = "")
      .def(
          "SaveOptionsToXml",
          [](KvoOption& self, Sections sections) {
            std::string xml;
            const bool ok = self.SaveOptionsToXml(xml, sections);
            return py::make_tuple(ok, xml);
          },
          py::arg("sSectionID"))
      .def("GetOption", &KvoOption::GetOption, py::arg("sOptName"), py::arg("sSectionID") = "",
           py::arg("sGroupID") = "", py::arg("sDefValue") = "")
      .def("SetOption", &KvoOption::SetOption, py::arg("sOptName"), py::arg("sOptValue"),
           py::arg("sSectionID"), py::arg("sGroupID"))
      .def("SetGroupOptions", &KvoOption::SetGroupOptions, py::arg("sOptionsXml"),
           py::arg("sSectionID"), py::arg("sGroupID"))
      .def("RemoveSection", &KvoOption::RemoveSection, py::arg("sSectionID") = "")
      .def("RemoveOptionGroup", &KvoOption::RemoveOptionGroup, py::arg("sSectionID") = "",
           py::arg("sGroupID") = "")
      .def("RemoveOption", &KvoOption::RemoveOption, py::arg("sSectionID") = "",
           py::arg("sGroupID") = "", py::arg("sOptName") = "")
      .def("GetOptionGroup", &KvoOption::GetOptionGroup, py::arg("sSectionID"), py::arg("sGroupID"))
      .def("GetGroupOptions", &KvoOption::GetGroupOptions, py::arg("sSectionID"),
           py::arg("sGroupID"))
      .def("SetOptionGroup", &KvoOption::SetOptionGroup, py::arg("sSectionID"), py::arg("sGroupID"),
           py::arg("cXmlNodeList"))
      .def("LoadOptionFromRegistry", &KvoOption::LoadOptionFromRegistry, py::arg("sFullKeyName"),
           py::arg("sSectionID"), py::arg("sGroupID") = "general")
      .def("SaveOptionToRegistry", &KvoOption::SaveOptionToRegistry, py::arg("sFullKeyName"),
           py::arg("sSectionID"), py::arg("sGroupID") = "general")
      .def("Encode", &KvoOption::Encode, py::arg("sEncStr"), py::arg("sKey") = "")
      .def("Decode", &KvoOption::Decode, py::arg("sEncStr"), py::arg("sKey") = "")
      .def(
          "GenerateGUID",
          [](KvoOption& self, int32_t format) {
            return self.GenerateGUID(static_cast<veld::KvoGuidFormatEnum>(format));
          },
          py::arg("eFormat") = static_cast<int32_t>(veld::KVO_GUID_FORMAT_GENERAL));
}

}  // namespace veld_python
