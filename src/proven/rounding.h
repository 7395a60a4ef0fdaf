// Bounds of what rounding has changed, for sums of products that are rounded once.
#pragma once

#include <algorithm>

#include "quarn/bound.h"
#include "src/kernels/scalar.h"
#include "src/kernels/views.h"

namespace tesk::proven {

/// Where every number is of moderate exponent no product of three can underflow: a result zero is then exact.
class Range {
 public:
  template <class T>
  void take(Integer m, Integer n, const OneBasedMatrix<T>& a) {
    for (Integer j = 1; j <= n; ++j) {
      for (Integer i = 1; i <= m; ++i) {
        take(a(i, j));
      }
    }
  }
  void take(const Complex& z) noexcept {
    take(z.re);
    take(z.im);
  }
  void take(const QuarnFloat& x) noexcept {
    const QuarnBound size(x);
    finite_ = finite_ && size.is_finite();
    if (!size.is_zero() && (!size.is_finite() || size.exponent() < -kLargest / 4 || size.exponent() > kLargest / 4)) {
      moderate_ = false;
    }
  }
  bool is_finite() const noexcept { return finite_; }
  bool is_moderate() const noexcept { return moderate_; }
  /// How far a result zero may be from the exact one.
  QuarnBound of_zero() const noexcept { return moderate_ ? QuarnBound() : QuarnBound::power_of_ten(-kLargest); }

 private:
  static constexpr std::int64_t kLargest = 999'999'999;

  bool finite_ = true;
  bool moderate_ = true;
};

/// |exact - x| of a result x that was rounded once to `digits` digits, each part of a complex one.
class Rounded {
 public:
  Rounded(int digits, const Range& range) noexcept : digits_(digits), of_zero_(range.of_zero()) {}

  QuarnBound error(const QuarnFloat& x) const noexcept {
    const QuarnBound size(x);
    return size.is_zero() ? of_zero_ : size.half_unit(digits_);
  }
  QuarnBound error(const Complex& z) const noexcept { return hypotenuse(error(z.re), error(z.im)); }
  /// A bound of |exact|.
  template <class T>
  QuarnBound size(const T& x) const noexcept {
    return QuarnBound(x) + error(x);
  }

 private:
  int digits_;
  QuarnBound of_zero_;
};

/// How far the elements of a matrix may be from those that are meant; no storage means that they are exact.
class Uncertainty {
 public:
  Uncertainty(QuarnFloat* error, Integer leading) noexcept
      : known_(leading > 0), error_(error, std::max<Integer>(1, leading)) {}

  bool is_zero() const noexcept { return !known_; }
  QuarnBound operator()(Integer i, Integer j) const noexcept {
    return known_ ? QuarnBound(error_(i, j)) : QuarnBound();
  }

 private:
  bool known_;
  OneBasedMatrix<QuarnFloat> error_;
};

/// x rounded to the working digits.
inline QuarnFloat to_working_digits(const QuarnFloat& x) { return x * QuarnFloat(1); }
inline Complex to_working_digits(const Complex& z) { return {to_working_digits(z.re), to_working_digits(z.im)}; }

}  // namespace tesk::proven
