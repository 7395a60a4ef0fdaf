// Several complex sequences of one length: entries.
#include "src/fft/complex_cores.h"
#include "src/frame/report.h"
#include "tesk2mp/fft.h"

namespace tesk {

View view_of(Sequences sequences, Integer m, Integer n) {
  return sequences == Sequences::interleaved ? View{m, n, 1} : View{1, n, m};
}

void multiple_transform(const Call& call, Sequences sequences, Integer m, Integer n, Complex* x, Complex* work) {
  Report report(sequences == Sequences::interleaved ? "C06PRF" : "C06PSF", call.message_buffer, call.ifail);
  if (m < 1) {
    return report.fail(1, 99999, " ** M .lt. 1: M = %16ld.", m);
  }
  if (n < 1) {
    return report.fail(2, 99998, " ** N .lt. 1: N = %16ld.", n);
  }
  if (!is_valid_direct(call.direct)) {
    return report.fail(3, 99997, kInvalidDirect, call.direct.text());
  }
  switch (call.engine.transform(is_backward(call.direct), x, view_of(sequences, m, n), work)) {
    case Status::ok:
      return;
    case Status::too_many_factors:
      return report.fail(4, 99996, " ** N must have less than 31 prime factors: N = %16ld.", n);
    default:
      return report.fail(5, 99995, kInternalFailure);
  }
}

namespace {

void transform(const Engine& engine, Sequences sequences, const Option& direct, Integer m, Integer n, Complex* x,
               Complex* work, Integer* ifail) {
  *ifail = Integer(engine.transform(is_backward(direct), x, view_of(sequences, m, n), work));
}

/// The passes and the scaling alone.
void transform_prepared(const Engine& engine, Sequences sequences, bool backward, Integer m, Integer n, Complex* x,
                        Complex* work, Integer* ifail) {
  *ifail = Integer(engine.transform_prepared(backward, x, view_of(sequences, m, n), work));
}

}  // namespace
}  // namespace tesk

using tesk::is_backward;
using tesk::kClassicEngine;
using tesk::kFullEngine;
using tesk::Option;
using tesk::Sequences;

