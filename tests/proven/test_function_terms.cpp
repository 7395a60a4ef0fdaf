// Each term of the bounds of functions where it decides. With 60 digits the rounding of a result means nothing, so that
// what a bound lets the arguments do is all of it; with one or two it is the other way round. mutations.py deletes the
// terms one by one.
#include "bounded_functions.h"

using namespace bounded_functions;

namespace {

constexpr int kManyDigits = 60;
const char* const kErrors[] = {"1e-20", "0.01", "0.25"};

Real number(const char* text) {
  const support::Digits wide(kManyDigits);
  return Real(text);
}
Bounded<Real> bounded(const char* value, const char* error) { return {number(value), QuarnBound(number(error))}; }
Bounded<Complex> bounded(const Complex& value, const char* error) { return {value, QuarnBound(number(error))}; }

/// Is the bound at least this, and at most 1.001 of it?
bool is_just(const QuarnBound& bound, const char* least) {
  const support::Digits wide(kFine);
  const Real error = bound.value();
  return error >= number(least) && error <= number(least) * number("1.001");
}

/// f at both ends of the interval.
void check_ends(const Function& f, const Bounded<Real>& x) {
  const Bounded<Real> result = f.bounded(x);
  for (const int end : {-1, 1}) {
    const support::Digits wide(kFine);
    const Real exact = f.exact(x.value + end * x.error.value());
    CAPTURE(f.name);
    CAPTURE(x.value.to_string());
    CAPTURE(x.error.value().to_string());
    CHECK(((isnan(exact) || isinf(exact)) ? !result.error.is_finite() : holds(result, exact)));
  }
}

using OfTwo = Real (*)(const Real&, const Real&);

/// f at the four corners.
void check_corners(const char* name, const Bounded<Real>& result, OfTwo f, const Bounded<Real>& x,
                   const Bounded<Real>& y) {
  for (const int end_x : {-1, 1}) {
    for (const int end_y : {-1, 1}) {
      const support::Digits wide(kFine);
      const Real exact = f(x.value + end_x * x.error.value(), y.value + end_y * y.error.value());
      CAPTURE(name);
      CAPTURE(x.value.to_string());
      CAPTURE(x.error.value().to_string());
      CAPTURE(y.value.to_string());
      CAPTURE(y.error.value().to_string());
      CHECK(((isnan(exact) || isinf(exact)) ? !result.error.is_finite() : holds(result, exact)));
    }
  }
}

}  // namespace

TEST_CASE("terms of functions of a real number") {
  const support::Digits scope(kManyDigits);
  for (const Function& f : kFunctions) {
    for (const char* error : kErrors) {
      for (const char* value : {"1e-5", "0.01", "0.2", "0.3", "0.5", "0.7", "1.01", "1.25", "1.3", "1.57", "2.6", "5.2",
                                "-0.4", "-0.6", "-1.3", "-2.6", "-3.4"}) {
        check_ends(f, bounded(value, error));
      }
    }
  }
  check_ends({"digamma", proven::digamma, ::digamma}, bounded("-10000000.5", "1e-20"));
}

