// Solutions of linear equations with error bounds: S. M. Rump, Verification methods, Acta Numerica 19 (2010), theorem
// 10.2, with residuals that are rounded once; T. Ogita, S. Oishi, Fast verified solutions of linear systems, Reliable
// Computing 11 (2005).
#include <optional>

#include "quarn/quarnthread.h"
#include "src/proven/approximate_inverse.h"
#include "tesk2mp/proven.h"

namespace tesk::proven {
namespace {

/// With so many digits more than the working digits a matrix of condition 10^D is inverted well enough.
constexpr int kSpareDigits = 10;

template <class T>
class Solver {
 public:
  Solver(Integer n, OneBasedMatrix<T> a, const Uncertainty& of_a) : n_(n), digits_(QuarnDigits()), a_(a), of_a_(of_a) {
    range_.take(n, n, a);
    // Most matrices need no more than an inverse of half the digits; refinement supplies the others.
    const int half = digits_ / 2 + kSpareDigits;
    if (half < digits_) {
      inverse_.emplace(n, a, of_a, half, range_);
    }
    if (!inverse_ || inverse_->norm() > QuarnBound::power_of_ten(-digits_ / 8)) {
      inverse_.emplace(n, a, of_a, digits_ + kSpareDigits, range_);
    }
    range_ = inverse_->range();
  }
  bool is_proven() const { return inverse_->norm() < QuarnBound::power_of_ten(0); }

  /// X := A^-1 B, m columns, with bounds of the errors. Returns false, with some bounds infinite, where not all is
  /// known.
  bool solve(Integer m, OneBasedMatrix<T> b, const Uncertainty& of_b, OneBasedMatrix<T> x,
             OneBasedMatrix<QuarnFloat> error) {
    range_.take(n_, m, b);
    Own<T> residuals(n_, m);
    Own<T> corrections(n_, m);
    const OneBasedMatrix<T> r = residuals.view();
    const OneBasedMatrix<T> y = corrections.view();
    Bounds best(std::size_t(n_) * std::size_t(m), QuarnBound::infinity());
    multiply(m, b, x);
    for (int round = 0; round < kMostRounds; ++round) {
      QuarnCheckInterrupt();
      range_.take(n_, m, x);
      residual(m, b, x, r);
      multiply(m, r, y);
      Bounds next = improved(m, x, r, y, of_b);
      if (round > 0 && !is_better(next, best)) {
        break;
      }
      best = std::move(next);
      for (Integer j = 1; j <= m; ++j) {
        for (Integer i = 1; i <= n_; ++i) {
          x(i, j) = std::move(y(i, j));
        }
      }
      if (is_enough(m, best, x)) {
        break;
      }
    }
    bool known = true;
    for (Integer j = 1; j <= m; ++j) {
      for (Integer i = 1; i <= n_; ++i) {
        const QuarnBound& bound = best[index(i, j)];
        error(i, j) = bound.value();
        known = known && bound.is_finite();
      }
    }
    return known;
  }

 private:
  using Bounds = std::vector<QuarnBound>;
  static constexpr int kMostRounds = 60;

  std::size_t index(Integer i, Integer j) const { return std::size_t(j - 1) * std::size_t(n_) + std::size_t(i - 1); }

  /// Y := R X
  void multiply(Integer m, OneBasedMatrix<T> x, OneBasedMatrix<T> y) {
    exact::multiply_matrices(Op::none, Op::none, n_, m, n_, T(1.0), inverse_->view(), x, T(0.0), y);
  }
  /// R := B - A X, with spare digits, so that its rounding means nothing to what follows.
  void residual(Integer m, OneBasedMatrix<T> b, OneBasedMatrix<T> x, OneBasedMatrix<T> r) {
    const WorkingDigits scope(digits_ + kSpareDigits);
    for (Integer j = 1; j <= m; ++j) {
      copy(n_, b.column(j), r.column(j));
    }
    exact::multiply_matrices(Op::none, Op::none, n_, m, n_, T(-1.0), a_, x, T(1.0), r);
  }

  /// With r the rounded residual of x and y the rounded R r: puts x + y into y, and returns bounds of its errors. With
  /// E = I - R A the exact solution is x + (I - E)^-1 R (b - A x), and (I - E)^-1 v = v + E (I - E)^-1 v.
  Bounds improved(Integer m, OneBasedMatrix<T> x, OneBasedMatrix<T> r, OneBasedMatrix<T> y, const Uncertainty& of_b) {
    const Rounded rounded(digits_, range_);
    const Rounded of_residual(digits_ + kSpareDigits, range_);
    Bounds bounds(std::size_t(n_) * std::size_t(m));
    for (Integer j = 1; j <= m; ++j) {
      QuarnBound residual;
      for (Integer i = 1; i <= n_; ++i) {
        QuarnBound bound = of_residual.error(r(i, j)) + of_b(i, j);
        for (Integer k = 1; k <= n_ && !of_a_.is_zero(); ++k) {
          bound += of_a_(i, k) * QuarnBound(x(k, j));
        }
        residual = std::max(residual, bound);
      }
      QuarnBound largest;
      for (Integer i = 1; i <= n_; ++i) {
        const QuarnBound bound = inverse_->size_of_row(i) * residual + rounded.error(y(i, j));
        largest = std::max(largest, QuarnBound(y(i, j)) + bound);
        bounds[index(i, j)] = bound;
      }
      largest *= over_one_minus(inverse_->norm());
      for (Integer i = 1; i <= n_; ++i) {
        y(i, j) = x(i, j) + y(i, j);
        bounds[index(i, j)] += inverse_->row(i) * largest + rounded.error(y(i, j));
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
  bool is_enough(Integer m, const Bounds& bounds, OneBasedMatrix<T> x) const {
    for (Integer j = 1; j <= m; ++j) {
      for (Integer i = 1; i <= n_; ++i) {
        const QuarnBound unit = QuarnBound(x(i, j)).half_unit(digits_);
        if (bounds[index(i, j)] * QuarnBound::count(100) > unit * QuarnBound::count(101)) {
          return false;
        }
      }
    }
    return true;
  }

  Integer n_;
  int digits_;
  OneBasedMatrix<T> a_;
  Uncertainty of_a_;
  Range range_;
  std::optional<ApproximateInverse<T>> inverse_;
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
  Solver<T> solver(n, {a, lda}, {aerror, ldaerror});
  const OneBasedMatrix<QuarnFloat> errors(error, lderror);
  if (solver.is_proven()) {
    return solver.solve(nrhs, {b, ldb}, {berror, ldberror}, {x, ldx}, errors) ? 0 : 1;
  }
  const QuarnFloat unknown = QuarnBound::infinity().value();
  for (Integer j = 1; j <= nrhs; ++j) {
    for (Integer i = 1; i <= n; ++i) {
      errors(i, j) = unknown;
    }
  }
  return 1;
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
