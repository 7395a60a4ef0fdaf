// Butterflies of the odd radices: sums over pairs of residues q and r - q.
//
// With h = (r-1)/2 and, for s = 1 .. h,
//
//   E_s = t_0 + sum over q = 1 .. h of t_q cos(2 pi q s/r)        E_0 = t_0 + t_1 + ... + t_h
//   O_s = sum over q = 1 .. h of d_q sin(2 pi q s/r)
//
// the transform of complex x_q is E_s - i O_s for t_q = x_q + x_(r-q), d_q = x_q - x_(r-q). All constants being real,
// every butterfly, of real and complex data, forward and backward, comes down to these sums over real numbers.
#pragma once

#include <array>

#include "src/fft/factorize.h"
#include "src/fft/slots.h"
#include "src/fft/twiddles.h"

namespace tesk {

/// Radix 3, 5 or any odd r from 7 to 19.
class OddRadix {
 public:
  OddRadix(Integer r, const Constants& constants, const Circle& circle);

  Integer size() const { return r_; }

  /// The butterfly for j = 0.
  template <Direction direction>
  void first(const Slots& x) const;
  /// The butterfly for 0 < j < m/2. w[q] is the rotation by 2 pi j q/(r m).
  template <Direction direction>
  void inner(const Slots& x, const Complex* w) const;
  /// The butterfly for j = m/2. Turned by half an angle, the residues q only change sign by turns, and element s is
  /// the conjugate of element h - s of the plain transform.
  template <Direction direction>
  void middle(const Slots& x) const;

 private:
  static constexpr Integer kMostPairs = (kLargestPrime - 1) / 2;
  using Terms = std::array<QuarnFloat, kMostPairs + 1>;

  /// even: t to E, odd: d to O (from index 1).
  void sums(Terms& even, Terms& odd) const;
  void sums3(Terms& even, Terms& odd) const;
  void sums5(Terms& even, Terms& odd) const;
  void sums_any(Terms& even, Terms& odd) const;

  Integer r_;
  Integer h_;
  // Radix 3: 1/2 and sqrt(3)/2. Radix 5: 1/4, sqrt(5)/4 and the sines of 2 pi/5 and 2 pi/10.
  QuarnFloat fraction_;
  QuarnFloat half_sqrt3_;
  QuarnFloat quarter_sqrt5_;
  QuarnFloat sin_fifth_;
  QuarnFloat sin_tenth_;
  // Otherwise: the rotations by 2 pi q/r.
  std::array<Complex, kMostPairs + 1> roots_;
};

}  // namespace tesk
