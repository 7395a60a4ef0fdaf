// The iterative methods over Complex, the drivers, and one-call solution.
#include <doctest/doctest.h>

#include <string>
#include <vector>

#include "quarn/complex.h"
#include "src/kernels/level1.h"
#include "support/digits.h"
#include "support/outcome.h"
#include "support/random.h"
#include "tesk2mp/solve_sparse.hpp"

using support::Random;
using tesk2mp::Criterion;
using tesk2mp::Method;
using tesk2mp::SparseMatrix;
using tesk2mp::VectorNorm;

namespace {

constexpr std::size_t kOrder = 40;
constexpr Method kMethods[] = {Method::rgmres, Method::cgs,    Method::bicgstab, Method::tfqmr, Method::cg,
                               Method::minres, Method::symmlq, Method::fgmres,   Method::idrs};

bool is_symmetric(Method method) { return method >= Method::cg && method <= Method::symmlq; }

QuarnFloat random_part(Random& random) { return QuarnFloat(Integer(random.between(-99999, 99999))) / 7; }

/// Diagonally dominant; symmetric if wanted, and indefinite then if wanted.
SparseMatrix<QuarnFloat> sample(Random& random, bool symmetric, bool indefinite = false) {
  SparseMatrix<QuarnFloat> a(kOrder);
  for (std::size_t i = 0; i < kOrder; ++i) {
    a.add(i, i, QuarnFloat(indefinite && i % 3 == 0 ? -400000 : 400000) + random_part(random));
    for (std::size_t j = 0; j < i; ++j) {
      if (random.once_in(5)) {
        const QuarnFloat value = random_part(random);
        a.add(i, j, value);
        a.add(j, i, symmetric ? value : random_part(random));
      }
    }
  }
  a.canonicalise();
  return a;
}

/// i^k, by which numbers are multiplied without rounding.
Complex turn(const Complex& z, std::size_t k) {
  return k % 4 == 0 ? z : k % 4 == 1 ? Complex(-z.im, z.re) : k % 4 == 2 ? Complex(-z.re, -z.im) : Complex(z.im, -z.re);
}

/// D A D^H with D = diag(i^k): Hermitian when A is symmetric.
SparseMatrix<Complex> turned(const SparseMatrix<QuarnFloat>& a) {
  SparseMatrix<Complex> result(a.order());
  for (std::size_t k = 0; k < a.entries(); ++k) {
    result.add(a.row(k), a.column(k), turn(Complex(a.value(k)), a.row(k) + 3 * a.column(k)));
  }
  result.canonicalise();
  return result;
}

template <class T>
QuarnFloat size_of(const std::vector<T>& x, VectorNorm norm, const std::vector<QuarnFloat>& weights) {
  QuarnFloat size;
  for (std::size_t i = 0; i < x.size(); ++i) {
    const QuarnFloat each = quarn::abs(Complex(x[i])) * (weights.empty() ? QuarnFloat(1) : weights[i]);
    size = norm == VectorNorm::one ? size + each : norm == VectorNorm::two ? size + each * each : std::max(size, each);
  }
  return norm == VectorNorm::two ? sqrt(size) : size;
}

}  // namespace

