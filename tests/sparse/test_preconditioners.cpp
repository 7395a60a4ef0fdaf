// Jacobi and SSOR preconditioners: M times what they give is the right-hand side, M by its definition.
#include <doctest/doctest.h>

#include <vector>

#include "sparse/entries.h"
#include "src/kernels/scalar.h"
#include "support/digits.h"
#include "support/pick.h"
#include "tesk2mp/sparse.h"

using entries::Coordinates;

namespace {

template <class T>
struct Exports {
  static constexpr auto diagonal = support::pick<T>(QuarnMPX_sparse_diagonal_, QuarnMPX_zsparse_diagonal_);
  static constexpr auto jacobi = support::pick<T>(QuarnMPX_jacobi_, QuarnMPX_zjacobi_);
  static constexpr auto ssor = support::pick<T>(QuarnMPX_ssor_, QuarnMPX_zssor_);
};

template <class T>
using Full = std::vector<std::vector<T>>;

template <class T>
Full<T> product(const Full<T>& a, const Full<T>& b) {
  Full<T> c(a.size(), std::vector<T>(a.size()));
  for (std::size_t i = 0; i < a.size(); ++i) {
    for (std::size_t j = 0; j < a.size(); ++j) {
      for (std::size_t k = 0; k < a.size(); ++k) {
        c[i][j] = c[i][j] + a[i][k] * b[k][j];
      }
    }
  }
  return c;
}

/// M of SSOR, or D of Jacobi where omega is 0.
template <class T>
Full<T> definition(const Coordinates<T>& a, const QuarnFloat& omega) {
  const auto n = std::size_t(a.n);
  Full<T> lower(n, std::vector<T>(n)), upper = lower, inverse = lower;
  for (std::size_t k = 0; k < a.a.size(); ++k) {
    const auto i = std::size_t(a.irow[k] - 1);
    const auto j = std::size_t(a.icol[k] - 1);
    if (i == j && omega == 0) {
      lower[i][j] = a.a[k];
    } else if (i == j) {
      inverse[i][i] = tesk::quotient(T(omega / (2 - omega)), a.a[k]);
      lower[i][i] = upper[i][i] = a.a[k] * T(1 / omega);
    } else {
      (j < i ? lower : upper)[i][j] = omega == 0 ? T(0.0) : a.a[k];
    }
  }
  return omega == 0 ? lower : product(product(lower, inverse), upper);
}

template <class T>
Coordinates<T> sample(support::Random& random, Integer n) {
  Coordinates<T> a{n, {}, {}, {}};
  for (Integer i = 1; i <= n; ++i) {
    for (Integer j = 1; j <= n; ++j) {
      if (i == j || random.between(0, 2) == 0) {
        a.add(i, j, entries::random_value<T>(random) + T(i == j ? 4e6 : 0.0));
      }
    }
  }
  return a;
}

template <class T>
struct Rows {
  std::vector<Integer> starts, places;
  Integer info = -99;
};

template <class T>
Rows<T> rows_of(const Coordinates<T>& a) {
  Rows<T> rows{std::vector<Integer>(std::size_t(a.n) + 1, -1), std::vector<Integer>(std::size_t(a.n), -1)};
  Exports<T>::diagonal(a.n, a.nnz(), a.a.data(), a.irow.data(), a.icol.data(), rows.starts.data(), rows.places.data(),
                       &rows.info);
  return rows;
}

}  // namespace

TEST_CASE_TEMPLATE("M times the solution is the right-hand side", T, QuarnFloat, Complex) {
  support::Random random;
  for (const int digits : {16, 40, 333}) {
    const support::Digits scope(digits);
    for (const Integer n : {1, 2, 9}) {
      const Coordinates<T> a = sample<T>(random, n);
      const Rows<T> rows = rows_of(a);
      REQUIRE(rows.info == 0);
      for (const char* omega : {"0", "0.4", "1", "1.9"}) {
        for (const char trans : {'N', 't', 'C'}) {
          std::vector<T> right;
          for (Integer i = 0; i < n; ++i) {
            right.push_back(entries::random_value<T>(random));
          }
          std::vector<T> x = right;
          Integer info = -99;
          if (*omega == '0' && omega[1] == '\0') {
            Exports<T>::jacobi(&trans, n, a.a.data(), rows.places.data(), x.data(), &info, 1);
          } else {
            Exports<T>::ssor(&trans, n, a.a.data(), a.icol.data(), rows.starts.data(), rows.places.data(),
                             QuarnFloat(omega), x.data(), &info, 1);
          }
          REQUIRE(info == 0);
          const Full<T> m = definition(a, QuarnFloat(omega));
          QuarnFloat error = 0;
          QuarnFloat size = 0;
          for (std::size_t i = 0; i < right.size(); ++i) {
            T sum = -right[i];
            for (std::size_t j = 0; j < right.size(); ++j) {
              const T& element = trans == 'N' ? m[i][j] : m[j][i];
              sum = sum + (trans == 'C' ? tesk::conjugate(element) : element) * x[j];
            }
            error = std::max(error, tesk::magnitude(sum));
            size = std::max(size, tesk::magnitude(right[i]));
          }
          CAPTURE(digits);
          CAPTURE(n);
          CAPTURE(omega);
          CAPTURE(trans);
          CHECK(error <= QuarnFloat(1, 3 - digits) * size);
        }
      }
    }
  }
}

TEST_CASE_TEMPLATE("rows and diagonals, and what is wrong with them", T, QuarnFloat, Complex) {
  Coordinates<T> a{4, {}, {}, {}};
  for (const Integer i : {1, 2, 4}) {
    a.add(i, i, T(2.0));
  }
  Rows<T> rows = rows_of(a);  // row 3 is empty
  CHECK(rows.info == 3);
  CHECK(rows.starts == std::vector<Integer>{1, 2, 3, 3, 4});
  CHECK(rows.places == std::vector<Integer>{1, 2, 0, 3});
  a.a[1] = T(0.0);
  CHECK(rows_of(a).info == 2);
  a.irow[2] = 1;
  CHECK(rows_of(a).info == -5);  // out of order
  a.irow[2] = 5;
  rows = rows_of(a);
  CHECK(rows.info == -4);
  CHECK(rows.starts[0] == -1);
  a.irow[2] = 2;
  a.icol[2] = 2;
  CHECK(rows_of(a).info == -5);  // twice the same place
  a.icol[2] = 0;
  CHECK(rows_of(a).info == -5);
  CHECK(rows_of(Coordinates<T>{4, {}, {}, {}}).info == -2);
  a.n = 0;
  CHECK(rows_of(a).info == -1);

  const T value(1.0);
  T x(1.0);
  const Integer place = 1;
  const Integer starts[] = {1, 2};
  const auto ssor = [&](const char* trans, Integer n, const QuarnFloat& omega) {
    Integer info = -99;
    Exports<T>::ssor(trans, n, &value, &place, starts, &place, omega, &x, &info, 1);
    return info;
  };
  CHECK(ssor("X", 0, 2) == -1);
  CHECK(ssor("N", 0, 2) == -2);
  for (const char* omega : {"2", "0", "-1", "nan"}) {
    CHECK(ssor("N", 1, QuarnFloat(omega)) == -7);
  }
  Integer info = -99;
  Exports<T>::jacobi("X", 0, &value, &place, &x, &info, 1);
  CHECK(info == -1);
  Exports<T>::jacobi("N", 0, &value, &place, &x, &info, 1);
  CHECK(info == -2);
  CHECK(tesk::is_one(x));
}
