// Gamma and error functions that throw where the functions of quarn/functions.h return NaN, infinity or zero. Part of
// tesk2mp.hpp.
#pragma once

#include "tesk2mp/special.h"
#include "tesk2mp/views.hpp"

namespace tesk2mp {
namespace checked {

/// Every one throws InvalidArgument at a pole, NumericalFailure where the result overflows or underflows.
///
/// @code
/// tesk2mp::checked::gamma(tesk2mp::Real(-1));  // throws InvalidArgument: a pole
/// @endcode
inline Real gamma(const Real& x) {
  Real value;
  detail::call([&](Integer* ifail) { value = QuarnMPX_gamma_(&x, ifail); }, {2, 3});
  return value;
}
inline Real lgamma(const Real& x) {
  Real value;
  detail::call([&](Integer* ifail) { value = QuarnMPX_lgamma_(&x, ifail); }, {2, 3});
  return value;
}
inline Real digamma(const Real& x) {
  Real value;
  detail::call([&](Integer* ifail) { value = QuarnMPX_digamma_(&x, ifail); }, {2, 3});
  return value;
}
inline Real beta(const Real& x, const Real& y) {
  Real value;
  detail::call([&](Integer* ifail) { value = QuarnMPX_beta_(&x, &y, ifail); }, {2, 3});
  return value;
}
inline Real erfc(const Real& x) {
  Real value;
  detail::call([&](Integer* ifail) { value = QuarnMPX_erfc_(&x, ifail); }, {2, 3});
  return value;
}
inline Real erf(const Real& x) { return QuarnMPX_erf_(&x); }

}  // namespace checked
}  // namespace tesk2mp
