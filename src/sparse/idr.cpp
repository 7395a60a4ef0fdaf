// IDR(s): P. Sonneveld, M. B. van Gijzen, IDR(s): a family of simple and fast algorithms for solving large nonsymmetric
// systems of linear equations, SIAM J. Sci. Comput. 31 (2008), in the biorthogonal variant of M. B. van Gijzen,
// P. Sonneveld, Algorithm 913, ACM Trans. Math. Softw. 38 (2011). s is M. A cycle brings the residual into the next of
// a series of shrinking spaces: s steps along directions u_k, whose images g_k are made orthogonal to the shadow
// vectors before p_k, and one along the residual itself. An iteration is one step, with one product.
//
// The inner products of g_k with all p_i are formed before anything is subtracted from it, and follow what is
// subtracted (T. P. Collignon, M. B. van Gijzen, Minimizing synchronization in IDR(s), Numer. Linear Algebra Appl. 18,
// 2011): one request serves them where the caller forms sums. The first shadow vector is the residual, with s = 1 that
// of Bi-CGSTAB; the others are random, and not made orthogonal to each other, since their span alone matters.
#include <array>

#include "src/sparse/solver.h"

namespace tesk {
namespace {

constexpr Integer kLargestS = 10;

enum IdrScalar : Integer { kOmega };
enum IdrStep : Integer {
  kStart,
  kCycle,
  kNextDirection,
  kHaveImage,
  kReduction,
  kHaveResidualImage,
  kHaveShadowSums,
  kHaveDirectionSums,
  kHaveReductionSums
};
constexpr Integer kImageOfResidual = kMethodSlot;
/// Shadow vectors, directions and their images, k = 1 ... s
constexpr Integer p(Integer k) { return kMethodSlot + k; }
template <class T>
Integer u(const Solver<T>& solver, Integer k) {
  return kMethodSlot + solver.state().m + k;
}
template <class T>
Integer g(const Solver<T>& solver, Integer k) {
  return kMethodSlot + 2 * solver.state().m + k;
}

/// The small system M c = f: M(i, k) = p_i^H g_k, a lower triangle, and f = P^H r.
template <class T>
struct SmallSystem {
  explicit SmallSystem(const Solver<T>& solver)
      : s(solver.state().m), m(solver.constants(), s), f(solver.constants() + s * s, 1) {}
  Integer s;
  OneBasedMatrix<T> m;
  SolverVector<T> f;
};

Integer small_length(Integer s) { return s * s + s; }

template <class T>
void start(const Solver<T>& solver) {
  constexpr Integer kSecondSeed = 7535;  // of the random shadow vector after a breakdown
  const SmallSystem<T> small(solver);
  solver.choose_shadow(p(1));
  for (Integer k = 1; k <= small.s; ++k) {
    if (k > 1) {
      solver.fill_randomly(p(k), kSecondSeed + k);
    }
    solver.clear(u(solver, k));
    solver.clear(g(solver, k));
    for (Integer i = 1; i <= small.s; ++i) {
      small.m.column(k)(i) = T(i == k ? 1.0 : 0.0);
    }
  }
  solver.state().scalar(kOmega) = T(1.0);
}

template <class T>
void want_shadow_products(const Solver<T>& solver) {
  for (Integer i = 1; i <= solver.state().m; ++i) {
    solver.want_dot(p(i), kResidual);
  }
}

/// u_k = sum of c_i u_i + omega (r - sum of c_i g_i), i = k ... s, with the c for which r - sum of c_i g_i is
/// orthogonal to all p; then its image.
template <class T>
Outcome next_direction(Solver<T>& solver) {
  const SmallSystem<T> small(solver);
  const Integer k = solver.state().inner + 1;
  std::array<T, kLargestS> c;
  for (Integer i = k; i <= small.s; ++i) {
    T left = small.f(i);
    for (Integer j = k; j < i; ++j) {
      left -= small.m.column(j)(i) * c[std::size_t(j - k)];
    }
    c[std::size_t(i - k)] = quotient(left, small.m.column(i)(i));
  }
  constexpr Integer kLeft = kImageOfResidual;  // which is not there yet
  solver.copy(kResidual, kLeft);
  scale(solver.n(), c[0], solver.vector(u(solver, k)));
  for (Integer i = k; i <= small.s; ++i) {
    const T& factor = c[std::size_t(i - k)];
    solver.add(-factor, g(solver, i), kLeft);
    if (i > k) {
      solver.add(factor, u(solver, i), u(solver, k));
    }
  }
  solver.add(solver.state().scalar(kOmega), kLeft, u(solver, k));
  return solver.apply(u(solver, k), g(solver, k), kHaveImage);
}

template <class T>
void want_image_products(const Solver<T>& solver) {
  const Integer k = solver.state().inner + 1;
  for (Integer i = 1; i <= solver.state().m; ++i) {
    solver.want_dot(p(i), g(solver, k));
  }
  solver.want_euclidean(p(k));
  solver.want_euclidean(g(solver, k));
}

/// With the image of u_k: both made biorthogonal, and the step along them, after which r is orthogonal to p_k too.
template <class T>
Outcome take_direction(Solver<T>& solver) {
  SolverState<T>& state = solver.state();
  const SmallSystem<T> small(solver);
  const Integer k = state.inner + 1;
  const auto column = small.m.column(k);
  const QuarnFloat size = solver.euclidean(p(k)) * solver.euclidean(g(solver, k));
  for (Integer i = 1; i <= small.s; ++i) {
    column(i) = solver.dot(p(i), g(solver, k));
  }
  for (Integer i = 1; i < k; ++i) {
    const T alpha = quotient(column(i), small.m.column(i)(i));
    solver.add(-alpha, g(solver, i), g(solver, k));
    solver.add(-alpha, u(solver, i), u(solver, k));
    for (Integer j = i; j <= small.s; ++j) {
      column(j) -= alpha * small.m.column(i)(j);
    }
  }
  if (solver.vanishes(column(k), size)) {
    return Outcome::broken;
  }
  const T beta = quotient(small.f(k), column(k));
  if (!solver.advance_iterate(beta, u(solver, k))) {
    return Outcome::broken;
  }
  solver.add(-beta, g(solver, k), kResidual);
  for (Integer i = k + 1; i <= small.s; ++i) {
    small.f(i) -= beta * column(i);
  }
  state.inner = k < small.s ? k : 0;
  state.step = k < small.s ? kNextDirection : kReduction;
  return Outcome::iterated;
}

/// The step along r, with t = A r: into the next space. omega makes the residual smallest, unless t and r are nearly
/// orthogonal: then that would cost the recurrence digits, and it is made larger (G. L. G. Sleijpen, H. A. van der
/// Vorst, Numer. Algorithms 10, 1995).
template <class T>
Outcome reduce(Solver<T>& solver) {
  const QuarnFloat least_cosine(7, -1);
  const QuarnFloat r_size = solver.euclidean(kResidual);
  const QuarnFloat t_size = solver.euclidean(kImageOfResidual);
  const T product = solver.dot(kImageOfResidual, kResidual);
  if (!(t_size > 0) || !(r_size > 0)) {
    return Outcome::broken;
  }
  const QuarnFloat cosine = size_of(product) / t_size / r_size;
  T& omega = solver.state().scalar(kOmega);
  if (is_zero(product)) {
    omega = T(least_cosine * (r_size / t_size));
  } else {
    omega = times(1 / t_size, times(1 / t_size, product));  // the square may leave the range
    omega = cosine < least_cosine ? times(least_cosine / cosine, omega) : omega;
  }
  if (!solver.advance_iterate(omega, kResidual)) {
    return Outcome::broken;
  }
  solver.add(-omega, kImageOfResidual, kResidual);
  solver.state().step = kCycle;
  return Outcome::iterated;
}

template <class T>
Outcome resume_idr(Solver<T>& solver) {
  SolverState<T>& state = solver.state();
  switch (state.step) {
    case kStart:
      start(solver);
      [[fallthrough]];
    case kCycle:
      if (solver.must_ask(kHaveShadowSums, [&solver] { want_shadow_products(solver); })) {
        return Outcome::waiting;
      }
      [[fallthrough]];
    case kHaveShadowSums: {
      const SmallSystem<T> small(solver);
      for (Integer i = 1; i <= small.s; ++i) {
        small.f(i) = solver.dot(p(i), kResidual);
      }
      state.inner = 0;
      return next_direction(solver);
    }
    case kNextDirection:
      return next_direction(solver);
    case kHaveImage:
      if (solver.must_ask(kHaveDirectionSums, [&solver] { want_image_products(solver); })) {
        return Outcome::waiting;
      }
      [[fallthrough]];
    case kHaveDirectionSums:
      return take_direction(solver);
    case kReduction:
      return solver.apply(kResidual, kImageOfResidual, kHaveResidualImage);
    case kHaveResidualImage: {
      const auto wants = [&solver] {
        solver.want_dot(kImageOfResidual, kResidual);
        solver.want_euclidean(kImageOfResidual);
        solver.want_euclidean(kResidual);
      };
      if (solver.must_ask(kHaveReductionSums, wants)) {
        return Outcome::waiting;
      }
      [[fallthrough]];
    }
    default:
      return reduce(solver);
  }
}

template <class T>
void want_next(Solver<T>& solver) {
  want_kept_bounds(solver);
  if (solver.state().step == kCycle) {
    want_shadow_products(solver);
  }
}

template <class T>
constexpr SolverSteps<T> kSteps = {resume_idr<T>, kept_bounds<T>, kept_residual<T>, kept_iterate<T>, want_next<T>};

}  // namespace

const SolverMethod kIdr = {9,
                           "IDR",
                           kLargestS,
                           true,
                           true,
                           kHaveReductionSums,
                           [](Integer s) { return 3 * s + 1; },
                           small_length,
                           0,
                           kSteps<QuarnFloat>,
                           kSteps<Complex>};

}  // namespace tesk
