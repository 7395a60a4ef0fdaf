#include "cli/commands/command_line.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <memory>

#include "cli/commands/failure.h"
#include "cli/commands/manual.h"
#include "cli/io/output.h"

namespace cli {

namespace {

constexpr const char* kFooter = R"(Examples:
  quarn fft examples/sunspots.csv --digits 40
  quarn fft examples/sunspots.csv --format csv --output spectrum.csv
  quarn fft --inverse spectrum.csv
  quarn repl --digits 50 --eval 'sqrt(2)'

"quarn help TOPIC" explains a sub-command, or one of the topics )";

void declare(CLI::App& app, const Option& option) {
  if (option.flag) {
    app.add_flag_function(
        option.name, [&option](std::int64_t /*times*/) { option.take({}); }, option.description);
    return;
  }
  using Values = std::vector<std::string>;
  CLI::Option* declared =
      option.repeated || option.count > 1
          ? app.add_option_function<Values>(option.name, option.take, option.description)->expected(option.count)
          : app.add_option_function<std::string>(
                option.name, [&option](const std::string& value) { option.take({value}); }, option.description);
  declared->type_name(option.value)->required(option.required);
  if (option.repeated && option.positional()) {
    declared->expected(1, CLI::detail::expected_max_vector_size);
  } else if (option.repeated) {
    // With more values for one option the brackets around a line would be taken off.
    declared->allow_extra_args(false)->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
  }
  if (option.complaint) {
    declared->check(CLI::Validator([&option](const std::string& value) { return option.complaint(value); }, ""));
  }
}

std::unique_ptr<CLI::App> app_of(const Program& program) {
  auto app = std::make_unique<CLI::App>(program.whole.purpose, program.whole.name);
  app->set_version_flag("--version", std::string("quarn ") + QUARN_VERSION, "show the version");
  app->set_help_flag("-h,--help", "show this page");
  app->footer(program.whole.footer);
  app->require_subcommand(0, 1);            // what follows one is a file, even if it is named like another
  app->allow_windows_style_options(false);  // the same commands everywhere, and paths that start with a slash
  for (const Option& option : program.whole.options) {
    declare(*app, option);
  }
  for (const Command& command : program.commands) {
    CLI::App* declared = app->add_subcommand(command.name, command.purpose);
    declared->footer(command.footer);
    for (const Option& option : command.options) {
      declare(*declared, option);
    }
  }
  return app;
}

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

}  // namespace

Program::Program(Session& session)
    : whole("quarn", "Numerical routines in arbitrary decimal precision.", kFooter + list_of_topics() + ".", session),
      commands(registered_commands(session)) {
  whole.add_digits();
}

const Command* read_command_line(const Program& program, int argc, const char* const* argv) {
  const std::unique_ptr<CLI::App> app = app_of(program);
  const auto chosen = [&]() -> const Command* {
    const auto names = app->get_subcommands();
    const auto found = std::find_if(program.commands.begin(), program.commands.end(), [&](const Command& command) {
      return !names.empty() && command.name == names.front()->get_name();
    });
    return found == program.commands.end() ? nullptr : &*found;
  };
  try {
    app->parse(argc, argv);
  } catch (const CLI::CallForHelp&) {
    write_output(help_page(program, chosen()));
    return nullptr;
  } catch (const CLI::CallForVersion& version) {
    write_output(std::string(version.what()) + "\n");
    return nullptr;
  } catch (const CLI::ParseError& error) {
    throw bad_input(complaint_about(*app, error) + see_help(*app));
  }
  const Command* command = chosen();
  if (command == nullptr) {
    throw bad_input("no sub-command given" + see_help(*app));
  }
  if (command->check) {
    command->check();
  }
  return command;
}

std::string help_page(const Program& program, const Command* command) {
  const std::unique_ptr<CLI::App> app = app_of(program);
  return command == nullptr ? app->help() + "\n" : app->get_subcommand(command->name)->help(app->get_name());
}

}  // namespace cli
