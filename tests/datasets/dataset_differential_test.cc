// Runs random sequences of operations through the dataset classes and
// through a straightforward reference kept here, which builds XPath strings,
// writes rows out as text and reads them back exactly as the operations are
// described, and compares results, last errors and the saved document after
// every step.
#include <cstdint>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "datasets/dataset_test_support.h"
#include "foundation/frame_settings.h"
#include "foundation/this_utils.h"
#include "foundation/xml_utils.h"
#include "runtime/text.h"
#include "veld/datasets/kvo_dataset.h"
#include "veld/datasets/kvo_dataset_o.h"

#include "support/testing.h"

namespace veld {
namespace {

// --- The reference: the operations read literally ---

class RefBase : public DocumentFrame {
 public:
  explicit RefBase(const FrameSettings& settings) : DocumentFrame(settings) {}

  std::string Saved() { return m_cXmlDom.Xml(); }

 protected:
  XmlNode EnsureRoot() {
    XmlNode root = m_cXmlDom.DocumentElement();
    if (!root) {
      root = m_cXmlDom.CreateElement("dataset");
      m_cXmlDom.AppendChild(root);
    }
    return root;
  }
  std::string GetDataIDAt(int32_t i) {
    XmlNode node = m_cXmlDom.SelectSingleNode("/*/data[" + std::to_string(i) + "]");
    return node ? node.GetAttribute("guid") : "";
  }
  std::string ExactDataID(const std::string& id) {
    if (id.empty()) return "";
    int32_t count = m_cXmlDom.SelectNodes("/*/data").Length();
    for (int32_t i = 1; i <= count; ++i) {
      std::string guid = GetDataIDAt(i);
      if (LCase(guid) == LCase(id)) return guid;
    }
    return "";
  }
  std::string DataXPath(const std::string& id) {
    if (id.empty()) return "/*/data";
    std::string exact = ExactDataID(id);
    if (exact.empty()) exact = id;
    return "/*/data[@guid='" + Trim(exact) + "']";
  }
  XmlNode EnsureData(const std::string& id) {
    if (id.empty()) Fail("No data ID specified.");
    XmlNode data = m_cXmlDom.SelectSingleNode(DataXPath(id));
    if (data) return data;
    XmlNode root = EnsureRoot();
    data = m_cXmlDom.CreateElement("data");
    data.SetAttribute("guid", id);
    root.AppendChild(data);
    return data;
  }
  std::string DataIDFromXml(const std::string& text) {
    if (Trim(text).empty()) return "";
    XmlDocument doc;
    if (!doc.LoadXml(text)) Fail("Failed to load data xml.");
    return GetNodeAttribute(doc.DocumentElement(), "guid", "");
  }
  XmlNodeList KeyRows(const std::string& d, const std::string& name, const std::string& value) {
    if (Trim(name).empty()) Fail("Key column name not specified.");
    XmlNode data = m_cXmlDom.SelectSingleNode(DataXPath(d));
    if (!data) Fail("Specified data not found(" + d + ").");
    return data.SelectNodes("row[col[@name='" + Trim(EscapeXmlText(Trim(name))) + "' and @value='" +
                            Trim(EscapeXmlText(Trim(value))) + "']]");
  }
  template <class AddOne>
  bool Load(const std::string& text, AddOne add_one) {
    bool result = false;
    Recorded([&] {
      Reset();
      XmlDocument doc;
      if (!doc.LoadXml(text)) Fail("Failed to load dataset xml.");
      XmlNodeList nodes = doc.SelectNodes("//data");
      for (XmlNode node : nodes) {
        if (!add_one(node.Xml())) return;
      }
      result = true;
    });
    return result;
  }
};

class RefDatasetO : public RefBase {
 public:
  RefDatasetO() : RefBase(kDatasetOFrame) {}

  std::string RowXPath(const std::string& d, const std::string& r) {
    std::string xpath = DataXPath(d) + "/row";
    if (!r.empty()) xpath += "[@guid='" + Trim(r) + "']";
    return xpath;
  }

