// Least squares of large matrices: D. C.-L. Fong, M. Saunders, LSMR: An iterative algorithm for sparse least-squares
// problems, SIAM J. Sci. Comput. 33 (2011). The letters are those of the paper; a hat stands for the rotation that the
// damping takes, a bar for the second one of each step, a tilde for the estimate of the residual.
#include <optional>
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

  /// From where it was, until the norms, as the recurrence knows them, are what is asked for; `most` iterations in all.
  LsmrEnd go_on(const LsmrTolerances& asked, Integer most) {
    if (iterations_ == 0 && !begin()) {
      return LsmrEnd::failed;
    }
    // Below its roundings the recurrence would not end.
    const QuarnFloat least = 10 * epsilon();
    const QuarnFloat atol = std::max(asked.a, least);
    const QuarnFloat btol = std::max(asked.b, least);
    while (zetabar_ != 0) {
      QuarnCheckInterrupt();
      if (iterations_ == most) {
        return LsmrEnd::exhausted;
      }
      const QuarnFloat beta = bidiagonalise();
      if (!isfinite(beta) || !isfinite(alpha_)) {
        return LsmrEnd::failed;
      }
      ++iterations_;
      step(beta);
      if (!isfinite(zetabar_) || !isfinite(residual_)) {
        return LsmrEnd::failed;
      }
      const QuarnFloat norm = own_norm();
      if (residual_ <= btol * size_of_b_ + atol * norm * length_of(n_, view(x_))) {
        return LsmrEnd::solved;
      }
      if (fabs(zetabar_) <= atol * norm * residual_) {
        return LsmrEnd::least_squares;
      }
      if (asked.condition != 0 && condition() >= asked.condition) {
        return LsmrEnd::ill_conditioned;
      }
    }
    return residual_ == 0 ? LsmrEnd::solved : LsmrEnd::least_squares;
  }

  std::vector<T> x() const {
    std::vector<T> x = x_;
    const QuarnFloat back = unit_of_a_ / unit_of_b_;
    if (back != 1) {
      scale(n_, back, view(x));
    }
    return x;
  }
  Integer iterations() const { return iterations_; }
  /// Nothing is left to be done.
  bool is_at_end() const { return zetabar_ == 0; }
  /// As the recurrence knows them: of the residual, and of its product with the adjoint.
  QuarnFloat residual() const { return residual_ / unit_of_b_; }
  QuarnFloat gradient() const { return fabs(zetabar_) / unit_of_a_ / unit_of_b_; }
  /// Estimates, from below, for A with the damping below it.
  QuarnFloat norm() const { return own_norm() / unit_of_a_; }
  QuarnFloat condition() const {
    return iterations_ < 2 ? QuarnFloat(1) : std::max(largest_rho_, last_rho_) / std::min(smallest_rho_, last_rho_);
  }

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

  /// The first u and v; false: not finite.
  bool begin() {
    QuarnFloat beta = normalise(u_);
    multiply_(kAdjointProduct, u_.data(), v_.data());
    alpha_ = normalise(v_);
    if (!isfinite(beta) || !isfinite(alpha_)) {
      return false;
    }
    set_units(beta);
    h_ = v_;
    squared_norm_ = alpha_ * alpha_;
    alphabar_ = alpha_;
    zetabar_ = alpha_ * beta;
    betadd_ = beta;
    residual_ = beta;
    size_of_b_ = std::move(beta);
    return true;
  }

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

  /// The next u, v and alpha; returns beta. What is left of a vector may be rounding, which would count as a column.
  QuarnFloat bidiagonalise() {
    const QuarnFloat noise = 10 * epsilon() * own_norm();
    std::vector<T> image(u_.size());
    multiply(kProduct, v_, image);
    QuarnFloat beta = advance(u_, image, alpha_);
    if (beta <= noise) {
      alpha_ = 0;
      return {};
    }
    image.assign(v_.size(), T());
    multiply(kAdjointProduct, u_, image);
    alpha_ = advance(v_, image, beta);
    if (alpha_ <= noise) {
      alpha_ = 0;
    }
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
    squared_norm_ += beta * beta + alpha_ * alpha_ + damp_ * damp_;
    // The diagonal of the triangle: of its last element the second rotation takes something with the next column.
    if (iterations_ > 1) {
      largest_rho_ = std::max(largest_rho_, rhobar_before);
      smallest_rho_ = iterations_ == 2 ? rhobar_before : std::min(smallest_rho_, rhobar_before);
    }
    last_rho_ = turned;
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
  QuarnFloat size_of_b_, squared_norm_, largest_rho_, smallest_rho_, last_rho_, residual_;
  Integer iterations_ = 0;
};

