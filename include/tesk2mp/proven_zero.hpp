// Zeros of functions that can be called with bounded numbers, in the C++ interface. Part of tesk2mp.hpp.
#pragma once

#include <algorithm>
#include <cstdint>
#include <optional>
#include <utility>

#include "tesk2mp/proven_functions.hpp"

namespace tesk2mp::proven {
namespace detail {

/// -1, 0 or 1; no value where the bound leaves it open.
inline std::optional<int> sign_of(const Bounded<Real>& y) {
  if (isnan(y.value) || !y.error.is_finite()) {
    return std::nullopt;
  }
  const int sign = y.value < 0 ? -1 : y.value > 0 ? 1 : 0;
  if (y.error.is_zero() || (sign != 0 && y.error.value() < fabs(y.value))) {
    return sign;
  }
  return std::nullopt;
}

/// An interval at whose ends the signs are known and differ.
struct Bracket {
  Real low;
  Real high;
  int sign_low = 0;

  Real width() const { return high - low; }
  void take(const Real& x, int sign) { (sign == sign_low ? low : high) = x; }
  bool holds(const Real& x) const { return low < x && x < high; }
};

}  // namespace detail

/// A zero of f between low and high, where f is a function of a Bounded<Real> and has values of different signs: the
/// bound is proven by a change of sign, f being continuous where its bounds over the interval are finite (which steps,
/// floor() and the like, are not). Infinite where the working digits do not tell the signs. Throws InvalidArgument when
/// low < high does not hold, and when the signs are proven to be the same.
///
/// @code
/// using namespace tesk2mp;
/// const auto half_pi = proven::to_digits(40, [] {
///   return proven::zero([](const auto& x) { return proven::cos(x); }, Real(1), Real(2));
/// });
/// @endcode
template <class Function>
Bounded<Real> zero(const Function& f, const Real& low, const Real& high) {
  constexpr int kMostSteps = 100'000;
  tesk2mp::detail::require(isfinite(low) && isfinite(high) && low < high, "PROVEN::ZERO", 1,
                           "the ends of the interval are not in order");
  const auto sign_at = [&](const Real& x) { return detail::sign_of(f(exact(x))); };
  const std::optional<int> at_low = sign_at(low);
  const std::optional<int> at_high = sign_at(high);
  if (at_low == 0 || at_high == 0) {
    return exact(at_low == 0 ? low : high);
  }
  if (!at_low || !at_high) {
    return {low, QuarnBound::infinity()};
  }
  tesk2mp::detail::require(*at_low != *at_high, "PROVEN::ZERO", 2, "f has the same sign at both ends");
  detail::Bracket bracket{low, high, *at_low};
  // Illinois' rule, and halves where that is slow; a point whose sign is open is near the zero.
  Real value_low = f(exact(low)).value;
  Real value_high = f(exact(high)).value;
  Real x = low;
  for (int step = 0, last = 0; step < kMostSteps; ++step) {
    const Real width = bracket.width();
    x = step % 4 == 3 ? bracket.low + width / 2 : bracket.high - value_high * (width / (value_high - value_low));
    if (!bracket.holds(x)) {
      x = bracket.low + width / 2;
      if (!bracket.holds(x)) {
        break;
      }
    }
    const Bounded<Real> y = f(exact(x));
    const std::optional<int> sign = detail::sign_of(y);
    if (!sign) {
      break;
    }
    if (*sign == 0) {
      return exact(x);
    }
    bracket.take(x, *sign);
    (*sign == bracket.sign_low ? value_low : value_high) = y.value;
    if (last == *sign) {
      Real& kept = *sign == bracket.sign_low ? value_high : value_low;
      kept = kept / 2;
    }
    last = *sign;
  }
  // From there outward until both signs are known.
  const Real reach = (QuarnBound(x).half_unit(QuarnDigits()) + QuarnBound::power_of_ten(-999'999'999)).value() * 2;
  for (const int side : {-1, 1}) {
    for (Real distance = reach; bracket.holds(x + side * distance); distance = distance * 10) {
      const Real end = x + side * distance;
      const std::optional<int> sign = sign_at(end);
      if (sign == 0) {
        return exact(end);
      }
      if (sign && *sign == -side * bracket.sign_low) {
        bracket.take(end, *sign);
        break;
      }
    }
  }
  const Real middle = bracket.low + bracket.width() / 2;
  const auto reach_of = [](const Bounded<Real>& distance) { return QuarnBound(distance.value) + distance.error; };
  const QuarnBound error =
      std::max(reach_of(exact(middle) - exact(bracket.low)), reach_of(exact(bracket.high) - exact(middle)));
  const bool is_continuous = f(Bounded<Real>{middle, error}).error.is_finite();
  return {middle, is_continuous ? error : QuarnBound::infinity()};
}

}  // namespace tesk2mp::proven
