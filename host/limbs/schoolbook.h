// Products, quotients and square roots of quadratic cost.
#pragma once

#include <cmath>

#include "host/limbs/linear.h"

namespace quarn {

/// out[0 .. na+nb) = a * b by columns: a whole column is summed in the wide type before it is reduced once.
/// na, nb >= 1; out overlaps neither operand.
template <class R>
void multiply_schoolbook(typename R::Limb* out, const typename R::Limb* a, std::size_t na, const typename R::Limb* b,
                         std::size_t nb) {
  using Wide = typename R::Wide;
  // So many products fit the wide type beside the carry of the column before, which is below 2 * na * base.
  constexpr std::size_t kChunk = std::size_t(std::min<Wide>(~Wide(0) / (Wide(R::base - 1) * (R::base - 1)) - 1, 1024));
  static_assert(kChunk >= 4);
  Wide carry = 0;
  for (std::size_t k = na + nb - 1; k > 0; --k) {
    // a[i] * b[j] with i + j = k - 1
    const std::size_t first = k - 1 >= nb ? k - nb : 0;
    const std::size_t last = std::min(k - 1, na - 1);
    Wide sum = carry;
    Wide above = 0;
    for (std::size_t i = first; i <= last;) {
      const std::size_t stop = std::min(i + kChunk, last + 1);
      for (; i < stop; ++i) {
        sum += Wide(a[i]) * b[k - 1 - i];
      }
      const Wide quotient = sum / R::base;
      above += quotient;
      sum -= quotient * R::base;
    }
    out[k] = typename R::Limb(sum);
    carry = above;
  }
  out[0] = typename R::Limb(carry);
}

/// quotient[0 .. na-nb] = a / b and a[0 .. na) becomes the remainder (in its last nb limbs; the others are zero).
/// na >= nb >= 1, b[0] is not zero; work holds nb limbs; nothing overlaps. Knuth, The Art of Computer
/// Programming 4.3.1, Algorithm D; the quotient digit is estimated from scaled leading limbs, so that a and b need no
/// normalising.
template <class R>
void divide_schoolbook(typename R::Limb* quotient, typename R::Limb* a, std::size_t na, const typename R::Limb* b,
                       std::size_t nb, typename R::Limb* work) {
  using Limb = typename R::Limb;
  using Wide = typename R::Wide;
  if (nb == 1) {
    const Limb remainder = divide_limb<R>(quotient, a, na, b[0]);
    std::fill_n(a, na, Limb(0));
    a[na - 1] = remainder;
    return;
  }
  const Limb scale = R::base / (b[0] + 1);
  multiply_limb<R>(work, b, nb, scale);
  const Limb lead = work[0];
  const Limb second = work[1];
  for (std::size_t k = 0; k + nb <= na; ++k) {
    // The window is (a[k-1], a[k] .. a[k+nb)), below b * base. Scaling four limbs of it may miss a carry into the
    // third, hence the 1 below: the digit is never too small, and too large by one at most.
    const Limb above = k == 0 ? 0 : a[k - 1];
    Limb window[4] = {above, a[k], a[k + 1], k + 2 < na ? a[k + 2] : 0};
    multiply_limb<R>(window, window, 4, scale);
    const Wide dividend = Wide(window[0]) * R::base + window[1];
    Wide digit = dividend / lead;
    Wide rest = dividend % lead;
    while (digit >= R::base || (rest < R::base && digit * second > rest * R::base + window[2] + 1)) {
      --digit;
      rest += lead;
    }
    // Subtract digit * b from the window.
    Limb borrow = 0;
    for (std::size_t i = nb; i-- > 0;) {
      const Wide product = digit * b[i] + borrow;
      const Limb low = Limb(product % R::base);
      borrow = Limb(product / R::base);
      if (a[k + i] < low) {
        a[k + i] += R::base;
        ++borrow;
      }
      a[k + i] -= low;
    }
    if (borrow > above) {
      --digit;
      add<R>(a + k, a + k, b, nb);
    }
    if (k > 0) {
      a[k - 1] = 0;
    }
    quotient[k] = Limb(digit);
  }
}

/// The whole part of the square root of value >= 1.
template <class R>
typename R::Limb sqrt_wide(typename R::Wide value) {
  using Wide = typename R::Wide;
  // One Newton step takes the double's error, some 2^-53 of the root, below a unit.
  const Wide start = Wide(std::sqrt(double(value)));
  Wide root = (start + value / start) / 2;
  while (root * root > value) {
    --root;
  }
  while ((root + 1) * (root + 1) <= value) {
    ++root;
  }
  return typename R::Limb(root);
}

/// root[0 .. n) = the whole part of the square root of radicand[0 .. 2n); the radicand becomes the remainder. Returns
/// whether that is not zero. n >= 1; the radicand's leading limb is not zero; nothing overlaps.
///
/// A limb at a time, as by hand: with the root S and the remainder r so far, the next limb q is close to
/// r * base / 2S, and q * (2S * base + q) comes off the remainder.
template <class R>
bool sqrt_schoolbook(typename R::Limb* root, typename R::Limb* radicand, std::size_t n) {
  using Limb = typename R::Limb;
  using Wide = typename R::Wide;
  const Wide lead = Wide(radicand[0]) * R::base + radicand[1];
  root[0] = sqrt_wide<R>(lead);
  const Wide rest = lead - Wide(root[0]) * root[0];
  radicand[0] = Limb(rest / R::base);
  radicand[1] = Limb(rest % R::base);
  for (std::size_t k = 1; k < n; ++k) {
    // The remainder, two new limbs at its end, modulo base^(k+3): negative while the first limb is large.
    Limb* const w = radicand + k - 1;
    const auto negative = [w] { return w[0] >= R::base / 2; };
    // w -= 2S + 1 (or += after a change of sign) where S has k + 1 limbs
    const auto step = [w, root, k](bool subtracting) {
      Limb carry = 1;
      for (std::size_t i = k + 3; i-- > 0;) {
        const Limb doubled = (i >= 2 ? 2 * root[i - 2] : 0) + carry;
        const Wide sum = subtracting ? Wide(w[i]) + 3 * Wide(R::base) - doubled : Wide(w[i]) + doubled;
        w[i] = Limb(sum % R::base);
        carry = subtracting ? Limb(3 - sum / R::base) : Limb(sum / R::base);
      }
    };
    const Wide top = (Wide(w[0]) * R::base + w[1]) * R::base + w[2];
    const Limb digit = Limb(std::min(top / (2 * Wide(root[0]) + 1), Wide(R::base - 1)));
    Wide borrow = 0;
    for (std::size_t i = k + 3; i-- > 0;) {
      const Wide product = (i == k + 2 ? Wide(digit) * digit : i >= 2 ? 2 * Wide(digit) * root[i - 2] : 0) + borrow;
      const Limb low = Limb(product % R::base);
      borrow = product / R::base + (w[i] < low);
      w[i] = w[i] < low ? w[i] + R::base - low : w[i] - low;
    }
    root[k] = digit;
    while (negative()) {
      root[k] -= 1;
      step(false);
    }
    while (w[0] != 0 || w[1] != 0 || w[2] >= root[0]) {
      step(true);
      if (negative()) {
        step(false);
        break;
      }
      root[k] += 1;
    }
  }
  return !all_zero<R>(radicand + n - 1, n + 1);
}

}  // namespace quarn
