#include "src/sparse/solver_state.h"

#include <algorithm>
#include <limits>

#include "src/frame/constants.h"
#include "src/sparse/solver_methods.h"

namespace tesk {
namespace {

constexpr Integer kLargest = std::numeric_limits<Integer>::max();
constexpr Integer kMarkers[][2] = {{4, 1739512}, {20, 840653}};
constexpr Integer kPhasePlace = 5;
constexpr Integer kMethodPlace = 6;
constexpr Integer kIterationsPlace = 16;
constexpr Integer kCheckSumPlace = 25;

/// Where an integer of the state lives in WORK, 1-based, and its range.
struct IntegerPlace {
  Integer SolverIntegers::*member;
  Integer place;
  Integer low;
  Integer high;
};

constexpr IntegerPlace kPlaces[] = {
    {&SolverIntegers::n, 1, 1, kLargest},
    {&SolverIntegers::m, 2, 1, kLargestOrder},
    {&SolverIntegers::preconditioned, 3, 0, 1},
    {&SolverIntegers::phase, kPhasePlace, 0, 2},
    {&SolverIntegers::norm, 7, 0, 2},
    {&SolverIntegers::weighted, 8, 0, 1},
    {&SolverIntegers::iterm, 9, 1, 2},
    {&SolverIntegers::maxitn, 10, 1, kLargest},
    {&SolverIntegers::monit, 11, 0, kLargest},
    {&SolverIntegers::anorm_known, 12, 0, 1},
    {&SolverIntegers::sigmax_known, 13, 0, 1},
    {&SolverIntegers::request, 14, -1, 7},
    {&SolverIntegers::target, 15, 0, kLargest},
    {&SolverIntegers::itn, kIterationsPlace, 0, kLargest},
    {&SolverIntegers::task, 17, 0, 31},
    {&SolverIntegers::step, 18, 0, 15},
    {&SolverIntegers::inner, 19, 0, kLargestOrder},
    {&SolverIntegers::iterate, 21, 0, kLargest},
    {&SolverIntegers::reason, 22, 0, 15},
    {&SolverIntegers::tidy, 23, 0, 1},
    {&SolverIntegers::replacements, 24, 0, kLargest},
    {&SolverIntegers::estimate_round, 26, 0, kLargest},
    {&SolverIntegers::breakdowns, 27, 0, kLargest},
    {&SolverIntegers::fruitless, 28, 0, kLargest},
};

/// Those of problems whose vectors are parts of longer ones; zero in others.
constexpr IntegerPlace kDistributedPlaces[] = {
    {&SolverIntegers::order, 29, 0, kLargest},  {&SolverIntegers::first, 30, 0, kLargest},
    {&SolverIntegers::sums, 31, 0, kMostSums},  {&SolverIntegers::sums_place, 32, 0, kLargest},
    {&SolverIntegers::fresh, 33, 0, 1},         {&SolverIntegers::growth, 34, 0, kLargest},
    {&SolverIntegers::known, 35, 0, kMostSums},
};

/// Codes of the classic methods are not part of the sum: any number beyond them means the last one.
Integer check_sum(const SolverIntegers& integers, const SolverMethod& rules) {
  std::uint32_t sum = companion_method(rules.code) == nullptr ? 1 : std::uint32_t(rules.code);
  const auto take = [&](const IntegerPlace& at) { sum = (sum ^ std::uint32_t(integers.*at.member)) * 16777619U; };
  std::for_each(std::begin(kPlaces), std::end(kPlaces), take);
  if (integers.order != 0) {
    std::for_each(std::begin(kDistributedPlaces), std::end(kDistributedPlaces), take);
  }
  return Integer(sum >> 1);
}

/// The tolerance in use: no less than what rounding lets any residual reach.
QuarnFloat tolerance(const QuarnFloat& tol, Integer n) {
  const QuarnFloat eps = epsilon();
  const QuarnFloat least = std::max(10 * eps, sqrt(QuarnFloat(n)) * eps);
  return std::max(tol > 0 ? tol : sqrt(eps), least);
}

}  // namespace

Integer nearest_integer(const QuarnFloat& x) {
  // Not floor(x + 1/2): that sum is rounded, and takes a digit more than the integer.
  const QuarnFloat size = fabs(x);
  QuarnFloat whole = floor(size);
  if (size - whole >= 0.5) {
    whole += 1;
  }
  return FloatToInt(x < 0 ? -whole : whole);
}

template <class T>
bool solver_state(StateMode mode, T* work) {
  for (const auto& [place, value] : kMarkers) {
    QuarnFloat& marker = real_part(work[place - 1]);
    if (mode == StateMode::set_up) {
      marker = value;
    } else if (nearest_integer(marker) != value) {
      return false;
    }
  }
  if (mode == StateMode::set_up) {
    real_part(work[kPhasePlace - 1]) = 0;
  }
  return true;
}

template <class T>
Phase solver_phase(const T* work) {
  return Phase(nearest_integer(real_part(work[kPhasePlace - 1])));
}
template <class T>
Integer solver_method_code(const T* work) {
  return nearest_integer(real_part(work[kMethodPlace - 1]));
}
template <class T>
Integer solver_iterations(const T* work) {
  return nearest_integer(real_part(work[kIterationsPlace - 1]));
}

template <class T>
void SolverState<T>::choose(const SolverMethod& rules) noexcept {
  method = rules.code;
  rules_ = &rules;
}

template <class T>
void SolverState<T>::save() const {
  real_part(work_[kMethodPlace - 1]) = method;
  const auto write = [this](const IntegerPlace& at) { real_part(work_[at.place - 1]) = this->*at.member; };
  std::for_each(std::begin(kPlaces), std::end(kPlaces), write);
  std::for_each(std::begin(kDistributedPlaces), std::end(kDistributedPlaces), write);
  real_part(work_[kCheckSumPlace - 1]) = check_sum(*this, *rules_);
}

template <class T>
bool SolverState<T>::load() {
  method = nearest_integer(real_part(work_[kMethodPlace - 1]));
  const auto read = [this](const IntegerPlace& at) {
    const Integer value = nearest_integer(real_part(work_[at.place - 1]));
    this->*at.member = value;
    return value >= at.low && value <= at.high;
  };
  if (!std::all_of(std::begin(kPlaces), std::end(kPlaces), read) ||
      !std::all_of(std::begin(kDistributedPlaces), std::end(kDistributedPlaces), read)) {
    return false;
  }
  const Integer sum = nearest_integer(real_part(work_[kCheckSumPlace - 1]));
  const SolverMethod* const companion = companion_method(method);
  rules_ = companion != nullptr && sum == check_sum(*this, *companion) ? companion : &solver_method(method);
  const Integer vectors = vector_count(*rules_, m, preconditioned != 0);
  return sum == check_sum(*this, *rules_) && m <= rules_->largest_m && target < vectors && iterate < vectors &&
         growth <= vectors && known + sums <= kMostSums &&
         (order == 0 || (n <= order && first >= 1 && first <= order - n + 1)) && step <= rules_->last_step &&
         (inner < m || (inner == m && step == 0));
}

template <class T>
void begin_problem(SolverState<T>& state, const QuarnFloat& tol, const QuarnFloat& anorm, const QuarnFloat& sigmax) {
  state.anorm_known = anorm > 0 ? 1 : 0;
  state.sigmax_known = sigmax > 0 ? 1 : 0;
  state[Place::anorm] = std::max(anorm, QuarnFloat(0));
  state[Place::sigmax] = std::max(sigmax, QuarnFloat(0));
  state[Place::tol] = tolerance(tol, state.is_distributed() ? state.order : state.n);
  state.save();
  solver_state(StateMode::set_up, state.work());
}

template void begin_problem(SolverState<QuarnFloat>&, const QuarnFloat&, const QuarnFloat&, const QuarnFloat&);
template void begin_problem(SolverState<Complex>&, const QuarnFloat&, const QuarnFloat&, const QuarnFloat&);
template class SolverState<QuarnFloat>;
template class SolverState<Complex>;
template bool solver_state(StateMode, QuarnFloat*);
template bool solver_state(StateMode, Complex*);
template Phase solver_phase(const QuarnFloat*);
template Phase solver_phase(const Complex*);
template Integer solver_method_code(const QuarnFloat*);
template Integer solver_method_code(const Complex*);
template Integer solver_iterations(const QuarnFloat*);
template Integer solver_iterations(const Complex*);

}  // namespace tesk
