// Eigenvalues of general matrices: bounds of approximations, with approximate eigenvectors X, by Gerschgorin's discs of
// X^-1 A X = D + X^-1 (A X - X D). S. Miyajima, Numerical enclosure for each eigenvalue in generalized eigenvalue
// problem, J. Comput. Appl. Math. 236 (2012).
#include <optional>

#include "src/proven/discs.h"
#include "tesk2mp/proven_spectra.h"

namespace tesk::proven {
namespace {

using Matrix = OneBasedMatrix<Complex>;

/// C := X D with its errors, at the digits of the moment.
void scale_columns(Integer n, Matrix x, const Complex* d, Matrix c, const Range& range,
                   std::vector<QuarnBound>& errors) {
  const QuarnBound units = QuarnBound::power_of_ten(2 - QuarnDigits());
  const QuarnBound of_zeros = range.of_zero() * QuarnBound::count(8);
  for (Integer j = 1; j <= n; ++j) {
    const QuarnBound factor(d[j - 1]);
    for (Integer i = 1; i <= n; ++i) {
      c(i, j) = x(i, j) * d[j - 1];
      // Four products and two sums, each rounded.
      errors.push_back(QuarnBound(x(i, j)) * factor * units + of_zeros);
    }
  }
}

/// The radii: row sums of |X^-1 (A X - X D)|.
std::vector<QuarnBound> radii(Integer n, Matrix a, const Uncertainty& of_a, const Complex* d, Matrix x) {
  std::vector<QuarnBound> result(std::size_t(n), QuarnBound::infinity());
  Range range;
  range.take(n, n, a);
  range.take(n, n, x);
  for (Integer j = 0; j < n; ++j) {
    range.take(d[j]);
  }
  if (!range.is_finite()) {
    return result;
  }
  OwnMatrix<Complex> own(n, n);
  const Matrix residual = own.view();
  std::vector<QuarnBound> of_residual;
  {
    const WorkingDigits scope(2 * QuarnDigits() + kSpareDigits);
    scale_columns(n, x, d, residual, range, of_residual);
  }
  std::optional<ApproximateInverse<Complex>> inverse;
  for (const int digits : {QuarnDigits() / 2 + kSpareDigits, QuarnDigits() + kSpareDigits}) {
    inverse.emplace(n, x, Uncertainty(nullptr, 0), digits, range);
    if (inverse->norm() < QuarnBound::power_of_ten(-2)) {
      break;
    }
  }
  if (!(inverse->norm() < QuarnBound::count(1))) {
    return result;
  }
  range = inverse->range();
  const WorkingDigits scope(kFewDigits);
  const Rounded rounded(kFewDigits, range);
  exact::multiply_matrices(Op::none, Op::none, n, n, n, Complex(1.0), a, x, Complex(-1.0), residual);
  range.take(n, n, residual);
  OwnMatrix<Complex> product(n, n);
  const Matrix y = product.view();
  inverse->apply(n, residual, y);
  std::fill(result.begin(), result.end(), QuarnBound());
  for (Integer j = 1; j <= n; ++j) {
    std::vector<QuarnBound> of_column(std::size_t(n) + 1);
    std::vector<QuarnBound> sizes;
    for (Integer k = 1; k <= n && !of_a.is_zero(); ++k) {
      sizes.emplace_back(x(k, j));
    }
    for (Integer i = 1; i <= n; ++i) {
      QuarnBound& bound = of_column[std::size_t(i)];
      bound = of_residual[std::size_t(j - 1) * std::size_t(n) + std::size_t(i - 1)] + rounded.error(residual(i, j));
      for (Integer k = 1; k <= n && !of_a.is_zero(); ++k) {
        bound += of_a(i, k) * sizes[std::size_t(k - 1)];
      }
    }
    const std::vector<QuarnBound> of_y = inverse->errors(y.column(j), std::move(of_column), range);
    for (Integer i = 1; i <= n; ++i) {
      result[std::size_t(i - 1)] += QuarnBound(y(i, j)) + of_y[std::size_t(i)];
    }
  }
  return result;
}

template <class T>
Integer checked_eigenvalues(Integer n, T* a, Integer lda, QuarnFloat* aerror, Integer ldaerror, Complex* w, Complex* x,
                            Integer ldx, QuarnFloat* error, Integer* count) {
  const Integer least = std::max<Integer>(1, n);
  const Integer wrong =
      first_wrong({{n < 0, 1}, {lda < least, 3}, {ldaerror != 0 && ldaerror < least, 5}, {ldx < least, 8}});
  if (wrong != 0) {
    return -wrong;
  }
  const OneBasedMatrix<T> given(a, lda);
  OwnMatrix<Complex> own(n, n);
  for (Integer j = 1; j <= n; ++j) {
    for (Integer i = 1; i <= n; ++i) {
      own.view()(i, j) = Complex(given(i, j));
    }
  }
  const std::vector<QuarnBound> reach = radii(n, own.view(), {aerror, ldaerror}, w, {x, ldx});
  std::vector<Disc> discs;
  discs.reserve(reach.size());
  for (Integer j = 0; j < n; ++j) {
    discs.push_back({w[j], reach[std::size_t(j)]});
  }
  resolve(discs, std::is_same_v<T, QuarnFloat>);
  Integer info = 0;
  for (Integer j = 0; j < n; ++j) {
    Disc& disc = discs[std::size_t(j)];
    w[j] = std::move(disc.value);
    error[j] = disc.error.value();
    count[j] = disc.count;
    info = disc.error.is_finite() ? info : 1;
  }
  return info;
}

}  // namespace
}  // namespace tesk::proven

extern "C" {

void QuarnMPX_dproven_eigenvalues_(Integer n, QuarnFloat* a, Integer lda, QuarnFloat* aerror, Integer ldaerror,
                                   Complex* w, Complex* x, Integer ldx, QuarnFloat* error, Integer* count,
                                   Integer* info) {
  *info = tesk::proven::checked_eigenvalues(n, a, lda, aerror, ldaerror, w, x, ldx, error, count);
}
void QuarnMPX_zproven_eigenvalues_(Integer n, Complex* a, Integer lda, QuarnFloat* aerror, Integer ldaerror, Complex* w,
                                   Complex* x, Integer ldx, QuarnFloat* error, Integer* count, Integer* info) {
  *info = tesk::proven::checked_eigenvalues(n, a, lda, aerror, ldaerror, w, x, ldx, error, count);
}
}
