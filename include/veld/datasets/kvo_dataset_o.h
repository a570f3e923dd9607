// KvoDatasetO: a dataset document whose rows are identified by a row ID.
//
// A dataset document is a root element ("dataset") holding named tables
// ("data" elements, identified by their "guid" attribute, the data ID), each a
// list of records ("row" elements with a "guid" attribute, the row ID), each
// record a list of named values ("col" elements with "name" and "value"):
//
//   <dataset><data guid="D1"><row guid="R1"><col name="code" value="A1"/>
//   </row></data></dataset>
//
// Identifiers. Data IDs match ignoring case (the first data element in
// document order wins) and are trimmed of blanks before the final, exact
// comparison; row IDs match exactly after trimming. IDs the library makes are
// new GUIDs of 32 upper-case hexadecimal digits. Positions are 1-based. A row
// with index="0" is a marker row: it is left out whenever a data element is
// filled from text (UpdateData, AddData, Parse, ParseFile).
//
// Data and row IDs are placed into XPath predicates unescaped, between
// apostrophes: an ID holding an apostrophe makes the lookup fail with the
// XPath engine's error (number -2147467259). Key-column names and values are
// escaped as XML text first, so a value holding one of & " < > ' never matches.
//
// Failures. No member raises (except RaiseLastError). Each clears the last
// error on entry; on failure it records the failure (GetLastError,
// RaiseLastError) and returns false, "", nullptr, or -1 for counts. The
// library's own checks record number -1 and a fixed message; DOM and file
// failures record their own number. A failure part-way through leaves what
// was done so far in the document.
//
// Texts handed in are parsed into documents of their own; nothing of them is
// kept by reference. Collections handed out belong to the caller.
#ifndef VELD_DATASETS_KVO_DATASET_O_H_
#define VELD_DATASETS_KVO_DATASET_O_H_

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "veld/datasets/kvo_dataset_base.h"
#include "veld/export.h"
#include "veld/items/kvo_general_items.h"
#include "veld/runtime/variant.h"

namespace veld {

namespace datasets_internal {
struct Access;
}  // namespace datasets_internal

class VELD_EXPORT KvoDatasetO : public KvoDatasetBase {
 public:
  // A new object holds an empty "dataset" root and no error. Reset, Save,
  // SaveToFile, the shared data-element members and SetProgressUpdater come
  // from KvoDatasetBase.
  KvoDatasetO();
  ~KvoDatasetO();

  // --- Whole documents ---

  // Resets, then reads the dataset text and adds every node `sDataXPath`
  // selects in it ("/*/data" when empty) as with AddData: data IDs are kept,
  // every row gets a new row ID (the source's own row IDs and `sRowGUIDCol`
  // are not used), marker rows and all other content are dropped. Records
  // "Failed to load dataset xml." for malformed text (the document then stays
  // empty), an XPath error, or the first failing AddData (the data added so
  // far stay).
  bool Parse(const std::string& sDatasetXml, const std::string& sRowGUIDCol = "",
             const std::string& sDataXPath = "//data");
  // As Parse, reading the file; "Failed to load dataset file." when it is
  // missing or malformed.
  bool ParseFile(const std::string& sDatasetFile, const std::string& sRowGUIDCol = "",
                 const std::string& sDataXPath = "//data");

  // --- Data elements ---

  // Adds a data element, or replaces the rows of the one with that ID. The ID
  // is `sDataID` trimmed, else the "guid" of the text's root element, else a
  // new GUID; with a text the rows are filled as UpdateData does.
  // `sResultDataID`, when given, receives the ID ("" on failure).
  bool AddData(const std::string& sDataID = "", const std::string& sDataXml = "",
               const std::string& sRowGUIDCol = "", Variant* sResultDataID = nullptr);
  // Replaces all children of the data element by the data rows of the first
  // data element of `sDataXml`. Each row gets the value of its col named
  // `sRowGUIDCol` as row ID when there is one, else a new GUID; only its cols
  // are copied. Creates the data element with the first row when missing.
  // "Failed to load data xml." for malformed text.
  bool UpdateData(const std::string& sDataID, const std::string& sDataXml,
                  const std::string& sRowGUIDCol = "");
  bool UpdateDataByIndex(int32_t nDataIndex, const std::string& sDataXml,
                         const std::string& sRowGUIDCol = "");

  // --- Rows ---

