// Square roots of long coefficients by Newton's iteration for the inverse root (R. P. Brent, P. Zimmermann, Modern
// Computer Arithmetic, section 3.5). Places, units and guards as in the division.
#pragma once

#include "number/limbs/newton_divide.h"

namespace quarn::newton {

/// a[0 .. n) /= 2, rounded down.
template <class R>
void halve(typename R::Limb* a, std::size_t n) {
  typename R::Limb odd = 0;
  for (std::size_t i = 0; i < n; ++i) {
    const typename R::Limb limb = a[i];
    a[i] = limb / 2 + odd * (R::base / 2);
    odd = limb & 1;
  }
}

/// root[0 .. k) = the square root of 0.r, 1/100 <= 0.r, within 16 units; r has 2k limbs at least.
template <class R>
void first_root(typename R::Limb* root, const typename R::Limb* r, std::size_t k) {
  if constexpr (kHasDigitwise<R>) {
    if (root_from_below<R>(root, k, r, 2 * k)) {
      return;
    }
  }
  Scratch<typename R::Limb> radicand(2 * k);
  std::copy_n(r, 2 * k, radicand.data());
  sqrt_schoolbook<R>(root, radicand.data(), k);
}

/// y[0 .. m+2) = base^m / sqrt(0.r) within 2 units, 1/100 <= 0.r. r has at least 2 (m + kGuard) limbs.
template <class R>
void inverse_sqrt(typename R::Limb* y, const typename R::Limb* r, std::size_t m) {
  using Limb = typename R::Limb;
  constexpr std::size_t kExtra = kGuard<R>;
  const std::size_t k = m + kExtra;
  if (m < shortest_step<R>(limits<Limb>().newton_sqrt)) {
    Scratch<Limb> root(k);
    first_root<R>(root.data(), r, k);
    first_reciprocal<R>(y, root.data(), m);
    return;
  }
  // y + y (1 - r y^2) / 2 from half the places.
  const std::size_t h = (m + kExtra + 1) / 2;
  Scratch<Limb> start(h + 2);
  inverse_sqrt<R>(start.data(), r, h);
  Scratch<Limb> rest(k + h + 2);  // base^(k+2h) - r * start^2, below 5 base^(k+h)
  bool negative = false;
  {
    Scratch<Limb> squared(2 * h + 4);
    square<R>(squared.data(), start.data(), h + 2);
    Scratch<Limb> one(k + 2 * h + 1);
    std::fill_n(one.data(), k + 2 * h + 1, Limb(0));
    one[0] = 1;
    negative = residual<R>(rest.data(), k + h + 2, one.data(), k + 2 * h + 1, squared.data(), 2 * h + 4, r, k);
  }
  Scratch<Limb> correction(k + 4);
  multiply<R>(correction.data(), start.data(), h + 2, rest.data(), k + 2 - h);
  halve<R>(correction.data(), m + 4 - h);
  correct<R>(y, m + 2, start.data(), h + 2, correction.data(), m + 4 - h, negative);
}

/// root[0 .. n) = the whole part of the square root of the radicand and whether there is a remainder, from value[0 ..
/// n + 2 + kGuard), which is the root with kGuard places, a few units off at most.
template <class R>
bool whole_root(typename R::Limb* root, typename R::Limb* value, const typename R::Limb* radicand, std::size_t n) {
  const int side = near_whole<R>(value + n + 2);
  bool inexact = true;
  if (side != 0) {
    if (side > 0) {
      add_limb<R>(value, n + 2, 1);
    }
    Scratch<typename R::Limb> rest(n + 3);
    if (residual<R>(rest.data(), n + 3, radicand, 2 * n, value, n + 2, value, n + 2)) {
      subtract_limb<R>(value, n + 2, 1);
    } else {
      inexact = !all_zero<R>(rest.data(), n + 3);
    }
  }
  std::copy_n(value + 2, n, root);
  return inexact;
}

/// square_root for n of some size and a radicand of at least base^(2n) / 100.
template <class R>
bool square_root(typename R::Limb* root, const typename R::Limb* radicand, std::size_t n) {
  using Limb = typename R::Limb;
  constexpr std::size_t kExtra = kGuard<R>;
  const std::size_t w = n + kExtra;            // places of the approximate root
  const std::size_t h = (w + kExtra + 1) / 2;  // places of its first half
  Scratch<Limb> value(w + 2);
  {
    const std::size_t padded = 2 * (n + 2 * kExtra + 2);
    Scratch<Limb> r(padded);
    copy_leading<R>(r.data(), padded, radicand, 2 * n);
    // What the square of the first half leaves, below 32 base^h, and that divided by twice the root.
    Scratch<Limb> start(h + 2);
    Scratch<Limb> rest(h + 2);
    const auto square_leaves = [&] {
      return residual<R>(rest.data(), h + 2, r.data(), 2 * h, start.data(), h + 2, start.data(), h + 2);
    };
    if (h < limits<Limb>().newton_sqrt) {
      std::fill_n(start.data(), 2, Limb(0));
      first_root<R>(start.data() + 2, r.data(), h);
      const bool negative = square_leaves();
      Scratch<Limb> dividend(w + 2);
      copy_leading<R>(dividend.data(), w + 2, rest.data(), h + 2);
      halve<R>(dividend.data(), w + 2);
      Scratch<Limb> second(w + 3 - h);
      divide<R>(second.data(), dividend.data(), w + 2, start.data() + 2, h);
      correct<R>(value.data(), w + 2, start.data(), h + 2, second.data(), w + 3 - h, negative);
    } else {
      Scratch<Limb> inverse(h + 2);
      inverse_sqrt<R>(inverse.data(), r.data(), h);
      const std::size_t t = h + kExtra;
      Scratch<Limb> product(t + h + 4);
      multiply<R>(product.data(), r.data(), t, inverse.data(), h + 2);
      std::copy_n(product.data(), h + 2, start.data());
      const bool negative = square_leaves();
      multiply<R>(product.data(), inverse.data(), h + 2, rest.data(), h + 2);
      halve<R>(product.data(), w + 4 - h);
      correct<R>(value.data(), w + 2, start.data(), h + 2, product.data(), w + 4 - h, negative);
    }
  }
  return whole_root<R>(root, value.data(), radicand, n);
}

}  // namespace quarn::newton

namespace quarn {

/// root[0 .. n) = the whole part of the square root of radicand[0 .. 2n); returns whether there is a remainder. n >= 1;
/// the radicand's leading limb is not zero nor below base / 100; nothing overlaps.
template <class R>
bool square_root(typename R::Limb* root, const typename R::Limb* radicand, std::size_t n) {
  using Limb = typename R::Limb;
  if (n < limits<Limb>().newton_sqrt) {
    if constexpr (kHasDigitwise<R>) {
      constexpr std::size_t kExtra = newton::kGuard<R>;
      Scratch<Limb> value(n + 2 + kExtra);
      std::fill_n(value.data(), 2, Limb(0));
      if (radicand[0] >= R::base / 100 && root_from_below<R>(value.data() + 2, n + kExtra, radicand, 2 * n)) {
        return newton::whole_root<R>(root, value.data(), radicand, n);
      }
    }
    Scratch<Limb> remainder(2 * n);
    std::copy_n(radicand, 2 * n, remainder.data());
    return sqrt_schoolbook<R>(root, remainder.data(), n);
  }
  return newton::square_root<R>(root, radicand, n);
}

extern template bool square_root<Radix>(Radix::Limb*, const Radix::Limb*, std::size_t);

}  // namespace quarn
