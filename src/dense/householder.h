// Householder reflectors H = I - tau v v^H with v(1) = 1, singly and many at once as I - V T V^H with T upper
// triangular: R. Schreiber, C. Van Loan, A storage-efficient WY representation for products of Householder
// transformations, SIAM J. Sci. Stat. Comput. 10 (1989). Products round each entry once. V stands in full, with its
// zeros and ones.
#pragma once

#include <algorithm>
#include <vector>

#include "quarn/functions.h"
#include "quarn/quarnthread.h"
#include "src/dense/reflector.h"
#include "src/kernels/exact_level3.h"
#include "src/kernels/own_matrix.h"
#include "src/kernels/safe_range.h"

namespace tesk {

inline QuarnFloat sum_of_squares(Integer n, OneBasedVector<QuarnFloat> x) {
  return QuarnDot(std::size_t(n), x.first(), x.stride(), x.first(), x.stride());
}
inline QuarnFloat sum_of_squares(Integer n, OneBasedVector<Complex> x) {
  const auto size = std::size_t(n);
  const std::ptrdiff_t step = 2 * x.stride();
  return n < 1 ? QuarnFloat()
               : QuarnDot(size, &x.first()->re, step, &x.first()->re, step) +
                     QuarnDot(size, &x.first()->im, step, &x.first()->im, step);
}

/// The power of ten of a size whose square is not well within the range; otherwise, and if it is not finite, 0.
inline int far_decade(const QuarnFloat& size) {
  return size == 0 || !isfinite(size) || is_within(size, kFarthestSquared) ? 0 : ilogb(size);
}
/// That of the largest part of x, where the squares of all but x(1) add up to `rest`.
template <class T>
int far_decade(Integer n, OneBasedVector<T> x, const QuarnFloat& rest) {
  const bool is_safe = is_within(rest, 2 * kFarthestSquared) && magnitude(x(1)) < QuarnFloat(1, kFarthestSquared);
  return is_safe || isnan(rest) ? 0 : far_decade(magnitude(x(index_of_largest(n, x))));
}

/// LARFG: the reflector whose adjoint takes x, n elements, to (beta, 0, ..., 0) with beta real. Leaves beta and the
/// rest of v in x; returns tau, 0 when there is nothing to do.
template <class T>
T make_reflector(Integer n, OneBasedVector<T> x) {
  if (n < 1) {
    return {};
  }
  const QuarnFloat rest = n > 1 ? sum_of_squares(n - 1, x.from(2)) : QuarnFloat();
  if (const int decade = far_decade(n, x, rest); decade != 0) {
    scale(n, QuarnFloat(1, -decade), x);
    T tau = make_reflector(n, x);
    multiply_by(x(1), QuarnFloat(1, decade));
    return tau;
  }
  bool is_reduced = rest == 0;  // unless squares have vanished
  for (Integer i = 2; i <= n && is_reduced; ++i) {
    is_reduced = is_zero(x(i));
  }
  if constexpr (std::is_same_v<T, Complex>) {
    if (is_reduced && x(1).im == 0) {
      return {};
    }
    const Complex alpha = x(1);
    QuarnFloat beta = -with_sign(sqrt(alpha.re * alpha.re + alpha.im * alpha.im + rest), alpha.re);
    scale(n - 1, quotient(Complex(1.0), Complex(alpha.re - beta, alpha.im)), x.from(2));
    Complex tau((beta - alpha.re) / beta, -alpha.im / beta);
    x(1) = Complex(std::move(beta));
    return tau;
  } else {
    if (is_reduced) {
      return {};
    }
    ReflectorScalars scalars(x(1), rest);
    scale(n - 1, scalars.factor, x.from(2));
    x(1) = std::move(scalars.beta);
    return std::move(scalars.tau);
  }
}

/// C := (I - tau v v^H) C, C m by n, with a leading 1 in v.
template <class T>
void reflect_left(Integer m, Integer n, const T& tau, OneBasedVector<T> v, OneBasedMatrix<T> c) {
  if (n < 1 || is_zero(tau)) {
    return;
  }
  std::vector<T> w{};
  w.resize(std::size_t(n));
  const OneBasedVector<T> products(w.data(), 1);
  exact::multiply_matrix_vector(Op::conjugate_transpose, m, n, T(1.0), c, v, T(), products);
  update_rank_one(Op::conjugate_transpose, m, n, -tau, v, products, c);
}
/// C := C (I - tau v v^H), C n by m.
template <class T>
void reflect_right(Integer m, Integer n, const T& tau, OneBasedVector<T> v, OneBasedMatrix<T> c) {
  if (n < 1 || is_zero(tau)) {
    return;
  }
  std::vector<T> w{};
  w.resize(std::size_t(n));
  const OneBasedVector<T> products(w.data(), 1);
  exact::multiply_matrix_vector(Op::none, n, m, T(1.0), c, v, T(), products);
  update_rank_one(Op::conjugate_transpose, n, m, -tau, products, v, c);
}

/// The product of reflectors 1, ..., k of order m.
template <class T>
class BlockReflector {
 public:
  /// Reflectors are applied so many at a time, and to so few rows one by one.
  static constexpr Integer kMost = 32;
  static constexpr Integer kFewRows = 56;

