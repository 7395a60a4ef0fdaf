// Quotients of long coefficients by Newton's iteration for the reciprocal (R. P. Brent, P. Zimmermann, Modern Computer
// Arithmetic, sections 3.4.1 and 3.4.2; the dividend enters in the last step, as A. H. Karp and P. Markstein do it).
//
// Numbers are integers that stand for fractions: X with h places is X / base^h. Errors are counted in units of the last
// place. Approximations carry kGuard places, worth at least 10^6, so that what is cut off or neglected there stays
// below a thousandth of a unit.
#pragma once

#include <algorithm>
#include <cstddef>

#include "number/limbs/digitwise.h"
#include "number/limbs/multiply.h"
#include "number/limbs/schoolbook.h"

namespace quarn::newton {

template <class R>
inline constexpr std::size_t kGuard = (6 + R::digits - 1) / R::digits;

/// The shortest approximation that Newton's iteration makes; it is also long enough to have a shorter predecessor.
template <class R>
std::size_t shortest_step(std::size_t threshold) {
  return std::max(2 * kGuard<R> + 4, threshold / 2);
}

/// out[0 .. size) = a, with zeros behind it or cut off behind.
template <class R>
void copy_leading(typename R::Limb* out, std::size_t size, const typename R::Limb* a, std::size_t na) {
  std::copy_n(a, std::min(size, na), out);
  std::fill(out + std::min(size, na), out + size, typename R::Limb(0));
}

/// out[0 .. size) = a modulo base^size.
template <class R>
void copy_trailing(typename R::Limb* out, std::size_t size, const typename R::Limb* a, std::size_t na) {
  const std::size_t common = std::min(size, na);
  std::fill_n(out, size - common, typename R::Limb(0));
  std::copy_n(a + (na - common), common, out + (size - common));
}

/// out[0 .. size) = |a - p * q|, given that this is below base^size / 4; returns whether the difference is negative.
/// The leading limbs cancel and are not computed: a cyclic product that holds the difference is long enough.
template <class R>
bool residual(typename R::Limb* out, std::size_t size, const typename R::Limb* a, std::size_t na,
              const typename R::Limb* p, std::size_t np, const typename R::Limb* q, std::size_t nq) {
  using Limb = typename R::Limb;
  const std::size_t shorter = std::min(np, nq);
  bool negative = false;
  bool done = false;
  if (shorter >= limits<Limb>().transform) {
    with_cyclic_product<R>(std::min(size + 1, np + nq), shorter,
                           [&]<class Product>(std::type_identity<Product>, std::size_t points) {
                             if (64 * points > Product::chunks(std::max({na, np, nq}))) {
                               Product product(points);
                               load_product(product, points, p, np, q, nq);
                               product.finish();
                               negative = product.store_difference(out, size, a, na);
                               done = true;
                             }
                           });
  }
  if (done) {
    return negative;
  }
  Scratch<Limb> product(np + nq);
  multiply<R>(product.data(), p, np, q, nq);
  Scratch<Limb> subtrahend(size);
  copy_trailing<R>(subtrahend.data(), size, product.data(), np + nq);
  copy_trailing<R>(out, size, a, na);
  subtract<R>(out, out, subtrahend.data(), size);
  negative = out[0] >= R::base / 2;
  if (negative) {
    std::fill_n(subtrahend.data(), size, Limb(0));
    subtract<R>(out, subtrahend.data(), out, size);
  }
  return negative;
}

/// value[0 .. n) = start * base^(n - ns) + or - correction.
template <class R>
void correct(typename R::Limb* value, std::size_t n, const typename R::Limb* start, std::size_t ns,
             const typename R::Limb* correction, std::size_t nc, bool negative) {
  copy_leading<R>(value, n, start, ns);
  typename R::Limb* const tail = value + (n - nc);
  if (negative) {
    subtract_limb<R>(value, n - nc, subtract<R>(tail, tail, correction, nc));
  } else {
    add_limb<R>(value, n - nc, add<R>(tail, tail, correction, nc));
  }
}

/// Whether a value whose last kGuard limbs are `guard`, wrong by a few units, may be on the other side of a whole
/// number: -1 when of the one below or at it, 1 when of the one above, else 0.
template <class R>
int near_whole(const typename R::Limb* guard) {
  constexpr std::size_t kLast = kGuard<R> - 1;
  constexpr typename R::Limb kUnits = 16;
  const auto all = [guard](typename R::Limb limb) {
    return std::all_of(guard, guard + kLast, [limb](auto x) { return x == limb; });
  };
  if (guard[kLast] < kUnits && all(0)) {
    return -1;
  }
  return guard[kLast] + kUnits >= R::base && all(R::base - 1) ? 1 : 0;
}

/// x[0 .. m+2) = base^m / 0.b within 2 units, the quotient of integers: b has at least m + kGuard limbs, the leading
/// digit not zero.
template <class R>
void first_reciprocal(typename R::Limb* x, const typename R::Limb* b, std::size_t m) {
  using Limb = typename R::Limb;
  const std::size_t k = m + kGuard<R>;
  if constexpr (kHasDigitwise<R>) {
    // base^-2 / 0.b, a limb more than is wanted
    const Limb one[2] = {0, 1};
    Scratch<Limb> longer(m + 3);
    quotient_from_below<R>(longer.data(), m + 3, one, 2, b, k);
    std::copy_n(longer.data(), m + 2, x);
    return;
  }
  Scratch<Limb> dividend(k + m + 1);
  std::fill_n(dividend.data(), k + m + 1, Limb(0));
  dividend[0] = 1;
  Scratch<Limb> work(k);
  divide_schoolbook<R>(x, dividend.data(), k + m + 1, b, k, work.data());
}

/// The same by Newton's iteration x + x (1 - b x), each time from half the places.
template <class R>
void reciprocal(typename R::Limb* x, const typename R::Limb* b, std::size_t m) {
  using Limb = typename R::Limb;
  constexpr std::size_t kExtra = kGuard<R>;
  if (m < shortest_step<R>(limits<Limb>().newton_divide)) {
    first_reciprocal<R>(x, b, m);
    return;
  }
  const std::size_t h = (m + kExtra + 1) / 2;
  const std::size_t k = m + kExtra;
  Scratch<Limb> start(h + 2);
  reciprocal<R>(start.data(), b, h);
  Scratch<Limb> one(k + h + 1);
  std::fill_n(one.data(), k + h + 1, Limb(0));
  one[0] = 1;
  Scratch<Limb> rest(k + 2);  // base^(k+h) - b * start
  const bool negative = residual<R>(rest.data(), k + 2, one.data(), k + h + 1, start.data(), h + 2, b, k);
  Scratch<Limb> correction(k + 4);
  multiply<R>(correction.data(), start.data(), h + 2, rest.data(), k + 2 - h);
  correct<R>(x, m + 2, start.data(), h + 2, correction.data(), m + 4 - h, negative);
}

/// quotient[0 .. n) = the whole part of a / b and whether there is a remainder, from value[0 .. n + 1 + kGuard), which
/// is a / b with kGuard places, a few units off at most.
template <class R>
bool whole_quotient(typename R::Limb* quotient, typename R::Limb* value, const typename R::Limb* a, std::size_t na,
                    const typename R::Limb* b, std::size_t nb) {
  const std::size_t n = na - nb + 1;
  const int side = near_whole<R>(value + n + 1);
  bool inexact = true;
  if (side != 0) {
    if (side > 0) {
      add_limb<R>(value, n + 1, 1);
    }
    Scratch<typename R::Limb> rest(nb + 2);
    if (residual<R>(rest.data(), nb + 2, a, na, value, n + 1, b, nb)) {
      subtract_limb<R>(value, n + 1, 1);
    } else {
      inexact = !all_zero<R>(rest.data(), nb + 2);
    }
  }
  std::copy_n(value + 1, n, quotient);
  return inexact;
}

/// divide limb by limb, for a leading digit of b that is not zero.
template <class R>
bool divide_digitwise(typename R::Limb* quotient, const typename R::Limb* a, std::size_t na, const typename R::Limb* b,
                      std::size_t nb) {
  using Limb = typename R::Limb;
  constexpr std::size_t kExtra = kGuard<R>;
  const std::size_t n = na - nb + 1;
  // A zero before a makes it the smaller fraction.
  const std::size_t used = std::min(na, n + kExtra + 1);
  Scratch<Limb> dividend(used + 1);
  dividend[0] = 0;
  std::copy_n(a, used, dividend.data() + 1);
  Scratch<Limb> value(n + 1 + kExtra);
  value[0] = 0;
  quotient_from_below<R>(value.data() + 1, n + kExtra, dividend.data(), used + 1, b, nb);
  return whole_quotient<R>(quotient, value.data(), a, na, b, nb);
}

/// divide for min(na - nb + 1, nb) of some size and a leading digit of b that is not zero.
template <class R>
bool divide(typename R::Limb* quotient, const typename R::Limb* a, std::size_t na, const typename R::Limb* b,
            std::size_t nb) {
  using Limb = typename R::Limb;
  constexpr std::size_t kExtra = kGuard<R>;
  const std::size_t n = na - nb + 1;
  const std::size_t w = n - 1 + kExtra;        // places of the approximate quotient of the fractions 0.a and 0.b
  const std::size_t h = (w + kExtra + 1) / 2;  // places of the first half
  const std::size_t k = w + kExtra;            // limbs of b that matter for it
  Scratch<Limb> value(w + 2);
  {
    Scratch<Limb> divisor(k);
    copy_leading<R>(divisor.data(), k, b, nb);
    Scratch<Limb> dividend(k + h);
    copy_leading<R>(dividend.data(), k + h, a, na);
    Scratch<Limb> inverse(h + 2);
    reciprocal<R>(inverse.data(), divisor.data(), h);
    // 1. The first half, start = dividend / divisor within 4 units.
    const std::size_t t = h + kExtra;
    Scratch<Limb> product(std::max(t + h + 2, k + 4));
    multiply<R>(product.data(), dividend.data(), t, inverse.data(), h + 2);
    Scratch<Limb> start(h + 2);
    std::copy_n(product.data(), h + 2, start.data());
    // 2. What it leaves, below 16 base^k.
    Scratch<Limb> rest(k + 2);
    const bool negative =
        residual<R>(rest.data(), k + 2, dividend.data(), k + h, start.data(), h + 2, divisor.data(), k);
    // 3. The second half.
    multiply<R>(product.data(), inverse.data(), h + 2, rest.data(), k + 2 - h);
    correct<R>(value.data(), w + 2, start.data(), h + 2, product.data(), w + 4 - h, negative);
  }
  return whole_quotient<R>(quotient, value.data(), a, na, b, nb);
}

}  // namespace quarn::newton

