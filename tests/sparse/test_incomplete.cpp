// Incomplete factorisations by the properties that define them: the places of the factors are those of the levels, and
// L U is A at these places; complete fill gives A, whatever the order; pivots are what the search says.
#include <doctest/doctest.h>

#include <algorithm>
#include <numeric>

#include "sparse/factorisation.h"
#include "support/digits.h"
#include "tesk2mp/tesk2mp.hpp"

using entries::Coordinates;
using factorisation::Factors;
using factorisation::Full;
using support::Random;

namespace {

constexpr int kFar = 1 << 20;

/// The places of level `most` or less: elimination on a full table of levels.
Full<int> levels_within(Full<int> level, int most) {
  const std::size_t n = level.size();
  for (std::size_t k = 0; k < n; ++k) {
    for (std::size_t i = k + 1; i < n; ++i) {
      for (std::size_t j = k + 1; level[i][k] <= most && j < n; ++j) {
        if (level[k][j] <= most) {
          level[i][j] = std::min(level[i][j], level[i][k] + level[k][j] + 1);
        }
      }
    }
  }
  for (auto& row : level) {
    for (int& each : row) {
      each = each <= most ? 1 : 0;
    }
  }
  return level;
}

template <class T>
Full<int> levels_of(const Coordinates<T>& a, bool triangle) {
  Full<int> level(std::size_t(a.n), std::vector<int>(std::size_t(a.n), kFar));
  for (std::size_t k = 0; k < a.a.size(); ++k) {
    const auto i = std::size_t(a.irow[k] - 1);
    const auto j = std::size_t(a.icol[k] - 1);
    level[i][j] = 0;
    level[j][i] = triangle ? 0 : level[j][i];
  }
  for (std::size_t i = 0; i < level.size(); ++i) {
    level[i][i] = 0;
  }
  return level;
}

template <class T>
QuarnFloat largest(const Full<T>& a) {
  QuarnFloat size;
  for (const auto& row : a) {
    for (const T& x : row) {
      size = std::max(size, tesk::magnitude(x));
    }
  }
  return size;
}

/// P A Q with the orders of the factors.
template <class T>
Full<T> permuted(const Full<T>& a, const Factors<T>& factors) {
  Full<T> p = a;
  for (std::size_t i = 0; i < a.size(); ++i) {
    for (std::size_t j = 0; j < a.size(); ++j) {
      p[i][j] = a[factors.row(i)][factors.column(j)];
    }
  }
  return p;
}

template <class T>
std::vector<T> permuted_rows(const std::vector<T>& y, const Factors<T>& factors) {
  std::vector<T> z;
  for (std::size_t k = 0; k < y.size(); ++k) {
    z.push_back(y[factors.row(k)]);
  }
  return z;
}

/// In units of rounding at the digits of the moment.
template <class T>
QuarnFloat distance(const T& x, const T& y, const QuarnFloat& size) {
  return tesk::magnitude(x - y) / (size * QuarnFloat(1, 1 - QuarnDigits()));
}

}  // namespace

TEST_CASE_TEMPLATE("the factors agree with A at the places of the levels", T, QuarnFloat, Complex) {
  Random random;
  for (const int digits : {2, 17, 50, 333}) {
    const support::Digits scope(digits);
    for (const bool triangle : {false, true}) {
      for (const int level : {0, 1, 2, 99}) {
        const auto n = Integer(random.between(1, 12));
        const Coordinates<T> a = factorisation::sample<T>(random, n, triangle, 1);
        Factors<T> factors(a, triangle);
        factors.lfill = level;
        REQUIRE(factors.factorise().ifail == 0);
        CHECK(factors.npivm == 0);
        CHECK(factors.nnzc == factors.istr[std::size_t(n)] - factors.istr[0]);
        const Full<int> expected = levels_within(levels_of(a, triangle), level);
        const Full<int> found = factors.pattern();
        const Full<T> whole = factorisation::written_out(a, triangle);
        const QuarnFloat size = largest(whole);
        Full<T> m;
        {
          const support::Digits more(digits + 10);
          m = factorisation::product(factors.lower(), factors.upper());
        }
        for (std::size_t i = 0; i < std::size_t(n); ++i) {
          for (std::size_t j = 0; j < std::size_t(triangle ? i + 1 : std::size_t(n)); ++j) {
            CHECK(found[i][j] == expected[i][j]);
            if (expected[i][j] == 1) {
              CHECK(distance(m[i][j], whole[i][j], size) <= 30);
            }
          }
        }
      }
    }
  }
}

