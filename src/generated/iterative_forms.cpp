// Made by tools/contract.py from include/tesk2mp/iterative.h; do not edit.
// clang-format off
#include "tesk2mp/iterative.h"

#include <utility>

#include "src/frame/classic.h"

extern "C" {

void QuarnMP_f11bdf_(const char* method, const char* precon, const char* norm, const char* weight, const Integer* iterm, const Integer* n, const Integer* m, const QuarnFloat* tol, const Integer* maxitn, const QuarnFloat* anorm, const QuarnFloat* sigmax, const Integer* monit, Integer* lwreq, QuarnFloat* work, const Integer* lwork, Integer* ifail, int method_length, int precon_length, int norm_length, int weight_length) {
  tesk::call_core("F11BDF", ifail, [&](char* message_buffer, Integer* outcome, int buffer_length) { QuarnMP_f11bdfn_(method, precon, norm, weight, *iterm, *n, *m, *tol, *maxitn, *anorm, *sigmax, *monit, lwreq, work, *lwork, message_buffer, outcome, method_length, precon_length, norm_length, weight_length, buffer_length); });
}

void QuarnMPX_f11bdf_(const char* method, const char* precon, const char* norm, const char* weight, const Integer* iterm, const Integer* n, const Integer* m, const QuarnFloat* tol, const Integer* maxitn, const QuarnFloat* anorm, const QuarnFloat* sigmax, const Integer* monit, Integer* lwreq, QuarnFloat* work, const Integer* lwork, Integer* ifail, int method_length, int precon_length, int norm_length, int weight_length) {
  tesk::call_core("F11BDF", ifail, [&](char* message_buffer, Integer* outcome, int buffer_length) { QuarnMPX_f11bdfn_(method, precon, norm, weight, *iterm, *n, *m, *tol, *maxitn, *anorm, *sigmax, *monit, lwreq, work, *lwork, message_buffer, outcome, method_length, precon_length, norm_length, weight_length, buffer_length); });
}

void QuarnMP_f11bef_(Integer* irevcm, QuarnFloat* u, QuarnFloat* v, QuarnFloat* wgt, QuarnFloat* work, const Integer* lwork, Integer* ifail) {
  tesk::call_core("F11BEF", ifail, [&](char* message_buffer, Integer* outcome, int buffer_length) { QuarnMP_f11befn_(irevcm, u, v, wgt, work, *lwork, message_buffer, outcome, buffer_length); });
}

void QuarnMPX_f11bef_(Integer* irevcm, QuarnFloat* u, QuarnFloat* v, QuarnFloat* wgt, QuarnFloat* work, const Integer* lwork, Integer* ifail) {
  tesk::call_core("F11BEF", ifail, [&](char* message_buffer, Integer* outcome, int buffer_length) { QuarnMPX_f11befn_(irevcm, u, v, wgt, work, *lwork, message_buffer, outcome, buffer_length); });
}

void QuarnMP_f11bff_(Integer* itn, QuarnFloat* stplhs, QuarnFloat* stprhs, QuarnFloat* anorm, QuarnFloat* sigmax, QuarnFloat* work, const Integer* lwork, Integer* ifail) {
  tesk::call_core("F11BFF", ifail, [&](char* message_buffer, Integer* outcome, int buffer_length) { QuarnMP_f11bffn_(itn, stplhs, stprhs, anorm, sigmax, work, *lwork, message_buffer, outcome, buffer_length); });
}

void QuarnMPX_f11bff_(Integer* itn, QuarnFloat* stplhs, QuarnFloat* stprhs, QuarnFloat* anorm, QuarnFloat* sigmax, QuarnFloat* work, const Integer* lwork, Integer* ifail) {
  tesk::call_core("F11BFF", ifail, [&](char* message_buffer, Integer* outcome, int buffer_length) { QuarnMPX_f11bffn_(itn, stplhs, stprhs, anorm, sigmax, work, *lwork, message_buffer, outcome, buffer_length); });
}
}
