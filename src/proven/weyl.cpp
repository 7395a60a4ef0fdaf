// Eigenvalues of Hermitian matrices and singular values: bounds of approximations from what A differs by from the
// product of its approximate factors, and these from orthonormal ones. H. Weyl, Math. Ann. 71 (1912); A. M. Ostrowski,
// Proc. Nat. Acad. Sci. 45 (1959); S. M. Rump, Verified bounds for singular values, BIT 51 (2011). Eigenvectors: C.
// Davis, W. M. Kahan, SIAM J. Numer. Anal. 7 (1970).
#include "src/dense/tridiagonal.h"
#include "src/proven/norms.h"
#include "tesk2mp/proven_spectra.h"

namespace tesk::proven {
namespace {

/// How far A is from U D V^H, and U and V from orthonormal columns.
struct Distance {
  QuarnBound of_product = QuarnBound::infinity();
  QuarnBound of_factors = QuarnBound::infinity();
};

/// A m by n, U m by k, V n by k; digits of A and the factors as they are. U may be V.
template <class T>
Distance distance_from_product(Integer m, Integer n, Integer k, OneBasedMatrix<T> a, const Uncertainty& of_a,
                               OneBasedMatrix<T> u, const QuarnFloat* d, OneBasedMatrix<T> v) {
  Range range;
  range.take(m, n, a);
  range.take(m, k, u);
  range.take(n, k, v);
  for (Integer j = 1; j <= k; ++j) {
    range.take(d[j - 1]);
  }
  if (!range.is_finite()) {
    return {};
  }
  const QuarnBound of_v = defect(n, k, v, range);
  const QuarnBound of_u = u.first() == v.first() ? of_v : defect(m, k, u, range);
  // U D with spare digits, and what rounding takes from it, times the norm of V.
  const int digits = QuarnDigits() + kSpareDigits;
  OwnMatrix<T> own(m, k);
  const OneBasedMatrix<T> scaled = own.view();
  SpectralNorm lost(m);
  {
    const WorkingDigits scope(digits);
    const Rounded rounded(digits, range);
    for (Integer j = 1; j <= k; ++j) {
      lost.next_column();
      for (Integer i = 1; i <= m; ++i) {
        scaled(i, j) = u(i, j);
        multiply_by(scaled(i, j), d[j - 1]);
        lost.take(i, rounded.error(scaled(i, j)));
      }
    }
  }
  const WorkingDigits scope(kFewDigits);
  const Rounded rounded(kFewDigits, range);
  OwnMatrix<T> rest(m, n);
  const OneBasedMatrix<T> f = rest.view();
  for (Integer j = 1; j <= n; ++j) {
    copy(m, a.column(j), f.column(j));
  }
  exact::multiply_matrices(Op::none, Op::conjugate_transpose, m, n, k, T(-1.0), scaled, v, T(1.0), f);
  SpectralNorm norm(m);
  for (Integer j = 1; j <= n; ++j) {
    norm.next_column();
    for (Integer i = 1; i <= m; ++i) {
      norm.take(i, rounded.size(f(i, j)) + of_a(i, j));
    }
  }
  return {norm.bound() + lost.bound() * sqrt(QuarnBound::count(1) + of_v), std::max(of_u, of_v)};
}

/// Puts the bounds of the k values; false when they are infinite.
bool set_errors(Integer k, const QuarnFloat* d, const Distance& distance, std::vector<QuarnBound>& bounds,
                QuarnFloat* error) {
  const bool known = distance.of_factors < QuarnBound::count(1) && distance.of_product.is_finite();
  bounds.assign(std::size_t(k), QuarnBound::infinity());
  for (Integer j = 0; j < k; ++j) {
    QuarnBound& bound = bounds[std::size_t(j)];
    if (known) {
      bound = distance.of_product + QuarnBound(d[j]) * distance.of_factors;
    }
    error[j] = bound.value();
  }
  return known;
}

/// Bounds of |x - unit eigenvector| for each column x: sin <= |A x - d x| / (gap |x|).
void set_vector_errors(Integer n, const QuarnFloat* d, const Distance& distance, const std::vector<QuarnBound>& bounds,
                       QuarnFloat* error) {
  QuarnBound largest;
  for (Integer j = 0; j < n; ++j) {
    largest = std::max(largest, QuarnBound(d[j]));
  }
  const QuarnBound one = QuarnBound::count(1);
  const QuarnBound g = distance.of_factors;
  const QuarnBound residual = (distance.of_product + largest * g) * sqrt(one + g) * sqrt(over_one_minus(g));
  const WorkingDigits scope(kFewDigits);
  for (Integer j = 0; j < n; ++j) {
    QuarnBound over_gap;
    for (const Integer other : {j - 1, j + 1}) {
      if (other < 0 || other >= n) {
        continue;
      }
      const QuarnBound& reach = bounds[std::size_t(other)];
      over_gap = std::max(over_gap, reach.is_finite() ? reciprocal_bound(least_size(d[j] - d[other]) - reach.value())
                                                      : QuarnBound::infinity());
    }
    const QuarnBound sine = residual * over_gap;
    error[j] = (sine < one ? sqrt(QuarnBound::count(2)) * sine + g : QuarnBound::infinity()).value();
  }
}

bool is_sorted(Integer k, const QuarnFloat* d, bool ascending) {
  for (Integer j = 1; j < k; ++j) {
    if (ascending ? d[j] < d[j - 1] : d[j] > d[j - 1]) {
      return false;
    }
  }
  return true;
}

template <class T>
Integer checked_symmetric(const char* uplo, Integer n, T* a, Integer lda, QuarnFloat* aerror, Integer ldaerror,
                          const QuarnFloat* w, T* x, Integer ldx, QuarnFloat* error, QuarnFloat* xerror) {
  const Integer least = std::max<Integer>(1, n);
  const Integer wrong = first_wrong({{!is_triangle(uplo), 1},
                                     {n < 0, 2},
                                     {lda < least, 4},
                                     {ldaerror != 0 && ldaerror < least, 6},
                                     {n > 0 && !is_sorted(n, w, true), 7},
                                     {ldx < least, 9}});
  if (wrong != 0 || n == 0) {
    return -wrong;
  }
  const Triangle triangle = triangle_of(uplo);
  OwnMatrix<T> own = hermitian_copy<T>(triangle, n, {a, lda});
  const Uncertainty of_given(aerror, ldaerror);
  const Integer uncertain = of_given.is_zero() ? 0 : n;
  OwnMatrix<QuarnFloat> own_errors(uncertain, uncertain);
  for (Integer j = 1; j <= uncertain; ++j) {
    for (Integer i = j; i <= n; ++i) {
      const bool lower = triangle == Triangle::lower;
      const QuarnBound error_of_element = lower ? of_given(i, j) : of_given(j, i);
      own_errors.view()(i, j) = error_of_element.value();
      own_errors.view()(j, i) = own_errors.view()(i, j);
    }
  }
  const Uncertainty of_a(own_errors.view().first(), of_given.is_zero() ? 0 : least);
  const OneBasedMatrix<T> vectors(x, ldx);
  const Distance distance = distance_from_product<T>(n, n, n, own.view(), of_a, vectors, w, vectors);
  std::vector<QuarnBound> bounds;
  const bool known = set_errors(n, w, distance, bounds, error);
  set_vector_errors(n, w, distance, bounds, xerror);
  return known ? 0 : 1;
}

template <class T>
Integer checked_singular(Integer m, Integer n, T* a, Integer lda, QuarnFloat* aerror, Integer ldaerror,
                         const QuarnFloat* s, T* u, Integer ldu, T* v, Integer ldv, QuarnFloat* error) {
  const Integer of_rows = std::max<Integer>(1, m);
  const Integer few = std::min(m, n);
  const Integer wrong = first_wrong({{m < 0, 1},
                                     {n < 0, 2},
                                     {lda < of_rows, 4},
                                     {ldaerror != 0 && ldaerror < of_rows, 6},
                                     {few > 0 && (!is_sorted(few, s, false) || s[few - 1] < 0), 7},
                                     {ldu < of_rows, 9},
                                     {ldv < std::max<Integer>(1, n), 11}});
  if (wrong != 0 || few == 0) {
    return -wrong;
  }
  const Distance distance = distance_from_product<T>(m, n, few, {a, lda}, {aerror, ldaerror}, {u, ldu}, s, {v, ldv});
  std::vector<QuarnBound> bounds;
  return set_errors(few, s, distance, bounds, error) ? 0 : 1;
}

}  // namespace
}  // namespace tesk::proven

