#include <doctest/doctest.h>

#include <climits>
#include <type_traits>
#include <vector>

#include "sparse/entries.h"
#include "src/kernels/entries.h"
#include "support/digits.h"
#include "tesk2mp/sparse.h"

using entries::Coordinates;
using entries::random_value;
using entries::value_of;

namespace {

/// y := op(A) x through the classic form, into a y of junk with a guard behind it.
template <class Value>
std::vector<Value> product(const Coordinates<Value>& matrix, bool triangle, const char* trans, const char* check,
                           const std::vector<Value>& x) {
  const Integer nnz = matrix.nnz();
  std::vector<Value> y(std::size_t(matrix.n) + 1, value_of<Value>(-77, 7));
  Integer ifail = -1;
  const auto general = [&](auto routine) {
    routine(trans, &matrix.n, &nnz, matrix.a.data(), matrix.irow.data(), matrix.icol.data(), check, x.data(), y.data(),
            &ifail, 1, 1);
  };
  const auto symmetric = [&](auto routine) {
    routine(&matrix.n, &nnz, matrix.a.data(), matrix.irow.data(), matrix.icol.data(), check, x.data(), y.data(), &ifail,
            1);
  };
  if constexpr (std::is_same_v<Value, Complex>) {
    triangle ? symmetric(QuarnMP_f11xsf_) : general(QuarnMP_f11xnf_);
  } else {
    triangle ? symmetric(QuarnMP_f11xef_) : general(QuarnMP_f11xaf_);
  }
  CHECK(ifail == 0);
  CHECK(y.back() == value_of<Value>(-77, 7));
  y.pop_back();
  return y;
}

QuarnFloat mirrored(const QuarnFloat& a) { return a; }
Complex mirrored(const Complex& a) { return conj(a); }

/// The dense matrix, column by column; entries of the same place add up.
template <class Value>
std::vector<Value> dense(const Coordinates<Value>& matrix, bool triangle) {
  std::vector<Value> a(std::size_t(matrix.n) * std::size_t(matrix.n), value_of<Value>(0, 0));
  for (std::size_t k = 0; k < matrix.a.size(); ++k) {
    const auto place = [&](Integer row, Integer column) -> Value& {
      return a[std::size_t((row - 1) + (column - 1) * matrix.n)];
    };
    Value& own = place(matrix.irow[k], matrix.icol[k]);
    own = own + matrix.a[k];
    if (triangle && matrix.irow[k] != matrix.icol[k]) {
      Value& other = place(matrix.icol[k], matrix.irow[k]);
      other = other + mirrored(matrix.a[k]);
    }
  }
  return a;
}

template <class Value>
std::vector<Value> dense_product(const Coordinates<Value>& matrix, bool triangle, const char* trans,
                                 std::vector<Value> x) {
  std::vector<Value> a = dense(matrix, triangle);
  std::vector<Value> y(x.size());
  const Value one = value_of<Value>(1, 0);
  const Value zero = value_of<Value>(0, 0);
  if constexpr (std::is_same_v<Value, Complex>) {
    QuarnMP_f06saf_(*trans == 'T' ? "C" : trans, matrix.n, matrix.n, one, a.data(), matrix.n, x.data(), 1, zero,
                    y.data(), 1, 1);
  } else {
    QuarnMP_f06paf_(trans, matrix.n, matrix.n, one, a.data(), matrix.n, x.data(), 1, zero, y.data(), 1, 1);
  }
  return y;
}

}  // namespace

TEST_CASE_TEMPLATE("canonical form: the dense product to the last digit", Value, QuarnFloat, Complex) {
  support::Random random;
  for (const int digits : {7, 20, 50}) {
    support::Digits scope(digits);
    for (int round = 0; round < 40; ++round) {
      for (const bool triangle : {false, true}) {
        Coordinates<Value> matrix;
        matrix.n = Integer(random.between(1, 9));
        for (Integer i = 1; i <= matrix.n; ++i) {
          for (Integer j = 1; j <= (triangle ? i : matrix.n); ++j) {
            if (!random.once_in(3) || i == 1) {
              matrix.add(i, j, random_value<Value>(random));
            }
          }
        }
        std::vector<Value> x;
        for (Integer i = 0; i < matrix.n; ++i) {
          x.push_back(random_value<Value>(random));
        }
        for (const char* trans : {"N", "T"}) {
          CAPTURE(triangle);
          CAPTURE(*trans);
          const std::vector<Value> expected = dense_product(matrix, triangle, triangle ? "N" : trans, x);
          CHECK(product(matrix, triangle, trans, "C", x) == expected);
          CHECK(product(matrix, triangle, trans, "n", x) == expected);
        }
      }
    }
  }
}

