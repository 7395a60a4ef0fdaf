// Runs another program to its end.
#pragma once

#include <string>
#include <vector>

namespace cli {

struct ProcessResult {
  bool started = false;
  int error = 0;          // errno when it did not start
  int status = 0;         // its exit status, or 128 and the signal that ended it
  std::string complaint;  // the last line that says something of its standard error
};

/// Starts the program found on the search path with the text as its standard input and waits for it. Its standard
/// output is dropped.
ProcessResult run_process(const std::vector<std::string>& arguments, const std::string& input);

}  // namespace cli
