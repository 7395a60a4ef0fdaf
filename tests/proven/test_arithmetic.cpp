// Arithmetic, functions, sums and products with bounds: numbers within the bounds of the data, evaluated with many
// digits, have results within the bounds.
#include "spectra.h"
#include "support/digits.h"

using namespace spectra;

namespace {

/// A number and a bound, and one within it.
struct Sample {
  Bounded<Real> given;
  Real exact;
};

Sample sample(support::Random& random) {
  const Real value = random_number<Real>(random) * Real(1, int(random.between(-3, 3)));
  if (random.once_in(3)) {
    return {{value, QuarnBound()}, value};
  }
  const QuarnBound error(Real(double(random.between(1, 99)), -int(random.between(1, 40))));
  const support::Digits wide(300);
  // At an end, or between.
  const Real part = Real(double(random.between(-2, 2))) / 2;
  return {{value, error}, value + part * error.value()};
}

void check(const Bounded<Real>& result, const Real& exact) {
  const support::Digits wide(300);
  CHECK((!result.error.is_finite() || fabs(result.value - exact) <= result.error.value()));
}

template <class Function>
void check_function(const Sample& x, const Function& f) {
  const auto bounded = f(x.given);
  const support::Digits wide(200);
  const Real exact = f(x.exact);
  if (!isnan(exact)) {
    check(bounded, exact);
  }
}

}  // namespace

TEST_CASE("arithmetic and functions on bounded numbers") {
  support::Random random;
  for (const int digits : {1, 2, 9, 16, 50}) {
    const support::Digits scope(digits);
    for (int round = 0; round < 150; ++round) {
      const Sample x = sample(random);
      const Sample y = sample(random);
      CAPTURE(digits);
      const auto exactly = [](const auto& f) {
        const support::Digits wide(300);
        return f();
      };
      check(x.given + y.given, exactly([&] { return x.exact + y.exact; }));
      check(x.given - y.given, exactly([&] { return x.exact - y.exact; }));
      check(x.given * y.given, exactly([&] { return x.exact * y.exact; }));
      if (y.exact != 0) {
        check(x.given / y.given, exactly([&] { return x.exact / y.exact; }));
      }
      check_function(x, [](const auto& z) { return sqrt(z); });
      check_function(x, [](const auto& z) { return exp(z); });
      check_function(x, [](const auto& z) { return log(z); });
      check_function(x, [](const auto& z) { return atan(z); });
      check_function(x, [](const auto& z) { return sin(z); });
      check_function(x, [](const auto& z) { return cos(z); });
    }
  }
  // Nearly attained, and what is not known.
  const support::Digits scope(2);
  const Bounded<Real> near_one{1, QuarnBound(Real("0.5"))};
  CHECK((near_one * near_one).error >= QuarnBound(Real("1.25")));
  CHECK((near_one * near_one).error <= QuarnBound(Real("1.31")));
  CHECK((proven::exact(1) / near_one).error >= QuarnBound::count(1));
  CHECK((proven::exact(1) / near_one).error <= QuarnBound(Real("1.2")));
  CHECK((proven::exact(1) / proven::exact(8)).error >= QuarnBound(Real("0.005")));
  CHECK(!(near_one / Bounded<Real>{Real("0.1"), QuarnBound(Real("0.1"))}).error.is_finite());
  CHECK(!log(Bounded<Real>{Real("0.1"), QuarnBound(Real("0.1"))}).error.is_finite());
  const Real few = exp(near_one).error.value();
  CHECK(few >= Real("1.7"));  // exp(1.5) - exp(1)
  CHECK(few <= Real("2.3"));
}

TEST_CASE("sums and products that are rounded once") {
  support::Random random;
  for (const int digits : {1, 16, 40}) {
    for (int round = 0; round < 20; ++round) {
      const support::Digits scope(digits);
      const auto n = std::size_t(random.between(0, 6));
      const auto with = [&]<class T>(T /*kind*/) {
        const Matrix<T> a = random_matrix<T>(random, 3, n);
        const Matrix<T> b = random_matrix<T>(random, n, 2);
        const auto c = proven::multiply(a, b);
        const support::Digits wide(400);
        for (std::size_t i = 0; i < 3; ++i) {
          for (std::size_t j = 0; j < 2; ++j) {
            Complex sum;
            for (std::size_t k = 0; k < n; ++k) {
              sum = sum + Complex(a(i, k)) * Complex(b(k, j));
            }
            CHECK(size(sum - Complex(c(i, j).value)) <= c(i, j).error.value());
          }
        }
      };
      with(Real());
      with(Complex());
      std::vector<Real> x;
      for (std::size_t i = 0; i < n; ++i) {
        x.push_back(random_number<Real>(random));
      }
      const auto norm = proven::norm(x);
      const auto sum = proven::sum(x);
      const support::Digits wide(400);
      Real squares;
      Real total;
      for (const Real& each : x) {
        squares += each * each;
        total += each;
      }
      check(norm, sqrt(squares));
      check(sum, total);
    }
  }
  const support::Digits scope(2);
  CHECK(proven::dot(std::vector<Real>{1, 1}, std::vector<Real>{Real("0.1"), Real("0.025")}).value.to_string() ==
        "0.12");
  CHECK_THROWS_AS((void)proven::dot(std::vector<Real>{1}, std::vector<Real>{1, 2}), tesk2mp::InvalidArgument);
  CHECK_THROWS_AS((proven::BoundedMatrix<Real>{Matrix<Real>(2, 2), Matrix<Real>(2, 1)}), tesk2mp::InvalidArgument);
  CHECK(proven::norm(std::vector<Real>{0, 0}).error.is_finite());
}

