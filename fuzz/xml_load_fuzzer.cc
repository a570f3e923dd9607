// Loads arbitrary bytes as an XML document. When they load, the document must
// serialise, answer an XPath query, survive a few tree changes and load again
// from its own serialised text; none of it may crash, leak or print.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "veld/runtime/automation_error.h"
#include "veld/xml/xml_document.h"

namespace {

void Check(bool condition) {
  if (!condition) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string text(reinterpret_cast<const char*>(data), size);
  veld::XmlDocument doc;
  if (!doc.LoadXml(text)) {
    Check(doc.IsEmpty());
    Check(!doc.ParseError().Reason().empty());
    return 0;
  }
  const std::string xml = doc.Xml();
  veld::XmlNodeList elements = doc.SelectNodes("//*");
  veld::XmlNode root = doc.DocumentElement();
  Check(static_cast<bool>(root));
  Check(elements.Length() >= 1 && elements.Item(0) == root);

  veld::XmlDocument again;
  Check(again.LoadXml(xml));

  // Handles outlive changes to the tree and the document itself.
  veld::XmlNode copy = root.CloneNode(true);
  (void)root.Text();
  if (root.HasChildNodes()) root.RemoveChild(root.FirstChild());
  copy.AppendChild(doc.CreateElement("fuzz"));
  doc = veld::XmlDocument();
  (void)copy.Xml();
  for (veld::XmlNode node : elements) (void)node.NodeName();
  Check(again.DocumentElement().AppendChild(copy).ParentNode() == again.DocumentElement());
  return 0;
}
