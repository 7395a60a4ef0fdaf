// What the iterative methods have in common: requests, norms, and the judgement of an iterate by its true residual.
//
// Left preconditioning is no business of a method: it works on the system M^-1 A x = M^-1 b by apply(), which asks the
// caller for a product and then for a solution with M. A flexible method asks for both itself, and works on A x = b.
//
// An iterate is accepted only when its residual, computed afresh, satisfies the criterion. The recurrence says when
// that is worth a product. Where the two part company, the true residual replaces that of the recurrence and the method
// starts anew from the iterate; two replacements with less than a factor of two between them mean that the precision is
// used up. A method that has broken down starts anew with another shadow vector, a few times.
//
// Sums over all elements of a vector, inner products and norms, are formed here when they are needed. Where the vectors
// are parts of longer ones the caller forms them: a method wants() those of its next step, which makes one request of
// them, and goes on at a step of its own once they are there. The same lines then find them instead of forming them.
//
// Range. Squares of numbers beyond 10^+-500000000 leave the range of QuarnFloat. Norms scale such numbers; and where
// the residual is beyond 10^+-100000000 at a new start, the method works on it divided by a power of ten, so that its
// inner products are safe. Both are exact. Iterate, right-hand side and true residual stay as they are.
#pragma once

#include <algorithm>

#include "src/frame/constants.h"
#include "src/kernels/euclidean_norm.h"
#include "src/kernels/level1.h"
#include "src/sparse/solver_methods.h"

namespace tesk {

template <class T>
using SolverVector = OneBasedVector<T>;

/// A real number times any.
inline QuarnFloat times(const QuarnFloat& a, const QuarnFloat& x) { return a * x; }
inline Complex times(const QuarnFloat& a, const Complex& x) { return {a * x.re, a * x.im}; }

/// Are all parts of x below the bound in size? NaN is not.
inline bool is_below(const QuarnFloat& x, const QuarnFloat& bound) { return x < bound && -bound < x; }
inline bool is_below(const Complex& x, const QuarnFloat& bound) {
  return is_below(x.re, bound) && is_below(x.im, bound);
}

/// What the caller forms where vectors are parts of longer ones.
constexpr SumKind kind_of(Integer norm) {
  return norm == kTwoNorm ? SumKind::two_norm : norm == kOneNorm ? SumKind::one_norm : SumKind::largest;
}

/// Numbers of F11BEF's failures, in the order of its messages.
enum class Ending : Integer {
  none = 0,
  illegal_parameter,
  not_set_up,
  already_completed,
  immediate,
  tidy,
  tidy_inaccurate,
  breakdown,
  not_converged,
  inaccurate
};

/// Its arguments that can be wrong.
inline constexpr Integer kParameterIrevcm = 1;
inline constexpr Integer kParameterWgt = 4;
inline constexpr Integer kParameterLwork = 6;

/// The norm of element(1) ... element(n).
template <class Element>
QuarnFloat norm_of(Integer norm, Integer n, const Element& element) {
  if (norm == kTwoNorm) {
    return euclidean_norm(n, element);
  }
  QuarnFloat sum;
  for (Integer i = 1; i <= n; ++i) {
    if (norm == kOneNorm) {
      sum += size_of(element(i));
    } else if (!(size_of(element(i)) <= sum)) {  // a NaN must not get lost
      sum = isnan(sum) ? sum : size_of(element(i));
    }
  }
  return sum;
}

template <class T>
class Solver {
 public:
  /// methods: those of the entry that is called.
  Solver(Methods methods, SolverState<T>& state, T* u, T* v, const QuarnFloat* wgt)
      : methods_(methods),
        state_(state),
        method_(state.rules()),
        steps_(method_.template steps<T>()),
        u_(u, 1),
        v_(v, 1),
        wgt_(wgt) {}

  /// Takes what the caller brings and goes on to the next request. The outcome is 0, a failure's number, or the
  /// negative number of an argument that is wrong.
  Integer proceed(Request brought);

