// quarn norm: the norms of a dense matrix, and its condition number.
#include "cli/commands/dense.h"
#include "cli/commands/failure.h"
#include "cli/commands/options.h"
#include "cli/system/progress.h"

namespace cli {

namespace {

struct NormOptions {
  std::string matrix;
  TableOptions table;
  bool condition = false;
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

void run_norm(const NormOptions& options) {
  const DenseMatrix given = read_operand(options.matrix, options.table, options.condition);
  ResultColumn names{"norm", {}, false, true};
  ResultColumn meanings{"meaning", {}, false, true};
  ResultColumn values{"value", {}};
  const auto add = [&](const char* name, const char* meaning, const QuarnFloat& value) {
    names.cells.emplace_back(name);
    meanings.cells.emplace_back(meaning);
    values.cells.push_back(exact_text(value));
  };
  const auto measure = [&](const auto& a) {
    for (const auto& [norm, name, meaning] : kNorms) {
      add(name, meaning, tesk2mp::norm(norm, a));
    }
    if (options.condition) {
      constexpr double kSolving = 3;  // n right-hand sides on top of the factorisation
      const Progress progress =
          Progress::estimated("inverting", (1 + kSolving) * factorisation_cost(given.rows(), given.complex()));
      const auto inverse = tesk2mp::inverse(a);
      add("condition", "one-norm of A times one-norm of its inverse",
          tesk2mp::norm(tesk2mp::Norm::one, a) * tesk2mp::norm(tesk2mp::Norm::one, inverse));
    }
  };
  std::visit(measure, given.elements);

  const std::string routine = given.complex() ? "QuarnMPX_f06uaf_" : "QuarnMPX_f06raf_";
  Result result;
  result.notes = {"Norms of the " + description(given), digits_text() + ", by " + routine};
  result.facts = {{"routine", routine}, {"digits", std::to_string(QuarnDigits()), true}};
  result.table = {names, meanings, values};
  result.data = {names, values};
  deliver(result, options.output);
}

constexpr const char* kNormFooter =
    R"(MATRIX is a table of numbers, a row a line, or a Matrix Market file. --condition inverts
the matrix; a singular one has no condition number, and the exit status is 1.

Examples:
  quarn norm examples/fs_183_1.mtx --condition --digits 50
  printf '1 2\n3 4\n' | quarn norm - --format json)";

void declare_norm(Command& command) {
  auto options = std::make_shared<NormOptions>();
  command.argument("MATRIX", options->matrix, "the matrix; - is standard input");
  add_matrix_options(command, options->table);
  command.flag("--condition", options->condition, "the condition number as well");
  command.add_digits();
  add_output_options(command, options->output);
  command.work = [options] { run_norm(*options); };
}

const Registered kNormCommand(110, "norm", "norms and condition number of a dense matrix", kNormFooter, declare_norm);

}  // namespace

}  // namespace cli