TEST_CASE("complex quotients near the ends of the range") {
  for (const int digits : {1, 2, 16, 60}) {
    const support::Digits scope(digits);
    for (const int exponent : {-999'999'990, -900'000'000, -500'000'001, 500'000'001, 999'999'990}) {
      const Complex y(Real(3, exponent), Real(-4, exponent));
      for (const Complex& x : {Complex(1, 2), y, Complex(Real(1, exponent - 3), Real(7, exponent / 2)), Complex(0)}) {
        const auto quotient = proven::exact(x) / proven::exact(y);
        REQUIRE(quotient.error.is_finite());
        // (3 - 4 i) q = x 10^-exponent
        const support::Digits wide(digits + 300);
        const Complex exact = Complex(scalbn(x.re, -exponent), scalbn(x.im, -exponent)) * Complex(3, 4) / Complex(25);
        CHECK(quarn::abs(quotient.value - exact) <=
              quotient.error.value() + QuarnBound(exact).value() * Real(1, -digits - 100));
        const QuarnBound last = QuarnBound(exact) * QuarnBound::power_of_ten(2 - digits);
        CHECK(quotient.error <= last + QuarnBound::power_of_ten(-999'999'998));
      }
    }
    const proven::Bounded<Complex> uncertain{Complex(Real(3, 900'000'000), 0), QuarnBound::power_of_ten(900'000'000)};
    CHECK((proven::exact(Complex(1)) / uncertain).error >= QuarnBound::power_of_ten(-900'000'001));
    const proven::Bounded<Complex> unknown{Complex(Real(3, 900'000'000), 0), QuarnBound::power_of_ten(900'000'001)};
    CHECK(!(proven::exact(Complex(1)) / unknown).error.is_finite());
    CHECK(!(proven::exact(Complex(Real(1, 900'000'000))) / proven::exact(Complex(0, Real(1, -900'000'000))))
               .error.is_finite());
  }
}

TEST_CASE("norms of numbers near the ends of the range") {
  for (const int digits : {1, 2, 16, 60}) {
    const support::Digits scope(digits);
    for (const int exponent : {-999'999'999, -900'000'000, -500'000'001, 500'000'001, 999'999'998}) {
      const auto at = [&](int x, int power) { return Real(x, exponent + power); };
      const auto whole = proven::norm(std::vector<Real>{at(3, 0), -at(4, 0), Real()});
      CHECK(whole.value == at(5, 0));
      CHECK(whole.error <= QuarnBound(at(5, 0)).half_unit(digits - 1));
      // sqrt(2) is irrational, and known to its last digit.
      const auto root = proven::norm(std::vector<Complex>{Complex(at(1, 0), at(-1, 0))});
      CHECK(scalbn(root.value, -exponent) == proven::norm(std::vector<Real>{1, 1}).value);
      CHECK((root.error.is_finite() && !root.error.is_zero()));
      CHECK(proven::true_digits(root) == proven::true_digits(proven::norm(std::vector<Real>{1, 1})));
    }
    // What vanishes beside the largest number is in the bound, errors too.
    const QuarnBound small = QuarnBound::power_of_ten(-900'000'000);
    CHECK(proven::norm(std::vector<Real>{Real(1, 900'000'000), Real(1, -900'000'000)}).error >= small);
    const std::vector<proven::Bounded<Real>> bounded{{Real(1, 900'000'000), QuarnBound::power_of_ten(900'000'001)}};
    CHECK(proven::norm(bounded).error >= QuarnBound::power_of_ten(900'000'001));
    CHECK(!proven::norm(std::vector<Real>{Real(9, 999'999'999), Real(9, 999'999'999)}).error.is_finite());
  }
  // All digits of the data count.
  const Real long_number("1.4e800000000");
  const support::Digits scope(1);
  CHECK(proven::norm(std::vector<Real>{long_number, long_number}).value == Real("2e800000000"));
}
