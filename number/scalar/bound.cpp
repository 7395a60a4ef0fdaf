#include "quarn/bound.h"

#include "number/scalar/access.h"

using quarn::Kind;

QuarnBound::QuarnBound(const QuarnFloat& x) noexcept {
  const Kind kind = quarn::kind_of(x);
  if (kind == Kind::zero) {
    return;
  }
  if (kind != Kind::finite) {
    *this = infinity();
    return;
  }
  const quarn::View view = quarn::view_of(x);
  constexpr quarn::Limb kBelow = quarn::Radix::base / quarn::Limb(kUnit);
  const bool more = view.length > 1 || view.limbs[0] % kBelow != 0;
  *this = {std::uint64_t(view.limbs[0] / kBelow) + (more ? 1 : 0), view.exponent - 9};
}

QuarnFloat QuarnBound::value() const {
  if (is_zero()) {
    return {};
  }
  if (!is_finite() || exponent() > quarn::kMaxScientificExponent) {
    return quarn::special(Kind::infinite);
  }
  const std::int64_t least = -quarn::kMaxScientificExponent;
  const bool tiny = exponent() < least;
  const std::uint32_t mantissa = tiny ? std::uint32_t(kUnit / 10) : mantissa_;
  const quarn::Limb limb = quarn::Limb(mantissa) * (quarn::Radix::base / quarn::Limb(kUnit));
  return quarn::rounded(false, (tiny ? least : exponent()) + 1, &limb, 1, false, 9);
}
