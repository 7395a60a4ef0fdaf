// Arithmetic with proven error bounds in the C++ interface. Part of tesk2mp.hpp. Each result is
// rounded once, so that exact data cost half a unit of its last place, or nothing where the result fits; bounds of the
// data are carried along.
#pragma once

#include <algorithm>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

#include "quarn/complex.h"
#include "quarn/exact.h"
#include "quarn/functions.h"
#include "quarn/rounding.h"
#include "tesk2mp/proven.hpp"

namespace tesk2mp::proven {
namespace detail {

/// A result that was rounded once to the working digits, of data that make it uncertain by `error`. One that is zero or
/// at the end of the range may have underflowed or overflowed.
inline Bounded<Real> once_rounded(Real value, const QuarnBound& error) {
  constexpr std::int64_t kLeast = -999'999'999;
  const QuarnBound size(value);
  const QuarnBound rounding = size.is_zero() || (size.is_finite() && size.exponent() == kLeast)
                                  ? QuarnBound::power_of_ten(kLeast)
                                  : size.half_unit(QuarnDigits());
  return {std::move(value), error + rounding};
}

/// Also of numbers of more digits than the working ones, to which trunc would round.
inline bool is_whole(const Real& x) {
  constexpr int kMostDigits = 1'000'000;
  if (!isfinite(x) || x == 0) {
    return x == 0;
  }
  const auto places = ilogb(x);
  if (places >= kMostDigits) {
    return true;
  }
  const Digits scope(std::max(QuarnDigits(), int(places) + 1));
  return ::trunc(x) == x;
}

/// Not above |x| - error; 0 where the sign is not known.
inline QuarnBound least_size(const Bounded<Real>& x) {
  if (!x.error.is_finite() || !QuarnBound(x.value).is_finite() || !(x.error.value() < fabs(x.value))) {
    return {};
  }
  const Digits scope(std::max(18, QuarnDigits()));
  const Real least = fabs(x.value) - x.error.value();
  // Rounded to nearest at nine digits, it may grow by five units.
  const Digits few(9);
  return QuarnBound(least * (1 - Real(7, -9)));
}

}  // namespace detail

/// x as an exact number.
inline Bounded<Real> exact(const Real& x) { return {x, QuarnBound()}; }
template <std::same_as<Complex> T>
Bounded<Complex> exact(const T& z) {
  return {z, QuarnBound()};
}

namespace detail {

/// A result of one of the four operations, which says itself whether it was rounded.
template <class Operation>
Bounded<Real> operated(const Operation& operation, const Real& x, const Real& y, const QuarnBound& error) {
  bool inexact = false;
  Real value = operation(x, y, quarn::Rounding::half_even, &inexact);
  if (!inexact && isfinite(value)) {
    return {std::move(value), error};
  }
  return once_rounded(std::move(value), error);
}

}  // namespace detail

inline Bounded<Real> operator-(const Bounded<Real>& x) { return {-x.value, x.error}; }
inline Bounded<Real> operator+(const Bounded<Real>& x, const Bounded<Real>& y) {
  return detail::operated(quarn::add, x.value, y.value, x.error + y.error);
}
inline Bounded<Real> operator-(const Bounded<Real>& x, const Bounded<Real>& y) {
  return detail::operated(quarn::subtract, x.value, y.value, x.error + y.error);
}
inline Bounded<Real> operator*(const Bounded<Real>& x, const Bounded<Real>& y) {
  const QuarnBound error = x.error.is_zero() && y.error.is_zero()
                               ? QuarnBound()
                               : QuarnBound(x.value) * y.error + QuarnBound(y.value) * x.error + x.error * y.error;
  return detail::operated(quarn::multiply, x.value, y.value, error);
}
/// Infinitely uncertain where the divisor may be 0.
inline Bounded<Real> operator/(const Bounded<Real>& x, const Bounded<Real>& y) {
  Bounded<Real> quotient = detail::operated(quarn::divide, x.value, y.value, QuarnBound());
  if (x.error.is_zero() && y.error.is_zero()) {
    return quotient;
  }
  const QuarnBound least = detail::least_size(y);
  if (y.error.is_zero()) {
    quotient.error += x.error / least;
  } else {
    // |x' / y' - x / y| <= (|dx| + |x / y| |dy|) / |y'|
    quotient.error += (x.error + (QuarnBound(quotient.value) + quotient.error) * y.error) / least;
  }
  return quotient;
}

/// Of complex numbers the bound is one of the modulus of the difference.
inline Bounded<Complex> operator-(const Bounded<Complex>& x) { return {-x.value, x.error}; }

namespace detail {

/// Real and imaginary part, whose errors are at most that of the number.
inline Bounded<Complex> joined(const Bounded<Real>& re, const Bounded<Real>& im) {
  return {Complex(re.value, im.value), hypotenuse(re.error, im.error)};
}
/// |z| rounded up, and |z| - error rounded down; 0 where z may be 0.
inline QuarnBound modulus(const Complex& z) { return QuarnBound(z); }
inline QuarnBound least_size(const Bounded<Complex>& z) {
  const Digits scope(std::max(18, QuarnDigits()));
  // The modulus is within a unit of its last place.
  return least_size(Bounded<Real>{quarn::abs(z.value) * (1 - Real(1, -16)), z.error});
}
/// x1 y1 + x2 y2, each of the four exact.
inline Bounded<Real> sum_of_two(const Real& x1, const Real& y1, const Real& x2, const Real& y2) {
  if (x2 == 0 || y2 == 0) {
    return operated(quarn::multiply, x1, y1, QuarnBound());
  }
  const Real left[] = {x1, x2};
  const Real right[] = {y1, y2};
  return once_rounded(QuarnDot(2, left, 1, right, 1), QuarnBound());
}

}  // namespace detail

inline Bounded<Complex> operator+(const Bounded<Complex>& x, const Bounded<Complex>& y) {
  Bounded<Complex> sum = detail::joined(exact(x.value.re) + exact(y.value.re), exact(x.value.im) + exact(y.value.im));
  sum.error += x.error + y.error;
  return sum;
}
inline Bounded<Complex> operator-(const Bounded<Complex>& x, const Bounded<Complex>& y) { return x + -y; }
inline Bounded<Complex> operator*(const Bounded<Complex>& x, const Bounded<Complex>& y) {
  Bounded<Complex> product = detail::joined(detail::sum_of_two(x.value.re, y.value.re, -x.value.im, y.value.im),
                                            detail::sum_of_two(x.value.re, y.value.im, x.value.im, y.value.re));
  product.error += QuarnBound(x.value) * y.error + QuarnBound(y.value) * x.error + x.error * y.error;
  return product;
}

namespace detail {

/// Exponents, of either sign, of numbers whose squares are far from the ends of the range.
inline constexpr std::int64_t kFarthestSquared = 400'000'000;

/// The exponent of a size that is farther, otherwise 0.
inline int far_exponent(const QuarnBound& size) {
  const bool is_far = size.is_finite() && !size.is_zero() &&
                      (size.exponent() > kFarthestSquared || size.exponent() < -kFarthestSquared);
  return is_far ? int(size.exponent()) : 0;
}
inline int far_exponent(const Complex& z) { return far_exponent(std::max(QuarnBound(z.re), QuarnBound(z.im))); }

/// z 10^power; what leaves the range is in the bound.
inline Bounded<Complex> scaled_by_ten(const Bounded<Complex>& z, int power) {
  constexpr int kMostDigits = 1'000'000;
  constexpr std::int64_t kLeast = -999'999'999;
  const Digits scope(kMostDigits);
  Bounded<Complex> result{{scalbn(z.value.re, power), scalbn(z.value.im, power)},
                          z.error * QuarnBound::power_of_ten(power)};
  const auto take = [&](const Real& part, const Real& given) {
    result.error += !isfinite(part)           ? QuarnBound::infinity()
                    : part == 0 && given != 0 ? QuarnBound::power_of_ten(kLeast)
                                              : QuarnBound();
  };
  take(result.value.re, z.value.re);
  take(result.value.im, z.value.im);
  return result;
}

}  // namespace detail

/// Infinitely uncertain where the divisor may be 0.
inline Bounded<Complex> operator/(const Bounded<Complex>& x, const Bounded<Complex>& y) {
  const int of_x = detail::far_exponent(x.value);
  const int of_y = detail::far_exponent(y.value);
  if (of_x != 0 || of_y != 0) {
    return detail::scaled_by_ten(detail::scaled_by_ten(x, -of_x) / detail::scaled_by_ten(y, -of_y), of_x - of_y);
  }
  const Complex& a = x.value;
  const Complex& b = y.value;
  const Bounded<Real> square = detail::sum_of_two(b.re, b.re, b.im, b.im);
  Bounded<Complex> quotient = detail::joined(detail::sum_of_two(a.re, b.re, a.im, b.im) / square,
                                             detail::sum_of_two(a.im, b.re, -a.re, b.im) / square);
  quotient.error += (x.error + (QuarnBound(quotient.value) + quotient.error) * y.error) / detail::least_size(y);
  return quotient;
}

inline Bounded<Real> real(const Bounded<Complex>& z) { return {z.value.re, z.error}; }
inline Bounded<Real> imag(const Bounded<Complex>& z) { return {z.value.im, z.error}; }
inline Bounded<Complex> conj(const Bounded<Complex>& z) { return {quarn::conj(z.value), z.error}; }

}  // namespace tesk2mp::proven
