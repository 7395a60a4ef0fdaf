// Boost.Math over QuarnFloat: quadrature and roots to the working precision.
// Assertions of tanh_sinh hold for fixed precisions alone.
#define BOOST_DISABLE_ASSERTS
#include <doctest/doctest.h>

#include <boost/math/quadrature/exp_sinh.hpp>
#include <boost/math/quadrature/tanh_sinh.hpp>
#include <boost/math/tools/roots.hpp>

#include "tesk2mp/boost_support.hpp"

namespace {

double units(const QuarnFloat& x) { return FloatToDouble(fabs(x) / quarn::Precision10::epsilon()); }

}  // namespace

TEST_CASE("quadrature reaches the working precision") {
  for (const int digits : {20, 60}) {
    QuarnSetDigits(digits);
    boost::math::quadrature::tanh_sinh<QuarnFloat> finite;
    const QuarnFloat quarter =
        finite.integrate([](const QuarnFloat& x) { return QuarnFloat(1) / (1 + x * x); }, QuarnFloat(0), QuarnFloat(1));
    CHECK(units(quarter * 4 - quarn::pi()) < 100);
    // A root at the end
    const QuarnFloat root = finite.integrate([](const QuarnFloat& x) { return sqrt(x); }, QuarnFloat(0), QuarnFloat(1));
    CHECK(units(root * 3 - 2) < 100);
    boost::math::quadrature::exp_sinh<QuarnFloat> half_line;
    // Boost's own tolerance is the square root of epsilon.
    const QuarnFloat tolerance = pow(quarn::Precision10::epsilon(), QuarnFloat("0.8"));
    const QuarnFloat one = half_line.integrate([](const QuarnFloat& x) { return exp(-x); }, tolerance);
    CHECK(units(one - 1) < 1e4);
  }
}

TEST_CASE("root finders reach the working precision") {
  for (const int digits : {20, 100}) {
    QuarnSetDigits(digits);
    const auto f = [](const QuarnFloat& x) { return x * x * x - 2; };
    boost::uintmax_t iterations = 500;
    const boost::math::tools::eps_tolerance<QuarnFloat> close(boost::math::tools::digits<QuarnFloat>() - 3);
    const auto bracket = boost::math::tools::toms748_solve(f, QuarnFloat(1), QuarnFloat(2), close, iterations);
    CHECK(units((bracket.first + bracket.second) / 2 - cbrt(QuarnFloat(2))) < 50);
    iterations = 100;
    const QuarnFloat root = boost::math::tools::newton_raphson_iterate(
        [](const QuarnFloat& x) { return std::make_pair(x * x - 2, 2 * x); }, QuarnFloat(1.5), QuarnFloat(1),
        QuarnFloat(2), boost::math::tools::digits<QuarnFloat>() - 4, iterations);
    CHECK(units(root - sqrt(QuarnFloat(2))) < 50);
  }
}
