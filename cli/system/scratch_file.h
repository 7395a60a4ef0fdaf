// An anonymous file that vanishes when it is closed.
#pragma once

#include <string>

namespace cli {

class ScratchFile {
 public:
  /// Throws Failure when the system refuses the file.
  ScratchFile();
  ~ScratchFile();
  ScratchFile(const ScratchFile&) = delete;
  ScratchFile& operator=(const ScratchFile&) = delete;

  int descriptor() const { return descriptor_; }
  /// Replaces the contents and leaves the position at the start.
  void fill(const std::string& text);
  std::string contents() const;

 private:
  int descriptor_;
};

}  // namespace cli
