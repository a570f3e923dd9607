// KvoDatasetBase: the members both dataset classes share.
#include "veld/datasets/kvo_dataset_base.h"

#include <utility>

#include "datasets/dataset_common.h"
#include "datasets/dataset_store.h"

namespace veld {

using datasets_internal::Check;
using datasets_internal::DatasetStore;
using datasets_internal::NodeText;
namespace di = datasets_internal;

KvoDatasetBase::KvoDatasetBase(const FrameSettings& settings)
    : DocumentFrame(settings), store_(std::make_unique<DatasetStore>(m_cXmlDom)) {}

KvoDatasetBase::~KvoDatasetBase() = default;

void KvoDatasetBase::Reset() {
  DocumentFrame::Reset();
  if (store_) store_->Forget();
}

bool KvoDatasetBase::Save(std::string& sDatasetXml) {
  bool result = false;
  Recorded([&] {
    sDatasetXml.clear();
    sDatasetXml = m_cXmlDom.Xml();
    result = true;
  });
  return result;
}

bool KvoDatasetBase::SaveToFile(const std::string& sFile) {
  bool result = false;
  Recorded([&] {
    m_cXmlDom.Save(sFile);
    result = true;
  });
  return result;
}

bool KvoDatasetBase::ExistData(const std::string& sDataID) {
  bool result = false;
  Recorded([&] { result = store_->HasDataId(sDataID); });
  return result;
}

std::string KvoDatasetBase::GetExactDataID(const std::string& sCaseInSensitiveDataID) {
  std::string result;
  Recorded([&] { result = store_->ExactDataId(sCaseInSensitiveDataID); });
  return result;
}

bool KvoDatasetBase::GetData(const std::string& sDataID, std::string& sDataXml) {
  bool result = false;
  Recorded([&] {
    sDataXml.clear();
    xmlNodePtr data = store_->FirstData(sDataID);
    if (data == nullptr) Check(di::kDataIdNotFound);
    sDataXml = NodeText(data);
    result = true;
  });
  return result;
}

bool KvoDatasetBase::DeleteData(const std::string& sDataID) {
  bool result = false;
  Recorded([&] {
    DatasetStore::DataRef ref = store_->ResolveData(sDataID);
    if (ref.indexed) {
      for (xmlNodePtr data : ref.matches) store_->Remove(data);
    } else {
      store_->RemoveSelected(ref.xpath);
    }
    result = true;
  });
  return result;
}

bool KvoDatasetBase::GetDataID(int32_t nDataIndex, std::string& sDataID) {
  bool result = false;
  Recorded([&] {
    sDataID.clear();
    if (nDataIndex < 1) Check(di::InvalidDataIndex(nDataIndex));
    xmlNodePtr data = store_->DataAt(nDataIndex);
    if (data == nullptr) Check(di::DataIndexOutOfBoundary(nDataIndex));
    sDataID = DatasetStore::GuidOf(data);
    result = true;
  });
  return result;
}

int32_t KvoDatasetBase::GetDataCount() {
  int32_t result = -1;
  Recorded([&] { result = store_->DataCount(); });
  return result;
}

bool KvoDatasetBase::GetDataByIndex(int32_t nDataIndex, std::string& sDataXml) {
  bool result = false;
  Recorded([&] {
    std::string id;
    if (!GetDataID(nDataIndex, id)) {
      sDataXml.clear();
      return;
    }
    result = GetData(id, sDataXml);
  });
  return result;
}

bool KvoDatasetBase::DeleteDataByIndex(int32_t nDataIndex) {
  bool result = false;
  Recorded([&] {
    std::string id;
    if (!GetDataID(nDataIndex, id)) {
      return;
    }
    result = DeleteData(id);
  });
  return result;
}

void KvoDatasetBase::SetProgressUpdater(std::shared_ptr<KvoProgressUpdater> cUpdater) {
  progress_ = std::move(cUpdater);
}

}  // namespace veld
