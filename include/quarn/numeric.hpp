// QuarnFloat as a standard numeric type: limits, constants, hash, three-way comparison, text, literals, and the
// functions of <cmath> and <complex>. Everything that depends on the precision is a function of QuarnDigits() at the
// time of the call; docs/guide/numeric.md has the tables.
#pragma once

#include <algorithm>
#include <charconv>
#include <cmath>
#include <compare>
#include <functional>
#include <limits>
#include <string>
#include <string_view>
#include <system_error>
#include <version>
#if defined(__cpp_lib_format)
#include <format>
#endif

#include "quarn/complex.h"
#include "quarn/function_table.h"
#include "quarn/functions.h"
#include "quarn/quarnfloat.h"

namespace quarn {

/// What numeric_limits says, at the working precision: D digits.
struct Precision10 {
  /// D
  [[nodiscard]] static int digits10() noexcept { return QuarnDigits(); }
  /// Digits that tell any two numbers apart: D, the base being ten.
  [[nodiscard]] static int max_digits10() noexcept { return QuarnDigits(); }
  /// 10^(1 - D), the distance from 1 to the next larger number.
  [[nodiscard]] static QuarnFloat epsilon() { return QuarnFloat(1, 1 - QuarnDigits()); }
};

enum class KnownConstant { pi, e, euler, catalan, ln2, ln10, sqrt2, golden_ratio };

/// A constant, correctly rounded. Euler's and Catalan's take time that grows with the square of the digits when they
/// are first asked for to more digits than before: some 5 ms at 1000.
[[nodiscard]] QRNFLOAT_API QuarnFloat constant(KnownConstant which);

[[nodiscard]] inline QuarnFloat pi() { return constant(KnownConstant::pi); }
[[nodiscard]] inline QuarnFloat e() { return constant(KnownConstant::e); }
/// 0.5772...
[[nodiscard]] inline QuarnFloat euler() { return constant(KnownConstant::euler); }
/// 0.9159...
[[nodiscard]] inline QuarnFloat catalan() { return constant(KnownConstant::catalan); }

/// Equal numbers have equal hashes, +0 and -0 too.
[[nodiscard]] QRNFLOAT_API std::size_t hash(const QuarnFloat& x) noexcept;

namespace literals {

/// 1.5_q, 12345678901234567890.12345678901234567890_q, 1'000_q: all digits that are written, rounded to the current
/// ones.
[[nodiscard]] inline QuarnFloat operator""_q(const char* text) {
  std::string digits;
  for (; *text != '\0'; ++text) {
    if (*text != '\'') {
      digits += *text;
    }
  }
  if (digits.size() > 1 && digits[0] == '0' && (digits[1] == 'x' || digits[1] == 'X')) {
    const char* end = nullptr;
    return read_hex(digits.data(), digits.data() + digits.size(), &end);
  }
  return QuarnFloat(digits);
}

}  // namespace literals

}  // namespace quarn

/// A partial order: unordered where one of the two is NaN.
[[nodiscard]] inline std::partial_ordering operator<=>(const QuarnFloat& a, const QuarnFloat& b) noexcept {
  const int order = QuarnCompare(a, b);
  return order == 2  ? std::partial_ordering::unordered
         : order < 0 ? std::partial_ordering::less
         : order > 0 ? std::partial_ordering::greater
                     : std::partial_ordering::equivalent;
}

inline QuarnFloat& operator++(QuarnFloat& x) { return x += QuarnFloat(1); }
inline QuarnFloat& operator--(QuarnFloat& x) { return x -= QuarnFloat(1); }
inline QuarnFloat operator++(QuarnFloat& x, int) {
  QuarnFloat former = x;
  ++x;
  return former;
}
inline QuarnFloat operator--(QuarnFloat& x, int) {
  QuarnFloat former = x;
  --x;
  return former;
}
/// Whether x is zero.
[[nodiscard]] inline bool operator!(const QuarnFloat& x) noexcept { return !static_cast<bool>(x); }

