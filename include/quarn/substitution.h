// Substitution with sparse triangles, with one rounding of the sum of each row.
#pragma once

#include <cstddef>

#include "quarn/quarnfloat.h"

/// A sparse matrix of order n by rows: row i, from 0, has the entries starts[i] ... starts[i + 1] - 1, of which
/// diagonals[i] is that of the diagonal. Entry k, from 1, is values[k - 1] in column columns[k - 1], from 1; columns
/// ascend in a row.
template <class T>
struct QuarnSparseRows {
  std::size_t n;
  const T* values;
  const quarn::Integer* columns;
  const quarn::Integer* starts;
  const quarn::Integer* diagonals;
};

enum QuarnTriangle : unsigned { QuarnUpper = 16, QuarnUnit = 32, QuarnAdjoint = 64 };

/// x := T^-1 x by substitution, T the lower triangle of A, or its upper one with QuarnUpper in `how`; of T^H with
/// QuarnAdjoint. What an element loses to those before it is summed exactly and rounded once; then it is divided by
/// that of the diagonal, with QuarnUnit by 1. x must not overlap A. Throws std::bad_alloc, with x as it was up to 126
/// digits; temporary storage: with QuarnAdjoint 8 bytes an entry. Passes check points; an interrupt leaves x half
/// solved. Cost: a multiply-add for each entry of the triangle, a rounding and a division for each row.
QRNFLOAT_API void QuarnSparseSubstitution(const QuarnSparseRows<QuarnFloat>& a, QuarnFloat* x,
                                          unsigned how = QuarnPlain);
QRNFLOAT_API void QuarnSparseSubstitution(const QuarnSparseRows<quarn::Complex>& a, quarn::Complex* x,
                                          unsigned how = QuarnPlain);
