// LU factorisation with iterative refinement: C. B. Moler, Iterative refinement in floating point, J. ACM 14 (1967).
#include <algorithm>

#include "cli/commands/failure.h"
#include "cli/commands/library_call.h"
#include "cli/commands/linear_system.h"
#include "cli/commands/options.h"
#include "cli/io/matrix_input.h"
#include "cli/system/memory.h"
#include "tesk2mp/dense.h"
#include "tesk2mp/error.hpp"
#include "tesk2mp/kernels.h"

namespace cli {

namespace {

constexpr Integer kMostRefinements = 20;

void factorise(Integer n, std::vector<QuarnFloat>& a, std::vector<Integer>& pivots, Integer& info) {
  QuarnMP_f07adf_(n, n, a.data(), n, pivots.data(), &info);
}
void factorise(Integer n, std::vector<Complex>& a, std::vector<Integer>& pivots, Integer& info) {
  QuarnMP_f07arf_(n, n, a.data(), n, pivots.data(), &info);
}
void solve_triangle(const char* uplo, const char* diag, Integer n, std::vector<QuarnFloat>& a,
                    std::vector<QuarnFloat>& x) {
  QuarnMP_f06yjf_("L", uplo, "N", diag, n, 1, 1, a.data(), n, x.data(), n, 1, 1, 1, 1);
}
void solve_triangle(const char* uplo, const char* diag, Integer n, std::vector<Complex>& a, std::vector<Complex>& x) {
  QuarnMP_f06zjf_("L", uplo, "N", diag, n, 1, Complex(1.0), a.data(), n, x.data(), n, 1, 1, 1, 1);
}

void convert(const std::vector<Complex>& from, std::vector<QuarnFloat>& to) { to = real_parts(from); }
void convert(const std::vector<Complex>& from, std::vector<Complex>& to) { to = from; }
std::vector<Complex> complex_values(const std::vector<QuarnFloat>& from) { return complex_numbers(from); }
std::vector<Complex> complex_values(const std::vector<Complex>& from) { return from; }

/// P A = L U, applied to right sides.
template <class Value>
class Factors {
 public:
  explicit Factors(const LinearSystem& system) : n_(system.n), pivots_(std::size_t(system.n)) {
    require_memory(double(n_) * double(n_) * (system.complex ? 2 : 1), "the full matrix");
    std::vector<Value> values;
    convert(system.values, values);
    lu_.resize(std::size_t(n_) * std::size_t(n_));
    for (std::size_t k = 0; k < values.size(); ++k) {
      lu_[std::size_t(system.row[k]) - 1 + (std::size_t(system.column[k]) - 1) * std::size_t(n_)] = values[k];
    }
    Integer info = 0;
    factorise(n_, lu_, pivots_, info);
    if (info > 0) {
      throw Failure(ExitStatus::library, "quarn: " + system.source + " is singular: U(" + std::to_string(info) + ", " +
                                             std::to_string(info) + ") of its factorisation is zero\n");
    }
  }

  std::vector<Complex> solve(const std::vector<Complex>& b) {
    std::vector<Value> x;
    convert(b, x);
    for (std::size_t i = 0; i < x.size(); ++i) {
      std::swap(x[i], x[std::size_t(pivots_[i]) - 1]);
    }
    solve_triangle("L", "U", n_, lu_, x);
    solve_triangle("U", "N", n_, lu_, x);
    return complex_values(x);
  }

 private:
  Integer n_;
  std::vector<Value> lu_;
  std::vector<Integer> pivots_;
};

QuarnFloat largest(const std::vector<Complex>& x) {
  QuarnFloat size;
  for (const Complex& element : x) {
    size = std::max({size, fabs(element.re), fabs(element.im)});
  }
  return size;
}

std::vector<Complex> residual_with_twice_the_digits(const LinearSystem& system, const std::vector<Complex>& x) {
  const tesk2mp::Digits twice(std::min(2 * QuarnDigits(), kMostDigits));
  std::vector<Complex> residual = product(system, x);
  for (std::size_t i = 0; i < residual.size(); ++i) {
    residual[i] = system.b[i] - residual[i];
  }
  return residual;
}

template <class Value>
Solution refined_solution(const LinearSystem& system) {
  Solution solution;
  Factors<Value> factors(system);
  std::vector<Complex>& x = solution.x = factors.solve(system.b);
  const QuarnFloat unit(1, 1 - QuarnDigits());
  QuarnFloat former = largest(x);
  for (solution.iterations = 0;; ++solution.iterations) {
    solution.history.push_back({solution.iterations, relative_residual(system, x), QuarnFloat()});
    const std::vector<Complex> correction = factors.solve(residual_with_twice_the_digits(system, x));
    const QuarnFloat size = largest(correction);
    if (size <= unit * largest(x)) {
      return solution;
    }
    if (!(2 * size < former) || solution.iterations == kMostRefinements) {
      solution.failure = "the refinement does not converge: the matrix is singular to working precision";
      return solution;
    }
    former = size;
    for (std::size_t i = 0; i < x.size(); ++i) {
      x[i] = x[i] + correction[i];
    }
  }
}

}  // namespace

Solution solve_directly(const LinearSystem& system) {
  Solution solution = system.complex ? refined_solution<Complex>(system) : refined_solution<QuarnFloat>(system);
  solution.method = "direct";
  solution.routine = system.complex ? "QuarnMP_f07arf_" : "QuarnMP_f07adf_";
  return solution;
}

}  // namespace cli
