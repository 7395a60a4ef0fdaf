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
Outcome Lanczos<T>::start() const {
  const SolverState<T>& state = solver_.state();
  state.real(kLanczosCount) = 0;
  state.real(kLanczosParity) = 0;
  solver_.copy(kResidual, current());
  solver_.clear(other());
  if (solver_.preconditioned()) {
    const Integer residual = weighted(current());
    copy_unpreconditioned(solver_, residual);
    solver_.clear(weighted(other()));
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
Outcome Lanczos<T>::step() const {
  const SolverState<T>& state = solver_.state();
  const Integer product = solver_.preconditioned() ? solver_.product_slot() : Integer(kLanczosImage);
  const Integer v = current();
  const Integer next = other();
  if (looks_for_symmetry(state.real(kLanczosCount)) &&
      !agree(solver_, beta(), solver_.dot(next, product), next, product)) {
    return Outcome::unsuitable;
  }
  QuarnFloat size = solver_.euclidean(kLanczosImage);
  size *= solver_.preconditioned() ? solver_.euclidean(product) : size;
  state.real(kLanczosAlpha) = real_part(solver_.dot(v, product));
  subtract(alpha(), v, beta(), next, kLanczosImage);
  if (solver_.preconditioned()) {
    subtract(alpha(), weighted(v), beta(), weighted(next), product);
  }
  const QuarnFloat squared = real_part(solver_.dot(next, weighted(next)));
  // At the end of the Krylov space rounding is left, of either sign.
  if (squared < -epsilon() * size) {
    return Outcome::unsuitable;
  }
  const QuarnFloat noise = 10 * epsilon();
  if (!(squared > noise * noise * size)) {
    state.real(kLanczosNextBeta) = 0;
    solver_.clear(next);
    return Outcome::iterated;
  }
  state.real(kLanczosNextBeta) = sqrt(squared);
  scale_both(next, 1 / next_beta());
  return Outcome::iterated;
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
                       Outcome (*iterate)(const Solver<T>&, const Lanczos<T>&)) {
  const Lanczos<T> lanczos(solver);
  Outcome outcome = Outcome::iterated;
  switch (solver.state().step) {
    case kLanczosStart:
      outcome = lanczos.start();
      if (outcome != Outcome::iterated) {
        return outcome;
      }
      begin(solver, lanczos);
      return lanczos.ask();
    case kLanczosNextVector:
      return lanczos.beta() == 0 ? Outcome::broken : lanczos.ask();
    default:
      outcome = lanczos.step();
      outcome = outcome == Outcome::iterated ? iterate(solver, lanczos) : outcome;
      if (outcome == Outcome::iterated) {
        lanczos.flip();
        solver.state().step = kLanczosNextVector;
      }
      return outcome;
  }
}

template class Lanczos<QuarnFloat>;
template Outcome resume_lanczos(Solver<QuarnFloat>&, void (*)(const Solver<QuarnFloat>&, const Lanczos<QuarnFloat>&),
                                Outcome (*)(const Solver<QuarnFloat>&, const Lanczos<QuarnFloat>&));
template class Lanczos<Complex>;
template Outcome resume_lanczos(Solver<Complex>&, void (*)(const Solver<Complex>&, const Lanczos<Complex>&),
                                Outcome (*)(const Solver<Complex>&, const Lanczos<Complex>&));

}  // namespace tesk
