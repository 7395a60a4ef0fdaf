// Sine, cosine and tangent of pi x, and their inverses in units of pi.
#include "number/functions/half_turns.h"

#include "quarn/functions.h"

namespace quarn {

HalfTurns half_turns(const QuarnFloat& x) {
  // x modulo 2 is exact, and then its distance from the nearest multiple of 1/2.
  const WorkingDigits scope(stored_digits(x) + Radix::digits);
  QuarnFloat rest = fabs(x);
  if (view_of(x).exponent > 8) {
    rest = fmod(rest, QuarnFloat(2));
  }
  const int quadrant = int(FloatToInt(rest + rest + QuarnFloat(5, -1)));
  if (quadrant != 0) {
    // n / 2 = 5 n / 10
    rest -= quadrant % 2 == 0 ? QuarnFloat(quadrant / 2) : QuarnFloat(5 * quadrant, -1);
  }
  return {quadrant & 3, rest};
}

SinCos approximate_sin_cos_pi(const QuarnFloat& rest, int w) {
  const WorkingDigits scope(w + 5);
  const QuarnFloat angle = rest * approximate_pi(w + 5);
  if (2 * scientific_exponent(angle) + 2 < -w) {
    return {angle, 1};
  }
  return approximate_sin_cos(angle, w + 2);
}

}  // namespace quarn

using namespace quarn;

namespace {

/// sin(pi (quadrant / 2 + rest)), correctly rounded; cos is the same a quadrant further.
QuarnFloat sine_of(const HalfTurns& x) {
  const bool upper = x.quadrant % 2 == 1;
  const bool negative = x.quadrant >= 2;
  if (kind_of(x.rest) == Kind::zero) {
    return upper ? QuarnFloat(negative ? -1 : 1) : special(Kind::zero, negative);
  }
  const QuarnFloat& rest = x.rest;
  QuarnFloat result;
  // cos(pi r) = 1 - (pi r)^2 / 2 + ...
  const auto near_one = upper ? perturbed(1, 2 * scientific_exponent(rest) + 3, true) : std::nullopt;
  if (near_one) {
    result = *near_one;
  } else {
    result = correctly_rounded([&](int w) {
      SinCos f = approximate_sin_cos_pi(rest, w);
      return upper ? f.cos : f.sin;
    });
  }
  return negative ? -result : result;
}

QuarnFloat over_pi(const QuarnFloat& angle, int w) { return angle / approximate_pi(w + 5); }

}  // namespace

QuarnFloat sinpi(const QuarnFloat& x) {
  if (kind_of(x) != Kind::finite) {
    return kind_of(x) == Kind::zero ? x : special(Kind::nan);
  }
  const HalfTurns turns = half_turns(x);
  QuarnFloat result = sine_of(turns);
  if (kind_of(result) == Kind::zero) {
    return special(Kind::zero, signbit(x));
  }
  return signbit(x) ? -result : result;
}

QuarnFloat cospi(const QuarnFloat& x) {
  if (kind_of(x) != Kind::finite) {
    return kind_of(x) == Kind::zero ? QuarnFloat(1) : special(Kind::nan);
  }
  HalfTurns turns = half_turns(x);
  turns.quadrant = (turns.quadrant + 1) % 4;
  return kind_of(turns.rest) == Kind::zero && turns.quadrant % 2 == 0 ? special(Kind::zero) : sine_of(turns);
}

QuarnFloat tanpi(const QuarnFloat& x) {
  if (kind_of(x) != Kind::finite) {
    return kind_of(x) == Kind::zero ? x : special(Kind::nan);
  }
  const HalfTurns turns = half_turns(x);
  const QuarnFloat& rest = turns.rest;
  const bool inverted = turns.quadrant % 2 == 1;
  if (kind_of(rest) == Kind::zero) {
    return special(inverted ? Kind::infinite : Kind::zero, signbit(x) != (turns.quadrant >= 2));
  }
  QuarnFloat result;
  const bool eighth = [&] {
    const WorkingDigits scope(2);
    return fabs(rest) == QuarnFloat(25, -2);
  }();
  if (eighth) {
    result = signbit(rest) ? -1 : 1;
  } else {
    result = correctly_rounded([&](int w) {
      const WorkingDigits scope(w + 5);
      const SinCos f = approximate_sin_cos_pi(rest, w + 2);
      return inverted ? f.cos / f.sin : f.sin / f.cos;
    });
  }
  return signbit(x) != inverted ? -result : result;
}

QuarnFloat asinpi(const QuarnFloat& x) {
  if (kind_of(x) == Kind::nan || kind_of(x) == Kind::zero) {
    return x;
  }
  const int order = QuarnCompare(fabs(x), 1);
  if (order >= 0) {
    return order > 0 ? special(Kind::nan) : QuarnFloat(signbit(x) ? -5 : 5, -1);
  }
  return correctly_rounded([&x](int w) {
    const WorkingDigits scope(w + 5);
    const QuarnFloat one = 1;
    return over_pi(approximate_atan(x / sqrt((one - x) * (one + x)), w + 2), w);
  });
}

QuarnFloat acospi(const QuarnFloat& x) {
  const QuarnFloat half(5, -1);
  if (kind_of(x) == Kind::nan || kind_of(x) == Kind::zero) {
    return kind_of(x) == Kind::zero ? half : x;
  }
  const int order = QuarnCompare(fabs(x), 1);
  if (order >= 0) {
    return order > 0 ? special(Kind::nan) : QuarnFloat(signbit(x) ? 1 : 0);
  }
  // 1/2 - x / pi - ...
  if (const auto result = perturbed(half, scientific_exponent(x) + 1, !signbit(x))) {
    return *result;
  }
  return correctly_rounded([&x](int w) {
    const WorkingDigits scope(w + 5);
    const QuarnFloat one = 1;
    return over_pi(QuarnFloat(2) * approximate_atan(sqrt((one - x) / (one + x)), w + 2), w);
  });
}

QuarnFloat atanpi(const QuarnFloat& x) {
  const auto part = [&x](int numerator) { return QuarnFloat(signbit(x) ? -numerator : numerator, -2); };
  if (kind_of(x) != Kind::finite) {
    return kind_of(x) == Kind::infinite ? part(50) : x;
  }
  if (fabs(x) == QuarnFloat(1)) {
    return part(25);
  }
  // 1/2 - 1 / (pi x) + ...
  if (const auto result = perturbed(part(50), -scientific_exponent(x), true)) {
    return *result;
  }
  return correctly_rounded([&x](int w) {
    const WorkingDigits scope(w + 5);
    return over_pi(approximate_atan(x, w + 2), w);
  });
}
