#include "cli/io/replacement.h"

#include <fcntl.h>

#include <cerrno>
#include <filesystem>
#include <system_error>
#if defined(_WIN32)
#include <io.h>
#include <process.h>
#include <sys/stat.h>
#else
#include <sys/stat.h>
#include <unistd.h>
#endif

namespace cli {

namespace fs = std::filesystem;

namespace {

// An empty new file in the folder, readable by whom the old one was; an empty name when there can be none.
std::string new_file_in(const fs::path& folder, const fs::path& old) {
  constexpr int kMostTries = 100;
  for (int i = 0; i < kMostTries; ++i) {
    const fs::path path = folder / (".quarn-" + std::to_string(getpid()) + "-" + std::to_string(i));
    const int descriptor = open(path.string().c_str(), O_WRONLY | O_CREAT | O_EXCL, 0666);
    if (descriptor >= 0) {
      close(descriptor);
      std::error_code error;
      if (const fs::file_status status = fs::status(old, error); fs::exists(status)) {
        fs::permissions(path, status.permissions(), error);
      }
      return path.string();
    }
    if (errno != EEXIST) {
      break;
    }
  }
  return {};
}

}  // namespace

Replacement::Replacement(const std::string& file) : file_(file), name_(file) {
  std::error_code error;
  const fs::file_status status = fs::status(file, error);
  if (fs::exists(status) && !fs::is_regular_file(status)) {
    return;
  }
  if (fs::exists(status)) {
    if (fs::hard_link_count(file, error) > 1 || access(file.c_str(), W_OK) != 0) {
      return;  // the other names are to see the new text; what may not be written is refused where it is opened
    }
    file_ = fs::canonical(file, error).string();
  } else if (fs::is_symlink(fs::symlink_status(file, error))) {
    return;
  }
  const fs::path folder = fs::path(file_).parent_path();
  const std::string beside = error ? "" : new_file_in(folder.empty() ? "." : folder, file_);
  name_ = beside.empty() ? file : beside;
  file_ = beside.empty() ? file : file_;
}

Replacement::~Replacement() {
  if (name_ != file_) {
    std::error_code error;
    fs::remove(name_, error);
  }
}

bool Replacement::commit() {
  std::error_code error;
  if (name_ != file_) {
    fs::rename(name_, file_, error);
  }
  if (error) {
    errno = error.value();
    return false;
  }
  name_ = file_;
  return true;
}

}  // namespace cli
