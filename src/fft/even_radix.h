// Butterflies of radix 2, 4 and 8.
//
// Factors 2 are merged after the permutation was laid out for single ones, so that sub-block p holds the subsequence
// of the bit-reversed residue: 0, 4, 2, 6, 1, 5, 3, 7 for radix 8. The even residues are then the first half, and each
// butterfly is a recursion of radix-2 steps in place: decimation in time forward, its transpose backward.
//
// A step of size h has the twiddles exp(-+2 pi i k/h). The quarter turn (k = h/4) is left to the step below, which
// makes the odd half's element h/4 by a subtraction and turns it for nothing: hence the template argument `odd_half`.
// What remains is the eighth turn in the last step of radix 8.
#pragma once

#include <array>
#include <utility>

#include "src/fft/slots.h"
#include "src/fft/twiddles.h"

namespace tesk {

/// (a, b) := (a + b, a - b)
template <class T>
void sum_and_difference(T& a, T& b) {
  T difference = a - b;
  a = a + b;
  b = std::move(difference);
}

/// i with its bits reversed, as many of them as r = 2, 4 or 8 needs.
constexpr int bit_reversed(int i, int r) {
  return r == 8 ? (i & 1) * 4 + (i & 2) + i / 4 : r == 4 ? (i & 1) * 2 + i / 2 : i;
}

/// h <= 4 complex numbers, from bit-reversed to natural order.
template <int h, bool odd_half>
void decimate_in_time(Complex* v) {
  if constexpr (h > 1) {
    decimate_in_time<h / 2, false>(v);
    decimate_in_time<h / 2, true>(v + h / 2);
    for (int k = odd_half ? 1 : 0; k < h / 2; ++k) {
      sum_and_difference(v[k], v[k + h / 2]);
    }
    if constexpr (odd_half) {
      Complex& a = v[0];
      Complex& b = v[h / 2];
      Complex turned(a.im - b.im, b.re - a.re);
      a = a + b;
      b = std::move(turned);
    }
  }
}

/// h <= 4 complex numbers, from natural to bit-reversed order, by the opposite angles.
template <int h, bool odd_half>
void decimate_in_frequency(Complex* v) {
  if constexpr (h > 1) {
    if constexpr (odd_half) {
      Complex& a = v[0];
      Complex& b = v[h / 2];
      Complex difference(a.re + b.im, a.im - b.re);
      a = Complex(a.re - b.im, a.im + b.re);
      b = std::move(difference);
    }
    for (int k = odd_half ? 1 : 0; k < h / 2; ++k) {
      sum_and_difference(v[k], v[k + h / 2]);
    }
    decimate_in_frequency<h / 2, false>(v);
    decimate_in_frequency<h / 2, true>(v + h / 2);
  }
}

/// The elements k and k + h/2 of a step of size h, the latter as its conjugate: e + o and conj(e - o).
inline void join(const Complex& e, const Complex& o, QuarnFloat& re, QuarnFloat& im, QuarnFloat& mirror_re,
                 QuarnFloat& mirror_im) {
  re = e.re + o.re;
  im = e.im + o.im;
  mirror_re = e.re - o.re;
  mirror_im = o.im - e.im;
}

/// The transpose of join.
inline void split(const QuarnFloat& re, const QuarnFloat& im, const QuarnFloat& mirror_re, const QuarnFloat& mirror_im,
                  Complex& e, Complex& o) {
  e = Complex(re + mirror_re, im - mirror_im);
  o = Complex(re - mirror_re, im + mirror_im);
}

template <int r>
class EvenRadix {
  static_assert(r == 2 || r == 4 || r == 8);
  static constexpr int half = r / 2;

 public:
  EvenRadix(const Constants& constants, const Circle& circle) {
    if (r > 2) {
      sqrt_half_ = constants.sqrt_half();
      minus_sqrt_half_ = -sqrt_half_;
    }
    for (int q = 1; q < half; ++q) {
      half_angles_[q] = 4 * q == r ? Complex(sqrt_half_, sqrt_half_) : circle.rotation(q, 2 * r);
    }
  }

  static constexpr Integer size() { return r; }

  /// The butterfly for j = 0.
  template <Direction direction>
  void first(const Slots& x) const {
    std::array<QuarnFloat, r> y;
    for (int p = 0; p < r; ++p) {
      y[p] = std::move(x.low(p));
    }
    if constexpr (direction == Direction::forward) {
      real_forward<r, false>(y.data());
    } else {
      real_backward<r, false>(y.data());
    }
    for (int p = 0; p < r; ++p) {
      x.low(p) = std::move(y[p]);
    }
  }

