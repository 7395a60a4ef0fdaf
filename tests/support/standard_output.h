// Everything that a call writes to standard output, by whatever stream or library.
#pragma once

#include <unistd.h>

#include <cstdio>
#include <functional>
#include <string>

#include "cli/system/scratch_file.h"

namespace support {

/// What the call writes, newlines of putchar among it. The descriptor leads into a file meanwhile.
inline std::string printed_by(const std::function<void()>& call) {
  class Diversion {
   public:
    explicit Diversion(int target) {
      std::fflush(stdout);
      saved_ = dup(1);
      dup2(target, 1);
    }
    ~Diversion() {
      std::fflush(stdout);
      dup2(saved_, 1);
      close(saved_);
    }
    Diversion(const Diversion&) = delete;
    Diversion& operator=(const Diversion&) = delete;

   private:
    int saved_;
  };
  const cli::ScratchFile file;
  {
    const Diversion diversion(file.descriptor());
    call();
  }
  return file.contents();
}

}  // namespace support
