// Complete factorisations of sparse matrices, with orders of elimination that fill little.
//
// The factors are those of incomplete.h, by rows, and F11DBF, F11DPF, F11JBF and F11JPF solve with them. How many there
// are is known when they are computed: the routine then asks the caller for arrays of that length.
#pragma once

#include "quarn/quarnfloat.h"
#include "tesk2mp/api.h"

TESK2MP_NAMES_BEGIN
extern "C" {

/// Sets *a, *irow and *icol to arrays of so many elements; called once, before anything else is written. It may throw
/// where exceptions leave the libraries (not on 32-bit Windows).
typedef void (*QuarnRealFactorStorage)(void* context, Integer count, QuarnFloat** a, Integer** irow, Integer** icol);
typedef void (*QuarnComplexFactorStorage)(void* context, Integer count, Complex** a, Integer** irow, Integer** icol);

/// @defgroup sparse_order order of elimination that fills little
///
/// SPARSE_ORDER: from the pattern of A alone, by least degree, the order of its rows in which they are eliminated with
/// few new entries.
///
/// @param[in] kind S: pivots stay on the diagonal, the pattern is that of A + A^T; one triangle is enough. R: rows are
///     eliminated, each with any of its columns as the pivot
/// @param[in] n order of A, >= 1
/// @param[in] nnz number of entries, >= 0
/// @param[in] irow rows of the entries, in any order
/// @param[in] icol columns of the entries
/// @param[out] order N: the row of A that is eliminated first, second, ..., from 1
/// @param[out] info 0, or -k when argument k is illegal
///
/// @par Failures
/// Illegal: kind (-1), n < 1 (-2), nnz < 0 (-3), a row outside 1 ... N (-4), a column outside 1 ... N (-5). When
/// storage runs out ORDER is not touched.
///
/// @par Method
/// Approximate minimum degree on cliques: the pairs of A + A^T, or the rows that share a column. Columns of more than
/// 10 sqrt(N) rows are not looked at.
///
/// @par Source
/// P. R. Amestoy, T. A. Davis, I. S. Duff, An approximate minimum degree ordering algorithm, SIAM J. Matrix Anal. Appl.
/// 17, 1996; T. A. Davis, J. R. Gilbert, S. I. Larimore, E. G. Ng, A column approximate minimum degree ordering
/// algorithm, ACM Trans. Math. Software 30, 2004.
///
/// @par Cost
/// Proportional to the entries of the factors, most of the time.
/// @{
TESK2MP_API void QuarnMPX_sparse_order_(const char* kind, Integer n, Integer nnz, const Integer* irow,
                                        const Integer* icol, Integer* order, Integer* info, int kind_length);
/// @}

/// @defgroup sparse_lu LU factorisation of a sparse matrix
///
/// SPARSE_LU: P A Q = L U with a unit lower triangle L, an upper triangle U and permutations P and Q, as F11DAF leaves
/// them for F11DBF; ZSPARSE_LU over Complex, for F11DPF.
///
/// @param[in] n order of A, N >= 1
/// @param[in] nnz number of entries, 1 ... N**2
/// @param[in] a the entries in canonical form
/// @param[in] irow the entries in canonical form
/// @param[in] icol the entries in canonical form
/// @param[in] order N: a permutation of 1 ... N, the rows of A as they are to be eliminated; null: as SPARSE_ORDER
///     finds with kind R
/// @param[in] storage is asked for the arrays of the factors
/// @param[in] context for STORAGE
/// @param[out] ipivp N: row k of the factors is row IPIVP(k) of A
/// @param[out] ipivq N: column k of the factors is column IPIVQ(k) of A
/// @param[out] istr N + 1: row k of the factors is A(ISTR(k)) ... A(ISTR(k + 1) - 1) in the arrays of STORAGE, and
///     ISTR(1) is 1
/// @param[out] idiag N: A(IDIAG(k)) is the pivot of row k
/// @param[out] info 0; -k when argument k is illegal; k when step k found no pivot: A is singular to working precision,
///     or not finite
///
/// @par Failures
/// Illegal: n < 1 (-1), nnz < 1 or > N**2 (-2), a row outside 1 ... N (-4), a column outside 1 ... N, or entries that
/// are not in canonical form (-5), order (-6). A pivot is the largest element of what is left of its row; none is found
/// where that is not finite, or no larger than min(10 eps, 1/100) times the largest element of its row of A and as well
/// of its column. On failure, and when storage runs out, nothing is written, and STORAGE has not been called unless it
/// is what failed.
///
/// @par Method
/// Row after row, over those rows of U that the row's pattern reaches. Of equal pivots that on the diagonal is taken.
///
/// @par Accuracy
/// Test ratios ||A - P^T L U Q^T|| / (n eps ||A||) below 30 (`tests/sparse/test_direct.cpp`).
///
/// @par Source
/// J. R. Gilbert, T. Peierls, Sparse partial pivoting in time proportional to arithmetic operations, SIAM J. Sci. Stat.
/// Comput. 9, 1988.
///
/// @par Cost
/// A multiply-add for each entry of U in the row of the pivot of each entry of L. An entry takes storage twice while
/// the factors are delivered.
/// @{
TESK2MP_API void QuarnMPX_sparse_lu_(Integer n, Integer nnz, const QuarnFloat* a, const Integer* irow,
                                     const Integer* icol, const Integer* order, QuarnRealFactorStorage storage,
                                     void* context, Integer* ipivp, Integer* ipivq, Integer* istr, Integer* idiag,
                                     Integer* info);
TESK2MP_API void QuarnMPX_zsparse_lu_(Integer n, Integer nnz, const Complex* a, const Integer* irow,
                                      const Integer* icol, const Integer* order, QuarnComplexFactorStorage storage,
                                      void* context, Integer* ipivp, Integer* ipivq, Integer* istr, Integer* idiag,
                                      Integer* info);
/// @}

/// @defgroup sparse_cholesky Cholesky factorisation of a sparse matrix
///
/// SPARSE_CHOLESKY: P A P^T = L D L^T of a symmetric positive definite A, given by its lower triangle, with a unit
/// lower triangle L, a positive diagonal D and a permutation P, as F11JAF leaves them for F11JBF; ZSPARSE_CHOLESKY, of
/// a Hermitian A, for F11JPF. Imaginary parts of its diagonal are ignored.
///
/// @param[in] n order of A, N >= 1
/// @param[in] nnz number of entries, 1 ... N (N + 1) / 2
/// @param[in] a the entries of the lower triangle in canonical form
/// @param[in] irow the entries of the lower triangle in canonical form
/// @param[in] icol the entries of the lower triangle in canonical form
/// @param[in] order N: a permutation of 1 ... N, the rows of A as they are to be eliminated; null: as SPARSE_ORDER
///     finds with kind S
/// @param[in] storage is asked for the arrays of the factors
/// @param[in] context for STORAGE
/// @param[out] ipiv N: row k of the factors is row IPIV(k) of A
/// @param[out] istr N + 1: row k of the factors is A(ISTR(k)) ... A(ISTR(k + 1) - 1) in the arrays of STORAGE, its last
///     element the pivot; ISTR(1) = 1
/// @param[out] info 0; -k when argument k is illegal; k when the pivot of step k is not positive, no larger than
///     min(10 eps, 1/100) times its diagonal element of A, or not finite: A is not positive definite to working
///     precision
///
/// @par Failures
/// Illegal: n < 1 (-1), nnz < 1 or > N (N + 1) / 2 (-2), a row outside 1 ... N (-4), a column outside 1 ... IROW(I), or
/// entries that are not in canonical form (-5), order (-6). On failure, and when storage runs out, nothing is written,
/// and STORAGE has not been called unless it is what failed.
///
/// @par Method
/// The places of L first, then column after column.
///
/// @par Accuracy
/// Test ratios ||A - P^T L D L^H P|| / (n eps ||A||) below 30 (`tests/sparse/test_direct.cpp`).
///
/// @par Source
/// A. George, J. W.-H. Liu, Computer Solution of Large Sparse Positive Definite Systems, Prentice-Hall 1981.
///
/// @par Cost
/// A multiply-add for each pair of entries of a column of L. An entry takes storage twice while the factors are
/// delivered.
/// @{
TESK2MP_API void QuarnMPX_sparse_cholesky_(Integer n, Integer nnz, const QuarnFloat* a, const Integer* irow,
                                           const Integer* icol, const Integer* order, QuarnRealFactorStorage storage,
                                           void* context, Integer* ipiv, Integer* istr, Integer* info);
TESK2MP_API void QuarnMPX_zsparse_cholesky_(Integer n, Integer nnz, const Complex* a, const Integer* irow,
                                            const Integer* icol, const Integer* order,
                                            QuarnComplexFactorStorage storage, void* context, Integer* ipiv,
                                            Integer* istr, Integer* info);
/// @}
}
TESK2MP_NAMES_END
