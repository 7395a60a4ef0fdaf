// What the rest of the number library may see of a QuarnFloat, and the one way to make a new one.
#pragma once

#include <cstddef>
#include <cstdint>

#include "host/limbs/radix.h"
#include "quarn/quarnfloat.h"

namespace quarn {

using Limb = Radix::Limb;

enum class Kind { zero, finite, infinite, nan };

/// A finite non-zero number taken apart: value = (-1)^negative * 0.L0 L1 ... * 10^exponent. The leading digit of L0 is
/// not zero, nor is the last limb. The limbs stay owned by the number.
struct View {
  bool negative;
  std::int64_t exponent;
  const Limb* limbs;
  std::size_t length;
};

/// The largest and smallest exponent of the scientific form d.ddd * 10^e.
inline constexpr std::int64_t kMaxScientificExponent = 999'999'999;

Kind kind_of(const QuarnFloat& x) noexcept;
View view_of(const QuarnFloat& x) noexcept;

/// Zero, infinity or NaN.
QuarnFloat special(Kind kind, bool negative = false) noexcept;

/// The number (-1)^negative * 0.L0 L1 ... * 10^exponent rounded half to even to `digits` digits. The limbs need not be
/// left-aligned (leading zeros, whole limbs of them too, are fine); `sticky` says that something not zero follows the
/// last limb. Exponents out of range give infinity or zero.
QuarnFloat rounded(bool negative, std::int64_t exponent, const Limb* limbs, std::size_t length, bool sticky,
                   int digits = QuarnDigits());

/// x rounded to `digits` digits.
QuarnFloat rounded(const QuarnFloat& x, int digits);

/// Sets the working digits for a scope; internal precisions may pass the public limit by the guard digits.
class WorkingDigits {
 public:
  explicit WorkingDigits(int digits) noexcept;
  ~WorkingDigits();
  WorkingDigits(const WorkingDigits&) = delete;
  WorkingDigits& operator=(const WorkingDigits&) = delete;

 private:
  int saved_;
};

}  // namespace quarn
