// Refined solutions against solutions with three times the digits.
#include <doctest/doctest.h>

#include <algorithm>
#include <vector>

#include "support/digits.h"
#include "support/matrices.h"
#include "support/pick.h"
#include "tesk2mp/tesk2mp.h"

using support::Digits;
using support::Matrix;
using support::RandomNumbers;

namespace {

template <class T>
struct Outcome {
  Matrix<T> x;
  QuarnFloat forward;
  QuarnFloat backward;
  Integer info = -99;
};

/// The refined solution of op(A) x = b, from the solution that the factors give.
template <class T>
Outcome<T> solution(const char* trans, Matrix<T> a, Matrix<T> b) {
  constexpr auto getrf = support::pick<T>(QuarnMPX_dgetrf_, QuarnMPX_zgetrf_);
  constexpr auto getrs = support::pick<T>(QuarnMPX_dgetrs_, QuarnMPX_zgetrs_);
  constexpr auto gerfs = support::pick<T>(QuarnMPX_dgerfs_, QuarnMPX_zgerfs_);
  const Integer n = a.rows();
  Matrix<T> factors = a;
  std::vector<Integer> pivots(static_cast<std::size_t>(n));
  Outcome<T> outcome{b, {}, {}};
  getrf(n, n, factors.data(), factors.lda(), pivots.data(), &outcome.info);
  getrs(trans, n, 1, factors.data(), factors.lda(), pivots.data(), outcome.x.data(), outcome.x.lda(), &outcome.info, 1);
  T work;
  gerfs(trans, n, 1, a.data(), a.lda(), factors.data(), factors.lda(), pivots.data(), b.data(), b.lda(),
        outcome.x.data(), outcome.x.lda(), &outcome.forward, &outcome.backward, &work, nullptr, &outcome.info, 1);
  CHECK(a.intact());
  CHECK(outcome.x.intact());
  return outcome;
}

template <class T>
QuarnFloat largest(const Matrix<T>& x) {
  QuarnFloat size = 0;
  for (Integer i = 1; i <= x.rows(); ++i) {
    size = std::max(size, tesk::magnitude(x(i, 1)));
  }
  return size;
}

/// Random, or with a condition number of some 10^(3 n / 2).
template <class T>
Matrix<T> sample(RandomNumbers& random, Integer n, bool hilbert) {
  Matrix<T> a = Matrix<T>(n, n).randomise(random);
  for (Integer j = 1; hilbert && j <= n; ++j) {
    for (Integer i = 1; i <= n; ++i) {
      a(i, j) = T(QuarnFloat(1) / QuarnFloat(i + j - 1));
    }
  }
  return a;
}

}  // namespace

TEST_CASE_TEMPLATE("refined solutions are good to the last digit, and their errors are known", T, QuarnFloat, Complex) {
  RandomNumbers random;
  for (const int digits : {2, 16, 50, 130, 333}) {
    const Digits scope(digits);
    for (const Integer n : {1, 7, 24}) {
      const bool hilbert = n == 7 && digits >= 16;
      if (n == 24 && digits < 16) {
        continue;
      }
      for (const char* trans : {"N", "t", "C"}) {
        const Matrix<T> a = sample<T>(random, n, hilbert);
        const Matrix<T> b = Matrix<T>(n, 1).randomise(random);
        const Outcome<T> refined = solution(trans, a, b);
        const Digits more(3 * digits);
        const Outcome<T> truth = solution(trans, a, b);
        Matrix<T> error(n, 1);
        for (Integer i = 1; i <= n; ++i) {
          error(i, 1) = refined.x(i, 1) - truth.x(i, 1);
        }
        CAPTURE(digits);
        CAPTURE(n);
        CAPTURE(*trans);
        if (refined.info != 0) {
          CHECK(digits == 2);  // where the condition number may be beyond what two digits can solve
          continue;
        }
        CHECK(largest(error) <= QuarnFloat(1, 1 - digits) * largest(truth.x));
        CHECK(largest(error) <= refined.forward * largest(truth.x));
        CHECK(refined.forward <= QuarnFloat(2, 1 - digits));
        CHECK(refined.backward <= QuarnFloat(2, 1 - digits));
      }
    }
  }
}

TEST_CASE_TEMPLATE("what refinement cannot solve it reports", T, QuarnFloat, Complex) {
  RandomNumbers random;
  const Digits scope(16);
  const Matrix<T> b = Matrix<T>(20, 1).randomise(random);
  const Outcome<T> hopeless = solution("N", sample<T>(random, 20, true), b);
  CHECK(hopeless.info == 1);
  CHECK(hopeless.forward == 1);

  Matrix<T> zero(3, 3);
  Matrix<T> one(3, 1);
  for (Integer j = 1; j <= 3; ++j) {
    one(j, 1) = T(1.0);
    for (Integer i = 1; i <= 3; ++i) {
      zero(i, j) = T(0.0);
    }
  }
  CHECK(solution("N", zero, one).info == 1);
  // A NaN anywhere.
  for (Integer place = 0; place < 12; ++place) {
    Matrix<T> a = sample<T>(random, 3, false);
    Matrix<T> right = one;
    (place < 9 ? a(place / 3 + 1, place % 3 + 1) : right(place - 8, 1)) = T(QuarnFloat("nan"));
    CAPTURE(place);
    CHECK(solution("N", a, right).info == 1);
  }
  // Zero equals zero, without an error.
  for (Integer i = 1; i <= 3; ++i) {
    one(i, 1) = T(0.0);
  }
  const Outcome<T> none = solution("N", sample<T>(random, 3, false), one);
  CHECK(none.info == 0);
  CHECK(none.forward == 0);
  CHECK(none.backward == 0);
}

TEST_CASE("wrong arguments of refinement") {
  QuarnFloat a[4] = {1, 0, 0, 1}, b[2] = {1, 2}, x[2] = {1, 2}, ferr[1], berr[1], work[6];
  Integer pivots[2] = {1, 2}, iwork[2];
  const auto info = [&](const char* trans, Integer n, Integer nrhs, Integer lda, Integer ldaf, Integer ldb,
                        Integer ldx) {
    Integer result = -99;
    QuarnMPX_dgerfs_(trans, n, nrhs, a, lda, a, ldaf, pivots, b, ldb, x, ldx, ferr, berr, work, iwork, &result, 1);
    return result;
  };
  CHECK(info("X", -1, -1, 0, 0, 0, 0) == -1);
  CHECK(info("N", -1, -1, 0, 0, 0, 0) == -2);
  CHECK(info("N", 2, -1, 0, 0, 0, 0) == -3);
  CHECK(info("N", 2, 1, 1, 0, 0, 0) == -5);
  CHECK(info("N", 2, 1, 2, 1, 0, 0) == -7);
  CHECK(info("N", 2, 1, 2, 2, 1, 0) == -10);
  CHECK(info("N", 2, 1, 2, 2, 2, 1) == -12);
  CHECK(info("N", 0, 1, 1, 1, 1, 1) == 0);
  CHECK(info("c", 2, 1, 2, 2, 2, 2) == 0);
}
