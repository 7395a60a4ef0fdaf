#include "cli/system/scratch_file.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "cli/commands/failure.h"
#if defined(_WIN32)
#include <fcntl.h>
#include <io.h>
#include <sys/stat.h>
#else
#include <unistd.h>
#endif
#if defined(__linux__)
#include <sys/mman.h>
#endif

namespace cli {

namespace {

int open_anonymous() {
#if defined(__linux__)
  return memfd_create("quarn", MFD_CLOEXEC);  // in memory: works where no disk can be written
#elif defined(_WIN32)
  char* name = _tempnam(nullptr, "quarn");
  const int descriptor =
      name == nullptr ? -1 : _open(name, _O_RDWR | _O_CREAT | _O_EXCL | _O_BINARY | _O_TEMPORARY, _S_IREAD | _S_IWRITE);
  std::free(name);
  return descriptor;
#else
  std::FILE* file = std::tmpfile();
  if (file == nullptr) {
    return -1;
  }
  const int descriptor = dup(fileno(file));
  std::fclose(file);
  return descriptor;
#endif
}

}  // namespace

ScratchFile::ScratchFile() : descriptor_(open_anonymous()) {
  if (descriptor_ < 0) {
    throw bad_output(std::string("cannot make a temporary file: ") + std::strerror(errno));
  }
}

ScratchFile::~ScratchFile() { close(descriptor_); }

void ScratchFile::fill(const std::string& text) {
  lseek(descriptor_, 0, SEEK_SET);
  for (std::size_t done = 0; done < text.size();) {
    const auto written = write(descriptor_, text.data() + done, text.size() - done);
    if (written <= 0) {
      throw bad_output(std::string("cannot write a temporary file: ") + std::strerror(errno));
    }
    done += std::size_t(written);
  }
  lseek(descriptor_, 0, SEEK_SET);
}

std::string ScratchFile::contents() const {
  lseek(descriptor_, 0, SEEK_SET);
  std::string text;
  char chunk[4096];
  for (;;) {
    const auto length = read(descriptor_, chunk, sizeof chunk);
    if (length <= 0) {
      return text;
    }
    text.append(chunk, std::size_t(length));
  }
}

}  // namespace cli
