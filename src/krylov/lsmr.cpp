// Least squares of large matrices: D. C.-L. Fong, M. Saunders, LSMR: An iterative algorithm for sparse least-squares
// problems, SIAM J. Sci. Comput. 33 (2011). The letters are those of the paper; a hat stands for the rotation that the
// damping takes, a bar for the second one of each step, a tilde for the estimate of the residual.
#include <vector>

#include "quarn/quarnthread.h"
#include "src/dense/householder.h"
#include "src/krylov/call.h"

namespace tesk {
namespace {

/// What the norms are compared with.
struct LsmrTolerances {
  QuarnFloat a;
  QuarnFloat b;
  QuarnFloat condition;  // the largest; 0: any
};

enum class LsmrEnd { working, solved, least_squares, ill_conditioned, exhausted, failed };

template <class T>
class Lsmr {
 public:
  using Multiply = std::function<void(Integer what, const T* x, T* y)>;

  Lsmr(Integer m, Integer n, const Multiply& multiply, const T* b, QuarnFloat damp)
      : m_(m),
        n_(n),
        multiply_(multiply),
        damp_(std::move(damp)),
        u_(b, b + m),
        v_(static_cast<std::size_t>(n)),
        h_(v_.size()),
        hbar_(v_.size()),
        x_(v_.size()) {}

  LsmrEnd run(const LsmrTolerances& tolerances, Integer most) {
    QuarnFloat beta = normalise(u_);
    multiply_(kAdjointProduct, u_.data(), v_.data());
    alpha_ = normalise(v_);
    if (!isfinite(beta) || !isfinite(alpha_)) {
      return LsmrEnd::failed;
    }
    set_units(beta);
    const QuarnFloat size_of_b = beta;
    h_ = v_;
    squared_norm_ = alpha_ * alpha_;
    alphabar_ = alpha_;
    zetabar_ = alpha_ * beta;
    betadd_ = beta;
    residual_ = beta;
    QuarnFloat length;
    while (zetabar_ != 0) {
      QuarnCheckInterrupt();
      if (iterations_ == most) {
        return LsmrEnd::exhausted;
      }
      beta = bidiagonalise();
      if (!isfinite(beta) || !isfinite(alpha_)) {
        return LsmrEnd::failed;
      }
      ++iterations_;
      step(beta);
      if (!isfinite(zetabar_) || !isfinite(residual_)) {
        return LsmrEnd::failed;
      }
      length = length_of(n_, view(x_));
      const QuarnFloat gradient = fabs(zetabar_);
      if (residual_ <= tolerances.b * size_of_b + tolerances.a * own_norm() * length) {
        return LsmrEnd::solved;
      }
      if (gradient <= tolerances.a * own_norm() * residual_) {
        return LsmrEnd::least_squares;
      }
      if (tolerances.condition != 0 && condition() >= tolerances.condition) {
        return LsmrEnd::ill_conditioned;
      }
    }
    return residual_ == 0 ? LsmrEnd::solved : LsmrEnd::least_squares;
  }

  std::vector<T> take_x() {
    const QuarnFloat back = unit_of_a_ / unit_of_b_;
    if (back != 1) {
      scale(n_, back, view(x_));
    }
    return std::move(x_);
  }
  Integer iterations() const { return iterations_; }
  /// Estimates, from below, for A with the damping below it.
  QuarnFloat norm() const { return own_norm() / unit_of_a_; }
  QuarnFloat condition() const { return iterations_ == 0 ? QuarnFloat(1) : largest_rho_ / smallest_rho_; }

 private:
  static OneBasedVector<T> view(std::vector<T>& x) { return {x.data(), 1}; }
  static QuarnFloat normalise(std::vector<T>& x) {
    QuarnFloat size = length_of(Integer(x.size()), view(x));
    if (size > 0 && isfinite(size)) {
      scale(Integer(x.size()), 1 / size, view(x));
    }
    return size;
  }
  QuarnFloat own_norm() const { return sqrt(squared_norm_); }

