// Parsing XML text into a document with the library's loading rules.
#ifndef VELD_XML_XML_PARSER_H_
#define VELD_XML_XML_PARSER_H_

#include <string>
#include <string_view>

#include "veld/xml/xml_parse_error.h"
#include "xml/xml_handles.h"

namespace veld::xml_internal {

// What a document held when it was parsed, noted by the parser on the way,
// so that users need not walk the whole tree to find out. Each fact is
// conservative: false means the document surely held no such thing.
struct ParseFacts {
  // A namespace declaration, or an element or attribute name with a prefix
  // (xml:space and xml:lang included).
  bool namespaces = false;
  // A document type declaration, so that entity reference nodes may exist.
  bool doctype = false;
  // Whitespace-only text kept (under xml:space="preserve" or in xsl:text).
  bool blank_text = false;
  // An element inside another element of the same name.
  bool nested_same_name = false;

  // None of the above.
  bool Plain() const { return !namespaces && !doctype && !blank_text && !nested_same_name; }
  // The facts of a document nobody looked at: anything may be in it.
  static ParseFacts Unknown() { return {true, true, true, true}; }
};

struct ParseResult {
  // Null when the text is not a well-formed (namespace-well-formed) document.
  DocPtr doc;
  XmlParseError error;
  ParseFacts facts;
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

// The same for the file at `path`, read as the parser goes, with the
// encoding that its byte order mark and declaration give. A file that cannot
// be opened or read gives the file error (not found, access denied, ...).
ParseResult ParseFileDocument(const std::string& path);

// Told of the elements of a document as the parser meets them, so that a
// document far larger than memory can be read a part at a time.
class ParseListener {
 public:
  virtual ~ParseListener() = default;
  // `element` was just made, with its attributes and namespaces, and linked
  // as the last child of its parent (the document node for the root).
  virtual void ElementStarted(xmlNodePtr element) = 0;
  // `element` and everything below it are complete. The listener may
  // unlink and free `element` and its preceding siblings, nothing else.
  // Whitespace-only text is still in the tree (see DropBlankTextBelow).
  virtual void ElementEnded(xmlNodePtr element) = 0;
};

struct StreamResult {
  // False when the file is not a well-formed document; `error` says why.
  bool ok = false;
  XmlParseError error;
  // As ParseResult's, except that `doctype` alone tells of entity
  // references (no expansion check is made) and `blank_text` is never set.
  ParseFacts facts;
};

// Parses the file at `path` as ParseFileDocument does, telling `listener`
// of each element, and keeps no document. Failures carry no line text. What
// the listener throws stops the parse and is thrown again.
StreamResult StreamFileDocument(const std::string& path, ParseListener& listener);

// Removes whitespace-only text nodes below `top` as DropBlankText does in
// its document, given what `top` and its ancestors keep. True when it kept
// any.
bool DropBlankTextBelow(xmlNodePtr top);

// Removes whitespace-only text nodes, except below xml:space="preserve" and
// directly inside xsl:text. True when it kept any.
bool DropBlankText(xmlDocPtr doc);

}  // namespace veld::xml_internal

#endif  // VELD_XML_XML_PARSER_H_
