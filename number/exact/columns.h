// Sums of limb products in columns of radix 10^18, signed and not yet carried.
#pragma once

#include "number/exact/dot.h"
#include "number/limbs/digitwise.h"

#if QUARN_LIMB_BITS == 64

namespace quarn::exact {

using fixed::Signed;

/// Turns total.length columns into the total's limbs; the first column has the sign. The columns must be below
/// 2^126 less their carries.
inline void carry_columns(const Signed* columns, Total& total) noexcept {
  Signed carry = 0;
  for (std::size_t c = total.length; c-- > 1;) {
    const Signed column = columns[c] + carry;
    // Off by up to 21 bases from below, and by 16 from above where the column is negative.
    const Signed bases = fixed::bases_of(column);
    const Signed rest = column - bases * Signed(fixed::kBase);
    const Signed away = rest < 0 ? -17 : rest >= Signed(fixed::kBase) * 16 ? 16 : 0;
    const Limb digit = Limb(rest - away * Signed(fixed::kBase));
    const Limb more = digit / fixed::kBase;
    total.limbs[c] = digit - more * fixed::kBase;
    carry = bases + away + Signed(more);
  }
  carry += columns[0];
  total.negative = carry < 0;
  if (!total.negative) {
    total.limbs[0] = Limb(carry);
    return;
  }
  Limb borrow = 0;
  for (std::size_t c = total.length; c-- > 1;) {
    const Limb taken = total.limbs[c] + borrow;
    borrow = taken != 0;
    total.limbs[c] = borrow != 0 ? fixed::kBase - taken : 0;
  }
  total.limbs[0] = Limb(-carry) - borrow;
}

}  // namespace quarn::exact

#endif