namespace quarn {

/// quotient[0 .. na-nb] = the whole part of a / b for integers of na >= nb >= 1 limbs, b[0] not zero; returns whether
/// there is a remainder. Nothing overlaps; a and b may be the same array.
template <class R>
bool divide(typename R::Limb* quotient, const typename R::Limb* a, std::size_t na, const typename R::Limb* b,
            std::size_t nb) {
  using Limb = typename R::Limb;
  const std::size_t n = na - nb + 1;
  const bool small = std::min(n, nb) < limits<Limb>().newton_divide;
  if (small && (!kHasDigitwise<R> || nb == 1)) {
    Scratch<Limb> remainder(na);
    std::copy_n(a, na, remainder.data());
    Scratch<Limb> work(nb);
    divide_schoolbook<R>(quotient, remainder.data(), na, b, nb, work.data());
    return !all_zero<R>(remainder.data() + (na - nb), nb);
  }
  const auto way = [&](auto... arguments) {
    if constexpr (kHasDigitwise<R>) {
      if (small) {
        return newton::divide_digitwise<R>(arguments...);
      }
    }
    return newton::divide<R>(arguments...);
  };
  int places = 0;
  while (b[0] * R::powers[places] < R::base / 10) {
    ++places;
  }
  if (places == 0) {
    return way(quotient, a, na, b, nb);
  }
  Scratch<Limb> dividend(na + 1);
  dividend[0] = shift_left<R>(dividend.data() + 1, a, na, places);
  Scratch<Limb> divisor(nb);
  shift_left<R>(divisor.data(), b, nb, places);
  Scratch<Limb> longer(n + 1);
  const bool inexact = way(longer.data(), dividend.data(), na + 1, divisor.data(), nb);
  std::copy_n(longer.data() + 1, n, quotient);
  return inexact;
}

extern template bool divide<Radix>(Radix::Limb*, const Radix::Limb*, std::size_t, const Radix::Limb*, std::size_t);

}  // namespace quarn
