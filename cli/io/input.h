// The whole text of an input.
#pragma once

#include <string>

namespace cli {

/// The contents of a file, or of standard input for "-", of a gzip file what it holds, without a byte order mark and
/// with the newlines of this system where there were carriage returns alone. Throws Failure for what cannot be read, is
/// longer than 1 GiB or is not text.
std::string read_input(const std::string& file);

/// The file's name in messages: "standard input" for "-".
std::string name_of_input(const std::string& file);

}  // namespace cli
