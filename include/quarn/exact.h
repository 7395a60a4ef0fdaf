// Sums of products with one rounding: matrix products, matrix times vector, dot products, sparse products.
//
// Every result is the exact value of its formula, rounded once, half to even, to QuarnDigits() digits. It therefore
// depends on the operands and the digits alone: not on the order of summation, the processor, the platform or the
// floating-point environment of the caller. Operands may have any number of digits and any exponents.
//
// Where an infinity or a NaN takes part the terms are alpha a(i,l) b(l,j) and beta c(i,j) of the extended real numbers:
// NaN for a NaN, infinity times zero, or infinities of both signs. An exact zero is +0; where beta C is part of the sum
// it is -0 if all terms are -0.
//
// Matrix products choose for themselves between residues modulo primes, in products of doubles, and exact sums of
// limbs, whichever is faster for the shape, the digits and the spread of the exponents; rows and columns of which some
// number is far from the others in magnitude do not slow down the rest. They share their work among the threads that
// quarn/parallel.h allows, and pass check points (QuarnCheckInterrupt).
#pragma once

#include <cstddef>

#include "quarn/quarnfloat.h"

/// A matrix in somebody's storage: element (i, j), both from 0, is first[i * row + j * column]. Steps of any sign and
/// size: transposition exchanges them.
template <class T>
struct QuarnMatrix {
  T* first;
  std::ptrdiff_t row;
  std::ptrdiff_t column;
};

/// C := alpha A B + beta C, A m by k, B k by n, with one rounding of each entry. A and B are not read when alpha is
/// zero or k is 0, C is not read when beta is zero. C must not overlap A or B, nor an element of it another one.
///
/// Throws std::bad_alloc, with C as it was. Temporary storage: some 8 P (m k + k n) bytes, at most 800 MB, with P near
/// 0.29 (D + s) primes for operands of D digits whose exponents differ by s within a row of A or a column of B.
QRNFLOAT_API void QuarnMatrixProduct(std::size_t m, std::size_t n, std::size_t k, const QuarnFloat& alpha,
                                     QuarnMatrix<const QuarnFloat> a, QuarnMatrix<const QuarnFloat> b,
                                     const QuarnFloat& beta, QuarnMatrix<QuarnFloat> c);

/// The same with complex entries, each part of an entry with one rounding; `how` may have QuarnConjugateA and
/// QuarnConjugateB. A scalar whose imaginary part is zero is a real one.
QRNFLOAT_API void QuarnMatrixProduct(std::size_t m, std::size_t n, std::size_t k, const quarn::Complex& alpha,
                                     QuarnMatrix<const quarn::Complex> a, QuarnMatrix<const quarn::Complex> b,
                                     const quarn::Complex& beta, QuarnMatrix<quarn::Complex> c,
                                     unsigned how = QuarnPlain);

/// The sum of a[i * step_a] * b[i * step_b] for i from 0 to n - 1, with one rounding.
QRNFLOAT_API QuarnFloat QuarnDot(std::size_t n, const QuarnFloat* a, std::ptrdiff_t step_a, const QuarnFloat* b,
                                 std::ptrdiff_t step_b);

/// A sparse matrix in somebody's storage: entry k, from 0, is values[k] in row rows[k] and column columns[k], from 1.
/// Entries of the same place add up.
template <class T>
struct QuarnSparseMatrix {
  std::size_t entries;
  const T* values;
  const quarn::Integer* rows;
  const quarn::Integer* columns;
};

enum QuarnSparseStorage : unsigned { QuarnMirrored = 8 };

/// y := A x with one rounding of each of the n numbers, of each part of them for complex ones. Entries may stand in any
/// order; those sorted by rows cost least. `how` may have QuarnConjugateA, and QuarnMirrored: an entry off the diagonal
/// stands for its conjugate in the mirrored place too. Rows and columns exchanged give the transpose. y must not
/// overlap x or A. Throws std::bad_alloc, with y as it was; temporary storage: y once more, and 8 bytes an entry unless
/// sorted, 16 with QuarnMirrored.
QRNFLOAT_API void QuarnSparseProduct(std::size_t n, const QuarnSparseMatrix<QuarnFloat>& a, const QuarnFloat* x,
                                     QuarnFloat* y, unsigned how = QuarnPlain);
QRNFLOAT_API void QuarnSparseProduct(std::size_t n, const QuarnSparseMatrix<quarn::Complex>& a, const quarn::Complex* x,
                                     quarn::Complex* y, unsigned how = QuarnPlain);

/// For tests: the kernels that matrix products use from now on in the whole process. "sse2" (vectors of 16 bytes on
/// other processors), "avx2", "avx512", "none" for exact sums of limbs alone, or "best", which is the choice made when
/// the library is loaded. Results are the same with all of them. Returns the name of what is in use, or a null pointer,
/// with nothing changed, for an unknown name and kernels that this processor does not run. Null asks only.
QRNFLOAT_API const char* QuarnExactKernel(const char* name = nullptr) noexcept;
