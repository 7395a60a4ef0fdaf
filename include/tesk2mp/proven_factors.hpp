// LU, Cholesky and QR factors of matrices with proven error bounds in the C++ interface. Not part of tesk2mp.hpp. The
// plain routine finds the factors with some more digits; their residual, of products that are rounded once, says how
// far the true ones can be.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <numeric>
#include <optional>
#include <utility>
#include <vector>

#include "tesk2mp/linear.hpp"
#include "tesk2mp/orthogonal.hpp"
#include "tesk2mp/proven_exact.hpp"
#include "tesk2mp/proven_spectra.hpp"
#include "tesk2mp/proven_sums.hpp"

namespace tesk2mp::proven {
namespace detail {

/// Bounds of the sizes of a matrix's elements.
class BoundGrid {
 public:
  BoundGrid(std::size_t rows, std::size_t columns) : rows_(rows), columns_(columns), bounds_(rows * columns) {}
  /// make(i, j) each
  template <class Make>
  BoundGrid(std::size_t rows, std::size_t columns, const Make& make) : BoundGrid(rows, columns) {
    for (std::size_t j = 0; j < columns; ++j) {
      for (std::size_t i = 0; i < rows; ++i) {
        (*this)(i, j) = make(i, j);
      }
    }
  }
  template <class T>
  explicit BoundGrid(const Matrix<T>& a)
      : BoundGrid(a.rows(), a.columns(), [&](std::size_t i, std::size_t j) { return QuarnBound(a(i, j)); }) {}

  std::size_t rows() const noexcept { return rows_; }
  std::size_t columns() const noexcept { return columns_; }
  QuarnBound& operator()(std::size_t i, std::size_t j) { return bounds_[i + j * rows_]; }
  const QuarnBound& operator()(std::size_t i, std::size_t j) const { return bounds_[i + j * rows_]; }
  bool is_zero() const {
    return std::all_of(bounds_.begin(), bounds_.end(), [](const QuarnBound& each) { return each.is_zero(); });
  }
  /// The Frobenius norm.
  QuarnBound norm() const {
    QuarnBound squares;
    for (const QuarnBound& each : bounds_) {
      squares += each * each;
    }
    return sqrt(squares);
  }

  friend BoundGrid operator+(const BoundGrid& a, const BoundGrid& b) {
    return {a.rows_, a.columns_, [&](std::size_t i, std::size_t j) { return a(i, j) + b(i, j); }};
  }
  friend BoundGrid operator*(const BoundGrid& a, const BoundGrid& b) {
    BoundGrid c(a.rows_, b.columns_);
    for (std::size_t j = 0; j < b.columns_; ++j) {
      for (std::size_t k = 0; k < a.columns_; ++k) {
        for (std::size_t i = 0; i < a.rows_ && !b(k, j).is_zero(); ++i) {
          c(i, j) += a(i, k) * b(k, j);
        }
      }
    }
    return c;
  }
  BoundGrid block(std::size_t row, std::size_t column, std::size_t rows, std::size_t columns) const {
    return {rows, columns, [&](std::size_t i, std::size_t j) { return (*this)(row + i, column + j); }};
  }
  BoundGrid transposed() const {
    return {columns_, rows_, [&](std::size_t i, std::size_t j) { return (*this)(j, i); }};
  }

