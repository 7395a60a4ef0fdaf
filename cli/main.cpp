// quarn: the routines of Tesk MP at the command line.
#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdio>
#include <new>

#include "cli/commands/commands.h"
#include "cli/commands/failure.h"
#include "cli/commands/manual.h"
#include "cli/io/output.h"
#include "cli/system/progress.h"

namespace cli {

namespace {

constexpr const char* kFooter = R"(Examples:
  quarn fft examples/sunspots.csv --digits 40
  quarn fft examples/sunspots.csv --format csv --output spectrum.csv
  quarn fft --inverse spectrum.csv
  quarn repl --digits 50 --eval 'sqrt(2)'

"quarn help TOPIC" explains a sub-command, or one of the topics )";

// Where to look after a wrong command line.
std::string see_help(const CLI::App& app) {
  const auto commands = app.get_subcommands();
  return " (quarn " + (commands.empty() ? "" : commands.front()->get_name() + " ") + "--help shows what there is)";
}

// What is missing may be missing because of a slip in what is there: an option that does not exist is named first.
std::string complaint_about(const CLI::App& app, const CLI::ParseError& error) {
  const std::vector<std::string> extra = app.remaining(true);
  const auto option =
      std::find_if(extra.begin(), extra.end(), [](const std::string& each) { return each.starts_with('-'); });
  if (option != extra.end()) {
    return "there is no option " + *option;
  }
  if (extra.empty()) {
    return error.what();
  }
  return app.get_subcommands().empty() ? "there is no sub-command '" + extra.front() + "'"
                                       : "'" + extra.front() + "' was not expected";
}

void run(int argc, char** argv) {
  prepare_standard_streams();
  Session session;
  CLI::App app("Numerical routines in arbitrary decimal precision.", "quarn");
  app.set_version_flag("--version", std::string("quarn ") + QUARN_VERSION, "show the version");
  app.set_help_flag("-h,--help", "show this page");
  app.footer(kFooter + list_of_topics() + ".");
  app.require_subcommand(0, 1);            // what follows one is a file, even if it is named like another
  app.allow_windows_style_options(false);  // the same commands everywhere, and paths that start with a slash
  add_digits_option(app, session);
  add_fft(app, session);
  add_cfft(app, session);
  add_constants(app, session);
  add_rank(app, session);
  add_sort(app, session);
  add_random(app, session);
  add_spmv(app, session);
  add_sparse(app, session);
  add_lu(app, session);
  add_chol(app, session);
  add_norm(app, session);
  add_eig(app, session);
  add_zeros(app, session);
  add_repl(app, session);
  add_solve(app, session);
  add_details(app, session);
  add_help(app, session);
  try {
    app.parse(argc, argv);
  } catch (const CLI::CallForHelp&) {
    const auto commands = app.get_subcommands();
    return write_output(commands.empty() ? app.help() + "\n" : commands.front()->help(app.get_name()));
  } catch (const CLI::CallForVersion& version) {
    return write_output(std::string(version.what()) + "\n");
  } catch (const CLI::ParseError& error) {
    throw bad_input(complaint_about(app, error) + see_help(app));
  }
  if (!session.work) {
    throw bad_input("no sub-command given" + see_help(app));
  }
  QuarnSetDigits(session.digits);
  if (!session.quiet) {
    enable_progress();
  }
  session.work();
}

}  // namespace

}  // namespace cli

int main(int argc, char** argv) {
  try {
    cli::run(argc, argv);
    return int(cli::ExitStatus::success);
  } catch (const cli::Failure& failure) {
    std::fputs(failure.what(), stderr);
    return int(failure.status());
  } catch (const std::bad_alloc&) {
    std::fputs("quarn: not enough memory\n", stderr);
    return int(cli::ExitStatus::library);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "quarn: %s\n", error.what());
    return int(cli::ExitStatus::library);
  }
}
