#include "cli/io/output.h"

#include <fcntl.h>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <optional>

#include "cli/commands/failure.h"
#include "cli/io/replacement.h"
#if defined(_WIN32)
#include <io.h>
#else
#include <unistd.h>
#endif

namespace cli {

void write_output(const std::string& text, const std::string& file) {
  const bool standard = file.empty() || file == "-";
  const auto refused = [&](int reason) {
    return bad_output("cannot write " + (standard ? "standard output" : file) + ": " + std::strerror(reason));
  };
  std::optional<Replacement> target;
  if (!standard) {
    target.emplace(file);
  }
  std::FILE* stream = standard ? stdout : std::fopen(target->name().c_str(), "wb");
  if (stream == nullptr) {
    throw refused(errno);
  }
  int reason = 0;
  if (std::fwrite(text.data(), 1, text.size(), stream) != text.size() || std::fflush(stream) != 0) {
    reason = errno;
  }
  if (!standard && std::fclose(stream) != 0 && reason == 0) {
    reason = errno;
  }
  if (!standard && reason == 0 && !target->commit()) {
    reason = errno;
  }
  if (reason != 0) {
    throw refused(reason);
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
