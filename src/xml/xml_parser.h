// Parsing XML text into a document with the library's loading rules.
#ifndef VELD_XML_XML_PARSER_H_
#define VELD_XML_XML_PARSER_H_

#include <string>
#include <string_view>

#include "veld/xml/xml_parse_error.h"
#include "xml/xml_handles.h"

namespace veld::xml_internal {

struct ParseResult {
  // Null when the text is not a well-formed (namespace-well-formed) document.
  DocPtr doc;
  XmlParseError error;
};

// How the encoding of the bytes is decided.
enum class TextEncoding {
  // The bytes are UTF-8; an encoding declaration in them is ignored.
  kUtf8,
  // Byte order mark and encoding declaration decide, as for a file.
  kDeclared,
};

// Parses `bytes` without touching the network, loading external DTDs or
// expanding external entities, and drops whitespace-only text nodes (see
// XmlDocument). `url` names the source in errors and the document ("" for
// none). Never prints.
ParseResult ParseDocument(std::string_view bytes, TextEncoding encoding, const std::string& url);

// Removes whitespace-only text nodes, except below xml:space="preserve" and
// directly inside xsl:text.
void DropBlankText(xmlDocPtr doc);

}  // namespace veld::xml_internal

#endif  // VELD_XML_XML_PARSER_H_
