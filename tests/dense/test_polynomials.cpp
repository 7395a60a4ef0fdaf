// Polynomials: families whose zeros are known, every zero within its stated error, and values, quotients and products
// by exact cases.
#include <doctest/doctest.h>

#include <algorithm>
#include <vector>

#include "dense/ratios.h"
#include "tesk2mp/tesk2mp.h"

using Reals = std::vector<QuarnFloat>;
using Complexes = std::vector<Complex>;

namespace {

struct Zeros {
  explicit Zeros(const Reals& a) : zeros(a.size() - 1), errors(a.size() - 1) {
    QuarnMPX_dpzeros_(Integer(a.size()) - 1, a.data(), zeros.data(), errors.data(), &info);
  }
  explicit Zeros(const Complexes& a) : zeros(a.size() - 1), errors(a.size() - 1) {
    QuarnMPX_zpzeros_(Integer(a.size()) - 1, a.data(), zeros.data(), errors.data(), &info);
  }
  Complexes zeros;
  Reals errors;
  Integer info = -99;
};

/// The coefficients of the product of z - x, at so many digits.
template <class T>
std::vector<T> from_zeros(const std::vector<T>& x, int digits) {
  const support::Digits exact(digits);
  std::vector<T> a(x.size() + 1);
  Integer info = -99;
  if constexpr (std::is_same_v<T, Complex>) {
    QuarnMPX_zpfrom_(Integer(x.size()), x.data(), a.data(), &info);
  } else {
    QuarnMPX_dpfrom_(Integer(x.size()), x.data(), a.data(), &info);
  }
  CHECK(info == 0);
  return a;
}

/// Each expected zero is one of those found, within its error; the errors are small beside the zeros.
void check_against(const Zeros& found, Complexes expected, int digits, int lost = 0) {
  REQUIRE(found.info == 0);
  const support::Digits finer(2 * digits + 40);
  for (std::size_t i = 0; i < found.zeros.size(); ++i) {
    const Complex& zero = found.zeros[i];
    const auto nearest = std::min_element(expected.begin(), expected.end(), [&](const Complex& x, const Complex& y) {
      return tesk::modulus(x - zero) < tesk::modulus(y - zero);
    });
    CHECK(tesk::modulus(*nearest - zero) <= found.errors[i]);
    CHECK(found.errors[i] <= tesk::modulus(zero) * QuarnFloat(2, 1 - digits + lost));
    expected.erase(nearest);
  }
  CHECK(expected.empty());
}

Complexes complex_of(const Reals& x) { return Complexes(x.begin(), x.end()); }

Reals integers(int n) {
  Reals x;
  for (int i = 1; i <= n; ++i) {
    x.emplace_back(i);
  }
  return x;
}

}  // namespace

TEST_CASE("zeros of Wilkinson's polynomials, multiple and far ones" * doctest::test_suite("long")) {
  for (const int digits : {2, 16, 50, 100, 333}) {
    CAPTURE(digits);
    const support::Digits scope(digits);
    for (const Reals& x : {integers(20), integers(40), Reals(10, QuarnFloat(3)), Reals{1, 1, 1, 2, 2, 5}, Reals{-7},
                           Reals{QuarnFloat(1, 30), 1, QuarnFloat(1, -30), QuarnFloat(1, -60)},
                           Reals{QuarnFloat(1, 1000000), QuarnFloat(-2, 1000000), 3, QuarnFloat(1, -1000000)}}) {
      // The far ones cannot be multiplied out exactly, but are far enough for any digits.
      const Reals a = from_zeros(x, x.size() == 40 ? 100 : 60 + digits);
      check_against(Zeros(a), complex_of(x), digits);
    }
  }
}

TEST_CASE("zeros of Chebyshev polynomials, and of a truncated exponential") {
  const int digits = 50;
  const support::Digits scope(digits);
  constexpr Integer n = 100;
  Reals before{1};
  Reals now{1, 0};
  {
    const support::Digits exact(100);
    for (Integer k = 2; k <= n; ++k) {
      Reals next(now);
      next.emplace_back(0);
      for (std::size_t i = 0; i < next.size(); ++i) {
        next[i] = 2 * next[i] - (i < 2 ? QuarnFloat(0) : before[i - 2]);
      }
      before = std::move(now);
      now = std::move(next);
    }
  }
  Complexes expected;
  {
    const support::Digits finer(140);
    const QuarnFloat pi = acos(QuarnFloat(-1));
    for (Integer k = 0; k < n; ++k) {
      expected.emplace_back(cos((2 * k + 1) * pi / (2 * n)));
    }
  }
  check_against(Zeros(now), expected, digits);
  // exp has no zeros: those of its first terms are near a curve, no two alike. The residual at twice the digits tells.
  Reals terms{1};
  {
    const support::Digits exact(120);
    QuarnFloat power = 1;
    for (Integer k = 60; k >= 1; --k) {
      power *= k;
      terms.push_back(power);
    }
  }
  const Zeros found(terms);
  REQUIRE(found.info == 0);
  const support::Digits finer(120);
  for (std::size_t i = 0; i < found.zeros.size(); ++i) {
    const Complex& z = found.zeros[i];
    Complex p;
    Complex derivative;
    for (const QuarnFloat& term : terms) {
      derivative = derivative * z + p;
      p = p * z + Complex(term);
    }
    CHECK(tesk::modulus(p) <= 2 * found.errors[i] * tesk::modulus(derivative));
    CHECK(found.errors[i] <= tesk::modulus(z) * QuarnFloat(1, 1 - digits));
    CHECK(found.zeros[i % 2 == 0 ? i + 1 : i - 1].re == z.re);
  }
}