  bool Parse(const std::string& text) {
    return Load(text, [&](const std::string& data) { return AddData("", data, ""); });
  }
  bool AddData(const std::string& d, const std::string& text, const std::string& col) {
    bool result = false;
    Recorded([&] {
      std::string id = Trim(d);
      if (id.empty()) id = DataIDFromXml(text);
      if (id.empty()) id = NewGuidText(Kvo_GUID_FORMAT_PUREDATA);
      EnsureData(id);
      if (!text.empty() && !UpdateData(id, text, col)) return;
      result = true;
    });
    return result;
  }
  bool UpdateData(const std::string& d, const std::string& text, const std::string& col) {
    bool result = false;
    Recorded([&] {
      RemoveSelectedNodes(m_cXmlDom.AsNode(), DataXPath(d) + "/*");
      XmlDocument doc;
      if (!doc.LoadXml(text)) Fail("Failed to load data xml.");
      XmlNodeList rows = doc.SelectNodes("//data[1]/row[@index!='0' or not (@index)]");
      for (XmlNode row : rows) {
        if (!AddDataRow(d, "", row.Xml(), col)) return;
      }
      result = true;
    });
    return result;
  }
  bool DeleteData(const std::string& d) {
    bool result = false;
    Recorded([&] { result = RemoveSelectedNodes(m_cXmlDom.AsNode(), DataXPath(d)); });
    return result;
  }
  bool AddDataRow(const std::string& d, const std::string& r, const std::string& text,
                  const std::string& col) {
    bool result = false;
    Recorded([&] {
      if (Trim(d).empty() || Trim(text).empty()) Fail("Invalid data ID or row content to add.");
      std::string id = Trim(r);
      if (id.empty() && !col.empty()) {
        XmlDocument doc;
        if (!doc.LoadXml(text)) Fail("Failed to load data row xml.");
        id = GetNodeAttribute(doc.SelectSingleNode("/*/col[@name='" + EscapeXmlText(col) + "']"),
                              "value", "");
      }
      if (id.empty()) id = NewGuidText(Kvo_GUID_FORMAT_PUREDATA);
      if (id.empty()) Fail("No Data ID/Row ID specified.");
      if (!m_cXmlDom.SelectSingleNode(RowXPath(d, id))) {
        XmlNode data = EnsureData(d);
        XmlNode row = m_cXmlDom.CreateElement("row");
        row.SetAttribute("guid", id);
        data.AppendChild(row);
      }
      result = UpdateDataRow(d, id, text);
    });
    return result;
  }
  bool UpdateDataRow(const std::string& d, const std::string& r, const std::string& text) {
    bool result = false;
    Recorded([&] {
      if (Trim(d).empty() || Trim(r).empty()) Fail("Invalid data/row ID to update.");
      XmlNode row = m_cXmlDom.SelectSingleNode(RowXPath(d, r));
      if (!row) Fail("Specified data/row cannot be found.");
      RemoveSelectedNodes(m_cXmlDom.AsNode(), RowXPath(d, r) + "/*");
      XmlDocument doc;
      if (!doc.LoadXml(text)) Fail("Failed to load data row xml.");
      for (XmlNode col : doc.SelectNodes("//row[1]/col")) row.AppendChild(col.CloneNode(true));
      result = true;
    });
    return result;
  }
  bool DeleteDataRow(const std::string& d, const std::string& r) {
    bool result = false;
    Recorded([&] { result = RemoveSelectedNodes(m_cXmlDom.AsNode(), RowXPath(d, r)); });
    return result;
  }
  bool GetDataRow(const std::string& d, const std::string& r, std::string& out) {
    bool result = false;
    Recorded([&] {
      out.clear();
      XmlNode row = m_cXmlDom.SelectSingleNode(RowXPath(d, r));
      if (!row) Fail("Specified data/row id cannot be found.");
      out = row.Xml();
      result = true;
    });
    return result;
  }
  bool GetDataRowID(const std::string& d, int32_t n, std::string& out) {
    bool result = false;
    Recorded([&] {
      out.clear();
      if (n < 1) Fail("Invalid data index (" + std::to_string(n) + ").");
      if (!m_cXmlDom.SelectSingleNode(DataXPath(d))) Fail("Specified data not found(" + d + ").");
      XmlNode row = m_cXmlDom.SelectSingleNode(RowXPath(d, "") + "[" + std::to_string(n) + "]");
      if (!row) Fail("Specified data row index (" + std::to_string(n) + ") out of boundary.");
      out = row.GetAttribute("guid");
      result = true;
    });
    return result;
  }
  int32_t GetDataRowCount(const std::string& d) {
    int32_t result = -1;
    Recorded([&] { result = m_cXmlDom.SelectNodes(RowXPath(d, "")).Length(); });
    return result;
  }
  int32_t KeyIds(const std::string& d, const std::string& name, const std::string& value,
                 std::vector<std::string>& ids) {
    int32_t result = -1;
    Recorded([&] {
      XmlNodeList rows = KeyRows(d, name, value);
      if (rows.Length() == 0) {
        result = 0;
        return;
      }
      ids.clear();
      for (XmlNode row : rows) ids.push_back(row.GetAttribute("guid"));
      result = rows.Length();
    });
    return result;
  }
  bool KeyId(const std::string& d, const std::string& name, const std::string& value,
             std::string& id) {
    bool result = false;
    Recorded([&] {
      std::vector<std::string> ids;
      int32_t found = KeyIds(d, name, value, ids);
      if (found == 0) Fail("Specified row cannot be found(" + name + "=" + value + ").");
      if (found < 0) return;
      id = ids[0];
      result = true;
    });
    return result;
  }
};

class RefDataset : public RefBase {
 public:
  RefDataset() : RefBase(kDatasetFrame) {}

