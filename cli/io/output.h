// Where results go: one way out for every sub-command.
#pragma once

#include <string>

namespace cli {

/// Writes the text to the file, or to standard output when the name is empty or "-". Throws Failure unless every byte
/// has been accepted; a file then holds what it held before.
void write_output(const std::string& text, const std::string& file = "");

/// The same for what a function of the library writes to the C library's standard output. With a file this is the last
/// that the process writes there.
void write_output_of(void (*writer)(), const std::string& file);

/// Writes to a closed standard output or a closed pipe fail with an error code from now on, instead of hitting another
/// file or ending the process; results are the same bytes everywhere, and messages stand where they belong among them.
void prepare_standard_streams();

}  // namespace cli
