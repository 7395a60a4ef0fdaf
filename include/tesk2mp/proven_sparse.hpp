// Solutions of sparse linear equations with proven error bounds, by sparse factors. Not part of tesk2mp.hpp.
#pragma once

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <functional>
#include <optional>
#include <span>
#include <utility>
#include <vector>

#include "quarn/complex.h"
#include "quarn/exact.h"
#include "tesk2mp/partial_sums.hpp"
#include "tesk2mp/proven.hpp"
#include "tesk2mp/sparse_direct.hpp"

namespace tesk2mp::proven {
namespace detail {

/// Far enough from the ends of the range for all that is formed here.
inline bool is_moderate(const QuarnBound& size) {
  constexpr std::int64_t kFarthest = 100'000'000;
  return size.is_finite() && (size.is_zero() || std::abs(size.exponent()) < kFarthest);
}

/// P A Q = L U - F, |F| <= g |L| |U|, of an exact sparse matrix, with what that proves of solutions. |(L U)^-1| is at
/// most the product of the inverses of the comparison matrices: N. J. Higham, Accuracy and Stability of Numerical
/// Algorithms, sections 8.3, 9.3; of Cholesky's factors with U = D L^H, section 10.1.
template <Scalar T>
class SparseFactorProof {
 public:
  /// The factors with so many digits.
  SparseFactorProof(SparseLU<T> factors, int digits) : rows_(factors.row_order()), columns_(factors.column_order()) {
    const Digits scope(digits);
    take(factors.lower(), false);
    take(factors.upper(), true);
    conclude(digits);
    solve_ = [kept = std::move(factors)](std::span<T> x) { kept.solve(x); };
  }
  SparseFactorProof(SparseCholesky<T> factors, int digits) : rows_(factors.row_order()), columns_(rows_) {
    const Digits scope(digits);
    const std::vector<T> pivots = factors.diagonal();
    const SparseMatrix<T> lower = factors.lower();
    take(lower, false);
    SparseMatrix<T> diagonal(pivots.size());
    for (std::size_t j = 0; j < pivots.size(); ++j) {
      diagonal.add(j, j, pivots[j]);
    }
    take(diagonal, true);
    for (std::size_t k = 0; k < lower.entries(); ++k) {
      if (const std::size_t j = lower.column(k); j != lower.row(k)) {
        upper_[j].push_back({lower.row(k), QuarnBound(pivots[j]) * QuarnBound(lower.value(k))});
      }
    }
    conclude(digits);
    solve_ = [kept = std::move(factors)](std::span<T> x) { kept.solve(x); };
  }

  /// A bound of the weighted norm of I - (L U)^-1 P A Q.
  const QuarnBound& norm() const noexcept { return norm_; }
  /// x := near A^-1 x
  void apply(std::vector<T>& x) const { solve_(x); }
  /// Bounds of |A^-1 r|, out of those of |r|.
  std::vector<QuarnBound> bounds(const std::vector<QuarnBound>& of_r) const {
    Bounds z(of_r.size());
    for (std::size_t k = 0; k < z.size(); ++k) {
      z[k] = of_r[rows_[k]];
    }
    solve(z);
    const QuarnBound of_factors = gamma_ * largest(z) * over_one_minus(norm_);
    Bounds result(z.size());
    for (std::size_t k = 0; k < z.size(); ++k) {
      result[columns_[k]] = z[k] + of_factors * spread_[k];
    }
    return result;
  }

 private:
  using Bounds = std::vector<QuarnBound>;
  struct Element {
    std::size_t column;
    QuarnBound size;
  };

  /// Sizes of the elements of a triangle: of L beside its diagonal, of U with that and its reciprocals.
  void take(const SparseMatrix<T>& triangle, bool is_upper) {
    std::vector<std::vector<Element>>& rows = is_upper ? upper_ : lower_;
    rows.resize(triangle.order());
    over_pivots_.resize(triangle.order());
    for (std::size_t k = 0; k < triangle.entries(); ++k) {
      const std::size_t i = triangle.row(k);
      const T& value = triangle.value(k);
      const QuarnBound size(value);
      is_moderate_ = is_moderate_ && is_moderate(size);
      if (triangle.column(k) != i) {
        rows[i].push_back({triangle.column(k), size});
      } else if (is_upper) {
        // The modulus and the quotient are rounded a few times.
        const QuarnBound quotient(Real(1) / tesk2mp::detail::part_size(value));
        over_pivots_[i] = quotient + quotient * QuarnBound::power_of_ten(2 - QuarnDigits());
        rows[i].push_back({i, size});
      }
    }
  }

