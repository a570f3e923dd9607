// KvoDataset: a dataset document whose rows are addressed by position.
//
// It holds the same document as KvoDatasetO (see veld/datasets/kvo_dataset_o.h
// for the format and the ID rules) with the same data-level members, but it
// never writes or reads row IDs: rows are addressed by their 1-based position
// in the data element, or found by a key column, and whole row elements are
// moved in and out instead of their cols being copied. Rows keep whatever
// attributes the caller gave them.
//
// Positions follow XPath: position 0 selects nothing, and a negative position
// selects every row (or, where one row is wanted, the first).
//
// Failures are recorded as in KvoDatasetO: no member raises; each clears the
// last error on entry and records its failure, returning false, nullptr or -1.
#ifndef VELD_DATASETS_KVO_DATASET_H_
#define VELD_DATASETS_KVO_DATASET_H_

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "veld/datasets/kvo_dataset_base.h"
#include "veld/export.h"
#include "veld/items/kvo_general_items.h"

namespace veld {

namespace datasets_internal {
struct Access;
}  // namespace datasets_internal

class VELD_EXPORT KvoDataset : public KvoDatasetBase {
 public:
  // A new object holds an empty "dataset" root and no error. Reset, Save,
  // SaveToFile, the shared data-element members and SetProgressUpdater come
  // from KvoDatasetBase.
  KvoDataset();
  ~KvoDataset();

  // --- Whole documents (as KvoDatasetO, without row ID column) ---

  bool Parse(const std::string& sDatasetXml, const std::string& sDataXPath = "//data");
  bool ParseFile(const std::string& sDatasetFile, const std::string& sDataXPath = "//data");

  // --- Data elements ---

  // As KvoDatasetO::AddData: ID from `sDataID` trimmed, the text's root
  // "guid" or a new GUID; rows filled by UpdateData when a text is given.
  bool AddData(const std::string& sDataID = "", const std::string& sDataXml = "");
  // Replaces the children of an existing data element by the data rows of
  // the text's first data element, each row element whole. Records
  // "Specified Data element can't be found - " + ID when it does not exist
  // (it is never created here).
  bool UpdateData(const std::string& sDataID, const std::string& sDataXml);
  bool UpdateDataByIndex(int32_t nDataIndex, const std::string& sDataXml);

  // --- Rows by position ---

  // The text of the row at `nIndex`; "Specified data/row id cannot be found.".
  bool GetDataRow(const std::string& sDataID, int32_t nIndex, std::string& sDataRowXml);
  // Appends the text's root element, whatever its name, to the data element.
  // "Invalid data ID or row content to add." for a blank ID, "Invalid data ID
  // - " + ID + "." for a missing data element, "Invalid data row content."
  // for a malformed text.
  bool AddDataRow(const std::string& sDataID, const std::string& sDataRowXml);
  // Inserts the text's root element before the row at `nIndex`, or appends
  // it when there is none (0 or past the end). "Invalid data ID or row index
  // content to insert." for a blank ID or a negative index.
  bool InsertDataRow(const std::string& sDataID, const std::string& sDataRowXml, int32_t nIndex);
  // Removes the row at `nIndex` (every row for a negative index).
  bool DeleteDataRow(const std::string& sDataID, int32_t nIndex);
  // Replaces the row at `nIndex` by the text's root element. "Invalid
  // data/row index to update.", "Specified data/row cannot be found.",
  // "Invalid data row content.".
  bool UpdateDataRow(const std::string& sDataID, int32_t nIndex, const std::string& sDataRowXml);
  int32_t GetDataRowCount(const std::string& sDataID);
  int32_t GetDataRowCountByIndex(int32_t nDataIndex);
  bool AddDataRowByIndex(int32_t nDataIndex, const std::string& sDataRowXml);

  // --- Rows by key column ---

  // The text of the `nIndex`-th matching row; "Invalid index value." below 1,
  // "Specified index value out of bounds." past the matches.
  bool GetDataRowByKeyCol(const std::string& sDataID, const std::string& sKeyColName,
                          const std::string& sKeyColValue, std::string& sRowDataXml,
                          int32_t nIndex = 1);
  // The texts of all matching rows; their number, 0 (array untouched) or -1.
  int32_t GetDataRowArrayByKeyCol(const std::string& sDataID, const std::string& sKeyColName,
                                  const std::string& sKeyColValue,
                                  std::vector<std::string>& sRowDataXmlArray);
  // Removes every matching row.
  bool DeleteDataRowByKeyCol(const std::string& sDataID, const std::string& sKeyColName,
                             const std::string& sKeyColValue);

  // --- Rows as item collections; nullptr on failure, owned by the caller ---

  std::shared_ptr<KvoGeneralItems> GetDataRowColItems(const std::string& sDataID, int32_t nIndex);
  std::shared_ptr<KvoGeneralItems> GetDataRowColItemsByKeyCol(const std::string& sDataID,
                                                              const std::string& sKeyColName,
                                                              const std::string& sKeyColValue);

  // --- Export ---

  // Writes every row of the data element into an existing table, one record
  // per row, each field set from the row's first col of the same name
  // (compared in upper case) when that col's value is not empty. The
  // database is named by `sMDBFile`: an SQLite file, or "odbc:" + a DSN (or a
  // quoted ODBC connection string) with `sUID` and `sPWD` as user and
  // password (see veld/tablestore/table_store.h). With `bClearFirst` the
  // table is emptied first. All of it is one transaction: on any failure
  // nothing is committed, the failure is recorded ("Invalid parameter.", the
  // provider's message) and false is returned. A data element that does not
  // exist exports nothing and returns true.
  bool SaveDataToMDBTable(const std::string& sDataID, const std::string& sMDBFile,
                          const std::string& sTableName, const std::string& sUID = "",
                          const std::string& sPWD = "", bool bClearFirst = false);

  // Exports data element `sDataID` of the dataset file `sDatasetFile` to a
  // table without holding the document: the outcome of
  // ParseFile(sDatasetFile, sDataXPath) and, when that succeeds,
  // SaveDataToMDBTable(sDataID, sMDBFile, sTableName, sUID, sPWD,
  // bClearFirst) - the same rows in the same order, the same failure
  // recorded, the same progress reports, nothing committed on any failure,
  // a malformed end of the file included - while the file is read as a
  // stream and memory does not grow with it. Files of more than 2 GiB are
  // exported too. A few rare shapes need the whole document and are
  // exported by ParseFile and SaveDataToMDBTable themselves: a document type
  // declaration, a data element inside another, a data id with blanks at
  // its ends or an apostrophe, a data path other than "//data", "/*/data"
  // and "". The held document is empty afterwards.
  //
  // With `pbDataFound` given, a file that loads but lacks the data element
  // (ExistData false after ParseFile) is a failure: nothing is written,
  // false is returned with "Specified data id cannot be found." recorded,
  // and *pbDataFound is false. In every other case *pbDataFound is true.
  bool ExportFileToMDBTable(const std::string& sDatasetFile, const std::string& sDataID,
                            const std::string& sMDBFile, const std::string& sTableName,
                            const std::string& sUID = "", const std::string& sPWD = "",
                            bool bClearFirst = false, const std::string& sDataXPath = "//data",
                            bool* pbDataFound = nullptr);

  // --- Progress ---

 private:
  friend struct datasets_internal::Access;

  bool LoadDataset(const std::string& source, bool is_file, const std::string& data_xpath);
};

}  // namespace veld

#endif  // VELD_DATASETS_KVO_DATASET_H_
