// What is wrong with a line, and where.
#pragma once

#include <cstddef>
#include <stdexcept>
#include <string>

#include "cli/commands/failure.h"

namespace cli::repl {

/// Ends the statement at hand.
class Fault : public std::runtime_error {
 public:
  Fault(std::size_t at, const std::string& reason, ExitStatus status = ExitStatus::input)
      : std::runtime_error(reason), at_(at), status_(status) {}
  /// Place in the text, in bytes from 0.
  std::size_t at() const { return at_; }
  ExitStatus status() const { return status_; }

 private:
  std::size_t at_;
  ExitStatus status_;
};

/// Thrown where more digits may decide what these do not, and never at the last attempt.
class Undecided : public std::exception {};

/// The line of the text that the fault is in, a caret below its place, and the reason after what it is headed by.
std::string explanation(const std::string& text, const Fault& fault, const std::string& heading);

/// Which line of the text that is, from 0.
std::size_t line_of(const std::string& text, const Fault& fault);

}  // namespace cli::repl
