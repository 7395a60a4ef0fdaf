// Sums over pairs of residues q and r - q, which all butterflies of odd radix come down to.
//
// With h = (r-1)/2 and, for s = 1 .. h,
//
//   E_s = t_0 + sum over q = 1 .. h of t_q cos(2 pi q s/r)        E_0 = t_0 + t_1 + ... + t_h
//   O_s = sum over q = 1 .. h of d_q sin(2 pi q s/r)
//
// the transform of complex x_q is E_s - i O_s for t_q = x_q + x_(r-q), d_q = x_q - x_(r-q), and E_s + i O_s is its
// element r - s. All constants are real, so that the sums are taken of real and imaginary parts one by one.
#pragma once

#include <utility>

#include "src/fft/twiddles.h"

namespace tesk {

/// even[0 .. 1]: t to E, odd[1]: d to O.
class Sums3 {
 public:
  explicit Sums3(const Constants& constants) : half_(0.5), half_sqrt3_(constants.half_sqrt3()) {}

  void operator()(QuarnFloat* even, QuarnFloat* odd) const {
    QuarnFloat e1 = even[0] - half_ * even[1];
    even[0] = even[0] + even[1];
    even[1] = std::move(e1);
    odd[1] = odd[1] * half_sqrt3_;
  }

 private:
  QuarnFloat half_;
  QuarnFloat half_sqrt3_;
};

/// even[0 .. 2]: t to E, odd[1 .. 2]: d to O.
class Sums5 {
 public:
  Sums5(const Constants& constants, const Circle& circle)
      : quarter_(0.25),
        quarter_sqrt5_(constants.quarter_sqrt5()),
        sin_fifth_(circle.rotation(1, 5).im),
        sin_tenth_(circle.rotation(1, 10).im) {}

  void operator()(QuarnFloat* even, QuarnFloat* odd) const {
    // cos(2 pi/5) and cos(4 pi/5) are -1/4 +- sqrt(5)/4, and sin(4 pi/5) is sin(2 pi/10).
    const QuarnFloat sum = even[1] + even[2];
    const QuarnFloat difference = quarter_sqrt5_ * (even[1] - even[2]);
    const QuarnFloat centre = even[0] - quarter_ * sum;
    even[0] = even[0] + sum;
    even[1] = centre + difference;
    even[2] = centre - difference;

    QuarnFloat o1 = sin_fifth_ * odd[1] + sin_tenth_ * odd[2];
    odd[2] = sin_tenth_ * odd[1] - sin_fifth_ * odd[2];
    odd[1] = std::move(o1);
  }

 private:
  QuarnFloat quarter_;
  QuarnFloat quarter_sqrt5_;
  QuarnFloat sin_fifth_;
  QuarnFloat sin_tenth_;
};

/// E_s and O_s, 1 <= s <= h, of any odd r: t_q is even(q), d_q is odd(q), and root(q), 1 <= q <= h, the rotation by
/// 2 pi q/r. Rotations the other way give -O_s.
template <class Even, class Odd, class Root>
void sums_of_pairs(Integer r, Integer s, const Even& even, const Odd& odd, const Root& root, QuarnFloat& e,
                   QuarnFloat& o) {
  e = even(0) + even(1) * root(s).re;
  o = odd(1) * root(s).im;
  Integer turn = s;  // q s mod r
  for (Integer q = 2; q <= r / 2; ++q) {
    turn += turn < r - s ? s : s - r;
    if (turn <= r / 2) {
      const Complex& w = root(turn);
      e = e + even(q) * w.re;
      o = o + odd(q) * w.im;
    } else {
      const Complex& w = root(r - turn);
      e = e + even(q) * w.re;
      o = o - odd(q) * w.im;
    }
  }
}

}  // namespace tesk
