// The recurrence of LSMR: D. C.-L. Fong, M. Saunders, LSMR: An iterative algorithm for sparse least-squares problems,
// SIAM J. Sci. Comput. 33 (2011). The letters are those of the paper: a hat stands for the rotation that takes the
// damping in, a bar for the second one of each step, a tilde for the estimate of the residual.
#pragma once

#include <algorithm>
#include <utility>
#include <vector>

#include "quarn/quarnthread.h"
#include "src/krylov/golub_kahan.h"

namespace tesk {

/// How an iteration ended; as ISTOP says it but for `failed`, where a product is not finite.
enum class LsmrEnd : Integer { solved = 1, least_squares = 2, ill_conditioned = 3, exhausted = 7, failed = -1 };

/// What ends the iteration: relative errors of A and b, and the largest condition number, 0 for any.
struct LsmrTolerances {
  QuarnFloat a;
  QuarnFloat b;
  QuarnFloat condition;
};

/// The plane rotation that takes (a, b) to (r, 0); the sum of squares is in the range.
struct LsmrRotation {
  LsmrRotation(const QuarnFloat& a, const QuarnFloat& b) : r(sqrt(a * a + b * b)), c(a / r), s(b / r) {}
  QuarnFloat r;
  QuarnFloat c;
  QuarnFloat s;
};

/// The norm of the residual b - A x with damp x below it, from the scalars of each step.
class LsmrResidual {
 public:
  void begin(const QuarnFloat& beta) {
    betadd_ = beta;
    norm_ = beta;
  }

  void update(const LsmrRotation& hat, const LsmrRotation& plain, const QuarnFloat& thetabar, const QuarnFloat& rhobar,
              const QuarnFloat& zeta_before, const QuarnFloat& zeta) {
    const QuarnFloat betaacute = hat.c * betadd_;
    const QuarnFloat betacheck = -(hat.s * betadd_);
    const QuarnFloat betahat = plain.c * betaacute;
    betadd_ = -(plain.s * betaacute);
    const LsmrRotation tilde(rhodot_, thetabar);
    const QuarnFloat thetatilde_before = std::exchange(thetatilde_, tilde.s * rhobar);
    rhodot_ = tilde.c * rhobar;
    betadot_ = tilde.c * betahat - tilde.s * betadot_;
    tautilde_ = (zeta_before - thetatilde_before * tautilde_) / tilde.r;
    const QuarnFloat taudot = (zeta - thetatilde_ * tautilde_) / rhodot_;
    damped_ += betacheck * betacheck;
    const QuarnFloat rest = betadot_ - taudot;
    norm_ = sqrt(damped_ + rest * rest + betadd_ * betadd_);
  }

  const QuarnFloat& norm() const { return norm_; }

 private:
  QuarnFloat betadd_;  // beta with two dots
  QuarnFloat betadot_;
  QuarnFloat rhodot_ = 1;
  QuarnFloat tautilde_;
  QuarnFloat thetatilde_;
  QuarnFloat damped_;  // squares that the damping has taken out
  QuarnFloat norm_;
};

/// An estimate, from below, of a condition number: the quotient of extreme elements on the diagonal of the triangle, of
/// which the last one changes with the next column.
class LsmrCondition {
 public:
  /// One more column, after which the last element but one is `final` and the last one, for now, `last`.
  void update(const QuarnFloat& final, const QuarnFloat& last) {
    ++columns_;
    if (columns_ > 1) {
      largest_ = std::max(largest_, final);
      smallest_ = columns_ == 2 ? final : std::min(smallest_, final);
    }
    last_ = last;
  }
  QuarnFloat estimate() const {
    return columns_ < 2 ? QuarnFloat(1) : std::max(largest_, last_) / std::min(smallest_, last_);
  }

 private:
  Integer columns_ = 0;
  QuarnFloat largest_;
  QuarnFloat smallest_;
  QuarnFloat last_;
};

/// Minimises ||b - A x||^2 + damp^2 ||x||^2 over a Krylov space that each iteration makes larger by one, at the working
/// digits: two products, 3 m + 7 n multiply-adds for an iteration.
template <class T>
class Lsmr {
 public:
  using Multiply = typename GolubKahan<T>::Multiply;

  Lsmr(Integer m, Integer n, const Multiply& multiply, const T* b, QuarnFloat damp)
      : bidiagonal_(m, n, multiply, b),
        damp_(std::move(damp)),
        h_(static_cast<std::size_t>(n)),
        hbar_(h_.size()),
        x_(h_.size()) {}

