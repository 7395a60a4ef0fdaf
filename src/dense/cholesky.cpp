// E. Anderson et al., LAPACK Users' Guide: ZPOTRF and its unblocked step ZPOTF2. With A = L L^H, the transpose of A is
// M^H M with M the transpose of L: the lower case is the upper one on a transposed view.

#include <algorithm>

#include "src/dense/tuning.h"
#include "src/frame/check_points.h"
#include "src/kernels/level3.h"
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

Integer checked_cholesky(Integer nb, const char* uplo, Integer n, Complex* a, Integer lda) {
  const Integer wrong = first_wrong({{!is_triangle(uplo), 1}, {n < 0, 2}, {lda < std::max<Integer>(1, n), 4}});
  if (wrong != 0) {
    return -wrong;
  }
  const OneBasedMatrix<Complex> view(a, lda);
  const Triangle stored = triangle_of(uplo);
  return factorise(nb, stored, n, stored == Triangle::upper ? view : view.transposed());
}

}  // namespace
}  // namespace tesk

extern "C" {

void QuarnMP_f07frf_ENTRY(int /*selector*/, const char* uplo, Integer n, Complex* a, Integer lda, Integer* info,
                          int /*uplo_length*/) {
  *info = tesk::checked_cholesky(tesk::tuning_value(tesk::kBlockSize, "F07FRF"), uplo, n, a, lda);
}

void QuarnMP_f07frz_(const char* uplo, Integer n, Complex* a, Integer lda, Integer* info, int /*uplo_length*/) {
  *info = tesk::checked_cholesky(1, uplo, n, a, lda);
}
}
