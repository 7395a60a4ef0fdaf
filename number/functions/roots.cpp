// Cube root and the length of a vector.
#include "number/limbs/linear.h"
// Names of its templates stand before those of the number.
#include <cmath>
#include <limits>

#include "number/functions/support.h"
#include "quarn/functions.h"

using namespace quarn;

namespace {

/// Digits of the start below: that of hardware where long double has 64 bits, and one limb.
constexpr int kStartDigits = std::numeric_limits<long double>::digits >= 64 && Radix::digits == 18 ? 17 : 8;

/// The cube root of a number as one limb, off by at most 0.53 of its last unit: 0.limb 10^third. The number is
/// 0.L0 L1 ... 10^(3 third - shift).
struct Start {
  Limb limb;
  std::int64_t third;
  int shift;
  bool negative;

  QuarnFloat number() const { return rounded(negative, third, &limb, 1, false, Radix::digits); }
};

Start start_of_root(const QuarnFloat& x) {
  // x = m 10^(3 third), 0.001 <= m < 1
  const View v = view_of(x);
  const std::int64_t third = (v.exponent >= 0 ? v.exponent + 2 : v.exponent) / 3;
  const int shift = int(3 * third - v.exponent);
  constexpr long double kUnit = 1 / (long double)(Radix::base);
  constexpr long double kScale[] = {1, 0.1L, 0.01L};
  const long double next = v.length > 1 ? (long double)(std::int64_t(v.limbs[1])) * kUnit : 0;
  const long double m = ((long double)(std::int64_t(v.limbs[0])) + next) * kUnit * kScale[shift];
  long double root = std::cbrt(double(m));
  root -= (root * root * root - m) / (3 * root * root);
  const long double unit_root = root * (long double)(Radix::base) + 0.5L;
  return {Limb(std::int64_t(std::min(unit_root, (long double)(Radix::base - 1)))), third, shift, v.negative};
}

/// Halley's step: with a relative error of d before, it is below d^3 after.
QuarnFloat halley_step(const QuarnFloat& x, const QuarnFloat& root) {
  const QuarnFloat cube = root * root * root;
  return root * (cube + (x + x)) / ((cube + cube) + x);
}

/// The same of a start of one limb and four limbs of x, in limbs up to the quotient, which is as short as its size
/// allows.
QuarnFloat first_halley_step(const QuarnFloat& x, const Start& start) {
  // Whole part and fraction of x 10^shift, and of the cube
  constexpr std::size_t kLimbs = 5;
  const View v = view_of(x);
  Limb given[kLimbs] = {};
  std::copy_n(v.limbs, std::min<std::size_t>(v.length, kLimbs - 1), given + 1);
  Limb cube[kLimbs] = {0, 0, 0, start.limb, 0};
  cube[2] = multiply_limb<Radix>(cube + 3, cube + 3, 1, start.limb);
  cube[1] = multiply_limb<Radix>(cube + 2, cube + 2, 2, start.limb);
  cube[0] = multiply_limb<Radix>(cube + 1, cube + 1, 3, Radix::powers[std::size_t(start.shift)]);
  const bool above = compare<Radix>(cube, given, kLimbs) > 0;
  Limb residual[kLimbs];
  subtract<Radix>(residual, above ? cube : given, above ? given : cube, kLimbs);
  add<Radix>(cube, cube, cube, kLimbs);
  add<Radix>(cube, cube, given, kLimbs);

  const QuarnFloat root = start.number();
  constexpr int kQuotient = 2 * kStartDigits + 6;
  const WorkingDigits scope(kQuotient);
  const QuarnFloat correction =
      rounded(above, 0, residual, kLimbs, false, kQuotient) * root / rounded(false, 0, cube, kLimbs, false, kQuotient);
  const WorkingDigits all(3 * kStartDigits + 5);
  return root + correction;
}

/// The cube root of x to a relative error of 10^-w.
QuarnFloat approximate_cube_root(const QuarnFloat& x, int w) {
  int steps = 0;
  for (int digits = w; digits > kStartDigits; digits = (digits + 4) / 3) {
    ++steps;
  }
  QuarnFloat root = start_of_root(x).number();
  int digits = kStartDigits;
  while (steps-- > 0) {
    digits = std::min(3 * digits, w) - 1;
    const WorkingDigits scope((steps == 0 ? w : digits) + 6);
    root = halley_step(rounded(x, QuarnDigits()), root);
  }
  return root;
}

}  // namespace

