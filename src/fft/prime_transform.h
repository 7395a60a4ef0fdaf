// Transforms of prime length as convolutions: C. M. Rader, Proc. IEEE 56 (1968).
#pragma once

#include <cstddef>
#include <vector>

#include "src/fft/complex_factors.h"
#include "src/frame/constants.h"

namespace tesk {

/// With a generator g of the residues mod r, the elements x_(g^q) and w^(g^-q), w = exp(-2 pi i/r), are sequences of
/// length r - 1 whose cyclic convolution is z_(g^-p) - x_0. It is done by two transforms of length r - 1, or, where
/// that has large factors itself, of a longer length with factors 2, 3 and 5 alone, where zeros keep the ends apart.
class PrimeTransform {
 public:
  /// Whether the odd number r is a prime for which so many convolutions cost less than sums over pairs. Of one
  /// transform 61, 71 and 73 are the smallest, most from 97 on; counts of operations decide, which agree with
  /// measurements at 50 and 100 digits.
  static bool pays(Integer r, double times);

  /// roots[q apart], 1 <= q <= r/2: exp(-2 pi i q/r).
  PrimeTransform(Integer r, const Complex* roots, std::ptrdiff_t apart, const Constants& constants);

  /// z[0 .. r) to its transform, unscaled.
  void operator()(Complex* z);

 private:
  Integer size() const { return Integer(a_.size()); }
  /// Transforms a and returns where the result is: in a_ or scratch_.
  Complex* transformed();

  Constants constants_;
  ComplexFactors factors_;
  std::vector<Integer> powers_;  // g^q
  std::vector<Complex> table_;
  std::vector<Complex> a_;
  std::vector<Complex> scratch_;
  std::vector<Complex> weights_;  // the transform of w^(g^-q), divided by the length
};

}  // namespace tesk
