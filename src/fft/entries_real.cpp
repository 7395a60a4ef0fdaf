// Real transforms: entries.
#include "src/fft/passes.h"
#include "src/fft/real_transform.h"
#include "src/frame/report.h"
#include "tesk2mp/fft.h"

namespace tesk {
namespace {

constexpr Constants kClassic(Accuracy::classic);
constexpr Constants kFull(Accuracy::full);

void transform(Direction direction, const Constants& constants, QuarnFloat* x, Integer n, QuarnFloat* work,
               char* message_buffer, Integer* ifail) {
  Report report(direction == Direction::forward ? "C06FAF" : "C06FBF", message_buffer, ifail);
  if (n <= 1) {
    return report.fail(3, 99999, " ** On entry, N .le. 1: N =%16ld.", n);
  }
  switch (real_transform(direction, x, n, constants, work)) {
    case Factorization::Status::ok:
      return;
    case Factorization::Status::large_prime:
      return report.fail(1, 99998, " ** At least one prime factor of N is greater than 19.\n    N =%16ld.", n);
    case Factorization::Status::too_many_factors:
      return report.fail(2, 99997, " ** N has more than 20 prime factors.\n    N =%16ld.", n);
    default:
      return report.fail(4, 99996, " ** Unexpected failure in an internal call.");
  }
}

}  // namespace
}  // namespace tesk

using namespace tesk;

extern "C" {

void QuarnMP_c06fafn_(QuarnFloat* x, Integer n, QuarnFloat* work, char* message_buffer, Integer* ifail,
                      int /*length*/) {
  transform(Direction::forward, kClassic, x, n, work, message_buffer, ifail);
}

void QuarnMP_c06fbfn_(QuarnFloat* x, Integer n, QuarnFloat* work, char* message_buffer, Integer* ifail,
                      int /*length*/) {
  transform(Direction::backward, kClassic, x, n, work, message_buffer, ifail);
}

void QuarnMPX_c06fafn_(QuarnFloat* x, Integer n, QuarnFloat* work, char* message_buffer, Integer* ifail,
                       int /*length*/) {
  transform(Direction::forward, kFull, x, n, work, message_buffer, ifail);
}

void QuarnMPX_c06fbfn_(QuarnFloat* x, Integer n, QuarnFloat* work, char* message_buffer, Integer* ifail,
                       int /*length*/) {
  transform(Direction::backward, kFull, x, n, work, message_buffer, ifail);
}

void QuarnMP_c06eawn_(QuarnFloat* x, Integer n, Integer* radices) { forward_passes(x, n, radices, kClassic); }

void QuarnMP_c06ebwn_(QuarnFloat* x, Integer n, Integer* radices) { backward_passes(x, n, radices, kClassic); }

void QuarnMPX_c06eawn_(QuarnFloat* x, Integer n, Integer* radices) { forward_passes(x, n, radices, kFull); }

void QuarnMPX_c06ebwn_(QuarnFloat* x, Integer n, Integer* radices) { backward_passes(x, n, radices, kFull); }
}
