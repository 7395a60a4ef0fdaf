// Symmetric and Hermitian eigenproblems, singular values.
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
      "svd",
      [](py::handle a) {
        const Array given(a);
        return with_scalar(
            [&]<class T>(T) {
              const Matrix<T> matrix = given.matrix<T>();
              const auto system = outside([&] { return tesk2mp::svd(matrix); });
              return py::make_tuple(from(system.u, a), from(system.values, a), from(system.v, a));
            },
            given);
      },
      py::arg("a"), R"(svd(a)

The singular value decomposition a = u diag(values) v^H of an m by n matrix, with min(m, n) values, descending: (u, values, v);
u and v have orthonormal columns.

>>> u, values, v = svd([[0, 2], [1, 0]])
>>> values
[Decimal('2'), Decimal('1')]
)");
  module.def(
      "singular_values",
      [](py::handle a) {
        const Array given(a);
        return with_scalar(
            [&]<class T>(T) {
              const Matrix<T> matrix = given.matrix<T>();
              return from(outside([&] { return tesk2mp::singular_values(matrix); }), a);
            },
            given);
      },
      py::arg("a"), R"(singular_values(a)

The singular values alone, descending.

>>> singular_values([[3, 0], [0, 0], [0, -4]])
[Decimal('4'), Decimal('3')]
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
