// Norms of real and complex matrices.
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

/// @defgroup f06raf norm of a matrix
///
/// A norm of a real m by n matrix, by the first letter of `norm` in either case: M largest |a(i,j)|; O or 1 largest
/// column sum; I largest row sum; F or E square root of the sum of squares, scaled against overflow. Any other letter
/// gives 0, and so does m < 1 or n < 1. NaN makes F NaN; under the other letters comparisons may pass over it,
/// except in the companions, where a NaN that is read makes every norm NaN.
///
/// @param[in] norm M, O or 1, I, F or E
/// @param[in] m rows
/// @param[in] n columns
/// @param[in] a n columns of m elements, lda apart; not changed
/// @param[in] lda step from column to column, >= m
/// @param[out] work m elements for the letter I, otherwise not touched
///
/// @par Source
/// E. Anderson et al., LAPACK Users' Guide, SIAM 1999: DLANGE.
///
/// @par Cost
/// One pass over the matrix.
/// @{
TESK2MP_API QuarnFloat QuarnMP_f06raf_(const char* norm, Integer m, Integer n, QuarnFloat* a, Integer lda,
                                       QuarnFloat* work, int norm_length);
TESK2MP_API QuarnFloat QuarnMPX_f06raf_(const char* norm, Integer m, Integer n, QuarnFloat* a, Integer lda,
                                        QuarnFloat* work, int norm_length);
/// @}

/// @defgroup f06rmf norm of a Hessenberg matrix
///
/// The same of an upper Hessenberg matrix of order n; elements below the first subdiagonal are not read.
///
/// @like f06raf
///
/// @param[in] n order
/// @param[in] a n columns of n elements, lda apart; not changed
/// @param[in] lda step from column to column, >= n
/// @param[out] work n elements for the letter I, otherwise not touched
///
/// @par Source
/// E. Anderson et al., LAPACK Users' Guide, SIAM 1999: DLANHS.
///
/// @par Cost
/// One pass over the matrix.
/// @{
TESK2MP_API QuarnFloat QuarnMP_f06rmf_(const char* norm, Integer n, QuarnFloat* a, Integer lda, QuarnFloat* work,
                                       int norm_length);
TESK2MP_API QuarnFloat QuarnMPX_f06rmf_(const char* norm, Integer n, QuarnFloat* a, Integer lda, QuarnFloat* work,
                                        int norm_length);
/// @}

/// @defgroup f06uaf norms of complex matrices
///
/// The same of complex matrices: |z| is formed as sqrt(re re + im im), which may overflow, except under the letters F
/// and E.
///
/// @like f06rmf
///
/// @param[in] n columns; of a Hessenberg matrix its order
///
/// @par Source
/// E. Anderson et al., LAPACK Users' Guide, SIAM 1999: ZLANGE and ZLANHS.
///
/// @par Cost
/// One pass over the matrix, with a square root per element for the letters M, O, 1 and I.
/// @{
TESK2MP_API QuarnFloat QuarnMP_f06uaf_(const char* norm, Integer m, Integer n, Complex* a, Integer lda,
                                       QuarnFloat* work, int norm_length);
TESK2MP_API QuarnFloat QuarnMPX_f06uaf_(const char* norm, Integer m, Integer n, Complex* a, Integer lda,
                                        QuarnFloat* work, int norm_length);
TESK2MP_API QuarnFloat QuarnMP_f06umf_(const char* norm, Integer n, Complex* a, Integer lda, QuarnFloat* work,
                                       int norm_length);
TESK2MP_API QuarnFloat QuarnMPX_f06umf_(const char* norm, Integer n, Complex* a, Integer lda, QuarnFloat* work,
                                        int norm_length);
/// @}
}
TESK2MP_NAMES_END

#if defined(__clang__)
#pragma clang diagnostic pop
#endif
