// Iterative solution of a general linear system.
//
// The system is A x = b, of which the caller alone knows A.
//
// F11BDF sets a problem up; F11BEF iterates and comes back whenever it needs a product with A, a solution with the
// preconditioner M, or has something to show; F11BFF reports how far it has got. The whole state is in WORK: several
// problems in several work arrays do not know of each other, and a work array may be copied elsewhere between calls.
//
// Methods: RGMRES, restarted every M iterations (Y. Saad, M. H. Schultz, SIAM J. Sci. Stat. Comput. 7, 1986), one
// product an iteration; CGS (P. Sonneveld, same journal 10, 1989), two; BICGSTAB of order M (G. L. G. Sleijpen,
// D. R. Fokkema, Electron. Trans. Numer. Anal. 1, 1993; with M = 1 H. A. van der Vorst's Bi-CGSTAB), 2 M; TFQMR
// (R. W. Freund, SIAM J. Sci. Comput. 14, 1993), two. With a preconditioner they work on M^-1 A x = M^-1 b.
//
// The companions (QuarnMPX_) have three methods for a symmetric A besides, one product an iteration: CG (M. R.
// Hestenes, E. Stiefel, J. Res. Nat. Bur. Standards 49, 1952), for a positive definite one; MINRES and SYMMLQ (C. C.
// Paige, M. A. Saunders, SIAM J. Numer. Anal. 12, 1975), for any. Their preconditioner must be symmetric positive
// definite. For a general A they have FGMRES (Y. Saad, SIAM J. Sci. Comput. 14, 1993), which is RGMRES with the
// preconditioner on the right, A M^-1 y = b, where M may be another one in each iteration; and IDR of order M
// (P. Sonneveld, M. B. van Gijzen, same journal 31, 2008; the biorthogonal variant, ACM Trans. Math. Softw. 38, 2011).
// Both take one product an iteration.
//
// Criteria. r = b - A x; the norm is that of NORM, with WEIGHT 'W' that of the vector times the weights:
//
//   ITERM 1   ||r||      <= tau (||b||      + ANORM  ||x||)   ANORM  stands for ||A||
//   ITERM 2   ||M^-1 r|| <= tau (||M^-1 b|| + SIGMAX ||x||)   SIGMAX stands for ||M^-1 A||, in the 2-norm the largest
//                                                             singular value
//
// With FGMRES both speak of r, b and A alone: M^-1 counts as 1 there.
//
// tau is TOL, or sqrt(eps) when TOL <= 0, but at least 10 eps and sqrt(N) eps, with eps the machine precision.
// No iterate is accepted for what a recurrence says: its residual is computed afresh, at one more product (and, with a
// preconditioner, solution), and IFAIL 0 means that this residual satisfies the criterion. Where it does not and the
// recurrence has lost touch with it, or the method has broken down, the method starts anew from the true residual;
// after a breakdown CGS, BICGSTAB, TFQMR and IDR take a random shadow vector, the same ones in every run.
// BICGSTAB of the companions does so too, with no breakdown, where fewer than its M steps have left no more than
// rounding.
//
// The criterion bounds the backward error. With a singular matrix and a b outside its range ||x|| may grow until
// ||A|| ||x|| excuses any residual: compare ||b - A x|| with ||b||, and ||A|| ||x|| with ||b||.
//
// Right-hand sides may have any size: a power of ten in b is one in x and changes no digit. Where tau ||b|| is below
// 10^-999999980, so that residuals that are too large may be 0 as numbers, the companions end with IFAIL 9.
#pragma once

#include "quarn/quarnfloat.h"
#include "tesk2mp/api.h"

