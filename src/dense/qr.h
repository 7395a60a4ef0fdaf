// What routines on orthogonal factors share: A = Q R with Q = H(1) ... H(k) as xGEQRF leaves it.
#pragma once

#include <vector>

#include "src/dense/householder.h"

namespace tesk {

/// The letter of the adjoint among the options of the published routines.
template <class T>
constexpr char adjoint_letter() {
  return sizeof(T) == sizeof(QuarnFloat) ? 'T' : 'C';
}
template <class T>
bool is_adjoint_option(const char* trans) {
  return letter(trans) == 'N' || letter(trans) == adjoint_letter<T>();
}
inline Op adjoint_option_of(const char* trans) { return letter(trans) == 'N' ? Op::none : Op::conjugate_transpose; }
inline Op other(Op op) { return op == Op::none ? Op::conjugate_transpose : Op::none; }

/// B := A^H, A m by n.
template <class T>
void copy_adjoint(Integer m, Integer n, OneBasedMatrix<T> a, OneBasedMatrix<T> b) {
  for (Integer j = 1; j <= n; ++j) {
    for (Integer i = 1; i <= m; ++i) {
      b(j, i) = conjugate(a(i, j));
    }
  }
}
template <class T>
void copy_matrix(Integer m, Integer n, OneBasedMatrix<T> a, OneBasedMatrix<T> b) {
  for (Integer j = 1; j <= n; ++j) {
    copy(m, a.column(j), b.column(j));
  }
}

/// The first j with a(j, j) = 0, 0 if there is none among n.
template <class T>
Integer first_zero_on_diagonal(Integer n, OneBasedMatrix<T> a) {
  for (Integer j = 1; j <= n; ++j) {
    if (is_zero(a(j, j))) {
      return j;
    }
  }
  return 0;
}

/// B := op(R)^-1 B, R upper triangular of order n, B with `columns` columns.
template <class T>
void solve_upper(Op op, Integer n, Integer columns, OneBasedMatrix<T> r, OneBasedMatrix<T> b) {
  exact::solve_triangular_matrix(Side::left, Triangle::upper, op, Diagonal::general, n, columns, T(1.0), r, b);
}

// Instantiated for both kinds of numbers in qr.cpp.

/// A := its factors: R, and below the diagonal the vectors of min(m, n) reflectors.
template <class T>
void factorise_qr(Integer m, Integer n, OneBasedMatrix<T> a, T* tau);

/// The first n columns of Q, of m rows, in the place of the k reflectors.
template <class T>
void form_q(Integer m, Integer n, Integer k, OneBasedMatrix<T> a, const T* tau);

/// A factorised beside itself, or its adjoint.
template <class T>
class OwnQR {
 public:
  OwnQR(Op op, Integer m, Integer n, OneBasedMatrix<T> a)
      : rows_(op == Op::none ? m : n), columns_(op == Op::none ? n : m), factors_(rows_, columns_) {
    tau_.resize(std::size_t(steps()));
    if (op == Op::none) {
      copy_matrix(m, n, a, factors_.view());
    } else {
      copy_adjoint(m, n, a, factors_.view());
    }
    factorise_qr(rows_, columns_, factors_.view(), tau_.data());
  }

  Integer rows() const { return rows_; }
  Integer columns() const { return columns_; }
  Integer steps() const { return std::min(rows_, columns_); }
  OneBasedMatrix<T> r() { return factors_.view(); }
  /// op(Q) C or C op(Q), C with n columns, or rows.
  void apply(Side side, Op op, Integer n, OneBasedMatrix<T> c) {
    if (n > 0) {
      apply_reflectors(side, op, rows_, n, steps(), factors_.view(), tau_.data(), c);
    }
  }

 private:
  Integer rows_;
  Integer columns_;
  OwnMatrix<T> factors_;
  std::vector<T> tau_;
};

}  // namespace tesk
