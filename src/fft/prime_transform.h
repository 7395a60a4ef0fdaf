// Transforms of prime length as convolutions: C. M. Rader, Proc. IEEE 56 (1968).
#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "src/fft/complex_passes.h"

namespace tesk {

/// With a generator g of the residues mod r, the elements x_(g^q) and w^(g^-q), w = exp(-2 pi i/r), are sequences of
/// length r - 1 whose cyclic convolution is z_(g^-p) - x_0. It is done by two transforms of length r - 1, or, where
/// that has large factors itself, of a longer length with factors 2, 3 and 5 alone, where zeros keep the ends apart.
class PrimeTransform {
 public:
  /// Whether the odd number r is a prime that is transformed faster so than by sums over pairs, once: 61, 67, 71 and 73
  /// are the smallest, most are from 97 on. Counts of operations decide, which agree with measurements at 50 and 100
  /// digits. How many transforms are to come has no say in it, so that several give the digits of one at a time.
  static bool pays(Integer r);

  /// roots[q apart], 1 <= q <= r/2: exp(-2 pi i q/r).
  PrimeTransform(Integer r, const Complex* roots, std::ptrdiff_t apart, const Constants& constants);

  Integer length() const { return Integer(powers_.size()) + 1; }

  /// z[0 .. r) to its transform, unscaled.
  void operator()(Complex* z);

 private:
  /// Transforms a_ and returns where the result is: in a_ or scratch_.
  Complex* transformed() { return (*passes_)(a_.data(), scratch_.data()); }

  ComplexFactors factors_;
  std::vector<Integer> powers_;  // g^q
  std::vector<Complex> table_;
  std::optional<Passes> passes_;
  std::vector<Complex> a_;
  std::vector<Complex> scratch_;
  std::vector<Complex> weights_;  // the transform of w^(g^-q), divided by the length
};

}  // namespace tesk
