// quarn repl: the routines by plain names, line by line.
#include <iostream>
#include <sstream>

#include "cli/commands/failure.h"
#include "cli/commands/options.h"
#include "cli/commands/proven.h"
#include "cli/io/input.h"
#include "cli/io/output.h"
#include "cli/repl/fault.h"
#include "cli/repl/interpreter.h"
#include "cli/repl/lexer.h"
#include "cli/repl/line_input.h"
#include "cli/system/interrupt.h"
#include "quarn/quarnthread.h"

namespace cli {

namespace {

struct ReplOptions {
  std::string script;
  std::vector<std::string> expressions;
  bool keep_going = false;
  std::string file;
  ProofOptions proof;
};

struct Source {
  std::string name;
  std::unique_ptr<repl::LineInput> lines;
  bool stops_at_faults = true;
  bool typed = false;
};

// After Ctrl-C: at the terminal the session goes on, anywhere else the run ends.
void give_up_line(const Source& source) {
  if (!source.typed) {
    throw QuarnInterrupted();
  }
  take_interrupt();
}

// The next statement, which goes on to the next line while a bracket is open. Counts the lines.
repl::Read next_statement(repl::LineInput& lines, std::string& text, std::size_t& number) {
  repl::Read read = lines.next("> ", text);
  if (read != repl::Read::line) {
    return read;
  }
  ++number;
  std::string more;
  for (int open = repl::open_brackets(text); open > 0 && (read = lines.next("... ", more)) == repl::Read::line;) {
    ++number;
    text += "\n" + more;
    open = repl::open_brackets(more, open);
  }
  return read == repl::Read::cancelled ? read : repl::Read::line;
}

// Runs the lines to their end; returns whether something was wrong that did not end the run.
bool run_lines(repl::Interpreter& interpreter, const Source& source) {
  std::size_t number = 0;
  std::string text;
  bool faulty = false;
  while (!interpreter.finished()) {
    const std::size_t first = number + 1;
    const repl::Read read = next_statement(*source.lines, text, number);
    if (read == repl::Read::end) {
      break;
    }
    if (read == repl::Read::cancelled) {
      give_up_line(source);
      continue;
    }
    try {
      interpreter.run(text);
    } catch (const QuarnInterrupted&) {
      give_up_line(source);
      std::fputs("interrupted\n", stderr);
    } catch (const repl::Fault& fault) {
      const std::string place = source.name + ":" + std::to_string(first + repl::line_of(text, fault)) + ": ";
      const std::string heading = source.stops_at_faults ? "quarn: " + place : "error: ";
      const Failure failure(fault.status(), repl::explanation(text, fault, heading));
      if (source.stops_at_faults) {
        throw failure;
      }
      std::fputs(failure.what(), stderr);
      faulty = true;
    } catch (const std::bad_alloc&) {
      if (source.stops_at_faults) {
        throw;
      }
      std::fputs("error: not enough memory\n", stderr);
      faulty = true;
    }
  }
  return faulty;
}

bool run_source(repl::Interpreter& interpreter, const ReplOptions& options) {
  if (!options.expressions.empty()) {
    std::string text;
    for (const std::string& expression : options.expressions) {
      text += expression + "\n";
    }
    std::istringstream stream(text);
    return run_lines(interpreter, {"--eval", repl::lines_of(stream), !options.keep_going});
  }
  if (!options.script.empty() && options.script != "-") {
    std::istringstream stream(read_input(options.script));
    return run_lines(interpreter, {options.script, repl::lines_of(stream), !options.keep_going});
  }
  if (options.script.empty() && repl::is_terminal()) {
    write_output("quarn " QUARN_VERSION ", " + std::to_string(QuarnDigits()) +
                 " digits; help lists what there is, quit ends\n");
    const auto names = [&](const std::string& start) { return interpreter.names_with(start); };
    survive_interrupts();
    run_lines(interpreter, {"", repl::typed_lines(names), false, true});
    return false;
  }
  return run_lines(interpreter, {name_of_input("-"), repl::lines_of(std::cin), !options.keep_going});
}

// Statements show what they do at once; a file is written at the end, and not by a run that fails.
void run_repl(const ReplOptions& options) {
  std::string shown;
  repl::Interpreter interpreter(
      [&](const std::string& text) { options.file.empty() ? write_output(text) : void(shown += text); }, options.proof);
  const bool faulty = run_source(interpreter, options);
  if (!options.file.empty()) {
    write_output(shown, options.file);
  }
  if (faulty) {
    throw Failure(ExitStatus::library, "");
  }
}

constexpr const char* kReplFooter =
    R"(Without a FILE, lines come from the terminal, with editing and history (~/.quarn_history,
or the file that QUARN_HISTORY names), or from a pipe. What is wrong with a line is told
below the place; away from a terminal it ends the run, with exit status 2 for a wrong
line and 1 for a refusal of the library. Ctrl-C cancels the line or the computation
and nothing else; away from a terminal it ends the run. "help" lists what the console knows.

Examples:
  quarn repl
  quarn repl --digits 50 --eval 'sqrt(2)'
  echo 'x = solve(hilbert(5), [1; 1; 1; 1; 1])' | quarn repl
  quarn repl --eval 'A = load("examples/bcsstk01.mtx");' --eval 'norm(A, "one")')";

void declare_repl(Command& command) {
  auto options = std::make_shared<ReplOptions>();
  command.argument("FILE", options->script, "lines to run; - is standard input", false);
  command.texts("--eval", "LINE", options->expressions, "run this line; may be given several times");
  command.flag("--keep-going", options->keep_going, "go on after a wrong line; the exit status is 1 in the end");
  add_true_digits(command, options->proof, "show bounds of the errors of results as well");
  add_output_file_option(command, options->file);
  command.check = [options] {
    if (!options->script.empty() && !options->expressions.empty()) {
      throw bad_input("FILE and --eval exclude each other");
    }
  };
  set_proven_work(command, options, run_repl);
}

const Registered kReplCommand(140, "repl", "calculate line by line", kReplFooter, declare_repl);

}  // namespace

}  // namespace cli
