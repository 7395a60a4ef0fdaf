#include "cli/io/matrix_output.h"

#include <algorithm>

#include "cli/commands/ranking.h"
#include "cli/io/matrix_input.h"
#include "cli/io/number_text.h"

namespace cli {

namespace {

using NumberText = std::function<std::string(const QuarnFloat&)>;

template <class T, class Text>
ResultColumn number_column(const std::string& name, const T* values, std::size_t count, const Text& text) {
  ResultColumn column{name, {}};
  column.cells.reserve(count);
  std::transform(values, values + count, std::back_inserter(column.cells), text);
  return column;
}

std::vector<ResultColumn> single_column(const RealMatrix& a, const NumberText& text) {
  return {number_column("value", a.data(), a.rows(), text)};
}

// One column of complex numbers is two of real ones: tables that people calculate with have no complex cells.
std::vector<ResultColumn> single_column(const ComplexMatrix& a, const NumberText& text) {
  return {number_column("real", a.data(), a.rows(), [&](const Complex& z) { return text(z.re); }),
          number_column("imaginary", a.data(), a.rows(), [&](const Complex& z) { return text(z.im); })};
}

std::string cell(const QuarnFloat& value, const NumberText& text) { return text(value); }
std::string cell(const Complex& value, const NumberText& text) {
  return text(value.re) + (signbit(value.im) ? "" : "+") + text(value.im) + "i";
}

template <class T>
std::vector<ResultColumn> columns_of(const tesk2mp::Matrix<T>& a, const NumberText& text) {
  if (a.columns() == 1) {
    std::vector<ResultColumn> columns = single_column(a, text);
    columns.insert(columns.begin(), count_column("i", positions(Integer(a.rows()))));
    return columns;
  }
  std::vector<ResultColumn> columns;
  columns.reserve(a.columns());
  for (std::size_t j = 0; j < a.columns(); ++j) {
    columns.push_back(number_column("c" + std::to_string(j + 1), a.data() + j * a.rows(), a.rows(),
                                    [&](const T& value) { return cell(value, text); }));
  }
  return columns;
}

QuarnFloat largest_part(const QuarnFloat& value) { return fabs(value); }
QuarnFloat largest_part(const Complex& value) { return std::max(fabs(value.re), fabs(value.im)); }

template <class T>
void add_tables(Result& result, const tesk2mp::Matrix<T>& a) {
  QuarnFloat largest;
  std::for_each(a.data(), a.data() + a.rows() * a.columns(),
                [&](const T& value) { largest = std::max(largest, largest_part(value)); });
  result.data = columns_of(a, [](const QuarnFloat& value) { return value.to_string(); });
  result.table = isfinite(largest) ? columns_of(a, NumberFormat(largest, QuarnDigits())) : result.data;
  for (ResultColumn& column : result.table) {
    if (isfinite(largest) && !column.counts) {
      align_points(column.cells);
    }
  }
}

}  // namespace

void add_matrix(Result& result, DenseMatrix matrix) {
  std::visit([&](const auto& a) { add_tables(result, a); }, matrix.elements);
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

void add_complex_numbers(Result& result, const std::vector<Complex>& values) {
  const std::vector<QuarnFloat> re = real_parts(values);
  const std::vector<QuarnFloat> im = imaginary_parts(values);
  const QuarnFloat largest = std::max(largest_magnitude(re), largest_magnitude(im));
  const ResultColumn counts = count_column("i", positions(Integer(values.size())));
  result.table = {counts, aligned_column("real", re, largest), aligned_column("imaginary", im, largest)};
  result.data = {counts, {"real", exact_cells(re)}, {"imaginary", exact_cells(im)}};
}

}  // namespace cli
