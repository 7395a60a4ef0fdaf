// E. Anderson et al., LAPACK Users' Guide: ZPOTRF and its unblocked step ZPOTF2. With A = L L^H, the transpose of A is
// M^H M with M the transpose of L: the lower case is the upper one on a transposed view. The companions go by halves
// and for the lower triangle.

#include <algorithm>

#include "src/dense/factorise.h"
#include "src/dense/parts.h"
#include "src/dense/tuning.h"
#include "src/frame/check_points.h"
#include "src/kernels/exact_level3.h"
#include "tesk2mp/dense.h"

namespace tesk {
namespace {

/// a(j, k) := a(j, k) - sum of conj(a(i, j)) a(i, k), i < j, for k > j. As published, the stored columns are walked
/// along: dot products for the upper triangle, multiples of whole columns for the lower one, where `a` is a transposed
/// view.
void update_row(Triangle stored, Integer n, Integer j, OneBasedMatrix<Complex> a) {
  CheckPoints check_points;
  if (stored == Triangle::lower) {
    for (Integer i = 1; i < j; ++i) {
      check_points.pass(n - j);
      for (Integer k = j + 1; k <= n; ++k) {
        subtract_product(a(j, k), Op::conjugate_transpose, a(i, j), a(i, k));
      }
    }
    return;
  }
  for (Integer k = j + 1; k <= n; ++k) {
    check_points.pass(j);
    const Complex product = dot(j - 1, a.column(j), a.column(k), Op::conjugate_transpose);
    a(j, k).re -= product.re;
    a(j, k).im -= product.im;
  }
}

Integer factorise_unblocked(Triangle stored, Integer n, OneBasedMatrix<Complex> a) {
  for (Integer j = 1; j <= n; ++j) {
    QuarnCheckInterrupt();
    const OneBasedVector<Complex> column = a.column(j);
    QuarnFloat squares;
    for (Integer i = 1; i < j; ++i) {
      squares += column(i).re * column(i).re + column(i).im * column(i).im;
    }
    QuarnFloat ajj = column(j).re - squares;
    column(j).im = QuarnFloat();
    if (!(ajj > 0)) {
      column(j).re = std::move(ajj);
      return j;
    }
    ajj = sqrt(ajj);
    const QuarnFloat reciprocal = QuarnFloat(1.0) / ajj;
    column(j).re = std::move(ajj);
    update_row(stored, n, j, a);
    scale(n - j, reciprocal, a.row(j).from(j + 1));
  }
  return 0;
}

Integer factorise(Integer nb, Triangle stored, Integer n, OneBasedMatrix<Complex> a) {
  if (nb <= 1) {
    return factorise_unblocked(stored, n, a);
  }
  for (Integer j = 1; j <= n; j += std::min(nb, n - j + 1)) {
    const Integer jb = std::min(nb, n - j + 1);
    const Integer next = j + jb;
    update_hermitian(Triangle::upper, Op::conjugate_transpose, jb, j - 1, QuarnFloat(-1.0), a.from(1, j),
                     QuarnFloat(1.0), a.from(j, j));
    if (const Integer info = factorise_unblocked(stored, jb, a.from(j, j)); info != 0) {
      return info + j - 1;
    }
    multiply_matrices(Op::conjugate_transpose, Op::none, jb, n - next + 1, j - 1, Complex(-1.0), a.from(1, j),
                      a.from(1, next), Complex(1.0), a.from(j, next));
    solve_triangular_matrix(Side::left, Triangle::upper, Op::conjugate_transpose, Diagonal::general, jb, n - next + 1,
                            Complex(1.0), a.from(j, j), a.from(j, next));
  }
  return 0;
}

/// The lower triangle a column after the other: what is on the left of it is taken off, the root of the diagonal
/// divides the rest. Returns INFO.
template <class T>
Integer factorise_columns(Integer n, OneBasedMatrix<T> a) {
  const bool in_sums = exact::Leaf().in_sums;
  QuarnRows rows = exact::rows_of(n, n, a);
  for (Integer j = 1; j <= n; ++j) {
    const OneBasedVector<T> column = a.column(j);
    if (in_sums) {
      rows.subtract_products(std::size_t(j - 1), std::size_t(j - 1), column.first(), column.stride());
    } else {
      for (Integer l = 1; l < j; ++l) {
        add_multiple(n - j + 1, -apply(Op::conjugate_transpose, a(j, l)), a.column(l).from(j), column.from(j));
      }
    }
    exact::clear_imaginary(column(j));
    if (!(real_part(column(j)) > 0)) {
      return j;
    }
    const QuarnFloat ajj = sqrt(real_part(column(j)));
    column(j) = T(ajj);
    scale(n - j, 1 / ajj, column.from(j + 1));
    rows.prepare(std::size_t(j - 1), std::size_t(j), std::size_t(n));
  }
  return 0;
}

template <class T>
Integer factorise_by_halves(Integer n, OneBasedMatrix<T> a) {
  const exact::Leaf leaf;
  if (n <= leaf.order) {
    return factorise_columns(n, a);
  }
  const Integer half = n / 2;
  const OneBasedMatrix<T> below = a.from(half + 1, 1);
  const OneBasedMatrix<T> rest = a.from(half + 1, half + 1);
  if (const Integer info = factorise_by_halves(half, a); info != 0) {
    return info;
  }
  exact::solve_lower(Diagonal::general, true, half, n - half, a, below.transposed());
  exact::update_lower(false, n - half, half, T(-1.0), below, T(1.0), rest);
  const Integer info = factorise_by_halves(n - half, rest);
  return info == 0 ? 0 : info + half;
}

/// Checks, then what is to be done; returns INFO.
template <class T, class Factorise>
Integer checked_cholesky(const char* uplo, Integer n, T* a, Integer lda, const Factorise& factorise_view) {
  const Integer wrong = first_wrong({{!is_triangle(uplo), 1}, {n < 0, 2}, {lda < std::max<Integer>(1, n), 4}});
  return wrong != 0 ? -wrong : factorise_view(OneBasedMatrix<T>(a, lda), triangle_of(uplo));
}

Integer cholesky(Integer nb, const char* uplo, Integer n, Complex* a, Integer lda) {
  return checked_cholesky(uplo, n, a, lda, [&](OneBasedMatrix<Complex> view, Triangle stored) {
    return factorise(nb, stored, n, stored == Triangle::upper ? view : view.transposed());
  });
}

template <class T>
Integer cholesky_by_halves(const char* uplo, Integer n, T* a, Integer lda) {
  return checked_cholesky(uplo, n, a, lda, [&](OneBasedMatrix<T> view, Triangle stored) {
    return n == 0 ? 0 : factorise_by_halves(n, stored == Triangle::lower ? view : view.transposed());
  });
}

/// Checks, then the solution of A X = B from the factor of A; returns INFO.
template <class T>
Integer solve_with_factor(const char* uplo, Integer n, Integer nrhs, T* a, Integer lda, T* b, Integer ldb) {
  const Integer least = std::max<Integer>(1, n);
  const Integer wrong =
      first_wrong({{!is_triangle(uplo), 1}, {n < 0, 2}, {nrhs < 0, 3}, {lda < least, 5}, {ldb < least, 7}});
  if (wrong != 0) {
    return -wrong;
  }
  const Triangle stored = triangle_of(uplo);
  const auto solve = [&](Op op) {
    exact::solve_triangular_matrix<T>(Side::left, stored, op, Diagonal::general, n, nrhs, T(1.0), {a, lda}, {b, ldb});
  };
  solve(stored == Triangle::lower ? Op::none : Op::conjugate_transpose);
  solve(stored == Triangle::lower ? Op::conjugate_transpose : Op::none);
  return 0;
}

}  // namespace

template <class T>
Integer factorise_cholesky(Integer n, OneBasedMatrix<T> a) {
  return n == 0 ? 0 : factorise_by_halves(n, a);
}
template Integer factorise_cholesky(Integer, OneBasedMatrix<QuarnFloat>);
template Integer factorise_cholesky(Integer, OneBasedMatrix<Complex>);

}  // namespace tesk