TEST_CASE("a turned system takes the course of the real one") {
  Random random;
  const support::Digits scope(40);
  for (const Method method : kMethods) {
    const SparseMatrix<QuarnFloat> a =
        sample(random, is_symmetric(method), is_symmetric(method) && method != Method::cg);
    const SparseMatrix<Complex> c = turned(a);
    std::vector<QuarnFloat> b;
    std::vector<Complex> turned_b;
    for (std::size_t i = 0; i < kOrder; ++i) {
      b.push_back(random_part(random));
      turned_b.push_back(turn(Complex(b[i]), i));
    }
    for (const bool preconditioned : {false, true}) {
      tesk2mp::SolverOptions options;
      options.method = method;
      options.order = method == Method::bicgstab ? 2 : method == Method::idrs ? 1 : 0;  // with no random shadow vector
      options.tolerance = QuarnFloat(1, -30);
      options.norm = VectorNorm::two;
      if (preconditioned && is_symmetric(method) && method != Method::cg) {
        continue;  // SSOR of an indefinite matrix is indefinite
      }
      const auto real = preconditioned
                            ? tesk2mp::solve_iteratively(a, std::span<const QuarnFloat>(b), options, tesk2mp::Ssor(a))
                            : tesk2mp::solve_iteratively(a, std::span<const QuarnFloat>(b), options);
      const auto complex =
          preconditioned ? tesk2mp::solve_iteratively(c, std::span<const Complex>(turned_b), options, tesk2mp::Ssor(c))
                         : tesk2mp::solve_iteratively(c, std::span<const Complex>(turned_b), options);
      CAPTURE(int(method));
      CHECK(real.progress.iterations == complex.progress.iterations);
      QuarnFloat distance;
      for (std::size_t i = 0; i < kOrder; ++i) {
        distance = std::max(distance, quarn::abs(complex.x[i] - turn(Complex(real.x[i]), i)));
      }
      CHECK(distance <= QuarnFloat(1, -34) * size_of(real.x, VectorNorm::infinity, {}));
    }
  }
}

TEST_CASE("what is reported solved satisfies its criterion") {
  Random random;
  constexpr int kDigits = 30;
  for (const Method method : kMethods) {
    for (const auto norm : {VectorNorm::one, VectorNorm::infinity, VectorNorm::two}) {
      for (const auto criterion : {Criterion::residual, Criterion::preconditioned_residual}) {
        for (const int kind : {0, 1, 2}) {
          const support::Digits scope(kDigits);
          const SparseMatrix<QuarnFloat> real = sample(random, is_symmetric(method));
          SparseMatrix<Complex> a = turned(real);
          std::vector<Complex> b(kOrder);
          for (Complex& each : b) {
            each = Complex(random_part(random), random_part(random));
          }
          tesk2mp::SolverOptions options;
          options.method = method;
          options.norm = norm;
          options.criterion = criterion;
          options.tolerance = QuarnFloat(1, -15);
          for (std::size_t i = 0; kind == 1 && i < kOrder; ++i) {
            options.weights.push_back(QuarnFloat(Integer(random.between(1, 9))));
          }
          const auto precondition = [&]() -> tesk2mp::detail::Precondition<Complex> {
            return kind == 0              ? tesk2mp::detail::Precondition<Complex>()
                   : is_symmetric(method) ? tesk2mp::IncompleteCholesky(tesk2mp::lower_triangle(a))
                                          : tesk2mp::detail::Precondition<Complex>(tesk2mp::IncompleteLU(a));
          }();
          const auto solution = tesk2mp::solve_iteratively(a, std::span<const Complex>(b), options, precondition);
          const support::Digits more(2 * kDigits + 30);
          std::vector<Complex> residual = a.multiply(solution.x);
          for (std::size_t i = 0; i < kOrder; ++i) {
            residual[i] = b[i] - residual[i];
          }
          if (precondition && criterion == Criterion::preconditioned_residual && method != Method::fgmres) {
            precondition(std::vector<Complex>(residual), residual);
          }
          CAPTURE(int(method));
          CAPTURE(kind);
          CHECK(size_of(residual, norm, options.weights) <= solution.progress.right * (1 + QuarnFloat(1, -10)));
        }
      }
    }
  }
}