  void conclude(int digits) {
    const std::size_t n = rows_.size();
    Bounds most(n);
    for (std::size_t i = 0; i < n; ++i) {
      for (const Element& element : upper_[i]) {
        most[element.column] = std::max(most[element.column], element.size);
      }
    }
    for (std::size_t j = 0; j < n; ++j) {
      weights_.push_back(QuarnBound::power_of_ten(-most[j].exponent()));
    }
    // k u / (1 - k u), with k = 8 n + 64 half units for complex arithmetic and the rounding of A too.
    const QuarnBound units = QuarnBound::count(4 * std::uint32_t(n) + 32) * QuarnBound::power_of_ten(1 - digits);
    gamma_ = units * over_one_minus(units);
    spread_ = weights_;
    multiply(spread_);
    solve(spread_);
    norm_ = is_moderate_ ? gamma_ * largest(spread_) : QuarnBound::infinity();
  }

  /// v := |L| |U| v
  void multiply(Bounds& v) const {
    for (std::size_t i = 0; i < v.size(); ++i) {
      QuarnBound sum;
      for (const Element& element : upper_[i]) {
        sum += element.size * v[element.column];
      }
      v[i] = sum;
    }
    for (std::size_t i = v.size(); i-- > 0;) {
      for (const Element& element : lower_[i]) {
        v[i] += element.size * v[element.column];
      }
    }
  }
  /// v := the inverse comparison matrices of U and L times v: not below |(L U)^-1| v.
  void solve(Bounds& v) const {
    for (std::size_t i = 0; i < v.size(); ++i) {
      for (const Element& element : lower_[i]) {
        v[i] += element.size * v[element.column];
      }
    }
    for (std::size_t i = v.size(); i-- > 0;) {
      for (const Element& element : upper_[i]) {
        v[i] += element.column == i ? QuarnBound() : element.size * v[element.column];
      }
      v[i] *= over_pivots_[i];
    }
  }
  /// The largest element over its weight.
  QuarnBound largest(const Bounds& v) const {
    QuarnBound result;
    for (std::size_t i = 0; i < v.size(); ++i) {
      result = std::max(result, v[i] * QuarnBound::power_of_ten(-weights_[i].exponent()));
    }
    return result;
  }

  std::function<void(std::span<T>)> solve_;
  std::vector<std::size_t> rows_;
  std::vector<std::size_t> columns_;
  bool is_moderate_ = true;
  std::vector<std::vector<Element>> lower_;
  std::vector<std::vector<Element>> upper_;  // the diagonal as well
  Bounds over_pivots_;
  Bounds weights_;
  Bounds spread_;  // comparison inverses times |L| |U| times the weights
  QuarnBound gamma_ = QuarnBound::infinity();
  QuarnBound norm_ = QuarnBound::infinity();
};

/// Factors with so many digits that they prove something; none where `most` do not.
template <Scalar T>
std::optional<SparseFactorProof<T>> sparse_factors(const SparseMatrix<T>& a, int most) {
  constexpr int kLeast = 36;
  bool may_be_definite = is_hermitian(a);
  const std::vector<std::size_t> order =
      may_be_definite ? least_fill_order(a, FillOf::symmetric) : std::vector<std::size_t>();
  std::optional<SparseFactorProof<T>> proof;
  for (std::int64_t digits = kLeast; digits <= most;) {
    const Digits scope{int(digits)};
    try {
      if (may_be_definite) {
        try {
          proof.emplace(SparseCholesky<T>(lower_triangle(a), order), int(digits));
        } catch (const NumericalFailure&) {
          may_be_definite = false;
        }
      }
      if (!proof) {
        proof.emplace(SparseLU<T>(a, order), int(digits));
      }
      if (proof->norm() < QuarnBound::power_of_ten(-4)) {
        return proof;
      }
      digits = proof->norm().is_finite() ? digits + std::max<std::int64_t>(0, proof->norm().exponent()) + 8
                                         : std::int64_t(most) + 1;
    } catch (const NumericalFailure&) {  // singular to so many digits
      digits *= 2;
    }
    proof.reset();
  }
  return std::nullopt;
}

/// b - A x, each element with one rounding: b is one more column of A.
template <Scalar T>
class SparseResidual {
 public:
  explicit SparseResidual(const SparseMatrix<T>& a) : x_(a.order() + 1), r_(a.order() + 1) {
    const std::size_t n = a.order();
    std::size_t k = 0;
    for (std::size_t i = 0; i < n; ++i) {
      for (; k < a.entries() && a.row(k) == i; ++k) {
        add(i, a.column(k), a.value(k));
      }
      of_b_.push_back(values_.size());
      add(i, n, T());
    }
  }

