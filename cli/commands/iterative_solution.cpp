// Linear systems by the library's iterative methods, with a course of the residual.
#include <algorithm>

#include "cli/commands/failure.h"
#include "cli/commands/linear_system.h"
#include "cli/io/number_text.h"
#include "cli/system/memory.h"
#include "tesk2mp/solver.hpp"

namespace cli {

namespace {

using Numbers = std::vector<QuarnFloat>;

constexpr int kFewestDigits = 10;  // for the counters in the solver's work array

QuarnFloat number(const std::string& option, const std::string& text) {
  if (!is_number(text)) {
    throw bad_input(option + ": '" + text + "' is not a number");
  }
  return to_number(text);
}

/// A matrix close to A with which a system is easily solved.
class Preconditioner {
 public:
  Preconditioner(const std::string& source, const Equations<QuarnFloat>& equations, const IterativeOptions& options)
      : equations_(equations), kind_(options.precon) {
    if (!wanted()) {
      return;
    }
    omega_ = number("--omega", options.omega);
    if (!(omega_ > 0 && omega_ < 2)) {
      throw bad_input("--omega: must lie between 0 and 2");
    }
    const tesk2mp::SparseMatrix<QuarnFloat>& a = equations.a;
    diagonal_.resize(a.order());
    for (std::size_t k = 0; k < a.entries(); ++k) {
      if (a.row(k) == a.column(k)) {
        diagonal_[a.row(k)] = a.value(k);
      }
    }
    const auto zero = std::find(diagonal_.begin(), diagonal_.end(), QuarnFloat(0));
    if (zero != diagonal_.end()) {
      throw bad_input(source + ": --precon " + kind_ + " divides by the diagonal, but row " +
                      std::to_string(zero - diagonal_.begin() + 1) + " has none");
    }
  }

  bool wanted() const { return kind_ != "none"; }

  /// z := M^-1 z
  void solve(std::span<QuarnFloat> z) const {
    if (kind_ == "jacobi") {
      for (std::size_t i = 0; i < z.size(); ++i) {
        z[i] /= diagonal_[i];
      }
      return;
    }
    // SSOR: M = omega / (2 - omega) (D / omega + L) D^-1 (D / omega + U). Young, Iterative Solution of Large Linear
    // Systems, 1971.
    const QuarnFloat scale = (2 - omega_) / omega_;
    for (std::size_t i = 0; i < z.size(); ++i) {
      subtract_row(z, i, [i](std::size_t column) { return column < i; });
      z[i] *= omega_ / diagonal_[i];
    }
    for (std::size_t i = z.size(); i-- > 0;) {
      z[i] *= scale * diagonal_[i];
      subtract_row(z, i, [i](std::size_t column) { return column > i; });
      z[i] *= omega_ / diagonal_[i];
    }
  }

 private:
  template <class Part>
  void subtract_row(std::span<QuarnFloat> z, std::size_t i, Part is_in_part) const {
    for (auto k = std::size_t(equations_.starts[i]); k < std::size_t(equations_.starts[i + 1]); ++k) {
      const std::size_t column = equations_.a.column(k);
      if (is_in_part(column)) {
        z[i] -= equations_.a.value(k) * z[column];
      }
    }
  }

  const Equations<QuarnFloat>& equations_;
  std::string kind_;
  QuarnFloat omega_;
  Numbers diagonal_;
};

tesk2mp::Method method_of(const std::string& name) {
  return name == "rgmres"     ? tesk2mp::Method::rgmres
         : name == "cgs"      ? tesk2mp::Method::cgs
         : name == "bicgstab" ? tesk2mp::Method::bicgstab
                              : tesk2mp::Method::tfqmr;
}

tesk2mp::SolverOptions solver_options(const std::string& method, const IterativeOptions& options, Integer n) {
  tesk2mp::SolverOptions result;
  result.method = method_of(method);
  result.order = std::min(method == "rgmres" ? options.restart : options.order, n);
  result.tolerance = options.tolerance.empty() ? QuarnFloat(0) : number("--tol", options.tolerance);
  result.most_iterations = options.maxit;
  result.criterion = tesk2mp::Criterion::residual;
  result.norm = tesk2mp::VectorNorm::two;
  result.monitor = options.every;
  // The library says the same by the numbers of its parameters.
  if (!(result.tolerance < 1)) {
    throw bad_input("--tol: must be below 1");
  }
  if (QuarnDigits() < kFewestDigits) {
    throw bad_input("--digits: --method " + method + " needs " + std::to_string(kFewestDigits) +
                    " at least; --method direct takes fewer");
  }
  return result;
}

}  // namespace

Solution solve_iteratively(const LinearSystem& system, const std::string& method, const IterativeOptions& options,
                           const std::function<void(const ResidualStep&)>& watcher) {
  const auto* equations = std::get_if<Equations<QuarnFloat>>(&system.equations);
  if (equations == nullptr) {
    throw bad_input(system.source + ": the system is complex, which --method direct alone can solve");
  }
  const Preconditioner preconditioner(system.source, *equations, options);
  const tesk2mp::SolverOptions settings = solver_options(method, options, system.n);
  constexpr double kVectors = 10;
  require_memory((kVectors + settings.order) * system.n, "the work array of " + method);

  Solution solution;
  solution.method = method;
  solution.routine = "QuarnMP_f11bef_";
  tesk2mp::IterativeSolver solver(equations->b, {}, preconditioner.wanted(), settings);
  const auto look = [&] {
    const tesk2mp::Progress now = solver.progress();
    solution.history.push_back({now.iterations, now.left, now.right});
    watcher(solution.history.back());
  };
  const auto product = [&](std::span<const QuarnFloat> x, std::span<QuarnFloat> y, bool transposed) {
    ++solution.products;
    equations->a.multiply(x, y, transposed ? tesk2mp::Op::transpose : tesk2mp::Op::none);
  };
  const auto precondition = [&](std::span<const QuarnFloat> x, std::span<QuarnFloat> y) {
    std::copy(x.begin(), x.end(), y.begin());
    preconditioner.solve(y);
  };
  const auto monitor = [&](tesk2mp::IterativeSolver& /*solver*/) {
    look();
    return true;
  };
  try {
    tesk2mp::iterate(solver, product, precondition, monitor);
  } catch (const tesk2mp::NumericalFailure& failure) {
    const std::string text = failure.what();
    solution.failure = "IFAIL " + std::to_string(failure.code()) + ": " + text.substr(failure.routine().size() + 2);
  }
  look();
  solution.iterations = solution.history.back().iteration;
  solution.x.elements = matrix_of(solver.solution(), solver.solution().size());
  solution.residual = relative_residual(*equations, solver.solution());
  return solution;
}

}  // namespace cli
