// Routines of one or two matrices, real or complex.
#pragma once

#include <tuple>

#include "convert.h"

namespace python {

/// to_python(routine(matrices...)) of the matrices that the arrays hold: complex ones if one of them has complex
/// elements. The routine works outside() of the interpreter.
template <class Routine, class ToPython, class... Arrays>
py::object of_matrices(const Routine& routine, const ToPython& to_python, const Arrays&... given) {
  return with_scalar(
      [&]<class T>(T) -> py::object {
        const std::tuple matrices{given.template matrix<T>()...};
        return to_python(outside([&] { return std::apply(routine, matrices); }));
      },
      given...);
}

}  // namespace python