  void take(const std::vector<T>& b) {
    for (std::size_t i = 0; i < b.size(); ++i) {
      values_[of_b_[i]] = b[i];
    }
  }
  /// The residual, at the working digits, and bounds of the sizes of its elements before they were rounded.
  std::vector<QuarnBound> residual(const std::vector<T>& x, std::vector<T>& r) {
    for (std::size_t i = 0; i < x.size(); ++i) {
      x_[i] = -x[i];
    }
    x_.back() = T(1);
    QuarnSparseProduct(x_.size(), {values_.size(), values_.data(), rows_.data(), columns_.data()}, x_.data(),
                       r_.data());
    std::copy(r_.begin(), r_.end() - 1, r.begin());
    std::vector<QuarnBound> sizes;
    sizes.reserve(r.size());
    for (const T& each : r) {
      sizes.push_back(QuarnBound(each) + rounding(each, QuarnDigits()));
    }
    return sizes;
  }
  /// Half a unit of the last place of each part.
  static QuarnBound rounding(const Real& x, int digits) { return QuarnBound(x).half_unit(digits); }
  static QuarnBound rounding(const Complex& z, int digits) {
    return hypotenuse(rounding(z.re, digits), rounding(z.im, digits));
  }

 private:
  void add(std::size_t row, std::size_t column, const T& value) {
    values_.push_back(value);
    rows_.push_back(tesk2mp::detail::count_of(row + 1));
    columns_.push_back(tesk2mp::detail::count_of(column + 1));
  }