  // The row's text (the first row of the data element for an empty row ID);
  // "Specified data/row id cannot be found.".
  bool GetDataRow(const std::string& sDataID, const std::string& sRowID, std::string& sDataRowXml);
  // Adds a row or replaces the cols of the row with that ID. The row ID is
  // `sRowID` trimmed, else the value of the text's col named `sGUIDColName`,
  // else a new GUID; the data element is created when missing. "Invalid data
  // ID or row content to add." for a blank ID or text.
  bool AddDataRow(const std::string& sDataID, const std::string& sRowID,
                  const std::string& sDataRowXml, const std::string& sGUIDColName = "");
  // Removes the rows with that ID (every row of the data element for an
  // empty row ID).
  bool DeleteDataRow(const std::string& sDataID, const std::string& sRowID);
  // Replaces the cols of the row by those of the text's first row; the row
  // keeps its element and ID. "Invalid data/row ID to update.", "Specified
  // data/row cannot be found.", "Failed to load data row xml.".
  bool UpdateDataRow(const std::string& sDataID, const std::string& sRowID,
                     const std::string& sDataRowXml);
  // The ID of the row at a position; "Invalid data index (n).", "Specified
  // data not found(ID).", "Specified data row index (n) out of boundary.".
  bool GetDataRowID(const std::string& sDataID, int32_t nRowIndex, std::string& sRowID);
  // Number of rows (0 when the data element is missing); -1 on failure.
  int32_t GetDataRowCount(const std::string& sDataID);
  int32_t GetDataRowCountByIndex(int32_t nDataIndex);
  bool AddDataRowByIndex(int32_t nDataIndex, const std::string& sRowID,
                         const std::string& sDataRowXml, const std::string& sGUIDColName = "");
  // GetDataRowID, then GetDataRow / DeleteDataRow / UpdateDataRow.
  bool GetDataRowByIndex(const std::string& sDataID, int32_t nRowIndex, std::string& sDataRowXml);
  bool DeleteDataRowByIndex(const std::string& sDataID, int32_t nRowIndex);
  bool UpdateDataRowByIndex(const std::string& sDataID, int32_t nRowIndex,
                            const std::string& sDataRowXml);

  // --- Rows by key column (name and value trimmed; exact, case-sensitive) ---

  // The first matching row's ID; "Specified row cannot be found(name=value).".
  bool GetDataRowIDByKeyCol(const std::string& sDataID, const std::string& sKeyColName,
                            const std::string& sKeyColValue, std::string& sRowID);
  // The IDs of all matching rows in document order; returns their number.
  // 0 leaves the array untouched; -1 for a blank column name ("Key column
  // name not specified.") or a missing data element ("Specified data not
  // found(ID).").
  int32_t GetDataRowIDArrayByKeyCol(const std::string& sDataID, const std::string& sKeyColName,
                                    const std::string& sKeyColValue,
                                    std::vector<std::string>& sRowIDArray);
  bool GetDataRowByKeyCol(const std::string& sDataID, const std::string& sKeyColName,
                          const std::string& sKeyColValue, std::string& sRowDataXml);
  int32_t GetDataRowArrayByKeyCol(const std::string& sDataID, const std::string& sKeyColName,
                                  const std::string& sKeyColValue,
                                  std::vector<std::string>& sRowDataXmlArray);
  // Deletes the first matching row only.
  bool DeleteDataRowByKeyCol(const std::string& sDataID, const std::string& sKeyColName,
                             const std::string& sKeyColValue);
  // Deletes every matching row; returns their number, -1 on failure.
  int32_t DeleteDataRowArrayByKeyCol(const std::string& sDataID, const std::string& sKeyColName,
                                     const std::string& sKeyColValue);
  bool UpdateDataRowByKeyCol(const std::string& sDataID, const std::string& sKeyColName,
                             const std::string& sKeyColValue, const std::string& sRowDataXml);

  // --- Rows as item collections (one item per col; the row's attributes
  // become root tags). nullptr on failure. The caller owns the result. ---

  std::shared_ptr<KvoGeneralItems> GetDataRowColItems(const std::string& sDataID,
                                                      const std::string& sRowID);
  std::shared_ptr<KvoGeneralItems> GetDataRowColItemsByIndex(const std::string& sDataID,
                                                             int32_t nIndex);
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
  // ParseFile(sDatasetFile, "", sDataXPath) and, when that succeeds,
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

#endif  // VELD_DATASETS_KVO_DATASET_O_H_
