// RGMRES: Y. Saad, M. H. Schultz, GMRES: a generalized minimal residual algorithm for solving nonsymmetric linear
// systems, SIAM J. Sci. Stat. Comput. 7 (1986), restarted every M iterations. The Arnoldi basis is built by the
// modified Gram-Schmidt process, the least-squares problem solved by plane rotations. One product an iteration.
//
// FGMRES: Y. Saad, A flexible inner-outer preconditioned GMRES algorithm, SIAM J. Sci. Comput. 14 (1993). The
// preconditioner is applied from the right, and may be another one in each iteration: beside every v_j of the basis
// there is z_j, what it has made of v_j, and the iterate goes along the z_j. Without a preconditioner z_j is v_j.
#include <algorithm>
#include <array>

#include "src/kernels/level2.h"
#include "src/sparse/solver.h"
#include "tesk2mp/kernels.h"

namespace tesk {
namespace {

constexpr Integer kLargestRestart = 50;

enum RgmresStep : Integer { kStart, kHaveImage, kNext, kHaveSize, kHaveProjection, kHaveCorrection, kHaveDirection };
// Where the caller forms sums, the norm of a column of H.
enum RgmresScalar : Integer { kColumnSize };
constexpr Integer kTrial = kMethodSlot;
/// v_j of the basis, j = 1 ... m + 1
constexpr Integer basis(Integer j) { return kMethodSlot + j; }

/// Are there z_j beside the v_j?
template <class T>
bool has_directions(const Solver<T>& solver) {
  return solver.state().rules().flexible && solver.preconditioned();
}

/// z_j, along which the iterate goes.
template <class T>
Integer direction(const Solver<T>& solver, Integer j) {
  return has_directions(solver) ? basis(solver.state().m + 1 + j) : basis(j);
}

/// The small problem min ||beta e_1 - H y||: R of the QR factorisation of H, its rotations and the right-hand side.
template <class T>
struct SmallProblem {
  explicit SmallProblem(const Solver<T>& solver)
      : m(solver.state().m),
        h(solver.constants(), m + 1),
        c(solver.constants() + (m + 1) * m, 1),
        s(&c(1) + m, 1),
        g(&s(1) + m, 1),
        sizes(&g(1) + m + 1, 1) {}
  Integer m;
  OneBasedMatrix<T> h;
  SolverVector<T> c, s, g;
  SolverVector<T> sizes;  // of the z_j, where a flexible method has them
};

constexpr Integer small_length(Integer m) { return (m + 1) * m + 3 * m + 1; }
constexpr Integer small_length_with_sizes(Integer m) { return small_length(m) + m; }

/// (a, b) := (c a + s b, c b - conj(s) a), c real
template <class T>
void rotate(const T& c, const T& s, T& a, T& b) {
  T rotated = c * a + s * b;
  b = c * b - conjugate(s) * a;
  a = std::move(rotated);
}

/// The rotation that takes b to 0; a becomes what a becomes.
void make_rotation(QuarnFloat& a, QuarnFloat& b, QuarnFloat& c, QuarnFloat& s) { QuarnMP_f06aaf_(&a, &b, &c, &s); }
void make_rotation(Complex& a, Complex& b, Complex& c, Complex& s) {
  const QuarnFloat size = size_of(a);
  const QuarnFloat other = size_of(b);
  const QuarnFloat norm = size_of(Complex(size, other));
  const Complex direction = size > 0 ? Complex(a.re / size, a.im / size) : Complex(1.0);
  c = norm > 0 ? Complex(size / norm) : Complex(1.0);
  s = norm > 0 ? times(1 / norm, direction * conjugate(b)) : Complex();
  a = times(norm, direction);
  b = Complex();
}

/// Column j = inner + 1 of H, whose vector before it was made orthogonal to the basis was of that size and is of length
/// `rest` now: the small problem with it.
template <class T>
Outcome extend(Solver<T>& solver, const QuarnFloat& size, const QuarnFloat& rest) {
  const Integer j = ++solver.state().inner;
  const SmallProblem<T> small(solver);
  const auto column = small.h.column(j);
  column(j + 1) = T(rest);
  if (solver.vanishes(column(j + 1), size)) {
    column(j + 1) = T(0.0);  // the basis spans an invariant space: the solution is in it, unless the matrix is singular
  } else {
    scale(solver.n(), 1 / rest, solver.vector(basis(j + 1)));
  }

  for (Integer i = 1; i < j; ++i) {
    rotate(small.c(i), small.s(i), column(i), column(i + 1));
  }
  make_rotation(column(j), column(j + 1), small.c(j), small.s(j));
  if (solver.vanishes(column(j), size)) {
    --solver.state().inner;
    return Outcome::broken;
  }
  small.g(j + 1) = T(0.0);
  rotate(small.c(j), small.s(j), small.g(j), small.g(j + 1));
  const bool last = j == small.m || is_zero(small.g(j + 1));
  solver.state().step = last ? kStart : kNext;
  return Outcome::iterated;
}

/// Makes v_(j+1) = A v_j orthogonal to the basis; returns its length before. Where the inner products are formed one
/// after the other this is the modified Gram-Schmidt process, where the caller has formed them before the classical
/// one.
template <class T>
QuarnFloat make_orthogonal(const Solver<T>& solver) {
  const Integer j = solver.state().inner + 1;
  const SmallProblem<T> small(solver);
  const auto column = small.h.column(j);
  if (has_directions(solver)) {
    small.sizes(j) = T(solver.euclidean(direction(solver, j)));
  }
  QuarnFloat size = solver.euclidean(basis(j + 1));
  for (Integer i = 1; i <= j; ++i) {
    column(i) = solver.dot(basis(i), basis(j + 1));
    solver.add(-column(i), basis(i), basis(j + 1));
  }
  return size;
}

template <class T>
Outcome extend(Solver<T>& solver) {
  const QuarnFloat size = make_orthogonal(solver);
  return extend(solver, size, solver.euclidean(basis(solver.state().inner + 2)));
}

// The classical process is done twice: two requests for any number of vectors.

template <class T>
void want_projection(const Solver<T>& solver) {
  const Integer j = solver.state().inner + 1;
  for (Integer i = 1; i <= j; ++i) {
    solver.want_dot(basis(i), basis(j + 1));
  }
  solver.want_euclidean(basis(j + 1));
}

template <class T>
Outcome project(Solver<T>& solver) {
  solver.state().real(kColumnSize) = make_orthogonal(solver);
  solver.must_ask(kHaveCorrection, [&solver] {
    want_projection(solver);
    solver.want_norm(kIterate);
  });
  return Outcome::waiting;
}

template <class T>
Outcome correct(Solver<T>& solver) {
  const Integer j = solver.state().inner + 1;
  const auto column = SmallProblem<T>(solver).h.column(j);
  const QuarnFloat before = solver.euclidean(basis(j + 1));
  QuarnFloat left = 1;  // of the squared norm, the part that is orthogonal to the basis
  for (Integer i = 1; i <= j; ++i) {
    const T correction = solver.dot(basis(i), basis(j + 1));
    solver.add(-correction, basis(i), basis(j + 1));
    column(i) += correction;
    if (before > 0) {
      const QuarnFloat part = size_of(correction) / before;
      left -= part * part;
    }
  }
  return extend(solver, solver.state().real(kColumnSize), left < 0 ? QuarnFloat() : before * sqrt(left));
}

/// v_(j+1) := A v_j, or A z_j, of the next j.
template <class T>
Outcome extend_space(Solver<T>& solver) {
  const Integer j = solver.state().inner + 1;
  return has_directions(solver) ? solver.precondition(basis(j), direction(solver, j), kHaveDirection)
                                : solver.apply(basis(j), basis(j + 1), kHaveImage);
}

template <class T>
Outcome resume_rgmres(Solver<T>& solver) {
  SolverState<T>& state = solver.state();
  switch (state.step) {
    case kStart:
      if (solver.must_ask(kHaveSize, [&solver] { solver.want_euclidean(kResidual); })) {
        return Outcome::waiting;
      }
      [[fallthrough]];
    case kHaveSize: {
      const SmallProblem<T> small(solver);
      const QuarnFloat size = solver.euclidean(kResidual);
      small.g(1) = T(size);
      solver.copy(kResidual, basis(1));
      scale(solver.n(), 1 / size, solver.vector(basis(1)));
      state.inner = 0;
      return extend_space(solver);
    }
    case kNext:
      return extend_space(solver);
    case kHaveDirection:
      return solver.apply(direction(solver, state.inner + 1), basis(state.inner + 2), kHaveImage);
    case kHaveImage:
      return solver.must_ask(kHaveProjection,
                             [&solver] {
                               want_projection(solver);
                               if (has_directions(solver)) {
                                 solver.want_euclidean(direction(solver, solver.state().inner + 1));
                               }
                             })
                 ? Outcome::waiting
                 : extend(solver);
    case kHaveProjection:
      return project(solver);
    default:
      return correct(solver);
  }
}

/// y of the small problem, as far as it has been built.
template <class T>
std::array<T, kLargestOrder> coefficients(const Solver<T>& solver) {
  const SmallProblem<T> small(solver);
  std::array<T, kLargestOrder> y;
  const Integer j = solver.state().inner;
  copy(j, small.g, SolverVector<T>(y.data(), 1));
  solve_triangular(Triangle::upper, Op::none, Diagonal::general, j, small.h, SolverVector<T>(y.data(), 1));
  return y;
}

template <class T>
Bounds rgmres_bounds(const Solver<T>& solver) {
  auto y = coefficients(solver);
  const Integer j = solver.state().inner;
  const SmallProblem<T> small(solver);
  QuarnFloat correction;  // its Euclidean norm, or a bound for that
  if (has_directions(solver)) {
    for (Integer i = 1; i <= j; ++i) {
      correction += size_of(y[std::size_t(i) - 1]) * real_part(small.sizes(i));
    }
  } else {
    correction = euclidean_norm(j, SolverVector<T>(y.data(), 1));
  }
  return {solver.least_norm(size_of(small.g(j + 1))),
          solver.norm(kIterate) + solver.largest_norm(correction) * solver.unit()};
}

template <class T>
QuarnFloat rgmres_residual(const Solver<T>& solver) {
  return size_of(SmallProblem<T>(solver).g(solver.state().inner + 1));
}

template <class T>
Integer rgmres_iterate(Solver<T>& solver) {
  solver.copy(kIterate, kTrial);
  const auto y = coefficients(solver);
  for (Integer j = 1; j <= solver.state().inner; ++j) {
    solver.add(times(solver.unit(), y[std::size_t(j) - 1]), direction(solver, j), kTrial);
  }
  return solver.distributed() || isfinite(solver.norm(kTrial)) ? kTrial : kIterate;
}

template <class T>
constexpr SolverSteps<T> kSteps = {resume_rgmres<T>, rgmres_bounds<T>, rgmres_residual<T>, rgmres_iterate<T>, nullptr};

constexpr Integer basis_and_trial(Integer m) { return m + 2; }

}  // namespace

const SolverMethod kRgmres = {1,     "RGMRES",           kLargestRestart, true,
                              false, kHaveCorrection,    basis_and_trial, small_length,
                              0,     kSteps<QuarnFloat>, kSteps<Complex>};

const SolverMethod kFgmres = {8,     "FGMRES",           kLargestOrder,   true,
                              false, kHaveDirection,     basis_and_trial, small_length_with_sizes,
                              0,     kSteps<QuarnFloat>, kSteps<Complex>, true};

}  // namespace tesk