  /// Far from 1 the numbers of the recurrence, which are squared, are those of A and b times powers of ten.
  void set_units(QuarnFloat& beta) {
    const auto unit_of = [](const QuarnFloat& size) {
      return size == 0 || is_safe_norm(size) ? QuarnFloat(1) : QuarnFloat(1, -ilogb(size));
    };
    unit_of_b_ = unit_of(beta);
    unit_of_a_ = unit_of(std::max(alpha_, damp_));
    beta *= unit_of_b_;
    alpha_ *= unit_of_a_;
    damp_ *= unit_of_a_;
  }

  /// Of the scaled A.
  void multiply(Integer what, std::vector<T>& x, std::vector<T>& y) {
    multiply_(what, x.data(), y.data());
    if (unit_of_a_ != 1) {
      scale(Integer(y.size()), unit_of_a_, view(y));
    }
  }

  static QuarnFloat hypotenuse(const QuarnFloat& a, const QuarnFloat& b) { return sqrt(a * a + b * b); }

  /// target := image - factor target, of length 1; its length before.
  static QuarnFloat advance(std::vector<T>& target, std::vector<T>& image, const QuarnFloat& factor) {
    add_multiple(Integer(target.size()), T(-factor), view(target), view(image));
    target.swap(image);
    return normalise(target);
  }

  /// The next u, v and alpha; returns beta.
  QuarnFloat bidiagonalise() {
    std::vector<T> image(u_.size());
    multiply(kProduct, v_, image);
    QuarnFloat beta = advance(u_, image, alpha_);
    image.assign(v_.size(), T());
    if (beta > 0) {
      multiply(kAdjointProduct, u_, image);
    }
    alpha_ = advance(v_, image, beta);
    return beta;
  }

  void step(const QuarnFloat& beta) {
    const QuarnFloat alphahat = hypotenuse(alphabar_, damp_);
    const QuarnFloat chat = alphabar_ / alphahat;
    const QuarnFloat shat = damp_ / alphahat;
    const QuarnFloat rho_before = rho_;
    rho_ = hypotenuse(alphahat, beta);
    const QuarnFloat c = alphahat / rho_;
    const QuarnFloat s = beta / rho_;
    const QuarnFloat theta = s * alpha_;
    alphabar_ = c * alpha_;

    const QuarnFloat rhobar_before = rhobar_;
    const QuarnFloat zeta_before = zeta_;
    const QuarnFloat thetabar = sbar_ * rho_;
    const QuarnFloat turned = cbar_ * rho_;
    rhobar_ = hypotenuse(turned, theta);
    cbar_ = turned / rhobar_;
    sbar_ = theta / rhobar_;
    zeta_ = cbar_ * zetabar_;
    zetabar_ = -(sbar_ * zetabar_);

    // hbar := h - ... hbar; x := x + ... hbar; h := v - ... h
    const QuarnFloat back = thetabar * rho_ / (rho_before * rhobar_before);
    const QuarnFloat forth = zeta_ / (rho_ * rhobar_);
    const QuarnFloat down = theta / rho_;
    for (std::size_t i = 0; i < x_.size(); ++i) {
      multiply_by(hbar_[i], -back);
      hbar_[i] = hbar_[i] + h_[i];
      T part = hbar_[i];
      multiply_by(part, forth);
      x_[i] = x_[i] + part;
      multiply_by(h_[i], -down);
      h_[i] = h_[i] + v_[i];
    }

    estimate_residual({chat, shat, c, s}, zeta_before, thetabar);
    squared_norm_ += beta * beta;
    const bool first = iterations_ == 1;
    largest_rho_ = first ? turned : std::max(largest_rho_, rhobar_before);
    smallest_rho_ = first ? turned : iterations_ == 2 ? rhobar_before : std::min(smallest_rho_, rhobar_before);
    squared_norm_ += alpha_ * alpha_ + (first ? damp_ * damp_ : QuarnFloat());
  }

