// Sparse matrices. Part of tesk2mp.h, which says what holds for every routine.
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

extern "C" {

// Canonical form ---------------------------------------------------------------------------------------------------

/// Sorts the entries, merges those of the same place, and drops zeros.
///
///   n       order of the matrix, N >= 1
///   nnz     number of entries, 0 ... 2^31 - 2; on exit the number kept
///   a, irow, icol   the entries, NNZ of each; on exit those kept, what follows them is left over
///   dup     of entries of the same place: 'R' keep the first given, 'S' keep their sum, added in the order given,
///           'F' fail
///   zero    entries that compare equal to 0 after that: 'R' remove, 'K' keep, 'F' fail
///   istr    N + 1: on exit row i is A(ISTR(i)) ... A(ISTR(i + 1) - 1)
///   iwork   N + NNZ, workspace; not touched when the entries come in order
///
/// The sort is stable. Time is linear in N + NNZ; a value is moved once at most by the sort.
/// The checks, in this order; all ranges of one entry come before those of the next:
///   IFAIL 1   99999 N < 1; 99998 NNZ < 0; 99997 DUP; 99996 ZERO
///   IFAIL 2   99995 IROW(I) outside 1 ... N; 99994 ICOL(I) outside 1 ... N. Nothing has been changed.
///   IFAIL 3   99993 a duplicate, with DUP 'F': the first in sorted order. The entries are sorted, ISTR fits them.
///   IFAIL 4   99992 a zero, with ZERO 'F': the first in sorted order. The entries are sorted, duplicates are merged,
///             NNZ and ISTR fit them.
TESK2MP_API void QuarnMP_f11zaf_(const Integer* n, Integer* nnz, QuarnFloat* a, Integer* irow, Integer* icol,
                                 const char* dup, const char* zero, Integer* istr, Integer* iwork, Integer* ifail,
                                 int dup_length, int zero_length);
TESK2MP_API void QuarnMP_f11zafn_(Integer n, Integer* nnz, QuarnFloat* a, Integer* irow, Integer* icol, const char* dup,
                                  const char* zero, Integer* istr, Integer* iwork, char* message_buffer, Integer* ifail,
                                  int dup_length, int zero_length, int buffer_length);
/// The same for complex values.
TESK2MP_API void QuarnMP_f11znf_(const Integer* n, Integer* nnz, Complex* a, Integer* irow, Integer* icol,
                                 const char* dup, const char* zero, Integer* istr, Integer* iwork, Integer* ifail,
                                 int dup_length, int zero_length);
TESK2MP_API void QuarnMP_f11znfn_(Integer n, Integer* nnz, Complex* a, Integer* irow, Integer* icol, const char* dup,
                                  const char* zero, Integer* istr, Integer* iwork, char* message_buffer, Integer* ifail,
                                  int dup_length, int zero_length, int buffer_length);

/// The same for the lower triangle of a real symmetric matrix (core form only). dup is 'R' or 'S', zero 'R' or 'K', and
/// label 99994 means ICOL(I) outside 1 ... IROW(I): entries of the upper triangle are not folded into the lower one.
TESK2MP_API void QuarnMP_f11zbfn_(Integer n, Integer* nnz, QuarnFloat* a, Integer* irow, Integer* icol, const char* dup,
                                  const char* zero, Integer* istr, Integer* iwork, char* message_buffer, Integer* ifail,
                                  int dup_length, int zero_length, int buffer_length);
/// The same for the lower triangle of a Hermitian matrix.
TESK2MP_API void QuarnMP_f11zpf_(const Integer* n, Integer* nnz, Complex* a, Integer* irow, Integer* icol,
                                 const char* dup, const char* zero, Integer* istr, Integer* iwork, Integer* ifail,
                                 int dup_length, int zero_length);
TESK2MP_API void QuarnMP_f11zpfn_(Integer n, Integer* nnz, Complex* a, Integer* irow, Integer* icol, const char* dup,
                                  const char* zero, Integer* istr, Integer* iwork, char* message_buffer, Integer* ifail,
                                  int dup_length, int zero_length, int buffer_length);

// Products ---------------------------------------------------------------------------------------------------------
//
// Cost: NNZ multiply-adds, about twice as many from a triangle; complex ones for complex values.

/// y := A x (TRANS 'N') or A^T x ('T').
///
///   trans   'N' or 'T', in either case
///   n       order of A, N >= 1
///   nnz     number of entries, 1 ... N**2
///   a, irow, icol   the entries, NNZ of each, in any order; those of the same place add up
///   check   'C': check the structure first, canonical form included. 'N': check nothing; then every index must lie in
///           1 ... N, N < 1 means an empty y, and NNZ < 1 gives y = 0
///   x, y    N each. Not checked for overlap: a y that overlaps x or A gives an undefined y
///
/// Every product is rounded, then added; contributions are added in storage order.
/// The checks, in this order; all of one entry come before those of the next. On failure y is not touched.
///   IFAIL 1   99999 CHECK
///   IFAIL 2   99997 N < 1; 99996 NNZ < 1; 99995 NNZ > N**2, computed to the working precision
///   IFAIL 3   99994 IROW(I) outside 1 ... N; 99993 ICOL(I) outside 1 ... N; 99992 out of order; 99991 duplicate
///   IFAIL 1   99998 TRANS
TESK2MP_API void QuarnMP_f11xaf_(const char* trans, const Integer* n, const Integer* nnz, const QuarnFloat* a,
                                 const Integer* irow, const Integer* icol, const char* check, const QuarnFloat* x,
                                 QuarnFloat* y, Integer* ifail, int trans_length, int check_length);
TESK2MP_API void QuarnMP_f11xafn_(const char* trans, Integer n, Integer nnz, const QuarnFloat* a, const Integer* irow,
                                  const Integer* icol, const char* check, const QuarnFloat* x, QuarnFloat* y,
                                  char* message_buffer, Integer* ifail, int trans_length, int check_length,
                                  int buffer_length);
/// The same for complex values, where 'T' means the conjugate transpose: y := A^H x. A product of two complex numbers
/// is (ar xr - ai xi) + i (ar xi + ai xr), each operation rounded.
TESK2MP_API void QuarnMP_f11xnf_(const char* trans, const Integer* n, const Integer* nnz, const Complex* a,
                                 const Integer* irow, const Integer* icol, const char* check, const Complex* x,
                                 Complex* y, Integer* ifail, int trans_length, int check_length);
TESK2MP_API void QuarnMP_f11xnfn_(const char* trans, Integer n, Integer nnz, const Complex* a, const Integer* irow,
                                  const Integer* icol, const char* check, const Complex* x, Complex* y,
                                  char* message_buffer, Integer* ifail, int trans_length, int check_length,
                                  int buffer_length);

/// y := A x for a symmetric matrix, given by its lower triangle. An entry off the diagonal counts twice: first in its
/// own place, then in the mirrored one. Checks as above, with label 99998 for N < 1, 99997 and so on for the rest, NNZ
/// at most N*(N+1)/2 and ICOL(I) at most IROW(I).
TESK2MP_API void QuarnMP_f11xef_(const Integer* n, const Integer* nnz, const QuarnFloat* a, const Integer* irow,
                                 const Integer* icol, const char* check, const QuarnFloat* x, QuarnFloat* y,
                                 Integer* ifail, int check_length);
TESK2MP_API void QuarnMP_f11xefn_(Integer n, Integer nnz, const QuarnFloat* a, const Integer* irow, const Integer* icol,
                                  const char* check, const QuarnFloat* x, QuarnFloat* y, char* message_buffer,
                                  Integer* ifail, int check_length, int buffer_length);
/// The same for a Hermitian matrix: the mirrored entry is the conjugate. Diagonal values are used as stored.
TESK2MP_API void QuarnMP_f11xsf_(const Integer* n, const Integer* nnz, const Complex* a, const Integer* irow,
                                 const Integer* icol, const char* check, const Complex* x, Complex* y, Integer* ifail,
                                 int check_length);
TESK2MP_API void QuarnMP_f11xsfn_(Integer n, Integer nnz, const Complex* a, const Integer* irow, const Integer* icol,
                                  const char* check, const Complex* x, Complex* y, char* message_buffer, Integer* ifail,
                                  int check_length, int buffer_length);
}