  BlockReflector(Integer m, Integer k) : m_(m), k_(k), v_(m, k), t_(k, k) {}
  /// Of vectors below the diagonal of a.
  BlockReflector(Integer m, Integer k, OneBasedMatrix<T> a, const T* tau) : BlockReflector(m, k) {
    for (Integer j = 1; j <= k; ++j) {
      take(j, j, a.column(j).from(j), tau[j - 1]);
    }
  }

  OneBasedMatrix<T> v() { return v_.view(); }
  OneBasedMatrix<T> t() { return t_.view(); }

  /// Reflector j, after those before it: v(1) stands in row `first`, the others in x(2), x(3), ...
  void take(Integer j, Integer first, OneBasedVector<T> x, const T& tau) {
    const OneBasedVector<T> column = v().column(j);
    column(first) = T(1.0);
    copy(m_ - first, x.from(2), column.from(first + 1));
    t()(j, j) = tau;
    if (j == 1 || is_zero(tau)) {
      return;
    }
    // T(1..j-1, j) = -tau T V^H v
    std::vector<T> w(std::size_t(j - 1));
    const OneBasedVector<T> products(w.data(), 1);
    exact::multiply_matrix_vector(Op::conjugate_transpose, m_, j - 1, T(1.0), v(), column, T(), products);
    exact::multiply_matrix_vector(Op::none, j - 1, j - 1, -tau, t(), products, T(), t().column(j));
  }

  /// C := H C or H^H C, C m by n.
  void apply_left(Op op, Integer n, OneBasedMatrix<T> c) {
    OwnMatrix<T> w(k_, n);
    OwnMatrix<T> tw(k_, n);
    exact::multiply_matrices(Op::conjugate_transpose, Op::none, k_, n, m_, T(1.0), v(), c, T(), w.view());
    exact::multiply_matrices(op, Op::none, k_, n, k_, T(1.0), t(), w.view(), T(), tw.view());
    exact::multiply_matrices(Op::none, Op::none, m_, n, k_, T(-1.0), v(), tw.view(), T(1.0), c);
  }
  /// C := C H or C H^H, C n by m.
  void apply_right(Op op, Integer n, OneBasedMatrix<T> c) {
    OwnMatrix<T> w(n, k_);
    OwnMatrix<T> wt(n, k_);
    exact::multiply_matrices(Op::none, Op::none, n, k_, m_, T(1.0), c, v(), T(), w.view());
    exact::multiply_matrices(Op::none, op, n, k_, k_, T(1.0), w.view(), t(), T(), wt.view());
    exact::multiply_matrices(Op::none, Op::conjugate_transpose, n, m_, k_, T(-1.0), wt.view(), v(), T(1.0), c);
  }

 private:
  Integer m_;
  Integer k_;
  OwnMatrix<T> v_;
  OwnMatrix<T> t_;
};

/// C := op(Q) C or C op(Q) with Q of order m made of k reflectors, C with n columns, or rows.
template <class T>
void apply_reflectors(Side side, Op op, Integer m, Integer n, Integer k, OneBasedMatrix<T> a, const T* tau,
                      OneBasedMatrix<T> c) {
  constexpr Integer kMost = BlockReflector<T>::kMost;
  const bool left = side == Side::left;
  // Q = H(1) ... H(k): the last one comes first from the left, unless the adjoint is wanted.
  const bool forward = left == (op != Op::none);
  const Integer blocks = (k + kMost - 1) / kMost;
  for (Integer b = 0; b < blocks; ++b) {
    QuarnCheckInterrupt();
    const Integer first = (forward ? b : blocks - 1 - b) * kMost + 1;
    const Integer size = m - first + 1;
    BlockReflector<T> block(size, std::min(kMost, k - first + 1), a.from(first, first), tau + first - 1);
    if (left) {
      block.apply_left(op, n, c.from(first, 1));
    } else {
      block.apply_right(op, n, c.from(1, first));
    }
  }
}

}  // namespace tesk