extern "C" {

void QuarnMP_c06prfn_(const char* direct, Integer m, Integer n, Complex* x, Complex* work, char* message_buffer,
                      Integer* ifail, int direct_length, int /*buffer_length*/) {
  tesk::multiple_transform({kClassicEngine, Option(direct, direct_length), message_buffer, ifail},
                           Sequences::interleaved, m, n, x, work);
}

void QuarnMPX_c06prfn_(const char* direct, Integer m, Integer n, Complex* x, Complex* work, char* message_buffer,
                       Integer* ifail, int direct_length, int /*buffer_length*/) {
  tesk::multiple_transform({kFullEngine, Option(direct, direct_length), message_buffer, ifail}, Sequences::interleaved,
                           m, n, x, work);
}

void QuarnMP_c06prqn_(const char* direct, Integer m, Integer n, Complex* x, Complex* work, Integer* ifail,
                      int direct_length) {
  tesk::transform(kClassicEngine, Sequences::interleaved, Option(direct, direct_length), m, n, x, work, ifail);
}

void QuarnMPX_c06prqn_(const char* direct, Integer m, Integer n, Complex* x, Complex* work, Integer* ifail,
                       int direct_length) {
  tesk::transform(kFullEngine, Sequences::interleaved, Option(direct, direct_length), m, n, x, work, ifail);
}

void QuarnMP_c06przn_(const char* direct, Integer m, Integer n, Complex* x, Complex* work, Integer* ifail,
                      int direct_length) {
  tesk::transform(kClassicEngine, Sequences::interleaved, Option(direct, direct_length), m, n, x, work, ifail);
}

void QuarnMPX_c06przn_(const char* direct, Integer m, Integer n, Complex* x, Complex* work, Integer* ifail,
                       int direct_length) {
  tesk::transform(kFullEngine, Sequences::interleaved, Option(direct, direct_length), m, n, x, work, ifail);
}

void QuarnMP_c06prxn_(const char* direct, Integer m, Integer n, Complex* x, Complex* work, Integer* ifail,
                      int direct_length) {
  tesk::transform_prepared(kClassicEngine, Sequences::interleaved, is_backward(Option(direct, direct_length)), m, n, x,
                           work, ifail);
}

void QuarnMPX_c06prxn_(const char* direct, Integer m, Integer n, Complex* x, Complex* work, Integer* ifail,
                       int direct_length) {
  tesk::transform_prepared(kFullEngine, Sequences::interleaved, is_backward(Option(direct, direct_length)), m, n, x,
                           work, ifail);
}

void QuarnMP_c06prwn_(const char* /*direct*/, Integer m, Integer n, Complex* x, Complex* work, Integer* ifail,
                      int /*direct_length*/) {
  tesk::transform_prepared(kClassicEngine, Sequences::interleaved, false, m, n, x, work, ifail);
}

void QuarnMPX_c06prwn_(const char* /*direct*/, Integer m, Integer n, Complex* x, Complex* work, Integer* ifail,
                       int /*direct_length*/) {
  tesk::transform_prepared(kFullEngine, Sequences::interleaved, false, m, n, x, work, ifail);
}

void QuarnMP_c06psfn_(const char* direct, Integer m, Integer n, Complex* x, Complex* work, char* message_buffer,
                      Integer* ifail, int direct_length, int /*buffer_length*/) {
  tesk::multiple_transform({kClassicEngine, Option(direct, direct_length), message_buffer, ifail},
                           Sequences::contiguous, m, n, x, work);
}

void QuarnMPX_c06psfn_(const char* direct, Integer m, Integer n, Complex* x, Complex* work, char* message_buffer,
                       Integer* ifail, int direct_length, int /*buffer_length*/) {
  tesk::multiple_transform({kFullEngine, Option(direct, direct_length), message_buffer, ifail}, Sequences::contiguous,
                           m, n, x, work);
}

void QuarnMP_c06psqn_(const char* direct, Integer m, Integer n, Complex* x, Complex* work, Integer* ifail,
                      int direct_length) {
  tesk::transform(kClassicEngine, Sequences::contiguous, Option(direct, direct_length), m, n, x, work, ifail);
}

void QuarnMPX_c06psqn_(const char* direct, Integer m, Integer n, Complex* x, Complex* work, Integer* ifail,
                       int direct_length) {
  tesk::transform(kFullEngine, Sequences::contiguous, Option(direct, direct_length), m, n, x, work, ifail);
}

void QuarnMP_c06pszn_(const char* direct, Integer m, Integer n, Complex* x, Complex* work, Integer* ifail,
                      int direct_length) {
  tesk::transform(kClassicEngine, Sequences::contiguous, Option(direct, direct_length), m, n, x, work, ifail);
}

void QuarnMPX_c06pszn_(const char* direct, Integer m, Integer n, Complex* x, Complex* work, Integer* ifail,
                       int direct_length) {
  tesk::transform(kFullEngine, Sequences::contiguous, Option(direct, direct_length), m, n, x, work, ifail);
}

void QuarnMP_c06psxn_(const char* direct, Integer m, Integer n, Complex* x, Complex* work, Integer* ifail,
                      int direct_length) {
  tesk::transform_prepared(kClassicEngine, Sequences::contiguous, is_backward(Option(direct, direct_length)), m, n, x,
                           work, ifail);
}

void QuarnMPX_c06psxn_(const char* direct, Integer m, Integer n, Complex* x, Complex* work, Integer* ifail,
                       int direct_length) {
  tesk::transform_prepared(kFullEngine, Sequences::contiguous, is_backward(Option(direct, direct_length)), m, n, x,
                           work, ifail);
}
}
