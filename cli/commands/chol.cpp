// quarn chol: the Cholesky factorisation of a dense Hermitian positive definite matrix.
#include "cli/commands/dense.h"
#include "cli/commands/estimate.h"
#include "cli/commands/failure.h"
#include "cli/commands/options.h"
#include "cli/io/matrix_output.h"
#include "cli/plot/plot.h"
#include "cli/system/progress.h"
#include "tesk2mp/proven_factors.hpp"

namespace cli {

namespace {

struct CholOptions {
  std::string matrix;
  TableOptions table;
  bool upper = false;
  ProofOptions proof;
  OutputOptions output;
};

bool mirrored(const QuarnFloat& value, const QuarnFloat& mirror) { return value == mirror; }
bool mirrored(const Complex& value, const Complex& mirror) { return value == conj(mirror); }

template <class T>
void require_hermitian(const tesk2mp::Matrix<T>& a, const std::string& source) {
  for (std::size_t j = 0; j < a.columns(); ++j) {
    for (std::size_t i = j; i < a.rows(); ++i) {
      if (!mirrored(a(i, j), a(j, i))) {
        std::string refusal = source + ": not ";
        refusal += std::is_same_v<T, Complex> ? "Hermitian" : "symmetric";
        refusal += ": element (" + std::to_string(i + 1) + ", " + std::to_string(j + 1);
        throw bad_input(refusal += ") differs from its mirror image");
      }
    }
  }
}

/// Is the leading minor of that order proven to be the first that is not positive?
template <class T>
bool is_first_not_positive(const tesk2mp::Matrix<T>& a, std::size_t order) {
  const auto leading = [&](std::size_t n) {
    tesk2mp::Matrix<T> block(n, n);
    for (std::size_t j = 0; j < n; ++j) {
      for (std::size_t i = 0; i < n; ++i) {
        block(i, j) = a(i, j);
      }
    }
    return block;
  };
  return tesk2mp::proven::is_positive_definite(leading(order)) == false &&
         (order == 1 || tesk2mp::proven::is_positive_definite(leading(order - 1)) == true);
}

template <class T>
tesk2mp::Matrix<T> estimated_factor(const CholOptions& options, const tesk2mp::Matrix<T>& a, Result& result) {
  const auto triangle = options.upper ? tesk2mp::Triangle::upper : tesk2mp::Triangle::lower;
  const char* const routine = std::is_same_v<T, Complex> ? "QuarnMPX_zpotrf_" : "QuarnMPX_dpotrf_";
  std::optional<tesk2mp::NumericalFailure> refusal;
  ComparedDeterminants determinants;
  const auto compute = [&]() -> std::optional<Computed<T>> {
    try {
      const tesk2mp::Cholesky<T> cholesky(a, triangle);
      const tesk2mp::Matrix<T>& factor = cholesky.factor();
      const auto parts = cholesky.determinant_parts();
      return Computed<T>{{factor.data(), factor.data() + a.rows() * a.columns()},
                         {T(determinants.scaled(parts.mantissa, parts.exponent))},
                         {}};
    } catch (const tesk2mp::NumericalFailure& failure) {
      const auto order = std::size_t(failure.code());
      if (!options.proof.wanted() || order == 0 || order > a.rows() || is_first_not_positive(a, order)) {
        throw;
      }
      refusal = failure;
      return std::nullopt;
    }
  };
  const Estimated<T> estimate = estimated<T>(
      options.proof, compute, [&] { return tesk2mp::proven::rank(a).value_or(a.rows()) < std::size_t(a.rows()); });
  if (!estimate.choice) {
    throw *refusal;  // with all digits that were tried
  }
  const std::string determinant =
      determinants.text(Complex(estimated_values(options.proof, estimate.single).back()).re);
  result.facts = {{"routine", routine}, {"digits", std::to_string(QuarnDigits()), true}};
  result.notes.push_back("positive definite; determinant " + determinant);
  result.facts.push_back({"determinant", determinant});
  add_estimate(options.proof, estimate, routine, result);
  return matrix_of(estimated_values(options.proof, estimate.numbers), a.rows());
}

template <class T>
Result result_of(const CholOptions& options, const DenseMatrix& given, const tesk2mp::Matrix<T>& a) {
  Result result;
  const std::string title =
      std::string(options.upper ? "U of A = U^H U" : "L of A = L L^H") + ", A the " + description(given);
  DenseMatrix factor;
  std::string why_not;
  const auto attempt = [&] {
    result.notes = {title, ""};
    int worked_with = 0;
    const auto bounded = proven_result(options.proof, result, "proven factors", worked_with, [&] {
      return tesk2mp::proven::cholesky(a, options.upper ? tesk2mp::Triangle::upper : tesk2mp::Triangle::lower);
    });
    int of_determinant = 0;
    const auto found = with_true_digits(options.proof, of_determinant, [&] { return tesk2mp::proven::determinant(a); });
    const std::string determinant = exact_text(Complex(tesk2mp::proven::known_value(found)).re);
    result.notes.push_back("positive definite; determinant " + determinant);
    result.facts.push_back({"determinant", determinant});
    factor.elements = known_matrix(options.proof, bounded, result);
  };
  if (!try_proof(options.proof, why_not, attempt, "")) {
    result = Result();
    result.notes = {title, ""};
    factor.elements = estimated_factor(options, a, result);
    if (!why_not.empty()) {
      result.notes.push_back(why_not);
    }
  }
  add_matrix(result, factor);
  result.picture = [title, factor](const std::string& file) { draw(map_of_magnitudes(title, factor), file); };
  return result;
}

void run_chol(const CholOptions& options) {
  const DenseMatrix given = read_exactly(true, [&] { return read_operand(options.matrix, options.table, true); });
  std::visit([&](const auto& a) { require_hermitian(a, given.source); }, given.elements);
  constexpr double kTwoTriangles = 1;
  const Progress progress = Progress::estimated("factorising", kTwoTriangles * factorisation_cost(given.rows(), true));
  std::visit([&](const auto& a) { deliver(result_of(options, given, a), options.output); }, given.elements);
}

constexpr const char* kCholFooter =
    R"(MATRIX is a table of numbers, a row a line, or a Matrix Market file: symmetric or
Hermitian. When it is not positive definite, the order of the first leading minor that
is not positive is told, and the exit status is 1. --plot draws the magnitudes of the
factor.

The numbers of the matrix are taken with all their digits; that it is not positive definite is
proven, and all digits of the factor and the determinant that are printed are true. Where no
proof is found two computations agree to the digits; a note says so.

Examples:
  quarn chol examples/bcsstk01.mtx --digits 40 --output factor.mtx
  printf '4 2\n2 5\n' | quarn chol - --upper)";

void declare_chol(Command& command) {
  auto options = std::make_shared<CholOptions>();
  command.argument("MATRIX", options->matrix, "the matrix; - is standard input");
  add_matrix_options(command, options->table);
  command.flag("--upper", options->upper, "write U of A = U^H U");
  add_true_digits(command, options->proof);
  add_output_options(command, options->output, Forms::matrix);
  add_plot_option(command, options->output);
  set_proven_work(command, options, run_chol);
}

const Registered kCholCommand(100, "chol", "factorise a positive definite matrix, A = L L^H", kCholFooter,
                              declare_chol);

}  // namespace

}  // namespace cli
