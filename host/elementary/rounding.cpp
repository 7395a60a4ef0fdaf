#include "host/elementary/rounding.h"

#include <algorithm>
#include <vector>

namespace quarn {

bool rounds_safely(const QuarnFloat& approximation, int digits, int w) noexcept {
  const View v = view_of(approximation);
  const auto digit = [&v](int place) -> int {
    const std::size_t limb = std::size_t(place) / Radix::digits;
    const std::size_t within = std::size_t(place) % Radix::digits;
    return limb < v.length ? int(v.limbs[limb] / Radix::powers[Radix::digits - 1 - within] % 10) : 0;
  };
  // Undecided is what follows the kept digits like a number (000... or 999...) or a tie (500... or 499...) as far as
  // the approximation is good: its error lives in the last digit, and can carry into a run before it only.
  const int first = digit(digits);
  if (first != 0 && first != 4 && first != 5 && first != 9) {
    return true;
  }
  const int run = first == 4 || first == 9 ? 9 : 0;
  for (int place = digits + 1; place < w - 1; ++place) {
    if (digit(place) != run) {
      return true;
    }
  }
  return false;
}

std::optional<QuarnFloat> perturbed(const QuarnFloat& x, std::int64_t exponent, bool towards_zero) {
  const View v = view_of(x);
  const int digits = QuarnDigits();
  const std::size_t length = std::max(v.length, std::size_t(digits) / Radix::digits + 2) + 1;
  if (exponent > -std::int64_t(length) * Radix::digits) {
    return std::nullopt;
  }
  std::vector<Limb> limbs(length, 0);
  std::copy_n(v.limbs, v.length, limbs.begin());
  if (towards_zero) {
    // The last unit is borrowed: the true value lies between the two.
    std::size_t i = length;
    while (limbs[--i] == 0) {
      limbs[i] = Radix::base - 1;
    }
    --limbs[i];
  }
  return rounded(v.negative, v.exponent, limbs.data(), length, true, digits);
}

}  // namespace quarn
