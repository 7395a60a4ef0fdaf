// Vector and matrix kernels.
//
// Each follows the published algorithm of its published name, in its order of operations. Level 2 and 3: a wrong
// argument is always fatal: the routine's name and the argument's position are printed and the process ends with exit
// status 0. Of an option text the first character is read, in either case; its length argument is not used. An
// increment may be negative (the vector is walked from its far end) but not zero. Each kernel has three names of one
// meaning: its routine code, its published name, and the master of both, whose selector changes nothing.
#pragma once

#include "quarn/quarnfloat.h"
#include "tesk2mp/api.h"

// Numbers are returned by value: both sides are C++, which C linkage alone does not tell clang.
#if defined(__clang__)
#pragma clang diagnostic push
#pragma clang diagnostic ignored "-Wreturn-type-c-linkage"
#endif

TESK2MP_NAMES_BEGIN
extern "C" {

// Level 1: a count below 1 does nothing -----------------------------------------------------------------------------

/// @defgroup f06aaf plane rotation
///
/// DROTG: the plane rotation c, s with c a + s b = r and -s a + c b = 0. *a becomes r, *b the one number that gives c
/// and s again: s when |a| > |b|, else 1/c, or 1 when c = 0.
///
/// @param[in,out] a in a, out r
/// @param[in,out] b in b, out the number that gives c and s
/// @param[out] c cosine and sine, |c|, |s| <= 1
/// @param[out] s cosine and sine, |c|, |s| <= 1
///
/// @par Source
/// C. L. Lawson, R. J. Hanson, D. R. Kincaid, F. T. Krogh, Basic linear algebra subprograms for Fortran usage, ACM
/// Trans. Math. Softw. 5 (1979): DROTG.
///
/// @par Cost
/// One square root and a few operations.
/// @{
TESK2MP_API void QuarnMP_f06aaf_(QuarnFloat* a, QuarnFloat* b, QuarnFloat* c, QuarnFloat* s);
/// @}

/// @defgroup f06caf complex vector times real factor
///
/// ZDSCAL: x := alpha x, complex x, real alpha.
///
/// @param[in] n elements of x; below 1 nothing is done
/// @param[in] alpha the factor
/// @param[in,out] x n elements, |incx| apart, replaced by alpha x
/// @param[in] incx step through x; negative from its far end
///
/// @par Source
/// C. L. Lawson, R. J. Hanson, D. R. Kincaid, F. T. Krogh, Basic linear algebra subprograms for Fortran usage, ACM
/// Trans. Math. Softw. 5 (1979): ZDSCAL.
///
/// @par Cost
/// Two multiplications per element.
/// @{
TESK2MP_API void QuarnMP_f06caf_(Integer n, QuarnFloat alpha, Complex* x, Integer incx);
/// @}

/// @defgroup f06ejf Euclidean norm of a vector
///
/// DNRM2: the Euclidean norm, without overflow unless the result overflows.
///
/// @param[in] n elements of x; below 1 the norm is 0
/// @param[in] x n elements, |incx| apart; not changed
/// @param[in] incx step through x; negative from its far end
///
/// @par Source
/// C. L. Lawson, R. J. Hanson, D. R. Kincaid, F. T. Krogh, Basic linear algebra subprograms for Fortran usage, ACM
/// Trans. Math. Softw. 5 (1979): DNRM2.
///
/// @par Cost
/// A few operations per element and one square root.
/// @{
TESK2MP_API QuarnFloat QuarnMP_f06ejf_(Integer n, QuarnFloat* x, Integer incx);
/// @}

/// @defgroup f06fdf real vector times factor, to another vector
///
/// y := alpha x, real; x keeps its values.
///
/// @param[in] n elements of x and of y; below 1 nothing is done
/// @param[in] alpha the factor
/// @param[in] x n elements, |incx| apart
/// @param[in] incx step through x; negative from its far end
/// @param[out] y n elements, |incy| apart, overwritten
/// @param[in] incy step through y; negative from its far end
///
/// @par Source
/// C. L. Lawson, R. J. Hanson, D. R. Kincaid, F. T. Krogh, Basic linear algebra subprograms for Fortran usage, ACM
/// Trans. Math. Softw. 5 (1979): DCOPY and DSCAL in one.
///
/// @par Cost
/// One multiplication per element.
/// @{
TESK2MP_API void QuarnMP_f06fdf_(Integer n, QuarnFloat alpha, QuarnFloat* x, Integer incx, QuarnFloat* y, Integer incy);
/// @}

/// @defgroup f06hdf complex vector times factor, to another vector
///
/// y := alpha x, complex; x keeps its values.
///
/// @param[in] n elements of x and of y; below 1 nothing is done
/// @param[in] alpha the factor
/// @param[in] x n elements, |incx| apart
/// @param[in] incx step through x; negative from its far end
/// @param[out] y n elements, |incy| apart, overwritten
/// @param[in] incy step through y; negative from its far end
///
/// @par Source
/// C. L. Lawson, R. J. Hanson, D. R. Kincaid, F. T. Krogh, Basic linear algebra subprograms for Fortran usage, ACM
/// Trans. Math. Softw. 5 (1979): ZCOPY and ZSCAL in one.
///
/// @par Cost
/// One complex multiplication per element.
/// @{
TESK2MP_API void QuarnMP_f06hdf_(Integer n, Complex alpha, Complex* x, Integer incx, Complex* y, Integer incy);
/// @}

/// @defgroup f06jjf copy of a complex vector
///
/// ZCOPY: y := x, complex.
///
/// @param[in] n elements of x and of y; below 1 nothing is done
/// @param[in] x n elements, |incx| apart
/// @param[in] incx step through x; negative from its far end
/// @param[out] y n elements, |incy| apart, overwritten
/// @param[in] incy step through y; negative from its far end
///
/// @par Source
/// C. L. Lawson, R. J. Hanson, D. R. Kincaid, F. T. Krogh, Basic linear algebra subprograms for Fortran usage, ACM
/// Trans. Math. Softw. 5 (1979): ZCOPY.
///
/// @par Cost
/// One copy per element.
/// @{
TESK2MP_API void QuarnMP_f06jjf_(Integer n, Complex* x, Integer incx, Complex* y, Integer incy);
/// @}

// Level 2 -----------------------------------------------------------------------------------------------------------

/// @defgroup f06paf matrix times vector
///
/// DGEMV: y := alpha op(A) x + beta y, A m by n. A zero alpha reads neither A nor x, a zero beta does not read y; m = 0
/// or n = 0, or alpha = 0 with beta = 1, returns at once. The companion rounds the exact value of each element once.
///
/// @param[in] trans N: op(A) = A, x has n elements and y has m; T or C: op(A) is the transpose, x has m and y has n
/// @param[in] m rows of A, >= 0
/// @param[in] n columns of A, >= 0
/// @param[in] alpha factor of the product
/// @param[in] a A, n columns of m elements, lda apart
/// @param[in] lda step from column to column of A, >= max(1, m)
/// @param[in] x n elements (trans N) or m (T, C), |incx| apart
/// @param[in] incx step through x, not 0; negative from its far end
/// @param[in] beta factor of y
/// @param[in,out] y m elements (trans N) or n (T, C), |incy| apart, overwritten
/// @param[in] incy step through y, not 0; negative from its far end
///
/// @par Failures
/// Wrong arguments: trans (1), m < 0 (2), n < 0 (3), lda < max(1, m) (6), incx = 0 (8), incy = 0 (11).
///
/// @par Source
/// J. J. Dongarra, J. Du Croz, S. Hammarling, R. J. Hanson, An extended set of Fortran basic linear algebra
/// subprograms, ACM Trans. Math. Softw. 14 (1988).
///
/// @par Cost
/// m n multiply-adds.
/// @{
TESK2MP_API void QuarnMP_f06paf_(const char* trans, Integer m, Integer n, QuarnFloat alpha, QuarnFloat* a, Integer lda,
                                 QuarnFloat* x, Integer incx, QuarnFloat beta, QuarnFloat* y, Integer incy,
                                 int trans_length);
TESK2MP_API void QuarnMP_dgemv_(const char* trans, Integer m, Integer n, QuarnFloat alpha, QuarnFloat* a, Integer lda,
                                QuarnFloat* x, Integer incx, QuarnFloat beta, QuarnFloat* y, Integer incy,
                                int trans_length);
TESK2MP_API void QuarnMP_f06paf_ENTRY(int selector, const char* trans, Integer m, Integer n, QuarnFloat alpha,
                                      QuarnFloat* a, Integer lda, QuarnFloat* x, Integer incx, QuarnFloat beta,
                                      QuarnFloat* y, Integer incy, int trans_length);
TESK2MP_API void QuarnMPX_f06paf_(const char* trans, Integer m, Integer n, QuarnFloat alpha, QuarnFloat* a, Integer lda,
                                  QuarnFloat* x, Integer incx, QuarnFloat beta, QuarnFloat* y, Integer incy,
                                  int trans_length);
TESK2MP_API void QuarnMPX_dgemv_(const char* trans, Integer m, Integer n, QuarnFloat alpha, QuarnFloat* a, Integer lda,
                                 QuarnFloat* x, Integer incx, QuarnFloat beta, QuarnFloat* y, Integer incy,
                                 int trans_length);
/// @}

/// @defgroup f06saf complex matrix times vector
///
/// ZGEMV: the same over Complex; C is the conjugate transpose.
///
/// @like f06paf
///
/// @par Cost
/// m n complex multiply-adds.
/// @{
TESK2MP_API void QuarnMP_f06saf_(const char* trans, Integer m, Integer n, Complex alpha, Complex* a, Integer lda,
                                 Complex* x, Integer incx, Complex beta, Complex* y, Integer incy, int trans_length);
TESK2MP_API void QuarnMP_zgemv_(const char* trans, Integer m, Integer n, Complex alpha, Complex* a, Integer lda,
                                Complex* x, Integer incx, Complex beta, Complex* y, Integer incy, int trans_length);
TESK2MP_API void QuarnMP_f06saf_ENTRY(int selector, const char* trans, Integer m, Integer n, Complex alpha, Complex* a,
                                      Integer lda, Complex* x, Integer incx, Complex beta, Complex* y, Integer incy,
                                      int trans_length);
TESK2MP_API void QuarnMPX_f06saf_(const char* trans, Integer m, Integer n, Complex alpha, Complex* a, Integer lda,
                                  Complex* x, Integer incx, Complex beta, Complex* y, Integer incy, int trans_length);
TESK2MP_API void QuarnMPX_zgemv_(const char* trans, Integer m, Integer n, Complex alpha, Complex* a, Integer lda,
                                 Complex* x, Integer incx, Complex beta, Complex* y, Integer incy, int trans_length);
/// @}

/// @defgroup f06pff triangular matrix times vector
///
/// DTRMV: x := op(A) x, A triangular of order n: upper (uplo U) or lower (L), unit (diag U, the diagonal is not read)
/// or not (N).
///
/// @param[in] uplo U: A is upper triangular; L: lower
/// @param[in] trans N: op(A) = A; T: its transpose; C: its conjugate transpose
/// @param[in] diag U: the diagonal of A is 1 and not read; N: it is read
/// @param[in] n order of A, >= 0
/// @param[in] a A, n columns of n elements, lda apart; only its triangle is read
/// @param[in] lda step from column to column of A, >= max(1, n)
/// @param[in,out] x n elements, |incx| apart, overwritten
/// @param[in] incx step through x, not 0; negative from its far end
///
/// @par Failures
/// Wrong arguments: uplo (1), trans (2), diag (3), n < 0 (4), lda < max(1, n) (6), incx = 0 (8).
///
/// @par Source
/// J. J. Dongarra, J. Du Croz, S. Hammarling, R. J. Hanson, An extended set of Fortran basic linear algebra
/// subprograms, ACM Trans. Math. Softw. 14 (1988).
///
/// @par Cost
/// n^2/2 multiply-adds.
/// @{
TESK2MP_API void QuarnMP_f06pff_(const char* uplo, const char* trans, const char* diag, Integer n, QuarnFloat* a,
                                 Integer lda, QuarnFloat* x, Integer incx, int uplo_length, int trans_length,
                                 int diag_length);
TESK2MP_API void QuarnMP_dtrmv_(const char* uplo, const char* trans, const char* diag, Integer n, QuarnFloat* a,
                                Integer lda, QuarnFloat* x, Integer incx, int uplo_length, int trans_length,
                                int diag_length);
TESK2MP_API void QuarnMP_f06pff_ENTRY(int selector, const char* uplo, const char* trans, const char* diag, Integer n,
                                      QuarnFloat* a, Integer lda, QuarnFloat* x, Integer incx, int uplo_length,
                                      int trans_length, int diag_length);
/// @}

/// @defgroup f06sff complex triangular matrix times vector
///
/// ZTRMV: DTRMV over Complex.
///
/// @like f06pff
///
/// @par Cost
/// n^2/2 complex multiply-adds.
/// @{
TESK2MP_API void QuarnMP_f06sff_(const char* uplo, const char* trans, const char* diag, Integer n, Complex* a,
                                 Integer lda, Complex* x, Integer incx, int uplo_length, int trans_length,
                                 int diag_length);
TESK2MP_API void QuarnMP_ztrmv_(const char* uplo, const char* trans, const char* diag, Integer n, Complex* a,
                                Integer lda, Complex* x, Integer incx, int uplo_length, int trans_length,
                                int diag_length);
TESK2MP_API void QuarnMP_f06sff_ENTRY(int selector, const char* uplo, const char* trans, const char* diag, Integer n,
                                      Complex* a, Integer lda, Complex* x, Integer incx, int uplo_length,
                                      int trans_length, int diag_length);
/// @}

/// @defgroup f06pjf solution of a triangular system
///
/// DTRSV: x := op(A)^-1 x, arguments as DTRMV. A zero on the diagonal is not tested for. The
/// companion works by halves; its sums round once.
///
/// @like f06pff
///
/// @param[in] uplo U: A is upper triangular; L: lower
/// @param[in,out] x in the right-hand side, out the solution: n elements, |incx| apart
///
/// @par Cost
/// n^2/2 multiply-adds and n divisions.
/// @{
TESK2MP_API void QuarnMP_f06pjf_(const char* uplo, const char* trans, const char* diag, Integer n, QuarnFloat* a,
                                 Integer lda, QuarnFloat* x, Integer incx, int uplo_length, int trans_length,
                                 int diag_length);
TESK2MP_API void QuarnMP_dtrsv_(const char* uplo, const char* trans, const char* diag, Integer n, QuarnFloat* a,
                                Integer lda, QuarnFloat* x, Integer incx, int uplo_length, int trans_length,
                                int diag_length);
TESK2MP_API void QuarnMP_f06pjf_ENTRY(int selector, const char* uplo, const char* trans, const char* diag, Integer n,
                                      QuarnFloat* a, Integer lda, QuarnFloat* x, Integer incx, int uplo_length,
                                      int trans_length, int diag_length);
TESK2MP_API void QuarnMPX_f06pjf_(const char* uplo, const char* trans, const char* diag, Integer n, QuarnFloat* a,
                                  Integer lda, QuarnFloat* x, Integer incx, int uplo_length, int trans_length,
                                  int diag_length);
TESK2MP_API void QuarnMPX_dtrsv_(const char* uplo, const char* trans, const char* diag, Integer n, QuarnFloat* a,
                                 Integer lda, QuarnFloat* x, Integer incx, int uplo_length, int trans_length,
                                 int diag_length);
/// @}

/// @defgroup f06sjf solution of a complex triangular system
///
/// ZTRSV: DTRSV over Complex.
///
/// @like f06pjf
///
/// @par Cost
/// n^2/2 complex multiply-adds and n divisions.
/// @{
TESK2MP_API void QuarnMP_f06sjf_(const char* uplo, const char* trans, const char* diag, Integer n, Complex* a,
                                 Integer lda, Complex* x, Integer incx, int uplo_length, int trans_length,
                                 int diag_length);
TESK2MP_API void QuarnMP_ztrsv_(const char* uplo, const char* trans, const char* diag, Integer n, Complex* a,
                                Integer lda, Complex* x, Integer incx, int uplo_length, int trans_length,
                                int diag_length);
TESK2MP_API void QuarnMP_f06sjf_ENTRY(int selector, const char* uplo, const char* trans, const char* diag, Integer n,
                                      Complex* a, Integer lda, Complex* x, Integer incx, int uplo_length,
                                      int trans_length, int diag_length);
TESK2MP_API void QuarnMPX_f06sjf_(const char* uplo, const char* trans, const char* diag, Integer n, Complex* a,
                                  Integer lda, Complex* x, Integer incx, int uplo_length, int trans_length,
                                  int diag_length);
TESK2MP_API void QuarnMPX_ztrsv_(const char* uplo, const char* trans, const char* diag, Integer n, Complex* a,
                                 Integer lda, Complex* x, Integer incx, int uplo_length, int trans_length,
                                 int diag_length);
/// @}

/// @defgroup f06pmf rank-1 update
///
/// DGER: A := alpha x y^T + A, A m by n. A zero alpha reads nothing.
///
/// @param[in] m rows of A and elements of x, >= 0
/// @param[in] n columns of A and elements of y, >= 0
/// @param[in] alpha factor of the product
/// @param[in] x m elements, |incx| apart
/// @param[in] incx step through x, not 0; negative from its far end
/// @param[in] y n elements, |incy| apart
/// @param[in] incy step through y, not 0; negative from its far end
/// @param[in,out] a A, n columns of m elements, lda apart, overwritten
/// @param[in] lda step from column to column of A, >= max(1, m)
///
/// @par Failures
/// Wrong arguments: m < 0 (1), n < 0 (2), incx = 0 (5), incy = 0 (7), lda < max(1, m) (9).
///
/// @par Source
/// J. J. Dongarra, J. Du Croz, S. Hammarling, R. J. Hanson, An extended set of Fortran basic linear algebra
/// subprograms, ACM Trans. Math. Softw. 14 (1988).
///
/// @par Cost
/// m n multiply-adds.
/// @{
TESK2MP_API void QuarnMP_f06pmf_(Integer m, Integer n, QuarnFloat alpha, QuarnFloat* x, Integer incx, QuarnFloat* y,
                                 Integer incy, QuarnFloat* a, Integer lda);
TESK2MP_API void QuarnMP_dger_(Integer m, Integer n, QuarnFloat alpha, QuarnFloat* x, Integer incx, QuarnFloat* y,
                               Integer incy, QuarnFloat* a, Integer lda);
TESK2MP_API void QuarnMP_f06pmf_ENTRY(int selector, Integer m, Integer n, QuarnFloat alpha, QuarnFloat* x, Integer incx,
                                      QuarnFloat* y, Integer incy, QuarnFloat* a, Integer lda);
/// @}

/// @defgroup f06smf complex rank-1 update
///
/// ZGERU: DGER over Complex.
///
/// @like f06pmf
///
/// @par Cost
/// m n complex multiply-adds.
/// @{
TESK2MP_API void QuarnMP_f06smf_(Integer m, Integer n, Complex alpha, Complex* x, Integer incx, Complex* y,
                                 Integer incy, Complex* a, Integer lda);
TESK2MP_API void QuarnMP_zgeru_(Integer m, Integer n, Complex alpha, Complex* x, Integer incx, Complex* y, Integer incy,
                                Complex* a, Integer lda);
TESK2MP_API void QuarnMP_f06smf_ENTRY(int selector, Integer m, Integer n, Complex alpha, Complex* x, Integer incx,
                                      Complex* y, Integer incy, Complex* a, Integer lda);
/// @}

/// @defgroup f06snf complex rank-1 update, conjugated
///
/// ZGERC: DGER over Complex with y conjugated.
///
/// @like f06pmf
///
/// @par Cost
/// m n complex multiply-adds.
/// @{
TESK2MP_API void QuarnMP_f06snf_(Integer m, Integer n, Complex alpha, Complex* x, Integer incx, Complex* y,
                                 Integer incy, Complex* a, Integer lda);
TESK2MP_API void QuarnMP_zgerc_(Integer m, Integer n, Complex alpha, Complex* x, Integer incx, Complex* y, Integer incy,
                                Complex* a, Integer lda);
TESK2MP_API void QuarnMP_f06snf_ENTRY(int selector, Integer m, Integer n, Complex alpha, Complex* x, Integer incx,
                                      Complex* y, Integer incy, Complex* a, Integer lda);
/// @}

// Level 3 -----------------------------------------------------------------------------------------------------------

/// @defgroup f06yaf matrix times matrix
///
/// DGEMM: C := alpha op(A) op(B) + beta C, C m by n, op(A) m by k, op(B) k by n. A zero alpha reads neither A nor B, a
/// zero beta does not read C. Wrong arguments: transa (1), transb (2), m < 0 (3), n < 0 (4), k < 0 (5), lda (8), ldb
/// (10), ldc (13) below the rows of their matrix, or below 1.
///
/// @param[in] transa N: op(A) = A; T: its transpose; C: its conjugate transpose
/// @param[in] transb the same of B
/// @param[in] m rows of C and op(A), >= 0
/// @param[in] n columns of C and op(B), >= 0
/// @param[in] k columns of op(A), rows of op(B), >= 0
/// @param[in] alpha factor of the product
/// @param[in] a A: m by k for N, otherwise k by m
/// @param[in] lda step from column to column of A, at least its rows and 1
/// @param[in] b B: k by n for N, otherwise n by k
/// @param[in] ldb step from column to column of B, at least its rows and 1
/// @param[in] beta factor of C
/// @param[in,out] c C, m by n, overwritten; overlaps neither A nor B
/// @param[in] ldc step from column to column of C, >= max(1, m)
///
/// @par Source
/// J. J. Dongarra, J. Du Croz, S. Hammarling, I. Duff, A set of level 3 basic linear algebra subprograms, ACM Trans.
/// Math. Softw. 16 (1990).
///
/// @par Cost
/// m n k multiply-adds.
/// @{
TESK2MP_API void QuarnMP_f06yaf_(const char* transa, const char* transb, Integer m, Integer n, Integer k,
                                 QuarnFloat alpha, QuarnFloat* a, Integer lda, QuarnFloat* b, Integer ldb,
                                 QuarnFloat beta, QuarnFloat* c, Integer ldc, int transa_length, int transb_length);
TESK2MP_API void QuarnMP_dgemm_(const char* transa, const char* transb, Integer m, Integer n, Integer k,
                                QuarnFloat alpha, QuarnFloat* a, Integer lda, QuarnFloat* b, Integer ldb,
                                QuarnFloat beta, QuarnFloat* c, Integer ldc, int transa_length, int transb_length);
TESK2MP_API void QuarnMP_f06yaf_ENTRY(int selector, const char* transa, const char* transb, Integer m, Integer n,
                                      Integer k, QuarnFloat alpha, QuarnFloat* a, Integer lda, QuarnFloat* b,
                                      Integer ldb, QuarnFloat beta, QuarnFloat* c, Integer ldc, int transa_length,
                                      int transb_length);
TESK2MP_API void QuarnMPX_f06yaf_(const char* transa, const char* transb, Integer m, Integer n, Integer k,
                                  QuarnFloat alpha, QuarnFloat* a, Integer lda, QuarnFloat* b, Integer ldb,
                                  QuarnFloat beta, QuarnFloat* c, Integer ldc, int transa_length, int transb_length);
TESK2MP_API void QuarnMPX_dgemm_(const char* transa, const char* transb, Integer m, Integer n, Integer k,
                                 QuarnFloat alpha, QuarnFloat* a, Integer lda, QuarnFloat* b, Integer ldb,
                                 QuarnFloat beta, QuarnFloat* c, Integer ldc, int transa_length, int transb_length);
/// @}

/// @defgroup f06zaf complex matrix times matrix
///
/// ZGEMM: DGEMM over Complex; C is the conjugate transpose.
///
/// @like f06yaf
///
/// @par Cost
/// m n k complex multiply-adds.
/// @{
TESK2MP_API void QuarnMP_f06zaf_(const char* transa, const char* transb, Integer m, Integer n, Integer k, Complex alpha,
                                 Complex* a, Integer lda, Complex* b, Integer ldb, Complex beta, Complex* c,
                                 Integer ldc, int transa_length, int transb_length);
TESK2MP_API void QuarnMP_zgemm_(const char* transa, const char* transb, Integer m, Integer n, Integer k, Complex alpha,
                                Complex* a, Integer lda, Complex* b, Integer ldb, Complex beta, Complex* c, Integer ldc,
                                int transa_length, int transb_length);
TESK2MP_API void QuarnMP_f06zaf_ENTRY(int selector, const char* transa, const char* transb, Integer m, Integer n,
                                      Integer k, Complex alpha, Complex* a, Integer lda, Complex* b, Integer ldb,
                                      Complex beta, Complex* c, Integer ldc, int transa_length, int transb_length);
TESK2MP_API void QuarnMPX_f06zaf_(const char* transa, const char* transb, Integer m, Integer n, Integer k,
                                  Complex alpha, Complex* a, Integer lda, Complex* b, Integer ldb, Complex beta,
                                  Complex* c, Integer ldc, int transa_length, int transb_length);
TESK2MP_API void QuarnMPX_zgemm_(const char* transa, const char* transb, Integer m, Integer n, Integer k, Complex alpha,
                                 Complex* a, Integer lda, Complex* b, Integer ldb, Complex beta, Complex* c,
                                 Integer ldc, int transa_length, int transb_length);
/// @}

/// @defgroup f06yjf triangular system with several right-hand sides
///
/// DTRSM: B := alpha op(A)^-1 B (side L, A of order m) or B := alpha B op(A)^-1 (side R, A of order n), B m by n.
/// The companion works by halves; its sums round once, and alpha B is rounded first.
///
/// @param[in] side L: op(A) X = alpha B; R: X op(A) = alpha B
/// @param[in] uplo U: A is upper triangular; L: lower
/// @param[in] transa N: op(A) = A; T: its transpose; C: its conjugate transpose
/// @param[in] diag U: the diagonal of A is 1 and not read; N: it is read
/// @param[in] m rows of B, >= 0
/// @param[in] n columns of B, >= 0
/// @param[in] alpha factor of B
/// @param[in] a A, of order m (side L) or n (R); only its triangle is read, zeros on its diagonal are not tested for
/// @param[in] lda step from column to column of A, at least its order and 1
/// @param[in,out] b B, m by n, overwritten by X
/// @param[in] ldb step from column to column of B, >= max(1, m)
///
/// @par Failures
/// Wrong arguments: side (1), uplo (2), transa (3), diag (4), m < 0 (5), n < 0 (6), lda (9), ldb (11).
///
/// @par Source
/// J. J. Dongarra, J. Du Croz, S. Hammarling, I. Duff, A set of level 3 basic linear algebra subprograms, ACM Trans.
/// Math. Softw. 16 (1990).
///
/// @par Cost
/// m^2 n/2 multiply-adds on the left, m n^2/2 on the right.
/// @{
TESK2MP_API void QuarnMP_f06yjf_(const char* side, const char* uplo, const char* transa, const char* diag, Integer m,
                                 Integer n, QuarnFloat alpha, QuarnFloat* a, Integer lda, QuarnFloat* b, Integer ldb,
                                 int side_length, int uplo_length, int transa_length, int diag_length);
TESK2MP_API void QuarnMP_dtrsm_(const char* side, const char* uplo, const char* transa, const char* diag, Integer m,
                                Integer n, QuarnFloat alpha, QuarnFloat* a, Integer lda, QuarnFloat* b, Integer ldb,
                                int side_length, int uplo_length, int transa_length, int diag_length);
TESK2MP_API void QuarnMP_f06yjf_ENTRY(int selector, const char* side, const char* uplo, const char* transa,
                                      const char* diag, Integer m, Integer n, QuarnFloat alpha, QuarnFloat* a,
                                      Integer lda, QuarnFloat* b, Integer ldb, int side_length, int uplo_length,
                                      int transa_length, int diag_length);
TESK2MP_API void QuarnMPX_f06yjf_(const char* side, const char* uplo, const char* transa, const char* diag, Integer m,
                                  Integer n, QuarnFloat alpha, QuarnFloat* a, Integer lda, QuarnFloat* b, Integer ldb,
                                  int side_length, int uplo_length, int transa_length, int diag_length);
TESK2MP_API void QuarnMPX_dtrsm_(const char* side, const char* uplo, const char* transa, const char* diag, Integer m,
                                 Integer n, QuarnFloat alpha, QuarnFloat* a, Integer lda, QuarnFloat* b, Integer ldb,
                                 int side_length, int uplo_length, int transa_length, int diag_length);
/// @}

/// @defgroup f06zjf complex triangular system with several right-hand sides
///
/// ZTRSM: DTRSM over Complex.
///
/// @like f06yjf
///
/// @par Cost
/// m^2 n/2 complex multiply-adds on the left, m n^2/2 on the right.
/// @{
TESK2MP_API void QuarnMP_f06zjf_(const char* side, const char* uplo, const char* transa, const char* diag, Integer m,
                                 Integer n, Complex alpha, Complex* a, Integer lda, Complex* b, Integer ldb,
                                 int side_length, int uplo_length, int transa_length, int diag_length);
TESK2MP_API void QuarnMP_ztrsm_(const char* side, const char* uplo, const char* transa, const char* diag, Integer m,
                                Integer n, Complex alpha, Complex* a, Integer lda, Complex* b, Integer ldb,
                                int side_length, int uplo_length, int transa_length, int diag_length);
TESK2MP_API void QuarnMP_f06zjf_ENTRY(int selector, const char* side, const char* uplo, const char* transa,
                                      const char* diag, Integer m, Integer n, Complex alpha, Complex* a, Integer lda,
                                      Complex* b, Integer ldb, int side_length, int uplo_length, int transa_length,
                                      int diag_length);
TESK2MP_API void QuarnMPX_f06zjf_(const char* side, const char* uplo, const char* transa, const char* diag, Integer m,
                                  Integer n, Complex alpha, Complex* a, Integer lda, Complex* b, Integer ldb,
                                  int side_length, int uplo_length, int transa_length, int diag_length);
TESK2MP_API void QuarnMPX_ztrsm_(const char* side, const char* uplo, const char* transa, const char* diag, Integer m,
                                 Integer n, Complex alpha, Complex* a, Integer lda, Complex* b, Integer ldb,
                                 int side_length, int uplo_length, int transa_length, int diag_length);
/// @}

/// @defgroup f06zpf Hermitian rank-k update
///
/// ZHERK: C := alpha A A^H + beta C (trans N, A n by k) or C := alpha A^H A + beta C (trans C, A k by n) on the
/// triangle uplo of the Hermitian matrix C of order n; alpha and beta are real, the diagonal comes out real, the other
/// triangle is not touched. trans T is refused. The companion rounds each part of an entry once.
///
/// @param[in] uplo U: the upper triangle of C; L: the lower
/// @param[in] trans N: A A^H; C: A^H A
/// @param[in] n order of C, >= 0
/// @param[in] k columns of A (trans N) or its rows (C), >= 0
/// @param[in] alpha real factor of the product
/// @param[in] a A: n by k (trans N) or k by n (C)
/// @param[in] lda step from column to column of A, at least its rows and 1
/// @param[in] beta real factor of C
/// @param[in,out] c C, of order n; one triangle is read and overwritten
/// @param[in] ldc step from column to column of C, >= max(1, n)
///
/// @par Failures
/// Wrong arguments: uplo (1), trans (2), n < 0 (3), k < 0 (4), lda (7), ldc (10).
///
/// @par Source
/// J. J. Dongarra, J. Du Croz, S. Hammarling, I. Duff, A set of level 3 basic linear algebra subprograms, ACM Trans.
/// Math. Softw. 16 (1990).
///
/// @par Cost
/// n^2 k/2 complex multiply-adds.
/// @{
TESK2MP_API void QuarnMP_f06zpf_(const char* uplo, const char* trans, Integer n, Integer k, QuarnFloat alpha,
                                 Complex* a, Integer lda, QuarnFloat beta, Complex* c, Integer ldc, int uplo_length,
                                 int trans_length);
TESK2MP_API void QuarnMP_zherk_(const char* uplo, const char* trans, Integer n, Integer k, QuarnFloat alpha, Complex* a,
                                Integer lda, QuarnFloat beta, Complex* c, Integer ldc, int uplo_length,
                                int trans_length);
TESK2MP_API void QuarnMP_f06zpf_ENTRY(int selector, const char* uplo, const char* trans, Integer n, Integer k,
                                      QuarnFloat alpha, Complex* a, Integer lda, QuarnFloat beta, Complex* c,
                                      Integer ldc, int uplo_length, int trans_length);
TESK2MP_API void QuarnMPX_f06zpf_(const char* uplo, const char* trans, Integer n, Integer k, QuarnFloat alpha,
                                  Complex* a, Integer lda, QuarnFloat beta, Complex* c, Integer ldc, int uplo_length,
                                  int trans_length);
TESK2MP_API void QuarnMPX_zherk_(const char* uplo, const char* trans, Integer n, Integer k, QuarnFloat alpha,
                                 Complex* a, Integer lda, QuarnFloat beta, Complex* c, Integer ldc, int uplo_length,
                                 int trans_length);
/// @}

/// @defgroup dsyrk symmetric rank-k update
///
/// DSYRK: C := alpha A A^T + beta C (trans N, A n by k) or C := alpha A^T A + beta C (trans T or C, A k by n) on the
/// triangle uplo of the symmetric matrix C of order n, each entry rounded once; the other triangle is not touched.
///
/// @like f06zpf
///
/// @param[in] trans N: A A^T; T or C: A^T A
/// @param[in] alpha factor of the product
/// @param[in] beta factor of C
///
/// @par Cost
/// n^2 k/2 multiply-adds.
/// @{
TESK2MP_API void QuarnMPX_dsyrk_(const char* uplo, const char* trans, Integer n, Integer k, QuarnFloat alpha,
                                 QuarnFloat* a, Integer lda, QuarnFloat beta, QuarnFloat* c, Integer ldc,
                                 int uplo_length, int trans_length);
/// @}
}
TESK2MP_NAMES_END

#if defined(__clang__)
#pragma clang diagnostic pop
#endif
