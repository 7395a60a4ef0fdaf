// Between QuarnFloat and the wider numbers of the hardware.
#include <cmath>

#include "number/scalar/access.h"
#include "number/scalar/nearest.h"

namespace quarn {

float to_float(const QuarnFloat& x) noexcept { return nearest<float>(x, -60, 60); }

long double to_long_double(const QuarnFloat& x) noexcept {
#if defined(_WIN32)
  // The C runtime, by which the standard library reads, has no numbers longer than a double.
  return FloatToDouble(x);
#else
  return nearest<long double>(x, -5000, 5000);
#endif
}

bool whole_part_words(const QuarnFloat& x, std::uint64_t (&words)[2], bool& negative) noexcept {
  words[0] = 0;
  words[1] = 0;
  negative = signbit(x);
  if (kind_of(x) == Kind::zero) {
    return true;
  }
  // 2^128 has 39 digits.
  if (kind_of(x) != Kind::finite || view_of(x).exponent > 39) {
    return false;
  }
  const View v = view_of(x);
  // words = words * 10^count + more, in 32-bit parts
  const auto append = [&words](std::uint64_t factor, std::uint64_t more) {
    std::uint64_t carry = more;
    for (std::uint64_t& word : words) {
      const std::uint64_t low = (word & 0xFFFFFFFF) * factor + (carry & 0xFFFFFFFF);
      const std::uint64_t high = (word >> 32) * factor + (carry >> 32) + (low >> 32);
      word = (high << 32) | (low & 0xFFFFFFFF);
      carry = high >> 32;
    }
    return carry == 0;
  };
  for (std::int64_t place = 0; place < v.exponent; place += 9) {
    // Nine digits at a time: factor and digits have 32 bits.
    const std::int64_t count = std::min<std::int64_t>(9, v.exponent - place);
    const std::size_t limb = std::size_t(place / Radix::digits);
    const Limb value = limb < v.length ? v.limbs[limb] : 0;
    const std::int64_t within = place % Radix::digits;
    const Limb part =
        value / Radix::powers[std::size_t(Radix::digits - within - count)] % Radix::powers[std::size_t(count)];
    if (!append(std::uint64_t(Radix::powers[std::size_t(count)]), std::uint64_t(part))) {
      return false;
    }
  }
  return true;
}

}  // namespace quarn

using namespace quarn;

QuarnFloat::QuarnFloat(bool negative, std::uint64_t high, std::uint64_t low) : QuarnFloat() {
  // 2^128 - 1 has 39 digits.
  const int working = QuarnDigits();
  const WorkingDigits scope(45);
  const QuarnFloat upper(Magnitude{negative, high});
  const QuarnFloat lower(Magnitude{negative, low});
  const QuarnFloat unit(Magnitude{false, std::uint64_t(1) << 32});
  *this = rounded(upper * unit * unit + lower, working);
}

QuarnFloat::QuarnFloat(long double value) : QuarnFloat() {
  const bool negative = std::signbit(value);
  if (!std::isfinite(value)) {
    QuarnAccess::set_special(*this, std::isnan(value) ? Kind::nan : Kind::infinite, negative);
    return;
  }
  // Pieces of at most 53 bits are doubles; doubles beyond the range of their exponent are moved by powers of two.
  int exponent = 0;
  long double rest = std::frexp(value, &exponent);
  if (rest == 0) {
    QuarnAccess::set_special(*this, Kind::zero, negative);
    return;
  }
  const int working = QuarnDigits();
  // 2^-16494 times a whole number of 113 bits has fewer digits.
  const WorkingDigits scope(11'600);
  QuarnFloat sum;
  while (rest != 0) {
    const double piece = double(rest);
    sum += QuarnFloat(piece);
    rest -= piece;
  }
  const QuarnFloat factor = pow(QuarnFloat(2), QuarnFloat(std::abs(exponent)));
  *this = rounded(exponent < 0 ? sum / factor : sum * factor, working);
}
