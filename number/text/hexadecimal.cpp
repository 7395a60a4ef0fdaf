// Numbers as hexadecimal text.
#include <algorithm>
#include <charconv>
#include <cmath>
#include <string>

#include "number/functions/support.h"
#include "number/text/characters.h"
#include "number/text/write_number.h"
#include "quarn/functions.h"

namespace quarn {
namespace {

constexpr int kChunkDigits = 15;
constexpr int kChunkBits = 4 * kChunkDigits;

/// The hexadecimal digits of a whole number, without zeros in front.
std::string hexadecimal(QuarnFloat whole) {
  std::string reversed;
  const QuarnFloat chunk = std::uint64_t(1) << kChunkBits;
  while (kind_of(whole) != Kind::zero) {
    const QuarnFloat rest = fmod(whole, chunk);
    std::uint64_t bits = to_integer<std::uint64_t>(rest);
    for (int i = 0; i < kChunkDigits; ++i, bits >>= 4) {
      reversed += "0123456789abcdef"[bits & 15];
    }
    whole = (whole - rest) / chunk;
  }
  while (!reversed.empty() && reversed.back() == '0') {
    reversed.pop_back();
  }
  return {reversed.rbegin(), reversed.rend()};
}

void write_finite(BoundedText& out, const QuarnFloat& size) {
  const int digits = std::max(QuarnDigits(), int(view_of(size).length) * int(Radix::digits));
  // A multiple of four, so that the first digit is 8 or more.
  const int bits = (int(digits * 3.3219281) + 11) / 4 * 4;
  const WorkingDigits scope(digits + 40 + int(bits * 0.30103));
  int first = 0;
  int second = 0;
  QuarnFloat mantissa = frexp(size, &first);
  if (mantissa >= QuarnFloat(1) || mantissa < QuarnFloat(5, -1)) {
    mantissa = frexp(mantissa, &second);
  }
  std::string text = hexadecimal(rint(ldexp(mantissa, bits)));
  const std::int64_t exponent = std::int64_t(first) + second - bits + 4 * (std::int64_t(text.size()) - 1);
  while (text.size() > 1 && text.back() == '0') {
    text.pop_back();
  }
  out.put("0x");
  out.put(text[0]);
  if (text.size() > 1) {
    out.put('.');
    out.put(std::string_view(text).substr(1));
  }
  out.put('p');
  out.put(exponent < 0 ? '-' : '+');
  char number[20];
  const char* const end = std::to_chars(number, number + sizeof number, std::abs(exponent)).ptr;
  out.put(std::string_view(number, std::size_t(end - number)));
}

int hex_digit(char c) noexcept {
  const char lower = to_lower(c);
  return is_digit(c) ? c - '0' : lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : -1;
}

}  // namespace

std::size_t write_hex(const QuarnFloat& x, char* buffer, std::size_t capacity) {
  return write_number(x, buffer, capacity, "0x0p+0", [&](BoundedText& out) { write_finite(out, fabs(x)); });
}

QuarnFloat read_hex(const char* first, const char* last, const char** end) {
  const char* at = first;
  const bool negative = at != last && *at == '-';
  if (at != last && (*at == '-' || *at == '+')) {
    ++at;
  }
  if (last - at > 2 && at[0] == '0' && to_lower(at[1]) == 'x' && (hex_digit(at[2]) >= 0 || at[2] == '.')) {
    at += 2;
  }
  // Digits without the point, and how many follow it.
  std::string digits;
  std::int64_t places = 0;
  bool any = false;
  bool point = false;
  for (; at != last; ++at) {
    if (*at == '.' && !point) {
      point = true;
      continue;
    }
    if (hex_digit(*at) < 0) {
      break;
    }
    any = true;
    places += point ? 1 : 0;
    if (!digits.empty() || *at != '0') {
      digits += *at;
    }
  }
  if (!any) {
    *end = first;
    return special(Kind::nan);
  }
  constexpr std::int64_t kMost = 8'000'000'000;
  std::int64_t power = 0;
  if (at != last && to_lower(*at) == 'p') {
    const char* next = at + 1;
    const bool below = next != last && *next == '-';
    if (next != last && (*next == '-' || *next == '+')) {
      ++next;
    }
    if (next != last && is_digit(*next)) {
      power = read_count(next, last, kMost);
      power = below ? -power : power;
      at = next;
    }
  }
  *end = at;
  if (digits.empty()) {
    return special(Kind::zero, negative);
  }
  power -= 4 * places;
  const int working = QuarnDigits();
  QuarnFloat whole;
  {
    const WorkingDigits scope(int(double(digits.size()) * 1.2042) + 20);
    for (std::size_t i = 0; i < digits.size();) {
      const std::size_t count = std::min<std::size_t>(kChunkDigits, digits.size() - i);
      std::uint64_t chunk = 0;
      for (const std::size_t stop = i + count; i < stop; ++i) {
        chunk = chunk << 4 | std::uint64_t(hex_digit(digits[i]));
      }
      whole = whole * QuarnFloat(std::uint64_t(1) << (4 * count)) + QuarnFloat(chunk);
    }
  }
  if (negative) {
    whole = -whole;
  }
  if (std::abs(power) <= INT32_MAX) {
    return ldexp(whole, int(power));
  }
  if (std::abs(power) > kMost / 2) {
    return special(power < 0 ? Kind::zero : Kind::infinite, negative);
  }
  // Beyond an int in two parts with so many digits more that these do not count, away from the ends of the range.
  const std::int64_t away = power < 0 ? 1'000'000 : -1'000'000;
  QuarnFloat value = shifted(whole, away);
  {
    const WorkingDigits scope(working + 20);
    const int half = int(power / 2);
    value = ldexp(ldexp(value, half), int(power - half));
  }
  return kind_of(value) == Kind::finite ? shifted(rounded(value, working), -away) : value;
}

}  // namespace quarn
