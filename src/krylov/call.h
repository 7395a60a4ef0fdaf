// What the entries of this folder share: the checks of their arguments, and the digits that they work with.
#pragma once

#include <algorithm>
#include <string_view>
#include <utility>

#include "quarn/functions.h"
#include "src/dense/guard_digits.h"
#include "src/dense/parts.h"
#include "src/frame/constants.h"
#include "src/krylov/basis.h"
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

/// The first two letters are those.
inline bool is_option(const char* given, std::string_view letters) {
  return capital(given[0]) == letters[0] && capital(given[1]) == letters[1];
}

/// To work with a tenth of, so that the sum of what is left out stays below.
inline QuarnFloat usual_tolerance(const QuarnFloat& tol) {
  return (tol == 0 ? std::min(epsilon(), QuarnFloat(1, -8)) : tol) / 10;
}

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

/// Two letters, and what they say.
struct WantedName {
  std::string_view letters;
  Wanted wanted;
};

/// What the entries for eigenvalues are given: the first ten arguments, and the step of argument 13.
template <class T, class Shift>
struct EigenArguments {
  const char* which;
  Integer n;
  Integer k;
  const Shift* sigma;
  Operator<T> product;
  void* context;
  Integer ncv;
  QuarnFloat tol;
  Integer most;
  const T* v0;
  Integer ldz;

  Integer first_wrong(const Wanted* wanted) const {
    return tesk::first_wrong({{wanted == nullptr, 1},
                              {n < 1, 2},
                              {k < 1 || k > n, 3},
                              {sigma != nullptr && !is_finite(*sigma), 4},
                              {product == nullptr, 5},
                              {!is_basis(n, k, ncv), 7},
                              {!(tol >= 0 && tol < 1), 8},
                              {most < 1, 9},
                              {n >= 1 && !is_start(n, v0), 10},
                              {ldz < n, 13}});
  }

  /// What the letters say; null: nothing.
  template <std::size_t kCount>
  const Wanted* wanted_of(const WantedName (&names)[kCount]) const {
    for (const WantedName& each : names) {
      if (is_option(which, each.letters)) {
        return &each.wanted;
      }
    }
    return nullptr;
  }

  /// The space of those wanted, of A or of (A - sigma I)^-1.
  KrylovSpace<T> find(bool hermitian, Wanted wanted) const {
    const Integer basis = usual_basis(n, k, ncv);
    const QuarnFloat tolerance = usual_tolerance(tol);
    const Integer what = sigma != nullptr ? kShiftedSolve : kProduct;
    const auto multiply = [&](const T* x, T* y) { product(context, what, x, y); };
    Integer products = 0;
    KrylovSpace<T> space = with_enough_digits<T>(n, shifted_norm(), tolerance, [&](const QuarnFloat& limit) {
      KrylovSpace<T> found = krylov_schur<T>(
          {hermitian, n, multiply, wanted, k, basis, sigma != nullptr, tolerance, most - products, limit, v0});
      products += found.products;
      return found;
    });
    space.products = products;
    return space;
  }

 private:
  /// About the norm of A - sigma I; 0 without sigma.
  QuarnFloat shifted_norm() const {
    if (sigma == nullptr) {
      return {};
    }
    const WorkingDigits more(guarded_digits(n));
    Basis<T> v(n, 2);
    v.take_random(1);
    product(context, kProduct, v.vector(1).first(), v.vector(2).first());
    add_multiple(n, T(-*sigma), v.vector(1), v.vector(2));
    return v.norm_of(2);
  }
};

}  // namespace tesk
