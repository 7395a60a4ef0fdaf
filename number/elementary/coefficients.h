// Coefficients of the exponential series as words over common denominators.
#pragma once

#include "number/elementary/words.h"

namespace quarn::fixed {

/// c(k) = 1 / (f(1) f(2) ... f(k)), k >= 1. The k are cut into groups: within one, c(k) is numerator(k) over the
/// product of the f of the whole group, a word, and of those of the groups before.
struct Coefficients {
  enum class Kind {
    every,  // 1 / k!
    even,   // 1 / (2k)!
    odd,    // 1 / (2k + 1)!
  };
  static constexpr int kCount = 2100;

  explicit Coefficients(Kind kind);
  /// The number of terms up to the last one that counts: what follows is below 2^-bits for 0 <= x < 2^-x_bits.
  int terms(int bits, int x_bits) const {
    int k = 1;
    while ((k + 1) * x_bits + size[k + 1] < bits) {
      ++k;
    }
    return k;
  }

  Word numerator[kCount];
  Word divisor[kCount];  // the product for the first k of a group, 0 for the others
  int size[kCount];      // -log2 of c(k), rounded down, less one
};

const Coefficients& coefficients(Coefficients::Kind kind);

}  // namespace quarn::fixed
