// Made by tools/contract.py from include/tesk2mp/fft.h; do not edit.
// clang-format off
#include "tesk2mp/fft.h"

#include <utility>

#include "src/frame/classic.h"

extern "C" {

void QuarnMP_c06faf_(QuarnFloat* x, Integer* n, QuarnFloat* work, Integer* ifail) {
  y90udf_(work, *n);
  tesk::call_core("C06FAF", ifail, [&](char* message_buffer, Integer* outcome, int buffer_length) { QuarnMP_c06fafn_(x, *n, work, message_buffer, outcome, buffer_length); });
}

void QuarnMPX_c06faf_(QuarnFloat* x, Integer* n, QuarnFloat* work, Integer* ifail) {
  y90udf_(work, *n);
  tesk::call_core("C06FAF", ifail, [&](char* message_buffer, Integer* outcome, int buffer_length) { QuarnMPX_c06fafn_(x, *n, work, message_buffer, outcome, buffer_length); });
}

void QuarnMP_c06fbf_(QuarnFloat* x, Integer* n, QuarnFloat* work, Integer* ifail) {
  tesk::call_core("C06FBF", ifail, [&](char* message_buffer, Integer* outcome, int buffer_length) { QuarnMP_c06fbfn_(x, *n, work, message_buffer, outcome, buffer_length); });
}

void QuarnMPX_c06fbf_(QuarnFloat* x, Integer* n, QuarnFloat* work, Integer* ifail) {
  tesk::call_core("C06FBF", ifail, [&](char* message_buffer, Integer* outcome, int buffer_length) { QuarnMPX_c06fbfn_(x, *n, work, message_buffer, outcome, buffer_length); });
}

void QuarnMP_c06pcf_(const char* direct, Complex* x, const Integer* n, Complex* work, Integer* ifail, int direct_length) {
  tesk::call_core("C06PCF", ifail, [&](char* message_buffer, Integer* outcome, int buffer_length) { QuarnMP_c06pcfn_(direct, x, *n, work, message_buffer, outcome, direct_length, buffer_length); });
}

void QuarnMPX_c06pcf_(const char* direct, Complex* x, const Integer* n, Complex* work, Integer* ifail, int direct_length) {
  tesk::call_core("C06PCF", ifail, [&](char* message_buffer, Integer* outcome, int buffer_length) { QuarnMPX_c06pcfn_(direct, x, *n, work, message_buffer, outcome, direct_length, buffer_length); });
}

void QuarnMP_c06prf_(const char* direct, const Integer* m, const Integer* n, Complex* x, Complex* work, Integer* ifail, int direct_length) {
  tesk::call_core("C06PRF", ifail, [&](char* message_buffer, Integer* outcome, int buffer_length) { QuarnMP_c06prfn_(direct, *m, *n, x, work, message_buffer, outcome, direct_length, buffer_length); });
}

void QuarnMPX_c06prf_(const char* direct, const Integer* m, const Integer* n, Complex* x, Complex* work, Integer* ifail, int direct_length) {
  tesk::call_core("C06PRF", ifail, [&](char* message_buffer, Integer* outcome, int buffer_length) { QuarnMPX_c06prfn_(direct, *m, *n, x, work, message_buffer, outcome, direct_length, buffer_length); });
}

void QuarnMP_c06pff_(const char* direct, const Integer* ndim, const Integer* l, const Integer* nd, const Integer* n, Complex* x, Complex* work, const Integer* lwork, Integer* ifail, int direct_length) {
  tesk::call_core("C06PFF", ifail, [&](char* message_buffer, Integer* outcome, int buffer_length) { QuarnMP_c06pffn_(0, direct, *ndim, *l, nd, *n, x, work, *lwork, message_buffer, outcome, direct_length, buffer_length); });
}

void QuarnMPX_c06pff_(const char* direct, const Integer* ndim, const Integer* l, const Integer* nd, const Integer* n, Complex* x, Complex* work, const Integer* lwork, Integer* ifail, int direct_length) {
  tesk::call_core("C06PFF", ifail, [&](char* message_buffer, Integer* outcome, int buffer_length) { QuarnMPX_c06pffn_(0, direct, *ndim, *l, nd, *n, x, work, *lwork, message_buffer, outcome, direct_length, buffer_length); });
}

void QuarnMP_c06pjf_(const char* direct, const Integer* ndim, const Integer* nd, const Integer* n, Complex* x, Complex* work, const Integer* lwork, Integer* ifail, int direct_length) {
  tesk::call_core("C06PJF", ifail, [&](char* message_buffer, Integer* outcome, int buffer_length) { QuarnMP_c06pjfn_(0, direct, *ndim, nd, *n, x, work, *lwork, message_buffer, outcome, direct_length, buffer_length); });
}

void QuarnMPX_c06pjf_(const char* direct, const Integer* ndim, const Integer* nd, const Integer* n, Complex* x, Complex* work, const Integer* lwork, Integer* ifail, int direct_length) {
  tesk::call_core("C06PJF", ifail, [&](char* message_buffer, Integer* outcome, int buffer_length) { QuarnMPX_c06pjfn_(0, direct, *ndim, nd, *n, x, work, *lwork, message_buffer, outcome, direct_length, buffer_length); });
}
}