/// What the entries are given, and where their results go.
template <class T>
struct LsmrArguments {
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
};
template <class T>
struct LsmrResults {
  T* x;
  QuarnFloat* rnorm;
  QuarnFloat* arnorm;
  QuarnFloat* anorm;
  QuarnFloat* acond;
  Integer* itn;
  Integer* istop;
};

template <class T>
class LsmrCall {
 public:
  explicit LsmrCall(LsmrArguments<T> given) : given_(std::move(given)) {}

  /// Returns INFO.
  Integer solve(const LsmrResults<T>& results) {
    if (const Integer wrong = first_wrong_argument(); wrong != 0) {
      return -wrong;
    }
    asked_ = {asked_tolerance(given_.atol), asked_tolerance(given_.btol), given_.conlim};
    digits_ = guarded_digits(std::max(given_.m, given_.n));
    const LsmrEnd end = iterate();
    if (end == LsmrEnd::failed) {
      return 2;
    }
    std::move(best_.x.begin(), best_.x.end(), results.x);
    *results.rnorm = std::move(best_.residual);
    *results.arnorm = std::move(best_.gradient);
    *results.anorm = std::move(best_.norm);
    *results.acond = std::move(best_.condition);
    *results.itn = iterations_;
    *results.istop = end == LsmrEnd::solved            ? 1
                     : end == LsmrEnd::least_squares   ? 2
                     : end == LsmrEnd::ill_conditioned ? 3
                                                       : 7;
    return end == LsmrEnd::exhausted ? 1 : 0;
  }

 private:
  static constexpr int kMostTries = 2;
  static constexpr int kUnits = 30;

  /// An x, and norms that belong to it.
  struct Candidate {
    std::vector<T> x;
    QuarnFloat residual;
    QuarnFloat gradient;
    QuarnFloat norm;
    QuarnFloat condition;
  };

  Integer first_wrong_argument() const {
    return first_wrong({{given_.m < 1, 1},
                        {given_.n < 1, 2},
                        {given_.product == nullptr, 3},
                        {!(given_.damp >= 0) || !isfinite(given_.damp), 6},
                        {!is_tolerance(given_.atol), 7},
                        {!is_tolerance(given_.btol), 8},
                        {!(given_.conlim >= 0), 9},
                        {given_.most < 1, 10}});
  }

  /// Where the norms of x as it is are a little larger than they may be, the iteration goes on. Where roundings have
  /// taken the recurrence away from the true residual, it begins again with twice the digits.
  LsmrEnd iterate() {
    const typename Lsmr<T>::Multiply multiply = [this](Integer what, const T* from, T* to) {
      given_.product(given_.context, what, from, to);
    };
    for (int tries = 1, digits = digits_;; ++tries, digits *= 2) {
      std::optional<Lsmr<T>> iteration;
      // An estimate that is just small enough is seldom of a norm that is.
      LsmrTolerances internal = {asked_.a * QuarnFloat(99, -2), asked_.b * QuarnFloat(99, -2), asked_.condition};
      const Integer before = iterations_;
      for (bool parted = false; !parted;) {
        Candidate now;
        LsmrEnd end = LsmrEnd::failed;
        QuarnFloat residual;
        QuarnFloat gradient;
        {
          const WorkingDigits more(digits);
          if (!iteration) {
            iteration.emplace(given_.m, given_.n, multiply, given_.b, given_.damp);
          }
          end = iteration->go_on(internal, given_.most - before);
          now = {iteration->x(), {}, {}, iteration->norm(), iteration->condition()};
          residual = iteration->residual();
          gradient = iteration->gradient();
        }
        iterations_ = before + iteration->iterations();
        round_elements<T>(given_.n, 1, {now.x.data(), given_.n});
        if (end == LsmrEnd::failed || !find_norms(now)) {
          return LsmrEnd::failed;
        }
        const bool as_promised = end != LsmrEnd::exhausted && holds(end, now);
        parted = 2 * (end == LsmrEnd::solved ? residual : gradient) <
                     (end == LsmrEnd::solved ? now.residual : now.gradient) ||
                 iteration->is_at_end();
        if (as_promised || best_.x.empty() || now.gradient < best_.gradient) {
          best_ = std::move(now);
        }
        if (as_promised) {
          return end;
        }
        if (iterations_ == given_.most || (parted && tries == kMostTries)) {
          return LsmrEnd::exhausted;
        }
        internal.a /= 2;
        internal.b /= 2;
      }
    }
  }