TEST_CASE_TEMPLATE("flexible GMRES takes another preconditioner in every iteration", T, QuarnFloat, Complex) {
  Random random;
  const support::Digits scope(40);
  SparseMatrix<T> a = [&random] {
    SparseMatrix<QuarnFloat> real = sample(random, false);
    if constexpr (std::is_same_v<T, Complex>) {
      return turned(real);
    } else {
      return real;
    }
  }();
  const tesk2mp::Jacobi<T> jacobi(a);
  int calls = 0;
  // Richardson's iteration, one to four steps of it, and other scales.
  const auto changing = [&](std::span<const T> b, std::span<T> x) {
    const int steps = 1 + calls % 4;
    std::fill(x.begin(), x.end(), T(0.0));
    for (int step = 0; step < steps; ++step) {
      std::vector<T> left = a.multiply(std::vector<T>(x.begin(), x.end()));
      for (std::size_t i = 0; i < kOrder; ++i) {
        left[i] = b[i] - left[i];
      }
      std::vector<T> correction(kOrder);
      jacobi(std::span<const T>(left), std::span<T>(correction));
      for (std::size_t i = 0; i < kOrder; ++i) {
        x[i] += correction[i];
      }
    }
    for (T& each : x) {
      tesk::multiply_by(each, QuarnFloat(1, 1 + (calls % 3) * 40));
    }
    ++calls;
  };
  std::vector<T> b(kOrder);
  for (T& each : b) {
    each = T(random_part(random));
  }
  tesk2mp::SolverOptions options;
  options.method = Method::fgmres;
  options.tolerance = QuarnFloat(1, -30);
  options.norm = VectorNorm::two;
  options.largest_singular_value = QuarnFloat(1, -200);  // beside b alone
  const auto plain = tesk2mp::solve_iteratively(a, std::span<const T>(b), options);
  const auto flexible = tesk2mp::solve_iteratively(a, std::span<const T>(b), options, changing);
  CHECK(calls == flexible.progress.iterations);
  CHECK(flexible.progress.iterations < plain.progress.iterations);
  for (const auto& each : {plain, flexible}) {
    CHECK(each.converged);
    CHECK(size_of(each.residual, VectorNorm::two, {}) <= QuarnFloat(1, -30) * size_of(b, VectorNorm::two, {}));
  }
}

TEST_CASE("one call solves whatever the matrix is") {
  Random random;
  const support::Digits scope(50);
  for (const int kind : {0, 1, 2, 3}) {
    SparseMatrix<QuarnFloat> a = sample(random, kind != 0, kind == 2);
    if (kind == 3) {  // no diagonal: a circle, which needs the factors with all their fill
      a = SparseMatrix<QuarnFloat>(kOrder);
      for (std::size_t i = 0; i < kOrder; ++i) {
        a.add(i, (i + 1) % kOrder, QuarnFloat(Integer(i) + 1) / 3);
      }
    }
    const std::vector<QuarnFloat> ones(kOrder, 1);
    tesk2mp::SparseOptions options;
    options.tolerance = QuarnFloat(1, -40);
    options.most_iterations = kind == 3 ? 2 : 1000;  // not enough for the first attempt
    const auto check = [&](const auto& matrix, const auto& x) {
      const auto solution = tesk2mp::solve_sparse(matrix, matrix.multiply(x), options);
      for (std::size_t i = 0; i < kOrder; ++i) {
        CHECK(quarn::abs(Complex(solution.x[i]) - Complex(x[i])) <= QuarnFloat(1, -36));
      }
      return solution.method;
    };
    const Method expected = kind == 1 ? Method::cg : kind == 2 ? Method::minres : Method::bicgstab;
    const Method method = check(a, ones);
    CHECK(method == (kind == 3 ? Method::rgmres : expected));
    const SparseMatrix<Complex> c = turned(a);
    CHECK(check(c, std::vector<Complex>(kOrder, Complex(1, -2))) == method);
    if (kind == 1) {
      check(tesk2mp::lower_triangle(a), ones);
      check(tesk2mp::lower_triangle(c), std::vector<Complex>(kOrder, Complex(3, 1)));
    }
  }

  // Singular, with b in its range.
  SparseMatrix<QuarnFloat> circle(kOrder);
  for (std::size_t i = 0; i < kOrder; ++i) {
    circle.add(i, i, 2);
    circle.add(i, (i + 1) % kOrder, -1);
    circle.add(i, (i + kOrder - 1) % kOrder, -1);
  }
  tesk2mp::SparseOptions options;
  options.method = Method::rgmres;
  options.preconditioning = tesk2mp::Preconditioning::direct;
  std::vector<QuarnFloat> x;
  for (std::size_t i = 0; i < kOrder; ++i) {
    x.push_back(random_part(random));
  }
  const auto found = tesk2mp::solve_sparse(circle, circle.multiply(x), options);
  CHECK(found.converged);
  CHECK(found.relative_residual < QuarnFloat(1, -20));
}

