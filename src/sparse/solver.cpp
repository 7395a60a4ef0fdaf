#include "src/sparse/solver.h"

#include <algorithm>

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

/// The norm of element(1) ... element(n).
template <class Element>
QuarnFloat norm_of(Integer norm, Integer n, const Element& element) {
  if (norm == kTwoNorm) {
    return euclidean_norm(n, element);
  }
  QuarnFloat sum;
  for (Integer i = 1; i <= n; ++i) {
    if (norm == kOneNorm) {
      sum += fabs(element(i));
    } else if (!(fabs(element(i)) <= sum)) {  // a NaN must not get lost
      sum = isnan(sum) ? sum : fabs(element(i));
    }
  }
  return sum;
}

}  // namespace

Integer decade_of(const QuarnFloat& x) { return FloatToInt(floor(QuarnEvalf1("log10", x))); }

// Requests ---------------------------------------------------------------------------------------------------------

Integer Solver::proceed(Request brought) {
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
    if (!monitored) {
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

void Solver::ask(Request request, Integer source, Integer target, Task task) {
  tesk::copy(n(), vector(source), u_);
  state_.request = Integer(request);
  state_.target = target;
  state_.task = Integer(task);
  asked_ = true;
}

Outcome Solver::apply(Integer source, Integer target, Integer next_step) {
  if (state_.iterm == 2 && !selects(&SolverIntegers::sigmax_known)) {
    state_[Place::source] = norm(source);
  }
  state_.step = next_step;
  ask(Request::product, source, target, selects(&SolverIntegers::preconditioned) ? Task::precondition : Task::applied);
  return Outcome::waiting;
}

void Solver::advance() {
  switch (Task(state_.task)) {
    case Task::precondition:
      if (method_.beside_preconditioner > 0) {
        copy(state_.target, product_slot());
      }
      return ask(Request::preconditioner, state_.target, state_.target, Task::applied);
    case Task::applied:
      if (state_.iterm == 2 && !selects(&SolverIntegers::sigmax_known)) {
        const QuarnFloat growth = norm(state_.target) / state_[Place::source];
        state_[Place::sigmax] = growth > state_[Place::sigmax] ? growth : state_[Place::sigmax];
      }
      [[fallthrough]];
    case Task::method:
      state_.task = Integer(Task::method);
      switch (method_.resume(*this)) {
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
      state_[Place::right_hand_side] = norm(kTrueResidual);
      return evaluate(kRestart);
    case Task::norm_image:
      return ask_for_dual();
    case Task::norm_dual:
      return ask_for_next_image();
    case Task::true_residual:
      for (Integer i = 1; i <= n(); ++i) {
        QuarnFloat& residual = vector(kTrueResidual)(i);
        residual = vector(kRightSide)(i) - residual;
      }
      if (selects(&SolverIntegers::preconditioned)) {
        return ask(Request::preconditioner, kTrueResidual, preconditioned_slot(), Task::judgement);
      }
      [[fallthrough]];
    case Task::judgement:
      return judge();
  }
  finish(Ending::breakdown);
}

// The course of a solution -----------------------------------------------------------------------------------------

void Solver::begin() {
  state_.phase = Integer(Phase::running);
  tesk::copy(n(), u_, vector(kIterate));
  tesk::copy(n(), v_, vector(kRightSide));
  state_[Place::right_hand_side] = norm(kRightSide);
  if (state_[Place::right_hand_side] == 0) {
    clear(kIterate);
    clear(kTrueResidual);
    state_.iterate = kIterate;
    return finish(Ending::none);
  }
  if (state_.iterm == 1 && !selects(&SolverIntegers::anorm_known)) {
    return begin_norm_estimate();
  }
  if (state_.iterm == 2 && selects(&SolverIntegers::preconditioned)) {
    return ask(Request::preconditioner, kRightSide, kTrueResidual, Task::right_side);
  }
  evaluate(kRestart);
}

QuarnFloat Solver::right_side(const QuarnFloat& iterate_norm) const {
  const QuarnFloat& matrix_norm = state_[state_.iterm == 1 ? Place::anorm : Place::sigmax];
  return state_[Place::tol] * (state_[Place::right_hand_side] + matrix_norm * iterate_norm);
}

bool Solver::monitoring_is_due() const { return state_.monit > 0 && state_.itn > 0 && state_.itn % state_.monit == 0; }

void Solver::watch() {
  const Bounds bounds = method_.bounds(*this);
  if (!isfinite(bounds.residual) || !isfinite(bounds.iterate)) {
    return evaluate(kBroken);
  }
  const QuarnFloat& left = state_[Place::stplhs] = state_[Place::ratio] * bounds.residual * unit();
  const QuarnFloat& right = state_[Place::stprhs] = right_side(bounds.iterate);
  const bool indirect = state_.iterm == 1 && selects(&SolverIntegers::preconditioned);
  const Integer reason = (left <= (indirect ? kPreconditionedMargin * right : right) ? kCandidate : kLook) |
                         (state_.step == 0 ? Integer(kRestart) : Integer(0));
  if (reason != kLook || monitoring_is_due() || selects(&SolverIntegers::tidy) || state_.itn >= state_.maxitn) {
    evaluate(reason);
  }
}

void Solver::evaluate(Integer reason) {
  state_.reason = reason;
  state_.iterate = method_.iterate(*this);
  ask(Request::product, state_.iterate, kTrueResidual, Task::true_residual);
}

void Solver::judge() {
  const Integer residual = preconditioned_slot();
  const QuarnFloat& left = state_[Place::stplhs] = norm(state_.iterm == 1 ? Integer(kTrueResidual) : residual);
  const QuarnFloat& right = state_[Place::stprhs] = right_side(norm(state_.iterate));
  const bool finite = isfinite(left) && isfinite(right);
  if (finite && left <= right) {
    return finish(Ending::none);
  }
  if (!finite || (state_.reason & kUnsuitable) != 0) {
    return finish(Ending::breakdown);
  }
  state_[Place::ratio] = left / norm(residual);

  const QuarnFloat size = euclidean(residual);
  const bool broken = (state_.reason & kBroken) != 0;
  const bool parted = (state_.reason & kCandidate) != 0 && 2 * method_.residual(*this) * unit() < size;
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

void Solver::restart() {
  if (state_.iterate != kIterate) {
    copy(state_.iterate, kIterate);
  }
  copy(preconditioned_slot(), kResidual);
  const QuarnFloat& size = state_[Place::restart_residual];
  state_[Place::unit] = 1;
  if (size > 0 && !(size > QuarnFloat(1, -kScaledDecades) && size < QuarnFloat(1, kScaledDecades))) {
    const Integer decade = decade_of(size);
    state_[Place::unit] = QuarnFloat(1, decade);
    scale(n(), QuarnFloat(1, -decade), vector(kResidual));
  }
  state_.step = 0;
  state_.inner = 0;
}

bool Solver::advance_iterate(const QuarnFloat& alpha, Integer source) const {
  constexpr int kOrdinary = 400'000'000;
  const QuarnFloat bound(1, kOrdinary);
  const QuarnFloat factor = alpha * unit();
  const SolverVector v = vector(source);
  bool ordinary = fabs(factor) < bound;
  for (Integer i = 1; i <= n() && ordinary; ++i) {
    ordinary = v(i) < bound && -bound < v(i);
  }
  if (!ordinary && !isfinite(fabs(factor) * plain_norm(kInfinityNorm, source) + plain_norm(kInfinityNorm, kIterate))) {
    return false;
  }
  add(factor, source, kIterate);
  return true;
}

void Solver::choose_shadow(Integer slot) const {
  if (state_.breakdowns == 0) {
    return copy(kResidual, slot);
  }
  Integer seed[4] = {(2 * state_.breakdowns + 1) % 32768, 7535, 26792, 30140};
  const SolverVector shadow = vector(slot);
  for (Integer i = 1; i <= n(); ++i) {
    shadow(i) = QuarnFloat(Integer(next_nine_digits(0, seed) - 500'000'000), -9);
  }
}

void Solver::hand_out_iterate() {
  tesk::copy(n(), vector(state_.iterate), u_);
  tesk::copy(n(), vector(kTrueResidual), v_);
}

void Solver::finish(Ending ending) {
  const bool parted_before = state_.replacements > 0;
  ending_ = ending == Ending::tidy && parted_before ? Ending::tidy_inaccurate : ending;
  hand_out_iterate();
  state_.phase = Integer(Phase::completed);
  state_.request = Integer(Request::completion);
  asked_ = true;
}

// Norms ------------------------------------------------------------------------------------------------------------

bool Solver::weights_are_valid() const {
  if (!selects(&SolverIntegers::weighted)) {
    return true;
  }
  return std::all_of(wgt_, wgt_ + n(), [](const QuarnFloat& weight) { return isfinite(weight) && weight > 0; });
}

Integer Solver::preconditioned_slot() const {
  return selects(&SolverIntegers::preconditioned) ? vector_count(method_, state_.m, true) - 1 : Integer(kTrueResidual);
}

QuarnFloat Solver::weighted(Integer slot, Integer i) const { return wgt_[i - 1] * vector(slot)(i); }

QuarnFloat Solver::norm(Integer slot) const {
  return selects(&SolverIntegers::weighted) ? norm_of(state_.norm, n(), [&](Integer i) { return weighted(slot, i); })
                                            : plain_norm(state_.norm, slot);
}

QuarnFloat Solver::plain_norm(Integer norm, Integer slot) const {
  const SolverVector v = vector(slot);
  return norm_of(norm, n(), [&](Integer i) -> const QuarnFloat& { return v(i); });
}

// ||v||_inf sqrt(n) >= ||v||_2 >= ||v||_1 / sqrt(n), ||v||_1 >= ||v||_2 >= ||v||_inf
QuarnFloat Solver::least_norm(const QuarnFloat& euclidean) const {
  const QuarnFloat least = state_.norm == kInfinityNorm ? euclidean / sqrt(QuarnFloat(n())) : euclidean;
  return selects(&SolverIntegers::weighted) ? least * *std::min_element(wgt_, wgt_ + n()) : least;
}

QuarnFloat Solver::largest_norm(const QuarnFloat& euclidean) const {
  const QuarnFloat largest = state_.norm == kOneNorm ? euclidean * sqrt(QuarnFloat(n())) : euclidean;
  return selects(&SolverIntegers::weighted) ? largest * *std::max_element(wgt_, wgt_ + n()) : largest;
}

bool Solver::vanishes(const QuarnFloat& a, const QuarnFloat& size) const { return !(fabs(a) > epsilon() * size); }

// Methods that keep iterate and residual -----------------------------------------------------------------------------

Bounds kept_bounds(const Solver& solver) { return {solver.norm(kResidual), solver.norm(kIterate)}; }
QuarnFloat kept_residual(const Solver& solver) { return solver.euclidean(kResidual); }
Integer kept_iterate(Solver& /*solver*/) { return kIterate; }

}  // namespace tesk
