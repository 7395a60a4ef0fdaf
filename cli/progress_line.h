// A line on standard error that follows a long computation.
#pragma once

#include <string>

namespace cli {

class ProgressLine {
 public:
  /// Shows lines on a terminal, where each takes the place of the one before; elsewhere only when asked to, one below
  /// the other.
  explicit ProgressLine(bool asked);
  ~ProgressLine();
  ProgressLine(const ProgressLine&) = delete;
  ProgressLine& operator=(const ProgressLine&) = delete;

  void show(const std::string& text);

 private:
  bool terminal_;
  bool asked_;
  std::size_t width_ = 0;
};

}  // namespace cli
