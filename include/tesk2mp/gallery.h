// Test matrices and random vectors.
#pragma once

#include "quarn/quarnfloat.h"
#include "tesk2mp/api.h"

TESK2MP_NAMES_BEGIN
extern "C" {

/// @defgroup dgallery test matrices by name
///
/// DGALLERY: a square matrix with known properties, of which QuarnMPX_gallery_text_ lists the names; ZGALLERY the same
/// over Complex. Elements are rounded from at least four digits more. What is random comes from generator 0 of G05KAF.
///
/// @param[in] name of the matrix, in lower case, up to its NUL
/// @param[in] n order, >= 0; 7 of godunov, 8 of rosser, a power of two of hadamard
/// @param[in] parameters count numbers
/// @param[in] count of parameters, as the matrix has them
/// @param[in,out] iseed 4 integers 0 ... 32767, not all zero: the state of generator 0; for random matrices alone
/// @param[out] a n columns of n elements, lda apart
/// @param[in] lda step from column to column of A, >= max(1, n)
/// @param[out] info 0, or -k when argument k is illegal
///
/// @par Failures
/// Illegal: an unknown name (-1), n < 0 or an order that the matrix does not have (-2), parameters that it cannot be
/// built from (-3: a zero leading coefficient or sum, a condition below 1, a density beyond 0 ... 1), count (-4), iseed
/// (-5), lda (-7). Storage for 3 n^2 elements is taken for the time of the call by random orthogonal factors.
///
/// @par Accuracy
/// Matrices that are not random are right to half a unit of the last place, but for some 0.01 units; where elements are
/// whole numbers that fit the digits they are exact.
///
/// @par Source
/// N. J. Higham, Accuracy and Stability of Numerical Algorithms, 2nd ed., SIAM 2002, chapter 28; G. W. Stewart, The
/// efficient generation of random orthogonal matrices, SIAM J. Numer. Anal. 17 (1980).
///
/// @par Cost
/// Some n^2 operations; of random orthogonal factors some 4 n^3.
/// @{
TESK2MP_API void QuarnMPX_dgallery_(const char* name, Integer n, const QuarnFloat* parameters, Integer count,
                                    Integer* iseed, QuarnFloat* a, Integer lda, Integer* info, int name_length);
TESK2MP_API void QuarnMPX_zgallery_(const char* name, Integer n, const Complex* parameters, Integer count,
                                    Integer* iseed, Complex* a, Integer lda, Integer* info, int name_length);
/// @}

/// @defgroup gallery_text the table of test matrices
///
/// What the table of test matrices says; null for a row or a field that it does not have. The texts stay.
///
/// @param[in] row from 1
/// @param[in] field 1: the name, as DGALLERY takes it; 2: its parameters, optional ones in brackets; 3: a line about it
///
/// @par Source
/// As of DGALLERY.
///
/// @par Accuracy
/// Texts.
///
/// @par Cost
/// A look into a table.
/// @{
TESK2MP_API const char* QuarnMPX_gallery_text_(Integer row, Integer field);
/// @}

/// @defgroup dlarnv random vectors
///
/// DLARNV: n random numbers, each random to its last digit, from generator 0 of G05KAF; ZLARNV complex ones.
///
/// @param[in] idist 1: uniform on (0, 1); 2: uniform on (-1, 1); 3: normal; 4: uniform on the unit disc; 5: uniform on
///     the unit circle; the last two of ZLARNV alone, whose 1, 2 and 3 are those of both parts
/// @param[in,out] iseed 4 integers 0 ... 32767, not all zero: the state of the generator
/// @param[in] n how many
/// @param[out] x n numbers; as they were for any other idist
///
/// @par Accuracy
/// Numbers that are random to the last digit.
///
/// @par Source
/// E. Anderson et al., LAPACK Users' Guide, SIAM 1999: DLARNV and ZLARNV; G. E. P. Box, M. E. Muller, A note on the
/// generation of random normal deviates, Ann. Math. Statist. 29 (1958).
///
/// @par Cost
/// A draw per uniform number; a logarithm, a root and two trigonometric functions per normal one.
/// @{
TESK2MP_API void QuarnMPX_dlarnv_(Integer idist, Integer* iseed, Integer n, QuarnFloat* x);
TESK2MP_API void QuarnMPX_zlarnv_(Integer idist, Integer* iseed, Integer n, Complex* x);
/// @}
}
TESK2MP_NAMES_END