TEST_CASE_TEMPLATE("modified factors keep row sums", T, QuarnFloat, Complex) {
  Random random;
  const support::Digits scope(40);
  for (const bool triangle : {false, true}) {
    for (const int level : {0, 1, -1}) {
      Coordinates<T> a = factorisation::sample<T>(random, 12, triangle, 1);
      if (triangle) {  // of complex ones only the real parts are kept
        std::transform(a.a.begin(), a.a.end(), a.a.begin(), [](const T& x) { return T(tesk::magnitude(x)); });
      }
      Factors<T> factors(a, triangle);
      factors.lfill = level;
      factors.dtol = QuarnFloat(1, -3);
      factors.modified = "m";
      factors.search = triangle ? "M" : level == 1 ? "C" : "N";
      REQUIRE(factors.factorise().ifail == 0);
      CHECK(factors.npivm == 0);
      const Full<T> whole = permuted(factorisation::written_out(a, triangle), factors);
      const Full<T> m = factorisation::product(factors.lower(), factors.upper());
      for (std::size_t i = 0; i < m.size(); ++i) {
        const auto sum = [i](const Full<T>& x) { return std::accumulate(x[i].begin(), x[i].end(), T(0.0)); };
        CHECK(distance(sum(m), sum(whole), largest(whole)) <= 100);
      }
    }
  }
}

TEST_CASE_TEMPLATE("complete fill gives A back in every order", T, QuarnFloat, Complex) {
  Random random;
  for (const int digits : {30, 200}) {
    const support::Digits scope(digits);
    for (const char* search : {"N", "R", "C", "B", "M", "Diagonal", "Mtriangle"}) {
      const bool triangle = search[1] != '\0';
      const Coordinates<T> a = factorisation::sample<T>(random, 20, triangle, *search == 'N' || triangle ? 1 : 0);
      Factors<T> factors(a, triangle);
      factors.lfill = -1;
      factors.search = search;
      REQUIRE(factors.factorise().ifail == 0);
      const Full<T> whole = permuted(factorisation::written_out(a, triangle), factors);
      const Full<T> l = factors.lower();
      const Full<T> u = factors.upper();
      const Full<T> m = factorisation::product(l, u);
      const QuarnFloat one = 1 + QuarnFloat(1, 2 - digits);
      for (std::size_t i = 0; i < m.size(); ++i) {
        for (std::size_t j = 0; j < m.size(); ++j) {
          CHECK(distance(m[i][j], whole[i][j], largest(u)) <= 100);
          if (*search == 'R' || *search == 'B') {
            CHECK(tesk::modulus(l[i][j]) <= one * (sizeof(T) == sizeof(Complex) ? 2 : 1));
          }
          if (*search == 'C' || *search == 'B') {
            CHECK(tesk::magnitude(u[i][j]) <= (j < i ? QuarnFloat(0) : one * tesk::magnitude(u[i][i])));
          }
        }
        if (*search == 'D' && i > 0) {
          CHECK(tesk::magnitude(u[i][i]) <= one * tesk::magnitude(u[i - 1][i - 1]));
        }
      }
      // Solutions, plain and transposed, in place and not, by rounded operations and by exact sums.
      for (const char* trans : {"N", "t"}) {
        std::vector<T> y(m.size());
        std::generate(y.begin(), y.end(), [&random] { return entries::random_value<T>(random); });
        for (const bool companion : {false, true}) {
          std::vector<T> x(m.size());
          CHECK(factors.solve(trans, y, x, "C", companion).ifail == 0);
          std::vector<T> in_place = y;
          CHECK(factors.solve(trans, in_place, in_place, "n", companion).ifail == 0);
          CHECK(in_place == x);
          const Full<T> original = factorisation::written_out(a, triangle);
          for (std::size_t i = 0; i < m.size(); ++i) {
            T sum(0.0);
            QuarnFloat size = tesk::magnitude(y[i]);
            for (std::size_t j = 0; j < m.size(); ++j) {
              const T& element = original[*trans == 'N' ? i : j][*trans == 'N' ? j : i];
              sum = sum + (*trans == 'N' ? element : tesk::conjugate(element)) * x[j];
              size = std::max(size, largest(original) * tesk::magnitude(x[j]));
            }
            CHECK(distance(sum, y[i], size) <= 1e6);
          }
        }
      }
    }
  }
}

