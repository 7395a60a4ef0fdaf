// Data with bounds of which an element is not a number, or infinite: nothing is known of what follows from them.
#include <doctest/doctest.h>

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "support/digits.h"
#include "support/random_number.h"
#include "tesk2mp/proven_matrix_functions.hpp"
#include "tesk2mp/proven_pseudo_inverse.hpp"
#include "tesk2mp/tesk2mp.hpp"

using support::random_number;
using tesk2mp::Matrix;
using tesk2mp::Real;
using tesk2mp::Triangle;
namespace proven = tesk2mp::proven;

namespace {

template <class T>
std::size_t known(const proven::Bounded<T>& x) {
  return x.error.is_finite() ? 1 : 0;
}
std::size_t known(const proven::BoundedRoot& x) { return x.error.is_finite() ? 1 : 0; }
template <class T>
std::size_t known(const std::vector<T>& x) {
  std::size_t count = 0;
  for (const T& each : x) {
    count += known(each);
  }
  return count;
}
template <class T>
std::size_t known(const proven::BoundedMatrix<T>& a) {
  std::size_t count = 0;
  for (std::size_t j = 0; j < a.columns(); ++j) {
    for (std::size_t i = 0; i < a.rows(); ++i) {
      count += known(a(i, j));
    }
  }
  return count;
}

/// How many elements of each result that has to have none are known.
template <class T>
std::vector<std::pair<std::string, std::function<std::size_t()>>> results_of(const proven::BoundedMatrix<T>& a) {
  using proven::Bounded;
  std::vector<std::pair<std::string, std::function<std::size_t()>>> results = {
      {"qr", [&a] { return known(proven::qr(a).q) + known(proven::qr(a).r); }},
      {"pseudo_inverse", [&a] { return known(proven::pseudo_inverse(a)); }},
      {"singular_values", [&a] { return known(proven::singular_values(a)); }},
      {"singular_system",
       [&a] {
         const auto system = proven::singular_system(a);
         return known(system.u) + known(system.values) + known(system.v);
       }},
      {"minimum_norm", [&a] { return known(proven::minimum_norm(a, proven::detail::identity<T>(a.rows()))); }},
      {"norm", [&a] { return known(proven::norm(tesk2mp::Norm::frobenius, a)); }},
  };
  const auto add = [&results](const char* name, std::function<std::size_t()> count) {
    results.emplace_back(name, std::move(count));
  };
  if (a.rows() <= a.columns()) {  // of a tall matrix the factors of the rows above are known
    add("lu", [&a] { return known(proven::lu(a).l) + known(proven::lu(a).u); });
  }
  if (a.rows() != a.columns()) {
    return results;
  }
  add("cholesky", [&a] { return known(proven::cholesky(a)); });
  add("exponential", [&a] { return known(proven::exponential(a)); });
  add("square_root", [&a] { return known(proven::square_root(a)); });
  add("logarithm", [&a] { return known(proven::logarithm(a)); });
  add("power", [&a] { return known(proven::power(a, Real("0.25"))); });
  add("solve", [&a] { return known(proven::solve(a, Matrix<T>::identity(a.rows()))); });
  add("determinant", [&a] { return known(proven::determinant(a)); });
  add("scaled_determinant", [&a] { return known(proven::scaled_determinant(a).mantissa); });
  add("condition", [&a] { return known(proven::condition(a)); });
  add("eigenvalues", [&a] { return known(proven::eigenvalues(a)); });
  add("eigen", [&a] {
    const auto system = proven::eigen(a);
    return known(system.values) + known(system.vectors) + known(proven::left_eigenvectors(a, system.values));
  });
  add("eigen of a pencil", [&a] {
    const auto unit = proven::detail::identity<T>(a.rows());
    return known(proven::eigen(a, unit).values) + known(proven::eigenvalues(unit, a)) +
           known(proven::eigen(unit, a).vectors);
  });
  add("symmetric_eigen", [&a] {
    const auto system = proven::symmetric_eigen(a);
    return known(system.values) + known(system.vectors);
  });
  return results;
}

template <class T>
T with_bad_part(Real bad, bool in_imaginary_part) {
  if constexpr (tesk2mp::detail::kIsComplex<T>) {
    return in_imaginary_part ? T(Real(1), std::move(bad)) : T(std::move(bad), Real(1));
  } else {
    return bad;
  }
}

}  // namespace

