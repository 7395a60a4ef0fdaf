// Rounding to whole numbers, parts, neighbours, remainders: what <cmath> has besides elementary functions.
#include <cmath>
#include <cstdint>
#include <vector>

#include "number/functions/support.h"
#include "quarn/exact.h"
#include "quarn/functions.h"

using namespace quarn;

namespace {

/// x + 1/2 and the like without rounding, for numbers that are not so large that they are whole.
QuarnFloat sum_with_half(const QuarnFloat& x, const QuarnFloat& y) {
  const WorkingDigits scope(stored_digits(x) + 3 * Radix::digits);
  return x + y;
}

/// The whole number next to |x|, with the sign of x; halves go to the even one or away from zero.
QuarnFloat nearest(const QuarnFloat& x, bool half_to_even) {
  if (kind_of(x) != Kind::finite || is_whole(x)) {
    return rounded(x, QuarnDigits());
  }
  const QuarnFloat half(5, -1);
  const QuarnFloat up = sum_with_half(fabs(x), half);
  QuarnFloat whole = [&] {
    const WorkingDigits scope(stored_digits(up) + Radix::digits);
    return floor(up);
  }();
  if (half_to_even && whole == up && is_odd_whole(whole)) {
    whole = sum_with_half(whole, -1);
  }
  whole = rounded(whole, QuarnDigits());
  return signbit(x) ? -whole : whole;
}

/// The working precision's unit in the last place of a finite number that is not zero.
QuarnFloat last_unit(const QuarnFloat& x) {
  const Limb one = Radix::base / 10;
  return rounded(false, view_of(x).exponent - QuarnDigits() + 1, &one, 1, false);
}

QuarnFloat largest_number() {
  const std::size_t length = std::size_t(QuarnDigits()) / Radix::digits + 1;
  std::vector<Limb> nines(length, Radix::base - 1);
  const std::size_t kept = std::size_t(QuarnDigits()) % Radix::digits;
  nines.back() -= Radix::powers[Radix::digits - kept] - 1;
  return rounded(false, kMaxScientificExponent + 1, nines.data(), length, false);
}

QuarnFloat smallest_number() {
  const Limb one = Radix::base / 10;
  return rounded(false, 1 - kMaxScientificExponent, &one, 1, false);
}

/// The working number next above x.
QuarnFloat next_above(const QuarnFloat& x) {
  switch (kind_of(x)) {
    case Kind::nan:
      return x;
    case Kind::zero:
      return smallest_number();
    case Kind::infinite:
      return signbit(x) ? -largest_number() : x;
    case Kind::finite:
      break;
  }
  QuarnFloat whole = rounded(x, QuarnDigits());
  if (whole > x) {
    return whole;
  }
  if (isinf(whole)) {
    return -largest_number();
  }
  QuarnFloat unit = last_unit(whole);
  if (signbit(whole) && fabs(whole) == shifted(unit, QuarnDigits() - 1)) {
    // Below a power of ten the numbers are closer.
    unit = shifted(unit, -1);
  }
  if (kind_of(unit) == Kind::zero) {
    // At the lower end of the range the step is the smallest number itself.
    if (signbit(whole) && fabs(whole) == smallest_number()) {
      return special(Kind::zero, true);
    }
    // The unit itself is below the range.
    const QuarnFloat higher = shifted(whole, 10'000'000);
    return shifted(higher + last_unit(higher), -10'000'000);
  }
  return whole + unit;
}

}  // namespace

QuarnFloat round(const QuarnFloat& x) { return nearest(x, false); }
QuarnFloat rint(const QuarnFloat& x) { return nearest(x, true); }

QuarnFloat modf(const QuarnFloat& x, QuarnFloat* whole) {
  const QuarnFloat part = trunc(x);
  QuarnFloat rest;
  if (kind_of(x) == Kind::infinite) {
    rest = special(Kind::zero, signbit(x));
  } else {
    rest = fmod(x, QuarnFloat(1));
  }
  *whole = part;
  return rest;
}

QuarnFloat remainder(const QuarnFloat& a, const QuarnFloat& b) {
  if (kind_of(a) == Kind::nan || kind_of(a) == Kind::infinite || kind_of(b) == Kind::nan || kind_of(b) == Kind::zero) {
    return special(Kind::nan);
  }
  if (kind_of(a) == Kind::zero || kind_of(b) == Kind::infinite) {
    return rounded(a, QuarnDigits());
  }
  QuarnFloat rest;
  {
    // |a| modulo 2 |b| is exact, and a multiple of |b| away from the result.
    const WorkingDigits scope(2 * std::max(stored_digits(a), stored_digits(b)) + 3 * Radix::digits);
    const QuarnFloat size = fabs(b);
    rest = fmod(fabs(a), size + size);
    const QuarnFloat twice = rest + rest;
    if (twice >= QuarnFloat(3) * size) {
      rest -= size + size;
    } else if (twice > size) {
      rest -= size;
    }
  }
  if (kind_of(rest) == Kind::zero) {
    return special(Kind::zero, signbit(a));
  }
  rest = rounded(rest, QuarnDigits());
  return signbit(a) ? -rest : rest;
}

