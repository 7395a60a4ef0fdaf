// The plans that a thread used last.
#pragma once

#include <list>
#include <memory>

#include "number/scalar/thread_state.h"
#include "quarn/quarnfloat.h"

namespace quarn::block {

class PlanCache {
 public:
  /// The plan for the working digits, made unless it is here. `kind` differs for plans of different types.
  template <class Plan, class Make>
  std::shared_ptr<const Plan> plan(int kind, Integer n, const Make& make) {
    const int digits = QuarnDigits();
    for (auto entry = entries_.begin(); entry != entries_.end(); ++entry) {
      if (entry->kind == kind && entry->n == n && entry->digits == digits) {
        entries_.splice(entries_.begin(), entries_, entry);
        return std::static_pointer_cast<const Plan>(entry->plan);
      }
    }
    std::shared_ptr<const Plan> plan = make();
    entries_.push_front({kind, n, digits, plan});
    if (entries_.size() > kKept) {
      entries_.pop_back();
    }
    return plan;
  }

 private:
  struct Entry {
    int kind;
    Integer n;
    int digits;
    std::shared_ptr<const void> plan;
  };
  static constexpr std::size_t kKept = 8;

  std::list<Entry> entries_;
};

template <class Plan, class Make>
std::shared_ptr<const Plan> kept_plan(int kind, Integer n, const Make& make) {
  return own_cache<PlanCache>(Cache::transform_plans).plan<Plan>(kind, n, make);
}

}  // namespace quarn::block