TEST_CASE("terms of functions of two real numbers") {
  const support::Digits scope(kManyDigits);
  // Movements along the gradient of hypot and along that of the angle, and of one argument alone.
  const char* const cases[][4] = {
      {"0.3", "3e-21", "0.4", "4e-21"},  {"0.3", "4e-21", "0.4", "3e-21"}, {"0.3", "0.2", "0.4", "0.15"},
      {"0.5", "0.125", "0", "0.216506"}, {"1.7", "1e-20", "2.3", "0"},     {"1.7", "0", "2.3", "1e-20"},
      {"1.7", "0.25", "2.3", "0"},       {"1.7", "0", "2.3", "0.25"},      {"0.4", "0.01", "0.3", "0.01"},
      {"7.3", "1e-20", "2", "0"},        {"7.3", "0", "2", "1e-20"},       {"7.6", "1e-20", "2", "1e-20"},
      {"2", "0.25", "3", "0"},           {"2", "0.25", "-3", "0"},         {"0.2", "0.01", "1.3", "0"},
      {"-1.7", "0.25", "3", "0"},        {"2.5", "0", "1.5", "0.25"},      {"0.001", "0.0002", "5", "0"},
      {"0.3", "0.05", "-1.5", "0"},      {"1.7", "0.25", "0.001", "0.1"},  {"0.4", "0.25", "0.001", "0.1"}};
  for (const auto& [value_x, error_x, value_y, error_y] : cases) {
    const Bounded<Real> x = bounded(value_x, error_x);
    const Bounded<Real> y = bounded(value_y, error_y);
    check_corners("pow", proven::pow(x, y), ::pow, x, y);
    check_corners(
        "atan2", proven::atan2(y, x), [](const Real& a, const Real& b) { return ::atan2(b, a); }, x, y);
    check_corners("hypot", proven::hypot(x, y), ::hypot, x, y);
    check_corners("fmin", proven::fmin(x, y), ::fmin, x, y);
    check_corners("fmax", proven::fmax(x, y), ::fmax, x, y);
    check_corners("fdim", proven::fdim(x, y), ::fdim, x, y);
    check_corners("fmod", proven::fmod(x, y), ::fmod, x, y);
    check_corners("remainder", proven::remainder(x, y), ::remainder, x, y);
    check_corners("beta", proven::beta(x, y), ::beta, x, y);
    for (const char* count : {"0", "1", "2", "5"}) {
      const Bounded<Real> k = proven::exact(number(count));
      check_corners("binomial", proven::binomial(x, k), ::binomial, x, k);
    }
  }
  CHECK(proven::remainder(bounded("7.5", "0.1"), proven::exact(2)).error <= QuarnBound(number("0.1000001")));
  CHECK(!proven::remainder(bounded("7", "0.1"), proven::exact(2)).error.is_finite());
  CHECK(proven::fdim(bounded("1", "0.1"), bounded("2", "0.1")).error.is_zero());
  CHECK(is_just(proven::fdim(bounded("1", "0.1"), bounded("1.1", "0.1")).error, "0.2"));
  CHECK(!proven::fdim(proven::exact(number("nan")), proven::exact(1)).error.is_finite());
  CHECK(!proven::fdim(proven::exact(1), proven::exact(number("inf"))).error.is_finite());
  CHECK(!proven::beta(bounded("0.1", "0.1"), proven::exact(1)).error.is_finite());
  CHECK(proven::beta(bounded("-1.5", "1e-9"), bounded("0.3", "1e-9")).error <= QuarnBound(number("1e-7")));
  // The digits of digamma(x + y) - digamma(x) are lost, and a bound of digamma' says what is left.
  CHECK(proven::beta(bounded("5", "1e-20"), proven::exact(number("1e-30"))).error <= QuarnBound(number("1e-19")));
  CHECK(proven::binomial(proven::exact(10), proven::exact(3)).error.is_zero());
  CHECK(!proven::binomial(bounded("10", "0.1"), bounded("3", "0.1")).error.is_finite());
}

