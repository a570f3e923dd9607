// veld xml: a document held by KvoXmlHelper, transformed with a style sheet,
// read and cut by XPath.
#include <string>

#include "veld/xmlhelper/kvo_xml_helper.h"

#include "commands.h"

namespace veld::cli {

namespace {

[[noreturn]] void Fail(KvoXmlHelper& helper) { throw Failure(helper.GetLastError()); }

void Load(KvoXmlHelper& helper, const std::string& file) {
  if (!helper.LoadFile(file)) Fail(helper);
}

int Transform(const Args& args) {
  KvoXmlHelper helper;
  Load(helper, args.At(1));
  if (args.Positional().size() > 2) {
    if (!helper.TransformDataToXmlFile(args.At(0), args.At(2))) Fail(helper);
    return kExitOk;
  }
  std::string result;
  if (!helper.TransformDataToXml(args.At(0), result)) Fail(helper);
  Out(result);
  if (!result.empty() && result.back() != '\n') Out("\n");
  return kExitOk;
}

int Extract(const Args& args) {
  KvoXmlHelper helper;
  Load(helper, args.At(0));
  if (args.Has("attributes")) {
    auto attributes = helper.GetElemAttribute(args.At(1));
    if (attributes == nullptr) Fail(helper);
    std::string out;
    for (const auto& attribute : *attributes)
      out += attribute->Name + "\t" + attribute->Value + "\n";
    Out(out);
    return kExitOk;
  }
  std::string xml;
  if (!helper.GetXmlByXPath(args.At(1), xml)) Fail(helper);
  Out(xml + "\n");
  return kExitOk;
}

int Remove(const Args& args) {
  KvoXmlHelper helper;
  Load(helper, args.At(0));
  if (!helper.RemoveNodes(args.At(1))) Fail(helper);
  std::string xml;
  if (!helper.GetXmlByXPath("/", xml)) Fail(helper);
  Out(xml + "\n");
  return kExitOk;
}

}  // namespace

Group XmlCommands() {
  return {"xml",
          "transform XML with a style sheet; extract and remove nodes by XPath",
          "Documents are loaded without DTDs, external entities or network access; style\n"
          "sheets may not write files or read other documents.",
          {
              {"transform",
               "apply an XSLT style sheet to a document",
               "SHEET FILE [OUT]",
               2,
               3,
               {},
               "Writes the result to OUT, or to standard output. With xsl:output method=\"text\"\n"
               "the result is the text the sheet produced.\n\n"
               "example: veld xml transform report.xsl orders.xml report.html\n",
               Transform},
              {"extract",
               "print the nodes an XPath expression selects",
               "FILE XPATH",
               2,
               2,
               {{"attributes", "", "print the attributes (name<TAB>value) of the first match"}},
               "example: veld xml extract orders.xml \"//data[@id='orders']/row[1]\"\n",
               Extract},
              {"remove",
               "print the document without the nodes an XPath expression selects",
               "FILE XPATH",
               2,
               2,
               {},
               "example: veld xml remove orders.xml \"//row[@status='void']\"\n",
               Remove},
          }};
}

}  // namespace veld::cli
