// Butterflies of the odd radices, of half-complex data.
#pragma once

#include <array>
#include <optional>

#include "src/fft/factorize.h"
#include "src/fft/odd_sums.h"
#include "src/fft/slots.h"

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
  void sums_any(Terms& even, Terms& odd) const;

  Integer r_;
  Integer h_;
  std::optional<Sums3> sums3_;
  std::optional<Sums5> sums5_;
  // Otherwise: the rotations by 2 pi q/r.
  std::array<Complex, kMostPairs + 1> roots_;
};

}  // namespace tesk
