// Golub-Kahan bidiagonalisation from b: G. Golub, W. Kahan, Calculating the singular values and pseudo-inverse of a
// matrix, SIAM J. Numer. Anal. 2 (1965). With u(1) = b / beta(1) and v(1) = A^H u(1) / alpha(1) each step gives
//   beta(k+1) u(k+1) = A v(k) - alpha(k) u(k),   alpha(k+1) v(k+1) = A^H u(k+1) - beta(k+1) v(k).
// The vectors are not made orthogonal again.
#pragma once

#include <algorithm>
#include <functional>
#include <utility>
#include <vector>

#include "src/krylov/basis.h"
#include "src/krylov/call.h"

namespace tesk {

template <class T>
class GolubKahan {
 public:
  /// y := A x with kProduct, y := A^H x with kAdjointProduct.
  using Multiply = std::function<void(Integer what, const T* x, T* y)>;

  /// Of an m by n matrix; b has m elements.
  GolubKahan(Integer m, Integer n, const Multiply& multiply, const T* b)
      : multiply_(multiply), u_(b, b + m), v_(static_cast<std::size_t>(n)) {}

  /// Forms u(1) and v(1). Numbers of the recurrence are squared: where those of A, with the damping, or of b are far
  /// from 1, A and `damp`, or b, are multiplied by a power of ten from here on. False: not finite.
  bool begin(QuarnFloat& damp) {
    beta_ = normalised(u_);
    multiply_(kAdjointProduct, u_.data(), v_.data());
    alpha_ = normalised(v_);
    if (!is_finite()) {
      return false;
    }
    unit_of_b_ = unit_of(beta_);
    unit_of_a_ = unit_of(std::max(alpha_, damp));
    beta_ *= unit_of_b_;
    alpha_ *= unit_of_a_;
    damp *= unit_of_a_;
    return true;
  }

  /// The next u and v. What is left of a vector may be rounding, which would count as a column of A: a beta or alpha of
  /// at most `noise` becomes 0.
  void advance(const QuarnFloat& noise) {
    std::vector<T> image(u_.size());
    multiply(kProduct, v_, image);
    beta_ = replace(u_, image, alpha_);
    if (beta_ <= noise) {
      alpha_ = beta_ = 0;
      return;
    }
    image.assign(v_.size(), T());
    multiply(kAdjointProduct, u_, image);
    alpha_ = replace(v_, image, beta_);
    if (alpha_ <= noise) {
      alpha_ = 0;
    }
  }

  bool is_finite() const { return isfinite(beta_) && isfinite(alpha_); }
  const QuarnFloat& alpha() const { return alpha_; }
  const QuarnFloat& beta() const { return beta_; }
  const std::vector<T>& v() const { return v_; }
  /// The powers of ten that A and b are multiplied by.
  const QuarnFloat& unit_of_a() const { return unit_of_a_; }
  const QuarnFloat& unit_of_b() const { return unit_of_b_; }

 private:
  static OneBasedVector<T> view(std::vector<T>& x) { return {x.data(), 1}; }

  static QuarnFloat unit_of(const QuarnFloat& size) {
    return size == 0 || is_safe_norm(size) ? QuarnFloat(1) : QuarnFloat(1, -ilogb(size));
  }

  /// x := x / ||x||; returns ||x||.
  static QuarnFloat normalised(std::vector<T>& x) {
    const auto n = Integer(x.size());
    QuarnFloat size = length_of(n, view(x));
    normalise(n, size, view(x));
    return size;
  }

  /// target := image - factor target, of length 1; returns its length before.
  static QuarnFloat replace(std::vector<T>& target, std::vector<T>& image, const QuarnFloat& factor) {
    add_multiple(Integer(target.size()), T(-factor), view(target), view(image));
    target.swap(image);
    return normalised(target);
  }

  /// The product with the scaled A.
  void multiply(Integer what, const std::vector<T>& x, std::vector<T>& y) {
    multiply_(what, x.data(), y.data());
    if (unit_of_a_ != 1) {
      scale(Integer(y.size()), unit_of_a_, view(y));
    }
  }

  const Multiply& multiply_;
  std::vector<T> u_;
  std::vector<T> v_;
  QuarnFloat alpha_;
  QuarnFloat beta_;
  QuarnFloat unit_of_a_ = 1;
  QuarnFloat unit_of_b_ = 1;
};

}  // namespace tesk
