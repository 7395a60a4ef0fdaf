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
#include "src/proven/rounding.h"

namespace tesk::proven {

/// A matrix with storage of its own, zeros at first.
template <class T>
class Own {
 public:
  Own(Integer rows, Integer columns)
      : elements_(std::size_t(rows) * std::size_t(columns)), leading_(std::max<Integer>(1, rows)) {}
  OneBasedMatrix<T> view() { return {elements_.data(), leading_}; }

 private:
  std::vector<T> elements_;
  Integer leading_;
};

/// A with its entries rounded to the working digits.
template <class T>
Own<T> rounded_copy(Integer n, OneBasedMatrix<T> a) {
  Own<T> copy(n, n);
  const OneBasedMatrix<T> entries = copy.view();
  for (Integer j = 1; j <= n; ++j) {
    for (Integer i = 1; i <= n; ++i) {
      entries(i, j) = to_working_digits(a(i, j));
    }
  }
  return copy;
}

template <class T>
void set_identity(Integer n, OneBasedMatrix<T> a) {
  for (Integer j = 1; j <= n; ++j) {
    for (Integer i = 1; i <= n; ++i) {
      a(i, j) = T(i == j ? 1.0 : 0.0);
    }
  }
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
  Own<T> own(rest, half);
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
  /// X := L^-1, Y := U^-1, both with zeros in their other triangles.
  void invert(OneBasedMatrix<T> x, OneBasedMatrix<T> y) {
    invert_lower(Diagonal::unit, n_, view(), x);
    invert_lower(Diagonal::general, n_, view().transposed(), y.transposed());
  }

 private:
  Integer n_;
  Own<T> own_;
  std::vector<Integer> ipiv_;
  bool singular_ = false;
};

/// Digits of numbers of which a bound alone is wanted.
inline constexpr int kFewDigits = 18;

/// Bounds of the row sums of |I - X Y|, X and Y of order n.
template <class T>
std::vector<QuarnBound> distance_from_identity(Integer n, OneBasedMatrix<T> x, OneBasedMatrix<T> y,
                                               const Range& range) {
  const WorkingDigits scope(kFewDigits);
  const Rounded rounded(kFewDigits, range);
  Own<T> own(n, n);
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
  ApproximateInverse(Integer n, OneBasedMatrix<T> a, const Uncertainty& of_a, int digits, Range range) : r_(n, n) {
    const WorkingDigits scope(digits);
    Factors<T> factors(n, a);
    if (factors.is_singular()) {
      return;
    }
    Own<T> left(n, n);
    Own<T> right(n, n);
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

  OneBasedMatrix<T> view() { return r_.view(); }
  /// The row sum i of |I - R A|.
  const QuarnBound& row(Integer i) const { return rows_[std::size_t(i)]; }
  /// The row sum i of |R|.
  const QuarnBound& size_of_row(Integer i) const { return sizes_[std::size_t(i)]; }
  /// The largest row sum of |I - R A|.
  const QuarnBound& norm() const noexcept { return norm_; }
  const Range& range() const noexcept { return range_; }

 private:
  Own<T> r_;
  Range range_;
  std::vector<QuarnBound> sizes_;
  std::vector<QuarnBound> rows_;
  QuarnBound norm_ = QuarnBound::infinity();
};

}  // namespace tesk::proven