TEST_CASE_TEMPLATE("factors with complete fill are those of the dense factorisations", T, QuarnFloat, Complex) {
  Random random;
  for (const int digits : {3, 17, 50, 333}) {
    const support::Digits scope(digits);
    for (const char* search : {"N", "R", "B", "M", "Ntriangle", "Diagonal", "Mtriangle"}) {
      CAPTURE(digits);
      CAPTURE(search);
      const bool triangle = search[1] != '\0';
      const auto n = std::size_t(random.between(1, 16));
      Coordinates<T> a = factorisation::sample<T>(random, Integer(n), triangle, 1);
      if (*search == 'R' || *search == 'B') {  // the large elements are to be found
        const Full<T> ordered = factorisation::written_out(a, false);
        std::vector<std::size_t> rows(n);
        std::iota(rows.begin(), rows.end(), 0);
        for (std::size_t i = n; i-- > 1;) {
          std::swap(rows[i], rows[std::size_t(random.below(i + 1))]);
        }
        a = {Integer(n), {}, {}, {}};
        for (std::size_t i = 0; i < n; ++i) {
          for (std::size_t j = 0; j < n; ++j) {
            if (!tesk::is_zero(ordered[rows[i]][j])) {
              a.add(Integer(i) + 1, Integer(j) + 1, ordered[rows[i]][j]);
            }
          }
        }
      }
      Factors<T> factors(a, triangle);
      factors.lfill = -1;
      factors.search = search;
      REQUIRE(factors.factorise().ifail == 0);
      CHECK(factors.npivm == 0);
      const Full<T> l = factors.lower();
      const Full<T> u = factors.upper();
      const Full<T> whole = permuted(factorisation::written_out(a, triangle), factors);
      tesk2mp::Matrix<T> dense(n, n);
      for (std::size_t i = 0; i < n; ++i) {
        for (std::size_t j = 0; j < n; ++j) {
          dense(i, j) = whole[i][j];
        }
      }
      // Elimination without interchanges, with more digits: errors are those of some roundings of an element's
      // products.
      tesk2mp::Matrix<T> lu = dense;
      {
        const support::Digits more(digits + 10);
        for (std::size_t k = 0; k < n; ++k) {
          for (std::size_t i = k + 1; i < n; ++i) {
            lu(i, k) = lu(i, k) / lu(k, k);
            for (std::size_t j = k + 1; j < n; ++j) {
              lu(i, j) = lu(i, j) - lu(i, k) * lu(k, j);
            }
          }
        }
      }
      for (std::size_t i = 0; i < n; ++i) {
        for (std::size_t j = 0; j < n; ++j) {
          CHECK(distance(j < i ? l[i][j] : u[i][j], lu(i, j), j < i ? QuarnFloat(1) : largest(u)) <= 40);
        }
      }
      if (triangle) {
        const auto cholesky = tesk2mp::Cholesky<T>(dense).factor();
        for (std::size_t i = 0; i < n; ++i) {
          for (std::size_t j = 0; j <= i; ++j) {
            const QuarnFloat root = sqrt(Complex(u[j][j]).re);
            CHECK(distance(l[i][j] * T(root), cholesky(i, j), root) <= 40);
          }
        }
      }
    }
  }
}

