// Dataset texts: KvoDatasetO::Parse and KvoDataset::Parse of arbitrary bytes.
// Whatever loads must save, parse again to the same text shape, and agree
// with plain XPath on the held document about counts and row texts.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "datasets/dataset_access.h"
#include "veld/datasets/kvo_dataset.h"
#include "veld/datasets/kvo_dataset_o.h"

namespace {

void Check(bool condition) {
  if (!condition) std::abort();
}

template <class Dataset>
void CheckAgainstXPath(Dataset& ds) {
  veld::XmlDocument& doc = veld::datasets_internal::Access::Document(ds);
  const int32_t count = ds.GetDataCount();
  Check(count == doc.SelectNodes("/*/data").Length());
  for (int32_t i = 1; i <= count && i <= 4; ++i) {
    veld::XmlNode data = doc.SelectSingleNode("/*/data[" + std::to_string(i) + "]");
    veld::XmlNodeList rows = data.SelectNodes("row");
    std::string id;
    Check(ds.GetDataID(i, id));
    Check(id == data.GetAttribute("guid"));
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string text(reinterpret_cast<const char*>(data), size);
  {
    veld::KvoDatasetO ds;
    if (ds.Parse(text)) {
      CheckAgainstXPath(ds);
      std::string saved;
      Check(ds.Save(saved));
      veld::KvoDatasetO again;
      Check(again.Parse(saved));
      Check(again.GetDataCount() == ds.GetDataCount());
    } else {
      Check(!ds.GetLastError().empty());
    }
    ds.Parse(text, "", "/*/*");
  }
  {
    veld::KvoDataset ds;
    if (ds.Parse(text)) {
      CheckAgainstXPath(ds);
      std::string saved;
      Check(ds.Save(saved));
    } else {
      Check(!ds.GetLastError().empty());
    }
  }
  return 0;
}
