// Functions, sums and transforms of bounded numbers: what numbers within the bounds of the data have as results at many
// digits lies within the bounds.
#include "bounded_functions.h"

using namespace bounded_functions;

TEST_CASE("functions of bounded real numbers") {
  support::Random random;
  for (const int digits : {1, 2, 9, 30}) {
    const support::Digits scope(digits);
    for (const Function& f : kFunctions) {
      std::size_t finite = 0;
      for (int round = 0; round < 40; ++round) {
        const Bounded<Real> x = argument(random);
        const Bounded<Real> result = f.bounded(x);
        const Real exact = reference(f.exact, within(x, random));
        finite += result.error.is_finite() ? 1 : 0;
        CAPTURE(f.name);
        CAPTURE(digits);
        CAPTURE(x.value.to_string());
        CAPTURE(x.error.value().to_string());
        // Beyond the domain nothing is known.
        CHECK(((isnan(exact) || isinf(exact)) ? !result.error.is_finite() : holds(result, exact)));
      }
      CAPTURE(f.name);
      CHECK(finite >= 1);
    }
  }
}

TEST_CASE("functions of two bounded real numbers") {
  support::Random random;
  for (const int digits : {1, 2, 20}) {
    const support::Digits scope(digits);
    for (int round = 0; round < 300; ++round) {
      const Bounded<Real> x = argument(random);
      const Bounded<Real> y = random.once_in(3) ? proven::exact(Real(double(random.between(-7, 7)))) : argument(random);
      const Real exact_x = within(x, random);
      const Real exact_y = within(y, random);
      CAPTURE(digits);
      CAPTURE(x.value.to_string());
      CAPTURE(x.error.value().to_string());
      CAPTURE(y.value.to_string());
      CAPTURE(y.error.value().to_string());
      const auto check = [&](const char* name, const Bounded<Real>& result, Real (*f)(const Real&, const Real&)) {
        CAPTURE(name);
        const support::Digits wide(kFine);
        const Real exact = f(exact_x, exact_y);
        CHECK(((isnan(exact) || isinf(exact)) ? !result.error.is_finite() : holds(result, exact)));
      };
      check("pow", proven::pow(x, y), ::pow);
      check("atan2", proven::atan2(x, y), ::atan2);
      check("hypot", proven::hypot(x, y), ::hypot);
      check("fmod", proven::fmod(x, y), ::fmod);
      check("remainder", proven::remainder(x, y), ::remainder);
      check("fdim", proven::fdim(x, y), ::fdim);
      check("beta", proven::beta(x, y), ::beta);
      check("fmin", proven::fmin(x, y), ::fmin);
      check("fmax", proven::fmax(x, y), ::fmax);
    }
  }
}

TEST_CASE("arithmetic and functions of bounded complex numbers") {
  support::Random random;
  for (const int digits : {1, 2, 9, 25}) {
    const support::Digits scope(digits);
    for (const ComplexFunction& f : kComplexFunctions) {
      std::size_t finite = 0;
      for (int round = 0; round < 15; ++round) {
        const ComplexSample z(random);
        const Bounded<Complex> result = f.bounded(z.given);
        const support::Digits wide(120);
        const Complex exact = f.exact(z.exact);
        finite += result.error.is_finite() ? 1 : 0;
        CAPTURE(f.name);
        CAPTURE(digits);
        CAPTURE(z.given.value.re.to_string());
        CAPTURE(z.given.value.im.to_string());
        CAPTURE(z.given.error.value().to_string());
        CHECK((isfinite(exact.re) && isfinite(exact.im) ? holds(result, exact) : !result.error.is_finite()));
      }
      CAPTURE(f.name);
      CHECK(finite >= 1);
    }
    for (int round = 0; round < 100; ++round) {
      const ComplexSample z(random);
      const ComplexSample w(random);
      const auto exactly = [&](const auto& f) {
        const support::Digits wide(kFine);
        return f(z.exact, w.exact);
      };
      CHECK(holds(z.given + w.given, exactly([](const auto& a, const auto& b) { return a + b; })));
      CHECK(holds(z.given - w.given, exactly([](const auto& a, const auto& b) { return a - b; })));
      CHECK(holds(z.given * w.given, exactly([](const auto& a, const auto& b) { return a * b; })));
      if (size(w.exact) != 0) {
        CHECK(holds(z.given / w.given, exactly([](const auto& a, const auto& b) { return a / b; })));
      }
      CHECK(holds(proven::abs(z.given), exactly([](const auto& a, const auto&) { return quarn::abs(a); })));
      CHECK(holds(proven::arg(z.given), exactly([](const auto& a, const auto&) { return quarn::arg(a); })));
      const auto whole = proven::exact(Complex(Real(double(random.between(1, 5)))));
      const support::Digits wide(kFine);
      const Complex power = quarn::pow(z.exact, whole.value);
      const support::Digits narrow(digits);
      CHECK(holds(proven::pow(z.given, whole), power));
    }
  }
}

