// Gamma and error functions: entries.
#include <utility>

#include "quarn/functions.h"
#include "src/frame/classic.h"
#include "src/frame/report.h"
#include "tesk2mp/special.h"

namespace tesk {
namespace {

bool is_whole_and_not_positive(const QuarnFloat& x) { return isfinite(x) && x <= 0 && floor(x) == x; }

/// The classic form: the core form with a message buffer of its own, and the number that it returns.
template <class Core, class... Arguments>
QuarnFloat with_buffer(const char* routine, Integer* ifail, Core core, const Arguments&... arguments) {
  QuarnFloat result;
  call_core(routine, ifail, [&](char* message_buffer, Integer* outcome, int buffer_length) {
    result = core(arguments..., message_buffer, outcome, buffer_length);
  });
  return result;
}

}  // namespace
}  // namespace tesk

using namespace tesk;

extern "C" {

QuarnFloat QuarnMPX_gamman_(QuarnFloat x, char* message_buffer, Integer* ifail, int /*buffer_length*/) {
  Report report("GAMMA", message_buffer, ifail);
  QuarnFloat value = tgamma(x);
  if (is_whole_and_not_positive(x) || (isinf(x) && signbit(x))) {
    report.fail(1, 99999, " ** On entry, X is a pole of the gamma function: X = %12.4e.", x);
  } else if (isinf(value) && !isinf(x)) {
    report.fail(2, 99998, " ** The gamma function of X overflows: X = %12.4e.", x);
  } else if (value == 0) {
    report.fail(3, 99997, " ** The gamma function of X underflows: X = %12.4e.", x);
  }
  return value;
}

QuarnFloat QuarnMPX_lgamman_(QuarnFloat x, char* message_buffer, Integer* ifail, int /*buffer_length*/) {
  Report report("LGAMMA", message_buffer, ifail);
  QuarnFloat value = lgamma(x);
  if (is_whole_and_not_positive(x)) {
    report.fail(1, 99999, " ** On entry, X is a pole of the gamma function: X = %12.4e.", x);
  } else if (isinf(value) && !isinf(x)) {
    report.fail(2, 99998, " ** The logarithm of the gamma function of X overflows: X = %12.4e.", x);
  }
  return value;
}

QuarnFloat QuarnMPX_digamman_(QuarnFloat x, char* message_buffer, Integer* ifail, int /*buffer_length*/) {
  Report report("DIGAMMA", message_buffer, ifail);
  QuarnFloat value = digamma(x);
  if (isnan(value) && !isnan(x)) {
    report.fail(1, 99999, " ** On entry, X is a pole of the digamma function: X = %12.4e.", x);
  }
  return value;
}

QuarnFloat QuarnMPX_betan_(QuarnFloat x, QuarnFloat y, char* message_buffer, Integer* ifail, int /*buffer_length*/) {
  Report report("BETA", message_buffer, ifail);
  QuarnFloat value = beta(x, y);
  const bool finite = isfinite(x) && isfinite(y);
  const bool pole = is_whole_and_not_positive(x) || is_whole_and_not_positive(y);
  if (!isnan(x) && !isnan(y) && (isnan(value) || (isinf(value) && pole))) {
    report.fail(1, 99999, " ** On entry, X or Y is a pole of the beta function: X = %12.4e Y = %12.4e.", x, y);
  } else if (isinf(value) && finite) {
    report.fail(2, 99998, " ** The beta function of X and Y overflows: X = %12.4e Y = %12.4e.", x, y);
  } else if (value == 0 && finite && !is_whole_and_not_positive(x + y)) {
    report.fail(3, 99997, " ** The beta function of X and Y underflows: X = %12.4e Y = %12.4e.", x, y);
  }
  return value;
}

QuarnFloat QuarnMPX_erfcn_(QuarnFloat x, char* message_buffer, Integer* ifail, int /*buffer_length*/) {
  Report report("ERFC", message_buffer, ifail);
  QuarnFloat value = erfc(x);
  if (value == 0 && isfinite(x)) {
    report.fail(3, 99999, " ** The complement of the error function of X underflows: X = %12.4e.", x);
  }
  return value;
}

QuarnFloat QuarnMPX_gamma_(const QuarnFloat* x, Integer* ifail) {
  return with_buffer("GAMMA", ifail, QuarnMPX_gamman_, *x);
}
QuarnFloat QuarnMPX_lgamma_(const QuarnFloat* x, Integer* ifail) {
  return with_buffer("LGAMMA", ifail, QuarnMPX_lgamman_, *x);
}
QuarnFloat QuarnMPX_digamma_(const QuarnFloat* x, Integer* ifail) {
  return with_buffer("DIGAMMA", ifail, QuarnMPX_digamman_, *x);
}
QuarnFloat QuarnMPX_beta_(const QuarnFloat* x, const QuarnFloat* y, Integer* ifail) {
  return with_buffer("BETA", ifail, QuarnMPX_betan_, *x, *y);
}
QuarnFloat QuarnMPX_erfc_(const QuarnFloat* x, Integer* ifail) {
  return with_buffer("ERFC", ifail, QuarnMPX_erfcn_, *x);
}
QuarnFloat QuarnMPX_erf_(const QuarnFloat* x) { return erf(*x); }
}
