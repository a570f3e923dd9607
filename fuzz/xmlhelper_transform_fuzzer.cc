// Uses the input as a style sheet file for KvoXmlHelper's transform members
// over a small fixed document. No member may let a failure escape, a failed
// member must leave its target alone, and no style sheet may write a file: the
// scratch directory must hold only the style sheet and the target file
// afterwards.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include "veld/xml/xml_document.h"
#include "veld/xmlhelper/kvo_xml_helper.h"

#include "fuzz_support.h"

namespace {

using veld_fuzz::Check;

using Scratch = veld_fuzz::ScratchDir;

const char* const kInput =
    "<catalog><book id=\"b1\" genre=\"x\"><title>One</title><price>1.5</price></book>"
    "<book id=\"b2\" genre=\"y\"><title>Two &amp; more</title><price>20</price></book></catalog>";

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  // Larger inputs only make slower transforms, not new paths.
  if (size > 4096) return 0;
  static Scratch scratch;
  const std::string sheet = (scratch.path() / "sheet.xsl").string();
  const std::string target = (scratch.path() / "out.xml").string();
  {
    std::ofstream out(sheet, std::ios::binary | std::ios::trunc);
    out.write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));
  }
  std::filesystem::remove(target);

  veld::KvoXmlHelper helper;
  Check(helper.LoadXml(kInput));

  std::string text = "unchanged";
  bool to_text = helper.TransformDataToXml(sheet, text);
  Check(to_text == helper.GetLastError().empty());
  if (!to_text) Check(text == "unchanged");

  veld::XmlDocument doc;
  Check(doc.LoadXml("<kept/>"));
  bool to_doc = helper.TransformDataToXmlDomDoc(sheet, doc);
  Check(to_doc == helper.GetLastError().empty());
  if (!to_doc) Check(doc.Xml() == "<kept/>");

  bool to_file = helper.TransformDataToXmlFile(sheet, target);
  Check(to_file == helper.GetLastError().empty());
  Check(to_file == std::filesystem::exists(target));

  std::string before;
  Check(helper.GetXmlByXPath("/", before));
  bool in_place = helper.TransformData(sheet);
  Check(in_place == helper.GetLastError().empty());
  std::string held;
  Check(helper.GetXmlByXPath("/", held));
  if (!in_place) Check(held == before);

  for (const auto& entry : std::filesystem::directory_iterator(scratch.path())) {
    Check(entry.path() == sheet || entry.path() == target);
  }
  return 0;
}
