#include "cli/repl/line_input.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <iostream>
#if defined(_WIN32)
#include <io.h>
#else
#include <unistd.h>
#endif
#if defined(QUARN_EDITLINE)
#include <editline/readline.h>
#endif

namespace cli::repl {

namespace {

class StreamLines final : public LineInput {
 public:
  StreamLines(std::istream& stream, bool prompting) : stream_(stream), prompting_(prompting) {}
  bool next(const std::string& prompt, std::string& line) override {
    if (prompting_) {
      std::fputs(prompt.c_str(), stdout);
      std::fflush(stdout);
    }
    return bool(std::getline(stream_, line));
  }

 private:
  std::istream& stream_;
  bool prompting_;
};

#if defined(QUARN_EDITLINE)

// The editing library calls plain functions.
std::function<std::vector<std::string>(const std::string&)> completion;

char* copied(const std::string& text) { return strdup(text.c_str()); }

char* next_name(const char* start, int state) {
  static std::vector<std::string> names;
  if (state == 0) {
    names = completion(start);
  }
  return std::size_t(state) < names.size() ? copied(names[std::size_t(state)]) : nullptr;
}

char** complete(const char* text, int /*start*/, int /*end*/) {
  rl_attempted_completion_over = 1;
  return rl_completion_matches(text, next_name);
}

std::string history_file() {
  if (const char* file = std::getenv("QUARN_HISTORY")) {
    return file;
  }
  const char* home = std::getenv("HOME");
  return home == nullptr ? "" : std::string(home) + "/.quarn_history";
}

class EditedLines final : public LineInput {
 public:
  explicit EditedLines(std::function<std::vector<std::string>(const std::string&)> names) : file_(history_file()) {
    completion = std::move(names);
    rl_readline_name = "quarn";
    rl_attempted_completion_function = complete;
    rl_initialize();
    using_history();
    stifle_history(kMostLines);
    if (!file_.empty()) {
      read_history(file_.c_str());
    }
  }
  ~EditedLines() override { completion = nullptr; }
  EditedLines(const EditedLines&) = delete;
  EditedLines& operator=(const EditedLines&) = delete;

  bool next(const std::string& prompt, std::string& line) override {
    const std::unique_ptr<char, decltype(&std::free)> typed(readline(prompt.c_str()), std::free);
    if (typed == nullptr) {
      std::puts("");
      return false;
    }
    line = typed.get();
    if (!line.empty()) {
      add_history(line.c_str());
      if (!file_.empty()) {
        write_history(file_.c_str());  // at once: nothing is lost however the session ends
      }
    }
    return true;
  }

 private:
  static constexpr int kMostLines = 1000;
  std::string file_;
};

#endif

}  // namespace

std::unique_ptr<LineInput> lines_of(std::istream& stream) { return std::make_unique<StreamLines>(stream, false); }

bool is_terminal() { return isatty(fileno(stdin)) != 0 && isatty(fileno(stdout)) != 0; }

std::unique_ptr<LineInput> typed_lines(
    [[maybe_unused]] std::function<std::vector<std::string>(const std::string&)> names) {
#if defined(QUARN_EDITLINE)
  return std::make_unique<EditedLines>(std::move(names));
#else
  return std::make_unique<StreamLines>(std::cin, true);
#endif
}

}  // namespace cli::repl