  // For the methods.
  /// Are the digits those of the classic entries, which do not change?
  bool is_classic() const noexcept { return methods_ == Methods::classic; }
  SolverState<T>& state() const noexcept { return state_; }
  Integer n() const noexcept { return state_.n; }
  /// Of the system, of which n() rows are here.
  Integer order() const noexcept { return distributed() ? state_.order : n(); }
  SolverVector<T> vector(Integer slot) const noexcept { return state_.vector(slot); }
  /// What the method has behind the vectors.
  T* constants() const noexcept { return &vector(vector_count(method_, state_.m, state_.preconditioned != 0))(1); }
  /// target := M^-1 A source, then on with the method at that step. source and target differ.
  Outcome apply(Integer source, Integer target, Integer next_step);
  /// The same of target := M^-1 source, for a flexible method.
  Outcome precondition(Integer source, Integer target, Integer next_step);
  bool preconditioned() const noexcept { return state_.preconditioned != 0; }
  /// Does SIGMAX grow with what the products show?
  bool measures_growth() const noexcept { return state_.iterm == 2 && !selects(&SolverIntegers::sigmax_known); }
  /// With a preconditioner, the vector beside those of the method that apply() leaves A source in; the next ones are at
  /// the method's disposal.
  Integer product_slot() const noexcept { return kMethodSlot + method_.vectors(state_.m); }
  /// Is |a| of no significance beside `size`, to working precision? NaN is.
  template <class Number>
  bool vanishes(const Number& a, const QuarnFloat& size) const {
    return !(size_of(a) > epsilon() * size);
  }
  /// a^H b, a^T b of real vectors.
  T dot(Integer a, Integer b) const {
    return distributed() ? answer(SumKind::inner_product, a, b)
                         : tesk::dot(n(), vector(a), vector(b), Op::conjugate_transpose);
  }
  QuarnFloat euclidean(Integer slot) const {
    return distributed() ? plain_norm(kTwoNorm, slot) : euclidean_norm(n(), vector(slot));
  }
  /// Are the vectors parts of longer ones, so that the caller forms what is summed over their elements?
  bool distributed() const noexcept { return state_.is_distributed(); }
  void want_dot(Integer a, Integer b) const { want(Integer(SumKind::inner_product), a, b); }
  void want_euclidean(Integer slot) const { want(Integer(SumKind::two_norm), slot, slot); }
  /// An inner product, and the norms that say whether it vanishes.
  void want_beside(Integer a, Integer b) const {
    want_dot(a, b);
    want_euclidean(a);
    want_euclidean(b);
  }
  void want_norm(Integer slot) const { want(sum_code(), slot, slot); }
  /// True when the caller has to form the sums that `wants` wants first: the method waits, and goes on at next_step.
  template <class Wants>
  bool must_ask(Integer next_step, const Wants& wants) {
    if (!distributed()) {
      return false;
    }
    if (state_.fresh != 0) {
      state_.fresh = 0;
      return false;
    }
    forget_sums();
    return must_ask_more(next_step, wants);
  }
  /// The same, where the answers before are to stay.
  template <class Wants>
  bool must_ask_more(Integer next_step, const Wants& wants) {
    if (!distributed()) {
      return false;
    }
    state_.known += state_.sums;
    state_.sums = 0;
    wants();
    state_.step = next_step;
    ask_for_sums(Task::method);
    return true;
  }
  /// vector(target) += alpha vector(source)
  void add(const T& alpha, Integer source, Integer target) const {
    add_multiple(n(), alpha, vector(source), vector(target));
  }
  /// The iterate += alpha vector(source), in the units of the iterate; false, and nothing done, when a number would not
  /// be finite. Of parts of vectors nobody here can say so; the next norm does.
  bool advance_iterate(const T& alpha, Integer source) const;
  /// What the vectors of the method are to be multiplied by.
  const QuarnFloat& unit() const noexcept { return state_[Place::unit]; }
  /// A shadow vector for a new start: the residual, after a breakdown seeded random numbers.
  void choose_shadow(Integer slot) const;
  /// Seeded random numbers, others after each breakdown and for each second seed.
  void fill_randomly(Integer slot, Integer second_seed) const;
  void copy(Integer source, Integer target) const { tesk::copy(n(), vector(source), vector(target)); }
  void clear(Integer slot) const { fill(n(), T(), vector(slot)); }
  /// The norm of the stopping criterion, weights included.
  QuarnFloat norm(Integer slot) const;
  /// Bounds for the norm of a vector that is known by its Euclidean norm alone.
  QuarnFloat least_norm(const QuarnFloat& euclidean) const;
  QuarnFloat largest_norm(const QuarnFloat& euclidean) const;

