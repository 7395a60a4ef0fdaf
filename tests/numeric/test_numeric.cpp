// QuarnFloat as a standard numeric type.
#include <doctest/doctest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <iomanip>
#include <limits>
#include <numeric>
#include <random>
#include <set>
#include <sstream>
#include <string>
#include <unordered_set>
#include <vector>

#include "quarn/numeric.hpp"
#include "support/digits.h"

using namespace quarn::literals;
using support::Digits;
using Limits = std::numeric_limits<QuarnFloat>;

namespace {

template <class T>
std::string written(const T& x, const char* how, int precision, int width = 0) {
  std::ostringstream out;
  const std::string flags = how;
  const auto has = [&flags](char c) { return flags.find(c) != std::string::npos; };
  out << std::setprecision(precision) << std::setw(width) << std::setfill('*');
  if (has('e'))
    out << std::scientific;
  if (has('f'))
    out << std::fixed;
  if (has('+'))
    out << std::showpos;
  if (has('#'))
    out << std::showpoint;
  if (has('U'))
    out << std::uppercase;
  if (has('<'))
    out << std::left;
  if (has('='))
    out << std::internal;
  out << x;
  return out.str();
}

template <class T>
void check_integers() {
  std::mt19937_64 random(7);
  const T most = std::numeric_limits<T>::max();
  const T least = std::numeric_limits<T>::min();
  std::vector<T> values{T(0), T(1), most, least, T(most - 1), T(least + 1)};
  for (int i = 0; i < 50; ++i) {
    values.push_back(T(random() >> (random() % 60)));
  }
  for (const T value : values) {
    CHECK(static_cast<T>(QuarnFloat(value)) == value);
  }
  CHECK(static_cast<T>(QuarnFloat(most) * 3 + 1) == most);
  CHECK(static_cast<T>(QuarnFloat(least) * 3 - 1) == least);
  CHECK(static_cast<T>(QuarnFloat("1e1000")) == most);
  CHECK(static_cast<T>(QuarnFloat("inf")) == most);
  CHECK(static_cast<T>(QuarnFloat("-inf")) == least);
  CHECK(static_cast<T>(QuarnFloat("nan")) == T(0));
  CHECK(static_cast<T>(QuarnFloat("0.99")) == T(0));
}

}  // namespace

TEST_CASE("numeric_limits follows the working precision") {
  for (const int digits : {1, 2, 17, 18, 20, 50, 333, 1000}) {
    const Digits scope(digits);
    const QuarnFloat one = 1;
    CHECK(one + Limits::epsilon() > one);
    CHECK(nextafter(one, 2) == one + Limits::epsilon());
    CHECK(Limits::max() < Limits::infinity());
    CHECK(isinf(Limits::max() * (one + Limits::epsilon())));
    CHECK(Limits::max().to_string().find(digits == 1 ? "9e+" : "9.9") == 0);
    CHECK(nextafter(Limits::max(), Limits::infinity()) == Limits::infinity());
    CHECK(Limits::lowest() == -Limits::max());
    CHECK(Limits::min() > 0);
    CHECK(Limits::min() / 2 == 0);
    CHECK(quarn::Precision10::digits10() == digits);
  }
  CHECK(isnan(Limits::quiet_NaN()));
  static_assert(Limits::is_specialized && Limits::radix == 10 && Limits::digits10 >= 1'000'000);
}

TEST_CASE("integers of every type go there and back") {
  const Digits scope(60);
  check_integers<signed char>();
  check_integers<unsigned char>();
  check_integers<short>();
  check_integers<int>();
  check_integers<unsigned>();
  check_integers<long>();
  check_integers<long long>();
  check_integers<unsigned long long>();
#if defined(__SIZEOF_INT128__)
  const quarn::UnsignedInt128 most = ~quarn::UnsignedInt128(0);
  CHECK(QuarnFloat(most) == QuarnFloat("340282366920938463463374607431768211455"));
  CHECK(static_cast<quarn::UnsignedInt128>(QuarnFloat(most)) == most);
  CHECK(static_cast<quarn::UnsignedInt128>(QuarnFloat(most) + 1) == most);
  const quarn::Int128 least = -quarn::Int128(most >> 1) - 1;
  CHECK(static_cast<quarn::Int128>(QuarnFloat(least)) == least);
  CHECK(static_cast<quarn::Int128>(QuarnFloat(least) - 1) == least);
  CHECK(static_cast<quarn::Int128>(QuarnFloat("-12345678901234567890123")) ==
        -(quarn::Int128(12345678901234567) * 1000000 + 890123));
#endif
  CHECK(static_cast<bool>(QuarnFloat("1e-999999")));
  CHECK_FALSE(static_cast<bool>(QuarnFloat("-0")));
  CHECK(QuarnFloat(true) == 1);
  CHECK(FloatToInt(QuarnFloat(123456789012345)) == 2147483647);
  CHECK(static_cast<std::int64_t>(QuarnFloat("123456789012345.9")) == 123456789012345);
}

