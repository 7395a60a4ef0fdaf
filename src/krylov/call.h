// What the entries of this folder share: the checks of their arguments, and the digits that they work with.
#pragma once

#include <algorithm>
#include <cstdint>
#include <initializer_list>
#include <numeric>
#include <string_view>
#include <utility>
#include <vector>

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

/// Nothing, or a finite vector that is not zero; n < 1 is found elsewhere.
template <class T>
bool is_start(Integer n, const T* v0) {
  return v0 == nullptr || n < 1 ||
         (std::all_of(v0, v0 + n, [](const T& x) { return is_finite(x); }) &&
          !std::all_of(v0, v0 + n, [](const T& x) { return is_zero(x); }));
}

inline bool is_basis(Integer n, Integer k, Integer ncv) {
  return ncv == 0 || ncv == n || (ncv > 0 && ncv < n && ncv - 1 > k);
}

inline Integer usual_basis(Integer n, Integer k, Integer ncv) {
  return ncv != 0 ? ncv : k > (n - 2) / 2 ? n : std::min(n, std::max(2 * k + 2, 20 + Integer(QuarnDigits()) / 4));
}

/// The first two letters are those.
inline bool is_option(const char* given, std::string_view letters) {
  return capital(given[0]) == letters[0] && capital(given[1]) == letters[1];
}

inline bool is_tolerance(const QuarnFloat& tol) { return tol >= 0 && tol < 1; }

/// What a tolerance asks for.
inline QuarnFloat asked_tolerance(const QuarnFloat& tol) {
  return tol == 0 ? std::min(epsilon(), QuarnFloat(1, -8)) : tol;
}
/// To work with a tenth of, so that the sum of what is left out stays below.
inline QuarnFloat usual_tolerance(const QuarnFloat& tol) { return asked_tolerance(tol) / 10; }

/// Whether a residual is what the iteration was asked for and the roundings of what is returned leave, beside the norm.
inline bool is_small(const QuarnFloat& rest, const QuarnFloat& tol, const QuarnFloat& norm) {
  constexpr int kUnits = 30;  // two roundings of all elements are 10 of them
  return rest <= (asked_tolerance(tol) + kUnits * epsilon()) * norm;
}

/// What `work` forms with some digits more for vectors of n elements, rounded once.
template <class Work>
QuarnFloat rounded_from_more(Integer n, const Work& work) {
  QuarnFloat value;
  {
    const WorkingDigits more(guarded_digits(n));
    value = work();
  }
  value *= 1;
  return value;
}

/// The real part of x^H y, rounded once.
template <class T>
QuarnFloat real_product(Integer n, OneBasedVector<T> x, OneBasedVector<T> y) {
  T product{};
  exact::multiply_matrix_vector<T>(Op::conjugate_transpose, n, 1, T(1.0), {x.first(), n}, y, T(), {&product, 1});
  return real_part(product);
}

/// Columns of n rows that go to the caller, `step` apart, if `to` is not null.
template <class T>
struct ReturnedColumns {
  OneBasedMatrix<T> from;
  Integer n;
  T* to;
  Integer step;
};

/// Moves values, residuals and columns, rounded before, to the caller in the order of the values; nothing is written
/// when storage runs out.
template <class T>
void hand_over(std::vector<QuarnFloat>& values, std::vector<QuarnFloat>& rests, bool descending, QuarnFloat* w,
               QuarnFloat* resid, std::initializer_list<ReturnedColumns<T>> columns) {
  std::vector<Integer> order(values.size());
  std::iota(order.begin(), order.end(), 0);
  std::sort(order.begin(), order.end(), [&](Integer i, Integer j) {
    const QuarnFloat& x = values[std::size_t(i)];
    const QuarnFloat& y = values[std::size_t(j)];
    return x == y ? i < j : (x < y) != descending;
  });
  for (std::size_t i = 0; i < order.size(); ++i) {
    const auto from = std::size_t(order[i]);
    w[i] = std::move(values[from]);
    resid[i] = std::move(rests[from]);
    for (const ReturnedColumns<T>& each : columns) {
      for (Integer row = 1; each.to != nullptr && row <= each.n; ++row) {
        each.to[std::ptrdiff_t(i) * each.step + row - 1] = std::move(each.from(row, order[i] + 1));
      }
    }
  }
}

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
