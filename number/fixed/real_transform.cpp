#include <stdexcept>

#include "number/fixed/plan_cache.h"
#include "number/fixed/real_plan.h"

using quarn::block::Route;

bool QuarnRealTransform::is_supported(Kind kind, Integer n, int digits) noexcept {
  if (n < (kind == Kind::dct1 ? 2 : 1) || n > quarn::block::kLongest) {
    return false;
  }
  const std::int64_t length = Route(kind, n).logical_length();
  return length <= quarn::block::kLongest && quarn::block::is_supported(Integer(length), digits);
}

QuarnRealTransform::QuarnRealTransform(Kind kind, Integer n) {
  if (!is_supported(kind, n, QuarnDigits())) {
    throw std::invalid_argument("QuarnRealTransform: this length or number of digits is not supported");
  }
  plan_ = std::make_unique<Plan>(kind, n, QuarnDigits());
}

QuarnRealTransform::~QuarnRealTransform() = default;
QuarnRealTransform::QuarnRealTransform(QuarnRealTransform&& other) noexcept = default;
QuarnRealTransform& QuarnRealTransform::operator=(QuarnRealTransform&& other) noexcept = default;

QuarnRealTransform::Kind QuarnRealTransform::kind() const noexcept { return plan_->route.kind; }
Integer QuarnRealTransform::length() const noexcept { return plan_->route.n; }
int QuarnRealTransform::digits() const noexcept { return plan_->digits; }

void QuarnRealTransform::run(const QuarnFloat* x, std::ptrdiff_t stride_x, Complex* y, std::ptrdiff_t stride_y,
                             QuarnDivisor divisor) const {
  plan_->run({x, nullptr, stride_x}, {nullptr, y, stride_y}, divisor);
}

void QuarnRealTransform::run(const Complex* x, std::ptrdiff_t stride_x, QuarnFloat* y, std::ptrdiff_t stride_y,
                             QuarnDivisor divisor) const {
  plan_->run({nullptr, x, stride_x}, {y, nullptr, stride_y}, divisor);
}

void QuarnRealTransform::run(const QuarnFloat* x, std::ptrdiff_t stride_x, QuarnFloat* y, std::ptrdiff_t stride_y,
                             QuarnDivisor divisor) const {
  plan_->run({x, nullptr, stride_x}, {y, nullptr, stride_y}, divisor);
}

std::shared_ptr<const QuarnRealTransform> QuarnRealTransform::kept(Kind kind, Integer n) {
  return quarn::block::kept_plan<QuarnRealTransform>(
      int(kind), n, [&] { return std::make_shared<const QuarnRealTransform>(kind, n); });
}