TEST_CASE("the drivers solve, and report what is wrong") {
  const Integer n = 3, nnz = 5, la = 10, order[] = {1, 2, 3}, starts[] = {6, 7, 9, 11};
  const std::vector<Complex> b(3, Complex(1, 2));
  std::vector<Complex> a = {4, Complex(0, 1), 4, Complex(1, 1), 4};
  std::vector<Integer> irow = {1, 2, 2, 3, 3}, icol = {1, 1, 2, 2, 3};
  a.resize(10), irow.resize(10), icol.resize(10);
  std::vector<Integer> ipiv(3), istr(4);
  Integer nnzc = 0, npivm = 0, itn = -1;
  const Integer level = 0;
  const QuarnFloat none;
  support::outcome_of([&](char* buffer, Integer* ifail, int length) {
    QuarnMP_f11jnfn_(n, nnz, a.data(), la, irow.data(), icol.data(), level, none, "N", none, "N", ipiv.data(),
                     istr.data(), &nnzc, &npivm, buffer, ifail, 1, 1, length);
  });
  REQUIRE(std::equal(istr.begin(), istr.end(), starts));
  REQUIRE(std::equal(ipiv.begin(), ipiv.end(), order));
  std::vector<Complex> x(3);
  QuarnFloat rnorm;
  const auto solve = [&](const char* method, const QuarnFloat& tol, Integer maxitn) {
    return support::outcome_of([&](char* buffer, Integer* ifail, int length) {
      QuarnMP_f11jqfn_(method, n, nnz, a.data(), la, irow.data(), icol.data(), ipiv.data(), istr.data(), b.data(), tol,
                       maxitn, x.data(), &rnorm, &itn, buffer, ifail, 6, length);
    });
  };
  for (const char* method : {"CG    ", "minres", "SYMMLQ"}) {
    x.assign(3, Complex());
    CHECK(solve(method, QuarnFloat(1, -15), 50).ifail == 0);
    CHECK(quarn::abs(Complex(4) * x[0] + Complex(0, -1) * x[1] - b[0]) <= QuarnFloat(1, -14));
    CHECK(rnorm <= QuarnFloat(1, -14));
  }
  const std::string advice =
      "\n    Check that A, IROW, ICOL, IPIV and ISTR\n    have not been corrupted between calls to F11JNF and ";
  CHECK(solve("RGMRES", none, 5).console == " ** On entry, METHOD .ne. 'CG', 'MINRES' or 'SYMMLQ': METHOD = 'RGMRES'.");
  CHECK(solve("CG    ", 1, 5).console == " ** On entry, TOL .ge. 1.0: TOL =  1.0000e+00.");
  CHECK(solve("CG    ", none, 0).console == " ** On entry, MAXITN .lt. 1: MAXITN =" + support::wide(0) + ".");
  a[std::size_t(istr[0]) - 1] = 400;  // factors that are poor, and not corrupted
  x.assign(3, Complex());
  const auto late = solve("CG    ", QuarnFloat(1, -15), 1);
  CHECK(late.ifail == 5);
  CHECK(late.console == " ** The solution has not converged after      1 iterations.");
  CHECK(itn == 1);
  icol[3] = 3;
  icol[4] = 2;
  CHECK(solve("CG    ", none, 5).console ==
        " ** On entry, A(I) is out of order:\n    I =" + support::wide(5) + "." + advice + "F11JQF.");
  icol[3] = 2;
  icol[4] = 3;
  ipiv[0] = 2;
  const auto repeated = solve("CG    ", none, 5);
  CHECK(repeated.ifail == 3);
  CHECK(repeated.console == " ** On entry, IPIV(I) is a repeated value:\n    I =" + support::wide(2) +
                                ", IPIV(I) =" + support::wide(2) + "." + advice + "F11JBF.");
}
