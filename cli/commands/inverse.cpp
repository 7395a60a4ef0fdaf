// quarn inv and quarn det: the inverse and the determinant of a dense matrix.
#include "cli/commands/dense.h"
#include "cli/commands/failure.h"
#include "cli/commands/options.h"
#include "cli/commands/proven.h"
#include "cli/io/matrix_output.h"
#include "cli/plot/plot.h"
#include "cli/system/progress.h"

namespace cli {

namespace {

struct MatrixOptions {
  std::string matrix;
  TableOptions table;
  bool proven = false;
  OutputOptions output;
};

/// Reads the matrix: rounded to the working digits, or with all its digits where the result is to be proven.
DenseMatrix read_matrix(const MatrixOptions& options) {
  const tesk2mp::Digits scope(digits_of_data(options.proven));
  return read_operand(options.matrix, options.table, true);
}

Result started(const DenseMatrix& given, const std::string& what, const char* real, const char* complex) {
  const char* routine = given.complex() ? complex : real;
  Result result;
  result.notes = {what + " of the " + description(given), digits_text() + ", by " + routine};
  result.facts = {{"routine", routine}, {"digits", std::to_string(QuarnDigits()), true}};
  return result;
}

void run_inv(const MatrixOptions& options) {
  constexpr double kFactorisations = 4;  // one, and as many right-hand sides as rows
  const DenseMatrix given = read_matrix(options);
  const Progress progress =
      Progress::estimated("inverting", kFactorisations * factorisation_cost(given.rows(), given.complex()));
  Result result = started(given, "Inverse", "QuarnMPX_f07adf_", "QuarnMPX_f07arf_");
  const auto invert = [&]<class T>(const tesk2mp::Matrix<T>& a) {
    if (!options.proven) {
      return DenseMatrix{"", tesk2mp::inverse(a)};
    }
    const char* routine = given.complex() ? "QuarnMPX_zproven_solve_" : "QuarnMPX_dproven_solve_";
    return DenseMatrix{
        "", tesk2mp::proven::known_value(proven_result(result, routine, [&] { return tesk2mp::proven::inverse(a); }))};
  };
  const DenseMatrix inverse = std::visit(invert, given.elements);
  add_matrix(result, inverse);
  result.picture = [&](const std::string& file) { draw(map_of_magnitudes(result.notes.front(), inverse), file); };
  deliver(result, options.output);
}

void run_det(const MatrixOptions& options) {
  const DenseMatrix given = read_matrix(options);
  const Progress progress = Progress::estimated("factorising", factorisation_cost(given.rows(), given.complex()));
  Result result = started(given, "Determinant", "QuarnMPX_f03aff_", "QuarnMPX_zdeterminant_");
  std::visit(
      [&](const auto& a) {
        if (options.proven) {
          const char* routine = given.complex() ? "QuarnMPX_zproven_determinant_" : "QuarnMPX_dproven_determinant_";
          const auto found = proven_result(result, routine, [&] { return tesk2mp::proven::determinant(a); });
          const std::string determinant = exact_text(tesk2mp::proven::known_value(found));
          result.facts.push_back({"determinant", determinant});
          result.facts.push_back({"error", found.error.value().to_string()});
          result.data = {{"determinant", {determinant}}};
          return;
        }
        const auto scaled = tesk2mp::scaled_determinant(a);
        const std::string determinant = determinant_text(scaled.mantissa, scaled.exponent);
        if (scaled.nearly_singular) {
          result.notes.emplace_back("Matrix A is approximately singular.");
        }
        result.facts.push_back({"mantissa", exact_text(scaled.mantissa)});
        result.facts.push_back({"exponent", std::to_string(scaled.exponent), true});
        result.facts.push_back({"rcond", exact_text(scaled.reciprocal_condition)});
        result.data = {{"determinant", {determinant}}};
      },
      given.elements);
  result.table = result.data;
  deliver(result, options.output);
}

constexpr const char* kInverseFooter =
    R"(MATRIX is a table of numbers, a row a line, or a Matrix Market file. A singular matrix
has no inverse, and the exit status is 1. --plot draws the magnitudes.

With --proven the numbers of the matrix are taken with all their digits, and D digits of every
element of the inverse are true; one of which not even the sign is known, D digits below the
largest, is printed as 0. Where no proof is found the exit status is 1.

Examples:
  quarn inv examples/fs_183_1.mtx --digits 40 --proven --output inverse.mtx
  printf '1 2\n3 4\n' | quarn inv -)";

constexpr const char* kDeterminantFooter =
    R"(MATRIX is a table of numbers, a row a line, or a Matrix Market file. The determinant
is the product of the pivots of an LU factorisation, however large or small; a note says
when roundings alone may have made the matrix singular or regular. JSON has mantissa and
exponent of ten apart, and an estimate of the reciprocal condition number.

With --proven the numbers of the matrix are taken with all their digits, and all digits of the
determinant that are printed are true. Where no proof is found, as for a singular matrix, the
exit status is 1.

Examples:
  quarn det examples/fs_183_1.mtx --digits 40 --proven
  printf '1 2\n3 4\n' | quarn det - --format json)";

void declare_matrix(Command& command, const std::shared_ptr<MatrixOptions>& options, Forms forms) {
  command.argument("MATRIX", options->matrix, "the matrix; - is standard input");
  add_matrix_options(command, options->table);
  command.add_digits();
  add_proven_option(command, options->proven);
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
