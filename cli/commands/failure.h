// How a run of the console ends when it does not end well.
#pragma once

#include <stdexcept>
#include <string>

#include "cli/io/one_line.h"

namespace cli {

/// Exit statuses of every sub-command; kInterruptedStatus is one more.
enum class ExitStatus : int {
  success = 0,
  library = 1,  // a routine of the library refused or failed
  input = 2,    // a bad option or a bad input file
  output = 3    // a result or a picture could not be written
};

/// Ends the run: main() prints the text as it is on standard error and exits with the status.
class Failure : public std::runtime_error {
 public:
  Failure(ExitStatus status, const std::string& text) : std::runtime_error(text), status_(status) {}
  ExitStatus status() const { return status_; }

 private:
  ExitStatus status_;
};

/// A bad option or input: one line with the program's name in front.
inline Failure bad_input(const std::string& line) { return {ExitStatus::input, "quarn: " + one_line(line) + "\n"}; }

/// Something could not be written: one line with the program's name in front.
inline Failure bad_output(const std::string& line) { return {ExitStatus::output, "quarn: " + one_line(line) + "\n"}; }

}  // namespace cli
