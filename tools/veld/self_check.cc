// veld self-check: a short run over the library: GUID and hex texts, the
// error record, an XML round trip and XPath.
#include <cstdio>
#include <exception>
#include <functional>
#include <string>
#include <vector>

#include "veld/veld.h"

#include "commands.h"

namespace veld::cli {

namespace {

struct Check {
  const char* name;
  std::function<bool(std::string&)> run;  // fills in a detail on failure
};

bool IsHexDigits(const std::string& text) {
  return text.find_first_not_of("0123456789ABCDEF") == std::string::npos;
}

std::vector<Check> SelfChecks() {
  return {
      {"new GUID in general form",
       [](std::string& detail) {
         veld::KvoUtils utils;
         std::string guid = utils.KvoGenerateGUID(veld::KVO_GUID_FORMAT_GENERAL);
         detail = guid;
         return guid.size() == 38 && guid[0] == '{' && guid[9] == '-' && guid[37] == '}';
       }},
      {"new GUID as pure data",
       [](std::string& detail) {
         veld::KvoUtils utils;
         std::string guid = utils.KvoGenerateGUID(veld::Kvo_GUID_FORMAT_PUREDATA);
         detail = guid;
         return guid.size() == 32 && IsHexDigits(guid);
       }},
      {"padded hex text",
       [](std::string& detail) {
         veld::KvoUtils utils;
         detail = utils.KvoNumberToHexStr(veld::Variant(int32_t{255}), veld::Variant(int32_t{4}))
                      .ToString();
         return detail == "00FF";
       }},
      {"error record message",
       [](std::string& detail) {
         veld::KvoErrObject record;
         record.SetError2(53, "File not found");
         detail = record.GetErrorMsg();
         return detail == "File not found(ERR#: 53)";
       }},
      {"raised error reaches the caller",
       [](std::string& detail) {
         veld::KvoErrObject record;
         record.SetError2(-1, "No Section ID specified.");
         try {
           record.Raise();
         } catch (const veld::AutomationError& error) {
           detail = error.Description();
           return error.Number() == -1 && veld::Err().Number() == -1;
         }
         return false;
       }},
      {"XML round trip",
       [](std::string& detail) {
         veld::XmlDocument doc;
         if (!doc.LoadXml("<config>\n  <section id=\"a\"><option name=\"x\" value=\"caf\xC3\xA9\"/>"
                          "</section>\n</config>")) {
           detail = doc.ParseError().Reason();
           return false;
         }
         detail = doc.Xml();
         return detail ==
                "<config><section id=\"a\"><option name=\"x\" value=\"caf\xC3\xA9\"/></section>"
                "</config>";
       }},
      {"XPath selection",
       [](std::string& detail) {
         veld::XmlDocument doc;
         doc.LoadXml("<config><section id=\"a\"/><section id=\"b\"/></config>");
         veld::XmlNodeList sections = doc.SelectNodes("/*/section");
         detail = std::to_string(sections.Length()) + " sections";
         return sections.Length() == 2 && sections.Item(1).GetAttribute("id") == "b";
       }},
  };
}

}  // namespace

int SelfCheck() {
  int failed = 0;
  for (const Check& check : SelfChecks()) {
    std::string detail;
    bool ok = false;
    try {
      ok = check.run(detail);
    } catch (const std::exception& error) {
      detail = error.what();
    }
    std::printf("%s  %-34s %s\n", ok ? "ok  " : "FAIL", check.name, detail.c_str());
    if (!ok) ++failed;
  }
  std::printf("%s: %d check(s) failed\n", failed == 0 ? "self-check passed" : "self-check FAILED",
              failed);
  return failed == 0 ? 0 : 1;
}

}  // namespace veld::cli
