// Results depend on operands and digits alone: the same digests on every platform and with every limb width.
#include <doctest/doctest.h>

#include <cstdint>

#include "support/random.h"
#include "vectors/operations.h"

namespace {

constexpr int kCases = 4000;
constexpr int kElementaryCases = 500;

/// FNV-1a.
class Digest {
 public:
  void add(const std::string& text) {
    for (const char c : text + '\n') {
      value_ = (value_ ^ std::uint8_t(c)) * 0x100000001B3U;
    }
  }
  std::uint64_t value() const { return value_; }

 private:
  std::uint64_t value_ = 0xCBF29CE484222325U;
};

std::string operand(support::Random& random, int digits) {
  static const char* const specials[] = {"0", "-0", "inf", "-inf", "nan", "1", "-1", "0.5"};
  if (random.once_in(40)) {
    return specials[random.below(8)];
  }
  const std::string coefficient = random.digits(std::size_t(random.between(1, digits + 3)));
  const std::int64_t exponent =
      random.once_in(20) ? random.between(-900'000'000, 900'000'000) : random.between(-digits / 2 - 6, 6);
  return (random.once_in(2) ? "-0." : "0.") + coefficient + "e" + std::to_string(exponent);
}

std::uint64_t digest(const vectors::Operation& operation, int cases) {
  support::Random random(20);
  Digest result;
  for (int i = 0; i < cases; ++i) {
    const int digits = int(random.between(1, random.once_in(50) ? 2000 : random.once_in(3) ? 150 : 60));
    const std::string a = operand(random, digits);
    const std::string b = operand(random, digits);
    result.add(vectors::evaluate(operation, digits, a, b));
  }
  return result.value();
}

}  // namespace

TEST_CASE("results do not depend on the platform") {
  struct Expected {
    const char* operation;
    std::uint64_t digest;
  };
  const Expected arithmetic[] = {
      {"add", 0x79A4D6EE2664F527U},     {"subtract", 0x872F070FA95B6E35U},  {"multiply", 0xE7E797A701F458F4U},
      {"divide", 0xA980CAC61FFF1AE2U},  {"remainder", 0xA43738EF171DCD15U}, {"squareroot", 0x8615A42FA6DEAF70U},
      {"compare", 0x190C5789EED16D4CU}, {"text", 0x7CF605525A53A792U},      {"floor", 0x73FE29EDCEB58299U},
      {"ceil", 0x12DA045D86AE2E82U},    {"trunc", 0x993DB2B532BA6BD6U},     {"double", 0x6C6626E30366B5EFU},
      {"integer", 0x3B9906CD84F2F3FCU},
  };
  const Expected elementary[] = {
      {"exp", 0xA952A2BCBC2AB21CU},   {"ln", 0x9EB455E382EF612CU},    {"log10", 0xC5A417B703DBFD7DU},
      {"sin", 0x978CD20957C75FD3U},   {"cos", 0x6B5672A9AE383FEDU},   {"tan", 0x787BEB49E61DDF4EU},
      {"asin", 0x8B8B99E512D2D6DDU},  {"acos", 0xC9A749F9BFA2B860U},  {"atan", 0x487D63B595702752U},
      {"sinh", 0xB992FF6997AB541EU},  {"cosh", 0x7240E3D3B64D5229U},  {"tanh", 0xCBF8884C4D2605C9U},
      {"power", 0x596A8FD16DD36702U}, {"atan2", 0x13050022114194A7U},
  };
  const auto check = [](const Expected& expected, int cases) {
    const vectors::Operation* operation = vectors::find_operation(expected.operation);
    REQUIRE(operation != nullptr);
    CHECK_MESSAGE(digest(*operation, cases) == expected.digest, operation->name);
  };
  for (const Expected& expected : arithmetic) {
    check(expected, kCases);
  }
  for (const Expected& expected : elementary) {
    check(expected, kElementaryCases);
  }
}
