// Matrices as results.
#pragma once

#include "cli/io/matrix_market.h"
#include "cli/io/result.h"

namespace cli {

/// Fills the result with the matrix in every form, so that read_dense_matrix() gets it back: columns c1, c2, ...; of a
/// single column "i" and "value", or "real" and "imaginary" of complex numbers.
void add_matrix(Result& result, DenseMatrix matrix);

/// The same for entries: columns "row", "column" and the values. The notes go into the Matrix Market form as comments.
void add_matrix(Result& result, SparseMatrix matrix);

/// Table and data with a row for each number: columns "i", "real" and "imaginary".
void add_complex_numbers(Result& result, const std::vector<Complex>& values);

}  // namespace cli
