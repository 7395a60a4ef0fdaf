// Sparse systems from matrix and right-hand side to the solution in one call. Part of tesk2mp.hpp.
#pragma once

#include <algorithm>
#include <functional>
#include <optional>
#include <span>
#include <type_traits>
#include <utility>
#include <vector>

#include "tesk2mp/incomplete.hpp"
#include "tesk2mp/preconditioners.hpp"
#include "tesk2mp/solver.hpp"
#include "tesk2mp/sparse_direct.hpp"

namespace tesk2mp {

/// Jacobi, SSOR, incomplete LU (of any matrix), incomplete Cholesky (of symmetric and Hermitian ones), or complete
/// factors: SparseCholesky where the matrix turns out to be positive definite, otherwise SparseLU, and of a matrix that
/// is singular to working precision IncompleteLU with all fill, which replaces the pivots that are missing.
enum class Preconditioning { none, jacobi, ssor, ilu, ic, direct };

/// How solve_sparse() works. Where nothing is said of method and preconditioner the matrix decides.
struct SparseOptions {
  std::optional<Method> method;
  std::optional<Preconditioning> preconditioning;
  FillOptions fill;    ///< of incomplete factors
  Real omega = 1;      ///< of SSOR
  Real tolerance = 0;  ///< of ||b - A x|| beside ||b|| + ||A|| ||x||; 0: the root of the machine precision
  Integer order = 0;   ///< as in SolverOptions
  Integer most_iterations = 1000;
};

template <Scalar T>
struct SparseSolution : BasicIterativeSolution<T> {
  Method method = Method::rgmres;
  Preconditioning preconditioning = Preconditioning::none;
};

/// cg of a symmetric or Hermitian matrix with a positive diagonal, minres of another one, else bicgstab. The matrix is
/// in canonical form.
template <Scalar T>
Method automatic_method(const SparseMatrix<T>& a) {
  if (!is_hermitian(a)) {
    return Method::bicgstab;
  }
  std::size_t positive = 0;
  for (std::size_t k = 0; k < a.entries(); ++k) {
    positive += a.row(k) == a.column(k) && Complex(a.value(k)).re > 0 ? 1 : 0;
  }
  return positive == a.order() ? Method::cg : Method::minres;
}

/// SparseCholesky of a whole matrix in canonical form where it turns out to be positive definite, otherwise SparseLU,
/// to be called with b and x.
template <Scalar T>
std::function<void(std::span<const T>, std::span<T>)> regular_factors(const SparseMatrix<T>& a) {
  if (automatic_method(a) == Method::cg) {
    try {
      return SparseCholesky<T>(lower_triangle(a));
    } catch (const NumericalFailure&) {  // indefinite, in spite of its diagonal
    }
  }
  return SparseLU<T>(a);
}

/// The factors of Preconditioning::direct, of a whole matrix in canonical form, to be called with b and x.
template <Scalar T>
std::function<void(std::span<const T>, std::span<T>)> complete_factors(const SparseMatrix<T>& a) {
  try {
    return regular_factors(a);
  } catch (const NumericalFailure&) {  // singular; b may be in its range
  }
  FillOptions all;
  all.level = -1;
  return IncompleteLU<T>(a, all, PivotSearch::least_fill);
}

namespace detail {

template <Scalar T>
using Precondition = std::function<void(std::span<const T>, std::span<T>)>;

/// a: whole, in canonical form, and kept by the caller.
template <Scalar T>
Precondition<T> preconditioner(const SparseMatrix<T>& a, Preconditioning kind, const SparseOptions& options) {
  switch (kind) {
    case Preconditioning::none:
      break;
    case Preconditioning::jacobi:
      return Jacobi<T>(a);
    case Preconditioning::ssor:
      return Ssor<T>(a, options.omega);
    case Preconditioning::ilu:
      return IncompleteLU<T>(a, options.fill);
    case Preconditioning::ic:
      return IncompleteCholesky<T>(lower_triangle(a), options.fill);
    case Preconditioning::direct:
      return complete_factors(a);
  }
  return {};
}

template <Scalar T>
SparseSolution<T> solve_sparse_by(const SparseMatrix<T>& a, std::span<const T> b, const SparseOptions& options,
                                  Method method, Preconditioning kind) {
  SolverOptions settings;
  settings.method = method;
  settings.order =
      options.order == 0 && method == Method::bicgstab ? std::min<Integer>(2, Integer(a.order())) : options.order;
  settings.tolerance = options.tolerance;
  settings.most_iterations = options.most_iterations;
  settings.criterion = Criterion::residual;
  const Precondition<T> precondition = [&] {
    const SolverDigits enough;
    return preconditioner(a, kind, options);
  }();
  SparseSolution<T> solution;
  static_cast<BasicIterativeSolution<T>&>(solution) = solve_iteratively(a, b, settings, precondition);
  solution.method = method;
  solution.preconditioning = kind;
  return solution;
}

}  // namespace detail

/// Solves A x = b. The matrix is brought into canonical form and, if a triangle, made whole. The solution holds the
/// residual, how it was found, and `inconsistent` where A seems to be singular; its true residual satisfies the
/// criterion.
///
/// With neither method nor preconditioner given: incomplete Cholesky factors and CG, or incomplete LU factors and
/// BICGSTAB, or of an indefinite symmetric matrix MINRES alone; where that fails, complete factors and
/// RGMRES. Throws NumericalFailure as IterativeSolver does when the last attempt fails; a singular system has a
/// solution when b is in the range of A, which may be found. Fewer than 10 working digits are as in
/// solve_iteratively().
///
/// @code
/// const auto x = tesk2mp::solve_sparse(a, b, {.tolerance = tesk2mp::Real(1, -40)}).x;
/// @endcode
template <Scalar T>
SparseSolution<T> solve_sparse(const SparseMatrix<T>& a, std::span<const std::type_identity_t<T>> b,
                               const SparseOptions& options = {}) {
  detail::require_length("F11BDF", 6, detail::count_of(b.size()), detail::count_of(a.order()));
  const SparseMatrix<T> matrix = [&a] {
    const SolverDigits enough;
    return whole(a);
  }();
  const Method method = options.method ? *options.method : automatic_method(matrix);
  const bool symmetric = method == Method::cg || method == Method::minres || method == Method::symmlq;
  const Preconditioning usual = method == Method::cg ? Preconditioning::ic
                                : symmetric          ? Preconditioning::none
                                                     : Preconditioning::ilu;
  const Preconditioning kind = options.preconditioning ? *options.preconditioning : usual;
  if (options.method || options.preconditioning) {
    return detail::solve_sparse_by<T>(matrix, b, options, method, kind);
  }
  try {
    return detail::solve_sparse_by<T>(matrix, b, options, method, kind);
  } catch (const NumericalFailure&) {
    return detail::solve_sparse_by<T>(matrix, b, options, Method::rgmres, Preconditioning::direct);
  }
}

}  // namespace tesk2mp
