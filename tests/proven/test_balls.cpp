// Bounds beside Arb's balls, which know nothing of this library: each ball, far narrower, lies inside of the interval
// or disc that is proven. TESK_ROUNDS=n: n times as much.
#include "balls.h"
#include "bounded_functions.h"

using namespace bounded_functions;
using balls::Ball;
using balls::Place;

namespace {

constexpr int kDigits[] = {1, 2, 16, 50, 333};

// Functions that Arb has not under one name -------------------------------------------------------------------------

using OfReal = void (*)(arb_ptr, arb_srcptr, slong);
using OfTwo = void (*)(arb_ptr, arb_srcptr, arb_srcptr, slong);
using OfComplex = void (*)(acb_ptr, acb_srcptr, slong);

template <ulong base>
void power_of(arb_ptr y, arb_srcptr x, slong bits) {
  Ball ball;
  arb_set_ui(ball.real(), base);
  arb_pow(y, ball.real(), x, bits);
}
template <ulong base>
void log_to(arb_ptr y, arb_srcptr x, slong bits) {
  arb_log_base_ui(y, x, base, bits);
}
void cube_root(arb_ptr y, arb_srcptr x, slong bits) {
  if (arb_is_negative(x)) {
    arb_neg(y, x);
    arb_root_ui(y, y, 3, bits);
    arb_neg(y, y);
  } else {
    arb_root_ui(y, x, 3, bits);
  }
}
template <OfReal f>
void over_pi(arb_ptr y, arb_srcptr x, slong bits) {
  Ball pi;
  arb_const_pi(pi.real(), bits);
  f(y, x, bits);
  arb_div(y, y, pi.real(), bits);
}
void log_gamma(arb_ptr y, arb_srcptr x, slong bits) {
  arb_gamma(y, x, bits);
  arb_abs(y, y);
  arb_log(y, y, bits);
}
/// Quotients of decimal numbers that binary ones bracket so closely are halves or whole.
void make_exact(arb_ptr x) {
  fmpz_t twice;
  fmpz_init(twice);
  arb_mul_2exp_si(x, x, 1);
  if (arb_get_unique_fmpz(twice, x)) {
    arb_set_fmpz(x, twice);
  }
  arb_mul_2exp_si(x, x, -1);
  fmpz_clear(twice);
}
void truncate(arb_ptr y, arb_srcptr x, slong bits) {
  arb_is_negative(x) ? arb_ceil(y, x, bits) : arb_floor(y, x, bits);
}
/// Halves to the even neighbour.
void to_nearest(arb_ptr y, arb_srcptr x, slong bits) {
  Ball moved;
  arb_set_d(moved.real(), 0.5);
  arb_add(moved.real(), moved.real(), x, bits);
  const bool is_half = arb_is_int(moved.real());
  arb_floor(y, moved.real(), bits);
  arb_mul_2exp_si(moved.real(), y, -1);
  if (is_half && !arb_is_int(moved.real())) {
    arb_sub_ui(y, y, 1, bits);
  }
}
void round_away(arb_ptr y, arb_srcptr x, slong bits) {
  Ball half;
  arb_set_d(half.real(), arb_is_negative(x) ? -0.5 : 0.5);
  arb_add(y, x, half.real(), bits);
  truncate(y, y, bits);
}
void log_to_ten(acb_ptr w, acb_srcptr z, slong bits) {
  Ball ten;
  arb_log_ui(ten.real(), 10, bits);
  acb_log(w, z, bits);
  acb_div_arb(w, w, ten.real(), bits);
}
void smaller(arb_ptr z, arb_srcptr x, arb_srcptr y, slong bits) { arb_min(z, x, y, bits); }
void larger(arb_ptr z, arb_srcptr x, arb_srcptr y, slong bits) { arb_max(z, x, y, bits); }
void difference(arb_ptr z, arb_srcptr x, arb_srcptr y, slong bits) {
  Ball zero;
  arb_sub(z, x, y, bits);
  arb_max(z, z, zero.real(), bits);
}
template <OfReal whole>
void rest(arb_ptr z, arb_srcptr x, arb_srcptr y, slong bits) {
  Ball times;
  arb_div(times.real(), x, y, bits);
  make_exact(times.real());
  whole(times.real(), times.real(), bits);
  arb_mul(times.real(), times.real(), y, bits);
  arb_sub(z, x, times.real(), bits);
}
void beta(arb_ptr z, arb_srcptr x, arb_srcptr y, slong bits) {
  Ball of_y;
  Ball sum;
  arb_add(sum.real(), x, y, bits);
  arb_rgamma(sum.real(), sum.real(), bits);
  arb_gamma(of_y.real(), y, bits);
  arb_gamma(z, x, bits);
  arb_mul(z, z, of_y.real(), bits);
  arb_mul(z, z, sum.real(), bits);
}

struct RealCase {
  const char* name;
  OfReal f;
};
const RealCase kReal[] = {{"exp", arb_exp},
                          {"expm1", arb_expm1},
                          {"exp2", power_of<2>},
                          {"exp10", power_of<10>},
                          {"log", arb_log},
                          {"log1p", arb_log1p},
                          {"log2", log_to<2>},
                          {"log10", log_to<10>},
                          {"sqrt", arb_sqrt},
                          {"cbrt", cube_root},
                          {"sin", arb_sin},
                          {"cos", arb_cos},
                          {"tan", arb_tan},
                          {"sinpi", arb_sin_pi},
                          {"cospi", arb_cos_pi},
                          {"tanpi", arb_tan_pi},
                          {"asin", arb_asin},
                          {"acos", arb_acos},
                          {"atan", arb_atan},
                          {"asinpi", over_pi<arb_asin>},
                          {"acospi", over_pi<arb_acos>},
                          {"atanpi", over_pi<arb_atan>},
                          {"sinh", arb_sinh},
                          {"cosh", arb_cosh},
                          {"tanh", arb_tanh},
                          {"asinh", arb_asinh},
                          {"acosh", arb_acosh},
                          {"atanh", arb_atanh},
                          {"tgamma", arb_gamma},
                          {"lgamma", log_gamma},
                          {"digamma", arb_digamma},
                          {"erf", arb_hypgeom_erf},
                          {"erfc", arb_hypgeom_erfc},
                          {"floor", arb_floor},
                          {"ceil", arb_ceil},
                          {"trunc", truncate},
                          {"round", round_away},
                          {"rint", to_nearest}};

struct TwoCase {
  const char* name;
  Bounded<Real> (*bounded)(const Bounded<Real>&, const Bounded<Real>&);
  OfTwo f;
};
const TwoCase kTwo[] = {{"pow", proven::pow, arb_pow},
                        {"atan2", proven::atan2, arb_atan2},
                        {"hypot", proven::hypot, arb_hypot},
                        {"fmod", proven::fmod, rest<truncate>},
                        {"remainder", proven::remainder, rest<to_nearest>},
                        {"fdim", proven::fdim, difference},
                        {"beta", proven::beta, beta},
                        {"fmin", proven::fmin, smaller},
                        {"fmax", proven::fmax, larger}};

/// Which axis has the cuts; on it Arb may take the other side.
enum class Cuts { none, real, imaginary };
struct ComplexCase {
  const char* name;
  OfComplex f;
  Cuts cuts = Cuts::none;
};
const ComplexCase kComplex[] = {{"exp", acb_exp},
                                {"log", acb_log},
                                {"log10", log_to_ten},
                                {"sqrt", acb_sqrt},
                                {"sin", acb_sin},
                                {"cos", acb_cos},
                                {"tan", acb_tan},
                                {"sinh", acb_sinh},
                                {"cosh", acb_cosh},
                                {"tanh", acb_tanh},
                                {"asin", acb_asin, Cuts::real},
                                {"acos", acb_acos, Cuts::real},
                                {"atan", acb_atan, Cuts::imaginary},
                                {"asinh", acb_asinh, Cuts::imaginary},
                                {"acosh", acb_acosh, Cuts::real},
                                {"atanh", acb_atanh, Cuts::real},
                                {"erf", acb_hypgeom_erf},
                                {"erfc", acb_hypgeom_erfc},
                                {"tgamma", acb_gamma},
                                {"lgamma", acb_lgamma},
                                {"digamma", acb_digamma}};

template <class Table>
auto& entry(Table& table, const std::string& name) {
  const auto found = std::find_if(std::begin(table), std::end(table), [&](const auto& e) { return e.name == name; });
  REQUIRE(found != std::end(table));
  return *found;
}

// Arguments --------------------------------------------------------------------------------------------------------

/// Also beside zeros, poles and ends of domains, and of extreme sizes.
Bounded<Real> wide_argument(support::Random& random) {
  if (!random.once_in(6)) {
    return argument(random);
  }
  const bool tiny = random.once_in(2);
  const Real value = random_number<Real>(random) * Real(1, int(tiny ? -random.between(30, 300) : random.between(2, 9)));
  return {value,
          random.once_in(3) ? QuarnBound() : QuarnBound(value) * QuarnBound::power_of_ten(-random.between(1, 40))};
}

/// Is the ball of f inside of the bound, by ever more bits from 3 W + 100 digits on? Where f has no value the bound is
/// infinite.
template <class T, class Evaluate>
void check_ball(const Bounded<T>& result, int digits, const Evaluate& evaluate) {
  if (!result.error.is_finite()) {
    return;
  }
  Place place = Place::open;
  const slong least = balls::bits_of(3 * digits + 100);
  for (slong bits = least; place == Place::open && bits <= 32 * least; bits *= 2) {
    place = evaluate(bits);
  }
  CHECK(place == Place::inside);
}

}  // namespace

