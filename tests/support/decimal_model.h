// A slow mimic of decimal text: numbers as strings of digits, rounded and spelled digit by digit.
#pragma once

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <string>

namespace support {

/// (-1)^negative * 0.digits * 10^exponent; no digits means zero.
struct DecimalModel {
  bool negative = false;
  std::string digits;
  std::int64_t exponent = 1;

  /// Half to even after `keep` digits, which may be negative.
  DecimalModel rounded(std::int64_t keep) const {
    DecimalModel result = *this;
    if (keep >= std::int64_t(digits.size())) {
      return result;
    }
    if (keep < 0) {
      result.digits.clear();
      return result;
    }
    const std::string tail = digits.substr(std::size_t(keep));
    result.digits.resize(std::size_t(keep));
    const std::string half = "5" + std::string(tail.size() - 1, '0');
    const bool odd = keep > 0 && (digits[std::size_t(keep) - 1] - '0') % 2 == 1;
    if (tail > half || (tail == half && odd)) {
      std::size_t i = result.digits.size();
      while (i > 0 && result.digits[i - 1] == '9') {
        result.digits[--i] = '0';
      }
      if (i > 0) {
        ++result.digits[i - 1];
      } else {
        result.digits.insert(0, "1");
        ++result.exponent;
      }
    }
    return result;
  }

  DecimalModel stripped() const {
    DecimalModel result = *this;
    while (!result.digits.empty() && result.digits.back() == '0') {
      result.digits.pop_back();
    }
    return result;
  }

  std::string sign() const { return negative ? "-" : ""; }
  /// Digit i, zeros before and after the stored ones.
  char digit(std::int64_t i) const { return i < 0 || i >= std::int64_t(digits.size()) ? '0' : digits[std::size_t(i)]; }

  /// What "%.*f" shows.
  std::string fixed(std::int64_t decimals) const {
    const DecimalModel r = digits.empty() ? *this : rounded(exponent + decimals);
    std::string text = r.sign() + (r.exponent <= 0 ? "0" : "");
    for (std::int64_t i = 0; i < r.exponent; ++i) {
      text += r.digit(i);
    }
    if (decimals > 0) {
      text += '.';
    }
    for (std::int64_t i = 0; i < decimals; ++i) {
      text += r.digit(r.exponent + i);
    }
    return text;
  }

  /// What "%.*e" shows, with at least so many digits in the exponent.
  std::string scientific(std::int64_t decimals, std::size_t exponent_digits = 2) const {
    const DecimalModel r = rounded(decimals + 1);
    std::string text = r.sign() + r.digit(0);
    if (decimals > 0) {
      text += '.';
    }
    for (std::int64_t i = 1; i <= decimals; ++i) {
      text += r.digit(i);
    }
    std::string power = std::to_string(std::abs(r.exponent - 1));
    power.insert(0, power.size() < exponent_digits ? exponent_digits - power.size() : 0, '0');
    return text + (r.exponent - 1 < 0 ? "e-" : "e+") + power;
  }

  /// What to_string() gives for the number at `precision` digits.
  std::string plain(int precision) const {
    const DecimalModel r = rounded(precision).stripped();
    const std::int64_t size = std::int64_t(r.digits.size());
    return r.exponent >= -6 && r.exponent <= 21 ? r.fixed(std::max<std::int64_t>(0, size - r.exponent))
                                                : r.scientific(size - 1, 1);
  }
};

}  // namespace support
