// Incomplete factorisations: A is about L U, or L D L^H, of which fill beyond a level, or small beside its rows, is
// dropped. Y. Saad, Iterative Methods for Sparse Linear Systems, SIAM 2003, sections 10.3 and 10.4; N. Munksgaard, ACM
// Trans. Math. Software 6, 1980, for the symmetric one.
#pragma once

#include <vector>

#include "src/sparse/coordinate.h"

namespace tesk {

/// What of the fill is kept.
struct FillRule {
  Integer level = 0;      // up to this level; negative: the tolerance decides alone
  QuarnFloat tolerance;   // fill below it times the largest element of its row of A is dropped; 0 drops none
  bool modified = false;  // what is dropped goes into the pivots, so that row sums stay
};

/// Where a pivot is looked for in what is left of the matrix.
enum class PivotSearch { none, rows, columns, both, least_fill };
enum class DiagonalSearch { none, largest, least_fill };

/// The factors row by row, columns ascending: L without its unit diagonal, then the pivot, then the rest of U. Indices
/// count from 0; row k is that of row row_order[k] of A, column k that of column column_order[k].
template <class Value>
struct IncompleteFactors {
  std::vector<Value> values;
  std::vector<Integer> rows;
  std::vector<Integer> columns;
  std::vector<Integer> starts;     // n + 1
  std::vector<Integer> diagonals;  // n
  std::vector<Integer> row_order;
  std::vector<Integer> column_order;
  Integer corrected = 0;  // pivots that have been replaced
};

/// Of a matrix in canonical form.
template <class Value>
IncompleteFactors<Value> incomplete_lu(const CoordinateMatrix<Value>& matrix, const FillRule& rule, PivotSearch search);

/// Of a lower triangle in canonical form; U is absent. shift: the diagonal is multiplied by 1 + shift first.
template <class Value>
IncompleteFactors<Value> incomplete_cholesky(const CoordinateMatrix<Value>& triangle, const FillRule& rule,
                                             DiagonalSearch search, const QuarnFloat& shift);

}  // namespace tesk