  std::string RowXPath(const std::string& d, int32_t n) {
    std::string xpath = DataXPath(d) + "/row";
    if (n >= 0) xpath += "[" + std::to_string(n) + "]";
    return xpath;
  }
  bool Parse(const std::string& text) {
    return Load(text, [&](const std::string& data) { return AddData("", data); });
  }
  bool AddData(const std::string& d, const std::string& text) {
    bool result = false;
    Recorded([&] {
      std::string id = Trim(d);
      if (id.empty()) id = DataIDFromXml(text);
      if (id.empty()) id = NewGuidText(Kvo_GUID_FORMAT_PUREDATA);
      EnsureData(id);
      if (!text.empty() && !UpdateData(id, text)) return;
      result = true;
    });
    return result;
  }
  bool UpdateData(const std::string& d, const std::string& text) {
    bool result = false;
    Recorded([&] {
      XmlNode data = m_cXmlDom.SelectSingleNode(DataXPath(d));
      if (!data) Fail("Specified Data element can't be found - " + d);
      RemoveSelectedNodes(m_cXmlDom.AsNode(), DataXPath(d) + "/*");
      XmlDocument doc;
      if (!doc.LoadXml(text)) Fail("Failed to load data xml.");
      for (XmlNode row : doc.SelectNodes("//data[1]/row[@index!='0' or not (@index)]")) {
        data.AppendChild(row);
      }
      result = true;
    });
    return result;
  }
  bool GetDataRow(const std::string& d, int32_t n, std::string& out) {
    bool result = false;
    Recorded([&] {
      out.clear();
      XmlNode row = m_cXmlDom.SelectSingleNode(RowXPath(d, n));
      if (!row) Fail("Specified data/row id cannot be found.");
      out = row.Xml();
      result = true;
    });
    return result;
  }
  bool AddDataRow(const std::string& d, const std::string& text) {
    bool result = false;
    Recorded([&] {
      if (Trim(d).empty()) Fail("Invalid data ID or row content to add.");
      XmlNode data = m_cXmlDom.SelectSingleNode(DataXPath(d));
      if (!data) Fail("Invalid data ID - " + d + ".");
      XmlDocument doc;
      if (!doc.LoadXml(text)) Fail("Invalid data row content.");
      data.AppendChild(doc.DocumentElement());
      result = true;
    });
    return result;
  }
  bool InsertDataRow(const std::string& d, const std::string& text, int32_t n) {
    bool result = false;
    Recorded([&] {
      if (Trim(d).empty() || n < 0) Fail("Invalid data ID or row index content to insert.");
      XmlNode data = m_cXmlDom.SelectSingleNode(DataXPath(d));
      if (!data) Fail("Invalid data ID - " + d + ".");
      XmlDocument doc;
      if (!doc.LoadXml(text)) Fail("Invalid data row content.");
      XmlNode at = m_cXmlDom.SelectSingleNode(RowXPath(d, n));
      if (at) {
        data.InsertBefore(doc.DocumentElement(), at);
      } else {
        data.AppendChild(doc.DocumentElement());
      }
      result = true;
    });
    return result;
  }
  bool DeleteDataRow(const std::string& d, int32_t n) {
    bool result = false;
    Recorded([&] { result = RemoveSelectedNodes(m_cXmlDom.AsNode(), RowXPath(d, n)); });
    return result;
  }
  bool UpdateDataRow(const std::string& d, int32_t n, const std::string& text) {
    bool result = false;
    Recorded([&] {
      if (Trim(d).empty() || n < 0) Fail("Invalid data/row index to update.");
      XmlNode data = m_cXmlDom.SelectSingleNode(DataXPath(d));
      if (!data) Fail("Invalid data ID - " + d + ".");
      XmlNode old = m_cXmlDom.SelectSingleNode(RowXPath(d, n));
      if (!old) Fail("Specified data/row cannot be found.");
      XmlDocument doc;
      if (!doc.LoadXml(text)) Fail("Invalid data row content.");
      if (!data.ReplaceChild(doc.DocumentElement(), old)) Fail("Replace data error.");
      result = true;
    });
    return result;
  }
  bool DeleteByKey(const std::string& d, const std::string& name, const std::string& value) {
    bool result = false;
    Recorded([&] {
      for (XmlNode row : KeyRows(d, name, value)) row.ParentNode().RemoveChild(row);
      result = true;
    });
    return result;
  }
  int32_t KeyTexts(const std::string& d, const std::string& name, const std::string& value,
                   std::vector<std::string>& texts) {
    int32_t result = -1;
    Recorded([&] {
      XmlNodeList rows = KeyRows(d, name, value);
      if (rows.Length() == 0) {
        result = 0;
        return;
      }
      texts.clear();
      for (XmlNode row : rows) texts.push_back(row.Xml());
      result = rows.Length();
    });
    return result;
  }
};

// --- Random material ---

class Material {
 public:
  explicit Material(uint32_t seed) : rng_(seed) {}

