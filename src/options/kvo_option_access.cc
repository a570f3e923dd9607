// KvoOption: reading, writing and removing single options, groups and
// sections of the held document.
#include <memory>

#include "foundation/xml_utils.h"
#include "options/option_document.h"
#include "options/option_messages.h"
#include "veld/options/kvo_option.h"

namespace veld {

namespace oi = options_internal;

std::string KvoOption::GetOption(const std::string& sOptName, const std::string& sSectionID,
                                 const std::string& sGroupID, const std::string& sDefValue) {
  std::string result = sDefValue;
  Recorded([&] {
    const std::string path = oi::OptionPath(sSectionID, sGroupID, sOptName);
    XmlNode option = m_cXmlDom.SelectSingleNode(path);
    if (!option) Fail(oi::kOptionNotFound + path);
    result = GetNodeAttributeOrText(option, "value", sDefValue);
  });
  return result;
}

bool KvoOption::SetOption(const std::string& sOptName, const std::string& sOptValue,
                          const std::string& sSectionID, const std::string& sGroupID) {
  bool result = false;
  Recorded([&] {
    XmlNode option = m_cXmlDom.SelectSingleNode(oi::OptionPath(sSectionID, sGroupID, sOptName));
    if (!option) {
      XmlNode root = GetRootElement();
      if (!root) return;
      option = oi::GetOptionNode(m_cXmlDom, root, sSectionID, sGroupID, sOptName);
    }
    option.SetAttribute("value", sOptValue);
    result = true;
  });
  return result;
}

bool KvoOption::SetGroupOptions(const std::string& sOptionsXml, const std::string& sSectionID,
                                const std::string& sGroupID) {
  bool result = false;
  Recorded([&] {
    KvoGeneralItems items;
    std::string message;
    if (!items.Parse(sOptionsXml, false, "", &message)) Fail(message);
    for (const auto& item : items) {
      // SetOption keeps its own record when it fails.
      if (!SetOption(item->Name, item->Value, sSectionID, sGroupID)) return;
    }
    result = true;
  });
  return result;
}

bool KvoOption::RemoveSection(const std::string& sSectionID) {
  bool result = false;
  Recorded([&] { result = RemoveSelectedNodes(m_cXmlDom.AsNode(), oi::SectionPath(sSectionID)); });
  return result;
}

bool KvoOption::RemoveOptionGroup(const std::string& sSectionID, const std::string& sGroupID) {
  bool result = false;
  Recorded([&] {
    result = RemoveSelectedNodes(m_cXmlDom.AsNode(), oi::GroupPath(sSectionID, sGroupID));
  });
  return result;
}

bool KvoOption::RemoveOption(const std::string& sSectionID, const std::string& sGroupID,
                             const std::string& sOptName) {
  bool result = false;
  Recorded([&] {
    result =
        RemoveSelectedNodes(m_cXmlDom.AsNode(), oi::OptionPath(sSectionID, sGroupID, sOptName));
  });
  return result;
}

XmlNodeList KvoOption::GetOptionGroup(const std::string& sSectionID, const std::string& sGroupID) {
  XmlNodeList result;
  Recorded([&] { result = m_cXmlDom.SelectNodes(oi::OptionPath(sSectionID, sGroupID, "")); });
  return result;
}

std::shared_ptr<KvoGeneralItems> KvoOption::GetGroupOptions(const std::string& sSectionID,
                                                            const std::string& sGroupID) {
  std::shared_ptr<KvoGeneralItems> result;
  Recorded([&] {
    const XmlNodeList options = m_cXmlDom.SelectNodes(oi::OptionPath(sSectionID, sGroupID, ""));
    if (options.Length() == 0) return;
    auto items = std::make_shared<KvoGeneralItems>();
    for (const XmlNode& option : options) {
      std::string name = GetNodeAttribute(option, "name", "");
      std::string value = GetNodeAttributeOrText(option, "value", "");
      // Options without a value are left out on purpose: callers read a
      // missing item as "not set".
      if (name.empty() || value.empty()) continue;
      items->Add(name, value, GetNodeAttribute(option, "type", ""),
                 GetNodeAttribute(option, "extra", ""));
    }
    result = std::move(items);
  });
  return result;
}

bool KvoOption::SetOptionGroup(const std::string& sSectionID, const std::string& sGroupID,
                               const XmlNodeList& cXmlNodeList) {
  bool result = false;
  Recorded([&] {
    if (!cXmlNodeList) Fail(oi::kInvalidNodeList);
    XmlNode root = GetRootElement();
    if (!root) return;
    XmlNode group = oi::GetGroupNode(m_cXmlDom, root, sSectionID, sGroupID);
    for (const XmlNode& node : cXmlNodeList) group.AppendChild(node.CloneNode(true));
    result = true;
  });
  return result;
}

}  // namespace veld
