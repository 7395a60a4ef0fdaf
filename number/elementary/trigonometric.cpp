// sin, cos, tan and their inverses.
#include "number/elementary/fixed_point.h"
#include "number/elementary/rounding.h"
#include "number/scalar/thread_state.h"

using quarn::approximate_atan;
using quarn::approximate_pi;
using quarn::approximate_sin_cos;
using quarn::correctly_rounded;
using quarn::Kind;
using quarn::kind_of;
using quarn::kMaxAngleExponent;
using quarn::perturbed;
using quarn::scientific_exponent;
using quarn::SinCos;
using quarn::special;
using quarn::WorkingDigits;

namespace {

/// numerator * pi / denominator.
QuarnFloat fraction_of_pi(int numerator, int denominator, bool negative) {
  const QuarnFloat size = correctly_rounded([=](int w) {
    const WorkingDigits scope(w + 5);
    return QuarnFloat(numerator) * approximate_pi(w + 2) / QuarnFloat(denominator);
  });
  return negative ? -size : size;
}

bool has_angle(const QuarnFloat& x) { return kind_of(x) == Kind::finite && scientific_exponent(x) < kMaxAngleExponent; }

/// atan(y / x) for y > 0, x > 0 whose quotient is not 1, to a relative error of 10^-w.
QuarnFloat approximate_atan_of_quotient(const QuarnFloat& y, const QuarnFloat& x, int w) {
  const WorkingDigits scope(w + 5);
  QuarnFloat t = y / x;
  switch (kind_of(t)) {
    case Kind::zero:
      return t;
    case Kind::finite:
      return approximate_atan(t, w + 2);
    default:
      return approximate_pi(w + 2) / QuarnFloat(2);
  }
}

/// y / x when that is a number of no more digits than the longer of the two and the working digits have.
std::optional<QuarnFloat> exact_quotient(const QuarnFloat& y, const QuarnFloat& x) {
  const std::size_t limbs = quarn::view_of(x).length + quarn::view_of(y).length;
  const WorkingDigits scope(int(limbs + 1) * quarn::Radix::digits + QuarnDigits());
  const QuarnFloat t = y / x;
  if (kind_of(t) == Kind::finite && t * x == y) {
    return t;
  }
  return std::nullopt;
}

/// The thread's last angle: its sine and cosine are usually asked for one after the other.
struct LastAngle {
  QuarnFloat x;
  int digits = 0;
  quarn::fixed::RoundedSinCos values;
  // Where fixed point does not decide them: approximations to within 10^-approximated.
  SinCos approximations;
  int approximated = 0;
};

/// Sine and cosine of x where fixed point decides them.
const quarn::fixed::RoundedSinCos& sin_cos_at_once(const QuarnFloat& x) {
  LastAngle& last = quarn::own_cache<LastAngle>(quarn::Cache::last_angle);
  const int digits = QuarnDigits();
  if (last.digits != digits || last.x != x) {
    last.digits = 0;  // what is kept is good again when all of it is there
    last.approximated = 0;
    last.values = quarn::fixed::rounded_sin_cos(x);
    last.x = x;
    last.digits = digits;
  }
  return last.values;
}

/// Both to a relative error of 10^-w, after sin_cos_at_once(x).
const SinCos& sin_cos_approximated(const QuarnFloat& x, int w) {
  LastAngle& last = quarn::own_cache<LastAngle>(quarn::Cache::last_angle);
  if (last.approximated < w) {
    last.approximated = 0;
    last.approximations = approximate_sin_cos(x, w);
    last.approximated = w;
  }
  return last.approximations;
}

}  // namespace

QuarnFloat sin(const QuarnFloat& x) {
  if (!has_angle(x)) {
    return kind_of(x) == Kind::zero ? x : special(Kind::nan);
  }
  // sin x = x (1 - x^2/6 + ...)
  if (const auto result = perturbed(x, 2 * scientific_exponent(x) + 2, true)) {
    return *result;
  }
  if (const auto& result = sin_cos_at_once(x).sin) {
    return *result;
  }
  return correctly_rounded([&x](int w) { return sin_cos_approximated(x, w).sin; });
}

