// quarn spmv: a sparse matrix times a vector.

#include "cli/commands/failure.h"
#include "cli/commands/options.h"
#include "cli/io/input.h"
#include "cli/io/matrix_input.h"
#include "cli/io/matrix_output.h"
#include "cli/plot/plot.h"
#include "tesk2mp/sparse.hpp"

namespace cli {

namespace {

struct SpmvOptions {
  std::string matrix;
  TableOptions table;
  std::string vector;
  std::string column;
  bool transpose = false;
  OutputOptions output;
};

struct Product {
  std::string routine;
  DenseMatrix y;
};

template <class T>
DenseMatrix product(const SparseMatrix& matrix, const std::vector<T>& values, const std::vector<T>& x, tesk2mp::Op op) {
  const bool triangle = matrix.symmetry != Symmetry::general;
  tesk2mp::SparseMatrix<T> a(x.size(), triangle ? tesk2mp::Storage::lower_triangle : tesk2mp::Storage::general);
  for (std::size_t k = 0; k < values.size(); ++k) {
    a.add(std::size_t(matrix.row[k]) - 1, std::size_t(matrix.column[k]) - 1, values[k]);
  }
  return {"", matrix_of(a.multiply(x, op), x.size())};
}

// The library's products: of real and complex values, of general matrices and of stored lower triangles.
Product product(const SparseMatrix& matrix, const DenseMatrix& x, bool complex, bool transpose) {
  const bool triangle = matrix.symmetry != Symmetry::general;
  if (complex) {
    const auto op = transpose ? tesk2mp::Op::conjugate_transpose : tesk2mp::Op::none;
    return {triangle ? "QuarnMPX_f11xsf_" : "QuarnMPX_f11xnf_",
            product(matrix, matrix.values, elements_of<Complex>(x), op)};
  }
  const auto op = transpose ? tesk2mp::Op::transpose : tesk2mp::Op::none;
  return {triangle ? "QuarnMPX_f11xef_" : "QuarnMPX_f11xaf_",
          product(matrix, real_parts(matrix.values), elements_of<QuarnFloat>(x), op)};
}

// The library knows the triangles of real symmetric and of Hermitian matrices; all others are given whole.
SparseMatrix as_stored(SparseMatrix matrix, bool complex) {
  const Symmetry known = complex ? Symmetry::hermitian : Symmetry::symmetric;
  return matrix.symmetry == known ? std::move(matrix) : expanded(matrix);
}

void run_spmv(const SpmvOptions& options) {
  if (options.matrix == "-" && options.vector == "-") {
    throw bad_input("only one of MATRIX and VECTOR can be standard input");
  }
  const auto exactly = [](const auto& read) {
    const tesk2mp::Digits all(int{kMostDigits});
    return read();
  };
  SparseMatrix given = exactly([&] { return read_matrix(options.matrix, options.table); });
  const DenseMatrix vector = exactly([&] { return read_vector(options.vector, options.column, options.table); });
  const Integer n = given.rows;
  if (n != given.columns || n != vector.rows()) {
    throw bad_input(given.source + ": " + std::to_string(n) + " by " + std::to_string(given.columns) +
                    ", but the product needs a square matrix and as many numbers in the vector (" +
                    std::to_string(vector.rows()) + ")");
  }
  const bool complex = given.complex() || vector.complex();
  const Integer entries = given.count();
  const std::string shape = given.symmetry == Symmetry::general ? "" : std::string(name_of(given.symmetry)) + ", ";
  const std::string transposed = !options.transpose ? ""
                                 : complex          ? "the conjugate transpose of "
                                                    : "the transpose of ";
  const Product done = product(as_stored(std::move(given), complex), vector, complex, options.transpose);

  Result result;
  result.notes = {"Product of " + transposed + name_of_input(options.matrix) + " (" + shape + "order " +
                      std::to_string(n) + ", " + std::to_string(entries) + " entries) and " + vector.source,
                  digits_text() + ", all of them true, by " + done.routine};
  result.facts = {
      {"routine", done.routine}, {"digits", std::to_string(QuarnDigits()), true}, {"n", std::to_string(n), true}};
  add_matrix(result, done.y);
  result.picture = [&](const std::string& file) {
    draw(panels_of_elements(result.notes.front(), elements_of<Complex>(done.y), complex), file);
  };
  deliver(result, options.output);
}

constexpr const char* kSpmvFooter =
    R"(MATRIX is a Matrix Market file, or a table of numbers, a row a line; VECTOR is one column
of numbers: of a table (columns real and imaginary are one complex column, or cells such
as 1-2i), of JSON, or of a Matrix Market file.

--transpose multiplies by A^T, and by the conjugate transpose A^H where the matrix or
the vector is complex. --plot draws the product's elements.

The numbers are taken with all their digits, and each element of the product is rounded once.

Examples:
  seq 1 48 | quarn spmv examples/bcsstk01.mtx - --digits 40
  quarn spmv examples/west0067.mtx x.csv --column 2 --transpose --format csv)";

void declare_spmv(Command& command) {
  auto options = std::make_shared<SpmvOptions>();
  command.argument("MATRIX", options->matrix, "the matrix; - is standard input");
  command.argument("VECTOR", options->vector, "the numbers; - is standard input");
  add_matrix_options(command, options->table);
  command.text("--column", "NAME", options->column, "name or number of the column (default: the last numeric one)");
  command.flag("--transpose", options->transpose, "multiply by the (conjugate) transpose");
  command.add_digits();
  add_output_options(command, options->output, Forms::matrix);
  add_plot_option(command, options->output);
  command.work = [options] { run_spmv(*options); };
}

const Registered kSpmvCommand(70, "spmv", "multiply a sparse matrix by a vector", kSpmvFooter, declare_spmv);

}  // namespace

}  // namespace cli
