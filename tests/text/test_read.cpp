// Numbers from text and back.
#include <doctest/doctest.h>

#include <string>
#include <vector>

#include "quarn/quarnfloat.h"
#include "support/decimal_model.h"
#include "support/digits.h"
#include "support/random.h"

namespace {

std::string read_at(int digits, const std::string& text) {
  const support::Digits scope(digits);
  return QuarnFloat(text).to_string();
}

/// The digits spelled as some text that means the number: zeros in front and behind, a point anywhere, an exponent.
std::string spelled(const support::DecimalModel& number, support::Random& random) {
  std::string digits = std::string(random.below(20), '0') + number.digits + std::string(random.below(20), '0');
  const std::size_t zeros = digits.find_first_not_of('0');
  const std::size_t point = random.below(digits.size() + 1);
  const std::int64_t exponent = number.exponent - (std::int64_t(point) - std::int64_t(zeros));
  digits.insert(point, ".");
  if (point + 1 == digits.size() && random.once_in(2)) {
    digits.pop_back();
  }
  std::string text = number.negative ? "-" : random.once_in(4) ? "+" : "";
  text += digits;
  if (exponent != 0 || random.once_in(2)) {
    text += random.once_in(2) ? 'e' : 'E';
    text += exponent < 0 ? "-" : random.once_in(2) ? "+" : "";
    text += std::string(random.below(3), '0') + std::to_string(exponent < 0 ? -exponent : exponent);
  }
  return text;
}

}  // namespace

TEST_CASE("texts and the numbers they mean") {
  const struct {
    int digits;
    const char* text;
    const char* value;
  } cases[] = {
      {20, "0", "0"},
      {20, "-0", "-0"},
      {20, "-0.000e99999999999999999999", "-0"},
      {20, "1", "1"},
      {20, "+1.50", "1.5"},
      {20, "5.", "5"},
      {20, ".5", "0.5"},
      {20, "-.5e1", "-5"},
      {20, "00012.5E+01", "125"},
      {20, "1e-7", "0.0000001"},
      {20, "1e-8", "1e-8"},
      {20, "1e20", "100000000000000000000"},
      {20, "1e21", "1e+21"},
      {20, "-12345e17", "-1.2345e+21"},
      {20, "inf", "inf"},
      {20, "-INFINITY", "-inf"},
      {20, "+Inf", "inf"},
      {20, "NaN", "nan"},
      {20, "-nan", "nan"},
      // Ties, and what breaks them however far away it stands.
      {1, "25", "20"},
      {1, "35", "40"},
      {1, "25.0000000000000000000000000000000000000000000000000000000000000000000000000000000000000000001", "30"},
      {1, "24.9999999999999999999999999999999999999999999999999999999999999999999999999999999999999999999", "20"},
      {3, "99950", "100000"},
      {3, "99949.99", "99900"},
      {18, "1234567890123456785", "1234567890123456780"},
      {18, "1234567890123456775", "1234567890123456780"},
      {20, "99999999999999999999.5", "100000000000000000000"},
      // The ends of the exponent range.
      {20, "9.9999999999999999999e999999999", "9.9999999999999999999e+999999999"},
      {20, "9.99999999999999999995e999999999", "inf"},
      {20, "-1e1000000000", "-inf"},
      {20, "1e-999999999", "1e-999999999"},
      {20, "9.99999999999999999994e-1000000000", "0"},
      {20, "9.99999999999999999995e-1000000000", "1e-999999999"},
      {20, "-1e-1000000000", "-0"},
      {20, "1e99999999999999999999999999999999999999", "inf"},
      {20, "-1e-99999999999999999999999999999999999999", "-0"},
      {20, "1e-9223372036854775808", "0"},
      {20, "0.0001e1000000003", "1e+999999999"},
      {20, "10000e-1000000003", "1e-999999999"},
  };
  for (const auto& c : cases) {
    CAPTURE(c.digits);
    CAPTURE(std::string(c.text));
    CHECK(read_at(c.digits, c.text) == c.value);
  }
}

TEST_CASE("malformed text is NaN") {
  const char* const texts[] = {"",         " ",     "+",     "-",     ".",       "e5",   ".e5",       "1e",
                               "1e+",      "1e-",   " 1",    "1 ",    "1\n",     "--1",  "+-1",       "1..2",
                               "1.2.",     "0x10",  "1,5",   "1_000", "1e5.",    "1e 5", "1e++5",     "in",
                               "infi",     "infin", "infx",  "nan0",  "nan(12)", "inf ", "1f",        "1d5",
                               "\xC2\xB2", "∞",     "1e5e5", "-.",    "+.e1",    "snan", "infinityx", "- 1"};
  for (const char* text : texts) {
    CAPTURE(std::string(text));
    CHECK(isnan(QuarnFloat(text)));
  }
  CHECK(isnan(QuarnFloat(static_cast<const char*>(nullptr))));
  CHECK(isnan(QuarnFloat(std::string("1\0002", 3) + "x")) == false);  // a string ends at its first NUL
}

TEST_CASE("any spelling at any precision is correctly rounded") {
  support::Random random;
  for (int i = 0; i < 4000; ++i) {
    const int digits = int(random.once_in(20) ? random.between(200, 3000) : random.between(1, 200));
    const std::size_t length = std::size_t(random.between(1, random.once_in(3) ? 40 : digits + 40));
    support::DecimalModel number;
    number.negative = random.once_in(2);
    number.digits = random.digits(length);
    if (random.once_in(4) && length > std::size_t(digits)) {
      // A tie, or very nearly one.
      number.digits.resize(std::size_t(digits));
      number.digits += '5' + std::string(random.below(400), '0') + (random.once_in(2) ? "" : "1");
    }
    if (number.digits[0] == '0') {
      number.digits[0] = '7';
    }
    number.exponent = random.between(-30, 30) * (random.once_in(5) ? 10'000'000 : 1);
    const std::string text = spelled(number, random);
    CAPTURE(digits);
    CAPTURE(std::string(text));
    const std::string value = read_at(digits, text);
    CHECK(value == number.plain(digits));
    CHECK(read_at(digits, value) == value);
  }
}

TEST_CASE("a million digits survive the way there and back") {
  support::Random random;
  const support::Digits scope(1'000'000);
  const std::string text = "7." + random.digits(999'998) + "3e+123456";
  const QuarnFloat value(text);
  CHECK(value.to_string() == text);
  CHECK(QuarnFloat(value.to_string()) == value);
}

TEST_CASE("a stored value keeps its digits when the working digits change") {
  const support::Digits wide(60);
  const std::string text = "3." + std::string(57, '1') + "7";
  const QuarnFloat value(text);
  const support::Digits narrow(5);
  CHECK(value.to_string() == text);
}

TEST_CASE("text is cut to the capacity and always closed") {
  const support::Digits scope(40);
  const QuarnFloat value("-1234567890123456789012345678901234567.5");
  const std::string whole = "-1.2345678901234567890123456789012345675e+36";
  REQUIRE(value.to_string() == whole);
  CHECK(QuarnText(value, nullptr, 0) == whole.size());
  for (std::size_t capacity = 0; capacity <= whole.size() + 3; ++capacity) {
    std::vector<char> buffer(whole.size() + 8, '#');
    CAPTURE(capacity);
    CHECK(QuarnText(value, buffer.data(), capacity) == whole.size());
    std::string expected = capacity == 0 ? "" : whole.substr(0, capacity - 1) + '\0';
    expected.resize(buffer.size(), '#');
    CHECK(std::string(buffer.begin(), buffer.end()) == expected);
  }
}
