// KvoDatasetO and KvoDataset: the members they share, then each one's own.
#include <cstddef>
#include <memory>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include <pybind11/stl.h>

#include "veld/datasets/kvo_dataset.h"
#include "veld/datasets/kvo_dataset_o.h"
#include "veld/xmlhelper/kvo_progress_updater.h"

#include "bindings.h"

namespace veld_python {

namespace {

using veld::KvoDataset;
using veld::KvoDatasetO;

template <class T, class Class>
void BindShared(Class& cls) {
  cls.def(py::init<>())
      .def("GetLastError", &T::GetLastError)
      .def("RaiseLastError", &T::RaiseLastError)
      .def("Reset", &T::Reset)
      .def("Save", WithOutput<T>(&T::Save))
      .def("SaveToFile", &T::SaveToFile, py::arg("sFile"), ReleaseGil())
      .def("ExistData", &T::ExistData, py::arg("sDataID"))
      .def("GetExactDataID", &T::GetExactDataID, py::arg("sCaseInSensitiveDataID"))
      .def("GetData", WithOutput<T>(&T::GetData), py::arg("sDataID"))
      .def("DeleteData", &T::DeleteData, py::arg("sDataID"))
      .def("GetDataID", WithOutput<T>(&T::GetDataID), py::arg("nDataIndex"))
      .def("GetDataCount", &T::GetDataCount)
      .def("GetDataByIndex", WithOutput<T>(&T::GetDataByIndex), py::arg("nDataIndex"))
      .def("DeleteDataByIndex", &T::DeleteDataByIndex, py::arg("nDataIndex"))
      .def("SetProgressUpdater", &T::SetProgressUpdater, py::arg("cUpdater"))
      .def("GetDataRowCount", &T::GetDataRowCount, py::arg("sDataID"))
      .def("GetDataRowCountByIndex", &T::GetDataRowCountByIndex, py::arg("nDataIndex"))
      .def("GetDataRowArrayByKeyCol", WithOutput<T>(&T::GetDataRowArrayByKeyCol),
           py::arg("sDataID"), py::arg("sKeyColName"), py::arg("sKeyColValue"))
      .def("DeleteDataRowByKeyCol", &T::DeleteDataRowByKeyCol, py::arg("sDataID"),
           py::arg("sKeyColName"), py::arg("sKeyColValue"))
      .def("GetDataRowColItemsByKeyCol", &T::GetDataRowColItemsByKeyCol, py::arg("sDataID"),
           py::arg("sKeyColName"), py::arg("sKeyColValue"))
      .def("SaveDataToMDBTable", &T::SaveDataToMDBTable, py::arg("sDataID"), py::arg("sMDBFile"),
           py::arg("sTableName"), py::arg("sUID") = "", py::arg("sPWD") = "",
           py::arg("bClearFirst") = false, ReleaseGil());
}

void BindDatasetO(py::module_& m) {
  py::class_<KvoDatasetO> cls(m, "KvoDatasetO");
  BindShared<KvoDatasetO>(cls);
  using S = const std::string&;
  cls.def("Parse", &KvoDatasetO::Parse, py::arg("sDatasetXml"), py::arg("sRowGUIDCol") = "",
          py::arg("sDataXPath") = "//data", ReleaseGil())
      .def("ParseFile", &KvoDatasetO::ParseFile, py::arg("sDatasetFile"),
           py::arg("sRowGUIDCol") = "", py::arg("sDataXPath") = "//data", ReleaseGil())
      .def(
          "AddData",
          [](KvoDatasetO& self, S id, S xml, S guid_col) {
            veld::Variant result;
            const bool ok = self.AddData(id, xml, guid_col, &result);
            return py::make_tuple(ok, result);
          },
          py::arg("sDataID") = "", py::arg("sDataXml") = "", py::arg("sRowGUIDCol") = "")
      .def("UpdateData", &KvoDatasetO::UpdateData, py::arg("sDataID"), py::arg("sDataXml"),
           py::arg("sRowGUIDCol") = "")
      .def("UpdateDataByIndex", &KvoDatasetO::UpdateDataByIndex, py::arg("nDataIndex"),
           py::arg("sDataXml"), py::arg("sRowGUIDCol") = "")
      .def("GetDataRow", WithOutput<KvoDatasetO>(&KvoDatasetO::GetDataRow), py::arg("sDataID"),
           py::arg("sRowID"))
      .def("AddDataRow", &KvoDatasetO::AddDataRow, py::arg("sDataID"), py::arg("sRowID"),
           py::arg("sDataRowXml"), py::arg("sGUIDColName") = "")
      .def("DeleteDataRow", &KvoDatasetO::DeleteDataRow, py::arg("sDataID"), py::arg("sRowID"))
      .def("UpdateDataRow", &KvoDatasetO::UpdateDataRow, py::arg("sDataID"), py::arg("sRowID"),
           py::arg("sDataRowXml"))
      .def("GetDataRowID", WithOutput<KvoDatasetO>(&KvoDatasetO::GetDataRowID), py::arg("sDataID"),
           py::arg("nRowIndex"))
      .def("AddDataRowByIndex", &KvoDatasetO::AddDataRowByIndex, py::arg("nDataIndex"),
           py::arg("sRowID"), py::arg("sDataRowXml"), py::arg("sGUIDColName") = "")
      .def("GetDataRowByIndex", WithOutput<KvoDatasetO>(&KvoDatasetO::GetDataRowByIndex),
           py::arg("sDataID"), py::arg("nRowIndex"))
      .def("DeleteDataRowByIndex", &KvoDatasetO::DeleteDataRowByIndex, py::arg("sDataID"),
           py::arg("nRowIndex"))
      .def("UpdateDataRowByIndex", &KvoDatasetO::UpdateDataRowByIndex, py::arg("sDataID"),
           py::arg("nRowIndex"), py::arg("sDataRowXml"))
      .def("GetDataRowIDByKeyCol", WithOutput<KvoDatasetO>(&KvoDatasetO::GetDataRowIDByKeyCol),
           py::arg("sDataID"), py::arg("sKeyColName"), py::arg("sKeyColValue"))
      .def("GetDataRowIDArrayByKeyCol",
           WithOutput<KvoDatasetO>(&KvoDatasetO::GetDataRowIDArrayByKeyCol), py::arg("sDataID"),
           py::arg("sKeyColName"), py::arg("sKeyColValue"))
      .def("GetDataRowByKeyCol", WithOutput<KvoDatasetO>(&KvoDatasetO::GetDataRowByKeyCol),
           py::arg("sDataID"), py::arg("sKeyColName"), py::arg("sKeyColValue"))
      .def("DeleteDataRowArrayByKeyCol", &KvoDatasetO::DeleteDataRowArrayByKeyCol,
           py::arg("sDataID"), py::arg("sKeyColName"), py::arg("sKeyColValue"))
      .def("UpdateDataRowByKeyCol", &KvoDatasetO::UpdateDataRowByKeyCol, py::arg("sDataID"),
           py::arg("sKeyColName"), py::arg("sKeyColValue"), py::arg("sRowDataXml"))
      .def("GetDataRowColItems", &KvoDatasetO::GetDataRowColItems, py::arg("sDataID"),
           py::arg("sRowID"))
      .def("GetDataRowColItemsByIndex", &KvoDatasetO::GetDataRowColItemsByIndex, py::arg("sDataID"),
           py::arg("nIndex"));
}

void BindDataset(py::module_& m) {
  py::class_<KvoDataset> cls(m, "KvoDataset");
  BindShared<KvoDataset>(cls);
  using S = const std::string&;
  cls.def("Parse", &KvoDataset::Parse, py::arg("sDatasetXml"), py::arg("sDataXPath") = "//data",
          ReleaseGil())
      .def("ParseFile", &KvoDataset::ParseFile, py::arg("sDatasetFile"),
           py::arg("sDataXPath") = "//data", ReleaseGil())
      .def("AddData", &KvoDataset::AddData, py::arg("sDataID") = "", py::arg("sDataXml") = "")
      .def("UpdateData", &KvoDataset::UpdateData, py::arg("sDataID"), py::arg("sDataXml"))
      .def("UpdateDataByIndex", &KvoDataset::UpdateDataByIndex, py::arg("nDataIndex"),
           py::arg("sDataXml"))
      .def("GetDataRow", WithOutput<KvoDataset>(&KvoDataset::GetDataRow), py::arg("sDataID"),
           py::arg("nIndex"))
      .def("AddDataRow", &KvoDataset::AddDataRow, py::arg("sDataID"), py::arg("sDataRowXml"))
      .def("InsertDataRow", &KvoDataset::InsertDataRow, py::arg("sDataID"), py::arg("sDataRowXml"),
           py::arg("nIndex"))
      .def("DeleteDataRow", &KvoDataset::DeleteDataRow, py::arg("sDataID"), py::arg("nIndex"))
      .def("UpdateDataRow", &KvoDataset::UpdateDataRow, py::arg("sDataID"), py::arg("nIndex"),
           py::arg("sDataRowXml"))
      .def("AddDataRowByIndex", &KvoDataset::AddDataRowByIndex, py::arg("nDataIndex"),
           py::arg("sDataRowXml"))
      .def(
          "GetDataRowByKeyCol",
          [](KvoDataset& self, S data, S col, S value, int32_t index) {
            std::string xml;
            const bool ok = self.GetDataRowByKeyCol(data, col, value, xml, index);
            return py::make_tuple(ok, xml);
          },
          py::arg("sDataID"), py::arg("sKeyColName"), py::arg("sKeyColValue"),
          py::arg("nIndex") = 1)
      .def("GetDataRowColItems", &KvoDataset::GetDataRowColItems, py::arg("sDataID"),
           py::arg("nIndex"));
}

}  // namespace

void BindDatasets(py::module_& m) {
  BindDatasetO(m);
  BindDataset(m);
}

}  // namespace veld_python