  int Pick(int n) { return std::uniform_int_distribution<int>(0, n - 1)(rng_); }
  std::string Of(const std::vector<std::string>& choices) {
    return choices[Pick(static_cast<int>(choices.size()))];
  }

  std::string DataId() { return Of({"D", "d", "E", "D ", "", "F", "a'b", "\xC3\xA9"}); }
  std::string RowId() { return Of({"r1", "r2", "R1", " r1", "", "r3", "x'y", "A"}); }
  std::string KeyValue() { return Of({"A", "B", "a", " A", "x'y", "&"}); }
  std::string Col(const std::string& name, const std::string& value) {
    return "<col name=\"" + name + "\" value=\"" + Escape(value) + "\"/>";
  }
  std::string RowText(bool wrap_extra = false) {
    std::string row = Of({"<row>", "<row guid=\"r1\">", "<row index=\"0\">", "<row a=\"1\">"});
    int cols = Pick(3);
    for (int i = 0; i < cols; ++i) row += Col(Of({"k", "n", "x"}), KeyValue());
    if (Pick(8) == 0) row += "<other>t</other>";
    if (Pick(10) == 0) row += "<col name=\"k\"><row><col name=\"n\" value=\"in\"/></row></col>";
    row += "</row>";
    if (wrap_extra)
      row = "<rows>" + row + Of({"", "<row><col name=\"z\" value=\"2\"/></row>"}) + "</rows>";
    if (Pick(12) == 0)
      row = Of({"", "<row", "  ", "<row xmlns=\"urn:x\"><col name=\"k\" value=\"A\"/></row>"});
    return row;
  }
  std::string DataText() {
    std::string text = "<data" + Of({"", " guid=\"D\"", " guid=\"e\"", " guid=\"G \""}) + ">";
    int rows = Pick(4);
    for (int i = 0; i < rows; ++i) text += RowText();
    text += "</data>";
    if (Pick(10) == 0)
      text = Of({"<data>", "<x><data><row><col name=\"k\" value=\"A\"/></row></data></x>"});
    return text;
  }
  // Whole documents, now and then with what makes a document other than
  // plain: namespaces, a doctype with an entity, kept blanks, blanks that
  // are dropped, a data element inside another.
  std::string DatasetText() {
    const int kind = Pick(12);
    std::string text;
    if (kind == 0) text = "<!DOCTYPE dataset [<!ENTITY e 'A'>]>";
    text += kind == 1   ? "<dataset xmlns:p=\"urn:p\">"
            : kind == 2 ? "<dataset xml:space=\"preserve\">"
                        : "<dataset>";
    int count = Pick(3);
    for (int i = 0; i < count; ++i) {
      std::string data = DataText();
      if (kind == 0) ReplaceFirst(data, "value=\"A\"", "value=\"&e;\"");
      if (kind == 1) ReplaceFirst(data, "<col ", "<col p:x=\"1\" ");
      if (kind == 2 || kind == 3) ReplaceFirst(data, "<row", " <row");
      if (kind == 4) ReplaceFirst(data, "</row>", "<data><row/></data></row>");
      text += data;
    }
    return text + "</dataset>";
  }
  std::string GuidCol() { return Of({"", "", "k", "n", "q'"}); }

