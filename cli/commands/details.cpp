// quarn details: the library's account of itself.
#include "cli/commands/options.h"
#include "cli/io/output.h"
#include "tesk2mp/util.hpp"

namespace cli {

namespace {

constexpr const char* kDetailsFooter = "Example:\n  quarn details";

void declare_details(Command& command) {
  auto file = std::make_shared<std::string>();
  command.add_digits();
  add_output_file_option(command, *file);
  command.work = [file] { write_output_of(tesk2mp::classic::print_details, *file); };
}

const Registered kDetailsCommand(160, "details", "show the implementation details of the library", kDetailsFooter,
                                 declare_details);

}  // namespace

}  // namespace cli