TEST_CASE("terms of functions") {
  // Nearly attained where the derivative is largest, at few digits.
  const support::Digits scope(2);
  const auto error = [](const char* value, const char* error_of_x, auto f) {
    return f(Bounded<Real>{Real(value), QuarnBound(Real(error_of_x))}).error.value();
  };
  const auto between = [](const Real& x, const char* low, const char* high) {
    const support::Digits wide(20);
    return Real(low) <= x && x <= Real(high);
  };
  using B = const Bounded<Real>&;
  CHECK(between(error("1", "0.5", [](B x) { return exp(x); }), "2.2", "2.3"));
  CHECK(between(error("1", "0.5", [](B x) { return log(x); }), "1", "1.01"));
  CHECK(between(error("1", "0.5", [](B x) { return log1p(x); }), "0.33", "0.35"));
  CHECK(between(error("0", "0.5", [](B x) { return atan(x); }), "0.5", "0.51"));
  CHECK(between(error("1", "0.5", [](B x) { return atan(x); }), "0.4", "0.41"));
  CHECK(between(error("1", "1", [](B x) { return sqrt(x); }), "1.04", "1.06"));
  CHECK(between(error("1", "0.75", [](B x) { return sqrt(x); }), "0.79", "0.81"));
  CHECK(between(error("0", "1", [](B x) { return cbrt(x); }), "1.587", "1.59"));
  CHECK(between(error("0", "1", [](B x) { return asin(x); }), "1.5707", "1.572"));
  CHECK(between(error("0", "0.5", [](B x) { return asin(x); }), "0.577", "0.59"));
  CHECK(between(error("0", "0.5", [](B x) { return atanh(x); }), "0.666", "0.67"));
  CHECK(between(error("2", "1", [](B x) { return acosh(x); }), "1.4", "1.5"));
  CHECK(between(error("0", "0.5", [](B x) { return tan(x); }), "2", "2.1"));
  CHECK(between(error("0", "0.5", [](B x) { return sinh(x); }), "0.56", "0.57"));
  CHECK(between(error("1", "0.5", [](B x) { return cosh(x); }), "1.06", "1.15"));
  CHECK(between(error("0", "0.5", [](B x) { return erf(x); }), "0.564", "0.57"));
  CHECK(between(error("1", "0.5", [](B x) { return digamma(x); }), "3", "3.1"));
  CHECK(between(error("1", "0.5", [](B x) { return tgamma(x); }), "1.7", "1.8"));
  CHECK(between(error("1", "0.5", [](B x) { return lgamma(x); }), "0.98", "1"));
  CHECK(between(error("2", "0.5", [](B x) { return proven::pow(x, proven::exact(3)); }), "9.3", "9.5"));
  CHECK(between(error("0.5", "0.1", [](B x) { return proven::floor(x); }), "0", "0"));
  CHECK(between(error("0.95", "0.1", [](B x) { return proven::floor(x); }), "1", "1"));
  CHECK(between(error("-0.95", "0.04", [](B x) { return proven::logb(x); }), "0", "0"));
  CHECK(between(error("-0.95", "0.05", [](B x) { return proven::logb(x); }), "1", "1"));
  CHECK_FALSE(proven::logb({Real("0.1"), QuarnBound(Real("0.1"))}).error.is_finite());
  CHECK(proven::logb(proven::exact(Real("0.03"))).value == -2);
  // Zero width: half a unit, or nothing.
  CHECK(between(error("2", "0", [](B x) { return sqrt(x); }), "0.05", "0.06"));
  CHECK(error("4", "0", [](B x) { return sqrt(x); }) == 0);
  CHECK(error("0", "0", [](B x) { return exp(x); }) == 0);
  CHECK(proven::pow(proven::exact(3), proven::exact(4)).error.is_zero());
  CHECK(!proven::pow(proven::exact(7), proven::exact(4)).error.is_zero());
  // Poles, cuts and ends of domains.
  const auto unknown = [](const Bounded<Real>& x) { return !x.error.is_finite(); };
  const Bounded<Real> near_zero{Real("0.1"), QuarnBound(Real("0.1"))};
  CHECK(unknown(log(near_zero)));
  CHECK(unknown(tgamma(near_zero)));
  CHECK(unknown(lgamma(Bounded<Real>{Real("-1.5"), QuarnBound(Real("0.5"))})));
  CHECK(unknown(tan(Bounded<Real>{Real("1.5"), QuarnBound(Real("0.08"))})));
  CHECK(unknown(proven::tanpi(Bounded<Real>{Real("0.4"), QuarnBound(Real("0.1"))})));
  CHECK(unknown(acos(Bounded<Real>{Real("0.9"), QuarnBound(Real("0.2"))})));
  CHECK(unknown(proven::atan2({Real("0.1"), QuarnBound(Real("0.1"))}, proven::exact(-1))));
  CHECK(!unknown(proven::atan2({Real("0.2"), QuarnBound(Real("0.1"))}, proven::exact(-1))));
  const Bounded<Complex> across{Complex(-1, Real("0.1")), QuarnBound(Real("0.1"))};
  CHECK(!log(across).error.is_finite());
  CHECK(!sqrt(across).error.is_finite());
  CHECK(!asin(Bounded<Complex>{Complex(2, Real("0.1")), QuarnBound(Real("0.1"))}).error.is_finite());
  CHECK(!tgamma(Bounded<Complex>{Complex(-1, Real("0.1")), QuarnBound(Real("0.1"))}).error.is_finite());
  // Ends of the range, and what is not a number.
  CHECK(unknown(exp(proven::exact(Real(1, 12)))));
  CHECK(exp(proven::exact(-Real(1, 12))).error == QuarnBound::power_of_ten(-999'999'999));
  CHECK(unknown(exp(proven::exact(Real("nan")))));
  CHECK(unknown(sin(Bounded<Real>{1, QuarnBound::infinity()})));
  CHECK(unknown(exp(Bounded<Real>{Real(1, 9), QuarnBound(Real(3, 9))})));
}

