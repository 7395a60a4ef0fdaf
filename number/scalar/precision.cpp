#include "number/scalar/precision.h"

#include "number/scalar/access.h"

namespace quarn {
namespace {

constexpr int kMaxDigits = 1'000'000;

constexpr Precision precision_for(int digits) {
  Precision made{};
  made.digits = digits;
#if QUARN_LIMB_BITS == 64
  const int last = digits % Radix::digits;
  const int length = digits / Radix::digits + 1;
  // With 10^3 or less left below the cut, one product in some hundred would be undecided.
  made.road = length > QuarnFloat::kInlineLimbs ? 0 : length + (Radix::digits - last <= 3 ? Precision::kMore : 0);
  made.cut.unit = kPowersOfTen<Radix>[std::size_t(Radix::digits - last)];
  made.cut.half = made.cut.unit.value / 2;
#endif
  return made;
}

}  // namespace

constinit Precision precision = precision_for(20);

void set_precision(int digits) noexcept { precision = precision_for(digits); }

WorkingDigits::WorkingDigits(int digits) noexcept : saved_(precision.digits) { set_precision(digits); }
WorkingDigits::~WorkingDigits() { set_precision(saved_); }

}  // namespace quarn

int QuarnDigits() noexcept { return quarn::precision.digits; }

int QuarnSetDigits(int digits) noexcept {
  const int former = quarn::precision.digits;
  if (digits >= 1 && digits <= quarn::kMaxDigits) {
    quarn::set_precision(digits);
  }
  return former;
}
