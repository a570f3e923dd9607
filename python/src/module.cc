// The veld module: the markers, dates, AutomationError, and the layers.
#include <cmath>

#include <pybind11/eval.h>

#include "veld/runtime/automation_error.h"

#include "bindings.h"

namespace veld_python {

namespace {

py::object& DateTimeClass() {
  static py::object* cls = new py::object(py::module_::import("datetime").attr("datetime"));
  return *cls;
}

py::object& TimeDeltaClass() {
  static py::object* cls = new py::object(py::module_::import("datetime").attr("timedelta"));
  return *cls;
}

py::object& Epoch() {  // 1899-12-30, day 0 of the classic serial
  static py::object* epoch = new py::object(DateTimeClass()(1899, 12, 30));
  return *epoch;
}

}  // namespace

py::object& NullMarker() {
  static py::object* marker = new py::object();
  return *marker;
}

py::object& MissingMarker() {
  static py::object* marker = new py::object();
  return *marker;
}

bool IsDateTime(py::handle value) { return py::isinstance(value, DateTimeClass()); }

py::object DateTimeFromSerial(double serial) {
  // The whole days count from the epoch; the fraction is the time of that
  // day, also before the epoch (-1.25 is 1899-12-29 06:00).
  const double days = std::trunc(serial);
  const auto seconds = static_cast<long long>(std::llround(std::fabs(serial - days) * 86400.0));
  return Epoch() + TimeDeltaClass()(py::arg("days") = static_cast<long long>(days),
                                    py::arg("seconds") = seconds);
}

double SerialFromDateTime(py::handle value) {
  py::object delta = py::reinterpret_borrow<py::object>(value) - Epoch();
  const double days = delta.attr("days").cast<double>();
  const double seconds =
      delta.attr("seconds").cast<double>() + delta.attr("microseconds").cast<double>() / 1e6;
  return days >= 0 ? days + seconds / 86400.0 : days - seconds / 86400.0;
}

}  // namespace veld_python

PYBIND11_MODULE(veld, m) {
  namespace py = pybind11;
  using namespace veld_python;
  m.doc() =
      "VeldCommonUtility: options, item lists, datasets, registry, XML helper, "
      "progress, display formats and data-bound controls.";

  py::exec(R"py(
class _Marker:
    __slots__ = ("_name",)
    def __init__(self, name):
        self._name = name
    def __repr__(self):
        return "veld." + self._name
    def __reduce__(self):
        return self._name

Null = _Marker("Null")
Missing = _Marker("Missing")

class AutomationError(Exception):
    """An error the library raised: number, description and source."""
    def __init__(self, number, description, source=""):
        super().__init__(number, description, source)
        self.number = number
        self.description = description
        self.source = source
    def __str__(self):
        return "%s (%d)" % (self.description, self.number)
)py",
           m.attr("__dict__"));
  NullMarker() = m.attr("Null");
  MissingMarker() = m.attr("Missing");

  static py::object* automation_error = new py::object(m.attr("AutomationError"));
  py::register_exception_translator([](std::exception_ptr error) {
    try {
      if (error) std::rethrow_exception(error);
    } catch (const veld::AutomationError& e) {
      py::object instance = (*automation_error)(e.Number(), e.Description(), e.Source());
      PyErr_SetObject(automation_error->ptr(), instance.ptr());
    }
  });

  BindFoundation(m);
  BindItems(m);
  BindOptions(m);
  BindDatasets(m);
  BindXmlHelper(m);
  BindControls(m);
}
