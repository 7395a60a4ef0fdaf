// Reading and writing QuarnFloat and Complex with streams. Included by quarnfloat.h.
//
// A stream in its initial state (precision 6, neither std::fixed nor std::scientific) writes all digits of the value,
// as to_string() does. With any other precision, std::fixed, std::scientific or std::hexfloat a number is written as a
// double would be, rounded half to even in decimal; std::setw, std::left, std::internal, std::setfill, std::showpos,
// std::showpoint and std::uppercase work in both cases.
#pragma once

#include <istream>
#include <ostream>
#include <string>
#include <string_view>

#include "quarn/quarnfloat.h"

namespace quarn {

/// The value in hexadecimal, as %a writes a double: [-]0xh.hhhp+-d, 1 <= h < 16 and d decimal, with so many digits that
/// reading it at as many decimal digits as the value has, or at the working ones if they are more, gives the value
/// back; whole numbers and others that are short in binary are exact. Writes at most capacity characters, the closing
/// NUL included, and returns the length of the whole text.
QRNFLOAT_API std::size_t write_hex(const QuarnFloat& x, char* buffer, std::size_t capacity);

/// Reads [+-][0x]digits[.digits][p[+-]digits] with hexadecimal digits, correctly rounded to the current digits, and
/// stores where it ends, `first` if there is no number: then the result is NaN.
[[nodiscard]] QRNFLOAT_API QuarnFloat read_hex(const char* first, const char* last, const char** end);

[[nodiscard]] inline std::string hex_text(const QuarnFloat& x) {
  std::string text(write_hex(x, nullptr, 0), '\0');
  write_hex(x, text.data(), text.size() + 1);
  return text;
}

/// The text that a stream with these settings writes, before it is padded.
[[nodiscard]] inline std::string stream_text(const QuarnFloat& x, std::ios_base::fmtflags flags,
                                             std::streamsize precision) {
  const auto style = flags & std::ios_base::floatfield;
  const bool upper = (flags & std::ios_base::uppercase) != 0;
  std::string text;
  if (style == std::ios_base::floatfield) {
    text = hex_text(x);
    if (upper) {
      for (char& c : text) {
        c = c >= 'a' && c <= 'z' ? char(c - 'a' + 'A') : c;
      }
    }
  } else if (style == std::ios_base::fmtflags() && precision == 6) {
    text = x.to_string();
    if (upper) {
      for (char& c : text) {
        c = c >= 'a' && c <= 'z' ? char(c - 'a' + 'A') : c;
      }
    }
  } else {
    const char letter = style == std::ios_base::fixed ? 'f' : style == std::ios_base::scientific ? 'e' : 'g';
    std::string format = (flags & std::ios_base::showpoint) != 0 ? "%#.*" : "%.*";
    format += upper ? char(letter - 'a' + 'A') : letter;
    const int digits = int(precision < 0 ? 6 : precision > 2'000'000'000 ? 2'000'000'000 : precision);
    const int length = QFsnprintf(nullptr, 0, format.c_str(), digits, x);
    text.resize(length < 0 ? 0 : std::size_t(length));
    QFsnprintf(text.data(), text.size() + 1, format.c_str(), digits, x);
  }
  if ((flags & std::ios_base::showpos) != 0 && text[0] != '-') {
    text.insert(text.begin(), '+');
  }
  return text;
}

}  // namespace quarn

inline std::ostream& operator<<(std::ostream& out, const QuarnFloat& x) {
  std::string text = quarn::stream_text(x, out.flags(), out.precision());
  if ((out.flags() & std::ios_base::adjustfield) == std::ios_base::internal && (text[0] == '-' || text[0] == '+') &&
      out.width() > std::streamsize(text.size())) {
    text.insert(1, std::size_t(out.width()) - text.size(), out.fill());
  }
  return out << text;
}

/// Reads the longest number at the front, after white space: correctly rounded to the current digits. Where there is
/// none the stream fails, and x is zero.
inline std::istream& operator>>(std::istream& in, QuarnFloat& x) {
  const std::istream::sentry ready(in);
  if (!ready) {
    return in;
  }
  std::string text;
  const auto accept = [&](const char* characters) {
    const auto next = in.rdbuf()->sgetc();
    if (next == std::istream::traits_type::eof()) {
      in.setstate(std::ios_base::eofbit);
      return false;
    }
    if (std::string_view(characters).find(char(next)) == std::string_view::npos) {
      return false;
    }
    text += char(next);
    in.rdbuf()->sbumpc();
    return true;
  };
  const auto digits = [&] {
    bool any = false;
    while (accept("0123456789")) {
      any = true;
    }
    return any;
  };
  accept("+-");
  bool good = digits();
  if (accept(".")) {
    good = digits() || good;
  }
  if (good) {
    if (accept("eE")) {
      accept("+-");
      good = digits();
    }
  } else if (text.find('.') == std::string::npos) {
    while (text.size() < 9 && accept("abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ")) {
    }
    std::string name;
    for (const char c : text) {
      name += c >= 'A' && c <= 'Z' ? char(c - 'A' + 'a') : c;
    }
    name.erase(0, name.find_first_not_of("+-"));
    good = name == "inf" || name == "infinity" || name == "nan";
  }
  x = good ? QuarnFloat(text) : QuarnFloat();
  if (!good) {
    in.setstate(std::ios_base::failbit);
  }
  return in;
}

namespace quarn {

/// (re,im), as std::complex does.
inline std::ostream& operator<<(std::ostream& out, const Complex& z) {
  const auto part = [&out](const QuarnFloat& x) { return stream_text(x, out.flags(), out.precision()); };
  return out << '(' + part(z.re) + ',' + part(z.im) + ')';
}

/// re, (re) or (re,im), as std::complex does.
inline std::istream& operator>>(std::istream& in, Complex& z) {
  QuarnFloat re;
  QuarnFloat im;
  char c = 0;
  if (in >> c && c == '(') {
    in >> re >> c;
    if (in && c == ',') {
      in >> im >> c;
    }
    if (in && c != ')') {
      in.setstate(std::ios_base::failbit);
    }
  } else if (in) {
    in.putback(c);
    in >> re;
  }
  if (in) {
    z = Complex(std::move(re), std::move(im));
  }
  return in;
}

}  // namespace quarn
