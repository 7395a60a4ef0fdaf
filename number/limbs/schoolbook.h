// Quotients and square roots of quadratic cost; products are in columns.h.
#pragma once

#include <cmath>

#include "number/limbs/linear.h"

namespace quarn {

/// a[0 .. n) -= b * factor, factor < 2 * base; returns what is to be taken from the limb before. The products are
/// parted one by one, so that only the borrow hands on from limb to limb.
template <class R>
typename R::Limb subtract_product(typename R::Limb* a, const typename R::Limb* b, std::size_t n,
                                  typename R::Limb factor) {
  using Limb = typename R::Limb;
  Limb above = 0;
  Limb borrow = 0;
  for (std::size_t i = n; i-- > 0;) {
    const Parted<R> product = part<R>(typename R::Wide(factor) * b[i]);
    // Three bases more keep the difference above zero; it stays below four, which a limb can hold.
    const Limb biased = a[i] + 3 * R::base - product.remainder - above - borrow;
    const Limb bases = Limb(biased >= R::base) + Limb(biased >= 2 * R::base) + Limb(biased >= 3 * R::base);
    a[i] = biased - bases * R::base;
    borrow = 3 - bases;
    above = Limb(product.quotient);
  }
  return above + borrow;
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
  const LimbDivider<R> by(lead);
  for (std::size_t k = 0; k + nb <= na; ++k) {
    // The window is (a[k-1], a[k] .. a[k+nb)), below b * base. Scaling four limbs of it may miss a carry into the
    // third and on, hence the 1 there: the digit is never too small, and too large by one at most.
    const Limb above = k == 0 ? 0 : a[k - 1];
    Limb window[4] = {above, a[k], a[k + 1], k + 2 < na ? a[k + 2] : 0};
    multiply_limb<R>(window, window, 4, scale);
    const bool carry = window[2] == R::base - 1;
    const Limb third = carry ? 0 : window[2] + 1;
    const Wide dividend = Wide(window[0]) * R::base + window[1] + carry;
    Wide digit = by.quotient(dividend);
    Wide rest = dividend - digit * lead;
    while (digit >= R::base || (rest < R::base && digit * second > rest * R::base + third)) {
      --digit;
      rest += lead;
    }
    const Limb borrow = subtract_product<R>(a + k, b, nb, Limb(digit));
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
  const LimbDivider<R> by(2 * root[0]);
  for (std::size_t k = 1; k < n; ++k) {
    // The remainder, two new limbs at its end, modulo base^(k+3): negative while the first limb is large.
    Limb* const w = radicand + k - 1;
    const auto negative = [w] { return w[0] >= R::base / 2; };
    // w -= 2S + 1 (or += after a change of sign) where S has k + 1 limbs
    const auto step = [w, root, k](bool subtracting) {
      Limb carry = 1;
      for (std::size_t i = k + 3; i-- > 0;) {
        const Limb doubled = (i >= 2 ? 2 * root[i - 2] : 0) + carry;
        const Limb sum = subtracting ? w[i] + 3 * R::base - doubled : w[i] + doubled;
        const Limb bases = sum / R::base;
        w[i] = sum - bases * R::base;
        carry = subtracting ? 3 - bases : bases;
      }
    };
    const Wide top = (Wide(w[0]) * R::base + w[1]) * R::base + w[2];
    const Limb rough = Limb(std::min(Wide(by.quotient(top)), Wide(2 * R::base - 1)));
    // What the next limb of the root, or else the digit itself, adds to the divisor takes little off the quotient.
    const double next = k > 1 ? double(root[1]) : double(rough) / 2;
    const Limb excess = Limb(double(rough) * (next / double(R::base) / double(root[0])));
    const Limb digit = std::min(rough - excess, R::base - 1);
    root[k] = digit;
    // digit * (2S * base + digit): the doubled factor belongs to the limbs of S.
    const Parted<R> square = part<R>(Wide(digit) * digit);
    const Limb short_of = w[k + 2] < square.remainder;
    w[k + 2] += (R::base & -short_of) - square.remainder;
    subtract_limb<R>(w, k + 2, Limb(square.quotient) + short_of);
    Limb borrow = subtract_product<R>(w + 2, root, k, 2 * digit);
    for (std::size_t i = 2; i-- > 0 && borrow != 0;) {
      const Limb missing = w[i] < borrow ? (borrow - w[i] + R::base - 1) / R::base : 0;
      w[i] = w[i] + missing * R::base - borrow;
      borrow = missing;
    }
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
