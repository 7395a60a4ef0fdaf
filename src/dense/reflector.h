// Householder reflectors I - tau v v^T with v(1) = 1, and the standard form of a 2 by 2 block.
#pragma once

#include <utility>

#include "src/kernels/level1.h"

namespace tesk {

/// |a| with the sign of b.
inline QuarnFloat with_sign(const QuarnFloat& a, const QuarnFloat& b) { return signbit(a) == signbit(b) ? a : -a; }

/// What takes (alpha, x) to (beta, 0, ..., 0), where the squares of x add up to `rest`: v = x * factor. Not both alpha
/// and rest are zero, and the squares are in the range of exponents.
struct ReflectorScalars {
  QuarnFloat beta, tau, factor;

  ReflectorScalars(const QuarnFloat& alpha, const QuarnFloat& rest)
      : beta(-with_sign(sqrt(alpha * alpha + rest), alpha)), tau((beta - alpha) / beta), factor(1 / (alpha - beta)) {}
};

/// A reflector of up to kLargest elements, every operation rounded, without storage of its own.
class Reflector {
 public:
  static constexpr Integer kLargest = 16;

  /// The one that takes x to (beta, 0, ..., 0); n >= 1.
  Reflector(Integer n, const QuarnFloat* x) : n_(n), beta_(x[0]) {
    QuarnFloat rest;
    for (Integer i = 1; i < n; ++i) {
      rest += x[i] * x[i];
    }
    if (rest == 0) {
      return;
    }
    ReflectorScalars scalars(x[0], rest);
    beta_ = std::move(scalars.beta);
    t_[0] = std::move(scalars.tau);
    for (Integer i = 1; i < n; ++i) {
      v_[i] = x[i] * scalars.factor;
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
      add_product(sum, v_[i], x(i + 1));
    }
    for (Integer i = 0; i < n_; ++i) {
      subtract_product(x(i + 1), sum, t_[i]);
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
    QuarnFloat turned = c * x(i);
    add_product(turned, s, y(i));
    y(i) *= c;
    subtract_product(y(i), s, x(i));
    x(i) = std::move(turned);
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
