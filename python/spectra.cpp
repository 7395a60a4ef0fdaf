// Symmetric and Hermitian eigenproblems.
#include "convert.h"

namespace python {

void add_spectra(py::module_& module) {
  module.def(
      "symmetric_eigen",
      [](py::handle a, const std::string& triangle) {
        const Array given(a);
        const tesk2mp::Triangle stored = triangle_of(triangle);
        return with_scalar(
            [&]<class T>(T) {
              const Matrix<T> matrix = given.matrix<T>();
              const auto system = outside([&] { return tesk2mp::symmetric_eigen(matrix, stored); });
              return py::make_tuple(from(system.values, a), from(system.vectors, a));
            },
            given);
      },
      py::arg("a"), py::arg("triangle") = "lower", R"(symmetric_eigen(a, triangle='lower')

Eigenvalues, ascending, and eigenvectors of a symmetric or Hermitian matrix, of which that triangle is read: (values,
vectors), a vectors = vectors diag(values); eigenvector j is column j.

>>> values, vectors = symmetric_eigen([[2, 0], [0, 1]])
>>> values, vectors
([Decimal('1'), Decimal('2')], [[Decimal('0'), Decimal('1')], [Decimal('1'), Decimal('0')]])
)");
  module.def(
      "symmetric_eigenvalues",
      [](py::handle a, const std::string& triangle) {
        const Array given(a);
        const tesk2mp::Triangle stored = triangle_of(triangle);
        return with_scalar(
            [&]<class T>(T) {
              const Matrix<T> matrix = given.matrix<T>();
              return from(outside([&] { return tesk2mp::symmetric_eigenvalues(matrix, stored); }), a);
            },
            given);
      },
      py::arg("a"), py::arg("triangle") = "lower", R"(symmetric_eigenvalues(a, triangle='lower')

The eigenvalues alone.

>>> symmetric_eigenvalues([[0, 3], [3, 0]])
[Decimal('-3'), Decimal('3')]
)");
  module.def(
      "is_hermitian",
      [](py::handle a) {
        const Array given(a);
        return with_scalar([&]<class T>(T) { return tesk2mp::is_hermitian(given.matrix<T>()); }, given);
      },
      py::arg("a"), R"(is_hermitian(a)

Whether a square matrix is its own adjoint, to the last digit of the numbers as they are read.

>>> is_hermitian([[1, Complex(0, 2)], [Complex(0, -2), 1]]), is_hermitian([[1, 2], [3, 4]])
(True, False)
)");
}

}  // namespace python
