#include "cli/commands/library_call.h"

#include <cstdio>

#include "cli/commands/failure.h"
#include "cli/system/scratch_file.h"
#if defined(_WIN32)
#include <io.h>
#else
#include <unistd.h>
#endif

namespace cli {

namespace {

constexpr Integer kPrintAndReturn = -1;
constexpr int kStandardOutput = 1;

// Standard output leads into a file while this lives. The descriptor is diverted, not the stream, because routines
// write through the C library's own stdout.
class Diversion {
 public:
  explicit Diversion(int target) {
    std::fflush(stdout);
    saved_ = dup(kStandardOutput);
    dup2(target, kStandardOutput);
  }
  ~Diversion() {
    std::fflush(stdout);
    dup2(saved_, kStandardOutput);
    close(saved_);
  }
  Diversion(const Diversion&) = delete;
  Diversion& operator=(const Diversion&) = delete;

 private:
  int saved_;
};

std::string without_blank_edges(const std::string& text) {
  const std::size_t first = text.find_first_not_of("\r\n");
  if (first == std::string::npos) {
    return {};
  }
  return text.substr(first, text.find_last_not_of("\r\n") + 1 - first) + "\n";
}

}  // namespace

std::string console_text_of(const std::function<void()>& call) {
  const ScratchFile console;
  {
    const Diversion diversion(console.descriptor());
    call();
  }
  return console.contents();
}

void call_routine(const std::string& routine, const std::function<void(Integer* ifail)>& call) {
  Integer ifail = kPrintAndReturn;
  const std::string text = console_text_of([&] { call(&ifail); });
  if (ifail != 0) {
    throw Failure(ExitStatus::library, without_blank_edges(text) + "quarn: " + routine +
                                           " failed with IFAIL = " + std::to_string(ifail) + "\n");
  }
}

}  // namespace cli