  /// The butterfly for 0 < j < m/2. w[q] is the rotation by 2 pi j q/(r m).
  template <Direction direction>
  void inner(const Slots& x, const Complex* w) const {
    std::array<Complex, r> v;
    if constexpr (direction == Direction::forward) {
      v[0] = Complex(std::move(x.low(0)), std::move(x.high(0)));
      for (int p = 1; p < r; ++p) {
        v[p] = rotated<direction>(x.low(p), x.high(p), w[bit_reversed(p, r)]);
      }
      decimate_in_time<half, false>(v.data());
      decimate_in_time<half, true>(v.data() + half);
    }
    for (int s = 0; s < half; ++s) {
      Complex& odd = v[s + half];
      if constexpr (direction == Direction::forward) {
        turn_eighths<direction>(odd, s);
        join(v[s], odd, x.low(s), x.high(r - 1 - s), x.high(half - 1 - s), x.low(s + half));
      } else {
        split(x.low(s), x.high(r - 1 - s), x.high(half - 1 - s), x.low(s + half), v[s], odd);
        turn_eighths<direction>(odd, s);
      }
    }
    if constexpr (direction == Direction::backward) {
      decimate_in_frequency<half, false>(v.data());
      decimate_in_frequency<half, true>(v.data() + half);
      for (int p = 0; p < r; ++p) {
        Complex z = p == 0 ? std::move(v[0]) : rotated<direction>(v[p].re, v[p].im, w[bit_reversed(p, r)]);
        x.low(p) = std::move(z.re);
        x.high(p) = std::move(z.im);
      }
    }
  }

  /// The butterfly for j = m/2: the residues q and q + r/2 make one complex number, the elements 2s tell the others.
  template <Direction direction>
  void middle(const Slots& x) const {
    std::array<Complex, half> v;
    if constexpr (direction == Direction::forward) {
      for (int i = 0; i < half; ++i) {
        v[i] = Complex(std::move(x.low(2 * i)), -x.low(2 * i + 1));
        turn_half_angle<direction>(v[i], bit_reversed(i, half));
      }
      decimate_in_time<half, false>(v.data());
    }
    for (int s = 0; s < r; s += 2) {
      Complex& z = v[s / 2];
      const bool conjugated = s >= half;
      QuarnFloat& re = x.low(conjugated ? r - 1 - s : s);
      QuarnFloat& im = x.low(conjugated ? s : r - 1 - s);
      if constexpr (direction == Direction::forward) {
        re = std::move(z.re);
        im = conjugated ? -z.im : std::move(z.im);
      } else {
        z = Complex(std::move(re), conjugated ? -im : std::move(im));
      }
    }
    if constexpr (direction == Direction::backward) {
      decimate_in_frequency<half, false>(v.data());
      for (int i = 0; i < half; ++i) {
        turn_half_angle<direction>(v[i], bit_reversed(i, half));
        x.low(2 * i) = twice(v[i].re);
        x.low(2 * i + 1) = -twice(v[i].im);
      }
    }
  }

 private:
  /// Turns z by pi q/r.
  template <Direction direction>
  void turn_half_angle(Complex& z, int q) const {
    if (q > 0) {
      z = rotated<direction>(z.re, z.im, half_angles_[q]);
    }
  }

  /// Turns z by s eighths of a circle, s = 1 or 3 in radix 8; the others are done already.
  template <Direction direction>
  void turn_eighths(Complex& z, int s) const {
    if (r != 8 || s % 2 == 0) {
      return;
    }
    constexpr bool forward = direction == Direction::forward;
    QuarnFloat difference = (forward ? z.im - z.re : z.re - z.im) * sqrt_half_;
    QuarnFloat sum = (z.re + z.im) * (s == 1 ? sqrt_half_ : minus_sqrt_half_);
    if (forward == (s == 1)) {
      z = Complex(std::move(sum), std::move(difference));
    } else {
      z = Complex(std::move(difference), std::move(sum));
    }
  }

  /// h real numbers in bit-reversed order to half-complex storage; for an odd half the last real element, h/2, is
  /// negated: so it is the imaginary part that the step above wants.
  template <int h, bool odd_half>
  void real_forward(QuarnFloat* y) const {
    if constexpr (h > 1) {
      real_forward<h / 2, false>(y);
      real_forward<h / 2, true>(y + h / 2);
      sum_and_difference(y[odd_half ? h / 2 : 0], y[odd_half ? 0 : h / 2]);
      if constexpr (odd_half) {
        std::swap(y[0], y[h / 2]);
      }
      if constexpr (h == 8) {
        const Complex e(y[1], y[3]);
        Complex o(y[5], y[7]);
        turn_eighths<Direction::forward>(o, 1);
        join(e, o, y[1], y[7], y[3], y[5]);
      }
    }
  }

  /// The transpose of real_forward.
  template <int h, bool odd_half>
  void real_backward(QuarnFloat* y) const {
    if constexpr (h > 1) {
      if constexpr (h == 8) {
        Complex e;
        Complex o;
        split(y[1], y[7], y[3], y[5], e, o);
        turn_eighths<Direction::backward>(o, 1);
        y[1] = std::move(e.re);
        y[3] = std::move(e.im);
        y[5] = std::move(o.re);
        y[7] = std::move(o.im);
      }
      if constexpr (h >= 4) {
        y[h / 4] = twice(y[h / 4]);
        y[3 * h / 4] = twice(y[3 * h / 4]);
      }
      sum_and_difference(y[0], y[h / 2]);
      if constexpr (odd_half) {
        std::swap(y[0], y[h / 2]);
      }
      real_backward<h / 2, false>(y);
      real_backward<h / 2, true>(y + h / 2);
    }
  }

  QuarnFloat sqrt_half_;
  QuarnFloat minus_sqrt_half_;
  std::array<Complex, half> half_angles_;
};

}  // namespace tesk
