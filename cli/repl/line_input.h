// Where the console's lines come from: a terminal with editing, history and completion, or plain text.
#pragma once

#include <functional>
#include <istream>
#include <memory>
#include <string>
#include <vector>

namespace cli::repl {

enum class Read { line, end, cancelled };

class LineInput {
 public:
  virtual ~LineInput() = default;
  /// The next line without its end. A line is cancelled by Ctrl-C.
  virtual Read next(const std::string& prompt, std::string& line) = 0;
};

/// Lines of a stream; no prompt is shown.
std::unique_ptr<LineInput> lines_of(std::istream& stream);

/// Whether standard input and standard output are both a terminal.
bool is_terminal();

/// Lines typed at the terminal. Where the editing library is built in, `names` gives what a start can be completed to,
/// and the history is kept in the file named by QUARN_HISTORY, or else ~/.quarn_history.
std::unique_ptr<LineInput> typed_lines(std::function<std::vector<std::string>(const std::string&)> names);

}  // namespace cli::repl
