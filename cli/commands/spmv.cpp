// quarn spmv: a sparse matrix times a vector.
#include <algorithm>

#include "cli/commands.h"
#include "cli/failure.h"
#include "cli/library_call.h"
#include "cli/matrix_market.h"
#include "cli/memory.h"
#include "cli/number_table.h"
#include "tesk2mp/sparse.h"

namespace cli {

namespace {

struct SpmvOptions {
  std::string matrix;
  std::string vector;
  OutputOptions output;
};

std::vector<Complex> read_vector(const std::string& file, bool& complex) {
  const NumberTable table = NumberTable::read(file);
  const NumberTable::Column* real = table.find("real");
  const NumberTable::Column* imaginary = table.find("imaginary");
  complex = real != nullptr && imaginary != nullptr;
  const std::vector<QuarnFloat> re = table.numbers(complex ? *real : table.choose(""));
  const std::vector<QuarnFloat> im = complex ? table.numbers(*imaginary) : std::vector<QuarnFloat>(re.size());
  if (re.size() != im.size()) {
    throw bad_input(table.source() + ": real and imaginary parts differ in number");
  }
  std::vector<Complex> values;
  for (std::size_t i = 0; i < re.size(); ++i) {
    values.emplace_back(re[i], im[i]);
  }
  return values;
}

std::vector<QuarnFloat> parts(const std::vector<Complex>& values, QuarnFloat Complex::*part) {
  std::vector<QuarnFloat> numbers;
  numbers.reserve(values.size());
  for (const Complex& value : values) {
    numbers.push_back(value.*part);
  }
  return numbers;
}

void run_spmv(const SpmvOptions& options) {
  if (options.matrix == "-" && options.vector == "-") {
    throw bad_input("only one of MATRIX and VECTOR can be standard input");
  }
  const SparseMatrix matrix = expanded(read_matrix(options.matrix));
  bool complex = false;
  const std::vector<Complex> x = read_vector(options.vector, complex);
  complex = complex || matrix.complex;
  if (matrix.rows != matrix.columns || x.size() != std::size_t(matrix.rows)) {
    throw bad_input(matrix.source + ": " + std::to_string(matrix.rows) + " by " + std::to_string(matrix.columns) +
                    ", but the product needs a square matrix and as many numbers in the vector (" +
                    std::to_string(x.size()) + ")");
  }
  const Integer n = matrix.rows;
  const Integer nnz = matrix.count();
  std::vector<Complex> y(x.size());
  const std::string routine = complex ? "QuarnMP_f11xnf_" : "QuarnMP_f11xaf_";
  call_routine(routine, [&](Integer* ifail) {
    if (complex) {
      QuarnMP_f11xnf_("N", &n, &nnz, matrix.values.data(), matrix.row.data(), matrix.column.data(), "N", x.data(),
                      y.data(), ifail, 1, 1);
      return;
    }
    const std::vector<QuarnFloat> a = parts(matrix.values, &Complex::re);
    const std::vector<QuarnFloat> real = parts(x, &Complex::re);
    std::vector<QuarnFloat> product(real.size());
    QuarnMP_f11xaf_("N", &n, &nnz, a.data(), matrix.row.data(), matrix.column.data(), "N", real.data(), product.data(),
                    ifail, 1, 1);
    std::copy(product.begin(), product.end(), y.begin());
  });

  const std::string digits = std::to_string(QuarnDigits());
  Result result;
  result.notes = {"Product of " + matrix.source + " (order " + std::to_string(n) + ", " + std::to_string(nnz) +
                      " entries in both triangles) and " + options.vector,
                  digits + (QuarnDigits() == 1 ? " digit" : " digits") + ", by " + routine};
  result.facts = {{"routine", routine}, {"digits", digits, true}, {"n", std::to_string(n), true}};
  result.data = {{"i", {}, true}, {complex ? "real" : "value", exact_cells(parts(y, &Complex::re))}};
  if (complex) {
    result.data.push_back({"imaginary", exact_cells(parts(y, &Complex::im))});
  }
  for (Integer i = 1; i <= n; ++i) {
    result.data[0].cells.push_back(std::to_string(i));
  }
  result.table = result.data;
  deliver(result, options.output);
}

}  // namespace

void add_spmv(CLI::App& app, Session& session) {
  CLI::App* command = app.add_subcommand("spmv", "multiply a sparse matrix by a vector");
  auto options = std::make_shared<SpmvOptions>();
  command->add_option("MATRIX", options->matrix, "Matrix Market coordinate file; - is standard input")
      ->required()
      ->type_name("");
  command->add_option("VECTOR", options->vector, "a column of numbers, or columns real and imaginary")
      ->required()
      ->type_name("");
  add_digits_option(*command, session);
  add_output_options(*command, options->output);
  command->footer("Example:\n  seq 1 48 | quarn spmv examples/bcsstk01.mtx - --digits 40");
  command->callback([&session, options] { session.work = [options] { run_spmv(*options); }; });
}

}  // namespace cli
