// Eigenvalues, singular values and least squares of large matrices that are known by their products alone.
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
/// the digits of the moment, which are some more than those of the call that it serves, and may throw where exceptions
/// leave the libraries (not on 32-bit Windows).
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
/// @param[out] info 0; -j when argument j is illegal; 1 when MOST products were not enough, or RESID is larger than TOL
///     and the digits account for (A is not symmetric, products have too few digits): the arrays hold the best there
///     is; 2 when a product is not finite, the eigenvalues of a projection were not found, or with SIGMA the solutions
///     are so large that ten times the digits would not do
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
/// An error of W is that of its rounding, and about the square of RESID beside the distance to the next eigenvalue:
/// some units of the last place of the norm of A at most. Errors of Z are RESID beside that distance.
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
/// @param[out] w K + 1 elements, K with ZEIGS or K = N: K eigenvalues, the most wanted first, and with DEIGS one more
///     where two conjugates would be parted
/// @param[out] z their eigenvectors, of length 1: as many columns of N elements as W has elements, LDZ apart; null: not
///     wanted
/// @param[in] ldz step from column to column of Z, >= N
/// @param[out] resid as many elements as W: the norms of A z - w z for W and Z as returned, whether or not Z is wanted
/// @param[out] m K, or K + 1
/// @param[out] nprod products that were formed
/// @param[out] info 0; -j when argument j is illegal; 1 when MOST products were not enough, or RESID is larger than TOL
///     and the digits account for (products have too few digits): the arrays hold the best there is; 2
///     when a product is not finite, the eigenvalues of a projection were not found, or with SIGMA the solutions are so
///     large that ten times the digits would not do
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

/// @defgroup dsvds some singular values of a large matrix
///
/// DSVDS: K singular values of an m by n matrix, descending, with singular vectors; ZSVDS of a complex one. Multiple
/// ones are found several times, as DEIGSH does it.
///
/// @param[in] which LM or SM: the largest or the smallest
/// @param[in] m rows of A, >= 1
/// @param[in] n columns of A, >= 1
/// @param[in] k how many, 1 ... min(M, N)
/// @param[in] product is asked for A x and A^H x
/// @param[in] context for PRODUCT
/// @param[in] ncv vectors of each kind at a time, K + 2 ... min(M, N), or min(M, N); 0: max(2 K + 2, 20 + digits / 4),
///     or min(M, N)
/// @param[in] tol largest residual beside the norm of A, 0 <= TOL < 1; 0: the machine precision, and no more than 10^-8
/// @param[in] most products after which the routine gives up at its next restart, >= 1
/// @param[in] v0 N elements, M when M < N: where to begin, finite and not zero; null: random numbers, the same ones in
///     each call
/// @param[out] s K singular values
/// @param[out] u left vectors, orthonormal: K columns of M elements, LDU apart; null: not wanted
/// @param[in] ldu step from column to column of U, >= M
/// @param[out] v right vectors, orthonormal: K columns of N elements, LDV apart; null: not wanted
/// @param[in] ldv step from column to column of V, >= N
/// @param[out] resid K: the larger of the norms of A v - s u and A^H u - s v for S, U and V as returned,
///     whether or not U and V are wanted
/// @param[out] nprod products that were formed
/// @param[out] info 0; -j when argument j is illegal; 1 when MOST products were not enough, or RESID is larger than TOL
///     and the digits account for (the products are not of A and its adjoint, or have too few digits): the arrays hold
///     the best there is; 2 when a product is not finite, or the singular values of a projection were not found
///
/// @par Failures
/// Illegal: which (-1), m < 1 (-2), n < 1 (-3), k (-4), product null (-5), ncv (-7), tol (-8), most < 1 (-9), v0 (-10),
/// ldu < m (-13), ldv < n (-15). With these, with 2, and when storage runs out or PRODUCT throws, nothing is written.
///
/// @par Method
/// Lanczos bidiagonalisation with full reorthogonalisation and thick restart, by a few digits more than asked for.
///
/// @par Accuracy
/// Errors of S are some units of the last place of the largest singular value of A at most: small ones have fewer
/// digits, and those of which A has many close together converge slowly.
///
/// @par Source
/// J. Baglama, L. Reichel, Augmented implicitly restarted Lanczos bidiagonalization methods, SIAM J. Sci. Comput. 27
/// (2005).
///
/// @par Cost
/// Two products, and 4 (M + N) NCV multiply-adds, for each pair of vectors; storage of (M + N) NCV numbers.
/// @{
TESK2MP_API void QuarnMPX_dsvds_(const char* which, Integer m, Integer n, Integer k, QuarnRealOperator product,
                                 void* context, Integer ncv, QuarnFloat tol, Integer most, const QuarnFloat* v0,
                                 QuarnFloat* s, QuarnFloat* u, Integer ldu, QuarnFloat* v, Integer ldv,
                                 QuarnFloat* resid, Integer* nprod, Integer* info, int which_length);
