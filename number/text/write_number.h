// What all texts of a number have in common.
#pragma once

#include "number/scalar/access.h"
#include "number/text/bounded_text.h"

namespace quarn {

/// Sign, and the text of zero, infinity or NaN, or what write_finite(out) writes of another number. Returns the length
/// of the whole text.
template <class WriteFinite>
std::size_t write_number(const QuarnFloat& x, char* buffer, std::size_t capacity, std::string_view zero,
                         const WriteFinite& write_finite) {
  BoundedText out(buffer, capacity);
  const Kind kind = kind_of(x);
  if (signbit(x) && kind != Kind::nan) {
    out.put('-');
  }
  switch (kind) {
    case Kind::zero:
      out.put(zero);
      break;
    case Kind::finite:
      write_finite(out);
      break;
    case Kind::infinite:
      out.put("inf");
      break;
    case Kind::nan:
      out.put("nan");
      break;
  }
  out.close();
  return std::size_t(out.length());
}

}  // namespace quarn
