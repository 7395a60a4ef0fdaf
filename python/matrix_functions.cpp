// Functions of square matrices.
#include "of_matrices.h"

namespace python {
namespace {

/// work(matrix) over the matrix as it is, or as a complex one where a real one has no such function.
template <class Work>
py::object with_complex(py::handle a, const Work& work) {
  const Array given(a);
  const auto of = [&]<class T>(T) {
    const Matrix<T> matrix = given.matrix<T>();
    return from(outside([&] { return work(matrix); }), a);
  };
  if (given.is_complex()) {
    return of(Complex());
  }
  try {
    return of(Real());
  } catch (const tesk2mp::NumericalFailure&) {
    return of(Complex());
  }
}

}  // namespace

void add_matrix_functions(py::module_& module) {
  module.def(
      "expm",
      [](py::handle a) {
        return of_matrices([](const auto& matrix) { return tesk2mp::expm(matrix); },
                           [a](const auto& result) { return from(result, a); }, Array(a));
      },
      py::arg("a"), R"(expm(a)

The exponential of a square matrix, to some units of the last place of its norm.

>>> expm([[0, 1], [0, 0]])
[[Decimal('1'), Decimal('1')], [Decimal('0'), Decimal('1')]]
)");
  module.def(
      "sqrtm", [](py::handle a) { return with_complex(a, [](const auto& matrix) { return tesk2mp::sqrtm(matrix); }); },
      py::arg("a"), R"(sqrtm(a)

The principal square root of a square matrix; Complex where a real matrix has none. NumericalFailure when there is none at all.

>>> sqrtm([[4, 0], [0, 9]])
[[Decimal('2'), Decimal('0')], [Decimal('0'), Decimal('3')]]
>>> sqrtm([[-4]])
[[Complex('0', '2')]]
)");
  module.def(
      "logm", [](py::handle a) { return with_complex(a, [](const auto& matrix) { return tesk2mp::logm(matrix); }); },
      py::arg("a"), R"(logm(a)

The principal logarithm of a regular square matrix; Complex where a real matrix has none.

>>> logm([[1, 1], [0, 1]])
[[Decimal('0'), Decimal('1')], [Decimal('0'), Decimal('0')]]
)");
  module.def(
      "fractional_matrix_power",
      [](py::handle a, py::handle p) {
        const Real exponent = to_real(p);
        return with_complex(a, [&](const auto& matrix) { return tesk2mp::fractional_matrix_power(matrix, exponent); });
      },
      py::arg("a"), py::arg("p"), R"(fractional_matrix_power(a, p)

a^p for a real p: products for a whole one, otherwise exp(p log(a)); Complex where a real matrix has none.

>>> fractional_matrix_power([[1, 1], [1, 0]], 10)
[[Decimal('89'), Decimal('55')], [Decimal('55'), Decimal('34')]]
)");
}

}  // namespace python
