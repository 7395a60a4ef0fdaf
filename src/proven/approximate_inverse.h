// An approximate inverse R of A with a proof: row sums of |I - R A| below 1 mean that A is regular and R A is near I.
// S. M. Rump, Verification methods, Acta Numerica 19 (2010), chapter 10. Products round each entry once, so that the
// bound of I - R A costs what its entries cost and no product of absolute values.
#pragma once

#include <algorithm>
#include <utility>
#include <vector>

#include "src/dense/factorise.h"
#include "src/frame/working_digits.h"
#include "src/kernels/exact_level3.h"
#include "src/kernels/own_matrix.h"
#include "src/proven/rounding.h"

namespace tesk::proven {

/// A with its entries rounded to the working digits.
template <class T>
OwnMatrix<T> rounded_copy(Integer n, OneBasedMatrix<T> a) {
  OwnMatrix<T> copy(n, n);
  const OneBasedMatrix<T> entries = copy.view();
  for (Integer j = 1; j <= n; ++j) {
    for (Integer i = 1; i <= n; ++i) {
      entries(i, j) = to_working_digits(a(i, j));
    }
  }
  return copy;
}

/// X := L^-1, L lower triangular; what is above the diagonal is not read, and zero in X. A diagonal of ones stays one.
template <class T>
void invert_lower(Diagonal diagonal, Integer n, OneBasedMatrix<T> l, OneBasedMatrix<T> x) {
  constexpr Integer kFew = 32;
  if (n <= kFew) {
    set_identity(n, x);
    exact::solve_lower(diagonal, false, n, n, l, x);
    for (Integer j = 1; j <= n; ++j) {
      for (Integer i = 1; i < j; ++i) {
        x(i, j) = T(0.0);
      }
      if (diagonal == Diagonal::unit) {
        x(j, j) = T(1.0);
      }
    }
    return;
  }
  const Integer half = n / 2;
  const Integer rest = n - half;
  const OneBasedMatrix<T> last = x.from(half + 1, half + 1);
  invert_lower(diagonal, half, l, x);
  invert_lower(diagonal, rest, l.from(half + 1, half + 1), last);
  OwnMatrix<T> own(rest, half);
  const auto multiply = [&](Integer k, const T& alpha, OneBasedMatrix<T> a, OneBasedMatrix<T> b, OneBasedMatrix<T> c) {
    exact::multiply_matrices(Op::none, Op::none, rest, half, k, alpha, a, b, T(0.0), c);
  };
  multiply(half, T(1.0), l.from(half + 1, 1), x, own.view());
  multiply(rest, T(-1.0), last, own.view(), x.from(half + 1, 1));
  for (Integer j = half + 1; j <= n; ++j) {
    for (Integer i = 1; i <= half; ++i) {
      x(i, j) = T(0.0);
    }
  }
}

/// P A = L U at the working digits, of A rounded to them.
template <class T>
class Factors {
 public:
  Factors(Integer n, OneBasedMatrix<T> a) : n_(n), own_(rounded_copy(n, a)), ipiv_(std::size_t(n)) {
    singular_ = factorise_lu(n, n, own_.view(), ipiv_.data()) != 0;
  }

  bool is_singular() const noexcept { return singular_; }
  OneBasedMatrix<T> view() { return own_.view(); }
  /// The row that row k was exchanged with.
  Integer pivot(Integer k) const { return ipiv_[std::size_t(k - 1)]; }
  const Integer* pivots() const noexcept { return ipiv_.data(); }
  /// X := L^-1, Y := U^-1, both with zeros in their other triangles.
  void invert(OneBasedMatrix<T> x, OneBasedMatrix<T> y) {
    invert_lower(Diagonal::unit, n_, view(), x);
    invert_lower(Diagonal::general, n_, view().transposed(), y.transposed());
  }

