// Polynomials in the C++ interface; coefficients run from the highest power down. Part of tesk2mp.hpp; polynomials.h
// documents methods and costs. Products are those of convolve() in transforms.hpp.
#pragma once

#include <algorithm>
#include <utility>
#include <vector>

#include "tesk2mp/eigen.hpp"

namespace tesk2mp {
namespace detail {

/// The coefficients of a polynomial, of which there is at least one.
template <class T>
std::vector<T> coefficients_of(const char* routine, Integer position, const VectorView<const T>& a) {
  require(a.size() > 0, routine, position, "a polynomial has at least one coefficient");
  return a.to_vector();
}

}  // namespace detail

/// The zeros, largest moduli first, each with a bound of its error; the coefficients are taken as exact. Throws
/// InvalidArgument when the first coefficient is 0 or one is not finite.
///
/// @code
/// const auto zeros = tesk2mp::polynomial_zeros(std::vector<tesk2mp::Real>{1, 0, -2});  // sqrt(2), -sqrt(2)
/// @endcode
template <VectorSource A>
std::vector<Zero> polynomial_zeros(const A& coefficients) {
  using T = Element<A>;
  const char* routine = detail::name<T>("DPZEROS", "ZPZEROS");
  const std::vector<T> a = detail::coefficients_of<T>(routine, 2, coefficients);
  const Integer degree = detail::count_of(a.size() - 1);
  std::vector<Complex> zeros(a.size() - 1);
  std::vector<Real> errors(zeros.size());
  Integer info = 0;
  detail::pick<T>(QuarnMPX_dpzeros_, QuarnMPX_zpzeros_)(degree, a.data(), zeros.data(), errors.data(), &info);
  detail::require(info >= 0, routine, 2, "the first coefficient is 0, or one is not finite");
  if (info > 0) {
    throw NumericalFailure(routine, info, 0, "numbers leave the range of exponents", {});
  }
  std::vector<Zero> result;
  for (std::size_t i = 0; i < zeros.size(); ++i) {
    result.push_back({zeros[i], errors[i]});
  }
  return result;
}

/// The value at z, good to the last digit whatever cancels.
template <VectorSource A>
Element<A> polynomial_value(const A& coefficients, const Element<A>& z) {
  using T = Element<A>;
  const std::vector<T> a = detail::coefficients_of<T>(detail::name<T>("DPEVAL", "ZPEVAL"), 2, coefficients);
  T value;
  Integer info = 0;
  detail::pick<T>(QuarnMPX_dpeval_, QuarnMPX_zpeval_)(detail::count_of(a.size() - 1), a.data(), &z, &value, &info);
  return value;
}

template <Scalar T>
struct PolynomialQuotient {
  std::vector<T> quotient;
  std::vector<T> remainder;
};
/// a = quotient b + remainder; the remainder has one coefficient less than b. Throws InvalidArgument when the first
/// coefficient of b is 0.
template <VectorSource A, VectorSource B>
requires std::same_as<Element<A>, Element<B>> PolynomialQuotient<Element<A>> polynomial_quotient(const A& a,
                                                                                                 const B& b) {
  using T = Element<A>;
  const char* routine = detail::name<T>("DPDIV", "ZPDIV");
  const std::vector<T> dividend = detail::coefficients_of<T>(routine, 2, a);
  const std::vector<T> divisor = detail::coefficients_of<T>(routine, 4, b);
  PolynomialQuotient<T> result{
      std::vector<T>(dividend.size() < divisor.size() ? 0 : dividend.size() - divisor.size() + 1),
      std::vector<T>(divisor.size() - 1)};
  Integer info = 0;
  detail::pick<T>(QuarnMPX_dpdiv_, QuarnMPX_zpdiv_)(detail::count_of(dividend.size() - 1), dividend.data(),
                                                    detail::count_of(divisor.size() - 1), divisor.data(),
                                                    result.quotient.data(), result.remainder.data(), &info);
  detail::require(info == 0, routine, 4, "the first coefficient of the divisor is 0");
  return result;
}

/// The coefficients of the polynomial with these zeros and first coefficient 1.
template <VectorSource X>
std::vector<Element<X>> polynomial_from_zeros(const X& zeros) {
  using T = Element<X>;
  const std::vector<T> x = VectorView<const T>(zeros).to_vector();
  std::vector<T> a(x.size() + 1);
  Integer info = 0;
  detail::pick<T>(QuarnMPX_dpfrom_, QuarnMPX_zpfrom_)(detail::count_of(x.size()), x.data(), a.data(), &info);
  return a;
}

}  // namespace tesk2mp
