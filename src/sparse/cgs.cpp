// CGS: P. Sonneveld, CGS, a fast Lanczos-type solver for nonsymmetric linear systems, SIAM J. Sci. Stat. Comput. 10
// (1989). Two products an iteration.
#include "src/sparse/solver.h"

namespace tesk {
namespace {

enum CgsSlot : Integer { kShadow = kMethodSlot, kU, kP, kQ, kImage, kEnd };
enum CgsScalar : Integer { kRho };
enum CgsStep : Integer { kStart, kIteration, kHaveDirection, kHaveUpdate, kHaveRho, kHaveSigma };

/// u = r + beta q, p = u + beta (q + beta p)
template <class T>
void next_directions(const Solver<T>& solver, const T& beta) {
  const auto r = solver.vector(kResidual);
  const auto u = solver.vector(kU);
  const auto p = solver.vector(kP);
  const auto q = solver.vector(kQ);
  for (Integer i = 1; i <= solver.n(); ++i) {
    u(i) = r(i) + beta * q(i);
    p(i) = u(i) + beta * (q(i) + beta * p(i));
  }
}

template <class T>
void want_rho(const Solver<T>& solver) {
  solver.want_beside(kShadow, kResidual);
}

template <class T>
Outcome resume_cgs(Solver<T>& solver) {
  T& rho = solver.state().scalar(kRho);
  switch (solver.state().step) {
    case kStart:
      solver.choose_shadow(kShadow);
      solver.clear(kP);
      solver.clear(kQ);
      rho = T(1.0);
      [[fallthrough]];
    case kIteration:
      if (solver.must_ask(kHaveRho, [&solver] { want_rho(solver); })) {
        return Outcome::waiting;
      }
      [[fallthrough]];
    case kHaveRho: {
      const T former_rho = rho;
      rho = solver.dot(kShadow, kResidual);
      if (solver.vanishes(rho, solver.euclidean(kShadow) * solver.euclidean(kResidual))) {
        return Outcome::broken;
      }
      next_directions(solver, quotient(rho, former_rho));
      return solver.apply(kP, kImage, kHaveDirection);
    }
    case kHaveDirection:
      if (solver.must_ask(kHaveSigma, [&solver] { solver.want_beside(kShadow, kImage); })) {
        return Outcome::waiting;
      }
      [[fallthrough]];
    case kHaveSigma: {
      const T sigma = solver.dot(kShadow, kImage);
      if (solver.vanishes(sigma, solver.euclidean(kShadow) * solver.euclidean(kImage))) {
        return Outcome::broken;
      }
      const T alpha = quotient(rho, sigma);
      const auto u = solver.vector(kU);
      const auto q = solver.vector(kQ);
      const auto image = solver.vector(kImage);
      for (Integer i = 1; i <= solver.n(); ++i) {
        q(i) = u(i) - alpha * image(i);
        u(i) = alpha * (u(i) + q(i));
      }
      return solver.apply(kU, kImage, kHaveUpdate);
    }
    default:
      if (!solver.advance_iterate(T(1.0), kU)) {
        return Outcome::broken;
      }
      solver.add(T(-1.0), kImage, kResidual);
      solver.state().step = kIteration;
      return Outcome::iterated;
  }
}

template <class T>
void want_next(Solver<T>& solver) {
  want_kept_bounds(solver);
  want_rho(solver);
}

template <class T>
constexpr SolverSteps<T> kSteps = {resume_cgs<T>, kept_bounds<T>, kept_residual<T>, kept_iterate<T>, want_next<T>};

}  // namespace

const SolverMethod kCgs = {2,
                           "CGS",
                           1,
                           false,
                           true,
                           kHaveSigma,
                           [](Integer) { return kEnd - kMethodSlot; },
                           [](Integer) { return Integer(0); },
                           0,
                           kSteps<QuarnFloat>,
                           kSteps<Complex>};

}  // namespace tesk