TEST_CASE("terms of functions of a complex number") {
  const support::Digits scope(kManyDigits);
  const char* const directions[][2] = {{"1", "0"},     {"-1", "0"},     {"0", "1"},       {"0", "-1"},
                                       {"0.6", "0.8"}, {"-0.8", "0.6"}, {"-0.6", "-0.8"}, {"0.8", "-0.6"}};
  const Complex points[] = {{number("0.3"), number("0.3")},
                            {number("1e-5"), 0},
                            {0, number("1e-5")},
                            {number("1.3"), number("0.7")},
                            {number("-0.6"), number("0.3")},
                            {number("-2.5"), number("0.3")},
                            {number("0.1"), number("0.1")},
                            {1, 1},
                            {1, number("1e-5")},
                            {1'000'000, 1'000'000},
                            {number("0.2"), number("2.7")},
                            {number("2.7"), number("-0.3")},
                            {number("1.5708"), number("0.3")},
                            {number("0.3"), number("1.5708")},
                            {number("5.2"), number("0.3")}};
  for (const ComplexFunction& f : kComplexFunctions) {
    for (const Complex& point : points) {
      for (const char* error : kErrors) {
        const Bounded<Complex> z = bounded(point, error);
        if (point.re > 1000 && f.exact != static_cast<Complex (*)(const Complex&)>(quarn::lgamma)) {
          continue;
        }
        const Bounded<Complex> result = f.bounded(z);
        for (const auto& [re, im] : directions) {
          if (!result.error.is_finite()) {
            break;
          }
          const support::Digits wide(120);
          const Complex exact = f.exact(point + Complex(number(re) * number(error), number(im) * number(error)));
          CAPTURE(f.name);
          CAPTURE(point.re.to_string());
          CAPTURE(point.im.to_string());
          CAPTURE(error);
          CHECK(holds(result, exact));
        }
      }
    }
  }
  for (const char* error : kErrors) {
    const auto check_power = [&](const Complex& z, const char* of_z, const Complex& w, const char* of_w) {
      const Bounded<Complex> power = proven::pow(bounded(z, of_z), bounded(w, of_w));
      for (const auto& [re, im] : directions) {
        const support::Digits wide(120);
        CHECK(holds(power, quarn::pow(z + Complex(number(re) * number(of_z), number(im) * number(of_z)),
                                      w + Complex(number(re) * number(of_w), number(im) * number(of_w)))));
      }
    };
    check_power({number("2.3"), 0}, error, {3, 0}, "0");
    check_power({number("2.3"), 0}, error, {number("1.5"), 0}, "0");
    check_power({number("2.3"), 0}, "0", {number("1.5"), 0}, error);
    check_power({number("0.4"), 0}, "0.01", {number("1.5"), 0}, "0.01");
  }
}

TEST_CASE("terms of roundings of functions") {
  {
    const support::Digits scope(2);
    // A unit of each part.
    CHECK(is_just(exp(proven::exact(Complex())).error, "0.14142135"));
    CHECK(is_just(proven::pow(proven::exact(Complex(1)), proven::exact(Complex(0, 1))).error, "0.14142135"));
    CHECK(is_just(sqrt(proven::exact(Real(2))).error, "0.05"));
    // |z| is within a unit, and rounded besides.
    CHECK(is_just(proven::abs(proven::exact(Complex(1, 1))).error, "0.1"));
    CHECK(is_just(proven::abs(bounded(Complex(1, 1), "1")).error, "1.1"));
    CHECK(is_just(proven::abs(bounded(Complex(1, 0), "1")).error, "1"));
  }
  const support::Digits scope(18);
  using namespace proven::detail;
  CHECK(above(1).value() >= number("1.00000000000000005"));
  CHECK(above(Real()).value() > 0);
  CHECK(below(number("0.123456789012")).value() <= number("0.123456789012"));
  CHECK(below(number("inf")).value() == Real(1, 999'999'999));
  CHECK(below(-1).is_zero());
  CHECK(below(1, QuarnBound(number("0.999999999"))).value() <= number("0.99999995e-9"));
  CHECK(below(1, QuarnBound(number("0.5"))).value() <= number("0.5"));
  const Bounded<Real> wide{1, QuarnBound(number("1e-30"))};
  const Ends ends(wide);
  const support::Digits fine(40);
  CHECK(ends.low <= 1 - number("1e-30"));
  CHECK(ends.high >= 1 + number("1e-30"));
}

