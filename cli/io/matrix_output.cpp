#include "cli/io/matrix_output.h"

#include "cli/commands/ranking.h"
#include "cli/io/matrix_input.h"
#include "cli/io/number_text.h"

namespace cli {

namespace {

using Formatter = std::function<std::string(const Complex&)>;

ResultColumn number_column(const std::string& name, const Complex* values, Integer count, const Formatter& text) {
  ResultColumn column{name, {}};
  column.cells.reserve(std::size_t(count));
  for (Integer i = 0; i < count; ++i) {
    column.cells.push_back(text(values[i]));
  }
  return column;
}

// One column of complex numbers is two of real ones: tables that people calculate with have no complex cells.
std::vector<ResultColumn> columns_of(const DenseMatrix& matrix,
                                     const std::function<std::string(const QuarnFloat&)>& text) {
  const Formatter real = [&](const Complex& value) { return text(value.re); };
  const Formatter imaginary = [&](const Complex& value) { return text(value.im); };
  const Formatter both = [&](const Complex& value) {
    return text(value.re) + (signbit(value.im) ? "" : "+") + text(value.im) + "i";
  };
  if (matrix.columns == 1) {
    std::vector<ResultColumn> columns = {
        count_column("i", positions(matrix.rows)),
        number_column(matrix.complex ? "real" : "value", matrix.values.data(), matrix.rows, real)};
    if (matrix.complex) {
      columns.push_back(number_column("imaginary", matrix.values.data(), matrix.rows, imaginary));
    }
    return columns;
  }
  std::vector<ResultColumn> columns;
  columns.reserve(std::size_t(matrix.columns));
  for (Integer j = 0; j < matrix.columns; ++j) {
    columns.push_back(
        number_column("c" + std::to_string(j + 1), &matrix(0, j), matrix.rows, matrix.complex ? both : real));
  }
  return columns;
}

QuarnFloat largest_part(const std::vector<Complex>& values) {
  const QuarnFloat real = largest_magnitude(real_parts(values));
  const QuarnFloat imaginary = largest_magnitude(imaginary_parts(values));
  return real < imaginary ? imaginary : real;
}

}  // namespace

void add_matrix(Result& result, DenseMatrix matrix) {
  result.data = columns_of(matrix, [](const QuarnFloat& value) { return value.to_string(); });
  const QuarnFloat largest = largest_part(matrix.values);
  result.table = isfinite(largest) ? columns_of(matrix, NumberFormat(largest, QuarnDigits())) : result.data;
  for (ResultColumn& column : result.table) {
    if (isfinite(largest) && !column.counts) {
      align_points(column.cells);
    }
  }
  result.matrix_market = [matrix = std::move(matrix), notes = result.notes] {
    return matrix_market_text(matrix, notes);
  };
}

void add_matrix(Result& result, SparseMatrix matrix) {
  result.data = {count_column("row", matrix.row), count_column("column", matrix.column)};
  if (matrix.field != Field::pattern) {
    result.data.push_back({matrix.complex() ? "real" : "value", exact_cells(real_parts(matrix.values))});
  }
  if (matrix.complex()) {
    result.data.push_back({"imaginary", exact_cells(imaginary_parts(matrix.values))});
  }
  result.table = result.data;
  result.matrix_market = [matrix = std::move(matrix), notes = result.notes] {
    return matrix_market_text(matrix, notes);
  };
}

}  // namespace cli
