#include "number/elementary/rounding.h"

#include <algorithm>
#include <vector>

#include "number/limbs/powers.h"

namespace quarn {

bool rounds_safely(const QuarnFloat& approximation, int digits, int w) noexcept {
  const View v = view_of(approximation);
  return rounds_safely(v.limbs, v.length, digits, w);
}

bool rounds_safely(const Limb* limbs, std::size_t length, int digits, int w) noexcept {
  const int zeros = Radix::digits - count_digits<Radix>(limbs[0]);
  const auto limb = [=](std::size_t i) { return i < length ? limbs[i] : 0; };
  // The digits that follow the kept ones, as many as a limb has, usually decide: the value is off by less than `error`
  // units of the last of these, the rest that is not looked at included.
  const std::size_t cut = std::size_t(zeros) + std::size_t(digits);
  const std::size_t last = cut / Radix::digits;
  const int within = int(cut % Radix::digits);
  const Limb unit = Radix::powers[std::size_t(Radix::digits - within)];
  const Limb tail = (within == 0 ? limb(last) : limb(last) % unit * Radix::powers[std::size_t(within)]) +
                    (within == 0 ? 0 : limb(last + 1) / unit);
  const Limb error = 1 + Radix::powers[std::size_t(std::clamp(digits + Radix::digits - w, 0, Radix::digits))];
  const Limb from_half = tail > Radix::base / 2 ? tail - Radix::base / 2 : Radix::base / 2 - tail;
  if (tail > error && Radix::base - tail > error && from_half > error) {
    return true;
  }
  const auto digit = [=](int place) -> int {
    const std::size_t at = std::size_t(zeros) + std::size_t(place);
    return int(limb(at / Radix::digits) / Radix::powers[Radix::digits - 1 - at % Radix::digits] % 10);
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
