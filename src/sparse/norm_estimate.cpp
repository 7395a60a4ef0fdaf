// The norm of A by the power method for p-norms: D. W. Boyd, The power method for l^p norms, Linear Algebra Appl. 9
// (1974); for the 1-norm it is Hager's estimator (SIAM J. Sci. Stat. Comput. 5, 1984). With weights it is the norm of
// W A W^-1, which is what the norms of residual and iterate go with. Every estimate is a lower bound.
#include <algorithm>

#include "src/sparse/solver.h"

namespace tesk {
namespace {

constexpr Integer conjugate_norm(Integer norm) { return norm == kTwoNorm ? norm : 1 - norm; }

// The estimate stops when it grows by less than a hundredth, and after so many rounds.
constexpr Integer kEstimateRounds = 10;

QuarnFloat sign(const QuarnFloat& x) { return x < 0 ? -1 : 1; }
Complex sign(const Complex& x) {
  const QuarnFloat size = size_of(x);
  return size > 0 ? Complex(x.re / size, x.im / size) : Complex(1);
}

}  // namespace

template <class T>
bool Solver<T>::wants_norm(Task task, Integer norm, Integer slot) {
  if (distributed()) {
    forget_sums();
    want(Integer(kind_of(norm)), slot, slot);
    ask_for_sums(task);
  }
  return distributed();
}

template <class T>
void Solver<T>::begin_norm_estimate() {
  // Alternating signs and growing sizes: smooth vectors are close to the null space of many matrices.
  const Integer last = std::max(Integer(1), order() - 1);
  const Integer before = distributed() ? state_.first - 1 : 0;
  for (Integer i = 1; i <= n(); ++i) {
    const Integer row = before + i;
    const QuarnFloat size = 1 + QuarnFloat(row - 1) / last;
    vector(kResidual)(i) = T(row % 2 == 1 ? size : -size);
  }
  if (!wants_norm(Task::estimate_start, state_.norm, kResidual)) {
    start_norm_estimate();
  }
}

template <class T>
void Solver<T>::start_norm_estimate() {
  scale(n(), 1 / plain_norm(state_.norm, kResidual), vector(kResidual));
  state_[Place::anorm] = 0;
  state_.estimate_round = 0;
  ask_for_image();
}

template <class T>
void Solver<T>::ask_for_image() {
  divide_by_weights(kResidual);
  ask(Request::product, kResidual, kTrueResidual, Task::norm_image);
}

template <class T>
void Solver<T>::take_image() {
  multiply_by_weights(kTrueResidual);
  if (!wants_norm(Task::image_size, state_.norm, kTrueResidual)) {
    measure_image();
  }
}

template <class T>
void Solver<T>::measure_image() {
  const QuarnFloat size = plain_norm(state_.norm, kTrueResidual);
  QuarnFloat& estimate = state_[Place::anorm];
  const bool grows = isfinite(size) && 100 * size > 101 * estimate;
  estimate = size <= estimate ? estimate : size;  // a NaN stays and ends the solution
  if (!grows || ++state_.estimate_round >= kEstimateRounds) {
    return evaluate(kRestart);
  }
  if (replace_by_dual(state_.norm, kTrueResidual, size, Task::image_dual_count)) {
    ask_for_dual();
  }
}

template <class T>
void Solver<T>::ask_for_dual() {
  finish_dual(state_.norm, kTrueResidual);
  multiply_by_weights(kTrueResidual);
  ask(Request::transposed_product, kTrueResidual, kTrueResidual, Task::norm_dual);
}

template <class T>
void Solver<T>::take_dual() {
  divide_by_weights(kTrueResidual);
  if (!wants_norm(Task::dual_size, conjugate_norm(state_.norm), kTrueResidual)) {
    measure_dual();
  }
}

template <class T>
void Solver<T>::measure_dual() {
  const Integer conjugate = conjugate_norm(state_.norm);
  const QuarnFloat size = plain_norm(conjugate, kTrueResidual);
  if (!isfinite(size)) {
    state_[Place::anorm] = size;
    return evaluate(kRestart);
  }
  copy(kTrueResidual, kResidual);
  if (replace_by_dual(conjugate, kResidual, size, Task::dual_dual_count)) {
    finish_next_vector();
  }
}

template <class T>
void Solver<T>::finish_next_vector() {
  finish_dual(conjugate_norm(state_.norm), kResidual);
  ask_for_image();
}

// v, of that size, := the vector y whose conjugate norm is 1 and for which y^H v is the norm of v. False when it takes
// finish_dual(), once the task has the sum that is asked for.
template <class T>
bool Solver<T>::replace_by_dual(Integer norm, Integer slot, const QuarnFloat& size, Task count) {
  const SolverVector<T> v = vector(slot);
  if (norm == kTwoNorm) {
    if (size > 0) {
      scale(n(), 1 / size, v);
    }
    return true;
  }
  if (norm == kOneNorm) {
    for (Integer i = 1; i <= n(); ++i) {
      v(i) = sign(v(i));
    }
    return true;
  }
  if (distributed()) {
    // No part knows which of the largest elements is the first one: all of them, and then their mean.
    // The caller's rounding of `size` need not be the one here.
    const QuarnFloat least = size * std::max(1 - 10 * epsilon(), QuarnFloat(5, -1));
    for (Integer i = 1; i <= n(); ++i) {
      v(i) = size_of(v(i)) < least ? T() : sign(v(i));
    }
    return !wants_norm(count, kOneNorm, slot);
  }
  const Integer largest = index_of_largest(n(), v);
  const T direction = sign(v(largest));
  clear(slot);
  v(largest) = direction;
  return true;
}

template <class T>
void Solver<T>::finish_dual(Integer norm, Integer slot) const {
  if (distributed() && norm == kInfinityNorm) {
    scale(n(), 1 / plain_norm(kOneNorm, slot), vector(slot));
  }
}

template <class T>
void Solver<T>::multiply_by_weights(Integer slot) const {
  for (Integer i = 1; i <= n() && selects(&SolverIntegers::weighted); ++i) {
    multiply_by(vector(slot)(i), wgt_[i - 1]);
  }
}

template <class T>
void Solver<T>::divide_by_weights(Integer slot) const {
  for (Integer i = 1; i <= n() && selects(&SolverIntegers::weighted); ++i) {
    divide_by(vector(slot)(i), wgt_[i - 1]);
  }
}

template void Solver<QuarnFloat>::begin_norm_estimate();
template void Solver<Complex>::begin_norm_estimate();
template void Solver<QuarnFloat>::start_norm_estimate();
template void Solver<Complex>::start_norm_estimate();
template void Solver<QuarnFloat>::take_image();
template void Solver<Complex>::take_image();
template void Solver<QuarnFloat>::measure_image();
template void Solver<Complex>::measure_image();
template void Solver<QuarnFloat>::ask_for_dual();
template void Solver<Complex>::ask_for_dual();
template void Solver<QuarnFloat>::take_dual();
template void Solver<Complex>::take_dual();
template void Solver<QuarnFloat>::measure_dual();
template void Solver<Complex>::measure_dual();
template void Solver<QuarnFloat>::finish_next_vector();
template void Solver<Complex>::finish_next_vector();

}  // namespace tesk