TEST_CASE("functions of real numbers are where Arb's balls are") {
  support::Random random;
  for (const int digits : kDigits) {
    const support::Digits scope(digits);
    for (int round = 0; round < (digits > 100 ? 3 : 12) * balls::rounds(); ++round) {
      for (const RealCase& each : kReal) {
        const Bounded<Real> x = wide_argument(random);
        const Bounded<Real> result = entry(kFunctions, each.name).bounded(x);
        const Real point = within(x, random);
        CAPTURE(std::string(each.name));
        CAPTURE(digits);
        CAPTURE(x.value.to_string());
        CAPTURE(x.error.value().to_string());
        CAPTURE(result.value.to_string());
        CAPTURE(result.error.value().to_string());
        check_ball(result, digits, [&](slong bits) {
          Ball ball(point, bits);
          each.f(ball.real(), ball.real(), bits);
          return balls::place_of(ball.get(), result.value, result.error, bits);
        });
      }
    }
  }
}

TEST_CASE("functions of two real numbers are where Arb's balls are") {
  support::Random random;
  for (const int digits : kDigits) {
    const support::Digits scope(digits);
    for (int round = 0; round < (digits > 100 ? 3 : 30) * balls::rounds(); ++round) {
      for (const TwoCase& each : kTwo) {
        const Bounded<Real> x = argument(random);
        const Bounded<Real> y =
            random.once_in(3) ? proven::exact(Real(double(random.between(-7, 7)))) : argument(random);
        const Bounded<Real> result = each.bounded(x, y);
        // Exact zeros are none of binary numbers, nor has Arb limits at poles.
        const bool at_pole =
            each.f == static_cast<OfTwo>(beta) && !(isfinite(::tgamma(x.value)) && isfinite(::tgamma(y.value)));
        if (at_pole || (result.value == 0 && result.error <= QuarnBound::power_of_ten(-999'999'999))) {
          continue;
        }
        const Real point_x = within(x, random);
        const Real point_y = within(y, random);
        CAPTURE(std::string(each.name));
        CAPTURE(digits);
        CAPTURE(x.value.to_string());
        CAPTURE(x.error.value().to_string());
        CAPTURE(y.value.to_string());
        CAPTURE(y.error.value().to_string());
        check_ball(result, digits, [&](slong bits) {
          Ball first(point_x, bits);
          Ball second(point_y, bits);
          each.f(first.real(), first.real(), second.real(), bits);
          return balls::place_of(first.get(), result.value, result.error, bits);
        });
      }
      const Bounded<Real> x = argument(random);
      const auto k = ulong(random.between(0, 9));
      const Bounded<Real> result = proven::binomial(x, proven::exact(Real(double(k))));
      const Real point = within(x, random);
      CAPTURE(digits);
      CAPTURE(k);
      CAPTURE(x.value.to_string());
      CAPTURE(x.error.value().to_string());
      CAPTURE(point.to_string());
      CAPTURE(result.value.to_string());
      CAPTURE(result.error.value().to_string());
      check_ball(result, digits, [&](slong bits) {
        Ball ball(point, bits);
        arb_bin_ui(ball.real(), ball.real(), k, bits);
        return balls::place_of(ball.get(), result.value, result.error, bits);
      });
    }
  }
}

