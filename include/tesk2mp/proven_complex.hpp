// Functions of complex numbers with proven error bounds in the C++ interface. Part of tesk2mp.hpp. An argument stands
// for a disc; where the function is analytic in it, a bound of its derivative there says how far the result may be from
// the one at the centre. Where a pole or a branch cut may be inside, nothing is known: the bound is infinite.
#pragma once

#include <algorithm>
#include <cstdint>

#include "quarn/complex.h"
#include "tesk2mp/proven_functions.hpp"

namespace tesk2mp::proven {
namespace detail {

/// The disc of an argument, with numbers of 18 digits.
struct Disc {
  explicit Disc(const Bounded<Complex>& z)
      : radius(z.error), re({z.value.re, z.error}), im({z.value.im, z.error}), centre(z.value) {}

  /// Not above |z - point| in the disc.
  QuarnBound least_distance(const Complex& point) const {
    const Complex away(centre.re - point.re, centre.im - point.im);
    // Each part is off by half a unit at most.
    return below(quarn::abs(away), radius);
  }
  QuarnBound largest() const { return above(quarn::abs(centre)) + radius; }
  /// Does the disc meet the real axis between points where is_cut(low, high) of the real parts is true?
  bool meets_real_axis() const { return !(im.low > 0 || im.high < 0); }
  bool meets_imaginary_axis() const { return !(re.low > 0 || re.high < 0); }

