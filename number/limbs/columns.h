// Products by columns, whole or their leading part only: two columns at a time, each summed in the wide type before one
// reduction by a reciprocal.
#pragma once

#include <algorithm>
#include <bit>
#include <cstddef>

#include "number/limbs/radix.h"

namespace quarn {

/// x / base for any x; x becomes the remainder. N. Moeller, T. Granlund, "Improved division by invariant integers",
/// IEEE Trans. Computers 60, 2011, algorithm 4, after the part of the quotient beyond one word is taken off.
template <class R>
[[gnu::always_inline]] inline typename R::Wide reduce_column(typename R::Wide& x) {
  using Limb = typename R::Limb;
  using Wide = typename R::Wide;
  constexpr int kBits = 8 * sizeof(Limb);
  constexpr int kShift = std::countl_zero(R::base);
  constexpr Limb kDivisor = R::base << kShift;
  constexpr Limb kReciprocal = Limb(~Wide(0) / kDivisor - (Wide(1) << kBits));
  const Limb top = Limb(x >> kBits) / R::base;
  x = (x - (Wide(top) * R::base << kBits)) << kShift;
  const Wide estimate = Wide(kReciprocal) * Limb(x >> kBits) + x;
  Limb quotient = Limb(estimate >> kBits) + 1;
  Limb rest = Limb(x) - quotient * kDivisor;
  if (rest > Limb(estimate)) {
    --quotient;
    rest += kDivisor;
  }
  if (rest >= kDivisor) [[unlikely]] {
    ++quotient;
    rest -= kDivisor;
  }
  x = rest >> kShift;
  return (Wide(top) << kBits) + quotient;
}

/// out[0 .. min(keep, na+nb)) = the leading limbs of a * b, with zeros before them: too small by less than min(na, nb)
/// + 1 units of the last limb, or exact when keep >= na + nb. na, nb, keep >= 1; out overlaps neither operand.
template <class R>
void multiply_columns(typename R::Limb* out, const typename R::Limb* a, std::size_t na, const typename R::Limb* b,
                      std::size_t nb, std::size_t keep) {
  using Limb = typename R::Limb;
  using Wide = typename R::Wide;
  using Index = std::ptrdiff_t;
  // kHold products, and as many again, fit the wide type beside a carry and the two products at the ends.
  constexpr Wide kSquare = Wide(R::base) * R::base;
  constexpr Index kHold = Index(std::min<Wide>((~Wide(0) / kSquare - 4) / 2, 1 << 20));
  static_assert(kHold >= 4);
  // Column c sums a[i] * b[c - i]; its limb is out[c + 1].
  const Index columns = Index(std::min(keep, na + nb - 1));
  const Index length_a = Index(na);
  const Index length_b = Index(nb);
  const auto store = [out, keep](Index c, Wide& sum) {
    const Wide carry = reduce_column<R>(sum);
    if (std::size_t(c) + 1 < keep) {
      out[c + 1] = Limb(sum);
    }
    return carry;
  };
  Wide carry = 0;
  Index c = columns - 1;
  for (; c > 0; c -= 2) {
    Wide sum = carry;  // column c
    Wide next = 0;     // column c - 1
    Wide above = 0;    // what was taken off them
    Wide above_next = 0;
    Index i = std::max<Index>(0, c - length_b + 1);
    Index last = std::min(c - 1, length_a - 1);
    if (c - length_b >= 0) {
      next = Wide(a[c - length_b]) * b[length_b - 1];
    }
    if (c < length_a) {
      sum += Wide(a[c]) * b[0];
    }
    const Limb* const bc = b + c;
    while (i <= last) {
      const Index stop = std::min(last, i + kHold - 3);
      for (; i < stop; i += 2) {
        const Limb middle = bc[-i - 1];
        sum += Wide(a[i]) * bc[-i];
        next += Wide(a[i]) * middle;
        sum += Wide(a[i + 1]) * middle;
        next += Wide(a[i + 1]) * bc[-i - 2];
      }
      if (i == stop) {
        sum += Wide(a[i]) * bc[-i];
        next += Wide(a[i]) * bc[-i - 1];
        ++i;
      }
      if (i <= last) {
        const bool full = sum >= kHold * kSquare;
        sum -= full ? kHold * kSquare : 0;
        above += full ? Wide(kHold) * R::base : 0;
        const bool full_next = next >= kHold * kSquare;
        next -= full_next ? kHold * kSquare : 0;
        above_next += full_next ? Wide(kHold) * R::base : 0;
      }
    }
    carry = store(c, sum) + above;
    next += carry;
    carry = store(c - 1, next) + above_next;
  }
  if (c == 0) {
    Wide sum = carry + Wide(a[0]) * b[0];
    carry = store(0, sum);
  }
  out[0] = Limb(carry);
}

}  // namespace quarn
