// Determinants with error bounds. With approximate inverses X of L and Y of U, P A = L U, det(A) is det(P) det(X P A Y)
// / det(Y), and X P A Y is near the identity: S. M. Rump, Verification methods, Acta Numerica 19 (2010), section 10.
#include <optional>

#include "src/proven/approximate_inverse.h"
#include "tesk2mp/proven.h"

namespace tesk::proven {
namespace {

inline QuarnFloat reciprocal(const QuarnFloat& x) { return 1 / x; }
inline Complex reciprocal(const Complex& z) {
  const QuarnFloat square = z.re * z.re + z.im * z.im;
  return {z.re / square, -z.im / square};
}

template <class T>
struct Determinant {
  T value{};
  QuarnBound error = QuarnBound::infinity();
};

/// The sum of all elements of |X| P |dA| |Y|.
template <class T>
QuarnBound uncertain_part(Integer n, OneBasedMatrix<T> x, const Uncertainty& of_a, const Factors<T>& factors,
                          const std::vector<QuarnBound>& row_of_y) {
  std::vector<QuarnBound> rows(std::size_t(n) + 1);
  for (Integer j = 1; j <= n; ++j) {
    for (Integer i = 1; i <= n; ++i) {
      rows[std::size_t(i)] += of_a(i, j) * row_of_y[std::size_t(j)];
    }
  }
  for (Integer k = 1; k <= n; ++k) {
    std::swap(rows[std::size_t(k)], rows[std::size_t(factors.pivot(k))]);
  }
  QuarnBound sum;
  for (Integer k = 1; k <= n; ++k) {
    QuarnBound column;
    for (Integer i = k; i <= n; ++i) {
      column += QuarnBound(x(i, k));
    }
    sum += column * rows[std::size_t(k)];
  }
  return sum;
}

template <class T>
Determinant<T> determinant(Integer n, OneBasedMatrix<T> a, const Uncertainty& of_a) {
  const int digits = QuarnDigits() + kSpareDigits;
  const WorkingDigits scope(digits);
  Range range;
  range.take(n, n, a);
  Factors<T> factors(n, a);
  Determinant<T> result;
  if (factors.is_singular()) {
    return result;
  }
  OwnMatrix<T> left(n, n);
  OwnMatrix<T> right(n, n);
  const OneBasedMatrix<T> x = left.view();
  const OneBasedMatrix<T> y = right.view();
  factors.invert(x, y);
  // The entries of A again, in the order of the pivots, and X times them.
  const OneBasedMatrix<T> permuted = factors.view();
  for (Integer j = 1; j <= n; ++j) {
    copy(n, a.column(j), permuted.column(j));
  }
  bool odd = false;
  for (Integer k = 1; k <= n; ++k) {
    if (const Integer row = factors.pivot(k); row != k) {
      swap_vectors(n, permuted.row(k), permuted.row(row));
      odd = !odd;
    }
  }
  OwnMatrix<T> own(n, n);
  const OneBasedMatrix<T> product = own.view();
  exact::multiply_matrices(Op::none, Op::none, n, n, n, T(1.0), x, permuted, T(0.0), product);
  range.take(n, n, x);
  range.take(n, n, y);
  range.take(n, n, product);
  // The row sums of I - X P A Y: of the product as it was rounded, and of what rounding took from it, times |Y|.
  const std::vector<QuarnBound> rows = distance_from_identity(n, product, y, range);
  const Rounded rounded(digits, range);
  std::vector<QuarnBound> row_of_y(std::size_t(n) + 1);
  for (Integer k = 1; k <= n; ++k) {
    for (Integer j = k; j <= n; ++j) {
      row_of_y[std::size_t(k)] += QuarnBound(y(k, j));
    }
  }
  QuarnBound distance;
  for (Integer k = 1; k <= n; ++k) {
    QuarnBound lost;
    for (Integer i = 1; i <= n; ++i) {
      lost += rounded.error(product(i, k));
    }
    distance += rows[std::size_t(k)] + lost * row_of_y[std::size_t(k)];
  }
  if (!of_a.is_zero()) {
    distance += uncertain_part(n, x, of_a, factors, row_of_y);
  }
  // |det(I - E) - 1| is at most the product of the 1 + row sums, less 1, and that at most s / (1 - s) with their sum s.
  const QuarnBound of_distance = distance * over_one_minus(distance);
  T pivots = T(odd ? -1.0 : 1.0);
  for (Integer k = 1; k <= n; ++k) {
    pivots = pivots * y(k, k);
  }
  result.value = reciprocal(pivots);
  // A product or a reciprocal of complex numbers loses four half units at most: n + 2 of them, one on top of the other,
  // less than five times that where it is below 1.
  const QuarnBound of_steps = QuarnBound::count(std::uint32_t(n) + 2) * QuarnBound::power_of_ten(2 - digits);
  const QuarnBound size(result.value);
  const bool in_range =
      size.is_finite() && !size.is_zero() && QuarnBound(pivots).is_finite() && of_steps < QuarnBound::count(1);
  result.error = in_range ? size * (of_distance + of_steps + of_distance * of_steps) : QuarnBound::infinity();
  return result;
}

/// Checks, then the determinant at the working digits; returns INFO.
template <class T>
Integer checked_determinant(Integer n, T* a, Integer lda, QuarnFloat* aerror, Integer ldaerror, T* det,
                            QuarnFloat* error) {
  const Integer least = std::max<Integer>(1, n);
  const Integer wrong = first_wrong({{n < 0, 1}, {lda < least, 3}, {ldaerror != 0 && ldaerror < least, 5}});
  if (wrong != 0) {
    return -wrong;
  }
  if (n == 0) {
    *det = T(1.0);
    *error = QuarnFloat();
    return 0;
  }
  const Determinant<T> result = determinant<T>(n, {a, lda}, {aerror, ldaerror});
  *det = to_working_digits(result.value);
  const QuarnBound bound = result.error + Rounded(QuarnDigits(), Range()).error(*det);
  *error = bound.value();
  return bound.is_finite() ? 0 : 1;
}

}  // namespace
}  // namespace tesk::proven

extern "C" {

void QuarnMPX_dproven_determinant_(Integer n, QuarnFloat* a, Integer lda, QuarnFloat* aerror, Integer ldaerror,
                                   QuarnFloat* det, QuarnFloat* error, Integer* info) {
  *info = tesk::proven::checked_determinant(n, a, lda, aerror, ldaerror, det, error);
}

void QuarnMPX_zproven_determinant_(Integer n, Complex* a, Integer lda, QuarnFloat* aerror, Integer ldaerror,
                                   Complex* det, QuarnFloat* error, Integer* info) {
  *info = tesk::proven::checked_determinant(n, a, lda, aerror, ldaerror, det, error);
}
}
