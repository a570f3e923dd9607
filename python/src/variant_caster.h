// Variant as plain Python values: None for Empty, veld.Null for Null,
// veld.Missing for Missing (the default of optional variant arguments), bool,
// int, float, str, and datetime.datetime for dates (to the second). Any
// other Python value does not convert.
#ifndef VELD_PYTHON_VARIANT_CASTER_H_
#define VELD_PYTHON_VARIANT_CASTER_H_

#include <cmath>
#include <cstdint>
#include <string>

#include <pybind11/pybind11.h>

#include "veld/runtime/variant.h"

namespace veld_python {

// The markers, made when the module is imported.
pybind11::object& NullMarker();
pybind11::object& MissingMarker();

// Dates: the classic serial (days since 1899-12-30, the fraction of a day
// as the time, also for days before it) and datetime.
pybind11::object DateTimeFromSerial(double serial);
double SerialFromDateTime(pybind11::handle value);
bool IsDateTime(pybind11::handle value);

}  // namespace veld_python

namespace pybind11::detail {

template <>
struct type_caster<veld::Variant> {
  PYBIND11_TYPE_CASTER(veld::Variant, const_name("Variant"));

  bool load(handle src, bool) {
    if (src.is_none()) {
      value = veld::Variant::Empty();
    } else if (src.is(veld_python::NullMarker())) {
      value = veld::Variant::Null();
    } else if (src.is(veld_python::MissingMarker())) {
      value = veld::Variant::Missing();
    } else if (PyBool_Check(src.ptr())) {
      value = veld::Variant(src.ptr() == Py_True);
    } else if (PyLong_Check(src.ptr())) {
      int overflow = 0;
      const long long number = PyLong_AsLongLongAndOverflow(src.ptr(), &overflow);
      if (overflow == 0 && number >= INT32_MIN && number <= INT32_MAX) {
        value = veld::Variant(static_cast<int32_t>(number));
      } else {
        value = veld::Variant(PyLong_AsDouble(src.ptr()));  // as a Double, like a big literal
        if (PyErr_Occurred()) {
          PyErr_Clear();
          return false;
        }
      }
    } else if (PyFloat_Check(src.ptr())) {
      value = veld::Variant(PyFloat_AsDouble(src.ptr()));
    } else if (PyUnicode_Check(src.ptr())) {
      value = veld::Variant(src.cast<std::string>());
    } else if (veld_python::IsDateTime(src)) {
      value = veld::Variant::Date(veld_python::SerialFromDateTime(src));
    } else {
      return false;
    }
    return true;
  }

  static handle cast(const veld::Variant& src, return_value_policy, handle) {
    if (src.IsMissing()) return veld_python::MissingMarker().inc_ref();
    switch (src.Type()) {
      case veld::VarType::kEmpty:
        return none().release();
      case veld::VarType::kNull:
        return veld_python::NullMarker().inc_ref();
      case veld::VarType::kBoolean:
        return bool_(src.AsBool()).release();
      case veld::VarType::kByte:
      case veld::VarType::kInteger:
      case veld::VarType::kLong:
        return int_(src.ToLong()).release();
      case veld::VarType::kDouble:
        return float_(src.AsDouble()).release();
      case veld::VarType::kDate:
        return veld_python::DateTimeFromSerial(src.AsDate()).release();
      case veld::VarType::kString:
        return str(src.AsString()).release();
      case veld::VarType::kError:
        break;
    }
    return none().release();
  }
};

}  // namespace pybind11::detail

#endif  // VELD_PYTHON_VARIANT_CASTER_H_