QuarnFloat cos(const QuarnFloat& x) {
  if (!has_angle(x)) {
    return kind_of(x) == Kind::zero ? QuarnFloat(1) : special(Kind::nan);
  }
  // cos x = 1 - x^2/2 + ...
  if (const auto result = perturbed(1, 2 * scientific_exponent(x) + 2, true)) {
    return *result;
  }
  if (const auto& result = sin_cos_at_once(x).cos) {
    return *result;
  }
  return correctly_rounded([&x](int w) { return sin_cos_approximated(x, w).cos; });
}

QuarnFloat tan(const QuarnFloat& x) {
  if (!has_angle(x)) {
    return kind_of(x) == Kind::zero ? x : special(Kind::nan);
  }
  // tan x = x (1 + x^2/3 + ...)
  if (const auto result = perturbed(x, 2 * scientific_exponent(x) + 2, false)) {
    return *result;
  }
  return correctly_rounded([&x](int w) {
    const WorkingDigits scope(w + 5);
    const SinCos f = approximate_sin_cos(x, w + 2);
    return f.sin / f.cos;
  });
}

QuarnFloat asin(const QuarnFloat& x) {
  if (kind_of(x) == Kind::nan || kind_of(x) == Kind::zero) {
    return x;
  }
  const int order = QuarnCompare(fabs(x), 1);
  if (order >= 0) {
    return order == 0 ? fraction_of_pi(1, 2, signbit(x)) : special(Kind::nan);
  }
  // asin x = x (1 + x^2/6 + ...)
  if (const auto result = perturbed(x, 2 * scientific_exponent(x) + 2, false)) {
    return *result;
  }
  return correctly_rounded([&x](int w) {
    const WorkingDigits scope(w + 5);
    const QuarnFloat one = 1;
    return approximate_atan(x / sqrt((one - x) * (one + x)), w + 2);
  });
}

QuarnFloat acos(const QuarnFloat& x) {
  switch (kind_of(x)) {
    case Kind::nan:
      return x;
    case Kind::zero:
      return fraction_of_pi(1, 2, false);
    default:
      break;
  }
  const int order = QuarnCompare(fabs(x), 1);
  if (order >= 0) {
    if (order > 0) {
      return special(Kind::nan);
    }
    return signbit(x) ? fraction_of_pi(1, 1, false) : QuarnFloat(0);
  }
  return correctly_rounded([&x](int w) {
    const WorkingDigits scope(w + 5);
    const QuarnFloat one = 1;
    return QuarnFloat(2) * approximate_atan(sqrt((one - x) / (one + x)), w + 2);
  });
}

QuarnFloat atan(const QuarnFloat& x) {
  switch (kind_of(x)) {
    case Kind::infinite:
      return fraction_of_pi(1, 2, signbit(x));
    case Kind::finite:
      break;
    default:
      return x;
  }
  // atan x = x (1 - x^2/3 + ...)
  if (const auto result = perturbed(x, 2 * scientific_exponent(x) + 2, true)) {
    return *result;
  }
  return correctly_rounded([&x](int w) { return approximate_atan(x, w); });
}

QuarnFloat atan2(const QuarnFloat& y, const QuarnFloat& x) {
  const Kind ky = kind_of(y);
  const Kind kx = kind_of(x);
  if (ky == Kind::nan || kx == Kind::nan) {
    return special(Kind::nan);
  }
  const bool below = signbit(y);
  const bool left = signbit(x);
  if (ky == Kind::zero || (kx == Kind::infinite && ky != Kind::infinite)) {
    return left ? fraction_of_pi(1, 1, below) : special(Kind::zero, below);
  }
  if (kx == Kind::zero || (ky == Kind::infinite && kx != Kind::infinite)) {
    return fraction_of_pi(1, 2, below);
  }
  const QuarnFloat height = fabs(y);
  const QuarnFloat width = fabs(x);
  if (height == width) {
    return fraction_of_pi(left ? 3 : 1, 4, below);
  }
  QuarnFloat angle;
  if (left) {
    angle = correctly_rounded([&](int w) {
      const WorkingDigits scope(w + 5);
      return approximate_pi(w + 2) - approximate_atan_of_quotient(height, width, w + 2);
    });
  } else if (const auto quotient = exact_quotient(height, width)) {
    angle = atan(*quotient);
  } else {
    angle = correctly_rounded([&](int w) { return approximate_atan_of_quotient(height, width, w); });
  }
  return below ? -angle : angle;
}
