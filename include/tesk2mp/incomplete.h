// Incomplete factorisations of sparse matrices, which make preconditioners, and solutions with them.
//
// A factor of F11DAF (real) or F11DNF (complex) stands behind the matrix in its arrays, and F11DBF or F11DPF solve with
// it; F11JAF and F11JNF factorise the lower triangle of a symmetric or Hermitian matrix, for F11JBF and F11JPF.
//
// Fill: an entry of the factors where the matrix has none. Its level is 0 in the matrix, and one more than the sum of
// the levels of the two entries whose product makes it; the least of them where several do.
#pragma once

#include "quarn/quarnfloat.h"
#include "tesk2mp/api.h"

TESK2MP_NAMES_BEGIN
extern "C" {

/// @defgroup f11daf incomplete LU factorisation of a sparse matrix
///
/// P A Q = L U + R with a unit lower triangle L and an upper triangle U, both sparse, and permutations P and Q; R is
/// what has been dropped. With complete fill R is rounding alone.
///
/// The factors are in canonical form, at the NNZC places behind the NNZ of the matrix: in each row L without its unit
/// diagonal, then U. With LFILL 0 and no search they have the places of A and its diagonal.
///
/// @param[in] n order of A, N >= 1
/// @param[in] nnz number of entries, 1 ... N**2
/// @param[in,out] a LA elements: the entries in canonical form, then the factors
/// @param[in] la length of A, IROW and ICOL, LA >= NNZ + NNZC
/// @param[in,out] irow LA elements: rows, those of P A Q for the factors
/// @param[in,out] icol LA elements: columns, likewise
/// @param[in] lfill >= 0: fill up to this level is kept; < 0: DTOL decides
/// @param[in] dtol with LFILL < 0: fill smaller than DTOL times the largest element of its row of A is dropped, DTOL >=
///     0; 0 drops none. Sizes of complex numbers are |re| + |im|
/// @param[in] pstrat where the pivot of a step is looked for: 'N' nowhere, the diagonal is taken in its order; 'R'
///     among the rows of the next column; 'C' among the columns of the next row; 'B' in both, of all that is left; 'M'
///     in the four shortest rows, for least fill, among elements of a tenth of their rows' largest at least. Of all but
///     'M' the largest element is taken, the first one of several
/// @param[in] milu 'M' modified: what is dropped of a row is added to its pivot, so that (A - P^T L U Q^T) times the
///     vector of ones is 0; 'N' not
/// @param[out] ipivp N: row k of the factors is row IPIVP(k) of A
/// @param[out] ipivq N: column k of the factors is column IPIVQ(k) of A
/// @param[out] istr N + 1: row k of the factors is A(ISTR(k)) ... A(ISTR(k + 1) - 1); ISTR(1) = NNZ + 1
/// @param[out] idiag N: A(IDIAG(k)) is the pivot of row k
/// @param[out] nnzc number of entries of the factors; also with IFAIL 3
/// @param[out] npivm number of pivots that were no larger than eps times the largest element of their row of A, and
///     have been replaced by it, or by 1 in a row of zeros. Not 0: with more fill or a search the factors may be better
///
/// @par Failures
/// The checks, in this order; all of one entry come before those of the next. On failure nothing but NNZC is touched.
///
///   IFAIL 1   99999 N < 1; 99998 NNZ < 1; 99997 NNZ > N**2
///   IFAIL 2   99996 IROW(I) outside 1 ... N; 99995 ICOL(I) outside 1 ... N; 99994 out of order; 99993 duplicate
///   IFAIL 1   99992 PSTRAT; 99991 MILU; 99990 DTOL negative or not finite, where it counts
///   IFAIL 3   99989 LA is too small: NNZ + NNZC is enough
///
/// NaN and infinities in A spread into the factors. When storage runs out nothing is touched.
///
/// @par Method
/// Elimination by steps with the entries that are left in rows; fill is dropped or kept when its row or column is
/// eliminated, and is not used before.
///
/// @par Source
/// Y. Saad, Iterative Methods for Sparse Linear Systems, SIAM 2003, sections 10.3 and 10.4; I. Gustafsson, BIT 18,
/// 1978, for the modified one; I. S. Duff, A. M. Erisman, J. K. Reid, Direct Methods for Sparse Matrices, Oxford 1986,
/// for the search of least fill.
///
/// @par Cost
/// A multiply-add for each entry of U in the row of the pivot of each entry of L. 'B' compares the rows that are left
/// in each step besides, 'M' the entries of a few.
/// @{
TESK2MP_API void QuarnMP_f11daf_(const Integer* n, const Integer* nnz, QuarnFloat* a, const Integer* la, Integer* irow,
                                 Integer* icol, const Integer* lfill, const QuarnFloat* dtol, const char* pstrat,
                                 const char* milu, Integer* ipivp, Integer* ipivq, Integer* istr, Integer* idiag,
                                 Integer* nnzc, Integer* npivm, Integer* ifail, int pstrat_length, int milu_length);
TESK2MP_API void QuarnMP_f11dafn_(Integer n, Integer nnz, QuarnFloat* a, Integer la, Integer* irow, Integer* icol,
                                  Integer lfill, QuarnFloat dtol, const char* pstrat, const char* milu, Integer* ipivp,
                                  Integer* ipivq, Integer* istr, Integer* idiag, Integer* nnzc, Integer* npivm,
                                  char* message_buffer, Integer* ifail, int pstrat_length, int milu_length,
                                  int buffer_length);
/// @}

/// @defgroup f11dnf incomplete LU factorisation of a complex sparse matrix
///
/// The same for complex values.
///
/// @like f11daf
/// @{
TESK2MP_API void QuarnMP_f11dnf_(const Integer* n, const Integer* nnz, Complex* a, const Integer* la, Integer* irow,
                                 Integer* icol, const Integer* lfill, const QuarnFloat* dtol, const char* pstrat,
                                 const char* milu, Integer* ipivp, Integer* ipivq, Integer* istr, Integer* idiag,
                                 Integer* nnzc, Integer* npivm, Integer* ifail, int pstrat_length, int milu_length);
TESK2MP_API void QuarnMP_f11dnfn_(Integer n, Integer nnz, Complex* a, Integer la, Integer* irow, Integer* icol,
                                  Integer lfill, QuarnFloat dtol, const char* pstrat, const char* milu, Integer* ipivp,
                                  Integer* ipivq, Integer* istr, Integer* idiag, Integer* nnzc, Integer* npivm,
                                  char* message_buffer, Integer* ifail, int pstrat_length, int milu_length,
                                  int buffer_length);
/// @}

/// @defgroup f11dbf solution with an incomplete LU factorisation
///
/// x := M^-1 y or M^-T y with M = P^T L U Q^T, as F11DAF has left it.
///
/// @param[in] trans 'N': M; 'T': its transpose, of a complex M its conjugate transpose, as in F11XNF
/// @param[in] n order of M, N >= 1
/// @param[in] a as F11DAF has left it
/// @param[in] la length of A, IROW and ICOL
/// @param[in] irow as F11DAF has left it; referenced with CHECK 'C' alone
/// @param[in] icol as F11DAF has left it
/// @param[in] ipivp as F11DAF has left it
/// @param[in] ipivq as F11DAF has left it
/// @param[in] istr as F11DAF has left it
/// @param[in] idiag as F11DAF has left it
/// @param[in] check 'C': check N and the factors first; 'N': do not
/// @param[in] y N elements
/// @param[out] x N elements; may be Y
///
/// @par Failures
/// The checks, in this order; from N on with CHECK 'C' alone. On failure X is not touched. I counts entries from the
/// start of the arrays. All texts of IFAIL 3 end in the advice to check that the arrays have not been corrupted between
/// the two calls.
///
///   IFAIL 1   99999 TRANS; 99998 CHECK
///   IFAIL 2   99997 N < 1
///   IFAIL 3   99996 NNZ < 1, with NNZ = ISTR(1) - 1; 99990 ISTR(I + 1) is not beyond ISTR(I), or beyond LA + 1; 99995
///             more than N**2 entries; 99994 IROW(I) outside 1 ... N; 99993 ICOL(I) outside 1 ... N; 99992 out of
///             order; 99991 duplicate; 99990 ISTR(I) is not where row I starts; 99989 IDIAG(I) is not the place of the
///             pivot of row I; 99988 that pivot is zero; 99987 IPIVP(I) outside 1 ... N; 99986 the same value twice
///             there; 99985, 99984 the same of IPIVQ
///
/// In the messages of F11DPF about IPIVP and IPIVQ the pair is F11DNF and F11DBF.
///
/// @par Source
/// Y. Saad, Iterative Methods for Sparse Linear Systems, SIAM 2003, section 10.3.
///
/// @par Cost
/// A multiply-add for each entry of the factors, and N divisions. Every operation is rounded; with the companion, up to
/// 125 digits, where L and U together have more than twelve elements a row on average beside the pivots, what an
/// element loses to those before it is summed exactly and rounded once, which is faster there and takes 8 bytes more
/// for each entry with TRANS 'T'.
/// @{
TESK2MP_API void QuarnMP_f11dbf_(const char* trans, const Integer* n, const QuarnFloat* a, const Integer* la,
                                 const Integer* irow, const Integer* icol, const Integer* ipivp, const Integer* ipivq,
                                 const Integer* istr, const Integer* idiag, const char* check, const QuarnFloat* y,
                                 QuarnFloat* x, Integer* ifail, int trans_length, int check_length);
TESK2MP_API void QuarnMPX_f11dbf_(const char* trans, const Integer* n, const QuarnFloat* a, const Integer* la,
                                  const Integer* irow, const Integer* icol, const Integer* ipivp, const Integer* ipivq,
                                  const Integer* istr, const Integer* idiag, const char* check, const QuarnFloat* y,
                                  QuarnFloat* x, Integer* ifail, int trans_length, int check_length);
TESK2MP_API void QuarnMP_f11dbfn_(const char* trans, Integer n, const QuarnFloat* a, Integer la, const Integer* irow,
                                  const Integer* icol, const Integer* ipivp, const Integer* ipivq, const Integer* istr,
                                  const Integer* idiag, const char* check, const QuarnFloat* y, QuarnFloat* x,
                                  char* message_buffer, Integer* ifail, int trans_length, int check_length,
                                  int buffer_length);
TESK2MP_API void QuarnMPX_f11dbfn_(const char* trans, Integer n, const QuarnFloat* a, Integer la, const Integer* irow,
                                   const Integer* icol, const Integer* ipivp, const Integer* ipivq, const Integer* istr,
                                   const Integer* idiag, const char* check, const QuarnFloat* y, QuarnFloat* x,
                                   char* message_buffer, Integer* ifail, int trans_length, int check_length,
                                   int buffer_length);
/// @}

/// @defgroup f11dpf solution with a complex incomplete LU factorisation
///
/// The same for complex values, as F11DNF has left them.
///
/// @like f11dbf
/// @{
TESK2MP_API void QuarnMP_f11dpf_(const char* trans, const Integer* n, const Complex* a, const Integer* la,
                                 const Integer* irow, const Integer* icol, const Integer* ipivp, const Integer* ipivq,
                                 const Integer* istr, const Integer* idiag, const char* check, const Complex* y,
                                 Complex* x, Integer* ifail, int trans_length, int check_length);
TESK2MP_API void QuarnMPX_f11dpf_(const char* trans, const Integer* n, const Complex* a, const Integer* la,
                                  const Integer* irow, const Integer* icol, const Integer* ipivp, const Integer* ipivq,
                                  const Integer* istr, const Integer* idiag, const char* check, const Complex* y,
                                  Complex* x, Integer* ifail, int trans_length, int check_length);
TESK2MP_API void QuarnMP_f11dpfn_(const char* trans, Integer n, const Complex* a, Integer la, const Integer* irow,
                                  const Integer* icol, const Integer* ipivp, const Integer* ipivq, const Integer* istr,
                                  const Integer* idiag, const char* check, const Complex* y, Complex* x,
                                  char* message_buffer, Integer* ifail, int trans_length, int check_length,
                                  int buffer_length);
TESK2MP_API void QuarnMPX_f11dpfn_(const char* trans, Integer n, const Complex* a, Integer la, const Integer* irow,
                                   const Integer* icol, const Integer* ipivp, const Integer* ipivq, const Integer* istr,
                                   const Integer* idiag, const char* check, const Complex* y, Complex* x,
                                   char* message_buffer, Integer* ifail, int trans_length, int check_length,
                                   int buffer_length);
/// @}

/// @defgroup f11jaf incomplete Cholesky factorisation of a sparse matrix
///
/// P A P^T = L D L^T + R of a symmetric A, given by its lower triangle, with a unit lower triangle L, a positive
/// diagonal D, and a permutation P.
///
/// The factors are in canonical form, at the NNZC places behind the NNZ of the matrix: in each row L without its unit
/// diagonal, then the element of D.
///
/// @param[in] n order of A, N >= 1
/// @param[in] nnz number of entries, 1 ... N (N + 1) / 2
/// @param[in,out] a LA elements: the entries of the lower triangle in canonical form, then the factors
/// @param[in] la length of A, IROW and ICOL, LA >= NNZ + NNZC
/// @param[in,out] irow LA elements: rows, those of P A P^T for the factors
/// @param[in,out] icol LA elements: columns, likewise
/// @param[in] lfill >= 0: fill up to this level is kept; < 0: DTOL decides
/// @param[in] dtol with LFILL < 0: fill smaller than DTOL times the largest element of each of its two rows of A is
///     dropped, DTOL >= 0; 0 drops none. Sizes of complex numbers are |re| + |im|
/// @param[in] mic 'M' modified: what is dropped of a row is added to its pivot (its real part), so that row sums stay;
///     'N' not
/// @param[in] dscale the diagonal is multiplied by 1 + DSCALE first, DSCALE >= 0: more makes the pivots of an A that is
///     not an M-matrix safer, and M less like A
/// @param[in] pstrat which diagonal element a step takes: 'N' the next one; 'D' the largest of those left; 'M' that
///     with the fewest entries left in its row, for least fill. The first one of several
/// @param[out] ipiv N: row k of the factors is row IPIV(k) of A
/// @param[out] istr N + 1: row k of the factors is A(ISTR(k)) ... A(ISTR(k + 1) - 1), its last element the pivot;
///     ISTR(1) = NNZ + 1
/// @param[out] nnzc number of entries of the factors; also with IFAIL 3
/// @param[out] npivm number of pivots that were negative, zero, or no larger than eps times the largest element of
///     their row of A, and have been replaced by it, or by 1 in a row of zeros. Not 0: A is not positive definite, or
///     too much has been dropped, which DSCALE, more fill or MIC 'N' may mend
///
/// @par Failures
/// The checks, in this order; all of one entry come before those of the next. On failure nothing but NNZC is touched.
///
///   IFAIL 1   99999 N < 1; 99998 NNZ < 1; 99997 NNZ > N (N + 1) / 2
///   IFAIL 2   99996 IROW(I) outside 1 ... N; 99995 ICOL(I) outside 1 ... IROW(I); 99994 out of order; 99993 duplicate
///   IFAIL 1   99992 PSTRAT; 99991 MIC; 99990 DTOL negative or not finite, where it counts; 99988 DSCALE the same
///   IFAIL 3   99989 LA is too small: NNZ + NNZC is enough
///
/// NaN and infinities in A spread into the factors. When storage runs out nothing is touched.
///
/// @par Method
/// Elimination by steps with the lower triangle that is left in rows; fill is dropped or kept when its row or column is
/// eliminated, and is not used before.
///
/// @par Source
/// J. A. Meijerink, H. A. van der Vorst, Math. Comp. 31, 1977; N. Munksgaard, ACM Trans. Math. Software 6, 1980; T. A.
/// Manteuffel, Math. Comp. 34, 1980, for DSCALE.
///
/// @par Cost
/// A multiply-add for each pair of entries of L in a column. 'D' compares the diagonal elements that are left in each
/// step besides.
/// @{
TESK2MP_API void QuarnMP_f11jaf_(const Integer* n, const Integer* nnz, QuarnFloat* a, const Integer* la, Integer* irow,
                                 Integer* icol, const Integer* lfill, const QuarnFloat* dtol, const char* mic,
                                 const QuarnFloat* dscale, const char* pstrat, Integer* ipiv, Integer* istr,
                                 Integer* nnzc, Integer* npivm, Integer* ifail, int mic_length, int pstrat_length);
TESK2MP_API void QuarnMP_f11jafn_(Integer n, Integer nnz, QuarnFloat* a, Integer la, Integer* irow, Integer* icol,
                                  Integer lfill, QuarnFloat dtol, const char* mic, QuarnFloat dscale,
                                  const char* pstrat, Integer* ipiv, Integer* istr, Integer* nnzc, Integer* npivm,
                                  char* message_buffer, Integer* ifail, int mic_length, int pstrat_length,
                                  int buffer_length);
/// @}

/// @defgroup f11jnf incomplete Cholesky factorisation of a Hermitian sparse matrix
///
/// The same for a Hermitian matrix: P A P^T = L D L^H + R. Imaginary parts of its diagonal are ignored.
///
/// @like f11jaf
/// @{
TESK2MP_API void QuarnMP_f11jnf_(const Integer* n, const Integer* nnz, Complex* a, const Integer* la, Integer* irow,
                                 Integer* icol, const Integer* lfill, const QuarnFloat* dtol, const char* mic,
                                 const QuarnFloat* dscale, const char* pstrat, Integer* ipiv, Integer* istr,
                                 Integer* nnzc, Integer* npivm, Integer* ifail, int mic_length, int pstrat_length);
TESK2MP_API void QuarnMP_f11jnfn_(Integer n, Integer nnz, Complex* a, Integer la, Integer* irow, Integer* icol,
                                  Integer lfill, QuarnFloat dtol, const char* mic, QuarnFloat dscale,
                                  const char* pstrat, Integer* ipiv, Integer* istr, Integer* nnzc, Integer* npivm,
                                  char* message_buffer, Integer* ifail, int mic_length, int pstrat_length,
                                  int buffer_length);
/// @}

/// @defgroup f11jbf solution with an incomplete Cholesky factorisation
///
/// x := M^-1 y with M = P^T L D L^T P, as F11JAF has left it.
///
/// @param[in] n order of M, N >= 1
/// @param[in] a as F11JAF has left it
/// @param[in] la length of A, IROW and ICOL
/// @param[in] irow as F11JAF has left it; referenced with CHECK 'C' alone
/// @param[in] icol as F11JAF has left it
/// @param[in] ipiv as F11JAF has left it
/// @param[in] istr as F11JAF has left it
/// @param[in] check 'C': check N and the factors first; 'N': do not
/// @param[in] y N elements
/// @param[out] x N elements; may be Y
///
/// @par Failures
/// The checks, in this order; from N on with CHECK 'C' alone. On failure X is not touched. I counts entries from the
/// start of the arrays. All texts of IFAIL 3 end in the advice to check that the arrays have not been corrupted between
/// the two calls.
///
///   IFAIL 1   99999 CHECK
///   IFAIL 2   99998 N < 1
///   IFAIL 3   99997 NNZ < 1, with NNZ = ISTR(1) - 1; 99991 ISTR(I + 1) is not beyond ISTR(I), or beyond LA + 1; 99996
///             more than N (N + 1) / 2 entries; 99995 IROW(I) outside 1 ... N; 99994 ICOL(I) outside 1 ... IROW(I);
///             99993 out of order; 99992 duplicate; 99991 ISTR(I) is not where row I starts; 99990 row I does not end
///             in its pivot; 99989 that pivot is zero; 99988 IPIV(I) outside 1 ... N; 99987 the same value twice there
///
/// In the messages of F11JPF about IPIV the pair is F11JNF and F11JBF.
///
/// @par Source
/// Y. Saad, Iterative Methods for Sparse Linear Systems, SIAM 2003, section 10.3.
///
/// @par Cost
/// Two multiply-adds for each entry of L, and N divisions. Every operation is rounded; the companion as that of F11DBF.
/// @{
TESK2MP_API void QuarnMP_f11jbf_(const Integer* n, const QuarnFloat* a, const Integer* la, const Integer* irow,
                                 const Integer* icol, const Integer* ipiv, const Integer* istr, const char* check,
                                 const QuarnFloat* y, QuarnFloat* x, Integer* ifail, int check_length);
TESK2MP_API void QuarnMPX_f11jbf_(const Integer* n, const QuarnFloat* a, const Integer* la, const Integer* irow,
                                  const Integer* icol, const Integer* ipiv, const Integer* istr, const char* check,
                                  const QuarnFloat* y, QuarnFloat* x, Integer* ifail, int check_length);
TESK2MP_API void QuarnMP_f11jbfn_(Integer n, const QuarnFloat* a, Integer la, const Integer* irow, const Integer* icol,
                                  const Integer* ipiv, const Integer* istr, const char* check, const QuarnFloat* y,
                                  QuarnFloat* x, char* message_buffer, Integer* ifail, int check_length,
                                  int buffer_length);
TESK2MP_API void QuarnMPX_f11jbfn_(Integer n, const QuarnFloat* a, Integer la, const Integer* irow, const Integer* icol,
                                   const Integer* ipiv, const Integer* istr, const char* check, const QuarnFloat* y,
                                   QuarnFloat* x, char* message_buffer, Integer* ifail, int check_length,
                                   int buffer_length);
/// @}

/// @defgroup f11jpf solution with a Hermitian incomplete Cholesky factorisation
///
/// The same for complex values, as F11JNF has left them: M = P^T L D L^H P.
///
/// @like f11jbf
/// @{
TESK2MP_API void QuarnMP_f11jpf_(const Integer* n, const Complex* a, const Integer* la, const Integer* irow,
                                 const Integer* icol, const Integer* ipiv, const Integer* istr, const char* check,
                                 const Complex* y, Complex* x, Integer* ifail, int check_length);
TESK2MP_API void QuarnMPX_f11jpf_(const Integer* n, const Complex* a, const Integer* la, const Integer* irow,
                                  const Integer* icol, const Integer* ipiv, const Integer* istr, const char* check,
                                  const Complex* y, Complex* x, Integer* ifail, int check_length);
TESK2MP_API void QuarnMP_f11jpfn_(Integer n, const Complex* a, Integer la, const Integer* irow, const Integer* icol,
                                  const Integer* ipiv, const Integer* istr, const char* check, const Complex* y,
                                  Complex* x, char* message_buffer, Integer* ifail, int check_length,
                                  int buffer_length);
TESK2MP_API void QuarnMPX_f11jpfn_(Integer n, const Complex* a, Integer la, const Integer* irow, const Integer* icol,
                                   const Integer* ipiv, const Integer* istr, const char* check, const Complex* y,
                                   Complex* x, char* message_buffer, Integer* ifail, int check_length,
                                   int buffer_length);
/// @}
/// @defgroup f11dcf solution of a sparse system with an incomplete LU factorisation
///
/// Solves A x = b by an iterative method for general matrices, preconditioned by the factors of F11DAF. The criterion
/// is that of F11BEF with ITERM 1, ||b - A x|| <= tau (||b|| + ||A|| ||x||) in the infinity norm, ||A|| estimated, and
/// holds of the true residual.
///
/// @param[in] method "RGMRES", "CGS", "BICGSTAB" or "TFQMR", as F11BDF takes it
/// @param[in] n order of A, N >= 1
/// @param[in] nnz number of entries of A
/// @param[in] a as F11DAF has left it: matrix and factors
/// @param[in] la length of A, IROW and ICOL
/// @param[in] irow as F11DAF has left it
/// @param[in] icol as F11DAF has left it
/// @param[in] ipivp as F11DAF has left it
/// @param[in] ipivq as F11DAF has left it
/// @param[in] istr as F11DAF has left it
/// @param[in] idiag as F11DAF has left it
/// @param[in] b N elements
/// @param[in] m RGMRES: iterations to a restart, 1 ... min(N, 50). BICGSTAB: the order, 1 ... min(N, 10). Otherwise not
///     looked at
/// @param[in] tol tolerance, below 1; <= 0 means sqrt(eps); tau as for F11BEF
/// @param[in] maxitn most iterations, >= 1
/// @param[in,out] x N elements: the first iterate, then the solution, or the last iterate with IFAIL 4, 5 and 6
/// @param[out] rnorm largest modulus of an element of b - A x
/// @param[out] itn iterations done
///
/// @par Failures
/// The checks, in this order; with them X, RNORM and ITN are not touched. All texts of IFAIL 2 and 3, and those about
/// NNZ, end in the advice to check that the arrays have not been corrupted between the calls.
///
///   IFAIL 1   99999 METHOD; 99998 N < 1; 99997 NNZ < 1; 99996 NNZ > N**2
///   IFAIL 2   99995 IROW(I) outside 1 ... N; 99994 ICOL(I) outside 1 ... N; 99993 out of order; 99992 duplicate
///   IFAIL 1   99991 M; 99990 TOL; 99989 MAXITN; 99988 fewer than 10 working digits
///   IFAIL 3   99986 ... 99974 the factors, as the 13 labels of F11DBF from 99996 on
///   IFAIL 4   99973 the tolerance asks for more than the working precision has
///   IFAIL 5   99972 not converged after MAXITN iterations
///   IFAIL 6   99971 breakdown, as IFAIL 7 of F11BEF
///
/// When storage runs out X is not touched.
///
/// @par Source
/// R. Barrett et al., Templates for the Solution of Linear Systems, SIAM 1994.
///
/// @par Cost
/// As F11BEF; each product is that of F11XAF's companion, each solution that of F11DBF.
/// @{
TESK2MP_API void QuarnMP_f11dcf_(const char* method, const Integer* n, const Integer* nnz, const QuarnFloat* a,
                                 const Integer* la, const Integer* irow, const Integer* icol, const Integer* ipivp,
                                 const Integer* ipivq, const Integer* istr, const Integer* idiag, const QuarnFloat* b,
                                 const Integer* m, const QuarnFloat* tol, const Integer* maxitn, QuarnFloat* x,
                                 QuarnFloat* rnorm, Integer* itn, Integer* ifail, int method_length);
TESK2MP_API void QuarnMP_f11dcfn_(const char* method, Integer n, Integer nnz, const QuarnFloat* a, Integer la,
                                  const Integer* irow, const Integer* icol, const Integer* ipivp, const Integer* ipivq,
                                  const Integer* istr, const Integer* idiag, const QuarnFloat* b, Integer m,
                                  QuarnFloat tol, Integer maxitn, QuarnFloat* x, QuarnFloat* rnorm, Integer* itn,
                                  char* message_buffer, Integer* ifail, int method_length, int buffer_length);
/// @}

/// @defgroup f11dqf solution of a complex sparse system with an incomplete LU factorisation
///
/// The same for complex values, with the factors of F11DNF.
///
/// @like f11dcf
/// @{
TESK2MP_API void QuarnMP_f11dqf_(const char* method, const Integer* n, const Integer* nnz, const Complex* a,
                                 const Integer* la, const Integer* irow, const Integer* icol, const Integer* ipivp,
                                 const Integer* ipivq, const Integer* istr, const Integer* idiag, const Complex* b,
                                 const Integer* m, const QuarnFloat* tol, const Integer* maxitn, Complex* x,
                                 QuarnFloat* rnorm, Integer* itn, Integer* ifail, int method_length);
TESK2MP_API void QuarnMP_f11dqfn_(const char* method, Integer n, Integer nnz, const Complex* a, Integer la,
                                  const Integer* irow, const Integer* icol, const Integer* ipivp, const Integer* ipivq,
                                  const Integer* istr, const Integer* idiag, const Complex* b, Integer m,
                                  QuarnFloat tol, Integer maxitn, Complex* x, QuarnFloat* rnorm, Integer* itn,
                                  char* message_buffer, Integer* ifail, int method_length, int buffer_length);
/// @}

/// @defgroup f11jqf solution of a Hermitian sparse system with an incomplete Cholesky factorisation
///
/// Solves A x = b for a Hermitian matrix A by CG (positive definite A), MINRES or SYMMLQ, preconditioned by the factors
/// of F11JNF. The criterion is that of F11DCF.
///
/// @param[in] method "CG", "MINRES" or "SYMMLQ", as F11BDF's companion takes it
/// @param[in] n order of A, N >= 1
/// @param[in] nnz number of entries of the lower triangle of A
/// @param[in] a as F11JNF has left it: matrix and factors
/// @param[in] la length of A, IROW and ICOL
/// @param[in] irow as F11JNF has left it
/// @param[in] icol as F11JNF has left it
/// @param[in] ipiv as F11JNF has left it
/// @param[in] istr as F11JNF has left it
/// @param[in] b N elements
/// @param[in] tol tolerance, below 1; <= 0 means sqrt(eps); tau as for F11BEF
/// @param[in] maxitn most iterations, >= 1
/// @param[in,out] x N elements: the first iterate, then the solution, or the last iterate with IFAIL 4, 5 and 6
/// @param[out] rnorm largest modulus of an element of b - A x
/// @param[out] itn iterations done
///
/// @par Failures
/// As F11DCF, with NNZ at most N (N + 1) / 2, ICOL(I) at most IROW(I), no M, and
///
///   IFAIL 3   99986 ... 99976 the factors, as the 11 labels of F11JBF from 99997 on
///
/// @par Source
/// R. Barrett et al., Templates for the Solution of Linear Systems, SIAM 1994.
///
/// @par Cost
/// As F11BEF; each product is that of F11XSF's companion, each solution that of F11JPF.
/// @{
TESK2MP_API void QuarnMP_f11jqf_(const char* method, const Integer* n, const Integer* nnz, const Complex* a,
                                 const Integer* la, const Integer* irow, const Integer* icol, const Integer* ipiv,
                                 const Integer* istr, const Complex* b, const QuarnFloat* tol, const Integer* maxitn,
                                 Complex* x, QuarnFloat* rnorm, Integer* itn, Integer* ifail, int method_length);
TESK2MP_API void QuarnMP_f11jqfn_(const char* method, Integer n, Integer nnz, const Complex* a, Integer la,
                                  const Integer* irow, const Integer* icol, const Integer* ipiv, const Integer* istr,
                                  const Complex* b, QuarnFloat tol, Integer maxitn, Complex* x, QuarnFloat* rnorm,
                                  Integer* itn, char* message_buffer, Integer* ifail, int method_length,
                                  int buffer_length);
/// @}
}
TESK2MP_NAMES_END
