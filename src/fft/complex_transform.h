// The complex transforms: entries. Lengths of texts come last, in the order of the texts, the message buffer's after
// them. Each has a companion, _full_, with constants true to the working precision.
#pragma once

#include "quarn/quarnfloat.h"

extern "C" {

void c06pcf_(const char* direct, Complex* x, const Integer* n, Complex* work, Integer* ifail, int direct_length);
void c06pcfn_(const char* direct, Complex* x, Integer n, Complex* work, char* message_buffer, Integer* ifail,
              int direct_length, int buffer_length);
void c06pcqn_(const char* direct, Complex* x, Integer n, Complex* work, Integer* ifail, int direct_length);
void c06pczn_(const char* direct, Integer n, Complex* x, Complex* work, Integer* ifail, int direct_length);
void c06ncwn_(Integer n, Complex* x, Complex* scratch, const Complex* table, Integer count, const Integer* factors);
void c06ncvn_(Integer length, Integer blocks, const Complex* source, Complex* target, const Complex* table);
void c06ncun_(Integer length, Integer blocks, const Complex* source, Complex* target, const Complex* table);
void c06nctn_(Integer length, Integer blocks, const Complex* source, Complex* target, const Complex* table);
void c06ncsn_(Integer length, Integer blocks, const Complex* source, Complex* target, const Complex* table);
void c06prf_(const char* direct, const Integer* m, const Integer* n, Complex* x, Complex* work, Integer* ifail,
             int direct_length);
void c06prfn_(const char* direct, Integer m, Integer n, Complex* x, Complex* work, char* message_buffer, Integer* ifail,
              int direct_length, int buffer_length);
void c06prqn_(const char* direct, Integer m, Integer n, Complex* x, Complex* work, Integer* ifail, int direct_length);
void c06przn_(const char* direct, Integer m, Integer n, Complex* x, Complex* work, Integer* ifail, int direct_length);
void c06prwn_(const char* direct, Integer m, Integer n, Complex* x, Complex* work, Integer* ifail, int direct_length);
void c06prxn_(const char* direct, Integer m, Integer n, Complex* x, Complex* work, Integer* ifail, int direct_length);
void c06psfn_(const char* direct, Integer m, Integer n, Complex* x, Complex* work, char* message_buffer, Integer* ifail,
              int direct_length, int buffer_length);
void c06psqn_(const char* direct, Integer m, Integer n, Complex* x, Complex* work, Integer* ifail, int direct_length);
void c06pszn_(const char* direct, Integer m, Integer n, Complex* x, Complex* work, Integer* ifail, int direct_length);
void c06psxn_(const char* direct, Integer m, Integer n, Complex* x, Complex* work, Integer* ifail, int direct_length);
void c06pff_(const char* direct, const Integer* ndim, const Integer* l, const Integer* nd, const Integer* n, Complex* x,
             Complex* work, const Integer* lwork, Integer* ifail, int direct_length);
void c06pffn_(Integer query, const char* direct, Integer ndim, Integer l, const Integer* nd, Integer n, Complex* x,
              Complex* work, Integer lwork, char* message_buffer, Integer* ifail, int direct_length, int buffer_length);
void c06pfzn_(const char* direct, Complex* x, Integer before, Integer n, Integer after, Complex* work, Integer* ifail,
              int direct_length);
void c06pjf_(const char* direct, const Integer* ndim, const Integer* nd, const Integer* n, Complex* x, Complex* work,
             const Integer* lwork, Integer* ifail, int direct_length);
void c06pjfn_(Integer query, const char* direct, Integer ndim, const Integer* nd, Integer n, Complex* x, Complex* work,
              Integer lwork, char* message_buffer, Integer* ifail, int direct_length, int buffer_length);

void c06pcf_full_(const char* direct, Complex* x, const Integer* n, Complex* work, Integer* ifail, int direct_length);
void c06pcfn_full_(const char* direct, Complex* x, Integer n, Complex* work, char* message_buffer, Integer* ifail,
                   int direct_length, int buffer_length);
void c06pcqn_full_(const char* direct, Complex* x, Integer n, Complex* work, Integer* ifail, int direct_length);
void c06pczn_full_(const char* direct, Integer n, Complex* x, Complex* work, Integer* ifail, int direct_length);
void c06ncwn_full_(Integer n, Complex* x, Complex* scratch, const Complex* table, Integer count,
                   const Integer* factors);
void c06ncun_full_(Integer length, Integer blocks, const Complex* source, Complex* target, const Complex* table);
void c06ncsn_full_(Integer length, Integer blocks, const Complex* source, Complex* target, const Complex* table);
void c06prf_full_(const char* direct, const Integer* m, const Integer* n, Complex* x, Complex* work, Integer* ifail,
                  int direct_length);
void c06prfn_full_(const char* direct, Integer m, Integer n, Complex* x, Complex* work, char* message_buffer,
                   Integer* ifail, int direct_length, int buffer_length);
void c06prqn_full_(const char* direct, Integer m, Integer n, Complex* x, Complex* work, Integer* ifail,
                   int direct_length);
void c06przn_full_(const char* direct, Integer m, Integer n, Complex* x, Complex* work, Integer* ifail,
                   int direct_length);
void c06prwn_full_(const char* direct, Integer m, Integer n, Complex* x, Complex* work, Integer* ifail,
                   int direct_length);
void c06prxn_full_(const char* direct, Integer m, Integer n, Complex* x, Complex* work, Integer* ifail,
                   int direct_length);
void c06psfn_full_(const char* direct, Integer m, Integer n, Complex* x, Complex* work, char* message_buffer,
                   Integer* ifail, int direct_length, int buffer_length);
void c06psqn_full_(const char* direct, Integer m, Integer n, Complex* x, Complex* work, Integer* ifail,
                   int direct_length);
void c06pszn_full_(const char* direct, Integer m, Integer n, Complex* x, Complex* work, Integer* ifail,
                   int direct_length);
void c06psxn_full_(const char* direct, Integer m, Integer n, Complex* x, Complex* work, Integer* ifail,
                   int direct_length);
void c06pff_full_(const char* direct, const Integer* ndim, const Integer* l, const Integer* nd, const Integer* n,
                  Complex* x, Complex* work, const Integer* lwork, Integer* ifail, int direct_length);
void c06pffn_full_(Integer query, const char* direct, Integer ndim, Integer l, const Integer* nd, Integer n, Complex* x,
                   Complex* work, Integer lwork, char* message_buffer, Integer* ifail, int direct_length,
                   int buffer_length);
void c06pfzn_full_(const char* direct, Complex* x, Integer before, Integer n, Integer after, Complex* work,
                   Integer* ifail, int direct_length);
void c06pjf_full_(const char* direct, const Integer* ndim, const Integer* nd, const Integer* n, Complex* x,
                  Complex* work, const Integer* lwork, Integer* ifail, int direct_length);
void c06pjfn_full_(Integer query, const char* direct, Integer ndim, const Integer* nd, Integer n, Complex* x,
                   Complex* work, Integer lwork, char* message_buffer, Integer* ifail, int direct_length,
                   int buffer_length);
}
