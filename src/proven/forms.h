// What is proven of Hermitian matrices from their products.
#pragma once

#include "src/proven/approximate_inverse.h"

namespace tesk::proven {

inline const QuarnFloat& real_part(const QuarnFloat& x) { return x; }
inline const QuarnFloat& real_part(const Complex& x) { return x.re; }

/// x^H A x, with a bound of what rounding has changed.
struct Form {
  QuarnFloat value;
  QuarnBound error;
};

template <class T>
Form hermitian_form(Integer n, OneBasedMatrix<T> a, OneBasedMatrix<T> x, Range range) {
  OwnMatrix<T> image(n, 1);
  const OneBasedMatrix<T> y = image.view();
  exact::multiply_matrices(Op::none, Op::none, n, 1, n, T(1.0), a, x, T(0.0), y);
  OwnMatrix<T> own(1, 1);
  const OneBasedMatrix<T> value = own.view();
  exact::multiply_matrices(Op::conjugate_transpose, Op::none, 1, 1, n, T(1.0), x, y, T(0.0), value);
  range.take(n, 1, x);
  range.take(n, 1, y);
  const Rounded rounded(QuarnDigits(), range);
  QuarnBound error = rounded.error(value(1, 1));
  for (Integer i = 1; i <= n; ++i) {
    error += QuarnBound(x(i, 1)) * rounded.error(y(i, 1));
  }
  return {real_part(value(1, 1)), error};
}

/// A bound of the largest column sum of |A - L L^H - c I|.
template <class T>
QuarnBound distance_from_factors(Integer n, OneBasedMatrix<T> a, OneBasedMatrix<T> l, const QuarnFloat& c,
                                 const Range& range) {
  OwnMatrix<T> own(n, n);
  const OneBasedMatrix<T> rest = own.view();
  for (Integer j = 1; j <= n; ++j) {
    copy(n, a.column(j), rest.column(j));
  }
  exact::multiply_matrices(Op::none, Op::conjugate_transpose, n, n, n, T(-1.0), l, l, T(1.0), rest);
  const Rounded rounded(QuarnDigits(), range);
  QuarnBound norm;
  for (Integer j = 1; j <= n; ++j) {
    // Diagonal elements are rounded a second time.
    QuarnBound sum = rounded.error(rest(j, j));
    rest(j, j) = rest(j, j) - T(c);
    for (Integer i = 1; i <= n; ++i) {
      sum += rounded.size(rest(i, j));
    }
    norm = std::max(norm, sum);
  }
  return norm;
}

}  // namespace tesk::proven
