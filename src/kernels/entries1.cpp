#include "src/kernels/level1.h"
#include "tesk2mp/kernels.h"

namespace {

using tesk::OneBasedVector;

template <class T>
void scaled_copy(Integer n, const T& alpha, T* x, Integer incx, T* y, Integer incy) {
  const auto from = OneBasedVector<T>::of(x, n, incx);
  const auto to = OneBasedVector<T>::of(y, n, incy);
  for (Integer i = 1; i <= n; ++i) {
    to(i) = from(i);
    tesk::multiply_by(to(i), alpha);
  }
}

}  // namespace

extern "C" {

void QuarnMP_f06aaf_(QuarnFloat* a, QuarnFloat* b, QuarnFloat* c, QuarnFloat* s) {
  const QuarnFloat scale = fabs(*a) + fabs(*b);
  if (scale == 0) {
    *c = 1;
    *s = 0;
    *a = 0;
    *b = 0;
    return;
  }
  const bool a_larger = fabs(*a) > fabs(*b);
  const QuarnFloat ra = *a / scale;
  const QuarnFloat rb = *b / scale;
  QuarnFloat r = scale * sqrt(ra * ra + rb * rb);
  if ((a_larger ? *a : *b) < 0) {
    r = -r;
  }
  *c = *a / r;
  *s = *b / r;
  *b = a_larger ? *s : *c != 0 ? 1 / *c : QuarnFloat(1);
  *a = std::move(r);
}

void QuarnMP_f06caf_(Integer n, QuarnFloat alpha, Complex* x, Integer incx) {
  tesk::scale(n, alpha, OneBasedVector<Complex>::of(x, n, incx));
}

QuarnFloat QuarnMP_f06ejf_(Integer n, QuarnFloat* x, Integer incx) {
  QuarnFloat scale;
  QuarnFloat sumsq(1);
  tesk::add_squares(n, OneBasedVector<QuarnFloat>::of(x, n, incx), scale, sumsq);
  return scale * sqrt(sumsq);
}

void QuarnMP_f06fdf_(Integer n, QuarnFloat alpha, QuarnFloat* x, Integer incx, QuarnFloat* y, Integer incy) {
  scaled_copy(n, alpha, x, incx, y, incy);
}

void QuarnMP_f06hdf_(Integer n, Complex alpha, Complex* x, Integer incx, Complex* y, Integer incy) {
  scaled_copy(n, alpha, x, incx, y, incy);
}

void QuarnMP_f06jjf_(Integer n, Complex* x, Integer incx, Complex* y, Integer incy) {
  tesk::copy(n, OneBasedVector<Complex>::of(x, n, incx), OneBasedVector<Complex>::of(y, n, incy));
}
}