TESK2MP_NAMES_BEGIN
extern "C" {

/// @defgroup f11bdf set-up of an iterative solution
///
/// Sets a problem up. LWREQ becomes 100 + N (4 + c), with c the vectors of the method, one more with a preconditioner:
///
///   RGMRES    M + 2, and (M + 1) M + 3 M + 1 elements more
///   CGS       5
///   BICGSTAB  2 M + 2
///   TFQMR     7
///   CG        2, with a preconditioner 4, and 50 elements more
///   MINRES    5, with a preconditioner 8, and 50 elements more
///   SYMMLQ    7, with a preconditioner 10, and 50 elements more
///   FGMRES    M + 2, with a preconditioner 2 M + 1, and (M + 1) M + 4 M + 1 elements more
///   IDR       3 M + 1, and M M + M elements more
///
/// @param[in] method "RGMRES", "CGS", "BICGSTAB" or "TFQMR", blanks before it and letters of either case allowed, what
///     follows the name ignored; at most 32 characters between blanks. The companion also takes "CG", "MINRES",
///     "SYMMLQ", "FGMRES" and "IDR"; the classic entry refuses them.
/// @param[in] precon 'P' the caller solves with a preconditioner, 'N' there is none
/// @param[in] norm '1' sum of magnitudes, 'I' largest magnitude, '2' Euclidean
/// @param[in] weight 'W' norms are weighted by WGT, 'N' they are not. Inner products of the methods never are.
/// @param[in] iterm criterion, 1 or 2
/// @param[in] n order of the system, N >= 1
/// @param[in] m RGMRES: iterations to a restart, 1 ... min(N, 50); FGMRES: the same, 1 ... min(N, 100). BICGSTAB and
///     IDR: the order, 1 ... min(N, 10). Otherwise not looked at
/// @param[in] tol tolerance tau, below 1; <= 0 means sqrt(eps)
/// @param[in] maxitn most iterations, >= 1
/// @param[in] anorm norm of A for ITERM 1; with weights, of W A W^-1. <= 0: F11BEF estimates it first, and asks for at
///     most ten products with A and nine with its transpose
/// @param[in] sigmax norm of M^-1 A for ITERM 2. <= 0: the largest growth of a vector in the products so far; of CG,
///     MINRES and SYMMLQ the largest eigenvalue in size that the Lanczos process shows, to a part in a thousand, where
///     that is more. Both are lower bounds
/// @param[in] monit every that many iterations F11BEF comes back to be monitored; 0: never
/// @param[out] lwreq the least LWORK, at most 2^31 - 1; set unless one of the arguments before it is wrong
/// @param[in,out] work LWORK elements: the whole state, which belongs to F11BEF until it is completed
/// @param[in] lwork length of WORK, LWORK >= LWREQ
///
/// @par Failures
/// The checks, in this order; on failure WORK is not changed:
///
///   IFAIL 1   99999 the first argument that is wrong: METHOD 1, PRECON 2, NORM 3, WEIGHT 4, ITERM 5, N 6, TOL 8,
///             MAXITN 9, ANORM 10 and SIGMAX 11 (not finite), MONIT 12 (negative), WORK 14 (of the classic
///             entry: fewer than 10 working digits, its elements could not hold the counters), LWORK 15
///   IFAIL 3   99997 M, in its place between N and TOL
///   IFAIL 2   99998 WORK holds a problem that has not been completed. IREVCM 6 ends it; so does WORK(4) = 0.
///
/// @par Source
/// The methods are those of the papers at the top of this header.
///
/// @par Cost
/// A few comparisons, and 100 elements of WORK written.
/// @{
TESK2MP_API void QuarnMP_f11bdf_(const char* method, const char* precon, const char* norm, const char* weight,
                                 const Integer* iterm, const Integer* n, const Integer* m, const QuarnFloat* tol,
                                 const Integer* maxitn, const QuarnFloat* anorm, const QuarnFloat* sigmax,
                                 const Integer* monit, Integer* lwreq, QuarnFloat* work, const Integer* lwork,
                                 Integer* ifail, int method_length, int precon_length, int norm_length,
                                 int weight_length);
TESK2MP_API void QuarnMPX_f11bdf_(const char* method, const char* precon, const char* norm, const char* weight,
                                  const Integer* iterm, const Integer* n, const Integer* m, const QuarnFloat* tol,
                                  const Integer* maxitn, const QuarnFloat* anorm, const QuarnFloat* sigmax,
                                  const Integer* monit, Integer* lwreq, QuarnFloat* work, const Integer* lwork,
                                  Integer* ifail, int method_length, int precon_length, int norm_length,
                                  int weight_length);
TESK2MP_API void QuarnMP_f11bdfn_(const char* method, const char* precon, const char* norm, const char* weight,
                                  Integer iterm, Integer n, Integer m, QuarnFloat tol, Integer maxitn, QuarnFloat anorm,
                                  QuarnFloat sigmax, Integer monit, Integer* lwreq, QuarnFloat* work, Integer lwork,
                                  char* message_buffer, Integer* ifail, int method_length, int precon_length,
                                  int norm_length, int weight_length, int buffer_length);
TESK2MP_API void QuarnMPX_f11bdfn_(const char* method, const char* precon, const char* norm, const char* weight,
                                   Integer iterm, Integer n, Integer m, QuarnFloat tol, Integer maxitn,
                                   QuarnFloat anorm, QuarnFloat sigmax, Integer monit, Integer* lwreq, QuarnFloat* work,
                                   Integer lwork, char* message_buffer, Integer* ifail, int method_length,
                                   int precon_length, int norm_length, int weight_length, int buffer_length);
/// @}

/// @defgroup f11bef iterative solution by reverse communication
///
/// Iterates until something is needed. Call it first with IREVCM 0, then again and again until IREVCM is 4:
///
///   IREVCM   in                                       out
///    0       first call: U is x_0, V is b
///    1       V holds A U                              set V := A U
///   -1       V holds A^T U                            set V := A^T U; to estimate ANORM, before the first iteration
///    2       V holds M^-1 U                           set V := M^-1 U
///    3       go on                                    look: U is the iterate, V its residual b - A U
///    4                                                the end: U is the solution, V its residual
///    5       in place of 1, -1, 2, 3 or 7, the request being done: stop after this iteration
///    6       stop at once: U is the last iterate that is complete, V is not touched
///    7       the sums are in WORK                      of a problem of F11BDD: form sums, which WORK(31) counts
///
/// The companion iterates what either set-up has set up; the classic entry does not know the problems of CG, MINRES,
/// SYMMLQ, FGMRES and IDR (IFAIL 2).
///
/// A request keeps nothing in mind but WORK, so U, V may be other arrays at the next call. The working precision may
/// change between calls, of the classic entry from 10 digits on. With fewer the companions, set-up included, work with
/// 10, and round U and V at the end; the tolerances of 10 digits need products and solutions of 10 digits.
///
/// @param[in,out] irevcm what is asked for, as above
/// @param[in,out] u N elements, not read back
/// @param[in,out] v N elements, the only thing that is read back
/// @param[in] wgt N positive numbers with WEIGHT 'W', the same in every call, which checks that they are positive and
///     finite; otherwise not referenced
/// @param[in,out] work as F11BDF has set it up
/// @param[in] lwork length of WORK, at least the LWREQ of F11BDF
///
/// @par Failures
/// On every failure IREVCM is 4, so that a loop ends. Outcomes, U and V as above unless said otherwise:
///
///   IFAIL 0   the true residual satisfies the criterion (of b = 0 the solution is 0, without any product)
///   IFAIL 1   99999 a wrong argument: 6 LWORK below 100 or LWREQ; 1 IREVCM neither the request nor 5 or 6; 4 a weight
///             that is not positive and finite. The problem stands where it stood: give the right value and go on.
///   IFAIL 2   99998 no problem in WORK, or the header of WORK has been overwritten
///   IFAIL 3   99997 the problem is completed
///   IFAIL 4   99996 ended at once
///   IFAIL 5   99995 ended after this iteration, not converged
///   IFAIL 6   99994 the same, after the true residual has had to replace that of the recurrence
///   IFAIL 7   99993 breakdown: a divisor of the method has vanished to working precision, and again after new starts
///             that have not halved the residual (one of RGMRES, FGMRES, CG, MINRES and SYMMLQ, four with other shadow
///             vectors of the others); a number has left the range of QuarnFloat (or what the caller brought was not
///             finite); a cycle of RGMRES or FGMRES has gained nothing; CG, MINRES or SYMMLQ have met what they are not
///             for: a direction p of CG with p^T A p < 0 (A is not positive definite), a residual with r^T M^-1 r < 0
///             (M is not), or inner products that differ by more than sqrt(eps) where symmetry makes them equal (looked
///             at in the first iterations)
///   IFAIL 8   99992 not converged after MAXITN iterations
///   IFAIL 9   99991 the true residual has replaced that of the recurrence, and has then not been halved: TOL asks for
///             more than the working precision has
///
/// @par Source
/// The methods are those of the papers at the top of this header; R. Barrett et al., Templates for the Solution of
/// Linear Systems, SIAM 1994, compares them.
///
/// @par Cost
/// The products and solutions asked for (1 for an iteration of RGMRES, FGMRES, IDR, CG, MINRES and SYMMLQ, 2 of CGS and
/// TFQMR, 2 M of BICGSTAB). Beside them, about 2 j N multiply-adds in the j-th iteration of RGMRES and FGMRES after a
/// restart; without a preconditioner 9 N in one of CG, 14 N of MINRES, 20 N of SYMMLQ, norms included; a fixed multiple
/// of N in CGS and TFQMR, of the order of M^2 N in BICGSTAB, of M N in IDR.
/// @{
TESK2MP_API void QuarnMP_f11bef_(Integer* irevcm, QuarnFloat* u, QuarnFloat* v, QuarnFloat* wgt, QuarnFloat* work,
                                 const Integer* lwork, Integer* ifail);
TESK2MP_API void QuarnMPX_f11bef_(Integer* irevcm, QuarnFloat* u, QuarnFloat* v, QuarnFloat* wgt, QuarnFloat* work,
                                  const Integer* lwork, Integer* ifail);
TESK2MP_API void QuarnMP_f11befn_(Integer* irevcm, QuarnFloat* u, QuarnFloat* v, QuarnFloat* wgt, QuarnFloat* work,
                                  Integer lwork, char* message_buffer, Integer* ifail, int buffer_length);
TESK2MP_API void QuarnMPX_f11befn_(Integer* irevcm, QuarnFloat* u, QuarnFloat* v, QuarnFloat* wgt, QuarnFloat* work,
                                   Integer lwork, char* message_buffer, Integer* ifail, int buffer_length);
/// @}

/// @defgroup f11bff progress of an iterative solution
///
/// The progress, at any time after set-up: iterations done; both sides of the criterion as last computed; ANORM and
/// SIGMAX as given or as estimated so far.
///
/// When F11BEF comes back with IREVCM 3 or 4 both sides are those of the true residual. In between they are what the
/// recurrence says: with ITERM 1 and a preconditioner the left side is scaled by the ratio of the two residuals when
/// last known, and RGMRES bounds it from below, and the right side from above, unless the norm is the Euclidean one.
///
/// @param[out] itn iterations done
/// @param[out] stplhs the left side of the criterion
/// @param[out] stprhs its right side, tau and norms included
/// @param[out] anorm the norm of A, 0 where ITERM 2 has no need of it
/// @param[out] sigmax the norm of M^-1 A
/// @param[in] work as F11BDF or F11BEF has left it; not changed
/// @param[in] lwork length of WORK, >= 100
///
/// @par Failures
///
///   IFAIL 2   99998 argument 7: LWORK < 100
///   IFAIL 1   99999 no problem in WORK
///
/// @par Source
/// The methods are those of the papers at the top of this header.
///
/// @par Cost
/// Five elements of WORK are read.
/// @{
TESK2MP_API void QuarnMP_f11bff_(Integer* itn, QuarnFloat* stplhs, QuarnFloat* stprhs, QuarnFloat* anorm,
                                 QuarnFloat* sigmax, QuarnFloat* work, const Integer* lwork, Integer* ifail);
TESK2MP_API void QuarnMPX_f11bff_(Integer* itn, QuarnFloat* stplhs, QuarnFloat* stprhs, QuarnFloat* anorm,
                                  QuarnFloat* sigmax, QuarnFloat* work, const Integer* lwork, Integer* ifail);
TESK2MP_API void QuarnMP_f11bffn_(Integer* itn, QuarnFloat* stplhs, QuarnFloat* stprhs, QuarnFloat* anorm,
                                  QuarnFloat* sigmax, QuarnFloat* work, Integer lwork, char* message_buffer,
                                  Integer* ifail, int buffer_length);
TESK2MP_API void QuarnMPX_f11bffn_(Integer* itn, QuarnFloat* stplhs, QuarnFloat* stprhs, QuarnFloat* anorm,
                                   QuarnFloat* sigmax, QuarnFloat* work, Integer lwork, char* message_buffer,
                                   Integer* ifail, int buffer_length);
/// @}

/// @defgroup zf11bdf set-up of a complex iterative solution
///
/// The companions of F11BDF, F11BEF and F11BFF over Complex: ZF11BDF sets up, with all methods; ZF11BEF iterates;
/// ZF11BFF reports the progress. CG, MINRES and SYMMLQ are for Hermitian matrices.
///
/// WORK, U and V are complex; weights, norms and tolerance are real. The sizes of complex numbers are their moduli.
/// With IREVCM -1 V is to become A^H U. Failures are those of the real routines, under their names.
///
/// @param[in] method as F11BDF; "CG", "MINRES", "SYMMLQ", "FGMRES" and "IDR" too
/// @param[in] precon as F11BDF
/// @param[in] norm as F11BDF
/// @param[in] weight as F11BDF
/// @param[in] iterm as F11BDF
/// @param[in] n as F11BDF
/// @param[in] m as F11BDF
/// @param[in] tol as F11BDF
/// @param[in] maxitn as F11BDF
/// @param[in,out] anorm as F11BDF and F11BFF
/// @param[in,out] sigmax as F11BDF and F11BFF
/// @param[in] monit as F11BDF
/// @param[out] lwreq as F11BDF
/// @param[in,out] work LWORK elements: the whole state
/// @param[in] lwork length of WORK, LWORK >= LWREQ
/// @param[in,out] irevcm as F11BEF
/// @param[in,out] u N elements, as F11BEF
/// @param[in,out] v N elements, as F11BEF
/// @param[in] wgt as F11BEF
/// @param[out] itn as F11BFF
/// @param[out] stplhs as F11BFF
/// @param[out] stprhs as F11BFF
///
/// @par Failures
/// As F11BDF, F11BEF and F11BFF.
///
/// @par Source
/// The methods are those of the papers at the top of this header.
///
/// @par Cost
/// As F11BEF, in complex operations.
/// @{
TESK2MP_API void QuarnMPX_zf11bdf_(const char* method, const char* precon, const char* norm, const char* weight,
                                   const Integer* iterm, const Integer* n, const Integer* m, const QuarnFloat* tol,
                                   const Integer* maxitn, const QuarnFloat* anorm, const QuarnFloat* sigmax,
                                   const Integer* monit, Integer* lwreq, Complex* work, const Integer* lwork,
                                   Integer* ifail, int method_length, int precon_length, int norm_length,
                                   int weight_length);
TESK2MP_API void QuarnMPX_zf11bef_(Integer* irevcm, Complex* u, Complex* v, QuarnFloat* wgt, Complex* work,
                                   const Integer* lwork, Integer* ifail);
TESK2MP_API void QuarnMPX_zf11bff_(Integer* itn, QuarnFloat* stplhs, QuarnFloat* stprhs, QuarnFloat* anorm,
                                   QuarnFloat* sigmax, Complex* work, const Integer* lwork, Integer* ifail);
/// @}

/// @defgroup f11bdd set-up of a distributed iterative solution
///
/// Sets up a problem whose vectors are shared out among several programs, ranks from here on: each has a block of rows,
/// and solves with QuarnMPX_f11bef_ and QuarnMPX_f11bff_ as F11BDF describes, on vectors of NLOC elements. All ranks
/// call in step and are asked for the same. A product takes what the rank needs of U from the others; with IREVCM 7 the
/// ranks form sums over all elements of vectors of which each has its part in WORK. Nothing else is common.
///
/// With IREVCM 7, K = WORK(31) sums are asked for at a time, in one message, and P = WORK(32) says where they stand:
/// sum k = 0, 1, ..., K - 1 in WORK(P + 4 k) and the three elements after it. Of a complex problem the real parts
/// count, and the value is complex.
///
///   WORK(P + 4 k)       kind  1 the sum of conj(x_i) y_i
///                             2 the Euclidean norm of x
///                             3 the sum of |x_i|
///                             4 the largest |x_i|
///                             12, 13, 14 like 2, 3 and 4, of x_i times the weight of the row
///   WORK(P + 4 k + 1)   where x begins: WORK has its NLOC elements from there on
///   WORK(P + 4 k + 2)   where y begins; of other kinds as x
///   WORK(P + 4 k + 3)   to be set to the value, the same on every rank
///
/// When the values are exact sums rounded once (quarn/accumulator.h), all digits are those of one rank with all the
/// rows, whatever the partition; a preconditioner has to be the same operator then, which that of a diagonal is and
/// that of blocks is not.
///
/// Requests of an iteration: RGMRES and FGMRES 2, whatever M, IDR 2, CGS 2, BICGSTAB 3 M, TFQMR 4, CG 2, MINRES 3,
/// SYMMLQ 4, and two at a new start or when an iterate is judged. RGMRES and FGMRES make their basis orthogonal by the
/// classical Gram-Schmidt process applied twice, BICGSTAB its residuals by the classical process; rounding errors of
/// the others are those of F11BDF. Where the range of QuarnFloat is left no rank can say so of the whole vector in
/// time: the last iterate may then have elements that are not finite (IFAIL 7).
///
/// LWREQ is that of F11BDF with NLOC for N, and 512 more.
///
/// @param[in] method as F11BDF; "CG", "MINRES", "SYMMLQ", "FGMRES" and "IDR" too
/// @param[in] precon as F11BDF
/// @param[in] norm as F11BDF
/// @param[in] weight as F11BDF; WGT has the weights of the rank's rows
/// @param[in] iterm as F11BDF
/// @param[in] n order of the system, N >= 1, the same on all ranks, as are all arguments but NLOC and FIRST
/// @param[in] nloc how many rows this rank has, 1 ... N
/// @param[in] first the first of them, 1 ... N - NLOC + 1
/// @param[in] m as F11BDF
/// @param[in] tol as F11BDF
/// @param[in] maxitn as F11BDF
/// @param[in] anorm as F11BDF
/// @param[in] sigmax as F11BDF
/// @param[in] monit as F11BDF
/// @param[out] lwreq the least LWORK
/// @param[in,out] work LWORK elements: the whole state of this rank
/// @param[in] lwork length of WORK, LWORK >= LWREQ
///
/// @par Failures
/// As F11BDF, under the name F11BDD; arguments have the numbers that they have here: NLOC 7, FIRST 8, ... LWORK 17.
/// Weights are checked by the rank that has them.
///
/// @par Source
/// The methods are those of the papers at the top of this header.
///
/// @par Cost
/// As F11BDF.
/// @{
TESK2MP_API void QuarnMPX_f11bdd_(const char* method, const char* precon, const char* norm, const char* weight,
                                  const Integer* iterm, const Integer* n, const Integer* nloc, const Integer* first,
                                  const Integer* m, const QuarnFloat* tol, const Integer* maxitn,
                                  const QuarnFloat* anorm, const QuarnFloat* sigmax, const Integer* monit,
                                  Integer* lwreq, QuarnFloat* work, const Integer* lwork, Integer* ifail,
                                  int method_length, int precon_length, int norm_length, int weight_length);
/// @}

/// @defgroup zf11bdd set-up of a distributed complex solution
///
/// F11BDD over Complex, for QuarnMPX_zf11bef_ and QuarnMPX_zf11bff_: WORK is complex.
///
/// @like f11bdd
///
/// @par Failures
/// As F11BDD.
/// @{
TESK2MP_API void QuarnMPX_zf11bdd_(const char* method, const char* precon, const char* norm, const char* weight,
                                   const Integer* iterm, const Integer* n, const Integer* nloc, const Integer* first,
                                   const Integer* m, const QuarnFloat* tol, const Integer* maxitn,
                                   const QuarnFloat* anorm, const QuarnFloat* sigmax, const Integer* monit,
                                   Integer* lwreq, Complex* work, const Integer* lwork, Integer* ifail,
                                   int method_length, int precon_length, int norm_length, int weight_length);
/// @}

/// @defgroup f11bezn the steps of one method
///
/// The steps of RGMRES, CGS, BICGSTAB and TFQMR that F11BEF takes, for hosts that report in their own way. WORK must
/// hold a problem for that very method.
///
/// @like f11bef
///
/// @par Failures
/// *info is LWORK on entry; on exit 0, an IFAIL of F11BEF, or -k when argument k of F11BEF is wrong. Nothing is written
/// to the console.
/// @{
TESK2MP_API void QuarnMP_f11bezn_(Integer* irevcm, QuarnFloat* work, QuarnFloat* u, QuarnFloat* v, QuarnFloat* wgt,
                                  Integer* info);
TESK2MP_API void QuarnMP_f11betn_(Integer* irevcm, QuarnFloat* work, QuarnFloat* u, QuarnFloat* v, QuarnFloat* wgt,
                                  Integer* info);
TESK2MP_API void QuarnMP_f11bepn_(Integer* irevcm, QuarnFloat* work, QuarnFloat* u, QuarnFloat* v, QuarnFloat* wgt,
                                  Integer* info);
TESK2MP_API void QuarnMP_f11beln_(Integer* irevcm, QuarnFloat* work, QuarnFloat* u, QuarnFloat* v, QuarnFloat* wgt,
                                  Integer* info);
/// @}
}
TESK2MP_NAMES_END

// Layout of WORK, 1-based. 1 ... 100 the header, of which these places are promised: 4 and 20 the markers 1739512 and
// 840653 of a problem that has been set up; 5 is 0 after set-up, 1 while it runs, 2 when it is completed; 6 the method
// (1 RGMRES, 2 CGS, 3 BICGSTAB, 4 TFQMR, 5 CG, 6 MINRES, 7 SYMMLQ, 8 FGMRES, 9 IDR); 16 the iterations done; 53 ... 56
// both sides of the criterion, ANORM, SIGMAX; of a problem of F11BDD 31 and 32 how many sums are asked for, and where.
// From 101 on vectors of N: x, b, the preconditioned residual, b - A x, those of the method, and with a preconditioner
// M^-1 (b - A x); last what RGMRES has beside vectors, and the sums of F11BDD.
