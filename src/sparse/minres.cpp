// MINRES: C. C. Paige, M. A. Saunders, Solution of sparse indefinite systems of linear equations, SIAM J. Numer. Anal.
// 12 (1975). The tridiagonal matrix of the Lanczos process is made triangular by rotations; the iterate goes along the
// directions w that are the Lanczos vectors times the inverse of the triangle, and its residual is
// r_k = s_k^2 r_(k-1) - phibar_k c_k v_(k+1) (S.-C. T. Choi, Iterative methods for singular linear equations and
// least-squares problems, thesis, Stanford 2006).
#include "src/sparse/lanczos.h"

namespace tesk {
namespace {

enum MinresSlot : Integer { kFirstW = kLanczosEnd, kSecondW, kEnd };
// Of the rotation before; delta-bar and epsilon are what it has left of the next column.
enum MinresScalar : Integer { kCos = kLanczosEndScalar, kSin, kDeltaBar, kEpsilon, kPhiBar };

/// w_k = (v_k - second w_(k-2) - first w_(k-1)) / gamma, in place of w_(k-2).
template <class T>
void next_direction(const Solver<T>& solver, const Lanczos<T>& lanczos, const QuarnFloat& second,
                    const QuarnFloat& first, const QuarnFloat& gamma) {
  const auto v = solver.vector(lanczos.current());
  const auto w = solver.vector(kFirstW + lanczos.parity());
  const auto former = solver.vector(kSecondW - lanczos.parity());
  const QuarnFloat reciprocal = 1 / gamma;
  for (Integer i = 1; i <= solver.n(); ++i) {
    w(i) = times(reciprocal, v(i) - times(second, w(i)) - times(first, former(i)));
  }
}

template <class T>
Outcome iterate(Solver<T>& solver, const Lanczos<T>& lanczos) {
  const SolverState<T>& state = solver.state();
  lanczos.estimate();
  QuarnFloat& cos = state.real(kCos);
  QuarnFloat& sin = state.real(kSin);
  const QuarnFloat second = state.real(kEpsilon);
  const QuarnFloat& delta_bar = state.real(kDeltaBar);
  const QuarnFloat delta = cos * delta_bar + sin * lanczos.alpha();
  const QuarnFloat gamma_bar = sin * delta_bar - cos * lanczos.alpha();
  const QuarnFloat gamma = sqrt(gamma_bar * gamma_bar + lanczos.next_beta() * lanczos.next_beta());
  if (solver.vanishes(gamma, fabs(lanczos.alpha()) + lanczos.beta())) {
    return Outcome::broken;
  }
  state.real(kEpsilon) = sin * lanczos.next_beta();
  state.real(kDeltaBar) = -cos * lanczos.next_beta();
  cos = gamma_bar / gamma;
  sin = lanczos.next_beta() / gamma;
  const QuarnFloat phi = cos * state.real(kPhiBar);
  state.real(kPhiBar) *= sin;

  next_direction(solver, lanczos, second, delta, gamma);
  if (!solver.advance_iterate(phi, kFirstW + lanczos.parity())) {
    return Outcome::broken;
  }
  scale(solver.n(), sin * sin, solver.vector(kResidual));
  solver.add(-state.real(kPhiBar) * cos, lanczos.other(), kResidual);
  return Outcome::iterated;
}

template <class T>
void begin(const Solver<T>& solver, const Lanczos<T>& lanczos) {
  const SolverState<T>& state = solver.state();
  solver.clear(kFirstW);
  solver.clear(kSecondW);
  state.real(kCos) = -1;
  state.real(kSin) = 0;
  state.real(kDeltaBar) = 0;
  state.real(kEpsilon) = 0;
  state.real(kPhiBar) = lanczos.beta();
}

template <class T>
Outcome resume_minres(Solver<T>& solver) {
  return resume_lanczos<T>(solver, begin<T>, iterate<T>, iterate<T>);
}

template <class T>
constexpr SolverSteps<T> kSteps = {resume_minres<T>, kept_bounds<T>, kept_residual<T>, kept_iterate<T>,
                                   want_kept_bounds<T>};

}  // namespace

const SolverMethod kMinres = {6,
                              "MINRES",
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
