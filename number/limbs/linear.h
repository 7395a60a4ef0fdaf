// Limb algorithms of linear cost: comparison, addition, shifts by digits, products and quotients by one limb.
//
// Arrays have the leading limb first. Unless a function says otherwise, an output may be one of its inputs, but not
// overlap one in part.
#pragma once

#include <algorithm>

#include "number/limbs/divider.h"

namespace quarn {

template <class R>
bool all_zero(const typename R::Limb* a, std::size_t n) {
  return std::all_of(a, a + n, [](auto limb) { return limb == 0; });
}

/// The sign of a - b, both of n limbs.
template <class R>
int compare(const typename R::Limb* a, const typename R::Limb* b, std::size_t n) {
  for (std::size_t i = 0; i < n; ++i) {
    if (a[i] != b[i]) {
      return a[i] < b[i] ? -1 : 1;
    }
  }
  return 0;
}

/// The sign of 0.a - 0.b, where the limbs are fractions of any length.
template <class R>
int compare_fractions(const typename R::Limb* a, std::size_t na, const typename R::Limb* b, std::size_t nb) {
  const std::size_t common = std::min(na, nb);
  const int order = compare<R>(a, b, common);
  if (order != 0) {
    return order;
  }
  return int(!all_zero<R>(a + common, na - common)) - int(!all_zero<R>(b + common, nb - common));
}

/// out[0 .. n) = a + b + carry; returns the carry out.
template <class R>
typename R::Limb add(typename R::Limb* out, const typename R::Limb* a, const typename R::Limb* b, std::size_t n,
                     typename R::Limb carry = 0) {
  for (std::size_t i = n; i-- > 0;) {
    const typename R::Limb sum = a[i] + b[i] + carry;
    carry = sum >= R::base;
    out[i] = carry ? sum - R::base : sum;
  }
  return carry;
}

/// out[0 .. n) = a - b - borrow; returns the borrow out.
template <class R>
typename R::Limb subtract(typename R::Limb* out, const typename R::Limb* a, const typename R::Limb* b, std::size_t n,
                          typename R::Limb borrow = 0) {
  for (std::size_t i = n; i-- > 0;) {
    const typename R::Limb taken = b[i] + borrow;
    borrow = a[i] < taken;
    out[i] = borrow ? a[i] + R::base - taken : a[i] - taken;
  }
  return borrow;
}

/// a[0 .. n) += value, value <= base; returns the carry out.
template <class R>
typename R::Limb add_limb(typename R::Limb* a, std::size_t n, typename R::Limb value) {
  for (std::size_t i = n; i-- > 0 && value != 0;) {
    const typename R::Limb sum = a[i] + value;
    value = sum >= R::base;
    a[i] = value ? sum - R::base : sum;
  }
  return value;
}

/// a[0 .. n) -= value, value <= base; returns the borrow out.
template <class R>
typename R::Limb subtract_limb(typename R::Limb* a, std::size_t n, typename R::Limb value) {
  for (std::size_t i = n; i-- > 0 && value != 0;) {
    const bool borrow = a[i] < value;
    a[i] = borrow ? a[i] + R::base - value : a[i] - value;
    value = borrow;
  }
  return value;
}

/// out[0 .. n) = a * factor + addend; returns the limb that overflows. factor <= base and addend < base.
template <class R>
typename R::Limb multiply_limb(typename R::Limb* out, const typename R::Limb* a, std::size_t n, typename R::Limb factor,
                               typename R::Limb addend = 0) {
  for (std::size_t i = n; i-- > 0;) {
    const Parted<R> product = part<R>(typename R::Wide(a[i]) * factor + addend);
    addend = typename R::Limb(product.quotient);
    out[i] = product.remainder;
  }
  return addend;
}

/// out[0 .. n) = (remainder, a) / divisor; returns the remainder. remainder < divisor.
template <class R>
typename R::Limb divide_limb(typename R::Limb* out, const typename R::Limb* a, std::size_t n, typename R::Limb divisor,
                             typename R::Limb remainder = 0) {
  const LimbDivider<R> by(divisor);
  for (std::size_t i = 0; i < n; ++i) {
    const typename R::Wide dividend = typename R::Wide(remainder) * R::base + a[i];
    out[i] = typename R::Limb(by.quotient(dividend));
    remainder = typename R::Limb(dividend - typename R::Wide(out[i]) * divisor);
  }
  return remainder;
}

/// out[0 .. n] = a moved right by `places` digits, 0 <= places <= R::digits: one limb more than a.
template <class R>
void shift_right(typename R::Limb* out, const typename R::Limb* a, std::size_t n, int places) {
  const PowerOfTen<R> low = kPowersOfTen<R>[std::size_t(places)];
  const typename R::Limb high = R::powers[std::size_t(R::digits - places)];
  typename R::Limb below = 0;
  for (std::size_t i = n; i-- > 0;) {
    const typename R::Limb quotient = low.quotient(a[i]);
    const typename R::Limb rest = a[i] - quotient * low.value;
    out[i + 1] = rest * high + below;
    below = quotient;
  }
  out[0] = below;
}

/// out[0 .. n) = a moved left by `places` digits, 0 <= places < R::digits; returns the digits that fall out.
template <class R>
typename R::Limb shift_left(typename R::Limb* out, const typename R::Limb* a, std::size_t n, int places) {
  const typename R::Limb high = R::powers[std::size_t(places)];
  const PowerOfTen<R> low = kPowersOfTen<R>[std::size_t(R::digits - places)];
  typename R::Limb fallen = 0;
  for (std::size_t i = n; i-- > 0;) {
    const typename R::Limb quotient = low.quotient(a[i]);
    out[i] = (a[i] - quotient * low.value) * high + fallen;
    fallen = quotient;
  }
  return fallen;
}

/// Where a rounded coefficient ends, and whether it became base^n (then the limbs are all zero).
struct Rounded {
  std::size_t length;
  bool carry;
};

/// Rounds the left-aligned a[0 .. n) to `digits` digits, half to even, in place; `sticky` says that something not zero
/// follows the last limb, and then n limbs must hold more than `digits` digits. The length is without trailing zeros.
template <class R>
Rounded round_half_even(typename R::Limb* a, std::size_t n, std::size_t digits, bool sticky) {
  using Limb = typename R::Limb;
  bool carry = false;
  if (digits < n * R::digits) {
    const std::size_t last = digits / R::digits;  // the limb that is cut; all before it stay
    const PowerOfTen<R>& power = kPowersOfTen<R>[R::digits - digits % R::digits];
    const Limb unit = power.value;
    // A cut between two limbs leaves nothing of this one: its unit is the whole base.
    const Limb kept = power.quotient(a[last]);
    const Limb rest = a[last] - kept * unit;
    const Limb half = unit / 2;
    const bool odd = ((unit != R::base ? kept : last > 0 ? a[last - 1] : 0) & 1) != 0;
    bool up = rest > half;
    if (rest == half) {
      up = odd || sticky || !all_zero<R>(a + last + 1, n - last - 1);
    }
    a[last] = kept * unit;
    n = last + 1;
    if (up) {
      if (unit != R::base) {
        carry = add_limb<R>(a, n, unit) != 0;
      } else {
        carry = add_limb<R>(a, last, 1) != 0 || last == 0;
      }
    }
  }
  while (n > 0 && a[n - 1] == 0) {
    --n;
  }
  return {n, carry};
}

}  // namespace quarn
