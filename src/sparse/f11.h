// Sparse matrices in coordinate storage: canonical form and products. Lengths of texts come last, in the order of the
// texts, the message buffer's after them.
#pragma once

#include "quarn/quarnfloat.h"

extern "C" {

void f11zaf_(const Integer* n, Integer* nnz, QuarnFloat* a, Integer* irow, Integer* icol, const char* dup,
             const char* zero, Integer* istr, Integer* iwork, Integer* ifail, int dup_length, int zero_length);
void f11zafn_(Integer n, Integer* nnz, QuarnFloat* a, Integer* irow, Integer* icol, const char* dup, const char* zero,
              Integer* istr, Integer* iwork, char* message_buffer, Integer* ifail, int dup_length, int zero_length,
              int buffer_length);
void f11zbfn_(Integer n, Integer* nnz, QuarnFloat* a, Integer* irow, Integer* icol, const char* dup, const char* zero,
              Integer* istr, Integer* iwork, char* message_buffer, Integer* ifail, int dup_length, int zero_length,
              int buffer_length);
void f11znf_(const Integer* n, Integer* nnz, Complex* a, Integer* irow, Integer* icol, const char* dup,
             const char* zero, Integer* istr, Integer* iwork, Integer* ifail, int dup_length, int zero_length);
void f11znfn_(Integer n, Integer* nnz, Complex* a, Integer* irow, Integer* icol, const char* dup, const char* zero,
              Integer* istr, Integer* iwork, char* message_buffer, Integer* ifail, int dup_length, int zero_length,
              int buffer_length);
void f11zpf_(const Integer* n, Integer* nnz, Complex* a, Integer* irow, Integer* icol, const char* dup,
             const char* zero, Integer* istr, Integer* iwork, Integer* ifail, int dup_length, int zero_length);
void f11zpfn_(Integer n, Integer* nnz, Complex* a, Integer* irow, Integer* icol, const char* dup, const char* zero,
              Integer* istr, Integer* iwork, char* message_buffer, Integer* ifail, int dup_length, int zero_length,
              int buffer_length);

void f11xaf_(const char* trans, const Integer* n, const Integer* nnz, const QuarnFloat* a, const Integer* irow,
             const Integer* icol, const char* check, const QuarnFloat* x, QuarnFloat* y, Integer* ifail,
             int trans_length, int check_length);
void f11xafn_(const char* trans, Integer n, Integer nnz, const QuarnFloat* a, const Integer* irow, const Integer* icol,
              const char* check, const QuarnFloat* x, QuarnFloat* y, char* message_buffer, Integer* ifail,
              int trans_length, int check_length, int buffer_length);
void f11xnf_(const char* trans, const Integer* n, const Integer* nnz, const Complex* a, const Integer* irow,
             const Integer* icol, const char* check, const Complex* x, Complex* y, Integer* ifail, int trans_length,
             int check_length);
void f11xnfn_(const char* trans, Integer n, Integer nnz, const Complex* a, const Integer* irow, const Integer* icol,
              const char* check, const Complex* x, Complex* y, char* message_buffer, Integer* ifail, int trans_length,
              int check_length, int buffer_length);
void f11xef_(const Integer* n, const Integer* nnz, const QuarnFloat* a, const Integer* irow, const Integer* icol,
             const char* check, const QuarnFloat* x, QuarnFloat* y, Integer* ifail, int check_length);
void f11xefn_(Integer n, Integer nnz, const QuarnFloat* a, const Integer* irow, const Integer* icol, const char* check,
              const QuarnFloat* x, QuarnFloat* y, char* message_buffer, Integer* ifail, int check_length,
              int buffer_length);
void f11xsf_(const Integer* n, const Integer* nnz, const Complex* a, const Integer* irow, const Integer* icol,
             const char* check, const Complex* x, Complex* y, Integer* ifail, int check_length);
void f11xsfn_(Integer n, Integer nnz, const Complex* a, const Integer* irow, const Integer* icol, const char* check,
              const Complex* x, Complex* y, char* message_buffer, Integer* ifail, int check_length, int buffer_length);
}
