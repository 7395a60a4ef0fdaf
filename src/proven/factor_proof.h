// A = P^-1 L U with bounds of what the factors and solutions with them are off by, out of the factors alone: |L^-1| and
// |U^-1| are at most the inverses of the comparison matrices, which have the signs that make every term of their
// inverses positive. N. J. Higham, Accuracy and Stability of Numerical Algorithms, sections 8.3, 9.3; S. Oishi, S. M.
// Rump, Fast verification of solutions of matrix equations, Numer. Math. 90 (2002). These bounds grow by some 3 digits
// for each 10 rows, and cost O(n^2): a few more digits pay for them.
#pragma once

#include <algorithm>
#include <optional>
#include <utility>
#include <vector>

#include "src/dense/lu_solve.h"
#include "src/proven/approximate_inverse.h"

namespace tesk::proven {

/// Of an exact matrix A, factorised with `digits` digits.
template <class T>
class FactorProof {
 public:
  FactorProof(Integer n, OneBasedMatrix<T> a, int digits, Range range) : n_(n), digits_(digits), range_(range) {
    const WorkingDigits scope(digits);
    factors_.emplace(n, a);
    range_.take(n, n, factors_->view());
    if (factors_->is_singular() || !range_.is_moderate()) {
      return;
    }
    take_sizes();
    const QuarnBound units = QuarnBound::count(4 * std::uint32_t(n) + 32) * QuarnBound::power_of_ten(1 - digits);
    gamma_ = units * over_one_minus(units);
    spread_ = weights_;
    multiply(spread_);
    solve(spread_);
    norm_ = gamma_ * largest(spread_);
  }

  /// The norm of I - (L U)^-1 P A.
  const QuarnBound& norm() const noexcept { return norm_; }
  const Range& range() const noexcept { return range_; }
  /// The digits of residuals and solutions.
  int digits() const noexcept { return digits_; }

  /// Y := (L U)^-1 P R, m columns.
  void apply(Integer m, OneBasedMatrix<T> r, OneBasedMatrix<T> y) {
    const WorkingDigits scope(digits_);
    for (Integer j = 1; j <= m; ++j) {
      copy(n_, r.column(j), y.column(j));
    }
    solve_factored(Op::none, n_, m, factors_->view(), factors_->pivots(), y);
  }
  /// Bounds of |y - A^-1 r| where apply() made y of a vector that may differ from r by `of_r`, elements from 1 on.
  /// None where something may have underflowed, which is accounted for in sums that are rounded once alone.
  std::vector<QuarnBound> errors(OneBasedVector<T> y, std::vector<QuarnBound> of_r, const Range& range) const {
    if (!range.is_moderate()) {
      std::fill(of_r.begin(), of_r.end(), QuarnBound::infinity());
      return of_r;
    }
    for (Integer k = 1; k <= n_; ++k) {
      std::swap(of_r[std::size_t(k)], of_r[std::size_t(factors_->pivot(k))]);
    }
    solve(of_r);
    std::vector<QuarnBound> sizes(std::size_t(n_) + 1);
    for (Integer i = 1; i <= n_; ++i) {
      sizes[std::size_t(i)] = QuarnBound(y(i));
    }
    const QuarnBound of_triangles = gamma_ * (QuarnBound::count(2) + gamma_) * largest(sizes);
    for (Integer i = 1; i <= n_; ++i) {
      of_r[std::size_t(i)] += of_triangles * spread_[std::size_t(i)];
      sizes[std::size_t(i)] += of_r[std::size_t(i)];
    }
    const QuarnBound of_factors = gamma_ * largest(sizes) * over_one_minus(norm_);
    for (Integer i = 1; i <= n_; ++i) {
      of_r[std::size_t(i)] += of_factors * spread_[std::size_t(i)];
    }
    return of_r;
  }

 private:
  using Bounds = std::vector<QuarnBound>;

  /// |L| below the diagonal and |U| above it, bounds of the 1 / |diagonal| of U, and weights: for each column a power
  /// of ten near 1 / its largest element, so that the scale of the unknowns means nothing.
  void take_sizes() {
    const OneBasedMatrix<T> factors = factors_->view();
    sizes_.resize(std::size_t(n_) * std::size_t(n_));
    reciprocals_.resize(std::size_t(n_) + 1);
    weights_.resize(std::size_t(n_) + 1);
    for (Integer j = 1; j <= n_; ++j) {
      QuarnBound* column = column_of_sizes(j);
      QuarnBound most;
      for (Integer i = 1; i <= n_; ++i) {
        column[i - 1] = QuarnBound(factors(i, j));
        most = i <= j ? std::max(most, column[i - 1]) : most;
      }
      // The modulus and the quotient are rounded four times.
      const QuarnBound quotient(QuarnFloat(1) / modulus(factors(j, j)));
      reciprocals_[std::size_t(j)] = quotient + quotient * QuarnBound::power_of_ten(2 - digits_);
      weights_[std::size_t(j)] = QuarnBound::power_of_ten(-most.exponent());
    }
  }
  QuarnBound* column_of_sizes(Integer j) { return sizes_.data() + std::size_t(j - 1) * std::size_t(n_); }
  const QuarnBound* column_of_sizes(Integer j) const { return sizes_.data() + std::size_t(j - 1) * std::size_t(n_); }

  /// v := |L| |U| v
  void multiply(Bounds& v) const {
    for (Integer j = 1; j <= n_; ++j) {
      const QuarnBound* column = column_of_sizes(j);
      const QuarnBound element = v[std::size_t(j)];
      for (Integer i = 1; i < j; ++i) {
        v[std::size_t(i)] += column[i - 1] * element;
      }
      v[std::size_t(j)] = column[j - 1] * element;
    }
    for (Integer j = n_; j >= 1; --j) {
      const QuarnBound* column = column_of_sizes(j);
      for (Integer i = j + 1; i <= n_; ++i) {
        v[std::size_t(i)] += column[i - 1] * v[std::size_t(j)];
      }
    }
  }
  /// v := the inverse comparison matrices of U and L times v: not below |(L U)^-1| v.
  void solve(Bounds& v) const {
    for (Integer j = 1; j <= n_; ++j) {
      const QuarnBound* column = column_of_sizes(j);
      for (Integer i = j + 1; i <= n_; ++i) {
        v[std::size_t(i)] += column[i - 1] * v[std::size_t(j)];
      }
    }
    for (Integer j = n_; j >= 1; --j) {
      const QuarnBound* column = column_of_sizes(j);
      v[std::size_t(j)] *= reciprocals_[std::size_t(j)];
      for (Integer i = 1; i < j; ++i) {
        v[std::size_t(i)] += column[i - 1] * v[std::size_t(j)];
      }
    }
  }
  /// The largest element over its weight.
  QuarnBound largest(const Bounds& v) const {
    QuarnBound result;
    for (Integer i = 1; i <= n_; ++i) {
      const std::int64_t exponent = weights_[std::size_t(i)].exponent();
      result = std::max(result, v[std::size_t(i)] * QuarnBound::power_of_ten(-exponent));
    }
    return result;
  }

  Integer n_;
  int digits_;
  Range range_;
  std::optional<Factors<T>> factors_;
  Bounds sizes_;
  Bounds reciprocals_;
  Bounds weights_;
  Bounds spread_;  // comparison inverses times |L| |U| times the weights
  QuarnBound gamma_ = QuarnBound::infinity();
  QuarnBound norm_ = QuarnBound::infinity();
};

}  // namespace tesk::proven
