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
void Solver<T>::begin_norm_estimate() {
  // Alternating signs and growing sizes: smooth vectors are close to the null space of many matrices.
  const Integer last = std::max(Integer(1), n() - 1);
  for (Integer i = 1; i <= n(); ++i) {
    const QuarnFloat size = 1 + QuarnFloat(i - 1) / last;
    vector(kResidual)(i) = T(i % 2 == 1 ? size : -size);
  }
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
void Solver<T>::ask_for_next_image() {
  divide_by_weights(kTrueResidual);
  const Integer conjugate = conjugate_norm(state_.norm);
  const QuarnFloat size = plain_norm(conjugate, kTrueResidual);
  if (!isfinite(size)) {
    state_[Place::anorm] = size;
    return evaluate(kRestart);
  }
  copy(kTrueResidual, kResidual);
  replace_by_dual(conjugate, kResidual);
  ask_for_image();
}

template <class T>
void Solver<T>::ask_for_dual() {
  multiply_by_weights(kTrueResidual);
  const QuarnFloat size = plain_norm(state_.norm, kTrueResidual);
  QuarnFloat& estimate = state_[Place::anorm];
  const bool grows = isfinite(size) && 100 * size > 101 * estimate;
  estimate = size <= estimate ? estimate : size;  // a NaN stays and ends the solution
  if (!grows || ++state_.estimate_round >= kEstimateRounds) {
    return evaluate(kRestart);
  }
  replace_by_dual(state_.norm, kTrueResidual);
  multiply_by_weights(kTrueResidual);
  ask(Request::transposed_product, kTrueResidual, kTrueResidual, Task::norm_dual);
}

// v := the vector y whose conjugate norm is 1 and for which y^H v is the norm of v.
template <class T>
void Solver<T>::replace_by_dual(Integer norm, Integer slot) const {
  const SolverVector<T> v = vector(slot);
  if (norm == kTwoNorm) {
    const QuarnFloat size = plain_norm(norm, slot);
    return size > 0 ? scale(n(), 1 / size, v) : void();
  }
  if (norm == kOneNorm) {
    for (Integer i = 1; i <= n(); ++i) {
      v(i) = sign(v(i));
    }
    return;
  }
  const Integer largest = index_of_largest(n(), v);
  const T direction = sign(v(largest));
  clear(slot);
  v(largest) = direction;
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
template void Solver<QuarnFloat>::ask_for_image();
template void Solver<Complex>::ask_for_image();
template void Solver<QuarnFloat>::ask_for_next_image();
template void Solver<Complex>::ask_for_next_image();
template void Solver<QuarnFloat>::ask_for_dual();
template void Solver<Complex>::ask_for_dual();
template void Solver<QuarnFloat>::replace_by_dual(Integer, Integer) const;
template void Solver<Complex>::replace_by_dual(Integer, Integer) const;
template void Solver<QuarnFloat>::multiply_by_weights(Integer) const;
template void Solver<Complex>::multiply_by_weights(Integer) const;
template void Solver<QuarnFloat>::divide_by_weights(Integer) const;
template void Solver<Complex>::divide_by_weights(Integer) const;

}  // namespace tesk
