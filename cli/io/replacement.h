// Files that are whole or not there: a new text stands beside the old one until it is complete.
#pragma once

#include <string>

namespace cli {

/// A name beside `file` to write to, and the way from there to the file's own name. What is no plain file (a device, a
/// pipe) and what has no room for another one beside it is written in place. A symbolic link stays one.
class Replacement {
 public:
  explicit Replacement(const std::string& file);
  /// Removes what has been written unless it has replaced the file.
  ~Replacement();
  Replacement(const Replacement&) = delete;
  Replacement& operator=(const Replacement&) = delete;

  /// The name to write to, which may exist already, as an empty file.
  const std::string& name() const { return name_; }
  /// Gives the written file its own name; false with errno set when the system refuses.
  bool commit();

 private:
  std::string file_;
  std::string name_;
};

}  // namespace cli
