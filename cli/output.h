// Where results go: one way out for every sub-command.
#pragma once

#include <string>

namespace cli {

/// Writes the text to the file, or to standard output when the name is empty or "-". Throws Failure unless every byte
/// has been accepted.
void write_output(const std::string& text, const std::string& file = "");

/// Makes writes to a closed standard output or a closed pipe fail with an error code instead of hitting another file or
/// ending the process.
void make_output_errors_visible();

}  // namespace cli
