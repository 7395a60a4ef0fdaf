// Arithmetic, functions, sums and products with proven error bounds in the C++ interface. Part of
// tesk2mp.hpp. Each result is rounded once, so that exact data cost half a unit of its last place; bounds of the data
// are carried along.
#pragma once

#include <algorithm>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

#include "quarn/exact.h"
#include "quarn/functions.h"
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

/// Not above |x| - error; 0 where the sign is not known.
inline QuarnBound least_size(const Bounded<Real>& x) {
  if (!x.error.is_finite() || !QuarnBound(x.value).is_finite() || !(x.error.value() < fabs(x.value))) {
    return {};
  }
  // Of 18 digits rounded to nearest seven units of the ninth are left out.
  const Digits scope(std::max(18, QuarnDigits()));
  const Real least = (fabs(x.value) - x.error.value()) * (1 - Real(1, -8));
  const Digits few(9);
  return QuarnBound(least * (1 - Real(7, -9)));
}

template <class T>
QuarnMatrix<const T> operand(const MatrixView<const T>& a) {
  const tesk2mp::detail::RawMatrix<T> raw{a};
  return {raw.data, 1, raw.leading};
}

}  // namespace detail

/// x as an exact number.
inline Bounded<Real> exact(const Real& x) { return {x, QuarnBound()}; }

inline Bounded<Real> operator-(const Bounded<Real>& x) { return {-x.value, x.error}; }
inline Bounded<Real> operator+(const Bounded<Real>& x, const Bounded<Real>& y) {
  return detail::once_rounded(x.value + y.value, x.error + y.error);
}
inline Bounded<Real> operator-(const Bounded<Real>& x, const Bounded<Real>& y) {
  return detail::once_rounded(x.value - y.value, x.error + y.error);
}
inline Bounded<Real> operator*(const Bounded<Real>& x, const Bounded<Real>& y) {
  return detail::once_rounded(x.value * y.value,
                              QuarnBound(x.value) * y.error + QuarnBound(y.value) * x.error + x.error * y.error);
}
/// Infinitely uncertain where the divisor may be 0.
inline Bounded<Real> operator/(const Bounded<Real>& x, const Bounded<Real>& y) {
  const QuarnBound least = detail::least_size(y);
  Bounded<Real> quotient = detail::once_rounded(x.value / y.value, QuarnBound());
  if (y.error.is_zero()) {
    quotient.error += x.error / least;
  } else {
    // |x' / y' - x / y| <= (|dx| + |x / y| |dy|) / |y'|
    quotient.error += (x.error + (QuarnBound(quotient.value) + quotient.error) * y.error) / least;
  }
  return quotient;
}

/// f(x) for a function that is correctly rounded, and monotone on the interval that x stands for: between the values at
/// its ends.
template <class Function>
Bounded<Real> monotone(const Function& f, const Bounded<Real>& x) {
  const Real value = f(x.value);
  if (x.error.is_zero()) {
    return detail::once_rounded(value, QuarnBound());
  }
  if (!x.error.is_finite()) {
    return {value, QuarnBound::infinity()};
  }
  QuarnBound spread;
  for (const int sign : {-1, 1}) {
    // The end, a little farther away where it is rounded.
    Real end;
    {
      const Digits scope(std::max(18, QuarnDigits()));
      end = x.value + sign * x.error.value();
      end += sign * QuarnBound(end).half_unit(QuarnDigits()).value() * 2;
    }
    const Bounded<Real> there = detail::once_rounded(f(end), QuarnBound());
    const Bounded<Real> difference = detail::once_rounded(there.value - value, there.error);
    spread = std::max(spread, QuarnBound(difference.value) + difference.error);
  }
  return detail::once_rounded(value, spread);
}
/// f(x) for a correctly rounded function whose derivative is at most 1 in size.
template <class Function>
Bounded<Real> gentle(const Function& f, const Bounded<Real>& x) {
  return detail::once_rounded(f(x.value), x.error);
}

