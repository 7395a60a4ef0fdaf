// What the entries of this folder share: checks of arguments, tolerances, and the results as they are returned.
#pragma once

#include <algorithm>
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
#include "src/krylov/thick_restart.h"
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

/// Units of the last place of the norm of A that the roundings of returned vectors may add to a residual: two roundings
/// of all elements are 10 of them.
inline constexpr int kRoundingUnits = 30;

/// Whether a residual is what the iteration was asked for and the roundings of what is returned leave, beside the norm.
inline bool is_small(const QuarnFloat& residual, const QuarnFloat& tol, const QuarnFloat& norm) {
  return residual <= (asked_tolerance(tol) + kRoundingUnits * epsilon()) * norm;
}

/// INFO of values that are returned.
inline Integer info_of(KrylovEnd end, bool residuals_are_small) {
  return end == KrylovEnd::converged && residuals_are_small ? 0 : 1;
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

/// Values of returned vectors and the norms of their residuals, rounded once each.
struct Measured {
  std::vector<QuarnFloat> values;
  std::vector<QuarnFloat> residuals;
  bool are_finite = true;  // the residuals: nothing is measured after one that is not
  bool are_small = true;   // as is_small() says
};

/// Forms value(j), and then residual(j, value), for j = 1, ..., k with some digits more for vectors of n elements.
template <class Value, class Residual>
Measured measure(Integer k, Integer n, const QuarnFloat& tol, const QuarnFloat& norm, const Value& value,
                 const Residual& residual) {
  Measured found{std::vector<QuarnFloat>(static_cast<std::size_t>(k)),
                 std::vector<QuarnFloat>(static_cast<std::size_t>(k))};
  for (Integer j = 1; j <= k && found.are_finite; ++j) {
    QuarnFloat& own_value = found.values[std::size_t(j) - 1];
    QuarnFloat& own_residual = found.residuals[std::size_t(j) - 1];
    own_value = rounded_from_more(n, [&] { return value(j); });
    own_residual = rounded_from_more(n, [&] { return residual(j, own_value); });
    found.are_finite = isfinite(own_residual);
    found.are_small = found.are_small && is_small(own_residual, tol, norm);
  }
  return found;
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
void hand_over(Measured& found, bool descending, QuarnFloat* w, QuarnFloat* resid,
               std::initializer_list<ReturnedColumns<T>> columns) {
  std::vector<Integer> order(found.values.size());
  std::iota(order.begin(), order.end(), 0);
  std::sort(order.begin(), order.end(), [&](Integer i, Integer j) {
    const QuarnFloat& x = found.values[std::size_t(i)];
    const QuarnFloat& y = found.values[std::size_t(j)];
    return x == y ? i < j : (x < y) != descending;
  });
  for (std::size_t i = 0; i < order.size(); ++i) {
    const auto from = std::size_t(order[i]);
    w[i] = std::move(found.values[from]);
    resid[i] = std::move(found.residuals[from]);
    for (const ReturnedColumns<T>& each : columns) {
      for (Integer row = 1; each.to != nullptr && row <= each.n; ++row) {
        each.to[std::ptrdiff_t(i) * each.step + row - 1] = std::move(each.from(row, order[i] + 1));
      }
    }
  }
}

}  // namespace tesk
