// The reference BLAS and LAPACK in double precision, as far as they are compared with.
#pragma once

#include <complex>

extern "C" {

using C16 = std::complex<double>;

void drotg_(double*, double*, double*, double*);
double dnrm2_(const int*, const double*, const int*);
void zdscal_(const int*, const double*, C16*, const int*);

void dgemv_(const char*, const int*, const int*, const double*, const double*, const int*, const double*, const int*,
            const double*, double*, const int*, int);
void zgemv_(const char*, const int*, const int*, const C16*, const C16*, const int*, const C16*, const int*, const C16*,
            C16*, const int*, int);
void dtrmv_(const char*, const char*, const char*, const int*, const double*, const int*, double*, const int*, int, int,
            int);
void ztrmv_(const char*, const char*, const char*, const int*, const C16*, const int*, C16*, const int*, int, int, int);
void dtrsv_(const char*, const char*, const char*, const int*, const double*, const int*, double*, const int*, int, int,
            int);
void ztrsv_(const char*, const char*, const char*, const int*, const C16*, const int*, C16*, const int*, int, int, int);
void dger_(const int*, const int*, const double*, const double*, const int*, const double*, const int*, double*,
           const int*);
void zgeru_(const int*, const int*, const C16*, const C16*, const int*, const C16*, const int*, C16*, const int*);
void zgerc_(const int*, const int*, const C16*, const C16*, const int*, const C16*, const int*, C16*, const int*);

void dgemm_(const char*, const char*, const int*, const int*, const int*, const double*, const double*, const int*,
            const double*, const int*, const double*, double*, const int*, int, int);
void zgemm_(const char*, const char*, const int*, const int*, const int*, const C16*, const C16*, const int*,
            const C16*, const int*, const C16*, C16*, const int*, int, int);
void dtrsm_(const char*, const char*, const char*, const char*, const int*, const int*, const double*, const double*,
            const int*, double*, const int*, int, int, int, int);
void ztrsm_(const char*, const char*, const char*, const char*, const int*, const int*, const C16*, const C16*,
            const int*, C16*, const int*, int, int, int, int);
void zherk_(const char*, const char*, const int*, const int*, const double*, const C16*, const int*, const double*,
            C16*, const int*, int, int);

double dlange_(const char*, const int*, const int*, const double*, const int*, double*, int);
double zlange_(const char*, const int*, const int*, const C16*, const int*, double*, int);
double dlanhs_(const char*, const int*, const double*, const int*, double*, int);
double zlanhs_(const char*, const int*, const C16*, const int*, double*, int);

void dgetrf_(const int*, const int*, double*, const int*, int*, int*);
void zgetrf_(const int*, const int*, C16*, const int*, int*, int*);
void zpotrf_(const char*, const int*, C16*, const int*, int*, int);
void dgebal_(const char*, const int*, double*, const int*, int*, int*, double*, int*, int);
void dhseqr_(const char*, const char*, const int*, const int*, const int*, double*, const int*, double*, double*,
             double*, const int*, double*, const int*, int*, int, int);
void dtrevc_(const char*, const char*, const int*, const int*, const double*, const int*, double*, const int*, double*,
             const int*, const int*, int*, double*, int*, int, int);
void dtrsna_(const char*, const char*, const int*, const int*, const double*, const int*, const double*, const int*,
             const double*, const int*, double*, double*, const int*, int*, double*, const int*, int*, int*, int, int);

void dsygv_(const int*, const char*, const char*, const int*, double*, const int*, double*, const int*, double*,
            double*, const int*, int*, int, int);
void zhegv_(const int*, const char*, const char*, const int*, C16*, const int*, C16*, const int*, double*, C16*,
            const int*, double*, int*, int, int);
void dstebz_(const char*, const char*, const int*, const double*, const double*, const int*, const int*, const double*,
             const double*, const double*, int*, int*, double*, int*, int*, double*, int*, int*, int, int);
void dstein_(const int*, const double*, const double*, const int*, const double*, const int*, const int*, double*,
             const int*, double*, int*, int*, int*);
void dstedc_(const char*, const int*, double*, double*, double*, const int*, double*, const int*, int*, const int*,
             int*, int);
void dggev_(const char*, const char*, const int*, double*, const int*, double*, const int*, double*, double*, double*,
            double*, const int*, double*, const int*, double*, const int*, int*, int, int);
void zggev_(const char*, const char*, const int*, C16*, const int*, C16*, const int*, C16*, C16*, C16*, const int*,
            C16*, const int*, C16*, const int*, double*, int*, int, int);
void dtrsyl_(const char*, const char*, const int*, const int*, const int*, const double*, const int*, const double*,
             const int*, double*, const int*, double*, int*, int, int);
void ztrsyl_(const char*, const char*, const int*, const int*, const int*, const C16*, const int*, const C16*,
             const int*, C16*, const int*, double*, int*, int, int);
void dtrexc_(const char*, const int*, double*, const int*, double*, const int*, int*, int*, double*, int*, int);
void dtrsen_(const char*, const char*, const int*, const int*, double*, const int*, double*, const int*, double*,
             double*, int*, double*, double*, double*, const int*, int*, const int*, int*, int, int);
void dgelsy_(const int*, const int*, const int*, double*, const int*, double*, const int*, int*, const double*, int*,
             double*, const int*, int*);
void dgglse_(const int*, const int*, const int*, double*, const int*, double*, const int*, double*, double*, double*,
             double*, const int*, int*);
void dggglm_(const int*, const int*, const int*, double*, const int*, double*, const int*, double*, double*, double*,
             double*, const int*, int*);
void dsytrf_(const char*, const int*, double*, const int*, int*, double*, const int*, int*, int);
void dgeqp3_(const int*, const int*, double*, const int*, int*, double*, double*, const int*, int*);
}