 private:
  std::size_t rows_;
  std::size_t columns_;
  std::vector<QuarnBound> bounds_;
};

/// The matrix of make(i, j), numbers with bounds.
template <class T, class Make>
BoundedMatrix<T> bounded_matrix(std::size_t rows, std::size_t columns, const Make& make) {
  Matrix<T> values(rows, columns);
  Matrix<Real> errors(rows, columns);
  for (std::size_t j = 0; j < columns; ++j) {
    for (std::size_t i = 0; i < rows; ++i) {
      const Bounded<T> element = make(i, j);
      values(i, j) = element.value;
      errors(i, j) = element.error.value();
    }
  }
  return {std::move(values), std::move(errors)};
}
template <class T>
bool is_known(const BoundedMatrix<T>& a) {
  return std::all_of(a.errors().data(), a.errors().data() + a.rows() * a.columns(),
                     [](const Real& error) { return QuarnBound(error).is_finite(); });
}
template <class T>
BoundedMatrix<T> block(const BoundedMatrix<T>& a, std::size_t row, std::size_t column, std::size_t rows,
                       std::size_t columns) {
  return bounded_matrix<T>(rows, columns, [&](std::size_t i, std::size_t j) { return a(row + i, column + j); });
}

/// The value rounded to the working digits; what fits them is not rounded.
template <class T>
Bounded<T> fitted(const Bounded<T>& x) {
  T value = x.value * T(1);
  const bool fits = value == x.value;
  QuarnBound error = fits ? x.error : x.error + rounding_of(value);
  return {std::move(value), error};
}
template <class T>
BoundedMatrix<T> fitted(const BoundedMatrix<T>& a) {
  return bounded_matrix<T>(a.rows(), a.columns(), [&](std::size_t i, std::size_t j) { return fitted(a(i, j)); });
}
/// Values with bounds, rounded to the working digits.
template <class T>
BoundedMatrix<T> fitted(const Matrix<T>& values, const BoundGrid& errors) {
  return bounded_matrix<T>(values.rows(), values.columns(), [&](std::size_t i, std::size_t j) {
    return fitted(Bounded<T>{values(i, j), errors(i, j)});
  });
}

/// The place of the last digit of any element that is not 0.
inline std::int64_t lowest_place(const Real& x) { return ilogb(x) - significant_digits(x) + 1; }
template <class T>
std::optional<std::int64_t> lowest_place(const Matrix<T>& a) {
  std::optional<std::int64_t> lowest;
  const auto take = [&](const Real& x) {
    if (x != 0) {
      lowest = std::min(lowest.value_or(lowest_place(x)), lowest_place(x));
    }
  };
  std::for_each(a.data(), a.data() + a.rows() * a.columns(), [&](const T& x) {
    if constexpr (tesk2mp::detail::kIsComplex<T>) {
      take(x.re);
      take(x.im);
    } else {
      take(x);
    }
  });
  return lowest;
}

/// Bounds of |A - X Y|, with twice the digits. What is a multiple of a place and less than that is 0: factors that are
/// exact have no residual.
template <class T>
BoundGrid residual(const BoundedMatrix<T>& a, const Matrix<T>& x, const Matrix<T>& y) {
  const auto of_a = lowest_place(a.values());
  const auto of_x = lowest_place(x);
  const auto of_y = lowest_place(y);
  std::int64_t place = of_a.value_or(0);
  if (of_x && of_y) {
    place = of_a ? std::min(place, *of_x + *of_y) : *of_x + *of_y;
  }
  const QuarnBound unit = QuarnBound::power_of_ten(place);
  const Digits scope(2 * QuarnDigits() + 10);
  const BoundedMatrix<T> product = proven::multiply(x, y);
  return {a.rows(), a.columns(), [&](std::size_t i, std::size_t j) {
            const Bounded<T> rest = proven::exact(a.values()(i, j)) - product(i, j);
            const QuarnBound size = QuarnBound(rest.value) + rest.error;
            return (size < unit ? QuarnBound() : size) + a(i, j).error;
          }};
}

/// Bounds of 1 / |diagonal|.
template <class T>
std::vector<QuarnBound> reciprocals(const Matrix<T>& triangle) {
  std::vector<QuarnBound> result;
  for (std::size_t i = 0; i < triangle.rows(); ++i) {
    result.push_back(one() / least_size(proven::exact(triangle(i, i))));
  }
  return result;
}
/// Bounds of |L^-1 F| where those of |F| are given, L lower triangular: the inverse of its comparison matrix, with
/// |diagonal| and -|other elements|, is not below |L^-1| (N. J. Higham, Accuracy and Stability of Numerical Algorithms,
/// section 8.3).
template <class T>
BoundGrid solved(const Matrix<T>& l, BoundGrid f) {
  const BoundGrid sizes(l);
  const std::vector<QuarnBound> over = reciprocals(l);
  for (std::size_t j = 0; j < f.columns(); ++j) {
    for (std::size_t k = 0; k < l.rows(); ++k) {
      f(k, j) = f(k, j).is_zero() ? QuarnBound() : f(k, j) * over[k];
      for (std::size_t i = k + 1; i < l.rows() && !f(k, j).is_zero(); ++i) {
        f(i, j) += sizes(i, k) * f(k, j);
      }
    }
  }
  return f;
}
/// Of |F U^-1|, U upper triangular.
template <class T>
BoundGrid divided(const BoundGrid& f, const Matrix<T>& u) {
  Matrix<T> lower(u.columns(), u.columns());
  for (std::size_t j = 0; j < u.columns(); ++j) {
    for (std::size_t i = 0; i <= j; ++i) {
      lower(j, i) = u(i, j);
    }
  }
  return solved(lower, f.transposed()).transposed();
}

/// What a factorisation of I + G changes: with ||G|| = g <= 1/2 there are triangular X and Y, I + G = (I + X)(I + Y),
/// each element of which is at most |G| + 2 g^2 there: X + Y = G - X Y has a solution of norm 2 g at most, by Brouwer's
/// theorem, since ||X Y|| <= ||X + Y||^2 / 2 where they have no element in common. The same where Y = X^H and G = G^H,
/// X with half the diagonal. (J.-G. Sun, Componentwise perturbation bounds for some matrix decompositions, BIT 32,
/// 1992.) No value where g may be larger.
inline std::optional<BoundGrid> factor_change(const BoundGrid& g) {
  const QuarnBound norm = g.norm();
  if (QuarnBound::count(1) < QuarnBound::count(2) * norm) {
    return std::nullopt;
  }
  const QuarnBound square = QuarnBound::count(2) * norm * norm;
  return BoundGrid(g.rows(), g.columns(), [&](std::size_t i, std::size_t j) { return g(i, j) + square; });
}
inline BoundGrid lower_part(const BoundGrid& g, bool with_diagonal) {
  return {g.rows(), g.columns(),
          [&](std::size_t i, std::size_t j) { return i > j || (with_diagonal && i == j) ? g(i, j) : QuarnBound(); }};
}

inline BoundGrid stacked(const BoundGrid& above, const BoundGrid& below) {
  return {above.rows() + below.rows(), above.columns(),
          [&](std::size_t i, std::size_t j) { return i < above.rows() ? above(i, j) : below(i - above.rows(), j); }};
}
/// The leading square of that order.
template <class T>
Matrix<T> leading(const Matrix<T>& a, std::size_t order) {
  return Matrix<T>{MatrixView<const T>(a.data(), order, order, std::max<std::size_t>(1, a.rows()))};
}

/// Bounds of |Z - X| where Z (I + Y) = X + F, bounds of |F| and |Y| given, ||Y|| < 1: Z - X = F - X Y - (Z - X) Y, row
/// by row.
inline BoundGrid right_change(const BoundGrid& x, const BoundGrid& f, const BoundGrid& y) {
  const QuarnBound norm = y.norm();
  BoundGrid change = f + x * y;
  for (std::size_t i = 0; i < change.rows(); ++i) {
    QuarnBound row;
    for (std::size_t j = 0; j < change.columns(); ++j) {
      row = hypotenuse(row, change(i, j));
    }
    for (std::size_t j = 0; j < change.columns(); ++j) {
      change(i, j) += row * over_one_minus(norm) * norm;
    }
  }
  return change;
}

template <class T>
BoundedMatrix<T> identity(std::size_t n) {
  return bounded(Matrix<T>::identity(n));
}

/// Bounds of |(Q + F)^H (Q + F) - I| where those of |I - Q^H Q|, |Q| and |F| are given.
inline BoundGrid gram_change(const BoundGrid& defect, const BoundGrid& q, const BoundGrid& f) {
  const BoundGrid cross = q.transposed() * f;
  return defect + cross + cross.transposed() + f.transposed() * f;
}

/// Where elimination without interchanges leaves elements that are 0 whatever the others are: of L below the diagonal,
/// of U on it and above.
class Fill {
 public:
  template <class T>
  explicit Fill(const BoundedMatrix<T>& a) : rows_(a.rows()), filled_(a.rows() * a.columns()) {
    for (std::size_t j = 0; j < a.columns(); ++j) {
      for (std::size_t i = 0; i < rows_; ++i) {
        filled_[i + j * rows_] = a.values()(i, j) != T() || !a(i, j).error.is_zero();
      }
    }
    for (std::size_t k = 0; k < std::min(rows_, a.columns()); ++k) {
      for (std::size_t j = k + 1; j < a.columns(); ++j) {
        for (std::size_t i = k + 1; i < rows_ && filled_[k + j * rows_]; ++i) {
          filled_[i + j * rows_] = filled_[i + j * rows_] || filled_[i + k * rows_];
        }
      }
    }
  }
  /// The bounds of a factor without those of elements that are certainly 0.
  BoundGrid without_zeros(const BoundGrid& errors) const {
    return {errors.rows(), errors.columns(),
            [&](std::size_t i, std::size_t j) { return filled_[i + j * rows_] ? errors(i, j) : QuarnBound(); }};
  }

