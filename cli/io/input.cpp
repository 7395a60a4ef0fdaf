#include "cli/io/input.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>
#include <vector>

#include "cli/commands/failure.h"
#include "quarn/quarnthread.h"

namespace cli {

namespace {

constexpr std::size_t kLongestInput = std::size_t(1) << 30;

struct CloseUnlessStandardInput {
  void operator()(std::FILE* stream) const {
    if (stream != stdin) {
      std::fclose(stream);
    }
  }
};

}  // namespace

std::string name_of_input(const std::string& file) { return file == "-" ? "standard input" : file; }

std::string read_input(const std::string& file) {
  const std::string name = name_of_input(file);
  const std::unique_ptr<std::FILE, CloseUnlessStandardInput> stream(file == "-" ? stdin
                                                                                : std::fopen(file.c_str(), "rb"));
  if (!stream) {
    throw bad_input(name + ": " + std::strerror(errno));
  }
  std::string text;
  std::vector<char> chunk(65536);
  while (const std::size_t length = std::fread(chunk.data(), 1, chunk.size(), stream.get())) {
    if (std::memchr(chunk.data(), '\0', length) != nullptr) {
      throw bad_input(name + ": not a text file");
    }
    if (text.size() + length > kLongestInput) {
      throw bad_input(name + ": longer than 1 GiB");
    }
    text.append(chunk.data(), length);
  }
  QuarnCheckInterrupt();  // which ends a read
  if (std::ferror(stream.get()) != 0) {
    throw bad_input(name + ": " + std::strerror(errno));
  }
  constexpr const char* kByteOrderMark = "\xEF\xBB\xBF";
  if (text.starts_with(kByteOrderMark)) {
    text.erase(0, std::strlen(kByteOrderMark));
  }
  for (std::size_t at = 0; (at = text.find('\r', at)) != std::string::npos; ++at) {
    if (text.compare(at, 2, "\r\n") != 0) {
      text[at] = '\n';
    }
  }
  return text;
}

}  // namespace cli
