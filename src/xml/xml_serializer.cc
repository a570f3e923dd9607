#include "xml/xml_serializer.h"

#include <new>

#include "xml/xml_errors.h"
#include "xml/xml_handles.h"

namespace veld::xml_internal {
namespace {

void Append(xmlNodePtr node, std::string& out) {
  BufferPtr buffer(xmlBufferCreate());
  if (!buffer) throw std::bad_alloc();
  {
    // An explicit "UTF-8" keeps non-ASCII text raw instead of as &#x..;
    // references, which is what the callers compare against.
    SaveCtxtPtr save(xmlSaveToBuffer(buffer.get(), "UTF-8", XML_SAVE_NO_DECL | XML_SAVE_AS_XML));
    if (!save) throw std::bad_alloc();
    if (xmlSaveTree(save.get(), node) < 0) RaiseXmlFailure("", "The node cannot be serialised.");
  }  // closing the save context flushes it into the buffer
  const char* text = reinterpret_cast<const char*>(xmlBufferContent(buffer.get()));
  size_t length = static_cast<size_t>(xmlBufferLength(buffer.get()));
  if (node->type == XML_ATTRIBUTE_NODE && length > 0 && text[0] == ' ') {
    ++text;
    --length;
  }
  out.append(text, length);
}

}  // namespace

std::string SerializeNode(xmlNodePtr node) {
  std::string out;
  ErrorCollector errors;
  ScopedErrorCapture capture(errors);
  if (node->type == XML_DOCUMENT_NODE || node->type == XML_HTML_DOCUMENT_NODE) {
    // The document node itself would get a declaration and line breaks.
    for (xmlNodePtr child = node->children; child != nullptr; child = child->next) {
      Append(child, out);
    }
  } else {
    Append(node, out);
  }
  return out;
}

}  // namespace veld::xml_internal
