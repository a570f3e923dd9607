// KvoOption: a program's options in one XML document, addressed by section,
// group and option name.
//
// The held document (m_cXmlDom) has this shape:
//
//   <config>
//     <section id="...">
//       <group id="...">
//         <option name="..." value="..." [type="..."] [extra="..."]/>
//
// A new object, and Reset, give an empty "config" root. Whole sections move
// between the held document and files or XML texts (LoadOption...,
// SaveOption...); single options, whole groups and sections are read,
// written and removed in place (GetOption, SetOption, ...).
//
// Addressing. Section ids, group ids and option names go into XPath
// predicates ("[@id='...']", "[@name='...']") escaped for XML and trimmed of
// blanks; ids are compared exactly (case matters). An empty id or name widens
// a lookup to every element of that level: RemoveSection("") removes every
// section, GetOption("x") finds the first option "x" anywhere. XPath does not
// decode entities, so a lookup of a name or id that holds one of & " < > '
// never matches; callers rely on that. Options with such names are still
// created and stored literally (SetOption, SetGroupOptions), and come back
// through the group readers (GetOptionGroup, GetGroupOptions).
//
// Failures. Every member except Encode, Decode, GenerateGUID and the frame's
// own RaiseLastError, GetLastError and Reset records instead of raising: it
// clears the record on entry, and on failure records it and returns false,
// "" (or the default it was given), an unset node list or nullptr. The
// library's own check failures are recorded with number -1 and the messages
// quoted below; failing file and XML operations record their own numbers.
// Read the record with GetLastError or raise it with RaiseLastError.
#ifndef VELD_OPTIONS_KVO_OPTION_H_
#define VELD_OPTIONS_KVO_OPTION_H_

#include <memory>
#include <string>
#include <vector>

#include "veld/export.h"
#include "veld/foundation/kvo_enums.h"
#include "veld/foundation/worker_frame.h"
#include "veld/items/kvo_general_items.h"
#include "veld/runtime/variant.h"
#include "veld/xml/xml_node_list.h"

namespace veld {

class VELD_EXPORT KvoOption : public DocumentFrame {
 public:
  // Runs Reset: an empty document with an empty "config" root.
  KvoOption();
  ~KvoOption();

  // --- Whole sections: files and XML texts ---
  //
  // The plural members take a list of section ids. The list is used as it
  // is, unless one of its entries is empty or blank: then it stands for every
  // section of the document the sections come from (the source when loading,
  // the held document when saving), in document order. An empty list selects
  // no section. The list is only read, never changed; it is a reference to
  // keep the interface's in/out shape. The singular members pass a list of
  // their one id, so their default "" means every section.
  //
  // Loading merges by whole sections: each selected section of the source
  // replaces every held section of the same id (its groups and options are
  // not merged) and goes to the end of the held document. Held sections that
  // are not selected, or that the source lacks, stay as they are. The source
  // may have a root element of any name. A failed load or parse leaves the
  // held document unchanged.

  // Loads sections from the XML file `sOptFile`. True on success, also when
  // a selected section is missing from the file. Records "No source option
  // filename specified." for an empty name, "Option file not found - " +
  // sOptFile + "." when no ordinary file has that path, and "Faield to load
  // option file(Not a valid xml format?)." when it cannot be read as XML.
  bool LoadOption(const std::string& sOptFile, const std::string& sSectionID = "");
  bool LoadOptions(const std::string& sOptFile, std::vector<std::string>& sSectionID);

  // As LoadOption, from the XML text `sXml`. Records "No option xml
  // specified." for an empty text and "Faield to load option data(Not a valid
  // xml format?)." for text that is not XML.
  bool LoadOptionFromXml(const std::string& sXml, const std::string& sSectionID = "");
  bool LoadOptionsFromXml(const std::string& sXml, std::vector<std::string>& sSectionID);

  // Writes the selected held sections, under a new "config" root, to the file
  // `sOptFile`, replacing the whole file (sections of the old file that are
  // not written are gone). Selected ids the held document lacks are skipped,
  // so a missing id writes an empty "config" root. Records "No target option
  // filename specified." for an empty name, and the file system's error when
  // the file cannot be written.
  //
  // An existing file is first copied to sOptFile + ".bak" and deleted (each
  // step's failure is ignored); after a successful write the ".bak" copy is
  // removed, after a failed one it is copied back to sOptFile and stays on
  // disk. The held document is never changed.
  bool SaveOption(const std::string& sOptFile, const std::string& sSectionID = "");
  bool SaveOptions(const std::string& sOptFile, std::vector<std::string>& sSectionID);

  // Sets `sXml` to "" and then to the XML text of the selected held sections
  // under a new "config" root. True on success.
  bool SaveOptionToXml(std::string& sXml, const std::string& sSectionID = "");
  bool SaveOptionsToXml(std::string& sXml, std::vector<std::string>& sSectionID);

  // --- Single options, groups and sections ---

  // The option's "value" attribute or, when it has none, its text ("" for an
  // empty element). When no option matches, returns `sDefValue` and records
  // "Specified option not found - " followed by the XPath expression that
  // was searched.
  std::string GetOption(const std::string& sOptName, const std::string& sSectionID = "",
                        const std::string& sGroupID = "", const std::string& sDefValue = "");

