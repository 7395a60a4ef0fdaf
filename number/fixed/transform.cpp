#include "quarn/transform.h"

#include <algorithm>
#include <stdexcept>

#include "number/fixed/plan.h"
#include "number/fixed/plan_cache.h"
#include "quarn/parallel.h"
#include "quarn/quarnthread.h"

using quarn::block::is_supported;

bool QuarnTransform::is_supported(Integer n, int digits) noexcept { return quarn::block::is_supported(n, digits); }

QuarnTransform::QuarnTransform(Integer n) {
  if (!quarn::block::is_supported(n, QuarnDigits())) {
    throw std::invalid_argument("QuarnTransform: this length or number of digits is not supported");
  }
  plan_ = std::make_unique<Plan>(n, QuarnDigits());
}

QuarnTransform::~QuarnTransform() = default;
QuarnTransform::QuarnTransform(QuarnTransform&& other) noexcept = default;
QuarnTransform& QuarnTransform::operator=(QuarnTransform&& other) noexcept = default;

Integer QuarnTransform::length() const noexcept { return plan_->n; }
int QuarnTransform::digits() const noexcept { return plan_->digits; }

void QuarnTransform::forward(Complex* x, std::ptrdiff_t stride, QuarnDivisor divisor) const {
  plan_->run(false, x, stride, divisor);
}
void QuarnTransform::backward(Complex* x, std::ptrdiff_t stride, QuarnDivisor divisor) const {
  plan_->run(true, x, stride, divisor);
}

bool QuarnTransformRows(bool backward, Complex* x, Integer n, std::ptrdiff_t stride, Integer count,
                        std::ptrdiff_t distance, QuarnDivisor divisor) {
  if (!is_supported(n, QuarnDigits())) {
    return false;
  }
  const auto plan = quarn::block::kept_plan<QuarnTransform::Plan>(
      -1, n, [n] { return std::make_shared<const QuarnTransform::Plan>(n, QuarnDigits()); });
  // Less does not pay for starting threads.
  constexpr std::int64_t kWorthThreads = 8192;
  const bool shared = std::int64_t(n) * count >= kWorthThreads;
  const Integer parts = shared ? std::min(count, Integer(4 * QuarnThreads())) : std::min(count, Integer(1));
  QuarnParallelFor(std::size_t(std::max(parts, Integer(0))), [&](std::size_t part) {
    const auto first = [&](std::size_t p) { return Integer(std::int64_t(count) * std::int64_t(p) / parts); };
    for (Integer i = first(part); i < first(part + 1); ++i) {
      QuarnCheckInterrupt();
      plan->run(backward, x + i * distance, stride, divisor);
    }
  });
  return true;
}
