// E. Anderson, Robust triangular solves for use in condition estimation, LAPACK Working Note 36, 1991; E. Anderson et
// al., LAPACK Users' Guide: xLATRS. Sizes are compared by their decimal exponents and scale factors are powers of ten,
// so that scaling rounds nothing.
#include "src/dense/scaled_solve.h"

#include <cmath>

#include "quarn/functions.h"
#include "src/dense/parts.h"
#include "tesk2mp/linear.h"

namespace tesk {
namespace {

/// Intermediate numbers stay below 10^kMost, at some distance from the largest one.
constexpr std::int64_t kMost = 999000000;
constexpr std::int64_t kOfZero = -4000000000;

}  // namespace

std::int64_t size_exponent(const QuarnFloat& x) { return x == 0 ? kOfZero : std::int64_t(ilogb(x)) + 1; }
std::int64_t size_exponent(const Complex& x) { return std::max(size_exponent(x.re), size_exponent(x.im)) + 1; }

namespace {

/// The size of the elements, and of their sum.
template <class T>
std::int64_t size_of_sum(Integer n, OneBasedVector<T> x) {
  std::int64_t largest = kOfZero;
  for (Integer i = 1; i <= n; ++i) {
    largest = std::max(largest, size_exponent(x(i)));
  }
  return largest + std::int64_t(std::log10(double(std::max<Integer>(1, n)))) + 1;
}

/// 10^-power x, in steps that have their powers.
template <class T>
void shrink(std::int64_t power, Integer n, OneBasedVector<T> x) {
  while (power > 0) {
    const std::int64_t step = std::min<std::int64_t>(power, kMost);
    scale(n, QuarnFloat(1, -int(step)), x);
    power -= step;
  }
}

/// One solution with the scale factor that it needs. The triangle is an upper one.
template <class T>
class ScaledSolution {
 public:
  ScaledSolution(const TriangleSizes& sizes, bool reversed, Op op, Diagonal diagonal, Integer n, OneBasedMatrix<T> a,
                 OneBasedVector<T> x)
      : sizes_(sizes), reversed_(reversed), op_(op), diagonal_(diagonal), n_(n), a_(a), x_(x) {}

  QuarnFloat solve() {
    for (Integer step = 1; step <= n_; ++step) {
      const Integer j = op_ == Op::none ? n_ + 1 - step : step;
      if (op_ == Op::none) {
        divide(j);
        make_room(size_exponent(x_(j)) + size_of_column(j));
        add_multiple(j - 1, -x_(j), a_.column(j), x_);
      } else {
        make_room(size_of_sum(j - 1, x_) + size_of_column(j));
        for (Integer i = 1; i < j; ++i) {
          subtract_product(x_(j), op_, a_(i, j), x_(i));
        }
        divide(j);
      }
    }
    return scale_;
  }

 private:
  Integer place(Integer j) const { return reversed_ ? n_ - j : j - 1; }
  std::int64_t size_of_column(Integer j) const { return sizes_.columns[std::size_t(place(j))]; }

  void shrink_all(std::int64_t power) {
    if (power > 0) {
      shrink(power, n_, x_);
      shrink(power, 1, OneBasedVector<QuarnFloat>(&scale_, 1));
    }
  }
  /// For terms of that size to be added to the elements.
  void make_room(std::int64_t terms) { shrink_all(std::max(terms, size_of_sum(n_, x_)) + 1 - kMost); }

  void divide(Integer j) {
    if (diagonal_ == Diagonal::unit) {
      return;
    }
    if (is_zero(a_(j, j))) {
      fill(n_, T(), x_);
      x_(j) = T(1.0);
      scale_ = QuarnFloat();
      return;
    }
    shrink_all(size_exponent(x_(j)) - sizes_.diagonal[std::size_t(place(j))] + 2 - kMost);
    x_(j) = quotient(x_(j), apply(op_, a_(j, j)));
  }

