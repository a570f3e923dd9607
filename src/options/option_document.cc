#include "options/option_document.h"

#include <algorithm>

#include "foundation/xml_utils.h"
#include "options/option_messages.h"
#include "runtime/text.h"
#include "veld/runtime/automation_error.h"

namespace veld::options_internal {

namespace {

constexpr char kSectionTag[] = "section";
constexpr char kGroupTag[] = "group";
constexpr char kOptionTag[] = "option";
constexpr char kRootTag[] = "config";

std::string Predicate(const char* attribute, std::string_view value) {
  return std::string("[@") + attribute + "='" + TrimmedEscaped(value) + "']";
}

// A new element `tag` with `attribute` set to `value` trimmed, appended to
// `parent`.
XmlNode AppendNamedElement(XmlDocument& doc, const XmlNode& parent, const char* tag,
                           const char* attribute, const std::string& value) {
  XmlNode element = doc.CreateElement(tag);
  element.SetAttribute(attribute, Trim(value));
  return parent.AppendChild(element);
}

}  // namespace

std::string TrimmedEscaped(std::string_view value) { return Trim(EscapeXmlText(value)); }

std::string SectionPath(std::string_view section_id) {
  std::string path = "/*/section";
  if (!section_id.empty()) path += Predicate("id", section_id);
  return path;
}

std::string GroupPath(std::string_view section_id, std::string_view group_id) {
  std::string path = SectionPath(section_id) + "/group";
  if (!group_id.empty()) path += Predicate("id", group_id);
  return path;
}

std::string OptionPath(std::string_view section_id, std::string_view group_id,
                       std::string_view option_name) {
  std::string path = GroupPath(section_id, group_id) + "/option";
  if (!option_name.empty()) path += Predicate("name", option_name);
  return path;
}

std::string SectionSelectPath(std::string_view section_id) {
  return "/*/section" + Predicate("id", section_id);
}

XmlNode GetSectionNode(XmlDocument& doc, const XmlNode& root, const std::string& section_id) {
  if (section_id.empty()) RaiseError(errnum::kCheckFailed, kNoSectionId);
  XmlNode section = doc.SelectSingleNode(SectionPath(section_id));
  if (section) return section;
  return AppendNamedElement(doc, root, kSectionTag, "id", section_id);
}

XmlNode GetGroupNode(XmlDocument& doc, const XmlNode& root, const std::string& section_id,
                     const std::string& group_id) {
  if (section_id.empty() || group_id.empty()) RaiseError(errnum::kCheckFailed, kNoGroupId);
  XmlNode group = doc.SelectSingleNode(GroupPath(section_id, group_id));
  if (group) return group;
  XmlNode section = GetSectionNode(doc, root, section_id);
  return AppendNamedElement(doc, section, kGroupTag, "id", group_id);
}

XmlNode GetOptionNode(XmlDocument& doc, const XmlNode& root, const std::string& section_id,
                      const std::string& group_id, const std::string& option_name) {
  if (section_id.empty() || group_id.empty() || option_name.empty()) {
    RaiseError(errnum::kCheckFailed, kNoOptionName);
  }
  XmlNode option = doc.SelectSingleNode(OptionPath(section_id, group_id, option_name));
  if (option) return option;
  XmlNode group = GetGroupNode(doc, root, section_id, group_id);
  return AppendNamedElement(doc, group, kOptionTag, "name", option_name);
}

std::vector<std::string> SelectSectionIds(const XmlDocument& from,
                                          const std::vector<std::string>& ids) {
  // One blank entry among real ids still means every section; callers pass
  // {""} for "all" and rely on that.
  const bool all =
      std::any_of(ids.begin(), ids.end(), [](const std::string& id) { return Trim(id).empty(); });
  if (!all) return ids;
  std::vector<std::string> every;
  for (const XmlNode& section : from.SelectNodes("/*/section")) {
    every.push_back(GetNodeAttribute(section, "id", ""));
  }
  return every;
}

void ImportSections(const XmlDocument& held, const XmlNode& held_root, const XmlDocument& source,
                    const std::vector<std::string>& ids) {
  for (const std::string& id : SelectSectionIds(source, ids)) {
    XmlNode section = source.SelectSingleNode(SectionSelectPath(id));
    if (!section) continue;
    // The held sections go by the widening path, as RemoveSection(id) does,
    // so a source section whose id is "" replaces every held section.
    RemoveSelectedNodes(held.AsNode(), SectionPath(id));
    // The source is another document: appending inserts a deep copy.
    held_root.AppendChild(section);
  }
}

XmlDocument ExportSections(const XmlDocument& held, const std::vector<std::string>& ids) {
  XmlDocument exported;
  XmlNode root = exported.AppendChild(exported.CreateElement(kRootTag));
  for (const std::string& id : SelectSectionIds(held, ids)) {
    XmlNode section = held.SelectSingleNode(SectionSelectPath(id));
    if (section) root.AppendChild(section);  // a deep copy, from another document
  }
  return exported;
}

}  // namespace veld::options_internal
