// Made by tools/contract.py from include/tesk2mp/incomplete.h; do not edit.
// clang-format off
#include "tesk2mp/incomplete.h"

#include <utility>

#include "src/frame/classic.h"

extern "C" {

void QuarnMP_f11daf_(const Integer* n, const Integer* nnz, QuarnFloat* a, const Integer* la, Integer* irow, Integer* icol, const Integer* lfill, const QuarnFloat* dtol, const char* pstrat, const char* milu, Integer* ipivp, Integer* ipivq, Integer* istr, Integer* idiag, Integer* nnzc, Integer* npivm, Integer* ifail, int pstrat_length, int milu_length) {
  tesk::call_core("F11DAF", ifail, [&](char* message_buffer, Integer* outcome, int buffer_length) { QuarnMP_f11dafn_(*n, *nnz, a, *la, irow, icol, *lfill, *dtol, pstrat, milu, ipivp, ipivq, istr, idiag, nnzc, npivm, message_buffer, outcome, pstrat_length, milu_length, buffer_length); });
}

void QuarnMP_f11dnf_(const Integer* n, const Integer* nnz, Complex* a, const Integer* la, Integer* irow, Integer* icol, const Integer* lfill, const QuarnFloat* dtol, const char* pstrat, const char* milu, Integer* ipivp, Integer* ipivq, Integer* istr, Integer* idiag, Integer* nnzc, Integer* npivm, Integer* ifail, int pstrat_length, int milu_length) {
  tesk::call_core("F11DNF", ifail, [&](char* message_buffer, Integer* outcome, int buffer_length) { QuarnMP_f11dnfn_(*n, *nnz, a, *la, irow, icol, *lfill, *dtol, pstrat, milu, ipivp, ipivq, istr, idiag, nnzc, npivm, message_buffer, outcome, pstrat_length, milu_length, buffer_length); });
}

void QuarnMP_f11dbf_(const char* trans, const Integer* n, const QuarnFloat* a, const Integer* la, const Integer* irow, const Integer* icol, const Integer* ipivp, const Integer* ipivq, const Integer* istr, const Integer* idiag, const char* check, const QuarnFloat* y, QuarnFloat* x, Integer* ifail, int trans_length, int check_length) {
  tesk::call_core("F11DBF", ifail, [&](char* message_buffer, Integer* outcome, int buffer_length) { QuarnMP_f11dbfn_(trans, *n, a, *la, irow, icol, ipivp, ipivq, istr, idiag, check, y, x, message_buffer, outcome, trans_length, check_length, buffer_length); });
}

void QuarnMPX_f11dbf_(const char* trans, const Integer* n, const QuarnFloat* a, const Integer* la, const Integer* irow, const Integer* icol, const Integer* ipivp, const Integer* ipivq, const Integer* istr, const Integer* idiag, const char* check, const QuarnFloat* y, QuarnFloat* x, Integer* ifail, int trans_length, int check_length) {
  tesk::call_core("F11DBF", ifail, [&](char* message_buffer, Integer* outcome, int buffer_length) { QuarnMPX_f11dbfn_(trans, *n, a, *la, irow, icol, ipivp, ipivq, istr, idiag, check, y, x, message_buffer, outcome, trans_length, check_length, buffer_length); });
}

void QuarnMP_f11dpf_(const char* trans, const Integer* n, const Complex* a, const Integer* la, const Integer* irow, const Integer* icol, const Integer* ipivp, const Integer* ipivq, const Integer* istr, const Integer* idiag, const char* check, const Complex* y, Complex* x, Integer* ifail, int trans_length, int check_length) {
  tesk::call_core("F11DPF", ifail, [&](char* message_buffer, Integer* outcome, int buffer_length) { QuarnMP_f11dpfn_(trans, *n, a, *la, irow, icol, ipivp, ipivq, istr, idiag, check, y, x, message_buffer, outcome, trans_length, check_length, buffer_length); });
}

void QuarnMPX_f11dpf_(const char* trans, const Integer* n, const Complex* a, const Integer* la, const Integer* irow, const Integer* icol, const Integer* ipivp, const Integer* ipivq, const Integer* istr, const Integer* idiag, const char* check, const Complex* y, Complex* x, Integer* ifail, int trans_length, int check_length) {
  tesk::call_core("F11DPF", ifail, [&](char* message_buffer, Integer* outcome, int buffer_length) { QuarnMPX_f11dpfn_(trans, *n, a, *la, irow, icol, ipivp, ipivq, istr, idiag, check, y, x, message_buffer, outcome, trans_length, check_length, buffer_length); });
}

void QuarnMP_f11jaf_(const Integer* n, const Integer* nnz, QuarnFloat* a, const Integer* la, Integer* irow, Integer* icol, const Integer* lfill, const QuarnFloat* dtol, const char* mic, const QuarnFloat* dscale, const char* pstrat, Integer* ipiv, Integer* istr, Integer* nnzc, Integer* npivm, Integer* ifail, int mic_length, int pstrat_length) {
  tesk::call_core("F11JAF", ifail, [&](char* message_buffer, Integer* outcome, int buffer_length) { QuarnMP_f11jafn_(*n, *nnz, a, *la, irow, icol, *lfill, *dtol, mic, *dscale, pstrat, ipiv, istr, nnzc, npivm, message_buffer, outcome, mic_length, pstrat_length, buffer_length); });
}

void QuarnMP_f11jnf_(const Integer* n, const Integer* nnz, Complex* a, const Integer* la, Integer* irow, Integer* icol, const Integer* lfill, const QuarnFloat* dtol, const char* mic, const QuarnFloat* dscale, const char* pstrat, Integer* ipiv, Integer* istr, Integer* nnzc, Integer* npivm, Integer* ifail, int mic_length, int pstrat_length) {
  tesk::call_core("F11JNF", ifail, [&](char* message_buffer, Integer* outcome, int buffer_length) { QuarnMP_f11jnfn_(*n, *nnz, a, *la, irow, icol, *lfill, *dtol, mic, *dscale, pstrat, ipiv, istr, nnzc, npivm, message_buffer, outcome, mic_length, pstrat_length, buffer_length); });
}

void QuarnMP_f11jbf_(const Integer* n, const QuarnFloat* a, const Integer* la, const Integer* irow, const Integer* icol, const Integer* ipiv, const Integer* istr, const char* check, const QuarnFloat* y, QuarnFloat* x, Integer* ifail, int check_length) {
  tesk::call_core("F11JBF", ifail, [&](char* message_buffer, Integer* outcome, int buffer_length) { QuarnMP_f11jbfn_(*n, a, *la, irow, icol, ipiv, istr, check, y, x, message_buffer, outcome, check_length, buffer_length); });
}

void QuarnMPX_f11jbf_(const Integer* n, const QuarnFloat* a, const Integer* la, const Integer* irow, const Integer* icol, const Integer* ipiv, const Integer* istr, const char* check, const QuarnFloat* y, QuarnFloat* x, Integer* ifail, int check_length) {
  tesk::call_core("F11JBF", ifail, [&](char* message_buffer, Integer* outcome, int buffer_length) { QuarnMPX_f11jbfn_(*n, a, *la, irow, icol, ipiv, istr, check, y, x, message_buffer, outcome, check_length, buffer_length); });
}

void QuarnMP_f11jpf_(const Integer* n, const Complex* a, const Integer* la, const Integer* irow, const Integer* icol, const Integer* ipiv, const Integer* istr, const char* check, const Complex* y, Complex* x, Integer* ifail, int check_length) {
  tesk::call_core("F11JPF", ifail, [&](char* message_buffer, Integer* outcome, int buffer_length) { QuarnMP_f11jpfn_(*n, a, *la, irow, icol, ipiv, istr, check, y, x, message_buffer, outcome, check_length, buffer_length); });
}

void QuarnMPX_f11jpf_(const Integer* n, const Complex* a, const Integer* la, const Integer* irow, const Integer* icol, const Integer* ipiv, const Integer* istr, const char* check, const Complex* y, Complex* x, Integer* ifail, int check_length) {
  tesk::call_core("F11JPF", ifail, [&](char* message_buffer, Integer* outcome, int buffer_length) { QuarnMPX_f11jpfn_(*n, a, *la, irow, icol, ipiv, istr, check, y, x, message_buffer, outcome, check_length, buffer_length); });
}

void QuarnMP_f11dcf_(const char* method, const Integer* n, const Integer* nnz, const QuarnFloat* a, const Integer* la, const Integer* irow, const Integer* icol, const Integer* ipivp, const Integer* ipivq, const Integer* istr, const Integer* idiag, const QuarnFloat* b, const Integer* m, const QuarnFloat* tol, const Integer* maxitn, QuarnFloat* x, QuarnFloat* rnorm, Integer* itn, Integer* ifail, int method_length) {
  tesk::call_core("F11DCF", ifail, [&](char* message_buffer, Integer* outcome, int buffer_length) { QuarnMP_f11dcfn_(method, *n, *nnz, a, *la, irow, icol, ipivp, ipivq, istr, idiag, b, *m, *tol, *maxitn, x, rnorm, itn, message_buffer, outcome, method_length, buffer_length); });
}

void QuarnMP_f11dqf_(const char* method, const Integer* n, const Integer* nnz, const Complex* a, const Integer* la, const Integer* irow, const Integer* icol, const Integer* ipivp, const Integer* ipivq, const Integer* istr, const Integer* idiag, const Complex* b, const Integer* m, const QuarnFloat* tol, const Integer* maxitn, Complex* x, QuarnFloat* rnorm, Integer* itn, Integer* ifail, int method_length) {
  tesk::call_core("F11DQF", ifail, [&](char* message_buffer, Integer* outcome, int buffer_length) { QuarnMP_f11dqfn_(method, *n, *nnz, a, *la, irow, icol, ipivp, ipivq, istr, idiag, b, *m, *tol, *maxitn, x, rnorm, itn, message_buffer, outcome, method_length, buffer_length); });
}

void QuarnMP_f11jqf_(const char* method, const Integer* n, const Integer* nnz, const Complex* a, const Integer* la, const Integer* irow, const Integer* icol, const Integer* ipiv, const Integer* istr, const Complex* b, const QuarnFloat* tol, const Integer* maxitn, Complex* x, QuarnFloat* rnorm, Integer* itn, Integer* ifail, int method_length) {
  tesk::call_core("F11JQF", ifail, [&](char* message_buffer, Integer* outcome, int buffer_length) { QuarnMP_f11jqfn_(method, *n, *nnz, a, *la, irow, icol, ipiv, istr, b, *tol, *maxitn, x, rnorm, itn, message_buffer, outcome, method_length, buffer_length); });
}
}