[[nodiscard]] inline QuarnFloat abs(const QuarnFloat& x) { return fabs(x); }
[[nodiscard]] inline bool isnormal(const QuarnFloat& x) noexcept { return isfinite(x) && static_cast<bool>(x); }
[[nodiscard]] inline bool isunordered(const QuarnFloat& x, const QuarnFloat& y) noexcept {
  return isnan(x) || isnan(y);
}
[[nodiscard]] inline int fpclassify(const QuarnFloat& x) noexcept {
  return isnan(x) ? FP_NAN : isinf(x) ? FP_INFINITE : static_cast<bool>(x) ? FP_NORMAL : FP_ZERO;
}
[[nodiscard]] inline long lround(const QuarnFloat& x) { return static_cast<long>(round(x)); }
[[nodiscard]] inline long long llround(const QuarnFloat& x) { return static_cast<long long>(round(x)); }
[[nodiscard]] inline long lrint(const QuarnFloat& x) { return static_cast<long>(rint(x)); }
[[nodiscard]] inline long long llrint(const QuarnFloat& x) { return static_cast<long long>(rint(x)); }

// Text as by <charconv> ------------------------------------------------------------------------------------------

namespace quarn {

[[nodiscard]] inline std::to_chars_result store_text(char* first, char* last, std::string_view text) noexcept {
  if (std::size_t(last - first) < text.size()) {
    return {last, std::errc::value_too_large};
  }
  return {std::copy(text.begin(), text.end(), first), std::errc()};
}

}  // namespace quarn

/// All digits of the value, as to_string(): reading them at as many digits gives the value back.
inline std::to_chars_result to_chars(char* first, char* last, const QuarnFloat& x) {
  return quarn::store_text(first, last, x.to_string());
}

/// So many digits after the point (of the number: general), rounded half to even; hex ignores the precision.
inline std::to_chars_result to_chars(char* first, char* last, const QuarnFloat& x, std::chars_format format,
                                     int precision) {
  const auto style = format == std::chars_format::fixed        ? std::ios_base::fixed
                     : format == std::chars_format::scientific ? std::ios_base::scientific
                     : format == std::chars_format::hex        ? std::ios_base::floatfield
                                                               : std::ios_base::fmtflags();
  if (style == std::ios_base::fmtflags()) {
    std::string text(std::size_t(std::max(QFsnprintf(nullptr, 0, "%.*g", precision, x), 0)), '\0');
    QFsnprintf(text.data(), text.size() + 1, "%.*g", precision, x);
    return quarn::store_text(first, last, text);
  }
  std::string text = quarn::stream_text(x, style, precision);
  if (format == std::chars_format::hex) {
    text.erase(text.find("0x"), 2);
  }
  return quarn::store_text(first, last, text);
}

/// All digits of the value in this style; hex as by quarn::write_hex() without its "0x".
inline std::to_chars_result to_chars(char* first, char* last, const QuarnFloat& x, std::chars_format format) {
  if (format == std::chars_format::general || !isfinite(x)) {
    return to_chars(first, last, x);
  }
  if (format == std::chars_format::hex) {
    return to_chars(first, last, x, format, 0);
  }
  // The digits of the value, from its text.
  int digits = 0;
  int places = 0;
  bool point = false;
  for (const char c : x.to_string()) {
    if (c == 'e') {
      break;
    }
    point = point || c == '.';
    places += point && c != '.' ? 1 : 0;
    digits += c >= '0' && c <= '9' && (digits > 0 || c != '0') ? 1 : 0;
  }
  if (format == std::chars_format::scientific) {
    return to_chars(first, last, x, format, std::max(digits - 1, 0));
  }
  const int exponent = ilogb(x);
  return to_chars(first, last, x, format, static_cast<bool>(x) ? std::max(digits - 1 - exponent, 0) : places);
}