extern "C" {

void QuarnMPX_dproven_symmetric_(const char* uplo, Integer n, QuarnFloat* a, Integer lda, QuarnFloat* aerror,
                                 Integer ldaerror, const QuarnFloat* w, QuarnFloat* x, Integer ldx, QuarnFloat* error,
                                 QuarnFloat* xerror, Integer* info, int /*uplo_length*/) {
  *info = tesk::proven::checked_symmetric(uplo, n, a, lda, aerror, ldaerror, w, x, ldx, error, xerror);
}
void QuarnMPX_zproven_symmetric_(const char* uplo, Integer n, Complex* a, Integer lda, QuarnFloat* aerror,
                                 Integer ldaerror, const QuarnFloat* w, Complex* x, Integer ldx, QuarnFloat* error,
                                 QuarnFloat* xerror, Integer* info, int /*uplo_length*/) {
  *info = tesk::proven::checked_symmetric(uplo, n, a, lda, aerror, ldaerror, w, x, ldx, error, xerror);
}

void QuarnMPX_dproven_singular_(Integer m, Integer n, QuarnFloat* a, Integer lda, QuarnFloat* aerror, Integer ldaerror,
                                const QuarnFloat* s, QuarnFloat* u, Integer ldu, QuarnFloat* v, Integer ldv,
                                QuarnFloat* error, Integer* info) {
  *info = tesk::proven::checked_singular(m, n, a, lda, aerror, ldaerror, s, u, ldu, v, ldv, error);
}
void QuarnMPX_zproven_singular_(Integer m, Integer n, Complex* a, Integer lda, QuarnFloat* aerror, Integer ldaerror,
                                const QuarnFloat* s, Complex* u, Integer ldu, Complex* v, Integer ldv,
                                QuarnFloat* error, Integer* info) {
  *info = tesk::proven::checked_singular(m, n, a, lda, aerror, ldaerror, s, u, ldu, v, ldv, error);
}
}