TEST_CASE_TEMPLATE("companions sum rows of many elements exactly, up to 125 digits", T, QuarnFloat, Complex) {
  Random random;
  for (const int digits : {1, 2, 16, 50, 125, 126, 333}) {
    const support::Digits scope(digits);
    for (const bool triangle : {false, true}) {
      for (const Integer n : {Integer(5), Integer(40)}) {
        Factors<T> factors(factorisation::sample<T>(random, n, triangle, 1), triangle);
        factors.lfill = n == 5 ? 0 : -1;
        REQUIRE(factors.factorise().ifail == 0);
        std::vector<T> y(std::size_t(n), T(0.0)), x = y, exact = y;
        std::generate(y.begin(), y.end(), [&random] { return entries::random_value<T>(random); });
        CHECK(factors.solve("N", y, x).ifail == 0);
        CHECK(factors.solve("N", y, exact, "C", true).ifail == 0);
        if (n == 5 || digits > 125) {
          CHECK(exact == x);
          continue;
        }
        // The last element of L^-1 P y is divided by its pivot, and nothing else happens to it.
        const Full<T> u = factors.upper();
        const Full<T> l = factors.lower();
        std::vector<T> z = permuted_rows(y, factors);
        for (std::size_t i = 0; i < z.size(); ++i) {
          const support::Digits more(4 * digits + 100);
          for (std::size_t j = 0; j < i; ++j) {
            z[i] = z[i] - l[i][j] * z[j];
          }
          const support::Digits fewer(digits);
          z[i] = z[i] * T(QuarnFloat(1));
        }
        const std::size_t last = z.size() - 1;
        const T& pivot = u[last][last];
        CHECK(exact[factors.column(last)] == (triangle ? tesk::quotient(z[last], pivot) : z[last] / pivot));
      }
    }
  }
}

TEST_CASE("least fill takes the row with the fewest entries left") {
  Random random;
  const Coordinates<QuarnFloat> a = factorisation::sample<QuarnFloat>(random, 15, true, 1);
  Factors<QuarnFloat> factors(a, true);
  factors.lfill = -1;
  factors.search = "M";
  REQUIRE(factors.factorise().ifail == 0);
  Full<int> left = levels_of(a, true);
  std::vector<std::size_t> rows(15);
  std::iota(rows.begin(), rows.end(), 0);
  for (std::size_t k = 0; k < 15; ++k) {
    const auto count = [&](std::size_t i) {
      return std::count_if(rows.begin(), rows.end(), [&](std::size_t j) { return left[i][j] < kFar; });
    };
    const auto chosen =
        std::min_element(rows.begin(), rows.end(), [&](std::size_t i, std::size_t j) { return count(i) < count(j); });
    const std::size_t p = *chosen;
    CHECK(factors.row(k) == p);
    rows.erase(chosen);
    for (const std::size_t i : rows) {
      for (const std::size_t j : rows) {
        left[i][j] = left[i][p] < kFar && left[p][j] < kFar ? 0 : left[i][j];
      }
    }
  }
}

TEST_CASE("a search of least fill saves fill, and keeps to large elements") {
  // Five-point differences on a grid, and an arrow that points the wrong way: its first row and column are full.
  constexpr Integer kSide = 12;
  const auto entries_of = [](const Coordinates<QuarnFloat>& a, const char* search) {
    Factors<QuarnFloat> factors(a, false);
    factors.lfill = -1;
    factors.search = search;
    CHECK(factors.factorise().ifail == 0);
    CHECK(factors.npivm == 0);
    return factors.nnzc;
  };
  Coordinates<QuarnFloat> grid{kSide * kSide, {}, {}, {}};
  Coordinates<QuarnFloat> arrow{40, {}, {}, {}};
  for (Integer i = 1; i <= grid.n; ++i) {
    for (const Integer j : {i - kSide, i - 1, i, i + 1, i + kSide}) {
      const bool wraps = (j == i - 1 && i % kSide == 1) || (j == i + 1 && i % kSide == 0);
      if (j >= 1 && j <= grid.n && !wraps) {
        grid.add(i, j, i == j ? 4 : -1);
      }
    }
  }
  for (Integer i = 1; i <= arrow.n; ++i) {
    for (Integer j = 1; j <= arrow.n; ++j) {
      if (i == j || i == 1 || j == 1) {
        arrow.add(i, j, i == j ? 100 : 1);
      }
    }
  }
  CHECK(5 * entries_of(grid, "M") < 4 * entries_of(grid, "N"));
  CHECK(entries_of(arrow, "N") == 1600);
  CHECK(entries_of(arrow, "M") == arrow.nnz());
  // 0.05 beside 1 in its row is too small a pivot, though it would fill nothing.
  Coordinates<QuarnFloat> small{2, {}, {}, {}};
  small.add(1, 1, QuarnFloat("0.05"));
  small.add(1, 2, 1);
  small.add(2, 1, 1);
  small.add(2, 2, 1);
  Factors<QuarnFloat> factors(small, false);
  factors.lfill = -1;
  factors.search = "M";
  REQUIRE(factors.factorise().ifail == 0);
  CHECK(factors.column(0) == 1);
}

