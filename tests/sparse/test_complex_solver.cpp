// The iterative methods over Complex, the drivers, and one-call solution.
#include <doctest/doctest.h>

#include <array>
#include <optional>
#include <string>
#include <utility>
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

/// The same, of either kind.
template <class T>
SparseMatrix<T> sample_of(Random& random, bool symmetric) {
  if constexpr (std::is_same_v<T, Complex>) {
    return turned(sample(random, symmetric));
  } else {
    return sample(random, symmetric);
  }
}

template <class T>
std::vector<T> random_vector(Random& random) {
  std::vector<T> x(kOrder);
  for (T& each : x) {
    each = T(random_part(random));
    if constexpr (std::is_same_v<T, Complex>) {
      each.im = random_part(random);
    }
  }
  return x;
}

/// Each preconditioner that suits the method, and none.
template <class T>
tesk2mp::detail::Precondition<T> random_preconditioner(Random& random, const SparseMatrix<T>& a, bool symmetric) {
  using tesk2mp::Preconditioning;
  const Preconditioning kinds[] = {Preconditioning::none, Preconditioning::jacobi, Preconditioning::ssor,
                                   Preconditioning::direct, symmetric ? Preconditioning::ic : Preconditioning::ilu};
  tesk2mp::SparseOptions options;
  options.fill.level = random.once_in(2) ? -1 : Integer(random.below(2));
  options.fill.drop_tolerance = QuarnFloat(1, -2);
  options.omega = QuarnFloat(Integer(random.between(5, 15))) / 10;
  return tesk2mp::detail::preconditioner(a, kinds[random.below(5)], options);
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

TEST_CASE_TEMPLATE("what is reported solved satisfies its criterion with twice the digits and 30 more" *
                       doctest::test_suite("long"),
                   T, QuarnFloat, Complex) {
  Random random;
  int successes = 0;
  constexpr int kChoices = 250;
  for (int choice = 0; choice < kChoices; ++choice) {
    const Method method = kMethods[random.below(std::size(kMethods))];
    const int digits = choice % 20 == 0 ? 333 : random.once_in(2) ? 50 : random.once_in(3) ? 10 : 16;
    const support::Digits scope(digits);
    const SparseMatrix<T> a = sample_of<T>(random, is_symmetric(method));
    const std::vector<T> b = random_vector<T>(random);
    tesk2mp::SolverOptions options;
    options.method = method;
    options.norm = std::array{VectorNorm::one, VectorNorm::infinity, VectorNorm::two}[random.below(3)];
    options.criterion = random.once_in(2) ? Criterion::residual : Criterion::preconditioned_residual;
    options.tolerance = QuarnFloat(1, -Integer(random.between(2, digits - 5)));
    for (std::size_t i = 0; choice % 2 == 0 && i < kOrder; ++i) {
      options.weights.push_back(QuarnFloat(Integer(random.between(1, 9))));
    }
    if (random.once_in(3)) {  // beside b alone
      (options.criterion == Criterion::residual ? options.matrix_norm : options.largest_singular_value) =
          QuarnFloat(1, -1000);
    }
    const auto precondition = random_preconditioner<T>(random, a, is_symmetric(method));
    CAPTURE(int(method));
    CAPTURE(digits);
    const auto solution = [&]() -> std::optional<tesk2mp::BasicIterativeSolution<T>> {
      try {
        return tesk2mp::solve_iteratively(a, std::span<const T>(b), options, precondition);
      } catch (const tesk2mp::NumericalFailure& failure) {  // rounding errors at few digits
        MESSAGE(int(method), " ", digits, " digits, tol ", options.tolerance.to_string(), " ",
                std::string(failure.what()));
        return std::nullopt;
      }
    }();
    if (!solution) {
      continue;
    }
    ++successes;
    CHECK(solution->converged);

    const QuarnFloat rounding = QuarnFloat(1, 3 - digits);  // of the residual beside the right side of the criterion
    const support::Digits more(2 * digits + 30);
    const bool left =
        precondition && options.criterion == Criterion::preconditioned_residual && method != Method::fgmres;
    const auto criterion_size = [&](std::vector<T> x) {
      if (left) {
        precondition(std::vector<T>(x), x);
      }
      return size_of(x, options.norm, options.weights);
    };
    std::vector<T> residual = a.multiply(solution->x);
    for (std::size_t i = 0; i < kOrder; ++i) {
      residual[i] = b[i] - residual[i];
    }
    const tesk2mp::Progress& progress = solution->progress;
    const QuarnFloat& matrix_norm =
        options.criterion == Criterion::residual ? progress.matrix_norm : progress.largest_singular_value;
    const QuarnFloat beside = criterion_size(b) + matrix_norm * size_of(solution->x, options.norm, options.weights);
    CHECK(criterion_size(residual) <= (options.tolerance + rounding) * beside);
  }
  CHECK(10 * successes >= 9 * kChoices);
}

TEST_CASE_TEMPLATE("numbers that are not finite, wherever they come from, are never a solution", T, QuarnFloat,
                   Complex) {
  Random random;
  const support::Digits scope(25);
  using tesk2mp::Request;
  for (const Method method : kMethods) {
    for (int choice = 0; choice < 40; ++choice) {
      SparseMatrix<T> a = sample_of<T>(random, is_symmetric(method));
      std::vector<T> b = random_vector<T>(random);
      const T bad(QuarnFloat(random.once_in(2) ? "nan" : "-inf"));
      // In the matrix, in b, or in answers from some request on.
      const auto where = random.below(4);
      if (where == 0) {
        a.add(random.below(kOrder), random.below(kOrder), bad);
        a.canonicalise();
      } else if (where == 1) {
        b[random.below(kOrder)] = bad;
      }
      int good = where < 2 ? 1000 : int(random.below(25));
      tesk2mp::SolverOptions options;
      options.method = method;
      options.criterion = random.once_in(2) ? Criterion::residual : Criterion::preconditioned_residual;
      options.tolerance = QuarnFloat(1, -20);
      const SparseMatrix<T> other = sample_of<T>(random, is_symmetric(method));
      const tesk2mp::Jacobi<T> jacobi(other);
      tesk2mp::BasicIterativeSolver<T> solver(std::span<const T>(b), {}, true, options);
      CAPTURE(int(method));
      CAPTURE(where);
      int code = 0;
      try {
        for (Request request = solver.next(); request != Request::finished; request = solver.next()) {
          if (request == Request::precondition) {
            jacobi(solver.input(), solver.output());
          } else {
            a.multiply(solver.input(), solver.output(),
                       request == Request::transposed_product ? tesk2mp::Op::conjugate_transpose : tesk2mp::Op::none);
          }
          if (--good < 0) {
            solver.output()[random.below(kOrder)] = bad;
          }
        }
      } catch (const tesk2mp::NumericalFailure& failure) {
        code = int(failure.code());
      }
      CHECK(solver.converged() == (good >= 0 && where >= 2));
      CHECK(code == (solver.converged() ? 0 : 7));
      CHECK(isfinite(size_of(solver.solution(), VectorNorm::infinity, {})));
    }
  }
}

TEST_CASE_TEMPLATE("fewer than ten digits are rounded from ten by every method", T, QuarnFloat, Complex) {
  Random random;
  std::vector<T> x(kOrder);  // of one digit
  for (T& each : x) {
    each = T(QuarnFloat(Integer(random.between(1, 9))));
    if constexpr (std::is_same_v<T, Complex>) {
      each.im = Integer(random.between(-9, 9));
    }
  }
  for (const int digits : {1, 2, 5, 9}) {
    for (const Method method : kMethods) {
      const auto [a, b] = [&] {
        const support::Digits scope(40);
        SparseMatrix<T> matrix = sample_of<T>(random, is_symmetric(method));
        std::vector<T> right = matrix.multiply(x);
        return std::pair(std::move(matrix), std::move(right));
      }();
      const auto precondition = [&, &matrix = a] {
        const tesk2mp::SolverDigits enough;
        return random_preconditioner(random, matrix, is_symmetric(method));
      }();
      INFO("digits " << digits << ", method " << int(method));
      const support::Digits scope(digits);
      tesk2mp::SolverOptions options;
      options.method = method;
      options.tolerance = QuarnFloat(1, -8);
      options.criterion = random.once_in(2) ? Criterion::residual : Criterion::preconditioned_residual;
      const auto equals = [&](const std::vector<T>& y) {
        bool same = true;
        for (std::size_t i = 0; i < kOrder; ++i) {
          const support::Digits more(20);
          same = same && quarn::abs(Complex(y[i]) - Complex(x[i])) <= QuarnFloat(1, -5);
        }
        return same;
      };
      int watched = 0;
      const auto solution = tesk2mp::solve_iteratively(a, std::span<const T>(b), options, precondition, {},
                                                       [&](const tesk2mp::Progress& now, std::span<const T>, auto) {
                                                         watched += now.iterations == watched + 1 ? 1 : 0;
                                                         return true;
                                                       });
      CHECK(equals(solution.x));
      CHECK(watched >= solution.progress.iterations - 1);
      CHECK(!solution.inconsistent);
      for (const auto& number : {Complex(solution.residual.front()).re, solution.progress.left, solution.growth,
                                 solution.relative_residual, solution.progress.matrix_norm}) {
        CHECK(number == 1 * number);
      }
      CHECK(QuarnDigits() == digits);

      // Where the caller forms the sums too, of all rows or of one rank's.
      options.rows = Integer(kOrder);
      options.dot = [](std::span<tesk2mp::PartialSum>) {};
      CHECK(equals(tesk2mp::solve_iteratively(a, std::span<const T>(b), options, precondition).x));

      tesk2mp::SparseOptions wanted;
      wanted.method = method;
      wanted.tolerance = options.tolerance;
      CHECK(equals(tesk2mp::solve_sparse(a, b, wanted).x));
    }
  }
}

TEST_CASE_TEMPLATE("BiCGSTAB(l) stops short of roundings, with a preconditioner that is nearly exact", T, QuarnFloat,
                   Complex) {
  Random random;
  const struct {
    int digits;
    int of_factors;
  } cases[] = {{3, 3}, {5, 5}, {6, 6}, {12, 6}, {20, 10}, {50, 17}, {50, 25}, {50, 50}};
  for (const auto& each : cases) {
    for (Integer order = 2; order <= 10; ++order) {
      const SparseMatrix<T> a = sample_of<T>(random, false);
      const std::vector<T> b = random_vector<T>(random);
      const auto factors = [&, &matrix = a] {
        const support::Digits fewer(each.of_factors);
        return tesk2mp::SparseLU<T>(matrix);
      }();
      const auto precondition = [&](std::span<const T> x, std::span<T> y) { factors(x, y); };
      INFO("digits " << each.digits << ", of factors " << each.of_factors << ", order " << order);
      const support::Digits scope(each.digits);
      tesk2mp::SolverOptions options;
      options.method = Method::bicgstab;
      options.order = order;
      options.criterion = Criterion::residual;
      options.tolerance = random.once_in(2) ? QuarnFloat() : QuarnFloat(1, 3 - std::max(each.digits, 10));
      for (const bool shared : {false, true}) {
        options.rows = shared ? Integer(kOrder) : 0;
        options.dot = shared ? [](std::span<tesk2mp::PartialSum>) {} : tesk2mp::SumExchange();
        std::optional<tesk2mp::BasicIterativeSolution<T>> solution;
        CHECK_NOTHROW(solution = tesk2mp::solve_iteratively(a, std::span<const T>(b), options, precondition));
        CHECK((solution && solution->progress.iterations <= 3));
      }
    }
  }
}

TEST_CASE_TEMPLATE("a residual below the range of numbers is not taken for none", T, QuarnFloat, Complex) {
  const support::Digits digits(20);
  int solved = 0;
  for (const int decade : {-999'999'999, -999'999'985, -999'999'970, -999'999'900}) {
    const auto number = [&](int value) { return T(QuarnFloat(value) * QuarnFloat(1, decade)); };
    SparseMatrix<T> a(2);
    a.add(0, 0, number(2));
    a.add(0, 1, number(1));
    a.add(1, 0, number(1));
    a.add(1, 1, number(3));
    const std::vector<T> b = {number(3), number(4)};
    for (const Method method : kMethods) {
      for (const Criterion criterion : {Criterion::residual, Criterion::preconditioned_residual}) {
        for (const bool preconditioned : {false, true}) {
          tesk2mp::SolverOptions options;
          options.method = method;
          options.criterion = criterion;
          options.tolerance = QuarnFloat(1, -9);
          tesk2mp::detail::Precondition<T> precondition;
          if (preconditioned) {
            precondition = tesk2mp::detail::preconditioner(a, tesk2mp::Preconditioning::jacobi, {});
          }
          INFO("decade " << decade << ", method " << int(method) << ", preconditioned " << preconditioned);
          try {
            const auto x = tesk2mp::solve_iteratively(a, std::span<const T>(b), options, precondition).x;
            for (const T& each : x) {
              CHECK(quarn::abs(Complex(each) - 1) <= QuarnFloat(1, -7));
            }
            ++solved;
          } catch (const tesk2mp::NumericalFailure&) {  // the matrix itself is at the end of the range
          }
        }
      }
    }
  }
  CHECK(solved >= 20);
}

TEST_CASE_TEMPLATE("a tolerance of nothing does not make a regular system inconsistent", T, QuarnFloat, Complex) {
  Random random;
  for (const int digits : {2, 10, 30}) {
    const support::Digits scope(digits);
    const SparseMatrix<T> a = sample_of<T>(random, false);
    const std::vector<T> b = random_vector<T>(random);
    tesk2mp::SparseOptions options;
    options.preconditioning = tesk2mp::Preconditioning::direct;
    options.tolerance = QuarnFloat(1, -100'000'000);
    INFO("digits " << digits);
    try {
      const auto solution = tesk2mp::solve_sparse(a, std::span<const T>(b), options);
      CHECK(solution.converged);
      CHECK(!solution.inconsistent);
    } catch (const tesk2mp::NumericalFailure& failure) {  // once in a hundred times
      CHECK(std::string(failure.what()).ends_with("a reasonable accuracy may have been achieved."));
    }
  }
}

TEST_CASE_TEMPLATE("flexible GMRES takes another preconditioner in every iteration", T, QuarnFloat, Complex) {
  Random random;
  const support::Digits scope(40);
  const SparseMatrix<T> a = sample_of<T>(random, false);
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
  const std::vector<T> b = random_vector<T>(random);
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
  const Complex value = a[2];
  for (const char* bad : {"nan", "inf"}) {  // the norm of the residual does not hide it
    a[2] = Complex(QuarnFloat(bad));
    x.assign(3, Complex(1));
    CHECK(solve("CG    ", QuarnFloat(1, -15), 5).ifail == 6);
    CHECK(!isfinite(rnorm));
    CHECK(x == std::vector<Complex>(3, Complex(1)));
  }
  a[2] = value;
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
