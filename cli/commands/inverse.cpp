// quarn inv and quarn det: the inverse and the determinant of a dense matrix.
#include "cli/commands/dense.h"
#include "cli/commands/failure.h"
#include "cli/commands/options.h"
#include "cli/io/matrix_output.h"
#include "cli/plot/plot.h"
#include "cli/system/progress.h"

namespace cli {

namespace {

struct MatrixOptions {
  std::string matrix;
  OutputOptions output;
};

const char* factorisation(const DenseMatrix& matrix) {
  return matrix.complex() ? "QuarnMPX_f07arf_" : "QuarnMPX_f07adf_";
}

Result started(const DenseMatrix& given, const std::string& what) {
  Result result;
  result.notes = {what + " of the " + description(given), digits_text() + ", by " + factorisation(given)};
  result.facts = {{"routine", factorisation(given)}, {"digits", std::to_string(QuarnDigits()), true}};
  return result;
}

void run_inv(const MatrixOptions& options) {
  constexpr double kFactorisations = 4;  // one, and as many right-hand sides as rows
  const DenseMatrix given = read_operand(options.matrix, true);
  const Progress progress =
      Progress::estimated("inverting", kFactorisations * factorisation_cost(given.rows(), given.complex()));
  Result result = started(given, "Inverse");
  const auto invert = [](const auto& a) { return DenseMatrix{"", tesk2mp::inverse(a)}; };
  const DenseMatrix inverse = std::visit(invert, given.elements);
  add_matrix(result, inverse);
  result.picture = [&](const std::string& file) { draw(map_of_magnitudes(result.notes.front(), inverse), file); };
  deliver(result, options.output);
}

void run_det(const MatrixOptions& options) {
  const DenseMatrix given = read_operand(options.matrix, true);
  const Progress progress = Progress::estimated("factorising", factorisation_cost(given.rows(), given.complex()));
  Result result = started(given, "Determinant");
  const auto measure = [](const auto& a) { return exact_text(tesk2mp::determinant(a)); };
  const std::string determinant = std::visit(measure, given.elements);
  result.facts.push_back({"determinant", determinant});
  result.data = {{"determinant", {determinant}}};
  result.table = result.data;
  deliver(result, options.output);
}

constexpr const char* kInverseFooter =
    R"(MATRIX is a table of numbers, a row a line, or a Matrix Market file. A singular matrix
has no inverse, and the exit status is 1. --plot draws the magnitudes.

Examples:
  quarn inv examples/fs_183_1.mtx --digits 40 --output inverse.mtx
  printf '1 2\n3 4\n' | quarn inv -)";

constexpr const char* kDeterminantFooter =
    R"(MATRIX is a table of numbers, a row a line, or a Matrix Market file. The determinant
is the product of the pivots of an LU factorisation.

Examples:
  quarn det examples/fs_183_1.mtx --digits 40
  printf '1 2\n3 4\n' | quarn det - --format json)";

void declare_matrix(Command& command, const std::shared_ptr<MatrixOptions>& options, Forms forms) {
  command.argument("MATRIX", options->matrix, "the matrix; - is standard input");
  command.add_digits();
  add_output_options(command, options->output, forms);
}

const Registered kInverse(104, "inv", "the inverse of a dense matrix", kInverseFooter, [](Command& command) {
  auto options = std::make_shared<MatrixOptions>();
  declare_matrix(command, options, Forms::matrix);
  add_plot_option(command, options->output);
  command.work = [options] { run_inv(*options); };
});

const Registered kDeterminant(105, "det", "the determinant of a dense matrix", kDeterminantFooter,
                              [](Command& command) {
                                auto options = std::make_shared<MatrixOptions>();
                                declare_matrix(command, options, Forms::table);
                                command.work = [options] { run_det(*options); };
                              });

}  // namespace

}  // namespace cli
