// The pieces of the veld Python module, one function per layer, and what
// they share.
//
// The rule for in/out arguments: a method returns a tuple of its result and
// then each argument it sets, in order (an optional output included); an
// argument it only reads is an ordinary argument. Optional arguments are
// keyword arguments with the interface's names and defaults.
#ifndef VELD_PYTHON_BINDINGS_H_
#define VELD_PYTHON_BINDINGS_H_

#include <cstddef>
#include <tuple>
#include <type_traits>
#include <utility>

#include <pybind11/pybind11.h>

#include "variant_caster.h"

namespace veld_python {

namespace py = pybind11;

// Calls that may take long run without the GIL, so that other Python
// threads run meanwhile.
using ReleaseGil = py::call_guard<py::gil_scoped_release>;

namespace detail {

template <class Self, class Out, class Member, class Params, std::size_t... I>
auto WithOutputOf(Member member, std::index_sequence<I...>, Params*) {
  return [member](Self& self, std::tuple_element_t<I, Params>... args) {
    Out out{};
    auto result = (self.*member)(args..., out);
    return py::make_tuple(std::move(result), std::move(out));
  };
}

}  // namespace detail

// Binds a member of `Self` (or of a base of it) whose last argument is one
// it sets: Python gets a tuple of the result and that argument.
template <class Self, class R, class C, class... Params>
auto WithOutput(R (C::*member)(Params...)) {
  using Last = std::tuple_element_t<sizeof...(Params) - 1, std::tuple<Params...>>;
  static_assert(std::is_lvalue_reference_v<Last> &&
                !std::is_const_v<std::remove_reference_t<Last>>);
  return detail::WithOutputOf<Self, std::remove_cvref_t<Last>>(
      member, std::make_index_sequence<sizeof...(Params) - 1>{},
      static_cast<std::tuple<Params...>*>(nullptr));
}

void BindFoundation(py::module_& m);
void BindItems(py::module_& m);
void BindOptions(py::module_& m);
void BindDatasets(py::module_& m);
void BindXmlHelper(py::module_& m);
void BindControls(py::module_& m);

}  // namespace veld_python

#endif  // VELD_PYTHON_BINDINGS_H_
