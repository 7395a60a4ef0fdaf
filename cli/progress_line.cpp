#include "cli/progress_line.h"

#include <algorithm>
#include <cstdio>
#if defined(_WIN32)
#include <io.h>
#else
#include <unistd.h>
#endif

namespace cli {

namespace {
constexpr int kStandardError = 2;
}

ProgressLine::ProgressLine(bool asked) : terminal_(isatty(kStandardError) != 0), asked_(asked) {}

ProgressLine::~ProgressLine() {
  if (width_ > 0 && terminal_) {
    std::fprintf(stderr, "\r%*s\r", int(width_), "");
  }
}

void ProgressLine::show(const std::string& text) {
  if (terminal_) {
    std::fprintf(stderr, "\r%-*s", int(width_), text.c_str());
    width_ = std::max(width_, text.size());
  } else if (asked_) {
    std::fprintf(stderr, "%s\n", text.c_str());
  }
}

}  // namespace cli
