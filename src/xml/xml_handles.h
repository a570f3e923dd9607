// Owning handles for libxml2 and libxslt objects, and the few string
// conversions at the boundary. Code of the XML layer frees nothing by hand:
// each object is held by one of these from the moment it is made.
#ifndef VELD_XML_XML_HANDLES_H_
#define VELD_XML_XML_HANDLES_H_

#include <memory>
#include <string>
#include <string_view>

#include <libxml/parser.h>
#include <libxml/tree.h>
#include <libxml/uri.h>
#include <libxml/xmlsave.h>
#include <libxml/xpath.h>
#include <libxslt/security.h>
#include <libxslt/transform.h>
#include <libxslt/xsltInternals.h>

namespace veld::xml_internal {

template <class T, auto Free>
struct FreeWith {
  void operator()(T* object) const noexcept {
    if (object != nullptr) Free(object);
  }
};

using DocPtr = std::unique_ptr<xmlDoc, FreeWith<xmlDoc, xmlFreeDoc>>;
// A node in no tree (never attached, or unlinked), with its subtree.
using NodePtr = std::unique_ptr<xmlNode, FreeWith<xmlNode, xmlFreeNode>>;
using NsPtr = std::unique_ptr<xmlNs, FreeWith<xmlNs, xmlFreeNs>>;
using ParserCtxtPtr = std::unique_ptr<xmlParserCtxt, FreeWith<xmlParserCtxt, xmlFreeParserCtxt>>;
using XPathContextPtr =
    std::unique_ptr<xmlXPathContext, FreeWith<xmlXPathContext, xmlXPathFreeContext>>;
using XPathObjectPtr =
    std::unique_ptr<xmlXPathObject, FreeWith<xmlXPathObject, xmlXPathFreeObject>>;
using UriPtr = std::unique_ptr<xmlURI, FreeWith<xmlURI, xmlFreeURI>>;
using BufferPtr = std::unique_ptr<xmlBuffer, FreeWith<xmlBuffer, xmlBufferFree>>;
using StylesheetPtr = std::unique_ptr<xsltStylesheet, FreeWith<xsltStylesheet, xsltFreeStylesheet>>;
using TransformContextPtr =
    std::unique_ptr<xsltTransformContext, FreeWith<xsltTransformContext, xsltFreeTransformContext>>;
using SecurityPrefsPtr =
    std::unique_ptr<xsltSecurityPrefs, FreeWith<xsltSecurityPrefs, xsltFreeSecurityPrefs>>;

// A string the XML library allocated for us.
struct XmlCharFree {
  void operator()(xmlChar* text) const noexcept {
    if (text != nullptr) xmlFree(text);
  }
};
using XmlCharPtr = std::unique_ptr<xmlChar, XmlCharFree>;

// A save context that is flushed and closed when it goes.
struct SaveCtxtClose {
  void operator()(xmlSaveCtxt* save) const noexcept {
    if (save != nullptr) xmlSaveClose(save);
  }
};
using SaveCtxtPtr = std::unique_ptr<xmlSaveCtxt, SaveCtxtClose>;

inline const xmlChar* XmlText(const std::string& text) {
  return reinterpret_cast<const xmlChar*>(text.c_str());
}
inline const xmlChar* XmlText(const char* text) { return reinterpret_cast<const xmlChar*>(text); }

inline std::string StdText(const xmlChar* text) {
  return text == nullptr ? std::string() : std::string(reinterpret_cast<const char*>(text));
}

inline std::string_view TextView(const xmlChar* text) {
  return text == nullptr ? std::string_view()
                         : std::string_view(reinterpret_cast<const char*>(text));
}

// Takes ownership of a string the XML library allocated and copies it out.
inline std::string TakeText(xmlChar* text) {
  XmlCharPtr owned(text);
  return StdText(owned.get());
}

// Makes libxml2 and libxslt ready for use. Thread-safe; cheap after the
// first call.
void EnsureXmlLibrary();

}  // namespace veld::xml_internal

#endif  // VELD_XML_XML_HANDLES_H_
