// Properties of arithmetic that hold at every precision, and the rules for special values.
#include <doctest/doctest.h>

#include <iterator>
#include <string>

#include "quarn/quarnfloat.h"
#include "support/digits.h"
#include "support/random.h"

namespace {

QuarnFloat random_number(support::Random& random, int digits) {
  const std::string sign = random.once_in(2) ? "-" : "";
  const int length = random.once_in(3) ? int(random.between(1, digits)) : digits;
  return QuarnFloat(
      (sign + "1" + random.digits(std::size_t(length)) + "e" + std::to_string(random.between(-30, 30))).c_str());
}

/// Equal values of equal sign, NaN equal to NaN.
bool same(const QuarnFloat& a, const QuarnFloat& b) {
  return (isnan(a) && isnan(b)) || (a == b && signbit(a) == signbit(b));
}

/// The unit in the last place of a finite x that is not zero, at the working digits.
QuarnFloat unit_of(const QuarnFloat& x) {
  int exponent = 0;
  for (QuarnFloat y = fabs(x); y >= QuarnFloat(10); y = y / QuarnFloat(10)) {
    ++exponent;
  }
  for (QuarnFloat y = fabs(x); y < QuarnFloat(1); y = y * QuarnFloat(10)) {
    --exponent;
  }
  return QuarnFloat(1, exponent + 1 - QuarnDigits());
}

struct Digits {
  explicit Digits(int digits) { QuarnSetDigits(digits); }
  ~Digits() { QuarnSetDigits(20); }
};

}  // namespace

TEST_CASE("operations commute, mirror their signs and replace their operands") {
  support::Random random;
  for (int i = 0; i < 3000; ++i) {
    const int digits = int(random.between(1, 140));
    const Digits working(digits);
    const QuarnFloat a = random_number(random, digits);
    const QuarnFloat b = random_number(random, digits);
    CAPTURE(digits);
    CAPTURE(a);
    CAPTURE(b);
    CHECK(same(a + b, b + a));
    CHECK(same(a * b, b * a));
    CHECK(same(a - b, -(b - a)) == (a != b));
    CHECK(same(a - b, a + -b));
    CHECK(same(-a * b, -(a * b)));
    CHECK(same(-a / b, -(a / b)));
    QuarnFloat x = a;
    x += b;
    CHECK(same(x, a + b));
    x = a;
    x *= x;
    CHECK(same(x, a * a));
    x = a;
    x = x - b * x;
    CHECK(same(x, a - b * a));
    x = a;
    x /= *&x;
    CHECK(same(x, QuarnFloat(1)));
  }
}

TEST_CASE("each result is the nearest one: exact results at more digits are within half a unit") {
  support::Random random;
  for (int i = 0; i < 1500; ++i) {
    const int digits = int(random.between(1, 130));
    const Digits working(digits);
    const QuarnFloat a = random_number(random, digits);
    const QuarnFloat b = random_number(random, digits);
    const QuarnFloat results[] = {a + b, a * b, a / b, sqrt(fabs(a))};
    QuarnFloat units[4];
    for (int k = 0; k < 4; ++k) {
      units[k] = results[k] == QuarnFloat() ? QuarnFloat() : unit_of(results[k]);
    }
    CAPTURE(digits);
    CAPTURE(a);
    CAPTURE(b);
    QuarnSetDigits(500);
    const QuarnFloat half(5, -1);
    CHECK(fabs(results[0] - (a + b)) <= units[0] * half);
    CHECK(fabs(results[1] - a * b) <= units[1] * half);
    CHECK(fabs(results[2] * b - a) <= units[2] * half * fabs(b));
    const QuarnFloat above = results[3] + units[3] * half;
    const QuarnFloat below = results[3] - units[3] * half;
    CHECK(above * above >= fabs(a));
    CHECK(below * below <= fabs(a));
  }
}