TEST_CASE("drop tolerance drops small fill alone") {
  // Fill at (2, 3) is -1, at (3, 2) it is -1e-3: rows (1, 0.001, 1), (1, 4, 0), (1, 0, 4).
  Coordinates<QuarnFloat> a{3, {}, {}, {}};
  for (Integer i = 1; i <= 3; ++i) {
    a.add(i, 1, 1);
    if (i != 2) {
      a.add(i, i == 1 ? 2 : 3, i == 1 ? QuarnFloat("0.001") : QuarnFloat(4));
    } else {
      a.add(2, 2, 4);
    }
    if (i == 1) {
      a.add(1, 3, 1);
    }
  }
  Factors<QuarnFloat> factors(a, false);
  factors.lfill = -1;
  factors.dtol = QuarnFloat("0.01");
  REQUIRE(factors.factorise().ifail == 0);
  CHECK(factors.pattern() == Full<int>{{1, 1, 1}, {1, 1, 1}, {1, 0, 1}});
  factors.la = factors.nnz + 3;
  CHECK(factors.factorise().ifail == 3);
  CHECK(factors.nnzc == 8);
}

TEST_CASE("pivots that are no pivots are replaced and counted") {
  Coordinates<QuarnFloat> swap{2, {}, {}, {}};
  swap.add(1, 2, 3);
  swap.add(2, 1, -6);
  Factors<QuarnFloat> plain(swap, false);
  REQUIRE(plain.factorise().ifail == 0);
  CHECK(plain.npivm == 1);
  CHECK(plain.upper() == Full<QuarnFloat>{{3, 3}, {0, 6}});
  for (const char* search : {"R", "C", "B", "M"}) {
    Factors<QuarnFloat> searched(swap, false);
    searched.search = search;
    REQUIRE(searched.factorise().ifail == 0);
    CHECK(searched.npivm == 0);
    CHECK(searched.nnzc == 2);
  }
  Coordinates<QuarnFloat> indefinite{3, {}, {}, {}};
  indefinite.add(1, 1, 4);
  indefinite.add(2, 1, 8);
  indefinite.add(2, 2, -1);  // pivot -17
  Factors<QuarnFloat> cholesky(indefinite, true);
  REQUIRE(cholesky.factorise().ifail == 0);
  CHECK(cholesky.npivm == 2);  // row 3 is empty
  CHECK(cholesky.upper() == Full<QuarnFloat>{{4, 8, 0}, {0, 8, 0}, {0, 0, 1}});
  cholesky.dscale = 7;  // the diagonal 32, -8
  REQUIRE(cholesky.factorise().ifail == 0);
  CHECK(cholesky.upper()[0][0] == 32);
}

TEST_CASE_TEMPLATE("NaN and infinities end in factors and solutions, whatever the search", T, QuarnFloat, Complex) {
  Random random;
  for (const char* special : {"nan", "inf"}) {
    for (const char* search : {"N", "R", "C", "B", "D", "M"}) {
      const bool triangle = *search == 'D' || *search == 'M';
      Coordinates<T> a = factorisation::sample<T>(random, 6, triangle, 1);
      a.a[random.below(a.a.size())] = T(QuarnFloat(special));
      Factors<T> factors(a, triangle);
      factors.lfill = 1;
      factors.search = search;
      CHECK(factors.factorise().ifail == 0);
      CHECK(factors.nnzc >= 6);
    }
  }
}