 private:
  std::size_t rows_;
  std::vector<bool> filled_;
};

/// More digits than the working ones for what is made of several products.
inline constexpr int kDigitsOfProducts = 8;

/// The working digits of factors of order n: bounds by comparison matrices grow with it.
inline int digits_of_factors(std::size_t n) { return QuarnDigits() + 10 + int(n) / 2; }

}  // namespace detail

// LU ----------------------------------------------------------------------------------------------------------------

/// P A = L U of an m by n matrix: row i of P A is row rows[i] of A, L has ones on its diagonal.
template <Scalar T>
struct LUBounds {
  std::vector<std::size_t> rows;
  BoundedMatrix<T> l;
  BoundedMatrix<T> u;
};

/// L and U with the row interchanges that LU makes with some more digits: any are right, and where the sizes of two
/// candidates for a pivot are closer than that either one is. The first min(m, n) rows and columns of P A have to be
/// regular unless the factors are exact; otherwise, and where the digits do not suffice, the bounds are infinite. With
/// E = P A - L0 U0 the factors are L0 (I + X) and (I + Y) U0, (I + X)(I + Y) = I + L0^-1 E U0^-1. Throws
/// InvalidArgument when an element of exact data is not finite.
///
/// @code
/// const auto f = tesk2mp::proven::lu(tesk2mp::Matrix<tesk2mp::Real>{{1, 2}, {3, 7}});  // f.rows is {1, 0}
/// @endcode
template <DataSource A>
LUBounds<detail::ElementOfData<A>> lu(const A& a) {
  using T = detail::ElementOfData<A>;
  detail::require_finite("PROVEN::LU", a);
  const BoundedMatrix<T> given = detail::bounded(a);
  const std::size_t m = given.rows();
  const std::size_t n = given.columns();
  const std::size_t inner = std::min(m, n);
  LUBounds<T> result{std::vector<std::size_t>(m), detail::unknown_matrix<T>(m, inner),
                     detail::unknown_matrix<T>(inner, n)};
  std::iota(result.rows.begin(), result.rows.end(), 0);
  Matrix<T> l(m, inner);
  Matrix<T> u(inner, n);
  std::optional<detail::BoundGrid> of_l;
  std::optional<detail::BoundGrid> of_u;
  {
    const Digits scope(detail::digits_of_factors(inner));
    const LU<T> near(given.values());
    for (std::size_t k = 0; k < inner; ++k) {
      std::swap(result.rows[k], result.rows[std::size_t(near.pivots()[k])]);
      l(k, k) = T(1);
    }
    for (std::size_t j = 0; j < n; ++j) {
      for (std::size_t i = 0; i < m; ++i) {
        (i > j ? l(i, j) : u(i, j)) = near.factors()(i, j);
      }
    }
    const auto permuted =
        detail::bounded_matrix<T>(m, n, [&](std::size_t i, std::size_t j) { return given(result.rows[i], j); });
    const detail::BoundGrid rest = detail::residual(permuted, l, u);
    const detail::BoundGrid sizes_l(l);
    const detail::BoundGrid sizes_u(u);
    if (rest.is_zero()) {
      of_l.emplace(m, inner);
      of_u.emplace(inner, n);
    } else if (!near.singular()) {
      const detail::BoundGrid of_columns = detail::divided(rest.block(0, 0, m, inner), detail::leading(u, inner));
      const detail::BoundGrid of_rows = detail::solved(detail::leading(l, inner), rest.block(0, 0, inner, n));
      const auto change =
          detail::factor_change(detail::solved(detail::leading(l, inner), of_columns.block(0, 0, inner, inner)));
      if (change) {
        const detail::BoundGrid x = detail::lower_part(*change, false);
        const detail::BoundGrid y = detail::lower_part(change->transposed(), true).transposed();
        const std::size_t below = m - inner;
        const std::size_t beside = n - inner;
        of_l = detail::stacked(
            sizes_l.block(0, 0, inner, inner) * x,
            detail::right_change(sizes_l.block(inner, 0, below, inner), of_columns.block(inner, 0, below, inner), y));
        of_u =
            detail::stacked((y * sizes_u.block(0, 0, inner, inner)).transposed(),
                            detail::right_change(sizes_u.block(0, inner, inner, beside).transposed(),
                                                 of_rows.block(0, inner, inner, beside).transposed(), x.transposed()))
                .transposed();
        const detail::Fill fill(permuted);
        of_l = fill.without_zeros(*of_l);
        of_u = fill.without_zeros(*of_u);
      }
    }
  }
  if (of_l && of_u) {
    result.l = detail::fitted(l, *of_l);
    result.u = detail::fitted(u, *of_u);
  }
  return result;
}

// Cholesky ------------------------------------------------------------------------------------------------------------

namespace detail {

/// The whole of a Hermitian matrix of which one triangle is read, and the diagonal's real parts.
template <class T>
BoundedMatrix<T> hermitian(const BoundedMatrix<T>& a, Triangle stored) {
  return bounded_matrix<T>(a.rows(), a.rows(), [&](std::size_t i, std::size_t j) {
    const bool is_stored = stored == Triangle::lower ? i >= j : i <= j;
    Bounded<T> element = is_stored ? a(i, j) : a(j, i);
    if constexpr (tesk2mp::detail::kIsComplex<T>) {
      element.value = i == j ? T(element.value.re) : is_stored ? element.value : quarn::conj(element.value);
    }
    return element;
  });
}

/// Is x^H A x certainly not positive, x the vector with which the elimination of the leading minor of that order ends?
template <class T>
bool is_not_positive(const BoundedMatrix<T>& a, std::size_t order) {
  Matrix<T> x(order, 1);
  x(order - 1, 0) = T(1);
  if (order > 1) {
    Matrix<T> right(order - 1, 1);
    for (std::size_t i = 0; i + 1 < order; ++i) {
      right(i, 0) = -a.values()(i, order - 1);
    }
    const LU<T> factors(block(a, 0, 0, order - 1, order - 1).values());
    if (factors.singular()) {
      return false;
    }
    const Matrix<T> found = factors.solve(right);
    std::copy_n(found.data(), order - 1, x.data());
  }
  const Bounded<T> form = proven::multiply(adjoint(x), proven::multiply(block(a, 0, 0, order, order), x))(0, 0);
  const Real value = Complex(form.value).re;
  return form.error.is_finite() && !(value > 0) && form.error.value() <= -value;
}

template <class T>
std::optional<BoundedMatrix<T>> cholesky_of(const BoundedMatrix<T>& a) {
  Matrix<T> l;
  std::optional<BoundGrid> errors;
  {
    const Digits scope(digits_of_factors(a.rows()));
    l = Cholesky<T>(a.values()).factor();
    const BoundGrid rest = residual(a, l, adjoint(l));
    if (rest.is_zero()) {
      errors.emplace(a.rows(), a.rows());
    } else if (const auto change = factor_change(solved(l, solved(l, rest).transposed()).transposed())) {
      errors = Fill(a).without_zeros(BoundGrid(l) * lower_part(*change, true));
    }
  }
  return errors ? std::optional(fitted(l, *errors)) : std::nullopt;
}

}  // namespace detail

/// L of A = L L^H, or U of A = U^H U where the upper triangle is read: one triangle of a Hermitian matrix, whose other
/// elements and imaginary parts of the diagonal are not looked at. The bounds are infinite where the digits do not
/// suffice; throws NumericalFailure when a leading minor is proven not to be positive, and says which one. With
/// E = A - L0 L0^H it is L0 (I + X), (I + X)(I + X)^H = I + L0^-1 E L0^-H. That A is definite is part of the proof.
template <DataSource A>
BoundedMatrix<detail::ElementOfData<A>> cholesky(const A& a, Triangle stored = Triangle::lower) {
  using T = detail::ElementOfData<A>;
  const char* routine = tesk2mp::detail::name<T>("DPOTRF", "ZPOTRF");
  detail::require_finite(routine, a);
  const BoundedMatrix<T> given = detail::bounded(a);
  tesk2mp::detail::require(given.rows() == given.columns(), routine, 2, "a matrix of ", given.rows(), " by ",
                           given.columns(), " is not square");
  const BoundedMatrix<T> whole = detail::hermitian(given, stored);
  const std::size_t n = given.rows();
  try {
    if (const auto l = detail::cholesky_of(whole)) {
      return stored == Triangle::lower ? *l : detail::adjoint(*l);
    }
  } catch (const NumericalFailure& failure) {
    const auto order = std::size_t(failure.code());
    // The first one that is not positive where the leading matrix before it is definite.
    const auto is_definite = [&](std::size_t before) {
      try {
        return before == 0 || detail::cholesky_of(detail::block(whole, 0, 0, before, before)).has_value();
      } catch (const NumericalFailure&) {
        return false;
      }
    };
    if (order >= 1 && order <= n && detail::is_not_positive(whole, order) && is_definite(order - 1)) {
      throw;
    }
  }
  return detail::unknown_matrix<T>(n, n);
}

/// What keeps a matrix from being Hermitian as far as its bounds say: the place of an element that differs from its
/// mirror image, from 0; none where all may be mirrored.
template <DataSource A>
std::optional<std::pair<std::size_t, std::size_t>> unmirrored_element(const A& a) {
  using T = detail::ElementOfData<A>;
  const BoundedMatrix<T> given = detail::bounded(a);
  for (std::size_t j = 0; j < given.columns(); ++j) {
    for (std::size_t i = j; i < given.rows(); ++i) {
      const Bounded<T> difference =
          given(i, j) - Bounded<T>{detail::conjugate_of(given.values()(j, i)), given(j, i).error};
      if (difference.error < QuarnBound(difference.value) && !detail::least_size(difference).is_zero()) {
        return std::pair(i, j);
      }
    }
  }
  return std::nullopt;
}

// QR ------------------------------------------------------------------------------------------------------------------

/// A = Q R, Q with orthonormal columns.
template <Scalar T>
struct QRBounds {
  BoundedMatrix<T> q;
  BoundedMatrix<T> r;
};

namespace detail {

/// Q D and D R of a diagonal D of signs that makes the diagonal of R, which is real, positive.
template <class T>
void make_diagonal_positive(Matrix<T>& q, Matrix<T>& r) {
  for (std::size_t k = 0; k < r.rows(); ++k) {
    if (Complex(r(k, k)).re < 0) {
      for (std::size_t i = 0; i < q.rows(); ++i) {
        q(i, k) = T() - q(i, k);  // no zero gets a sign
      }
      for (std::size_t j = k; j < r.columns(); ++j) {
        r(k, j) = T() - r(k, j);
      }
    }
  }
}

}  // namespace detail

/// Q, m by min(m, n), and R, min(m, n) by n, of a matrix whose first min(m, n) columns are independent, which is part
/// of the proof; otherwise, and where the digits do not suffice, the bounds are infinite. The diagonal of R is real and
/// positive, so that the factors are unique: bounds with other digits are bounds of the same ones. QR itself, whose
/// signs depend on roundings, finds them with other signs. With Y = A R0^-1 = Q0 + E R0^-1 and Y^H Y = (I + X)^H (I +
/// X) R is (I + X) R0 and Q is Y (I + X)^-1.
template <DataSource A>
QRBounds<detail::ElementOfData<A>> qr(const A& a) {
  using T = detail::ElementOfData<A>;
  detail::require_finite("PROVEN::QR", a);
  const BoundedMatrix<T> given = detail::bounded(a);
  const std::size_t m = given.rows();
  const std::size_t n = given.columns();
  const std::size_t inner = std::min(m, n);
  QRBounds<T> result{detail::unknown_matrix<T>(m, inner), detail::unknown_matrix<T>(inner, n)};
  BoundedMatrix<T> right;
  {
    const Digits scope(detail::digits_of_factors(inner));
    const BoundedMatrix<T> first = detail::block(given, 0, 0, m, inner);
    const QR<T> near(first.values());
    Matrix<T> q = near.q();
    Matrix<T> r = near.r();
    detail::make_diagonal_positive(q, r);
    for (std::size_t k = 0; k < inner; ++k) {
      if (r(k, k) == T()) {
        return result;
      }
    }
    const detail::BoundGrid sizes(q);
    const detail::BoundGrid of_y = detail::divided(detail::residual(first, q, r), r);
    const detail::BoundGrid gram =
        detail::gram_change(detail::residual(detail::identity<T>(inner), detail::adjoint(q), q), sizes, of_y);
    const auto change = detail::factor_change(gram);
    if (!change) {
      return result;
    }
    const detail::BoundGrid x = detail::lower_part(change->transposed(), true).transposed();
    result.q = detail::bounded_matrix<T>(
        m, inner, [errors = detail::right_change(sizes, of_y, x), &q](std::size_t i, std::size_t j) {
          return Bounded<T>{q(i, j), errors(i, j)};
        });
    right =
        detail::bounded_matrix<T>(inner, inner, [errors = x * detail::BoundGrid(r), &r](std::size_t i, std::size_t j) {
          return Bounded<T>{r(i, j), errors(i, j)};
        });
    if (n > inner) {
      const BoundedMatrix<T> rest =
          proven::multiply(detail::adjoint(result.q), detail::block(given, 0, inner, m, n - inner));
      right = detail::bounded_matrix<T>(inner, n, [&, square = right](std::size_t i, std::size_t j) {
        return j < inner ? square(i, j) : rest(i, j - inner);
      });
    }
  }
  return {detail::fitted(result.q), detail::fitted(right)};
}

}  // namespace tesk2mp::proven
