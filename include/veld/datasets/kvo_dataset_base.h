// KvoDatasetBase: what the two dataset classes, KvoDatasetO (rows by ID) and
// KvoDataset (rows by position), have in common: the held dataset document
// with its indexes, the whole-document and data-element members that behave
// the same in both, and the attached progress notifier.
//
// Like every worker class, no member raises: failures are recorded
// (GetLastError, RaiseLastError) and the member returns false, "" or -1.
#ifndef VELD_DATASETS_KVO_DATASET_BASE_H_
#define VELD_DATASETS_KVO_DATASET_BASE_H_

#include <cstdint>
#include <memory>
#include <string>

#include "veld/export.h"
#include "veld/foundation/worker_frame.h"

namespace veld {

class KvoProgressUpdater;

namespace datasets_internal {
class DatasetStore;
struct Access;
}  // namespace datasets_internal

class VELD_EXPORT KvoDatasetBase : public DocumentFrame {
 public:
  // Replaces the document with one holding an empty "dataset" root and clears
  // the last error.
  void Reset();

  // --- Whole documents ---

  // The whole document as text.
  bool Save(std::string& sDatasetXml);
  // Writes the document to a file (UTF-8, no declaration); records the file
  // error on failure.
  bool SaveToFile(const std::string& sFile);

  // --- Data elements ---

  // True when a data element's ID equals `sDataID` ignoring case.
  bool ExistData(const std::string& sDataID);
  // The stored ID that `sCaseInSensitiveDataID` matches ignoring case, or "".
  std::string GetExactDataID(const std::string& sCaseInSensitiveDataID);
  // The data element's text; "Specified data id cannot be found.".
  bool GetData(const std::string& sDataID, std::string& sDataXml);
  // Removes every data element the ID selects (an unknown ID is no failure).
  bool DeleteData(const std::string& sDataID);
  // The ID of the data element at a position; "Invalid data index (n)." below
  // 1, "Specified data index (n) out of boundary." past the end.
  bool GetDataID(int32_t nDataIndex, std::string& sDataID);
  // Number of data elements.
  int32_t GetDataCount();
  // GetDataID, then GetData / DeleteData with that ID.
  bool GetDataByIndex(int32_t nDataIndex, std::string& sDataXml);
  bool DeleteDataByIndex(int32_t nDataIndex);

  // --- Progress ---

  // Attaches a progress notifier (nullptr detaches). While Parse, ParseFile
  // and SaveDataToMDBTable work through rows it raises ProgressChanged(total,
  // current, status), about two hundred times per call at most and once at
  // the end; the results are the same with or without it. A listener that
  // throws stops the call, which then fails with the listener's error.
  void SetProgressUpdater(std::shared_ptr<KvoProgressUpdater> cUpdater);

 protected:
  // A new object holds an empty "dataset" root and no error.
  explicit KvoDatasetBase(const FrameSettings& settings);
  ~KvoDatasetBase();

  std::unique_ptr<datasets_internal::DatasetStore> store_;
  std::shared_ptr<KvoProgressUpdater> progress_;
};

}  // namespace veld

#endif  // VELD_DATASETS_KVO_DATASET_BASE_H_