  /// Whether the norms are as the end says, but for roundings of x.
  bool holds(LsmrEnd end, Candidate& at) const {
    if (end != LsmrEnd::solved && end != LsmrEnd::least_squares) {
      return true;
    }
    const QuarnFloat size = at.norm * length_of(given_.n, OneBasedVector<T>(at.x.data(), 1));
    const QuarnFloat rounding = kUnits * epsilon() * size;
    if (end == LsmrEnd::least_squares) {
      return at.gradient <= at.norm * (asked_.a * at.residual + rounding);
    }
    const QuarnFloat size_of_b = length_of(given_.m, OneBasedVector<T>(const_cast<T*>(given_.b), 1));
    return at.residual <= asked_.b * size_of_b + asked_.a * size + rounding;
  }

  /// Of the residual of x with the damping below it, and of its product with the adjoint; false: not finite.
  bool find_norms(Candidate& at) const {
    const auto m = given_.m;
    const auto n = given_.n;
    {
      const WorkingDigits more(digits_);
      std::vector<T> r(static_cast<std::size_t>(m));
      std::vector<T> g(static_cast<std::size_t>(n));
      std::vector<T> own = at.x;
      given_.product(given_.context, kProduct, own.data(), r.data());
      for (Integer i = 0; i < m; ++i) {
        r[std::size_t(i)] = given_.b[i] - r[std::size_t(i)];
      }
      given_.product(given_.context, kAdjointProduct, r.data(), g.data());
      const OneBasedVector<T> damped(own.data(), 1);
      scale(n, given_.damp, damped);
      add_multiple(n, T(-given_.damp), damped, OneBasedVector<T>(g.data(), 1));
      at.residual = quarn::abs(Complex(length_of(m, OneBasedVector<T>(r.data(), 1)), length_of(n, damped)));
      at.gradient = length_of(n, OneBasedVector<T>(g.data(), 1));
    }
    for (QuarnFloat* const norm : {&at.residual, &at.gradient, &at.norm, &at.condition}) {
      *norm *= 1;
    }
    return isfinite(at.residual) && isfinite(at.gradient);
  }

  LsmrArguments<T> given_;
  LsmrTolerances asked_;
  int digits_ = 0;
  Candidate best_;
  Integer iterations_ = 0;
};

}  // namespace
}  // namespace tesk

extern "C" {

void QuarnMPX_dlsmr_(Integer m, Integer n, QuarnRealOperator product, void* context, const QuarnFloat* b,
                     QuarnFloat damp, QuarnFloat atol, QuarnFloat btol, QuarnFloat conlim, Integer most, QuarnFloat* x,
                     QuarnFloat* rnorm, QuarnFloat* arnorm, QuarnFloat* anorm, QuarnFloat* acond, Integer* itn,
                     Integer* istop, Integer* info) {
  tesk::LsmrCall<QuarnFloat> call(
      {m, n, product, context, b, std::move(damp), std::move(atol), std::move(btol), std::move(conlim), most});
  *info = call.solve({x, rnorm, arnorm, anorm, acond, itn, istop});
}

void QuarnMPX_zlsmr_(Integer m, Integer n, QuarnComplexOperator product, void* context, const Complex* b,
                     QuarnFloat damp, QuarnFloat atol, QuarnFloat btol, QuarnFloat conlim, Integer most, Complex* x,
                     QuarnFloat* rnorm, QuarnFloat* arnorm, QuarnFloat* anorm, QuarnFloat* acond, Integer* itn,
                     Integer* istop, Integer* info) {
  tesk::LsmrCall<Complex> call(
      {m, n, product, context, b, std::move(damp), std::move(atol), std::move(btol), std::move(conlim), most});
  *info = call.solve({x, rnorm, arnorm, anorm, acond, itn, istop});
}
}
