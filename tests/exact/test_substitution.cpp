// Substitution with sparse triangles: each element beside the one that many more digits give.
#include <doctest/doctest.h>

#include "exact/samples.h"
#include "quarn/substitution.h"

using exact_test::conjugate;
using exact_test::entry;
using exact_test::Restore;
using exact_test::rounded_to;
using support::Random;

namespace {

/// A square matrix with a full diagonal, by rows.
template <class T>
struct Rows {
  std::vector<T> values;
  std::vector<Integer> columns, starts = {1}, diagonals;

  Rows(Random& random, std::size_t n, int digits, int spread) {
    const auto density = 1 + random.below(6);
    for (std::size_t i = 0; i < n; ++i) {
      for (std::size_t j = 0; j < n; ++j) {
        if (i == j || random.below(density) == 0) {
          T value = entry<T>(random, digits, spread);
          values.push_back(i == j && value == T(0.0) ? T(3.0) : value);
          columns.push_back(Integer(j + 1));
        }
        if (i == j) {
          diagonals.push_back(Integer(values.size()));
        }
      }
      starts.push_back(Integer(values.size() + 1));
    }
  }
  QuarnSparseRows<T> view() const {
    return {diagonals.size(), values.data(), columns.data(), starts.data(), diagonals.data()};
  }
  /// The element of a triangle, or of its adjoint, off the diagonal.
  T at(std::size_t i, std::size_t j, unsigned how) const {
    const bool adjoint = (how & QuarnAdjoint) != 0;
    const std::size_t row = adjoint ? j : i;
    const auto column = Integer((adjoint ? i : j) + 1);
    const bool in_triangle = (how & QuarnUpper) != 0 ? column > Integer(row + 1) : column < Integer(row + 1);
    for (Integer k = starts[row]; in_triangle && k < starts[row + 1]; ++k) {
      if (columns[std::size_t(k - 1)] == column) {
        return adjoint ? conjugate(values[std::size_t(k - 1)]) : values[std::size_t(k - 1)];
      }
    }
    return T(0.0);
  }
};

}  // namespace

TEST_CASE_TEMPLATE("sums of substitution are rounded once", T, QuarnFloat, Complex) {
  const Restore restore;
  Random random;
  for (const int digits : {1, 2, 9, 17, 18, 20, 50, 108, 125, 126, 333}) {
    for (const unsigned how : {0U, unsigned(QuarnUpper), unsigned(QuarnUnit), unsigned(QuarnAdjoint),
                               unsigned(QuarnUpper) | QuarnUnit | QuarnAdjoint}) {
      const std::size_t n = 1 + random.below(14);
      const int spread = random.once_in(3) ? 300 : 3;
      QuarnSetDigits(digits);
      const Rows<T> rows(random, n, random.once_in(8) ? digits + 40 : digits, spread);
      std::vector<T> x;
      for (std::size_t i = 0; i < n; ++i) {
        x.push_back(entry<T>(random, digits, 3));
      }
      // What is left of a sum that cancels is exact too.
      if (random.once_in(3)) {
        QuarnSparseSubstitution(rows.view(), x.data(), (how ^ QuarnUnit) & ~unsigned(QuarnAdjoint));
      }
      std::vector<T> made = x;
      QuarnSparseSubstitution(rows.view(), made.data(), how);
      const bool backwards = ((how & QuarnUpper) != 0) != ((how & QuarnAdjoint) != 0);
      int wrong = 0;
      for (std::size_t step = 0; step < n; ++step) {
        const std::size_t i = backwards ? n - 1 - step : step;
        QuarnSetDigits(8 * digits + 40 * spread + 200);
        T expected = x[i];
        for (std::size_t j = 0; j < n; ++j) {
          if (j != i) {
            expected = expected - rows.at(i, j, how) * made[j];
          }
        }
        expected = rounded_to(digits, expected);
        QuarnSetDigits(digits);
        if ((how & QuarnUnit) == 0) {
          const T& pivot = rows.values[std::size_t(rows.diagonals[i] - 1)];
          expected = expected / ((how & QuarnAdjoint) != 0 ? conjugate(pivot) : pivot);
        }
        wrong += int(made[i] != expected);
      }
      INFO("digits " << digits << ", n " << n << ", spread " << spread << ", how " << how);
      CHECK(wrong == 0);
    }
  }
}

TEST_CASE("NaN and infinities go where their element goes") {
  const Restore restore;
  const QuarnFloat zero = 0;
  for (const int digits : {2, 50, 200}) {
    QuarnSetDigits(digits);
    for (std::size_t at = 0; at < 3; ++at) {
      // 1, then 2 1, then 0 3 1
      std::vector<QuarnFloat> values = {1, 2, 1, 3, 1};
      const std::vector<Integer> columns = {1, 1, 2, 2, 3}, starts = {1, 2, 4, 6}, diagonals = {1, 3, 5};
      std::vector<QuarnFloat> x = {1, 1, 1};
      x[at] = 1 / zero;
      QuarnSparseSubstitution({3, values.data(), columns.data(), starts.data(), diagonals.data()}, x.data(), 0);
      for (std::size_t i = 0; i < 3; ++i) {
        CHECK(isfinite(x[i]) == (i < at));
        CHECK(isinf(x[i]) == (i >= at));
      }
      values[std::size_t(starts[at] - 1)] = QuarnFloat("nan");
      QuarnSparseSubstitution({3, values.data(), columns.data(), starts.data(), diagonals.data()}, x.data(),
                              QuarnAdjoint);
      CHECK(isnan(x[at == 0 ? 0 : at - 1]));
    }
  }
}
