// What the entries of this folder share: the checks of their arguments, and the digits that they work with.
#pragma once

#include <algorithm>
#include <string_view>
#include <utility>

#include "src/dense/guard_digits.h"
#include "src/dense/parts.h"
#include "src/frame/constants.h"
#include "src/krylov/krylov_schur.h"
#include "tesk2mp/krylov.h"

namespace tesk {

template <class T>
struct OperatorOf;
template <>
struct OperatorOf<QuarnFloat> {
  using Type = QuarnRealOperator;
};
template <>
struct OperatorOf<Complex> {
  using Type = QuarnComplexOperator;
};
template <class T>
using Operator = typename OperatorOf<T>::Type;

enum Product : Integer { kProduct, kAdjointProduct, kShiftedSolve };

/// Nothing, or a finite vector that is not zero.
template <class T>
bool is_start(Integer n, const T* v0) {
  return v0 == nullptr || (std::all_of(v0, v0 + n, [](const T& x) { return is_finite(x); }) &&
                           !std::all_of(v0, v0 + n, [](const T& x) { return is_zero(x); }));
}

inline bool is_basis(Integer n, Integer k, Integer ncv) { return ncv == 0 || ncv == n || (ncv > k + 1 && ncv < n); }

inline Integer usual_basis(Integer n, Integer k, Integer ncv) {
  return ncv != 0 ? ncv : std::min(n, std::max(2 * std::min(k, n) + 2, 20 + Integer(QuarnDigits()) / 4));
}

/// To work with a tenth of, so that the sum of what is left out stays below.
inline QuarnFloat usual_tolerance(const QuarnFloat& tol) {
  return (tol == 0 ? std::min(epsilon(), QuarnFloat(1, -8)) : tol) / 10;
}

/// The two letters of an option are those.
inline bool is_option(const char* given, std::string_view letters) {
  return capital(given[0]) == letters[0] && capital(given[1]) == letters[1];
}

struct WantedName {
  std::string_view letters;
  Wanted wanted;
};

/// Finds the space by some digits more; with a shift by as many more as A - sigma I, of about that norm, turns out to
/// be ill-conditioned: solutions lose them, each in its own way. work(limit) ends where the inverse is larger than
/// that.
template <class T, class Work>
KrylovSpace<T> with_enough_digits(Integer n, const QuarnFloat& norm, const QuarnFloat& tol, const Work& work) {
  constexpr int kSpare = 4;
  constexpr int kMostTries = 20;
  int digits = guarded_digits(n) + (norm == 0 ? 0 : 2 * kSpare);
  for (int tries = 1;; ++tries) {
    const WorkingDigits more(digits);
    const QuarnFloat limit = norm == 0 ? QuarnFloat() : tol * QuarnFloat(1, digits - kSpare) / norm;
    KrylovSpace<T> space = work(limit);
    if (norm == 0 || !(space.norm > limit) || !isfinite(space.norm) || tries == kMostTries) {
      return space;
    }
    digits += ilogb(space.norm) - ilogb(limit) + kSpare;
  }
}

}  // namespace tesk
