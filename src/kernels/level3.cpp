#include "src/kernels/level3.h"

void tesk::update_hermitian(Triangle triangle, Op op, Integer n, Integer k, const QuarnFloat& alpha,
                            OneBasedMatrix<Complex> matrix, const QuarnFloat& beta, OneBasedMatrix<Complex> result) {
  if (n == 0 || ((is_zero(alpha) || k == 0) && is_one(beta))) {
    return;
  }
  // Reversed indices turn the lower triangle into an upper one; the index that runs over k stays as it is.
  const bool upper = triangle == Triangle::upper;
  const OneBasedMatrix<Complex> c = upper ? result : result.reversed(n, n);
  const OneBasedMatrix<Complex> a = upper            ? matrix
                                    : op == Op::none ? matrix.rows_reversed(n)
                                                     : matrix.columns_reversed(n);
  CheckPoints check_points;
  for (Integer j = 1; j <= n; ++j) {
    const OneBasedVector<Complex> cj = c.column(j);
    scale_or_clear(j, beta, cj);
    cj(j).im = QuarnFloat();
    if (is_zero(alpha)) {
      continue;
    }
    if (op == Op::none) {
      for (Integer l = 1; l <= k; ++l) {
        if (is_zero(a(j, l))) {
          continue;
        }
        check_points.pass(j);
        Complex temp = conj(a(j, l));
        multiply_by(temp, alpha);
        add_multiple(j - 1, temp, a.column(l), cj);
        cj(j).re += temp.re * a(j, l).re - temp.im * a(j, l).im;
      }
      continue;
    }
    for (Integer i = 1; i < j; ++i) {
      check_points.pass(k);
      Complex temp = dot(k, a.column(i), a.column(j), Op::conjugate_transpose);
      multiply_by(temp, alpha);
      cj(i).re += temp.re;
      cj(i).im += temp.im;
    }
    QuarnFloat squares;
    for (Integer l = 1; l <= k; ++l) {
      squares += a(l, j).re * a(l, j).re + a(l, j).im * a(l, j).im;
    }
    cj(j).re += alpha * squares;
  }
}