 private:
  /// What is to be done with the answer to a request.
  enum class Task : Integer {
    method,         // the method goes on
    applied,        // a product M^-1 A v is complete
    precondition,   // of a product M^-1 A v the second half is missing
    right_side,     // M^-1 b for the criterion
    norm_image,     // A x of the norm estimate
    norm_dual,      // A^T y of the norm estimate
    true_residual,  // A x of the iterate being judged
    judgement,      // M^-1 (b - A x)
    // and to sums
    watching,          // the bounds of an iterate
    beginning,         // the norm of b
    right_side_size,   // that of M^-1 b
    judging,           // of an iterate
    estimate_start,    // of the first vector of the norm estimate
    image_size,        // of A x of the norm estimate
    image_dual_count,  // how many elements of A x are the largest ones
    dual_size,         // of A^T y
    dual_dual_count    // how many elements of A^T y are the largest ones
  };
  /// Why an iterate is judged: a sum of these.
  enum Reason : Integer { kLook = 0, kCandidate = 1, kRestart = 2, kBroken = 4, kUnsuitable = 8 };

  bool selects(Integer SolverIntegers::*option) const noexcept { return state_.*option != 0; }
  /// Is the system M^-1 A x = M^-1 b?
  bool preconditioned_left() const noexcept { return preconditioned() && !method_.flexible; }
  bool weights_are_valid() const;
  Integer preconditioned_slot() const;
  T weighted(Integer slot, Integer i) const;
  QuarnFloat right_side(const QuarnFloat& iterate_norm) const;
  bool monitoring_is_due() const;
  bool residual_is_in_range() const;

  void forget_sums() noexcept { state_.known = state_.sums = 0; }
  T* table() const noexcept { return constants() + method_.constants(state_.m); }
  Integer sum_code() const noexcept;
  void want(Integer code, Integer a, Integer b) const;
  T answer(Integer code, Integer a, Integer b) const;
  T answer(SumKind kind, Integer a, Integer b) const { return answer(Integer(kind), a, b); }
  void ask_for_sums(Task task);
  void take_growth();

  void begin();
  void begin_with_right_side();
  void ask(Request request, Integer source, Integer target, Task task);
  void hand_out_iterate();
  void advance();
  void watch();
  void decide();
  void evaluate(Integer reason);
  void judge();
  void pronounce();
  void restart();
  void finish(Ending ending);

  void begin_norm_estimate();
  void start_norm_estimate();
  void ask_for_image();
  void take_dual();
  void measure_dual();
  void finish_next_vector();
  void take_image();
  void measure_image();
  void ask_for_dual();
  bool wants_norm(Task task, Integer norm, Integer slot);
  QuarnFloat plain_norm(Integer norm, Integer slot) const;
  bool replace_by_dual(Integer norm, Integer slot, const QuarnFloat& size, Task count);
  void finish_dual(Integer norm, Integer slot) const;
  void multiply_by_weights(Integer slot) const;
  void divide_by_weights(Integer slot) const;

  Methods methods_;
  SolverState<T>& state_;
  const SolverMethod& method_;
  const SolverSteps<T>& steps_;
  SolverVector<T> u_;
  SolverVector<T> v_;
  const QuarnFloat* wgt_;
  Ending ending_ = Ending::none;
  bool asked_ = false;
};

/// Bounds and iterates of methods that keep both vectors at hand.
template <class T>
Bounds kept_bounds(const Solver<T>& solver) {
  return {solver.norm(kResidual), solver.norm(kIterate)};
}
template <class T>
void want_kept_bounds(Solver<T>& solver) {
  solver.want_norm(kResidual);
  solver.want_norm(kIterate);
}
template <class T>
QuarnFloat kept_residual(const Solver<T>& solver) {
  return solver.euclidean(kResidual);
}
template <class T>
Integer kept_iterate(Solver<T>& /*solver*/) {
  return kIterate;
}

}  // namespace tesk
