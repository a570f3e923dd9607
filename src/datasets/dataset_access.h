// The held document of a dataset object, for the library's own tests and
// tools that need to look at or replace it directly. Replacing the document
// is noticed by the object; changing it in place is not, so callers that do
// must call Forget afterwards.
#ifndef VELD_DATASETS_DATASET_ACCESS_H_
#define VELD_DATASETS_DATASET_ACCESS_H_

#include "datasets/dataset_store.h"
#include "veld/datasets/kvo_dataset.h"
#include "veld/datasets/kvo_dataset_o.h"

namespace veld::datasets_internal {

struct Access {
  static XmlDocument& Document(KvoDatasetO& dataset) { return dataset.m_cXmlDom; }
  static XmlDocument& Document(KvoDataset& dataset) { return dataset.m_cXmlDom; }
  static void Forget(KvoDatasetO& dataset) { dataset.store_->Forget(); }
  static void Forget(KvoDataset& dataset) { dataset.store_->Forget(); }
};

}  // namespace veld::datasets_internal

#endif  // VELD_DATASETS_DATASET_ACCESS_H_
