// Eigenvalues of large matrices that are known by their products alone.
//
// The matrix is a function of the caller. The routines report through INFO and print nothing: 0 is success, -k says
// that argument k is illegal (checked in argument order), and a positive value is a numerical failure. Of an option
// text the first two characters are read, in either case; its length argument is not used.
#pragma once

#include "quarn/quarnfloat.h"
#include "tesk2mp/api.h"

TESK2MP_NAMES_BEGIN
extern "C" {

/// Forms y from x, which do not overlap: with what = 0 y := A x; 1: y := A^H x; 2: y := (A - sigma I)^-1 x. It works at
/// the digits of the moment, which are some more than those of the call that it serves, and may throw.
typedef void (*QuarnRealOperator)(void* context, Integer what, const QuarnFloat* x, QuarnFloat* y);
typedef void (*QuarnComplexOperator)(void* context, Integer what, const Complex* x, Complex* y);

/// @defgroup deigsh some eigenvalues of a large symmetric or Hermitian matrix
///
/// DEIGSH: K eigenvalues of a symmetric matrix, ascending, with eigenvectors; ZEIGSH of a Hermitian one.
///
/// In the space of one start vector a multiple eigenvalue shows once. When K eigenvalues are found the routine
/// therefore looks again, from a random vector in what is orthogonal to their eigenvectors, until a round finds none
/// that is wanted more than those there are. Each is then found as many times as it counts, unless that random vector
/// is orthogonal to an eigenvector.
///
/// @param[in] which LM or SM: the largest or smallest in magnitude; LA or SA: the largest or smallest; BE: from both
///     ends, one more of the large ones when K is odd. With SIGMA this is said of 1 / (lambda - sigma): LM are the
///     nearest to SIGMA, LA those next above it, SA those next below it
/// @param[in] n order of A, >= 1
/// @param[in] k how many, 1 ... N
/// @param[in] sigma where eigenvalues are sought, finite; null: by products with A alone
/// @param[in] product is asked for A x, and with SIGMA for (A - sigma I)^-1 x
/// @param[in] context for PRODUCT
/// @param[in] ncv vectors at a time, K + 2 ... N, or N; 0: max(2 K + 2, 20 + digits / 4), or N
/// @param[in] tol largest residual beside the norm of A, 0 <= TOL < 1, with SIGMA of 1 / (lambda - sigma) beside
///     itself; 0: the machine precision, and no more than 10^-8
/// @param[in] most products after which the routine gives up at its next restart, >= 1
/// @param[in] v0 N: where to begin, finite and not zero; null: random numbers, the same ones in each call
/// @param[out] w K eigenvalues
/// @param[out] z their eigenvectors, orthonormal: K columns of N elements, LDZ apart; null: not wanted
/// @param[in] ldz step from column to column of Z, >= N
/// @param[out] resid K: the norms of A z - w z for W and Z as returned, whether or not Z is wanted
/// @param[out] nprod products that were formed
/// @param[out] info 0; -j when argument j is illegal; 1 when MOST products were not enough: the arrays hold the best
///     there is, and RESID says how good it is; 2 when a product is not finite, or the eigenvalues of a projection were
///     not found
///
/// @par Failures
/// Illegal: which (-1), n < 1 (-2), k (-3), sigma (-4), product null (-5), ncv (-7), tol (-8), most < 1 (-9), v0 (-10),
/// ldz < n (-13). With these, with 2, and when storage runs out or PRODUCT throws, nothing is written.
///
/// @par Method
/// Lanczos' method with full reorthogonalisation and thick restart, by a few digits more than asked for, and with SIGMA
/// by as many more as A - sigma I is ill-conditioned. W are Rayleigh quotients of Z.
///
/// @par Accuracy
/// Errors of W are some units of the last place of the largest eigenvalue at most, and of isolated eigenvalues no more
/// than one of their own; those of Z are larger by the norm of A beside the distance to the next eigenvalue.
///
/// @par Source
/// K. Wu, H. Simon, Thick-restart Lanczos method for large symmetric eigenvalue problems, SIAM J. Matrix Anal. Appl. 22
/// (2000).
///
/// @par Cost
/// A product, and 4 N NCV multiply-adds, for each vector; storage of N NCV numbers.
/// @{
TESK2MP_API void QuarnMPX_deigsh_(const char* which, Integer n, Integer k, const QuarnFloat* sigma,
                                  QuarnRealOperator product, void* context, Integer ncv, QuarnFloat tol, Integer most,
                                  const QuarnFloat* v0, QuarnFloat* w, QuarnFloat* z, Integer ldz, QuarnFloat* resid,
                                  Integer* nprod, Integer* info, int which_length);
TESK2MP_API void QuarnMPX_zeigsh_(const char* which, Integer n, Integer k, const QuarnFloat* sigma,
                                  QuarnComplexOperator product, void* context, Integer ncv, QuarnFloat tol,
                                  Integer most, const Complex* v0, QuarnFloat* w, Complex* z, Integer ldz,
                                  QuarnFloat* resid, Integer* nprod, Integer* info, int which_length);
/// @}

/// @defgroup deigs some eigenvalues of a large general matrix
///
/// DEIGS: K eigenvalues of a real matrix, with eigenvectors; ZEIGS of a complex one. A multiple eigenvalue with several
/// eigenvectors is found several times, as DEIGSH does it.
///
/// @param[in] which LM or SM: the largest or smallest in magnitude; LR or SR: by their real parts; LI or SI: by their
///     imaginary parts, for DEIGS without the sign. With SIGMA this is said of 1 / (lambda - sigma): LM are the nearest
///     to SIGMA
/// @param[in] n order of A, >= 1
/// @param[in] k how many, 1 ... N
/// @param[in] sigma where eigenvalues are sought, finite; null: by products with A alone
/// @param[in] product is asked for A x, and with SIGMA for (A - sigma I)^-1 x
/// @param[in] context for PRODUCT
/// @param[in] ncv vectors at a time, K + 2 ... N, or N; 0: max(2 K + 2, 20 + digits / 4), or N
/// @param[in] tol largest residual beside the norm of A, 0 <= TOL < 1, with SIGMA of 1 / (lambda - sigma) beside
///     itself; 0: the machine precision, and no more than 10^-8
/// @param[in] most products after which the routine gives up at its next restart, >= 1
/// @param[in] v0 N: where to begin, finite and not zero; null: random numbers, the same ones in each call
/// @param[out] w K eigenvalues, the most wanted first, and with DEIGS one more where two conjugates would be parted
/// @param[out] z their eigenvectors, of length 1: as many columns of N elements, LDZ apart; null: not wanted
/// @param[in] ldz step from column to column of Z, >= N
/// @param[out] resid as many norms of A z - w z for W and Z as returned, whether or not Z is wanted
/// @param[out] m K, or K + 1
/// @param[out] nprod products that were formed
/// @param[out] info 0; -j when argument j is illegal; 1 when MOST products were not enough: the arrays hold the best
///     there is, and RESID says how good it is; 2 when a product is not finite, or the eigenvalues of a projection were
///     not found
///
/// @par Failures
/// Illegal: which (-1), n < 1 (-2), k (-3), sigma (-4), product null (-5), ncv (-7), tol (-8), most < 1 (-9), v0 (-10),
/// ldz < n (-13). With these, with 2, and when storage runs out or PRODUCT throws, nothing is written.
///
/// @par Method
/// Arnoldi's method, restarted by the ordered Schur form of the projection; digits as with DEIGSH.
///
/// @par Accuracy
/// Residuals are some units of the last place of the norm of A. Errors of W are larger by the condition number of the
/// eigenvalue: of a defective one of multiplicity j they are about the j-th root.
///
/// @par Source
/// G. W. Stewart, A Krylov-Schur algorithm for large eigenproblems, SIAM J. Matrix Anal. Appl. 23 (2001).
///
/// @par Cost
/// A product, and 4 N NCV multiply-adds, for each vector; storage of N NCV numbers.
/// @{
TESK2MP_API void QuarnMPX_deigs_(const char* which, Integer n, Integer k, const QuarnFloat* sigma,
                                 QuarnRealOperator product, void* context, Integer ncv, QuarnFloat tol, Integer most,
                                 const QuarnFloat* v0, Complex* w, Complex* z, Integer ldz, QuarnFloat* resid,
                                 Integer* m, Integer* nprod, Integer* info, int which_length);
TESK2MP_API void QuarnMPX_zeigs_(const char* which, Integer n, Integer k, const Complex* sigma,
                                 QuarnComplexOperator product, void* context, Integer ncv, QuarnFloat tol, Integer most,
                                 const Complex* v0, Complex* w, Complex* z, Integer ldz, QuarnFloat* resid, Integer* m,
                                 Integer* nprod, Integer* info, int which_length);
/// @}
}
TESK2MP_NAMES_END
