// Solutions of linear equations with error bounds: S. M. Rump, Verification methods, Acta Numerica 19 (2010), theorem
// 10.2, with residuals that are rounded once; T. Ogita, S. Oishi, Fast verified solutions of linear systems, Reliable
// Computing 11 (2005).
#include <optional>

#include "quarn/quarnthread.h"
#include "src/dense/guard_digits.h"
#include "src/proven/approximate_inverse.h"
#include "src/proven/factor_proof.h"
#include "tesk2mp/proven.h"

namespace tesk::proven {
namespace {

template <class T>
class Solver {
 public:
  Solver(Integer n, Integer m, OneBasedMatrix<T> a, const Uncertainty& of_a, OneBasedMatrix<T> b,
         const Uncertainty& of_b, OneBasedMatrix<T> x, OneBasedMatrix<QuarnFloat> error)
      : n_(n), m_(m), digits_(QuarnDigits()), a_(a), of_a_(of_a), b_(b), of_b_(of_b), x_(x), error_(error) {
    range_.take(n, n, a);
    range_.take(n, m, b);
  }

  /// X := A^-1 B with bounds of the errors. Returns false, with some bounds infinite, where not all is known.
  bool solve() { return solve_by_factors() || solve_by_inverse(); }

 private:
  using Bounds = std::vector<QuarnBound>;
  static constexpr int kMostRounds = 60;

  std::size_t index(Integer i, Integer j) const { return std::size_t(j - 1) * std::size_t(n_) + std::size_t(i - 1); }

  /// Of exact data, by the factors of A: with so many digits that the bounds, which grow with n, mean nothing.
  bool solve_by_factors() {
    constexpr int kAttempts = 2;
    const QuarnBound enough = QuarnBound::power_of_ten(-4);
    const std::int64_t most = 2 * std::int64_t(digits_) + 6 * kSpareDigits;
    // Enough for most matrices of condition numbers to 10^(D/2).
    std::int64_t digits = std::max<std::int64_t>(digits_, 14 + 3 * std::int64_t(n_) / 10 + digits_ / 2);
    if (!of_a_.is_zero() || !of_b_.is_zero() || m_ > n_ / 4 + 1 || !range_.is_moderate()) {
      return false;
    }
    for (int attempt = 0; attempt < kAttempts && digits <= most; ++attempt) {
      FactorProof<T> proof(n_, a_, int(digits), range_);
      if (!proof.norm().is_finite()) {
        return false;
      }
      if (proof.norm() < enough) {
        return refine(proof);
      }
      digits += proof.norm().exponent() + 8;
    }
    return false;
  }

  bool solve_by_inverse() {
    std::optional<ApproximateInverse<T>> inverse;
    // Most matrices need no more than an inverse of half the digits; refinement supplies the others.
    const int half = digits_ / 2 + kSpareDigits;
    if (half < digits_) {
      inverse.emplace(n_, a_, of_a_, half, range_);
    }
    if (!inverse || inverse->norm() > QuarnBound::power_of_ten(-digits_ / 8)) {
      inverse.emplace(n_, a_, of_a_, digits_ + kSpareDigits, range_);
    }
    if (inverse->norm() < QuarnBound::power_of_ten(0)) {
      return refine(*inverse);
    }
    set_errors(Bounds(std::size_t(n_) * std::size_t(m_), QuarnBound::infinity()));
    return false;
  }

  /// x := x + y with the solution y for the residual of x, until the bounds do not shrink.
  template <class Proof>
  bool refine(Proof& proof) {
    range_ = proof.range();
    OwnMatrix<T> residuals(n_, m_);
    OwnMatrix<T> corrections(n_, m_);
    const OneBasedMatrix<T> r = residuals.view();
    const OneBasedMatrix<T> y = corrections.view();
    Bounds best(std::size_t(n_) * std::size_t(m_), QuarnBound::infinity());
    proof.apply(m_, b_, x_);
    round_elements(n_, m_, x_);
    for (int round = 0; round < kMostRounds; ++round) {
      QuarnCheckInterrupt();
      range_.take(n_, m_, x_);
      residual(proof.digits(), r);
      proof.apply(m_, r, y);
      Bounds next = improved(proof, r, y);
      if (round > 0 && !is_better(next, best)) {
        break;
      }
      best = std::move(next);
      for (Integer j = 1; j <= m_; ++j) {
        for (Integer i = 1; i <= n_; ++i) {
          x_(i, j) = std::move(y(i, j));
        }
      }
      if (is_enough(best)) {
        break;
      }
    }
    return set_errors(best);
  }

  /// Are all of them finite?
  bool set_errors(const Bounds& bounds) {
    bool known = true;
    for (Integer j = 1; j <= m_; ++j) {
      for (Integer i = 1; i <= n_; ++i) {
        const QuarnBound& bound = bounds[index(i, j)];
        error_(i, j) = bound.value();
        known = known && bound.is_finite();
      }
    }
    return known;
  }