  std::vector<T> values_;
  std::vector<Integer> rows_;
  std::vector<Integer> columns_;
  std::vector<std::size_t> of_b_;
  std::vector<T> x_;
  std::vector<T> r_;
};

/// x near the solution, refined until no digit of its `digits` is in doubt, and bounds of its elements' errors.
template <Scalar T>
std::vector<QuarnBound> refine(const SparseFactorProof<T>& proof, SparseResidual<T>& equations, int digits,
                               std::vector<T>& x) {
  constexpr int kMostPasses = 4;
  constexpr int kMostRounds = 60;
  constexpr std::int64_t kMostDigits = 1'000'000;
  const std::size_t n = x.size();
  std::vector<QuarnBound> bounds;
  std::vector<T> r(n);
  std::int64_t of_x = digits + 10;
  for (int attempt = 0; attempt < kMostPasses; ++attempt) {
    const Digits scope{int(std::min(kMostDigits, of_x))};
    QuarnBound former = QuarnBound::infinity();
    for (int round = 0;; ++round) {
      const std::vector<QuarnBound> of_r = equations.residual(x, r);
      const QuarnBound largest = *std::max_element(of_r.begin(), of_r.end());
      if (round + 1 == kMostRounds || largest.is_zero() || largest * QuarnBound::count(10) > former) {
        bounds = proof.bounds(of_r);
        break;
      }
      former = largest;
      proof.apply(r);
      for (std::size_t i = 0; i < n; ++i) {
        x[i] = x[i] + r[i];
      }
    }
    std::int64_t missing = 0;
    for (std::size_t i = 0; i < n; ++i) {
      const QuarnBound size(x[i]);
      if (!is_moderate(size)) {  // a product may have underflowed
        return std::vector<QuarnBound>(n, QuarnBound::infinity());
      }
      if (!size.is_zero() && bounds[i].is_finite() && !bounds[i].is_zero()) {
        missing = std::max(missing, bounds[i].exponent() - (size.exponent() - digits - 3));
      }
    }
    if (missing == 0) {
      break;
    }
    of_x += std::min<std::int64_t>(missing + 5, 4 * std::int64_t(digits) + 400);
  }
  return bounds;
}

}  // namespace detail

/// The solutions of A X = B for a sparse A, by sparse factors, with |X - exact| bounded: the data are exact. Where the
/// working digits do not suffice, or 8 D + 500 digits do not for factors, the bounds are infinite. Throws
/// InvalidArgument for an entry that is given twice. One factorisation, of Cholesky where A is Hermitian and that
/// finds it positive definite; two triangular solutions and a product with A for each column and step of refinement.
///
/// With P A Q = L U - F and M the product of the inverses of the comparison matrices of U and L, which is not below
/// |(L U)^-1|, and weights w: s = max (M |F| w)_i / w_i < 1 proves that A is regular, and with the residual r of x the
/// error is at most z + M |F| w max(z_i / w_i) / (1 - s), z = M |P r|, in the order of Q. x is refined with so many
/// digits more that what M overestimates means nothing.
template <Scalar T>
BoundedMatrix<T> solve(const SparseMatrix<T>& given, const Matrix<T>& b) {
  const char* routine = tesk2mp::detail::name<T>("SPARSE_LU", "ZSPARSE_LU");
  SparseMatrix<T> a = given.storage() == Storage::general ? given : whole(given);
  static_cast<void>(a.canonicalise(Duplicates::fail));
  const std::size_t n = a.order();
  const std::size_t m = b.columns();
  tesk2mp::detail::require(b.rows() == n, routine, 2, "a right-hand side of ", b.rows(), " rows for ", n, " equations");
  Matrix<T> solution(n, m);
  Matrix<Real> errors(n, m);
  std::fill(errors.data(), errors.data() + n * m, QuarnBound::infinity().value());
  const int digits = QuarnDigits();
  constexpr std::int64_t kMostDigits = 1'000'000;
  const auto is_moderate = [](const T& x) { return detail::is_moderate(QuarnBound(x)); };
  if (a.entries() == 0 || m == 0 || !std::all_of(a.values().begin(), a.values().end(), is_moderate) ||
      !std::all_of(b.data(), b.data() + n * m, is_moderate)) {
    return {std::move(solution), std::move(errors)};
  }
  const auto proof = detail::sparse_factors(a, int(std::min(kMostDigits, 8 * std::int64_t(digits) + 500)));
  if (!proof) {
    return {std::move(solution), std::move(errors)};
  }
  detail::SparseResidual<T> equations(a);
  for (std::size_t j = 0; j < m; ++j) {
    equations.take(std::vector<T>(b.data() + j * n, b.data() + (j + 1) * n));
    std::vector<T> x(n);
    const std::vector<QuarnBound> bounds = detail::refine(*proof, equations, digits, x);
    for (std::size_t i = 0; i < n; ++i) {
      solution(i, j) = x[i] * T(Real(1));
      errors(i, j) = (bounds[i] + detail::SparseResidual<T>::rounding(solution(i, j), digits)).value();
    }
  }
  return {std::move(solution), std::move(errors)};
}

/// The same of one right-hand side.
///
/// @code
/// const auto x = tesk2mp::proven::solve(a, b);  // a: SparseMatrix<Real>
/// @endcode
template <Scalar T>
std::vector<Bounded<T>> solve(const SparseMatrix<T>& a, const std::vector<T>& b) {
  Matrix<T> column(b.size(), 1);
  std::copy(b.begin(), b.end(), column.data());
  const BoundedMatrix<T> x = proven::solve(a, column);
  std::vector<Bounded<T>> result;
  for (std::size_t i = 0; i < b.size(); ++i) {
    result.push_back(x(i, 0));
  }
  return result;
}

}  // namespace tesk2mp::proven
