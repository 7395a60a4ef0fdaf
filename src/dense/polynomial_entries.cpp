// The entries of polynomials: zeros, values, division, polynomials of given zeros.
#include <algorithm>
#include <vector>

#include "src/dense/parts.h"
#include "src/dense/polynomial.h"
#include "src/frame/working_digits.h"
#include "tesk2mp/polynomials.h"

namespace tesk {
namespace {

template <class T>
Integer checked_zeros(Integer n, const T* a, Complex* zeros, QuarnFloat* errors) {
  if (n < 0) {
    return -1;
  }
  const std::vector<T> coefficients(a, a + n + 1);
  if (is_zero(a[0]) ||
      !std::all_of(coefficients.begin(), coefficients.end(), [](const T& x) { return is_finite(x); })) {
    return -2;
  }
  std::vector<PolynomialZero> found;
  if (!polynomial_zeros(coefficients, found)) {
    return 1;
  }
  for (const PolynomialZero& zero : found) {
    *zeros++ = zero.value;
    *errors++ = zero.error;
  }
  return 0;
}

template <class T>
Integer checked_value(Integer n, const T* a, const T& z, T& value) {
  if (n < 0) {
    return -1;
  }
  const int digits = QuarnDigits();
  constexpr int kFewDigits = 18;
  // With so many digits Horner's scheme on numbers of the working digits rounds nothing, unless exponents differ by as
  // much.
  const int limit = int(n + 2) * (2 * digits + 40);
  T sum{};
  for (int working = digits + 10;; working = std::min(limit, 2 * working)) {
    QuarnFloat bound;
    QuarnFloat size;
    {
      const WorkingDigits more(working);
      sum = a[0];
      for (Integer i = 1; i <= n; ++i) {
        sum = sum * z + a[i];
      }
      const WorkingDigits few(kFewDigits);
      const QuarnFloat point = modulus(z);
      for (Integer i = 0; i <= n; ++i) {
        bound = bound * point + modulus(a[i]);
      }
      bound = bound * QuarnFloat(n + 1) * QuarnFloat(9, 1 - working);
      size = modulus(sum) * QuarnFloat(1, -digits - 1);
    }
    if (!(bound > size) || working == limit) {
      break;
    }
  }
  multiply_by(sum, QuarnFloat(1));
  value = sum;
  return 0;
}

/// Twice the digits and 20 more, and what is delivered of them.
int division_digits() { return 2 * QuarnDigits() + 20; }
template <class T>
void deliver(const std::vector<T>& from, std::size_t first, std::size_t last, T* to) {
  for (std::size_t i = first; i < last; ++i) {
    T rounded = from[i];
    multiply_by(rounded, QuarnFloat(1));
    *to++ = rounded;
  }
}

template <class T>
Integer checked_division(Integer m, const T* a, Integer n, const T* b, T* q, T* r) {
  if (const Integer wrong = first_wrong({{m < 0, 1}, {n < 0, 3}, {n >= 0 && is_zero(b[0]), 4}}); wrong != 0) {
    return -wrong;
  }
  // The quotient grows in the place of the first coefficients, the remainder stays in that of the last n.
  const Integer steps = std::max<Integer>(0, m - n + 1);
  std::vector<T> rest(std::size_t(std::max<Integer>(0, n - m - 1)));
  rest.insert(rest.end(), a, a + m + 1);
  {
    const WorkingDigits more(division_digits());
    for (Integer k = 0; k < steps; ++k) {
      T& lead = rest[std::size_t(k)];
      lead = quotient(lead, b[0]);
      for (Integer i = 1; i <= n; ++i) {
        subtract_product(rest[std::size_t(k) + std::size_t(i)], lead, b[i]);
      }
    }
  }
  deliver(rest, 0, std::size_t(steps), q);
  deliver(rest, std::size_t(steps), rest.size(), r);
  return 0;
}

template <class T>
Integer checked_product(Integer n, const T* x, T* a) {
  if (n < 0) {
    return -1;
  }
  std::vector<T> coefficients{T(1.0)};
  {
    const WorkingDigits more(division_digits());
    for (Integer k = 0; k < n; ++k) {
      coefficients.emplace_back();
      for (std::size_t i = coefficients.size() - 1; i > 0; --i) {
        subtract_product(coefficients[i], x[k], coefficients[i - 1]);
      }
    }
  }
  deliver(coefficients, 0, coefficients.size(), a);
  return 0;
}

}  // namespace
}  // namespace tesk

extern "C" {

void QuarnMPX_dpzeros_(Integer n, const QuarnFloat* a, Complex* zeros, QuarnFloat* errors, Integer* info) {
  *info = tesk::checked_zeros(n, a, zeros, errors);
}

void QuarnMPX_zpzeros_(Integer n, const Complex* a, Complex* zeros, QuarnFloat* errors, Integer* info) {
  *info = tesk::checked_zeros(n, a, zeros, errors);
}

void QuarnMPX_dpeval_(Integer n, const QuarnFloat* a, const QuarnFloat* z, QuarnFloat* value, Integer* info) {
  *info = tesk::checked_value(n, a, *z, *value);
}

void QuarnMPX_zpeval_(Integer n, const Complex* a, const Complex* z, Complex* value, Integer* info) {
  *info = tesk::checked_value(n, a, *z, *value);
}

void QuarnMPX_dpdiv_(Integer m, const QuarnFloat* a, Integer n, const QuarnFloat* b, QuarnFloat* q, QuarnFloat* r,
                     Integer* info) {
  *info = tesk::checked_division(m, a, n, b, q, r);
}

void QuarnMPX_zpdiv_(Integer m, const Complex* a, Integer n, const Complex* b, Complex* q, Complex* r, Integer* info) {
  *info = tesk::checked_division(m, a, n, b, q, r);
}

void QuarnMPX_dpfrom_(Integer n, const QuarnFloat* x, QuarnFloat* a, Integer* info) {
  *info = tesk::checked_product(n, x, a);
}

void QuarnMPX_zpfrom_(Integer n, const Complex* x, Complex* a, Integer* info) {
  *info = tesk::checked_product(n, x, a);
}
}