  /// R := B - A X
  void residual(int digits, OneBasedMatrix<T> r) {
    const WorkingDigits scope(digits);
    for (Integer j = 1; j <= m_; ++j) {
      copy(n_, b_.column(j), r.column(j));
    }
    exact::multiply_matrices(Op::none, Op::none, n_, m_, n_, T(-1.0), a_, x_, T(1.0), r);
  }

  /// With r the rounded residual of x and y near A^-1 r: puts x + y into y, and returns bounds of its errors.
  template <class Proof>
  Bounds improved(const Proof& proof, OneBasedMatrix<T> r, OneBasedMatrix<T> y) {
    range_.take(n_, m_, r);
    range_.take(n_, m_, y);
    const Rounded rounded(digits_, range_);
    const Rounded of_residual(proof.digits(), range_);
    Bounds bounds(std::size_t(n_) * std::size_t(m_));
    for (Integer j = 1; j <= m_; ++j) {
      Bounds of_r(std::size_t(n_) + 1);
      Bounds sizes;
      for (Integer k = 1; k <= n_ && !of_a_.is_zero(); ++k) {
        sizes.emplace_back(x_(k, j));
      }
      for (Integer i = 1; i <= n_; ++i) {
        QuarnBound& bound = of_r[std::size_t(i)];
        bound = of_residual.error(r(i, j)) + of_b_(i, j);
        for (Integer k = 1; k <= n_ && !of_a_.is_zero(); ++k) {
          bound += of_a_(i, k) * sizes[std::size_t(k - 1)];
        }
      }
      const Bounds of_y = proof.errors(y.column(j), std::move(of_r), range_);
      for (Integer i = 1; i <= n_; ++i) {
        y(i, j) = x_(i, j) + y(i, j);
        bounds[index(i, j)] = of_y[std::size_t(i)] + rounded.error(y(i, j));
      }
    }
    return bounds;
  }

  /// Is some bound smaller by a digit?
  static bool is_better(const Bounds& next, const Bounds& best) {
    for (std::size_t k = 0; k < next.size(); ++k) {
      if (next[k] * QuarnBound::count(10) < best[k]) {
        return true;
      }
    }
    return false;
  }
  /// Little more than what rounding the result costs?
  bool is_enough(const Bounds& bounds) const {
    for (Integer j = 1; j <= m_; ++j) {
      for (Integer i = 1; i <= n_; ++i) {
        const QuarnBound unit = QuarnBound(x_(i, j)).half_unit(digits_);
        if (bounds[index(i, j)] * QuarnBound::count(100) > unit * QuarnBound::count(101)) {
          return false;
        }
      }
    }
    return true;
  }

  Integer n_;
  Integer m_;
  int digits_;
  OneBasedMatrix<T> a_;
  Uncertainty of_a_;
  OneBasedMatrix<T> b_;
  Uncertainty of_b_;
  OneBasedMatrix<T> x_;
  OneBasedMatrix<QuarnFloat> error_;
  Range range_;
};

/// Checks, then the solution; returns INFO.
template <class T>
Integer solve(Integer n, Integer nrhs, T* a, Integer lda, QuarnFloat* aerror, Integer ldaerror, T* b, Integer ldb,
              QuarnFloat* berror, Integer ldberror, T* x, Integer ldx, QuarnFloat* error, Integer lderror) {
  const Integer least = std::max<Integer>(1, n);
  const Integer wrong = first_wrong({{n < 0, 1},
                                     {nrhs < 0, 2},
                                     {lda < least, 4},
                                     {ldaerror != 0 && ldaerror < least, 6},
                                     {ldb < least, 8},
                                     {ldberror != 0 && ldberror < least, 10},
                                     {ldx < least, 12},
                                     {lderror < least, 14}});
  if (wrong != 0 || n == 0 || nrhs == 0) {
    return -wrong;
  }
  Solver<T> solver(n, nrhs, {a, lda}, {aerror, ldaerror}, {b, ldb}, {berror, ldberror}, {x, ldx}, {error, lderror});
  return solver.solve() ? 0 : 1;
}

}  // namespace
}  // namespace tesk::proven

extern "C" {

void QuarnMPX_dproven_solve_(Integer n, Integer nrhs, QuarnFloat* a, Integer lda, QuarnFloat* aerror, Integer ldaerror,
                             QuarnFloat* b, Integer ldb, QuarnFloat* berror, Integer ldberror, QuarnFloat* x,
                             Integer ldx, QuarnFloat* error, Integer lderror, Integer* info) {
  *info = tesk::proven::solve(n, nrhs, a, lda, aerror, ldaerror, b, ldb, berror, ldberror, x, ldx, error, lderror);
}

void QuarnMPX_zproven_solve_(Integer n, Integer nrhs, Complex* a, Integer lda, QuarnFloat* aerror, Integer ldaerror,
                             Complex* b, Integer ldb, QuarnFloat* berror, Integer ldberror, Complex* x, Integer ldx,
                             QuarnFloat* error, Integer lderror, Integer* info) {
  *info = tesk::proven::solve(n, nrhs, a, lda, aerror, ldaerror, b, ldb, berror, ldberror, x, ldx, error, lderror);
}
}
