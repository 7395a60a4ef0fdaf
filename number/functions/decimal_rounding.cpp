// Rounding in every mode, of numbers and of the results of operations.
#include <vector>

#include "number/functions/support.h"
#include "quarn/rounding.h"

namespace quarn {
namespace {

/// What is cut off, in units of the last digit kept.
enum class Rest { none, below_half, half, above_half };

/// Whether the magnitude goes up by a unit of its last digit.
bool goes_up(Rounding mode, bool negative, int last_digit, Rest rest) {
  if (rest == Rest::none) {
    return false;
  }
  switch (mode) {
    case Rounding::half_even:
      return rest == Rest::above_half || (rest == Rest::half && last_digit % 2 != 0);
    case Rounding::half_up:
      return rest != Rest::below_half;
    case Rounding::half_down:
      return rest == Rest::above_half;
    case Rounding::up:
      return true;
    case Rounding::down:
      return false;
    case Rounding::ceiling:
      return !negative;
    case Rounding::floor:
      return negative;
    case Rounding::up_05:
      return last_digit % 5 == 0;
  }
  return false;
}

/// Digit i of 0.d0 d1 d2 ...; beyond the limbs zero.
int digit(const View& v, std::int64_t i) {
  const auto limb = std::size_t(i) / Radix::digits;
  return limb >= v.length ? 0
                          : int(v.limbs[limb] / Radix::powers[Radix::digits - 1 - std::size_t(i) % Radix::digits] % 10);
}

/// Whether anything but zeros stands from digit i on.
bool any_from(const View& v, std::int64_t i) {
  const auto limb = std::size_t(i) / Radix::digits;
  // The last limb is not zero.
  return limb < v.length &&
         (limb + 1 < v.length || v.limbs[limb] % Radix::powers[Radix::digits - std::size_t(i) % Radix::digits] != 0);
}

/// A number of the end of the range, or what lies beyond it.
QuarnFloat at_the_end(const QuarnFloat& beyond, int digits, Rounding mode) {
  const bool negative = signbit(beyond);
  const bool away = goes_up(mode, negative, 1, Rest::above_half);
  if (isinf(beyond)) {
    if (away) {
      return beyond;
    }
    const std::vector<Limb> nines(std::size_t(digits) / Radix::digits + 1, Radix::base - 1);
    const View v{negative, kMaxScientificExponent + 1, nines.data(), nines.size()};
    std::vector<Limb> kept(v.limbs, v.limbs + v.length);
    kept.back() -= Radix::powers[Radix::digits - std::size_t(digits) % Radix::digits] - 1;
    return rounded(negative, v.exponent, kept.data(), kept.size(), false, digits + Radix::digits);
  }
  if (!goes_up(mode, negative, 0, Rest::below_half)) {
    return beyond;
  }
  const Limb one = Radix::base / 10;
  return rounded(negative, 1 - kMaxScientificExponent, &one, 1, false);
}

/// x with its first `kept` digits (none if that is not positive), in that mode. More says that the number meant is a
/// little larger in magnitude than x, by less than any digit of x.
QuarnFloat cut(const QuarnFloat& x, std::int64_t kept, Rounding mode, bool more, bool* inexact) {
  const View v = view_of(x);
  const auto stored = std::int64_t(v.length) * Radix::digits;
  if (kept >= stored && !more) {
    if (inexact != nullptr) {
      *inexact = false;
    }
    return x;
  }
  Rest rest = Rest::below_half;
  if (kept >= 0) {
    const int next = digit(v, kept);
    const bool tail = more || any_from(v, kept + 1);
    rest = next > 5 || (next == 5 && tail) ? Rest::above_half
           : next == 5                     ? Rest::half
           : next > 0 || tail              ? Rest::below_half
                                           : Rest::none;
  }
  if (inexact != nullptr) {
    *inexact = rest != Rest::none;
  }
  const bool up = goes_up(mode, v.negative, kept > 0 ? digit(v, kept - 1) : 0, rest);
  // A limb for the carry, then the digits that are kept.
  const std::int64_t count = std::max<std::int64_t>(kept, 0);
  const auto limbs = std::size_t((count + Radix::digits - 1) / Radix::digits);
  std::vector<Limb> out(limbs + 1);
  std::copy_n(v.limbs, std::min(limbs, v.length), out.begin() + 1);
  const Limb unit = Radix::powers[std::size_t(limbs * Radix::digits - std::size_t(count))];
  out.back() -= limbs > 0 ? out.back() % unit : 0;
  if (up) {
    std::size_t i = limbs;
    for (Limb added = unit; (out[i] += added) >= Radix::base; --i) {
      out[i] -= Radix::base;
      added = 1;
    }
  }
  const std::int64_t exponent = v.exponent + (kept < 0 ? -kept : 0) + Radix::digits;
  return rounded(v.negative, exponent, out.data(), out.size(), false, int(out.size()) * Radix::digits);
}

bool is_number(const QuarnFloat& x) { return kind_of(x) == Kind::finite; }

/// What the operators give, where that needs no rounding.
QuarnFloat exact_result(QuarnFloat value, bool* inexact) {
  if (inexact != nullptr) {
    *inexact = false;
  }
  return value;
}

/// x rounded to the working digits; x may lie at the ends of the range after all.
QuarnFloat finished(const QuarnFloat& x, Rounding mode, bool more, bool* inexact) {
  const int digits = QuarnDigits();
  if (!is_number(x)) {
    if (inexact != nullptr) {
      *inexact = true;
    }
    return at_the_end(x, digits, mode);
  }
  const QuarnFloat result = cut(x, digits, mode, more, inexact);
  return isinf(result) ? at_the_end(result, digits, mode) : result;
}

/// The larger root or quotient that is not above the exact one, and whether it is below it.
struct Truncated {
  QuarnFloat value;
  bool more;
};

/// `nearest` has `digits` digits; excess(value) is the sign of value less the exact result. Both are positive.
template <class Excess>
Truncated truncated(const QuarnFloat& nearest, int digits, const Excess& excess) {
  const int sign = excess(nearest);
  if (sign <= 0) {
    return {nearest, sign < 0};
  }
  const Limb one = Radix::base / 10;
  const QuarnFloat unit = rounded(false, view_of(nearest).exponent - digits + 1, &one, 1, false);
  const WorkingDigits scope(digits + 2 * Radix::digits);
  return {nearest - unit, true};
}

}  // namespace

QuarnFloat quantize(const QuarnFloat& x, int places, Rounding mode, bool* inexact) {
  if (!is_number(x)) {
    return exact_result(x, inexact);
  }
  return cut(x, view_of(x).exponent + places, mode, false, inexact);
}

QuarnFloat round_digits(const QuarnFloat& x, int digits, Rounding mode, bool* inexact) {
  if (!is_number(x)) {
    return exact_result(x, inexact);
  }
  const QuarnFloat result = cut(x, std::max(digits, 1), mode, false, inexact);
  return isinf(result) ? at_the_end(result, std::max(digits, 1), mode) : result;
}

QuarnFloat add(const QuarnFloat& x, const QuarnFloat& y, Rounding mode, bool* inexact) {
  if (!is_number(x) && !is_number(y)) {
    QuarnFloat sum = x + y;
    const bool opposite = signbit(x) != signbit(y) && kind_of(sum) == Kind::zero;
    return exact_result(opposite ? special(Kind::zero, mode == Rounding::floor) : std::move(sum), inexact);
  }
  if (!is_number(x) || !is_number(y)) {
    const QuarnFloat& finite = is_number(x) ? x : y;
    const QuarnFloat& other = is_number(x) ? y : x;
    return kind_of(other) == Kind::zero ? round_digits(finite, QuarnDigits(), mode, inexact)
                                        : exact_result(other, inexact);
  }
  const bool exchanged = view_of(x).exponent < view_of(y).exponent;
  const QuarnFloat& larger = exchanged ? y : x;
  QuarnFloat smaller = exchanged ? x : y;
  const std::int64_t reach = std::int64_t(std::max(stored_digits(larger), QuarnDigits())) + 2 * Radix::digits;
  if (view_of(larger).exponent - view_of(smaller).exponent > reach) {
    // So small that any number of its sign does as well.
    const Limb one = Radix::base / 10;
    smaller = rounded(view_of(smaller).negative, view_of(larger).exponent - reach, &one, 1, false);
  }
  const QuarnFloat sum = [&] {
    const std::int64_t gap = view_of(larger).exponent - view_of(smaller).exponent;
    const WorkingDigits scope(int(std::max<std::int64_t>(stored_digits(larger), stored_digits(smaller) + gap)) +
                              Radix::digits);
    return larger + smaller;
  }();
  if (kind_of(sum) == Kind::zero) {
    return exact_result(special(Kind::zero, mode == Rounding::floor), inexact);
  }
  return finished(sum, mode, false, inexact);
}

QuarnFloat subtract(const QuarnFloat& x, const QuarnFloat& y, Rounding mode, bool* inexact) {
  return add(x, -y, mode, inexact);
}

QuarnFloat multiply(const QuarnFloat& x, const QuarnFloat& y, Rounding mode, bool* inexact) {
  if (!is_number(x) || !is_number(y)) {
    return exact_result(x * y, inexact);
  }
  const QuarnFloat product = [&] {
    const WorkingDigits scope(stored_digits(x) + stored_digits(y) + Radix::digits);
    return x * y;
  }();
  return finished(product, mode, false, inexact);
}

QuarnFloat divide(const QuarnFloat& x, const QuarnFloat& y, Rounding mode, bool* inexact) {
  if (!is_number(x) || !is_number(y)) {
    return exact_result(x / y, inexact);
  }
  // Of coefficients, so that nothing on the way leaves the range.
  const QuarnFloat a = fabs(shifted(x, -view_of(x).exponent));
  const QuarnFloat b = fabs(shifted(y, -view_of(y).exponent));
  const int digits = QuarnDigits() + 3;
  const QuarnFloat nearest = [&] {
    const WorkingDigits scope(digits);
    return a / b;
  }();
  const Truncated quotient = truncated(nearest, digits, [&](const QuarnFloat& q) {
    const WorkingDigits scope(digits + stored_digits(b) + 2 * Radix::digits);
    return QuarnCompare(q * b, a);
  });
  const bool negative = signbit(x) != signbit(y);
  const QuarnFloat result = finished(negative ? -quotient.value : quotient.value, mode, quotient.more, inexact);
  const View v = view_of(result);
  QuarnFloat moved = shifted(result, view_of(x).exponent - view_of(y).exponent);
  if (is_number(moved)) {
    return moved;
  }
  if (inexact != nullptr) {
    *inexact = true;
  }
  return at_the_end(special(kind_of(moved), v.negative), QuarnDigits(), mode);
}

QuarnFloat sqrt(const QuarnFloat& x, Rounding mode, bool* inexact) {
  if (!is_number(x) || signbit(x)) {
    return exact_result(::sqrt(x), inexact);
  }
  const int digits = QuarnDigits() + 3;
  const QuarnFloat nearest = [&] {
    const WorkingDigits scope(digits);
    return ::sqrt(x);
  }();
  const Truncated root = truncated(nearest, digits, [&](const QuarnFloat& r) {
    const WorkingDigits scope(2 * digits + stored_digits(x) + 2 * Radix::digits);
    return QuarnCompare(r * r, x);
  });
  return finished(root.value, mode, root.more, inexact);
}

}  // namespace quarn
