#include "src/sparse/solver.h"

#include <algorithm>
#include <limits>

#include "src/frame/constants.h"
#include "src/util/random.h"

namespace tesk {
namespace {

// With ITERM 1 and preconditioning the recurrence knows another residual than the criterion asks for. Their ratio may
// change between two judgements; an iterate within this factor of the criterion is judged.
constexpr int kPreconditionedMargin = 100;

// New starts with other shadow vectors that may go by without halving the residual.
constexpr Integer kMostFruitlessStarts = 3;

// A residual beyond 10 to the power +- this is scaled for the method.
constexpr int kScaledDecades = 100'000'000;

// Parts of a residual below 10^-999999999 are 0. Those of 2^31 rows make less than this together.
constexpr int kLeastResidual = -999'999'980;

}  // namespace

// Requests ---------------------------------------------------------------------------------------------------------

template <class T>
Integer Solver<T>::proceed(Request brought) {
  const auto phase = Phase(state_.phase);
  if (phase == Phase::completed) {
    return Integer(Ending::already_completed);
  }
  if (brought == Request::immediate_end) {
    if (phase == Phase::running) {
      tesk::copy(n(), vector(kIterate), u_);
    }
    state_.phase = Integer(Phase::completed);
    state_.request = Integer(Request::completion);
    return Integer(Ending::immediate);
  }
  if (phase == Phase::set_up) {
    if (brought != Request::start) {
      return -kParameterIrevcm;
    }
    if (!weights_are_valid()) {
      return -kParameterWgt;
    }
    begin();
  } else {
    if (brought != Request(state_.request) && brought != Request::tidy_end) {
      return -kParameterIrevcm;
    }
    if (!weights_are_valid()) {
      return -kParameterWgt;
    }
    const bool monitored = Request(state_.request) == Request::monitoring;
    if (brought == Request::tidy_end) {
      state_.tidy = 1;
    }
    if (Request(state_.request) == Request::sums) {
      take_growth();
    } else if (!monitored) {
      tesk::copy(n(), v_, vector(state_.target));
    } else if (selects(&SolverIntegers::tidy)) {
      finish(Ending::tidy);
    }
  }
  while (!asked_) {
    advance();
  }
  return Integer(ending_);
}

template <class T>
void Solver<T>::ask(Request request, Integer source, Integer target, Task task) {
  tesk::copy(n(), vector(source), u_);
  state_.request = Integer(request);
  state_.target = target;
  state_.task = Integer(task);
  asked_ = true;
}

template <class T>
Outcome Solver<T>::apply(Integer source, Integer target, Integer next_step) {
  if (distributed()) {
    state_.fresh = 0;
    state_.growth = measures_growth() ? source + 1 : 0;
  } else if (measures_growth()) {
    state_[Place::source] = norm(source);
  }
  state_.step = next_step;
  ask(Request::product, source, target, preconditioned_left() ? Task::precondition : Task::applied);
  return Outcome::waiting;
}

template <class T>
Outcome Solver<T>::precondition(Integer source, Integer target, Integer next_step) {
  state_.fresh = 0;
  state_.step = next_step;
  ask(Request::preconditioner, source, target, Task::method);
  return Outcome::waiting;
}

template <class T>
void Solver<T>::advance() {
  switch (Task(state_.task)) {
    case Task::precondition:
      if (method_.beside_preconditioner > 0) {
        copy(state_.target, product_slot());
      }
      return ask(Request::preconditioner, state_.target, state_.target, Task::applied);
    case Task::applied:
      if (measures_growth() && !distributed()) {
        const QuarnFloat growth = norm(state_.target) / state_[Place::source];
        state_[Place::sigmax] = growth > state_[Place::sigmax] ? growth : state_[Place::sigmax];
      }
      [[fallthrough]];
    case Task::method:
      state_.task = Integer(Task::method);
      switch (steps_.resume(*this)) {
        case Outcome::waiting:
          return;
        case Outcome::iterated:
          ++state_.itn;
          return watch();
        case Outcome::broken:
          return evaluate(kBroken);
        case Outcome::unsuitable:
          return evaluate(kUnsuitable);
      }
      return;
    case Task::right_side:
      if (distributed()) {
        forget_sums();
        want_norm(kTrueResidual);
        return ask_for_sums(Task::right_side_size);
      }
      [[fallthrough]];
    case Task::right_side_size:
      state_[Place::right_hand_side] = norm(kTrueResidual);
      return evaluate(kRestart);
    case Task::watching:
      return decide();
    case Task::beginning:
      return begin_with_right_side();
    case Task::judging:
      return pronounce();
    case Task::estimate_start:
      return start_norm_estimate();
    case Task::norm_image:
      return take_image();
    case Task::image_size:
      return measure_image();
    case Task::image_dual_count:
      return ask_for_dual();
    case Task::norm_dual:
      return take_dual();
    case Task::dual_size:
      return measure_dual();
    case Task::dual_dual_count:
      return finish_next_vector();
    case Task::true_residual:
      for (Integer i = 1; i <= n(); ++i) {
        T& residual = vector(kTrueResidual)(i);
        residual = vector(kRightSide)(i) - residual;
      }
      if (preconditioned_left()) {
        return ask(Request::preconditioner, kTrueResidual, preconditioned_slot(), Task::judgement);
      }
      [[fallthrough]];
    case Task::judgement:
      return judge();
  }
  finish(Ending::breakdown);
}

// The course of a solution -----------------------------------------------------------------------------------------

template <class T>
void Solver<T>::begin() {
  state_.phase = Integer(Phase::running);
  tesk::copy(n(), u_, vector(kIterate));
  tesk::copy(n(), v_, vector(kRightSide));
  if (!distributed()) {
    return begin_with_right_side();
  }
  forget_sums();
  want_norm(kRightSide);
  if (selects(&SolverIntegers::weighted)) {
    for (Integer i = 1; i <= n(); ++i) {
      vector(kTrueResidual)(i) = T(wgt_[i - 1]);
      vector(kResidual)(i) = T(1 / wgt_[i - 1]);
    }
    want(Integer(SumKind::largest), kTrueResidual, kTrueResidual);
    want(Integer(SumKind::largest), kResidual, kResidual);
  }
  ask_for_sums(Task::beginning);
}

template <class T>
void Solver<T>::begin_with_right_side() {
  if (distributed() && selects(&SolverIntegers::weighted)) {
    state_[Place::largest_weight] = plain_norm(kInfinityNorm, kTrueResidual);
    state_[Place::least_weight] = 1 / plain_norm(kInfinityNorm, kResidual);
  }
  state_[Place::right_hand_side] = norm(kRightSide);
  if (!is_classic()) {
    state_[Place::plain_right_hand_side] = state_[Place::right_hand_side];
  }
  if (state_[Place::right_hand_side] == 0) {
    clear(kIterate);
    clear(kTrueResidual);
    state_.iterate = kIterate;
    return finish(Ending::none);
  }
  if (state_.iterm == 1 && !selects(&SolverIntegers::anorm_known)) {
    return begin_norm_estimate();
  }
  if (state_.iterm == 2 && preconditioned_left()) {
    return ask(Request::preconditioner, kRightSide, kTrueResidual, Task::right_side);
  }
  evaluate(kRestart);
}

template <class T>
QuarnFloat Solver<T>::right_side(const QuarnFloat& iterate_norm) const {
  const QuarnFloat& matrix_norm = state_[state_.iterm == 1 ? Place::anorm : Place::sigmax];
  return state_[Place::tol] * (state_[Place::right_hand_side] + matrix_norm * iterate_norm);
}

template <class T>
bool Solver<T>::monitoring_is_due() const {
  return state_.monit > 0 && state_.itn > 0 && state_.itn % state_.monit == 0;
}

/// Would a residual that is too large be told from 0?
template <class T>
bool Solver<T>::residual_is_in_range() const {
  return is_classic() || state_[Place::tol] * state_[Place::plain_right_hand_side] >= QuarnFloat(1, kLeastResidual);
}

template <class T>
void Solver<T>::watch() {
  if (distributed() && steps_.want != nullptr) {
    forget_sums();
    steps_.want(*this);
    return ask_for_sums(Task::watching);
  }
  decide();
}

template <class T>
void Solver<T>::decide() {
  const Bounds bounds = steps_.bounds(*this);
  if (!isfinite(bounds.residual) || !isfinite(bounds.iterate)) {
    return evaluate(kBroken);
  }
  const QuarnFloat& left = state_[Place::stplhs] = state_[Place::ratio] * bounds.residual * unit();
  const QuarnFloat& right = state_[Place::stprhs] = right_side(bounds.iterate);
  const bool indirect = state_.iterm == 1 && preconditioned_left();
  const Integer reason = (left <= (indirect ? kPreconditionedMargin * right : right) ? kCandidate : kLook) |
                         (state_.step == 0 ? Integer(kRestart) : Integer(0));
  if (reason != kLook || monitoring_is_due() || selects(&SolverIntegers::tidy) || state_.itn >= state_.maxitn) {
    return evaluate(reason);
  }
  state_.fresh = Task(state_.task) == Task::watching ? 1 : 0;
  state_.task = Integer(Task::method);
}

template <class T>
void Solver<T>::evaluate(Integer reason) {
  state_.fresh = 0;
  state_.growth = 0;
  state_.reason = reason;
  state_.iterate = steps_.iterate(*this);
  ask(Request::product, state_.iterate, kTrueResidual, Task::true_residual);
}

template <class T>
void Solver<T>::judge() {
  if (distributed()) {
    forget_sums();
    want_norm(kTrueResidual);
    want_norm(preconditioned_slot());
    want_norm(state_.iterate);
    want_euclidean(preconditioned_slot());
    want_euclidean(kResidual);
    return ask_for_sums(Task::judging);
  }
  pronounce();
}

template <class T>
void Solver<T>::pronounce() {
  const Integer residual = preconditioned_slot();
  const QuarnFloat& left = state_[Place::stplhs] = norm(state_.iterm == 1 ? Integer(kTrueResidual) : residual);
  const QuarnFloat& right = state_[Place::stprhs] = right_side(norm(state_.iterate));
  const bool finite = isfinite(left) && isfinite(right);
  if (finite && left <= right) {
    return finish(residual_is_in_range() ? Ending::none : Ending::inaccurate);
  }
  if (!finite || (state_.reason & kUnsuitable) != 0) {
    return finish(Ending::breakdown);
  }
  state_[Place::ratio] = left / norm(residual);

  const QuarnFloat size = euclidean(residual);
  const bool broken = (state_.reason & kBroken) != 0;
  const bool parted = (state_.reason & kCandidate) != 0 && 2 * steps_.residual(*this) * unit() < size;
  if (broken || parted) {
    const bool gained = state_.replacements == 0 || 2 * left <= state_[Place::replaced_residual];
    ++state_.replacements;
    state_.breakdowns += broken ? 1 : 0;
    state_.fruitless = gained ? 0 : state_.fruitless + 1;
    if (gained) {
      state_[Place::replaced_residual] = left;
    }
    if (state_.fruitless > (broken && method_.has_shadow ? kMostFruitlessStarts : 0)) {
      return finish(broken ? Ending::breakdown : selects(&SolverIntegers::tidy) ? Ending::tidy : Ending::inaccurate);
    }
  }
  if (selects(&SolverIntegers::tidy)) {
    return finish(Ending::tidy);
  }
  if (state_.itn >= state_.maxitn) {
    return finish(Ending::not_converged);
  }
  if (broken || parted || (state_.reason & kRestart) != 0) {
    // A cycle that gains nothing would be repeated for ever.
    if (!broken && !parted && state_.itn > 0 && !(state_[Place::restart_residual] - size > 10 * epsilon() * size)) {
      return finish(Ending::breakdown);
    }
    state_[Place::restart_residual] = size;
    restart();
  }
  state_.task = Integer(Task::method);
  if (!broken && monitoring_is_due()) {
    hand_out_iterate();
    state_.request = Integer(Request::monitoring);
    asked_ = true;
  }
}

template <class T>
void Solver<T>::restart() {
  if (state_.iterate != kIterate) {
    copy(state_.iterate, kIterate);
  }
  copy(preconditioned_slot(), kResidual);
  const QuarnFloat& size = state_[Place::restart_residual];
  state_[Place::unit] = 1;
  if (size > 0 && !is_within(size, kScaledDecades)) {
    const int decade = ilogb(size);
    state_[Place::unit] = QuarnFloat(1, decade);
    scale(n(), QuarnFloat(1, -decade), vector(kResidual));
  }
  state_.step = 0;
  state_.inner = 0;
}

template <class T>
bool Solver<T>::advance_iterate(const T& alpha, Integer source) const {
  const QuarnFloat bound(1, kFarthestSquared);
  T factor = alpha;
  multiply_by(factor, unit());
  const SolverVector<T> v = vector(source);
  bool ordinary = is_below(factor, bound);
  for (Integer i = 1; i <= n() && ordinary; ++i) {
    ordinary = is_below(v(i), bound);
  }
  if (!ordinary && !distributed() &&
      !isfinite(size_of(factor) * plain_norm(kInfinityNorm, source) + plain_norm(kInfinityNorm, kIterate))) {
    return false;
  }
  add(factor, source, kIterate);
  return true;
}

template <class T>
void Solver<T>::choose_shadow(Integer slot) const {
  if (state_.breakdowns == 0) {
    return copy(kResidual, slot);
  }
  fill_randomly(slot, 7535);
}

template <class T>
void Solver<T>::fill_randomly(Integer slot, Integer second_seed) const {
  Integer seed[4] = {(2 * state_.breakdowns + 1) % 32768, second_seed, 26792, 30140};
  const SolverVector<T> shadow = vector(slot);
  const auto random = [&seed] { return QuarnFloat(Integer(next_nine_digits(0, seed) - 500'000'000), -9); };
  // Each part takes its own of the numbers that the whole vector has.
  const Integer first = distributed() ? state_.first : 1;
  for (Integer row = 1; row - first < n(); ++row) {
    T number(random());
    if constexpr (std::is_same_v<T, Complex>) {
      number.im = random();
    }
    if (row >= first) {
      shadow(row - first + 1) = number;
    }
  }
}

template <class T>
void Solver<T>::hand_out_iterate() {
  tesk::copy(n(), vector(state_.iterate), u_);
  tesk::copy(n(), vector(kTrueResidual), v_);
}

template <class T>
void Solver<T>::finish(Ending ending) {
  const bool parted_before = state_.replacements > 0;
  ending_ = ending == Ending::tidy && parted_before ? Ending::tidy_inaccurate : ending;
  hand_out_iterate();
  state_.phase = Integer(Phase::completed);
  state_.request = Integer(Request::completion);
  asked_ = true;
}

// Norms ------------------------------------------------------------------------------------------------------------

template <class T>
bool Solver<T>::weights_are_valid() const {
  if (!selects(&SolverIntegers::weighted)) {
    return true;
  }
  return std::all_of(wgt_, wgt_ + n(), [](const QuarnFloat& weight) { return isfinite(weight) && weight > 0; });
}

template <class T>
Integer Solver<T>::preconditioned_slot() const {
  return preconditioned_left() ? vector_count(method_, state_.m, true) - 1 : Integer(kTrueResidual);
}

template <class T>
T Solver<T>::weighted(Integer slot, Integer i) const {
  T x = vector(slot)(i);
  multiply_by(x, wgt_[i - 1]);
  return x;
}

template <class T>
QuarnFloat Solver<T>::norm(Integer slot) const {
  if (distributed()) {
    return real_part(answer(sum_code(), slot, slot));
  }
  return selects(&SolverIntegers::weighted) ? norm_of(state_.norm, n(), [&](Integer i) { return weighted(slot, i); })
                                            : plain_norm(state_.norm, slot);
}

template <class T>
QuarnFloat Solver<T>::plain_norm(Integer norm, Integer slot) const {
  if (distributed()) {
    return real_part(answer(kind_of(norm), slot, slot));
  }
  const SolverVector<T> v = vector(slot);
  return norm_of(norm, n(), [&](Integer i) -> const T& { return v(i); });
}

// ||v||_inf sqrt(n) >= ||v||_2 >= ||v||_1 / sqrt(n), ||v||_1 >= ||v||_2 >= ||v||_inf
template <class T>
QuarnFloat Solver<T>::least_norm(const QuarnFloat& euclidean) const {
  const QuarnFloat least = state_.norm == kInfinityNorm ? euclidean / sqrt(QuarnFloat(order())) : euclidean;
  if (distributed()) {
    return selects(&SolverIntegers::weighted) ? least * state_[Place::least_weight] : least;
  }
  return selects(&SolverIntegers::weighted) ? least * *std::min_element(wgt_, wgt_ + n()) : least;
}

template <class T>
QuarnFloat Solver<T>::largest_norm(const QuarnFloat& euclidean) const {
  const QuarnFloat largest = state_.norm == kOneNorm ? euclidean * sqrt(QuarnFloat(order())) : euclidean;
  if (distributed()) {
    return selects(&SolverIntegers::weighted) ? largest * state_[Place::largest_weight] : largest;
  }
  return selects(&SolverIntegers::weighted) ? largest * *std::max_element(wgt_, wgt_ + n()) : largest;
}

// Sums that the caller forms --------------------------------------------------------------------------------------

template <class T>
Integer Solver<T>::sum_code() const noexcept {
  return Integer(kind_of(state_.norm)) + (selects(&SolverIntegers::weighted) ? kWeightedSum : 0);
}

template <class T>
void Solver<T>::want(Integer code, Integer a, Integer b) const {
  const auto place_of = [this](Integer slot) { return QuarnFloat(kHeaderLength + std::int64_t(slot) * n() + 1); };
  const T wanted[] = {T(QuarnFloat(code)), T(place_of(a)), T(place_of(b)),
                      T(QuarnFloat(std::numeric_limits<double>::quiet_NaN()))};  // until the caller has formed it
  T* const end = table() + std::ptrdiff_t(state_.known + state_.sums) * kSumElements;
  for (const T* known = table(); known != end; known += kSumElements) {
    if (std::equal(wanted, wanted + kSumElements - 1, known)) {
      return;
    }
  }
  std::copy(std::begin(wanted), std::end(wanted), end);
  ++state_.sums;
}

template <class T>
T Solver<T>::answer(Integer code, Integer a, Integer b) const {
  const auto place_of = [this](Integer slot) { return QuarnFloat(kHeaderLength + std::int64_t(slot) * n() + 1); };
  const T wanted[] = {T(QuarnFloat(code)), T(place_of(a)), T(place_of(b))};
  const T* const end = table() + std::ptrdiff_t(state_.known + state_.sums) * kSumElements;
  for (const T* known = table(); known != end; known += kSumElements) {
    if (std::equal(std::begin(wanted), std::end(wanted), known)) {
      return known[kSumElements - 1];
    }
  }
  return T(QuarnFloat(std::numeric_limits<double>::quiet_NaN()));  // somebody has written over WORK
}

template <class T>
void Solver<T>::ask_for_sums(Task task) {
  if (state_.growth != 0) {
    want_norm(state_.growth - 1);
    want_norm(state_.target);
  }
  state_.sums_place = Integer(table() - state_.work()) + state_.known * kSumElements + 1;
  state_.request = Integer(Request::sums);
  state_.task = Integer(task);
  asked_ = true;
}

template <class T>
void Solver<T>::take_growth() {
  if (state_.growth != 0) {
    const QuarnFloat growth = norm(state_.target) / norm(state_.growth - 1);
    state_[Place::sigmax] = growth > state_[Place::sigmax] ? growth : state_[Place::sigmax];
    state_.growth = 0;
  }
}

template class Solver<QuarnFloat>;
template class Solver<Complex>;

}  // namespace tesk
