// Everything that is written about the console, from the definitions that it works by: help on topics, the manual page
// and the completion for bash.
#pragma once

#include <span>
#include <string>

#include "cli/commands/command_line.h"

namespace cli {

/// What holds for all sub-commands.
struct Topic {
  const char* name;  // as given to "quarn help"
  const char* title;
  const char* text;
};

std::span<const Topic> topics();

/// One line that lists the topics.
std::string list_of_topics();

/// The manual page in roff: every sub-command with its options and notes, and the topics.
std::string manual_page(const Program& program);

/// A script for bash that completes sub-commands, options, the words that options take, and files.
std::string bash_completion(const Program& program);

}  // namespace cli
