// The three steps of an exact product that are products of doubles, for one instruction set.
//
// Every sum of doubles in them is a sum of whole numbers whose magnitudes together stay below 2^53, so that no step
// rounds, with fused multiply-adds or without, and all instruction sets give the same numbers:
//
//   residues   kMaxDigits digits below 10^6 times residues up to 2^22 + 4:   2000 * 10^6 * (2^22 + 4) < 2^53
//   multiply   kRun products of two residues:                                480 * (2^22 + 4)^2       < 2^53
//   recombine  kMaxPrimes residues times digits, and the multiple of M:      2000 * 10^6 * (2^22 + 5) < 2^53
//
// A residue is x - round(x / p) * p with the quotient from a product by 1 / p, which is off by less than 2^-21 for
// |x| < 2^53: below p / 2 + 4 in magnitude.
//
// These files include nothing with inline functions: what they would be compiled to is for one instruction set only.
#pragma once

#include <stddef.h>

namespace quarn::exact {

inline constexpr int kMaxDigits = 2000;
inline constexpr int kMaxPrimes = 2000;
inline constexpr size_t kRun = 480;
/// Tables stand in panels of so many columns.
inline constexpr int kTablePanel = 8;

/// What belongs to the product M of the first primes; digits are those of base 10^6, the lowest first.
struct Tables {
  int primes;
  int digits;              ///< of M, and a few more that are zero
  const double* prime;     ///< [primes], rounded up to a panel
  const double* inverse;   ///< 1 / prime
  const double* powers;    ///< [panel][digits][8]: 10^(6 s) modulo the primes of the panel
  const double* weights;   ///< [panel][primes + 1][8]: the panel's digits of M / prime, then those of -M
  const double* cofactor;  ///< [primes]: the inverse of M / prime modulo prime
};

/// Residues of entries stand as [prime][entry]. On the left an entry's place is (group, inner index, row of the group),
/// on the right (panel, inner index, column of the panel).
struct Kernel {
  const char* name;
  int group;  ///< rows of a group of the left operand
  int panel;  ///< columns of a panel of the right one
  int step;   ///< picoseconds of a multiply-add of doubles, for the choice between algorithms

  /// out[prime][group] = the residues of `groups` groups of entries with `count` digits each: digits[group][digit].
  void (*residues)(const Tables& tables, const double* digits, int count, size_t groups, double* out, size_t stride);

  /// sums[panel][group][column][prime] = (left right) / (M / prime), or that added to it, modulo prime.
  void (*multiply)(const Tables& tables, const double* left, size_t left_stride, const double* right,
                   size_t right_stride, size_t groups, size_t panels, size_t inner, bool add, double* sums);

  /// From the sums of one column of a group, whose values must be below M / 4 and 10^(6 count) / 2: signs and
  /// magnitudes. Three digits become two numbers, biased by 2^52: for wide limbs the lower twelve decimal digits and
  /// the upper six, else nine and nine; `digits` has room for `count` digits and two more, the sums have a row to
  /// spare.
  void (*recombine)(const Tables& tables, double* sums, int count, bool wide, double* digits, double* sign);
};

// Vectors of 16, 32 and 64 bytes; null where the compiler has no such instructions.
extern const Kernel* const kKernel16;
extern const Kernel* const kKernel32;
extern const Kernel* const kKernel64;

}  // namespace quarn::exact
