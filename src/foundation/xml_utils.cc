#include "foundation/xml_utils.h"

#include "runtime/text.h"

namespace veld {

std::string EscapeXmlText(std::string_view text) {
  // One pass gives the same result as the five whole-text replacements in
  // their order, because "&" is replaced first and no later replacement
  // introduces one of the five characters except "&" inside its own entity.
  std::string escaped;
  escaped.reserve(text.size());
  for (char c : text) {
    switch (c) {
      case '&':
        escaped += "&amp;";
        break;
      case '"':
        escaped += "&quot;";
        break;
      case '>':
        escaped += "&gt;";
        break;
      case '<':
        escaped += "&lt;";
        break;
      case '\'':
        escaped += "&apos;";
        break;
      default:
        escaped += c;
    }
  }
  return escaped;
}

std::string GetNodeAttribute(const XmlNode& element, const std::string& name,
                             const std::string& default_value) {
  if (!element) return default_value;
  if (!element.GetAttributeNode(name)) return default_value;
  return element.GetAttribute(name);
}

std::string GetNodeText(const XmlNode& node) {
  if (!node) return "";
  // The first text child; CDATA sections do not count as text here, which
  // the XPath "text()" test of the underlying library would include.
  for (XmlNode child = node.FirstChild(); child; child = child.NextSibling()) {
    if (child.NodeType() == NODE_TEXT) return child.NodeValue();
  }
  return "";
}

std::string GetNodeAttributeOrText(const XmlNode& element, const std::string& name,
                                   const std::string& default_value) {
  if (!element) return default_value;
  if (element.GetAttributeNode(name)) return element.GetAttribute(name);
  return GetNodeText(element);
}

bool RemoveSelectedNodes(const XmlNode& context, const std::string& xpath) {
  XmlNodeList selected = context.SelectNodes(Trim(xpath));
  const int32_t length = selected.Length();
  for (int32_t i = 0; i < length; ++i) {
    XmlNode node = selected.Item(i);
    XmlNode parent = node.ParentNode();
    if (!parent) {
      context.RemoveChild(node);
    } else {
      parent.RemoveChild(node);
    }
  }
  return true;
}

}  // namespace veld
