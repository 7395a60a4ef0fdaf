// quarn calc: the value of an expression.
#include "cli/commands/failure.h"
#include "cli/commands/options.h"
#include "cli/io/output.h"
#include "cli/repl/fault.h"
#include "cli/repl/interpreter.h"
#include "cli/repl/proof_flags.h"

namespace cli {

namespace {

struct CalcOptions {
  std::string expression;
  std::string file;
  repl::ProofLimits limits;
};

void run_calc(const CalcOptions& options) {
  std::string shown;
  if (options.limits.once > 0) {
    QuarnSetDigits(int(options.limits.once));
  }
  repl::Interpreter interpreter([&](const std::string& text) { shown += text; }, options.limits);
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
  command.add_digits("digits that are printed, and proven to be true");
  command.number("--working-digits", "D", options->limits.once, 1, kMostDigits,
                 "compute once with D digits, without a proof");
  command.number("--proof-time", "S", options->limits.seconds, 0, 1'000'000,
                 "after S seconds try no more working digits for a proof (default 60)");
  repl::add_proof_flags(command, options->limits);
  add_output_file_option(command, options->file);
  command.check = [options] { repl::check_proof_flags(options->limits); };
  command.work = [options] { run_calc(*options); };
}

const Registered kCalcCommand(138, "calc", "the value of an expression", kCalcFooter, declare_calc);

}  // namespace

}  // namespace cli
