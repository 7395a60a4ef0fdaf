// Sparse matrices.
//
// Coordinate storage of a matrix of order N: entry k has the value A(k) in row IROW(k) and column ICOL(k), k = 1 ...
// NNZ, indices from 1. Of a symmetric or Hermitian matrix only the lower triangle is stored, ICOL(k) <= IROW(k).
// Canonical form: rows ascending, columns ascending within a row, no place twice.
//
// Classic forms take the lengths of their character options last, in the order of the options; core forms after IFAIL,
// in the same order, and the length of the message buffer after them.
#pragma once

#include "quarn/quarnfloat.h"
#include "tesk2mp/api.h"

TESK2MP_NAMES_BEGIN
extern "C" {

// Canonical form ---------------------------------------------------------------------------------------------------

/// @defgroup f11zaf canonical form of a sparse matrix
///
/// Sorts the entries, merges those of the same place, and drops zeros.
///
/// The sort is stable. The companions (QuarnMPX_) round the exact sum of entries of the same place once, of each part
/// of complex ones; when storage for that runs out, the entries are sorted, and nothing else is done.
///
/// @param[in] n order of the matrix, N >= 1
/// @param[in,out] nnz number of entries, 0 ... 2^31 - 2; on exit the number kept
/// @param[in,out] a the entries, NNZ of each; on exit those kept, what follows them is left over
/// @param[in,out] irow the entries, NNZ of each; on exit those kept, what follows them is left over
/// @param[in,out] icol the entries, NNZ of each; on exit those kept, what follows them is left over
/// @param[in] dup of entries of the same place: 'R' keep the first given, 'S' keep their sum, added in the order given,
///     'F' fail
/// @param[in] zero entries that compare equal to 0 after that: 'R' remove, 'K' keep, 'F' fail
/// @param[out] istr N + 1: on exit row i is A(ISTR(i)) ... A(ISTR(i + 1) - 1)
/// @param[out] iwork N + NNZ, workspace; not touched when the entries come in order
///
/// @par Failures
/// The checks, in this order; all ranges of one entry come before those of the next:
///
///   IFAIL 1   99999 N < 1; 99998 NNZ < 0; 99997 DUP; 99996 ZERO
///   IFAIL 2   99995 IROW(I) outside 1 ... N; 99994 ICOL(I) outside 1 ... N. Nothing has been changed.
///   IFAIL 3   99993 a duplicate, with DUP 'F': the first in sorted order. The entries are sorted, ISTR fits them.
///   IFAIL 4   99992 a zero, with ZERO 'F': the first in sorted order. The entries are sorted, duplicates are merged,
///             NNZ and ISTR fit them.
///
/// @par Source
/// F. G. Gustavson, Two fast algorithms for sparse matrices: multiplication and permuted transposition, ACM Trans.
/// Math. Softw. 4 (1978), orders by counting as this does.
///
/// @par Cost
/// Time is linear in N + NNZ; a value is moved once at most by the sort.
/// @{
TESK2MP_API void QuarnMP_f11zaf_(const Integer* n, Integer* nnz, QuarnFloat* a, Integer* irow, Integer* icol,
                                 const char* dup, const char* zero, Integer* istr, Integer* iwork, Integer* ifail,
                                 int dup_length, int zero_length);
TESK2MP_API void QuarnMP_f11zafn_(Integer n, Integer* nnz, QuarnFloat* a, Integer* irow, Integer* icol, const char* dup,
                                  const char* zero, Integer* istr, Integer* iwork, char* message_buffer, Integer* ifail,
                                  int dup_length, int zero_length, int buffer_length);
TESK2MP_API void QuarnMPX_f11zaf_(const Integer* n, Integer* nnz, QuarnFloat* a, Integer* irow, Integer* icol,
                                  const char* dup, const char* zero, Integer* istr, Integer* iwork, Integer* ifail,
                                  int dup_length, int zero_length);
TESK2MP_API void QuarnMPX_f11zafn_(Integer n, Integer* nnz, QuarnFloat* a, Integer* irow, Integer* icol,
                                   const char* dup, const char* zero, Integer* istr, Integer* iwork,
                                   char* message_buffer, Integer* ifail, int dup_length, int zero_length,
                                   int buffer_length);
/// @}

/// @defgroup f11znf canonical form of a complex sparse matrix
///
/// The same for complex values.
///
/// @like f11zaf
/// @{
TESK2MP_API void QuarnMP_f11znf_(const Integer* n, Integer* nnz, Complex* a, Integer* irow, Integer* icol,
                                 const char* dup, const char* zero, Integer* istr, Integer* iwork, Integer* ifail,
                                 int dup_length, int zero_length);
TESK2MP_API void QuarnMP_f11znfn_(Integer n, Integer* nnz, Complex* a, Integer* irow, Integer* icol, const char* dup,
                                  const char* zero, Integer* istr, Integer* iwork, char* message_buffer, Integer* ifail,
                                  int dup_length, int zero_length, int buffer_length);
TESK2MP_API void QuarnMPX_f11znf_(const Integer* n, Integer* nnz, Complex* a, Integer* irow, Integer* icol,
                                  const char* dup, const char* zero, Integer* istr, Integer* iwork, Integer* ifail,
                                  int dup_length, int zero_length);
TESK2MP_API void QuarnMPX_f11znfn_(Integer n, Integer* nnz, Complex* a, Integer* irow, Integer* icol, const char* dup,
                                   const char* zero, Integer* istr, Integer* iwork, char* message_buffer,
                                   Integer* ifail, int dup_length, int zero_length, int buffer_length);
/// @}

/// @defgroup f11zbf canonical form of a symmetric sparse matrix
///
/// The same for the lower triangle of a real symmetric matrix (the classic entry has its core form only). dup is 'R' or
/// 'S', zero 'R' or 'K', and label 99994 means ICOL(I) outside 1 ... IROW(I): entries of the upper triangle are not
/// folded into the lower one.
///
/// @like f11znf
/// @{
TESK2MP_API void QuarnMP_f11zbfn_(Integer n, Integer* nnz, QuarnFloat* a, Integer* irow, Integer* icol, const char* dup,
                                  const char* zero, Integer* istr, Integer* iwork, char* message_buffer, Integer* ifail,
                                  int dup_length, int zero_length, int buffer_length);
TESK2MP_API void QuarnMPX_f11zbf_(const Integer* n, Integer* nnz, QuarnFloat* a, Integer* irow, Integer* icol,
                                  const char* dup, const char* zero, Integer* istr, Integer* iwork, Integer* ifail,
                                  int dup_length, int zero_length);
TESK2MP_API void QuarnMPX_f11zbfn_(Integer n, Integer* nnz, QuarnFloat* a, Integer* irow, Integer* icol,
                                   const char* dup, const char* zero, Integer* istr, Integer* iwork,
                                   char* message_buffer, Integer* ifail, int dup_length, int zero_length,
                                   int buffer_length);
/// @}

/// @defgroup f11zpf canonical form of a Hermitian sparse matrix
///
/// The same for the lower triangle of a Hermitian matrix.
///
/// @like f11zbf
/// @{
TESK2MP_API void QuarnMP_f11zpf_(const Integer* n, Integer* nnz, Complex* a, Integer* irow, Integer* icol,
                                 const char* dup, const char* zero, Integer* istr, Integer* iwork, Integer* ifail,
                                 int dup_length, int zero_length);
TESK2MP_API void QuarnMP_f11zpfn_(Integer n, Integer* nnz, Complex* a, Integer* irow, Integer* icol, const char* dup,
                                  const char* zero, Integer* istr, Integer* iwork, char* message_buffer, Integer* ifail,
                                  int dup_length, int zero_length, int buffer_length);
TESK2MP_API void QuarnMPX_f11zpf_(const Integer* n, Integer* nnz, Complex* a, Integer* irow, Integer* icol,
                                  const char* dup, const char* zero, Integer* istr, Integer* iwork, Integer* ifail,
                                  int dup_length, int zero_length);
TESK2MP_API void QuarnMPX_f11zpfn_(Integer n, Integer* nnz, Complex* a, Integer* irow, Integer* icol, const char* dup,
                                   const char* zero, Integer* istr, Integer* iwork, char* message_buffer,
                                   Integer* ifail, int dup_length, int zero_length, int buffer_length);
/// @}

// Products ---------------------------------------------------------------------------------------------------------

/// @defgroup f11xaf sparse matrix times vector
///
/// y := A x (TRANS 'N') or A^T x ('T').
///
/// Every product is rounded, then added; contributions are added in storage order. The companions (QuarnMPX_) round
/// the exact value of each result once, of each part of a complex one, and may use several threads (quarn/parallel.h);
/// when storage runs out y is not touched.
///
/// @param[in] trans 'N' or 'T', in either case
/// @param[in] n order of A, N >= 1
/// @param[in] nnz number of entries, 1 ... N**2
/// @param[in] a the entries, NNZ of each, in any order; those of the same place add up
/// @param[in] irow the entries, NNZ of each, in any order; those of the same place add up
/// @param[in] icol the entries, NNZ of each, in any order; those of the same place add up
/// @param[in] check 'C': check the structure first, canonical form included. 'N': check nothing; then every index must
///     lie in 1 ... N, N < 1 means an empty y, and NNZ < 1 gives y = 0
/// @param[in] x N each. Not checked for overlap: a y that overlaps x or A gives an undefined y
/// @param[out] y N each. Not checked for overlap: a y that overlaps x or A gives an undefined y
///
/// @par Failures
/// The checks, in this order; all of one entry come before those of the next. On failure y is not touched.
///
///   IFAIL 1   99999 CHECK
///   IFAIL 2   99997 N < 1; 99996 NNZ < 1; 99995 NNZ > N**2, computed to the working precision
///   IFAIL 3   99994 IROW(I) outside 1 ... N; 99993 ICOL(I) outside 1 ... N; 99992 out of order; 99991 duplicate
///   IFAIL 1   99998 TRANS
///
/// @par Source
/// Y. Saad, Iterative Methods for Sparse Linear Systems, SIAM 2003, section 3.5.
///
/// @par Cost
/// nnz multiply-adds. The companions are faster up to 100 digits when the entries are sorted by rows, and slower beyond
/// (docs/performance.md).
/// @{
TESK2MP_API void QuarnMP_f11xaf_(const char* trans, const Integer* n, const Integer* nnz, const QuarnFloat* a,
                                 const Integer* irow, const Integer* icol, const char* check, const QuarnFloat* x,
                                 QuarnFloat* y, Integer* ifail, int trans_length, int check_length);
TESK2MP_API void QuarnMPX_f11xaf_(const char* trans, const Integer* n, const Integer* nnz, const QuarnFloat* a,
                                  const Integer* irow, const Integer* icol, const char* check, const QuarnFloat* x,
                                  QuarnFloat* y, Integer* ifail, int trans_length, int check_length);
TESK2MP_API void QuarnMP_f11xafn_(const char* trans, Integer n, Integer nnz, const QuarnFloat* a, const Integer* irow,
                                  const Integer* icol, const char* check, const QuarnFloat* x, QuarnFloat* y,
                                  char* message_buffer, Integer* ifail, int trans_length, int check_length,
                                  int buffer_length);
TESK2MP_API void QuarnMPX_f11xafn_(const char* trans, Integer n, Integer nnz, const QuarnFloat* a, const Integer* irow,
                                   const Integer* icol, const char* check, const QuarnFloat* x, QuarnFloat* y,
                                   char* message_buffer, Integer* ifail, int trans_length, int check_length,
                                   int buffer_length);
/// @}

/// @defgroup f11xnf complex sparse matrix times vector
///
/// The same for complex values, where 'T' means the conjugate transpose: y := A^H x. A product of two complex numbers
/// is (ar xr - ai xi) + i (ar xi + ai xr), each operation rounded.
///
/// @like f11xaf
///
/// @par Cost
/// nnz complex multiply-adds.
/// @{
TESK2MP_API void QuarnMP_f11xnf_(const char* trans, const Integer* n, const Integer* nnz, const Complex* a,
                                 const Integer* irow, const Integer* icol, const char* check, const Complex* x,
                                 Complex* y, Integer* ifail, int trans_length, int check_length);
TESK2MP_API void QuarnMPX_f11xnf_(const char* trans, const Integer* n, const Integer* nnz, const Complex* a,
                                  const Integer* irow, const Integer* icol, const char* check, const Complex* x,
                                  Complex* y, Integer* ifail, int trans_length, int check_length);
TESK2MP_API void QuarnMP_f11xnfn_(const char* trans, Integer n, Integer nnz, const Complex* a, const Integer* irow,
                                  const Integer* icol, const char* check, const Complex* x, Complex* y,
                                  char* message_buffer, Integer* ifail, int trans_length, int check_length,
                                  int buffer_length);
TESK2MP_API void QuarnMPX_f11xnfn_(const char* trans, Integer n, Integer nnz, const Complex* a, const Integer* irow,
                                   const Integer* icol, const char* check, const Complex* x, Complex* y,
                                   char* message_buffer, Integer* ifail, int trans_length, int check_length,
                                   int buffer_length);
/// @}

/// @defgroup f11xef symmetric sparse matrix times vector
///
/// y := A x for a symmetric matrix, given by its lower triangle. An entry off the diagonal counts twice: first in its
/// own place, then in the mirrored one.
///
/// @like f11xnf
///
/// @par Failures
/// Checks as above, with label 99998 for N < 1, 99997 and so on for the rest, NNZ at most N*(N+1)/2 and ICOL(I) at most
/// IROW(I).
///
/// @par Cost
/// Two multiply-adds per entry off the diagonal.
/// @{
TESK2MP_API void QuarnMP_f11xef_(const Integer* n, const Integer* nnz, const QuarnFloat* a, const Integer* irow,
                                 const Integer* icol, const char* check, const QuarnFloat* x, QuarnFloat* y,
                                 Integer* ifail, int check_length);
TESK2MP_API void QuarnMPX_f11xef_(const Integer* n, const Integer* nnz, const QuarnFloat* a, const Integer* irow,
                                  const Integer* icol, const char* check, const QuarnFloat* x, QuarnFloat* y,
                                  Integer* ifail, int check_length);
TESK2MP_API void QuarnMP_f11xefn_(Integer n, Integer nnz, const QuarnFloat* a, const Integer* irow, const Integer* icol,
                                  const char* check, const QuarnFloat* x, QuarnFloat* y, char* message_buffer,
                                  Integer* ifail, int check_length, int buffer_length);
TESK2MP_API void QuarnMPX_f11xefn_(Integer n, Integer nnz, const QuarnFloat* a, const Integer* irow,
                                   const Integer* icol, const char* check, const QuarnFloat* x, QuarnFloat* y,
                                   char* message_buffer, Integer* ifail, int check_length, int buffer_length);
/// @}

/// @defgroup f11xsf Hermitian sparse matrix times vector
///
/// The same for a Hermitian matrix: the mirrored entry is the conjugate. Diagonal values are used as stored.
///
/// @like f11xef
///
/// @par Cost
/// Two complex multiply-adds per entry off the diagonal.
/// @{
TESK2MP_API void QuarnMP_f11xsf_(const Integer* n, const Integer* nnz, const Complex* a, const Integer* irow,
                                 const Integer* icol, const char* check, const Complex* x, Complex* y, Integer* ifail,
                                 int check_length);
TESK2MP_API void QuarnMPX_f11xsf_(const Integer* n, const Integer* nnz, const Complex* a, const Integer* irow,
                                  const Integer* icol, const char* check, const Complex* x, Complex* y, Integer* ifail,
                                  int check_length);
TESK2MP_API void QuarnMP_f11xsfn_(Integer n, Integer nnz, const Complex* a, const Integer* irow, const Integer* icol,
                                  const char* check, const Complex* x, Complex* y, char* message_buffer, Integer* ifail,
                                  int check_length, int buffer_length);
TESK2MP_API void QuarnMPX_f11xsfn_(Integer n, Integer nnz, const Complex* a, const Integer* irow, const Integer* icol,
                                   const char* check, const Complex* x, Complex* y, char* message_buffer,
                                   Integer* ifail, int check_length, int buffer_length);
/// @}

// Preconditioners --------------------------------------------------------------------------------------------------

/// @defgroup sparse_diagonal rows and diagonal of a sparse matrix
///
/// SPARSE_DIAGONAL: where the rows of a matrix in canonical form start and where their diagonal entries are, as the
/// preconditioners below take them; ZSPARSE_DIAGONAL over Complex.
///
/// @param[in] n order of A, >= 1
/// @param[in] nnz number of entries, 1 ... N**2
/// @param[in] a the entries, NNZ of each
/// @param[in] irow the entries, NNZ of each
/// @param[in] icol the entries, NNZ of each
/// @param[out] istr N + 1: row i is A(ISTR(i)) ... A(ISTR(i + 1) - 1)
/// @param[out] idiag N: A(IDIAG(i)) is the diagonal entry of row i; 0 where there is none
/// @param[out] info 0; -k when argument k is illegal; i when row i has no diagonal entry or a zero there
///
/// @par Failures
/// Illegal: n < 1 (-1), nnz < 1 or > N**2 (-2), a row outside 1 ... N (-4), a column outside 1 ... N, or entries that
/// are not in canonical form (-5). ISTR and IDIAG are then not touched.
///
/// @par Source
/// Y. Saad, Iterative Methods for Sparse Linear Systems, SIAM 2003, section 3.4.
///
/// @par Cost
/// Time is linear in N + NNZ.
/// @{
TESK2MP_API void QuarnMPX_sparse_diagonal_(Integer n, Integer nnz, const QuarnFloat* a, const Integer* irow,
                                           const Integer* icol, Integer* istr, Integer* idiag, Integer* info);
TESK2MP_API void QuarnMPX_zsparse_diagonal_(Integer n, Integer nnz, const Complex* a, const Integer* irow,
                                            const Integer* icol, Integer* istr, Integer* idiag, Integer* info);
/// @}

/// @defgroup jacobi Jacobi preconditioner
///
/// JACOBI: x := op(D)^-1 x with the diagonal D of a sparse matrix; ZJACOBI over Complex.
///
/// @param[in] trans N or T: op(D) = D; C: its conjugate
/// @param[in] n order of A, >= 1
/// @param[in] a the entries
/// @param[in] idiag N: the diagonal entries, none of them zero, as SPARSE_DIAGONAL finds them
/// @param[in,out] x N elements
/// @param[out] info 0, or -k when argument k is illegal
///
/// @par Failures
/// Illegal: trans (-1), n < 1 (-2).
///
/// @par Source
/// Y. Saad, Iterative Methods for Sparse Linear Systems, SIAM 2003, section 10.2.
///
/// @par Cost
/// n divisions.
/// @{
TESK2MP_API void QuarnMPX_jacobi_(const char* trans, Integer n, const QuarnFloat* a, const Integer* idiag,
                                  QuarnFloat* x, Integer* info, int trans_length);
TESK2MP_API void QuarnMPX_zjacobi_(const char* trans, Integer n, const Complex* a, const Integer* idiag, Complex* x,
                                   Integer* info, int trans_length);
/// @}

/// @defgroup ssor SSOR preconditioner
///
/// SSOR: x := op(M)^-1 x with M = omega / (2 - omega) (D / omega + L) D^-1 (D / omega + U), A = L + D + U by its strict
/// triangles and its diagonal; ZSSOR over Complex. M is symmetric, or Hermitian, when A is.
///
/// @param[in] trans N: op(M) = M; T: its transpose; C: its conjugate transpose
/// @param[in] n order of A, >= 1
/// @param[in] a the entries in canonical form
/// @param[in] icol their columns
/// @param[in] istr N + 1: the rows, as SPARSE_DIAGONAL finds them
/// @param[in] idiag N: the diagonal entries, none of them zero, as SPARSE_DIAGONAL finds them
/// @param[in] omega 0 < omega < 2; 1: symmetric Gauss-Seidel
/// @param[in,out] x N elements
/// @param[out] info 0, or -k when argument k is illegal
///
/// @par Failures
/// Illegal: trans (-1), n < 1 (-2), omega outside 0 ... 2 (-7). When storage runs out x is not defined.
///
/// @par Method
/// A sweep down the rows and one up; every operation is rounded.
///
/// @par Source
/// D. M. Young, Iterative Solution of Large Linear Systems, Academic Press 1971.
///
/// @par Cost
/// NNZ - N multiply-adds and 2 N divisions.
/// @{
TESK2MP_API void QuarnMPX_ssor_(const char* trans, Integer n, const QuarnFloat* a, const Integer* icol,
                                const Integer* istr, const Integer* idiag, QuarnFloat omega, QuarnFloat* x,
                                Integer* info, int trans_length);
TESK2MP_API void QuarnMPX_zssor_(const char* trans, Integer n, const Complex* a, const Integer* icol,
                                 const Integer* istr, const Integer* idiag, QuarnFloat omega, Complex* x, Integer* info,
                                 int trans_length);
/// @}
}
TESK2MP_NAMES_END
