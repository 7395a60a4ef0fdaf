// The rank of an exact matrix by elimination modulo primes: not below the rank modulo any prime; and where it is r
// modulo primes whose product is above Hadamard's bound of all minors of order r + 1 these minors are 0. J. Hadamard,
// Bull. Sci. Math. 17 (1893); J. von zur Gathen, J. Gerhard, Modern Computer Algebra, section 5.5.
#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <optional>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "quarn/quarnthread.h"
#include "src/proven/norms.h"
#include "tesk2mp/proven.h"

namespace tesk::proven {
namespace {

/// Residues modulo a prime below 2^31, p = 4 k + 1, so that -1 has a square root.
class Field {
 public:
  explicit Field(std::uint64_t prime) : p_(prime) {
    for (std::uint64_t base = 2; root_ * root_ % p_ != p_ - 1; ++base) {
      root_ = power(base, (p_ - 1) / 4);
    }
  }

  std::uint64_t prime() const { return p_; }
  std::uint64_t root_of_minus_one() const { return root_; }
  std::uint64_t power(std::uint64_t base, std::uint64_t exponent) const {
    std::uint64_t result = 1;
    for (base %= p_; exponent > 0; exponent /= 2) {
      result = exponent % 2 == 1 ? result * base % p_ : result;
      base = base * base % p_;
    }
    return result;
  }
  std::uint64_t inverse(std::uint64_t x) const { return power(x, p_ - 2); }

 private:
  std::uint64_t p_;
  std::uint64_t root_ = 1;
};

/// Primes 4 k + 1 from 2^31 downwards; Miller's test with 2, 3, 5 and 7 is one below 3e9.
class Primes {
 public:
  std::uint64_t next() {
    do {
      candidate_ -= 4;
    } while (!is_prime(candidate_));
    return candidate_;
  }

 private:
  static bool is_prime(std::uint64_t n) {
    std::uint64_t odd = n - 1;
    int twos = 0;
    for (; odd % 2 == 0; odd /= 2) {
      ++twos;
    }
    for (const std::uint64_t base : {2, 3, 5, 7}) {
      std::uint64_t x = 1;
      std::uint64_t square = base;
      for (std::uint64_t exponent = odd; exponent > 0; exponent /= 2) {
        x = exponent % 2 == 1 ? x * square % n : x;
        square = square * square % n;
      }
      bool passes = x == 1 || x == n - 1;
      for (int i = 1; i < twos && !passes; ++i) {
        x = x * x % n;
        passes = x == n - 1;
      }
      if (!passes) {
        return false;
      }
    }
    return true;
  }

  std::uint64_t candidate_ = (std::uint64_t(1) << 31) + 1;
};

/// An exact decimal number: (-1)^negative times groups of nine digits, the first one first, times 10^exponent.
struct Decimal {
  explicit Decimal(const QuarnFloat& x) {
    const std::string text = x.to_string();
    std::string digits;
    std::int64_t scale = 0;
    bool after_point = false;
    for (std::size_t i = 0; i < text.size(); ++i) {
      const char c = text[i];
      if (c == 'e' || c == 'E') {
        const std::size_t start = i + (text[i + 1] == '+' ? 2 : 1);
        std::from_chars(text.data() + start, text.data() + text.size(), exponent);
        break;
      }
      negative = negative || c == '-';
      after_point = after_point || c == '.';
      if (c >= '0' && c <= '9') {
        digits += c;
        scale += after_point ? 1 : 0;
      }
    }
    exponent -= scale;
    const std::size_t spare = (kGroup - digits.size() % kGroup) % kGroup;
    digits.insert(0, spare, '0');
    for (std::size_t i = 0; i < digits.size(); i += kGroup) {
      std::uint32_t group = 0;
      std::from_chars(digits.data() + i, digits.data() + i + kGroup, group);
      if (group != 0 || !groups.empty()) {
        groups.push_back(group);
      }
    }
  }

