// Factors of sparse matrices as results.
#pragma once

#include <string>

#include "cli/io/matrix_market.h"
#include "cli/io/result.h"

namespace cli {

struct FactorOptions {
  std::string kind;   // lu, cholesky, ilu or ic; empty: none
  Integer fill = -1;  // of ilu and ic; negative where it is not given
  std::string drop;
  std::string permutation;  // the file for the order of rows and columns; empty: none

  bool has_fill() const { return fill >= 0 || !drop.empty(); }
};

/// The factors in one matrix: of lu and ilu U with what is below the diagonal of L, of cholesky and ic L with D on the
/// diagonal; rows and columns in the order of the factors, which is written where options.permutation says. The picture
/// shows where entries stand beside those of the matrix. Throws Failure for matrices that are not square, and for
/// cholesky and ic of those that are not symmetric or Hermitian.
Result factors_of(const SparseMatrix& matrix, const FactorOptions& options);

}  // namespace cli
