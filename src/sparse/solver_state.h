// The state of an iterative solution, all of it in the caller's WORK, so that problems in several work arrays do not
// know of each other and a work array may be moved between calls.
//
// WORK(1 ... 100) is the header: integers, real scalars, markers. After it come the vectors, N elements each, then the
// constants of the method. Nothing that is read back is trusted: every integer has a range, and all of them together a
// check sum.
#pragma once

#include <cstdint>

#include "quarn/quarnfloat.h"
#include "src/kernels/views.h"
#include "src/sparse/coordinate.h"

namespace tesk {

struct SolverMethod;

/// Elements of WORK before the first vector: the least LWORK there is.
inline constexpr Integer kHeaderLength = 100;

/// The working digits that every Integer of the state needs.
inline constexpr int kLeastDigits = 10;

/// Sums that the caller may be asked for at a time, and the elements of WORK that each takes: kind, where its vectors
/// begin, value.
inline constexpr Integer kMostSums = 128;
inline constexpr Integer kSumElements = 4;

/// The kinds of sums over the elements of a vector; kWeightedSum more where they are multiplied by their weights
/// before.
enum class SumKind : Integer { inner_product = 1, two_norm, one_norm, largest };
inline constexpr Integer kWeightedSum = 10;

enum class Phase : Integer { set_up, running, completed };

/// What the caller is asked for, or answers: the values of IREVCM.
enum class Request : Integer {
  transposed_product = -1,
  start = 0,
  product = 1,
  preconditioner = 2,
  monitoring = 3,
  completion = 4,
  tidy_end = 5,
  immediate_end = 6,
  sums = 7
};

/// The norms of the criterion, as SolverIntegers::norm has them.
enum NormCode : Integer { kOneNorm, kInfinityNorm, kTwoNorm };

/// The integers of the state.
struct SolverIntegers {
  // the problem
  Integer method = 0, n = 0, m = 0, preconditioned = 0, norm = 0, weighted = 0, iterm = 0, maxitn = 0, monit = 0;
  Integer anorm_known = 0, sigmax_known = 0;
  // where the solution stands
  Integer phase = 0;
  Integer request = 0;  // what the caller has been asked for
  Integer target = 0;   // the vector that takes the answer
  Integer task = 0;     // what is to be done with it
  Integer step = 0;     // where the method goes on
  Integer inner = 0;    // iterations of a cycle or of a sum that have been done
  Integer itn = 0;
  Integer iterate = 0;         // the vector that holds the iterate being judged
  Integer reason = 0;          // why it is judged
  Integer tidy = 0;            // the caller has asked for an end
  Integer replacements = 0;    // of the residual, since the start
  Integer estimate_round = 0;  // of the norm estimate
  Integer breakdowns = 0;      // since the start
  Integer fruitless = 0;       // new starts since the residual was last halved
  // where vectors are parts of longer ones
  Integer order = 0;       // of the system, 0 where all of it is here
  Integer first = 0;       // the row of the system that the first element here belongs to
  Integer sums = 0;        // how many sums the caller has been asked for
  Integer known = 0;       // how many before these still have their values
  Integer sums_place = 0;  // where they stand in WORK, 1-based
  Integer fresh = 0;       // the answers are also those that the next step of the method asks for
  Integer growth = 0;      // a product of which SIGMAX is to take notice: that of this vector, counted from 1
};

/// Where real scalars live in WORK, 1-based.
enum class Place : Integer {
  stplhs = 53,
  stprhs,
  anorm,
  sigmax,
  tol,
  right_hand_side,             // norm of b, or of the preconditioned b
  ratio,                       // of the judged residual's norm to that of the preconditioned one, when last judged
  replaced_residual,           // norm of the residual when it was last replaced
  restart_residual,            // Euclidean norm of the preconditioned residual when the method was last started
  source,                      // norm of the vector that a product has been asked for
  unit,                        // the power of ten that the vectors of the method are to be multiplied by
  method,                      // first of those that belong to the method
  plain_right_hand_side = 98,  // norm of b, for the companions
  least_weight,                // these two where the vectors are parts of longer ones
  largest_weight
};

/// The work array through its layout. What is real stands in the real parts of a complex one.
template <class T>
class SolverState : public SolverIntegers {
 public:
  explicit SolverState(T* work) noexcept : work_(work) {}

  T* work() const noexcept { return work_; }
  /// Known after set-up and load().
  const SolverMethod& rules() const noexcept { return *rules_; }
  void choose(const SolverMethod& rules) noexcept;

  QuarnFloat& operator[](Place place) const noexcept { return real_part(work_[Integer(place) - 1]); }
  T& scalar(Integer i) const noexcept { return work_[Integer(Place::method) - 1 + i]; }
  QuarnFloat& real(Integer i) const noexcept { return real_part(scalar(i)); }
  bool is_distributed() const noexcept { return order != 0; }
  /// A vector of N elements, counted from 0.
  OneBasedVector<T> vector(Integer slot) const noexcept {
    return {work_ + kHeaderLength + std::ptrdiff_t(slot) * n, 1};
  }

  /// Writes the integers and their check sum.
  void save() const;
  /// Reads them; false when they are not what save() has written.
  bool load();

 private:
  T* work_;
  const SolverMethod* rules_ = nullptr;
};

/// What the state routine is asked to do.
enum class StateMode : Integer { set_up = -1, continuation, monitoring };

/// The markers that tell a work array that has been set up: written in mode set_up, compared otherwise. False when they
/// are missing.
template <class T>
bool solver_state(StateMode mode, T* work);

/// What set-up does once the integers of the problem are in the state: tolerance, norms that are known (positive) or to
/// be estimated, markers. The header of WORK is zero before.
template <class T>
void begin_problem(SolverState<T>& state, const QuarnFloat& tol, const QuarnFloat& anorm, const QuarnFloat& sigmax);

/// The whole number nearest to x.
Integer nearest_integer(const QuarnFloat& x);

// Of a work array that holds the markers, which alone have been looked at: phase, code of the method, iterations done.
template <class T>
Phase solver_phase(const T* work);
template <class T>
Integer solver_method_code(const T* work);
template <class T>
Integer solver_iterations(const T* work);

}  // namespace tesk
