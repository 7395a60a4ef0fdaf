// Exponential, square root, logarithm and real powers of a matrix: N. J. Higham, Functions of Matrices, SIAM 2008,
// chapters 6, 10 and 11; E. Deadman, N. J. Higham, R. Ralha, Blocked Schur algorithms for computing the matrix square
// root, PARA 2012.
#include "tesk2mp/matrix_functions.h"

#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

#include "quarn/complex.h"
#include "quarn/functions.h"
#include "src/dense/guard_digits.h"
#include "src/dense/norm_estimate.h"
#include "src/dense/parts.h"
#include "src/dense/qr.h"
#include "src/dense/schur_form.h"
#include "src/dense/schur_order.h"
#include "src/frame/constants.h"
#include "tesk2mp/dense.h"
#include "tesk2mp/eigenproblems.h"

namespace tesk {
namespace {

/// Why there is no result; INFO.
enum Outcome : Integer { kDone = 0, kNone = 1, kNotFound = 2 };

template <class T>
using View = OneBasedMatrix<T>;

/// B := A^-1 B, A is overwritten; false when A is singular.
bool solve(Integer n, View<QuarnFloat> a, View<QuarnFloat> b) {
  std::vector<Integer> rows(static_cast<std::size_t>(n));
  Integer info = 0;
  QuarnMPX_dgetrf_(n, n, a.first(), n, rows.data(), &info);
  const bool regular = info == 0;
  if (regular) {
    QuarnMPX_dgetrs_("N", n, n, a.first(), n, rows.data(), b.first(), n, &info, 1);
  }
  return regular;
}
bool solve(Integer n, View<Complex> a, View<Complex> b) {
  std::vector<Integer> rows(static_cast<std::size_t>(n));
  Integer info = 0;
  QuarnMPX_zgetrf_(n, n, a.first(), n, rows.data(), &info);
  const bool regular = info == 0;
  if (regular) {
    QuarnMPX_zgetrs_("N", n, n, a.first(), n, rows.data(), b.first(), n, &info, 1);
  }
  return regular;
}

template <class T>
QuarnFloat one_norm_or_nan(Integer n, View<T> a) {
  QuarnFloat largest;
  for (Integer j = 1; j <= n; ++j) {
    QuarnFloat sum;
    for (Integer i = 1; i <= n; ++i) {
      sum += far_modulus(a(i, j));
    }
    largest = isnan(sum) || sum > largest ? sum : largest;
  }
  return largest;
}

template <class T>
bool matrix_is_finite(Integer n, View<T> a) {
  for (Integer j = 1; j <= n; ++j) {
    for (Integer i = 1; i <= n; ++i) {
      if (!is_finite(a(i, j))) {
        return false;
      }
    }
  }
  return true;
}

/// C := A B
template <class T>
void multiply(Integer n, View<T> a, View<T> b, View<T> c) {
  exact::multiply_matrices(Op::none, Op::none, n, n, n, T(1.0), a, b, T(), c);
}

/// F := sum of c(k) X^k, k = 0, 1, ..., with about 2 sqrt(k) products: M. S. Paterson, L. J. Stockmeyer, On the number
/// of nonscalar multiplications necessary to evaluate polynomials, SIAM J. Comput. 2 (1973).
template <class T>
void polynomial(Integer n, View<T> x, const std::vector<QuarnFloat>& c, View<T> f) {
  const Integer terms = Integer(c.size());
  Integer step = 1;
  while (step * step < terms) {
    ++step;
  }
  std::vector<OwnMatrix<T>> powers;
  powers.reserve(std::size_t(step) + 1);
  powers.emplace_back(0, 0);
  powers.emplace_back(n, n);
  copy_matrix(n, n, x, powers[1].view());
  for (Integer k = 2; k <= step; ++k) {
    powers.emplace_back(n, n);
    multiply(n, powers[std::size_t(k - 1)].view(), x, powers[std::size_t(k)].view());
  }
  OwnMatrix<T> own(n, n);
  const View<T> former = own.view();
  for (Integer j = 1; j <= n; ++j) {
    fill(n, T(), f.column(j));
  }
  const Integer last = (terms - 1) / step;
  for (Integer block = last; block >= 0; --block) {
    QuarnCheckInterrupt();
    if (block < last) {
      copy_matrix(n, n, f, former);
      multiply(n, former, powers[std::size_t(step)].view(), f);
    }
    for (Integer k = 0; k < step && block * step + k < terms; ++k) {
      const QuarnFloat& factor = c[std::size_t(block) * std::size_t(step) + std::size_t(k)];
      for (Integer j = 1; j <= n && k == 0; ++j) {
        f(j, j) = f(j, j) + T(factor);
      }
      for (Integer j = 1; j <= n && k > 0; ++j) {
        add_multiple(n, T(factor), powers[std::size_t(k)].view().column(j), f.column(j));
      }
    }
  }
}

/// Decimal digits of a positive number, without its range.
double log10_of(const QuarnFloat& x) {
  const int exponent = ilogb(x);
  return exponent + std::log10(FloatToDouble(x * QuarnFloat(1, -exponent)));
}

/// How often to halve a matrix of that norm, and how many terms to sum, so that the rest of the exponential series is
/// below 10^-digits.
struct Scaling {
  int halvings = 0;
  int terms = 1;

