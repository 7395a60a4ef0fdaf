// quarn norm: the norms of a dense matrix, and its condition number.
#include "cli/commands/dense.h"
#include "cli/commands/failure.h"
#include "cli/commands/options.h"
#include "cli/commands/proven.h"
#include "cli/system/progress.h"
#include "tesk2mp/proven_sums.hpp"

namespace cli {

namespace {

struct NormOptions {
  std::string matrix;
  TableOptions table;
  bool condition = false;
  ProofOptions proof;
  OutputOptions output;
};

struct NamedNorm {
  tesk2mp::Norm norm;
  const char* name;
  const char* meaning;
};
constexpr NamedNorm kNorms[] = {{tesk2mp::Norm::largest, "max", "largest element"},
                                {tesk2mp::Norm::one, "one", "largest column sum"},
                                {tesk2mp::Norm::infinity, "infinity", "largest row sum"},
                                {tesk2mp::Norm::frobenius, "frobenius", "square root of the sum of squares"}};

using BoundedReal = tesk2mp::proven::Bounded<QuarnFloat>;

/// The norms, and the condition number where it is asked for; all with bounds. That of a matrix that is proven to be
/// singular is infinite, and left out.
template <class T>
std::vector<BoundedReal> proven_norms(const NormOptions& options, const tesk2mp::Matrix<T>& a) {
  std::vector<BoundedReal> norms;
  for (const NamedNorm& each : kNorms) {
    norms.push_back(tesk2mp::proven::norm(each.norm, a));
  }
  if (options.condition) {
    try {
      norms.push_back(tesk2mp::proven::norm(tesk2mp::Norm::one, a) *
                      tesk2mp::proven::norm(tesk2mp::Norm::one, tesk2mp::proven::inverse(a)));
    } catch (const tesk2mp::NumericalFailure&) {
      // Singular, which is proven.
    }
  }
  return norms;
}

/// The same without bounds. Where the matrix is singular to the working digits the condition number is left out.
template <class T>
std::vector<QuarnFloat> computed_norms(const NormOptions& options, const tesk2mp::Matrix<T>& a) {
  std::vector<QuarnFloat> norms;
  for (const NamedNorm& each : kNorms) {
    norms.push_back(tesk2mp::norm(each.norm, a));
  }
  if (options.condition) {
    try {
      norms.push_back(tesk2mp::norm(tesk2mp::Norm::one, a) * tesk2mp::norm(tesk2mp::Norm::one, tesk2mp::inverse(a)));
    } catch (const tesk2mp::NumericalFailure&) {
      // The norms are known all the same.
    }
  }
  return norms;
}

void run_norm(const NormOptions& options) {
  const DenseMatrix given = read_exactly(
      options.proof.wanted(), [&] { return read_operand(options.matrix, options.table, options.condition); });
  const std::string routine = given.complex() ? "QuarnMPX_f06uaf_" : "QuarnMPX_f06raf_";
  Result result;
  result.notes = {"Norms of the " + description(given), digits_text() + ", by " + routine};
  result.facts = {{"routine", routine}, {"digits", std::to_string(QuarnDigits()), true}};
  constexpr double kInverting = 4;
  const Progress progress = Progress::estimated(
      "computing", options.condition ? kInverting * factorisation_cost(given.rows(), given.complex()) : 0);
  std::vector<QuarnFloat> values;
  std::vector<QuarnFloat> errors;
  std::string why_not;
  std::visit(
      [&](const auto& a) {
        const bool is_proven = try_proof(options.proof, why_not, [&] {
          int worked_with = 0;
          const std::vector<BoundedReal> bounded =
              proven_result(options.proof, result, "exact sums", worked_with, [&] { return proven_norms(options, a); });
          values = known_values(bounded);
          errors = errors_of(bounded);
        });
        if (!is_proven) {
          values = after_no_proof(why_not, [&] { return computed_norms(options, a); });
        }
      },
      given.elements);
  if (!why_not.empty()) {
    result.notes.push_back(why_not);
  }
  if (values.size() < std::size(kNorms) + std::size_t(options.condition ? 1 : 0)) {
    const bool is_proven = !errors.empty();
    result.notes.emplace_back(is_proven ? "the matrix is singular, which is proven: its condition number is infinite"
                                        : "the matrix is singular to the working digits: its condition number is "
                                          "infinite, or not known");
    values.emplace_back(is_proven ? "inf" : "nan");
    if (is_proven) {
      errors.emplace_back(0);
    }
  }
  ResultColumn names{"norm", {}, false, true};
  ResultColumn meanings{"meaning", {}, false, true};
  for (const NamedNorm& each : kNorms) {
    names.cells.emplace_back(each.name);
    meanings.cells.emplace_back(each.meaning);
  }
  if (options.condition) {
    names.cells.emplace_back("condition");
    meanings.cells.emplace_back("one-norm of A times one-norm of its inverse");
  }
  const ResultColumn column{"value", exact_cells(values)};
  result.table = {names, meanings, column};
  result.data = {names, column};
  if (!errors.empty()) {
    add_errors(result, errors, "value", options.proof.errors);
  }
  deliver(result, options.output);
}

constexpr const char* kNormFooter =
    R"(MATRIX is a table of numbers, a row a line, or a Matrix Market file. --condition inverts
the matrix; the condition number of a singular one is inf, and nan where it is singular to the
working digits but not proven to be. The numbers of the matrix are taken with all their digits,
and those of the result are proven.

Examples:
  quarn norm examples/fs_183_1.mtx --condition --digits 50
  printf '1 2\n3 4\n' | quarn norm - --format json)";

void declare_norm(Command& command) {
  auto options = std::make_shared<NormOptions>();
  command.argument("MATRIX", options->matrix, "the matrix; - is standard input");
  add_matrix_options(command, options->table);
  command.flag("--condition", options->condition, "the condition number as well");
  add_true_digits(command, options->proof);
  add_output_options(command, options->output);
  set_proven_work(command, options, run_norm);
}

const Registered kNormCommand(110, "norm", "norms and condition number of a dense matrix", kNormFooter, declare_norm);

}  // namespace

}  // namespace cli