TEST_CASE("functions of complex numbers are where Arb's balls are") {
  support::Random random;
  for (const int digits : kDigits) {
    const support::Digits scope(digits);
    for (int round = 0; round < (digits > 100 ? 1 : 8) * balls::rounds(); ++round) {
      for (const ComplexCase& each : kComplex) {
        const ComplexSample z(random);
        const Bounded<Complex> result = entry(kComplexFunctions, each.name).bounded(z.given);
        CAPTURE(std::string(each.name));
        CAPTURE(digits);
        CAPTURE(z.given.value.re.to_string());
        CAPTURE(z.given.value.im.to_string());
        CAPTURE(z.given.error.value().to_string());
        const bool on_axis = z.given.error.is_zero() && ((each.cuts == Cuts::real && z.exact.im == 0) ||
                                                         (each.cuts == Cuts::imaginary && z.exact.re == 0));
        check_ball(result, digits, [&](slong bits) {
          Ball ball(z.exact, bits);
          each.f(ball.get(), ball.get(), bits);
          const Place place = balls::place_of(ball.get(), result.value, result.error, bits);
          if (place != Place::outside || !on_axis) {
            return place;
          }
          acb_conj(ball.get(), ball.get());
          if (each.cuts == Cuts::imaginary) {
            acb_neg(ball.get(), ball.get());
          }
          return balls::place_of(ball.get(), result.value, result.error, bits);
        });
      }
      const ComplexSample z(random);
      const ComplexSample w(random);
      const Bounded<Complex> power = proven::pow(z.given, w.given);
      const Bounded<Real> modulus = proven::abs(z.given);
      const Bounded<Real> angle = proven::arg(z.given);
      CAPTURE(digits);
      CAPTURE(z.given.value.re.to_string());
      CAPTURE(z.given.value.im.to_string());
      CAPTURE(z.given.error.value().to_string());
      CAPTURE(w.given.value.re.to_string());
      CAPTURE(w.given.value.im.to_string());
      CAPTURE(w.given.error.value().to_string());
      check_ball(power, digits, [&](slong bits) {
        Ball ball(z.exact, bits);
        Ball exponent(w.exact, bits);
        acb_pow(ball.get(), ball.get(), exponent.get(), bits);
        return balls::place_of(ball.get(), power.value, power.error, bits);
      });
      check_ball(modulus, digits, [&](slong bits) {
        Ball ball(z.exact, bits);
        acb_abs(ball.real(), ball.get(), bits);
        arb_zero(acb_imagref(ball.get()));
        return balls::place_of(ball.get(), modulus.value, modulus.error, bits);
      });
      check_ball(angle, digits, [&](slong bits) {
        Ball ball(z.exact, bits);
        acb_arg(ball.real(), ball.get(), bits);
        arb_zero(acb_imagref(ball.get()));
        return balls::place_of(ball.get(), angle.value, angle.error, bits);
      });
    }
  }
}
