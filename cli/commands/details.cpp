// quarn details: the library's account of itself.
#include "cli/commands/commands.h"
#include "cli/commands/library_call.h"
#include "cli/io/output.h"
#include "tesk2mp/tesk2mp.h"

namespace cli {

void add_details(CLI::App& app, Session& session) {
  CLI::App* command = app.add_subcommand("details", "show the implementation details of the library");
  auto file = std::make_shared<std::string>();
  add_digits_option(*command, session);
  add_output_file_option(*command, *file);
  command->footer("Example:\n  quarn details");
  command->callback(
      [&session, file] { session.work = [file] { write_output(console_text_of(QuarnMP_a00aafn_), *file); }; });
}

}  // namespace cli
