// What the methods for symmetric systems learn of the largest eigenvalue of M^-1 A in size: the Lanczos process, which
// conjugate gradients are too, makes it tridiagonal, and eigenvalues of the tridiagonal matrix lie between its own. No
// norm of M^-1 A is less. G. H. Golub, C. F. Van Loan, Matrix Computations, sections 8.4 and 10.1.
#pragma once

#include <algorithm>

#include "src/sparse/solver.h"

namespace tesk {

/// Iterations after a start that are looked at; the largest eigenvalues show first.
inline constexpr Integer kRitzIterations = 25;
/// Behind the vectors of the method: alpha and beta of these iterations.
inline constexpr Integer ritz_constants(Integer /*m*/) { return 2 * kRitzIterations; }

template <class T>
class RitzEstimate {
 public:
  explicit RitzEstimate(const Solver<T>& solver) noexcept : solver_(solver) {}

  /// Takes the diagonal element k = 1, 2, ... since the start, and the element left of it, 0 of the first. k comes from
  /// the caller's WORK.
  void take(Integer k, const QuarnFloat& diagonal, const QuarnFloat& beside) const {
    if (!solver_.measures_growth() || k < 1 || k > kRitzIterations) {
      return;
    }
    alpha(k) = diagonal;
    beta(k) = beside;
    for (const int sign : {1, -1}) {
      raise(k, sign);
    }
  }

 private:
  QuarnFloat& alpha(Integer i) const { return real_part(solver_.constants()[i - 1]); }
  QuarnFloat& beta(Integer i) const { return real_part(solver_.constants()[kRitzIterations + i - 1]); }

  /// Has `sign` times the tridiagonal matrix of order k an eigenvalue above x > 0? By the signs of its LDL^T factors.
  bool has_above(Integer k, int sign, const QuarnFloat& x) const {
    QuarnFloat pivot;
    for (Integer i = 1; i <= k; ++i) {
      const QuarnFloat fill = i == 1 ? QuarnFloat() : beta(i) / pivot * beta(i);
      pivot = sign * alpha(i) - x - fill;
      if (!(pivot < 0)) {
        return pivot >= 0;
      }
    }
    return false;
  }

  /// SIGMAX := a number close below the largest eigenvalue, if that is more.
  void raise(Integer k, int sign) const {
    constexpr int kHalvings = 10;  // three decimal places
    QuarnFloat& low = solver_.state()[Place::sigmax];
    if (!has_above(k, sign, low)) {
      return;
    }
    QuarnFloat high;
    for (Integer i = 1; i <= k; ++i) {
      high = std::max(high, sign * alpha(i) + fabs(beta(i)) + (i < k ? fabs(beta(i + 1)) : QuarnFloat()));
    }
    for (int halving = 0; halving < kHalvings && isfinite(high); ++halving) {
      const QuarnFloat middle = low + (high - low) / 2;
      (has_above(k, sign, middle) ? low : high) = middle;
    }
  }

  const Solver<T>& solver_;
};

}  // namespace tesk
