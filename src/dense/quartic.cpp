// The zeros of a quartic as the eigenvalues of its companion matrix. The companion takes the zeros of the polynomial
// itself: those of very different sizes lose no digits.

#include <algorithm>
#include <vector>

#include "src/dense/polynomial.h"
#include "src/frame/classic.h"
#include "src/frame/constants.h"
#include "src/kernels/level1.h"
#include "tesk2mp/dense.h"
#include "tesk2mp/frame.h"
#include "tesk2mp/norms.h"

namespace tesk {
namespace {

constexpr Integer kOrder = 4;
constexpr Integer kElements = kOrder * kOrder;

/// The classic entry keeps quotients within the range of the hardware double, its companion within that of QuarnFloat.
SafeQuotient divide_for(Accuracy accuracy, const QuarnFloat& a, const QuarnFloat& b) {
  if (accuracy == Accuracy::classic) {
    return safe_divide(a, b);
  }
  QuarnFloat value = a / b;
  const bool failed = !isfinite(value) || !isfinite(b);
  return {std::move(value), failed};
}

/// What one rounding of the coefficients does to the zero x: with a(k) the k-th Taylor coefficient there, the least of
/// (e / |a(k)|)^(1/k), e the rounding of the sum of |coefficient| |x|^i. A zero of multiplicity k has the first k - 1
/// vanish.
QuarnFloat sensitivity(const std::vector<QuarnFloat>& coefficients, const Complex& x) {
  std::vector<Complex> taylor(coefficients.size());
  QuarnFloat rounding;
  const QuarnFloat size = magnitude(x);
  for (const QuarnFloat& coefficient : coefficients) {
    for (std::size_t k = taylor.size() - 1; k > 0; --k) {
      taylor[k] = taylor[k] * x + taylor[k - 1];
    }
    taylor[0] = taylor[0] * x + Complex(coefficient);
    rounding = rounding * size + fabs(coefficient);
  }
  rounding *= epsilon();
  QuarnFloat least = rounding / magnitude(taylor[1]);
  for (Integer k = 2; k <= kOrder; ++k) {
    if (const QuarnFloat divisor = magnitude(taylor[std::size_t(k)]); divisor != 0 && rounding != 0) {
      const QuarnFloat change = pow(rounding / divisor, QuarnFloat(1) / k);
      least = isnan(least) || change < least ? change : least;
    }
  }
  return rounding == 0 ? QuarnFloat() : least;
}

/// False when numbers leave the range of exponents.
bool zeros_of_polynomial(const std::vector<QuarnFloat>& coefficients, QuarnFloat* zeror, QuarnFloat* zeroi,
                         QuarnFloat* errest) {
  std::vector<PolynomialZero> zeros;
  if (!polynomial_zeros(coefficients, zeros)) {
    return false;
  }
  for (const PolynomialZero& zero : zeros) {
    *zeror++ = zero.value.re;
    *zeroi++ = zero.value.im;
    *errest++ = std::max(zero.error, sensitivity(coefficients, zero.value));
  }
  return true;
}

template <Accuracy accuracy>
void quartic_core(const QuarnFloat* e, const QuarnFloat* a, const QuarnFloat* b, const QuarnFloat* c,
                  const QuarnFloat* d, QuarnFloat* zeror, QuarnFloat* zeroi, QuarnFloat* errest, char* message_buffer,
                  Integer* ifail, int /*length*/) {
  constexpr bool kFull = accuracy == Accuracy::full;
  Report report("C02ALF", message_buffer, ifail);
  if (*e == 0) {
    return report.fail(1, 99999, " ** On entry, E .eq. 0.0.");
  }

  QuarnFloat h[kElements];
  const OneBasedMatrix<QuarnFloat> companion(h, kOrder);
  for (Integer i = 2; i <= kOrder; ++i) {
    companion(i, i - 1) = 1.0;
  }
  Integer column = 0;
  for (const QuarnFloat* coefficient : {a, b, c, d}) {
    SafeQuotient quotient = divide_for(accuracy, -*coefficient, *e);
    if (quotient.failed) {
      return report.fail(2, 99998, " ** The companion matrix H cannot be formed without overflow.");
    }
    companion(1, ++column) = std::move(quotient.value);
  }

  if (kFull && zeros_of_polynomial({*e, *a, *b, *c, *d}, zeror, zeroi, errest)) {
    return;
  }

  Integer ilo = 1;
  Integer ihi = kOrder;
  Integer info = 0;
  QuarnFloat scale[kOrder];
  (kFull ? QuarnMPX_f08nhf_ : QuarnMP_f08nhf_)("Scaled", kOrder, h, kOrder, &ilo, &ihi, scale, &info, 6);
  QuarnFloat wr[kOrder];
  QuarnFloat wi[kOrder];
  QuarnFloat z[kElements];
  QuarnFloat work[3 * kOrder];
  (kFull ? QuarnMPX_f08pef_ : QuarnMP_f08pef_)("Schur form", "Novectors", kOrder, ilo, ihi, h, kOrder, wr, wi, z,
                                               kOrder, work, 3 * kOrder, &info, 10, 9);
  if (info != 0) {
    return report.fail(3, 99997, " ** Failure to converge in F08PEF (SHSEQR/DHSEQR).");
  }

  QuarnFloat vl[kElements];
  QuarnFloat vr[kElements];
  QuarnFloat s[kOrder];
  QuarnFloat sep[kOrder];
  Integer m = 0;
  (kFull ? QuarnMPX_f08qkf_ : QuarnMP_f08qkf_)("Both", "All", nullptr, kOrder, h, kOrder, vl, kOrder, vr, kOrder,
                                               kOrder, &m, work, &info, 4, 3);
  (kFull ? QuarnMPX_f08qlf_ : QuarnMP_f08qlf_)("Eigenvalues", "All", nullptr, kOrder, h, kOrder, vl, kOrder, vr, kOrder,
                                               s, sep, kOrder, &m, work, 1, nullptr, &info, 11, 3);
  const QuarnFloat error = epsilon() * QuarnMP_f06raf_("1-norm", kOrder, kOrder, h, kOrder, nullptr, 6);
  for (Integer j = 0; j < kOrder; ++j) {
    zeror[j] = wr[j];
    zeroi[j] = wi[j];
    errest[j] = divide_for(accuracy, error, s[j]).value;
  }
}

}  // namespace
}  // namespace tesk

extern "C" {

void QuarnMP_c02alf_(QuarnFloat* e, QuarnFloat* a, QuarnFloat* b, QuarnFloat* c, QuarnFloat* d, QuarnFloat* zeror,
                     QuarnFloat* zeroi, QuarnFloat* errest, Integer* ifail) {
  tesk::call_core("C02ALF", ifail, tesk::quartic_core<tesk::Accuracy::classic>, e, a, b, c, d, zeror, zeroi, errest);
}

void QuarnMPX_c02alf_(QuarnFloat* e, QuarnFloat* a, QuarnFloat* b, QuarnFloat* c, QuarnFloat* d, QuarnFloat* zeror,
                      QuarnFloat* zeroi, QuarnFloat* errest, Integer* ifail) {
  tesk::call_core("C02ALF", ifail, tesk::quartic_core<tesk::Accuracy::full>, e, a, b, c, d, zeror, zeroi, errest);
}
}
