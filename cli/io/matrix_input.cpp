#include "cli/io/matrix_input.h"

#include <algorithm>
#include <limits>

#include "cli/commands/failure.h"
#include "cli/io/input.h"

namespace cli {

namespace {

bool is_complex(const NumberTable::Column& column) {
  return !std::all_of(column.cells.begin(), column.cells.end(), [](const std::string& cell) {
    return is_number(cell) || !is_complex_number(cell);  // what is neither is complained about as a real number
  });
}

std::vector<Complex> numbers_of(const NumberTable& table, const NumberTable::Column& column, bool complex) {
  return complex ? table.complex_numbers(column) : complex_numbers(table.numbers(column));
}

// The one complex column of columns "real" and "imaginary".
std::vector<Complex> joined(const NumberTable& table, const NumberTable::Column& real,
                            const NumberTable::Column& imaginary) {
  const std::vector<QuarnFloat> re = table.numbers(real);
  const std::vector<QuarnFloat> im = table.numbers(imaginary);
  if (re.size() != im.size()) {
    throw bad_input(table.source() + ": " + std::to_string(re.size()) + " real and " + std::to_string(im.size()) +
                    " imaginary parts");
  }
  std::vector<Complex> values;
  values.reserve(re.size());
  for (std::size_t i = 0; i < re.size(); ++i) {
    values.emplace_back(re[i], im[i]);
  }
  return values;
}

Integer count_of(const NumberTable& table, std::size_t count) {
  if (count > std::size_t(std::numeric_limits<Integer>::max())) {
    throw bad_input(table.source() + ": more numbers than a 32-bit count can hold");
  }
  return Integer(count);
}

DenseMatrix matrix_from(const NumberTable& table) {
  if (table.find("row") != nullptr && table.find("column") != nullptr) {
    throw bad_input(table.source() + ": entries of a sparse matrix, which are read from a Matrix Market file alone");
  }
  if (table.find("real") != nullptr && table.find("imaginary") != nullptr) {
    return vector_from(table);
  }
  DenseMatrix matrix;
  matrix.source = table.source();
  matrix.rows = count_of(table, table.columns().front().cells.size());
  for (const NumberTable::Column& column : table.columns()) {
    if (column.name == "i") {
      continue;
    }
    if (column.cells.size() != std::size_t(matrix.rows)) {
      throw bad_input(table.source() + ": columns of " + std::to_string(matrix.rows) + " and " +
                      std::to_string(column.cells.size()) + " numbers");
    }
    const bool complex = is_complex(column);
    const std::vector<Complex> values = numbers_of(table, column, complex);
    matrix.values.insert(matrix.values.end(), values.begin(), values.end());
    matrix.complex = matrix.complex || complex;
    ++matrix.columns;
  }
  if (matrix.columns == 0) {
    throw bad_input(table.source() + ": no numbers in it");
  }
  return matrix;
}

// The elements that are not zero, row by row.
SparseMatrix sparse(const DenseMatrix& matrix) {
  SparseMatrix result;
  result.source = matrix.source;
  result.rows = matrix.rows;
  result.columns = matrix.columns;
  result.field = matrix.complex ? Field::complex : Field::real;
  for (Integer i = 0; i < matrix.rows; ++i) {
    for (Integer j = 0; j < matrix.columns; ++j) {
      if (matrix(i, j) != Complex(0)) {
        result.row.push_back(i + 1);
        result.column.push_back(j + 1);
        result.values.push_back(matrix(i, j));
      }
    }
  }
  return result;
}

DenseMatrix column_of(DenseMatrix matrix, const std::string& column) {
  constexpr std::size_t kLongestPosition = 9;
  Integer position = 1;
  if (!column.empty()) {
    const bool digits = column.size() <= kLongestPosition && std::all_of(column.begin(), column.end(), is_digit);
    position = digits ? Integer(std::stol(column)) : 0;
  } else if (matrix.columns != 1) {
    throw bad_input(description(matrix) + ", where one column is needed (--column says which)");
  }
  if (position < 1 || position > matrix.columns) {
    throw bad_input(matrix.source + ": no column '" + column + "', there are " + std::to_string(matrix.columns));
  }
  const auto first = matrix.values.begin() + std::ptrdiff_t(position - 1) * matrix.rows;
  matrix.values = std::vector<Complex>(first, first + matrix.rows);
  matrix.columns = 1;
  return matrix;
}

}  // namespace

DenseMatrix read_dense_matrix(const std::string& file) {
  const std::string text = read_input(file);
  const std::string source = name_of_input(file);
  return is_matrix_market(text) ? dense(parse_matrix(text, source)) : matrix_from(NumberTable::parse(text, source));
}

SparseMatrix read_matrix(const std::string& file) {
  const std::string text = read_input(file);
  const std::string source = name_of_input(file);
  return text.starts_with('%') ? parse_matrix(text, source) : sparse(matrix_from(NumberTable::parse(text, source)));
}

DenseMatrix read_vector(const std::string& file, const std::string& column) {
  const std::string text = read_input(file);
  const std::string source = name_of_input(file);
  return is_matrix_market(text) ? column_of(dense(parse_matrix(text, source)), column)
                                : vector_from(NumberTable::parse(text, source), column);
}

DenseMatrix vector_from(const NumberTable& table, const std::string& column) {
  const NumberTable::Column* real = table.find("real");
  const NumberTable::Column* imaginary = table.find("imaginary");
  DenseMatrix vector;
  vector.source = table.source();
  vector.columns = 1;
  if (column.empty() && real != nullptr && imaginary != nullptr) {
    vector.values = joined(table, *real, *imaginary);
    vector.complex = true;
  } else {
    const NumberTable::Column& chosen = table.choose(column);
    vector.complex = is_complex(chosen);
    vector.values = numbers_of(table, chosen, vector.complex);
  }
  vector.rows = count_of(table, vector.values.size());
  return vector;
}

std::vector<QuarnFloat> real_parts(const std::vector<Complex>& values) {
  std::vector<QuarnFloat> parts(values.size());
  std::transform(values.begin(), values.end(), parts.begin(), [](const Complex& value) { return value.re; });
  return parts;
}

std::vector<QuarnFloat> imaginary_parts(const std::vector<Complex>& values) {
  std::vector<QuarnFloat> parts(values.size());
  std::transform(values.begin(), values.end(), parts.begin(), [](const Complex& value) { return value.im; });
  return parts;
}

std::vector<Complex> complex_numbers(const std::vector<QuarnFloat>& values) { return {values.begin(), values.end()}; }

std::string description(const DenseMatrix& matrix) {
  return std::to_string(matrix.rows) + " by " + std::to_string(matrix.columns) + " matrix in " + matrix.source;
}

}  // namespace cli
