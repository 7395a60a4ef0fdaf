// Characters and counts as the text routines see them, whatever the locale.
#pragma once

#include <algorithm>
#include <cstdint>

namespace quarn {

constexpr bool is_digit(char c) noexcept { return c >= '0' && c <= '9'; }
constexpr bool is_blank(char c) noexcept { return c == ' ' || (c >= '\t' && c <= '\r'); }
constexpr char to_lower(char c) noexcept { return c >= 'A' && c <= 'Z' ? char(c + ('a' - 'A')) : c; }

/// Reads the digits at the front of the text and moves past them; they end at `end` or, when it is null, at the first
/// other character. Values above the limit become the limit, which is at most 10^18.
constexpr std::int64_t read_count(const char*& text, const char* end, std::int64_t limit) noexcept {
  std::int64_t value = 0;
  for (; text != end && is_digit(*text); ++text) {
    value = std::min(10 * std::min(value, limit / 10 + 1) + (*text - '0'), limit);
  }
  return value;
}

}  // namespace quarn