/// Reads a number at the front, as the standard's from_chars does: no white space, no plus sign. The result is
/// correctly rounded to the current digits; numbers beyond the range of exponents are infinity or zero. x stays as it
/// was where there is no number.
inline std::from_chars_result from_chars(const char* first, const char* last, QuarnFloat& x,
                                         std::chars_format format = std::chars_format::general) {
  const auto is_digit = [](char c) { return c >= '0' && c <= '9'; };
  if (first == last || *first == '+') {
    return {first, std::errc::invalid_argument};
  }
  const char* const start = *first == '-' ? first + 1 : first;
  if (start != last && (*start == 'i' || *start == 'I' || *start == 'n' || *start == 'N')) {
    for (const std::string_view name : {"infinity", "inf", "nan"}) {
      if (std::size_t(last - start) >= name.size() &&
          std::equal(name.begin(), name.end(), start, [](char a, char b) { return a == (b | 0x20); })) {
        x = QuarnFloat(std::string(first, start + name.size()));
        return {start + name.size(), std::errc()};
      }
    }
    return {first, std::errc::invalid_argument};
  }
  if (format == std::chars_format::hex) {
    const char* end = nullptr;
    // The standard's form has no 0x: that is a zero, and what follows is not read.
    const bool prefixed = last - start > 1 && start[0] == '0' && (start[1] | 0x20) == 'x';
    QuarnFloat value = quarn::read_hex(first, prefixed ? start + 1 : last, &end);
    if (end == first) {
      return {first, std::errc::invalid_argument};
    }
    x = std::move(value);
    return {end, std::errc()};
  }
  const char* at = start;
  const auto run = [&] {
    const char* const from = at;
    while (at != last && is_digit(*at)) {
      ++at;
    }
    return at - from;
  };
  auto count = run();
  if (at != last && *at == '.') {
    ++at;
    count += run();
  }
  if (count == 0) {
    return {first, std::errc::invalid_argument};
  }
  const char* end = at;
  if (format != std::chars_format::fixed && at != last && (*at == 'e' || *at == 'E')) {
    ++at;
    if (at != last && (*at == '+' || *at == '-')) {
      ++at;
    }
    if (run() > 0) {
      end = at;
    }
  }
  if (format == std::chars_format::scientific &&
      std::find_if(first, end, [](char c) { return (c | 0x20) == 'e'; }) == end) {
    return {first, std::errc::invalid_argument};
  }
  x = QuarnFloat(std::string(first, end));
  return {end, std::errc()};
}

// Specialisations of the standard library ------------------------------------------------------------------------

/// Everything that is a function follows the working precision. digits, digits10 and max_digits10 are constants by the
/// standard's rules: they are the most digits that can be set, so that code which takes them for the precision loses
/// none; the working digits are QuarnDigits().
template <>
class std::numeric_limits<QuarnFloat> {
 public:
  static constexpr bool is_specialized = true;
  static constexpr bool is_signed = true;
  static constexpr bool is_integer = false;
  static constexpr bool is_exact = false;
  static constexpr int radix = 10;
  static constexpr int digits = 1'000'000;
  static constexpr int digits10 = digits;
  static constexpr int max_digits10 = digits;
  static constexpr int min_exponent = -999'999'998;
  static constexpr int min_exponent10 = -999'999'999;
  static constexpr int max_exponent = 1'000'000'000;
  static constexpr int max_exponent10 = 999'999'999;
  static constexpr bool has_infinity = true;
  static constexpr bool has_quiet_NaN = true;
  static constexpr bool has_signaling_NaN = false;
  static constexpr std::float_denorm_style has_denorm = std::denorm_absent;
  static constexpr bool has_denorm_loss = false;
  static constexpr bool is_iec559 = false;
  static constexpr bool is_bounded = true;
  static constexpr bool is_modulo = false;
  static constexpr bool traps = false;
  static constexpr bool tinyness_before = false;
  static constexpr std::float_round_style round_style = std::round_to_nearest;

  /// 10^-999999999
  static QuarnFloat min() { return QuarnFloat(1, min_exponent10); }
  static QuarnFloat denorm_min() { return min(); }
  /// The largest number of the working precision: D nines.
  static QuarnFloat max() { return nextafter(infinity(), QuarnFloat()); }
  static QuarnFloat lowest() { return -max(); }
  /// 10^(1 - D)
  static QuarnFloat epsilon() { return quarn::Precision10::epsilon(); }
  static QuarnFloat round_error() { return QuarnFloat(5, -1); }
  static QuarnFloat infinity() { return QuarnFloat(HUGE_VAL); }
  static QuarnFloat quiet_NaN() { return QuarnFloat("nan"); }
  static QuarnFloat signaling_NaN() { return quiet_NaN(); }
};

