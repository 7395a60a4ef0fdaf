// Decompositions of order n that lose some digits to their many roundings work with that many more, and round what they
// deliver once.
#pragma once

#include <algorithm>

#include "src/frame/working_digits.h"
#include "src/kernels/level1.h"

namespace tesk {

/// Digits to work with; at least so many that iterations converge at any precision.
inline int guarded_digits(Integer n) {
  constexpr int kLeast = 18;
  int guard = 2;
  for (Integer left = n; left > 0; left /= 10) {
    ++guard;
  }
  return std::max(kLeast, QuarnDigits() + guard);
}

/// After so many iterations without success shifts are exceptional once: convergence doubles digits, and takes longer
/// the more there are.
inline Integer exceptional_period() {
  Integer period = 10;
  for (int left = QuarnDigits() / 16; left > 0; left /= 2) {
    ++period;
  }
  return period;
}

/// To the digits of the moment.
template <class T>
void round_elements(Integer rows, Integer columns, OneBasedMatrix<T> a) {
  const QuarnFloat one(1);
  for (Integer j = 1; rows > 0 && j <= columns; ++j) {
    scale(rows, one, a.column(j));
  }
}

/// A, or where it has no rows, and perhaps no storage, one whose places are all that of `none`.
template <class T>
OneBasedMatrix<T> with_storage(Integer rows, OneBasedMatrix<T> a, T& none) {
  return rows > 0 ? a : OneBasedMatrix<T>(&none, 0, 0);
}

}  // namespace tesk
