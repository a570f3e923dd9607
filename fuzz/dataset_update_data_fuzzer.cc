// Data texts: UpdateData of both dataset classes with arbitrary bytes, on a
// document that already holds rows. Afterwards the row counts and row texts
// the classes report must match plain XPath on the held document.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <type_traits>

#include "datasets/dataset_access.h"
#include "veld/datasets/kvo_dataset.h"
#include "veld/datasets/kvo_dataset_o.h"

namespace {

void Check(bool condition) {
  if (!condition) std::abort();
}

const char kStart[] =
    "<data guid=\"D\"><row guid=\"r1\"><col name=\"k\" value=\"A\"/></row>"
    "<row guid=\"r2\"><col name=\"k\" value=\"B\"/></row></data>";

template <class Dataset>
void CheckRows(Dataset& ds) {
  veld::XmlDocument& doc = veld::datasets_internal::Access::Document(ds);
  veld::XmlNodeList rows = doc.SelectNodes("/*/data[@guid='D']/row");
  Check(ds.GetDataRowCount("D") == rows.Length());
  for (int32_t i = 0; i < rows.Length(); ++i) {
    std::string found;
    if constexpr (std::is_same_v<Dataset, veld::KvoDataset>) {
      Check(ds.GetDataRow("D", i + 1, found) && found == rows.Item(i).Xml());
    } else {
      Check(ds.GetDataRowID("D", i + 1, found) && found == rows.Item(i).GetAttribute("guid"));
    }
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string text(reinterpret_cast<const char*>(data), size);
  {
    veld::KvoDatasetO ds;
    Check(ds.AddData("D", kStart, "k"));
    ds.UpdateData("D", text, "k");
    CheckRows(ds);
    ds.UpdateData("d", text);
    CheckRows(ds);
  }
  {
    veld::KvoDataset ds;
    Check(ds.AddData("D", kStart));
    ds.UpdateData("D", text);
    CheckRows(ds);
  }
  return 0;
}
