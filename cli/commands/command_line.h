// Command lines and help pages. The library that reads and formats them is known to command_line.cpp alone.
#pragma once

#include <string>
#include <vector>

#include "cli/commands/command.h"

namespace cli {

/// The whole console: what holds before a sub-command, and the sub-commands.
struct Program {
  explicit Program(Session& session);

  Command whole;
  std::vector<Command> commands;
};

/// Reads the command line into the targets of the options. Returns the command to run; null when the line asked for a
/// page, which has been written. Throws Failure for a bad line.
const Command* read_command_line(const Program& program, int argc, const char* const* argv);

/// The help page of a sub-command, or of the whole console for none.
std::string help_page(const Program& program, const Command* command);

}  // namespace cli
