// The pieces of the veld Python module, one function per layer, and what
// they share.
//
// The rule for in/out arguments: a method returns a tuple of its result and
// then each argument it sets, in order (an optional output included); an
// argument it only reads is an ordinary argument. Optional arguments are
// keyword arguments with the interface's names and defaults.
#ifndef VELD_PYTHON_BINDINGS_H_
#define VELD_PYTHON_BINDINGS_H_

#include <pybind11/pybind11.h>

#include "variant_caster.h"

namespace veld_python {

namespace py = pybind11;

// Calls that may take long run without the GIL, so that other Python
// threads run meanwhile.
using ReleaseGil = py::call_guard<py::gil_scoped_release>;

void BindFoundation(py::module_& m);
void BindItems(py::module_& m);
void BindOptions(py::module_& m);
void BindDatasets(py::module_& m);
void BindXmlHelper(py::module_& m);
void BindControls(py::module_& m);

}  // namespace veld_python

#endif  // VELD_PYTHON_BINDINGS_H_
