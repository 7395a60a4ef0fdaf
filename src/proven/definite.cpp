// Is a Hermitian matrix positive definite? The Cholesky factor L of A - c I exists, and A - L L^H - c I has a norm
// below c: then the smallest eigenvalue of A is positive. S. M. Rump, Verification of positive definiteness, BIT 46
// (2006), here with the product L L^H as it is instead of a bound of its rounding errors.
#include "quarn/functions.h"
#include "src/proven/forms.h"
#include "tesk2mp/proven.h"

namespace tesk::proven {
namespace {

enum Verdict : Integer { kDefinite = 0, kNotDefinite = 1, kUnknown = 2 };

inline QuarnFloat shifted(const QuarnFloat& x, int power) { return scalbn(x, power); }
inline Complex shifted(const Complex& z, int power) { return {scalbn(z.re, power), scalbn(z.im, power)}; }

/// Both triangles from the lower one, with a real diagonal. Rows and columns are divided by powers of ten, which brings
/// the diagonal near 1 and changes nothing else, unless that might underflow.
template <class T>
OwnMatrix<T> hermitian(Integer n, OneBasedMatrix<T> lower, const Range& range) {
  std::vector<int> power(std::size_t(n) + 1);
  for (Integer j = 1; j <= n; ++j) {
    if (const QuarnFloat& diagonal = real_part(lower(j, j)); range.is_moderate() && diagonal > 0) {
      power[std::size_t(j)] = -ilogb(diagonal) / 2;
    }
  }
  // The numbers may have more digits than are worked with; none is lost.
  const WorkingDigits scope(1000000);
  OwnMatrix<T> own(n, n);
  const OneBasedMatrix<T> a = own.view();
  for (Integer j = 1; j <= n; ++j) {
    const int of_column = power[std::size_t(j)];
    a(j, j) = T(shifted(real_part(lower(j, j)), 2 * of_column));
    for (Integer i = j + 1; i <= n; ++i) {
      a(i, j) = shifted(lower(i, j), power[std::size_t(i)] + of_column);
      a(j, i) = conjugate(a(i, j));
    }
  }
  return own;
}

/// Is x^H A x certainly not positive for some x other than 0: a unit vector, or the vector by which the elimination of
/// A met a pivot that is not positive?
template <class T>
bool is_not_positive(Integer n, OneBasedMatrix<T> a, OneBasedMatrix<T> factor, Integer step, const Range& range) {
  for (Integer j = 1; j <= n; ++j) {
    if (!(real_part(a(j, j)) > 0)) {
      return true;
    }
  }
  // L11 L11^H z = a(1 ... step - 1, step), x = (-z, 1, 0, ...)
  const Integer before = step - 1;
  OwnMatrix<T> own(step, 1);
  const OneBasedMatrix<T> x = own.view();
  copy(before, a.column(step), x.column(1));
  exact::solve_triangular_matrix(Side::left, Triangle::lower, Op::none, Diagonal::general, before, 1, T(-1.0), factor,
                                 x);
  exact::solve_triangular_matrix(Side::left, Triangle::lower, Op::conjugate_transpose, Diagonal::general, before, 1,
                                 T(1.0), factor, x);
  x(step, 1) = T(1.0);
  const Form form = hermitian_form(step, a, x, range);
  return form.error.value() < -form.value;
}

template <class T>
Verdict verdict(Integer n, OneBasedMatrix<T> lower) {
  Range range;
  for (Integer j = 1; j <= n; ++j) {
    for (Integer i = j; i <= n; ++i) {
      range.take(lower(i, j));
    }
  }
  if (!range.is_finite()) {
    return kUnknown;
  }
  OwnMatrix<T> own = hermitian(n, lower, range);
  const OneBasedMatrix<T> a = own.view();
  range.take(n, n, a);
  QuarnFloat largest;
  for (Integer j = 1; j <= n; ++j) {
    largest = std::max(largest, real_part(a(j, j)));
  }
  const QuarnFloat shift = largest * QuarnFloat(4.0 * double(n)) * scalbn(QuarnFloat(1), 1 - QuarnDigits());
  OwnMatrix<T> factor = own;
  const OneBasedMatrix<T> l = factor.view();
  for (Integer j = 1; j <= n; ++j) {
    l(j, j) = l(j, j) - T(shift);
  }
  if (const Integer step = factorise_cholesky(n, l); step != 0) {
    return is_not_positive(n, a, l, step, range) ? kNotDefinite : kUnknown;
  }
  for (Integer j = 1; j <= n; ++j) {
    for (Integer i = 1; i < j; ++i) {
      l(i, j) = T(0.0);
    }
  }
  range.take(n, n, l);
  return distance_from_factors(n, a, l, shift, range).value() < shift ? kDefinite : kUnknown;
}

/// Checks, then the verdict; returns INFO.
template <class T>
Integer checked_verdict(const char* uplo, Integer n, T* a, Integer lda) {
  const Integer wrong = first_wrong({{!is_triangle(uplo), 1}, {n < 0, 2}, {lda < std::max<Integer>(1, n), 4}});
  if (wrong != 0 || n == 0) {
    return -wrong;
  }
  const OneBasedMatrix<T> view(a, lda);
  // The upper triangle transposed is the lower one of the conjugate matrix, which is definite when A is.
  return verdict(n, triangle_of(uplo) == Triangle::lower ? view : view.transposed());
}

}  // namespace
}  // namespace tesk::proven

extern "C" {

void QuarnMPX_dproven_definite_(const char* uplo, Integer n, QuarnFloat* a, Integer lda, Integer* info,
                                int /*uplo_length*/) {
  *info = tesk::proven::checked_verdict(uplo, n, a, lda);
}

void QuarnMPX_zproven_definite_(const char* uplo, Integer n, Complex* a, Integer lda, Integer* info,
                                int /*uplo_length*/) {
  *info = tesk::proven::checked_verdict(uplo, n, a, lda);
}
}
