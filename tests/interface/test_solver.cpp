// Iterative solution through the C++ interface.
#include <doctest/doctest.h>

#include <array>
#include <string>
#include <vector>

#include "interface/samples.h"
#include "support/standard_output.h"

using namespace front;
using namespace tesk2mp;

namespace {

constexpr std::size_t kOrder = 20;

/// Diagonally dominant and not symmetric: every method converges.
SparseMatrix<Real> dominant(Samples& samples) {
  SparseMatrix<Real> a(kOrder);
  for (std::size_t i = 0; i < kOrder; ++i) {
    a.add(i, i, 4 + samples.real());
    for (std::size_t step : {1U, 5U}) {
      a.add(i, (i + step) % kOrder, samples.real());
      a.add((i + step) % kOrder, i, samples.real());
    }
  }
  return a;
}

Real largest(std::span<const Real> x) { return norm(Norm::largest, MatrixView<const Real>(x, x.size(), 1)); }

Real error_of(const SparseMatrix<Real>& a, std::span<const Real> x, const std::vector<Real>& b) {
  std::vector<Real> rest = a.multiply(x);
  for (std::size_t i = 0; i < rest.size(); ++i) {
    rest[i] -= b[i];
  }
  return largest(rest);
}

}  // namespace

TEST_CASE("every method, criterion and norm, with and without a preconditioner") {
  const Digits digits(40);
  Samples samples;
  SparseMatrix<Real> a = dominant(samples);
  const std::vector<Real> b = samples.vector<Real>(kOrder);
  CHECK_THROWS_AS(Ssor{a}, InvalidArgument);  // not in canonical form
  a.canonicalise();
  const Jacobi jacobi(a);
  CHECK_THROWS_AS(Ssor(a, 2), InvalidArgument);
  const Ssor ssor(a, Real(5) / 4);
  SparseMatrix<Real> hollow(2);
  hollow.add(0, 1, 1);
  CHECK_THROWS_AS(Jacobi{hollow}, NumericalFailure);
  for (const Method method : {Method::rgmres, Method::cgs, Method::bicgstab, Method::tfqmr}) {
    for (const Criterion criterion : {Criterion::residual, Criterion::preconditioned_residual}) {
      for (const VectorNorm vector_norm : {VectorNorm::one, VectorNorm::infinity, VectorNorm::two}) {
        SolverOptions options;
        options.method = method;
        options.criterion = criterion;
        options.norm = vector_norm;
        options.tolerance = Real(1, -30);
        CAPTURE(int(method));
        CAPTURE(char(vector_norm));
        const IterativeSolution plain = solve_iteratively(a, b, options);
        CHECK(error_of(a, plain.x, b) < Real(1, -27));
        CHECK(plain.progress.iterations > 1);
        CHECK(plain.progress.left <= plain.progress.right);
        CHECK(error_of(a, solve_iteratively(a, b, options, jacobi).x, b) < Real(1, -27));
        CHECK(error_of(a, solve_iteratively(a, b, options, ssor).x, b) < Real(1, -27));
      }
    }
  }
}

TEST_CASE("symmetric systems by their own methods") {
  const Digits digits(40);
  constexpr std::size_t kSize = 20;
  SparseMatrix<Real> a(kSize);
  for (std::size_t i = 0; i < kSize; ++i) {
    a.add(i, i, Real(2));
    if (i > 0) {
      a.add(i, i - 1, Real(-1));
      a.add(i - 1, i, Real(-1));
    }
  }
  a.canonicalise();
  const std::vector<Real> b(kSize, Real(1));
  SolverOptions options;
  options.tolerance = Real(1, -30);
  for (const Method method : {Method::cg, Method::minres, Method::symmlq}) {
    CAPTURE(int(method));
    options.method = method;
    CHECK(error_of(a, solve_iteratively(a, b, options).x, b) < Real(1, -27));
    CHECK(error_of(a, solve_iteratively(a, b, options, Ssor(a)).x, b) < Real(1, -27));
  }
  const auto skew = [](std::span<const Real> x, std::span<Real> y) {
    y[0] = x[0] - x[1];
    y[1] = x[0] + x[1] + x[2];
    y[2] = x[2] - x[1];
  };
  options.criterion = Criterion::residual;
  options.matrix_norm = 2;
  CHECK_THROWS_AS(solve_iteratively(skew, std::vector<Real>{1, 2, 4}, options), NumericalFailure);
}

TEST_CASE("operators that are functions, a first guess, weights") {
  const Digits digits(30);
  Samples samples;
  const SparseMatrix<Real> a = dominant(samples);
  const std::vector<Real> b = samples.vector<Real>(kOrder);
  SolverOptions options;
  options.tolerance = Real(1, -20);
  options.weights = std::vector<Real>(kOrder, Real(2));
  const auto by_function = [&](std::span<const Real> x, std::span<Real> y) { a.multiply(x, y); };
  const IterativeSolution solution = solve_iteratively(by_function, b, options);
  CHECK(solution.x == solve_iteratively(a, b, options).x);
  CHECK(largest(solution.residual) == error_of(a, solution.x, b));

  const IterativeSolution again = solve_iteratively(a, b, options, {}, solution.x);
  CHECK(again.progress.iterations <= 1);  // the criterion estimates a norm on the way, afresh

  options.criterion = Criterion::residual;
  CHECK_THROWS_AS(solve_iteratively(by_function, b, options), InvalidArgument);
  options.matrix_norm = 10;
  CHECK(error_of(a, solve_iteratively(by_function, b, options).x, b) < Real(1, -17));
}