extern "C" {

void QuarnMP_f07frf_ENTRY(int /*selector*/, const char* uplo, Integer n, Complex* a, Integer lda, Integer* info,
                          int /*uplo_length*/) {
  *info = tesk::cholesky(tesk::tuning_value(tesk::kBlockSize, "F07FRF"), uplo, n, a, lda);
}

void QuarnMP_f07frz_(const char* uplo, Integer n, Complex* a, Integer lda, Integer* info, int /*uplo_length*/) {
  *info = tesk::cholesky(1, uplo, n, a, lda);
}

void QuarnMPX_f07frf_(const char* uplo, Integer n, Complex* a, Integer lda, Integer* info, int /*uplo_length*/) {
  *info = tesk::cholesky_by_halves(uplo, n, a, lda);
}

void QuarnMPX_dpotrf_(const char* uplo, Integer n, QuarnFloat* a, Integer lda, Integer* info, int /*uplo_length*/) {
  *info = tesk::cholesky_by_halves(uplo, n, a, lda);
}

void QuarnMPX_dpotrs_(const char* uplo, Integer n, Integer nrhs, QuarnFloat* a, Integer lda, QuarnFloat* b, Integer ldb,
                      Integer* info, int /*uplo_length*/) {
  *info = tesk::solve_with_factor(uplo, n, nrhs, a, lda, b, ldb);
}

void QuarnMPX_zpotrs_(const char* uplo, Integer n, Integer nrhs, Complex* a, Integer lda, Complex* b, Integer ldb,
                      Integer* info, int /*uplo_length*/) {
  *info = tesk::solve_with_factor(uplo, n, nrhs, a, lda, b, ldb);
}
}