TEST_CASE("added products are rounded like the operators one by one") {
  support::Random random;
  const auto number = [&random](int digits) {
    const char* const special[] = {"0", "-0", "inf", "nan", "9e999999999", "1e-999999999", "-1e600000000"};
    return random.once_in(40) ? QuarnFloat(special[random.below(std::size(special))])
           // Small values of few digits cancel, and meet halfway cases.
           : random.once_in(3) ? QuarnFloat(random.between(-9, 9))
                               : random_number(random, digits);
  };
  for (int i = 0; i < 20000; ++i) {
    const int digits = int(random.between(1, random.once_in(10) ? 300 : 140));
    const Digits working(digits);
    const Complex a(number(digits), number(digits));
    const Complex b(number(digits), number(digits));
    const Complex c(number(digits), number(digits));
    const unsigned how = unsigned(random.below(8));
    CAPTURE(digits);
    CAPTURE(a.re);
    CAPTURE(a.im);
    CAPTURE(b.re);
    CAPTURE(b.im);
    CAPTURE(c.re);
    CAPTURE(c.im);
    CAPTURE(how);
    QuarnFloat real = c.re;
    QuarnAddProduct(real, a.re, b.re, how);
    CHECK(same(real, (how & QuarnSubtract) != 0 ? c.re - a.re * b.re : c.re + a.re * b.re));
    const Complex x = (how & QuarnConjugateA) != 0 ? conj(a) : a;
    const Complex y = (how & QuarnConjugateB) != 0 ? conj(b) : b;
    const Complex expected = (how & QuarnSubtract) != 0 ? c - x * y : c + x * y;
    Complex sum = c;
    QuarnAddProduct(sum, a, b, how);
    CHECK((same(sum.re, expected.re) && same(sum.im, expected.im)));
    if (how == QuarnPlain) {
      Complex own = a;
      QuarnAddProduct(own, own, own);
      const Complex square = a + a * a;
      CHECK((same(own.re, square.re) && same(own.im, square.im)));
    }
  }
}

TEST_CASE("special values follow the General Decimal Arithmetic rules") {
  const QuarnFloat zero;
  const QuarnFloat minus_zero = -zero;
  const QuarnFloat one(1);
  const QuarnFloat inf("inf");
  const QuarnFloat nan("nan");
  const struct {
    QuarnFloat got, expected;
  } rows[] = {
      {one - one, zero},         {minus_zero + minus_zero, minus_zero},
      {zero + minus_zero, zero}, {minus_zero - zero, minus_zero},
      {one * minus_zero, -zero}, {inf * zero, nan},
      {inf - inf, nan},          {inf + inf, inf},
      {-one / zero, -inf},       {zero / zero, nan},
      {inf / inf, nan},          {one / -inf, minus_zero},
      {sqrt(minus_zero), -zero}, {sqrt(-one), nan},
      {sqrt(inf), inf},          {fmod(one, inf), one},
      {fmod(one, zero), nan},    {fmod(inf, one), nan},
      {fmod(-one, one), -zero},  {ceil(QuarnFloat(-5, -1)), -zero},
      {nan + one, nan},          {floor(-inf), -inf},
  };
  for (const auto& row : rows) {
    CAPTURE(&row - rows);
    CHECK(same(row.got, row.expected));
  }
  CHECK(QuarnCompare(nan, nan) == 2);
  CHECK(nan != nan);
  CHECK_FALSE(nan <= one);
  CHECK(minus_zero == zero);
}

