// Orders of elimination that fill little.
#pragma once

#include <vector>

#include "quarn/quarnfloat.h"

namespace tesk {

/// Whose fill an order is for: that of A + A^T, where pivots stay on the diagonal, or that of the rows, whatever
/// columns the pivots are taken from.
enum class FillOf { symmetric, rows };

/// The order in which the rows of a matrix of order n are eliminated best, from 0; entries count from 1, in any order.
std::vector<Integer> least_fill_order(FillOf what, Integer n, Integer nnz, const Integer* irow, const Integer* icol);

}  // namespace tesk
