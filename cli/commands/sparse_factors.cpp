#include "cli/commands/sparse_factors.h"

#include <algorithm>
#include <iterator>

#include "cli/commands/fill.h"
#include "cli/commands/linear_system.h"
#include "cli/commands/options.h"
#include "cli/commands/ranking.h"
#include "cli/io/matrix_output.h"
#include "cli/plot/plot.h"
#include "tesk2mp/sparse_direct.hpp"

namespace cli {

namespace {

struct FactorEntries {
  SparseMatrix matrix;
  std::vector<Integer> rows;  // row k of the product of the factors is this row of the matrix, from 1
  std::vector<Integer> columns;
  Integer replaced = 0;  // pivots
};

std::vector<Integer> from_one(const std::vector<std::size_t>& order) {
  std::vector<Integer> places;
  std::transform(order.begin(), order.end(), std::back_inserter(places), [](std::size_t i) { return Integer(i) + 1; });
  return places;
}

/// The entries in canonical form, and L without its diagonal.
template <class T>
FactorEntries entries_of(tesk2mp::SparseMatrix<T> rest, const tesk2mp::SparseMatrix<T>& lower, Integer replaced) {
  for (std::size_t k = 0; k < lower.entries(); ++k) {
    if (lower.column(k) < lower.row(k)) {
      rest.add(lower.row(k), lower.column(k), lower.value(k));
    }
  }
  rest.canonicalise(tesk2mp::Duplicates::sum, tesk2mp::Zeros::keep);
  FactorEntries entries;
  entries.replaced = replaced;
  for (std::size_t k = 0; k < rest.entries(); ++k) {
    entries.matrix.row.push_back(Integer(rest.row(k)) + 1);
    entries.matrix.column.push_back(Integer(rest.column(k)) + 1);
    entries.matrix.values.emplace_back(rest.value(k));
  }
  return entries;
}

template <class T, class Factors>
FactorEntries entries_of_lu(const Factors& factors) {
  FactorEntries entries = entries_of<T>(factors.upper(), factors.lower(), factors.corrected_pivots());
  entries.rows = from_one(factors.row_order());
  entries.columns = from_one(factors.column_order());
  return entries;
}

template <class T, class Factors>
FactorEntries entries_of_cholesky(const Factors& factors) {
  tesk2mp::SparseMatrix<T> d(factors.order());
  const std::vector<T> diagonal = factors.diagonal();
  for (std::size_t k = 0; k < diagonal.size(); ++k) {
    d.add(k, k, diagonal[k]);
  }
  FactorEntries entries = entries_of<T>(std::move(d), factors.lower(), factors.corrected_pivots());
  entries.rows = entries.columns = from_one(factors.row_order());
  return entries;
}

template <class T>
FactorEntries factorised(const std::string& source, const tesk2mp::SparseMatrix<T>& a, const FactorOptions& options) {
  if (options.kind == "lu") {
    return entries_of_lu<T>(tesk2mp::SparseLU(a));
  }
  const tesk2mp::FillOptions fill = fill_options(std::max<Integer>(0, options.fill), options.drop, false);
  if (options.kind == "ilu") {
    return entries_of_lu<T>(tesk2mp::IncompleteLU(a, fill));
  }
  if (!tesk2mp::is_hermitian(a)) {
    throw bad_input(source + ": --factors " + options.kind + " is for symmetric and Hermitian matrices");
  }
  const tesk2mp::SparseMatrix<T> triangle = tesk2mp::lower_triangle(a);
  return options.kind == "ic" ? entries_of_cholesky<T>(tesk2mp::IncompleteCholesky(triangle, fill))
                              : entries_of_cholesky<T>(tesk2mp::SparseCholesky(triangle));
}

Spy spy_of(const std::string& title, const SparseMatrix& matrix) {
  return {title + ": " + counted(matrix.count(), "entry", "entries"), matrix.rows, matrix.columns, matrix.row,
          matrix.column};
}

/// The places that hold entries of the system, both triangles of symmetric ones.
Spy spy_of(const LinearSystem& system) {
  SparseMatrix places;
  places.rows = places.columns = system.n;
  std::visit(
      [&](const auto& equations) {
        places.row.assign(equations.a.rows_from_one().begin(), equations.a.rows_from_one().end());
        places.column.assign(equations.a.columns_from_one().begin(), equations.a.columns_from_one().end());
        places.values.resize(places.row.size());
      },
      system.equations);
  return spy_of(system.source, places);
}

void write_permutation(const FactorEntries& found, const std::string& file) {
  Result result;
  result.notes = {"row i of the product of the factors is this row of the matrix, column i this column"};
  result.data = {count_column("i", positions(Integer(found.rows.size()))), count_column("row", found.rows),
                 count_column("column", found.columns)};
  result.table = result.data;
  OutputOptions output;
  output.file = file;
  output.format = file.ends_with(".json") ? Format::json : file.ends_with(".txt") ? Format::text : Format::csv;
  deliver(result, output);
}

}  // namespace

Result factors_of(const SparseMatrix& matrix, const FactorOptions& options) {
  if (matrix.rows != matrix.columns) {
    throw bad_input(matrix.source + ": " + std::to_string(matrix.rows) + " by " + std::to_string(matrix.columns) +
                    ", but --factors needs a square matrix");
  }
  const LinearSystem system = linear_system(matrix, nullptr);
  FactorEntries found = std::visit(
      [&](const auto& equations) { return factorised(matrix.source, equations.a, options); }, system.equations);
  SparseMatrix& factors = found.matrix;
  factors.source = options.kind;
  factors.rows = factors.columns = matrix.rows;
  factors.field = system.complex() ? Field::complex : Field::real;

  const bool triangle = options.kind == "cholesky" || options.kind == "ic";
  Result result;
  result.notes = {"Factors of " + matrix.source + ": " + options.kind + ", " + (triangle ? "L D L^H" : "L U") +
                      ", the unit diagonal of L left out; " + digits_text(),
                  counted(factors.count(), "entry", "entries") + ", " + counted(system.count(), "entry", "entries") +
                      " of the matrix"};
  if (found.replaced > 0) {
    result.notes.push_back(counted(found.replaced, "pivot", "pivots") + " replaced: the factors may be poor");
  }
  result.facts = {{"input", matrix.source},
                  {"factors", options.kind},
                  {"digits", std::to_string(QuarnDigits()), true},
                  {"rows", std::to_string(matrix.rows), true},
                  {"entries_of_the_matrix", std::to_string(system.count()), true},
                  {"entries", std::to_string(factors.count()), true},
                  {"replaced_pivots", std::to_string(found.replaced), true}};
  if (!options.permutation.empty()) {
    write_permutation(found, options.permutation);
  }
  result.picture = [whole = spy_of(system), factors, triangle](const std::string& file) {
    draw({whole, spy_of(factors.source + (triangle ? ", L" : ", L and U"), factors)}, file);
  };
  add_matrix(result, std::move(factors));
  return result;
}

}  // namespace cli