  const TriangleSizes& sizes_;
  bool reversed_;
  Op op_;
  Diagonal diagonal_;
  Integer n_;
  OneBasedMatrix<T> a_;
  OneBasedVector<T> x_;
  QuarnFloat scale_{1};
};

/// Whether plain substitution stays below 10^kMost. With c(j) the sum of a column beside its diagonal element d(j), the
/// sums of step j are at most 1 + c(j) times the largest number before it, quotients are that over d(j).
template <class T>
bool cannot_overflow(const TriangleSizes& sizes, Integer n, OneBasedVector<T> x) {
  std::int64_t growth = std::max<std::int64_t>(0, size_of_sum(n, x));
  std::int64_t largest_sum = 0;
  std::int64_t largest_reciprocal = 0;
  for (std::size_t j = 0; j < std::size_t(n); ++j) {
    const std::int64_t sum = std::max<std::int64_t>(0, sizes.columns[j]) + 1;
    const std::int64_t reciprocal = 2 - sizes.diagonal[j];
    growth += std::max<std::int64_t>(0, sum + reciprocal) + 1;
    largest_sum = std::max(largest_sum, sum);
    largest_reciprocal = std::max(largest_reciprocal, reciprocal);
  }
  return growth + largest_sum + largest_reciprocal < kMost;
}

}  // namespace

template <class T>
TriangleSizes sizes_of_triangle(Triangle triangle, Diagonal diagonal, Integer n, OneBasedMatrix<T> a) {
  TriangleSizes sizes;
  for (Integer j = 1; j <= n; ++j) {
    const bool upper = triangle == Triangle::upper;
    const Integer first = upper ? 1 : j + 1;
    const Integer count = upper ? j - 1 : n - j;
    const OneBasedVector<T> beside = a.column(j).from(first);
    for (Integer i = 1; i <= count; ++i) {
      sizes.finite = sizes.finite && is_finite(beside(i));
    }
    sizes.columns.push_back(size_of_sum(count, beside));
    if (diagonal == Diagonal::general) {
      sizes.finite = sizes.finite && is_finite(a(j, j));
      sizes.regular = sizes.regular && !is_zero(a(j, j));
    }
    sizes.diagonal.push_back(diagonal == Diagonal::general ? size_exponent(a(j, j)) : 1);
  }
  return sizes;
}

template <class T>
QuarnFloat solve_scaled(const TriangleSizes& sizes, Triangle triangle, Op op, Diagonal diagonal, Integer n,
                        OneBasedMatrix<T> a, OneBasedVector<T> x) {
  bool finite = sizes.finite;
  for (Integer i = 1; i <= n; ++i) {
    finite = finite && is_finite(x(i));
  }
  if (!finite || (sizes.regular && cannot_overflow(sizes, n, x))) {
    exact::solve_triangular(triangle, op, diagonal, n, a, x);
    return QuarnFloat(1);
  }
  const UpperTriangle<T> upper(triangle, n, a, x);
  return ScaledSolution<T>(sizes, triangle == Triangle::lower, op, diagonal, n, upper.a, upper.x).solve();
}

template TriangleSizes sizes_of_triangle(Triangle, Diagonal, Integer, OneBasedMatrix<QuarnFloat>);
template TriangleSizes sizes_of_triangle(Triangle, Diagonal, Integer, OneBasedMatrix<Complex>);
template QuarnFloat solve_scaled(const TriangleSizes&, Triangle, Op, Diagonal, Integer, OneBasedMatrix<QuarnFloat>,
                                 OneBasedVector<QuarnFloat>);
template QuarnFloat solve_scaled(const TriangleSizes&, Triangle, Op, Diagonal, Integer, OneBasedMatrix<Complex>,
                                 OneBasedVector<Complex>);

namespace {

/// Checks, the norms of columns that the caller keeps, then the solution; returns INFO.
template <class T>
Integer checked_scaled_solve(const char* uplo, const char* trans, const char* diag, const char* normin, Integer n, T* a,
                             Integer lda, T* x, QuarnFloat* scale, QuarnFloat* cnorm) {
  const bool given = letter(normin) == 'Y';
  const Integer wrong = first_wrong({{!is_triangle(uplo), 1},
                                     {!is_op(trans), 2},
                                     {!is_diagonal(diag), 3},
                                     {!given && letter(normin) != 'N', 4},
                                     {n < 0, 5},
                                     {lda < std::max<Integer>(1, n), 7}});
  if (wrong != 0) {
    return -wrong;
  }
  *scale = QuarnFloat(1);
  const Triangle triangle = triangle_of(uplo);
  const OneBasedMatrix<T> view(a, lda);
  if (!given) {
    for (Integer j = 1; j <= n; ++j) {
      const bool upper = triangle == Triangle::upper;
      QuarnFloat sum;
      for (Integer i = upper ? 1 : j + 1, last = upper ? j - 1 : n; i <= last; ++i) {
        sum += magnitude(view(i, j));
      }
      cnorm[j - 1] = sum;
    }
  }
  const Diagonal diagonal = diagonal_of(diag);
  *scale = solve_scaled(sizes_of_triangle(triangle, diagonal, n, view), triangle, op_of(trans), diagonal, n, view,
                        OneBasedVector<T>(x, 1));
  return 0;
}

}  // namespace
}  // namespace tesk

extern "C" {

void QuarnMPX_dlatrs_(const char* uplo, const char* trans, const char* diag, const char* normin, Integer n,
                      QuarnFloat* a, Integer lda, QuarnFloat* x, QuarnFloat* scale, QuarnFloat* cnorm, Integer* info,
                      int /*uplo_length*/, int /*trans_length*/, int /*diag_length*/, int /*normin_length*/) {
  *info = tesk::checked_scaled_solve(uplo, trans, diag, normin, n, a, lda, x, scale, cnorm);
}

void QuarnMPX_zlatrs_(const char* uplo, const char* trans, const char* diag, const char* normin, Integer n, Complex* a,
                      Integer lda, Complex* x, QuarnFloat* scale, QuarnFloat* cnorm, Integer* info, int /*uplo_length*/,
                      int /*trans_length*/, int /*diag_length*/, int /*normin_length*/) {
  *info = tesk::checked_scaled_solve(uplo, trans, diag, normin, n, a, lda, x, scale, cnorm);
}
}
