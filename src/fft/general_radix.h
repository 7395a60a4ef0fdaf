// Butterflies of any radix, of half-complex data, by the definition of the transform. They serve pass lists that a
// caller makes: those of c06FactorN have radices of their own kernels only.
#pragma once

#include <vector>

#include "src/fft/slots.h"
#include "src/fft/twiddles.h"

namespace tesk {

class GeneralRadix {
 public:
  static constexpr Integer kLargest = 1 << 30;

  GeneralRadix(Integer r, const Circle& circle) : r_(r) {
    roots_.reserve(2 * std::size_t(r));
    for (Integer k = 0; k < r; ++k) {
      roots_.push_back(circle.rotation(k, 2 * r));
    }
    for (Integer k = 0; k < r; ++k) {
      roots_.emplace_back(-roots_[std::size_t(k)].re, -roots_[std::size_t(k)].im);
    }
  }

  Integer size() const { return r_; }

  /// The butterfly for j = 0.
  template <Direction direction>
  void first(const Slots& x) const {
    real_residues<direction>(x, 0);
  }

  /// The butterfly for 0 < j < m/2. w[q] is the rotation by 2 pi j q/(r m).
  template <Direction direction>
  void inner(const Slots& x, const Complex* w) const {
    std::vector<Complex> z(static_cast<std::size_t>(r_));
    for (Integer q = 0; q < r_; ++q) {
      if constexpr (direction == Direction::forward) {
        z[q] = q == 0 ? Complex(x.low(0), x.high(0)) : rotated<direction>(x.low(q), x.high(q), w[q]);
      } else {
        z[q] = 2 * q < r_ ? Complex(x.low(q), x.high(r_ - 1 - q)) : Complex(x.high(r_ - 1 - q), -x.low(q));
      }
    }
    for (Integer s = 0; s < r_; ++s) {
      Complex sum = this->sum<direction>(z, s, 0);
      if constexpr (direction == Direction::forward) {
        (2 * s < r_ ? x.low(s) : x.high(r_ - 1 - s)) = std::move(sum.re);
        (2 * s < r_ ? x.high(r_ - 1 - s) : x.low(s)) = 2 * s < r_ ? std::move(sum.im) : -sum.im;
      } else {
        sum = s == 0 ? std::move(sum) : rotated<direction>(sum.re, sum.im, w[s]);
        x.low(s) = std::move(sum.re);
        x.high(s) = std::move(sum.im);
      }
    }
  }

  /// The butterfly for j = m/2.
  template <Direction direction>
  void middle(const Slots& x) const {
    real_residues<direction>(x, 1);
  }

 private:
  /// Element `index` + offset/2 of the transform of z; backward element `index` of z, whose transform is given.
  template <Direction direction>
  Complex sum(const std::vector<Complex>& z, Integer index, Integer offset) const {
    Complex sum;
    for (Integer q = 0; q < r_; ++q) {
      const std::int64_t turns = direction == Direction::forward ? std::int64_t(q) * (2 * std::int64_t(index) + offset)
                                                                 : std::int64_t(index) * (2 * std::int64_t(q) + offset);
      const Complex term = rotated<direction>(z[q].re, z[q].im, roots_[std::size_t(turns % (2 * std::int64_t(r_)))]);
      sum.re += term.re;
      sum.im += term.im;
    }
    return sum;
  }

  /// One number a residue; elements s and r - offset - s of the transform are conjugate to each other.
  template <Direction direction>
  void real_residues(const Slots& x, Integer offset) const {
    const auto partner = [&](Integer s) { return (2 * r_ - offset - s) % r_; };
    std::vector<Complex> z(static_cast<std::size_t>(r_));
    for (Integer s = 0; s < r_; ++s) {
      const Integer other = partner(s);
      if (direction == Direction::forward || s == other) {
        z[s] = Complex(x.low(s), QuarnFloat());
      } else {
        z[s] = s < other ? Complex(x.low(s), x.low(other)) : Complex(x.low(other), -x.low(s));
      }
    }
    for (Integer s = 0; s < r_; ++s) {
      const Integer other = partner(s);
      if (direction == Direction::forward && s > other) {
        continue;
      }
      Complex sum = this->sum<direction>(z, s, offset);
      x.low(s) = std::move(sum.re);
      if (direction == Direction::forward && s < other) {
        x.low(other) = std::move(sum.im);
      }
    }
  }

  Integer r_;
  std::vector<Complex> roots_;  // exp(2 pi i k/(2 r))
};

}  // namespace tesk
