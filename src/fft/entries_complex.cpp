// One complex sequence: entries, and those of its passes.

#include "src/fft/complex_cores.h"
#include "src/fft/complex_passes.h"
#include "src/frame/report.h"
#include "tesk2mp/fft.h"

namespace tesk {

void single_transform(const Call& call, Complex* x, Integer n, Complex* work) {
  Report report("C06PCF", call.message_buffer, call.ifail);
  if (n < 1) {
    return report.fail(1, 99999, " ** On entry, N .lt. 1: N = %16ld.", n);
  }
  if (!is_valid_direct(call.direct)) {
    return report.fail(2, 99998, kInvalidDirect, call.direct.text());
  }
  switch (call.engine.transform(is_backward(call.direct), x, {1, n, 1}, work)) {
    case Status::ok:
      return;
    case Status::too_many_factors:
      return report.fail(3, 99997, " ** N must have less than 31 prime factors: N = %16ld.", n);
    default:
      return report.fail(4, 99996, kInternalFailure);
  }
}

namespace {

void without_checks(const Engine& engine, const char* direct, int direct_length, Complex* x, Integer n, Complex* work,
                    Integer* ifail) {
  *ifail = Integer(engine.transform(is_backward(Option(direct, direct_length)), x, {1, n, 1}, work));
}

}  // namespace
}  // namespace tesk

using tesk::kClassicEngine;
using tesk::kFullEngine;
using tesk::Option;

extern "C" {

void QuarnMP_c06pcfn_(const char* direct, Complex* x, Integer n, Complex* work, char* message_buffer, Integer* ifail,
                      int direct_length, int /*buffer_length*/) {
  tesk::single_transform({kClassicEngine, Option(direct, direct_length), message_buffer, ifail}, x, n, work);
}

void QuarnMPX_c06pcfn_(const char* direct, Complex* x, Integer n, Complex* work, char* message_buffer, Integer* ifail,
                       int direct_length, int /*buffer_length*/) {
  tesk::single_transform({kFullEngine, Option(direct, direct_length), message_buffer, ifail}, x, n, work);
}

void QuarnMP_c06pcqn_(const char* direct, Complex* x, Integer n, Complex* work, Integer* ifail, int direct_length) {
  tesk::without_checks(kClassicEngine, direct, direct_length, x, n, work, ifail);
}

void QuarnMPX_c06pcqn_(const char* direct, Complex* x, Integer n, Complex* work, Integer* ifail, int direct_length) {
  tesk::without_checks(kFullEngine, direct, direct_length, x, n, work, ifail);
}

void QuarnMP_c06pczn_(const char* direct, Integer n, Complex* x, Complex* work, Integer* ifail, int direct_length) {
  tesk::without_checks(kClassicEngine, direct, direct_length, x, n, work, ifail);
}

void QuarnMPX_c06pczn_(const char* direct, Integer n, Complex* x, Complex* work, Integer* ifail, int direct_length) {
  tesk::without_checks(kFullEngine, direct, direct_length, x, n, work, ifail);
}

void QuarnMP_c06ncwn_(Integer n, Complex* x, Complex* scratch, const Complex* table, Integer count,
                      const Integer* factors) {
  kClassicEngine.transform_by(n, x, scratch, table, count, factors);
}

void QuarnMPX_c06ncwn_(Integer n, Complex* x, Complex* scratch, const Complex* table, Integer count,
                       const Integer* factors) {
  kFullEngine.transform_by(n, x, scratch, table, count, factors);
}

void QuarnMP_c06ncvn_(Integer length, Integer blocks, const Complex* source, Complex* target, const Complex* table) {
  tesk::pass2({length, blocks, 1}, source, target, table);
}

void QuarnMPX_c06ncvn_(Integer length, Integer blocks, const Complex* source, Complex* target, const Complex* table) {
  QuarnMP_c06ncvn_(length, blocks, source, target, table);
}

void QuarnMP_c06ncun_(Integer length, Integer blocks, const Complex* source, Complex* target, const Complex* table) {
  tesk::pass3({length, blocks, 1}, source, target, table, kClassicEngine.constants);
}

void QuarnMPX_c06ncun_(Integer length, Integer blocks, const Complex* source, Complex* target, const Complex* table) {
  tesk::pass3({length, blocks, 1}, source, target, table, kFullEngine.constants);
}

void QuarnMP_c06nctn_(Integer length, Integer blocks, const Complex* source, Complex* target, const Complex* table) {
  tesk::pass4({length, blocks, 1}, source, target, table);
}

void QuarnMPX_c06nctn_(Integer length, Integer blocks, const Complex* source, Complex* target, const Complex* table) {
  QuarnMP_c06nctn_(length, blocks, source, target, table);
}

void QuarnMP_c06ncsn_(Integer length, Integer blocks, const Complex* source, Complex* target, const Complex* table) {
  tesk::pass5({length, blocks, 1}, source, target, table, kClassicEngine.constants);
}

void QuarnMPX_c06ncsn_(Integer length, Integer blocks, const Complex* source, Complex* target, const Complex* table) {
  tesk::pass5({length, blocks, 1}, source, target, table, kFullEngine.constants);
}
}