TEST_CASE("zeros of a polynomial of the Mandelbrot set") {
  // p := z p^2 + 1, five times more from z + 1: degree 63.
  const int digits = 50;
  const support::Digits scope(digits);
  Reals p{1, 1};
  for (int k = 0; k < 5; ++k) {
    Reals square(2 * p.size(), QuarnFloat(0));
    for (std::size_t i = 0; i < p.size(); ++i) {
      for (std::size_t j = 0; j < p.size(); ++j) {
        square[i + j] += p[i] * p[j];
      }
    }
    square.back() = 1;
    p = std::move(square);
  }
  REQUIRE(p.size() == 64);
  const Zeros found(p);
  REQUIRE(found.info == 0);
  const support::Digits finer(120);
  for (std::size_t i = 0; i < found.zeros.size(); ++i) {
    const Complex& z = found.zeros[i];
    Complex value(1);
    Complex derivative;
    for (int k = 0; k < 6; ++k) {
      derivative = value * value + Complex(2) * z * value * derivative;
      value = z * value * value + Complex(1);
    }
    CHECK(tesk::modulus(value) <= 2 * found.errors[i] * tesk::modulus(derivative));
    CHECK(found.errors[i] <= QuarnFloat(1, -30));
  }
}

TEST_CASE("zeros of complex polynomials, at the origin, and of none") {
  support::RandomNumbers random;
  for (const int digits : {1, 16, 60}) {
    const support::Digits scope(digits);
    Complexes x{{0, 1}, {0, 1}, {2, -1}, {QuarnFloat(1, -40), QuarnFloat(1, -40)}, {-3, 0}};
    check_against(Zeros(from_zeros(x, 150)), x, digits);
    x.clear();
    for (int i = 0; i < 12; ++i) {
      x.push_back(random.next<Complex>());
    }
    const Zeros found(from_zeros(x, 14 * digits + 20));
    check_against(found, x, digits);
  }
  const Zeros origin(Reals{5, 0, 5, 0, 0, 0});
  REQUIRE(origin.info == 0);
  CHECK(origin.zeros == Complexes{{0, 1}, {0, -1}, 0, 0, 0});
  CHECK(origin.errors[4] == 0);
  CHECK(Zeros(Reals{3}).info == 0);
  CHECK(Zeros(Reals{3, 0}).zeros == Complexes{0});
}

TEST_CASE("a value is good to the last digit whatever cancels") {
  for (const int digits : {1, 16, 50}) {
    const support::Digits scope(digits);
    const Reals a = from_zeros(integers(20), 60);
    Integer info = -99;
    QuarnFloat value;
    const QuarnFloat at = 7;
    QuarnMPX_dpeval_(20, a.data(), &at, &value, &info);
    CHECK(info == 0);
    CHECK(value == 0);
    // (z - 1)^20 at 1 + 10^-digits, which needs 20 times the digits.
    const Reals b = from_zeros(Reals(20, QuarnFloat(1)), 60);
    const QuarnFloat near = [&] {
      const support::Digits exact(digits + 2);
      return 1 + QuarnFloat(1, -digits);
    }();
    QuarnMPX_dpeval_(20, b.data(), &near, &value, &info);
    CHECK(value == QuarnFloat(1, -20 * digits));
    const Complexes c{1, 0, 1};
    const Complex i(0, 1);
    Complex zero(5);
    QuarnMPX_zpeval_(2, c.data(), &i, &zero, &info);
    CHECK(zero == Complex(0));
  }
}

TEST_CASE("division of polynomials, and what is refused") {
  const Reals a{1, -6, 11, -6};
  const Reals b{1, -2};
  Reals q(3);
  Reals r(3, 9);
  Integer info = -99;
  QuarnMPX_dpdiv_(3, a.data(), 1, b.data(), q.data(), r.data(), &info);
  CHECK(info == 0);
  CHECK(q == Reals{1, -4, 3});
  CHECK(r[0] == 0);
  CHECK(r[1] == 9);
  QuarnMPX_dpdiv_(1, b.data(), 3, a.data(), q.data(), r.data(), &info);
  CHECK(r == Reals{0, 1, -2});
  const Complexes c{{0, 2}, 0, 2};
  Complexes cq(2);
  Complexes cr(1);
  QuarnMPX_zpdiv_(2, c.data(), 1, Complexes{1, {0, 1}}.data(), cq.data(), cr.data(), &info);
  CHECK(cq == Complexes{{0, 2}, 2});
  CHECK(cr[0] == Complex(2, -2));
  for (const double bad : {0.0, HUGE_VAL, double(NAN)}) {
    CHECK(Zeros(Reals{bad, 1, 2}).info == -2);
    CHECK(Zeros(Complexes{Complex(0, bad), 1}).info == -2);
    CHECK(Zeros(Reals{1, 2, bad, 1}).info == (bad == 0 ? 0 : -2));
  }
  QuarnFloat x = 1;
  Complex z;
  QuarnMPX_dpzeros_(-1, &x, &z, &x, &info);
  CHECK(info == -1);
  QuarnMPX_dpeval_(-1, &x, &x, &x, &info);
  CHECK(info == -1);
  QuarnMPX_dpfrom_(-1, &x, &x, &info);
  CHECK(info == -1);
  const auto divided = [&](Integer m, Integer n, const QuarnFloat& lead) {
    QuarnMPX_dpdiv_(m, a.data(), n, &lead, q.data(), r.data(), &info);
    return info;
  };
  CHECK(divided(-1, 0, 1) == -1);
  CHECK(divided(1, -1, 1) == -3);
  CHECK(divided(1, 0, 0) == -4);
}
