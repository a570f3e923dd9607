// KvoOption: one option group copied between the held document and a
// registry key, through a KvoRegistry and its values XML.
#include "options/option_messages.h"
#include "veld/options/kvo_option.h"
#include "veld/registry/kvo_registry.h"

namespace veld {

namespace oi = options_internal;

bool KvoOption::LoadOptionFromRegistry(const std::string& sFullKeyName,
                                       const std::string& sSectionID, const std::string& sGroupID) {
  bool result = false;
  Recorded([&] {
    std::string values_xml;
    {
      KvoRegistry registry;
      // The registry's record is raised, so it becomes this object's record.
      if (!registry.GetKeyValuesToXml(sFullKeyName, values_xml, "group", sGroupID)) {
        registry.RaiseLastError();
        return;
      }
    }
    XmlDocument values;
    if (!values.LoadXml(values_xml)) Fail(oi::kRegistryValuesNotXml);
    XmlDocument wrapped;
    XmlNode root = wrapped.AppendChild(wrapped.CreateElement("config"));
    XmlNode section = root.AppendChild(wrapped.CreateElement("section"));
    section.SetAttribute("id", sSectionID);
    section.AppendChild(values.DocumentElement());
    result = LoadOptionFromXml(wrapped.Xml(), sSectionID);
  });
  return result;
}

bool KvoOption::SaveOptionToRegistry(const std::string& sFullKeyName, const std::string& sSectionID,
                                     const std::string& sGroupID) {
  bool result = false;
  Recorded([&] {
    std::string options_xml;
    if (!SaveOptionToXml(options_xml, sSectionID)) return;
    XmlDocument options;
    if (!options.LoadXml(options_xml)) Fail(oi::kOptionsNotXml);
    // The group id goes into the expression as it is: not trimmed, not escaped.
    const XmlNode group = options.SelectSingleNode("//group[@id='" + sGroupID + "']");
    const std::string values_xml = group ? group.Xml() : "";
    KvoRegistry registry;
    if (!registry.SetKeyValuesFromXml(sFullKeyName, values_xml)) {
      registry.RaiseLastError();
      return;
    }
    result = true;
  });
  return result;
}

}  // namespace veld
