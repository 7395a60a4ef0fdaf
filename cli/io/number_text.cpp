#include "cli/io/number_text.h"

#include <algorithm>

namespace cli {

namespace {

struct Parts {
  std::string_view real;
  std::string_view imaginary;  // without the letter; empty when there is none
};

// The last sign that does not belong to an exponent divides the parts.
Parts split(std::string_view text) {
  if (!text.ends_with('i') && !text.ends_with('j')) {
    return {text, {}};
  }
  text.remove_suffix(1);
  for (std::size_t at = text.size(); at-- > 1;) {
    if ((text[at] == '+' || text[at] == '-') && text[at - 1] != 'e' && text[at - 1] != 'E') {
      return {text.substr(0, at), text.substr(at)};
    }
  }
  return {{}, text.empty() ? "+" : text};
}

bool is_sign(std::string_view text) { return text == "+" || text == "-"; }

// From the first to the last that is not zero.
std::size_t significant_digits(std::string_view text) {
  const std::string_view mantissa = text.substr(0, text.find_first_of("eE"));
  const std::size_t first = mantissa.find_first_of("123456789");
  if (first == std::string_view::npos) {
    return 0;
  }
  const std::size_t last = mantissa.find_last_of("123456789");
  const std::size_t point = mantissa.find('.');
  return last + 1 - first - (first < point && point < last ? 1 : 0);
}

}  // namespace

bool is_number(std::string_view text) {
  std::size_t at = 0;
  const auto skip_sign = [&] {
    if (at < text.size() && (text[at] == '+' || text[at] == '-')) {
      ++at;
    }
  };
  const auto skip_digits = [&] {
    const std::size_t start = at;
    while (at < text.size() && is_digit(text[at])) {
      ++at;
    }
    return at - start;
  };
  skip_sign();
  std::size_t digits = skip_digits();
  if (at < text.size() && text[at] == '.') {
    ++at;
    digits += skip_digits();
  }
  if (digits == 0) {
    return false;
  }
  if (at < text.size() && (text[at] == 'e' || text[at] == 'E')) {
    ++at;
    skip_sign();
    if (skip_digits() == 0) {
      return false;
    }
  }
  return at == text.size();
}

QuarnFloat to_number(const std::string& text) { return QuarnFloat(text); }

bool is_complex_number(std::string_view text) {
  const Parts parts = split(text);
  const bool imaginary = is_sign(parts.imaginary) || is_number(parts.imaginary);
  return (parts.real.empty() && imaginary) || (is_number(parts.real) && (parts.imaginary.empty() || imaginary));
}

Complex to_complex_number(const std::string& text) {
  const Parts parts = split(text);
  const auto part = [](std::string_view digits) {
    return digits.empty() ? QuarnFloat() : to_number(std::string(digits) + (is_sign(digits) ? "1" : ""));
  };
  return {part(parts.real), part(parts.imaginary)};
}

const char* why_unfit(std::string_view text, const Complex& value) {
  const Parts parts = split(text);
  const auto is_lost = [](const QuarnFloat& part, std::string_view digits) {
    return !isfinite(part) || (part == 0 && significant_digits(digits) > 0);
  };
  if (is_lost(value.re, parts.real) || is_lost(value.im, parts.imaginary)) {
    return "is beyond the range of numbers";
  }
  const bool is_long = text.size() > kMostDigits &&
                       std::max(significant_digits(parts.real), significant_digits(parts.imaginary)) > kMostDigits;
  return is_long ? "has more than 1000000 digits" : nullptr;
}

std::string shown_text(std::string_view text) {
  constexpr std::size_t kLongest = 40;
  return "'" + std::string(text.substr(0, kLongest)) + (text.size() > kLongest ? "...'" : "'");
}

std::string complex_text(const Complex& value) {
  if (value.im == 0) {
    return value.re.to_string();
  }
  const std::string imaginary = value.im.to_string();
  return value.re.to_string() + (signbit(value.im) && !isnan(value.im) ? "" : "+") + imaginary + "i";
}

std::string whole_number_text(const QuarnFloat& value) {
  std::string text(std::size_t(QFsnprintf(nullptr, 0, "%.0f", value)), '\0');
  QFsnprintf(text.data(), text.size() + 1, "%.0f", value);
  return text;
}

}  // namespace cli
