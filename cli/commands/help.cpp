// quarn help: a sub-command's or a topic's page, the manual page, the completion script.
#include <algorithm>

#include "cli/commands/commands.h"
#include "cli/commands/failure.h"
#include "cli/commands/manual.h"
#include "cli/io/output.h"

namespace cli {

namespace {

struct HelpOptions {
  std::string topic;
  bool manual = false;
  bool completion = false;
  std::string file;
};

std::string page(CLI::App& app, const std::string& name) {
  for (const Topic& topic : topics()) {
    if (name == topic.name) {
      return std::string(topic.title) + "\n\n" + topic.text + "\n";
    }
  }
  for (const CLI::App* command : app.get_subcommands([](CLI::App*) { return true; })) {
    if (name == command->get_name()) {
      return command->help(app.get_name());
    }
  }
  throw bad_input("no help on '" + name + "'; there are the sub-commands and: " + list_of_topics());
}

// app.help() would show the page of the sub-command that was parsed: of this one.
std::string overview(CLI::App& app) {
  return app.get_formatter()->make_help(&app, app.get_name(), CLI::AppFormatMode::Normal) + "\n";
}

void run_help(CLI::App& app, const HelpOptions& options) {
  write_output(options.manual          ? manual_page(app)
               : options.completion    ? bash_completion(app)
               : options.topic.empty() ? overview(app)
                                       : page(app, options.topic),
               options.file);
}

}  // namespace

void add_help(CLI::App& app, Session& session) {
  CLI::App* command = app.add_subcommand("help", "explain a sub-command or a topic");
  auto options = std::make_shared<HelpOptions>();
  command->add_option("TOPIC", options->topic, "a sub-command, or one of: " + list_of_topics())->type_name("");
  command->add_flag("--man", options->manual, "write the manual page, for man");
  command->add_flag("--bash-completion", options->completion, "write the completion script for bash");
  add_output_file_option(*command, options->file);
  command->footer(R"(Examples:
  quarn help exit-status
  quarn help --man | man -l -
  source <(quarn help --bash-completion))");
  command->callback([&app, &session, options] { session.work = [&app, options] { run_help(app, *options); }; });
}

}  // namespace cli
