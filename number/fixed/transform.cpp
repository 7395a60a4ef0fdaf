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
  plan_->run(false, {x, stride, x, stride}, divisor);
}
void QuarnTransform::backward(Complex* x, std::ptrdiff_t stride, QuarnDivisor divisor) const {
  plan_->run(true, {x, stride, x, stride}, divisor);
}

bool QuarnTransformRows(bool backward, Complex* x, Integer n, std::ptrdiff_t stride, Integer count,
                        std::ptrdiff_t distance, QuarnDivisor divisor) {
  return QuarnTransformRows(backward, n, count, x, stride, distance, x, stride, distance, divisor);
}

bool QuarnTransformRows(bool backward, Integer n, Integer count, const Complex* x, std::ptrdiff_t stride_x,
                        std::ptrdiff_t distance_x, Complex* y, std::ptrdiff_t stride_y, std::ptrdiff_t distance_y,
                        QuarnDivisor divisor) {
  if (!is_supported(n, QuarnDigits())) {
    return false;
  }
  const auto plan = quarn::block::kept_plan<QuarnTransform::Plan>(
      -1, n, [n] { return std::make_shared<const QuarnTransform::Plan>(n, QuarnDigits()); });
  // Such sequences stay in the cache until they are transformed.
  constexpr Integer kFetched = 2048;
  const auto transform = [&](Integer first, Integer end) {
    for (Integer i = first; i < end; ++i) {
      QuarnCheckInterrupt();
      QuarnTransform::Plan::Places at = {x + i * distance_x, stride_x, y + i * distance_y, stride_y};
      if (n <= kFetched && i + 1 < end) {
        at.next_x = distance_x;
        at.next_y = distance_y;
      }
      plan->run(backward, at, divisor);
    }
  };
  // Less does not pay for starting threads.
  constexpr std::int64_t kWorthThreads = 8192;
  if (std::int64_t(n) * count < kWorthThreads || QuarnThreads() == 1) {
    transform(0, count);
    return true;
  }
  const Integer parts = std::min(count, Integer(4 * QuarnThreads()));
  QuarnParallelFor(std::size_t(parts), [&](std::size_t part) {
    const auto first = [&](std::size_t p) { return Integer(std::int64_t(count) * std::int64_t(p) / parts); };
    transform(first(part), first(part + 1));
  });
  return true;
}
