// Rounded parts that add up to the rounded total.
//
// Largest remainders: M. L. Balinski, H. P. Young, Fair Representation (1982), Hamilton's method.
#include <algorithm>
#include <limits>
#include <numeric>
#include <vector>

#include "number/functions/support.h"
#include "quarn/quarnthread.h"
#include "quarn/rounding.h"

namespace quarn {
namespace {

constexpr std::int64_t kMostDigits = 1'000'000;

/// The digits in which sums of the numbers and of 10^-places are exact; 0 if that is too many, or one is not finite.
int digits_of_sums(std::size_t n, const QuarnFloat* parts, int places) {
  std::int64_t highest = 1 - std::int64_t(places);
  std::int64_t lowest = -std::int64_t(places);
  for (std::size_t k = 0; k < n; ++k) {
    switch (kind_of(parts[k])) {
      case Kind::finite:
        highest = std::max(highest, view_of(parts[k]).exponent);
        lowest = std::min(lowest, view_of(parts[k]).exponent - stored_digits(parts[k]));
        break;
      case Kind::zero:
        break;
      default:
        return 0;
    }
  }
  // A carry for each doubling of their number
  const std::int64_t digits = highest - lowest + 22;
  return digits > kMostDigits ? 0 : int(digits);
}

void by_remainders(std::size_t n, const QuarnFloat* parts, int places, const QuarnFloat& total, QuarnFloat* results) {
  std::vector<QuarnFloat> below(n);
  std::vector<QuarnFloat> remainders(n);
  QuarnFloat missing = total;
  for (std::size_t k = 0; k < n; ++k) {
    below[k] = quantize(parts[k], places, Rounding::floor);
    remainders[k] = parts[k] - below[k];
    missing -= below[k];
  }
  const QuarnFloat unit(1, -places);
  std::vector<std::size_t> order(n);
  std::iota(order.begin(), order.end(), std::size_t(0));
  std::stable_sort(order.begin(), order.end(),
                   [&](std::size_t a, std::size_t b) { return remainders[a] > remainders[b]; });
  // The floors are below the total by less than n units: by a whole number of them.
  for (std::size_t k = 0; k < n && missing > 0; ++k) {
    below[order[k]] += unit;
    missing -= unit;
  }
  std::move(below.begin(), below.end(), results);
}

}  // namespace

bool round_parts(std::size_t n, const QuarnFloat* parts, int places, Rounding mode, Reconciliation rule,
                 QuarnFloat* results) {
  const int digits = digits_of_sums(n, parts, places);
  if (digits == 0) {
    std::fill_n(results, n, special(Kind::nan));
    return false;
  }
  const WorkingDigits scope(digits);
  QuarnFloat sum;
  if (rule == Reconciliation::cumulative) {
    QuarnFloat former;
    for (std::size_t k = 0; k < n; ++k) {
      sum += parts[k];
      QuarnFloat total = quantize(sum, places, mode);
      results[k] = total - former;
      former = std::move(total);
    }
    return true;
  }
  for (std::size_t k = 0; k < n; ++k) {
    sum += parts[k];
  }
  by_remainders(n, parts, places, quantize(sum, places, mode), results);
  return true;
}

}  // namespace quarn