  struct Rotations {
    const QuarnFloat& chat;
    const QuarnFloat& shat;
    const QuarnFloat& c;
    const QuarnFloat& s;
  };
  void estimate_residual(const Rotations& by, const QuarnFloat& zeta_before, const QuarnFloat& thetabar) {
    const QuarnFloat betaacute = by.chat * betadd_;
    const QuarnFloat betacheck = -(by.shat * betadd_);
    const QuarnFloat betahat = by.c * betaacute;
    betadd_ = -(by.s * betaacute);
    const QuarnFloat thetatilde_before = thetatilde_;
    const QuarnFloat rhotilde = hypotenuse(rhodot_, thetabar);
    const QuarnFloat ctilde = rhodot_ / rhotilde;
    const QuarnFloat stilde = thetabar / rhotilde;
    thetatilde_ = stilde * rhobar_;
    rhodot_ = ctilde * rhobar_;
    betadot_ = ctilde * betahat - stilde * betadot_;
    tautilde_ = (zeta_before - thetatilde_before * tautilde_) / rhotilde;
    const QuarnFloat taudot = (zeta_ - thetatilde_ * tautilde_) / rhodot_;
    damped_ += betacheck * betacheck;
    const QuarnFloat rest = betadot_ - taudot;
    residual_ = sqrt(damped_ + rest * rest + betadd_ * betadd_);
  }

  Integer m_;
  Integer n_;
  const Multiply& multiply_;
  QuarnFloat damp_;
  std::vector<T> u_;
  std::vector<T> v_;
  std::vector<T> h_;
  std::vector<T> hbar_;
  std::vector<T> x_;
  QuarnFloat alpha_, alphabar_, zetabar_, zeta_, sbar_, betadd_, betadot_, tautilde_, thetatilde_, damped_;
  QuarnFloat unit_of_a_ = 1, unit_of_b_ = 1;
  QuarnFloat rho_ = 1, rhobar_ = 1, cbar_ = 1, rhodot_ = 1;
  QuarnFloat squared_norm_, largest_rho_, smallest_rho_, residual_;
  Integer iterations_ = 0;
};

template <class T>
struct LsmrCall {
  Integer m;
  Integer n;
  Operator<T> product;
  void* context;
  const T* b;
  QuarnFloat damp;
  QuarnFloat atol;
  QuarnFloat btol;
  QuarnFloat conlim;
  Integer most;
  T* x;
  QuarnFloat* rnorm;
  QuarnFloat* arnorm;
  QuarnFloat* anorm;
  QuarnFloat* acond;
  Integer* itn;
  Integer* istop;

  Integer solve() const {
    const auto is_tolerance = [](const QuarnFloat& tol) { return tol >= 0 && tol < 1; };
    const Integer wrong = first_wrong({{m < 1, 1},
                                       {n < 1, 2},
                                       {product == nullptr, 3},
                                       {!(damp >= 0) || !isfinite(damp), 6},
                                       {!is_tolerance(atol), 7},
                                       {!is_tolerance(btol), 8},
                                       {!(conlim >= 0), 9},
                                       {most < 1, 10}});
    if (wrong != 0) {
      return -wrong;
    }
    const typename Lsmr<T>::Multiply multiply = [this](Integer what, const T* from, T* to) {
      product(context, what, from, to);
    };
    std::vector<T> best;
    LsmrEnd end = LsmrEnd::failed;
    QuarnFloat norms[4];
    Integer iterations = 0;
    // When roundings have taken the recurrence away from the true residual, it begins again with twice the digits.
    int digits = guarded_digits(std::max(m, n));
    for (int tries = 1;; ++tries, digits *= 2) {
      {
        const WorkingDigits more(digits);
        Lsmr<T> iteration(m, n, multiply, b, damp);
        end = iteration.run(tolerances(), most - iterations);
        best = iteration.take_x();
        norms[2] = iteration.norm();
        norms[3] = iteration.condition();
        iterations += iteration.iterations();
      }
      round_elements<T>(n, 1, {best.data(), n});
      if (end == LsmrEnd::failed || !find_norms(best, norms[0], norms[1])) {
        return 2;
      }
      if (holds(end, best, norms)) {
        break;
      }
      if (tries == kMostTries) {
        end = LsmrEnd::exhausted;
        break;
      }
    }
    for (QuarnFloat& norm : norms) {
      norm *= 1;
    }
    std::move(best.begin(), best.end(), x);
    *rnorm = std::move(norms[0]);
    *arnorm = std::move(norms[1]);
    *anorm = std::move(norms[2]);
    *acond = std::move(norms[3]);
    *itn = iterations;
    *istop = end == LsmrEnd::solved ? 1 : end == LsmrEnd::least_squares ? 2 : end == LsmrEnd::ill_conditioned ? 3 : 7;
    return end == LsmrEnd::exhausted ? 1 : 0;
  }