TEST_CASE("sums, norms and transforms of bounded numbers") {
  support::Random random;
  for (const int digits : {1, 2, 30}) {
    for (int round = 0; round < 12; ++round) {
      const support::Digits scope(digits);
      const auto n = std::size_t(random.between(2, 9));
      std::vector<Bounded<Complex>> x;
      std::vector<Bounded<Real>> y;
      std::vector<Complex> exact_x;
      std::vector<Real> exact_y;
      for (std::size_t k = 0; k < n; ++k) {
        const ComplexSample z(random);
        x.push_back(z.given);
        exact_x.push_back(z.exact);
        y.push_back({random_number<Real>(random), error_bound(random)});
        exact_y.push_back(within(y.back(), random));
      }
      const auto at_many = [](const auto& f) {
        const support::Digits wide(kFine);
        return f();
      };
      using QuarnKind = QuarnRealTransform::Kind;
      for (const QuarnDivisor divisor : {QuarnDivisor::one, QuarnDivisor::root, QuarnDivisor::length}) {
        for (const auto direction : {tesk2mp::Direction::forward, tesk2mp::Direction::backward}) {
          const auto result = proven::transform(x, direction, divisor);
          std::vector<Complex> exact = exact_x;
          at_many([&] {
            return QuarnTransformRows(direction == tesk2mp::Direction::backward, exact.data(), Integer(n), 1, 1,
                                      Integer(n), divisor);
          });
          for (std::size_t k = 0; k < n; ++k) {
            CHECK(holds(result[k], exact[k]));
          }
        }
        for (const QuarnKind kind : {QuarnKind::dct1, QuarnKind::dct2, QuarnKind::dct3, QuarnKind::dct4,
                                     QuarnKind::dst1, QuarnKind::dst2, QuarnKind::dst3, QuarnKind::dst4}) {
          const auto result = proven::transform(kind, y, divisor);
          std::vector<Real> exact = exact_y;
          at_many([&] {
            QuarnRealTransform(kind, Integer(n)).run(exact.data(), 1, exact.data(), 1, divisor);
            return 0;
          });
          for (std::size_t k = 0; k < n; ++k) {
            CHECK(holds(result[k], exact[k]));
          }
        }
      }
      CHECK(holds(proven::sum(y), at_many([&] {
                    Real total;
                    for (const Real& each : exact_y) {
                      total += each;
                    }
                    return total;
                  })));
      CHECK(holds(proven::norm(y), at_many([&] { return proven::norm(proven::exact(exact_y)).value; })));
      const auto a = proven::as_matrix(x);
      const auto b = proven::as_matrix(x, true);
      const auto product = proven::multiply(a, b);
      for (std::size_t i = 0; i < n; ++i) {
        CHECK(holds(product(i, 0), at_many([&] { return exact_x[i] * exact_x[0]; })));
      }
      CHECK(holds(proven::norm(tesk2mp::Norm::one, a), at_many([&] {
                    Real total;
                    for (const Complex& z : exact_x) {
                      total += quarn::abs(z);
                    }
                    return total;
                  })));
    }
  }
  // Nearly attained.
  const support::Digits scope(2);
  const Bounded<Complex> one{1, QuarnBound(Real("0.5"))};
  CHECK(proven::transform(std::vector<Bounded<Complex>>{one, one}, tesk2mp::Direction::forward, QuarnDivisor::one)[0]
            .error >= QuarnBound(Real("1.05")));
  CHECK(proven::multiply(proven::as_matrix(std::vector<Bounded<Complex>>{one}),
                         proven::as_matrix(std::vector<Bounded<Complex>>{one}))(0, 0)
            .error >= QuarnBound(Real("1.25")));
  tesk2mp::Matrix<Real> whole(2, 2);
  whole(0, 0) = 3;
  whole(1, 0) = 4;
  CHECK(proven::multiply(whole, whole)(1, 0).error.is_zero());
  CHECK(proven::norm(tesk2mp::Norm::frobenius, whole).error.is_zero());
  whole(0, 0) = 11;
  CHECK(!proven::multiply(whole, whole)(0, 0).error.is_zero());
}

