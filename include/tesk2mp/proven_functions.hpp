// Functions of real numbers with proven error bounds in the C++ interface. Part of tesk2mp.hpp. Each is correctly
// rounded at the middle of the interval that its argument stands for, and a bound of its derivative over the interval
// says how far the result may be from there. Where a pole or the end of the domain may be inside, nothing is known: the
// bound is infinite.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>

#include "tesk2mp/proven_arithmetic.hpp"

namespace tesk2mp::proven {
namespace detail {

constexpr int kBoundDigits = 18;

/// An interval that holds the argument; its ends are rounded outward.
struct Ends {
  explicit Ends(const Bounded<Real>& x)
      : low(quarn::subtract(x.value, x.error.value(), quarn::Rounding::floor)),
        high(quarn::add(x.value, x.error.value(), quarn::Rounding::ceiling)) {}

  Real nearest() const { return low > 0 ? low : high < 0 ? -high : Real(); }
  Real farthest() const { return std::max(fabs(low), fabs(high)); }

  Real low;
  Real high;
};

/// Not below |v|, v the result of some operations of 18 digits that are rounded to nearest and cancel nothing.
inline QuarnBound above(const Real& v) {
  const QuarnBound size(v);
  return size.is_zero() ? QuarnBound::power_of_ten(-999'999'999) : size + size.half_unit(kBoundDigits - 2);
}
/// The same, not above v; 0 unless v is positive. What has overflown is larger than any number.
inline QuarnBound below(const Real& v) {
  if (isinf(v)) {
    return v > 0 ? QuarnBound::power_of_ten(999'999'999) : QuarnBound();
  }
  return v > 0 ? QuarnBound(v * (1 - Real(2, -8))) : QuarnBound();
}
/// Not above c - error; 0 where that is not positive.
inline QuarnBound below(const Real& c, const QuarnBound& error) {
  return below(c * (1 - Real(1, -15)) - error.value());
}
/// constant / 10^places
inline QuarnBound decimal(std::uint32_t constant, int places) {
  return QuarnBound::count(constant) * QuarnBound::power_of_ten(-places);
}
inline QuarnBound one() { return QuarnBound::count(1); }
/// Not below 1 / sqrt(1 - m^2).
inline QuarnBound over_circle(const Real& m) { return one() / below(::sqrt((1 - m) * (1 + m))); }

/// f(x), correctly rounded, with spread(ends) >= |f(x') - f(x)| for all x' of the interval, made at 18 digits.
template <class Spread>
Bounded<Real> spread_out(Real (*f)(const Real&), const Bounded<Real>& x, const Spread& spread) {
  Real value = f(x.value);
  if (isnan(value) || !x.error.is_finite()) {
    return {std::move(value), QuarnBound::infinity()};
  }
  if (x.error.is_zero()) {
    // A value of 0 or 1 at 0 or 1 is exact: there is none nearby that two digits would round so.
    const bool is_exact = QuarnDigits() > 1 && (x.value == 0 || x.value == 1) && (value == 0 || fabs(value) == 1);
    return is_exact ? exact(value) : once_rounded(std::move(value), QuarnBound());
  }
  QuarnBound away;
  {
    const Digits scope(kBoundDigits);
    away = spread(Ends(x));
  }
  return once_rounded(std::move(value), away);
}
/// The same by a bound of |f'|.
template <class Slope>
Bounded<Real> sloped(Real (*f)(const Real&), const Bounded<Real>& x, const Slope& slope) {
  return spread_out(f, x, [&](const Ends& at) { return x.error * slope(at); });
}

}  // namespace detail

// Exponentials and logarithms --------------------------------------------------------------------------------------

inline Bounded<Real> exp(const Bounded<Real>& x) {
  return detail::sloped(::exp, x, [](const auto& at) { return detail::above(::exp(at.high)); });
}
inline Bounded<Real> expm1(const Bounded<Real>& x) {
  return detail::sloped(::expm1, x, [](const auto& at) { return detail::above(::exp(at.high)); });
}
inline Bounded<Real> exp2(const Bounded<Real>& x) {
  return detail::sloped(::exp2, x,
                        [](const auto& at) { return detail::decimal(7, 1) * detail::above(::exp2(at.high)); });
}
inline Bounded<Real> exp10(const Bounded<Real>& x) {
  return detail::sloped(::exp10, x,
                        [](const auto& at) { return detail::decimal(2303, 3) * detail::above(::exp10(at.high)); });
}
inline Bounded<Real> log(const Bounded<Real>& x) {
  return detail::sloped(::log, x, [](const auto& at) { return detail::one() / detail::below(at.low); });
}
inline Bounded<Real> log1p(const Bounded<Real>& x) {
  return detail::sloped(::log1p, x, [](const auto& at) { return detail::one() / detail::below(1 + at.low); });
}
inline Bounded<Real> log2(const Bounded<Real>& x) {
  return detail::sloped(::log2, x, [](const auto& at) { return detail::decimal(1443, 3) / detail::below(at.low); });
}
inline Bounded<Real> log10(const Bounded<Real>& x) {
  return detail::sloped(::log10, x, [](const auto& at) { return detail::decimal(4343, 4) / detail::below(at.low); });
}

// Roots ------------------------------------------------------------------------------------------------------------

inline Bounded<Real> sqrt(const Bounded<Real>& x) {
  if (x.error.is_zero()) {
    bool inexact = false;
    Real value = quarn::sqrt(x.value, quarn::Rounding::half_even, &inexact);
    return !inexact && isfinite(value) ? exact(value) : detail::once_rounded(std::move(value), QuarnBound());
  }
  return detail::spread_out(::sqrt, x, [&](const auto& at) {
    if (at.low < 0) {
      return QuarnBound::infinity();
    }
    const QuarnBound slope = detail::decimal(5, 1) / detail::below(::sqrt(at.low));
    return std::min(x.error * slope, sqrt(x.error));
  });
}
inline Bounded<Real> cbrt(const Bounded<Real>& x) {
  return detail::spread_out(::cbrt, x, [&](const auto& at) {
    const Real root = ::cbrt(at.nearest());
    const QuarnBound slope = detail::one() / detail::below(3 * root * root);
    return std::min(x.error * slope, detail::decimal(1588, 3) * detail::above(::cbrt(x.error.value())));
  });
}

// Angles and hyperbolic functions ----------------------------------------------------------------------------------

inline Bounded<Real> sin(const Bounded<Real>& x) {
  return detail::sloped(::sin, x, [](const auto& /*at*/) { return detail::one(); });
}
inline Bounded<Real> cos(const Bounded<Real>& x) {
  return detail::sloped(::cos, x, [](const auto& /*at*/) { return detail::one(); });
}
inline Bounded<Real> tan(const Bounded<Real>& x) {
  return detail::sloped(::tan, x, [&](const auto& /*at*/) {
    const QuarnBound least = detail::below(fabs(::cos(x.value)), x.error);
    return detail::one() / least / least;
  });
}
inline Bounded<Real> sinpi(const Bounded<Real>& x) {
  return detail::sloped(::sinpi, x, [](const auto& /*at*/) { return detail::decimal(31416, 4); });
}
inline Bounded<Real> cospi(const Bounded<Real>& x) {
  return detail::sloped(::cospi, x, [](const auto& /*at*/) { return detail::decimal(31416, 4); });
}
inline Bounded<Real> tanpi(const Bounded<Real>& x) {
  return detail::sloped(::tanpi, x, [&](const auto& /*at*/) {
    const QuarnBound pi = detail::decimal(31416, 4);
    const QuarnBound least = detail::below(fabs(::cospi(x.value)), pi * x.error);
    return pi / least / least;
  });
}

namespace detail {

/// asin and acos: the derivative, or, up to the ends, acos(1 - e) <= pi / 2 sqrt(e) for e <= 1.
inline Bounded<Real> arc(Real (*f)(const Real&), const Bounded<Real>& x, const QuarnBound& scale) {
  return spread_out(f, x, [&](const Ends& at) {
    const Real m = at.farthest();
    return m > 1 ? QuarnBound::infinity()
                 : scale * std::min(x.error * over_circle(m), decimal(15708, 4) * sqrt(x.error));
  });
}

}  // namespace detail

inline Bounded<Real> asin(const Bounded<Real>& x) { return detail::arc(::asin, x, detail::one()); }
inline Bounded<Real> acos(const Bounded<Real>& x) { return detail::arc(::acos, x, detail::one()); }
inline Bounded<Real> asinpi(const Bounded<Real>& x) { return detail::arc(::asinpi, x, detail::decimal(31831, 5)); }
inline Bounded<Real> acospi(const Bounded<Real>& x) { return detail::arc(::acospi, x, detail::decimal(31831, 5)); }
inline Bounded<Real> atan(const Bounded<Real>& x) {
  return detail::sloped(::atan, x, [](const auto& at) {
    const Real m = at.nearest();
    return detail::one() / detail::below(1 + m * m);
  });
}
inline Bounded<Real> atanpi(const Bounded<Real>& x) {
  return detail::sloped(::atanpi, x, [](const auto& at) {
    const Real m = at.nearest();
    return detail::decimal(31831, 5) / detail::below(1 + m * m);
  });
}
inline Bounded<Real> sinh(const Bounded<Real>& x) {
  return detail::sloped(::sinh, x, [](const auto& at) { return detail::above(::cosh(at.farthest())); });
}
inline Bounded<Real> cosh(const Bounded<Real>& x) {
  return detail::sloped(::cosh, x, [](const auto& at) { return detail::above(::sinh(at.farthest())); });
}
inline Bounded<Real> tanh(const Bounded<Real>& x) {
  return detail::sloped(::tanh, x, [](const auto& at) {
    const QuarnBound least = detail::below(::cosh(at.nearest()));
    return detail::one() / least / least;
  });
}
inline Bounded<Real> asinh(const Bounded<Real>& x) {
  return detail::sloped(::asinh, x,
                        [](const auto& at) { return detail::one() / detail::below(::hypot(Real(1), at.nearest())); });
}
inline Bounded<Real> acosh(const Bounded<Real>& x) {
  return detail::spread_out(::acosh, x, [&](const auto& at) {
    if (at.low < 1) {
      return QuarnBound::infinity();
    }
    const QuarnBound slope = detail::one() / detail::below(::sqrt((at.low - 1) * (at.low + 1)));
    return std::min(x.error * slope, sqrt(QuarnBound::count(2) * x.error));
  });
}
inline Bounded<Real> atanh(const Bounded<Real>& x) {
  return detail::sloped(::atanh, x, [](const auto& at) {
    const Real m = at.farthest();
    return detail::one() / detail::below((1 - m) * (1 + m));
  });
}

// Special functions ------------------------------------------------------------------------------------------------

namespace detail {

/// Neither zero nor a negative whole number is in the interval.
inline bool between_poles(const Ends& at) {
  return at.low > 0 || (at.high < 0 && ::floor(at.low) == ::floor(at.high) && ::floor(at.low) != at.low);
}

inline QuarnBound gamma_slope(const Real& x) { return above(::tgamma(x)) * above(::digamma(x)); }
inline QuarnBound error_function_slope(const Ends& at) {
  const Real m = at.nearest();
  return decimal(11284, 4) * above(::exp(-quarn::multiply(m, m, quarn::Rounding::down)));
}

}  // namespace detail

/// |Gamma| is convex between its poles, since its logarithm is.
inline Bounded<Real> tgamma(const Bounded<Real>& x) {
  return detail::sloped(::tgamma, x, [](const auto& at) {
    return detail::between_poles(at) ? std::max(detail::gamma_slope(at.low), detail::gamma_slope(at.high))
                                     : QuarnBound::infinity();
  });
}
/// log |Gamma(x)|
inline Bounded<Real> lgamma(const Bounded<Real>& x) {
  return detail::sloped(::lgamma, x, [](const auto& at) {
    return detail::between_poles(at) ? std::max(detail::above(::digamma(at.low)), detail::above(::digamma(at.high)))
                                     : QuarnBound::infinity();
  });
}
inline Bounded<Real> digamma(const Bounded<Real>& x) {
  return detail::sloped(::digamma, x, [](const auto& at) {
    if (!detail::between_poles(at)) {
      return QuarnBound::infinity();
    }
    if (at.low > 0) {
      const QuarnBound over = detail::one() / detail::below(at.low);
      return over + over * over;
    }
    // The sum of 1 / (x + k)^2 over all whole k is pi^2 / sin(pi x)^2.
    const Real whole = ::floor(at.low);
    const QuarnBound apart = detail::below(std::min(at.low - whole, whole + 1 - at.high));
    return detail::decimal(24675, 4) / apart / apart;
  });
}
inline Bounded<Real> erf(const Bounded<Real>& x) { return detail::sloped(::erf, x, detail::error_function_slope); }
inline Bounded<Real> erfc(const Bounded<Real>& x) { return detail::sloped(::erfc, x, detail::error_function_slope); }

// Parts ------------------------------------------------------------------------------------------------------------

inline Bounded<Real> fabs(const Bounded<Real>& x) { return {x.value < 0 ? -x.value : x.value, x.error}; }
inline Bounded<Real> abs(const Bounded<Real>& x) { return proven::fabs(x); }

namespace detail {

/// A function of steps: exact where the interval is on one of them.
inline Bounded<Real> stepped(Real (*f)(const Real&), const Bounded<Real>& x) {
  constexpr int kMostPlaces = 1'000'000;
  const int places = ilogb(x.value);
  if (!x.error.is_finite() || places > kMostPlaces) {
    return {f(x.value), QuarnBound::infinity()};
  }
  const Digits scope(std::max(QuarnDigits(), std::max(places, 0) + kBoundDigits));
  Real value = f(x.value);
  if (x.error.is_zero()) {
    return exact(value);
  }
  const Ends at(x);
  const QuarnBound away = std::max(QuarnBound(f(at.low) - value), QuarnBound(f(at.high) - value));
  return {std::move(value), away};
}

}  // namespace detail

inline Bounded<Real> floor(const Bounded<Real>& x) { return detail::stepped(::floor, x); }
inline Bounded<Real> ceil(const Bounded<Real>& x) { return detail::stepped(::ceil, x); }
inline Bounded<Real> trunc(const Bounded<Real>& x) { return detail::stepped(::trunc, x); }
inline Bounded<Real> round(const Bounded<Real>& x) { return detail::stepped(::round, x); }
inline Bounded<Real> rint(const Bounded<Real>& x) { return detail::stepped(::rint, x); }
/// The decimal exponent. Nothing is known of it where 0 is within the bounds.
inline Bounded<Real> logb(const Bounded<Real>& x) {
  const detail::Ends at(x);
  const bool has_zero = !(at.low > 0) && !(at.high < 0);
  return has_zero && !x.error.is_zero() ? Bounded<Real>{::logb(x.value), QuarnBound::infinity()}
                                        : detail::stepped(::logb, x);
}

// Functions of two numbers -----------------------------------------------------------------------------------------

namespace detail {

inline Bounded<Real> either(bool first, const Bounded<Real>& x, const Bounded<Real>& y) {
  const bool known = !isnan(x.value) && !isnan(y.value);
  return {first ? x.value : y.value, known ? std::max(x.error, y.error) : QuarnBound::infinity()};
}

}  // namespace detail

inline Bounded<Real> fmin(const Bounded<Real>& x, const Bounded<Real>& y) {
  return detail::either(x.value < y.value, x, y);
}
inline Bounded<Real> fmax(const Bounded<Real>& x, const Bounded<Real>& y) {
  return detail::either(y.value < x.value, x, y);
}
inline Bounded<Real> hypot(const Bounded<Real>& x, const Bounded<Real>& y) {
  return detail::once_rounded(::hypot(x.value, y.value), hypotenuse(x.error, y.error));
}
/// The angle of (x, y), zeros without a sign; not known where the interval may reach the negative x axis.
inline Bounded<Real> atan2(const Bounded<Real>& y, const Bounded<Real>& x) {
  Real angle = ::atan2(y.value == 0 ? Real() : y.value, x.value == 0 ? Real() : x.value);
  const QuarnBound error = hypotenuse(x.error, y.error);
  if (error.is_zero()) {
    const bool is_exact = y.value == 0 && angle == 0;
    return is_exact ? exact(angle) : detail::once_rounded(std::move(angle), QuarnBound());
  }
  const bool across = !(x.error.value() < x.value) && !y.error.is_zero() && !(y.error.value() < fabs(y.value));
  QuarnBound least;
  {
    const Digits scope(detail::kBoundDigits);
    least = across ? QuarnBound() : detail::below(::hypot(x.value, y.value), error);
  }
  return detail::once_rounded(std::move(angle), error / least);
}
/// x - y, or 0 where that is negative.
inline Bounded<Real> fdim(const Bounded<Real>& x, const Bounded<Real>& y) {
  if (x.value <= y.value) {
    // 0 is certain where no number of the one interval is above one of the other.
    const bool known = isfinite(x.value) && isfinite(y.value);
    const Bounded<Real> least = y - x;
    const QuarnBound above =
        detail::least_size(least).is_zero() && !least.error.is_zero() ? x.error + y.error : QuarnBound();
    return {Real(), known ? above : QuarnBound::infinity()};
  }
  return x - y;
}

namespace detail {

/// x - y n by a function that is exact but for one rounding, where the whole number n is certain.
inline Bounded<Real> remaining(Real (*f)(const Real&, const Real&), const Bounded<Real>& x, const Bounded<Real>& y,
                               Bounded<Real> (*whole)(const Bounded<Real>&)) {
  Real rest = f(x.value, y.value);
  if (x.error.is_zero() && y.error.is_zero()) {
    return once_rounded(std::move(rest), QuarnBound());
  }
  const Bounded<Real> times = whole(x / y);
  const QuarnBound error = times.error.is_zero() ? x.error + QuarnBound(times.value) * y.error : QuarnBound::infinity();
  return once_rounded(std::move(rest), error);
}

}  // namespace detail

/// x - y trunc(x / y), where that whole number is certain.
inline Bounded<Real> fmod(const Bounded<Real>& x, const Bounded<Real>& y) {
  return detail::remaining(::fmod, x, y, proven::trunc);
}
/// x - y rint(x / y), where that whole number is certain.
inline Bounded<Real> remainder(const Bounded<Real>& x, const Bounded<Real>& y) {
  return detail::remaining(::remainder, x, y, proven::rint);
}

namespace detail {

/// Of B(x, y), x and y > 0: |B_x| dx + |B_y| dy. |B_x| = B(x, y) (digamma(x + y) - digamma(x)) is the integral of
/// t^(x-1) (1-t)^(y-1) |log t| over (0, 1), largest at both lower ends; digamma' is at most 1 / x + 1 / x^2.
inline QuarnBound beta_spread(const Bounded<Real>& x, const Bounded<Real>& y) {
  const Real low_x = Ends(x).low;
  const Real low_y = Ends(y).low;
  const Real sum = quarn::add(low_x, low_y, quarn::Rounding::ceiling);
  const auto slope = [&](const Real& at, const Real& step) {
    const QuarnBound over = one() / below(at);
    const Real end = ::digamma(sum);
    const Real start = ::digamma(at);
    const QuarnBound lost = (QuarnBound(end) + QuarnBound(start)).half_unit(kBoundDigits - 2);
    return std::min(QuarnBound(step) * (over + over * over), QuarnBound(end - start) + lost);
  };
  return above(::beta(low_x, low_y)) * (slope(low_x, low_y) * x.error + slope(low_y, low_x) * y.error);
}

}  // namespace detail

/// Gamma(x) Gamma(y) / Gamma(x + y).
inline Bounded<Real> beta(const Bounded<Real>& x, const Bounded<Real>& y) {
  constexpr int kSpare = 10;
  if (x.error.is_zero() && y.error.is_zero()) {
    return detail::once_rounded(::beta(x.value, y.value), QuarnBound());
  }
  if (x.error.is_finite() && y.error.is_finite() && x.error.value() < x.value && y.error.value() < y.value) {
    Real value = ::beta(x.value, y.value);
    QuarnBound away;
    {
      const Digits scope(detail::kBoundDigits);
      away = detail::beta_spread(x, y);
    }
    return detail::once_rounded(std::move(value), away);
  }
  Bounded<Real> quotient;
  {
    const Digits scope(QuarnDigits() + kSpare);
    quotient = proven::tgamma(x) * proven::tgamma(y) / proven::tgamma(x + y);
  }
  return detail::once_rounded(quotient.value * Real(1), quotient.error);
}

/// x (x - 1) ... (x - k + 1) / k! for an exact whole k, 0 for k < 0.
inline Bounded<Real> binomial(const Bounded<Real>& x, const Bounded<Real>& k) {
  constexpr int kMostFactors = 100'000;
  Real value = ::binomial(x.value, k.value);
  if (isnan(value) || !k.error.is_zero() || !x.error.is_finite()) {
    return {std::move(value), QuarnBound::infinity()};
  }
  if (k.value <= 0) {
    return exact(value);
  }
  if (x.error.is_zero()) {
    const bool fits = detail::is_whole(x.value) && QuarnBound(value) < QuarnBound::power_of_ten(QuarnDigits());
    return fits ? exact(value) : detail::once_rounded(std::move(value), QuarnBound());
  }
  // Each factor moves by the error: the sum over one of them of the product of the others, as far from 0 as they reach.
  QuarnBound away = k.value <= kMostFactors ? QuarnBound() : QuarnBound::infinity();
  QuarnBound product = detail::one();
  {
    const Digits scope(detail::kBoundDigits);
    for (std::uint32_t j = 0; away.is_finite() && Real(double(j)) < k.value; ++j) {
      const QuarnBound over = detail::one() / QuarnBound::count(j + 1);
      const QuarnBound factor = (detail::above(fabs(x.value - Real(double(j)))) + x.error) * over;
      away = away * factor + product * over * x.error;
      product *= factor;
    }
  }
  return detail::once_rounded(std::move(value), away);
}

namespace detail {

/// x^n for a whole n >= 0 by products, which are exact where they fit.
inline Bounded<Real> power_by_products(Bounded<Real> x, std::uint32_t n) {
  Bounded<Real> result = exact(Real(1));
  for (; n > 0; n /= 2) {
    if (n % 2 != 0) {
      result = result * x;
    }
    if (n > 1) {
      x = x * x;
    }
  }
  return result;
}

inline Bounded<Real> whole_power(const Bounded<Real>& x, const Real& n) {
  constexpr int kMostProducts = 100'000;
  if (n == 0) {
    // 0^0 is not a number.
    return least_size(x).is_zero() ? Bounded<Real>{1, QuarnBound::infinity()} : exact(1);
  }
  if (x.error.is_zero()) {
    if (fabs(n) <= kMostProducts) {
      Bounded<Real> power = power_by_products(x, std::uint32_t(FloatToInt(fabs(n))));
      if (power.error.is_zero()) {
        return n > 0 ? power : exact(Real(1)) / power;
      }
    }
    return once_rounded(::pow(x.value, n), QuarnBound());
  }
  Real value = ::pow(x.value, n);
  if (!x.error.is_finite() || isnan(value)) {
    return {std::move(value), QuarnBound::infinity()};
  }
  QuarnBound away;
  {
    const Digits scope(kBoundDigits);
    const Ends at(x);
    // |n| |x|^(n - 1) at the end where that is largest
    const QuarnBound size(fabs(n));
    const auto power = [&](const Real& base, bool at_least) {
      const auto rounding = (base >= 1) == at_least ? quarn::Rounding::ceiling : quarn::Rounding::floor;
      return ::pow(base, n > 0 ? quarn::subtract(n, 1, rounding) : quarn::subtract(1, n, rounding));
    };
    away = n > 0 ? size * above(power(at.farthest(), true)) : size / below(power(at.nearest(), false));
  }
  return once_rounded(std::move(value), away * x.error);
}

/// |exp(t) - 1| for |t| <= a
inline QuarnBound growth(const QuarnBound& a) { return a * over_one_minus(a); }

}  // namespace detail

/// For x > 0, or a whole y that is exact.
inline Bounded<Real> pow(const Bounded<Real>& x, const Bounded<Real>& y) {
  if (y.error.is_zero() && detail::is_whole(y.value)) {
    return detail::whole_power(x, y.value);
  }
  Bounded<Real> value = detail::once_rounded(::pow(x.value, y.value), QuarnBound());
  if (x.error.is_zero() && y.error.is_zero()) {
    return value;
  }
  QuarnBound away = QuarnBound::infinity();
  if (x.error.is_finite() && y.error.is_finite()) {
    const Digits scope(detail::kBoundDigits);
    const detail::Ends at(x);
    if (at.low > 0) {
      // y' log x' - y log x
      const QuarnBound log = std::max(detail::above(::log(at.low)), detail::above(::log(at.high)));
      away = detail::growth(QuarnBound(y.value) * x.error / detail::below(at.low) + log * y.error);
    }
  }
  return {value.value, value.error + (QuarnBound(value.value) + value.error) * away};
}

}  // namespace tesk2mp::proven
