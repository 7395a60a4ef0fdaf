// Linear systems with a sparse matrix, and the two roads to their solution.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "cli/io/matrix_market.h"
#include "quarn/quarnfloat.h"

namespace cli {

/// A x = b with the entries of A in canonical form: rows ascending, columns ascending within a row, no place twice.
struct LinearSystem {
  std::string source;
  Integer n = 0;
  bool complex = false;
  std::vector<Integer> row;  // from 1
  std::vector<Integer> column;
  std::vector<Complex> values;
  std::vector<Integer> starts;  // of the rows, from 1; one more behind them
  std::vector<Complex> b;

  Integer count() const { return Integer(values.size()); }
};

/// Takes the matrix, which must be square, and the right side; no right side means A (1, ..., 1).
LinearSystem linear_system(const SparseMatrix& matrix, const std::vector<Complex>& b, bool complex);

/// A x by the library, at the working precision of the call.
std::vector<Complex> product(const LinearSystem& system, const std::vector<Complex>& x);

/// ||b - A x|| / ||b|| with twice the working digits, in the Euclidean norm; the plain residual where b is zero.
QuarnFloat relative_residual(const LinearSystem& system, const std::vector<Complex>& x);

/// What was known of the residual on the way.
struct ResidualStep {
  Integer iteration;
  QuarnFloat residual;
  QuarnFloat bound;  // to be reached; zero where there is none
};

struct Solution {
  std::string method;
  std::string routine;
  std::vector<Complex> x;
  std::vector<ResidualStep> history;
  Integer iterations = 0;
  Integer products = 0;
  std::string failure;  // what the library says; empty when the solution is one
};

struct IterativeOptions {
  std::string tolerance;  // empty: the library's own
  Integer maxit = 1000;
  std::string precon = "none";
  std::string omega = "1";
  Integer restart = 30;
  Integer order = 2;
  Integer every = 1;
};

/// Solves by F11BEF, telling the watcher of every iteration that is looked at. Throws Failure for what cannot be solved
/// so: complex systems, preconditioners that need a diagonal where there is none.
Solution solve_iteratively(const LinearSystem& system, const std::string& method, const IterativeOptions& options,
                           const std::function<void(const ResidualStep&)>& watcher);

/// Solves by the LU factorisation of the full matrix, refining the solution with residuals of twice the digits.
Solution solve_directly(const LinearSystem& system);

}  // namespace cli
