// Formatted print.
#include <doctest/doctest.h>

#include <climits>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include "quarn/quarnfloat.h"
#include "support/decimal_model.h"
#include "support/digits.h"
#include "support/random.h"

namespace {

template <class... A>
std::string formatted(const char* format, const A&... values) {
  const int length = QFsnprintf(nullptr, 0, format, values...);
  if (length < 0) {
    return "disagrees";
  }
  std::vector<char> buffer(std::size_t(length) + 1, '#');
  const int written = QFsprintf(buffer.data(), format, values...);
  CHECK(written == length);
  CHECK(buffer.back() == '\0');
  return std::string(buffer.begin(), buffer.end() - 1);
}

}  // namespace

TEST_CASE("the pieces of messages") {
  CHECK(formatted(" ** On entry, N .le. 1: N =%16ld.", Integer(1)) == " ** On entry, N .le. 1: N =               1.");
  CHECK(formatted(" %5ld", Integer(99999)) == " 99999");
  CHECK(formatted(": IFAIL =%6ld", Integer(-13)) == ": IFAIL =   -13");
  CHECK(formatted(" ** %1s is an invalid value of DIRECT.", "Q") == " ** Q is an invalid value of DIRECT.");
  CHECK(formatted(" ** On entry to %13s", "F06PAF/DGEMV") == " ** On entry to  F06PAF/DGEMV");
  CHECK(formatted("%s %12.4e|", "TOL", QuarnFloat("-1.23455e-7")) == "TOL  -1.2346e-07|");
  CHECK(formatted("100 %% of %c%c", 'a', int('b')) == "100 % of ab");
  CHECK(formatted("") == "");
}

TEST_CASE("integers and texts") {
  const long long least = LLONG_MIN;
  CHECK(formatted("%d|%lld|%i", Integer(INT_MIN), least, 7U) == "-2147483648|-9223372036854775808|7");
  CHECK(formatted("%u|%x|%X|%lu", -1, -1, std::int64_t(-1), std::uint64_t(UINT64_MAX)) ==
        "4294967295|ffffffff|FFFFFFFFFFFFFFFF|18446744073709551615");
  CHECK(formatted("%*d|%-*d|%.*d", 5, 42, 5, 42, 5, 42) == "   42|42   |00042");
  CHECK(formatted("%*d|", -5, 42) == "42   |");
  CHECK(formatted("%.3s|%5.2s|%-5.2s|%.0s|%.*s|", "abcdef", "abc", "abc", "abc", 2, "xyz") == "abc|   ab|ab   ||xy|");
  const char open[3] = {'a', 'b', 'c'};
  CHECK(formatted("%.3s", static_cast<const char*>(open)) == "abc");
  CHECK(formatted("%s", static_cast<const char*>(nullptr)) == "(null)");
}

TEST_CASE("numbers") {
  const support::Digits scope(60);
  const struct {
    const char* format;
    const char* value;
    const char* text;
  } cases[] = {
      {"%e", "0", "0.000000e+00"},
      {"%E", "-0", "-0.000000E+00"},
      {"%f", "-0", "-0.000000"},
      {"%g", "0", "0"},
      {"%#g", "0", "0.00000"},
      {"%+g", "0", "+0"},
      {"% .3e", "12345", " 1.234e+04"},
      {"%.3e", "12355", "1.236e+04"},
      {"%.3e", "12345.000000000000000000000000000000000000000000000001", "1.235e+04"},
      {"%.0e", "25", "2e+01"},
      {"%#.0e", "35", "4.e+01"},
      {"%.2e", "9.995e-100", "1.00e-99"},
      {"%.0e", "9.6e999999999", "1e+1000000000"},
      {"%.1e", "-1e-999999999", "-1.0e-999999999"},
      {"%.0f", "0.5", "0"},
      {"%.0f", "1.5", "2"},
      {"%.0f", "0.50000000000000000000000000000000000000000000000001", "1"},
      {"%.2f", "0.005", "0.00"},
      {"%.2f", "-0.004", "-0.00"},
      {"%.2f", "0.00051", "0.00"},
      {"%.1f", "999.95", "1000.0"},
      {"%.1f", "1e-999999999", "0.0"},
      {"%#.0f", "7", "7."},
      {"%.3f", "123456789012345678901234567890.0625", "123456789012345678901234567890.062"},
      {"%g", "100000", "100000"},
      {"%g", "1e6", "1e+06"},
      {"%g", "999999.5", "1e+06"},
      {"%g", "0.0001", "0.0001"},
      {"%g", "0.00009999999", "0.0001"},
      {"%g", "0.0000999999", "9.99999e-05"},
      {"%.0g", "25", "2e+01"},
      {"%#.4g", "12", "12.00"},
      {"%G", "1e-50", "1E-50"},
      {"%.40g", "0.1", "0.1"},
      {"%012.2f", "-3.14159", "-00000003.14"},
      {"%-12.2f|", "3.14159", "3.14        |"},
      {"%012f", "-inf", "        -inf"},
      {"%-6e|", "inf", "inf   |"},
      {"%+F", "inf", "+INF"},
      {"%5G", "nan", "  NAN"},
      {"%+e", "nan", "+nan"},
      {"%f", "-nan", "nan"},
  };
  for (const auto& c : cases) {
    CAPTURE(std::string(c.format));
    CAPTURE(std::string(c.value));
    CHECK(formatted(c.format, QuarnFloat(c.value)) == c.text);
  }
}