  // Sets the "value" attribute of the first matching option (its other
  // attributes stay). When none matches, creates the option, and its group
  // and section when they are missing, each appended at the end of its
  // parent; that needs all three names, else records "No SectionID/GroupID/
  // OptionName specified." and returns false.
  bool SetOption(const std::string& sOptName, const std::string& sOptValue,
                 const std::string& sSectionID, const std::string& sGroupID);

  // Parses `sOptionsXml` as an items document (see KvoGeneralItems::Parse)
  // and sets each item as an option of the group, in order. On a parse
  // failure records the parser's message ("Failed to load items Xml.", ...);
  // stops at the first option that cannot be set, with its record.
  bool SetGroupOptions(const std::string& sOptionsXml, const std::string& sSectionID,
                       const std::string& sGroupID);

  // Remove every matching section, group or option. True also when nothing
  // matched; empty arguments widen the match (see Addressing).
  bool RemoveSection(const std::string& sSectionID = "");
  bool RemoveOptionGroup(const std::string& sSectionID = "", const std::string& sGroupID = "");
  bool RemoveOption(const std::string& sSectionID = "", const std::string& sGroupID = "",
                    const std::string& sOptName = "");

  // The "option" elements of the matching groups in document order, possibly
  // none. They are nodes of the held document itself: changing them changes
  // the held options, and the list stays valid while the caller holds it,
  // even after Reset. An unset list when the lookup fails.
  XmlNodeList GetOptionGroup(const std::string& sSectionID, const std::string& sGroupID);

  // A new collection, owned by the caller, with one item per option of the
  // matching groups that has both a non-empty name and a non-empty value
  // (Name, Value, TypeString = "type", ExtraValue = "extra"; no keys). Options
  // with an empty value are left out on purpose. nullptr when no option
  // matches, or on failure.
  std::shared_ptr<KvoGeneralItems> GetGroupOptions(const std::string& sSectionID,
                                                   const std::string& sGroupID);

  // Appends a deep copy of every node of `cXmlNodeList`, in order and
  // whatever its name, to the group, creating the group and its section when
  // they are missing. Options already in the group stay, so names may repeat.
  // Records "Invalid input node list to save." for an unset list and "No
  // SectionID/Group ID specified." when either id is empty, even if groups
  // exist. A node that cannot go into an element (an attribute, a document)
  // stops the copy with the XML layer's error; nodes copied before it stay.
  bool SetOptionGroup(const std::string& sSectionID, const std::string& sGroupID,
                      const XmlNodeList& cXmlNodeList);

  // --- Options and the registry ---

  // Replaces the held section `sSectionID` with one holding only the group
  // `sGroupID`, filled from the string and number values of the registry key
  // `sFullKeyName` (see KvoRegistry::GetKeyValuesToXml). Other groups of that
  // section are dropped, as every load replaces whole sections. A registry
  // failure becomes this object's record (its number, text and source).
  bool LoadOptionFromRegistry(const std::string& sFullKeyName, const std::string& sSectionID,
                              const std::string& sGroupID = "general");

  // Writes the options of group `sGroupID` of section `sSectionID` as string
  // values of the registry key `sFullKeyName`, creating the key when needed.
  // The group is looked up with `sGroupID` exactly as given, blanks included
  // (other lookups trim); a group the section lacks writes nothing. A
  // registry failure becomes this object's record.
  bool SaveOptionToRegistry(const std::string& sFullKeyName, const std::string& sSectionID,
                            const std::string& sGroupID = "general");

  // --- Value encoding ---
  //
  // Encode masks a text so that it is not readable at a glance: "-e", up to
  // four random filler bytes, a random mask byte, the text's bytes in the
  // "ANSI" code page in reverse order each XOR the mask, the filler count,
  // "e-", every byte as two upper-case hexadecimal digits. It hides, it does
  // not protect. Each call gives a different text; characters the code page
  // cannot hold come back from Decode as "?".
  //
  // Both never fail and never record: on any failure (a Null, a code page
  // that cannot be opened, a malformed body) they return the text of
  // `sEncStr` unchanged. Decode returns every text that lacks the "-e" and
  // "e-" marks unchanged, so plain and encoded values can be mixed. `sKey` is
  // accepted and not used.
  std::string Encode(const Variant& sEncStr, const std::string& sKey = "");
  std::string Decode(const Variant& sEncStr, const std::string& sKey = "");

  // A new GUID text, as KvoUtils::KvoGenerateGUID gives it. Not a recording
  // member: a failure reaches the caller as AutomationError and the record is
  // left as it was.
  std::string GenerateGUID(KvoGuidFormatEnum eFormat = KVO_GUID_FORMAT_GENERAL);

 private:
  // Merges the selected sections of `source` into the held document.
  // Runs inside a recording member; false with the root step's record when
  // the held document has no root and none can be made.
  bool ImportInto(const XmlDocument& source, const std::vector<std::string>& section_ids);
};

}  // namespace veld

#endif  // VELD_OPTIONS_KVO_OPTION_H_
