// Preconditioners from the entries of a sparse matrix: D. M. Young, Iterative Solution of Large Linear Systems, 1971.
#include <algorithm>
#include <vector>

#include "src/frame/check_points.h"
#include "src/kernels/options.h"
#include "src/kernels/scalar.h"
#include "src/sparse/structure.h"
#include "tesk2mp/sparse.h"

namespace tesk {
namespace {

/// Checks, then the starts of the rows and the places of their diagonal entries; returns INFO.
template <class T>
Integer find_diagonal(Integer n, Integer nnz, const T* a, const Integer* irow, const Integer* icol, Integer* istr,
                      Integer* idiag) {
  const Integer wrong = argument_at_fault(f11_check_cs(n, nnz, irow, icol, Storage::general).fault);
  if (wrong != 0) {
    return -wrong;
  }
  std::fill_n(idiag, n, Integer(0));
  Integer row = 0;
  for (Integer k = 1; k <= nnz; ++k) {
    for (; row < irow[k - 1]; ++row) {
      istr[row] = k;
    }
    if (irow[k - 1] == icol[k - 1] && !is_zero(a[k - 1])) {
      idiag[row - 1] = k;
    }
  }
  std::fill_n(istr + row, n + 1 - row, Integer(nnz + 1));
  const Integer* const missing = std::find(idiag, idiag + n, Integer(0));
  return missing == idiag + n ? 0 : Integer(missing - idiag) + 1;
}

template <class T>
T with(Op op, const T& x) {
  return op == Op::conjugate_transpose ? conjugate(x) : x;
}

template <class T>
Integer divide_by_diagonal(const char* trans, Integer n, const T* a, const Integer* idiag, T* x) {
  const Integer wrong = first_wrong({{!is_op(trans), 1}, {n < 1, 2}});
  for (Integer i = 0; wrong == 0 && i < n; ++i) {
    x[i] = quotient(x[i], with(op_of(trans), a[idiag[i] - 1]));
  }
  return -wrong;
}

/// x := op(M)^-1 x. A sweep solves with a triangle D / omega + L or D / omega + U: by its rows, or for the transposed
/// one by what each new element adds to later equations.
template <class T>
class Ssor {
 public:
  Ssor(Op op, Integer n, const T* a, const Integer* icol, const Integer* istr, const Integer* idiag,
       const QuarnFloat& omega, T* x)
      : op_(op), n_(n), a_(a), icol_(icol), istr_(istr), idiag_(idiag), omega_(omega), x_(x) {}

  void solve() {
    const bool plain = op_ == Op::none;
    for (Integer i = 0; i < n_; ++i) {
      pass(i, plain ? Triangle::lower : Triangle::upper);
    }
    const QuarnFloat scale = (2 - omega_) / omega_;
    for (Integer i = 0; i < n_; ++i) {
      T factor = with(op_, diagonal(i));
      multiply_by(factor, scale);
      multiply_by(x_[i], factor);
    }
    for (Integer i = n_ - 1; i >= 0; --i) {
      pass(i, plain ? Triangle::upper : Triangle::lower);
    }
  }

 private:
  const T& diagonal(Integer i) const { return a_[idiag_[i] - 1]; }

  void pass(Integer i, Triangle triangle) {
    const Integer first = triangle == Triangle::lower ? istr_[i] : idiag_[i] + 1;
    const Integer end = triangle == Triangle::lower ? idiag_[i] : istr_[i + 1];
    check_points_.pass(end - first + 1);
    if (op_ == Op::none) {
      for (Integer k = first; k < end; ++k) {
        subtract_product(x_[i], a_[k - 1], x_[icol_[k - 1] - 1]);
      }
    }
    multiply_by(x_[i], quotient(T(omega_), with(op_, diagonal(i))));
    if (op_ != Op::none) {
      for (Integer k = first; k < end; ++k) {
        subtract_product(x_[icol_[k - 1] - 1], op_, a_[k - 1], x_[i]);
      }
    }
  }

  Op op_;
  Integer n_;
  const T* a_;
  const Integer* icol_;
  const Integer* istr_;
  const Integer* idiag_;
  const QuarnFloat& omega_;
  T* x_;
  CheckPoints check_points_;
};

template <class T>
Integer solve_ssor(const char* trans, Integer n, const T* a, const Integer* icol, const Integer* istr,
                   const Integer* idiag, const QuarnFloat& omega, T* x) {
  const Integer wrong = first_wrong({{!is_op(trans), 1}, {n < 1, 2}, {!(omega > 0 && omega < 2), 7}});
  if (wrong == 0) {
    Ssor<T>(op_of(trans), n, a, icol, istr, idiag, omega, x).solve();
  }
  return -wrong;
}

}  // namespace
}  // namespace tesk

extern "C" {

void QuarnMPX_sparse_diagonal_(Integer n, Integer nnz, const QuarnFloat* a, const Integer* irow, const Integer* icol,
                               Integer* istr, Integer* idiag, Integer* info) {
  *info = tesk::find_diagonal(n, nnz, a, irow, icol, istr, idiag);
}

void QuarnMPX_zsparse_diagonal_(Integer n, Integer nnz, const Complex* a, const Integer* irow, const Integer* icol,
                                Integer* istr, Integer* idiag, Integer* info) {
  *info = tesk::find_diagonal(n, nnz, a, irow, icol, istr, idiag);
}

void QuarnMPX_jacobi_(const char* trans, Integer n, const QuarnFloat* a, const Integer* idiag, QuarnFloat* x,
                      Integer* info, int /*trans_length*/) {
  *info = tesk::divide_by_diagonal(trans, n, a, idiag, x);
}

void QuarnMPX_zjacobi_(const char* trans, Integer n, const Complex* a, const Integer* idiag, Complex* x, Integer* info,
                       int /*trans_length*/) {
  *info = tesk::divide_by_diagonal(trans, n, a, idiag, x);
}

void QuarnMPX_ssor_(const char* trans, Integer n, const QuarnFloat* a, const Integer* icol, const Integer* istr,
                    const Integer* idiag, QuarnFloat omega, QuarnFloat* x, Integer* info, int /*trans_length*/) {
  *info = tesk::solve_ssor(trans, n, a, icol, istr, idiag, omega, x);
}

void QuarnMPX_zssor_(const char* trans, Integer n, const Complex* a, const Integer* icol, const Integer* istr,
                     const Integer* idiag, QuarnFloat omega, Complex* x, Integer* info, int /*trans_length*/) {
  *info = tesk::solve_ssor(trans, n, a, icol, istr, idiag, omega, x);
}
}