TEST_CASE("numbers are rounded in decimal at any precision") {
  support::Random random;
  for (int i = 0; i < 3000; ++i) {
    const support::Digits scope(int(random.between(1, 150)));
    support::DecimalModel number;
    number.negative = random.once_in(2);
    number.digits = random.digits(std::size_t(QuarnDigits()));
    number.digits[0] = number.digits[0] == '0' ? '9' : number.digits[0];
    number.exponent = random.between(-60, 60);
    const QuarnFloat value(number.sign() + "." + number.digits + "e" + std::to_string(number.exponent));
    const int decimals = int(random.below(100));
    CAPTURE(value);
    CAPTURE(decimals);
    CHECK(formatted("%.*e", decimals, value) == number.scientific(decimals));
    CHECK(formatted("%.*f", decimals, value) == number.fixed(decimals));
  }
}

#if !defined(_WIN32)
TEST_CASE("the C library agrees on everything that a double or a long can hold") {
  support::Random random;
  const support::Digits scope(800);  // every double is exact
  for (int i = 0; i < 20000; ++i) {
    std::string format = "[%";
    for (const char flag : {'-', '+', ' ', '#', '0'}) {
      format += random.once_in(3) ? std::string(1, flag) : "";
    }
    format += random.once_in(2) ? std::to_string(1 + random.below(40)) : "";
    format += random.once_in(2) ? "." + std::to_string(random.below(30)) : random.once_in(8) ? "." : "";
    char expected[2000];
    std::string ours;
    if (random.once_in(3)) {
      const long value = long(random.below(UINT64_MAX)) >> random.below(64);
      format += std::string("l") + "diuxX"[random.below(5)] + "]";
      std::snprintf(expected, sizeof expected, format.c_str(), value);
      ours = formatted(format.c_str(), value);
    } else {
      const double magnitude = std::ldexp(double(random.below(1ULL << 53)), int(random.between(-150, 100)));
      const double value = random.once_in(2) ? magnitude : -std::floor(magnitude);
      format += std::string(1, "eEfFgG"[random.below(6)]) + "]";
      std::snprintf(expected, sizeof expected, format.c_str(), value);
      ours = formatted(format.c_str(), QuarnFloat(value));
    }
    CAPTURE(format);
    CHECK(ours == expected);
  }
}
#endif

TEST_CASE("what does not agree is refused") {
  const QuarnFloat one = 1;
  CHECK(formatted("%d") == "disagrees");
  CHECK(formatted("%d", one) == "disagrees");
  CHECK(formatted("%d", "1") == "disagrees");
  CHECK(formatted("%e", 1) == "disagrees");
  CHECK(formatted("%s", 1) == "disagrees");
  CHECK(formatted("%s", one) == "disagrees");
  CHECK(formatted("%c", "c") == "disagrees");
  CHECK(formatted("%*d", one, 1) == "disagrees");
  CHECK(formatted("%.*e", 3) == "disagrees");
  CHECK(formatted("%n", 1) == "disagrees");
  CHECK(formatted("%q", 1) == "disagrees");
  CHECK(formatted("%") == "disagrees");
  CHECK(formatted("%5", 1) == "disagrees");
  CHECK(QFformat(nullptr, 0, nullptr, nullptr, 0) == -1);
  CHECK(formatted("%d", 1, 2, "spare") == "1");

  char buffer[] = "########";
  CHECK(QFsnprintf(buffer, sizeof buffer, "ab%d%d", 7, "no") == -1);
  CHECK(std::string(buffer) == "ab7");
}

TEST_CASE("lengths that only a counter can hold") {
  CHECK(formatted("%.3f", QuarnFloat("1e70")).size() == 75);
  char buffer[4];
  CHECK(QFsnprintf(buffer, sizeof buffer, "%2147483647d", 1) == INT_MAX);
  CHECK(std::string(buffer) == "   ");
  CHECK(QFsnprintf(buffer, sizeof buffer, "%2147483648d", 1) == -1);
  CHECK(QFsnprintf(buffer, sizeof buffer, "%99999999999999999999999999d", 1) == -1);
  CHECK(QFsnprintf(buffer, sizeof buffer, "%.2147483647e", QuarnFloat(1)) == -1);
  CHECK(QFsnprintf(buffer, sizeof buffer, "%f", QuarnFloat("-1.5e999999999")) == 1'000'000'008);
  CHECK(std::string(buffer) == "-15");
  CHECK(QFsnprintf(buffer, sizeof buffer, "%.2000000000f", QuarnFloat("1e999999999")) == -1);
  CHECK(QFsnprintf(buffer, sizeof buffer, "%.1000000000f", QuarnFloat("1e-999999999")) == 1'000'000'002);
  CHECK(std::string(buffer) == "0.0");
}

TEST_CASE("no character is written past the capacity") {
  const std::string whole = "x=   -1.250e+00, n=00042, abc";
  for (std::size_t capacity = 0; capacity < whole.size() + 3; ++capacity) {
    std::vector<char> buffer(whole.size() + 6, '#');
    CAPTURE(capacity);
    CHECK(QFsnprintf(buffer.data(), capacity, "x=%13.3e, n=%05d, %s", QuarnFloat("-1.25"), 42, "abc") ==
          int(whole.size()));
    std::string expected = capacity == 0 ? "" : whole.substr(0, capacity - 1) + '\0';
    expected.resize(buffer.size(), '#');
    CHECK(std::string(buffer.begin(), buffer.end()) == expected);
  }
}
