// Boost.Math with QuarnFloat: quadrature, root finding, minima and the functions that have generic implementations, at
// the working precision of the moment. Include it before the headers of Boost.Math.
//
// Boost takes a type's precision from compile-time constants where there are some; here its hooks for types whose
// precision is known at run time alone are used. Objects that keep tables, such as tanh_sinh, are made for the digits
// that are set when they are constructed. Where NDEBUG is not defined, assertions of Boost's tanh_sinh that hold for
// fixed precisions alone end the process: define BOOST_DISABLE_ASSERTS there.
#pragma once

#if __has_include(<boost/math/policies/policy.hpp>)
#include <boost/math/policies/policy.hpp>
#include <boost/math/tools/precision.hpp>

#include "quarn/numeric.hpp"

namespace boost {
namespace math {
namespace policies {

/// Not known when the program is compiled, unless the policy says so: Boost then asks tools::digits() at run time.
template <class Policy>
struct precision<QuarnFloat, Policy> {
  using type = typename Policy::precision_type;
};

}  // namespace policies

namespace tools {

/// The working precision in bits.
template <>
inline int digits<QuarnFloat>() noexcept {
  constexpr double kBitsPerDigit = 3.3219280948873623;
  return int(double(QuarnDigits()) * kBitsPerDigit) + 1;
}
template <>
inline QuarnFloat epsilon<QuarnFloat>() {
  return quarn::Precision10::epsilon();
}
template <>
inline QuarnFloat max_value<QuarnFloat>() {
  return std::numeric_limits<QuarnFloat>::max();
}
template <>
inline QuarnFloat min_value<QuarnFloat>() {
  return std::numeric_limits<QuarnFloat>::min();
}
template <>
inline QuarnFloat log_max_value<QuarnFloat>() {
  return QuarnFloat(2302585092);
}
template <>
inline QuarnFloat log_min_value<QuarnFloat>() {
  return QuarnFloat(-2302585090);
}

}  // namespace tools
}  // namespace math
}  // namespace boost

#endif