TEST_CASE("terms of arithmetic") {
  const auto quotient_reaches = [](const Bounded<Real>& x, const Bounded<Real>& y, const char* reached) {
    const Bounded<Real> quotient = x / y;
    const support::Digits wide(kFine);
    return fabs(quotient.value - number(reached)) <= quotient.error.value();
  };
  {
    const support::Digits scope(1);
    // 0.25 becomes 0.2, half a unit off, and 1 / 3.5 is farther away still.
    CHECK(quotient_reaches(proven::exact(1), bounded("4", "0.5"), "0.285714285"));
    CHECK(is_just((proven::exact(1) / proven::exact(4)).error, "0.05"));
    CHECK((proven::exact(1) / proven::exact(5)).error.is_zero());
    CHECK(is_just((bounded("3", "0.25") * proven::exact(7)).error, "6.75"));
    CHECK((proven::exact(Real(1, -999'999'999)) * proven::exact(number("0.5"))).error.value() >= Real(1, -999'999'999));
  }
  {
    const support::Digits scope(kManyDigits);
    CHECK(is_just((bounded("3", "0.25") + bounded("5", "0.5")).error, "0.75"));
    CHECK(is_just((bounded("3", "0.25") - bounded("5", "0.5")).error, "0.75"));
    CHECK(is_just((bounded("3", "0.25") * proven::exact(5)).error, "1.25"));
    CHECK(is_just((proven::exact(5) * bounded("3", "0.25")).error, "1.25"));
    CHECK(is_just((bounded("3", "0.25") * bounded("5", "0.5")).error, "2.875"));
    CHECK(is_just((bounded("3", "0.25") / proven::exact(5)).error, "0.05"));
    CHECK(quotient_reaches(bounded("3", "0.25"), bounded("5", "0.5"), "0.7222222222222222222"));
    CHECK(quotient_reaches(bounded("3", "0"), bounded("5", "0.5"), "0.6666666666666666666"));
    CHECK(quotient_reaches(bounded("0", "1"), bounded("5", "0.5"), "0.2222222222222222222"));
    const Complex three(0, 3);
    CHECK(is_just((bounded(three, "0.25") + bounded(Complex(5), "0.5")).error, "0.75"));
    CHECK(is_just((bounded(three, "0.25") * proven::exact(Complex(5))).error, "1.25"));
    CHECK(is_just((proven::exact(Complex(5)) * bounded(three, "0.25")).error, "1.25"));
    CHECK(is_just((bounded(three, "0.25") * bounded(Complex(5), "0.5")).error, "2.875"));
    CHECK(is_just((bounded(three, "0.25") / proven::exact(Complex(5))).error, "0.05"));
    CHECK(is_just((bounded(three, "0.25") / bounded(Complex(5), "0.5")).error, "0.122222222"));
    CHECK(is_just((proven::exact(three) / bounded(Complex(5), "0.5")).error, "0.066666666"));
  }
  {
    const support::Digits scope(2);
    // Both parts are off by half a unit.
    CHECK(is_just((proven::exact(Complex(1, 1)) + proven::exact(Complex(number("0.05"), number("0.05")))).error,
                  "0.0707106781"));
    CHECK(
        is_just((proven::exact(Complex(number("1.5"), 0)) * proven::exact(Complex(number("1.1"), number("1.1")))).error,
                "0.0707106781"));
    CHECK(is_just(
        (proven::exact(Complex(number("1.5"), number("1.2"))) * proven::exact(Complex(number("1.1"), number("1.3"))))
            .error,
        "0.0500025"));
    // Of the quotient's parts, the sums above and below the line, and their quotient.
    const Bounded<Complex> part = proven::exact(Complex(1)) / proven::exact(Complex(3, 1));
    const support::Digits wide(30);
    CHECK(size(part.value - Complex(number("0.3"), number("-0.1"))) <= part.error.value());
  }
  // Sizes that are not above what they stand for, at nine digits and where nearly all cancels.
  using proven::detail::least_size;
  const support::Digits scope(2);
  const Real long_one = number("1.2345678960001");
  CHECK(least_size(proven::exact(long_one)).value() <= long_one);
  const Bounded<Complex> near{{number("0.9"), number("1.2000000000000000069")}, QuarnBound(number("1.5"))};
  CHECK(least_size(near).value() <= number("5.6e-18"));
}

