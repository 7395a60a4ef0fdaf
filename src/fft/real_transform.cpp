#include "src/fft/digit_reverse.h"
#include "src/fft/passes.h"
#include "src/frame/report.h"
#include "tesk2mp/fft.h"

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

template <Direction direction>
void transform(const Constants& constants, QuarnFloat* x, Integer n, QuarnFloat* work, char* message_buffer,
               Integer* ifail) {
  Report report(direction == Direction::forward ? "C06FAF" : "C06FBF", message_buffer, ifail);
  if (n <= 1) {
    return report.fail(3, 99999, " ** On entry, N .le. 1: N =%16ld.", n);
  }
  const Factorization factors = c06FactorN(n);
  switch (factors.status) {
    case Factorization::Status::ok:
      break;
    case Factorization::Status::large_prime:
      return report.fail(1, 99998, " ** At least one prime factor of N is greater than 19.\n    N =%16ld.", n);
    case Factorization::Status::too_many_factors:
      return report.fail(2, 99997, " ** N has more than 20 prime factors.\n    N =%16ld.", n);
    default:
      return report.fail(4, 99996, " ** Unexpected failure in an internal call.");
  }
  if constexpr (direction == Direction::forward) {
    c06DigitReverse(x, n, factors.permutation, work);
    forward_passes(x, n, factors.passes.data(), constants);
  } else {
    backward_passes(x, n, factors.passes.data(), constants);
    c06DigitReverse(x, n, factors.permutation, work);
  }
  scale(x, n);
}

constexpr Constants kClassic(Accuracy::classic);
constexpr Constants kFull(Accuracy::full);

}  // namespace
}  // namespace tesk

extern "C" {

void QuarnMP_c06fafn_(QuarnFloat* x, Integer n, QuarnFloat* work, char* message_buffer, Integer* ifail,
                      int /*length*/) {
  tesk::transform<tesk::Direction::forward>(tesk::kClassic, x, n, work, message_buffer, ifail);
}

void QuarnMP_c06fbfn_(QuarnFloat* x, Integer n, QuarnFloat* work, char* message_buffer, Integer* ifail,
                      int /*length*/) {
  tesk::transform<tesk::Direction::backward>(tesk::kClassic, x, n, work, message_buffer, ifail);
}

void QuarnMPX_c06fafn_(QuarnFloat* x, Integer n, QuarnFloat* work, char* message_buffer, Integer* ifail,
                       int /*length*/) {
  tesk::transform<tesk::Direction::forward>(tesk::kFull, x, n, work, message_buffer, ifail);
}

void QuarnMPX_c06fbfn_(QuarnFloat* x, Integer n, QuarnFloat* work, char* message_buffer, Integer* ifail,
                       int /*length*/) {
  tesk::transform<tesk::Direction::backward>(tesk::kFull, x, n, work, message_buffer, ifail);
}
}
