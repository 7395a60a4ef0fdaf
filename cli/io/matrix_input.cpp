#include "cli/io/matrix_input.h"

#include <algorithm>
#include <limits>
#include <type_traits>

#include "cli/commands/failure.h"
#include "cli/io/input.h"

namespace cli {

namespace {

template <class T>
std::vector<T> numbers_of(const NumberTable& table, const NumberTable::Column& column) {
  if constexpr (std::is_same_v<T, Complex>) {
    if (is_complex(column)) {
      return table.complex_numbers(column);
    }
    const std::vector<QuarnFloat> numbers = table.numbers(column);
    return {numbers.begin(), numbers.end()};
  } else {
    return table.numbers(column);
  }
}

template <class T>
tesk2mp::Matrix<T> columns_as(const NumberTable& table, const std::vector<const NumberTable::Column*>& columns) {
  std::vector<T> elements = numbers_of<T>(table, *columns.front());
  const std::size_t rows = elements.size();
  if (columns.size() == 1) {
    return matrix_of(elements, rows);
  }
  tesk2mp::Matrix<T> matrix(rows, columns.size());
  for (std::size_t j = 0; j < columns.size(); ++j) {
    if (j > 0) {
      elements = numbers_of<T>(table, *columns[j]);
    }
    std::move(elements.begin(), elements.end(), matrix.data() + j * rows);
  }
  return matrix;
}

DenseMatrix matrix_of_columns(const NumberTable& table, const std::vector<const NumberTable::Column*>& columns) {
  if (std::any_of(columns.begin(), columns.end(), [](const auto* column) { return is_complex(*column); })) {
    return {table.source(), columns_as<Complex>(table, columns)};
  }
  return {table.source(), columns_as<QuarnFloat>(table, columns)};
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

void require_count(const NumberTable& table, std::size_t count) {
  if (count > std::size_t(std::numeric_limits<Integer>::max())) {
    throw bad_input(table.source() + ": more numbers than a 32-bit count can hold");
  }
}

DenseMatrix matrix_from(NumberTable table) {
  table.drop_incomplete_rows();
  if (table.find("row") != nullptr && table.find("column") != nullptr) {
    throw bad_input(table.source() + ": entries of a sparse matrix, which are read from a Matrix Market file alone");
  }
  if (table.find("real") != nullptr && table.find("imaginary") != nullptr) {
    return vector_from(table);
  }
  const std::size_t rows = table.columns().front().cells.size();
  require_count(table, rows);
  std::vector<const NumberTable::Column*> columns;
  for (const NumberTable::Column& column : table.columns()) {
    if (column.name == "i" || table.is_about_errors(column)) {
      continue;
    }
    if (column.cells.size() != rows) {
      throw bad_input(table.source() + ": columns of " + std::to_string(rows) + " and " +
                      std::to_string(column.cells.size()) + " numbers");
    }
    columns.push_back(&column);
  }
  if (columns.empty()) {
    throw bad_input(table.source() + ": no numbers in it");
  }
  return matrix_of_columns(table, columns);
}

// The elements that are not zero, row by row.
SparseMatrix sparse(const DenseMatrix& matrix) {
  SparseMatrix result;
  result.source = matrix.source;
  result.rows = matrix.rows();
  result.columns = matrix.columns();
  result.field = matrix.complex() ? Field::complex : Field::real;
  std::visit(
      [&](const auto& a) {
        for (std::size_t i = 0; i < a.rows(); ++i) {
          for (std::size_t j = 0; j < a.columns(); ++j) {
            if (const Complex& value = a(i, j); value != Complex(0)) {
              result.row.push_back(Integer(i) + 1);
              result.column.push_back(Integer(j) + 1);
              result.values.push_back(value);
            }
          }
        }
      },
      matrix.elements);
  return result;
}

DenseMatrix column_of(const DenseMatrix& matrix, const std::string& column) {
  constexpr std::size_t kLongestPosition = 9;
  Integer position = 1;
  if (!column.empty()) {
    const bool digits = column.size() <= kLongestPosition && std::all_of(column.begin(), column.end(), is_digit);
    position = digits ? Integer(std::stol(column)) : 0;
  } else if (matrix.columns() != 1) {
    throw bad_input(description(matrix) + ", where one column is needed (--column says which)");
  }
  if (position < 1 || position > matrix.columns()) {
    throw bad_input(matrix.source + ": no column '" + column + "', there are " + std::to_string(matrix.columns()));
  }
  return std::visit(
      [&](const auto& a) {
        return DenseMatrix{matrix.source,
                           std::decay_t<decltype(a)>(a.view().block(0, std::size_t(position) - 1, a.rows(), 1))};
      },
      matrix.elements);
}

}  // namespace

DenseMatrix read_dense_matrix(const std::string& file, const TableOptions& options) {
  return dense_matrix_of(read_input(file), name_of_input(file), options);
}

DenseMatrix dense_matrix_of(const std::string& text, const std::string& source, const TableOptions& options) {
  return is_matrix_market(text) ? parse_dense_matrix(text, source, options.mirror)
                                : matrix_from(NumberTable::parse(text, source, options));
}

SparseMatrix read_matrix(const std::string& file, const TableOptions& options) {
  const std::string text = read_input(file);
  const std::string source = name_of_input(file);
  return text.starts_with('%') ? parse_matrix(text, source, options.mirror)
                               : sparse(matrix_from(NumberTable::parse(text, source, options)));
}

DenseMatrix read_vector(const std::string& file, const std::string& column, const TableOptions& options) {
  return vector_of(read_input(file), name_of_input(file), column, options);
}

DenseMatrix vector_of(const std::string& text, const std::string& source, const std::string& column,
                      const TableOptions& options) {
  return is_matrix_market(text) ? column_of(parse_dense_matrix(text, source, options.mirror), column)
                                : vector_from(NumberTable::parse(text, source, options), column);
}

bool is_complex(const NumberTable::Column& column) {
  const auto is_good = [](const std::string& cell) {
    return is_number(cell) || !is_complex_number(cell);  // what is neither is complained about as a real number
  };
  return !std::all_of(column.cells.begin(), column.cells.end(), is_good);
}

DenseMatrix vector_from(const NumberTable& table, const std::string& column) {
  const NumberTable::Column* real = table.find("real");
  const NumberTable::Column* imaginary = table.find("imaginary");
  if (column.empty() && real != nullptr && imaginary != nullptr) {
    require_count(table, real->cells.size());
    return {table.source(), matrix_of(joined(table, *real, *imaginary), real->cells.size())};
  }
  const NumberTable::Column& chosen = table.choose(column);
  require_count(table, chosen.cells.size());
  return matrix_of_columns(table, {&chosen});
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
  return std::to_string(matrix.rows()) + " by " + std::to_string(matrix.columns()) + " matrix in " + matrix.source;
}

}  // namespace cli
