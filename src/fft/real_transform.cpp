#include "src/fft/real_transform.h"

#include "src/fft/digit_reverse.h"
#include "src/fft/passes.h"

namespace tesk {
namespace {

/// Divides by sqrt(n), so that each direction is the inverse of the other. The sign of a zero is an accident of the
/// order of operations and is dropped.
void scale(QuarnFloat* x, Integer n) {
  const QuarnFloat root = sqrt(QuarnFloat(double(n)));
  const QuarnFloat zero;
  for (Integer i = 0; i < n; ++i) {
    x[i] = x[i] == zero ? zero : x[i] / root;
  }
}

}  // namespace

Factorization::Status real_transform(Direction direction, QuarnFloat* x, Integer n, const Constants& constants,
                                     QuarnFloat* work) {
  const Factorization factors = c06FactorN(n);
  if (factors.status != Factorization::Status::ok) {
    return factors.status;
  }
  if (direction == Direction::forward) {
    c06DigitReverse(x, n, factors.permutation, work);
    forward_passes(x, n, factors.passes.data(), constants);
  } else {
    backward_passes(x, n, factors.passes.data(), constants);
    c06DigitReverse(x, n, factors.permutation, work);
  }
  scale(x, n);
  return Factorization::Status::ok;
}

}  // namespace tesk
