// The functions of bounded numbers beside those of exact ones, and arguments for them.
#pragma once

#include "quarn/function_table.h"
#include "spectra.h"
#include "support/digits.h"

namespace bounded_functions {

using namespace spectra;

constexpr int kFine = 400;

inline QuarnBound error_bound(support::Random& random) {
  return random.once_in(4) ? QuarnBound() : QuarnBound(Real(int(random.between(1, 99)), -int(random.between(0, 60))));
}
/// An end of the interval, its middle, or between; never -0.
inline Real within(const Bounded<Real>& x, support::Random& random) {
  const support::Digits wide(kFine);
  return x.value + Real(double(random.between(-4, 4))) / 4 * x.error.value() + Real();
}

/// Of sizes that suit most functions, next to whole numbers and halves, tiny, and large.
inline Bounded<Real> argument(support::Random& random) {
  Real value = random_number<Real>(random);
  switch (random.between(0, 5)) {
    case 0:
      value = value * Real(1, int(random.between(-30, 3)));
      break;
    case 1:
      value = Real(double(random.between(-12, 12))) / 2 + value * Real(1, -int(random.between(1, 40)));
      break;
    case 2:
      value = Real(double(random.between(-3, 3)));
      break;
    case 3:
      value = value * 20;
      break;
    default:
      break;
  }
  return {value, error_bound(random)};
}

inline Real reference(Real (*f)(const Real&), const Real& x) {
  const support::Digits wide(kFine);
  return f(x);
}

struct Function {
  const char* name;
  Bounded<Real> (*bounded)(const Bounded<Real>&);
  Real (*exact)(const Real&);
};

#define TESK_FUNCTION(name) \
  { #name, proven::name, ::name }
const Function kFunctions[] = {
    TESK_FUNCTION(exp),   TESK_FUNCTION(expm1), TESK_FUNCTION(exp2),   TESK_FUNCTION(exp10),  TESK_FUNCTION(log),
    TESK_FUNCTION(log1p), TESK_FUNCTION(log2),  TESK_FUNCTION(log10),  TESK_FUNCTION(sqrt),   TESK_FUNCTION(cbrt),
    TESK_FUNCTION(sin),   TESK_FUNCTION(cos),   TESK_FUNCTION(tan),    TESK_FUNCTION(sinpi),  TESK_FUNCTION(cospi),
    TESK_FUNCTION(tanpi), TESK_FUNCTION(asin),  TESK_FUNCTION(acos),   TESK_FUNCTION(asinpi), TESK_FUNCTION(acospi),
    TESK_FUNCTION(atan),  TESK_FUNCTION(sinh),  TESK_FUNCTION(cosh),   TESK_FUNCTION(tanh),   TESK_FUNCTION(asinh),
    TESK_FUNCTION(acosh), TESK_FUNCTION(atanh), TESK_FUNCTION(tgamma), TESK_FUNCTION(lgamma), TESK_FUNCTION(digamma),
    TESK_FUNCTION(erf),   TESK_FUNCTION(erfc),  TESK_FUNCTION(atanpi), TESK_FUNCTION(floor),  TESK_FUNCTION(ceil),
    TESK_FUNCTION(trunc), TESK_FUNCTION(round), TESK_FUNCTION(rint)};
#undef TESK_FUNCTION

inline bool holds(const Bounded<Real>& result, const Real& exact) {
  const support::Digits wide(kFine);
  return !result.error.is_finite() || fabs(result.value - exact) <= result.error.value();
}
inline bool holds(const Bounded<Complex>& result, const Complex& exact) {
  const support::Digits wide(kFine);
  return !result.error.is_finite() || size(result.value - exact) <= result.error.value();
}

struct ComplexFunction {
  const char* name;
  Bounded<Complex> (*bounded)(const Bounded<Complex>&);
  Complex (*exact)(const Complex&);
};

#define TESK_FUNCTION(name) \
  { #name, proven::name, quarn::name }
const ComplexFunction kComplexFunctions[] = {
    TESK_FUNCTION(exp),    TESK_FUNCTION(log),  TESK_FUNCTION(log10), TESK_FUNCTION(sqrt),   TESK_FUNCTION(sin),
    TESK_FUNCTION(cos),    TESK_FUNCTION(tan),  TESK_FUNCTION(sinh),  TESK_FUNCTION(cosh),   TESK_FUNCTION(tanh),
    TESK_FUNCTION(asin),   TESK_FUNCTION(acos), TESK_FUNCTION(atan),  TESK_FUNCTION(asinh),  TESK_FUNCTION(acosh),
    TESK_FUNCTION(atanh),  TESK_FUNCTION(erf),  TESK_FUNCTION(erfc),  TESK_FUNCTION(tgamma), TESK_FUNCTION(lgamma),
    TESK_FUNCTION(digamma)};
#undef TESK_FUNCTION

/// A disc, and a number in it or on its edge.
struct ComplexSample {
  explicit ComplexSample(support::Random& random) : given{Complex(argument(random).value, argument(random).value)} {
    given.error = error_bound(random);
    if (random.once_in(4)) {
      (random.once_in(2) ? given.value.re : given.value.im) = 0;
    }
    static const char* const kDirections[][2] = {{"1", "0"},     {"0", "-1"},     {"-1", "0"},     {"0", "1"},
                                                 {"0.6", "0.8"}, {"-0.8", "0.6"}, {"0.2", "-0.3"}, {"0", "0"}};
    const auto& direction = kDirections[random.between(0, 7)];
    const support::Digits wide(kFine);
    const Real radius = given.error.value();
    exact = given.value + Complex(Real(direction[0]) * radius, Real(direction[1]) * radius) + Complex();
  }
  Bounded<Complex> given;
  Complex exact;
};

}  // namespace bounded_functions
