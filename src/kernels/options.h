// Option letters: the first character counts, in either case.
#pragma once

#include <initializer_list>

#include "quarn/quarnfloat.h"
#include "src/frame/option.h"
#include "tesk2mp/options.hpp"

namespace tesk {

using tesk2mp::Diagonal;
using tesk2mp::Op;
using tesk2mp::Side;
using tesk2mp::Triangle;

/// The first character as a capital letter.
inline char letter(const char* option) noexcept { return capital(option[0]); }

inline bool is_op(const char* option) noexcept {
  const char c = letter(option);
  return c == 'N' || c == 'T' || c == 'C';
}
inline bool is_triangle(const char* option) noexcept { return letter(option) == 'U' || letter(option) == 'L'; }
inline bool is_diagonal(const char* option) noexcept { return letter(option) == 'U' || letter(option) == 'N'; }
inline bool is_side(const char* option) noexcept { return letter(option) == 'L' || letter(option) == 'R'; }

inline Op op_of(const char* option) noexcept {
  return letter(option) == 'N' ? Op::none : letter(option) == 'T' ? Op::transpose : Op::conjugate_transpose;
}
inline Triangle triangle_of(const char* option) noexcept {
  return letter(option) == 'U' ? Triangle::upper : Triangle::lower;
}
inline Diagonal diagonal_of(const char* option) noexcept {
  return letter(option) == 'U' ? Diagonal::unit : Diagonal::general;
}
inline Side side_of(const char* option) noexcept { return letter(option) == 'L' ? Side::left : Side::right; }

/// One check of an argument: whether it is wrong, and its position in the argument list.
struct ArgumentCheck {
  bool wrong;
  Integer position;
};

/// The position of the first wrong argument, 0 when all are right.
inline Integer first_wrong(std::initializer_list<ArgumentCheck> checks) noexcept {
  for (const ArgumentCheck& check : checks) {
    if (check.wrong) {
      return check.position;
    }
  }
  return 0;
}

/// Says on the console that the routine was called with a wrong argument at position `info`, and ends the process.
void report_bad_parameter(const char* routine, Integer info, int routine_length);

}  // namespace tesk
