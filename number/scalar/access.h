// What the rest of the number library may see of a QuarnFloat, and the one way to make a new one.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "number/limbs/radix.h"
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

}  // namespace quarn

/// The parts of a QuarnFloat, for the number library alone.
struct QuarnAccess {
  using Limb = QuarnFloat::Limb;

  static std::int32_t exponent(const QuarnFloat& x) noexcept { return x.exponent_; }
  static std::uint32_t length(const QuarnFloat& x) noexcept { return x.tag_ & QuarnFloat::kLength; }
  static bool negative(const QuarnFloat& x) noexcept { return (x.tag_ & QuarnFloat::kSign) != 0; }
  static constexpr std::uint32_t kSign = QuarnFloat::kSign;
  static std::uint32_t sign(const QuarnFloat& x) noexcept { return x.tag_ & kSign; }
  /// The limbs of a number that is known to be short.
  static const Limb* inside(const QuarnFloat& x) noexcept { return x.inside_; }
  static Limb* inside(QuarnFloat& x) noexcept { return x.inside_; }
  /// In one store: a number that moves on at once is read in one piece, which would have to wait for two.
  static void set(QuarnFloat& x, std::uint32_t tag, std::int32_t exponent) noexcept {
    constexpr bool kExponentLow = std::endian::native == std::endian::little;
    constexpr int kHalf = 32;
    const std::uint64_t both = std::uint64_t(std::uint32_t(exponent)) << (kExponentLow ? 0 : kHalf) |
                               std::uint64_t(tag) << (kExponentLow ? kHalf : 0);
    std::memcpy(static_cast<void*>(&x), &both, sizeof both);
  }
  /// In one store too.
  static void set_block(QuarnFloat& x, Limb* limbs, std::uint32_t capacity) noexcept {
#if QUARN_LIMB_BITS == 64
    if constexpr (std::endian::native == std::endian::little && sizeof limbs == 8) {
      using Both = std::uint64_t __attribute__((vector_size(16)));
      const Both both = {std::uint64_t(reinterpret_cast<std::uintptr_t>(limbs)), capacity};
      std::memcpy(static_cast<void*>(&x.heap_), &both, sizeof x.heap_);
      return;
    }
#endif
    x.heap_ = {limbs, capacity};
  }
  static const Limb* limbs(const QuarnFloat& x) noexcept { return x.on_heap() ? x.heap_.limbs : x.inside_; }

  static quarn::Kind kind(const QuarnFloat& x) noexcept {
    if (length(x) != 0) {
      return quarn::Kind::finite;
    }
    return x.exponent_ == QuarnFloat::kZero       ? quarn::Kind::zero
           : x.exponent_ == QuarnFloat::kInfinity ? quarn::Kind::infinite
                                                  : quarn::Kind::nan;
  }

  static void set_special(QuarnFloat& x, quarn::Kind kind, bool negative) noexcept {
    x.exponent_ = kind == quarn::Kind::zero       ? QuarnFloat::kZero
                  : kind == quarn::Kind::infinite ? QuarnFloat::kInfinity
                                                  : QuarnFloat::kNaN;
    x.tag_ = negative ? QuarnFloat::kSign : 0;
  }

  /// Makes x, which holds no heap block, a finite number of `length` limbs and returns them, to be filled in.
  static Limb* prepare(QuarnFloat& x, bool negative, std::int32_t exponent, std::size_t length);
  /// The same for any x, in the storage that it has; null, with x untouched, where that is too small.
  static Limb* prepare_again(QuarnFloat& x, bool negative, std::size_t length);
  /// Keeps the first limbs of a number just prepared.
  static void shorten(QuarnFloat& x, std::int32_t exponent, std::size_t length) noexcept;
};

namespace quarn {

inline Kind kind_of(const QuarnFloat& x) noexcept { return QuarnAccess::kind(x); }
/// x must be finite and not zero.
inline View view_of(const QuarnFloat& x) noexcept {
  return {QuarnAccess::negative(x), QuarnAccess::exponent(x), QuarnAccess::limbs(x), QuarnAccess::length(x)};
}

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
  explicit WorkingDigits(int digits);
  ~WorkingDigits();
  WorkingDigits(const WorkingDigits&) = delete;
  WorkingDigits& operator=(const WorkingDigits&) = delete;

 private:
  int saved_;
};

}  // namespace quarn
