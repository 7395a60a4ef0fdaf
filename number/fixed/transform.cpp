#include "quarn/transform.h"

#include <list>
#include <stdexcept>

#include "number/fixed/plan.h"
#include "number/limbs/scratch.h"
#include "number/scalar/thread_state.h"

namespace {

using quarn::block::format_for;
using quarn::block::is_supported;

/// The plans that were used last, the latest first.
class PlanCache {
 public:
  /// Makes the plan unless it is here. n and digits are supported.
  template <class Plan>
  const Plan& plan(Integer n, int digits);

 private:
  struct Entry {
    Integer n;
    int digits;
    std::shared_ptr<const void> plan;
  };
  static constexpr std::size_t kKept = 8;

  std::list<Entry> entries_;
};

template <class Plan>
const Plan& PlanCache::plan(Integer n, int digits) {
  for (auto entry = entries_.begin(); entry != entries_.end(); ++entry) {
    if (entry->n == n && entry->digits == digits) {
      entries_.splice(entries_.begin(), entries_, entry);
      return *static_cast<const Plan*>(entry->plan.get());
    }
  }
  auto plan = std::make_shared<const Plan>(n, digits, format_for(n, digits));
  entries_.push_front({n, digits, plan});
  if (entries_.size() > kKept) {
    entries_.pop_back();
  }
  return *plan;
}

}  // namespace

bool QuarnTransform::is_supported(Integer n, int digits) noexcept { return ::is_supported(n, digits); }

QuarnTransform::QuarnTransform(Integer n) {
  if (!::is_supported(n, QuarnDigits())) {
    throw std::invalid_argument("QuarnTransform: this length or number of digits is not supported");
  }
  plan_ = std::make_unique<Plan>(n, QuarnDigits(), format_for(n, QuarnDigits()));
}

QuarnTransform::~QuarnTransform() = default;
QuarnTransform::QuarnTransform(QuarnTransform&& other) noexcept = default;
QuarnTransform& QuarnTransform::operator=(QuarnTransform&& other) noexcept = default;

Integer QuarnTransform::length() const noexcept { return plan_->n; }
int QuarnTransform::digits() const noexcept { return plan_->digits; }

void QuarnTransform::forward(Complex* x, std::ptrdiff_t stride) const { plan_->run(false, x, stride); }
void QuarnTransform::backward(Complex* x, std::ptrdiff_t stride) const { plan_->run(true, x, stride); }

bool QuarnTransformRows(bool backward, Complex* x, Integer n, std::ptrdiff_t stride, Integer count,
                        std::ptrdiff_t distance) {
  if (!is_supported(n, QuarnDigits())) {
    return false;
  }
  const auto& plan =
      quarn::own_cache<PlanCache>(quarn::Cache::transform_plans).plan<QuarnTransform::Plan>(n, QuarnDigits());
  for (Integer i = 0; i < count; ++i) {
    plan.run(backward, x + i * distance, stride);
  }
  return true;
}
