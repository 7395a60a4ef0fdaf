// Complete factorisations of sparse matrices, with factors by rows as incomplete.h has them.
#pragma once

#include <algorithm>
#include <vector>

#include "src/frame/constants.h"
#include "src/sparse/coordinate.h"

namespace tesk {

/// A row of the factors; columns are steps, ascending.
template <class Value>
struct FactorRow {
  std::vector<Integer> columns;
  std::vector<Value> values;
};

template <class Value>
struct DirectFactors {
  std::vector<FactorRow<Value>> rows;
  std::vector<Integer> diagonals;  // places of the pivots in their rows; empty with Cholesky factors: the last ones
  std::vector<Integer> row_order;
  std::vector<Integer> column_order;
  Integer failed = 0;  // the step, from 1, without a pivot; the factors are then not complete
};

/// A pivot this small beside what it was before elimination is a rounding. At one and two digits 10 eps is as large as
/// pivots themselves.
inline QuarnFloat rounding_of(const QuarnFloat& size) { return std::min(10 * epsilon(), QuarnFloat(1, -2)) * size; }

/// P A Q = L U of a matrix in canonical form. Rows are eliminated in the given order (from 0), each with the largest of
/// its elements as the pivot.
template <class Value>
DirectFactors<Value> direct_lu(const CoordinateMatrix<Value>& matrix, const std::vector<Integer>& order);

/// P A P^T = L D L^H of a lower triangle in canonical form, likewise.
template <class Value>
DirectFactors<Value> direct_cholesky(const CoordinateMatrix<Value>& triangle, const std::vector<Integer>& order);

}  // namespace tesk
