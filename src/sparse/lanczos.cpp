#include "src/sparse/lanczos.h"

#include "src/sparse/symmetry.h"

namespace tesk {

template <class T>
void Lanczos<T>::scale_both(Integer slot, const QuarnFloat& factor) const {
  scale(solver_.n(), factor, solver_.vector(slot));
  if (solver_.preconditioned()) {
    scale(solver_.n(), factor, solver_.vector(weighted(slot)));
  }
}

template <class T>
void Lanczos<T>::prepare() const {
  const SolverState<T>& state = solver_.state();
  state.real(kLanczosCount) = 0;
  state.real(kLanczosLeft) = 1;
  state.real(kLanczosParity) = 0;
  solver_.copy(kResidual, current());
  solver_.clear(other());
  if (solver_.preconditioned()) {
    copy_unpreconditioned(solver_, weighted(current()));
    solver_.clear(weighted(other()));
  }
}

template <class T>
void Lanczos<T>::want_size() const {
  if (solver_.preconditioned()) {
    solver_.want_beside(weighted(current()), kResidual);
  } else {
    solver_.want_euclidean(kResidual);
  }
}

template <class T>
Outcome Lanczos<T>::start() const {
  const SolverState<T>& state = solver_.state();
  if (solver_.preconditioned()) {
    const Integer residual = weighted(current());
    const QuarnFloat product = real_part(solver_.dot(residual, kResidual));
    const Outcome verdict = judge_positive(solver_, product, residual, kResidual);
    if (verdict != Outcome::iterated) {
      return verdict;
    }
    state.real(kLanczosBeta) = sqrt(product);
  } else {
    state.real(kLanczosBeta) = solver_.euclidean(kResidual);
  }
  if (beta() == 0) {
    return Outcome::broken;
  }
  scale_both(current(), 1 / beta());
  return Outcome::iterated;
}

template <class T>
void Lanczos<T>::subtract(const QuarnFloat& alpha, Integer v, const QuarnFloat& beta, Integer w, Integer image) const {
  const auto now = solver_.vector(v);
  const auto former = solver_.vector(w);
  const auto x = solver_.vector(image);
  for (Integer i = 1; i <= solver_.n(); ++i) {
    former(i) = x(i) - times(alpha, now(i)) - times(beta, former(i));
  }
}

template <class T>
bool Lanczos<T>::looks_for_symmetry() const {
  const SolverState<T>& state = solver_.state();
  return tesk::looks_for_symmetry(state.real(kLanczosCount), state.real(kLanczosLeft));
}

template <class T>
void Lanczos<T>::want_alpha() const {
  if (looks_for_symmetry()) {
    solver_.want_beside(other(), product());
  }
  solver_.want_euclidean(kLanczosImage);
  solver_.want_euclidean(product());
  solver_.want_dot(current(), product());
}

template <class T>
Outcome Lanczos<T>::make_orthogonal() const {
  const SolverState<T>& state = solver_.state();
  const Integer v = current();
  const Integer next = other();
  if (looks_for_symmetry() && !agree(solver_, beta(), solver_.dot(next, product()), next, product())) {
    return Outcome::unsuitable;
  }
  QuarnFloat size = solver_.euclidean(kLanczosImage);
  size *= solver_.preconditioned() ? solver_.euclidean(product()) : size;
  state.real(kLanczosSize) = size;
  state.real(kLanczosAlpha) = real_part(solver_.dot(v, product()));
  subtract(alpha(), v, beta(), next, kLanczosImage);
  if (solver_.preconditioned()) {
    subtract(alpha(), weighted(v), beta(), weighted(next), product());
  }
  return Outcome::iterated;
}

template <class T>
void Lanczos<T>::want_beta() const {
  solver_.want_dot(other(), weighted(other()));
}

template <class T>
Outcome Lanczos<T>::normalise() const {
  const SolverState<T>& state = solver_.state();
  const Integer next = other();
  const QuarnFloat& size = state.real(kLanczosSize);
  const QuarnFloat squared = real_part(solver_.dot(next, weighted(next)));
  // At the end of the Krylov space rounding is left, of either sign. Where vectors have lost their orthogonality to it
  // v and M v have parted too, which a new start mends.
  if (squared < -epsilon() * size) {
    return is_significant(state.real(kLanczosLeft)) ? Outcome::unsuitable : Outcome::broken;
  }
  const QuarnFloat noise = 10 * epsilon();
  if (!(squared > noise * noise * size)) {
    state.real(kLanczosNextBeta) = 0;
    solver_.clear(next);
    return Outcome::iterated;
  }
  state.real(kLanczosNextBeta) = sqrt(squared);
  state.real(kLanczosLeft) *= squared / size;
  scale_both(next, 1 / next_beta());
  return Outcome::iterated;
}

template <class T>
void Lanczos<T>::estimate() const {
  const QuarnFloat& before = solver_.state().real(kLanczosCount);
  if (before < kRitzIterations) {
    RitzEstimate<T>(solver_).take(FloatToInt(before) + 1, alpha(), is_first() ? QuarnFloat() : beta());
  }
}

template <class T>
void Lanczos<T>::flip() const {
  const SolverState<T>& state = solver_.state();
  state.real(kLanczosParity) = 1 - parity();
  state.real(kLanczosCount) += 1;
  state.real(kLanczosBeta) = next_beta();
}

template <class T>
Outcome resume_lanczos(Solver<T>& solver, void (*begin)(const Solver<T>&, const Lanczos<T>&),
                       Outcome (*iterate)(Solver<T>&, const Lanczos<T>&),
                       Outcome (*settle)(Solver<T>&, const Lanczos<T>&)) {
  const Lanczos<T> lanczos(solver);
  Outcome outcome = Outcome::iterated;
  switch (solver.state().step) {
    case kLanczosStart:
      lanczos.prepare();
      if (solver.must_ask(kLanczosHaveSize, [&lanczos] { lanczos.want_size(); })) {
        return Outcome::waiting;
      }
      [[fallthrough]];
    case kLanczosHaveSize:
      outcome = lanczos.start();
      if (outcome != Outcome::iterated) {
        return outcome;
      }
      begin(solver, lanczos);
      return lanczos.ask();
    case kLanczosNextVector:
      return lanczos.beta() == 0 ? Outcome::broken : lanczos.ask();
    case kLanczosHaveImage:
      if (solver.must_ask(kLanczosHaveAlpha, [&lanczos] { lanczos.want_alpha(); })) {
        return Outcome::waiting;
      }
      [[fallthrough]];
    case kLanczosHaveAlpha:
      outcome = lanczos.make_orthogonal();
      if (outcome != Outcome::iterated) {
        return outcome;
      }
      if (solver.must_ask(kLanczosHaveBeta, [&lanczos] { lanczos.want_beta(); })) {
        return Outcome::waiting;
      }
      [[fallthrough]];
    case kLanczosHaveBeta:
      outcome = lanczos.normalise();
      outcome = outcome == Outcome::iterated ? iterate(solver, lanczos) : outcome;
      break;
    default:
      outcome = settle(solver, lanczos);
  }
  if (outcome == Outcome::iterated) {
    lanczos.flip();
    solver.state().step = kLanczosNextVector;
  }
  return outcome;
}

template class Lanczos<QuarnFloat>;
template Outcome resume_lanczos(Solver<QuarnFloat>&, void (*)(const Solver<QuarnFloat>&, const Lanczos<QuarnFloat>&),
                                Outcome (*)(Solver<QuarnFloat>&, const Lanczos<QuarnFloat>&),
                                Outcome (*)(Solver<QuarnFloat>&, const Lanczos<QuarnFloat>&));
template class Lanczos<Complex>;
template Outcome resume_lanczos(Solver<Complex>&, void (*)(const Solver<Complex>&, const Lanczos<Complex>&),
                                Outcome (*)(Solver<Complex>&, const Lanczos<Complex>&),
                                Outcome (*)(Solver<Complex>&, const Lanczos<Complex>&));

}  // namespace tesk
