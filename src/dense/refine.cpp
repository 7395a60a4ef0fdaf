// Iterative refinement with exact residuals: C. B. Moler, Iterative refinement in floating point, J. ACM 14 (1967); its
// error bound: J. Demmel, Y. Hida, W. Kahan, X. S. Li, S. Mukherjee, E. J. Riedy, Error bounds from extra-precise
// iterative refinement, ACM Trans. Math. Softw. 32 (2006). The arguments are those of xGERFS.
#include <algorithm>
#include <utility>
#include <vector>

#include "quarn/quarnthread.h"
#include "src/dense/lu_solve.h"
#include "tesk2mp/refinement.h"

namespace tesk {
namespace {

constexpr Integer kMostCorrections = 20;

/// Raises a maximum to a value; a NaN stays.
void raise(QuarnFloat& largest, QuarnFloat value) {
  if (!isnan(largest) && !(value <= largest)) {
    largest = std::move(value);
  }
}

template <class T>
QuarnFloat largest_magnitude(Integer n, OneBasedVector<T> x) {
  QuarnFloat largest;
  for (Integer i = 1; i <= n; ++i) {
    raise(largest, magnitude(x(i)));
  }
  return largest;
}

/// op(A) X = B, one column after the other, with factors of A.
template <class T>
class Refinement {
 public:
  Refinement(Op op, Integer n, OneBasedMatrix<T> a, OneBasedMatrix<T> factors, const Integer* ipiv)
      : op_(op), n_(n), a_(a), factors_(factors), ipiv_(ipiv), work_(std::size_t(n)) {}

  /// Improves x; false when the corrections do not become smaller.
  bool run(OneBasedVector<T> b, OneBasedVector<T> x) {
    const QuarnFloat unit(1, 1 - QuarnDigits());
    QuarnFloat former = largest_magnitude(n_, x);
    error_ = 1;
    for (corrections_ = 0;; ++corrections_) {
      QuarnCheckInterrupt();
      form_residual(b, x);
      solve_factored(op_, n_, 1, factors_, ipiv_, OneBasedMatrix<T>(work_.data(), n_));
      const QuarnFloat size = largest_magnitude(n_, work());
      const QuarnFloat scale = largest_magnitude(n_, x);
      const bool small = size <= unit * scale;
      if (!small && (!(2 * size < former) || corrections_ == kMostCorrections)) {
        return false;
      }
      add_correction(x);
      if (small) {
        // The corrections shrink by size / former each, and what follows the last one is a geometric series.
        const QuarnFloat rate = former == 0 ? QuarnFloat() : size / former;
        error_ = scale == 0 ? QuarnFloat() : unit + (2 * rate < 1 ? 2 * rate : QuarnFloat(1)) * (size / scale);
        return true;
      }
      former = size;
    }
  }

  Integer corrections() const { return corrections_; }
  /// Of x, beside its largest element; 1 when it has not converged.
  const QuarnFloat& forward_error() const { return error_; }

  /// The largest |b - op(A) x| / (|op(A)| |x| + |b|) of all elements.
  QuarnFloat backward_error(OneBasedVector<T> b, OneBasedVector<T> x) {
    form_residual(b, x);
    std::vector<QuarnFloat> sizes(static_cast<std::size_t>(n_));
    for (Integer i = 1; i <= n_; ++i) {
      sizes[std::size_t(i - 1)] = magnitude(b(i));
    }
    for (Integer j = 1; j <= n_; ++j) {
      const QuarnFloat size = magnitude(x(j));
      for (Integer i = 1; i <= n_; ++i) {
        add_product(sizes[std::size_t(i - 1)], magnitude(op_ == Op::none ? a_(i, j) : a_(j, i)), size);
      }
    }
    QuarnFloat largest;
    for (Integer i = 1; i <= n_; ++i) {
      const QuarnFloat residual = magnitude(work()(i));
      if (residual != 0) {
        raise(largest, residual / sizes[std::size_t(i - 1)]);
      }
    }
    return largest;
  }

