// The iterative methods, each a machine that stops wherever it needs a product and goes on with the answer.
#pragma once

#include <type_traits>

#include "src/sparse/solver_state.h"

namespace tesk {

template <class T>
class Solver;

/// Whose methods: the companions know more than the classic entries.
enum class Methods { classic, all };

/// Where a method has got to.
enum class Outcome {
  waiting,    // for the answer to a request
  iterated,   // one more iteration is done
  broken,     // a divisor has vanished to working precision
  unsuitable  // matrix or preconditioner is not what the method is for
};

/// What a method knows of its iterate without forming it.
struct Bounds {
  QuarnFloat residual;  // the norm of the preconditioned residual is no less, as far as the recurrence knows
  QuarnFloat iterate;   // the norm of the iterate is no more
};

/// What a method does, with real or complex vectors.
template <class T>
struct SolverSteps {
  Outcome (*resume)(Solver<T>& solver);
  Bounds (*bounds)(const Solver<T>& solver);
  /// The Euclidean norm of the preconditioned residual, as far as the recurrence knows.
  QuarnFloat (*residual)(const Solver<T>& solver);
  /// Forms the iterate and gives its vector.
  Integer (*iterate)(Solver<T>& solver);
  /// Wants the sums that bounds(), and then the next step, take.
  void (*want)(Solver<T>& solver);
};

struct SolverMethod {
  Integer code;
  const char* name;   // as many leading characters of METHOD count
  Integer largest_m;  // M is at most the smaller of N and this; 1 where M has no meaning
  bool takes_m;
  bool has_shadow;  // a new start after a breakdown may take another shadow vector
  Integer last_step;
  Integer (*vectors)(Integer m);    // of N elements, beside those of the solver
  Integer (*constants)(Integer m);  // behind the vectors
  Integer
      beside_preconditioner;  // vectors more where there is one, the first of which keeps A v when M^-1 A v is formed
  SolverSteps<QuarnFloat> real;
  SolverSteps<Complex> complex;
  /// It asks for solutions with a preconditioner itself, from the right, and keeps one of each of the m iterations.
  bool flexible = false;

  template <class T>
  const SolverSteps<T>& steps() const {
    if constexpr (std::is_same_v<T, Complex>) {
      return complex;
    } else {
      return real;
    }
  }
};

extern const SolverMethod kRgmres;
extern const SolverMethod kCgs;
extern const SolverMethod kBicgstab;
extern const SolverMethod kTfqmr;
extern const SolverMethod kCg;
extern const SolverMethod kMinres;
extern const SolverMethod kSymmlq;
extern const SolverMethod kFgmres;
extern const SolverMethod kIdr;

/// The method of a code of the classic entries: 1, 2, 3, or any other for the last one.
inline const SolverMethod& solver_method(Integer code) {
  const SolverMethod* const methods[] = {&kRgmres, &kCgs, &kBicgstab};
  return code >= 1 && code <= 3 ? *methods[code - 1] : kTfqmr;
}

/// The method of a code that only the companions know, or null.
inline const SolverMethod* companion_method(Integer code) {
  const SolverMethod* const methods[] = {&kCg, &kMinres, &kSymmlq, &kFgmres, &kIdr};
  return code >= 5 && code <= 9 ? methods[code - 5] : nullptr;
}

inline bool is_for_symmetric_systems(const SolverMethod& method) { return method.code >= 5 && method.code <= 7; }

/// The largest M of all methods.
inline constexpr Integer kLargestOrder = 100;

/// Vectors that belong to the solver, whatever the method.
enum Slot : Integer {
  kIterate,      // x
  kRightSide,    // b
  kResidual,     // of the preconditioned system, by the method's recurrence
  kTrueResidual  // b - A x, computed afresh; answers of other kinds pass through it
};
inline constexpr Integer kMethodSlot = 4;

inline Integer vector_count(const SolverMethod& method, Integer m, bool preconditioned) {
  const Integer beside_preconditioner = method.flexible ? m : method.beside_preconditioner + 1;
  return kMethodSlot + method.vectors(m) + (preconditioned ? beside_preconditioner : 0);
}

/// LWREQ, before it is cut to the largest Integer.
inline std::int64_t work_length(const SolverMethod& method, Integer n, Integer m, bool preconditioned,
                                bool distributed = false) {
  return kHeaderLength + std::int64_t(n) * vector_count(method, m, preconditioned) + method.constants(m) +
         (distributed ? kMostSums * kSumElements : 0);
}
template <class T>
std::int64_t work_length(const SolverState<T>& state) {
  return work_length(state.rules(), state.n, state.m, state.preconditioned != 0, state.is_distributed());
}

}  // namespace tesk