QuarnFloat fma(const QuarnFloat& a, const QuarnFloat& b, const QuarnFloat& c) {
  const QuarnFloat left[] = {a, c};
  const QuarnFloat right[] = {b, QuarnFloat(1)};
  return QuarnDot(2, left, 1, right, 1);
}

QuarnFloat fmin(const QuarnFloat& x, const QuarnFloat& y) {
  const int order = QuarnCompare(x, y);
  const bool first = order == 2 ? isnan(y) : order < 0 || (order == 0 && signbit(x));
  return rounded(first ? x : y, QuarnDigits());
}

QuarnFloat fmax(const QuarnFloat& x, const QuarnFloat& y) {
  const int order = QuarnCompare(x, y);
  const bool first = order == 2 ? isnan(y) : order > 0 || (order == 0 && !signbit(x));
  return rounded(first ? x : y, QuarnDigits());
}

QuarnFloat fdim(const QuarnFloat& x, const QuarnFloat& y) {
  const int order = QuarnCompare(x, y);
  return order == 2 ? special(Kind::nan) : order > 0 ? x - y : QuarnFloat();
}

QuarnFloat ldexp(const QuarnFloat& x, int power) {
  if (kind_of(x) != Kind::finite || power == 0) {
    return rounded(x, QuarnDigits());
  }
  const std::int64_t size = std::abs(std::int64_t(power));
  const auto exact_product = [&] {
    const QuarnFloat factor = [&] {
      const WorkingDigits scope(int(size) / 3 + 2);
      return pow(QuarnFloat(2), QuarnFloat(size));
    }();
    return power > 0 ? x * factor : x / factor;
  };
  // Short powers of two are exact, so that the product has one rounding; so are long ones of long numbers, which have
  // short results if x has a power of five.
  if (size <= 4000 + 4 * std::int64_t(stored_digits(x) + QuarnDigits())) {
    return exact_product();
  }
  return correctly_rounded([&](int w) {
    const WorkingDigits scope(w + 5);
    return x * pow(QuarnFloat(2), QuarnFloat(power));
  });
}

QuarnFloat frexp(const QuarnFloat& x, int* power) {
  *power = 0;
  if (kind_of(x) != Kind::finite) {
    return rounded(x, QuarnDigits());
  }
  // The estimate is good to some 12 digits, so that it may be one off next to a power of two.
  const View v = view_of(x);
  const double logarithm =
      std::log2(std::fabs(leading_fraction(x))) + double(v.exponent) * 3.321928094887362347870319429489;
  constexpr double kMost = INT32_MAX;
  int n = int(std::clamp(std::floor(logarithm) + 1, -kMost, kMost));
  // Decided on more digits than are kept: a mantissa that rounds to 1 is below 1.
  const auto scaled = [&](int digits) {
    const WorkingDigits scope(digits);
    return ldexp(fabs(x), -n);
  };
  const int longer = std::max(QuarnDigits(), stored_digits(x)) + 2 * Radix::digits;
  const QuarnFloat trial = scaled(longer);
  if (trial >= QuarnFloat(1) && n < INT32_MAX) {
    ++n;
  } else if (trial < QuarnFloat(5, -1) && n > -INT32_MAX) {
    --n;
  }
  *power = n;
  const QuarnFloat mantissa = scaled(QuarnDigits());
  return signbit(x) ? -mantissa : mantissa;
}

QuarnFloat scalbn(const QuarnFloat& x, int power) {
  return kind_of(x) == Kind::finite ? rounded(shifted(x, power), QuarnDigits()) : x;
}

QuarnFloat logb(const QuarnFloat& x) {
  switch (kind_of(x)) {
    case Kind::zero:
      return special(Kind::infinite, true);
    case Kind::infinite:
      return special(Kind::infinite);
    case Kind::nan:
      return x;
    case Kind::finite:
      break;
  }
  return scientific_exponent(x);
}

int ilogb(const QuarnFloat& x) noexcept {
  switch (kind_of(x)) {
    case Kind::zero:
      return INT32_MIN;
    case Kind::finite:
      return int(scientific_exponent(x));
    default:
      return INT32_MAX;
  }
}

QuarnFloat nextafter(const QuarnFloat& x, const QuarnFloat& y) {
  const int order = QuarnCompare(x, y);
  if (order == 2) {
    return special(Kind::nan);
  }
  if (order == 0) {
    return rounded(y, QuarnDigits());
  }
  return order < 0 ? next_above(x) : -next_above(-x);
}