  Scaling(double log10_norm, int digits) {
    const double log10_two = std::log10(2.0);
    const int least = std::max(0, int(std::ceil(log10_norm / log10_two)) - 2);
    double cheapest = 1e300;
    for (int s = least; s <= least + 40; ++s) {
      const double theta = log10_norm - s * log10_two;
      double term = 0;  // log10 of theta^k / k!
      int k = 0;
      while (term > -digits) {
        ++k;
        term += theta - std::log10(double(k));
      }
      const double cost = s + 2 * std::sqrt(double(k));
      if (cost < cheapest) {
        cheapest = cost;
        halvings = s;
        terms = k + 1;
      }
    }
  }
};

/// F := exp(A) at the digits of the moment; returns how many of these digits the squarings may have lost.
template <class T>
double exponential(Integer n, View<T> a, View<T> f) {
  const QuarnFloat norm = one_norm_or_nan(n, a);
  if (norm == 0) {
    set_identity(n, f);
    return 0;
  }
  const Scaling scaling(log10_of(norm), QuarnDigits() + 1);
  OwnMatrix<T> own(n, n);
  const View<T> x = own.view();
  QuarnFloat factor = 1;
  for (int k = 0; k < scaling.halvings; ++k) {
    factor /= 2;
  }
  for (Integer j = 1; j <= n; ++j) {
    copy(n, a.column(j), x.column(j));
    scale(n, factor, x.column(j));
  }
  std::vector<QuarnFloat> c = {1};
  for (int k = 1; k < scaling.terms; ++k) {
    c.push_back(c.back() / k);
  }
  polynomial(n, x, c, f);
  // Relative to norms: err(X^2) <= 2 err(X) |X|^2 / |X^2|, and a rounding.
  double lost = 1;
  QuarnFloat size = one_norm_or_nan(n, f);
  for (int k = 0; k < scaling.halvings && isfinite(size) && size > 0; ++k) {
    QuarnCheckInterrupt();
    copy_matrix(n, n, f, x);
    multiply(n, x, x, f);
    QuarnFloat squared = one_norm_or_nan(n, f);
    lost += std::log10(2.0) + (squared > 0 && isfinite(squared) ? 2 * log10_of(size) - log10_of(squared) : 0);
    size = std::move(squared);
  }
  return lost;
}

/// R := the principal square root of the Schur form R; false when there is none.
bool root_of_block(Integer n, View<QuarnFloat> r) {
  if (n == 1) {
    if (r(1, 1) < 0) {
      return false;
    }
    r(1, 1) = sqrt(r(1, 1));
    return true;
  }
  // A pair theta +- i mu: alpha I + (T - theta I) / (2 alpha), alpha the real part of its root.
  const QuarnFloat theta = r(1, 1);
  const QuarnFloat mu = sqrt(fabs(r(1, 2))) * sqrt(fabs(r(2, 1)));
  const QuarnFloat modulus = hypot(theta, mu);
  QuarnFloat alpha = sqrt((modulus + fabs(theta)) / 2);
  if (theta < 0) {
    alpha = mu / (2 * alpha);
  }
  r(1, 2) /= 2 * alpha;
  r(2, 1) /= 2 * alpha;
  r(1, 1) = r(2, 2) = alpha;
  return true;
}
bool root_of_block(Integer /*n*/, View<Complex> r) {
  r(1, 1) = sqrt(r(1, 1));
  return true;
}

template <class T>
bool square_root(Integer n, View<T> r) {
  const Integer half = half_of_form(n, r);
  if (half == 0) {
    return root_of_block(n, r);
  }
  const View<T> last = r.from(half + 1, half + 1);
  const View<T> corner = r.from(1, half + 1);
  if (!square_root(half, r) || !square_root(n - half, last)) {
    return false;
  }
  // Nothing couples two zeros of a matrix that has a root.
  for (Integer j = 1; j <= n - half; ++j) {
    for (Integer i = 1; i <= half; ++i) {
      if (!is_zero(corner(i, j))) {
        return !solve_triangular_sylvester(1, half, n - half, r, last, corner);
      }
    }
  }
  return true;
}

/// A function of A by its Schur form: in_form(T) changes T to the function of it.
template <class T, class InForm>
Integer by_schur_form(Integer n, View<T> a, View<T> f, const InForm& in_form) {
  OwnMatrix<T> form(n, n);
  OwnMatrix<T> vectors(n, n);
  const View<T> t = form.view();
  const View<T> z = vectors.view();
  copy_matrix(n, n, a, t);
  if (form_schur(n, t, z) != 0) {
    return kNotFound;
  }
  for (Integer j = 1; j <= n; ++j) {
    // A zero of the form, not the rest of a reflector.
    for (Integer i = j + 1; i <= n; ++i) {
      if (i > j + 1 || sizeof(T) != sizeof(QuarnFloat)) {
        t(i, j) = T();
      }
    }
  }
  if (!in_form(t)) {
    return kNone;
  }
  OwnMatrix<T> half(n, n);
  multiply(n, z, t, half.view());
  exact::multiply_matrices(Op::none, Op::conjugate_transpose, n, n, n, T(1.0), half.view(), z, T(), f);
  return kDone;
}

/// T := log(T) of a Schur form by roots until it is near the unit matrix; *roots is how many were taken.
template <class T>
bool logarithm(Integer n, View<T> t, int* roots) {
  constexpr int kMostRoots = 200;
  for (Integer j = 1; j <= n; ++j) {
    if (is_zero(t(j, j)) && (j == n || is_zero(t(j + 1, j))) && (j == 1 || is_zero(t(j, j - 1)))) {
      return false;
    }
  }
  const int digits = QuarnDigits();
  const int near = 3 + int(std::sqrt(double(digits)) / 3);
  QuarnFloat limit = 1;
  for (int k = 0; k < near; ++k) {
    limit /= 2;
  }
  OwnMatrix<T> difference(n, n);
  const View<T> x = difference.view();
  for (*roots = 0;; ++*roots) {
    copy_matrix(n, n, t, x);
    for (Integer j = 1; j <= n; ++j) {
      x(j, j) = x(j, j) - T(1.0);
    }
    if (one_norm_or_nan(n, x) <= limit) {
      break;
    }
    if (*roots == kMostRoots || !square_root(n, t)) {
      return false;
    }
  }
  // log(T) = 2 atanh(Z), Z = (T + I)^-1 (T - I), |Z| <= 2^-near.
  for (Integer j = 1; j <= n; ++j) {
    t(j, j) = t(j, j) + T(1.0);
  }
  if (!solve(n, t, x)) {
    return false;
  }
  const int terms = 1 + int(digits / (2 * near * std::log10(2.0)));
  std::vector<QuarnFloat> c;
  QuarnFloat power = 2;
  for (int k = 0; k < *roots; ++k) {
    power *= 2;
  }
  for (int k = 0; k <= terms; ++k) {
    c.push_back(power / (2 * k + 1));
  }
  OwnMatrix<T> square(n, n);
  OwnMatrix<T> series(n, n);
  multiply(n, x, x, square.view());
  polynomial(n, square.view(), c, series.view());
  multiply(n, x, series.view(), t);
  return true;
}

/// Digits that a logarithm with so many roots loses.
int lost_digits(int roots) { return 4 + roots * 31 / 100; }

template <class T>
Integer principal_logarithm(Integer n, View<T> a, View<T> f) {
  int roots = 0;
  int extra = lost_digits(12);
  for (int attempt = 0;; ++attempt) {
    Integer outcome = kDone;
    {
      const WorkingDigits more(QuarnDigits() + extra);
      outcome = by_schur_form(n, a, f, [&](View<T> t) { return logarithm(n, t, &roots); });
    }
    if (outcome != kDone || lost_digits(roots) <= extra || attempt == 2) {
      return outcome;
    }
    extra = lost_digits(roots) + 1;
  }
}

/// F := A^k, k >= 0
template <class T>
void whole_power(Integer n, View<T> a, std::int64_t k, View<T> f) {
  OwnMatrix<T> own(n, n);
  OwnMatrix<T> copy_of_base(n, n);
  const View<T> temporary = own.view();
  const View<T> base = copy_of_base.view();
  copy_matrix(n, n, a, base);
  set_identity(n, f);
  for (; k > 0; k /= 2) {
    QuarnCheckInterrupt();
    if (k % 2 == 1) {
      copy_matrix(n, n, f, temporary);
      multiply(n, temporary, base, f);
    }
    if (k > 1) {
      copy_matrix(n, n, base, temporary);
      multiply(n, temporary, temporary, base);
    }
  }
}

template <class T>
Integer safe_exponential(Integer n, View<T> a, View<T> f) {
  constexpr int kLargestExponent = 300;
  const QuarnFloat norm = one_norm_or_nan(n, a);
  if (!isfinite(norm) || ilogb(norm + 1) > kLargestExponent) {
    return kNotFound;
  }
  int extra = 6;
  for (int attempt = 0;; ++attempt) {
    double lost = 0;
    {
      const WorkingDigits more(QuarnDigits() + extra);
      lost = exponential(n, a, f);
    }
    if (!matrix_is_finite(n, f)) {
      return kNone;
    }
    constexpr int kMostExtra = 100000;
    if (lost < extra || attempt == 3 || lost > kMostExtra) {
      return lost < extra ? kDone : kNotFound;
    }
    extra = int(lost) + 4;
  }
}

template <class T>
Integer power(Integer n, View<T> a, const QuarnFloat& p, View<T> f) {
  constexpr int kMostDigits = 18;
  if (!isfinite(p) || fabs(p) >= QuarnFloat(1, kMostDigits)) {
    return kNone;
  }
  const QuarnFloat nearest = rint(p);
  const QuarnFloat rest = p - nearest;
  auto k = std::int64_t(FloatToDouble(nearest));
  {
    // Beyond 2^53 a double leaves something.
    const WorkingDigits exact(std::max(QuarnDigits(), kMostDigits + 2));
    k += std::int64_t(FloatToDouble(nearest - QuarnFloat(k)));
  }
  const int extra = 6 + (k == 0 ? 0 : ilogb(QuarnFloat(k < 0 ? -k : k)));
  const WorkingDigits more(QuarnDigits() + extra);
  OwnMatrix<T> whole(n, n);
  if (k < 0) {
    OwnMatrix<T> copy_of_a(n, n);
    OwnMatrix<T> inverse(n, n);
    copy_matrix(n, n, a, copy_of_a.view());
    set_identity(n, inverse.view());
    if (!solve(n, copy_of_a.view(), inverse.view())) {
      return kNone;
    }
    whole_power(n, inverse.view(), -k, whole.view());
  } else {
    whole_power(n, a, k, whole.view());
  }
  if (rest == 0) {
    copy_matrix(n, n, whole.view(), f);
    return matrix_is_finite(n, f) ? kDone : kNone;
  }
  OwnMatrix<T> logarithms(n, n);
  OwnMatrix<T> part(n, n);
  Integer outcome = principal_logarithm(n, a, logarithms.view());
  if (outcome != kDone) {
    return outcome;
  }
  for (Integer j = 1; j <= n; ++j) {
    scale(n, rest, logarithms.view().column(j));
  }
  outcome = safe_exponential(n, logarithms.view(), part.view());
  multiply(n, whole.view(), part.view(), f);
  return outcome != kDone ? outcome : matrix_is_finite(n, f) ? kDone : kNone;
}

/// Checks, copies A aside, does the work at more digits, and rounds once. Positions: n 1, a 2, lda 3, then ldf.
template <class T, class Work>
Integer function_of_matrix(Integer n, const T* a, Integer lda, T* f, Integer ldf, Integer ldf_position,
                           const Work& work) {
  const Integer least = std::max<Integer>(1, n);
  const Integer wrong = first_wrong({{n < 0, 1}, {lda < least, 3}, {ldf < least, ldf_position}});
  if (wrong != 0 || n == 0) {
    return -wrong;
  }
  OwnMatrix<T> given(n, n);
  OwnMatrix<T> result(n, n);
  copy_matrix(n, n, View<T>(const_cast<T*>(a), lda), given.view());
  if (!matrix_is_finite(n, given.view())) {
    return kNone;
  }
  Integer outcome = kDone;
  {
    const WorkingDigits more(guarded_digits(n) + 2);
    outcome = work(given.view(), result.view());
  }
  if (outcome == kDone) {
    copy_matrix(n, n, result.view(), View<T>(f, ldf));
    round_elements<T>(n, n, {f, ldf});
  }
  return outcome;
}

template <class T>
Integer exponential_entry(Integer n, const T* a, Integer lda, T* f, Integer ldf) {
  return function_of_matrix(n, a, lda, f, ldf, 5, [n](View<T> x, View<T> y) { return safe_exponential(n, x, y); });
}
template <class T>
Integer root_entry(Integer n, const T* a, Integer lda, T* f, Integer ldf) {
  return function_of_matrix(n, a, lda, f, ldf, 5, [n](View<T> x, View<T> y) {
    return by_schur_form(n, x, y, [n](View<T> t) { return square_root(n, t); });
  });
}
template <class T>
Integer logarithm_entry(Integer n, const T* a, Integer lda, T* f, Integer ldf) {
  return function_of_matrix(n, a, lda, f, ldf, 5, [n](View<T> x, View<T> y) { return principal_logarithm(n, x, y); });
}
template <class T>
Integer power_entry(Integer n, const T* a, Integer lda, const QuarnFloat& p, T* f, Integer ldf) {
  return function_of_matrix(n, a, lda, f, ldf, 6, [n, &p](View<T> x, View<T> y) { return power(n, x, p, y); });
}

}  // namespace
}  // namespace tesk

