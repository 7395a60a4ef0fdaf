// Exact matrices modulo primes: what is true of integers modulo primes whose product is above a bound of them is true
// of them. J. von zur Gathen, J. Gerhard, Modern Computer Algebra, section 5.5.
#pragma once

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "quarn/bound.h"
#include "quarn/quarnthread.h"
#include "src/proven/norms.h"

namespace tesk::proven {

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
  /// -x / y where 1 / y is given.
  std::uint64_t negative_quotient(std::uint64_t x, std::uint64_t inverse_of_y) const {
    return p_ - x * inverse_of_y % p_;
  }

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

using Residues = std::vector<std::vector<std::uint64_t>>;

/// The rows of an exact matrix, those without zeros alone, times powers of ten: integers, or Gaussian integers.
class IntegerRows {
 public:
  /// m rows of n elements at(i, j), from 1. The norms of rows are bounds of their Euclidean norms times sqrt(weight).
  template <class Element>
  IntegerRows(Integer m, Integer n, bool is_complex, std::uint32_t weight, const Element& at)
      : columns_(std::size_t(n)), complex_(is_complex) {
    for (Integer i = 1; i <= m; ++i) {
      Row row;
      QuarnBound squares;
      for (Integer j = 1; j <= n; ++j) {
        const Complex& z = at(i, j);
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
        row.norm = sqrt(squares * QuarnBound::count(weight)).exponent() + 1 - *row.least;
        rows_.push_back(std::move(row));
      }
    }
    std::sort(rows_.begin(), rows_.end(), [](const Row& x, const Row& y) { return x.norm > y.norm; });
  }

  std::size_t size() const { return rows_.size(); }
  /// The row has been divided by 10^least.
  std::int64_t least(std::size_t row) const { return *rows_[row].least; }
  /// e where the product of the norms of the largest rows is below 10^e.
  double norms(std::size_t count) const {
    double sum = 0;
    for (std::size_t i = 0; i < count; ++i) {
      sum += double(rows_[i].norm);
    }
    return sum;
  }

  /// What is the largest of value_modulo(field, residues) for all primes, where the integers that have to vanish for a
  /// value x not to be larger are below 10^bound(x), and none can be larger than `most`. Nothing where that would take
  /// too long: one prime takes `work` steps beside its search and the residues, all together more than `most_work`.
  template <class Value, class Bound>
  std::optional<Integer> largest(Integer most, double work, const Value& value_modulo, const Bound& bound,
                                 double most_work = 2e10) const {
    constexpr double kDigitsOfPrime = 9.03;
    constexpr double kSearch = 2e4;  // no more than a million primes
    work += kSearch + double(digits_) + 40 * double(rows_.size()) * double(columns_);
    Primes primes;
    std::optional<Integer> found;
    double known = 0;
    double needed = 0;
    do {
      if (work * (1 + needed / kDigitsOfPrime) > most_work) {
        return {};
      }
      const Field field(primes.next());
      const Integer value = value_modulo(field, modulo(field));
      found = std::max(found.value_or(value), value);
      known += kDigitsOfPrime;
      // A Gaussian integer's norm is its modulus squared.
      needed = *found < most ? bound(*found) * (complex_ ? 2 : 1) : 0;
      QuarnCheckInterrupt();
    } while (*found < most && known <= needed);
    return found;
  }

 private:
  struct Row {
    std::vector<std::array<Decimal, 2>> elements;
    std::optional<std::int64_t> least;
    std::int64_t norm = 0;
  };

  Residues modulo(const Field& field) const {
    Residues rows;
    for (const Row& row : rows_) {
      std::vector<std::uint64_t> residues;
      for (const auto& [re, im] : row.elements) {
        residues.push_back((re.residue(field, *row.least) + field.root_of_minus_one() * im.residue(field, *row.least)) %
                           field.prime());
      }
      rows.push_back(std::move(residues));
    }
    return rows;
  }

  std::size_t columns_;
  bool complex_;
  std::size_t digits_ = 0;
  std::vector<Row> rows_;
};

/// Makes the first columns a row echelon form, rows that are 0 there last, and returns how many are not.
inline std::size_t row_echelon(const Field& field, Residues& rows, std::size_t columns) {
  std::size_t rank = 0;
  for (std::size_t j = 0; j < columns && rank < rows.size(); ++j) {
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
        const std::uint64_t factor = field.negative_quotient(rows[i][j], inverse);
        for (std::size_t k = j; k < top.size(); ++k) {
          rows[i][k] = (rows[i][k] + factor * top[k]) % field.prime();
        }
      }
    }
    ++rank;
    QuarnCheckInterrupt();
  }
  return rank;
}

}  // namespace tesk::proven