template <>
struct std::hash<QuarnFloat> {
  std::size_t operator()(const QuarnFloat& x) const noexcept { return quarn::hash(x); }
};

template <>
struct std::hash<quarn::Complex> {
  std::size_t operator()(const quarn::Complex& z) const noexcept {
    return quarn::hash(z.re) * 0x9E3779B1U + quarn::hash(z.im);
  }
};

#if defined(__cpp_lib_format)
/// [[fill]align][sign][#][width][.precision][type] with the types a A e E f F g G of a double, width and precision
/// written out; without type and precision all digits of the value.
template <>
struct std::formatter<QuarnFloat, char> {
  constexpr auto parse(std::format_parse_context& context) {
    auto at = context.begin();
    const auto end = context.end();
    const auto is_align = [](char c) { return c == '<' || c == '>' || c == '^'; };
    if (at != end && at + 1 != end && is_align(at[1])) {
      fill_ = at[0];
      align_ = at[1];
      at += 2;
    } else if (at != end && is_align(*at)) {
      align_ = *at++;
    }
    if (at != end && (*at == '+' || *at == '-' || *at == ' ')) {
      sign_ = *at++;
    }
    if (at != end && *at == '#') {
      point_ = true;
      ++at;
    }
    if (at != end && *at == '0') {
      zeros_ = align_ == '\0';
      ++at;
    }
    const auto number = [&](int& value) {
      for (; at != end && *at >= '0' && *at <= '9'; ++at) {
        value = std::min(value, 100'000'000) * 10 + (*at - '0');
      }
    };
    number(width_);
    if (at != end && *at == '.') {
      ++at;
      precision_ = 0;
      number(precision_);
    }
    if (at != end && std::string_view("aAeEfFgG").find(*at) != std::string_view::npos) {
      type_ = *at++;
    }
    if (at != end && *at != '}') {
      throw std::format_error("QuarnFloat: unknown format");
    }
    return at;
  }

  template <class Context>
  auto format(const QuarnFloat& x, Context& context) const {
    std::ios_base::fmtflags flags{};
    flags |= type_ >= 'A' && type_ <= 'G' ? std::ios_base::uppercase : flags;
    flags |= point_ ? std::ios_base::showpoint : std::ios_base::fmtflags();
    const char lower = char(type_ | 0x20);
    flags |= lower == 'e'   ? std::ios_base::scientific
             : lower == 'f' ? std::ios_base::fixed
             : lower == 'a' ? std::ios_base::floatfield
                            : std::ios_base::fmtflags();
    std::string text;
    if (type_ == '\0' && precision_ < 0) {
      text = x.to_string();
    } else if (lower != 'e' && lower != 'f' && lower != 'a' && (precision_ < 0 || precision_ == 6)) {
      text.resize(std::size_t(std::max(QFsnprintf(nullptr, 0, type_ == 'G' ? "%G" : "%g", x), 0)));
      QFsnprintf(text.data(), text.size() + 1, type_ == 'G' ? "%G" : "%g", x);
    } else {
      text = quarn::stream_text(x, flags, precision_ < 0 ? 6 : precision_);
    }
    if (text[0] != '-' && sign_ != '-') {
      text.insert(text.begin(), sign_);
    }
    const std::size_t missing = std::size_t(width_) > text.size() ? std::size_t(width_) - text.size() : 0;
    if (zeros_ && isfinite(x)) {
      text.insert(text[0] == '-' || text[0] == '+' || text[0] == ' ' ? 1 : 0, missing, '0');
    } else {
      const std::size_t before = align_ == '<' ? 0 : align_ == '^' ? missing / 2 : missing;
      text.insert(0, before, fill_);
      text.append(missing - before, fill_);
    }
    return std::copy(text.begin(), text.end(), context.out());
  }

 private:
  char fill_ = ' ';
  char align_ = '\0';
  char sign_ = '-';
  bool point_ = false;
  bool zeros_ = false;
  int width_ = 0;
  int precision_ = -1;
  char type_ = '\0';
};
#endif
