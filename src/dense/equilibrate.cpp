// E. Anderson et al., LAPACK Users' Guide: xGEEQU, xGEEQUB.
#include <algorithm>

#include "quarn/functions.h"
#include "src/kernels/level1.h"
#include "tesk2mp/linear.h"

namespace tesk {
namespace {

/// What scales a row or column to at most 1: the reciprocal of its largest element, or the power of ten below that.
QuarnFloat scale_of(bool powers_of_ten, const QuarnFloat& largest) {
  return powers_of_ten ? QuarnFloat(1, -ilogb(largest) - 1) : 1 / largest;
}

/// The scales of n rows or columns from their largest elements, in place; ratio: smallest over largest element. Returns
/// the first that is zero, 0 if none is.
Integer scales_of(bool powers_of_ten, Integer n, QuarnFloat* elements, QuarnFloat* ratio) {
  QuarnFloat smallest = elements[0];
  QuarnFloat largest = elements[0];
  for (Integer i = 0; i < n; ++i) {
    if (elements[i] == 0) {
      return i + 1;
    }
    smallest = elements[i] < smallest ? elements[i] : smallest;
    largest = elements[i] > largest ? elements[i] : largest;
  }
  for (Integer i = 0; i < n; ++i) {
    elements[i] = isfinite(elements[i]) ? scale_of(powers_of_ten, elements[i]) : 1 / elements[i];
  }
  *ratio = smallest / largest;
  return 0;
}

/// Checks, then the scales of rows and of columns; returns INFO.
template <class T>
Integer equilibrate(bool powers_of_ten, Integer m, Integer n, T* a, Integer lda, QuarnFloat* r, QuarnFloat* c,
                    QuarnFloat* rowcnd, QuarnFloat* colcnd, QuarnFloat* amax) {
  const Integer wrong = first_wrong({{m < 0, 1}, {n < 0, 2}, {lda < std::max<Integer>(1, m), 4}});
  if (wrong != 0) {
    return -wrong;
  }
  *rowcnd = QuarnFloat(1);
  *colcnd = QuarnFloat(1);
  *amax = QuarnFloat();
  if (m == 0 || n == 0) {
    return 0;
  }
  const OneBasedMatrix<T> view(a, lda);
  // A NaN stays the largest.
  const auto keep_largest = [](QuarnFloat& value, const QuarnFloat& candidate) {
    if (!(value >= candidate) && !isnan(value)) {
      value = candidate;
    }
  };
  fill(m, QuarnFloat(), OneBasedVector<QuarnFloat>(r, 1));
  for (Integer j = 1; j <= n; ++j) {
    for (Integer i = 1; i <= m; ++i) {
      keep_largest(r[i - 1], magnitude(view(i, j)));
    }
  }
  for (Integer i = 1; i <= m; ++i) {
    keep_largest(*amax, r[i - 1]);
  }
  if (const Integer zero = scales_of(powers_of_ten, m, r, rowcnd); zero != 0) {
    return zero;
  }
  for (Integer j = 1; j <= n; ++j) {
    c[j - 1] = QuarnFloat();
    for (Integer i = 1; i <= m; ++i) {
      keep_largest(c[j - 1], magnitude(view(i, j)) * r[i - 1]);
    }
  }
  const Integer zero = scales_of(powers_of_ten, n, c, colcnd);
  return zero == 0 ? 0 : m + zero;
}

}  // namespace
}  // namespace tesk

extern "C" {

void QuarnMPX_dgeequ_(Integer m, Integer n, QuarnFloat* a, Integer lda, QuarnFloat* r, QuarnFloat* c,
                      QuarnFloat* rowcnd, QuarnFloat* colcnd, QuarnFloat* amax, Integer* info) {
  *info = tesk::equilibrate(false, m, n, a, lda, r, c, rowcnd, colcnd, amax);
}

void QuarnMPX_zgeequ_(Integer m, Integer n, Complex* a, Integer lda, QuarnFloat* r, QuarnFloat* c, QuarnFloat* rowcnd,
                      QuarnFloat* colcnd, QuarnFloat* amax, Integer* info) {
  *info = tesk::equilibrate(false, m, n, a, lda, r, c, rowcnd, colcnd, amax);
}

void QuarnMPX_dgeequb_(Integer m, Integer n, QuarnFloat* a, Integer lda, QuarnFloat* r, QuarnFloat* c,
                       QuarnFloat* rowcnd, QuarnFloat* colcnd, QuarnFloat* amax, Integer* info) {
  *info = tesk::equilibrate(true, m, n, a, lda, r, c, rowcnd, colcnd, amax);
}

void QuarnMPX_zgeequb_(Integer m, Integer n, Complex* a, Integer lda, QuarnFloat* r, QuarnFloat* c, QuarnFloat* rowcnd,
                       QuarnFloat* colcnd, QuarnFloat* amax, Integer* info) {
  *info = tesk::equilibrate(true, m, n, a, lda, r, c, rowcnd, colcnd, amax);
}
}
