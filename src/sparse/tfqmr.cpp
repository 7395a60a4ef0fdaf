// TFQMR: R. W. Freund, A transpose-free quasi-minimal residual algorithm for non-Hermitian linear systems, SIAM J. Sci.
// Comput. 14 (1993). An iteration is two half steps with a product each. Beside the quasi-residual of the paper the
// residual itself is carried on, by the image of the direction, so that no bound has to stand for it. After k half
// steps it is at most sqrt(k + 1) times the quasi-residual tau (theorem 4.2 there). Rounding errors can leave it above;
// then the lower number is what the recurrence claims, and what the true residual has to confirm.
#include <algorithm>

#include "src/sparse/solver.h"

namespace tesk {
namespace {

enum TfqmrSlot : Integer { kShadow = kMethodSlot, kW, kY, kImage, kV, kD, kImageOfD, kEnd };
enum TfqmrScalar : Integer { kRho, kTau, kTheta, kEta, kAlpha, kHalfSteps };
enum TfqmrStep : Integer {
  kStart,
  kSecondImage,
  kIteration,
  kNextImage,
  kHaveStartSums,
  kHaveSigmaSums,
  kHaveFirstTheta,
  kHaveSecondTheta,
  kHaveRhoSums
};

/// One half step with y and its image A y: w -= alpha A y, and the direction d.
template <class T>
void take_image(const Solver<T>& solver) {
  const SolverState<T>& state = solver.state();
  const QuarnFloat& theta = state.real(kTheta);
  const T& alpha = state.scalar(kAlpha);
  const T carried = quotient(theta * theta * state.scalar(kEta), alpha);
  const auto y = solver.vector(kY);
  const auto image = solver.vector(kImage);
  const auto d = solver.vector(kD);
  const auto image_of_d = solver.vector(kImageOfD);
  for (Integer i = 1; i <= solver.n(); ++i) {
    d(i) = y(i) + carried * d(i);
    image_of_d(i) = image(i) + carried * image_of_d(i);
  }
  solver.add(-alpha, kImage, kW);
}

/// Its end, the quasi-minimisation along d. False when the iterate would not be finite.
template <class T>
bool half_step(const Solver<T>& solver) {
  const SolverState<T>& state = solver.state();
  QuarnFloat& tau = state.real(kTau);
  QuarnFloat& theta = state.real(kTheta);
  T& eta = state.scalar(kEta);
  theta = solver.euclidean(kW) / tau;
  const QuarnFloat c_squared = 1 / (1 + theta * theta);
  tau *= theta * sqrt(c_squared);
  eta = c_squared * state.scalar(kAlpha);
  state.real(kHalfSteps) += 1;
  if (!solver.advance_iterate(eta, kD)) {
    return false;
  }
  solver.add(-eta, kImageOfD, kResidual);
  return true;
}

template <class T>
bool must_wait_for_theta(Solver<T>& solver, Integer step) {
  return solver.must_ask(step, [&solver] { solver.want_euclidean(kW); });
}

/// The end of the first half step, y2 = y1 - alpha v.
template <class T>
Outcome end_first_half(Solver<T>& solver) {
  const SolverState<T>& state = solver.state();
  if (!half_step(solver) || state.real(kTau) == 0) {
    return Outcome::broken;  // when tau is zero luckily: so is the residual
  }
  solver.add(-state.scalar(kAlpha), kV, kY);
  return solver.apply(kY, kImage, kSecondImage);
}

/// From the image of y1: alpha, and the first half step.
template <class T>
Outcome first_half(Solver<T>& solver) {
  const SolverState<T>& state = solver.state();
  const T sigma = solver.dot(kShadow, kV);
  if (solver.vanishes(sigma, solver.euclidean(kShadow) * solver.euclidean(kV))) {
    return Outcome::broken;
  }
  state.scalar(kAlpha) = quotient(state.scalar(kRho), sigma);
  take_image(solver);
  return must_wait_for_theta(solver, kHaveFirstTheta) ? Outcome::waiting : end_first_half(solver);
}

/// y1 = w + beta y2, and v = beta (A y2 + beta v), to which A y1 is still to come.
template <class T>
Outcome next_direction(Solver<T>& solver) {
  T& rho = solver.state().scalar(kRho);
  const T former_rho = rho;
  rho = solver.dot(kShadow, kW);
  if (solver.vanishes(rho, solver.euclidean(kShadow) * solver.euclidean(kW))) {
    return Outcome::broken;
  }
  const T beta = quotient(rho, former_rho);
  const auto w = solver.vector(kW);
  const auto y = solver.vector(kY);
  const auto image = solver.vector(kImage);
  const auto v = solver.vector(kV);
  for (Integer i = 1; i <= solver.n(); ++i) {
    y(i) = w(i) + beta * y(i);
    v(i) = beta * (image(i) + beta * v(i));
  }
  return solver.apply(kY, kImage, kNextImage);
}

template <class T>
Outcome resume_tfqmr(Solver<T>& solver) {
  SolverState<T>& state = solver.state();
  switch (state.step) {
    case kStart:
      solver.choose_shadow(kShadow);
      solver.copy(kResidual, kW);
      solver.copy(kResidual, kY);
      solver.clear(kV);
      solver.clear(kD);
      solver.clear(kImageOfD);
      if (solver.must_ask(kHaveStartSums, [&solver] { solver.want_beside(kShadow, kResidual); })) {
        return Outcome::waiting;
      }
      [[fallthrough]];
    case kHaveStartSums:
      state.real(kTau) = solver.euclidean(kResidual);
      state.scalar(kRho) = solver.dot(kShadow, kResidual);
      state.real(kTheta) = 0;
      state.scalar(kEta) = T(0.0);
      state.real(kHalfSteps) = 0;
      return solver.apply(kY, kImage, kNextImage);
    case kNextImage:
      solver.add(T(1.0), kImage, kV);
      if (solver.must_ask(kHaveSigmaSums, [&solver] { solver.want_beside(kShadow, kV); })) {
        return Outcome::waiting;
      }
      [[fallthrough]];
    case kHaveSigmaSums:
      return first_half(solver);
    case kHaveFirstTheta:
      return end_first_half(solver);
    case kSecondImage:
      take_image(solver);
      if (must_wait_for_theta(solver, kHaveSecondTheta)) {
        return Outcome::waiting;
      }
      [[fallthrough]];
    case kHaveSecondTheta:
      if (!half_step(solver)) {
        return Outcome::broken;
      }
      state.step = kIteration;
      return Outcome::iterated;
    case kIteration:
      if (solver.must_ask(kHaveRhoSums, [&solver] { solver.want_beside(kShadow, kW); })) {
        return Outcome::waiting;
      }
      [[fallthrough]];
    default:
      return next_direction(solver);
  }
}

template <class T>
QuarnFloat tfqmr_residual(const Solver<T>& solver) {
  const SolverState<T>& state = solver.state();
  return std::min(solver.euclidean(kResidual), state.real(kTau) * sqrt(state.real(kHalfSteps) + 1));
}

template <class T>
Bounds tfqmr_bounds(const Solver<T>& solver) {
  const QuarnFloat carried = solver.euclidean(kResidual);
  const QuarnFloat claimed = tfqmr_residual(solver);
  const QuarnFloat residual = solver.norm(kResidual);
  return {claimed < carried ? residual * (claimed / carried) : residual, solver.norm(kIterate)};
}

template <class T>
void want_next(Solver<T>& solver) {
  want_kept_bounds(solver);
  solver.want_euclidean(kResidual);
  solver.want_beside(kShadow, kW);
}

template <class T>
constexpr SolverSteps<T> kSteps = {resume_tfqmr<T>, tfqmr_bounds<T>, tfqmr_residual<T>, kept_iterate<T>, want_next<T>};

}  // namespace

const SolverMethod kTfqmr = {4,
                             "TFQMR",
                             1,
                             false,
                             true,
                             kHaveRhoSums,
                             [](Integer) { return kEnd - kMethodSlot; },
                             [](Integer) { return Integer(0); },
                             0,
                             kSteps<QuarnFloat>,
                             kSteps<Complex>};

}  // namespace tesk
