// Solution of a sparse system from beginning to end, with factors as the preconditioner.
#pragma once

#include <functional>

#include "src/sparse/solver.h"

namespace tesk {

template <class T>
struct DriverProblem {
  const SolverMethod* method;
  Integer m;
  Integer n;
  const T* b;
  QuarnFloat tol;
  Integer maxitn;
  /// target := A source, or A^H source.
  std::function<void(bool adjoint, const T* source, T* target)> multiply;
  /// target := M^-1 source
  std::function<void(const T* source, T* target)> precondition;
};

struct DriverOutcome {
  Ending ending;
  QuarnFloat residual;  // ||b - A x||, largest modulus
  Integer iterations;
};

/// x is the first iterate, and becomes the last. The criterion is that of the residual, in the infinity norm.
template <class T>
DriverOutcome solve_to_end(const DriverProblem<T>& problem, T* x);

}  // namespace tesk
