#include "xml/xml_parser.h"

#include <algorithm>
#include <climits>
#include <exception>
#include <new>
#include <stdexcept>
#include <vector>

#include <libxml/SAX2.h>
#include <libxml/parserInternals.h>
#include <libxml/uri.h>

#include "veld/runtime/automation_error.h"
#include "xml/document_core.h"
#include "xml/xml_errors.h"
#include "xml/xml_file.h"
#include "xml/xml_tree.h"

namespace veld::xml_internal {
namespace {

constexpr const char* kXsltNamespace = "http://www.w3.org/1999/XSL/Transform";
constexpr size_t kMaxSrcText = 1024;

// The text entity references may stand for, in all: ten times the document,
// at least 1 MiB, at most 256 MiB.
constexpr size_t kEntityExpansionFactor = 10;
constexpr size_t kMinEntityExpansion = size_t{1} << 20;
constexpr size_t kMaxEntityExpansion = size_t{256} << 20;
constexpr char kEntityExpansionMessage[] =
    "The entity references of the document expand to more than ten times its size.";

// External entities and DTDs are refused even if some path of the parser
// asked for one; the parse options already keep it from asking.
xmlParserInputPtr DenyEntity(void* /*ctx*/, const xmlChar* /*public_id*/,
                             const xmlChar* /*system_id*/) {
  return nullptr;
}

void IgnoreExternalSubset(void* /*ctx*/, const xmlChar* /*name*/, const xmlChar* /*external_id*/,
                          const xmlChar* /*system_id*/) {}

// Each CDATA section becomes a node of its own; libxml2's default handler
// would merge adjacent sections into one, which the DOM does not.
void CDataSection(void* ctx, const xmlChar* value, int length) {
  auto* ctxt = static_cast<xmlParserCtxtPtr>(ctx);
  if (ctxt->node == nullptr) return;
  xmlNodePtr section = xmlNewCDataBlock(ctxt->myDoc, value, length);
  if (section == nullptr) {
    xmlStopParser(ctxt);
    return;
  }
  LinkChild(ctxt->node, section, nullptr);
}

// What the handlers below share during one parse.
struct ParseState {
  ErrorCollector* errors;
  ParseFacts facts;
  // Set when the document is streamed to a listener instead of kept.
  ParseListener* listener = nullptr;
  // What the listener threw; the parse stops and it is thrown again.
  std::exception_ptr thrown;
};

// Calls the listener, turning what it throws into a stopped parse: an
// exception must not unwind through libxml2's C frames.
template <class Call>
void Tell(xmlParserCtxtPtr ctxt, ParseState& state, Call call) {
  if (state.thrown) return;
  try {
    call(*state.listener);
  } catch (...) {
    state.thrown = std::current_exception();
    xmlStopParser(ctxt);
  }
}

void CollectParserError(void* user_data, xmlErrorPtr error) {
  auto* ctxt = static_cast<xmlParserCtxtPtr>(user_data);
  static_cast<ParseState*>(ctxt->_private)->errors->Add(error);
}

// libxml2's own start handler, after noting the facts of the element: its
// namespaces and prefixes, and whether an ancestor has its name.
void StartElementNs(void* ctx, const xmlChar* localname, const xmlChar* prefix, const xmlChar* uri,
                    int nb_namespaces, const xmlChar** namespaces, int nb_attributes,
                    int nb_defaulted, const xmlChar** attributes) {
  auto* ctxt = static_cast<xmlParserCtxtPtr>(ctx);
  ParseFacts& facts = static_cast<ParseState*>(ctxt->_private)->facts;
  if (prefix != nullptr || uri != nullptr || nb_namespaces > 0) facts.namespaces = true;
  // Each attribute is five pointers: localname, prefix, URI, value, end.
  for (int i = 0; i < nb_attributes && !facts.namespaces; ++i) {
    if (attributes[i * 5 + 1] != nullptr) facts.namespaces = true;
  }
  if (!facts.nested_same_name) {
    for (const xmlNode* up = ctxt->node; up != nullptr; up = up->parent) {
      if (up->type == XML_ELEMENT_NODE && xmlStrEqual(up->name, localname)) {
        facts.nested_same_name = true;
        break;
      }
    }
  }
  ParseState& state = *static_cast<ParseState*>(ctxt->_private);
  const int depth = ctxt->nodeNr;
  xmlSAX2StartElementNs(ctx, localname, prefix, uri, nb_namespaces, namespaces, nb_attributes,
                        nb_defaulted, attributes);
  if (state.listener != nullptr && ctxt->nodeNr == depth + 1) {
    xmlNodePtr element = ctxt->node;
    if (depth == 0) MarkUtf8(ctxt->myDoc);
    Tell(ctxt, state, [element](ParseListener& listener) { listener.ElementStarted(element); });
  }
}

// libxml2's own end handler, then the listener's.
void EndElementNs(void* ctx, const xmlChar* localname, const xmlChar* prefix, const xmlChar* uri) {
  auto* ctxt = static_cast<xmlParserCtxtPtr>(ctx);
  ParseState& state = *static_cast<ParseState*>(ctxt->_private);
  xmlNodePtr element = ctxt->node;
  xmlSAX2EndElementNs(ctx, localname, prefix, uri);
  if (element != nullptr && element->type == XML_ELEMENT_NODE) {
    Tell(ctxt, state, [element](ParseListener& listener) { listener.ElementEnded(element); });
  }
}

bool IsBlank(const xmlChar* text) {
  if (text == nullptr) return true;
  for (; *text != 0; ++text) {
    if (*text != ' ' && *text != '\t' && *text != '\n' && *text != '\r') return false;
  }
  return true;
}

// Whether whitespace-only text directly inside `element` is kept, given what
// its parent keeps.
bool KeepsBlanks(const xmlNode* element, bool inherited) {
  if (element->ns != nullptr && xmlStrEqual(element->ns->href, XmlText(kXsltNamespace)) &&
      xmlStrEqual(element->name, XmlText("text"))) {
    // A style sheet's literal spaces live in xsl:text; dropping them would
    // change every transform that uses it.
    return true;
  }
  for (const xmlAttr* attr = element->properties; attr != nullptr; attr = attr->next) {
    if (attr->ns == nullptr || !xmlStrEqual(attr->ns->href, XML_XML_NAMESPACE) ||
        !xmlStrEqual(attr->name, XmlText("space"))) {
      continue;
    }
    std::string value = DomNodeValue(reinterpret_cast<const xmlNode*>(attr));
    if (value == "preserve") return true;
    if (value == "default") return false;
  }
  return inherited;
}

bool IsValidUtf8(std::string_view text) {
  size_t i = 0;
  while (i < text.size()) {
    auto lead = static_cast<unsigned char>(text[i]);
    size_t extra = 0;
    if (lead < 0x80) {
      extra = 0;
    } else if ((lead & 0xE0) == 0xC0) {
      extra = 1;
    } else if ((lead & 0xF0) == 0xE0) {
      extra = 2;
    } else if ((lead & 0xF8) == 0xF0) {
      extra = 3;
    } else {
      return false;
    }
    if (text.size() - i <= extra) return false;
    for (size_t k = 1; k <= extra; ++k) {
      if ((static_cast<unsigned char>(text[i + k]) & 0xC0) != 0x80) return false;
    }
    i += extra + 1;
  }
  return true;
}

std::string LineOf(std::string_view bytes, int line) {
  if (line <= 0) return "";
  size_t start = 0;
  for (int current = 1; current < line; ++current) {
    start = bytes.find('\n', start);
    if (start == std::string_view::npos) return "";
    ++start;
  }
  size_t end = bytes.find('\n', start);
  std::string_view text = bytes.substr(start, end == std::string_view::npos ? end : end - start);
  if (!text.empty() && text.back() == '\r') text.remove_suffix(1);
  if (text.size() > kMaxSrcText) {
    text = text.substr(0, kMaxSrcText);
    // Do not cut a character in two.
    for (int k = 0; k < 3 && !IsValidUtf8(text); ++k) text.remove_suffix(1);
  }
  // The line is raw input; only hand it out when it is text we can carry.
  return IsValidUtf8(text) ? std::string(text) : std::string();
}

ParseResult Failure(int code, std::string reason, int line, int column, std::string_view bytes,
                    const std::string& url) {
  ParseResult result;
  result.error = XmlParseError(errnum::kXmlFailure, std::move(reason), line, column,
                               LineOf(bytes, line), url, code);
  return result;
}

}  // namespace

namespace {

// Parses the input `make_context` sets up, without touching the network,
// loading external DTDs or expanding external entities, and drops
// whitespace-only text nodes. `source_text` gives the document's bytes; it is
// asked only for a failure's line text.
template <class MakeContext, class SourceText>
ParseResult Parse(MakeContext make_context, TextEncoding encoding, const std::string& url,
                  SourceText source_text, ParseListener* listener = nullptr) {
  ErrorCollector errors;
  ParseState state{&errors, {}, listener, nullptr};
  // Encoding conversion errors and the like are reported without the
  // parser context; they must not reach stderr either.
  ScopedErrorCapture capture(errors);
  ParserCtxtPtr ctxt = make_context();
  // Never NOENT (would expand external entities), DTDLOAD (would fetch the
  // external subset) or HUGE (would lift the entity expansion limits).
  int options = XML_PARSE_NONET;
  if (encoding == TextEncoding::kUtf8) options |= XML_PARSE_IGNORE_ENC;
  // A streamed tree is read and freed, never changed: short texts and
  // attribute values can live inside their nodes, one allocation fewer each.
  if (listener != nullptr) options |= XML_PARSE_COMPACT;
  xmlCtxtUseOptions(ctxt.get(), options);
  ctxt->sax->resolveEntity = &DenyEntity;
  ctxt->sax->externalSubset = &IgnoreExternalSubset;
  ctxt->sax->cdataBlock = &CDataSection;
  ctxt->sax->serror = &CollectParserError;
  if (ctxt->sax->startElementNs == &xmlSAX2StartElementNs) {
    ctxt->sax->startElementNs = &StartElementNs;
  } else {
    // Not libxml2's own handler: nothing is known about the document.
    state.facts.namespaces = true;
  }
  if (listener != nullptr) {
    if (ctxt->sax->startElementNs != &StartElementNs ||
        ctxt->sax->endElementNs != &xmlSAX2EndElementNs) {
      throw std::logic_error("The XML parser's handlers cannot be streamed.");
    }
    ctxt->sax->endElementNs = &EndElementNs;
  }
  ctxt->_private = &state;

  xmlParseDocument(ctxt.get());
  DocPtr doc(ctxt->myDoc);
  ctxt->myDoc = nullptr;
  if (state.thrown) std::rethrow_exception(state.thrown);
  if (!doc || !ctxt->wellFormed || !ctxt->nsWellFormed) {
    const ErrorDetail& first = errors.First();
    std::string reason = errors.Message();
    if (reason.empty()) reason = "The document is not well-formed.";
    return Failure(first.code, std::move(reason), first.line, first.column, source_text(), url);
  }
  if (listener != nullptr) {
    // What was kept of a streamed document is of no use to anyone; only
    // the verdict and the facts are.
    state.facts.doctype = doc->intSubset != nullptr || doc->extSubset != nullptr;
    ParseResult result;
    result.facts = state.facts;
    return result;
  }
  // Entity references are kept as references, but whoever reads the text
  // gets their expansion: a few references to a large entity would make a
  // small document read as gigabytes.
  if (doc->intSubset != nullptr && doc->intSubset->entities != nullptr) {
    const size_t consumed = static_cast<size_t>(std::max(0L, xmlByteConsumed(ctxt.get())));
    const size_t limit =
        std::clamp(consumed * kEntityExpansionFactor, kMinEntityExpansion, kMaxEntityExpansion);
    if (EntityExpansionSize(doc.get(), limit) > limit) {
      return Failure(XML_ERR_ENTITY_LOOP, kEntityExpansionMessage, 0, 0, source_text(), url);
    }
  }
  MarkUtf8(doc.get());
  if (!url.empty()) doc->URL = xmlPathToURI(XmlText(url));
  state.facts.doctype = doc->intSubset != nullptr || doc->extSubset != nullptr;
  state.facts.blank_text = DropBlankText(doc.get());
  ParseResult result;
  result.doc = std::move(doc);
  result.facts = state.facts;
  return result;
}

int ReadInputFile(void* context, char* buffer, int length) {
  return static_cast<InputFile*>(context)->Read(buffer, length);
}

// A parser context that reads `input` in pieces as the parser goes.
ParserCtxtPtr NewFileContext(InputFile& input) {
  ParserCtxtPtr ctxt(xmlNewParserCtxt());
  if (!ctxt) throw std::bad_alloc();
  xmlParserInputBufferPtr buffer =
      xmlParserInputBufferCreateIO(&ReadInputFile, nullptr, &input, XML_CHAR_ENCODING_NONE);
  if (buffer == nullptr) throw std::bad_alloc();
  xmlParserInputPtr stream = xmlNewIOInputStream(ctxt.get(), buffer, XML_CHAR_ENCODING_NONE);
  if (stream == nullptr) {
    xmlFreeParserInputBuffer(buffer);
    throw std::bad_alloc();
  }
  if (inputPush(ctxt.get(), stream) < 0) {
    xmlFreeInputStream(stream);
    throw std::bad_alloc();
  }
  return ctxt;
}

ParseResult Unread(const FileError& error, const std::string& path) {
  ParseResult result;
  result.error = XmlParseError(error.number, error.reason, 0, 0, "", path);
  return result;
}

}  // namespace

ParseResult ParseDocument(std::string_view bytes, TextEncoding encoding, const std::string& url) {
  EnsureXmlLibrary();
  if (bytes.empty()) return Failure(XML_ERR_DOCUMENT_EMPTY, "Document is empty", 1, 1, bytes, url);
  if (bytes.size() > static_cast<size_t>(INT_MAX)) {
    return Failure(XML_ERR_INTERNAL_ERROR, "The document is too large.", 0, 0, bytes, url);
  }
  return Parse(
      [bytes] {
        ParserCtxtPtr ctxt(xmlCreateMemoryParserCtxt(bytes.data(), static_cast<int>(bytes.size())));
        if (!ctxt) throw std::bad_alloc();
        return ctxt;
      },
      encoding, url, [bytes] { return bytes; });
}

ParseResult ParseFileDocument(const std::string& path) {
  EnsureXmlLibrary();
  InputFile input;
  FileError file_error;
  if (!input.Open(path, file_error)) return Unread(file_error, path);
  // The file is read in pieces as the parser goes, like libxml2's own file
  // loading but without its decompression: the bytes are the document.
  std::string bytes;
  auto source_text = [&]() -> std::string_view {
    FileError ignored;
    ReadFileBytes(path, bytes, ignored);
    return bytes;
  };
  if (input.regular() && input.size() == 0) {
    return Failure(XML_ERR_DOCUMENT_EMPTY, "Document is empty", 1, 1, "", path);
  }
  if (input.size() > static_cast<size_t>(INT_MAX)) {
    return Failure(XML_ERR_INTERNAL_ERROR, "The document is too large.", 0, 0, "", path);
  }
  ParseResult result =
      Parse([&] { return NewFileContext(input); }, TextEncoding::kDeclared, path, source_text);
  if (input.failed()) return Unread(input.error(), path);
  return result;
}

StreamResult StreamFileDocument(const std::string& path, ParseListener& listener) {
  EnsureXmlLibrary();
  StreamResult streamed;
  InputFile input;
  FileError file_error;
  if (!input.Open(path, file_error)) {
    streamed.error = Unread(file_error, path).error;
    return streamed;
  }
  if (input.regular() && input.size() == 0) {
    streamed.error = Failure(XML_ERR_DOCUMENT_EMPTY, "Document is empty", 1, 1, "", path).error;
    return streamed;
  }
  // A failure's line text would mean reading the whole file into memory,
  // which is what streaming avoids; streamed failures carry none.
  ParseResult result = Parse([&] { return NewFileContext(input); }, TextEncoding::kDeclared, path,
                             [] { return std::string_view(); }, &listener);
  if (input.failed()) {
    streamed.error = Unread(input.error(), path).error;
    return streamed;
  }
  streamed.ok = result.error.ErrorCode() == 0;
  streamed.error = std::move(result.error);
  streamed.facts = result.facts;
  return streamed;
}

namespace {

// Drops blank text among `first` and its siblings and below them; `keep` is
// what their parent keeps.
bool DropBlanksFrom(xmlNodePtr first, bool keep) {
  struct Level {
    xmlNodePtr resume;
    bool keep;
  };
  std::vector<Level> levels;
  bool kept = false;
  xmlNodePtr node = first;
  for (;;) {
    while (node == nullptr) {
      if (levels.empty()) return kept;
      node = levels.back().resume;
      keep = levels.back().keep;
      levels.pop_back();
    }
    xmlNodePtr next = node->next;
    if (node->type == XML_ELEMENT_NODE && node->children != nullptr) {
      levels.push_back({next, keep});
      keep = KeepsBlanks(node, keep);
      node = node->children;
      continue;
    }
    if (node->type == XML_TEXT_NODE && IsBlank(node->content)) {
      if (keep) {
        kept = true;
      } else {
        xmlUnlinkNode(node);
        NodePtr dropped(node);
      }
    }
    node = next;
  }
}

}  // namespace

bool DropBlankText(xmlDocPtr doc) { return DropBlanksFrom(doc->children, false); }

bool DropBlankTextBelow(xmlNodePtr top) {
  std::vector<const xmlNode*> chain;
  for (const xmlNode* up = top; up != nullptr && up->type == XML_ELEMENT_NODE; up = up->parent) {
    chain.push_back(up);
  }
  bool keep = false;
  for (auto it = chain.rbegin(); it != chain.rend(); ++it) keep = KeepsBlanks(*it, keep);
  return DropBlanksFrom(top->children, keep);
}

}  // namespace veld::xml_internal