TESK2MP_API void QuarnMPX_zsvds_(const char* which, Integer m, Integer n, Integer k, QuarnComplexOperator product,
                                 void* context, Integer ncv, QuarnFloat tol, Integer most, const Complex* v0,
                                 QuarnFloat* s, Complex* u, Integer ldu, Complex* v, Integer ldv, QuarnFloat* resid,
                                 Integer* nprod, Integer* info, int which_length);
/// @}

/// @defgroup dlsmr least squares of a large matrix
///
/// DLSMR: the x of least norm(b - A x)^2 + damp^2 norm(x)^2 for an m by n matrix; ZLSMR for a complex one. Without
/// damping, and of those that are as good, it is the shortest.
///
/// @param[in] m rows of A, >= 1
/// @param[in] n columns of A, >= 1
/// @param[in] product is asked for A x and A^H x
/// @param[in] context for PRODUCT
/// @param[in] b M elements
/// @param[in] damp the damping, >= 0
/// @param[in] atol relative error of A, 0 <= ATOL < 1; 0: the machine precision, and no more than 10^-8
/// @param[in] btol relative error of B, likewise
/// @param[in] conlim ends when the condition number seems to be larger than that, >= 0; 0: never
/// @param[in] most iterations before the routine gives up, >= 1
/// @param[out] x N elements
/// @param[out] rnorm norm of the residual r = b - A x, with damp x below it, for X as returned
/// @param[out] arnorm norm of A^H r - damp^2 x, likewise
/// @param[out] anorm an estimate of the Frobenius norm of A with the damping below it, from below for few iterations
/// @param[out] acond an estimate of its condition number, from below
/// @param[out] itn iterations
/// @param[out] istop 1: rnorm <= BTOL norm(b) + ATOL anorm norm(x), A x = b is solved; 2: arnorm <= ATOL anorm rnorm,
///     the least squares problem is solved; both but for the rounding of X: 30 units of the last place of anorm
///     norm(x), times anorm with 2; 3: CONLIM is reached; 7: MOST is reached, or X as returned satisfies neither
/// @param[out] info 0; -j when argument j is illegal; 1 with ISTOP 7; 2 when a product is not finite
///
/// @par Failures
/// Illegal: m < 1 (-1), n < 1 (-2), product null (-3), damp (-6), atol (-7), btol (-8), conlim (-9), most < 1 (-10).
/// With these, with 2, and when storage runs out or PRODUCT throws, nothing is written.
///
/// @par Method
/// Golub-Kahan bidiagonalisation, of which each step makes arnorm smaller, with a few digits more than asked for, until
/// its estimates of the norms are what the tolerances ask for. The norms of X as returned are formed then, by two
/// products. Where these are a little larger than they should be the iteration goes on; where they are more than twice
/// the estimates it begins again, once, with twice the digits. Of what did not converge the X with the least arnorm
/// is returned. An ill-conditioned A takes more iterations than it has columns, and fewer with more digits.
///
/// @par Accuracy
/// The two norms are those of X as returned, to the last digits.
///
/// @par Source
/// D. C.-L. Fong, M. Saunders, LSMR: An iterative algorithm for sparse least-squares problems, SIAM J. Sci. Comput. 33
/// (2011).
///
/// @par Cost
/// Two products, and 3 M + 7 N multiply-adds, for each iteration; storage of 2 M + 6 N numbers.
/// @{
TESK2MP_API void QuarnMPX_dlsmr_(Integer m, Integer n, QuarnRealOperator product, void* context, const QuarnFloat* b,
                                 QuarnFloat damp, QuarnFloat atol, QuarnFloat btol, QuarnFloat conlim, Integer most,
                                 QuarnFloat* x, QuarnFloat* rnorm, QuarnFloat* arnorm, QuarnFloat* anorm,
                                 QuarnFloat* acond, Integer* itn, Integer* istop, Integer* info);
TESK2MP_API void QuarnMPX_zlsmr_(Integer m, Integer n, QuarnComplexOperator product, void* context, const Complex* b,
                                 QuarnFloat damp, QuarnFloat atol, QuarnFloat btol, QuarnFloat conlim, Integer most,
                                 Complex* x, QuarnFloat* rnorm, QuarnFloat* arnorm, QuarnFloat* anorm,
                                 QuarnFloat* acond, Integer* itn, Integer* istop, Integer* info);
/// @}
}
TESK2MP_NAMES_END
