// The fixed messages that KvoXmlHelper records for its own check failures
// (number -1). Callers compare against these texts.
#ifndef VELD_XMLHELPER_XML_HELPER_MESSAGES_H_
#define VELD_XMLHELPER_XML_HELPER_MESSAGES_H_

namespace veld::xml_helper_messages {

inline constexpr char kLoadXmlFailed[] = "Failed to load xml data.";
// Followed by the file name and ".".
inline constexpr char kLoadFileFailed[] = "Failed to load data from file - ";
// Followed by the style sheet's parse error reason (not its file name) and ".".
inline constexpr char kLoadXslFailed[] = "Failed to load XSL file - ";

}  // namespace veld::xml_helper_messages

#endif  // VELD_XMLHELPER_XML_HELPER_MESSAGES_H_
