// QFformat: the printf conversions over a typed argument list.
#include <charconv>
#include <climits>
#include <optional>

#include "number/text/characters.h"
#include "number/text/digits.h"

namespace quarn {

namespace {

using Type = QFArgument::Type;

struct Conversion {
  bool left = false;
  bool plus = false;
  bool blank = false;
  bool alternate = false;
  bool zeros = false;
  std::int64_t width = 0;
  std::int64_t precision = -1;  // negative: not given
  char letter = '\0';

  bool upper() const noexcept { return letter != to_lower(letter); }
};

/// Hands out arguments one by one, each only as a type that the conversion asks for.
class ArgumentList {
 public:
  ArgumentList(const QFArgument* arguments, int count) noexcept : next_(arguments), left_(count) {}

  const QFArgument* take(Type type) noexcept {
    if (left_ <= 0 || next_->type != type) {
      return nullptr;
    }
    --left_;
    return next_++;
  }

 private:
  const QFArgument* next_;
  int left_;
};

// One past the longest text that can be counted: a width or a precision so large fails by its length.
constexpr std::int64_t kTooLong = std::int64_t(INT_MAX) + 1;

/// A width or a precision: digits, or a star for an integer argument.
std::optional<std::int64_t> read_size(const char*& format, ArgumentList& arguments) noexcept {
  if (*format != '*') {
    return read_count(format, nullptr, kTooLong);
  }
  ++format;
  const QFArgument* argument = arguments.take(Type::integer);
  if (argument == nullptr) {
    return std::nullopt;
  }
  return std::clamp(argument->integer, -kTooLong, kTooLong);
}

bool read_flag(char c, Conversion& conversion) noexcept {
  switch (c) {
    case '-':
      return conversion.left = true;
    case '+':
      return conversion.plus = true;
    case ' ':
      return conversion.blank = true;
    case '#':
      return conversion.alternate = true;
    case '0':
      return conversion.zeros = true;
    default:
      return false;
  }
}

/// Reads what follows the per cent sign.
std::optional<Conversion> read_conversion(const char*& format, ArgumentList& arguments) noexcept {
  Conversion conversion;
  while (read_flag(*format, conversion)) {
    ++format;
  }
  const auto width = read_size(format, arguments);
  if (!width) {
    return std::nullopt;
  }
  conversion.left |= *width < 0;
  conversion.width = std::abs(*width);
  if (*format == '.') {
    ++format;
    const auto precision = read_size(format, arguments);
    if (!precision) {
      return std::nullopt;
    }
    conversion.precision = *precision;
  }
  while (*format == 'l' || *format == 'h') {
    ++format;
  }
  if (*format == '\0') {
    return std::nullopt;
  }
  conversion.letter = *format++;
  return conversion;
}

/// Prefix and body, filled up to the width. The body is written twice: once only to be counted.
template <class Body>
void write_padded(BoundedText& out, const Conversion& conversion, std::string_view prefix, bool zeros,
                  const Body& body) noexcept {
  BoundedText counter;
  counter.put(prefix);
  body(counter);
  const std::uint64_t width = std::uint64_t(conversion.width);
  const std::uint64_t gap = width > counter.length() ? width - counter.length() : 0;
  out.fill(' ', conversion.left || zeros ? 0 : gap);
  out.put(prefix);
  out.fill('0', zeros && !conversion.left ? gap : 0);
  body(out);
  out.fill(' ', conversion.left ? gap : 0);
}

void write_text(BoundedText& out, const Conversion& conversion, std::string_view text) noexcept {
  write_padded(out, conversion, "", false, [&](BoundedText& target) { target.put(text); });
}

std::string_view sign_text(const Conversion& conversion, bool negative) noexcept {
  return negative ? "-" : conversion.plus ? "+" : conversion.blank ? " " : "";
}

bool write_string(BoundedText& out, const Conversion& conversion, const QFArgument* argument) noexcept {
  if (argument == nullptr) {
    return false;
  }
  const char* text = argument->text == nullptr ? "(null)" : argument->text;
  // With a precision the text need not be closed by a NUL.
  std::uint64_t length = 0;
  while ((conversion.precision < 0 || length < std::uint64_t(conversion.precision)) && text[length] != '\0') {
    ++length;
  }
  write_text(out, conversion, std::string_view(text, std::size_t(length)));
  return true;
}

bool write_character(BoundedText& out, const Conversion& conversion, const QFArgument* argument) noexcept {
  if (argument == nullptr) {
    return false;
  }
  const char c = char(argument->integer);
  write_text(out, conversion, std::string_view(&c, 1));
  return true;
}

bool write_integer(BoundedText& out, const Conversion& conversion, const QFArgument* argument) noexcept {
  if (argument == nullptr) {
    return false;
  }
  const bool is_signed = conversion.letter == 'd' || conversion.letter == 'i';
  const bool negative = is_signed && argument->integer < 0;
  std::uint64_t magnitude = std::uint64_t(argument->integer);
  if (negative) {
    magnitude = 0 - magnitude;
  } else if (!is_signed && argument->bytes < 8) {
    // A negative argument wraps round in its own width.
    magnitude &= (std::uint64_t(1) << (8 * argument->bytes)) - 1;
  }
  char digits[20];
  char* end =
      std::to_chars(digits, digits + sizeof digits, magnitude, to_lower(conversion.letter) == 'x' ? 16 : 10).ptr;
  if (magnitude == 0 && conversion.precision == 0) {
    end = digits;
  }
  std::string_view prefix = is_signed ? sign_text(conversion, negative) : "";
  if (to_lower(conversion.letter) == 'x' && conversion.alternate && magnitude != 0) {
    prefix = conversion.upper() ? "0X" : "0x";
  }
  if (conversion.upper()) {
    std::transform(digits, end, digits, [](char c) { return is_digit(c) ? c : char(c - ('a' - 'A')); });
  }
  const std::int64_t length = end - digits;
  const bool zeros = conversion.zeros && conversion.precision < 0;
  write_padded(out, conversion, prefix, zeros, [&](BoundedText& target) {
    target.fill('0', std::uint64_t(std::max<std::int64_t>(conversion.precision - length, 0)));
    target.put(std::string_view(digits, std::size_t(length)));
  });
  return true;
}

void write_finite(BoundedText& out, const Conversion& conversion, const QuarnFloat& value) noexcept {
  const bool zero = kind_of(value) == Kind::zero;
  const auto rounded_after = [&](std::int64_t keep) {
    return zero ? RoundedDigits() : RoundedDigits(view_of(value), keep);
  };
  const std::int64_t precision = conversion.precision < 0 ? 6 : conversion.precision;
  const auto write = [&](const RoundedDigits& digits, const auto& layout) {
    write_padded(out, conversion, sign_text(conversion, signbit(value)), conversion.zeros,
                 [&](BoundedText& target) { layout.write(target, digits); });
  };
  const auto scientific = [&](std::int64_t decimals) {
    return ScientificLayout{decimals, conversion.alternate, conversion.upper() ? 'E' : 'e', 2};
  };
  const auto fixed = [&](std::int64_t decimals) { return FixedLayout{decimals, conversion.alternate}; };

  switch (to_lower(conversion.letter)) {
    case 'e':
      write(rounded_after(precision + 1), scientific(precision));
      break;
    case 'f':
      write(rounded_after(zero ? 0 : view_of(value).exponent + precision), fixed(precision));
      break;
    default: {
      const std::int64_t significant = std::max<std::int64_t>(precision, 1);
      const RoundedDigits digits = rounded_after(significant);
      // Trailing zeros are shown only in the alternate form.
      const std::int64_t shown = conversion.alternate ? significant : std::max<std::int64_t>(digits.count(), 1);
      if (digits.exponent() >= -3 && digits.exponent() <= significant) {
        write(digits, fixed(std::max<std::int64_t>(shown - digits.exponent(), 0)));
      } else {
        write(digits, scientific(shown - 1));
      }
    }
  }
}

bool write_real(BoundedText& out, const Conversion& conversion, const QFArgument* argument) noexcept {
  if (argument == nullptr) {
    return false;
  }
  const QuarnFloat& value = *argument->real;
  if (isfinite(value)) {
    write_finite(out, conversion, value);
    return true;
  }
  const bool upper = conversion.upper();
  const std::string_view name = isinf(value) ? (upper ? "INF" : "inf") : (upper ? "NAN" : "nan");
  write_padded(out, conversion, sign_text(conversion, isinf(value) && signbit(value)), false,
               [&](BoundedText& target) { target.put(name); });
  return true;
}

bool write_conversion(BoundedText& out, const Conversion& conversion, ArgumentList& arguments) noexcept {
  switch (conversion.letter) {
    case '%':
      out.put('%');
      return true;
    case 'd':
    case 'i':
    case 'u':
    case 'x':
    case 'X':
      return write_integer(out, conversion, arguments.take(Type::integer));
    case 'c':
      return write_character(out, conversion, arguments.take(Type::integer));
    case 's':
      return write_string(out, conversion, arguments.take(Type::text));
    case 'e':
    case 'E':
    case 'f':
    case 'F':
    case 'g':
    case 'G':
      return write_real(out, conversion, arguments.take(Type::real));
    default:
      return false;
  }
}

bool write_format(BoundedText& out, const char* format, ArgumentList arguments) noexcept {
  while (*format != '\0') {
    const char* literal = format;
    while (*format != '\0' && *format != '%') {
      ++format;
    }
    out.put(std::string_view(literal, std::size_t(format - literal)));
    if (*format == '%') {
      ++format;
      const auto conversion = read_conversion(format, arguments);
      if (!conversion || !write_conversion(out, *conversion, arguments)) {
        return false;
      }
    }
    if (out.length() >= std::uint64_t(kTooLong)) {
      return false;
    }
  }
  return true;
}

}  // namespace

}  // namespace quarn

int QFformat(char* buffer, std::size_t capacity, const char* format, const QFArgument* arguments, int count) noexcept {
  using namespace quarn;
  BoundedText out(buffer, capacity);
  const bool agrees = format != nullptr && write_format(out, format, ArgumentList(arguments, count));
  out.close();
  return agrees ? int(out.length()) : -1;
}
