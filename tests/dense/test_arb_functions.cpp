// Functions of matrices against ball arithmetic: Arb's exponential, which also takes our logarithms back, and its
// square of our roots.
#include <acb_mat.h>
#include <doctest/doctest.h>

#include <algorithm>
#include <cmath>
#include <string>

#include "support/digits.h"
#include "support/random.h"
#include "tesk2mp/tesk2mp.hpp"

using tesk2mp::Real;

namespace {

using Dense = tesk2mp::Matrix<Complex>;

class Balls {
 public:
  explicit Balls(std::size_t n) { acb_mat_init(value_, slong(n), slong(n)); }
  Balls(const Dense& a, slong bits) : Balls(a.rows()) {
    for (std::size_t i = 0; i < a.rows(); ++i) {
      for (std::size_t j = 0; j < a.columns(); ++j) {
        acb_struct* const element = acb_mat_entry(value_, slong(i), slong(j));
        arb_set_str(acb_realref(element), a(i, j).re.to_string().c_str(), bits);
        arb_set_str(acb_imagref(element), a(i, j).im.to_string().c_str(), bits);
      }
    }
  }
  ~Balls() { acb_mat_clear(value_); }
  Balls(const Balls&) = delete;
  Balls& operator=(const Balls&) = delete;
  acb_mat_struct* get() { return value_; }

 private:
  acb_mat_t value_;
};

/// The largest |a - b| in units of the last place of the largest |b|, radii counted.
double units(Balls& a, Balls& b, int digits, slong bits) {
  const slong n = acb_mat_nrows(a.get());
  mag_t each;
  mag_init(each);
  acb_t difference;
  acb_init(difference);
  double apart = 0;
  double size = 0;
  for (slong i = 0; i < n; ++i) {
    for (slong j = 0; j < n; ++j) {
      acb_sub(difference, acb_mat_entry(a.get(), i, j), acb_mat_entry(b.get(), i, j), bits);
      acb_get_mag(each, difference);
      apart = std::max(apart, mag_get_d(each));
      acb_get_mag(each, acb_mat_entry(b.get(), i, j));
      size = std::max(size, mag_get_d(each));
    }
  }
  acb_clear(difference);
  mag_clear(each);
  return apart / size * std::pow(10.0, digits);
}

Dense random_matrix(std::size_t n, bool complex, int digits, support::Random& random) {
  Dense a(n, n);
  const auto number = [&] {
    return Real(((random.below(2) == 0 ? "-0." : "0.") + random.digits(std::size_t(digits))).c_str());
  };
  for (std::size_t j = 0; j < n; ++j) {
    for (std::size_t i = 0; i < n; ++i) {
      a(i, j) = Complex(number(), complex ? number() : Real(0));
    }
  }
  return a;
}

}  // namespace

TEST_CASE("functions of matrices against balls") {
  constexpr double kUnits = 100;
  support::Random random;
  for (const int digits : {50, 200}) {
    const support::Digits scope(digits);
    const slong bits = slong(3.33 * 2 * digits) + 100;
    for (const std::size_t n : {1, 2, 5, 9}) {
      for (const bool complex : {false, true}) {
        CAPTURE(digits);
        CAPTURE(n);
        CAPTURE(complex);
        Dense a = random_matrix(n, complex, digits, random);
        Balls exponential(n);
        Balls given(a, bits);
        acb_mat_exp(exponential.get(), given.get(), bits);
        Balls ours(tesk2mp::expm(a), bits);
        CHECK(units(ours, exponential, digits, bits) < kUnits);

        // Far from the branch cuts, so that roots and logarithms are as good as the matrix.
        for (std::size_t i = 0; i < n; ++i) {
          a(i, i) = a(i, i) + Complex(2 * Real(int(n)));
        }
        Balls shifted(a, bits);
        Balls root(tesk2mp::sqrtm(a), bits);
        Balls square(n);
        acb_mat_sqr(square.get(), root.get(), bits);
        CHECK(units(square, shifted, digits, bits) < kUnits);
        Balls logarithm(tesk2mp::logm(a), bits);
        Balls back(n);
        acb_mat_exp(back.get(), logarithm.get(), bits);
        CHECK(units(back, shifted, digits, bits) < 10 * kUnits);
        // A^(1/3) three times.
        const Dense third = tesk2mp::fractional_matrix_power(a, Real(1) / 3);
        Balls power(third, bits);
        acb_mat_pow_ui(back.get(), power.get(), 3, bits);
        CHECK(units(back, shifted, digits, bits) < 10 * kUnits);
      }
    }
  }
}