TEST_CASE("zeros of functions of bounded numbers") {
  const auto check = [](const auto& f, const Real& low, const Real& high, Real (*exact)()) {
    for (const int digits : {1, 2, 20, 120}) {
      const auto found = proven::to_digits(digits, [&] { return proven::zero(f, low, high); });
      const support::Digits wide(kFine);
      CAPTURE(digits);
      CHECK(found.error.is_finite());
      CHECK(holds(found, exact()));
    }
  };
  using B = const Bounded<Real>&;
  check([](B x) { return cos(x); }, 1, 2, [] { return tesk2mp::pi() / 2; });
  check([](B x) { return x * x - proven::exact(2); }, 0, 2, [] { return sqrt(Real(2)); });
  check([](B x) { return exp(x) - proven::exact(3); }, 0, 100, [] { return log(Real(3)); });
  check([](B x) { return x * x * x - proven::exact(Real(1, -60)) * x - x * x + proven::exact(Real(1, -60)); },
        Real("0.5"), 7, [] { return Real(1); });
  check([](B x) { return proven::exact(1) / proven::exact(3) - x; }, -1, 1, [] { return Real(1) / 3; });
  // A pole changes the sign too, and is none; nor is what the digits leave open; two signs that are alike.
  const support::Digits scope(20);
  CHECK(!proven::zero([](B x) { return tan(x); }, Real(1), Real(2)).error.is_finite());
  CHECK(!proven::zero([](B x) { return sin(x) * sin(x) + cos(x) * cos(x) - proven::exact(1); }, Real(1), Real(2))
             .error.is_finite());
  CHECK_THROWS_AS((void)proven::zero([](B x) { return exp(x); }, Real(1), Real(2)), tesk2mp::InvalidArgument);
  CHECK_THROWS_AS((void)proven::zero([](B x) { return x; }, Real(2), Real(1)), tesk2mp::InvalidArgument);
  CHECK(proven::zero([](B x) { return x - proven::exact(3); }, Real(1), Real(5)).error.is_zero());
}

// Digits are neither lost by operands longer than the working ones nor by steps that leave the range of exponents.
TEST_CASE("bounds where numbers are long, huge or no numbers") {
  const auto long_number = [](const char* text) {
    const support::Digits wide(30);
    return Real(text);
  };
  const Real imaginary = long_number("1.23456789012");
  const Real exponent = long_number("10000.5");
  const Real whole = long_number("10001");
  const support::Digits scope(3);
  const Bounded<Real> size = proven::abs(proven::exact(Complex(Real(), -imaginary)));
  CHECK(size.value - imaginary == 0);
  CHECK(size.error.is_zero());
  const Bounded<Real> power = proven::pow(proven::exact(Real(100)), proven::exact(exponent));
  CHECK(power.value / Real("1e20001") == 1);
  CHECK(proven::pow(proven::exact(Real(-1)), proven::exact(whole)).value == -1);

  const Bounded<Real> tiny = proven::atan2(proven::exact(Real("1e-999999999")), proven::exact(Real("1e10")));
  CHECK(!tiny.error.is_zero());
  CHECK(proven::atan2(proven::exact(Real()), proven::exact(Real(7))).error.is_zero());

  // The power is within the range, and its derivative's divisor is not.
  const Bounded<Real> moved = proven::pow({Real("2e10"), QuarnBound(Real(1))}, proven::exact(Real(-97'077'670)));
  CHECK(moved.error >= QuarnBound(moved.value) * QuarnBound(Real("0.004")));

  const Real nan = Real(0) / Real(0);
  for (const bool first : {false, true}) {
    const auto x = proven::exact(first ? nan : Real(1));
    const auto y = proven::exact(first ? Real(1) : nan);
    CHECK(!proven::fmin(x, y).error.is_finite());
    CHECK(!proven::fmax(x, y).error.is_finite());
  }
}
