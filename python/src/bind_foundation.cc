// The error object, the utilities, the enums and the display formats.
#include <string>

#include "veld/foundation/kvo_enums.h"
#include "veld/foundation/kvo_err_object.h"
#include "veld/foundation/kvo_utils.h"
#include "veld/runtime/format.h"

#include "bindings.h"

namespace veld_python {

void BindFoundation(py::module_& m) {
  using veld::KvoErrObject;
  for (auto [name, value] : {std::pair{"KVO_GUID_FORMAT_UNKNOWN", veld::KVO_GUID_FORMAT_UNKNOWN},
                             {"KVO_GUID_FORMAT_GENERAL", veld::KVO_GUID_FORMAT_GENERAL},
                             {"Kvo_GUID_FORMAT_PUREDATA", veld::Kvo_GUID_FORMAT_PUREDATA}})
    m.attr(name) = static_cast<int32_t>(value);
  for (auto [name, value] : {std::pair{"KVO_DIOPMODE_UNKNOWN", veld::KVO_DIOPMODE_UNKNOWN},
                             {"KVO_DIOPMODE_NEW", veld::KVO_DIOPMODE_NEW},
                             {"KVO_DIOPMODE_EDIT", veld::KVO_DIOPMODE_EDIT},
                             {"KVO_DIOPMODE_VIEW", veld::KVO_DIOPMODE_VIEW}})
    m.attr(name) = static_cast<int32_t>(value);

  py::class_<KvoErrObject>(m, "KvoErrObject")
      .def(py::init<>())
      .def_property_readonly("Number", &KvoErrObject::Number)
      .def_property_readonly("Description", &KvoErrObject::Description)
      .def_property_readonly("Source", &KvoErrObject::Source)
      .def_property_readonly("HelpFile", &KvoErrObject::HelpFile)
      .def_property_readonly("HelpContext", &KvoErrObject::HelpContext)
      .def("ShowError", &KvoErrObject::ShowError)
      // From Python only the current runtime error can be taken over.
      .def("SetError", [](KvoErrObject& self) { self.SetError(); })
      .def("SetError2", &KvoErrObject::SetError2, py::arg("nNumber"), py::arg("sMsg"),
           py::arg("sHelpFile") = "", py::arg("vHelpContext") = veld::Variant::Missing(),
           py::arg("vSource") = veld::Variant::Missing())
      .def("GetErrorMsg", &KvoErrObject::GetErrorMsg)
      .def("Clear", &KvoErrObject::Clear)
      .def("Raise", &KvoErrObject::Raise)
      .def("SetDefaultErrorInfo", &KvoErrObject::SetDefaultErrorInfo, py::arg("DefSource"),
           py::arg("sErrDescPrefix") = "");

  py::class_<veld::KvoUtils>(m, "KvoUtils")
      .def(py::init<>())
      .def(
          "KvoGenerateGUID",
          [](veld::KvoUtils& self, int32_t nFormat) {
            return self.KvoGenerateGUID(static_cast<veld::KvoGuidFormatEnum>(nFormat));
          },
          py::arg("nFormat") = static_cast<int32_t>(veld::KVO_GUID_FORMAT_GENERAL))
      .def("KvoNumberToHexStr", &veld::KvoUtils::KvoNumberToHexStr, py::arg("nValue"),
           py::arg("nDigits") = veld::Variant(int16_t{0}));

  m.def(
      "Format",
      [](const veld::Variant& value, const std::string& pattern, int32_t first_day,
         int32_t first_week) { return veld::Format(value, pattern, first_day, first_week); },
      py::arg("Expression"), py::arg("Format") = "", py::arg("FirstDayOfWeek") = 1,
      py::arg("FirstWeekOfYear") = 1);
  m.def(
      "FormatText",
      [](const veld::Variant& value, const std::string& pattern, int32_t first_day,
         int32_t first_week) { return veld::FormatText(value, pattern, first_day, first_week); },
      py::arg("Expression"), py::arg("Format") = "", py::arg("FirstDayOfWeek") = 1,
      py::arg("FirstWeekOfYear") = 1);
  m.def("CDate", &veld::CDate, py::arg("Expression"));
  m.def("IsDate", &veld::IsDate, py::arg("Expression"));
}

}  // namespace veld_python
