#include "cli/io/number_text.h"

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

std::string complex_text(const Complex& value) {
  if (value.im == 0) {
    return value.re.to_string();
  }
  const std::string imaginary = value.im.to_string();
  return value.re.to_string() + (signbit(value.im) || isnan(value.im) ? "" : "+") + imaginary + "i";
}

std::string whole_number_text(const QuarnFloat& value) {
  std::string text(std::size_t(QFsnprintf(nullptr, 0, "%.0f", value)), '\0');
  QFsnprintf(text.data(), text.size() + 1, "%.0f", value);
  return text;
}

}  // namespace cli
