// Singular values.
//
// These report through INFO and print nothing: 0 is success, -k says that argument k is illegal (checked in argument
// order), and a positive value is a numerical failure. Of an option text the first character alone is read; its length
// argument is not used.
#pragma once

#include "quarn/quarnfloat.h"
#include "tesk2mp/api.h"

TESK2MP_NAMES_BEGIN
extern "C" {

/// @defgroup dgesvd singular value decomposition
///
/// DGESVD: A = U diag(s) V^T, A m by n, U and V orthogonal; ZGESVD: A = U diag(s) V^H, U and V unitary. Numbers of any
/// size are good.
///
/// @param[in] jobu A: all m columns of U; S: the first min(m, n); O: these in the place of A; N: none
/// @param[in] jobvt A: all n rows of V^H; S: the first min(m, n); O: these in the place of A, not with jobu O; N: none
/// @param[in] m rows of A, >= 0
/// @param[in] n columns of A, >= 0
/// @param[in,out] a A, n columns of m elements, lda apart; out what a job O asks for, otherwise as it was
/// @param[in] lda step from column to column of A, >= max(1, m)
/// @param[out] s min(m, n) singular values, descending
/// @param[out] u columns of U, m elements each, ldu apart; not used with jobu O and N
/// @param[in] ldu step from column to column of U, >= 1, and >= m when it is used
/// @param[out] vt rows of V^H, n columns, ldvt apart; not used with jobvt O and N
/// @param[in] ldvt step from column to column of V^H, >= 1, and at least its rows when it is used
/// @param[out] work lwork elements; work(1) is the length that is asked for, the others are not touched
/// @param[in] lwork elements of work, >= max(1, 3 min(m, n) + max(m, n), 5 min(m, n)), for ZGESVD
///     >= max(1, 2 min(m, n) + max(m, n)); -1 asks for the length alone
/// @param[out] rwork not used
/// @param[out] info 0, -k when argument k is illegal, otherwise how many elements beside the diagonal did not become
///     negligible, and max(1, min(m, n)) when an element of A is not finite
///
/// @par Failures
/// Illegal: jobu (-1), jobvt (-2), m < 0 (-3), n < 0 (-4), lda (-6), ldu (-9), ldvt (-11), lwork (-13). Storage for A,
/// U and V once more is taken for the time of the call.
///
/// @par Method
/// Bidiagonal form by reflectors in panels, whose products round each entry once; then the implicit QR algorithm with
/// zero shifts, which keeps small singular values of that form.
///
/// @par Accuracy
/// The work is done with a few digits more, so that errors of singular values are some units of the last place of the
/// largest one, rarely more than one. U and V are orthogonal to the last digit.
///
/// @par Source
/// G. H. Golub, W. Kahan, Calculating the singular values and pseudo-inverse of a matrix, SIAM J. Numer. Anal. 2
/// (1965); J. Demmel, W. Kahan, Accurate singular values of bidiagonal matrices, SIAM J. Sci. Stat. Comput. 11 (1990);
/// E. Anderson et al., LAPACK Users' Guide, SIAM 1999: DGESVD and ZGESVD.
///
/// @par Cost
/// For m = n about 8/3 n^3 multiply-adds without the factors, and 20 n^3 with them.
/// @{
TESK2MP_API void QuarnMPX_dgesvd_(const char* jobu, const char* jobvt, Integer m, Integer n, QuarnFloat* a, Integer lda,
                                  QuarnFloat* s, QuarnFloat* u, Integer ldu, QuarnFloat* vt, Integer ldvt,
                                  QuarnFloat* work, Integer lwork, Integer* info, int jobu_length, int jobvt_length);
TESK2MP_API void QuarnMPX_zgesvd_(const char* jobu, const char* jobvt, Integer m, Integer n, Complex* a, Integer lda,
                                  QuarnFloat* s, Complex* u, Integer ldu, Complex* vt, Integer ldvt, Complex* work,
                                  Integer lwork, QuarnFloat* rwork, Integer* info, int jobu_length, int jobvt_length);
/// @}

/// @defgroup dgejsv singular values to high relative accuracy
///
/// DGEJSV: A = U diag(sva) V^T of an m by n matrix with m >= n, where each singular value, however small beside the
/// others, has nearly all digits as far as A = D1 B D2 with diagonal D1 and D2 and a well-conditioned B; ZGEJSV over
/// Complex, with V^H.
///
/// @param[in] joba C, E, F, G, A or R: all mean the most accurate way
/// @param[in] jobu U: the first n columns of U; N or W: none
/// @param[in] jobv V or J: V; N or W: none
/// @param[in] jobr N or R: not used, numbers of any size count
/// @param[in] jobt T or N: not used
/// @param[in] jobp P or N: not used
/// @param[in] m rows of A, >= 0
/// @param[in] n columns of A, 0 ... m
/// @param[in] a A, n columns of m elements, lda apart; not changed
/// @param[in] lda step from column to column of A, >= max(1, m)
/// @param[out] sva n singular values, descending
/// @param[out] u n columns of m elements, ldu apart
/// @param[in] ldu step from column to column of U, >= 1, and >= m when it is wanted
/// @param[out] v n columns of n elements, ldv apart
/// @param[in] ldv step from column to column of V, >= 1, and >= n when it is wanted
/// @param[out] work work(1) and work(2) are 1, the others are not touched
/// @param[out] cwork the same for ZGEJSV
/// @param[out] rwork the same for ZGEJSV
/// @param[in] lwork elements of work, >= 7, of cwork >= 2
/// @param[in] lrwork elements of rwork, >= 7
/// @param[out] iwork 3 numbers: how many singular values are not zero, twice, and 0
/// @param[out] info 0, -k when argument k is illegal, 1 when the sweeps did not converge, and max(1, n) when an element
///     is not finite
///
/// @par Failures
/// Illegal: joba (-1), jobu (-2), jobv (-3), jobr (-4), jobt (-5), jobp (-6), m (-7), n (-8), lda (-10), ldu (-13), ldv
/// (-15), lwork (-17), for ZGEJSV lrwork (-19). Storage for A, U and V twice more is taken for the time of the call.
///
/// @par Method
/// QR with column pivoting of the rows sorted by size; then one-sided rotations make the columns of R^H orthogonal.
///
/// @par Source
/// Z. Drmac, K. Veselic, New fast and accurate Jacobi SVD algorithm, SIAM J. Matrix Anal. Appl. 29 (2008); E. Anderson
/// et al., LAPACK Users' Guide, SIAM 1999: DGEJSV and ZGEJSV.
///
/// @par Cost
/// About ten sweeps of 2 n^3 to 4 n^3 multiply-adds.
/// @{
TESK2MP_API void QuarnMPX_dgejsv_(const char* joba, const char* jobu, const char* jobv, const char* jobr,
                                  const char* jobt, const char* jobp, Integer m, Integer n, QuarnFloat* a, Integer lda,
                                  QuarnFloat* sva, QuarnFloat* u, Integer ldu, QuarnFloat* v, Integer ldv,
                                  QuarnFloat* work, Integer lwork, Integer* iwork, Integer* info, int joba_length,
                                  int jobu_length, int jobv_length, int jobr_length, int jobt_length, int jobp_length);
TESK2MP_API void QuarnMPX_zgejsv_(const char* joba, const char* jobu, const char* jobv, const char* jobr,
                                  const char* jobt, const char* jobp, Integer m, Integer n, Complex* a, Integer lda,
                                  QuarnFloat* sva, Complex* u, Integer ldu, Complex* v, Integer ldv, Complex* cwork,
                                  Integer lwork, QuarnFloat* rwork, Integer lrwork, Integer* iwork, Integer* info,
                                  int joba_length, int jobu_length, int jobv_length, int jobr_length, int jobt_length,
                                  int jobp_length);
/// @}
}
TESK2MP_NAMES_END
