// Decimal rounding: to places after the point or to digits, in the eight modes of the General Decimal Arithmetic; the
// four operations and the square root in these modes; rounded parts that add up to the rounded total.
//
// M. F. Cowlishaw, General Decimal Arithmetic Specification, version 1.70 (2009).
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "quarn/quarnfloat.h"

namespace quarn {

/// Where a number goes that lies between two neighbours.
enum class Rounding {
  half_even,  ///< to the nearer one; halves to the one with the even last digit
  half_up,    ///< to the nearer one; halves away from zero, as invoices have it
  half_down,  ///< to the nearer one; halves towards zero
  up,         ///< away from zero
  down,       ///< towards zero
  ceiling,    ///< towards infinity
  floor,      ///< towards -infinity
  up_05       ///< away from zero if the last digit would otherwise be 0 or 5, towards zero if not
};

struct NamedRounding {
  const char* name;
  Rounding mode;
};

/// The modes by the names of the General Decimal Arithmetic.
inline constexpr NamedRounding kRoundings[] = {{"half_even", Rounding::half_even}, {"half_up", Rounding::half_up},
                                               {"half_down", Rounding::half_down}, {"up", Rounding::up},
                                               {"down", Rounding::down},           {"ceiling", Rounding::ceiling},
                                               {"floor", Rounding::floor},         {"05up", Rounding::up_05}};

/// The mode of that name, with '-' for '_' too.
[[nodiscard]] inline std::optional<Rounding> rounding_named(std::string_view name) {
  std::string plain(name);
  for (char& c : plain) {
    c = c == '-' ? '_' : c;
  }
  for (const NamedRounding& each : kRoundings) {
    if (plain == each.name) {
      return each.mode;
    }
  }
  return std::nullopt;
}

/// The multiple of 10^-places next to x: places digits after the point, or zeros before it for places < 0. The result
/// has all of its digits, however many the working ones are, and a zero the sign of x; infinity and NaN give
/// themselves. *inexact says whether it differs from x.
[[nodiscard]] QRNFLOAT_API QuarnFloat quantize(const QuarnFloat& x, int places, Rounding mode = Rounding::half_even,
                                               bool* inexact = nullptr);

/// x rounded to so many digits, at least 1. What lies beyond the range of exponents becomes infinity or the largest
/// number of these digits, zero or the smallest number, as the mode says.
[[nodiscard]] QRNFLOAT_API QuarnFloat round_digits(const QuarnFloat& x, int digits, Rounding mode,
                                                   bool* inexact = nullptr);

/// The operations with one rounding in that mode to QuarnDigits() digits; half_even is what the operators do. An exact
/// sum of zero is negative for Rounding::floor unless both terms are +0.
[[nodiscard]] QRNFLOAT_API QuarnFloat add(const QuarnFloat& x, const QuarnFloat& y, Rounding mode,
                                          bool* inexact = nullptr);
[[nodiscard]] QRNFLOAT_API QuarnFloat subtract(const QuarnFloat& x, const QuarnFloat& y, Rounding mode,
                                               bool* inexact = nullptr);
[[nodiscard]] QRNFLOAT_API QuarnFloat multiply(const QuarnFloat& x, const QuarnFloat& y, Rounding mode,
                                               bool* inexact = nullptr);
[[nodiscard]] QRNFLOAT_API QuarnFloat divide(const QuarnFloat& x, const QuarnFloat& y, Rounding mode,
                                             bool* inexact = nullptr);
[[nodiscard]] QRNFLOAT_API QuarnFloat sqrt(const QuarnFloat& x, Rounding mode, bool* inexact = nullptr);

/// Which parts take the difference between the rounded total and the sum of rounded parts.
enum class Reconciliation {
  largest_remainder,  ///< each part is cut off, then those with the largest remainders are one unit more; the first of
                      ///< equal ones. No part is off by a unit or more.
  cumulative          ///< part k is the rounded sum of the first k parts less the rounded sum of those before
};

/// n multiples of 10^-places, near the parts, whose sum is exactly that of the parts, rounded as quantize() does.
/// `results` may be `parts`. False, and NaN everywhere, unless all parts are finite and their digits lie within a
/// million places.
[[nodiscard]] QRNFLOAT_API bool round_parts(std::size_t n, const QuarnFloat* parts, int places, Rounding mode,
                                            Reconciliation rule, QuarnFloat* results);

}  // namespace quarn
