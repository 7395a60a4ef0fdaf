// Householder reflectors I - tau v v^T with v(1) = 1, and the standard form of a 2 by 2 block.
#pragma once

#include "src/kernels/level1.h"

namespace tesk {

/// |a| with the sign of b.
inline QuarnFloat with_sign(const QuarnFloat& a, const QuarnFloat& b) { return signbit(a) == signbit(b) ? a : -a; }

/// A reflector of up to kLargest elements.
class Reflector {
 public:
  static constexpr Integer kLargest = 16;

  /// The one that takes x to (beta, 0, ..., 0); n >= 1. No rescaling against underflow is needed: the exponents of
  /// QuarnFloat reach far beyond those of the model's safe minimum.
  Reflector(Integer n, const QuarnFloat* x) : n_(n), beta_(x[0]) {
    QuarnFloat rest;
    for (Integer i = 1; i < n; ++i) {
      rest += x[i] * x[i];
    }
    if (rest == 0) {
      return;
    }
    beta_ = -with_sign(sqrt(x[0] * x[0] + rest), x[0]);
    t_[0] = (beta_ - x[0]) / beta_;
    const QuarnFloat factor = 1 / (x[0] - beta_);
    for (Integer i = 1; i < n; ++i) {
      v_[i] = x[i] * factor;
      t_[i] = t_[0] * v_[i];
    }
  }

  Integer size() const { return n_; }
  const QuarnFloat& beta() const { return beta_; }

  /// Applies the reflector to the n elements of x.
  void apply(OneBasedVector<QuarnFloat> x) const {
    if (t_[0] == 0) {
      return;
    }
    QuarnFloat sum = x(1);
    for (Integer i = 1; i < n_; ++i) {
      sum += v_[i] * x(i + 1);
    }
    for (Integer i = 0; i < n_; ++i) {
      x(i + 1) -= sum * t_[i];
    }
  }

 private:
  Integer n_;
  QuarnFloat beta_;
  QuarnFloat v_[kLargest];  // v(1) = 1 is not stored
  QuarnFloat t_[kLargest];  // tau v
};

/// The plane rotation of two vectors: x := c x + s y, y := c y - s x.
inline void rotate(Integer n, OneBasedVector<QuarnFloat> x, OneBasedVector<QuarnFloat> y, const QuarnFloat& c,
                   const QuarnFloat& s) {
  for (Integer i = 1; i <= n; ++i) {
    const QuarnFloat temp = c * x(i) + s * y(i);
    y(i) = c * y(i) - s * x(i);
    x(i) = temp;
  }
}

/// The rotation that brings (a, b; c, d) to standard Schur form in place (DLANV2): either c = 0, or a = d and b, c of
/// opposite signs.
struct StandardForm {
  QuarnFloat cs;
  QuarnFloat sn;

  StandardForm(QuarnFloat& a, QuarnFloat& b, QuarnFloat& c, QuarnFloat& d);
};

}  // namespace tesk
