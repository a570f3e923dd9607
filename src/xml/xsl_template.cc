#include "veld/xml/xsl_template.h"

#include <mutex>
#include <new>
#include <utility>

#include <libexslt/exslt.h>
#include <libxslt/extensions.h>
#include <libxslt/extra.h>
#include <libxslt/imports.h>
#include <libxslt/xsltutils.h>

#include "veld/platform/platform.h"
#include "xml/document_core.h"
#include "xml/xml_errors.h"
#include "xml/xml_file.h"
#include "xml/xml_handles.h"
#include "xml/xml_internal.h"
#include "xml/xml_serializer.h"
#include "xml/xml_tree.h"

namespace veld {

namespace xml_internal {

class CompiledStylesheet {
 public:
  explicit CompiledStylesheet(StylesheetPtr style) : style_(std::move(style)) {}
  xsltStylesheetPtr get() const { return style_.get(); }

 private:
  StylesheetPtr style_;
};

}  // namespace xml_internal

namespace {

using xml_internal::Access;
using xml_internal::DocPtr;
using xml_internal::DocumentCore;
using xml_internal::ErrorCollector;
using xml_internal::RaiseXmlFailure;
using xml_internal::XmlText;

constexpr const char* kXsltNamespace = "http://www.w3.org/1999/XSL/Transform";
constexpr const char* kMsxslNamespace = "urn:schemas-microsoft-com:xslt";

// libxslt reports compilation problems (and some of the transform's) through
// one process-wide handler. It is pointed at our collector for the duration
// of a compile or transform, under a lock so that concurrent ones do not
// restore each other's handler.
class ScopedXsltErrorCapture {
 public:
  explicit ScopedXsltErrorCapture(ErrorCollector& collector)
      : lock_(Mutex()), previous_(xsltGenericError), previous_context_(xsltGenericErrorContext) {
    xsltSetGenericErrorFunc(&collector, &ErrorCollector::GenericHandler);
  }
  ~ScopedXsltErrorCapture() { xsltSetGenericErrorFunc(previous_context_, previous_); }
  ScopedXsltErrorCapture(const ScopedXsltErrorCapture&) = delete;
  ScopedXsltErrorCapture& operator=(const ScopedXsltErrorCapture&) = delete;

 private:
  static std::mutex& Mutex() {
    static std::mutex mutex;
    return mutex;
  }