TEST_CASE("terms of sums, norms, transforms and zeros") {
  using QuarnKind = QuarnRealTransform::Kind;
  const auto column = [](std::vector<Bounded<Real>> x) { return proven::as_matrix(x); };
  {
    const support::Digits scope(kManyDigits);
    const auto product = [&](const Bounded<Real>& x, const Bounded<Real>& y) {
      return proven::multiply(column({x}), column({y}))(0, 0).error;
    };
    CHECK(is_just(product(bounded("3", "0"), bounded("5", "0.5")), "1.5"));
    CHECK(is_just(product(bounded("3", "0.25"), bounded("5", "0")), "1.25"));
    CHECK(is_just(product(bounded("3", "0.25"), bounded("5", "0.5")), "2.875"));
    // Two errors of 3 and 4, of which the norm may have both.
    CHECK(is_just(proven::norm(std::vector<Bounded<Real>>{bounded("30", "3"), bounded("40", "4")}).error, "5"));
    // All that is uncertain points to the same side.
    const auto sum =
        proven::transform(std::vector<Bounded<Complex>>{bounded(Complex(1), "0.5"), bounded(Complex(1), "0.25")},
                          tesk2mp::Direction::forward, QuarnDivisor::one);
    CHECK(is_just(sum[0].error, "0.75"));
    const std::vector<Bounded<Real>> pair{bounded("0", "0"), bounded("0", "0.5")};
    CHECK(is_just(proven::transform(QuarnKind::dct2, pair)[0].error, "1"));
    // Of a spectrum all but the ends count twice.
    const std::vector<Bounded<Complex>> half{bounded(Complex(), "0"), bounded(Complex(), "0.5"),
                                             bounded(Complex(), "0")};
    CHECK(is_just(proven::from_spectrum(half, 4, QuarnDivisor::one)[0].error, "1"));
  }
  {
    const support::Digits scope(1);
    CHECK(is_just(
        proven::multiply(column({proven::exact(number("1.5"))}), column({proven::exact(number("1.5"))}))(0, 0).error,
        "0.5"));
    CHECK(proven::multiply(column({proven::exact(Real(3))}), column({proven::exact(Real(3))}))(0, 0).error.is_zero());
    CHECK(
        is_just(proven::multiply(column({proven::exact(Real(3))}), column({proven::exact(Real(7))}))(0, 0).error, "5"));
    // Half a unit of the root, and half a unit of the third digit more.
    CHECK(
        is_just(proven::norm(std::vector<Bounded<Real>>{proven::exact(Real(2)), proven::exact(Real(1))}).error, "0.5"));
    CHECK(proven::norm(std::vector<Bounded<Real>>{proven::exact(number("1.00001")), proven::exact(number("1e-9"))})
              .error > proven::norm(std::vector<Bounded<Real>>{proven::exact(Real(1)), proven::exact(Real())}).error);
    // 10^-1 M sqrt(N) / 4 in each part, and half a unit of each.
    const std::vector<Complex> ones{1, 0, 0, 0};
    CHECK(is_just(proven::transform(ones, tesk2mp::Direction::forward, QuarnDivisor::one)[0].error, "0.552268"));
    CHECK(is_just(proven::transform(ones, tesk2mp::Direction::forward, QuarnDivisor::length)[0].error, "0.0637377"));
    CHECK(is_just(proven::transform(ones, tesk2mp::Direction::forward, QuarnDivisor::root)[0].error, "0.0790569"));
    const std::vector<Bounded<Real>> real{proven::exact(Real(1)), proven::exact(Real())};
    CHECK(is_just(proven::transform(QuarnKind::dct2, real)[0].error, "0.55"));
  }
  // Nothing but the ends is known to have a sign; what is between them, and its middle, have one digit.
  const support::Digits scope(1);
  for (const bool rises : {false, true}) {
    const Real low = number(rises ? "1.26" : "-1.94");
    const Real high = number(rises ? "1.94" : "-1.26");
    const auto found = proven::zero(
        [&](const Bounded<Real>& x) {
          const bool at_end = x.error.is_zero() && (x.value <= low || high <= x.value);
          return Bounded<Real>{x.value <= low ? -1 : 1, at_end ? QuarnBound() : QuarnBound::count(2)};
        },
        low, high);
    const support::Digits wide(40);
    CHECK(found.value - found.error.value() <= low);
    CHECK(found.value + found.error.value() >= high);
  }
}
