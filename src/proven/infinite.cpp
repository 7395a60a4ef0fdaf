// The infinite eigenvalues of an exact pencil A x = lambda B x: n less the degree of det(A - x B), which is not below
// the degree modulo any prime; and where it is d modulo primes whose product is above a bound of all coefficients those
// of higher powers are 0. On the unit circle |det(A - x B)|, and so each coefficient, is at most the product of the
// sums of the norms of the rows of A and B. J. Hadamard, Bull. Sci. Math. 17 (1893); J. von zur Gathen, J. Gerhard,
// Modern Computer Algebra, section 5.5.
#include <algorithm>
#include <cstdint>
#include <numeric>
#include <optional>
#include <type_traits>
#include <utility>
#include <vector>

#include "quarn/quarnthread.h"
#include "src/proven/modular.h"
#include "tesk2mp/proven.h"

namespace tesk::proven {
namespace {

/// Rows of B with those of A behind them, modulo a prime, of which rows and columns are taken away that change
/// det(A - x B) by a factor alone.
class PencilModulo {
 public:
  PencilModulo(const Field& field, Residues rows) : field_(field), rows_(std::move(rows)) {}

  /// Of det(A - x B); -1 where that is 0.
  Integer degree() {
    for (;;) {
      const std::size_t rank = row_echelon(field_, rows_, rows_.size());
      if (rank == rows_.size()) {
        return Integer(rank);
      }
      if (!remove_constant_rows(rank)) {
        return -1;
      }
    }
  }

 private:
  /// From row `rank` on x does not occur: columns are subtracted from others until these rows have a pivot each, and
  /// zeros in all columns without one. False where they are linearly dependent.
  bool remove_constant_rows(std::size_t rank) {
    const std::size_t n = rows_.size();
    std::vector<std::size_t> left(n);
    std::iota(left.begin(), left.end(), std::size_t(0));
    for (std::size_t t = rank; t < n; ++t) {
      const auto pivot = std::find_if(left.begin(), left.end(), [&](std::size_t j) { return rows_[t][n + j] != 0; });
      if (pivot == left.end()) {
        return false;
      }
      const std::size_t column = *pivot;
      left.erase(pivot);
      const std::uint64_t inverse = field_.inverse(rows_[t][n + column]);
      std::vector<std::pair<std::size_t, std::uint64_t>> factors;
      for (const std::size_t j : left) {
        if (rows_[t][n + j] != 0) {
          factors.emplace_back(j, field_.negative_quotient(rows_[t][n + j], inverse));
        }
      }
      for (std::vector<std::uint64_t>& row : rows_) {
        for (const auto& [j, factor] : factors) {
          row[j] = (row[j] + factor * row[column]) % field_.prime();
          row[n + j] = (row[n + j] + factor * row[n + column]) % field_.prime();
        }
      }
      QuarnCheckInterrupt();
    }
    rows_.resize(rank);
    for (std::vector<std::uint64_t>& row : rows_) {
      std::vector<std::uint64_t> kept;
      kept.reserve(2 * left.size());
      for (const std::size_t first : {std::size_t(0), n}) {
        for (const std::size_t j : left) {
          kept.push_back(row[first + j]);
        }
      }
      row = std::move(kept);
    }
    return true;
  }

  const Field& field_;
  Residues rows_;
};

/// -1 for a singular pencil; nothing where that would take too long.
template <class T>
std::optional<Integer> exact_degree(Integer n, OneBasedMatrix<T> a, OneBasedMatrix<T> b) {
  // |a| + |b| is at most sqrt(2 (|a|^2 + |b|^2)).
  const IntegerRows rows(n, 2 * n, std::is_same_v<T, Complex>, 2,
                         [&](Integer i, Integer j) -> const T& { return j <= n ? b(i, j) : a(i, j - n); });
  if (rows.size() < std::size_t(n)) {
    return -1;
  }
  return rows.largest(
      n, 4 * double(n) * double(n) * double(n),
      [](const Field& field, Residues residues) { return PencilModulo(field, std::move(residues)).degree(); },
      [&](Integer) { return rows.norms(rows.size()); });
}

template <class T>
Integer infinite_eigenvalues(Integer n, T* a, Integer lda, T* b, Integer ldb, Integer* infinite) {
  const Integer least = std::max<Integer>(1, n);
  const Integer wrong = first_wrong({{n < 0, 1}, {lda < least, 3}, {ldb < least, 5}});
  *infinite = 0;
  if (wrong != 0 || n == 0) {
    return -wrong;
  }
  const OneBasedMatrix<T> of_a(a, lda);
  const OneBasedMatrix<T> of_b(b, ldb);
  Range range;
  range.take(n, n, of_a);
  range.take(n, n, of_b);
  if (!range.is_finite()) {
    return 1;
  }
  const auto degree = exact_degree(n, of_a, of_b);
  if (!degree) {
    return 1;
  }
  *infinite = *degree < 0 ? 0 : n - *degree;
  return *degree < 0 ? 2 : 0;
}

}  // namespace
}  // namespace tesk::proven

extern "C" {

void QuarnMPX_dproven_infinite_(Integer n, QuarnFloat* a, Integer lda, QuarnFloat* b, Integer ldb, Integer* infinite,
                                Integer* info) {
  *info = tesk::proven::infinite_eigenvalues(n, a, lda, b, ldb, infinite);
}
void QuarnMPX_zproven_infinite_(Integer n, Complex* a, Integer lda, Complex* b, Integer ldb, Integer* infinite,
                                Integer* info) {
  *info = tesk::proven::infinite_eigenvalues(n, a, lda, b, ldb, infinite);
}
}