TEST_CASE_TEMPLATE("of data with values that are not finite nothing is known", T, QuarnFloat, Complex) {
  support::Random random;
  for (int round = 0; round < 12; ++round) {
    const tesk2mp::Digits scope(int(random.between(1, 30)));
    const auto m = std::size_t(random.between(1, 4));
    const std::size_t n = round % 3 == 0 ? std::size_t(random.between(1, 4)) : m;
    // In the lower triangle, which is all that some read, apart from an imaginary part of the diagonal.
    const auto i = std::size_t(random.between(0, std::int64_t(m) - 1));
    const auto j = std::size_t(random.between(0, std::int64_t(std::min(i, n - 1))));
    const char* const bad = round % 3 == 1 ? "Infinity" : round % 2 == 0 ? "NaN" : "-Infinity";
    Matrix<T> values(m, n);
    for (std::size_t k = 0; k < m * n; ++k) {
      do {  // rows and columns of exact zeros are known in the pseudo-inverse, whatever the others are
        values.data()[k] = random_number<T>(random);
      } while (values.data()[k] == T());
    }
    for (std::size_t k = 0; k < std::min(m, n); ++k) {
      values(k, k) = values(k, k) + T(int(2 * n));  // no leading minor is proven not to be positive
    }
    values(i, j) = with_bad_part<T>(Real(bad), i != j && round % 2 == 0);
    Matrix<Real> errors(m, n);
    errors(i, j) = Real(round % 4 < 2 ? "Infinity" : "1e-3");
    const proven::BoundedMatrix<T> a(values, errors);
    for (const auto& result : results_of(a)) {
      const auto& name = result.first;
      CAPTURE(name);
      CAPTURE(round);
      std::size_t count = 1;
      CHECK_NOTHROW(count = result.second());
      CHECK(count == 0);
    }
  }
}

TEST_CASE("a column of exact zeros is one of the pseudo-inverse's rows, whatever the others are") {
  const proven::BoundedMatrix<Real> a({{Real("Infinity"), Real()}, {Real(1), Real()}},
                                      {{Real(), Real()}, {Real(), Real()}});
  const auto x = proven::pseudo_inverse(a);
  for (std::size_t j = 0; j < 2; ++j) {
    CHECK_FALSE(x(0, j).error.is_finite());
    CHECK(x(1, j).value == 0);
    CHECK(x(1, j).error == QuarnBound());
  }
}

TEST_CASE_TEMPLATE("what is not read of a Hermitian matrix may be anything", T, QuarnFloat, Complex) {
  const tesk2mp::Digits scope(12);
  for (const Triangle stored : {Triangle::lower, Triangle::upper}) {
    const bool is_lower = stored == Triangle::lower;
    Matrix<T> values = {{T(4), T(1)}, {T(1), T(5)}};
    values(is_lower ? 0 : 1, is_lower ? 1 : 0) = T(Real("NaN"));
    const proven::BoundedMatrix<T> a(values, {{Real(), Real("1e-6")}, {Real("1e-6"), Real()}});
    const auto system = proven::symmetric_eigen(a, stored);
    CHECK(known(system.values) == 2);
    CHECK(known(system.vectors) == 4);
    CHECK(known(proven::cholesky(a, stored)) == 4);
  }
}

TEST_CASE("bounds are numbers from 0 on, or infinity") {
  const tesk2mp::Digits scope(12);
  const Matrix<Real> values(2, 3);
  for (const char* const bad : {"-1", "-1e-99", "-Infinity", "NaN"}) {
    for (std::size_t k = 0; k < 6; ++k) {
      Matrix<Real> errors(2, 3);
      errors.data()[k] = Real(bad);
      CHECK_THROWS_AS(proven::BoundedMatrix<Real>(values, errors), tesk2mp::InvalidArgument);
      CHECK_THROWS_AS(proven::BoundedMatrix<Complex>(Matrix<Complex>(2, 3), errors), tesk2mp::InvalidArgument);
    }
  }
  for (const char* const good : {"0", "-0", "1e-99", "Infinity"}) {
    CHECK_NOTHROW(proven::BoundedMatrix<Real>(Matrix<Real>(1, 1), {{Real(good)}}));
  }
}