 private:
  Integer n_;
  OwnMatrix<T> own_;
  std::vector<Integer> ipiv_;
  bool singular_ = false;
};

/// With so many digits more than the working digits a matrix of condition 10^D is inverted well enough.
inline constexpr int kSpareDigits = 10;

/// Digits of numbers of which a bound alone is wanted.
inline constexpr int kFewDigits = 18;

/// Bounds of the row sums of |I - X Y|, X and Y of order n.
template <class T>
std::vector<QuarnBound> distance_from_identity(Integer n, OneBasedMatrix<T> x, OneBasedMatrix<T> y,
                                               const Range& range) {
  const WorkingDigits scope(kFewDigits);
  const Rounded rounded(kFewDigits, range);
  OwnMatrix<T> own(n, n);
  const OneBasedMatrix<T> e = own.view();
  set_identity(n, e);
  exact::multiply_matrices(Op::none, Op::none, n, n, n, T(-1.0), x, y, T(1.0), e);
  std::vector<QuarnBound> sums(std::size_t(n) + 1);
  for (Integer j = 1; j <= n; ++j) {
    for (Integer i = 1; i <= n; ++i) {
      sums[std::size_t(i)] += rounded.size(e(i, j));
    }
  }
  return sums;
}

/// R of `digits` digits, for every matrix as near A as the uncertainty says.
template <class T>
class ApproximateInverse {
 public:
  ApproximateInverse(Integer n, OneBasedMatrix<T> a, const Uncertainty& of_a, int digits, Range range)
      : n_(n), r_(n, n) {
    const WorkingDigits scope(digits);
    Factors<T> factors(n, a);
    if (factors.is_singular()) {
      return;
    }
    OwnMatrix<T> left(n, n);
    OwnMatrix<T> right(n, n);
    factors.invert(left.view(), right.view());
    const OneBasedMatrix<T> r = r_.view();
    exact::multiply_matrices(Op::none, Op::none, n, n, n, T(1.0), right.view(), left.view(), T(0.0), r);
    for (Integer k = n; k >= 1; --k) {
      if (const Integer row = factors.pivot(k); row != k) {
        swap_vectors(n, r.column(k), r.column(row));
      }
    }
    range.take(n, n, r);
    range_ = range;
    rows_ = distance_from_identity(n, r, a, range);
    sizes_.resize(std::size_t(n) + 1);
    for (Integer k = 1; k <= n; ++k) {
      QuarnBound uncertain;
      for (Integer j = 1; j <= n && !of_a.is_zero(); ++j) {
        uncertain += of_a(k, j);
      }
      for (Integer i = 1; i <= n; ++i) {
        const QuarnBound size(r(i, k));
        sizes_[std::size_t(i)] += size;
        rows_[std::size_t(i)] += size * uncertain;
      }
    }
    norm_ = *std::max_element(rows_.begin(), rows_.end());
  }

  /// Y := R X, m columns, at the working digits.
  void apply(Integer m, OneBasedMatrix<T> x, OneBasedMatrix<T> y) {
    exact::multiply_matrices(Op::none, Op::none, n_, m, n_, T(1.0), r_.view(), x, T(0.0), y);
  }
  /// Bounds of |y - A^-1 r| where apply() made y of a vector that may differ from r by `of_r`, elements from 1 on: with
  /// E = I - R A that is (I - E)^-1 R r = R r + E (I - E)^-1 R r.
  std::vector<QuarnBound> errors(OneBasedVector<T> y, std::vector<QuarnBound> of_r, const Range& range) const {
    const Rounded rounded(QuarnDigits(), range);
    const QuarnBound residual = *std::max_element(of_r.begin(), of_r.end());
    QuarnBound largest;
    for (Integer i = 1; i <= n_; ++i) {
      const QuarnBound bound = sizes_[std::size_t(i)] * residual + rounded.error(y(i));
      largest = std::max(largest, QuarnBound(y(i)) + bound);
      of_r[std::size_t(i)] = bound;
    }
    largest *= over_one_minus(norm_);
    for (Integer i = 1; i <= n_; ++i) {
      of_r[std::size_t(i)] += rows_[std::size_t(i)] * largest;
    }
    return of_r;
  }

  /// The largest row sum of |I - R A|.
  const QuarnBound& norm() const noexcept { return norm_; }
  const Range& range() const noexcept { return range_; }
  /// Residuals have more digits than the working digits, so that their rounding means nothing.
  static int digits() { return QuarnDigits() + kSpareDigits; }

 private:
  Integer n_;
  OwnMatrix<T> r_;
  Range range_;
  std::vector<QuarnBound> sizes_;
  std::vector<QuarnBound> rows_;
  QuarnBound norm_ = QuarnBound::infinity();
};

}  // namespace tesk::proven
