// The fixed messages that KvoOption records (number -1). Callers compare them
// as they stand, so the misspelt "Faield" is kept.
#ifndef VELD_OPTIONS_OPTION_MESSAGES_H_
#define VELD_OPTIONS_OPTION_MESSAGES_H_

namespace veld::options_internal {

inline constexpr char kNoSourceOptionFile[] = "No source option filename specified.";
// Followed by the file name and ".".
inline constexpr char kOptionFileNotFound[] = "Option file not found - ";
inline constexpr char kOptionFileNotXml[] = "Faield to load option file(Not a valid xml format?).";
inline constexpr char kNoOptionXml[] = "No option xml specified.";
inline constexpr char kOptionDataNotXml[] = "Faield to load option data(Not a valid xml format?).";
inline constexpr char kNoTargetOptionFile[] = "No target option filename specified.";
// A save whose text would not load again is refused; the file stays as it was.
inline constexpr char kOptionsNotRepresentable[] =
    "Option data holds characters that an XML file cannot hold; nothing was saved.";

// Followed by the XPath expression that was searched.
inline constexpr char kOptionNotFound[] = "Specified option not found - ";
inline constexpr char kInvalidNodeList[] = "Invalid input node list to save.";

inline constexpr char kNoSectionId[] = "No Section ID specified.";
inline constexpr char kNoGroupId[] = "No SectionID/Group ID specified.";
inline constexpr char kNoOptionName[] = "No SectionID/GroupID/OptionName specified.";

inline constexpr char kRegistryValuesNotXml[] = "Failed to load Registry values xml.";
inline constexpr char kOptionsNotXml[] = "Failed to load options xml.";

}  // namespace veld::options_internal

#endif  // VELD_OPTIONS_OPTION_MESSAGES_H_