  QuarnBound radius;
  Ends re;
  Ends im;
  Complex centre;
};

/// Zeros are positive: on a cut the results are those of the side that they belong to.
inline Complex without_signs(const Complex& z) { return {z.re == 0 ? Real() : z.re, z.im == 0 ? Real() : z.im}; }

/// f(z), whose parts are off by a unit of the larger one at most, with slope(disc) >= |f'| in the disc.
template <class Slope>
Bounded<Complex> sloped(Complex (*f)(const Complex&), const Bounded<Complex>& z, const Slope& slope) {
  Complex value = f(without_signs(z.value));
  const QuarnBound size = std::max(QuarnBound(value.re), QuarnBound(value.im));
  if (isnan(value.re) || isnan(value.im) || !size.is_finite() || !z.error.is_finite()) {
    return {std::move(value), QuarnBound::infinity()};
  }
  // A unit each: sqrt(2) twice a half one.
  QuarnBound error = decimal(2829, 3) * size.half_unit(QuarnDigits()) + QuarnBound::power_of_ten(-999'999'999);
  if (!z.error.is_zero()) {
    const Digits scope(kBoundDigits);
    error += z.error * slope(Disc(z));
  }
  return {std::move(value), error};
}

inline QuarnBound unless(bool is_cut, const QuarnBound& slope) { return is_cut ? QuarnBound::infinity() : slope; }
inline bool meets_negative_axis(const Disc& at) { return at.meets_real_axis() && !(at.re.low > 0); }
/// The real axis from 1 and from -1 outward.
inline bool meets_outer_axis(const Disc& at) { return at.meets_real_axis() && !(at.re.low > -1 && at.re.high < 1); }
inline bool meets_outer_imaginary_axis(const Disc& at) {
  return at.meets_imaginary_axis() && !(at.im.low > -1 && at.im.high < 1);
}
/// cosh of the largest |re| or |im|: a bound of the sines and cosines.
inline QuarnBound grown(const Ends& part) { return above(::cosh(part.farthest())); }
/// Not below 1 / (|z - a| |z - b|).
inline QuarnBound over_distances(const Disc& at, const Complex& a, const Complex& b) {
  return one() / at.least_distance(a) / at.least_distance(b);
}

}  // namespace detail

inline Bounded<Complex> exp(const Bounded<Complex>& z) {
  return detail::sloped(quarn::exp, z, [](const auto& at) { return detail::above(::exp(at.re.high)); });
}
inline Bounded<Complex> log(const Bounded<Complex>& z) {
  return detail::sloped(quarn::log, z, [](const auto& at) {
    return detail::unless(detail::meets_negative_axis(at), detail::one() / at.least_distance(Complex()));
  });
}
inline Bounded<Complex> log10(const Bounded<Complex>& z) {
  return detail::sloped(quarn::log10, z, [](const auto& at) {
    return detail::unless(detail::meets_negative_axis(at), detail::decimal(4343, 4) / at.least_distance(Complex()));
  });
}
inline Bounded<Complex> sqrt(const Bounded<Complex>& z) {
  return detail::sloped(quarn::sqrt, z, [](const auto& at) {
    const QuarnBound least = at.least_distance(Complex());
    // 1 / (2 sqrt(|z|)), as the root of a quotient
    return detail::unless(detail::meets_negative_axis(at), sqrt(detail::decimal(25, 2) / least));
  });
}

inline Bounded<Complex> sin(const Bounded<Complex>& z) {
  return detail::sloped(quarn::sin, z, [](const auto& at) { return detail::grown(at.im); });
}
inline Bounded<Complex> cos(const Bounded<Complex>& z) {
  return detail::sloped(quarn::cos, z, [](const auto& at) { return detail::grown(at.im); });
}
inline Bounded<Complex> sinh(const Bounded<Complex>& z) {
  return detail::sloped(quarn::sinh, z, [](const auto& at) { return detail::grown(at.re); });
}
inline Bounded<Complex> cosh(const Bounded<Complex>& z) {
  return detail::sloped(quarn::cosh, z, [](const auto& at) { return detail::grown(at.re); });
}
inline Bounded<Complex> tan(const Bounded<Complex>& z) {
  return detail::sloped(quarn::tan, z, [](const auto& at) {
    const QuarnBound least = detail::below(quarn::abs(quarn::cos(at.centre)), at.radius * detail::grown(at.im));
    return detail::one() / least / least;
  });
}
inline Bounded<Complex> tanh(const Bounded<Complex>& z) {
  return detail::sloped(quarn::tanh, z, [](const auto& at) {
    const QuarnBound least = detail::below(quarn::abs(quarn::cosh(at.centre)), at.radius * detail::grown(at.re));
    return detail::one() / least / least;
  });
}

inline Bounded<Complex> asin(const Bounded<Complex>& z) {
  return detail::sloped(quarn::asin, z, [](const auto& at) {
    return detail::unless(detail::meets_outer_axis(at), sqrt(detail::over_distances(at, 1, -1)));
  });
}
inline Bounded<Complex> acos(const Bounded<Complex>& z) {
  return detail::sloped(quarn::acos, z, [](const auto& at) {
    return detail::unless(detail::meets_outer_axis(at), sqrt(detail::over_distances(at, 1, -1)));
  });
}
inline Bounded<Complex> atan(const Bounded<Complex>& z) {
  return detail::sloped(quarn::atan, z, [](const auto& at) {
    return detail::unless(detail::meets_outer_imaginary_axis(at),
                          detail::over_distances(at, Complex(0, 1), Complex(0, -1)));
  });
}
inline Bounded<Complex> asinh(const Bounded<Complex>& z) {
  return detail::sloped(quarn::asinh, z, [](const auto& at) {
    return detail::unless(detail::meets_outer_imaginary_axis(at),
                          sqrt(detail::over_distances(at, Complex(0, 1), Complex(0, -1))));
  });
}
inline Bounded<Complex> acosh(const Bounded<Complex>& z) {
  return detail::sloped(quarn::acosh, z, [](const auto& at) {
    const bool is_cut = at.meets_real_axis() && !(at.re.low > 1);
    return detail::unless(is_cut, sqrt(detail::over_distances(at, 1, -1)));
  });
}
inline Bounded<Complex> atanh(const Bounded<Complex>& z) {
  return detail::sloped(quarn::atanh, z, [](const auto& at) {
    return detail::unless(detail::meets_outer_axis(at), detail::over_distances(at, 1, -1));
  });
}

namespace detail {

/// Bounds in the disc by steps to the right: z + n has a real part of at least 1.
struct Steps {
  explicit Steps(const Disc& at) {
    constexpr int kMost = 10'000;
    if (!(at.re.low > -kMost)) {
      return;
    }
    known = true;
    for (Real low = at.re.low; low < 1; low = low + 1, ++count) {
      const QuarnBound over = one() / at.least_distance(Complex(Real(-count)));
      product *= over;
      sum += over;
      squares += over * over;
    }
  }
  bool known = false;
  int count = 0;
  QuarnBound product = one();  // of 1 / |z + k|
  QuarnBound sum;
  QuarnBound squares;
};

/// |log Gamma'|: at w = z + n, Re w >= 1, within 1 / Re w of log w; |log w| <= log |w| + pi / 2.
inline QuarnBound digamma_size(const Disc& at) {
  const Steps steps(at);
  if (!steps.known) {
    return QuarnBound::infinity();
  }
  const QuarnBound far = at.largest() + QuarnBound::count(std::uint32_t(steps.count));
  return above(::log(1 + far.value())) + QuarnBound::count(3) + steps.sum;
}
/// |Gamma| by that of the real part: Gamma is convex there.
inline QuarnBound gamma_size(const Disc& at) {
  const Steps steps(at);
  if (!steps.known) {
    return QuarnBound::infinity();
  }
  // A unit farther at either end, which the sums may be off by.
  const Real low = std::max(Real(1), (at.re.low + steps.count) * (1 - Real(1, -15)));
  const Real high = (at.re.high + steps.count) * (1 + Real(1, -15));
  return std::max({one(), above(::tgamma(low)), above(::tgamma(high))}) * steps.product;
}

}  // namespace detail

inline Bounded<Complex> tgamma(const Bounded<Complex>& z) {
  return detail::sloped(quarn::tgamma, z,
                        [](const auto& at) { return detail::gamma_size(at) * detail::digamma_size(at); });
}
inline Bounded<Complex> lgamma(const Bounded<Complex>& z) {
  return detail::sloped(quarn::lgamma, z, [](const auto& at) {
    return detail::unless(detail::meets_negative_axis(at), detail::digamma_size(at));
  });
}
inline Bounded<Complex> digamma(const Bounded<Complex>& z) {
  return detail::sloped(quarn::digamma, z, [](const auto& at) {
    const detail::Steps steps(at);
    // Of the sum of 1 / (w + k)^2 beyond the steps: 1 / Re(w)^2 + 1 / Re(w) at Re w >= 1.
    return steps.known ? steps.squares + QuarnBound::count(2) : QuarnBound::infinity();
  });
}

namespace detail {

/// 2 / sqrt(pi) |exp(-z^2)|
inline QuarnBound complex_error_function_slope(const Disc& at) {
  const Real x = at.re.nearest();
  const Real y = at.im.farthest();
  const Real power = quarn::subtract(quarn::multiply(y, y, quarn::Rounding::up),
                                     quarn::multiply(x, x, quarn::Rounding::down), quarn::Rounding::ceiling);
  return decimal(11284, 4) * above(::exp(power));
}

}  // namespace detail

inline Bounded<Complex> erf(const Bounded<Complex>& z) {
  return detail::sloped(quarn::erf, z, detail::complex_error_function_slope);
}
inline Bounded<Complex> erfc(const Bounded<Complex>& z) {
  return detail::sloped(quarn::erfc, z, detail::complex_error_function_slope);
}

/// The principal power; for an exact whole w >= 1 without a cut.
inline Bounded<Complex> pow(const Bounded<Complex>& z, const Bounded<Complex>& w) {
  Complex value = quarn::pow(detail::without_signs(z.value), detail::without_signs(w.value));
  const QuarnBound size(value);
  const QuarnBound rounding = size.is_finite() ? detail::decimal(2829, 3) * size.half_unit(QuarnDigits()) +
                                                     QuarnBound::power_of_ten(-999'999'999)
                                               : QuarnBound::infinity();
  if (z.error.is_zero() && w.error.is_zero()) {
    return {std::move(value), rounding};
  }
  const bool is_whole = w.error.is_zero() && w.value.im == 0 && w.value.re >= 1 && detail::is_whole(w.value.re);
  QuarnBound away;
  if (!z.error.is_finite() || !w.error.is_finite()) {
    away = QuarnBound::infinity();
  } else if (is_whole) {
    const Digits scope(detail::kBoundDigits);
    const QuarnBound base = detail::Disc(z).largest();
    away = QuarnBound(w.value.re) * detail::above(::pow(base.value(), w.value.re - 1)) * z.error;
  } else {
    const Bounded<Complex> log = proven::log(z);
    const QuarnBound moved = QuarnBound(w.value) * log.error + (QuarnBound(log.value) + log.error) * w.error;
    away = (size + rounding) * detail::growth(moved);
  }
  return {std::move(value), rounding + away};
}

/// |z|
inline Bounded<Real> abs(const Bounded<Complex>& z) {
  if (z.value.re == 0 || z.value.im == 0) {
    return {fabs(z.value.im == 0 ? z.value.re : z.value.im), z.error};
  }
  Real value = quarn::abs(z.value);
  const QuarnBound size(value);
  return detail::once_rounded(std::move(value), z.error + size.half_unit(QuarnDigits()));
}
/// The angle; not known where the disc may reach the negative real axis.
inline Bounded<Real> arg(const Bounded<Complex>& z) {
  return proven::atan2(Bounded<Real>{z.value.im, z.error}, Bounded<Real>{z.value.re, z.error});
}

}  // namespace tesk2mp::proven
