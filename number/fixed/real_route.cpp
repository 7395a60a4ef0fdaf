#include <cstdlib>

#include "number/fixed/real_plan.h"

namespace quarn::block {

Route::Route(RealKind kind_given, Integer length)
    : form(Form::forward), kind(kind_given), n(length), period(length), is_sine(kind >= RealKind::dst1), turned(false) {
  switch (kind) {
    case RealKind::dct1:
      period = 2 * (std::int64_t(n) - 1);
      break;
    case RealKind::dst1:
      period = 2 * (std::int64_t(n) + 1);
      break;
    case RealKind::dct2:
    case RealKind::dst2:
      turned = true;
      break;
    case RealKind::from_spectrum:
      form = Form::inverse;
      break;
    case RealKind::dct3:
    case RealKind::dst3:
      form = Form::inverse;
      turned = true;
      break;
    case RealKind::dct4:
    case RealKind::dst4:
      form = n % 2 == 0 ? Form::quarter : Form::forward;
      break;
    case RealKind::to_spectrum:
      break;
  }
}

std::int64_t Route::logical_length() const {
  switch (kind) {
    case RealKind::to_spectrum:
    case RealKind::from_spectrum:
    case RealKind::dct1:
    case RealKind::dst1:
      return period;
    default:
      return 2 * std::int64_t(n);
  }
}

/// docs/accuracy.md. Data are off by a part's error `read`, 1.4143 read as a complex number; a turn adds T.
Steps Route::steps() const {
  Steps steps;
  steps.turns_before = turned || kind == RealKind::dct1 ? 1 : 0;
  const bool is_halved = period % 2 == 0 && form != Form::quarter;
  if (form == Form::quarter) {
    steps.turns_before = 1;
    steps.turns_after = 1;
  } else if (form == Form::forward) {
    steps.factor_after = is_halved ? 2 : 1;
    steps.turns_after = (is_halved ? 0.5 : 0) + (turned ? 1 : 0);
  } else if (is_halved) {
    steps.factor_before = 4;
    steps.turns_before = 4 * steps.turns_before + 5;
  } else {
    ++steps.turns_before;
  }
  steps.growth = 2;
  return steps;
}

std::int64_t odd_representative(std::int64_t k, std::int64_t n) {
  const std::int64_t whole = (8 * k + n) % (8 * n);
  const std::int64_t rest = whole % (4 * n);
  const bool is_mirrored = rest > 2 * n;
  const std::int64_t place = ((is_mirrored ? 4 * n - rest : rest) + 1) / 2;
  return (whole >= 4 * n) != is_mirrored ? -place : place;
}

std::int64_t Route::origin(std::int64_t j) const {
  switch (kind) {
    case RealKind::dct1:
      return j < n ? j + 1 : period - j + 1;
    case RealKind::dst1:
      return j == n + 1 ? 0 : j <= n ? j : -(period - j);
    case RealKind::dct2:
    case RealKind::dst2:
      if (j < (n + 1) / 2) {
        return 2 * j + 1;
      }
      return is_sine ? -(2 * (n - j)) : 2 * (n - j);
    case RealKind::dct4:
      return odd_representative(j, n);
    case RealKind::dst4: {
      const std::int64_t place = odd_representative(j, n);
      return place > 0 ? n + 1 - place : -(n + 1 + place);
    }
    default:
      return j + 1;
  }
}

}  // namespace quarn::block
