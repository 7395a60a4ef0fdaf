// Linear systems by factorisation of the full matrix and refinement.
#include "cli/commands/certificate.h"
#include "cli/commands/failure.h"
#include "cli/commands/linear_system.h"
#include "cli/commands/proven.h"
#include "cli/system/memory.h"
#include "tesk2mp/proven_certify.hpp"
#include "tesk2mp/proven_sparse.hpp"
#include "tesk2mp/refinement.hpp"
#include "tesk2mp/solve_sparse.hpp"

namespace cli {

namespace {

// Rows of matrices that are made full where a sparse form would do.
constexpr std::size_t kMostFull = 1000;

// Of a tolerance that asks for all that rounding allows.
constexpr int kBeyondDigits = 100'000'000;

// Refinement that ends with a larger residual beside b has found a solution of size 1 / eps.
constexpr double kSingularResidual = 0.001;

template <class T>
tesk2mp::Matrix<T> full_matrix(const Equations<T>& equations) {
  const std::size_t n = equations.b.size();
  constexpr double kParts = std::is_same_v<T, Complex> ? 2 : 1;
  require_memory(2 * kParts * double(n) * double(n), "the full matrix and its factors");
  tesk2mp::Matrix<T> full(n, n);
  for (std::size_t k = 0; k < equations.a.entries(); ++k) {
    full(equations.a.row(k), equations.a.column(k)) = equations.a.value(k);
  }
  return full;
}

template <class T>
Solution refined_solution(const Equations<T>& equations) {
  const tesk2mp::Matrix<T> a = full_matrix(equations);
  const tesk2mp::LU<T> factors(a);
  Solution solution;
  solution.history.push_back({0, relative_residual(equations, factors.solve(equations.b)), QuarnFloat()});
  tesk2mp::Refined<T> refined = tesk2mp::refine(a, factors, equations.b);
  const std::vector<T> x(refined.x.data(), refined.x.data() + equations.b.size());
  solution.residual = relative_residual(equations, x);
  solution.iterations = refined.corrections;
  if (solution.iterations > 0) {
    solution.history.push_back({solution.iterations, solution.residual, QuarnFloat()});
  }
  if (!refined.converged) {
    solution.failure = "the refinement does not converge: the matrix is singular to working precision";
  }
  solution.x.elements = std::move(refined.x);
  return solution;
}

/// By complete sparse factors, which precondition the iterations that refine.
template <class T>
Solution sparse_solution(const Equations<T>& equations) {
  tesk2mp::SolverOptions options;
  options.method = tesk2mp::Method::rgmres;
  options.criterion = tesk2mp::Criterion::residual;
  options.tolerance = tesk2mp::Real(1, -kBeyondDigits);
  const tesk2mp::SparseMatrix<T> a = tesk2mp::whole(equations.a);
  const auto factors = tesk2mp::complete_factors(a);
  tesk2mp::BasicIterativeSolver<T> solver(equations.b, {}, true, options);
  Solution solution;
  try {
    tesk2mp::iterate(solver, a, factors, [](const auto& /*solver*/) { return true; });
  } catch (const tesk2mp::NumericalFailure& failure) {
    solution.failure = failure.what();
    solution.failure_code = failure.code();
  }
  solution.iterations = solver.progress().iterations;
  std::vector<T> x = solver.solution();
  solution.residual = relative_residual(equations, x);
  if (solution.failure.empty() && solution.residual > kSingularResidual) {
    solution.failure = "the matrix is singular to working precision, and the right-hand side not in its range";
  }
  solution.history.push_back({solution.iterations, solution.residual, QuarnFloat()});
  tesk2mp::Matrix<T> column(x.size(), 1);
  std::move(x.begin(), x.end(), column.data());
  solution.x.elements = std::move(column);
  return solution;
}

template <class T>
Solution proven_solution(const Equations<T>& equations, const ProofOptions& options) {
  constexpr std::size_t kLeastSparse = 100;
  const std::size_t n = equations.b.size();
  const bool sparse = options.certificate.empty() && n >= kLeastSparse && equations.a.entries() < n * n / 8;
  const tesk2mp::Matrix<T> a = sparse && n > kMostFull ? tesk2mp::Matrix<T>() : full_matrix(equations);
  Solution solution;
  const auto found = with_true_digits(options, solution.worked_with, [&] {
    if (sparse) {
      auto by_sparse_factors = tesk2mp::proven::solve(equations.a, equations.b);
      if (a.rows() == 0 || by_sparse_factors.front().error.is_finite()) {
        solution.routine = "proven sparse factors";
        return by_sparse_factors;
      }
    }
    solution.routine = std::is_same_v<T, Complex> ? "QuarnMPX_zproven_solve_" : "QuarnMPX_dproven_solve_";
    return tesk2mp::proven::solve(a, equations.b);
  });
  tesk2mp::Matrix<T> x(found.size(), 1);
  for (std::size_t i = 0; i < found.size(); ++i) {
    x(i, 0) = tesk2mp::proven::known_value(found[i]);
  }
  solution.errors = errors_of(found);
  Result about_zeros;
  add_zeros(about_zeros, found);
  solution.notes = std::move(about_zeros.notes);
  if (!options.certificate.empty()) {
    tesk2mp::Matrix<T> b(found.size(), 1);
    std::copy(equations.b.begin(), equations.b.end(), b.data());
    tesk2mp::Matrix<QuarnFloat> errors(found.size(), 1);
    std::copy(solution.errors.begin(), solution.errors.end(), errors.data());
    write_certificate(options.certificate, tesk2mp::proven::certify_solution(a, &b, x, errors, solution.worked_with));
  }
  solution.residual = relative_residual(equations, std::vector<T>(x.data(), x.data() + x.rows()));
  solution.x.elements = std::move(x);
  return solution;
}

}  // namespace

Solution solve_proven(const LinearSystem& system, const ProofOptions& options) {
  Solution solution =
      std::visit([&](const auto& equations) { return proven_solution(equations, options); }, system.equations);
  solution.method = "proven";
  return solution;
}

bool is_for_sparse_factors(const LinearSystem& system) { return std::size_t(system.n) > kMostFull; }

Solution solve_directly(const LinearSystem& system) {
  const bool sparse = is_for_sparse_factors(system);
  Solution solution = std::visit(
      [&](const auto& equations) { return sparse ? sparse_solution(equations) : refined_solution(equations); },
      system.equations);
  solution.method = "direct";
  solution.routine = sparse ? "complete sparse factors" : system.complex() ? "QuarnMPX_zgerfs_" : "QuarnMPX_dgerfs_";
  return solution;
}

}  // namespace cli
