// Linear systems with a sparse matrix, and the two ways to their solution.
#pragma once

#include <functional>
#include <span>
#include <string>
#include <variant>
#include <vector>

#include "cli/commands/failure.h"
#include "cli/io/matrix_market.h"
#include "quarn/quarnfloat.h"
#include "tesk2mp/sparse.hpp"

namespace cli {

struct ProofOptions;

/// A and b of one kind of numbers. The entries of A are in canonical form: rows ascending, columns ascending within a
/// row, no place twice.
template <class T>
struct Equations {
  tesk2mp::SparseMatrix<T> a;
  std::vector<T> b;
};

/// A x = b
struct LinearSystem {
  std::string source;
  Integer n = 0;
  std::variant<Equations<QuarnFloat>, Equations<Complex>> equations;

  bool complex() const { return equations.index() == 1; }
  Integer count() const {
    return std::visit([](const auto& each) { return Integer(each.a.entries()); }, equations);
  }
};

/// The entries of a square matrix, of both triangles, in canonical form: duplicates are summed, zeros kept.
std::variant<tesk2mp::SparseMatrix<QuarnFloat>, tesk2mp::SparseMatrix<Complex>> assembled(const SparseMatrix& matrix);

/// Takes the matrix, which must be square, and the right side; no right side means A (1, ..., 1). The system is complex
/// when either is.
LinearSystem linear_system(const SparseMatrix& matrix, const DenseMatrix* b);

/// ||b - A x|| / ||b|| with twice the working digits, in the Euclidean norm; the plain residual where b is zero.
template <class T>
QuarnFloat relative_residual(const Equations<T>& equations, const std::vector<T>& x);

/// What was known of the residual on the way.
struct ResidualStep {
  Integer iteration;
  QuarnFloat residual;
  QuarnFloat bound;  // to be reached; zero where there is none
};

struct Solution {
  std::string method;
  std::string precon = "none";
  std::string routine;
  DenseMatrix x;
  QuarnFloat residual;  // as relative_residual() has it
  std::vector<ResidualStep> history;
  Integer iterations = 0;
  Integer products = 0;
  std::vector<QuarnFloat> errors;  // proven bounds, where there are
  std::vector<std::string> notes;  // about the zeros among those
  int worked_with = 0;             // digits of the proof
  Integer failure_code = 0;        // of the routine
  std::string failure;             // what the library says; empty when the solution is one
};

struct IterativeOptions {
  std::string tolerance;  // empty: the library's own
  Integer maxit = 1000;
  std::string precon = "none";
  std::string omega = "1";
  Integer fill = 0;  // of incomplete factors, by level
  std::string drop;  // by drop tolerance where it is not empty
  bool modified = false;
  Integer restart = 30;
  Integer order = 0;  // 0: that of the method
  Integer every = 1;

  bool operator==(const IterativeOptions&) const = default;
};

/// The method for a matrix: cg when it is symmetric or Hermitian with a positive diagonal, minres when it is symmetric
/// or Hermitian, else bicgstab.
std::string automatic_method(const LinearSystem& system);

/// All methods for the matrix, those for symmetric and Hermitian ones last. fgmres only beside a preconditioner:
/// without one it is rgmres.
std::vector<std::string> methods_for(const LinearSystem& system, const std::string& precon);

/// M of rgmres, fgmres, bicgstab and idrs; 1 of the others.
Integer order_of(const std::string& method, const IterativeOptions& options, Integer n);

/// The preconditioner needs what the matrix has not.
class Unsuitable : public Failure {
 public:
  explicit Unsuitable(const std::string& source, std::string reason)
      : Failure(bad_input(source + ": --precon " + reason)), reason_(std::move(reason)) {}
  /// In words that begin with the preconditioner.
  const std::string& reason() const { return reason_; }

 private:
  std::string reason_;
};

/// A system with its preconditioner, made once for all methods that are to solve it.
class PreconditionedSystem {
 public:
  /// Keeps both. Throws Unsuitable for preconditioners that need a diagonal or symmetry where there is none.
  PreconditionedSystem(const LinearSystem& system, IterativeOptions options);

  /// Solves by F11BEF, showing the watcher every iteration that is looked at.
  Solution solve(const std::string& method, const std::function<void(const ResidualStep&)>& watcher) const;

 private:
  template <class T>
  using Preconditioner = std::function<void(std::span<const T>, std::span<T>)>;

  const LinearSystem& system_;
  IterativeOptions options_;
  std::variant<Preconditioner<QuarnFloat>, Preconditioner<Complex>> precondition_;
};

/// Is the matrix too large to be factorised in full?
bool is_for_sparse_factors(const LinearSystem& system);

/// Solves by the LU factorisation of the full matrix, refining the solution with exact residuals, or by complete sparse
/// factors.
Solution solve_directly(const LinearSystem& system);

/// The same with so many digits that those of the moment are true. Throws NumericalFailure where none suffice.
Solution solve_proven(const LinearSystem& system, const ProofOptions& options);

}  // namespace cli
