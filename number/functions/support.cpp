#include "number/functions/support.h"

namespace quarn {
namespace {

/// The digit with the weight 10^place of a finite number that is not zero.
int digit_at(const View& v, std::int64_t place) noexcept {
  const std::int64_t i = v.exponent - 1 - place;
  if (i < 0 || i >= std::int64_t(v.length) * Radix::digits) {
    return 0;
  }
  const Limb limb = v.limbs[i / Radix::digits];
  return int(limb / Radix::powers[std::size_t(Radix::digits - 1 - i % Radix::digits)] % 10);
}

}  // namespace

bool is_whole(const QuarnFloat& x) noexcept {
  if (kind_of(x) != Kind::finite) {
    return kind_of(x) == Kind::zero;
  }
  const View v = view_of(x);
  const std::int64_t places = std::int64_t(v.length) * Radix::digits - v.exponent;
  if (places <= 0) {
    return true;
  }
  // The last limb is not zero: a fraction of a whole limb is one.
  return v.exponent > 0 && places < Radix::digits && v.limbs[v.length - 1] % Radix::powers[std::size_t(places)] == 0;
}

bool is_odd_whole(const QuarnFloat& x) noexcept {
  return kind_of(x) == Kind::finite && is_whole(x) && digit_at(view_of(x), 0) % 2 == 1;
}

NearestWhole nearest_whole(const QuarnFloat& x) {
  const WorkingDigits scope(stored_digits(x) + 2 * Radix::digits);
  const QuarnFloat half(5, -1);
  const QuarnFloat whole = floor(x + half);
  return {whole, x - whole};
}

}  // namespace quarn
