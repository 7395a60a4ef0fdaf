// What the entries for eigenvalues share: arguments, and the digits and the space that they find.
#pragma once

#include <algorithm>
#include <cstdint>
#include <string_view>

#include "src/krylov/call.h"
#include "src/krylov/krylov_schur.h"

namespace tesk {

/// Finds the space by some digits more; with a shift by as many more as A - sigma I, of about that norm, turns out to
/// be ill-conditioned: solutions lose them, each in its own way. work(limit) ends where the inverse is larger than
/// that. Gives up where that would take ten times the digits: such a shift is an eigenvalue, or the solutions are
/// wrong.
template <class T, class Work>
KrylovSpace<T> with_enough_digits(Integer n, const QuarnFloat& norm, const QuarnFloat& tol, const Work& work) {
  constexpr int kSpare = 4;
  constexpr int kMostTries = 20;
  const int usual = guarded_digits(n);
  int digits = usual + (norm == 0 ? 0 : 2 * kSpare);
  for (int tries = 1;; ++tries) {
    const WorkingDigits more(digits);
    const QuarnFloat limit = norm == 0 ? QuarnFloat() : tol * QuarnFloat(1, digits - kSpare) / norm;
    KrylovSpace<T> space = work(limit);
    if (norm == 0 || !(space.norm > limit) || !isfinite(space.norm) || tries == kMostTries) {
      return space;
    }
    const std::int64_t lost = std::int64_t(ilogb(space.norm)) - ilogb(limit) + kSpare;
    if (lost > 10 * std::int64_t(usual) - digits) {
      return space;
    }
    digits += int(lost);
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

  /// The entry: what is wrong, what `deliver` makes of the space of those wanted, or 2 where there is none.
  template <std::size_t kCount, class Deliver>
  Integer solve(const WantedName (&names)[kCount], bool hermitian, const Deliver& deliver) const {
    const Wanted* const wanted = wanted_of(names);
    if (const Integer wrong = first_wrong(wanted); wrong != 0) {
      return -wrong;
    }
    KrylovSpace<T> space = find(hermitian, *wanted);
    return space.end == KrylovEnd::failed ? 2 : deliver(space);
  }

 private:
  Integer first_wrong(const Wanted* wanted) const {
    return tesk::first_wrong({{wanted == nullptr, 1},
                              {n < 1, 2},
                              {k < 1 || k > n, 3},
                              {sigma != nullptr && !is_finite(*sigma), 4},
                              {product == nullptr, 5},
                              {!is_basis(n, k, ncv), 7},
                              {!is_tolerance(tol), 8},
                              {most < 1, 9},
                              {!is_start(n, v0), 10},
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
    Integer products = sigma != nullptr ? 1 : 0;
    const QuarnFloat shifted = shifted_norm();
    KrylovSpace<T> space = with_enough_digits<T>(n, shifted, tolerance, [&](const QuarnFloat& limit) {
      KrylovSpace<T> found = krylov_schur<T>(
          {hermitian, n, multiply, wanted, k, basis, sigma != nullptr, tolerance, most - products, limit, v0});
      products += found.products;
      return found;
    });
    space.products = products;
    // A random vector becomes shorter by the root of n at most, nearly.
    space.norm_of_a = sigma != nullptr ? sqrt(QuarnFloat(n)) * shifted + size_of(*sigma) : space.norm;
    return space;
  }

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
