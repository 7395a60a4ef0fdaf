// Quotients and square roots a digit of radix 10^18 at a time, from the remainder's leading part: always from below and
// a few units short at most. What is short the next digit makes up for, and carries are left in the columns. The
// lengths are constants, and then this is straight-line code, or numbers known when it runs.
#pragma once

#include <algorithm>
#include <bit>
#include <cstddef>

#include "number/limbs/divider.h"
#include "number/limbs/scratch.h"

#if QUARN_LIMB_BITS == 64

namespace quarn::fixed {

using R = Radix64;
using Limb = R::Limb;
using Wide = R::Wide;
using Signed = __int128;

inline constexpr Limb kBase = R::base;

/// Whole bases of a column: rounded down, or up to 20 less. |column| < 2^126, which is more than 84 base^2.
[[gnu::always_inline]] inline Signed bases_of(Signed column) {
  constexpr std::int64_t kReciprocal = std::int64_t((Wide(1) << 122) / kBase);
  return (Signed(std::int64_t(column >> 63)) * kReciprocal) >> 59;
}

/// Takes whole bases out of a column into the one before.
[[gnu::always_inline]] inline void take_bases(Signed* column) {
  const Signed bases = bases_of(column[0]);
  column[0] -= bases * Signed(kBase);
  column[-1] += bases;
}

/// Takes whole bases out of column[1] into column[0] and returns previous * base + column[0] less `slack`, a lower
/// bound of the remainder's lead if the columns behind are above -slack * base^2 / 2.
[[gnu::always_inline]] inline Signed signed_lead(Signed previous, Signed* column, int slack) {
  take_bases(column + 1);
  return previous * Signed(kBase) + column[0] - slack;
}

/// The same, not below zero.
[[gnu::always_inline]] inline Wide lead(Signed previous, Signed* column, int slack) {
  const Signed value = signed_lead(previous, column, slack);
  return value < 0 ? 0 : Wide(value);
}

/// x[0] y[0] + x[1] y[-1] + ... of n products below 6 base^2 as rest + bases * base.
struct ColumnSum {
  Signed rest;
  Signed bases;
};

inline ColumnSum column_sum(const Limb* x, const Limb* y, int n) {
  constexpr int kChunk = 14;
  constexpr Wide kFull = Wide(6 * kChunk) * kBase * kBase;
  Wide sum = 0;
  Wide bases = 0;
  for (;;) {
    const int count = std::min(n, kChunk);
#pragma GCC unroll 4
    for (int i = 0; i < count; ++i) {
      sum += Wide(x[i]) * y[-i];
    }
    const bool full = sum >= kFull;
    sum -= full ? kFull : 0;
    bases += full ? Wide(6 * kChunk) * kBase : 0;
    if (n <= kChunk) {
      break;
    }
    x += kChunk;
    y -= kChunk;
    n -= kChunk;
  }
  const Signed more = bases_of(Signed(sum));
  return {Signed(sum) - more * Signed(kBase), Signed(bases) + more};
}

/// digit[0 .. count) = 0.a / 0.b, too small by less than 8 units of the last one, the digits below 6 * base. Limbs
/// behind a[na] and b[nb] are zero, and those too far behind to matter are not read. 0.a < 0.b; b[0] >= base / 10.
template <class Count, class LengthA, class LengthB>
[[gnu::always_inline]] inline void quotient_digits(Limb* digit, Count count_type, const Limb* a, LengthA length_a,
                                                   const Limb* b, LengthB length_b) {
  constexpr bool kConstant = kIsConstant<Count>;
  const int count = count_type;
  const int na = length_a;
  const int nb = length_b;
  const int slack = 128 + (kConstant ? 0 : 8 * count);
  // The two leading limbs as a binary word, rounded up.
  int shift = std::countl_zero(b[0]);
  Limb divisor = b[0] << shift;
  if (nb > 1) {
    divisor += reduce(Wide(b[1]) << shift) + 2;
    if (divisor >> 63 == 0) [[unlikely]] {
      // Next to a power of two, which has one bit more. A word below it would make digits too large.
      divisor = Limb(1) << 63;
      --shift;
    }
  }
  const LimbDivider<R> by(divisor, shift);
  // Three columns of the remainder from column i on; those behind are made when they are needed.
  Signed column[3] = {Signed(a[0]), na > 1 ? Signed(a[1]) : 0, 0};
#pragma GCC unroll 9
  for (int i = 0; i < count; ++i) {
    column[2] = i + 2 < na ? Signed(a[i + 2]) : 0;
    // The digits from `first` on have a limb of b in this column. The last digit comes last: it was just found.
    if constexpr (kConstant) {
      // Bounds that do not depend on i, so that the loops unroll from within.
#pragma GCC unroll 9
      for (int t = 0; t < count - 1; ++t) {
        if (t < i - 1 && i + 1 - t < nb) {
          column[2] -= Signed(Wide(digit[t]) * b[i + 1 - t]);
        }
      }
    } else if (const int first = std::max(0, i + 2 - nb); first < i - 1) {
      const ColumnSum sum = column_sum(digit + first, b + (i + 1 - first), i - 1 - first);
      column[2] -= sum.rest;
      column[1] -= sum.bases;
    }
    if (i > 0 && nb > 2) {
      column[2] -= Signed(Wide(digit[i - 1]) * b[2]);
    }
    digit[i] = by.below(lead(column[0], column + 1, slack));
    if (i + 1 < count) {
      column[1] += column[0] * Signed(kBase) - Signed(Wide(digit[i]) * b[0]);
      if (nb > 1) {
        column[2] -= Signed(Wide(digit[i]) * b[1]);
      }
      column[0] = column[1];
      column[1] = column[2];
    }
  }
}

/// The root of the first two limbs as a limb, short by less than 4, what its square leaves, and 1 / (2 root) to some 50
/// bits.
struct FirstRoot {
  Limb root;
  Wide rest;
  double inverse;
};

[[gnu::always_inline]] inline FirstRoot first_root_digit(Limb a0, Limb a1) {
  // From a double, with one Newton correction, from below.
  const Wide front = Wide(a0) * kBase + a1;
  const double start = __builtin_sqrt(double(a0) * double(kBase));
  const double inverse = 0.5 / start;
  Limb root = Limb(start);
  const Signed missing = Signed(front) - Signed(Wide(root) * root);
  root += Limb(std::int64_t(double(std::int64_t(missing >> 16)) * (65536.0 * inverse)));
  root = std::min(root, kBase) - 2;
  return {root, front - Wide(root) * root, inverse};
}

/// The two leading digits of the square root of a fraction from a0 and a1, short by less than kRoughRoot units of the
/// second: a double's precision goes for most of it.
inline constexpr Limb kRoughRoot = 8192;

[[gnu::always_inline]] inline void rough_root_digits(Limb* digit, Limb a0, Limb a1) {
  const FirstRoot first = first_root_digit(a0, a1);
  digit[0] = first.root;
  // Up to 4 * base, so that some 2^-50 of it are 3600 units; the square of the digit takes 80 more.
  const auto second = std::int64_t(double(std::int64_t(first.rest)) * (first.inverse * double(kBase)));
  digit[1] = Limb(std::max<std::int64_t>(second - std::int64_t(kRoughRoot / 2), 0));
}

/// digit[0 .. count) = the square root of 0.a, too small by less than 16 units of the last one; false, seldom, when
/// that is not certain. The digits are below base + 6 but for the last, which may reach 6 * base. 0.a >= 1 / 100;
/// column[0 .. count + 2) is working storage.
template <class Count, class Length>
[[gnu::always_inline]] inline bool root_digits(Limb* digit, Count count_type, const Limb* a, Length length_a,
                                               Signed* column) {
  constexpr bool kConstant = kIsConstant<Count>;
  const int count = count_type;
  const int na = length_a;
  const int slack = 128 + (kConstant ? 0 : 8 * count);
#pragma GCC unroll 9
  for (int i = 0; i < count + 2; ++i) {
    column[i] = i < na ? Signed(a[i]) : 0;
  }
  const FirstRoot first = first_root_digit(a[0], na > 1 ? a[1] : 0);
  const Limb root = first.root;
  digit[0] = root;
  column[1] = Signed(first.rest);
  column[0] = 0;
  const LimbDivider<R> by(2 * root);
  const double inverse = 1.0000001 / (double(root) * double(kBase));
  double correction = 0;
  [[maybe_unused]] int load = 0;  // what the columns may have been given since they were below the base, in base^2
#pragma GCC unroll 9
  for (int i = 1; i < count; ++i) {
    // Digits near the limits can come out too large, once in some million roots, and the remainder runs away.
    if (column[i] >> 66 != 0 && column[i] >> 66 != -1) [[unlikely]] {
      return false;
    }
    // The divisor is the first limb doubled: what the rest of the root takes off the quotient is small.
    const Limb rough = by.below(lead(column[i], column + i + 1, slack));
    const double share = i == 1 ? double(std::int64_t(rough)) * 0.5 * inverse : correction;
    const Limb excess = Limb(std::int64_t(double(std::int64_t(rough)) * share)) + 1;
    digit[i] = rough < excess ? 0 : rough - excess;
    if (i == 1) {
      correction = double(std::int64_t(digit[i] + 8)) * inverse;
    }
    // Products with the digits before, in the columns that are kept.
    const int reach = std::min(i, count + 1 - i);
    const int end = kConstant ? count : reach;
#pragma GCC unroll 9
    for (int j = 0; j < end; ++j) {
      if (j < reach) {
        column[i + j + 1] -= Signed(Wide(2 * digit[j]) * digit[i]);
      }
    }
    if (2 * i + 1 < count + 2) {
      column[2 * i + 1] -= Signed(Wide(digit[i]) * digit[i]);
    }
    column[i + 1] += column[i] * Signed(kBase);
    // Products of two digits far above the base would overflow the columns.
    const Limb carry = digit[i] / kBase;
    digit[i] -= carry * kBase;
    digit[i - 1] += carry;
    // So would many products. A square adds 36 of base^2 at most, and 84 fit.
    if constexpr (!kConstant) {
      load += 2 * int(carry) + 2;
      if (load > 36) {
        for (int c = i + 3; c < count + 2; ++c) {
          take_bases(column + c);
        }
        load = 0;
      }
    }
  }
  // What is left of the remainder decides: the root counts when it is short of the true one by less than 16 units.
  if (column[count] >> 66 != 0 && column[count] >> 66 != -1) [[unlikely]] {
    return false;
  }
  const Signed left = signed_lead(0, column + count, slack);
  return left >= -3 * slack && left <= Signed(30 * Wide(root));
}

}  // namespace quarn::fixed