TEST_CASE_TEMPLATE("any order, places repeated: the entries add up", Value, QuarnFloat, Complex) {
  // Small whole numbers, so that every order of summation is exact.
  support::Random random;
  const auto value = [&random] {
    const auto re = int(random.between(-9, 9));
    return value_of<Value>(re, int(random.between(-9, 9)));
  };
  for (int round = 0; round < 60; ++round) {
    for (const bool triangle : {false, true}) {
      Coordinates<Value> matrix;
      matrix.n = Integer(random.between(1, 5));
      for (std::int64_t k = random.between(1, 40); k > 0; --k) {
        const auto row = Integer(random.between(1, matrix.n));
        matrix.add(row, Integer(random.between(1, triangle ? row : matrix.n)), value());
      }
      std::vector<Value> x;
      for (Integer i = 0; i < matrix.n; ++i) {
        x.push_back(value());
      }
      for (const char* trans : {"N", "T"}) {
        CHECK(product(matrix, triangle, trans, "N", x) == dense_product(matrix, triangle, triangle ? "N" : trans, x));
      }
    }
  }
}

TEST_CASE("storage order decides the rounding") {
  const std::vector<QuarnFloat> x = {1, 1, 1};
  Coordinates<QuarnFloat> matrix;
  matrix.n = 3;
  matrix.add(1, 1, QuarnFloat("1e30"));
  matrix.add(1, 2, 1);
  matrix.add(1, 3, QuarnFloat("-1e30"));
  CHECK(product(matrix, false, "N", "C", x)[0] == 0);
  std::swap(matrix.a[1], matrix.a[2]);
  std::swap(matrix.icol[1], matrix.icol[2]);
  CHECK(product(matrix, false, "N", "N", x)[0] == 1);
}

TEST_CASE("'T' is the conjugate transpose for complex values, and the transpose when they are real") {
  Coordinates<Complex> matrix;
  matrix.n = 2;
  matrix.add(1, 2, value_of<Complex>(3, 4));
  const std::vector<Complex> x = {value_of<Complex>(1, 2), value_of<Complex>(0, 0)};
  CHECK(product(matrix, false, "t", "C", x)[1] == value_of<Complex>(11, 2));  // (3 - 4i) (1 + 2i)
  matrix.a[0] = value_of<Complex>(3, 0);
  CHECK(product(matrix, false, "T", "c", x)[1] == value_of<Complex>(3, 6));
}

TEST_CASE("a Hermitian diagonal counts once, with its imaginary part as stored") {
  Coordinates<Complex> matrix;
  matrix.n = 1;
  matrix.add(1, 1, value_of<Complex>(2, 5));
  CHECK(product(matrix, true, "N", "C", {value_of<Complex>(1, 0)})[0] == value_of<Complex>(2, 5));
}

TEST_CASE_TEMPLATE("without a check an empty matrix gives zeros, and N < 1 touches nothing", Value, QuarnFloat,
                   Complex) {
  for (const bool triangle : {false, true}) {
    for (const Integer nnz : {0, -1, INT_MIN}) {
      Coordinates<Value> matrix;
      matrix.n = 2;
      const std::vector<Value> x(2, value_of<Value>(1, 1));
      CHECK(product(matrix, triangle, "N", "N", x) == std::vector<Value>(2, value_of<Value>(0, 0)));
      for (const Integer n : {0, -1, INT_MIN}) {
        Value y = value_of<Value>(8, 9);
        Integer ifail = -1;
        if constexpr (std::is_same_v<Value, Complex>) {
          triangle ? QuarnMP_f11xsf_(&n, &nnz, nullptr, nullptr, nullptr, "N", nullptr, &y, &ifail, 1)
                   : QuarnMP_f11xnf_("T", &n, &nnz, nullptr, nullptr, nullptr, "N", nullptr, &y, &ifail, 1, 1);
        } else {
          triangle ? QuarnMP_f11xef_(&n, &nnz, nullptr, nullptr, nullptr, "N", nullptr, &y, &ifail, 1)
                   : QuarnMP_f11xaf_("T", &n, &nnz, nullptr, nullptr, nullptr, "N", nullptr, &y, &ifail, 1, 1);
        }
        CHECK(ifail == 0);
        CHECK(y == value_of<Value>(8, 9));
      }
    }
  }
}
