// Matrices in Matrix Market's two formats, coordinate and array, read and written without losing a digit.
#pragma once

#include <string>
#include <vector>

#include "cli/io/dense_matrix.h"
#include "quarn/quarnfloat.h"

namespace cli {

enum class Field { real, complex, integer, pattern };
enum class Symmetry { general, symmetric, skew_symmetric, hermitian };

/// Entries in the file's order; of all but general matrices the lower triangle alone.
struct SparseMatrix {
  std::string source;  // names the input in messages
  Integer rows = 0;
  Integer columns = 0;
  Field field = Field::real;
  Symmetry symmetry = Symmetry::general;
  std::vector<Integer> row;  // from 1
  std::vector<Integer> column;
  std::vector<Complex> values;  // pattern entries are 1

  Integer count() const { return Integer(values.size()); }
  bool complex() const { return field == Field::complex; }
};

/// Whether the text claims to be a Matrix Market file.
bool is_matrix_market(const std::string& text);

/// A matrix in either format: real, complex, integer or pattern; general, symmetric, skew-symmetric or Hermitian. Of
/// the array format every stored element becomes an entry. `source` names the text in messages. Throws Failure with
/// source, line and reason for any departure from the format. With `upper`, entries above the diagonal stand for those
/// below it where there are none.
SparseMatrix parse_matrix(const std::string& text, const std::string& source, bool upper = false);
/// The same with all its elements, those of both triangles; entries of the same place add up.
DenseMatrix parse_dense_matrix(const std::string& text, const std::string& source, bool upper = false);
/// The same matrix with both triangles: each mirrored entry follows its own.
SparseMatrix expanded(const SparseMatrix& matrix);
/// All elements of both triangles; entries of the same place add up.
DenseMatrix dense(const SparseMatrix& matrix);

/// The coordinate format, the comments in lines of their own below the first.
std::string matrix_market_text(const SparseMatrix& matrix, const std::vector<std::string>& comments = {});
/// The array format.
std::string matrix_market_text(const DenseMatrix& matrix, const std::vector<std::string>& comments = {});

const char* name_of(Field field);
const char* name_of(Symmetry symmetry);

}  // namespace cli