#endif

namespace quarn {

/// Whether this radix has the functions below.
template <class R>
inline constexpr bool kHasDigitwise = QUARN_LIMB_BITS == 64 && sizeof(typename R::Limb) == 8 && R::digits == 18;

/// digit[0 .. count) = 0.a / 0.b or less than 8 units of the last limb below. 0.a < 0.b; b[0] >= base / 10.
template <class R>
void quotient_from_below(typename R::Limb* digit, std::size_t count, const typename R::Limb* a, std::size_t na,
                         const typename R::Limb* b, std::size_t nb);

/// digit[0 .. count) = the square root of 0.a or less than 16 units of the last limb below; false, seldom, when that is
/// not certain. 0.a >= 1 / 100.
template <class R>
bool root_from_below(typename R::Limb* digit, std::size_t count, const typename R::Limb* a, std::size_t na);

// Both are defined where kHasDigitwise may hold.
#if QUARN_LIMB_BITS == 64

/// Moves carries up: digits of a fraction below 1.
template <class R>
void settle(typename R::Limb* digit, std::size_t count) {
  for (std::size_t i = count; i-- > 1;) {
    const typename R::Limb carry = digit[i] / R::base;
    digit[i] -= carry * R::base;
    digit[i - 1] += carry;
  }
}

template <class R>
void quotient_from_below(typename R::Limb* digit, std::size_t count, const typename R::Limb* a, std::size_t na,
                         const typename R::Limb* b, std::size_t nb) {
  static_assert(kHasDigitwise<R>);
  fixed::quotient_digits(digit, int(count), a, int(std::min(na, count + 2)), b, int(std::min(nb, count + 2)));
  settle<R>(digit, count);
}

template <class R>
bool root_from_below(typename R::Limb* digit, std::size_t count, const typename R::Limb* a, std::size_t na) {
  static_assert(kHasDigitwise<R>);
  Scratch<fixed::Signed> column(count + 2);
  if (!fixed::root_digits(digit, int(count), a, int(std::min(na, count + 2)), column.data())) {
    return false;
  }
  settle<R>(digit, count);
  return true;
}

#endif

}  // namespace quarn
