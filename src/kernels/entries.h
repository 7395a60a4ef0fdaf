// The level-2 and level-3 kernels under their routine codes. The selector of a master tells by which name it was
// entered; the published name is exported as another name of the routine code.
#pragma once

#include "quarn/quarnfloat.h"
#include "src/kernels/options.h"

namespace tesk {

/// Kernel names in messages are stored blank-padded to this length.
inline constexpr int kKernelNameLength = 13;

}  // namespace tesk

extern "C" {

void f06paf_ENTRY(int selector, const char* trans, Integer m, Integer n, QuarnFloat alpha, QuarnFloat* a, Integer lda,
                  QuarnFloat* x, Integer incx, QuarnFloat beta, QuarnFloat* y, Integer incy, int);
void f06paf_(const char* trans, Integer m, Integer n, QuarnFloat alpha, QuarnFloat* a, Integer lda, QuarnFloat* x,
             Integer incx, QuarnFloat beta, QuarnFloat* y, Integer incy, int);
void f06pff_ENTRY(int selector, const char* uplo, const char* trans, const char* diag, Integer n, QuarnFloat* a,
                  Integer lda, QuarnFloat* x, Integer incx, int, int, int);
void f06pff_(const char* uplo, const char* trans, const char* diag, Integer n, QuarnFloat* a, Integer lda,
             QuarnFloat* x, Integer incx, int, int, int);
void f06pjf_ENTRY(int selector, const char* uplo, const char* trans, const char* diag, Integer n, QuarnFloat* a,
                  Integer lda, QuarnFloat* x, Integer incx, int, int, int);
void f06pjf_(const char* uplo, const char* trans, const char* diag, Integer n, QuarnFloat* a, Integer lda,
             QuarnFloat* x, Integer incx, int, int, int);
void f06pmf_ENTRY(int selector, Integer m, Integer n, QuarnFloat alpha, QuarnFloat* x, Integer incx, QuarnFloat* y,
                  Integer incy, QuarnFloat* a, Integer lda);
void f06pmf_(Integer m, Integer n, QuarnFloat alpha, QuarnFloat* x, Integer incx, QuarnFloat* y, Integer incy,
             QuarnFloat* a, Integer lda);
void f06saf_ENTRY(int selector, const char* trans, Integer m, Integer n, Complex alpha, Complex* a, Integer lda,
                  Complex* x, Integer incx, Complex beta, Complex* y, Integer incy, int);
void f06saf_(const char* trans, Integer m, Integer n, Complex alpha, Complex* a, Integer lda, Complex* x, Integer incx,
             Complex beta, Complex* y, Integer incy, int);
void f06sff_ENTRY(int selector, const char* uplo, const char* trans, const char* diag, Integer n, Complex* a,
                  Integer lda, Complex* x, Integer incx, int, int, int);
void f06sff_(const char* uplo, const char* trans, const char* diag, Integer n, Complex* a, Integer lda, Complex* x,
             Integer incx, int, int, int);
void f06sjf_ENTRY(int selector, const char* uplo, const char* trans, const char* diag, Integer n, Complex* a,
                  Integer lda, Complex* x, Integer incx, int, int, int);
void f06sjf_(const char* uplo, const char* trans, const char* diag, Integer n, Complex* a, Integer lda, Complex* x,
             Integer incx, int, int, int);
void f06smf_ENTRY(int selector, Integer m, Integer n, Complex alpha, Complex* x, Integer incx, Complex* y, Integer incy,
                  Complex* a, Integer lda);
void f06smf_(Integer m, Integer n, Complex alpha, Complex* x, Integer incx, Complex* y, Integer incy, Complex* a,
             Integer lda);
void f06snf_ENTRY(int selector, Integer m, Integer n, Complex alpha, Complex* x, Integer incx, Complex* y, Integer incy,
                  Complex* a, Integer lda);
void f06snf_(Integer m, Integer n, Complex alpha, Complex* x, Integer incx, Complex* y, Integer incy, Complex* a,
             Integer lda);
void f06yaf_ENTRY(int selector, const char* transa, const char* transb, Integer m, Integer n, Integer k,
                  QuarnFloat alpha, QuarnFloat* a, Integer lda, QuarnFloat* b, Integer ldb, QuarnFloat beta,
                  QuarnFloat* c, Integer ldc, int, int);
void f06yaf_(const char* transa, const char* transb, Integer m, Integer n, Integer k, QuarnFloat alpha, QuarnFloat* a,
             Integer lda, QuarnFloat* b, Integer ldb, QuarnFloat beta, QuarnFloat* c, Integer ldc, int, int);
void f06yjf_ENTRY(int selector, const char* side, const char* uplo, const char* transa, const char* diag, Integer m,
                  Integer n, QuarnFloat alpha, QuarnFloat* a, Integer lda, QuarnFloat* b, Integer ldb, int, int, int,
                  int);
void f06yjf_(const char* side, const char* uplo, const char* transa, const char* diag, Integer m, Integer n,
             QuarnFloat alpha, QuarnFloat* a, Integer lda, QuarnFloat* b, Integer ldb, int, int, int, int);
void f06zaf_ENTRY(int selector, const char* transa, const char* transb, Integer m, Integer n, Integer k, Complex alpha,
                  Complex* a, Integer lda, Complex* b, Integer ldb, Complex beta, Complex* c, Integer ldc, int, int);
void f06zaf_(const char* transa, const char* transb, Integer m, Integer n, Integer k, Complex alpha, Complex* a,
             Integer lda, Complex* b, Integer ldb, Complex beta, Complex* c, Integer ldc, int, int);
void f06zjf_ENTRY(int selector, const char* side, const char* uplo, const char* transa, const char* diag, Integer m,
                  Integer n, Complex alpha, Complex* a, Integer lda, Complex* b, Integer ldb, int, int, int, int);
void f06zjf_(const char* side, const char* uplo, const char* transa, const char* diag, Integer m, Integer n,
             Complex alpha, Complex* a, Integer lda, Complex* b, Integer ldb, int, int, int, int);
void f06zpf_ENTRY(int selector, const char* uplo, const char* trans, Integer n, Integer k, QuarnFloat alpha, Complex* a,
                  Integer lda, QuarnFloat beta, Complex* c, Integer ldc, int, int);
void f06zpf_(const char* uplo, const char* trans, Integer n, Integer k, QuarnFloat alpha, Complex* a, Integer lda,
             QuarnFloat beta, Complex* c, Integer ldc, int, int);
}
