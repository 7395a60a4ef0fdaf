// quarn help: a sub-command's or a topic's page, the manual page, the completion script.
#include <algorithm>

#include "cli/commands/command_line.h"
#include "cli/commands/failure.h"
#include "cli/commands/manual.h"
#include "cli/commands/options.h"
#include "cli/io/output.h"

namespace cli {

namespace {

struct HelpOptions {
  std::string topic;
  bool manual = false;
  bool completion = false;
  std::string file;
};

std::string page(const Program& program, const std::string& name) {
  for (const Topic& topic : topics()) {
    if (name == topic.name) {
      return std::string(topic.title) + "\n\n" + topic.text + "\n";
    }
  }
  for (const Command& command : program.commands) {
    if (name == command.name) {
      return help_page(program, &command);
    }
  }
  throw bad_input("no help on '" + name + "'; there are the sub-commands and: " + list_of_topics());
}

void run_help(const HelpOptions& options) {
  Session session;
  const Program program(session);
  write_output(options.manual          ? manual_page(program)
               : options.completion    ? bash_completion(program)
               : options.topic.empty() ? help_page(program, nullptr)
                                       : page(program, options.topic),
               options.file);
}

constexpr const char* kHelpFooter = R"(Examples:
  quarn help exit-status
  quarn help --man | man -l -
  source <(quarn help --bash-completion))";

void declare_help(Command& command) {
  auto options = std::make_shared<HelpOptions>();
  command.argument("TOPIC", options->topic, "a sub-command, or one of: " + list_of_topics(), false);
  command.flag("--man", options->manual, "write the manual page, for man");
  command.flag("--bash-completion", options->completion, "write the completion script for bash");
  add_output_file_option(command, options->file);
  command.work = [options] { run_help(*options); };
}

const Registered kHelpCommand(170, "help", "explain a sub-command or a topic", kHelpFooter, declare_help);

}  // namespace

}  // namespace cli
