// Rank, least squares of any rank and with constraints of the C++ interface. Part of tesk2mp.hpp; least_squares.h
// describes methods and costs.
#pragma once

#include <optional>

#include "tesk2mp/orthogonal.hpp"

namespace tesk2mp {

/// Solutions, and the rank of the matrix that they belong to.
template <Scalar T>
struct MinimumNorm {
  Matrix<T> x;
  std::size_t rank;
};

namespace detail {

/// The largest of m, n and 1 times 10^(1 - D): what roundings leave of a zero singular value, relative to the largest.
inline Real rank_tolerance(std::size_t rows, std::size_t columns) {
  return Real(count_of(std::max<std::size_t>({1, rows, columns}))) * Real(1, 1 - QuarnDigits());
}

/// A P = Q (T 0; 0 0) Z.
template <class T>
struct CompleteOrthogonal {
  Matrix<T> factors;
  Matrix<T> x;  // the solutions
  std::vector<Integer> order;
  std::vector<T> work;
  Integer rank = 0;

  /// Solves for the right-hand sides, of which there may be none.
  CompleteOrthogonal(Matrix<T> a, const Matrix<T>& right, const std::optional<Real>& tolerance)
      : factors(std::move(a)),
        x(std::max(factors.rows(), factors.columns()), right.columns()),
        order(std::max<std::size_t>(1, factors.columns())) {
    for (std::size_t j = 0; j < right.columns(); ++j) {
      std::copy_n(right.data() + j * right.rows(), right.rows(), x.data() + j * x.rows());
    }
    const RawMatrix<T> raw{factors.view()};
    const RawMatrix<T> solutions{x.view()};
    const Integer steps = std::min(raw.rows, raw.columns);
    const Integer length = steps + std::max({2 * steps, raw.columns + 1, steps + solutions.columns});
    work.resize(std::size_t(length));
    const Real condition = tolerance.value_or(rank_tolerance(factors.rows(), factors.columns()));
    Integer info = 0;
    if constexpr (kIsComplex<T>) {
      QuarnMPX_zgelsy_(raw.rows, raw.columns, solutions.columns, raw.data, raw.leading, solutions.data,
                       solutions.leading, order.data(), condition, &rank, work.data(), count_of(work.size()), nullptr,
                       &info);
    } else {
      QuarnMPX_dgelsy_(raw.rows, raw.columns, solutions.columns, raw.data, raw.leading, solutions.data,
                       solutions.leading, order.data(), condition, &rank, work.data(), count_of(work.size()), &info);
    }
  }
};

}  // namespace detail

/// For each column b of B the x of least norm(b - A x), and of several such x the one of least norm, for A of any rank:
/// the rank is that of the largest leading triangle of a pivoted QR factorisation whose condition number is no more
/// than 1 / tolerance, which is max(m, n) 10^(1 - D) at D digits unless given.
template <MatrixSource A, MatrixSource B>
MinimumNorm<Element<A>> minimum_norm(const A& a, const B& b, const std::optional<Real>& tolerance = {}) {
  using T = Element<A>;
  Matrix<T> left{MatrixView<const T>(a)};
  const Matrix<T> right{MatrixView<const T>(b)};
  detail::require(right.rows() == left.rows(), detail::name<T>("DGELSY", "ZGELSY"), 6, "a right-hand side of ",
                  right.rows(), " rows for ", left.rows(), " equations");
  const std::size_t unknowns = left.columns();
  const detail::CompleteOrthogonal<T> solved(std::move(left), right, tolerance);
  return {Matrix<T>{MatrixView<const T>(solved.x.data(), unknowns, solved.x.columns(), solved.x.leading())},
          std::size_t(solved.rank)};
}

/// The rank, as minimum_norm() finds it.
template <MatrixSource A>
std::size_t matrix_rank(const A& a, const std::optional<Real>& tolerance = {}) {
  using T = Element<A>;
  return std::size_t(detail::CompleteOrthogonal<T>(Matrix<T>{MatrixView<const T>(a)}, Matrix<T>(0, 0), tolerance).rank);
}

/// The Moore-Penrose inverse, n by m: minimum_norm() of the unit matrix.
template <MatrixSource A>
Matrix<Element<A>> pseudo_inverse(const A& a, const std::optional<Real>& tolerance = {}) {
  using T = Element<A>;
  return minimum_norm(a, Matrix<T>::identity(MatrixView<const T>(a).rows()), tolerance).x;
}

/// An orthonormal basis of the x with A x = 0: n rows, n - rank columns.
template <MatrixSource A>
Matrix<Element<A>> null_space(const A& a, const std::optional<Real>& tolerance = {}) {
  using T = Element<A>;
  const detail::CompleteOrthogonal<T> found(Matrix<T>{MatrixView<const T>(a)}, Matrix<T>(0, 0), tolerance);
  const std::size_t n = found.factors.columns();
  const auto rank = std::size_t(found.rank);
  // The last columns of P Z^H.
  Matrix<T> turned(n, n - rank);
  for (std::size_t j = 0; j < n - rank; ++j) {
    turned(rank + j, j) = T(1);
  }
  const detail::RawMatrix<T> raw{turned.view()};
  const detail::RawMatrix<T> z{found.factors.view()};
  std::vector<T> work(std::max<std::size_t>(1, n));
  Integer info = 0;
  const std::size_t steps = std::min(found.factors.rows(), n);
  detail::pick<T>(QuarnMPX_dormrz_, QuarnMPX_zunmrz_)(
      detail::Option('L'), detail::Option(detail::kIsComplex<T> ? 'C' : 'T'), raw.rows, raw.columns, found.rank,
      raw.columns, z.data, z.leading, detail::unconst(found.work.data()) + steps, raw.data, raw.leading, work.data(),
      Integer(work.size()), &info, 1, 1);
  Matrix<T> basis(n, n - rank);
  for (std::size_t i = 0; i < n; ++i) {
    for (std::size_t j = 0; j < basis.columns(); ++j) {
      basis(std::size_t(found.order[i] - 1), j) = turned(i, j);
    }
  }
  return basis;
}

/// The x of least norm(b - A x) among those with C x = d. Throws NumericalFailure when the rows of C, or the columns of
/// A and C together, are dependent to the last digit.
template <MatrixSource A, MatrixSource C, VectorSource B, VectorSource D>
std::vector<Element<A>> constrained_least_squares(const A& a, const B& b, const C& c, const D& d) {
  using T = Element<A>;
  const char* routine = detail::name<T>("DGGLSE", "ZGGLSE");
  const detail::RawMatrix<T> ra{MatrixView<const T>(a)};
  const detail::RawMatrix<T> rc{MatrixView<const T>(c)};
  std::vector<T> right = VectorView<const T>(b).to_vector();
  std::vector<T> fixed = VectorView<const T>(d).to_vector();
  detail::require(rc.columns == ra.columns, routine, 6, "constraints on ", rc.columns, " of ", ra.columns, " unknowns");
  detail::require(rc.rows <= ra.columns && ra.columns <= ra.rows + rc.rows, routine, 3, rc.rows, " constraints and ",
                  ra.rows, " equations for ", ra.columns, " unknowns");
  detail::require_length(routine, 8, detail::count_of(right.size()), ra.rows);
  detail::require_length(routine, 9, detail::count_of(fixed.size()), rc.rows);
  std::vector<T> x(std::size_t(ra.columns));
  std::vector<T> work(std::size_t(ra.rows + ra.columns + rc.rows + 1));
  Integer info = 0;
  detail::pick<T>(QuarnMPX_dgglse_, QuarnMPX_zgglse_)(ra.rows, ra.columns, rc.rows, ra.data, ra.leading, rc.data,
                                                      rc.leading, right.data(), fixed.data(), x.data(), work.data(),
                                                      detail::count_of(work.size()), &info);
  if (info > 0) {
    throw NumericalFailure(routine, info, 0,
                           info == 1 ? "the constraints are dependent"
                                     : "equations and constraints together do not determine the unknowns",
                           {});
  }
  return x;
}

/// What gauss_markov() finds.
template <Scalar T>
struct GaussMarkov {
  std::vector<T> x;
  std::vector<T> y;
};

/// The x and y of least norm(y) with d = A x + B y, at least as many equations as unknowns in x. Throws
/// NumericalFailure when the columns of A, or the rows of A and B together, are dependent to the last digit.
template <MatrixSource A, MatrixSource B, VectorSource D>
GaussMarkov<Element<A>> gauss_markov(const A& a, const B& b, const D& d) {
  using T = Element<A>;
  const char* routine = detail::name<T>("DGGGLM", "ZGGGLM");
  const detail::RawMatrix<T> ra{MatrixView<const T>(a)};
  const detail::RawMatrix<T> rb{MatrixView<const T>(b)};
  std::vector<T> right = VectorView<const T>(d).to_vector();
  detail::require(rb.rows == ra.rows, routine, 6, "errors in ", rb.rows, " of ", ra.rows, " equations");
  detail::require(ra.columns <= ra.rows && ra.rows <= ra.columns + rb.columns, routine, 2, ra.columns, " unknowns and ",
                  rb.columns, " errors in ", ra.rows, " equations");
  detail::require_length(routine, 8, detail::count_of(right.size()), ra.rows);
  GaussMarkov<T> found{std::vector<T>(std::size_t(ra.columns)), std::vector<T>(std::size_t(rb.columns))};
  std::vector<T> work(std::size_t(ra.rows + ra.columns + rb.columns + 1));
  Integer info = 0;
  detail::pick<T>(QuarnMPX_dggglm_, QuarnMPX_zggglm_)(ra.rows, ra.columns, rb.columns, ra.data, ra.leading, rb.data,
                                                      rb.leading, right.data(), found.x.data(), found.y.data(),
                                                      work.data(), detail::count_of(work.size()), &info);
  if (info > 0) {
    throw NumericalFailure(routine, info, 0,
                           info == 1 ? "the columns of the model are dependent" : "the equations are dependent", {});
  }
  return found;
}

}  // namespace tesk2mp
