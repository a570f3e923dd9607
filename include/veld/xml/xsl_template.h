// XslTemplate: an XSLT 1.0 style sheet compiled once and applied to
// documents, in the role of the classic XSL template and its processor.
//
// Transforms are confined: a style sheet may not write files, create
// directories, or read from the network or the local file system (document()
// of another file, xsl:import and xsl:include are refused; document('') of
// the style sheet itself works when it was loaded from a file). Documents
// that document() would load are parsed without external entities and
// without network access. The Microsoft extension function msxsl:node-set
// (namespace urn:schemas-microsoft-com:xslt) is available.
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

  // Applies the style sheet to `input` (which is not changed) and returns
  // the result as a new document. Raises kXmlFailure when the transform fails
  // or is refused, or when no style sheet is set.
  XmlDocument Transform(const XmlDocument& input) const;
  // As Transform, with the result replacing the content of `output` (seen
  // through every copy of that handle). On failure `output` is unchanged.
  void TransformInto(const XmlDocument& input, XmlDocument& output) const;
  // As Transform, giving text: for the output method "text" the text the
  // transform produced, otherwise the result document's Xml().
  std::string TransformToText(const XmlDocument& input) const;

 private:
  std::shared_ptr<const xml_internal::CompiledStylesheet> sheet_;
};

}  // namespace veld

#endif  // VELD_XML_XSL_TEMPLATE_H_
