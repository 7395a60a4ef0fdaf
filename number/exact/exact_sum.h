// Sums of products of any exponents, signs and kinds with one rounding.
#pragma once

#include <cstdint>
#include <vector>

#include "number/exact/operand.h"
#include "number/scalar/access.h"

namespace quarn::exact {

/// Collects terms and rounds their exact sum. What the views show must live as long as the sum.
class ExactSum {
 public:
  void add(const QuarnFloat& a, const QuarnFloat& b, bool flip);
  /// A product of two numbers of which one may be a coefficient in working storage; an empty one is zero.
  void add(const View& a, const QuarnFloat& b);

  /// NaN for a NaN, an infinity times zero, or infinities of both signs. A sum that is exactly zero is +0; but where
  /// `signed_zero` says so it is -0 if all terms are zeros of negative sign. Throws std::bad_alloc.
  QuarnFloat rounded_sum(int digits, bool signed_zero);

 private:
  struct Product {
    View a;
    View b;
    bool negative;
    std::int64_t top;  // |value| < 10^top
    std::int64_t low;  // a multiple of 10^low
  };
  /// The sum of a run of neighbouring terms: -1, 0 or 1 and 0.limbs * 10^exponent.
  struct Cluster {
    int sign = 0;
    std::int64_t exponent = 0;
    std::vector<Limb> limbs;
  };
  Cluster sum_of(std::size_t first, std::size_t last, std::int64_t low) const;

  std::vector<Product> products_;
  bool nan_ = false;
  bool infinite_[2] = {false, false};
  bool other_than_negative_zero_ = false;
};

}  // namespace quarn::exact
