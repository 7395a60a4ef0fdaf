#include "number/text/digits.h"

#include <algorithm>
#include <charconv>
#include <cstdlib>

namespace quarn {

namespace {

constexpr std::int64_t kDigits = Radix::digits;

void limb_to_text(char* text, Limb limb) noexcept {
  // Two halves in 32-bit arithmetic: dividing by ten is then one multiplication.
  constexpr int kHalf = 9;
  Limb rest = limb;
  for (int end = int(kDigits); end > 0; end -= kHalf) {
    std::uint32_t half = std::uint32_t(kDigits > kHalf ? rest % Radix::powers[kHalf] : rest);
    rest = kDigits > kHalf ? rest / Radix::powers[kHalf] : 0;
    for (int i = end - 1; i >= end - kHalf; --i) {
      text[i] = char('0' + half % 10);
      half /= 10;
    }
  }
}

std::int64_t significant_digits(const View& number) noexcept {
  std::int64_t count = std::int64_t(number.length) * kDigits;
  for (Limb last = number.limbs[number.length - 1]; last % 10 == 0; last /= 10) {
    --count;
  }
  return count;
}

}  // namespace

RoundedDigits::RoundedDigits(const View& number, std::int64_t keep) noexcept
    : limbs_(number.limbs), exponent_(number.exponent) {
  const std::int64_t total = significant_digits(number);
  if (keep < 0) {
    return;
  }
  if (keep >= total) {
    count_ = total;
    last_ = digit(total - 1);
    return;
  }
  const int next = digit(keep);
  const bool tie = next == 5 && keep + 1 == total;
  const bool odd = keep > 0 && digit(keep - 1) % 2 != 0;
  const bool up = tie ? odd : next >= 5;
  const int vanishing = up ? 9 : 0;
  count_ = keep;
  while (count_ > 0 && digit(count_ - 1) == vanishing) {
    --count_;
  }
  if (count_ > 0) {
    last_ = digit(count_ - 1) + (up ? 1 : 0);
  } else if (up) {
    count_ = 1;
    last_ = 1;
    ++exponent_;
  }
}

int RoundedDigits::digit(std::int64_t i) const noexcept {
  return int(limbs_[i / kDigits] / Radix::powers[kDigits - 1 - i % kDigits] % 10);
}

void RoundedDigits::write_coefficient(BoundedText& out, std::int64_t from, std::int64_t to) const noexcept {
  while (from < to && !out.full()) {
    char text[kDigits];
    limb_to_text(text, limbs_[from / kDigits]);
    const std::int64_t start = from % kDigits;
    const std::int64_t length = std::min(kDigits - start, to - from);
    out.put(std::string_view(text + start, std::size_t(length)));
    from += length;
  }
  out.skip(std::uint64_t(to - from));
}

void RoundedDigits::write(BoundedText& out, std::int64_t from, std::int64_t to) const noexcept {
  if (from >= to) {
    return;
  }
  if (from < count_ - 1) {
    const std::int64_t end = std::min(to, count_ - 1);
    write_coefficient(out, from, end);
    from = end;
  }
  if (from == count_ - 1 && from < to) {
    out.put(char('0' + last_));
    ++from;
  }
  out.fill('0', std::uint64_t(to - from));
}

void ScientificLayout::write(BoundedText& out, const RoundedDigits& digits) const noexcept {
  digits.write(out, 0, 1);
  if (decimals > 0 || always_point) {
    out.put('.');
  }
  digits.write(out, 1, 1 + decimals);
  const std::int64_t exponent = digits.exponent() - 1;
  out.put(letter);
  out.put(exponent < 0 ? '-' : '+');
  char text[20];
  const char* end = std::to_chars(text, text + sizeof text, std::abs(exponent)).ptr;
  const std::int64_t length = end - text;
  out.fill('0', std::uint64_t(std::max<std::int64_t>(exponent_digits - length, 0)));
  out.put(std::string_view(text, std::size_t(length)));
}

void FixedLayout::write(BoundedText& out, const RoundedDigits& digits) const noexcept {
  const std::int64_t whole = std::max<std::int64_t>(digits.exponent(), 0);
  if (whole > 0) {
    digits.write(out, 0, whole);
  } else {
    out.put('0');
  }
  if (decimals > 0 || always_point) {
    out.put('.');
  }
  const std::int64_t zeros = std::min(decimals, whole - digits.exponent());
  out.fill('0', std::uint64_t(zeros));
  digits.write(out, whole, whole + decimals - zeros);
}

}  // namespace quarn
