// quarn lstsq, quarn pinv and quarn null: dense matrices of any shape and rank.
#include "tesk2mp/least_squares.hpp"

#include "cli/commands/dense.h"
#include "cli/commands/estimate.h"
#include "cli/commands/failure.h"
#include "cli/commands/options.h"
#include "cli/io/matrix_output.h"
#include "cli/plot/plot.h"
#include "cli/system/progress.h"
#include "tesk2mp/kernels.hpp"
#include "tesk2mp/proven_pseudo_inverse.hpp"

namespace cli {

namespace {

struct RankOptions {
  TableOptions table;
  std::string matrix;
  std::string right_side = "-";
  std::string column;
  std::string tolerance;
  ProofOptions proof;
  OutputOptions output;
};

/// The tolerance of the digits that are asked for, also where more of them are worked with.
QuarnFloat tolerance_of(const RankOptions& options, const DenseMatrix& matrix) {
  if (options.tolerance.empty()) {
    return QuarnFloat(std::max(matrix.rows(), matrix.columns())) * QuarnFloat(1, 1 - QuarnDigits());
  }
  QuarnFloat tolerance(options.tolerance.c_str());
  if (!(tolerance >= 0)) {
    throw bad_input("--tolerance is a number from 0, not '" + options.tolerance + "'");
  }
  return tolerance;
}

constexpr const char* kByTolerance = "not proven: --tolerance decides about the rank";
constexpr const char* kInsistedWithTolerance =
    "--proven is for results without --tolerance, which decides about the rank";

const char* routine_for(const DenseMatrix& matrix) {
  return matrix.complex() ? "QuarnMPX_zgelsy_" : "QuarnMPX_dgelsy_";
}

/// Title, digits and what they are worth, rank. A result of another rank than the proven one, and one that is not of
/// numbers, has no digit in common with the true one; where no rank is proven that is a condition.
template <class T>
Result started(const RankOptions& options, const std::string& title, const DenseMatrix& matrix,
               const tesk2mp::Matrix<T>& a, const Estimated<T>& estimate, const std::string& why_not) {
  const auto is_number = [](const auto& x) { return isfinite(Complex(x.value).re) && isfinite(Complex(x.value).im); };
  if (!std::all_of(estimate.numbers.begin(), estimate.numbers.end(), is_number)) {
    throw Failure(ExitStatus::library, "quarn: " + why_not + "; what is computed is not finite\n");
  }
  const Integer rank = estimate.choice->front();
  std::optional<std::size_t> proven;
  if (options.tolerance.empty() && options.proof.wanted()) {
    proven = tesk2mp::proven::rank(a);
  }
  if (proven && Integer(*proven) != rank) {
    throw Failure(ExitStatus::library, "quarn: " + why_not + "; the rank is " + std::to_string(*proven) +
                                           ", proven, and " + std::to_string(rank) + " by the usual tolerance\n");
  }
  const std::string routine = routine_for(matrix);
  Result result;
  result.notes = {title, ""};
  result.facts = {{"routine", routine}, {"digits", std::to_string(QuarnDigits()), true}};
  add_estimate(options.proof, estimate, routine, result,
               options.tolerance.empty() && !proven ? "if the rank is right, " : "");
  result.notes[1] += "; rank " + std::to_string(rank) +
                     (proven ? ", proven" : " by the tolerance " + brief(tolerance_of(options, matrix)));
  result.facts.push_back({"rank", std::to_string(rank), true});
  if (options.proof.wanted()) {
    result.notes.push_back(why_not);
  }
  return result;
}

DenseMatrix read_given(const RankOptions& options) {
  return read_exactly(true, [&] { return read_operand(options.matrix, options.table, false); });
}

template <class T>
std::vector<T> elements(const tesk2mp::Matrix<T>& a) {
  return {a.data(), a.data() + a.rows() * a.columns()};
}

Progress progress_of(const DenseMatrix& matrix) {
  constexpr double kFactorisations = 8;
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
std::string proven_rank(const tesk2mp::Matrix<T>& a) {
  const std::optional<std::size_t> rank = tesk2mp::proven::rank(a);
  if (!rank) {
    throw tesk2mp::NumericalFailure("TO_DIGITS", 1, 0, "the rank would take too long", {});
  }
  return std::to_string(*rank);
}

/// The options for a matrix whose rank is proven: the digits that it takes are no more than a few times those between
/// its largest and its smallest place, so many of them are tried that few matrices have more.
template <class T>
ProofOptions with_digits_of(const ProofOptions& options, const tesk2mp::Matrix<T>& a) {
  constexpr std::int64_t kMost = 20'000;
  ProofOptions wide = options;
  if (const std::optional<std::int64_t> lowest = tesk2mp::proven::detail::lowest_place(a)) {
    const QuarnFloat largest = tesk2mp::norm(tesk2mp::Norm::largest, a);
    wide.more_digits = int(2 * std::clamp<std::int64_t>(ilogb(largest) - *lowest, 0, kMost));
  }
  return wide;
}

template <class T>
Result proven_solution(const RankOptions& options, const std::string& title, const tesk2mp::Matrix<T>& a,
                       const tesk2mp::Matrix<T>& b, tesk2mp::Matrix<T>& x, std::vector<QuarnFloat>& errors) {
  Result result;
  result.notes = {title, ""};
  const std::string rank = proven_rank(a);
  const std::string of_full_rank = std::is_same_v<T, Complex> ? "QuarnMPX_zproven_solve_" : "QuarnMPX_dproven_solve_";
  const std::string routine = rank == std::to_string(a.columns()) ? of_full_rank : "proven factors";
  int worked_with = 0;
  const auto bounded = proven_result(with_digits_of(options.proof, a), result, routine, worked_with,
                                     [&] { return tesk2mp::proven::minimum_norm(a, b); });
  result.notes[1] += "; rank " + rank + ", proven";
  result.facts.push_back({"rank", rank, true});
  x = tesk2mp::proven::known_value(bounded);
  for (std::size_t i = 0; i < x.rows(); ++i) {
    errors.push_back(printed_error(bounded(i, 0)).value());
  }
  return result;
}

template <class T>
void solve(const RankOptions& options, const DenseMatrix& matrix, const DenseMatrix& right) {
  const tesk2mp::Matrix<T> a = matrix_of(elements_of<T>(matrix), std::size_t(matrix.rows()));
  const tesk2mp::Matrix<T> b = matrix_of(elements_of<T>(right), std::size_t(right.rows()));
  const std::string title = "Least squares with the " + description(matrix);
  Result result;
  tesk2mp::Matrix<T> x;
  std::vector<QuarnFloat> errors;
  std::string why_not = kByTolerance;
  if (options.proof.insisted && !options.tolerance.empty()) {
    throw bad_input(kInsistedWithTolerance);
  }
  const QuarnFloat tolerance = tolerance_of(options, matrix);
  const bool is_proven =
      options.tolerance.empty() &&
      try_proof(
          options.proof, why_not, [&] { result = proven_solution(options, title, a, b, x, errors); }, "");
  if (!is_proven) {
    const auto estimate = estimated<T>(options.proof, [&] {
      const auto solution = tesk2mp::minimum_norm(a, b, tolerance);
      return std::optional(Computed<T>{elements(solution.x), {}, {Integer(solution.rank)}});
    });
    result = started(options, title, matrix, a, estimate, why_not);
    x = matrix_of(estimated_values(options.proof, estimate.numbers), a.columns());
  }
  const QuarnFloat residual = residual_norm(a, x, b);
  result.notes.push_back("||b - A x|| = " + brief(residual));
  result.facts.push_back({"residual", residual.to_string()});
  add_matrix(result, DenseMatrix{"", x});
  if (!errors.empty()) {
    add_errors(result, errors, "value", options.proof.errors);
  }
  result.picture = [&](const std::string& file) {
    draw(panels_of_elements(result.notes.front(), elements_of<Complex>(DenseMatrix{"", x}),
                            matrix.complex() || right.complex()),
         file);
  };
  deliver(result, options.output);
}

void run_lstsq(const RankOptions& options) {
  if (options.matrix == "-" && options.right_side == "-") {
    throw bad_input("matrix and right side cannot both come from standard input");
  }
  const DenseMatrix matrix = read_given(options);
  const DenseMatrix right =
      read_exactly(true, [&] { return read_vector(options.right_side, options.column, options.table); });
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

/// A matrix with so many rows: prove() has bounds of it, find(tolerance) gives it and the rank that the tolerance says.
template <class T, class Prove, class Find>
void deliver_matrix(const RankOptions& options, const std::string& what, const DenseMatrix& given,
                    const tesk2mp::Matrix<T>& a, const Prove& prove, const Find& find) {
  const QuarnFloat tolerance = tolerance_of(options, given);
  const std::string title = what + " of the " + description(given);
  if (options.proof.insisted && !options.tolerance.empty()) {
    throw bad_input(kInsistedWithTolerance);
  }
  std::string why_not = kByTolerance;
  Result result;
  DenseMatrix matrix;
  const auto attempt = [&] {
    const std::string rank = proven_rank(a);
    result.notes = {title, ""};
    int worked_with = 0;
    const auto bounded = proven_result(with_digits_of(options.proof, a), result, "proven factors", worked_with, prove);
    result.notes[1] += "; rank " + rank + ", proven";
    result.facts.push_back({"rank", rank, true});
    matrix.elements = known_matrix(options.proof, bounded, result);
  };
  if (!options.tolerance.empty() || !try_proof(options.proof, why_not, attempt, "")) {
    const auto estimate = estimated<T>(options.proof, [&] {
      const auto [found, decided] = find(tolerance);
      return std::optional(Computed<T>{elements(found), {}, {Integer(decided)}});
    });
    result = started(options, title, given, a, estimate, why_not);
    matrix.elements = matrix_of(estimated_values(options.proof, estimate.numbers), a.columns());
  }
  add_matrix(result, matrix);
  result.picture = [&](const std::string& file) { draw(map_of_magnitudes(result.notes.front(), matrix), file); };
  deliver(result, options.output);
}

void run_pinv(const RankOptions& options) {
  const DenseMatrix given = read_given(options);
  const Progress progress = progress_of(given);
  std::visit(
      [&]<class T>(const tesk2mp::Matrix<T>& a) {
        deliver_matrix<T>(
            options, "Pseudo-inverse", given, a, [&] { return tesk2mp::proven::pseudo_inverse(a); },
            [&](const QuarnFloat& tolerance) {
              auto found = tesk2mp::minimum_norm(a, tesk2mp::Matrix<T>::identity(a.rows()), tolerance);
              return std::pair(std::move(found.x), found.rank);
            });
      },
      given.elements);
}

void run_null(const RankOptions& options) {
  const DenseMatrix given = read_given(options);
  const Progress progress = progress_of(given);
  std::visit(
      [&]<class T>(const tesk2mp::Matrix<T>& a) {
        deliver_matrix<T>(
            options, "Null space", given, a, [&] { return tesk2mp::proven::null_space(a); },
            [&](const QuarnFloat& tolerance) {
              auto basis = tesk2mp::null_space(a, tolerance);
              const std::size_t rank = a.columns() - basis.columns();
              return std::pair(std::move(basis), rank);
            });
      },
      given.elements);
}

constexpr const char* kLeastSquaresFooter =
    R"(MATRIX is a table of numbers, a row a line, or a Matrix Market file, m by n of any rank. The
solution x has the least ||b - A x||, and of several such x the least ||x||. The rank is what a
QR factorisation with column pivoting shows; the residual is computed with twice the digits.
Without --rhs the right side is read from standard input.

The numbers are taken with all their digits; all digits that are printed are true, and the rank
is proven. With --tolerance, which decides about the rank, and where no proof is found two
computations agree to the digits.

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
result is the Moore-Penrose inverse, n by m. The numbers are taken with all their digits; all
digits that are printed are true, and the rank is proven. With --tolerance, which decides about
the rank, and where no proof is found two computations agree to the digits.

Example:
  printf '3
4
' | quarn pinv -)";

constexpr const char* kNullSpaceFooter =
    R"(MATRIX is a table of numbers, a row a line, or a Matrix Market file, m by n. The columns of
the result are an orthonormal basis of the vectors x with A x = 0; there are n - rank of them.
The numbers are taken with all their digits; all digits that are printed are true, and the rank
is proven. With --tolerance, which decides about the rank, and where no proof is found two
computations agree to the digits.

Example:
  printf '3 0 0
0 0 4
' | quarn null -)";

void declare_least_squares(Command& command, const std::shared_ptr<RankOptions>& options) {
  command.argument("MATRIX", options->matrix, "the matrix; - is standard input");
  command.text("--tolerance", "T", options->tolerance,
               "the rank's triangle has a condition number up to 1/T (default: the roundings)");
  add_matrix_options(command, options->table);
  add_output_options(command, options->output, Forms::matrix);
}

const Registered kLeastSquares(
    106, "lstsq", "least squares with a dense matrix of any shape and rank", kLeastSquaresFooter, [](Command& command) {
      auto options = std::make_shared<RankOptions>();
      declare_least_squares(command, options);
      add_true_digits(command, options->proof);
      add_plot_option(command, options->output);
      command.text("--rhs", "FILE", options->right_side, "the right side; - is standard input");
      command.text("--column", "NAME", options->column, "name or number of the right side's column");
      set_proven_work(command, options, run_lstsq);
    });

const Registered kPseudoInverse(107, "pinv", "the pseudo-inverse of a dense matrix", kPseudoInverseFooter,
                                [](Command& command) {
                                  auto options = std::make_shared<RankOptions>();
                                  declare_least_squares(command, options);
                                  add_true_digits(command, options->proof);
                                  add_plot_option(command, options->output);
                                  set_proven_work(command, options, run_pinv);
                                });

const Registered kNullSpace(108, "null", "the null space of a dense matrix, and its rank", kNullSpaceFooter,
                            [](Command& command) {
                              auto options = std::make_shared<RankOptions>();
                              declare_least_squares(command, options);
                              add_true_digits(command, options->proof);
                              add_plot_option(command, options->output);
                              set_proven_work(command, options, run_null);
                            });

}  // namespace

}  // namespace cli
