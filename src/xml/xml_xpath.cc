#include "xml/xml_xpath.h"

#include <algorithm>
#include <new>

#include <libxml/xpathInternals.h>

#include "xml/xml_errors.h"
#include "xml/xml_handles.h"

namespace veld::xml_internal {
namespace {

// xmlXPathCmpNodes gives 1 when its first node comes first in the document.
bool Before(xmlNodePtr a, xmlNodePtr b) { return xmlXPathCmpNodes(a, b) == 1; }

bool InDocumentOrder(const std::vector<xmlNodePtr>& nodes) {
  for (size_t i = 1; i < nodes.size(); ++i) {
    if (!Before(nodes[i - 1], nodes[i])) return false;
  }
  return true;
}

}  // namespace

std::vector<xmlNodePtr> SelectRaw(xmlNodePtr context, const std::string& xpath) {
  EnsureXmlLibrary();
  ErrorCollector errors;
  // The XPath context's own error hook would get the error without its text
  // (libxml2 formats the message only on the way to the thread's structured
  // handler), so errors are taken from there, for this call only.
  ScopedErrorCapture capture(errors);
  XPathContextPtr ctxt(xmlXPathNewContext(context->doc));
  if (!ctxt) throw std::bad_alloc();
  ctxt->node = context;

  XPathObjectPtr result(xmlXPathEvalExpression(XmlText(xpath), ctxt.get()));
  if (!result) RaiseXmlFailure(errors.Message(), "Invalid XPath expression.");
  if (result->type != XPATH_NODESET) {
    RaiseXmlFailure("Expression does not evaluate to a node-set.");
  }
  std::vector<xmlNodePtr> nodes;
  xmlNodeSetPtr set = result->nodesetval;
  if (set == nullptr || set->nodeNr == 0) return nodes;
  nodes.reserve(static_cast<size_t>(set->nodeNr));
  for (int i = 0; i < set->nodeNr; ++i) {
    xmlNodePtr node = set->nodeTab[i];
    // Namespace nodes are copies owned by the result; they cannot be handed out.
    if (node == nullptr || node->type == XML_NAMESPACE_DECL) continue;
    nodes.push_back(node);
  }
  // The engine normally delivers document order already; checking is linear.
  if (!InDocumentOrder(nodes)) std::stable_sort(nodes.begin(), nodes.end(), Before);
  return nodes;
}

}  // namespace veld::xml_internal
