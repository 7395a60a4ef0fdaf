// The number of distinct eigenvalues is the rank of the Hankel matrix of the traces of A^(i+j): C. Hermite; F. R.
// Gantmacher, The Theory of Matrices, vol. 2 (1959), chapter XV. Modulo primes the traces come from the characteristic
// polynomial of a Hessenberg form (H. Cohen, A Course in Computational Algebraic Number Theory, algorithm 2.2.9) by
// Newton's identities, which take no division in this direction.
#include "src/proven/distinct.h"

#include <algorithm>
#include <cstdint>
#include <utility>
#include <vector>

#include "quarn/quarnthread.h"
#include "src/proven/modular.h"

namespace tesk::proven {
namespace {

QuarnBound power_of(QuarnBound base, std::int64_t exponent) {
  QuarnBound result = QuarnBound::count(1);
  for (; exponent > 0; exponent /= 2) {
    result = exponent % 2 == 1 ? result * base : result;
    base *= base;
  }
  return result;
}

/// A matrix modulo a prime, which becomes a Hessenberg matrix with the same eigenvalues.
class HessenbergModulo {
 public:
  HessenbergModulo(const Field& field, Residues a) : field_(field), h_(std::move(a)), n_(h_.size()) {
    for (std::size_t j = 0; j + 2 < n_; ++j) {
      eliminate(j);
      QuarnCheckInterrupt();
    }
  }

  /// Of x^n, x^(n-1), ..., 1 in det(x - H).
  std::vector<std::uint64_t> characteristic_polynomial() const {
    // Of the leading blocks, with falling powers.
    std::vector<std::vector<std::uint64_t>> p{{1}};
    for (std::size_t m = 0; m < n_; ++m) {
      std::vector<std::uint64_t> next = p[m];
      next.push_back(0);
      std::uint64_t subdiagonal = 1;
      for (std::size_t i = m + 1; i-- > 0 && subdiagonal != 0;) {
        const std::uint64_t factor = field_.prime() - h_[i][m] * subdiagonal % field_.prime();
        for (std::size_t k = 0; k <= i; ++k) {
          std::uint64_t& x = next[m + 1 - i + k];
          x = (x + factor * p[i][k]) % field_.prime();
        }
        subdiagonal = i > 0 ? subdiagonal * h_[i][i - 1] % field_.prime() : 0;
      }
      p.push_back(std::move(next));
    }
    return std::move(p.back());
  }

 private:
  /// Makes column j zero from row j + 2 on.
  void eliminate(std::size_t j) {
    std::size_t pivot = j + 1;
    while (pivot < n_ && h_[pivot][j] == 0) {
      ++pivot;
    }
    if (pivot == n_) {
      return;
    }
    std::swap(h_[pivot], h_[j + 1]);
    for (auto& row : h_) {
      std::swap(row[pivot], row[j + 1]);
    }
    const std::uint64_t inverse = field_.inverse(h_[j + 1][j]);
    std::vector<std::uint64_t> factors(n_);
    for (std::size_t i = j + 2; i < n_; ++i) {
      factors[i] = h_[i][j] * inverse % field_.prime();
      const std::uint64_t negative = field_.prime() - factors[i];
      for (std::size_t k = j; k < n_ && factors[i] != 0; ++k) {
        h_[i][k] = (h_[i][k] + negative * h_[j + 1][k]) % field_.prime();
      }
    }
    for (auto& row : h_) {
      for (std::size_t i = j + 2; i < n_; ++i) {
        row[j + 1] = (row[j + 1] + factors[i] * row[i]) % field_.prime();
      }
    }
  }

  const Field& field_;
  Residues h_;
  std::size_t n_;
};

/// The rank of the matrix of the traces.
Integer rank_of_traces(const Field& field, Residues a) {
  const std::size_t n = a.size();
  const std::vector<std::uint64_t> c = HessenbergModulo(field, std::move(a)).characteristic_polynomial();
  std::vector<std::uint64_t> traces{n};
  for (std::size_t m = 1; m < 2 * n; ++m) {
    std::uint64_t sum = m <= n ? m * c[m] % field.prime() : 0;
    for (std::size_t i = 1; i <= std::min(m - 1, n); ++i) {
      sum = (sum + c[i] * traces[m - i]) % field.prime();
    }
    traces.push_back(sum == 0 ? 0 : field.prime() - sum);
  }
  Residues hankel;
  for (std::size_t i = 0; i < n; ++i) {
    hankel.emplace_back(traces.begin() + std::ptrdiff_t(i), traces.begin() + std::ptrdiff_t(i + n));
  }
  return Integer(row_echelon(field, hankel, n));
}

}  // namespace

QuarnBound minors_of_traces(Integer n, Integer rows, const QuarnBound& radius) {
  // The matrix is V V^T with the powers 0, ..., n - 1 of an eigenvalue in each column of V. By Cauchy and Binet, Cauchy
  // and Schwarz, and Hadamard a minor is at most the product of the norms of its rows and columns of V.
  const std::int64_t powers = std::int64_t(rows) * (2 * std::int64_t(n) - 1 - rows);
  return power_of(QuarnBound::count(std::uint32_t(n)), rows) * power_of(std::max(radius, QuarnBound::count(1)), powers);
}

std::optional<Integer> distinct_eigenvalues(Integer n, OneBasedMatrix<Complex> a, bool is_real,
                                            const QuarnBound& radius, Integer most) {
  constexpr double kMostWork = 1e9;
  const double work = 2 * double(n) * double(n) * double(n);
  if (work > kMostWork) {
    return {};
  }
  // One row, so that all elements get the same power of ten.
  const IntegerRows elements(1, n * n, !is_real, 1, [&](Integer /*row*/, Integer k) -> const Complex& {
    return a((k - 1) % n + 1, (k - 1) / n + 1);
  });
  if (elements.size() == 0) {
    return 1;
  }
  const QuarnBound scaled = radius * QuarnBound::power_of_ten(-elements.least(0));
  const auto order = std::size_t(n);
  const auto found = elements.largest(
      most + 1, work,
      [&](const Field& field, const Residues& rows) {
        Residues matrix(order, std::vector<std::uint64_t>(order));
        for (std::size_t k = 0; k < order * order; ++k) {
          matrix[k % order][k / order] = rows[0][k];
        }
        return rank_of_traces(field, std::move(matrix));
      },
      [&](Integer rank) { return double(minors_of_traces(n, rank + 1, scaled).exponent() + 1); }, kMostWork);
  return found && *found <= most ? found : std::nullopt;
}

}  // namespace tesk::proven