TEST_CASE("step by step: monitoring, and an end at will") {
  Samples samples;
  const SparseMatrix<Real> a = dominant(samples);
  const std::vector<Real> b = samples.vector<Real>(kOrder);
  SolverOptions options;
  options.method = Method::bicgstab;
  options.monitor = 1;
  const std::string printed = support::printed_by([&] {
    IterativeSolver solver(b, {}, false, options);
    Integer looks = 0;
    Request request = solver.next();
    while (request != Request::finished) {
      if (request == Request::product) {
        a.multiply(solver.input(), solver.output());
      } else if (request == Request::monitor) {
        ++looks;
        CHECK(solver.progress().iterations == looks);
        CHECK(largest(solver.residual()) == error_of(a, solver.solution(), b));
      }
      request = looks == 3 && request == Request::monitor ? solver.finish_iteration() : solver.next();
    }
    CHECK(looks >= 3);
    CHECK(!solver.converged());

    std::vector<Integer> seen;
    const auto look = [&](const Progress& progress, std::span<const Real> x, std::span<const Real> residual) {
      CHECK(largest(residual) == error_of(a, x, b));
      seen.push_back(progress.iterations);
      return seen.size() < 2;
    };
    options.monitor = 0;
    const IterativeSolution stopped = solve_iteratively(a, b, options, {}, {}, look);
    CHECK(seen == std::vector<Integer>{1, 2});
    CHECK(stopped.progress.iterations == 2);
    CHECK(!stopped.converged);
    CHECK(solve_iteratively(a, b, options).converged);
  });
  CHECK(printed.empty());
}

TEST_CASE("what the solver refuses, and where it gives up") {
  Samples samples;
  const SparseMatrix<Real> a = dominant(samples);
  const std::vector<Real> b = samples.vector<Real>(kOrder);
  struct Row {
    std::string what;
    Integer code;
    std::function<void(SolverOptions&)> change;
  };
  const Row rows[] = {
      {"order", 3, [](SolverOptions& options) { options.order = 51; }},
      {"tolerance", 1, [](SolverOptions& options) { options.tolerance = 1; }},
      {"iterations", 1, [](SolverOptions& options) { options.most_iterations = 0; }},
      {"monitor", 1, [](SolverOptions& options) { options.monitor = -1; }},
      {"weights", 4,
       [](SolverOptions& options) {
         options.weights = {1, 2};
       }},
      {"bad weights", 1, [](SolverOptions& options) { options.weights = std::vector<Real>(kOrder, Real(-1)); }},
  };
  const std::string printed = support::printed_by([&] {
    for (const Row& row : rows) {
      CAPTURE(row.what);
      SolverOptions options;
      row.change(options);
      try {
        solve_iteratively(a, b, options);
        FAIL("not refused");
      } catch (const InvalidArgument& refusal) {
        CHECK(refusal.code() == row.code);
      }
    }
    SolverOptions short_of_iterations;
    short_of_iterations.most_iterations = 2;
    try {
      solve_iteratively(a, b, short_of_iterations);
      FAIL("two iterations are not enough");
    } catch (const NumericalFailure& failure) {
      CHECK(failure.routine() == "F11BEF");
      CHECK(failure.code() == 8);
    }
    CHECK_THROWS_AS(solve_iteratively(a, std::vector<Real>(), SolverOptions()), InvalidArgument);
    CHECK_THROWS_AS(solve_iteratively(a, b, SolverOptions(), {}, std::vector<Real>(3)), InvalidArgument);
  });
  CHECK(printed.empty());
}

TEST_CASE("a solution that its own size excuses is reported") {
  const Digits digits(30);
  // The last row is the sum of the others, to rounding, but the right-hand side is not.
  SparseMatrix<Real> a(3);
  std::vector<Real> last(3);
  for (const auto& [row, denominators] :
       {std::pair<std::size_t, std::array<int, 3>>{0, {3, 7, 9}}, {1, {11, -13, 17}}}) {
    for (std::size_t column = 0; column < 3; ++column) {
      const Real value = Real(1) / denominators[column];
      a.add(row, column, value);
      last[column] += value;
    }
  }
  for (std::size_t column = 0; column < 3; ++column) {
    a.add(2, column, last[column]);
  }
  SolverOptions options;
  options.tolerance = Real("1e-20");
  for (const Criterion criterion : {Criterion::residual, Criterion::preconditioned_residual}) {
    options.criterion = criterion;
    const IterativeSolution excused = solve_iteratively(a, std::vector<Real>{1, 2, 1}, options);
    CHECK(excused.converged);
    CHECK(excused.inconsistent);
    CHECK(excused.relative_residual > Real("0.1"));
    CHECK(excused.growth > Real("1e18"));
    const IterativeSolution sound = solve_iteratively(a, std::vector<Real>{1, 2, 3}, options);
    CHECK(sound.converged);
    CHECK(!sound.inconsistent);
    CHECK(sound.relative_residual < Real("1e-18"));
    CHECK(sound.growth < 1000);
  }
}
