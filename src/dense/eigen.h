// Eigenvalues of real matrices: balancing, the QR algorithm on Hessenberg matrices, eigenvectors and condition numbers
// of the Schur form. INFO as in the factorisations; nothing is printed.
#pragma once

#include "quarn/quarnfloat.h"

extern "C" {

void f08nhf_(const char* job, Integer n, QuarnFloat* a, Integer lda, Integer* ilo, Integer* ihi, QuarnFloat* scale,
             Integer* info, int job_length);

void f08pef_(const char* job, const char* compz, Integer n, Integer ilo, Integer ihi, QuarnFloat* h, Integer ldh,
             QuarnFloat* wr, QuarnFloat* wi, QuarnFloat* z, Integer ldz, QuarnFloat* work, Integer lwork, Integer* info,
             int job_length, int compz_length);
void f08pef_ENTRY(int selector, const char* job, const char* compz, Integer n, Integer ilo, Integer ihi, QuarnFloat* h,
                  Integer ldh, QuarnFloat* wr, QuarnFloat* wi, QuarnFloat* z, Integer ldz, QuarnFloat* work,
                  Integer lwork, Integer* info, int job_length, int compz_length);

/// The double-shift kernel: no checks.
void f08pez_(unsigned wantt, unsigned wantz, Integer n, Integer ilo, Integer ihi, QuarnFloat* h, Integer ldh,
             QuarnFloat* wr, QuarnFloat* wi, Integer iloz, Integer ihiz, QuarnFloat* z, Integer ldz, Integer* info);

void f08qkf_(const char* side, const char* howmny, Integer* select, Integer n, QuarnFloat* t, Integer ldt,
             QuarnFloat* vl, Integer ldvl, QuarnFloat* vr, Integer ldvr, Integer mm, Integer* m, QuarnFloat* work,
             Integer* info, int side_length, int howmny_length);

void f08qlf_(const char* job, const char* howmny, Integer* select, Integer n, QuarnFloat* t, Integer ldt,
             QuarnFloat* vl, Integer ldvl, QuarnFloat* vr, Integer ldvr, QuarnFloat* s, QuarnFloat* sep, Integer mm,
             Integer* m, QuarnFloat* work, Integer ldwork, Integer* iwork, Integer* info, int job_length,
             int howmny_length);
}
