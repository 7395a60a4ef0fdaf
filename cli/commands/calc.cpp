// quarn calc: the value of an expression.
#include "cli/commands/failure.h"
#include "cli/commands/options.h"
#include "cli/commands/proven.h"
#include "cli/io/output.h"
#include "cli/repl/fault.h"
#include "cli/repl/interpreter.h"

namespace cli {

namespace {

struct CalcOptions {
  std::string expression;
  std::string file;
  ProofOptions proof;
};

void run_calc(const CalcOptions& options) {
  std::string shown;
  repl::Interpreter interpreter([&](const std::string& text) { shown += text; }, options.proof);
  try {
    interpreter.run(options.expression);
  } catch (const repl::Fault& fault) {
    throw Failure(fault.status(), repl::explanation(options.expression, fault, "quarn: "));
  }
  // A value without a name stands alone.
  for (const std::string name : {"ans = ", "ans =\n"}) {
    if (shown.starts_with(name) && shown.find("\nans =") == std::string::npos) {
      shown.erase(0, name.size());
    }
  }
  write_output(shown, options.file);
}

constexpr const char* kCalcFooter =
    R"(The language is that of quarn repl ("help" there lists it); quotes keep the shell from
reading it. An expression that starts with a minus sign comes after --.

Examples:
  quarn calc '30! / 28!'
  quarn calc 'asin(2)' --digits 50
  quarn calc 'det(hilbert(12))')";

void declare_calc(Command& command) {
  auto options = std::make_shared<CalcOptions>();
  command.argument("EXPRESSION", options->expression, "what is to be worked out");
  add_true_digits(command, options->proof, "show bounds of the errors of results as well");
  add_output_file_option(command, options->file);
  set_proven_work(command, options, run_calc);
}

const Registered kCalcCommand(138, "calc", "the value of an expression", kCalcFooter, declare_calc);

}  // namespace

}  // namespace cli