TEST_CASE("results beyond the exponent range become infinity or zero") {
  for (const int digits : {5, 20, 54, 100, 200}) {
    const Digits working(digits);
    const QuarnFloat largest(9, 999999999);
    const QuarnFloat smallest(1, -999999999);
    CHECK(isfinite(largest));
    CHECK(same(largest + largest, QuarnFloat("inf")));
    CHECK(same(largest * QuarnFloat(-2), QuarnFloat("-inf")));
    CHECK(same(smallest / QuarnFloat(-2), -QuarnFloat()));
    CHECK(same(smallest * QuarnFloat(1, -1), QuarnFloat()));
    CHECK(sqrt(smallest) > QuarnFloat(1, -500000000));
    // Rounded first: what is just below the smallest number before that is the smallest number.
    QuarnSetDigits(digits + 2);
    const QuarnFloat below_one = QuarnFloat(1) - QuarnFloat(1, -digits - 2);
    QuarnSetDigits(digits);
    CHECK(same(below_one * smallest, smallest));
    CHECK(same(-below_one / QuarnFloat(1, 999999999), -smallest));
    QuarnFloat sum = 0;
    QuarnAddProduct(sum, below_one, smallest);
    CHECK(same(sum, smallest));
  }
}

TEST_CASE("a change of digits changes results, never values") {
  const Digits working(60);
  const QuarnFloat third = QuarnFloat(1) / QuarnFloat(3);
  const std::string text = third.to_string();
  QuarnSetDigits(5);
  const QuarnFloat copy = third;
  CHECK(copy.to_string() == text);
  CHECK((third + QuarnFloat()).to_string() == "0.33333");
  CHECK((third * QuarnFloat(1)).to_string() == "0.33333");
  CHECK(QuarnSetDigits(0) == 5);
  CHECK(QuarnSetDigits(1000001) == 5);
  CHECK(QuarnDigits() == 5);
}

TEST_CASE("remainders of far apart operands take no time") {
  const Digits working(30);
  // 10^k mod 7 has period 6, and 999999990 = 0 mod 6.
  CHECK(fmod(QuarnFloat(1, 999999990), QuarnFloat(7)) == QuarnFloat(1));
  CHECK(fmod(QuarnFloat(1, 999999991), QuarnFloat(-7)) == QuarnFloat(3));
  CHECK(fmod(QuarnFloat(-1, 999999992), QuarnFloat(7)) == QuarnFloat(-2));
}

TEST_CASE("square roots whose short code finds a digit too large") {
  struct Row {
    int digits;
    const char *x, *root;
  };
  const Row rows[] = {
      {125, "9.999900009E+12",
       "3162261."
       "850163581883640224317183713947011616140345177686067768873239099577509242644413230793030257793245932487776837378"
       "8225401"},
      {114, "2.1756902680550375591908842560689999999999999999999999999993E-499999946",
       "1."
       "475022124598488034214968944076157518885932802990981535315601222970742577541797290220572939376950326370883686379"
       "16e-249999973"},
      {114, "85621461476.52770350694882326100000000000000000000048342098022409619998408662111980620344068692693531777",
       "292611."
       "451376270821960021468542134780956349732348652419422929670705685618907210707196063413787836151028839149182224"},
  };
  for (const Row& row : rows) {
    const support::Digits scope(row.digits);
    CHECK(sqrt(QuarnFloat(row.x)) == QuarnFloat(row.root));
  }
}

TEST_CASE("quotients by numbers next below powers of two, whose leading digits fill a word") {
  support::Random random;
  for (const int digits : {40, 50, 100, 333, 1000}) {
    for (int i = 0; i < 300; ++i) {
      const support::Digits scope(digits);
      const std::int64_t power = std::int64_t(1) << random.between(55, 59);
      const QuarnFloat b(std::to_string(power - 1) + "." + std::string(std::size_t(random.between(5, 19)), '9') +
                         random.digits(std::size_t(random.between(1, digits))));
      const QuarnFloat a(random.digits(std::size_t(random.between(1, digits))) + "7");
      CAPTURE(digits);
      CAPTURE(a);
      CAPTURE(b);
      const QuarnFloat quotient = a / b;
      const support::Digits exact(3 * digits);
      const QuarnFloat unit = quotient * QuarnFloat(1, 1 - digits);
      CHECK(fabs(a - quotient * b) <= unit * b / 2);
    }
  }
}