 private:
  static void ReplaceFirst(std::string& text, const std::string& from, const std::string& to) {
    const size_t at = text.find(from);
    if (at != std::string::npos) text.replace(at, from.size(), to);
  }
  static std::string Escape(const std::string& text) {
    std::string out;
    for (char c : text) {
      if (c == '&') {
        out += "&amp;";
      } else if (c == '\'') {
        out += "&apos;";
      } else {
        out += c;
      }
    }
    return out;
  }
  std::mt19937 rng_;
};

// GUIDs that count up; the count is wound back so that both sides of a step
// get the same ones.
class RewindableGuids : public ForwardingPlatform {
 public:
  int32_t CreateGuid(Guid& guid) override {
    guid = Guid();
    guid.Data1 = ++count_;
    return 0;
  }
  uint32_t count_ = 0;
};

class DatasetDifferentialTest : public ::testing::TestWithParam<uint32_t> {
 protected:
  // Runs `fast` and `ref` from the same GUID count and checks that they used
  // the same number of GUIDs.
  template <class Fast, class Ref>
  void Both(Fast fast, Ref ref) {
    uint32_t start = guids_.count_;
    fast();
    uint32_t fast_end = guids_.count_;
    guids_.count_ = start;
    ref();
    EXPECT_EQ(guids_.count_, fast_end);
  }

