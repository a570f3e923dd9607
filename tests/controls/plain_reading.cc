#include "plain_reading.h"

#include <algorithm>

#include "runtime/text.h"

namespace veld::testing {

namespace {

std::string EscapeForXml(const std::string& text) {
  std::string out;
  for (char c : text) {
    switch (c) {
      case '&':
        out += "&amp;";
        break;
      case '<':
        out += "&lt;";
        break;
      case '"':
        out += "&quot;";
        break;
      case '\'':
        out += "&apos;";
        break;
      default:
        out.push_back(c);
    }
  }
  return out;
}

}  // namespace

bool Cell(const XmlNode& row, const std::string& field, std::string& value) {
  const XmlNode col = row.SelectSingleNode("col[@name='" + field + "']");
  value = !col.IsNull() && !col.GetAttributeNode("value").IsNull() ? col.GetAttribute("value") : "";
  return !col.IsNull();
}

void MatchFieldsUpper(const XmlDocument& data, const std::vector<std::string*>& names) {
  XmlNodeList cols = data.SelectNodes("//data[1]/row[1]/col");
  for (int32_t i = 0; i < cols.Length(); ++i) {
    const XmlNode col = cols.Item(i);
    const std::string name = col.GetAttributeNode("name").IsNull() ? "" : col.GetAttribute("name");
    for (std::string* field : names) {
      if (UCase(Trim(*field)) == UCase(Trim(name))) *field = name;
    }
  }
}

XmlNodeList FilteredRows(const XmlDocument& data, const std::string& field, const std::string& op,
                         const std::string& value) {
  std::string filter = "(@index!='0' or not (@index))";
  if (!field.empty()) {
    std::string escaped;
    for (char c : Trim(value)) {
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
          escaped.push_back(c);
      }
    }
    filter += " and col[@name='" + field + "' and @value" + op + "'" + escaped + "']";
  }
  return data.SelectNodes("//data[1]/row[" + filter + "]");
}

std::string RecordedMessage(const AutomationError& error) {
  if (error.Number() == -1) return error.Description();
  return error.Description() + "(ERR#: " + std::to_string(error.Number()) + ")";
}

std::string RandomDatasetDocument(std::mt19937& random) {
  const std::vector<std::string> names = {"id",    "ID",  " id ", "parent", "Parent", "text",
                                          "text2", "tag", "grp",  "other",  ""};
  const std::vector<std::string> ids = {"a", "b", "c", "d", "e",   "f",   "g",   "h",
                                        "i", "j", "",  "7", "a b", "x&y", "it's"};
  const std::vector<std::string> parents = {"a", "b", "c", "d", "e", "f", "", "", "zz", "x&y"};
  const std::vector<std::string> texts = {"one", "", "  ", "two", "<3>", "caf\xC3\xA9", "a\rb"};
  const std::vector<std::string> groups = {"x", "y", " x ", "it's", "5", "12"};
  std::string xml = "<!DOCTYPE d [<!ENTITY e \"ent\">]><dataset>";
  const std::string id_name = Pick(random, std::vector<std::string>{"id", "ID", " id "});
  const std::string parent_name = Pick(random, std::vector<std::string>{"parent", "Parent"});
  const std::string text_name = Pick(random, std::vector<std::string>{"text", "TEXT"});
  const int data_count = std::uniform_int_distribution<int>(1, 2)(random);
  for (int d = 0; d < data_count; ++d) {
    xml += random() % 10 == 0 ? "<data xmlns=\"urn:other\">" : "<data>";
    const int rows = std::uniform_int_distribution<int>(0, 14)(random);
    for (int r = 0; r < rows; ++r) {
      xml += "<row";
      switch (random() % 5) {
        case 0:
          xml += " index=\"0\"";
          break;
        case 1:
          xml += " index=\"" + std::to_string(r + 1) + "\"";
          break;
        default:
          break;
      }
      xml += ">";
      // Most rows carry the usual cols (in one of their spellings), some
      // lack them, and a few others come in between, in random order.
      std::vector<std::string> row_names;
      auto maybe = [&](int percent, const std::vector<std::string>& spellings) {
        if (static_cast<int>(random() % 100) < percent)
          row_names.push_back(Pick(random, spellings));
      };
      // Mostly the document's own spelling, now and then another.
      maybe(90, {id_name, id_name, id_name, id_name, id_name, id_name, id_name, "ID", " id "});
      maybe(70, {parent_name, parent_name, parent_name, parent_name, parent_name, "Parent"});
      maybe(90, {text_name, text_name, text_name, text_name, text_name, "TEXT"});
      maybe(40, {"text2"});
      maybe(50, {"tag"});
      maybe(50, {"grp"});
      const int extra = std::uniform_int_distribution<int>(0, 2)(random);
      for (int e = 0; e < extra; ++e) row_names.push_back(Pick(random, names));
      std::shuffle(row_names.begin(), row_names.end(), random);
      for (const std::string& name : row_names) {
        std::string value;
        if (name == "id" || name == "ID" || name == " id ") {
          value = EscapeForXml(Pick(random, ids));
        } else if (name == "parent" || name == "Parent") {
          value = EscapeForXml(Pick(random, parents));
        } else if (name == "grp") {
          value = EscapeForXml(Pick(random, groups));
        } else if (random() % 7 == 0) {
          value = "&e;";
        } else {
          std::string text = EscapeForXml(Pick(random, texts));
          const size_t cr = text.find('\r');
          if (cr != std::string::npos) text.replace(cr, 1, "&#13;");
          value = text;
        }
        if (random() % 25 == 0) {
          xml += "<p:col xmlns:p=\"urn:p\" name=\"" + name + "\" value=\"" + value + "\"/>";
        } else if (random() % 25 == 0) {
          xml += "<col name=\"" + name + "\"/>";
        } else {
          xml += "<col name=\"" + name + "\" value=\"" + value + "\"/>";
        }
      }
      xml += "</row>";
    }
    xml += "</data>";
  }
  return xml + "</dataset>";
}

}  // namespace veld::testing
