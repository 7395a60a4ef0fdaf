// BiCGSTAB(l): G. L. G. Sleijpen, D. R. Fokkema, BiCGstab(l) for linear equations involving unsymmetric matrices with
// complex spectrum, Electron. Trans. Numer. Anal. 1 (1993). l is M; with l = 1 it is H. A. van der Vorst's Bi-CGSTAB.
// An iteration is l BiCG steps and one minimisation over l residuals: 2 l products. Where the last of these is of no
// use for the minimisation (of any odd number with a skew-symmetric matrix), it gets a coefficient all the same, as
// BiCG needs it: G. L. G. Sleijpen, H. A. van der Vorst, Maintaining convergence properties of BiCGstab methods in
// finite precision arithmetic, Numer. Algorithms 10 (1995).
#include <array>

#include "src/frame/constants.h"
#include "src/sparse/solver.h"

namespace tesk {
namespace {

constexpr Integer kLargestL = 10;

// Units of the last place that roundings are taken to make of an inner product in an iteration.
constexpr int kRoundings = 100;

// r_0 is the solver's residual; r_1 ... r_l, u_0 ... u_l follow the shadow residual.
enum BicgstabScalar : Integer { kRho, kAlpha, kOmega, kFirstSize };
enum BicgstabStep : Integer {
  kStart,
  kIteration,
  kHaveImageOfU,
  kHaveImageOfR,
  kHaveRhoSums,
  kHaveGammaSums,
  kHaveColumnSums
};
constexpr Integer kShadow = kMethodSlot;
Integer r(Integer i) { return i == 0 ? Integer(kResidual) : kShadow + i; }
template <class T>
Integer u(const Solver<T>& solver, Integer i) {
  return kShadow + 1 + solver.state().m + i;
}

/// The next BiCG direction, j = inner: beta, u_i = r_i - beta u_i, A u_j.
template <class T>
Outcome make_direction(Solver<T>& solver) {
  SolverState<T>& state = solver.state();
  const Integer j = state.inner;
  T& rho = state.scalar(kRho);
  const T next_rho = solver.dot(kShadow, r(j));
  const QuarnFloat scale = solver.euclidean(kShadow) * solver.euclidean(r(j));
  if (!solver.is_classic()) {
    // A product with the shadow residual has the roundings of the residual that the iteration began with. With a
    // preconditioner that is nearly exact one step leaves so little of that residual that the other steps of the
    // iteration would go along roundings, and lose what has been gained.
    const QuarnFloat size = solver.euclidean(r(0));
    if (j == 0) {
      state.real(kFirstSize) = size;
    } else if (size_of(next_rho) * size <= kRoundings * epsilon() * state.real(kFirstSize) * scale) {
      state.inner = 0;
      state.step = kStart;
      return Outcome::iterated;
    }
  }
  if (solver.vanishes(next_rho, scale)) {
    return Outcome::broken;
  }
  const T beta = quotient(state.scalar(kAlpha) * next_rho, rho);
  rho = next_rho;
  for (Integer i = 0; i <= j; ++i) {
    const auto direction = solver.vector(u(solver, i));
    const auto residual = solver.vector(r(i));
    for (Integer k = 1; k <= solver.n(); ++k) {
      direction(k) = residual(k) - beta * direction(k);
    }
  }
  return solver.apply(u(solver, j), u(solver, j + 1), kHaveImageOfU);
}

template <class T>
Outcome next_direction(Solver<T>& solver) {
  const auto wants = [&solver] {
    solver.want_beside(kShadow, r(solver.state().inner));
    solver.want_euclidean(r(0));
  };
  return solver.must_ask(kHaveRhoSums, wants) ? Outcome::waiting : make_direction(solver);
}

/// The step along u_0, then A r_j.
template <class T>
Outcome step_along_direction(Solver<T>& solver) {
  const SolverState<T>& state = solver.state();
  const Integer j = state.inner;
  const T gamma = solver.dot(kShadow, u(solver, j + 1));
  if (solver.vanishes(gamma, solver.euclidean(kShadow) * solver.euclidean(u(solver, j + 1)))) {
    return Outcome::broken;
  }
  T& alpha = state.scalar(kAlpha);
  alpha = quotient(state.scalar(kRho), gamma);
  for (Integer i = 0; i <= j; ++i) {
    solver.add(-alpha, u(solver, i + 1), r(i));
  }
  if (!solver.advance_iterate(alpha, u(solver, 0))) {
    return Outcome::broken;
  }
  return solver.apply(r(j), r(j + 1), kHaveImageOfR);
}

/// What the modified Gram-Schmidt process leaves of r_1 ... r_l: r_j = sum of tau_ij r_i, squares sigma, r_0 along
/// them.
template <class T>
struct Columns {
  std::array<std::array<T, kLargestL + 1>, kLargestL + 1> tau;
  std::array<T, kLargestL + 1> gamma;
  std::array<QuarnFloat, kLargestL + 1> sigma;
};

/// Those of r_j once it is orthogonal to the ones before.
template <class T>
void take_column(const Solver<T>& solver, Integer j, Columns<T>& columns) {
  columns.sigma[j] = real_part(solver.dot(r(j), r(j)));
  columns.gamma[j] = solver.dot(r(j), r(0)) / columns.sigma[j];
}

/// False when r_1 ... r_l are dependent.
template <class T>
bool make_orthogonal(const Solver<T>& solver, Columns<T>& columns) {
  for (Integer j = 1; j <= solver.state().m; ++j) {
    const QuarnFloat size = solver.euclidean(r(j));
    for (Integer i = 1; i < j; ++i) {
      columns.tau[i][j] = solver.dot(r(i), r(j)) / columns.sigma[i];
      solver.add(-columns.tau[i][j], r(i), r(j));
    }
    if (solver.vanishes(solver.euclidean(r(j)), size)) {
      return false;
    }
    take_column(solver, j, columns);
  }
  return true;
}

/// r_0 made as small as r_1 ... r_l can make it. Names are those of the paper.
template <class T>
Outcome minimise_residual(Solver<T>& solver, const Columns<T>& columns) {
  const Integer l = solver.state().m;
  const auto& tau = columns.tau;
  const auto& sigma = columns.sigma;
  std::array<T, kLargestL + 1> gamma, gamma1 = columns.gamma, gamma2;

  const QuarnFloat ratio = solver.euclidean(r(0)) / sqrt(sigma[l]);
  // A smaller one would cost the recurrence half its digits.
  if (size_of(gamma1[l]) <= sqrt(epsilon()) * ratio) {
    gamma1[l] = T(QuarnFloat(7) / 10 * ratio);
  }

  gamma[l] = gamma1[l];
  for (Integer j = l - 1; j >= 1; --j) {
    gamma[j] = gamma1[j];
    for (Integer i = j + 1; i <= l; ++i) {
      gamma[j] -= tau[j][i] * gamma[i];
    }
  }
  for (Integer j = 1; j < l; ++j) {
    gamma2[j] = gamma[j + 1];
    for (Integer i = j + 1; i < l; ++i) {
      gamma2[j] += tau[j][i] * gamma[i + 1];
    }
  }

  bool finite = solver.advance_iterate(gamma[1], r(0));
  solver.add(-gamma1[l], r(l), r(0));
  solver.add(-gamma[l], u(solver, l), u(solver, 0));
  for (Integer j = 1; j < l; ++j) {
    solver.add(-gamma[j], u(solver, j), u(solver, 0));
    finite = finite && solver.advance_iterate(gamma2[j], r(j));
    solver.add(-gamma1[j], r(j), r(0));
  }
  solver.state().scalar(kOmega) = gamma[l];
  return finite ? Outcome::iterated : Outcome::broken;
}

// Where the caller forms sums, one request serves a column: those of r_j, made orthogonal, and those that make the next
// one so (which is the classical process, for l > 2 less exact than the modified one).

template <class T>
void want_column(const Solver<T>& solver, Integer j) {
  solver.want_dot(r(j), r(j));
  solver.want_dot(r(j), r(0));
  if (j == solver.state().m) {
    return solver.want_euclidean(r(0));
  }
  solver.want_euclidean(r(j + 1));
  for (Integer i = 1; i <= j; ++i) {
    solver.want_dot(r(i), r(j + 1));
  }
}

template <class T>
Outcome ask_for_columns(Solver<T>& solver) {
  const auto wants = [&solver] {
    solver.want_euclidean(r(1));
    want_column(solver, 1);
  };
  if (solver.must_ask(kHaveColumnSums, wants)) {
    return Outcome::waiting;
  }
  solver.state().step = kIteration;
  Columns<T> columns;
  return make_orthogonal(solver, columns) ? minimise_residual(solver, columns) : Outcome::broken;
}

/// With the sums of column j = inner + 1.
template <class T>
Outcome next_column(Solver<T>& solver) {
  SolverState<T>& state = solver.state();
  const Integer j = state.inner + 1;
  if (solver.vanishes(sqrt(real_part(solver.dot(r(j), r(j)))), solver.euclidean(r(j)))) {
    state.inner = 0;
    return Outcome::broken;
  }
  if (j < state.m) {
    for (Integer i = 1; i <= j; ++i) {
      solver.add(-(solver.dot(r(i), r(j + 1)) / real_part(solver.dot(r(i), r(i)))), r(i), r(j + 1));
    }
    state.inner = j;
    solver.must_ask_more(kHaveColumnSums, [&solver, j] { want_column(solver, j + 1); });
    return Outcome::waiting;
  }
  Columns<T> columns;
  for (Integer k = 1; k <= j; ++k) {
    take_column(solver, k, columns);
    for (Integer i = 1; i < k; ++i) {
      columns.tau[i][k] = solver.dot(r(i), r(k)) / columns.sigma[i];
    }
  }
  state.inner = 0;
  state.step = kIteration;
  return minimise_residual(solver, columns);
}

template <class T>
void want_next(Solver<T>& solver) {
  want_kept_bounds(solver);
  solver.want_beside(kShadow, kResidual);
}

template <class T>
Outcome resume_bicgstab(Solver<T>& solver) {
  SolverState<T>& state = solver.state();
  T& rho = state.scalar(kRho);
  switch (state.step) {
    case kStart:
      solver.choose_shadow(kShadow);
      solver.clear(u(solver, 0));
      rho = T(1.0);
      state.scalar(kAlpha) = T(0.0);
      state.scalar(kOmega) = T(1.0);
      [[fallthrough]];
    case kIteration:
      rho = -state.scalar(kOmega) * rho;
      return is_zero(rho) ? Outcome::broken : next_direction(solver);
    case kHaveRhoSums:
      return make_direction(solver);
    case kHaveImageOfU:
      if (solver.must_ask(kHaveGammaSums, [&] { solver.want_beside(kShadow, u(solver, state.inner + 1)); })) {
        return Outcome::waiting;
      }
      [[fallthrough]];
    case kHaveGammaSums:
      return step_along_direction(solver);
    case kHaveImageOfR:
      if (++state.inner < state.m) {
        return next_direction(solver);
      }
      state.inner = 0;
      return ask_for_columns(solver);
    default:
      return next_column(solver);
  }
}

template <class T>
constexpr SolverSteps<T> kSteps = {resume_bicgstab<T>, kept_bounds<T>, kept_residual<T>, kept_iterate<T>, want_next<T>};

}  // namespace

const SolverMethod kBicgstab = {3,
                                "BICGSTAB",
                                kLargestL,
                                true,
                                true,
                                kHaveColumnSums,
                                [](Integer m) { return 2 * m + 2; },
                                [](Integer) { return Integer(0); },
                                0,
                                kSteps<QuarnFloat>,
                                kSteps<Complex>};

}  // namespace tesk