  /// Goes on until the norms, as the recurrence knows them, are as small as asked for, or there have been `most`
  /// iterations in all.
  LsmrEnd go_on(const LsmrTolerances& asked, Integer most) {
    if (iterations_ == 0 && !begin()) {
      return LsmrEnd::failed;
    }
    // Below its roundings the recurrence would not end.
    const QuarnFloat least = 10 * epsilon();
    const QuarnFloat atol = std::max(asked.a, least);
    const QuarnFloat btol = std::max(asked.b, least);
    while (!is_at_end()) {
      QuarnCheckInterrupt();
      if (iterations_ == most) {
        return LsmrEnd::exhausted;
      }
      bidiagonal_.advance(10 * epsilon() * own_norm());
      if (!bidiagonal_.is_finite()) {
        return LsmrEnd::failed;
      }
      ++iterations_;
      step();
      if (!isfinite(zetabar_) || !isfinite(residual_.norm())) {
        return LsmrEnd::failed;
      }
      const QuarnFloat norm = own_norm();
      if (residual_.norm() <= btol * size_of_b_ + atol * norm * length_of(Integer(x_.size()), view(x_))) {
        return LsmrEnd::solved;
      }
      if (fabs(zetabar_) <= atol * norm * residual_.norm()) {
        return LsmrEnd::least_squares;
      }
      if (asked.condition != 0 && condition() >= asked.condition) {
        return LsmrEnd::ill_conditioned;
      }
    }
    return residual_.norm() == 0 ? LsmrEnd::solved : LsmrEnd::least_squares;
  }

  std::vector<T> x() const {
    std::vector<T> x = x_;
    const QuarnFloat back = bidiagonal_.unit_of_a() / bidiagonal_.unit_of_b();
    if (back != 1) {
      scale(Integer(x.size()), back, view(x));
    }
    return x;
  }
  Integer iterations() const { return iterations_; }
  /// The Krylov space does not grow any more.
  bool is_at_end() const { return zetabar_ == 0; }
  /// As the recurrence knows them: norms of the residual, and of its product with the adjoint.
  QuarnFloat residual() const { return residual_.norm() / bidiagonal_.unit_of_b(); }
  QuarnFloat gradient() const { return fabs(zetabar_) / bidiagonal_.unit_of_a() / bidiagonal_.unit_of_b(); }
  /// Estimates, from below, for A with the damping below it: its Frobenius norm and condition number.
  QuarnFloat norm() const { return own_norm() / bidiagonal_.unit_of_a(); }
  QuarnFloat condition() const { return condition_.estimate(); }

 private:
  static OneBasedVector<T> view(std::vector<T>& x) { return {x.data(), 1}; }
  /// The norm of A as the recurrence scales it.
  QuarnFloat own_norm() const { return sqrt(squared_norm_); }

  /// False: not finite.
  bool begin() {
    if (!bidiagonal_.begin(damp_)) {
      return false;
    }
    const QuarnFloat& alpha = bidiagonal_.alpha();
    const QuarnFloat& beta = bidiagonal_.beta();
    h_ = bidiagonal_.v();
    squared_norm_ = alpha * alpha;
    alphabar_ = alpha;
    zetabar_ = alpha * beta;
    residual_.begin(beta);
    size_of_b_ = beta;
    return true;
  }

  /// One column more: rotations, vectors, norms.
  void step() {
    const QuarnFloat& alpha = bidiagonal_.alpha();
    const QuarnFloat& beta = bidiagonal_.beta();
    const LsmrRotation hat(alphabar_, damp_);
    const LsmrRotation plain(hat.r, beta);
    const QuarnFloat rho_before = std::exchange(rho_, plain.r);
    const QuarnFloat theta = plain.s * alpha;
    alphabar_ = plain.c * alpha;

    const QuarnFloat thetabar = sbar_ * rho_;
    const QuarnFloat unrotated = cbar_ * rho_;
    const LsmrRotation bar(unrotated, theta);
    const QuarnFloat rhobar_before = std::exchange(rhobar_, bar.r);
    cbar_ = bar.c;
    sbar_ = bar.s;
    const QuarnFloat zeta_before = std::exchange(zeta_, cbar_ * zetabar_);
    zetabar_ = -(sbar_ * zetabar_);

    update_vectors(thetabar * rho_ / (rho_before * rhobar_before), zeta_ / (rho_ * rhobar_), theta / rho_);
    residual_.update(hat, plain, thetabar, rhobar_, zeta_before, zeta_);
    squared_norm_ += beta * beta + alpha * alpha + damp_ * damp_;
    condition_.update(rhobar_before, unrotated);
  }

  /// hbar := h - back hbar; x := x + forth hbar; h := v - down h
  void update_vectors(const QuarnFloat& back, const QuarnFloat& forth, const QuarnFloat& down) {
    const std::vector<T>& v = bidiagonal_.v();
    for (std::size_t i = 0; i < x_.size(); ++i) {
      multiply_by(hbar_[i], -back);
      hbar_[i] = hbar_[i] + h_[i];
      T part = hbar_[i];
      multiply_by(part, forth);
      x_[i] = x_[i] + part;
      multiply_by(h_[i], -down);
      h_[i] = h_[i] + v[i];
    }
  }

  GolubKahan<T> bidiagonal_;
  QuarnFloat damp_;
  std::vector<T> h_;
  std::vector<T> hbar_;
  std::vector<T> x_;
  QuarnFloat alphabar_;
  QuarnFloat zetabar_;
  QuarnFloat zeta_;
  QuarnFloat rho_ = 1;
  QuarnFloat rhobar_ = 1;
  QuarnFloat cbar_ = 1;
  QuarnFloat sbar_;
  QuarnFloat size_of_b_;
  QuarnFloat squared_norm_;
  LsmrResidual residual_;
  LsmrCondition condition_;
  Integer iterations_ = 0;
};

}  // namespace tesk
