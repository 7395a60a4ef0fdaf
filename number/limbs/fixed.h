// Sums, products, quotients and square roots of few limbs, as straight-line code for each length.
//
// An operand is N limbs of a fraction 0.L0 L1 ... whose leading digit is not zero. A result is p[0 .. N), left-aligned
// too, with a change of the decimal exponent. Lower parts that can hardly matter are not computed: a function returns
// false when they might (a tie, a borderline), and then the caller takes the slow path. Nothing is written before
// the last operand is read, so that results may replace operands.
//
// The limbs are those of Radix64: sums of ten products must fit below 2^123.
#pragma once

#include <algorithm>

#include "number/limbs/digitwise.h"

#if QUARN_LIMB_BITS == 64

namespace quarn::fixed {

inline constexpr Limb kTenth = R::base / 10;

/// Where a result is cut: N limbs hold the digits, the last of them 0 to 17; `unit` is what one digit in the last place
/// is worth in that limb. Without a digit there the unit is the base, and the limb comes out as zero.
struct Cut {
  PowerOfTen<R> unit;
  Limb half;
};

/// Moves carries up; what leaves the first limb must be a lone 1.
template <int N>
[[gnu::noinline]] bool carry_up(Limb* p, int& exponent) {
  for (int i = N - 1; i > 0; --i) {
    const Limb carry = p[i] / kBase;
    p[i] -= carry * kBase;
    p[i - 1] += carry;
  }
  if (p[0] >= kBase) {
    for (int i = 1; i < N; ++i) {
      if (p[i] != 0) {
        return false;
      }
    }
    if (p[0] != kBase) {
      return false;
    }
    p[0] = kTenth;
    ++exponent;
  }
  return true;
}

/// The last limb without its rest and with a unit more where `up` says so; then the carries, which are rare.
template <int N>
[[gnu::always_inline]] inline bool finish(Limb* p, Limb rest, bool up, const Cut& cut, int& exponent) {
  p[N - 1] = p[N - 1] - rest + (cut.unit.value & -Limb(up));
  Limb over = 0;
#pragma GCC unroll 9
  for (int i = 0; i < N; ++i) {
    over |= kBase - 1 - p[i];
  }
  if (over >> 63) [[unlikely]] {
    return carry_up<N>(p, exponent);
  }
  return true;
}

/// Rounds p[0 .. N+1), known from below with an error under `error` units of its last limb. kMore says whether that is
/// p[N]; without it the error is one of p[N-1].
template <int N, bool kMore>
[[gnu::always_inline]] inline bool round_uncertain(Limb* p, Limb error, const Cut& cut, int& exponent) {
  const Limb rest = p[N - 1] - cut.unit.quotient(p[N - 1]) * cut.unit.value;
  bool up = rest > cut.half;
  if constexpr (kMore) {
    if (rest - cut.half + 1 <= 1) [[unlikely]] {
      // Within a unit of the half, p[N] decides.
      if (rest == cut.half ? p[N] == 0 : p[N] + error >= kBase) {
        return false;
      }
      up = rest == cut.half;
    }
  } else if (cut.half - rest <= error) [[unlikely]] {
    return false;
  }
  return finish<N>(p, rest, up, cut, exponent);
}

/// Turns digits below 18.4 * base each, carries not yet moved up, into limbs below base + 18.
template <int M>
[[gnu::always_inline]] inline void settle(Limb* p) {
  Limb carry[M];
#pragma GCC unroll 9
  for (int i = 1; i < M; ++i) {
    carry[i] = p[i] / kBase;
    p[i] -= carry[i] * kBase;
  }
#pragma GCC unroll 9
  for (int i = 1; i < M; ++i) {
    p[i - 1] += carry[i];
  }
}

// Sum -----------------------------------------------------------------------------------------------------------

/// out[0 .. N] = b moved right by k digits, 0 <= k <= 17.
template <int N>
[[gnu::always_inline]] inline void move_right(Limb* out, const Limb* b, int k) {
  const PowerOfTen<R> low = kPowersOfTen<R>[std::size_t(k)];
  const Limb high = R::powers[std::size_t(R::digits - k)];
  Limb below = 0;
#pragma GCC unroll 9
  for (int i = 0; i < N; ++i) {
    const Limb quotient = low.quotient(b[i]);
    out[i] = below + quotient;
    below = b[i] * high - quotient * kBase;
  }
  out[N] = below;
}

/// The same for any k; returns whether something not zero falls off the end.
template <int N>
[[gnu::noinline]] bool move_far_right(Limb* out, const Limb* b, std::uint32_t k) {
  const std::uint32_t skipped = k / R::digits;
  if (skipped > N) {
    std::fill_n(out, N + 1, Limb(0));
    return true;
  }
  Limb moved[N + 1];
  move_right<N>(moved, b, int(k % R::digits));
  std::fill_n(out, skipped, Limb(0));
  std::copy_n(moved, N + 1 - skipped, out + skipped);
  return std::any_of(moved + (N + 1 - skipped), moved + (N + 1), [](Limb limb) { return limb != 0; });
}

/// s[0 .. M) moved left by z digits, 0 <= z <= 17; what falls off the front is lost, and `below` follows.
template <int M>
[[gnu::always_inline]] inline void move_left(Limb* s, int z) {
  const PowerOfTen<R> low = kPowersOfTen<R>[std::size_t(R::digits - z)];
  const Limb high = R::powers[std::size_t(z)];
#pragma GCC unroll 9
  for (int i = 0; i < M; ++i) {
    const Limb quotient = low.quotient(s[i]);
    s[i] = s[i] * high - quotient * kBase;
    if (i > 0) {
      s[i - 1] += quotient;
    }
  }
}

/// p = a + b / 10^k, or a - b / 10^k, where b / 10^k must be below a.
template <int N>
[[gnu::always_inline]] inline bool add(Limb* p, const Limb* a, const Limb* b, std::uint32_t k, bool subtracting,
                                       const Cut& cut, int& exponent) {
  Limb s[N + 1];
  bool sticky = false;
  if (k < std::uint32_t(R::digits)) [[likely]] {
    move_right<N>(s, b, int(k));
  } else {
    sticky = move_far_right<N>(s, b, k);
  }
  // Subtraction adds the base complement; a rest that was cut off makes the difference a unit smaller.
  const Limb mask = -Limb(subtracting);
  const Limb complement = kBase & mask;
  Limb carry = Limb(subtracting && !sticky);
#pragma GCC unroll 9
  for (int i = N; i >= 0; --i) {
    const Limb sum = (s[i] ^ mask) + complement + carry + (i < N ? a[i] : 0);
    carry = sum >= kBase;
    s[i] = sum - (kBase & -carry);
  }
  exponent = 0;
  if (subtracting) {
    if (s[0] < kTenth) {
      if (s[0] == 0) [[unlikely]] {
        return false;
      }
      const int lost = R::digits - count_digits<R>(s[0]);
      move_left<N + 1>(s, lost);
      exponent = -lost;
    }
  } else if (carry != 0) {
    constexpr PowerOfTen<R> kTen = kPowersOfTen<R>[1];
    Limb below = kTenth;
#pragma GCC unroll 9
    for (int i = 0; i <= N; ++i) {
      const Limb quotient = kTen.quotient(s[i]);
      const Limb digit = s[i] - quotient * 10;
      s[i] = below + quotient;
      below = digit * kTenth;
    }
    sticky |= below != 0;
    exponent = 1;
  }
  const Limb quotient = cut.unit.quotient(s[N - 1]);
  const Limb rest = s[N - 1] - quotient * cut.unit.value;
  bool up = rest > cut.half;
  if (rest == cut.half) [[unlikely]] {
    // A limb without digits leaves parity to the one before.
    const Limb last = cut.unit.value == kBase ? s[N > 1 ? N - 2 : 0] : quotient;
    up = sticky || s[N] != 0 || (last & 1) != 0;
  }
#pragma GCC unroll 9
  for (int i = 0; i < N; ++i) {
    p[i] = s[i];
  }
  return finish<N>(p, rest, up, cut, exponent);
}

// Product -------------------------------------------------------------------------------------------------------

/// p = a * b. Columns of products are summed whole and reduced once. The columns from the last limb on are left out
/// (kMore: one later), and the last remainder with them: together below N + 2 units of the last limb kept.
template <int N, bool kMore>
[[gnu::always_inline]] inline bool multiply(Limb* p, const Limb* a, const Limb* b, const Cut& cut, int& exponent) {
  constexpr int kColumns = N + kMore;
  Limb product[kColumns];
  Wide sum = 0;
#pragma GCC unroll 9
  for (int w = kColumns - 1; w >= 0; --w) {
#pragma GCC unroll 9
    for (int i = 0; i < N; ++i) {
      if (w - i >= 0 && w - i < N) {
        sum += Wide(a[i]) * b[w - i];
      }
    }
    const Limb quotient = reduce(sum);
    if (w + 1 < kColumns) {
      product[w + 1] = Limb(sum) - quotient * kBase;  // below 1.81 * base
    }
    sum = quotient;
  }
  product[0] = Limb(sum);
  // A product below 0.1 moves left by a digit: ten times 1.81 * base still fits a word.
  const bool small = product[0] < kTenth;
  const Limb scale = small ? 10 : 1;
#pragma GCC unroll 9
  for (int i = 0; i < kColumns; ++i) {
    product[i] *= scale;
  }
  exponent = -int(small);
  settle<kColumns>(product);
  if (!round_uncertain<N, kMore>(product, (N + 2) * scale, cut, exponent)) {
    return false;
  }
#pragma GCC unroll 9
  for (int i = 0; i < N; ++i) {
    p[i] = product[i];
  }
  return true;
}

// Quotient and square root ----------------------------------------------------------------------------------------

/// p = a / b where b <= a < 10 b is said by `whole` (the exponent grows by one), else b / 10 < a < b.
template <int N, bool kMore>
[[gnu::always_inline]] inline bool divide(Limb* p, const Limb* a, const Limb* b, bool whole, const Cut& cut,
                                          int& exponent) {
  constexpr int kCount = N + kMore;
  Limb dividend[N + 1];
  move_right<N>(dividend, a, int(whole));
  Limb digit[kCount];
  quotient_digits(digit, Constant<kCount>(), dividend, Constant<N + 1>(), b, Constant<N>());
  settle<kCount>(digit);
  exponent = int(whole);
  if (!round_uncertain<N, kMore>(digit, 8, cut, exponent)) {
    return false;
  }
#pragma GCC unroll 9
  for (int i = 0; i < N; ++i) {
    p[i] = digit[i];
  }
  return true;
}

/// p = the square root of a / 10^k, k = 0 or 1.
template <int N, bool kMore>
[[gnu::always_inline]] inline bool square_root(Limb* p, const Limb* a, int k, const Cut& cut, int& exponent) {
  constexpr int kCount = N + kMore;
  Limb radicand[N + 1];
  move_right<N>(radicand, a, k);
  Limb digit[kCount];
  Limb error = 16;
  // So little of the second digit may be wanted that a rough one usually decides.
  if (N == 2 && !kMore && cut.unit.value >= 10'000 * kRoughRoot) {
    rough_root_digits(digit, radicand[0], radicand[1]);
    error = kRoughRoot;
  } else {
    Signed column[kCount + 2];
    if (!root_digits(digit, Constant<kCount>(), radicand, Constant<N + 1>(), column)) {
      return false;
    }
  }
  settle<kCount>(digit);
  exponent = 0;
  if (!round_uncertain<N, kMore>(digit, error, cut, exponent)) {
    return false;
  }
#pragma GCC unroll 9
  for (int i = 0; i < N; ++i) {
    p[i] = digit[i];
  }
  return true;
}

}  // namespace quarn::fixed

#endif
