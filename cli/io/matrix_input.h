// Matrices and vectors from files of any kind that is read: Matrix Market in both formats, CSV, plain lists, JSON.
#pragma once

#include <string>
#include <vector>

#include "cli/io/matrix_market.h"
#include "cli/io/number_table.h"

namespace cli {

/// A dense matrix from a file, or from standard input for "-", told apart by its contents:
/// - Matrix Market, either format, every symmetry;
/// - a table of numbers, a row a line (see NumberTable), cells such as 2, -i or 1.5-2e3i. A column named "i" counts the
///   rows and is left out, and so are bounds of errors, which results have in a column "error"; columns "real" and
///   "imaginary" are one complex column.
/// Rows with a missing number are left out, or the number is interpolated within its column, as the options say. Throws
/// Failure with file, line and reason.
DenseMatrix read_dense_matrix(const std::string& file, const TableOptions& options = {});
/// The same from a text at hand, which is called `source` in messages.
DenseMatrix dense_matrix_of(const std::string& text, const std::string& source, const TableOptions& options = {});

/// The same as entries: those of a Matrix Market file, or the elements of a table that are not zero.
SparseMatrix read_matrix(const std::string& file, const TableOptions& options = {});

/// One column of numbers: the one that is named or numbered, or columns "real" and "imaginary" together, or the last
/// numeric one; of a Matrix Market file the only column, or the one that is numbered.
DenseMatrix read_vector(const std::string& file, const std::string& column = "", const TableOptions& options = {});
DenseMatrix vector_of(const std::string& text, const std::string& source, const std::string& column,
                      const TableOptions& options = {});

/// The same from a table at hand.
DenseMatrix vector_from(const NumberTable& table, const std::string& column = "");

std::vector<QuarnFloat> real_parts(const std::vector<Complex>& values);
std::vector<QuarnFloat> imaginary_parts(const std::vector<Complex>& values);
/// Whether the column holds numbers of which some are not real.
bool is_complex(const NumberTable::Column& column);

std::vector<Complex> complex_numbers(const std::vector<QuarnFloat>& values);

/// "3 by 4 matrix in FILE"
std::string description(const DenseMatrix& matrix);

}  // namespace cli
