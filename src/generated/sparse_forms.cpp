// Made by tools/contract.py from include/tesk2mp/sparse.h; do not edit.
// clang-format off
#include "tesk2mp/sparse.h"

#include <utility>

#include "src/frame/classic.h"

extern "C" {

void QuarnMP_f11zaf_(const Integer* n, Integer* nnz, QuarnFloat* a, Integer* irow, Integer* icol, const char* dup, const char* zero, Integer* istr, Integer* iwork, Integer* ifail, int dup_length, int zero_length) {
  tesk::call_core("F11ZAF", ifail, [&](char* message_buffer, Integer* outcome, int buffer_length) { QuarnMP_f11zafn_(*n, nnz, a, irow, icol, dup, zero, istr, iwork, message_buffer, outcome, dup_length, zero_length, buffer_length); });
}

void QuarnMPX_f11zaf_(const Integer* n, Integer* nnz, QuarnFloat* a, Integer* irow, Integer* icol, const char* dup, const char* zero, Integer* istr, Integer* iwork, Integer* ifail, int dup_length, int zero_length) {
  tesk::call_core("F11ZAF", ifail, [&](char* message_buffer, Integer* outcome, int buffer_length) { QuarnMPX_f11zafn_(*n, nnz, a, irow, icol, dup, zero, istr, iwork, message_buffer, outcome, dup_length, zero_length, buffer_length); });
}

void QuarnMP_f11znf_(const Integer* n, Integer* nnz, Complex* a, Integer* irow, Integer* icol, const char* dup, const char* zero, Integer* istr, Integer* iwork, Integer* ifail, int dup_length, int zero_length) {
  tesk::call_core("F11ZNF", ifail, [&](char* message_buffer, Integer* outcome, int buffer_length) { QuarnMP_f11znfn_(*n, nnz, a, irow, icol, dup, zero, istr, iwork, message_buffer, outcome, dup_length, zero_length, buffer_length); });
}

void QuarnMPX_f11znf_(const Integer* n, Integer* nnz, Complex* a, Integer* irow, Integer* icol, const char* dup, const char* zero, Integer* istr, Integer* iwork, Integer* ifail, int dup_length, int zero_length) {
  tesk::call_core("F11ZNF", ifail, [&](char* message_buffer, Integer* outcome, int buffer_length) { QuarnMPX_f11znfn_(*n, nnz, a, irow, icol, dup, zero, istr, iwork, message_buffer, outcome, dup_length, zero_length, buffer_length); });
}

void QuarnMPX_f11zbf_(const Integer* n, Integer* nnz, QuarnFloat* a, Integer* irow, Integer* icol, const char* dup, const char* zero, Integer* istr, Integer* iwork, Integer* ifail, int dup_length, int zero_length) {
  tesk::call_core("F11ZBF", ifail, [&](char* message_buffer, Integer* outcome, int buffer_length) { QuarnMPX_f11zbfn_(*n, nnz, a, irow, icol, dup, zero, istr, iwork, message_buffer, outcome, dup_length, zero_length, buffer_length); });
}

void QuarnMP_f11zpf_(const Integer* n, Integer* nnz, Complex* a, Integer* irow, Integer* icol, const char* dup, const char* zero, Integer* istr, Integer* iwork, Integer* ifail, int dup_length, int zero_length) {
  tesk::call_core("F11ZPF", ifail, [&](char* message_buffer, Integer* outcome, int buffer_length) { QuarnMP_f11zpfn_(*n, nnz, a, irow, icol, dup, zero, istr, iwork, message_buffer, outcome, dup_length, zero_length, buffer_length); });
}

void QuarnMPX_f11zpf_(const Integer* n, Integer* nnz, Complex* a, Integer* irow, Integer* icol, const char* dup, const char* zero, Integer* istr, Integer* iwork, Integer* ifail, int dup_length, int zero_length) {
  tesk::call_core("F11ZPF", ifail, [&](char* message_buffer, Integer* outcome, int buffer_length) { QuarnMPX_f11zpfn_(*n, nnz, a, irow, icol, dup, zero, istr, iwork, message_buffer, outcome, dup_length, zero_length, buffer_length); });
}

void QuarnMP_f11xaf_(const char* trans, const Integer* n, const Integer* nnz, const QuarnFloat* a, const Integer* irow, const Integer* icol, const char* check, const QuarnFloat* x, QuarnFloat* y, Integer* ifail, int trans_length, int check_length) {
  tesk::call_core("F11XAF", ifail, [&](char* message_buffer, Integer* outcome, int buffer_length) { QuarnMP_f11xafn_(trans, *n, *nnz, a, irow, icol, check, x, y, message_buffer, outcome, trans_length, check_length, buffer_length); });
}

void QuarnMPX_f11xaf_(const char* trans, const Integer* n, const Integer* nnz, const QuarnFloat* a, const Integer* irow, const Integer* icol, const char* check, const QuarnFloat* x, QuarnFloat* y, Integer* ifail, int trans_length, int check_length) {
  tesk::call_core("F11XAF", ifail, [&](char* message_buffer, Integer* outcome, int buffer_length) { QuarnMPX_f11xafn_(trans, *n, *nnz, a, irow, icol, check, x, y, message_buffer, outcome, trans_length, check_length, buffer_length); });
}

void QuarnMP_f11xnf_(const char* trans, const Integer* n, const Integer* nnz, const Complex* a, const Integer* irow, const Integer* icol, const char* check, const Complex* x, Complex* y, Integer* ifail, int trans_length, int check_length) {
  tesk::call_core("F11XNF", ifail, [&](char* message_buffer, Integer* outcome, int buffer_length) { QuarnMP_f11xnfn_(trans, *n, *nnz, a, irow, icol, check, x, y, message_buffer, outcome, trans_length, check_length, buffer_length); });
}

void QuarnMPX_f11xnf_(const char* trans, const Integer* n, const Integer* nnz, const Complex* a, const Integer* irow, const Integer* icol, const char* check, const Complex* x, Complex* y, Integer* ifail, int trans_length, int check_length) {
  tesk::call_core("F11XNF", ifail, [&](char* message_buffer, Integer* outcome, int buffer_length) { QuarnMPX_f11xnfn_(trans, *n, *nnz, a, irow, icol, check, x, y, message_buffer, outcome, trans_length, check_length, buffer_length); });
}

void QuarnMP_f11xef_(const Integer* n, const Integer* nnz, const QuarnFloat* a, const Integer* irow, const Integer* icol, const char* check, const QuarnFloat* x, QuarnFloat* y, Integer* ifail, int check_length) {
  tesk::call_core("F11XEF", ifail, [&](char* message_buffer, Integer* outcome, int buffer_length) { QuarnMP_f11xefn_(*n, *nnz, a, irow, icol, check, x, y, message_buffer, outcome, check_length, buffer_length); });
}

void QuarnMPX_f11xef_(const Integer* n, const Integer* nnz, const QuarnFloat* a, const Integer* irow, const Integer* icol, const char* check, const QuarnFloat* x, QuarnFloat* y, Integer* ifail, int check_length) {
  tesk::call_core("F11XEF", ifail, [&](char* message_buffer, Integer* outcome, int buffer_length) { QuarnMPX_f11xefn_(*n, *nnz, a, irow, icol, check, x, y, message_buffer, outcome, check_length, buffer_length); });
}

void QuarnMP_f11xsf_(const Integer* n, const Integer* nnz, const Complex* a, const Integer* irow, const Integer* icol, const char* check, const Complex* x, Complex* y, Integer* ifail, int check_length) {
  tesk::call_core("F11XSF", ifail, [&](char* message_buffer, Integer* outcome, int buffer_length) { QuarnMP_f11xsfn_(*n, *nnz, a, irow, icol, check, x, y, message_buffer, outcome, check_length, buffer_length); });
}

void QuarnMPX_f11xsf_(const Integer* n, const Integer* nnz, const Complex* a, const Integer* irow, const Integer* icol, const char* check, const Complex* x, Complex* y, Integer* ifail, int check_length) {
  tesk::call_core("F11XSF", ifail, [&](char* message_buffer, Integer* outcome, int buffer_length) { QuarnMPX_f11xsfn_(*n, *nnz, a, irow, icol, check, x, y, message_buffer, outcome, check_length, buffer_length); });
}
}