inline Bounded<Real> sqrt(const Bounded<Real>& x) {
  return monotone([](const Real& y) { return sqrt(y); }, x);
}
inline Bounded<Real> exp(const Bounded<Real>& x) {
  return monotone([](const Real& y) { return exp(y); }, x);
}
inline Bounded<Real> log(const Bounded<Real>& x) {
  return monotone([](const Real& y) { return log(y); }, x);
}
inline Bounded<Real> atan(const Bounded<Real>& x) {
  return gentle([](const Real& y) { return atan(y); }, x);
}
inline Bounded<Real> sin(const Bounded<Real>& x) {
  return gentle([](const Real& y) { return sin(y); }, x);
}
inline Bounded<Real> cos(const Bounded<Real>& x) {
  return gentle([](const Real& y) { return cos(y); }, x);
}

/// A B of exact data, each element rounded once.
///
/// @code
/// const auto c = tesk2mp::proven::multiply(a, b);
/// @endcode
template <MatrixSource A, MatrixSource B>
requires std::same_as<Element<A>, Element<B>> BoundedMatrix<Element<A>> multiply(const A& a, const B& b) {
  using T = Element<A>;
  const MatrixView<const T> left(a);
  const MatrixView<const T> right(b);
  tesk2mp::detail::require(left.columns() == right.rows(), "PROVEN::MULTIPLY", 2, "a matrix of ", right.rows(),
                           " rows for ", left.columns(), " columns");
  Matrix<T> product(left.rows(), right.columns());
  Matrix<Real> errors(left.rows(), right.columns());
  if (product.rows() > 0 && product.columns() > 0) {
    const tesk2mp::detail::RawMatrix<T> raw{product.view()};
    if constexpr (tesk2mp::detail::kIsComplex<T>) {
      QuarnMatrixProduct(left.rows(), right.columns(), left.columns(), T(1), detail::operand(left),
                         detail::operand(right), T(0), {raw.data, 1, raw.leading}, 0);
    } else {
      QuarnMatrixProduct(left.rows(), right.columns(), left.columns(), T(1), detail::operand(left),
                         detail::operand(right), T(0), {raw.data, 1, raw.leading});
    }
  }
  for (std::size_t j = 0; j < product.columns(); ++j) {
    for (std::size_t i = 0; i < product.rows(); ++i) {
      const Complex z(product(i, j));
      const QuarnBound re = detail::once_rounded(z.re, QuarnBound()).error;
      errors(i, j) =
          (tesk2mp::detail::kIsComplex<T> ? hypotenuse(re, detail::once_rounded(z.im, QuarnBound()).error) : re)
              .value();
    }
  }
  return {std::move(product), std::move(errors)};
}

/// The sum of x(i) y(i), rounded once.
template <VectorSource X, VectorSource Y>
requires std::same_as<Element<X>, Element<Y>> Bounded<Element<X>> dot(const X& x, const Y& y) {
  using T = Element<X>;
  const std::vector<T> left = VectorView<const T>(x).to_vector();
  const std::vector<T> right = VectorView<const T>(y).to_vector();
  const std::size_t n = left.size();
  tesk2mp::detail::require(right.size() == n, "PROVEN::DOT", 2, right.size(), " elements beside ", n);
  return proven::multiply(MatrixView<const T>(left.data(), 1, n, 1),
                          MatrixView<const T>(right.data(), n, 1, std::max<std::size_t>(1, n)))(0, 0);
}
template <VectorSource X>
Bounded<Element<X>> sum(const X& x) {
  using T = Element<X>;
  return proven::dot(x, std::vector<T>(VectorView<const T>(x).size(), T(1)));
}
/// The Euclidean norm of a real vector.
template <VectorSource X>
requires std::same_as<Element<X>, Real> Bounded<Real> norm(const X& x) {
  const std::vector<Real> elements = VectorView<const Real>(x).to_vector();
  const Bounded<Real> square = proven::dot(elements, elements);
  if (square.value <= square.error.value()) {
    // Between 0 and the upper end; the lower one may be negative.
    return {Real(), sqrt(QuarnBound(square.value) + square.error)};
  }
  return proven::sqrt(square);
}

}  // namespace tesk2mp::proven