  RewindableGuids guids_;
  ScopedPlatform scoped_{guids_};
};

TEST_P(DatasetDifferentialTest, RowIdDatasetMatchesTheLiteralReference) {
  Material m(GetParam());
  KvoDatasetO fast;
  RefDatasetO ref;
  int succeeded = 0;
  size_t largest = 0;
  for (int step = 0; step < 150; ++step) {
    int op = m.Pick(16);
    std::string d = m.DataId(), r = m.RowId(), note;
    bool a = false, b = false;
    int32_t x = 0, y = 0;
    std::string ta, tb;
    std::vector<std::string> va, vb;
    switch (op) {
      case 0: {
        std::string text = m.DatasetText();
        note = "Parse " + text;
        Both([&] { a = fast.Parse(text); }, [&] { b = ref.Parse(text); });
        break;
      }
      case 1: {
        std::string text = m.Pick(3) == 0 ? "" : m.DataText(), col = m.GuidCol();
        note = "AddData " + d + " " + text + " " + col;
        Both([&] { a = fast.AddData(d, text, col); }, [&] { b = ref.AddData(d, text, col); });
        break;
      }
      case 2: {
        std::string text = m.DataText(), col = m.GuidCol();
        note = "UpdateData " + d + " " + text + " " + col;
        Both([&] { a = fast.UpdateData(d, text, col); }, [&] { b = ref.UpdateData(d, text, col); });
        break;
      }
      case 3:
      case 4: {
        std::string text = m.RowText(m.Pick(3) == 0), col = m.GuidCol();
        note = "AddDataRow " + d + "|" + r + "|" + text + "|" + col;
        Both([&] { a = fast.AddDataRow(d, r, text, col); },
             [&] { b = ref.AddDataRow(d, r, text, col); });
        break;
      }
      case 5: {
        std::string text = m.RowText(m.Pick(2) == 0);
        note = "UpdateDataRow " + d + "|" + r + "|" + text;
        Both([&] { a = fast.UpdateDataRow(d, r, text); },
             [&] { b = ref.UpdateDataRow(d, r, text); });
        break;
      }
      case 6:
        note = "DeleteDataRow " + d + "|" + r;
        a = fast.DeleteDataRow(d, r);
        b = ref.DeleteDataRow(d, r);
        break;
      case 7:
        note = "GetDataRow " + d + "|" + r;
        a = fast.GetDataRow(d, r, ta);
        b = ref.GetDataRow(d, r, tb);
        break;
      case 8: {
        int32_t n = m.Pick(5) - 1;
        note = "GetDataRowByIndex " + d + " " + std::to_string(n);
        a = fast.GetDataRowByIndex(d, n, ta);
        std::string id;
        b = ref.GetDataRowID(d, n, id) && ref.GetDataRow(d, id, tb);
        break;
      }
      case 9: {
        int32_t n = m.Pick(4);
        note = "DeleteDataRowByIndex " + d + " " + std::to_string(n);
        a = fast.DeleteDataRowByIndex(d, n);
        std::string id;
        b = ref.GetDataRowID(d, n, id) && ref.DeleteDataRow(d, id);
        break;
      }
      case 10: {
        int32_t n = m.Pick(4);
        std::string text = m.RowText();
        note = "UpdateDataRowByIndex " + d + " " + std::to_string(n) + text;
        a = fast.UpdateDataRowByIndex(d, n, text);
        std::string id;
        b = ref.GetDataRowID(d, n, id) && ref.UpdateDataRow(d, id, text);
        break;
      }
      case 11: {
        std::string name = m.Of({"k", "n", " "}), value = m.KeyValue();
        note = "DeleteDataRowByKeyCol " + d + " " + name + "=" + value;
        a = fast.DeleteDataRowByKeyCol(d, name, value);
        std::string id;
        b = ref.KeyId(d, name, value, id) && ref.DeleteDataRow(d, id);
        break;
      }
      case 12: {
        std::string name = m.Of({"k", "n"}), value = m.KeyValue();
        note = "DeleteDataRowArrayByKeyCol " + d + " " + name + "=" + value;
        x = fast.DeleteDataRowArrayByKeyCol(d, name, value);
        // The fast side hands out no IDs here, so the reference's stay apart.
        std::vector<std::string> ids;
        y = ref.KeyIds(d, name, value, ids);
        if (y > 0) {
          for (const std::string& id : ids) {
            if (!ref.DeleteDataRow(d, id)) {
              y = -1;
              break;
            }
          }
        }
        break;
      }
      case 13: {
        std::string name = m.Of({"k", "n"}), value = m.KeyValue();
        note = "GetDataRowIDArrayByKeyCol " + d + " " + name + "=" + value;
        x = fast.GetDataRowIDArrayByKeyCol(d, name, value, va);
        y = ref.KeyIds(d, name, value, vb);
        break;
      }
      case 14:
        note = "GetDataRowCount " + d;
        x = fast.GetDataRowCount(d);
        y = ref.GetDataRowCount(d);
        break;
      default:
        note = "DeleteData " + d;
        a = fast.DeleteData(d);
        b = ref.DeleteData(d);
        break;
    }
    SCOPED_TRACE("step " + std::to_string(step) + ": " + note);
    EXPECT_EQ(a, b);
    EXPECT_EQ(x, y);
    EXPECT_EQ(ta, tb);
    EXPECT_EQ(va, vb);
    EXPECT_EQ(fast.GetLastError(), ref.GetLastError());
    std::string saved;
    fast.Save(saved);
    ASSERT_EQ(saved, ref.Saved());
    if (a || x > 0) ++succeeded;
    if (saved.size() > largest) largest = saved.size();
  }
  // The sequence did real work, not only failing calls on an empty document.
  EXPECT_GT(succeeded, 30);
  EXPECT_GT(largest, 150u);
}

TEST_P(DatasetDifferentialTest, PositionalDatasetMatchesTheLiteralReference) {
  Material m(GetParam() + 1000);
  KvoDataset fast;
  RefDataset ref;
  int succeeded = 0;
  size_t largest = 0;
  for (int step = 0; step < 150; ++step) {
    int op = m.Pick(10);
    std::string d = m.DataId(), note;
    int32_t n = m.Pick(6) - 1;
    bool a = false, b = false;
    int32_t x = 0, y = 0;
    std::string ta, tb;
    std::vector<std::string> va, vb;
    switch (op) {
      case 0: {
        std::string text = m.DatasetText();
        note = "Parse " + text;
        Both([&] { a = fast.Parse(text); }, [&] { b = ref.Parse(text); });
        break;
      }
      case 1: {
        std::string text = m.Pick(3) == 0 ? "" : m.DataText();
        note = "AddData " + d + " " + text;
        Both([&] { a = fast.AddData(d, text); }, [&] { b = ref.AddData(d, text); });
        break;
      }
      case 2: {
        std::string text = m.DataText();
        note = "UpdateData " + d + " " + text;
        a = fast.UpdateData(d, text);
        b = ref.UpdateData(d, text);
        break;
      }
      case 3: {
        std::string text = m.RowText();
        note = "InsertDataRow " + d + " " + std::to_string(n) + " " + text;
        a = fast.InsertDataRow(d, text, n);
        b = ref.InsertDataRow(d, text, n);
        break;
      }
      case 4: {
        std::string text = m.RowText();
        note = "AddDataRow " + d + " " + text;
        a = fast.AddDataRow(d, text);
        b = ref.AddDataRow(d, text);
        break;
      }
      case 5:
        note = "DeleteDataRow " + d + " " + std::to_string(n);
        a = fast.DeleteDataRow(d, n);
        b = ref.DeleteDataRow(d, n);
        break;
      case 6: {
        std::string text = m.RowText();
        note = "UpdateDataRow " + d + " " + std::to_string(n) + " " + text;
        a = fast.UpdateDataRow(d, n, text);
        b = ref.UpdateDataRow(d, n, text);
        break;
      }
      case 7:
        note = "GetDataRow " + d + " " + std::to_string(n);
        a = fast.GetDataRow(d, n, ta);
        b = ref.GetDataRow(d, n, tb);
        break;
      case 8: {
        std::string name = m.Of({"k", "n", ""}), value = m.KeyValue();
        note = "DeleteDataRowByKeyCol " + d + " " + name + "=" + value;
        a = fast.DeleteDataRowByKeyCol(d, name, value);
        b = ref.DeleteByKey(d, name, value);
        break;
      }
      default: {
        std::string name = m.Of({"k", "n"}), value = m.KeyValue();
        note = "GetDataRowArrayByKeyCol " + d + " " + name + "=" + value;
        x = fast.GetDataRowArrayByKeyCol(d, name, value, va);
        y = ref.KeyTexts(d, name, value, vb);
        break;
      }
    }
    SCOPED_TRACE("step " + std::to_string(step) + ": " + note);
    EXPECT_EQ(a, b);
    EXPECT_EQ(x, y);
    EXPECT_EQ(ta, tb);
    EXPECT_EQ(va, vb);
    EXPECT_EQ(fast.GetLastError(), ref.GetLastError());
    std::string saved;
    fast.Save(saved);
    ASSERT_EQ(saved, ref.Saved());
    if (a || x > 0) ++succeeded;
    if (saved.size() > largest) largest = saved.size();
  }
  // The sequence did real work, not only failing calls on an empty document.
  EXPECT_GT(succeeded, 30);
  EXPECT_GT(largest, 150u);
}

INSTANTIATE_TEST_SUITE_P(Seeds, DatasetDifferentialTest, ::testing::Range(1u, 21u));

}  // namespace
}  // namespace veld
