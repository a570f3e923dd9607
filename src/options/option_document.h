// The option document behind KvoOption: the XPath addressing that every
// option operation shares, the steps that find or create sections, groups
// and options, and the section-level import and export.
//
// These steps raise instead of recording; the KvoOption member that runs
// them records whatever they raise, which leaves the same record and result
// as a step that records and hands back its failure result.
#ifndef VELD_OPTIONS_OPTION_DOCUMENT_H_
#define VELD_OPTIONS_OPTION_DOCUMENT_H_

#include <string>
#include <string_view>
#include <vector>

#include "veld/xml/xml_document.h"

namespace veld::options_internal {

// EscapeXmlText of `value`, then trimmed of blanks: the text that goes into
// a predicate. Entities stay literal, so a value holding one of the five
// escaped characters matches only an attribute that holds the entity text.
std::string TrimmedEscaped(std::string_view value);

// "/*/section", with "[@id='...']" unless the id is "".
std::string SectionPath(std::string_view section_id);
// SectionPath + "/group", with "[@id='...']" unless the group id is "".
std::string GroupPath(std::string_view section_id, std::string_view group_id);
// GroupPath + "/option", with "[@name='...']" unless the name is "".
std::string OptionPath(std::string_view section_id, std::string_view group_id,
                       std::string_view option_name);
// "/*/section[@id='...']" whatever the id, "" included: the path of one
// section when sections are imported or exported.
std::string SectionSelectPath(std::string_view section_id);

// The first element that the level's path selects in `doc`; when there is
// none, creates it and every missing level above it, each appended at the
// end of its parent (a section to `root`) with its "id" or "name" attribute
// set to the id or name trimmed of blanks. An empty id or name raises the
// check failure of the level: "No Section ID specified.", "No SectionID/Group
// ID specified.", "No SectionID/GroupID/OptionName specified.".
XmlNode GetSectionNode(XmlDocument& doc, const XmlNode& root, const std::string& section_id);
XmlNode GetGroupNode(XmlDocument& doc, const XmlNode& root, const std::string& section_id,
                     const std::string& group_id);
XmlNode GetOptionNode(XmlDocument& doc, const XmlNode& root, const std::string& section_id,
                      const std::string& group_id, const std::string& option_name);

// The section ids to move: `ids` as it is, unless one of its entries is
// blank; then the "id" of every section of `from` ("/*/section"), in
// document order, "" for a section without one.
std::vector<std::string> SelectSectionIds(const XmlDocument& from,
                                          const std::vector<std::string>& ids);

// For each selected id whose section (SectionSelectPath) `source` has:
// removes the held sections that SectionPath(id) selects, then appends a
// deep copy of the source's first such section to `held_root`. Ids the
// source lacks leave the held sections alone. A failure raises; the sections
// imported before it stay.
void ImportSections(const XmlDocument& held, const XmlNode& held_root, const XmlDocument& source,
                    const std::vector<std::string>& ids);

// A new document with a "config" root holding deep copies of the held
// document's selected sections, in the order of the ids; ids the held
// document lacks are skipped.
XmlDocument ExportSections(const XmlDocument& held, const std::vector<std::string>& ids);

}  // namespace veld::options_internal

#endif  // VELD_OPTIONS_OPTION_DOCUMENT_H_
