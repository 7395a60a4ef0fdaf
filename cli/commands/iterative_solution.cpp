// Linear systems by the library's iterative methods, with a course of the residual.
#include <algorithm>

#include "cli/commands/failure.h"
#include "cli/commands/fill.h"
#include "cli/commands/linear_system.h"
#include "cli/io/number_text.h"
#include "cli/system/memory.h"
#include "tesk2mp/incomplete.hpp"
#include "tesk2mp/preconditioners.hpp"
#include "tesk2mp/solve_sparse.hpp"
#include "tesk2mp/solver.hpp"

namespace cli {

namespace {

QuarnFloat number(const std::string& option, const std::string& text) {
  if (!is_number(text)) {
    throw bad_input(option + ": '" + text + "' is not a number");
  }
  return to_number(text);
}

template <class T>
using Preconditioner = std::function<void(std::span<const T>, std::span<T>)>;

template <class T>
Preconditioner<T> incomplete_factors(const std::string& source, const tesk2mp::SparseMatrix<T>& a,
                                     const IterativeOptions& options) {
  const tesk2mp::FillOptions fill = fill_options(options.fill, options.drop, options.modified);
  if (options.precon == "ilu") {
    return tesk2mp::IncompleteLU(a, fill);
  }
  if (!tesk2mp::is_hermitian(a)) {
    throw Unsuitable(source, "ic is for symmetric and Hermitian matrices");
  }
  return tesk2mp::IncompleteCholesky(tesk2mp::lower_triangle(a), fill);
}

/// Null where none is wanted.
template <class T>
Preconditioner<T> preconditioner_of(const std::string& source, const Equations<T>& equations,
                                    const IterativeOptions& options) {
  if (options.precon == "none") {
    return {};
  }
  if (options.precon == "ilu" || options.precon == "ic") {
    return incomplete_factors(source, equations.a, options);
  }
  const QuarnFloat omega = number("--omega", options.omega);
  if (!(omega > 0 && omega < 2)) {
    throw bad_input("--omega: must lie between 0 and 2");
  }
  try {
    if (options.precon == "jacobi") {
      return tesk2mp::Jacobi(equations.a);
    }
    return tesk2mp::Ssor(equations.a, omega);
  } catch (const tesk2mp::NumericalFailure& failure) {
    throw Unsuitable(
        source, options.precon + " divides by the diagonal, but row " + std::to_string(failure.code()) + " has none");
  }
}

struct NamedMethod {
  const char* name;
  tesk2mp::Method method;
  bool symmetric = false;
};
constexpr NamedMethod kMethods[] = {{"rgmres", tesk2mp::Method::rgmres},
                                    {"fgmres", tesk2mp::Method::fgmres},
                                    {"cgs", tesk2mp::Method::cgs},
                                    {"bicgstab", tesk2mp::Method::bicgstab},
                                    {"tfqmr", tesk2mp::Method::tfqmr},
                                    {"idrs", tesk2mp::Method::idrs},
                                    {"cg", tesk2mp::Method::cg, true},
                                    {"minres", tesk2mp::Method::minres, true},
                                    {"symmlq", tesk2mp::Method::symmlq, true}};

tesk2mp::Method method_of(const std::string& name) {
  return std::find_if(std::begin(kMethods), std::end(kMethods) - 1, [&](const auto& each) { return each.name == name; })
      ->method;
}

tesk2mp::SolverOptions solver_options(const std::string& method, const IterativeOptions& options, Integer n) {
  constexpr Integer kMostOfRgmres = 50;
  tesk2mp::SolverOptions result;
  result.method = method_of(method);
  result.order = order_of(method, options, n);
  result.tolerance = options.tolerance.empty() ? QuarnFloat(0) : number("--tol", options.tolerance);
  result.most_iterations = options.maxit;
  result.criterion = tesk2mp::Criterion::residual;
  result.norm = tesk2mp::VectorNorm::two;
  result.monitor = options.every;
  // The library says the same by the numbers of its parameters.
  if (!(result.tolerance < 1)) {
    throw bad_input("--tol: must be below 1");
  }
  if (method == "rgmres" && result.order > kMostOfRgmres) {
    throw bad_input("--restart: of --method rgmres " + std::to_string(kMostOfRgmres) + " at most");
  }
  return result;
}

template <class T>
Solution solve_by(const Equations<T>& equations, const std::string& method, const tesk2mp::SolverOptions& settings,
                  const Preconditioner<T>& precondition, const std::function<void(const ResidualStep&)>& watcher) {
  Solution solution;
  solution.method = method;
  solution.routine = std::is_same_v<T, Complex> ? "QuarnMPX_zf11bef_" : "QuarnMPX_f11bef_";
  tesk2mp::BasicIterativeSolver<T> solver(equations.b, {}, bool(precondition), settings);
  const auto look = [&] {
    const tesk2mp::Progress now = solver.progress();
    solution.history.push_back({now.iterations, now.left, now.right});
    watcher(solution.history.back());
  };
  const auto product = [&](std::span<const T> x, std::span<T> y, bool transposed) {
    ++solution.products;
    equations.a.multiply(x, y, transposed ? tesk2mp::Op::conjugate_transpose : tesk2mp::Op::none);
  };
  const auto monitor = [&](tesk2mp::BasicIterativeSolver<T>& /*solver*/) {
    look();
    return true;
  };
  try {
    tesk2mp::iterate(solver, product, precondition, monitor);
  } catch (const tesk2mp::NumericalFailure& failure) {
    const std::string text = failure.what();
    solution.failure_code = failure.code();
    solution.failure = "IFAIL " + std::to_string(failure.code()) + ": " + text.substr(failure.routine().size() + 2);
  }
  look();
  solution.iterations = solution.history.back().iteration;
  solution.x.elements = matrix_of(solver.solution(), solver.solution().size());
  solution.residual = relative_residual(equations, solver.solution());
  return solution;
}

}  // namespace

tesk2mp::FillOptions fill_options(Integer level, const std::string& drop, bool modified) {
  tesk2mp::FillOptions fill;
  fill.level = level;
  fill.modified = modified;
  if (!drop.empty()) {
    fill.level = -1;
    fill.drop_tolerance = number("--drop", drop);
    if (!(fill.drop_tolerance >= 0) || !isfinite(fill.drop_tolerance)) {
      throw bad_input("--drop: must not be negative");
    }
  }
  return fill;
}

std::string automatic_method(const LinearSystem& system) {
  const tesk2mp::Method method =
      std::visit([](const auto& equations) { return tesk2mp::automatic_method(equations.a); }, system.equations);
  return method == tesk2mp::Method::cg ? "cg" : method == tesk2mp::Method::minres ? "minres" : "bicgstab";
}

std::vector<std::string> methods_for(const LinearSystem& system, const std::string& precon) {
  const bool hermitian =
      std::visit([](const auto& equations) { return tesk2mp::is_hermitian(equations.a); }, system.equations);
  std::vector<std::string> names;
  for (const NamedMethod& each : kMethods) {
    const bool same_as_another = precon == "none" && each.method == tesk2mp::Method::fgmres;
    if ((hermitian || !each.symmetric) && !same_as_another) {
      names.emplace_back(each.name);
    }
  }
  return names;
}

Integer order_of(const std::string& method, const IterativeOptions& options, Integer n) {
  const Integer given = method == "rgmres" || method == "fgmres" ? options.restart : options.order;
  const Integer usual = method == "bicgstab" ? 2 : method == "idrs" ? 4 : 1;
  return std::min(given == 0 ? usual : given, n);
}

PreconditionedSystem::PreconditionedSystem(const LinearSystem& system, IterativeOptions options)
    : system_(system), options_(std::move(options)) {
  const tesk2mp::SolverDigits enough;
  std::visit(
      [&]<class T>(const Equations<T>& equations) {
        precondition_ = preconditioner_of(system.source, equations, options_);
      },
      system.equations);
}

Solution PreconditionedSystem::solve(const std::string& method,
                                     const std::function<void(const ResidualStep&)>& watcher) const {
  const tesk2mp::SolverOptions settings = solver_options(method, options_, system_.n);
  constexpr double kVectors = 10;
  // idrs has three vectors for each shadow vector, fgmres two for each iteration to a restart.
  const double for_each = method == "idrs" ? 3 : method == "fgmres" || method == "bicgstab" ? 2 : 1;
  require_memory((system_.complex() ? 2 : 1) * (kVectors + for_each * settings.order) * system_.n,
                 "the work array of " + method);
  Solution solution = std::visit(
      [&]<class T>(const Equations<T>& equations) {
        return solve_by(equations, method, settings, std::get<Preconditioner<T>>(precondition_), watcher);
      },
      system_.equations);
  solution.precon = options_.precon;
  return solution;
}

}  // namespace cli
