#include "cli/io/output.h"

#include <fcntl.h>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>

#include "cli/commands/failure.h"
#include "cli/io/replacement.h"
#if defined(_WIN32)
#include <io.h>
#else
#include <unistd.h>
#endif

namespace cli {

namespace {

bool is_standard(const std::string& file) { return file.empty() || file == "-"; }

Failure refused(const std::string& file, int reason) {
  return bad_output("cannot write " + (is_standard(file) ? "standard output" : file) + ": " + std::strerror(reason));
}

// Ends the writing to a stream, and closes it if it is a file's; 0 or the reason why that failed.
int finish(std::FILE* stream, bool well, bool close) {
  int reason = well && std::fflush(stream) == 0 ? 0 : errno;
  if (close && std::fclose(stream) != 0 && reason == 0) {
    reason = errno;
  }
  return reason;
}

}  // namespace

void write_output(const std::string& text, const std::string& file) {
  const auto write = [&](std::FILE* stream, bool close) {
    const bool well = std::fwrite(text.data(), 1, text.size(), stream) == text.size();
    if (const int reason = finish(stream, well, close); reason != 0) {
      throw refused(file, reason);
    }
  };
  if (is_standard(file)) {
    return write(stdout, false);
  }
  Replacement target(file);
  std::FILE* stream = std::fopen(target.name().c_str(), "wb");
  if (stream == nullptr) {
    throw refused(file, errno);
  }
  write(stream, true);
  if (!target.commit()) {
    throw refused(file, errno);
  }
}

void write_output_of(void (*writer)(), const std::string& file) {
  const auto write = [&] {
    writer();
    if (const int reason = finish(stdout, std::ferror(stdout) == 0, false); reason != 0) {
      throw refused(file, reason);
    }
  };
  if (is_standard(file)) {
    return write();
  }
  Replacement target(file);
  if (std::freopen(target.name().c_str(), "wb", stdout) == nullptr) {
    throw refused(file, errno);
  }
  write();
  std::fclose(stdout);
  if (!target.commit()) {
    throw refused(file, errno);
  }
}

void prepare_standard_streams() {
#if defined(_WIN32)
  _setmode(1, _O_BINARY);                    // a result is the same bytes on every platform
  std::setvbuf(stderr, nullptr, _IONBF, 0);  // messages stand among results in the order of events
#else
  std::signal(SIGPIPE, SIG_IGN);
  // The first file opened would take the number of a closed standard stream. One that can be read only holds the place
  // and still refuses what is written.
  for (int descriptor = 0; descriptor <= 2; ++descriptor) {
    if (fcntl(descriptor, F_GETFD) == -1 && open("/dev/null", O_RDONLY) != descriptor) {
      throw bad_output("standard streams are closed");
    }
  }
#endif
}

}  // namespace cli
