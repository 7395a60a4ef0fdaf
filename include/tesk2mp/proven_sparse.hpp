// Solutions of sparse linear equations with proven error bounds, by sparse factors. Not part of tesk2mp.hpp.
#pragma once

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <optional>
#include <utility>
#include <vector>

#include "quarn/complex.h"
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
/// Algorithms, sections 8.3, 9.3.
template <Scalar T>
class SparseFactorProof {
 public:
  /// The factors with so many digits.
  SparseFactorProof(SparseLU<T> factors, int digits)
      : factors_(std::move(factors)), rows_(factors_.row_order()), columns_(factors_.column_order()) {
    const Digits scope(digits);
    const std::size_t n = rows_.size();
    lower_ = rows_of(factors_.lower(), true);
    upper_ = rows_of(factors_.upper(), false);
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

  /// A bound of the weighted norm of I - (L U)^-1 P A Q.
  const QuarnBound& norm() const noexcept { return norm_; }
  /// x := near A^-1 x
  void apply(std::vector<T>& x) const { factors_.solve(std::span<T>(x)); }
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

  /// Sizes of the elements of a triangle beside its diagonal; that of U as reciprocals.
  std::vector<std::vector<Element>> rows_of(const SparseMatrix<T>& triangle, bool unit) {
    std::vector<std::vector<Element>> rows(triangle.order());
    over_pivots_.resize(triangle.order());
    for (std::size_t k = 0; k < triangle.entries(); ++k) {
      const std::size_t i = triangle.row(k);
      const T& value = triangle.value(k);
      const QuarnBound size(value);
      is_moderate_ = is_moderate_ && is_moderate(size);
      if (triangle.column(k) != i) {
        rows[i].push_back({triangle.column(k), size});
      } else if (!unit) {
        // The modulus and the quotient are rounded a few times.
        const QuarnBound quotient(Real(1) / tesk2mp::detail::part_size(value));
        over_pivots_[i] = quotient + quotient * QuarnBound::power_of_ten(2 - QuarnDigits());
        rows[i].push_back({i, size});
      }
    }
    return rows;
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

  SparseLU<T> factors_;
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
  const std::vector<std::size_t> order =
      is_hermitian(a) ? least_fill_order(a, FillOf::symmetric) : std::vector<std::size_t>();
  std::optional<SparseFactorProof<T>> proof;
  for (std::int64_t digits = kLeast; digits <= most;) {
    try {
      const Digits scope{int(digits)};
      proof.emplace(SparseLU<T>(a, order), int(digits));
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

}  // namespace detail

/// The solution of A x = b for a sparse A, by sparse factors, with |x - exact| bounded: the data are exact. Where the
/// working digits do not suffice, or 8 D + 500 digits do not for factors, the bounds are infinite. Throws
/// InvalidArgument for an entry that is given twice.
///
/// With P A Q = L U - F and M the product of the inverses of the comparison matrices of U and L, which is not below
/// |(L U)^-1|, and weights w: s = max (M |F| w)_i / w_i < 1 proves that A is regular, and with the residual r of x the
/// error is at most z + M |F| w max(z_i / w_i) / (1 - s), z = M |P r|, in the order of Q. x is refined with so many
/// digits more that what M overestimates means nothing.
///
/// @code
/// const auto x = tesk2mp::proven::solve(a, b);  // a: SparseMatrix<Real>
/// @endcode
template <Scalar T>
std::vector<Bounded<T>> solve(const SparseMatrix<T>& given, const std::vector<T>& b) {
  const char* routine = tesk2mp::detail::name<T>("SPARSE_LU", "ZSPARSE_LU");
  SparseMatrix<T> a = given.storage() == Storage::general ? given : whole(given);
  static_cast<void>(a.canonicalise(Duplicates::fail));
  const std::size_t n = a.order();
  tesk2mp::detail::require(b.size() == n, routine, 2, "a right-hand side of ", b.size(), " rows for ", n, " equations");
  std::vector<Bounded<T>> result(n);
  const int digits = QuarnDigits();
  constexpr int kAttempts = 4;
  constexpr int kMostRounds = 60;
  constexpr std::int64_t kMostDigits = 1'000'000;
  const auto is_moderate = [](const T& x) { return detail::is_moderate(QuarnBound(x)); };
  if (a.entries() == 0 || !std::all_of(a.values().begin(), a.values().end(), is_moderate) ||
      !std::all_of(b.begin(), b.end(), is_moderate)) {
    return result;
  }
  const auto proof = detail::sparse_factors(a, int(std::min(kMostDigits, 8 * std::int64_t(digits) + 500)));
  if (!proof) {
    return result;
  }
  std::vector<T> x(n);
  std::vector<QuarnBound> bounds;
  std::int64_t of_x = digits + 10;
  for (int attempt = 0; attempt < kAttempts; ++attempt) {
    std::vector<QuarnBound> of_r(n);
    QuarnBound former = QuarnBound::infinity();
    for (int round = 0; round < kMostRounds; ++round) {
      // Sums that cancel: a residual has twice the digits of x.
      const int of_sums = int(std::min(kMostDigits, 2 * of_x + 10));
      const Digits scope(of_sums);
      std::vector<T> r = a.multiply(x);
      QuarnBound largest;
      for (std::size_t i = 0; i < n; ++i) {
        of_r[i] = QuarnBound(r[i]).half_unit(of_sums - 1);
        r[i] = b[i] - r[i];
        of_r[i] += QuarnBound(r[i]) + QuarnBound(r[i]).half_unit(of_sums - 1);
        largest = std::max(largest, of_r[i]);
      }
      const bool last = round + 1 == kMostRounds || largest.is_zero();
      if (last || largest * QuarnBound::count(10) > former) {
        break;
      }
      former = largest;
      const Digits fewer{int(std::min(kMostDigits, of_x))};
      proof->apply(r);
      for (std::size_t i = 0; i < n; ++i) {
        x[i] = x[i] + r[i];
      }
    }
    bounds = proof->bounds(of_r);
    std::int64_t missing = 0;
    for (std::size_t i = 0; i < n; ++i) {
      const QuarnBound size(x[i]);
      if (!size.is_zero() && bounds[i].is_finite() && !bounds[i].is_zero()) {
        missing = std::max(missing, bounds[i].exponent() - (size.exponent() - digits - 3));
      }
    }
    if (missing == 0) {
      break;
    }
    of_x += std::min<std::int64_t>(missing + 5, 4 * std::int64_t(digits) + 400);
  }
  const auto half_unit = [&](const T& value) {
    if constexpr (tesk2mp::detail::kIsComplex<T>) {
      return hypotenuse(QuarnBound(value.re).half_unit(digits), QuarnBound(value.im).half_unit(digits));
    } else {
      return QuarnBound(value).half_unit(digits);
    }
  };
  for (std::size_t i = 0; i < n; ++i) {
    result[i].value = x[i] * T(Real(1));
    result[i].error = bounds[i] + half_unit(result[i].value);
  }
  return result;
}

}  // namespace tesk2mp::proven
