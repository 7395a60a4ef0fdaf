#include "cli/io/input.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>
#include <vector>

#include "cli/commands/failure.h"
#include "cli/io/gzip.h"
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

bool is_wide(const std::string& text) { return text.starts_with("\xFF\xFE") || text.starts_with("\xFE\xFF"); }

// UTF-16 with its mark, as UTF-8; a lone half of a pair becomes the replacement character.
std::string from_utf16(const std::string& bytes) {
  const bool little = bytes[0] == '\xFF';
  const auto unit = [&](std::size_t at) {
    const auto first = static_cast<unsigned char>(bytes[at]);
    const auto second = static_cast<unsigned char>(bytes[at + 1]);
    return char32_t(little ? first + 256 * second : 256 * first + second);
  };
  std::string text;
  for (std::size_t at = 2; at + 1 < bytes.size(); at += 2) {
    char32_t c = unit(at);
    if (c >= 0xD800 && c < 0xDC00 && at + 3 < bytes.size() && unit(at + 2) >= 0xDC00 && unit(at + 2) < 0xE000) {
      c = 0x10000 + ((c - 0xD800) << 10) + (unit(at + 2) - 0xDC00);
      at += 2;
    } else if (c >= 0xD800 && c < 0xE000) {
      c = 0xFFFD;
    }
    const int more = c < 0x80 ? 0 : c < 0x800 ? 1 : c < 0x10000 ? 2 : 3;
    constexpr int kLeading[] = {0, 0xC0, 0xE0, 0xF0};
    text += char(kLeading[more] + int(c >> (6 * more)));
    for (int k = more - 1; k >= 0; --k) {
      text += char(0x80 + int((c >> (6 * k)) & 0x3F));
    }
  }
  return text;
}

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
  bool compressed = false;
  std::vector<char> chunk(65536);
  while (const std::size_t length = std::fread(chunk.data(), 1, chunk.size(), stream.get())) {
    if (text.size() + length > kLongestInput) {
      throw bad_input(name + ": longer than 1 GiB");
    }
    compressed = compressed || (text.empty() && is_gzip({chunk.data(), length}));
    text.append(chunk.data(), length);
    if (!compressed && !is_wide(text) && std::memchr(chunk.data(), '\0', length) != nullptr) {
      throw bad_input(name + ": not a text file");
    }
  }
  QuarnCheckInterrupt();  // which ends a read
  if (std::ferror(stream.get()) != 0) {
    throw bad_input(name + ": " + std::strerror(errno));
  }
  if (compressed) {
    text = gunzip(text, name, kLongestInput);
    if (!is_wide(text) && text.find('\0') != std::string::npos) {
      throw bad_input(name + ": not a text file in it");
    }
  }
  if (is_wide(text)) {
    text = from_utf16(text);
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