extern "C" {

void QuarnMPX_dexpm_(Integer n, const QuarnFloat* a, Integer lda, QuarnFloat* f, Integer ldf, Integer* info) {
  *info = tesk::exponential_entry(n, a, lda, f, ldf);
}
void QuarnMPX_zexpm_(Integer n, const Complex* a, Integer lda, Complex* f, Integer ldf, Integer* info) {
  *info = tesk::exponential_entry(n, a, lda, f, ldf);
}
void QuarnMPX_dsqrtm_(Integer n, const QuarnFloat* a, Integer lda, QuarnFloat* f, Integer ldf, Integer* info) {
  *info = tesk::root_entry(n, a, lda, f, ldf);
}
void QuarnMPX_zsqrtm_(Integer n, const Complex* a, Integer lda, Complex* f, Integer ldf, Integer* info) {
  *info = tesk::root_entry(n, a, lda, f, ldf);
}
void QuarnMPX_dlogm_(Integer n, const QuarnFloat* a, Integer lda, QuarnFloat* f, Integer ldf, Integer* info) {
  *info = tesk::logarithm_entry(n, a, lda, f, ldf);
}
void QuarnMPX_zlogm_(Integer n, const Complex* a, Integer lda, Complex* f, Integer ldf, Integer* info) {
  *info = tesk::logarithm_entry(n, a, lda, f, ldf);
}
void QuarnMPX_dpowm_(Integer n, const QuarnFloat* a, Integer lda, const QuarnFloat* p, QuarnFloat* f, Integer ldf,
                     Integer* info) {
  *info = tesk::power_entry(n, a, lda, *p, f, ldf);
}
void QuarnMPX_zpowm_(Integer n, const Complex* a, Integer lda, const QuarnFloat* p, Complex* f, Integer ldf,
                     Integer* info) {
  *info = tesk::power_entry(n, a, lda, *p, f, ldf);
}
}
