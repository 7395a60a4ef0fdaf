// What the methods for symmetric systems have in common: the residual before the preconditioner, and what their inner
// products say of matrix and preconditioner.
#pragma once

#include "src/frame/constants.h"
#include "src/sparse/solver.h"

namespace tesk {

/// At a new start with a preconditioner, b - A x in the units of the method.
template <class T>
void copy_unpreconditioned(const Solver<T>& solver, Integer slot) {
  solver.copy(kTrueResidual, slot);
  if (solver.unit() != 1) {
    scale(solver.n(), 1 / solver.unit(), solver.vector(slot));
  }
}

/// Of an inner product of two vectors that a positive definite matrix makes positive.
template <class T>
Outcome judge_positive(const Solver<T>& solver, const QuarnFloat& product, Integer a, Integer b) {
  if (a == b ? !(product > 0) : solver.vanishes(product, solver.euclidean(a) * solver.euclidean(b))) {
    return Outcome::broken;
  }
  return product > 0 ? Outcome::iterated : Outcome::unsuitable;
}

/// Orthogonality goes as the residual does: when little of its square is left, rounding errors look like missing
/// symmetry and like an indefinite preconditioner.
inline bool is_significant(const QuarnFloat& square_left) { return square_left > sqrt(epsilon()); }

/// Iterations after a start that are looked at for symmetry; the first has nothing to show.
inline bool looks_for_symmetry(const QuarnFloat& iterations, const QuarnFloat& square_left) {
  constexpr int kLast = 8;
  return iterations > 0 && iterations <= kLast && is_significant(square_left);
}

/// Are an inner product of two vectors, and the number that symmetry makes it, the same to half the digits?
template <class T>
bool agree(const Solver<T>& solver, const QuarnFloat& expected, const T& product, Integer a, Integer b) {
  return size_of(product - T(expected)) <= sqrt(epsilon()) * (solver.euclidean(a) * solver.euclidean(b));
}

}  // namespace tesk
