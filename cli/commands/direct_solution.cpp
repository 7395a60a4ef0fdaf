// LU factorisation with iterative refinement: C. B. Moler, Iterative refinement in floating point, J. ACM 14 (1967).
#include <algorithm>

#include "cli/commands/failure.h"
#include "cli/commands/linear_system.h"
#include "cli/system/memory.h"
#include "tesk2mp/dense.hpp"

namespace cli {

namespace {

constexpr Integer kMostRefinements = 20;

template <class T>
tesk2mp::LU<T> factors_of(const Equations<T>& equations) {
  const std::size_t n = equations.b.size();
  constexpr double kParts = std::is_same_v<T, Complex> ? 2 : 1;
  require_memory(kParts * double(n) * double(n), "the full matrix");
  tesk2mp::Matrix<T> full(n, n);
  for (std::size_t k = 0; k < equations.a.entries(); ++k) {
    full(equations.a.row(k), equations.a.column(k)) = equations.a.value(k);
  }
  return tesk2mp::LU<T>(std::move(full));
}

template <class T>
QuarnFloat largest(const std::vector<T>& x) {
  return tesk2mp::norm(tesk2mp::Norm::largest, tesk2mp::MatrixView<const T>(x, x.size(), 1));
}

template <class T>
Solution refined_solution(const Equations<T>& equations) {
  Solution solution;
  const tesk2mp::LU<T> factors = factors_of(equations);
  std::vector<T> x = factors.solve(equations.b);
  const QuarnFloat unit(1, 1 - QuarnDigits());
  QuarnFloat former = largest(x);
  for (solution.iterations = 0;; ++solution.iterations) {
    solution.residual = relative_residual(equations, x);
    solution.history.push_back({solution.iterations, solution.residual, QuarnFloat()});
    const std::vector<T> correction = factors.solve(exact_residual(equations, x));
    const QuarnFloat size = largest(correction);
    if (size <= unit * largest(x)) {
      break;
    }
    if (!(2 * size < former) || solution.iterations == kMostRefinements) {
      solution.failure = "the refinement does not converge: the matrix is singular to working precision";
      break;
    }
    former = size;
    for (std::size_t i = 0; i < x.size(); ++i) {
      x[i] = x[i] + correction[i];
    }
  }
  solution.x.elements = matrix_of(x, x.size());
  return solution;
}

}  // namespace

Solution solve_directly(const LinearSystem& system) {
  Solution solution = std::visit([](const auto& equations) { return refined_solution(equations); }, system.equations);
  solution.method = "direct";
  solution.routine = system.complex() ? "QuarnMPX_f07arf_" : "QuarnMPX_f07adf_";
  return solution;
}

}  // namespace cli