  std::lock_guard<std::mutex> lock_;
  xmlGenericErrorFunc previous_;
  void* previous_context_;
};

// xsl:import and xsl:include are resolved while compiling, where only
// libxslt's process-wide security settings apply; rather than change those,
// style sheets that would read other files are refused here.
void RefuseOtherSheets(xmlDocPtr sheet) {
  xmlNodePtr root = xmlDocGetRootElement(sheet);
  xmlNodePtr node = root;
  while (node != nullptr) {
    if (node->type == XML_ELEMENT_NODE) {
      if (node->ns != nullptr && xmlStrEqual(node->ns->href, XmlText(kXsltNamespace)) &&
          (xmlStrEqual(node->name, XmlText("import")) ||
           xmlStrEqual(node->name, XmlText("include")))) {
        std::string href = xml_internal::TakeText(xmlGetNoNsProp(node, XmlText("href")));
        RaiseXmlFailure("xsl:" + xml_internal::StdText(node->name) + " of '" + href +
                        "' refused: a style sheet may not read other files.");
      }
      if (node->children != nullptr) {
        node = node->children;
        continue;
      }
    }
    while (node != root && node->next == nullptr) node = node->parent;
    if (node == root) break;
    node = node->next;
  }
}

// Local file reads are refused, except of the style sheet's own file, which
// document('') reads.
int ReadOwnSheetOnly(xsltSecurityPrefsPtr /*prefs*/, xsltTransformContextPtr ctxt,
                     const char* path) {
  if (ctxt == nullptr || ctxt->style == nullptr || ctxt->style->doc == nullptr ||
      ctxt->style->doc->URL == nullptr || path == nullptr) {
    return 0;
  }
  xml_internal::UriPtr own(xmlParseURI(reinterpret_cast<const char*>(ctxt->style->doc->URL)));
  return own != nullptr && own->path != nullptr && xmlStrEqual(XmlText(own->path), XmlText(path))
             ? 1
             : 0;
}

// Writes, directories and the network are always refused; reads of other
// local documents only when the host allows them.
xml_internal::SecurityPrefsPtr ConfinedPrefs(bool local_reads_allowed) {
  xml_internal::SecurityPrefsPtr prefs(xsltNewSecurityPrefs());
  if (!prefs) throw std::bad_alloc();
  xsltSetSecurityPrefs(prefs.get(), XSLT_SECPREF_READ_FILE,
                       local_reads_allowed ? &xsltSecurityAllow : &ReadOwnSheetOnly);
  xsltSetSecurityPrefs(prefs.get(), XSLT_SECPREF_WRITE_FILE, &xsltSecurityForbid);
  xsltSetSecurityPrefs(prefs.get(), XSLT_SECPREF_CREATE_DIRECTORY, &xsltSecurityForbid);
  xsltSetSecurityPrefs(prefs.get(), XSLT_SECPREF_READ_NETWORK, &xsltSecurityForbid);
  xsltSetSecurityPrefs(prefs.get(), XSLT_SECPREF_WRITE_NETWORK, &xsltSecurityForbid);
  return prefs;
}

// The EXSLT modules (common, sets, math, strings, dates, functions, dynamic)
// are registered once for the process, so that style sheets written for other
// processors work; their writing element exsl:document is confined like
// xsl:document.
void EnsureExslt() {
  static std::once_flag once;
  std::call_once(once, [] { exsltRegisterAll(); });
}

// The output method xsl:output declares (imported sheets included), or null.
const xmlChar* DeclaredMethod(const xml_internal::CompiledStylesheet& sheet) {
  const xmlChar* method = nullptr;
  XSLT_GET_IMPORT_PTR(method, sheet.get(), method)
  return method;
}

bool IsTextMethod(const xml_internal::CompiledStylesheet& sheet) {
  const xmlChar* method = DeclaredMethod(sheet);
  return method != nullptr && xmlStrEqual(method, XmlText("text"));
}

const xml_internal::CompiledStylesheet& Sheet(
    const std::shared_ptr<const xml_internal::CompiledStylesheet>& sheet) {
  if (sheet == nullptr) RaiseXmlFailure("No style sheet has been set.");
  return *sheet;
}

// Runs the transform and returns the result document.
DocPtr Apply(const xml_internal::CompiledStylesheet& sheet, const XmlDocument& input) {
  xml_internal::EnsureXmlLibrary();
  EnsureExslt();
  xsltStylesheetPtr style = sheet.get();
  xml_internal::SecurityPrefsPtr prefs = ConfinedPrefs(CurrentPlatform().XslDocumentReadAllowed());
  // libxslt strips whitespace from and indexes its input in place; the
  // caller's document and the nodes it holds must not see that.
  DocPtr source(xmlCopyDoc(xml_internal::LibxmlDoc(input), 1));
  if (!source) throw std::bad_alloc();

  ErrorCollector errors;
  xml_internal::ScopedErrorCapture capture(errors);
  ScopedXsltErrorCapture xslt_capture(errors);
  xml_internal::TransformContextPtr ctxt(xsltNewTransformContext(style, source.get()));
  if (!ctxt) throw std::bad_alloc();
  xsltSetTransformErrorFunc(ctxt.get(), &errors, &ErrorCollector::GenericHandler);
  xsltSetCtxtSecurityPrefs(prefs.get(), ctxt.get());
  // document() would otherwise parse with entity substitution and DTD loading.
  xsltSetCtxtParseOptions(ctxt.get(), XML_PARSE_NONET | XML_PARSE_NOCDATA);
  xsltRegisterExtFunction(ctxt.get(), XmlText("node-set"), XmlText(kMsxslNamespace),
                          &xsltFunctionNodeSet);

  DocPtr result(
      xsltApplyStylesheetUser(style, source.get(), nullptr, nullptr, nullptr, ctxt.get()));
  if (!result || ctxt->state != XSLT_STATE_OK) {
    RaiseXmlFailure(errors.Message(), "The transformation failed.");
  }
  // The html output method builds an HTML document; the library hands out
  // XML documents only, and the tree itself is the same.
  if (result->type == XML_HTML_DOCUMENT_NODE) result->type = XML_DOCUMENT_NODE;
  // doctype-public and doctype-system of xsl:output are serialisation
  // settings, which results do not take; the result tree has no DTD.
  if (xmlDtdPtr dtd = result->intSubset; dtd != nullptr) {
    xmlUnlinkNode(reinterpret_cast<xmlNodePtr>(dtd));
    xmlFreeDtd(dtd);
  }
  xml_internal::MarkUtf8(result.get());
  return result;
}

// The result of a style sheet whose output method is text is text, not a
// document; handing it out as one would give a document without a root
// element whose top level is text.
void RefuseTextResult(const xml_internal::CompiledStylesheet& sheet) {
  if (IsTextMethod(sheet)) {
    RaiseXmlFailure("The style sheet's output method is text; its result is not an XML document.");
  }
}

XmlDocument AsDocument(DocPtr doc) {
  auto core = std::make_shared<DocumentCore>(std::move(doc));
  return xml_internal::DocumentFor(core);
}

}  // namespace

XslTemplate::XslTemplate() noexcept = default;

XslTemplate::XslTemplate(const XmlDocument& stylesheet) { SetStylesheet(stylesheet); }

XslTemplate::~XslTemplate() = default;

void XslTemplate::SetStylesheet(const XmlDocument& stylesheet) {
  xml_internal::EnsureXmlLibrary();
  EnsureExslt();
  xmlDocPtr source = xml_internal::LibxmlDoc(stylesheet);
  if (xmlDocGetRootElement(source) == nullptr) RaiseXmlFailure("The style sheet is empty.");
  RefuseOtherSheets(source);
  // Compiling takes the document over and changes it.
  DocPtr copy(xmlCopyDoc(source, 1));
  if (!copy) throw std::bad_alloc();
  ErrorCollector errors;
  xml_internal::ScopedErrorCapture capture(errors);
  ScopedXsltErrorCapture xslt_capture(errors);
  xml_internal::StylesheetPtr style(xsltParseStylesheetDoc(copy.get()));
  if (!style || style->errors != 0) {
    if (style) style->doc = nullptr;  // the copy stays ours to free
    RaiseXmlFailure(errors.Message(), "The style sheet is not valid.");
  }
  static_cast<void>(copy.release());  // now owned by the compiled style sheet
  sheet_ = std::make_shared<const xml_internal::CompiledStylesheet>(std::move(style));
}

std::string XslTemplate::OutputMethod() const {
  return xml_internal::StdText(DeclaredMethod(Sheet(sheet_)));
}

XmlDocument XslTemplate::Transform(const XmlDocument& input) const {
  const xml_internal::CompiledStylesheet& sheet = Sheet(sheet_);
  RefuseTextResult(sheet);
  return AsDocument(Apply(sheet, input));
}

void XslTemplate::TransformInto(const XmlDocument& input, XmlDocument& output) const {
  const xml_internal::CompiledStylesheet& sheet = Sheet(sheet_);
  RefuseTextResult(sheet);
  DocPtr result = Apply(sheet, input);
  const auto& state = Access::State(output);
  state->Replace(std::make_shared<DocumentCore>(std::move(result)));
  state->parse_error = XmlParseError();
}

std::string XslTemplate::TransformToText(const XmlDocument& input) const {
  const xml_internal::CompiledStylesheet& sheet = Sheet(sheet_);
  DocPtr result = Apply(sheet, input);
  xmlNodePtr doc_node = reinterpret_cast<xmlNodePtr>(result.get());
  if (IsTextMethod(sheet)) return xml_internal::DomText(doc_node);
  return xml_internal::SerializeNode(doc_node);
}

void XslTemplate::TransformToFile(const XmlDocument& input, const std::string& path) const {
  std::string text = TransformToText(input);
  xml_internal::WriteFileBytes(path, text);
}

}  // namespace veld
