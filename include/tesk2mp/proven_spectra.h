// Error bounds that are proven for eigenvalues, singular values and zeros of polynomials.
//
// Each routine takes approximations, from anywhere, and returns bounds of what they are off by; approximations that are
// wrong get large bounds or none. The data are taken as the exact numbers that they are, whatever the working digits;
// or, where bounds of their own errors are given, as any numbers that near. A bound accounts for every rounding and
// underflow; it is a number of nine digits, rounded up. Where no proof is found it is infinite and INFO is 1. NaN and
// infinities in the data end so too. Approximations with some digits more than are wanted cost little.
#pragma once

#include "quarn/quarnfloat.h"
#include "tesk2mp/api.h"

TESK2MP_NAMES_BEGIN
extern "C" {

/// @defgroup dproven_symmetric bounds for eigenvalues and eigenvectors of a symmetric matrix
///
/// |W(j) - eigenvalue j| <= ERROR(j), eigenvalues in ascending order, and |X(i,j) - exact| <= XERROR(j) for all i with
/// an eigenvector of Euclidean norm 1. ZPROVEN_SYMMETRIC for a Hermitian matrix, whose eigenvectors are meant up to a
/// factor of modulus 1.
///
/// @param[in] uplo U or L: the triangle of A that is given; imaginary parts of the diagonal are taken as 0
/// @param[in] n order of A, >= 0
/// @param[in] a A, n columns of n elements, lda apart; the other triangle is not read
/// @param[in] lda step from column to column of A, >= max(1, n)
/// @param[in] aerror how far the elements of A may be from those that are meant, n columns of n elements, ldaerror
/// apart, the same triangle
/// @param[in] ldaerror step from column to column of AERROR, >= max(1, n); 0: A is exact, and AERROR is not read
/// @param[in] w n approximate eigenvalues, ascending
/// @param[in] x approximate eigenvectors with norms near 1, n columns of n elements, ldx apart
/// @param[in] ldx step from column to column of X, >= max(1, n)
/// @param[out] error n bounds of the eigenvalues
/// @param[out] xerror n bounds of the eigenvectors, infinite where an eigenvalue is not apart from the next
/// @param[out] info 0; 1 when the bounds of the eigenvalues are infinite; -k when argument k is illegal
///
/// @par Failures
/// Illegal: uplo (-1), n < 0 (-2), lda (-4), ldaerror (-6), w not ascending (-7), ldx (-9). Storage for some four
/// matrices of order n is taken for the time of the call.
///
/// @par Method
/// A is within |F| of X diag(w) X^H, F = A - X diag(w) X^H, whose eigenvalues are w times factors within |I - X^H X| of
/// 1. Eigenvectors by the residual and the distance to the next eigenvalue.
///
/// @par Source
/// H. Weyl, Math. Ann. 71 (1912); A. M. Ostrowski, Proc. Nat. Acad. Sci. 45 (1959); C. Davis, W. M. Kahan, SIAM J.
/// Numer. Anal. 7 (1970).
///
/// @par Cost
/// Two products: 2 n^3 multiply-adds.
///
/// @par Accuracy
/// The bounds are proven; they are near the largest error of W and near 10^-D |A| for approximations of D digits.
/// @{
TESK2MP_API void QuarnMPX_dproven_symmetric_(const char* uplo, Integer n, QuarnFloat* a, Integer lda,
                                             QuarnFloat* aerror, Integer ldaerror, const QuarnFloat* w, QuarnFloat* x,
                                             Integer ldx, QuarnFloat* error, QuarnFloat* xerror, Integer* info,
                                             int uplo_length);
TESK2MP_API void QuarnMPX_zproven_symmetric_(const char* uplo, Integer n, Complex* a, Integer lda, QuarnFloat* aerror,
                                             Integer ldaerror, const QuarnFloat* w, Complex* x, Integer ldx,
                                             QuarnFloat* error, QuarnFloat* xerror, Integer* info, int uplo_length);
/// @}

/// @defgroup dproven_singular bounds for singular values
///
/// |S(j) - singular value j| <= ERROR(j), singular values in descending order. ZPROVEN_SINGULAR over Complex.
///
/// @param[in] m rows of A, >= 0
/// @param[in] n columns of A, >= 0
/// @param[in] a A, n columns of m elements, lda apart
/// @param[in] lda step from column to column of A, >= max(1, m)
/// @param[in] aerror how far the elements of A may be from those that are meant, n columns of m elements, ldaerror
/// apart
/// @param[in] ldaerror step from column to column of AERROR, >= max(1, m); 0: A is exact, and AERROR is not read
/// @param[in] s k = min(m, n) approximate singular values, descending, >= 0
/// @param[in] u approximate left singular vectors with norms near 1, k columns of m elements, ldu apart
/// @param[in] ldu step from column to column of U, >= max(1, m)
/// @param[in] v approximate right singular vectors, k columns of n elements, ldv apart; not their adjoint
/// @param[in] ldv step from column to column of V, >= max(1, n)
/// @param[out] error k bounds
/// @param[out] info 0; 1 when the bounds are infinite; -k when argument k is illegal
///
/// @par Failures
/// Illegal: m < 0 (-1), n < 0 (-2), lda (-4), ldaerror (-6), s not descending or negative (-7), ldu (-9), ldv (-11).
/// Storage for some four matrices of A's shape is taken for the time of the call.
///
/// @par Method
/// A is within |F| of U diag(s) V^H, whose singular values are s times factors within max(|I - U^H U|, |I - V^H V|)
/// of 1.
///
/// @par Source
/// S. M. Rump, Verified bounds for singular values, BIT 51 (2011).
///
/// @par Cost
/// Three products: m n k + (m + n) k^2 multiply-adds.
///
/// @par Accuracy
/// The bounds are proven; they are near 10^-D |A| for approximations of D digits.
/// @{
TESK2MP_API void QuarnMPX_dproven_singular_(Integer m, Integer n, QuarnFloat* a, Integer lda, QuarnFloat* aerror,
                                            Integer ldaerror, const QuarnFloat* s, QuarnFloat* u, Integer ldu,
                                            QuarnFloat* v, Integer ldv, QuarnFloat* error, Integer* info);
TESK2MP_API void QuarnMPX_zproven_singular_(Integer m, Integer n, Complex* a, Integer lda, QuarnFloat* aerror,
                                            Integer ldaerror, const QuarnFloat* s, Complex* u, Integer ldu, Complex* v,
                                            Integer ldv, QuarnFloat* error, Integer* info);
/// @}

/// @defgroup dproven_eigenvalues bounds for eigenvalues of a general matrix
///
/// DPROVEN_EIGENVALUES for a real matrix A, ZPROVEN_EIGENVALUES for a complex one: COUNT(j)
/// eigenvalues, counted with multiplicity, are in the disc of radius ERROR(j) around W(j), and where that is 1 no other
/// one is there. W(j) of a real matrix is made real where a real eigenvalue is proven.
///
/// @param[in] n order of A, >= 0
/// @param[in] a A, n columns of n elements, lda apart
/// @param[in] lda step from column to column of A, >= max(1, n)
/// @param[in] aerror how far the elements of A may be from those that are meant, n columns of n elements, ldaerror
/// apart
/// @param[in] ldaerror step from column to column of AERROR, >= max(1, n); 0: A is exact, and AERROR is not read
/// @param[in,out] w n approximate eigenvalues
/// @param[in] x approximate eigenvectors in the same order, n columns of n elements, ldx apart
/// @param[in] ldx step from column to column of X, >= max(1, n)
/// @param[out] error n bounds
/// @param[out] count n counts: the eigenvalues whose discs are connected, which the bound holds for as a set
/// @param[out] info 0; 1 when a bound is infinite: X is too near a singular matrix; -k when argument k is illegal
///
/// @par Failures
/// Illegal: n < 0 (-1), lda (-3), ldaerror (-5), ldx (-8). Storage for some six complex matrices of order n is taken
/// for the time of the call.
///
/// @par Method
/// X^-1 A X = diag(w) + X^-1 (A X - X diag(w)): Gerschgorin's discs of that, with X^-1 bounded by an approximate
/// inverse as in DPROVEN_SOLVE.
///
/// @par Source
/// S. Miyajima, Numerical enclosure for each eigenvalue in generalized eigenvalue problem, J. Comput. Appl. Math. 236
/// (2012).
///
/// @par Cost
/// LU, 2 n^3/3 multiply-adds for the inverse, and three products, all complex.
///
/// @par Accuracy
/// The bounds are proven; they are near 10^-D |A| times the condition number of X for approximations of D digits.
/// @{
TESK2MP_API void QuarnMPX_dproven_eigenvalues_(Integer n, QuarnFloat* a, Integer lda, QuarnFloat* aerror,
                                               Integer ldaerror, Complex* w, Complex* x, Integer ldx, QuarnFloat* error,
                                               Integer* count, Integer* info);
TESK2MP_API void QuarnMPX_zproven_eigenvalues_(Integer n, Complex* a, Integer lda, QuarnFloat* aerror, Integer ldaerror,
                                               Complex* w, Complex* x, Integer ldx, QuarnFloat* error, Integer* count,
                                               Integer* info);
/// @}

/// @defgroup dproven_eigen bounds for eigenvalues and eigenvectors of a general matrix or pencil
///
/// DPROVEN_EIGEN for real matrices, ZPROVEN_EIGEN for complex ones: of A x = lambda B x, B regular, COUNT(j)
/// eigenvalues, counted with multiplicity, are in the disc of radius ERROR(j) around W(j), and where that is 1 no other
/// one is there. W(j) of a real pencil is made real where a real eigenvalue is proven. An eigenvector of Euclidean norm
/// 1 differs from column j of X by at most XERROR(j) in each element; it is meant up to a factor of modulus 1.
///
/// @param[in] n order of A, >= 0
/// @param[in] a A, n columns of n elements, lda apart
/// @param[in] lda step from column to column of A, >= max(1, n)
/// @param[in] aerror how far the elements of A may be from those that are meant, n columns of n elements, ldaerror
/// apart
/// @param[in] ldaerror step from column to column of AERROR, >= max(1, n); 0: A is exact, and AERROR is not read
/// @param[in] b B, n columns of n elements, ldb apart
/// @param[in] ldb step from column to column of B, >= max(1, n); 0: B is the identity, and B and BERROR are not read
/// @param[in] berror the same of B, n columns of n elements, ldberror apart
/// @param[in] ldberror step from column to column of BERROR, >= max(1, n); 0: B is exact, and BERROR is not read
/// @param[in,out] w n approximate eigenvalues; those that share a disc are set to its centre, and all may come in
/// another order
/// @param[in,out] x n approximate eigenvectors, n columns of n elements, ldx apart
/// @param[in] ldx step from column to column of X, >= max(1, n)
/// @param[out] error n bounds of the eigenvalues
/// @param[out] xerror n bounds of the eigenvectors, infinite where an eigenvalue is not apart from the others; null
/// where they are not wanted
/// @param[out] count n counts
/// @param[out] distinct so many of the COUNT(j) eigenvalues are distinct at most: 1 where they are proven to be equal,
/// COUNT(j) otherwise; null where that is not wanted
/// @param[out] info 0; 1 when a bound of an eigenvalue is infinite; -k when argument k is illegal
///
/// @par Failures
/// Illegal: n < 0 (-1), lda (-3), ldaerror (-5), ldb (-7), ldberror (-9), ldx (-12). Storage for some six complex
/// matrices of order n is taken for the time of the call.
///
/// @par Method
/// Gerschgorin's discs of (B X)^-1 A X, of real data with the real and imaginary parts of pairs. Where they are not
/// apart X is made anew, with twice the digits: the Schur form of B^-1 A is made block diagonal, with a block for all
/// eigenvalues that cannot be separated by elements below 10^(2 D/3), and rows and columns of a block are scaled so
/// that its elements above the diagonal weigh as much as the errors. k equal eigenvalues are then known to some 1/k of
/// these digits. Of an exact matrix alone the number of distinct eigenvalues, the rank of the traces of its powers, is
/// found modulo so many primes that it is proven, unless that takes more than some 10^9 steps. Where it is that of the
/// connected sets of discs each eigenvalue is the mean of its set, which is known to nearly all digits. Where a single
/// eigenvalue, or equal ones, alone can be 0 and the exact matrix A is singular, its rank being found modulo primes,
/// they are exactly 0.
///
/// @par Source
/// S. Miyajima, Numerical enclosure for each eigenvalue in generalized eigenvalue problem, J. Comput. Appl. Math. 236
/// (2012); S. M. Rump, Computational error bounds for multiple or nearly multiple eigenvalues, Linear Algebra Appl. 324
/// (2001); C. A. Bavely, G. W. Stewart, An algorithm for computing reducing subspaces by block diagonalization, SIAM J.
/// Numer. Anal. 16 (1979); F. R. Gantmacher, The Theory of Matrices, vol. 2 (1959), chapter XV.
///
/// @par Cost
/// An inverse and three products: 5 n^3 multiply-adds, few of them with many digits, and n^2 operations on bounds for
/// each eigenvector. Where discs overlap some 30 n^3 complex ones with twice the digits, and more where blocks are
/// large; 2 n^3 operations on machine words for one prime, which suffices where an exact matrix has no equal
/// eigenvalues, and otherwise for each nine of at most n^2 times the digits of the largest eigenvalue, the elements
/// being scaled to integers.
///
/// @par Accuracy
/// The bounds are proven; they are near 10^-D |A| times the condition number of X for approximations of D digits.
/// @{
TESK2MP_API void QuarnMPX_dproven_eigen_(Integer n, QuarnFloat* a, Integer lda, QuarnFloat* aerror, Integer ldaerror,
                                         QuarnFloat* b, Integer ldb, QuarnFloat* berror, Integer ldberror, Complex* w,
                                         Complex* x, Integer ldx, QuarnFloat* error, QuarnFloat* xerror, Integer* count,
                                         Integer* distinct, Integer* info);
TESK2MP_API void QuarnMPX_zproven_eigen_(Integer n, Complex* a, Integer lda, QuarnFloat* aerror, Integer ldaerror,
                                         Complex* b, Integer ldb, QuarnFloat* berror, Integer ldberror, Complex* w,
                                         Complex* x, Integer ldx, QuarnFloat* error, QuarnFloat* xerror, Integer* count,
                                         Integer* distinct, Integer* info);
/// @}

/// @defgroup dproven_zeros bounds for zeros of a polynomial
///
/// The disc of radius ERROR(j) around ZEROS(j) holds COUNT(j) zeros, counted with multiplicity, and so many
/// approximations are set to its centre; discs are apart. DPROVEN_ZEROS for real coefficients, where a zero is made
/// real when that is proven; ZPROVEN_ZEROS for complex ones. The coefficients are taken as exact.
///
/// @param[in] n degree, >= 0
/// @param[in] a n + 1 coefficients, from the highest power down; a(1) not 0
/// @param[in,out] zeros n approximate zeros
/// @param[out] error n bounds; 0 for zeros at 0
/// @param[out] count n counts
/// @param[out] info 0; 1 when a bound is infinite; -k when argument k is illegal
///
/// @par Failures
/// Illegal: n < 0 (-1), a(1) = 0 (-2).
///
/// @par Method
/// A circle around c on which one term t(k) (z - c)^k of the polynomial is larger than the others together has k zeros
/// inside. The terms are computed with so many digits that k equal zeros show, for the means of 1, 2, ... nearest
/// approximations.
///
/// @par Source
/// M. A. E. Pellet, Bull. Sci. Math. 5 (1881).
///
/// @par Cost
/// n^2/2 complex multiply-adds for each zero that is apart from the others, with some 2 (D + 10) + n digits.
///
/// @par Accuracy
/// The bounds are proven; those of simple zeros are 1.001 times the distance of the approximation and a little more.
/// @{
TESK2MP_API void QuarnMPX_dproven_zeros_(Integer n, const QuarnFloat* a, Complex* zeros, QuarnFloat* error,
                                         Integer* count, Integer* info);
TESK2MP_API void QuarnMPX_zproven_zeros_(Integer n, const Complex* a, Complex* zeros, QuarnFloat* error, Integer* count,
                                         Integer* info);
/// @}
}
TESK2MP_NAMES_END
