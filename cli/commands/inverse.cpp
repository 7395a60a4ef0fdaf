// quarn inv and quarn det: the inverse and the determinant of a dense matrix.
#include <algorithm>

#include "cli/commands/certificate.h"
#include "cli/commands/dense.h"
#include "cli/commands/failure.h"
#include "cli/commands/options.h"
#include "cli/commands/proven.h"
#include "cli/io/matrix_output.h"
#include "cli/plot/plot.h"
#include "cli/system/progress.h"
#include "tesk2mp/proven_certify.hpp"

namespace cli {

namespace {

struct MatrixOptions {
  std::string matrix;
  TableOptions table;
  ProofOptions proof;
  OutputOptions output;
};

/// Reads the matrix: rounded to the working digits, or with all its digits where the result is to be proven.
DenseMatrix read_matrix(const MatrixOptions& options) {
  return read_exactly(options.proof.wanted(), [&] { return read_operand(options.matrix, options.table, true); });
}

Result started(const DenseMatrix& given, const std::string& what, const char* real, const char* complex) {
  const char* routine = given.complex() ? complex : real;
  Result result;
  result.notes = {what + " of the " + description(given), digits_text() + ", by " + routine};
  result.facts = {{"routine", routine}, {"digits", std::to_string(QuarnDigits()), true}};
  return result;
}

/// Why there is no proof, if one was tried, and what the result is worth.
void add_estimate(Result& result, const std::string& why_not, const QuarnFloat& reciprocal_condition) {
  if (!why_not.empty()) {
    result.notes.push_back(why_not);
  }
  result.notes.push_back(estimate_note(reciprocal_condition, "the condition number"));
}

bool is_zero(const QuarnFloat& x) { return x == 0; }
bool is_zero(const Complex& z) { return z.re == 0 || z.im == 0; }

/// Zeros of an estimate: roundings, or numbers below the range, may be what they are.
template <class T>
void add_unproven_zeros(Result& result, const tesk2mp::Matrix<T>& estimate) {
  const T* const first = estimate.data();
  const auto count = Integer(std::count_if(first, first + estimate.rows() * estimate.columns(),
                                           [](const T& element) { return is_zero(element); }));
  if (count > 0) {
    result.notes.push_back("not proven to be 0: " + counted(count, "number that prints", "numbers that print") +
                           " as 0");
  }
}

void run_inv(const MatrixOptions& options) {
  constexpr double kFactorisations = 4;  // one, and as many right-hand sides as rows
  const DenseMatrix given = read_matrix(options);
  const Progress progress =
      Progress::estimated("inverting", kFactorisations * factorisation_cost(given.rows(), given.complex()));
  tesk2mp::Matrix<QuarnFloat> errors;
  Result result = started(given, "Inverse", "QuarnMPX_f07adf_", "QuarnMPX_f07arf_");
  const auto invert = [&]<class T>(const tesk2mp::Matrix<T>& a) {
    DenseMatrix found;
    std::string why_not;
    const bool proven = try_proof(options.proof, why_not, [&] {
      const char* routine = given.complex() ? "QuarnMPX_zproven_solve_" : "QuarnMPX_dproven_solve_";
      int worked_with = 0;
      const auto bounded =
          proven_result(options.proof, result, routine, worked_with, [&] { return tesk2mp::proven::inverse(a); });
      tesk2mp::Matrix<T> known = tesk2mp::proven::known_value(bounded);
      errors = bounded.errors();
      for (std::size_t j = 0; j < errors.columns(); ++j) {
        for (std::size_t i = 0; i < errors.rows(); ++i) {
          errors(i, j) = printed_error(bounded(i, j)).value();
        }
      }
      if (!options.proof.certificate.empty()) {
        const tesk2mp::Matrix<T>* unit = nullptr;
        write_certificate(options.proof.certificate,
                          tesk2mp::proven::certify_solution(a, unit, known, errors, worked_with));
      }
      found.elements = std::move(known);
    });
    if (!proven) {
      tesk2mp::Matrix<T> estimate = after_no_proof(why_not, [&] { return tesk2mp::inverse(a); });
      add_estimate(result, why_not, tesk2mp::reciprocal_condition(a));
      add_unproven_zeros(result, estimate);
      found.elements = std::move(estimate);
    }
    return found;
  };
  const DenseMatrix inverse = std::visit(invert, given.elements);
  add_matrix(result, inverse);
  if (errors.rows() > 0) {
    const QuarnFloat largest = *std::max_element(errors.data(), errors.data() + errors.rows() * errors.columns());
    result.facts.push_back({"largest_error", largest.to_string()});
    if (options.proof.errors) {
      result.notes.push_back("so far away is the exact value of an element at most: " + brief(largest));
    }
  }
  result.picture = [&](const std::string& file) { draw(map_of_magnitudes(result.notes.front(), inverse), file); };
  deliver(result, options.output);
}

void run_det(const MatrixOptions& options) {
  const DenseMatrix given = read_matrix(options);
  const Progress progress = Progress::estimated("factorising", factorisation_cost(given.rows(), given.complex()));
  Result result = started(given, "Determinant", "QuarnMPX_f03aff_", "QuarnMPX_zdeterminant_");
  std::visit(
      [&](const auto& a) {
        std::string why_not;
        const bool proven = try_proof(options.proof, why_not, [&] {
          const char* routine = given.complex() ? "QuarnMPX_zproven_determinant_" : "QuarnMPX_dproven_determinant_";
          int worked_with = 0;
          const auto found = proven_result(options.proof, result, routine, worked_with,
                                           [&] { return tesk2mp::proven::determinant(a); });
          const auto known = tesk2mp::proven::known_value(found);
          const std::string determinant = exact_text(known);
          const QuarnFloat error = printed_error(found).value();
          if (!options.proof.certificate.empty()) {
            write_certificate(options.proof.certificate,
                              tesk2mp::proven::certify_determinant(a, known, printed_error(found), worked_with));
          }
          result.facts.push_back({"determinant", determinant});
          result.facts.push_back({"error", error.to_string()});
          result.table = {{"determinant", {determinant}}};
          result.data = {{"determinant", {determinant}}, {"error", exact_cells({error})}};
          if (options.proof.errors) {
            result.table.push_back({"error", brief_cells({error})});
          }
        });
        if (proven) {
          return;
        }
        const auto scaled = tesk2mp::scaled_determinant(a);
        const std::string determinant = determinant_text(scaled.mantissa, scaled.exponent);
        if (scaled.nearly_singular) {
          result.notes.emplace_back("Matrix A is approximately singular.");
        }
        add_estimate(result, why_not, scaled.reciprocal_condition);
        result.facts.push_back({"mantissa", exact_text(scaled.mantissa)});
        result.facts.push_back({"exponent", std::to_string(scaled.exponent), true});
        result.facts.push_back({"rcond", exact_text(scaled.reciprocal_condition)});
        result.data = {{"determinant", {determinant}}};
        result.table = result.data;
      },
      given.elements);
  deliver(result, options.output);
}

constexpr const char* kInverseFooter =
    R"(MATRIX is a table of numbers, a row a line, or a Matrix Market file. A singular matrix
has no inverse, and the exit status is 1. --plot draws the magnitudes.

The numbers of the matrix are taken with all their digits, and D digits of every element of
the inverse are true; one of which not even the sign is known, D digits below the largest, is
printed as 0. Where no proof is found a note says so, and what the estimate is.

Examples:
  quarn inv examples/fs_183_1.mtx --digits 40 --output inverse.mtx
  printf '1 2\n3 4\n' | quarn inv -)";

constexpr const char* kDeterminantFooter =
    R"(MATRIX is a table of numbers, a row a line, or a Matrix Market file. The determinant
may be however large or small. The numbers of the matrix are taken with all their digits, and
all digits of the determinant that are printed are true. That of a singular matrix is 0,
proven by its rank. Where no proof is found a note says so.

With --working-digits, and without a proof, it is the product of the pivots of an LU
factorisation; a note says when roundings alone may have made the matrix singular or regular.
JSON has mantissa and exponent of ten apart, and an estimate of the reciprocal condition
number.

Examples:
  quarn det examples/fs_183_1.mtx --digits 40
  printf '1 2\n3 4\n' | quarn det - --format json)";

void declare_matrix(Command& command, const std::shared_ptr<MatrixOptions>& options, Forms forms) {
  command.argument("MATRIX", options->matrix, "the matrix; - is standard input");
  add_matrix_options(command, options->table);
  add_true_digits(command, options->proof);
  add_certificate(command, options->proof);
  add_output_options(command, options->output, forms);
}

const Registered kInverse(104, "inv", "the inverse of a dense matrix", kInverseFooter, [](Command& command) {
  auto options = std::make_shared<MatrixOptions>();
  declare_matrix(command, options, Forms::matrix);
  add_plot_option(command, options->output);
  set_proven_work(command, options, run_inv);
});

const Registered kDeterminant(105, "det", "the determinant of a dense matrix", kDeterminantFooter,
                              [](Command& command) {
                                auto options = std::make_shared<MatrixOptions>();
                                declare_matrix(command, options, Forms::table);
                                set_proven_work(command, options, run_det);
                              });

}  // namespace

}  // namespace cli
