#include "cli/repl/line_input.h"

#include <cerrno>
#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <cwchar>
#include <iostream>

#include "cli/system/interrupt.h"
#if defined(_WIN32)
#include <io.h>
#else
#include <unistd.h>
#endif
#if defined(QUARN_EDITLINE)
#include <editline/readline.h>
#include <poll.h>
#include <signal.h>
#endif

namespace cli::repl {

namespace {

class StreamLines final : public LineInput {
 public:
  StreamLines(std::istream& stream, bool prompting) : stream_(stream), prompting_(prompting) {}
  Read next(const std::string& prompt, std::string& line) override {
    if (prompting_) {
      std::fputs(prompt.c_str(), stdout);
      std::fflush(stdout);
    }
    if (std::getline(stream_, line)) {
      return Read::line;
    }
    if (!interrupt_requested()) {
      return Read::end;
    }
    std::clearerr(stdin);
    stream_.clear();
    return Read::cancelled;
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

/// Waits until there is something to read. The signal comes in while waiting alone, so that it is never missed between
/// a look at the flag and the wait.
void wait_for_input(int descriptor) {
  sigset_t interrupts;
  sigset_t before;
  sigemptyset(&interrupts);
  sigaddset(&interrupts, SIGINT);
  sigprocmask(SIG_BLOCK, &interrupts, &before);
  pollfd input{descriptor, POLLIN, 0};
  while (!interrupt_requested() && ppoll(&input, 1, nullptr, &before) < 0 && errno == EINTR) {
  }
  sigprocmask(SIG_SETMASK, &before, nullptr);
}

/// A character from the terminal; Ctrl-C ends the line, as the end of the input would.
int next_character(std::FILE* stream) {
  std::mbstate_t state{};
  for (;;) {
    wait_for_input(fileno(stream));
    if (interrupt_requested()) {
      return EOF;
    }
    char byte = 0;
    const auto length = ::read(fileno(stream), &byte, 1);
    if (length == 0 || (length < 0 && (errno != EINTR || interrupt_requested()))) {
      return EOF;
    }
    wchar_t character = 0;
    if (length == 1 && std::mbrtowc(&character, &byte, 1, &state) != std::size_t(-2)) {
      return character == 0 ? static_cast<unsigned char>(byte) : int(character);
    }
  }
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
    std::setlocale(LC_CTYPE, "");
    rl_getc_function = next_character;
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

  Read next(const std::string& prompt, std::string& line) override {
    const std::unique_ptr<char, decltype(&std::free)> typed(readline(prompt.c_str()), std::free);
    if (interrupt_requested()) {
      std::puts("^C");
      return Read::cancelled;
    }
    if (typed == nullptr) {
      std::puts("");
      return Read::end;
    }
    line = typed.get();
    if (!line.empty()) {
      add_history(line.c_str());
      if (!file_.empty()) {
        ::write_history(file_.c_str());  // at once: nothing is lost however the session ends
      }
    }
    return Read::line;
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
