// A character buffer that never overflows and knows how long the whole text would have been.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace quarn {

class BoundedText {
 public:
  /// Only counts.
  BoundedText() noexcept = default;
  /// Keeps what fits into capacity characters, the closing NUL included; a null buffer only counts. The capacity may
  /// exceed what is really there (SIZE_MAX for "enough"): no address past the text is ever formed.
  BoundedText(char* buffer, std::size_t capacity) noexcept
      : buffer_(capacity == 0 ? nullptr : buffer), room_(buffer_ == nullptr ? 0 : capacity - 1) {}

  void put(char c) noexcept { fill(c, 1); }
  void put(std::string_view text) noexcept {
    const std::size_t fitting = room_for(text.size());
    if (fitting != 0) {
      std::memcpy(buffer_ + length_, text.data(), fitting);
    }
    length_ += text.size();
  }
  void fill(char c, std::uint64_t count) noexcept {
    const std::size_t fitting = room_for(count);
    if (fitting != 0) {
      std::memset(buffer_ + length_, c, fitting);
    }
    length_ += count;
  }
  /// Counts characters that would not fit anyway.
  void skip(std::uint64_t count) noexcept { length_ += count; }
  bool full() const noexcept { return length_ >= room_; }
  std::uint64_t length() const noexcept { return length_; }
  void close() noexcept {
    if (buffer_ != nullptr) {
      buffer_[full() ? room_ : std::size_t(length_)] = '\0';
    }
  }

 private:
  std::size_t room_for(std::uint64_t count) const noexcept {
    return full() ? 0 : std::size_t(std::min<std::uint64_t>(count, room_ - length_));
  }

  char* buffer_ = nullptr;
  std::size_t room_ = 0;
  std::uint64_t length_ = 0;
};

}  // namespace quarn
