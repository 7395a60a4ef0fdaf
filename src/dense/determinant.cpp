// The determinant as mantissa and power of ten, from an LU factorisation with partial pivoting: J. J. Dongarra, J. R.
// Bunch, C. B. Moler, G. W. Stewart, LINPACK Users' Guide, SIAM 1979, chapter 1.
#include <cstdint>
#include <limits>

#include "quarn/functions.h"
#include "src/dense/condition.h"
#include "src/dense/norm_estimate.h"
#include "src/frame/classic.h"
#include "src/frame/constants.h"
#include "src/frame/report.h"
#include "src/frame/working_digits.h"
#include "tesk2mp/dense.h"
#include "tesk2mp/linear.h"

namespace tesk {
namespace {

Integer factorise(Integer n, QuarnFloat* a, Integer lda, Integer* ipiv) {
  Integer info = 0;
  QuarnMPX_dgetrf_(n, n, a, lda, ipiv, &info);
  return info;
}
Integer factorise(Integer n, Complex* a, Integer lda, Integer* ipiv) {
  Integer info = 0;
  QuarnMPX_zgetrf_(n, n, a, lda, ipiv, &info);
  return info;
}

/// The larger part of x.
QuarnFloat size(const QuarnFloat& x) { return fabs(x); }
QuarnFloat size(const Complex& x) {
  const QuarnFloat re = fabs(x.re);
  const QuarnFloat im = fabs(x.im);
  return re > im ? re : im;
}

/// mantissa 10^exponent, 1 <= size(mantissa) < 10 unless it is zero or not finite.
template <class T>
struct Scaled {
  T mantissa{1.0};
  std::int64_t exponent = 0;

  void multiply(T x) {
    exponent += normalise(x);
    multiply_by(mantissa, x);
    exponent += normalise(mantissa);
  }

 private:
  static std::int64_t normalise(T& x) {
    const QuarnFloat largest = size(x);
    if (largest == 0 || !isfinite(largest)) {
      return 0;
    }
    const int power = ilogb(largest);
    if (power != 0) {
      multiply_by(x, QuarnFloat(1, -power));
    }
    return power;
  }
};

/// The determinant of a matrix from its factors P A = L U.
template <class T>
Scaled<T> product_of_pivots(Integer n, OneBasedMatrix<T> factors, const Integer* ipiv) {
  Scaled<T> product;
  for (Integer j = 1; j <= n && !is_zero(product.mantissa); ++j) {
    product.multiply(factors(j, j));
    if (ipiv[j - 1] != j) {
      product.mantissa = -product.mantissa;
    }
  }
  return product;
}

void invert(QuarnFloat* a, Integer lda, Integer n, Integer* ipvt, QuarnFloat* work) {
  Integer info = 0;
  QuarnMPX_dgetri_(n, a, lda, ipvt, work, n, &info);
}
void invert(Complex* a, Integer lda, Integer n, Integer* ipvt, Complex* work) {
  Integer info = 0;
  QuarnMPX_zgetri_(n, a, lda, ipvt, work, n, &info);
}

template <class T>
void determinant_and_inverse(T* a, Integer lda, Integer n, Integer* ipvt, T* det, T* work, Integer job) {
  if (job / 10 != 0) {
    const Scaled<T> product = product_of_pivots(n, OneBasedMatrix<T>(a, lda), ipvt);
    constexpr int kExponentDigits = 20;
    const WorkingDigits more(std::max(kExponentDigits, QuarnDigits()));
    det[0] = product.mantissa;
    det[1] = T(QuarnFloat(is_zero(product.mantissa) ? 0 : product.exponent));
  }
  if (job % 10 != 0 && n > 0) {
    invert(a, lda, n, ipvt, work);
  }
}

template <class T>
QuarnFloat one_norm(Integer n, OneBasedMatrix<T> a) {
  QuarnFloat largest;
  for (Integer j = 1; j <= n; ++j) {
    QuarnFloat sum;
    for (Integer i = 1; i <= n; ++i) {
      sum += far_modulus(a(i, j));
    }
    largest = largest > sum ? largest : sum;
  }
  return largest;
}

template <class T>
void determinant(Report& report, Integer n, T* a, Integer lda, Integer* ipiv, T* d, Integer* id, QuarnFloat* rcond) {
  if (n < 0) {
    return report.fail(1, 99999, " ** On entry, N .lt. 0: N =%16ld.", n);
  }
  if (lda < std::max<Integer>(1, n)) {
    return report.fail(1, 99998, " ** On entry, LDA .lt. max(1,N):\n    LDA =%16ld, N =%16ld.", lda, n);
  }
  const OneBasedMatrix<T> view(a, lda);
  const QuarnFloat norm = rcond == nullptr ? QuarnFloat() : one_norm(n, view);
  factorise(n, a, lda, ipiv);
  const Scaled<T> product = product_of_pivots(n, view, ipiv);
  const bool zero = is_zero(product.mantissa);
  *d = zero ? T() : product.mantissa;
  *id = zero ? 0 : Integer(product.exponent);
  if (rcond != nullptr) {
    *rcond = zero ? QuarnFloat() : reciprocal_condition(true, n, view, norm);
  }
  if (!zero && product.exponent < std::numeric_limits<Integer>::min()) {
    *id = std::numeric_limits<Integer>::min();
    return report.fail(3, 99996, " ** The value of the determinant is too small to be stored.");
  }
  if (!zero && product.exponent > std::numeric_limits<Integer>::max()) {
    *id = std::numeric_limits<Integer>::max();
    return report.fail(4, 99995, " ** The value of the determinant is too large to be stored.");
  }
  if (zero || (rcond != nullptr && *rcond < epsilon())) {
    report.fail(2, 99997, " ** Matrix A is approximately singular.");
  }
}

}  // namespace
}  // namespace tesk

extern "C" {

void QuarnMPX_f03affn_(Integer n, QuarnFloat* a, Integer lda, Integer* ipiv, QuarnFloat* d, Integer* id,
                       QuarnFloat* rcond, char* message_buffer, Integer* ifail, int /*buffer_length*/) {
  tesk::Report report("F03AFF", message_buffer, ifail);
  tesk::determinant(report, n, a, lda, ipiv, d, id, rcond);
}

void QuarnMPX_zdeterminantn_(Integer n, Complex* a, Integer lda, Integer* ipiv, Complex* d, Integer* id,
                             QuarnFloat* rcond, char* message_buffer, Integer* ifail, int /*buffer_length*/) {
  tesk::Report report("ZDETERMINANT", message_buffer, ifail);
  tesk::determinant(report, n, a, lda, ipiv, d, id, rcond);
}

void QuarnMPX_zdeterminant_(Integer n, Complex* a, Integer lda, Integer* ipiv, Complex* d, Integer* id,
                            QuarnFloat* rcond, Integer* ifail) {
  tesk::call_core("ZDETERMINANT", ifail, [&](char* message_buffer, Integer* outcome, int buffer_length) {
    QuarnMPX_zdeterminantn_(n, a, lda, ipiv, d, id, rcond, message_buffer, outcome, buffer_length);
  });
}

void QuarnMPX_dgedi_(QuarnFloat* a, Integer lda, Integer n, Integer* ipvt, QuarnFloat* det, QuarnFloat* work,
                     Integer job) {
  tesk::determinant_and_inverse(a, lda, n, ipvt, det, work, job);
}

void QuarnMPX_zgedi_(Complex* a, Integer lda, Integer n, Integer* ipvt, Complex* det, Complex* work, Integer job) {
  tesk::determinant_and_inverse(a, lda, n, ipvt, det, work, job);
}
}