 private:
  static constexpr int kMostTries = 2;
  static constexpr int kUnits = 30;

  /// For the recurrence; below its roundings it would not end.
  LsmrTolerances tolerances() const {
    const QuarnFloat least = 10 * epsilon();
    return {std::max(usual_tolerance(atol), least), std::max(usual_tolerance(btol), least), conlim};
  }

  /// Whether norms, as find_norms() finds them, are as the end says, but for roundings of x.
  bool holds(LsmrEnd end, std::vector<T>& at, const QuarnFloat (&norms)[4]) const {
    if (end != LsmrEnd::solved && end != LsmrEnd::least_squares) {
      return true;
    }
    const QuarnFloat a = 10 * usual_tolerance(atol);
    const QuarnFloat size = norms[2] * length_of(n, OneBasedVector<T>(at.data(), 1));
    const QuarnFloat rounding = kUnits * epsilon() * size;
    if (end == LsmrEnd::least_squares) {
      return norms[1] <= norms[2] * (a * norms[0] + rounding);
    }
    const QuarnFloat size_of_b = length_of(m, OneBasedVector<T>(const_cast<T*>(b), 1));
    return norms[0] <= 10 * usual_tolerance(btol) * size_of_b + a * size + rounding;
  }

  /// Of the residual of x with the damping below it, and of its product with the adjoint; false: not finite.
  bool find_norms(const std::vector<T>& at, QuarnFloat& residual, QuarnFloat& gradient) const {
    const WorkingDigits more(guarded_digits(std::max(m, n)));
    std::vector<T> r(static_cast<std::size_t>(m));
    std::vector<T> g(static_cast<std::size_t>(n));
    std::vector<T> own = at;
    product(context, kProduct, own.data(), r.data());
    for (Integer i = 0; i < m; ++i) {
      r[std::size_t(i)] = b[i] - r[std::size_t(i)];
    }
    product(context, kAdjointProduct, r.data(), g.data());
    const OneBasedVector<T> damped(own.data(), 1);
    scale(n, damp, damped);
    add_multiple(n, T(-damp), damped, OneBasedVector<T>(g.data(), 1));
    residual = quarn::abs(Complex(length_of(m, OneBasedVector<T>(r.data(), 1)), length_of(n, damped)));
    gradient = length_of(n, OneBasedVector<T>(g.data(), 1));
    return isfinite(residual) && isfinite(gradient);
  }
};

}  // namespace
}  // namespace tesk

extern "C" {

void QuarnMPX_dlsmr_(Integer m, Integer n, QuarnRealOperator product, void* context, const QuarnFloat* b,
                     QuarnFloat damp, QuarnFloat atol, QuarnFloat btol, QuarnFloat conlim, Integer most, QuarnFloat* x,
                     QuarnFloat* rnorm, QuarnFloat* arnorm, QuarnFloat* anorm, QuarnFloat* acond, Integer* itn,
                     Integer* istop, Integer* info) {
  *info = tesk::LsmrCall<QuarnFloat>{m,
                                     n,
                                     product,
                                     context,
                                     b,
                                     std::move(damp),
                                     std::move(atol),
                                     std::move(btol),
                                     std::move(conlim),
                                     most,
                                     x,
                                     rnorm,
                                     arnorm,
                                     anorm,
                                     acond,
                                     itn,
                                     istop}
              .solve();
}

void QuarnMPX_zlsmr_(Integer m, Integer n, QuarnComplexOperator product, void* context, const Complex* b,
                     QuarnFloat damp, QuarnFloat atol, QuarnFloat btol, QuarnFloat conlim, Integer most, Complex* x,
                     QuarnFloat* rnorm, QuarnFloat* arnorm, QuarnFloat* anorm, QuarnFloat* acond, Integer* itn,
                     Integer* istop, Integer* info) {
  *info = tesk::LsmrCall<Complex>{m,
                                  n,
                                  product,
                                  context,
                                  b,
                                  std::move(damp),
                                  std::move(atol),
                                  std::move(btol),
                                  std::move(conlim),
                                  most,
                                  x,
                                  rnorm,
                                  arnorm,
                                  anorm,
                                  acond,
                                  itn,
                                  istop}
              .solve();
}
}
