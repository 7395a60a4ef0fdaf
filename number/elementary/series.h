// Sums of hypergeometric series by binary splitting, in decimal numbers.
#pragma once

#include "number/scalar/access.h"

namespace quarn {

/// One term, or the product of a range of terms, of the sum of a(k) * p(1)...p(k) / (q(1)...q(k)).
struct Splitting {
  QuarnFloat p;
  QuarnFloat q;
  QuarnFloat t;  // the range's sum times q
};

/// The sum over first <= k < last, last > first; term(k) delivers {p(k), q(k), a(k) p(k)}. All products are rounded to
/// the working digits, and exact while they fit, so that short factors cost what their length says. The relative error
/// of p, q and t grows by at most 3 units in the last place a level (t by more only if its two halves cancel, which
/// no series here does). See Haible and Papanikolaou, "Fast multiprecision evaluation of series of rational numbers"
/// (1998).
///
/// Where p, q and t of n terms are known to have at most `term_digits` n + 1 digits, short ranges are summed at fewer
/// working digits, exactly and faster.
template <class Term>
Splitting split(long first, long last, const Term& term, std::int64_t term_digits = 0) {
  constexpr int kShort = 108;
  if (last - first == 1) {
    return term(first);
  }
  if (term_digits != 0 && (last - first) * term_digits < kShort && QuarnDigits() > kShort) {
    const WorkingDigits exact(kShort);
    return split(first, last, term);
  }
  const long middle = first + (last - first) / 2;
  const Splitting left = split(first, middle, term, term_digits);
  const Splitting right = split(middle, last, term, term_digits);
  return {left.p * right.p, left.q * right.q, left.t * right.q + left.p * right.t};
}

}  // namespace quarn
