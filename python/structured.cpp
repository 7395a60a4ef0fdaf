// Symmetric indefinite, band and tridiagonal systems.
#include "convert.h"

namespace python {
namespace {

/// solve(b) for a vector or a matrix.
template <class T, class Solve>
py::object solve_either(const Array& right, py::handle b, Solve solve) {
  if (right.is_vector()) {
    return from(outside([&] { return solve(right.vector<T>()); }), b);
  }
  return from(outside([&] { return solve(right.matrix<T>()); }), b);
}

}  // namespace

void add_structured(py::module_& module) {
  module.def(
      "solve_symmetric",
      [](py::handle a, py::handle b, const std::string& triangle, bool hermitian) {
        const Array left(a);
        const Array right(b);
        const auto stored = triangle_of(triangle);
        const auto symmetry = hermitian ? tesk2mp::Symmetry::hermitian : tesk2mp::Symmetry::symmetric;
        return with_scalar(
            [&]<class T>(T) {
              return solve_either<T>(right, b, [&](const auto& columns) {
                return tesk2mp::solve_symmetric(left.matrix<T>(), columns, stored, symmetry);
              });
            },
            left, right);
      },
      py::arg("a"), py::arg("b"), py::arg("triangle") = "lower", py::arg("hermitian") = true,
      R"(solve_symmetric(a, b, triangle='lower', hermitian=True)

The solution of a x = b, a symmetric or Hermitian and not necessarily definite, for a vector or each column of a
matrix; that
triangle of a is read. hermitian=False: a Complex a is symmetric. NumericalFailure when it is singular.

>>> solve_symmetric([[0, 0], [2, 0]], [6, 8])
[Decimal('4'), Decimal('3')]
)");
  module.def(
      "solve_banded",
      [](std::size_t below, std::size_t above, py::handle diagonals, py::handle b) {
        const Array left(diagonals);
        const Array right(b);
        return with_scalar(
            [&]<class T>(T) {
              return solve_either<T>(right, b, [&](const auto& columns) {
                return tesk2mp::solve_banded(below, above, left.matrix<T>(), columns);
              });
            },
            left, right);
      },
      py::arg("below"), py::arg("above"), py::arg("diagonals"), py::arg("b"),
      R"(solve_banded(below, above, diagonals, b)

The solution of a x = b, a square with so many diagonals below and above the main one. diagonals: those, a row each
from the
highest, element (i, j) of a in row above + i - j and column j, so that the rows end where they leave a; what stands
beside is
not read. NumericalFailure when the matrix is singular.

>>> solve_banded(1, 1, [[0, 1], [2, 3], [4, 0]], [4, 10])
[Decimal('1'), Decimal('2')]
)");
  module.def(
      "solve_tridiagonal",
      [](py::handle below, py::handle diagonal, py::handle above, py::handle b) {
        const Array lower(below);
        const Array middle(diagonal);
        const Array upper(above);
        const Array right(b);
        return with_scalar(
            [&]<class T>(T) {
              return solve_either<T>(right, b, [&](const auto& columns) {
                return tesk2mp::solve_tridiagonal(lower.vector<T>(), middle.vector<T>(), upper.vector<T>(), columns);
              });
            },
            lower, middle, upper, right);
      },
      py::arg("below"), py::arg("diagonal"), py::arg("above"), py::arg("b"),
      R"(solve_tridiagonal(below, diagonal, above, b)

The solution of a x = b, a tridiagonal with n - 1 elements below its diagonal of n and n - 1 above it, for a vector or
each column
of a matrix. NumericalFailure when the matrix is singular.

>>> solve_tridiagonal([4], [2, 3], [1], [4, 10])
[Decimal('1'), Decimal('2')]
)");
  module.def(
      "solve_definite_tridiagonal",
      [](py::handle diagonal, py::handle below, py::handle b) {
        const Array middle(diagonal);
        const Array lower(below);
        const Array right(b);
        return with_scalar(
            [&]<class T>(T) {
              return solve_either<T>(right, b, [&](const auto& columns) {
                return tesk2mp::solve_definite_tridiagonal(middle.vector<Real>(), lower.vector<T>(), columns);
              });
            },
            lower, right);
      },
      py::arg("diagonal"), py::arg("below"), py::arg("b"), R"(solve_definite_tridiagonal(diagonal, below, b)

The solution of a x = b, a tridiagonal, symmetric or Hermitian, and positive definite, with n real elements on its
diagonal and
n - 1 below it. NumericalFailure when the matrix is not positive definite.

>>> solve_definite_tridiagonal([4, 5], [2], [8, 12])
[Decimal('1'), Decimal('2')]
)");
}

}  // namespace python
