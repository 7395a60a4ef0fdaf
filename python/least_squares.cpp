// Orthogonal factorisations, rank and least squares.
#include "convert.h"

namespace python {
namespace {

std::optional<Real> tolerance_of(py::handle tolerance) {
  return tolerance.is_none() ? std::nullopt : std::optional(to_real(tolerance));
}

void add_factorisations(py::module_& module) {
  module.def(
      "qr",
      [](py::handle a, bool pivoting) -> py::object {
        const Array given(a);
        return with_scalar(
            [&]<class T>(T) -> py::object {
              if (pivoting) {
                const auto factors = outside([&] { return tesk2mp::PivotedQR<T>(given.matrix<T>()); });
                return py::make_tuple(from(outside([&] { return factors.q(); }), a), from(factors.r(), a),
                                      from(factors.order(), py::none()));
              }
              const auto factors = outside([&] { return tesk2mp::QR<T>(given.matrix<T>()); });
              return py::make_tuple(from(outside([&] { return factors.q(); }), a), from(factors.r(), a));
            },
            given);
      },
      py::arg("a"), py::arg("pivoting") = false, R"(qr(a, pivoting=False)

The factors of a = Q R, m by n: the first min(m, n) columns of the orthogonal Q, and R, upper triangular. With pivoting
also
an order of the columns of a, from 0, in which the diagonal of R does not grow: a[i][order[j]] = (Q R)[i][j].

>>> qr([[3], [4]])
([[Decimal('-0.6')], [Decimal('-0.8')]], [[Decimal('-5')]])
>>> qr([[1, 3], [0, 4]], pivoting=True)[2]
[1, 0]
)");
  module.def(
      "lq",
      [](py::handle a) {
        const Array given(a);
        return with_scalar(
            [&]<class T>(T) {
              const auto factors = outside([&] { return tesk2mp::LQ<T>(given.matrix<T>()); });
              return py::make_tuple(from(factors.l(), a), from(outside([&] { return factors.q(); }), a));
            },
            given);
      },
      py::arg("a"), R"(lq(a)

The factors of a = L Q, m by n: L, lower triangular, and the first min(m, n) rows of the orthogonal Q.

>>> lq([[3, 4]])
([[Decimal('-5')]], [[Decimal('-0.6'), Decimal('-0.8')]])
)");
}

void add_rank(py::module_& module) {
  module.def(
      "matrix_rank",
      [](py::handle a, py::handle tolerance) {
        const Array given(a);
        const auto limit = tolerance_of(tolerance);
        return with_scalar(
            [&]<class T>(T) { return outside([&] { return tesk2mp::matrix_rank(given.matrix<T>(), limit); }); }, given);
      },
      py::arg("a"), py::arg("tolerance") = py::none(), R"(matrix_rank(a, tolerance=None)

The rank of a matrix, m by n: the largest order of a leading triangle of its pivoted QR factorisation whose condition
number is
no more than 1 / tolerance, which is max(m, n) 10**(1 - D) at D digits unless given.

>>> matrix_rank([[1, 2], [2, 4], [3, 6]])
1
)");
  module.def(
      "null_space",
      [](py::handle a, py::handle tolerance) {
        const Array given(a);
        const auto limit = tolerance_of(tolerance);
        return with_scalar(
            [&]<class T>(T) { return from(outside([&] { return tesk2mp::null_space(given.matrix<T>(), limit); }), a); },
            given);
      },
      py::arg("a"), py::arg("tolerance") = py::none(), R"(null_space(a, tolerance=None)

An orthonormal basis of the vectors x with a x = 0, as the columns of a matrix of n rows; the rank is as in
matrix_rank().

>>> null_space([[3, 0, 0], [0, 0, 4]])
[[Decimal('0')], [Decimal('1')], [Decimal('0')]]
)");
  module.def(
      "pseudo_inverse",
      [](py::handle a, py::handle tolerance) {
        const Array given(a);
        const auto limit = tolerance_of(tolerance);
        return with_scalar(
            [&]<class T>(T) {
              return from(outside([&] { return tesk2mp::pseudo_inverse(given.matrix<T>(), limit); }), a);
            },
            given);
      },
      py::arg("a"), py::arg("tolerance") = py::none(), R"(pseudo_inverse(a, tolerance=None)

The Moore-Penrose inverse, n by m, of a matrix of any rank; the rank is as in matrix_rank().

>>> pseudo_inverse([[3], [4]])
[[Decimal('0.12'), Decimal('0.16')]]
)");
}

void add_solutions(py::module_& module) {
  module.def(
      "least_squares",
      [](py::handle a, py::handle b) {
        const Array left(a);
        const Array right(b);
        return with_scalar(
            [&]<class T>(T) {
              if (right.is_vector()) {
                return from(outside([&] { return tesk2mp::least_squares(left.matrix<T>(), right.vector<T>()); }), b);
              }
              return from(outside([&] { return tesk2mp::least_squares(left.matrix<T>(), right.matrix<T>()); }), b);
            },
            left, right);
      },
      py::arg("a"), py::arg("b"), R"(least_squares(a, b)

The x of least norm(b - a x) for a vector b or for each column of a matrix, a of full rank, m by n; of several such x,
with more
unknowns than equations, the one of least norm. NumericalFailure when the rank is not full to the last digit;
minimum_norm() takes
any rank.

>>> least_squares([[1], [1], [1], [1]], [1, 2, 4, 5])
[Decimal('3')]
)");
  module.def(
      "minimum_norm",
      [](py::handle a, py::handle b, py::handle tolerance) {
        const Array left(a);
        const Array right(b);
        const auto limit = tolerance_of(tolerance);
        return with_scalar(
            [&]<class T>(T) {
              const bool single = right.is_vector();
              const std::vector<T> numbers = single ? right.vector<T>() : std::vector<T>();
              const Matrix<T> columns =
                  single ? Matrix<T>(tesk2mp::MatrixView<const T>(numbers, numbers.size(), 1)) : right.matrix<T>();
              const auto solution = outside([&] { return tesk2mp::minimum_norm(left.matrix<T>(), columns, limit); });
              const T* const x = solution.x.data();
              return py::make_tuple(single ? from(std::vector<T>(x, x + solution.x.rows()), b) : from(solution.x, b),
                                    solution.rank);
            },
            left, right);
      },
      py::arg("a"), py::arg("b"), py::arg("tolerance") = py::none(), R"(minimum_norm(a, b, tolerance=None)

The x of least norm(b - a x), and of several such x the one of least norm, for a vector b or each column of a matrix,
and the
rank of a, which may be any; the rank is as in matrix_rank().

>>> minimum_norm([[3, 4], [0, 0]], [25, 7])
([Decimal('3'), Decimal('4')], 1)
)");
  module.def(
      "constrained_least_squares",
      [](py::handle a, py::handle b, py::handle c, py::handle d) {
        const Array left(a);
        const Array right(b);
        const Array constraints(c);
        const Array fixed(d);
        return with_scalar(
            [&]<class T>(T) {
              return from(outside([&] {
                            return tesk2mp::constrained_least_squares(left.matrix<T>(), right.vector<T>(),
                                                                      constraints.matrix<T>(), fixed.vector<T>());
                          }),
                          b);
            },
            left, right, constraints, fixed);
      },
      py::arg("a"), py::arg("b"), py::arg("c"), py::arg("d"), R"(constrained_least_squares(a, b, c, d)

The x of least norm(b - a x) among those with c x = d. NumericalFailure when the constraints are dependent, or a and c
together do
not determine x.

>>> constrained_least_squares([[1, 0], [0, 1]], [10, 5], [[3, 4]], [25])
[Decimal('7'), Decimal('1')]
)");
  module.def(
      "gauss_markov",
      [](py::handle a, py::handle b, py::handle d) {
        const Array model(a);
        const Array errors(b);
        const Array right(d);
        return with_scalar(
            [&]<class T>(T) {
              const auto found = outside(
                  [&] { return tesk2mp::gauss_markov(model.matrix<T>(), errors.matrix<T>(), right.vector<T>()); });
              return py::make_tuple(from(found.x, d), from(found.y, d));
            },
            model, errors, right);
      },
      py::arg("a"), py::arg("b"), py::arg("d"), R"(gauss_markov(a, b, d)

The x and y of least norm(y) with d = a x + b y: least squares where b y are errors, b b^H their covariance.

>>> gauss_markov([[1], [1]], [[1, 0], [0, 2]], [0, 5])
([Decimal('1')], [Decimal('-1'), Decimal('2')])
)");
}

}  // namespace

void add_least_squares(py::module_& module) {
  add_factorisations(module);
  add_rank(module);
  add_solutions(module);
}

}  // namespace python
