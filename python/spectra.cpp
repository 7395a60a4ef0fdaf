// Symmetric and Hermitian eigenproblems, singular values.
#include "of_matrices.h"

namespace python {
namespace {

tesk2mp::DefiniteProblem problem_of(int problem) {
  if (problem < 1 || problem > 3) {
    throw py::value_error("problem is 1, 2 or 3");
  }
  return tesk2mp::DefiniteProblem(problem);
}

std::pair<py::object, py::object> two_of(py::handle pair, const char* name) {
  std::vector<py::object> both;
  for (const py::handle each : elements_of(pair)) {
    both.push_back(py::reinterpret_borrow<py::object>(each));
  }
  if (both.size() != 2) {
    throw py::value_error(std::string(name) + " is two numbers");
  }
  return {both[0], both[1]};
}

/// Calls `work` with the matrix, the eigenvalues that are chosen and its triangle, or with both matrices, the problem
/// and the triangle.
template <class Work>
auto of_symmetric(py::handle a, const std::string& triangle, py::handle b, int problem, py::handle interval,
                  py::handle indices, const Work& work) {
  const Array given(a);
  const tesk2mp::Triangle stored = triangle_of(triangle);
  const int choices = int(!b.is_none()) + int(!interval.is_none()) + int(!indices.is_none());
  if (choices > 1) {
    throw py::value_error("b, interval and indices exclude each other");
  }
  if (!b.is_none()) {
    const Array beside(b);
    const tesk2mp::DefiniteProblem wanted = problem_of(problem);
    return with_scalar([&]<class T>(T) { return work(given.matrix<T>(), beside.matrix<T>(), wanted, stored); }, given,
                       beside);
  }
  if (!interval.is_none()) {
    const auto [low, high] = two_of(interval, "interval");
    const tesk2mp::EigenInterval chosen{to_real(low), to_real(high)};
    return with_scalar([&]<class T>(T) { return work(given.matrix<T>(), chosen, stored); }, given);
  }
  if (!indices.is_none()) {
    const auto [first, end] = two_of(indices, "indices");
    const tesk2mp::EigenIndices chosen{to_index(first), to_index(end)};
    return with_scalar([&]<class T>(T) { return work(given.matrix<T>(), chosen, stored); }, given);
  }
  return with_scalar([&]<class T>(T) { return work(given.matrix<T>(), stored); }, given);
}

}  // namespace

void add_spectra(py::module_& module) {
  module.def(
      "symmetric_eigen",
      [](py::handle a, const std::string& triangle, py::handle b, int problem, py::handle interval,
         py::handle indices) {
        return of_symmetric(a, triangle, b, problem, interval, indices, [&](const auto&... matrices) {
          const auto system = outside([&] { return tesk2mp::symmetric_eigen(matrices...); });
          return py::make_tuple(from(system.values, a), from(system.vectors, a));
        });
      },
      py::arg("a"), py::arg("triangle") = "lower", py::arg("b") = py::none(), py::arg("problem") = 1,
      py::arg("interval") = py::none(), py::arg("indices") = py::none(),
      R"(symmetric_eigen(a, triangle='lower', b=None, problem=1, interval=None, indices=None)

Eigenvalues, ascending, and eigenvectors of a symmetric or Hermitian matrix, of which that triangle is read: (values,
vectors), a vectors = vectors diag(values); eigenvector j is column j. With a positive definite matrix b those of
a x = lambda b x; problem 2 stands for a b x = lambda x, 3 for b a x = lambda x. Then vectors^H b vectors = 1, of
problem 3 vectors^H b^-1 vectors = 1. With interval=(low, high) those with low < value <= high, with indices=(first, end)
those numbered first ... end - 1, from 0, in ascending order.

>>> values, vectors = symmetric_eigen([[2, 0], [0, 1]])
>>> values, vectors
([Decimal('1'), Decimal('2')], [[Decimal('0'), Decimal('1')], [Decimal('1'), Decimal('0')]])
>>> symmetric_eigen([[8]], b=[[4]])
([Decimal('2')], [[Decimal('0.5')]])
>>> symmetric_eigen([[1, 0], [0, 5]], interval=(2, 5))
([Decimal('5')], [[Decimal('0')], [Decimal('1')]])
)");
  module.def(
      "symmetric_eigenvalues",
      [](py::handle a, const std::string& triangle, py::handle b, int problem, py::handle interval,
         py::handle indices) {
        return of_symmetric(a, triangle, b, problem, interval, indices, [&](const auto&... matrices) {
          return from(outside([&] { return tesk2mp::symmetric_eigenvalues(matrices...); }), a);
        });
      },
      py::arg("a"), py::arg("triangle") = "lower", py::arg("b") = py::none(), py::arg("problem") = 1,
      py::arg("interval") = py::none(), py::arg("indices") = py::none(),
      R"(symmetric_eigenvalues(a, triangle='lower', b=None, problem=1, interval=None, indices=None)

The eigenvalues alone.

>>> symmetric_eigenvalues([[0, 3], [3, 0]])
[Decimal('-3'), Decimal('3')]
>>> symmetric_eigenvalues([[8]], b=[[4]], problem=2)
[Decimal('32')]
>>> symmetric_eigenvalues([[0, 3], [3, 0]], indices=(0, 1))
[Decimal('-3')]
)");
  module.def(
      "svd",
      [](py::handle a) {
        return of_matrices([](const auto& matrix) { return tesk2mp::svd(matrix); },
                           [a](const auto& system) {
                             return py::make_tuple(from(system.u, a), from(system.values, a), from(system.v, a));
                           },
                           Array(a));
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
        return of_matrices([](const auto& matrix) { return tesk2mp::singular_values(matrix); },
                           [a](const std::vector<Real>& values) { return from(values, a); }, Array(a));
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
