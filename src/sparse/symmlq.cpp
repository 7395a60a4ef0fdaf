// SYMMLQ: C. C. Paige, M. A. Saunders, Solution of sparse indefinite systems of linear equations, SIAM J. Numer. Anal.
// 12 (1975). The tridiagonal matrix of the Lanczos process is factorised as L Q; x goes along orthogonal directions w.
// The iterate is that of conjugate gradients, a step along the direction under way, unless that step is not defined or
// the residual of x is the smaller one. The images of the directions are carried along, so that both residuals are
// known as vectors.
#include "src/sparse/lanczos.h"

namespace tesk {
namespace {

enum SymmlqSlot : Integer { kDirection = kLanczosEnd, kDirectionImage, kLqResidual, kPoint, kEnd };
// gamma-bar and delta-bar of the column under way, and what is left of its right sides.
enum SymmlqScalar : Integer { kGammaBar = kLanczosEndScalar, kDeltaBar, kRight, kNextRight };

/// The rotation that takes beta_k out of the row of v_k: x and the direction go on. False when x would not be finite.
template <class T>
bool rotate(const Solver<T>& solver, const Lanczos<T>& lanczos) {
  const SolverState<T>& state = solver.state();
  QuarnFloat& gamma_bar = state.real(kGammaBar);
  QuarnFloat& delta_bar = state.real(kDeltaBar);
  QuarnFloat& right = state.real(kRight);
  QuarnFloat& next_right = state.real(kNextRight);
  const QuarnFloat gamma = sqrt(gamma_bar * gamma_bar + lanczos.beta() * lanczos.beta());
  const QuarnFloat cos = gamma_bar / gamma;
  const QuarnFloat sin = lanczos.beta() / gamma;
  const QuarnFloat delta = cos * delta_bar + sin * lanczos.alpha();
  gamma_bar = sin * delta_bar - cos * lanczos.alpha();
  delta_bar = -cos * lanczos.next_beta();
  const QuarnFloat zeta = right / gamma;
  right = next_right - delta * zeta;
  next_right = -sin * lanczos.next_beta() * zeta;

  if (!solver.advance_iterate(zeta * cos, kDirection) || !solver.advance_iterate(zeta * sin, lanczos.current())) {
    return false;
  }
  solver.add(-zeta * cos, kDirectionImage, kLqResidual);
  solver.add(-zeta * sin, kLanczosImage, kLqResidual);
  const auto turn = [&](Integer source, Integer target) {
    const auto v = solver.vector(source);
    const auto w = solver.vector(target);
    for (Integer i = 1; i <= solver.n(); ++i) {
      w(i) = times(sin, w(i)) - times(cos, v(i));
    }
  };
  turn(lanczos.current(), kDirection);
  turn(kLanczosImage, kDirectionImage);
  return true;
}

/// The step to the point of conjugate gradients, unless x is better.
template <class T>
Outcome settle_point(Solver<T>& solver, const Lanczos<T>& /*lanczos*/) {
  const SolverState<T>& state = solver.state();
  if (solver.euclidean(kResidual) <= solver.euclidean(kLqResidual)) {
    const QuarnFloat zeta = state.real(kRight) / state.real(kGammaBar);
    solver.add(zeta * solver.unit(), kDirection, kPoint);
  } else {
    solver.copy(kLqResidual, kResidual);
  }
  return Outcome::iterated;
}

/// The point of conjugate gradients, or x where that is better.
template <class T>
Outcome choose_point(Solver<T>& solver, const Lanczos<T>& lanczos) {
  const SolverState<T>& state = solver.state();
  const QuarnFloat& gamma_bar = state.real(kGammaBar);
  solver.copy(kIterate, kPoint);
  solver.copy(kLqResidual, kResidual);
  if (solver.vanishes(gamma_bar, fabs(lanczos.alpha()) + lanczos.beta())) {
    return Outcome::iterated;
  }
  const QuarnFloat zeta = state.real(kRight) / gamma_bar;
  solver.add(-zeta, kDirectionImage, kResidual);
  const auto wants = [&solver] {
    solver.want_euclidean(kResidual);
    solver.want_euclidean(kLqResidual);
  };
  return solver.must_ask(kLanczosHavePoint, wants) ? Outcome::waiting : settle_point(solver, lanczos);
}

template <class T>
Outcome iterate(Solver<T>& solver, const Lanczos<T>& lanczos) {
  const SolverState<T>& state = solver.state();
  lanczos.estimate();
  if (lanczos.is_first()) {
    solver.copy(lanczos.current(), kDirection);
    solver.copy(kLanczosImage, kDirectionImage);
    state.real(kGammaBar) = lanczos.alpha();
    state.real(kDeltaBar) = lanczos.next_beta();
    state.real(kRight) = lanczos.beta();
    state.real(kNextRight) = 0;
  } else if (!rotate(solver, lanczos)) {
    return Outcome::broken;
  }
  return choose_point(solver, lanczos);
}

template <class T>
void begin(const Solver<T>& solver, const Lanczos<T>& /*lanczos*/) {
  solver.copy(kResidual, kLqResidual);
}

template <class T>
Outcome resume_symmlq(Solver<T>& solver) {
  if (solver.state().step == kLanczosStart) {
    solver.copy(kIterate, kPoint);  // where the process cannot begin, that is the iterate too
  }
  return resume_lanczos<T>(solver, begin<T>, iterate<T>, settle_point<T>);
}

template <class T>
Bounds symmlq_bounds(const Solver<T>& solver) {
  return {solver.norm(kResidual), solver.norm(kPoint)};
}

template <class T>
Integer symmlq_iterate(Solver<T>& /*solver*/) {
  return kPoint;
}

template <class T>
void want_bounds(Solver<T>& solver) {
  solver.want_norm(kResidual);
  solver.want_norm(kPoint);
}

template <class T>
constexpr SolverSteps<T> kSteps = {resume_symmlq<T>, symmlq_bounds<T>, kept_residual<T>, symmlq_iterate<T>,
                                   want_bounds<T>};

}  // namespace

const SolverMethod kSymmlq = {7,
                              "SYMMLQ",
                              1,
                              false,
                              false,
                              kLanczosLastStep,
                              [](Integer) { return kEnd - kMethodSlot; },
                              ritz_constants,
                              kLanczosBesidePreconditioner,
                              kSteps<QuarnFloat>,
                              kSteps<Complex>};

}  // namespace tesk
