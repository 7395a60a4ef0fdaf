// Results depend on operands and digits alone: the same digests on every platform and with every limb width.
#include <doctest/doctest.h>

#include <cstdint>

#include "support/random.h"
#include "vectors/operations.h"

namespace {

constexpr int kCases = 4000;

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

std::uint64_t digest(const vectors::Operation& operation) {
  support::Random random(20);
  Digest result;
  for (int i = 0; i < kCases; ++i) {
    const int digits = int(random.between(1, random.once_in(50) ? 2000 : random.once_in(3) ? 150 : 60));
    const std::string a = operand(random, digits);
    const std::string b = operand(random, digits);
    result.add(vectors::evaluate(operation, digits, a, b));
  }
  return result.value();
}

}  // namespace

TEST_CASE("results do not depend on the platform") {
  const struct {
    const char* operation;
    std::uint64_t digest;
  } expected[] = {
      {"add", 0x79A4D6EE2664F527U},     {"subtract", 0x872F070FA95B6E35U},  {"multiply", 0xE7E797A701F458F4U},
      {"divide", 0xA980CAC61FFF1AE2U},  {"remainder", 0xA43738EF171DCD15U}, {"squareroot", 0x8615A42FA6DEAF70U},
      {"compare", 0x190C5789EED16D4CU}, {"text", 0x7CF605525A53A792U},      {"floor", 0x73FE29EDCEB58299U},
      {"ceil", 0x12DA045D86AE2E82U},    {"trunc", 0x993DB2B532BA6BD6U},     {"double", 0x6C6626E30366B5EFU},
      {"integer", 0x3B9906CD84F2F3FCU}, {"exp", 0xF55E231B4112BC42U},       {"ln", 0x3B14D4E0C601157AU},
      {"log10", 0x79016B40D4FF8702U},   {"sin", 0x2D8061680075D54AU},       {"cos", 0x313C7B9AFF74EEC7U},
      {"tan", 0xC2FADD20303926AFU},     {"asin", 0x82FF3C7DB11BF7E3U},      {"acos", 0x6656C03C2A182DD8U},
      {"atan", 0x005C99343097AD1FU},    {"sinh", 0x0DE98D87CE6C9245U},      {"cosh", 0xE7F31CACC7A58509U},
      {"tanh", 0x00325F2324173F21U},    {"power", 0xD5F12F9B1D8394A7U},     {"atan2", 0x05EA943143325B6BU},
  };
  for (const auto& e : expected) {
    const vectors::Operation* operation = vectors::find_operation(e.operation);
    REQUIRE(operation != nullptr);
    CHECK_MESSAGE(digest(*operation) == e.digest, operation->name);
  }
}