QuarnFloat cbrt(const QuarnFloat& x) {
  if (kind_of(x) != Kind::finite) {
    return x;
  }
  const std::int64_t exponent = view_of(x).exponent;
  constexpr std::int64_t kFar = 900'000'000;
  if (exponent > kFar || exponent < -kFar) {
    const std::int64_t third = exponent / 3;
    return shifted(cbrt(shifted(x, -3 * third)), third);
  }
  const int digits = QuarnDigits();
  constexpr int kCertain = 3 * kStartDigits + 1;
  if (digits <= kCertain - 2) {
    // One step usually decides.
    const Start start = start_of_root(x);
    const QuarnFloat root = first_halley_step(x, start);
    // 2/3 d^3 with d = 0.53 10^-17 / 1.1 is below 0.8 10^-52 (10^-25 of short limbs); next to a power of ten d is
    // larger.
    const bool long_enough = start.limb > Radix::base / 100 * 11;
    if (rounds_safely(root, digits, long_enough ? kCertain : kCertain - 1)) {
      return rounded(root, digits);
    }
  }
  return correctly_rounded([&x](int w) { return approximate_cube_root(x, w); },
                           [&x](const QuarnFloat& y) -> std::optional<QuarnFloat> {
                             const QuarnFloat candidate = rounded(y, QuarnDigits() + 2);
                             const WorkingDigits scope(3 * QuarnDigits() + 10);
                             if (candidate * candidate * candidate != x) {
                               return std::nullopt;
                             }
                             return candidate;
                           });
}

QuarnFloat hypot(const QuarnFloat& x, const QuarnFloat& y) {
  if (isinf(x) || isinf(y)) {
    return special(Kind::infinite);
  }
  if (isnan(x) || isnan(y)) {
    return special(Kind::nan);
  }
  if (kind_of(x) == Kind::zero || kind_of(y) == Kind::zero) {
    return rounded(fabs(kind_of(x) == Kind::zero ? y : x), QuarnDigits());
  }
  const bool exchanged = QuarnAccess::exponent(x) < QuarnAccess::exponent(y);
  const QuarnFloat& larger = exchanged ? y : x;
  const QuarnFloat& smaller = exchanged ? x : y;
  const std::int64_t exponent = view_of(larger).exponent;
  const std::int64_t gap = exponent - view_of(smaller).exponent;
  constexpr std::int64_t kFar = 400'000'000;
  if (exponent > kFar || exponent < -kFar) {
    // larger (1 + q^2 / 2 - ...), q < 10^(1 - gap)
    if (const auto result = perturbed(fabs(larger), 2 - 2 * gap, false)) {
      return *result;
    }
    const QuarnFloat root = hypot(shifted(larger, -exponent), shifted(smaller, -exponent));
    return shifted(root, exponent);
  }
  // The square root of a sum with some digits more usually decides.
  const int digits = QuarnDigits();
  {
    const QuarnFloat root = [&] {
      const WorkingDigits scope(digits + 6);
      return sqrt(larger * larger + smaller * smaller);
    }();
    if (rounds_safely(root, digits, digits + 5)) {
      return rounded(root, digits);
    }
  }
  if (const auto result = perturbed(fabs(larger), 2 - 2 * gap, false)) {
    return *result;
  }
  // That of the exact sum always does.
  const QuarnFloat sum = [&] {
    const WorkingDigits scope(2 * std::max(stored_digits(larger), stored_digits(smaller) + int(gap)) + 4);
    return larger * larger + smaller * smaller;
  }();
  return sqrt(sum);
}