TEST_CASE("hardware floating-point numbers go there and back") {
#if defined(_WIN32)
  using Long = double;  // what conversions to long double give there
#else
  using Long = long double;
#endif
  std::mt19937_64 random(11);
  const Digits scope(1100);
  for (int i = 0; i < 300; ++i) {
    const float f = std::ldexp(float(random() % 16777216), int(random() % 280) - 150);
    CHECK(static_cast<float>(QuarnFloat(f)) == f);
    const Long l = std::ldexp(Long(random()), int(random() % 1800) - 900);
    CHECK(static_cast<long double>(QuarnFloat(l)) == l);
    CHECK(static_cast<long double>(QuarnFloat(-l)) == -l);
  }
  // A float is rounded once: 1 + 2^-24 + 2^-60 is above the tie that its nearest double is on.
  const QuarnFloat tie = 1 + ldexp(QuarnFloat(1), -24);
  CHECK(static_cast<float>(tie) == 1.0F);
  CHECK(static_cast<float>(tie + ldexp(QuarnFloat(1), -60)) == std::nextafter(1.0F, 2.0F));
  CHECK(static_cast<float>(QuarnFloat("1e-50")) == 0.0F);
  CHECK(std::isinf(static_cast<float>(QuarnFloat("1e39"))));
  CHECK(static_cast<long double>(QuarnFloat(std::numeric_limits<Long>::max())) == std::numeric_limits<Long>::max());
  CHECK(std::isnan(static_cast<long double>(QuarnFloat("nan"))));
  {
    const Digits more(12'000);
    const Long tiny = std::numeric_limits<Long>::denorm_min() * 5;
    CHECK(static_cast<long double>(QuarnFloat(tiny)) == tiny);
  }
}

TEST_CASE("comparison, counting and hashing") {
  const QuarnFloat nan("nan");
  CHECK((QuarnFloat(1) <=> QuarnFloat(2)) == std::partial_ordering::less);
  CHECK((QuarnFloat("-0") <=> QuarnFloat(0)) == std::partial_ordering::equivalent);
  CHECK((nan <=> nan) == std::partial_ordering::unordered);
  QuarnFloat x = 9;
  CHECK(x++ == 9);
  CHECK(++x == 11);
  CHECK(x-- == 11);
  CHECK(--x == 9);
  CHECK(!QuarnFloat("-0"));
  CHECK_FALSE(!nan);
  const std::hash<QuarnFloat> hash;
  CHECK(hash(QuarnFloat(0)) == hash(QuarnFloat("-0")));
  std::unordered_set<QuarnFloat> seen;
  std::set<std::size_t> hashes;
  for (int i = -500; i < 500; ++i) {
    seen.insert(QuarnFloat(i) / 8);
    seen.insert(QuarnFloat(2 * i) / 16);
    hashes.insert(hash(QuarnFloat(i, -3)));
  }
  CHECK(seen.size() == 1000);
  CHECK(hashes.size() > 990);
}

TEST_CASE("streams write as they write doubles") {
  // Numbers with short binary fractions, so that a double is the same number.
  for (const double value : {0.0, 1.0, -2.5, 1234567.25, 0.0009765625, 1e22, -1048576.5, 6.25e-5}) {
    for (const char* how : {"", "e", "f", "+", "#", "e+", "fU", "eU", "#f", "f<", "e+=", "U"}) {
      for (const int precision : {0, 1, 3, 5, 7, 12, 17}) {
        INFO("value " << value << ", flags " << how << ", precision " << precision);
        CHECK(written(QuarnFloat(value), how, precision, 25) == written(value, how, precision, 25));
      }
    }
  }
  CHECK(written(1.5_q, "+", 6, 8) == "****+1.5");
  CHECK(written(QuarnFloat("-inf"), "e", 3) == "-inf");
  const Digits scope(60);
  const QuarnFloat third = QuarnFloat(1) / 3;
  CHECK(written(third, "", 6) == third.to_string());
  CHECK(written(third, "e", 40) == "3." + std::string(40, '3') + "e-01");
  CHECK(written(quarn::Complex(QuarnFloat(1.5), -2), "f", 2) == "(1.50,-2.00)");
}

TEST_CASE("streams read the longest number") {
  const struct {
    const char* text;
    const char* value;
    const char* rest;
  } rows[] = {{" 1.25e3x", "1250", "x"}, {"-.5,", "-0.5", ","},     {"7.", "7", ""},
              {"+3e-2 4", "0.03", " 4"}, {"-infinity", "-inf", ""}, {"inf", "inf", ""}};
  for (const auto& row : rows) {
    std::istringstream in(row.text);
    QuarnFloat x;
    in >> x;
    CHECK_FALSE(in.fail());
    CHECK(x == QuarnFloat(row.value));
    in.clear();
    std::string rest;
    std::getline(in, rest);
    CHECK(rest == row.rest);
  }
  for (const char* text : {"", "abc", "+", ".", "1e", "-e5"}) {
    std::istringstream in(text);
    QuarnFloat x = 5;
    in >> x;
    CHECK(in.fail());
  }
  std::istringstream in("(1.5,-2) (3) 4");
  quarn::Complex z[3];
  in >> z[0] >> z[1] >> z[2];
  CHECK(z[0] == quarn::Complex(1.5, -2));
  CHECK(z[1] == quarn::Complex(3));
  CHECK(z[2] == quarn::Complex(4));
}

TEST_CASE("to_chars and from_chars are inverses") {
  std::mt19937_64 random(3);
  for (const int digits : {1, 20, 90, 333}) {
    const Digits scope(digits);
    for (int i = 0; i < 40; ++i) {
      const QuarnFloat x = QuarnFloat(std::int64_t(random())) / QuarnFloat(std::int64_t(random() | 1)) *
                           QuarnFloat(1, int(random() % 61) - 30);
      for (const auto format : {std::chars_format::general, std::chars_format::fixed, std::chars_format::scientific,
                                std::chars_format::hex}) {
        char text[2000];
        const auto end = to_chars(text, text + sizeof text, x, format);
        REQUIRE(end.ec == std::errc());
        QuarnFloat y;
        const auto read = from_chars(text, end.ptr, y, format);
        INFO(std::string(text, end.ptr));
        CHECK(read.ptr == end.ptr);
        CHECK(y == x);
      }
    }
  }
  char small[3];
  CHECK(to_chars(small, small + 3, 1234_q).ec == std::errc::value_too_large);
  QuarnFloat x = 3;
  const std::string bad = "+1";
  CHECK(from_chars(bad.data(), bad.data() + 2, x).ec == std::errc::invalid_argument);
  CHECK(x == 3);
  char text[40];
  CHECK(std::string(text, to_chars(text, text + 40, 2.5_q, std::chars_format::scientific, 3).ptr) == "2.500e+00");
}

TEST_CASE("hexadecimal text is exact where it can be") {
  CHECK(quarn::hex_text(QuarnFloat(255)) == "0xf.fp+4");
  CHECK(quarn::hex_text(QuarnFloat("-0.375")) == "-0xcp-5");
  CHECK(quarn::hex_text(QuarnFloat(0)) == "0x0p+0");
  const char* end = nullptr;
  const std::string text = "-0x1.8p-3z";
  CHECK(quarn::read_hex(text.data(), text.data() + text.size(), &end) == QuarnFloat("-0.1875"));
  CHECK(*end == 'z');
  for (const char* extreme : {"1e999999999", "9.99e999999999", "1e-999999999", "-3e-700000000", "5e646456993"}) {
    const QuarnFloat x(extreme);
    const std::string hex = quarn::hex_text(x);
    CHECK(quarn::read_hex(hex.data(), hex.data() + hex.size(), &end) == x);
  }
  CHECK(isnan(quarn::read_hex(text.data(), text.data() + 1, &end)));
  CHECK(end == text.data());
}

TEST_CASE("literals and constants have all their digits") {
  const Digits scope(70);
  CHECK(1.5_q == QuarnFloat(1.5));
  CHECK(1'000'000_q == QuarnFloat(1000000));
  CHECK(0x10_q == 16);
  CHECK(3.14159265358979323846264338327950288419716939937510582097494459230781640_q ==
        QuarnFloat("3.14159265358979323846264338327950288419716939937510582097494459230781640"));
  CHECK(quarn::pi() == QuarnFloat("3.141592653589793238462643383279502884197169399375105820974944592307816406286"));
  CHECK(quarn::e() == QuarnFloat("2.718281828459045235360287471352662497757247093699959574966967627724076630353"));
  CHECK(quarn::euler() ==
        QuarnFloat("0.57721566490153286060651209008240243104215933593992359880576723488486772677767"));
  CHECK(quarn::catalan() ==
        QuarnFloat("0.91596559417721901505460351493238411077414937428167213426649811962176301977625"));
  CHECK(quarn::constant(quarn::KnownConstant::golden_ratio) ==
        QuarnFloat("1.61803398874989484820458683436563811772030917980576286213544862270526046281890"));
}

TEST_CASE("Complex has what std::complex has") {
  using quarn::Complex;
  QuarnSetDigits(20);
  Complex z(1, 2);
  z += Complex(1);
  z *= Complex(0, 1);
  z -= Complex(0, 2);
  z /= Complex(2);
  CHECK(z == Complex(-1, 0));
  CHECK(real(z) == z.real());
  CHECK(norm(Complex(3, 4)) == 25);
  CHECK(abs(Complex(3, -4)) == 5);
  CHECK(quarn::polar(QuarnFloat(2)) == Complex(2));
  CHECK(quarn::polar(QuarnFloat(2), QuarnFloat(1)).im == QuarnFloat("1.6829419696157930133"));
  CHECK(isinf(proj(Complex(1, QuarnFloat("-inf"))).re));
}

// What docs/guide/numeric.md says of the standard headers: a member works, or does not compile; none is silently wrong.

namespace {

template <class T>
concept HasMissingFunctions = requires(T x, int* n) {
  remquo(x, x, n);
}
|| requires(T x) { std::remquo(x, x, nullptr); }
|| requires(T x) { scalbln(x, 1L); }
|| requires(T x) { nexttoward(x, x); }
|| requires(T x) { std::beta(x, x); }
|| requires(T x) { std::riemann_zeta(x); }
|| requires(T x) { std::cyl_bessel_j(x, x); }
|| requires(T x) { std::legendre(2U, x); }
|| requires(T x) { std::ellint_1(x, x); }
|| requires(T x) { std::hypot(x, x, x); };
template <class T>
concept HasStandardNames = requires(T x) {
  std::sin(x);
}
|| requires(T x) { std::pow(x, x); }
|| requires(T x) { std::isnan(x); }
|| requires(T x) { std::midpoint(x, x); }
|| requires(T x) { std::lerp(x, x, x); };
static_assert(HasMissingFunctions<double> && HasStandardNames<double>);
static_assert(!HasMissingFunctions<QuarnFloat> && !HasStandardNames<QuarnFloat>);

template <class T>
concept HasCmath = requires(T x, int* n, T* whole) {
  sin(x), cos(x), tan(x), asin(x), acos(x), atan(x), atan2(x, x), sinh(x), cosh(x), tanh(x), asinh(x), acosh(x);
  atanh(x), exp(x), exp2(x), expm1(x), log(x), log2(x), log10(x), log1p(x), pow(x, x), sqrt(x), cbrt(x), hypot(x, x);
  erf(x), erfc(x), tgamma(x), lgamma(x), fabs(x), abs(x), floor(x), ceil(x), trunc(x), round(x), rint(x);
  nearbyint(x), lround(x), llround(x), lrint(x), llrint(x), fmod(x, x), remainder(x, x), fma(x, x, x), fmin(x, x);
  fmax(x, x), fdim(x, x), copysign(x, x), nextafter(x, x), frexp(x, n), ldexp(x, 1), scalbn(x, 1), logb(x), ilogb(x);
  modf(x, whole), isnan(x), isinf(x), isfinite(x), isnormal(x), signbit(x), fpclassify(x), isunordered(x, x);
};
static_assert(HasCmath<QuarnFloat>);

template <class T>
concept HasComplex = requires(T z, QuarnFloat x) {
  real(z), imag(z), abs(z), arg(z), norm(z), conj(z), proj(z), exp(z), log(z), log10(z), pow(z, z), sqrt(z), sin(z);
  cos(z), tan(z), asin(z), acos(z), atan(z), sinh(z), cosh(z), tanh(z), asinh(z), acosh(z), atanh(z);
  z += z, z -= z, z *= z, z /= z, quarn::polar(x, x);
};
static_assert(HasComplex<quarn::Complex>);

}  // namespace

TEST_CASE("algorithms of <numeric> and <algorithm> keep every digit") {
  QuarnSetDigits(40);
  std::vector<QuarnFloat> x(5);
  std::iota(x.begin(), x.end(), QuarnFloat("0.1"));
  CHECK(std::accumulate(x.begin(), x.end(), QuarnFloat()) == QuarnFloat("10.5"));
  CHECK(std::reduce(x.begin(), x.end()) == QuarnFloat("10.5"));
  CHECK(std::inner_product(x.begin(), x.end(), x.begin(), QuarnFloat()) == QuarnFloat("32.05"));
  std::partial_sum(x.begin(), x.end(), x.begin());
  std::adjacent_difference(x.begin(), x.end(), x.begin());
  CHECK(x.back() == QuarnFloat("4.1"));
  CHECK(std::clamp(QuarnFloat(7), x[0], x[4]) == QuarnFloat("4.1"));
  CHECK(*std::max_element(x.begin(), x.end()) == QuarnFloat("4.1"));
  QuarnSetDigits(20);
}
