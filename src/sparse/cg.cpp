// CG: M. R. Hestenes, E. Stiefel, Methods of conjugate gradients for solving linear systems, J. Res. Nat. Bur.
// Standards 49 (1952), with a preconditioner. r is b - A x and z = M^-1 r by their recurrences; without a
// preconditioner they are one vector.
#include "src/sparse/ritz.h"
#include "src/sparse/solver.h"
#include "src/sparse/symmetry.h"

namespace tesk {
namespace {

enum CgSlot : Integer { kP = kMethodSlot, kImage, kEnd };
// Of the iteration before: alpha; beta, the ratio of two rho.
enum CgScalar : Integer { kRho, kIterations, kAlpha, kBeta, kFirstRho };
enum CgStep : Integer { kStart, kNextDirection, kHaveImage, kHaveRho, kHaveCurvature };
constexpr Integer kVectorsBesidePreconditioner = 2;  // A p, r

template <class T>
Integer product_of(const Solver<T>& solver) {
  return solver.preconditioned() ? solver.product_slot() : Integer(kImage);
}
template <class T>
Integer plain_residual(const Solver<T>& solver) {
  return solver.preconditioned() ? solver.product_slot() + 1 : Integer(kResidual);
}

template <class T>
void want_rho(const Solver<T>& solver) {
  const Integer r = plain_residual(solver);
  solver.want_beside(r, kResidual);
}

/// r^T z, which makes the direction and is positive for a positive definite preconditioner.
template <class T>
Outcome next_direction(Solver<T>& solver) {
  const SolverState<T>& state = solver.state();
  const Integer r = plain_residual(solver);
  const QuarnFloat rho = real_part(solver.dot(r, kResidual));
  const Outcome verdict = judge_positive(solver, rho, r, kResidual);
  if (verdict != Outcome::iterated) {
    return verdict;
  }
  if (state.real(kIterations) == 0) {
    solver.copy(kResidual, kP);
  } else {
    const QuarnFloat& beta = state.real(kBeta) = rho / state.real(kRho);
    const auto z = solver.vector(kResidual);
    const auto p = solver.vector(kP);
    for (Integer i = 1; i <= solver.n(); ++i) {
      p(i) = z(i) + times(beta, p(i));
    }
  }
  if (state.real(kIterations) == 0) {
    state.real(kFirstRho) = rho;
  }
  state.real(kRho) = rho;
  return solver.apply(kP, kImage, kHaveImage);
}

/// What step length alpha says of SIGMAX: the element of the tridiagonal matrix, and that beside it.
template <class T>
void estimate(const Solver<T>& solver, const QuarnFloat& alpha) {
  const SolverState<T>& state = solver.state();
  const QuarnFloat& before = state.real(kIterations);
  if (before == 0) {
    RitzEstimate<T>(solver).take(1, 1 / alpha, 0);
  } else if (before < kRitzIterations) {
    const QuarnFloat& former = state.real(kAlpha);
    RitzEstimate<T>(solver).take(FloatToInt(before) + 1, 1 / alpha + state.real(kBeta) / former,
                                 sqrt(state.real(kBeta)) / former);
  }
  state.real(kAlpha) = alpha;
}

template <class T>
bool looks_for_symmetry(const Solver<T>& solver) {
  const SolverState<T>& state = solver.state();
  return tesk::looks_for_symmetry(state.real(kIterations), state.real(kRho) / state.real(kFirstRho));
}

template <class T>
void want_curvature(const Solver<T>& solver) {
  const Integer product = product_of(solver);
  solver.want_beside(kP, product);
  if (looks_for_symmetry(solver)) {
    solver.want_dot(kResidual, product);
    solver.want_euclidean(kResidual);
  }
}

template <class T>
Outcome resume_cg(Solver<T>& solver) {
  SolverState<T>& state = solver.state();
  switch (state.step) {
    case kStart:
      if (solver.preconditioned()) {
        copy_unpreconditioned(solver, plain_residual(solver));
      }
      state.real(kIterations) = 0;
      [[fallthrough]];
    case kNextDirection:
      if (solver.must_ask(kHaveRho, [&solver] { want_rho(solver); })) {
        return Outcome::waiting;
      }
      [[fallthrough]];
    case kHaveRho:
      return next_direction(solver);
    case kHaveImage:
      if (solver.must_ask(kHaveCurvature, [&solver] { want_curvature(solver); })) {
        return Outcome::waiting;
      }
      [[fallthrough]];
    default: {
      const Integer product = product_of(solver);
      const QuarnFloat curvature = real_part(solver.dot(kP, product));
      const Outcome verdict = judge_positive(solver, curvature, kP, product);
      if (verdict != Outcome::iterated) {
        return verdict;
      }
      // z is p less a multiple of the direction before, which A p is orthogonal to when A and M are symmetric.
      if (looks_for_symmetry(solver) && !agree(solver, curvature, solver.dot(kResidual, product), kResidual, product)) {
        return Outcome::unsuitable;
      }
      const QuarnFloat alpha = state.real(kRho) / curvature;
      estimate(solver, alpha);
      if (!solver.advance_iterate(alpha, kP)) {
        return Outcome::broken;
      }
      if (solver.preconditioned()) {
        solver.add(-alpha, product, plain_residual(solver));
      }
      solver.add(-alpha, kImage, kResidual);
      state.real(kIterations) += 1;
      state.step = kNextDirection;
      return Outcome::iterated;
    }
  }
}

template <class T>
void want_next(Solver<T>& solver) {
  want_kept_bounds(solver);
  want_rho(solver);
}

template <class T>
constexpr SolverSteps<T> kSteps = {resume_cg<T>, kept_bounds<T>, kept_residual<T>, kept_iterate<T>, want_next<T>};

}  // namespace

const SolverMethod kCg = {5,
                          "CG",
                          1,
                          false,
                          false,
                          kHaveCurvature,
                          [](Integer) { return kEnd - kMethodSlot; },
                          ritz_constants,
                          kVectorsBesidePreconditioner,
                          kSteps<QuarnFloat>,
                          kSteps<Complex>};

}  // namespace tesk
