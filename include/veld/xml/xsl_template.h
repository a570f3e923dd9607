// XslTemplate: an XSLT 1.0 style sheet compiled once and applied to
// documents, in the role of the classic XSL template and its processor.
//
// Transforms are confined: a style sheet may not write files (xsl:document,
// exsl:document and the other processors' writing extensions are refused),
// create directories or touch the network, and xsl:import and xsl:include are
// refused. Reading other local documents through document() is refused too
// unless the current Platform allows it (Platform::XslDocumentReadAllowed,
// asked at each transform); document('') of the style sheet itself works
// when it was loaded from a file. Documents that document() loads are parsed
// without external entities and without network access. A refused action
// fails the transform with a message saying what was refused.
//
// Extensions: the EXSLT modules (exsl:node-set, set:, math:, str:, date:,
// func:, dyn:) and the Microsoft extension function msxsl:node-set (namespace
// urn:schemas-microsoft-com:xslt) are available. An extension element the
// engine does not know fails the transform unless it has an xsl:fallback.
//
// Output: results are documents (or, for TransformToText and TransformToFile,
// their text) with the library's serialisation: UTF-8, no declaration, no
// indentation; the serialisation settings of xsl:output (indent, encoding,
// omit-xml-declaration, doctype) are not applied. The result tree of the
// output method "html" is kept as an ordinary XML document. The result of the
// output method "text" is text: TransformToText and TransformToFile give it,
// Transform and TransformInto refuse it.
//
// Failures raise AutomationError errnum::kXmlFailure with the XSLT engine's
// message. Nothing is printed.
//
// Copies share the compiled style sheet; a template may be used for several
// transforms, one at a time.
#ifndef VELD_XML_XSL_TEMPLATE_H_
#define VELD_XML_XSL_TEMPLATE_H_

#include <memory>
#include <string>

#include "veld/export.h"
#include "veld/xml/xml_document.h"

namespace veld {

namespace xml_internal {
class CompiledStylesheet;
}  // namespace xml_internal

class VELD_EXPORT XslTemplate {
 public:
  // A template without a style sheet; Transform raises until one is set.
  XslTemplate() noexcept;
  // Compiles `stylesheet`; see SetStylesheet.
  explicit XslTemplate(const XmlDocument& stylesheet);
  ~XslTemplate();
  XslTemplate(const XslTemplate& other) = default;
  XslTemplate& operator=(const XslTemplate& other) = default;

  // Compiles the style sheet held by `stylesheet` (which is not changed and
  // not needed afterwards). Raises kXmlFailure when it is empty or not a
  // valid XSLT style sheet; the template then keeps its previous sheet.
  void SetStylesheet(const XmlDocument& stylesheet);
  bool HasStylesheet() const noexcept { return sheet_ != nullptr; }
  // The output method the style sheet declares with xsl:output ("xml",
  // "html", "text"), or "" when it declares none. Raises kXmlFailure when no
  // style sheet is set.
  std::string OutputMethod() const;

  // Applies the style sheet to `input` (which is not changed) and returns
  // the result as a new document. Raises kXmlFailure when the transform fails
  // or is refused, when the output method is "text", or when no style sheet
  // is set.
  XmlDocument Transform(const XmlDocument& input) const;
  // As Transform, with the result replacing the content of `output` (seen
  // through every copy of that handle). On failure `output` is unchanged.
  void TransformInto(const XmlDocument& input, XmlDocument& output) const;
  // As Transform, giving text: for the output method "text" the text the
  // transform produced, otherwise the result document's Xml().
  std::string TransformToText(const XmlDocument& input) const;
  // Writes TransformToText(input) to the file at `path`, replacing it, as
  // XmlDocument::Save writes (UTF-8, no declaration), and raises as Save
  // does. Nothing is written when the transform fails.
  void TransformToFile(const XmlDocument& input, const std::string& path) const;

 private:
  std::shared_ptr<const xml_internal::CompiledStylesheet> sheet_;
};

}  // namespace veld

#endif  // VELD_XML_XSL_TEMPLATE_H_
