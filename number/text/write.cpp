// The shortest text that holds every digit of a number.
#include "number/text/digits.h"
#include "number/text/write_number.h"

namespace quarn {

namespace {

// Plain text for d.ddd * 10^e with e in this range, scientific outside.
constexpr std::int64_t kSmallestPlain = -7;
constexpr std::int64_t kLargestPlain = 20;

void write_finite(BoundedText& out, const View& number) noexcept {
  const RoundedDigits digits(number, kAllDigits);
  const std::int64_t exponent = digits.exponent() - 1;
  if (exponent >= kSmallestPlain && exponent <= kLargestPlain) {
    const std::int64_t decimals = std::max<std::int64_t>(digits.count() - digits.exponent(), 0);
    FixedLayout{decimals, false}.write(out, digits);
  } else {
    ScientificLayout{digits.count() - 1, false, 'e', 1}.write(out, digits);
  }
}

}  // namespace

}  // namespace quarn

std::size_t QuarnText(const QuarnFloat& x, char* buffer, std::size_t capacity) noexcept {
  using namespace quarn;
  return write_number(x, buffer, capacity, "0", [&](BoundedText& out) { write_finite(out, view_of(x)); });
}