  bool is_zero() const { return groups.empty(); }
  /// Of the number times 10^-least.
  std::uint64_t residue(const Field& field, std::int64_t least) const {
    if (is_zero()) {
      return 0;
    }
    std::uint64_t x = 0;
    for (const std::uint32_t group : groups) {
      x = (x * (1'000'000'000 % field.prime()) + group) % field.prime();
    }
    x = x * field.power(10, std::uint64_t(exponent - least)) % field.prime();
    return negative && x != 0 ? field.prime() - x : x;
  }

  static constexpr std::size_t kGroup = 9;
  std::vector<std::uint32_t> groups;
  std::int64_t exponent = 0;
  bool negative = false;
};

class Ranker {
 public:
  template <class T>
  Ranker(Integer m, Integer n, OneBasedMatrix<T> a) : n_(std::size_t(n)) {
    constexpr bool kComplex = std::is_same_v<T, Complex>;
    complex_ = kComplex;
    for (Integer i = 1; i <= m; ++i) {
      Row row;
      QuarnBound squares;
      for (Integer j = 1; j <= n; ++j) {
        const Complex z(a(i, j));
        row.elements.push_back({Decimal(z.re), Decimal(z.im)});
        const QuarnBound size(z);
        squares += size * size;
        for (const Decimal& part : row.elements.back()) {
          digits_ += part.groups.size();
          if (!part.is_zero()) {
            row.least = std::min(row.least.value_or(part.exponent), part.exponent);
          }
        }
      }
      // The norm of the row times 10^-least is below 10^norm.
      if (row.least) {
        row.norm = sqrt(squares).exponent() + 1 - *row.least;
        rows_.push_back(std::move(row));
      }
    }
    std::sort(rows_.begin(), rows_.end(), [](const Row& x, const Row& y) { return x.norm > y.norm; });
  }

  /// Nothing where that would take too long.
  std::optional<Integer> rank() const {
    constexpr double kMostWork = 2e10;
    constexpr double kDigitsOfPrime = 9.03;
    const std::size_t most = std::min(rows_.size(), n_);
    const double work = double(digits_) + double(rows_.size()) * double(n_) * (double(most) + 40);
    Primes primes;
    std::size_t found = 0;
    double known = 0;
    double needed = 0;
    do {
      if (work * (1 + needed / kDigitsOfPrime) > kMostWork) {
        return {};
      }
      found = std::max(found, rank_modulo(Field(primes.next())));
      known += kDigitsOfPrime;
      needed = 0;
      for (std::size_t i = 0; i <= found && found < most; ++i) {
        needed += double(rows_[i].norm);
      }
      // A Gaussian integer's norm is that of the minor squared.
      needed *= complex_ ? 2 : 1;
      QuarnCheckInterrupt();
    } while (found < most && known <= needed);
    return Integer(found);
  }

 private:
  struct Row {
    std::vector<std::array<Decimal, 2>> elements;
    std::optional<std::int64_t> least;
    std::int64_t norm = 0;
  };

  std::size_t rank_modulo(const Field& field) const {
    const std::uint64_t p = field.prime();
    std::vector<std::vector<std::uint64_t>> rows;
    for (const Row& row : rows_) {
      std::vector<std::uint64_t> residues;
      for (const auto& [re, im] : row.elements) {
        residues.push_back((re.residue(field, *row.least) + field.root_of_minus_one() * im.residue(field, *row.least)) %
                           p);
      }
      rows.push_back(std::move(residues));
    }
    std::size_t rank = 0;
    for (std::size_t j = 0; j < n_ && rank < rows.size(); ++j) {
      const auto pivot = std::find_if(rows.begin() + std::ptrdiff_t(rank), rows.end(),
                                      [&](const std::vector<std::uint64_t>& row) { return row[j] != 0; });
      if (pivot == rows.end()) {
        continue;
      }
      std::swap(*pivot, rows[rank]);
      const std::vector<std::uint64_t>& top = rows[rank];
      const std::uint64_t inverse = field.inverse(top[j]);
      for (std::size_t i = rank + 1; i < rows.size(); ++i) {
        if (rows[i][j] != 0) {
          const std::uint64_t factor = p - rows[i][j] * inverse % p;
          for (std::size_t k = j; k < n_; ++k) {
            rows[i][k] = (rows[i][k] + factor * top[k]) % p;
          }
        }
      }
      ++rank;
      QuarnCheckInterrupt();
    }
    return rank;
  }

  std::size_t n_;
  bool complex_ = false;
  std::size_t digits_ = 0;
  std::vector<Row> rows_;
};

template <class T>
Integer checked_rank(Integer m, Integer n, T* a, Integer lda, Integer* rank) {
  const Integer wrong = first_wrong({{m < 0, 1}, {n < 0, 2}, {lda < std::max<Integer>(1, m), 4}});
  *rank = 0;
  if (wrong != 0 || m == 0 || n == 0) {
    return -wrong;
  }
  const OneBasedMatrix<T> matrix(a, lda);
  Range range;
  range.take(m, n, matrix);
  if (!range.is_finite()) {
    return 1;
  }
  const auto found = Ranker(m, n, matrix).rank();
  *rank = found.value_or(0);
  return found ? 0 : 1;
}

}  // namespace
}  // namespace tesk::proven

extern "C" {

void QuarnMPX_dproven_rank_(Integer m, Integer n, QuarnFloat* a, Integer lda, Integer* rank, Integer* info) {
  *info = tesk::proven::checked_rank(m, n, a, lda, rank);
}
void QuarnMPX_zproven_rank_(Integer m, Integer n, Complex* a, Integer lda, Integer* rank, Integer* info) {
  *info = tesk::proven::checked_rank(m, n, a, lda, rank);
}
}
