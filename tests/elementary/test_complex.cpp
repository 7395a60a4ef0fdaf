// Complex functions against MPC, whose parts are correctly rounded.
#include <doctest/doctest.h>
#include <mpc.h>

#include <string>

#include "quarn/complex.h"
#include "support/digits.h"
#include "support/random.h"

namespace {

using quarn::Complex;
using Ours = Complex (*)(const Complex&);
using Theirs = int (*)(mpc_ptr, mpc_srcptr, mpc_rnd_t);

struct Function {
  const char* name;
  Ours ours;
  Theirs theirs;
  bool has_cuts;  // where the signs of zeros count
};

constexpr Function kFunctions[] = {
    {"sqrt", quarn::sqrt, mpc_sqrt, true},    {"exp", quarn::exp, mpc_exp, false},
    {"log", quarn::log, mpc_log, true},       {"log10", quarn::log10, mpc_log10, true},
    {"sin", quarn::sin, mpc_sin, false},      {"cos", quarn::cos, mpc_cos, false},
    {"tan", quarn::tan, mpc_tan, false},      {"sinh", quarn::sinh, mpc_sinh, false},
    {"cosh", quarn::cosh, mpc_cosh, false},   {"tanh", quarn::tanh, mpc_tanh, false},
    {"asin", quarn::asin, mpc_asin, true},    {"acos", quarn::acos, mpc_acos, true},
    {"atan", quarn::atan, mpc_atan, true},    {"asinh", quarn::asinh, mpc_asinh, true},
    {"acosh", quarn::acosh, mpc_acosh, true}, {"atanh", quarn::atanh, mpc_atanh, true},
};

class Oracle {
 public:
  Oracle(const Complex& z, long bits) {
    mpc_init2(z_, bits);
    mpc_init2(w_, bits);
    set(mpc_realref(z_), z.re);
    set(mpc_imagref(z_), z.im);
  }
  ~Oracle() {
    mpc_clear(z_);
    mpc_clear(w_);
  }
  Oracle(const Oracle&) = delete;
  Oracle& operator=(const Oracle&) = delete;

  Complex apply(Theirs f, int digits) {
    f(w_, z_, MPC_RNDNN);
    const support::Digits scope(digits);
    return {number(mpc_realref(w_), digits), number(mpc_imagref(w_), digits)};
  }

 private:
  static void set(mpfr_ptr to, const QuarnFloat& x) { mpfr_set_str(to, x.to_string().c_str(), 10, MPFR_RNDN); }
  static QuarnFloat number(mpfr_srcptr x, int digits) {
    char* text = nullptr;
    mpfr_asprintf(&text, "%.*Re", digits - 1, x);
    const QuarnFloat value(text);
    mpfr_free_str(text);
    return value;
  }

  mpc_t z_;
  mpc_t w_;
};

/// The error in units of the last of so many digits.
QuarnFloat units(const QuarnFloat& found, const QuarnFloat& exact, int digits, bool signs = false) {
  if (found == exact || (isnan(found) && isnan(exact))) {
    return !signs || signbit(found) == signbit(exact) || isnan(found) ? 0 : 1000;
  }
  const support::Digits scope(40);
  return fabs(found - exact) / fabs(exact) * QuarnFloat(1, digits - 1);
}

QuarnFloat sample(support::Random& random) {
  switch (random.below(6)) {
    case 0:
      return random.between(-3, 3);
    case 1: {  // near 1
      const QuarnFloat near = 1 + QuarnFloat(int(random.between(-9, 9)), int(random.between(-40, -1)));
      return random.once_in(2) ? near : -near;
    }
    case 2:
      return QuarnFloat(int(random.between(-999, 999)), int(random.between(-60, -3)));
    default:
      return QuarnFloat(random.between(-1'000'000'000'000, 1'000'000'000'000)) / QuarnFloat("7e11");
  }
}

}  // namespace

TEST_CASE("each part of a complex function is good to a unit") {
  support::Random random;
  for (const int digits : {1, 2, 20, 50, 333}) {
    const support::Digits scope(digits);
    for (const Function& f : kFunctions) {
      CAPTURE(std::string(f.name));
      for (int round = 0; round < 120; ++round) {
        // A cut is approached from the side that the sign of zero says, in both libraries.
        const Complex z(sample(random), sample(random));
        if (z.re == 0 && z.im == 0) {
          continue;
        }
        const Complex w = f.ours(z);
        const Complex exact = Oracle(z, 4 * (digits + 60) + 500).apply(f.theirs, digits + 30);
        const bool good =
            units(w.re, exact.re, digits, f.has_cuts) <= 1 && units(w.im, exact.im, digits, f.has_cuts) <= 1;
        CHECK_MESSAGE(good, "(", z.re.to_string(), ", ", z.im.to_string(), ") = (", w.re.to_string(), ", ",
                      w.im.to_string(), ") for (", exact.re.to_string(), ", ", exact.im.to_string(), ") at ", digits);
      }
    }
  }
}

TEST_CASE("exact, real, far and special arguments of complex functions") {
  const support::Digits scope(30);
  CHECK(quarn::pow(Complex(1, 2), Complex(3)) == Complex(-11, -2));
  CHECK(quarn::pow(Complex(0, 1), Complex(-2)) == Complex(-1));
  CHECK(quarn::pow(Complex(3, 4), Complex(0)) == Complex(1));
  CHECK(quarn::sqrt(Complex(-4)) == Complex(0, 2));
  CHECK(quarn::sqrt(Complex(3, 4)) == Complex(2, 1));
  CHECK(quarn::abs(Complex(3, -4)) == 5);
  CHECK(quarn::log10(Complex(-1000)).re == 3);
  CHECK(quarn::asin(Complex(2)).re == asin(QuarnFloat(1)));
  CHECK(quarn::atan(Complex(0, 1)).im > 1e30);
  for (const Function& f : kFunctions) {
    CAPTURE(std::string(f.name));
    const QuarnFloat nan("nan");
    CHECK(isnan(f.ours(Complex(nan, 1)).im + f.ours(Complex(nan, 1)).re));
    CHECK(isnan(f.ours(Complex(1, nan)).im + f.ours(Complex(1, nan)).re));
    CHECK(QuarnDigits() == 30);
    // 16 and 30 digits of the same value agree.
    for (const Complex& z : {Complex(QuarnFloat("1e-500"), QuarnFloat("1e-3")), Complex(QuarnFloat("-3e40"), 2),
                             Complex(1, QuarnFloat("1e-700")), Complex(QuarnFloat("0.5"), QuarnFloat("1e-300"))}) {
      const Complex fine = f.ours(z);
      const support::Digits fewer(16);
      const Complex coarse = f.ours(z);
      CHECK((fine == coarse || (units(coarse.re, fine.re, 16) <= 1 && units(coarse.im, fine.im, 16) <= 1)));
    }
  }
}
