// quarn lstsq, quarn pinv and quarn null: dense matrices of any shape and rank.
#include "tesk2mp/least_squares.hpp"

#include "cli/commands/dense.h"
#include "cli/commands/failure.h"
#include "cli/commands/options.h"
#include "cli/io/matrix_output.h"
#include "cli/plot/plot.h"
#include "cli/system/progress.h"
#include "tesk2mp/kernels.hpp"

namespace cli {

namespace {

struct RankOptions {
  TableOptions table;
  std::string matrix;
  std::string right_side = "-";
  std::string column;
  std::string tolerance;
  OutputOptions output;
};

std::optional<QuarnFloat> tolerance_of(const RankOptions& options) {
  if (options.tolerance.empty()) {
    return std::nullopt;
  }
  QuarnFloat tolerance(options.tolerance.c_str());
  if (!(tolerance >= 0)) {
    throw bad_input("--tolerance is a number from 0, not '" + options.tolerance + "'");
  }
  return tolerance;
}

Result started(const std::string& title, const DenseMatrix& matrix, std::size_t rank) {
  const char* routine = matrix.complex() ? "QuarnMPX_zgelsy_" : "QuarnMPX_dgelsy_";
  Result result;
  result.notes = {title, digits_text() + ", by " + routine + "; rank " + std::to_string(rank)};
  result.facts = {
      {"routine", routine}, {"digits", std::to_string(QuarnDigits()), true}, {"rank", std::to_string(rank), true}};
  return result;
}

Progress progress_of(const DenseMatrix& matrix) {
  constexpr double kFactorisations = 4;
  return Progress::estimated(
      "factorising", kFactorisations * factorisation_cost(std::min(matrix.rows(), matrix.columns()), matrix.complex()));
}

/// The Euclidean norm of b - A x with twice the working digits.
template <class T>
QuarnFloat residual_norm(const tesk2mp::Matrix<T>& a, const tesk2mp::Matrix<T>& x, tesk2mp::Matrix<T> b) {
  const tesk2mp::Digits twice(int(std::min<Integer>(2 * QuarnDigits(), kMostDigits)));
  tesk2mp::gemm(tesk2mp::Op::none, tesk2mp::Op::none, T(-1), a, x, T(1), b);
  return tesk2mp::norm(tesk2mp::Norm::frobenius, b);
}

template <class T>
void solve(const RankOptions& options, const DenseMatrix& matrix, const DenseMatrix& right) {
  const tesk2mp::Matrix<T> a = matrix_of(elements_of<T>(matrix), std::size_t(matrix.rows()));
  const tesk2mp::Matrix<T> b = matrix_of(elements_of<T>(right), std::size_t(right.rows()));
  const auto solution = tesk2mp::minimum_norm(a, b, tolerance_of(options));
  Result result = started("Least squares with the " + description(matrix), matrix, solution.rank);
  const QuarnFloat residual = residual_norm(a, solution.x, b);
  result.notes.push_back("||b - A x|| = " + brief(residual));
  result.facts.push_back({"residual", residual.to_string()});
  add_matrix(result, DenseMatrix{"", solution.x});
  result.picture = [&](const std::string& file) {
    draw(panels_of_elements(result.notes.front(), elements_of<Complex>(DenseMatrix{"", solution.x}),
                            matrix.complex() || right.complex()),
         file);
  };
  deliver(result, options.output);
}

void run_lstsq(const RankOptions& options) {
  if (options.matrix == "-" && options.right_side == "-") {
    throw bad_input("matrix and right side cannot both come from standard input");
  }
  const DenseMatrix matrix = read_operand(options.matrix, options.table, false);
  const DenseMatrix right = read_vector(options.right_side, options.column, options.table);
  if (right.rows() != matrix.rows()) {
    throw bad_input(matrix.source + ": " + counted(matrix.rows(), "row", "rows") + ", but the right side has " +
                    counted(right.rows(), "number", "numbers"));
  }
  const Progress progress = progress_of(matrix);
  if (matrix.complex() || right.complex()) {
    return solve<Complex>(options, matrix, right);
  }
  solve<QuarnFloat>(options, matrix, right);
}

void run_pinv(const RankOptions& options) {
  const DenseMatrix given = read_operand(options.matrix, options.table, false);
  const Progress progress = progress_of(given);
  std::visit(
      [&]<class T>(const tesk2mp::Matrix<T>& a) {
        const auto found = tesk2mp::minimum_norm(a, tesk2mp::Matrix<T>::identity(a.rows()), tolerance_of(options));
        Result result = started("Pseudo-inverse of the " + description(given), given, found.rank);
        const DenseMatrix inverse{"", found.x};
        add_matrix(result, inverse);
        result.picture = [&](const std::string& file) { draw(map_of_magnitudes(result.notes.front(), inverse), file); };
        deliver(result, options.output);
      },
      given.elements);
}

void run_null(const RankOptions& options) {
  const DenseMatrix given = read_operand(options.matrix, options.table, false);
  const Progress progress = progress_of(given);
  std::visit(
      [&](const auto& a) {
        const auto basis = tesk2mp::null_space(a, tolerance_of(options));
        Result result = started("Null space of the " + description(given), given, a.columns() - basis.columns());
        const DenseMatrix vectors{"", basis};
        add_matrix(result, vectors);
        result.picture = [&](const std::string& file) { draw(map_of_magnitudes(result.notes.front(), vectors), file); };
        deliver(result, options.output);
      },
      given.elements);
}

constexpr const char* kLeastSquaresFooter =
    R"(MATRIX is a table of numbers, a row a line, or a Matrix Market file, m by n of any rank. The
solution x has the least ||b - A x||, and of several such x the least ||x||. The rank is what a
QR factorisation with column pivoting shows; the residual is computed with twice the digits.
Without --rhs the right side is read from standard input.

Examples:
  printf '1 0
1 1
1 2
' > line.txt
  printf '1
3
4
' | quarn lstsq line.txt --rhs -)";

constexpr const char* kPseudoInverseFooter =
    R"(MATRIX is a table of numbers, a row a line, or a Matrix Market file, m by n of any rank. The
result is the Moore-Penrose inverse, n by m.

Example:
  printf '3
4
' | quarn pinv -)";

constexpr const char* kNullSpaceFooter =
    R"(MATRIX is a table of numbers, a row a line, or a Matrix Market file, m by n. The columns of
the result are an orthonormal basis of the vectors x with A x = 0; there are n - rank of them.

Example:
  printf '3 0 0
0 0 4
' | quarn null -)";

void declare_least_squares(Command& command, const std::shared_ptr<RankOptions>& options) {
  command.argument("MATRIX", options->matrix, "the matrix; - is standard input");
  command.text("--tolerance", "T", options->tolerance,
               "the rank's triangle has a condition number up to 1/T (default: the roundings)");
  add_matrix_options(command, options->table);
  command.add_digits();
  add_output_options(command, options->output, Forms::matrix);
}

const Registered kLeastSquares(
    106, "lstsq", "least squares with a dense matrix of any shape and rank", kLeastSquaresFooter, [](Command& command) {
      auto options = std::make_shared<RankOptions>();
      declare_least_squares(command, options);
      add_plot_option(command, options->output);
      command.text("--rhs", "FILE", options->right_side, "the right side; - is standard input");
      command.text("--column", "NAME", options->column, "name or number of the right side's column");
      command.work = [options] { run_lstsq(*options); };
    });

const Registered kPseudoInverse(107, "pinv", "the pseudo-inverse of a dense matrix", kPseudoInverseFooter,
                                [](Command& command) {
                                  auto options = std::make_shared<RankOptions>();
                                  declare_least_squares(command, options);
                                  add_plot_option(command, options->output);
                                  command.work = [options] { run_pinv(*options); };
                                });

const Registered kNullSpace(108, "null", "the null space of a dense matrix, and its rank", kNullSpaceFooter,
                            [](Command& command) {
                              auto options = std::make_shared<RankOptions>();
                              declare_least_squares(command, options);
                              add_plot_option(command, options->output);
                              command.work = [options] { run_null(*options); };
                            });

}  // namespace

}  // namespace cli
