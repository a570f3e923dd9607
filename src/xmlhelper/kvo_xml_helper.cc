#include "veld/xmlhelper/kvo_xml_helper.h"

#include <memory>
#include <string>
#include <utility>

#include "foundation/frame_settings.h"
#include "foundation/xml_utils.h"
#include "runtime/text.h"
#include "veld/runtime/automation_error.h"
#include "veld/xml/xsl_template.h"
#include "xmlhelper/xml_helper_messages.h"

namespace veld {

namespace {

namespace messages = xml_helper_messages;

// Loads the style sheet file, read as every document is (no external
// entities, no DTD, no network), and compiles it. A file that does not load is
// the class's own check failure, raised as WorkerFrame::Fail raises.
XslTemplate LoadStylesheet(const std::string& xsl_file) {
  XmlDocument sheet;
  if (!sheet.Load(xsl_file)) {
    // The reason stands in the message, not the file name; callers match it.
    RaiseError(errnum::kCheckFailed, messages::kLoadXslFailed + sheet.ParseError().Reason() + ".");
  }
  return XslTemplate(sheet);
}

}  // namespace

KvoXmlHelper::KvoXmlHelper() : DocumentFrame(kXmlHelperFrame) {}

KvoXmlHelper::~KvoXmlHelper() = default;

bool KvoXmlHelper::LoadXml(const std::string& sDataXml) {
  bool result = false;
  Recorded([&] {
    if (!m_cXmlDom.LoadXml(sDataXml)) Fail(messages::kLoadXmlFailed);
    result = true;
  });
  return result;
}

bool KvoXmlHelper::LoadFile(const std::string& sXmlFile) {
  bool result = false;
  Recorded([&] {
    if (!m_cXmlDom.Load(sXmlFile)) Fail(messages::kLoadFileFailed + sXmlFile + ".");
    result = true;
  });
  return result;
}

bool KvoXmlHelper::TransformDataToXmlDomDoc(const std::string& sXslFile,
                                            XmlDocument& cTargetXmlDomDoc) {
  bool result = false;
  Recorded([&] {
    LoadStylesheet(sXslFile).TransformInto(m_cXmlDom, cTargetXmlDomDoc);
    result = true;
  });
  return result;
}

bool KvoXmlHelper::TransformDataToXml(const std::string& sXslFile, std::string& sTargetXml) {
  bool result = false;
  Recorded([&] {
    std::string text = LoadStylesheet(sXslFile).TransformToText(m_cXmlDom);
    sTargetXml = std::move(text);
    result = true;
  });
  return result;
}

bool KvoXmlHelper::TransformData(const std::string& sXslFile) {
  bool result = false;
  Recorded([&] {
    XmlDocument transformed = LoadStylesheet(sXslFile).Transform(m_cXmlDom);
    m_cXmlDom = std::move(transformed);
    result = true;
  });
  return result;
}

bool KvoXmlHelper::TransformDataToXmlFile(const std::string& sXslFile,
                                          const std::string& sTargetXmlFile) {
  bool result = false;
  Recorded([&] {
    LoadStylesheet(sXslFile).TransformToFile(m_cXmlDom, sTargetXmlFile);
    result = true;
  });
  return result;
}

bool KvoXmlHelper::GetXmlByXPath(const std::string& sXPath, std::string& sXml) {
  bool result = false;
  Recorded([&] {
    sXml.clear();
    XmlNode node = m_cXmlDom.SelectSingleNode(Trim(sXPath));
    if (node) sXml = node.Xml();
    result = true;
  });
  return result;
}

std::shared_ptr<KvoGeneralItems> KvoXmlHelper::GetElemAttribute(const std::string& sElemXPath) {
  std::shared_ptr<KvoGeneralItems> result;
  Recorded([&] {
    XmlNode node = m_cXmlDom.SelectSingleNode(sElemXPath);
    if (!node || node.NodeType() != NODE_ELEMENT) return;
    auto items = std::make_shared<KvoGeneralItems>();
    for (const XmlNode& attribute : node.Attributes()) {
      items->Add(attribute.NodeName(), attribute.NodeValue(), "", "");
    }
    result = std::move(items);
  });
  return result;
}

bool KvoXmlHelper::RemoveNodes(const std::string& sXPath) {
  bool result = false;
  Recorded([&] { result = RemoveSelectedNodes(m_cXmlDom.AsNode(), sXPath); });
  return result;
}

}  // namespace veld
