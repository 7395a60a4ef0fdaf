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
void next_direction(const Solver& solver, const Lanczos& lanczos, const QuarnFloat& second, const QuarnFloat& first,
                    const QuarnFloat& gamma) {
  const auto v = solver.vector(lanczos.current());
  const auto w = solver.vector(kFirstW + lanczos.parity());
  const auto former = solver.vector(kSecondW - lanczos.parity());
  const QuarnFloat reciprocal = 1 / gamma;
  for (Integer i = 1; i <= solver.n(); ++i) {
    w(i) = (v(i) - second * w(i) - first * former(i)) * reciprocal;
  }
}

Outcome iterate(const Solver& solver, const Lanczos& lanczos) {
  const SolverState& state = solver.state();
  QuarnFloat& cos = state.scalar(kCos);
  QuarnFloat& sin = state.scalar(kSin);
  const QuarnFloat second = state.scalar(kEpsilon);
  const QuarnFloat& delta_bar = state.scalar(kDeltaBar);
  const QuarnFloat delta = cos * delta_bar + sin * lanczos.alpha();
  const QuarnFloat gamma_bar = sin * delta_bar - cos * lanczos.alpha();
  const QuarnFloat gamma = sqrt(gamma_bar * gamma_bar + lanczos.next_beta() * lanczos.next_beta());
  if (solver.vanishes(gamma, fabs(lanczos.alpha()) + lanczos.beta())) {
    return Outcome::broken;
  }
  state.scalar(kEpsilon) = sin * lanczos.next_beta();
  state.scalar(kDeltaBar) = -cos * lanczos.next_beta();
  cos = gamma_bar / gamma;
  sin = lanczos.next_beta() / gamma;
  const QuarnFloat phi = cos * state.scalar(kPhiBar);
  state.scalar(kPhiBar) *= sin;

  next_direction(solver, lanczos, second, delta, gamma);
  if (!solver.advance_iterate(phi, kFirstW + lanczos.parity())) {
    return Outcome::broken;
  }
  scale(solver.n(), sin * sin, solver.vector(kResidual));
  solver.add(-state.scalar(kPhiBar) * cos, lanczos.other(), kResidual);
  return Outcome::iterated;
}

void begin(const Solver& solver, const Lanczos& lanczos) {
  const SolverState& state = solver.state();
  solver.clear(kFirstW);
  solver.clear(kSecondW);
  state.scalar(kCos) = -1;
  state.scalar(kSin) = 0;
  state.scalar(kDeltaBar) = 0;
  state.scalar(kEpsilon) = 0;
  state.scalar(kPhiBar) = lanczos.beta();
}

Outcome resume_minres(Solver& solver) { return resume_lanczos(solver, begin, iterate); }

}  // namespace

const SolverMethod kMinres = {6,
                              "MINRES",
                              1,
                              false,
                              false,
                              kLanczosHaveImage,
                              [](Integer) { return kEnd - kMethodSlot; },
                              [](Integer) { return Integer(0); },
                              kLanczosBesidePreconditioner,
                              resume_minres,
                              kept_bounds,
                              kept_residual,
                              kept_iterate};

}  // namespace tesk
