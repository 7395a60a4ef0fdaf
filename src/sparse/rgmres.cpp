// RGMRES: Y. Saad, M. H. Schultz, GMRES: a generalized minimal residual algorithm for solving nonsymmetric linear
// systems, SIAM J. Sci. Stat. Comput. 7 (1986), restarted every M iterations. The Arnoldi basis is built by the
// modified Gram-Schmidt process, the least-squares problem solved by plane rotations. One product an iteration.
#include <algorithm>
#include <array>

#include "src/kernels/level2.h"
#include "src/sparse/solver.h"
#include "tesk2mp/kernels.h"

namespace tesk {
namespace {

constexpr Integer kLargestRestart = 50;

enum RgmresStep : Integer { kStart, kHaveImage, kNext };
constexpr Integer kTrial = kMethodSlot;
/// v_j of the basis, j = 1 ... m + 1
constexpr Integer basis(Integer j) { return kMethodSlot + j; }

/// The small problem min ||beta e_1 - H y||: R of the QR factorisation of H, its rotations and the right-hand side.
struct SmallProblem {
  explicit SmallProblem(const Solver& solver)
      : m(solver.state().m),
        h(solver.constants(), m + 1),
        c(solver.constants() + (m + 1) * m, 1),
        s(&c(1) + m, 1),
        g(&s(1) + m, 1) {}
  static Integer length(Integer m) { return (m + 1) * m + 3 * m + 1; }

  Integer m;
  OneBasedMatrix<QuarnFloat> h;
  SolverVector c, s, g;
};

/// (a, b) := (c a + s b, c b - s a)
void rotate(const QuarnFloat& c, const QuarnFloat& s, QuarnFloat& a, QuarnFloat& b) {
  QuarnFloat rotated = c * a + s * b;
  b = c * b - s * a;
  a = std::move(rotated);
}

/// Column j of H from v_(j+1) = A v_j: makes it orthogonal to the basis and solves the small problem with it.
Outcome extend(Solver& solver) {
  const Integer j = ++solver.state().inner;
  const SmallProblem small(solver);
  const auto column = small.h.column(j);
  const QuarnFloat size = solver.euclidean(basis(j + 1));
  for (Integer i = 1; i <= j; ++i) {
    column(i) = solver.dot(basis(i), basis(j + 1));
    solver.add(-column(i), basis(i), basis(j + 1));
  }
  column(j + 1) = solver.euclidean(basis(j + 1));
  if (solver.vanishes(column(j + 1), size)) {
    column(j + 1) = 0;  // the basis spans an invariant space: the solution is in it, unless the matrix is singular
  } else {
    scale(solver.n(), 1 / column(j + 1), solver.vector(basis(j + 1)));
  }

  for (Integer i = 1; i < j; ++i) {
    rotate(small.c(i), small.s(i), column(i), column(i + 1));
  }
  QuarnMP_f06aaf_(&column(j), &column(j + 1), &small.c(j), &small.s(j));
  if (solver.vanishes(column(j), size)) {
    --solver.state().inner;
    return Outcome::broken;
  }
  small.g(j + 1) = 0;
  rotate(small.c(j), small.s(j), small.g(j), small.g(j + 1));
  const bool last = j == small.m || small.g(j + 1) == 0;
  solver.state().step = last ? kStart : kNext;
  return Outcome::iterated;
}

Outcome resume_rgmres(Solver& solver) {
  SolverState& state = solver.state();
  switch (state.step) {
    case kStart: {
      const SmallProblem small(solver);
      small.g(1) = solver.euclidean(kResidual);
      solver.copy(kResidual, basis(1));
      scale(solver.n(), 1 / small.g(1), solver.vector(basis(1)));
      state.inner = 0;
      return solver.apply(basis(1), basis(2), kHaveImage);
    }
    case kNext:
      return solver.apply(basis(state.inner + 1), basis(state.inner + 2), kHaveImage);
    default:
      return extend(solver);
  }
}

/// y of the small problem, as far as it has been built.
std::array<QuarnFloat, kLargestRestart> coefficients(const Solver& solver) {
  const SmallProblem small(solver);
  std::array<QuarnFloat, kLargestRestart> y;
  const Integer j = solver.state().inner;
  copy(j, small.g, SolverVector(y.data(), 1));
  solve_triangular(Triangle::upper, Op::none, Diagonal::general, j, small.h, SolverVector(y.data(), 1));
  return y;
}

Bounds rgmres_bounds(const Solver& solver) {
  auto y = coefficients(solver);
  const QuarnFloat correction = euclidean_norm(solver.state().inner, SolverVector(y.data(), 1));
  return {solver.least_norm(fabs(SmallProblem(solver).g(solver.state().inner + 1))),
          solver.norm(kIterate) + solver.largest_norm(correction) * solver.unit()};
}

QuarnFloat rgmres_residual(const Solver& solver) { return fabs(SmallProblem(solver).g(solver.state().inner + 1)); }

Integer rgmres_iterate(Solver& solver) {
  solver.copy(kIterate, kTrial);
  const auto y = coefficients(solver);
  for (Integer j = 1; j <= solver.state().inner; ++j) {
    solver.add(y[std::size_t(j) - 1] * solver.unit(), basis(j), kTrial);
  }
  return isfinite(solver.norm(kTrial)) ? kTrial : kIterate;
}

}  // namespace

const SolverMethod kRgmres = {1,
                              "RGMRES",
                              kLargestRestart,
                              true,
                              false,
                              kNext,
                              [](Integer m) { return m + 2; },
                              SmallProblem::length,
                              0,
                              resume_rgmres,
                              rgmres_bounds,
                              rgmres_residual,
                              rgmres_iterate};

}  // namespace tesk