 private:
  OneBasedVector<T> work() { return OneBasedMatrix<T>(work_.data(), n_).column(1); }

  /// work := b - op(A) x, each element rounded once
  void form_residual(OneBasedVector<T> b, OneBasedVector<T> x) {
    for (Integer i = 1; i <= n_; ++i) {
      work()(i) = b(i);
    }
    exact::multiply_matrix_vector(op_, n_, n_, T(-1.0), a_, x, T(1.0), work());
  }

  /// x := x + work. Sums are made beside x, which is whole when storage runs out.
  void add_correction(OneBasedVector<T> x) {
    for (Integer i = 1; i <= n_; ++i) {
      work()(i) = work()(i) + x(i);
    }
    for (Integer i = 1; i <= n_; ++i) {
      x(i) = std::move(work()(i));
    }
  }

  Op op_;
  Integer n_;
  OneBasedMatrix<T> a_;
  OneBasedMatrix<T> factors_;
  const Integer* ipiv_;
  std::vector<T> work_;
  Integer corrections_ = 0;
  QuarnFloat error_;
};

/// Checks, then refines each column of X; returns INFO.
template <class T>
Integer refine(const char* trans, Integer n, Integer nrhs, T* a, Integer lda, T* af, Integer ldaf, const Integer* ipiv,
               T* b, Integer ldb, T* x, Integer ldx, QuarnFloat* ferr, QuarnFloat* berr, T* work) {
  const Integer least = std::max<Integer>(1, n);
  const Integer wrong = first_wrong({{!is_op(trans), 1},
                                     {n < 0, 2},
                                     {nrhs < 0, 3},
                                     {lda < least, 5},
                                     {ldaf < least, 7},
                                     {ldb < least, 10},
                                     {ldx < least, 12}});
  if (wrong != 0) {
    return -wrong;
  }
  std::fill_n(ferr, nrhs, QuarnFloat());
  std::fill_n(berr, nrhs, QuarnFloat());
  if (n == 0 || nrhs == 0) {
    return 0;
  }
  Refinement<T> refinement(op_of(trans), n, {a, lda}, {af, ldaf}, ipiv);
  const OneBasedMatrix<T> right(b, ldb);
  const OneBasedMatrix<T> solutions(x, ldx);
  Integer failed = 0;
  Integer most = 0;
  for (Integer j = 1; j <= nrhs; ++j) {
    if (!refinement.run(right.column(j), solutions.column(j)) && failed == 0) {
      failed = j;
    }
    most = std::max(most, refinement.corrections());
    ferr[j - 1] = refinement.forward_error();
    berr[j - 1] = refinement.backward_error(right.column(j), solutions.column(j));
  }
  work[0] = T(double(most));
  return failed;
}

}  // namespace
}  // namespace tesk

extern "C" {

void QuarnMPX_dgerfs_(const char* trans, Integer n, Integer nrhs, QuarnFloat* a, Integer lda, QuarnFloat* af,
                      Integer ldaf, Integer* ipiv, QuarnFloat* b, Integer ldb, QuarnFloat* x, Integer ldx,
                      QuarnFloat* ferr, QuarnFloat* berr, QuarnFloat* work, Integer* /*iwork*/, Integer* info,
                      int /*trans_length*/) {
  *info = tesk::refine(trans, n, nrhs, a, lda, af, ldaf, ipiv, b, ldb, x, ldx, ferr, berr, work);
}

void QuarnMPX_zgerfs_(const char* trans, Integer n, Integer nrhs, Complex* a, Integer lda, Complex* af, Integer ldaf,
                      Integer* ipiv, Complex* b, Integer ldb, Complex* x, Integer ldx, QuarnFloat* ferr,
                      QuarnFloat* berr, Complex* work, QuarnFloat* /*rwork*/, Integer* info, int /*trans_length*/) {
  *info = tesk::refine(trans, n, nrhs, a, lda, af, ldaf, ipiv, b, ldb, x, ldx, ferr, berr, work);
}
}
