// Sparse matrices in Matrix Market's coordinate format, read without losing a digit.
#pragma once

#include <string>
#include <vector>

#include "quarn/quarnfloat.h"

namespace cli {

enum class Symmetry { general, symmetric, skew_symmetric, hermitian };

/// Entries in the file's order; of all but general matrices the lower triangle alone.
struct SparseMatrix {
  std::string source;
  Integer rows = 0;
  Integer columns = 0;
  bool complex = false;
  Symmetry symmetry = Symmetry::general;
  std::vector<Integer> row;
  std::vector<Integer> column;
  std::vector<Complex> values;  // pattern entries are 1

  Integer count() const { return Integer(values.size()); }
};

/// Reads a file, or standard input for "-": real, complex, integer or pattern; general, symmetric, skew-symmetric or
/// Hermitian. Throws Failure with file, line and reason.
SparseMatrix read_matrix(const std::string& file);

/// The same matrix with both triangles: each mirrored entry follows its own.
SparseMatrix expanded(const SparseMatrix& matrix);

}  // namespace cli
