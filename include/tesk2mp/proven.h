// Results with error bounds that are proven: what the exact result is at most away from the one returned.
//
// The data are taken as the exact numbers that they are, whatever the working digits; or, where bounds of their own
// errors are given, as any numbers that near. A bound accounts for every rounding and underflow on the way, its own
// included; it is a number of nine digits, rounded up. Where the working digits do not suffice for a proof the bound is
// infinite and INFO is 1; more digits may help. NaN and infinities in the data end so too. Of a bound that is given the
// size counts, and NaN as infinity.
#pragma once

#include "quarn/quarnfloat.h"
#include "tesk2mp/api.h"

TESK2MP_NAMES_BEGIN
extern "C" {

/// @defgroup dproven_solve solution of linear equations, with error bounds
///
/// X near A^-1 B, and |X(i,j) - exact| <= ERROR(i,j). That A is regular is part of the proof. ZPROVEN_SOLVE over
/// Complex.
///
/// @param[in] n order of A, >= 0
/// @param[in] nrhs columns of B, >= 0
/// @param[in] a A, n columns of n elements, lda apart
/// @param[in] lda step from column to column of A, >= max(1, n)
/// @param[in] aerror how far the elements of A may be from those that are meant, n columns of n elements, ldaerror
/// apart
/// @param[in] ldaerror step from column to column of AERROR, >= max(1, n); 0: A is exact, and AERROR is not read
/// @param[in] b B, nrhs columns of n elements, ldb apart
/// @param[in] ldb step from column to column of B, >= max(1, n)
/// @param[in] berror the same of B, nrhs columns of n elements, ldberror apart
/// @param[in] ldberror step from column to column of BERROR, >= max(1, n); 0: B is exact, and BERROR is not read
/// @param[out] x X, nrhs columns of n elements, ldx apart; must not overlap A, B or ERROR
/// @param[in] ldx step from column to column of X, >= max(1, n)
/// @param[out] error the bounds, nrhs columns of n elements, lderror apart
/// @param[in] lderror step from column to column of ERROR, >= max(1, n)
/// @param[out] info 0; 1 when a bound is infinite: A is singular or too near it for the working digits, or something is
///     not finite; -k when argument k is illegal
///
/// @par Failures
/// Illegal: n < 0 (-1), nrhs < 0 (-2), lda (-4), ldaerror (-6), ldb (-8), ldberror (-10), ldx (-12), lderror (-14).
/// Storage for some four matrices of order n and three of B's shape is taken for the time of the call.
///
/// @par Method
/// Exact data and few columns: LU with partial pivoting with D/2 + 3 n/10 + 14 digits, D at least; the inverses of the
/// comparison matrices of L and U bound what the factors are off by, with some digits more in a second attempt, as far
/// as 2 D + 60. Otherwise an approximate inverse R; I - R A with one rounding of each entry, whose row sums have to be
/// below 1. R has half the working digits and ten where that is enough, otherwise ten more than the working digits:
/// matrices of condition numbers up to some 10^(D+8) are solved. Then refinement until the bounds do not shrink.
///
/// @par Source
/// S. M. Rump, Verification methods, Acta Numerica 19 (2010), chapter 10; S. Oishi, S. M. Rump, Fast verification of
/// solutions of matrix equations, Numer. Math. 90 (2002).
///
/// @par Cost
/// LU, some 6 n^2 multiply-adds and as many operations on bounds for each column of B; where R is needed 2 n^3/3
/// multiply-adds for it, n^3 for I - R A, and some 2 n^2 for each column of B and round of refinement.
///
/// @par Accuracy
/// The bounds are proven. Elements that are not much smaller than the largest of their column come with bounds near
/// half a unit of their last place.
/// @{
TESK2MP_API void QuarnMPX_dproven_solve_(Integer n, Integer nrhs, QuarnFloat* a, Integer lda, QuarnFloat* aerror,
                                         Integer ldaerror, QuarnFloat* b, Integer ldb, QuarnFloat* berror,
                                         Integer ldberror, QuarnFloat* x, Integer ldx, QuarnFloat* error,
                                         Integer lderror, Integer* info);
TESK2MP_API void QuarnMPX_zproven_solve_(Integer n, Integer nrhs, Complex* a, Integer lda, QuarnFloat* aerror,
                                         Integer ldaerror, Complex* b, Integer ldb, QuarnFloat* berror,
                                         Integer ldberror, Complex* x, Integer ldx, QuarnFloat* error, Integer lderror,
                                         Integer* info);
/// @}

/// @defgroup dproven_determinant determinant, with an error bound
///
/// DET near det(A), and |DET - det(A)| <= ERROR. ZPROVEN_DETERMINANT over Complex.
///
/// @param[in] n order of A, >= 0; the determinant of order 0 is 1
/// @param[in] a A, n columns of n elements, lda apart
/// @param[in] lda step from column to column of A, >= max(1, n)
/// @param[in] aerror how far the elements of A may be from those that are meant, n columns of n elements, ldaerror
/// apart
/// @param[in] ldaerror step from column to column of AERROR, >= max(1, n); 0: A is exact, and AERROR is not read
/// @param[out] det the determinant
/// @param[out] error its bound
/// @param[out] info 0; 1 when the bound is infinite: A is singular or too near it for the working digits, or something
///     is not finite or out of range; -k when argument k is illegal
///
/// @par Failures
/// Illegal: n < 0 (-1), lda (-3), ldaerror (-5). Storage for some five matrices of order n is taken for the time of the
/// call.
///
/// @par Method
/// P A = L U and approximate inverses X of L and Y of U, with ten digits more than the working digits. det(X P A Y) is
/// within s / (1 - s) of 1, s the sum of all |entries| of X P A Y - I, and det(X) and det(Y) are read off.
///
/// @par Source
/// S. M. Rump, Verification methods, Acta Numerica 19 (2010), chapter 10.
///
/// @par Cost
/// LU, two inverses of triangles and two products: some 3 n^3 multiply-adds.
///
/// @par Accuracy
/// The bound is proven; it is near 10^(c - D - 10) of the determinant for a condition number 10^c, and half a unit.
/// @{
TESK2MP_API void QuarnMPX_dproven_determinant_(Integer n, QuarnFloat* a, Integer lda, QuarnFloat* aerror,
                                               Integer ldaerror, QuarnFloat* det, QuarnFloat* error, Integer* info);
TESK2MP_API void QuarnMPX_zproven_determinant_(Integer n, Complex* a, Integer lda, QuarnFloat* aerror, Integer ldaerror,
                                               Complex* det, QuarnFloat* error, Integer* info);
/// @}

/// @defgroup dproven_definite is a matrix positive definite?
///
/// Yes or no, proven, for a symmetric matrix A; ZPROVEN_DEFINITE for a Hermitian one.
///
/// @param[in] uplo U or L: the triangle that is given; imaginary parts of the diagonal are taken as 0
/// @param[in] n order of A, >= 0
/// @param[in] a A, n columns of n elements, lda apart; the other triangle is not read
/// @param[in] lda step from column to column of A, >= max(1, n)
/// @param[out] info 0: positive definite; 1: not positive definite, some x other than 0 has x^H A x <= 0; 2: the
/// working
///     digits do not decide, or something is not finite; -k when argument k is illegal
///
/// @par Failures
/// Illegal: uplo (-1), n < 0 (-2), lda (-4). Storage for some three matrices of order n is taken for the time of the
/// call.
///
/// @par Method
/// Rows and columns are scaled by powers of ten. Yes: L L^H with the Cholesky factor L of A - c I, c some 4 n units of
/// the largest element, differs from that by less than c. No: a diagonal element that is not positive, or the vector by
/// which the factorisation met its first pivot that is not positive.
///
/// @par Source
/// S. M. Rump, Verification of positive definiteness, BIT 46 (2006).
///
/// @par Cost
/// Cholesky factorisation and one product: some 7 n^3/6 multiply-adds.
/// @{
TESK2MP_API void QuarnMPX_dproven_definite_(const char* uplo, Integer n, QuarnFloat* a, Integer lda, Integer* info,
                                            int uplo_length);
TESK2MP_API void QuarnMPX_zproven_definite_(const char* uplo, Integer n, Complex* a, Integer lda, Integer* info,
                                            int uplo_length);
/// @}

/// @defgroup dproven_rank the rank of an exact matrix
///
/// DPROVEN_RANK: the rank of a real matrix, whose elements are taken as the exact decimal numbers that they are;
/// ZPROVEN_RANK of a complex one. A square matrix whose rank is below its order is proven to be singular.
///
/// @param[in] m rows of A, >= 0
/// @param[in] n columns of A, >= 0
/// @param[in] a A, n columns of m elements, lda apart
/// @param[in] lda step from column to column of A, >= max(1, m)
/// @param[out] rank the rank; 0 where it is not known
/// @param[out] info 0; 1 when the rank is not known: it would take too long, or an element is not finite; -k when
/// argument k is illegal
///
/// @par Failures
/// Illegal: m < 0 (-1), n < 0 (-2), lda (-4). Storage for m n residues and the digits of A is taken for the time of the
/// call.
///
/// @par Method
/// Rows are multiplied by powers of ten, which makes them integers. The rank is at least that modulo any prime; where
/// it is r modulo so many primes that their product is above Hadamard's bound of all minors of order r + 1, these are
/// 0. Of complex numbers i becomes a root of -1, and the bound that of the norm.
///
/// @par Source
/// J. von zur Gathen, J. Gerhard, Modern Computer Algebra, section 5.5.
///
/// @par Cost
/// m n min(m, n) operations with 64 bits for each prime: one where the rank is full, otherwise one for nine digits of
/// Hadamard's bound. Beyond some 2 10^10 operations, a minute or two, INFO is 1.
///
/// @par Accuracy
/// The rank is proven.
/// @{
TESK2MP_API void QuarnMPX_dproven_rank_(Integer m, Integer n, QuarnFloat* a, Integer lda, Integer* rank, Integer* info);
TESK2MP_API void QuarnMPX_zproven_rank_(Integer m, Integer n, Complex* a, Integer lda, Integer* rank, Integer* info);
/// @}

/// @defgroup dproven_infinite how many eigenvalues of an exact pencil are infinite
///
/// DPROVEN_INFINITE: how many eigenvalues of A x = lambda B x are infinite, of real matrices whose elements are taken
/// as the exact decimal numbers that they are; ZPROVEN_INFINITE of complex ones. A pencil of which det(A - x B) is 0
/// for every x is singular: any number is an eigenvalue.
///
/// @param[in] n order of A and B, >= 0
/// @param[in] a A, n columns of n elements, lda apart
/// @param[in] lda step from column to column of A, >= max(1, n)
/// @param[in] b B
/// @param[in] ldb step from column to column of B, >= max(1, n)
/// @param[out] infinite n less the degree of det(A - x B); 0 where it is not known or the pencil is singular
/// @param[out] info 0; 1 when that is not known: it would take too long, or an element is not finite; 2 when the pencil
/// is singular; -k when argument k is illegal
///
/// @par Failures
/// Illegal: n < 0 (-1), lda (-3), ldb (-5). Storage for 4 n^2 residues and the digits of A and B is taken for the time
/// of the call.
///
/// @par Method
/// Rows of both matrices are multiplied by powers of ten, which makes them integers. The degree is at least that modulo
/// any prime; where it is d modulo so many primes that their product is above a bound of all coefficients, those of
/// higher powers are 0. Modulo a prime B becomes a row echelon form; rows of A beside its rows of zeros are made unit
/// vectors by subtracting columns, which takes rows and columns away until B is regular.
///
/// @par Source
/// J. von zur Gathen, J. Gerhard, Modern Computer Algebra, section 5.5.
///
/// @par Cost
/// Some 4 n^3 operations with 64 bits for each prime: one where B is regular, otherwise one for nine digits of the
/// product of the norms of all rows. Beyond some 2 10^10 operations, a minute or two, INFO is 1.
///
/// @par Accuracy
/// The number is proven.
/// @{
TESK2MP_API void QuarnMPX_dproven_infinite_(Integer n, QuarnFloat* a, Integer lda, QuarnFloat* b, Integer ldb,
                                            Integer* infinite, Integer* info);
TESK2MP_API void QuarnMPX_zproven_infinite_(Integer n, Complex* a, Integer lda, Complex* b, Integer ldb,
                                            Integer* infinite, Integer* info);
/// @}
}
TESK2MP_NAMES_END
