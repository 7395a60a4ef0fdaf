// The general iterative solver: set-up, iteration by reverse communication, progress. Lengths of texts come last, in
// the order of the texts, the message buffer's after them.
#pragma once

#include "quarn/quarnfloat.h"

extern "C" {

void f11bdf_(const char* method, const char* precon, const char* norm, const char* weight, const Integer* iterm,
             const Integer* n, const Integer* m, const QuarnFloat* tol, const Integer* maxitn, const QuarnFloat* anorm,
             const QuarnFloat* sigmax, const Integer* monit, Integer* lwreq, QuarnFloat* work, const Integer* lwork,
             Integer* ifail, int method_length, int precon_length, int norm_length, int weight_length);
void f11bdfn_(const char* method, const char* precon, const char* norm, const char* weight, Integer iterm, Integer n,
              Integer m, QuarnFloat tol, Integer maxitn, QuarnFloat anorm, QuarnFloat sigmax, Integer monit,
              Integer* lwreq, QuarnFloat* work, Integer lwork, char* message_buffer, Integer* ifail, int method_length,
              int precon_length, int norm_length, int weight_length, int buffer_length);

void f11bef_(Integer* irevcm, QuarnFloat* u, QuarnFloat* v, QuarnFloat* wgt, QuarnFloat* work, const Integer* lwork,
             Integer* ifail);
void f11befn_(Integer* irevcm, QuarnFloat* u, QuarnFloat* v, QuarnFloat* wgt, QuarnFloat* work, Integer lwork,
              char* message_buffer, Integer* ifail, int buffer_length);

void f11bff_(Integer* itn, QuarnFloat* stplhs, QuarnFloat* stprhs, QuarnFloat* anorm, QuarnFloat* sigmax,
             QuarnFloat* work, const Integer* lwork, Integer* ifail);
void f11bffn_(Integer* itn, QuarnFloat* stplhs, QuarnFloat* stprhs, QuarnFloat* anorm, QuarnFloat* sigmax,
              QuarnFloat* work, Integer lwork, char* message_buffer, Integer* ifail, int buffer_length);

// The steps of the methods: RGMRES, CGS, BICGSTAB, TFQMR. *info is the length of WORK on entry; on exit 0, the number
// of F11BEF's failure, or -k when its argument k is wrong.
void f11bezn_(Integer* irevcm, QuarnFloat* work, QuarnFloat* u, QuarnFloat* v, QuarnFloat* wgt, Integer* info);
void f11betn_(Integer* irevcm, QuarnFloat* work, QuarnFloat* u, QuarnFloat* v, QuarnFloat* wgt, Integer* info);
void f11bepn_(Integer* irevcm, QuarnFloat* work, QuarnFloat* u, QuarnFloat* v, QuarnFloat* wgt, Integer* info);
void f11beln_(Integer* irevcm, QuarnFloat* work, QuarnFloat* u, QuarnFloat* v, QuarnFloat* wgt, Integer* info);
}
