// P. Businger, G. H. Golub, Linear least squares solutions by Householder transformations, Numer. Math. 7 (1965); norms
// of columns are brought up to date as in Z. Drmac, Z. Bujanovic, On the failure of rank-revealing QR factorization
// software, ACM Trans. Math. Softw. 35 (2008). C. H. Bischof, Incremental condition estimation, SIAM J. Matrix Anal.
// Appl. 11 (1990). E. Anderson et al., LAPACK Users' Guide: xGEQP3, xTZRZF, xORMRZ and xUNMRZ.
#include "src/dense/complete_orthogonal.h"

#include "quarn/quarnthread.h"
#include "src/frame/constants.h"
#include "tesk2mp/least_squares.h"

namespace tesk {
namespace {

QuarnFloat square(const QuarnFloat& x) { return x * x; }
QuarnFloat square(const Complex& x) { return x.re * x.re + x.im * x.im; }

/// Squared norms of the columns below the finished rows: as they are now, and when they were last summed.
struct ColumnNorms {
  std::vector<QuarnFloat> now;
  std::vector<QuarnFloat> summed;
  QuarnFloat trusted;  // what may remain of a sum by subtractions

  explicit ColumnNorms(Integer n) : now(std::size_t(n)), summed(std::size_t(n)), trusted(sqrt(epsilon())) {}

  template <class T>
  void sum(Integer j, Integer length, OneBasedVector<T> x) {
    summed[std::size_t(j - 1)] = sum_of_squares(length, x);
    now[std::size_t(j - 1)] = summed[std::size_t(j - 1)];
  }
  Integer largest(Integer first, Integer last) const {
    Integer best = first;
    for (Integer j = first + 1; j <= last; ++j) {
      if (now[std::size_t(j - 1)] > now[std::size_t(best - 1)]) {
        best = j;
      }
    }
    return best;
  }
  void exchange(Integer i, Integer j) {
    std::swap(now[std::size_t(i - 1)], now[std::size_t(j - 1)]);
    std::swap(summed[std::size_t(i - 1)], summed[std::size_t(j - 1)]);
  }
};

/// The power of ten of the largest part of a matrix whose squares leave the range, or 0.
template <class T>
int far_decade_of_matrix(Integer m, Integer n, OneBasedMatrix<T> a) {
  QuarnFloat largest;
  for (Integer j = 1; j <= n && m > 0; ++j) {
    const OneBasedVector<T> x = a.column(j);
    largest = std::max(largest, magnitude(x(index_of_largest(m, x))));
  }
  return far_decade(largest);
}

}  // namespace

template <class T>
void factorise_pivoted(Integer m, Integer n, OneBasedMatrix<T> a, Integer* jpvt, T* tau) {
  if (const int decade = far_decade_of_matrix(m, n, a); decade != 0) {
    for (Integer j = 1; j <= n; ++j) {
      scale(m, QuarnFloat(1, -decade), a.column(j));
    }
    factorise_pivoted(m, n, a, jpvt, tau);
    for (Integer j = 1; j <= n; ++j) {
      scale(std::min(j, m), QuarnFloat(1, decade), a.column(j));
    }
    return;
  }
  Integer fixed = 0;
  for (Integer j = 1; j <= n; ++j) {
    const bool first = jpvt[j - 1] != 0;
    jpvt[j - 1] = j;
    if (first && ++fixed != j) {
      swap_vectors(m, a.column(j), a.column(fixed));
      std::swap(jpvt[j - 1], jpvt[fixed - 1]);
    }
  }
  const Integer steps = std::min(m, n);
  const Integer done = std::min(m, fixed);
  if (done > 0) {
    factorise_qr(m, done, a, tau);
    if (done < n) {
      apply_reflectors(Side::left, Op::conjugate_transpose, m, n - done, done, a, tau, a.from(1, done + 1));
    }
  }
  ColumnNorms norms(n);
  for (Integer j = done + 1; j <= n; ++j) {
    norms.sum(j, m - done, a.column(j).from(done + 1));
  }
  for (Integer k = done + 1; k <= steps; ++k) {
    QuarnCheckInterrupt();
    if (const Integer pivot = norms.largest(k, n); pivot != k) {
      swap_vectors(m, a.column(k), a.column(pivot));
      std::swap(jpvt[k - 1], jpvt[pivot - 1]);
      norms.exchange(k, pivot);
    }
    const OneBasedVector<T> v = a.column(k).from(k);
    tau[k - 1] = make_reflector(m - k + 1, v);
    const T beta = std::exchange(v(1), T(1.0));
    reflect_left(m - k + 1, n - k, conjugate(tau[k - 1]), v, a.from(k, k + 1));
    v(1) = beta;
    for (Integer j = k + 1; j <= n; ++j) {
      QuarnFloat& now = norms.now[std::size_t(j - 1)];
      now -= square(a(k, j));
      if (!(now > norms.trusted * norms.summed[std::size_t(j - 1)])) {
        norms.sum(j, m - k, a.column(j).from(k + 1));
      }
    }
  }
}

namespace {

/// An estimate of the largest or the smallest singular value of leading blocks of R, and the vector x for which
/// norm(R^H x) has that size: each new column makes it (s x, c) with the s, c that are best.
template <class T>
class SingularEstimate {
 public:
  SingularEstimate(bool largest, const T& first) : largest_(largest), size_(modulus(first)), x_(1, T(1.0)) {}

  struct Step {
    QuarnFloat size;
    T s;
    T c;
  };
  /// With the next column: x has one element less than it.
  Step next(OneBasedVector<T> column) {
    const Integer n = Integer(x_.size());
    // norm(R^H x)^2 is now the value of the form (s c) (size^2 + |a|^2, conj(a) conj(g); a g, |g|^2) at (s, c).
    const T a = dot(n, column, OneBasedVector<T>(x_.data(), 1), Op::conjugate_transpose);
    const T& gamma = column(n + 1);
    const QuarnFloat top = size_ * size_ + square(a);
    const QuarnFloat bottom = square(gamma);
    const T beside = conjugate(a) * conjugate(gamma);
    const QuarnFloat half = (top - bottom) / 2;
    const QuarnFloat root = sqrt(half * half + square(beside));
    const QuarnFloat upper = (top + bottom) / 2 + root;
    // Of two rows that give the same vector the one without cancellation.
    const QuarnFloat safe = half < 0 ? root - half : half + root;
    Step step{{}, T(safe), conjugate(beside)};
    if (half < 0) {
      step.s = beside;
      step.c = T(safe);
    }
    if (!largest_) {
      const T former = step.s;
      step.s = -conjugate(step.c);
      step.c = conjugate(former);
    }
    const QuarnFloat length = sqrt(square(step.s) + square(step.c));
    if (length == 0) {
      step.s = T(largest_ ? 1.0 : 0.0);
      step.c = T(largest_ ? 0.0 : 1.0);
    } else {
      multiply_by(step.s, QuarnFloat(1 / length));
      multiply_by(step.c, QuarnFloat(1 / length));
    }
    // The product of the two values is size^2 |g|^2.
    step.size = largest_ ? sqrt(upper) : upper == 0 ? upper : size_ * modulus(gamma) / sqrt(upper);
    return step;
  }
  void accept(const Step& step) {
    for (T& each : x_) {
      multiply_by(each, step.s);
    }
    x_.push_back(step.c);
    size_ = step.size;
  }

 private:
  bool largest_;
  QuarnFloat size_;
  std::vector<T> x_;
};

}  // namespace

template <class T>
Integer estimated_rank(Integer n, OneBasedMatrix<T> r, const QuarnFloat& rcond) {
  if (n == 0 || is_zero(r(1, 1))) {
    return 0;
  }
  SingularEstimate<T> largest(true, r(1, 1));
  SingularEstimate<T> smallest(false, r(1, 1));
  Integer rank = 1;
  while (rank < n) {
    QuarnCheckInterrupt();
    const OneBasedVector<T> column = r.column(rank + 1);
    const auto up = largest.next(column);
    const auto down = smallest.next(column);
    // A NaN is no reason to stop: it is to reach the solution.
    if (up.size * rcond > down.size || down.size == 0) {
      break;
    }
    largest.accept(up);
    smallest.accept(down);
    ++rank;
  }
  return rank;
}

namespace {

/// C := C (I - tau u u^H) with u = (1, v): column `first` of C, m rows, and l columns beside it.
template <class T>
void reflect_columns(Integer m, Integer l, const T& tau, OneBasedVector<T> v, OneBasedVector<T> first,
                     OneBasedMatrix<T> rest) {
  if (m < 1 || is_zero(tau)) {
    return;
  }
  std::vector<T> w(static_cast<std::size_t>(m));
  const OneBasedVector<T> products(w.data(), 1);
  copy(m, first, products);
  if (l > 0) {
    exact::multiply_matrix_vector(Op::none, m, l, T(1.0), rest, v, T(1.0), products);
  }
  add_multiple(m, -tau, products, first);
  update_rank_one(Op::conjugate_transpose, m, l, -tau, products, v, rest);
}

/// C := (I - tau u u^H) C with u = (1, v): row `first` of C, n columns, and l rows below it.
template <class T>
void reflect_rows(Integer n, Integer l, const T& tau, OneBasedVector<T> v, OneBasedVector<T> first,
                  OneBasedMatrix<T> rest) {
  if (n < 1 || is_zero(tau)) {
    return;
  }
  std::vector<T> w(static_cast<std::size_t>(n));
  const OneBasedVector<T> products(w.data(), 1);
  copy(n, first, products);
  conjugate_vector(n, products);
  if (l > 0) {
    exact::multiply_matrix_vector(Op::conjugate_transpose, l, n, T(1.0), rest, v, T(1.0), products);
  }
  for (Integer j = 1; j <= n; ++j) {
    subtract_product(first(j), Op::conjugate_transpose, products(j), tau);
  }
  update_rank_one(Op::conjugate_transpose, l, n, -tau, v, products, rest);
}

}  // namespace

template <class T>
void factorise_trapezoid(Integer m, Integer n, OneBasedMatrix<T> a, T* tau) {
  const Integer l = n - m;
  std::vector<T> u(std::size_t(l + 1));
  const OneBasedVector<T> x(u.data(), 1);
  for (Integer i = m; i >= 1; --i) {
    QuarnCheckInterrupt();
    const OneBasedVector<T> end = a.row(i).from(m + 1);
    x(1) = conjugate(a(i, i));
    for (Integer j = 1; j <= l; ++j) {
      x(j + 1) = conjugate(end(j));
    }
    const T factor = l > 0 ? make_reflector(l + 1, x) : T();
    tau[i - 1] = conjugate(factor);
    a(i, i) = conjugate(x(1));
    copy(l, x.from(2), end);
    reflect_columns(i - 1, l, factor, end, a.column(i), a.from(1, m + 1));
  }
}

template <class T>
void apply_z(Side side, Op op, Integer m, Integer n, Integer k, Integer l, OneBasedMatrix<T> ends, const T* tau,
             OneBasedMatrix<T> c) {
  const bool left = side == Side::left;
  // Z = Z(1) ... Z(k): the last one comes first from the left, unless the adjoint is wanted.
  const bool forward = left == (op != Op::none);
  for (Integer step = 1; step <= k; ++step) {
    QuarnCheckInterrupt();
    const Integer i = forward ? step : k + 1 - step;
    const T factor = op == Op::none ? tau[i - 1] : conjugate(tau[i - 1]);
    if (left) {
      reflect_rows(n, l, factor, ends.row(i), c.row(i), c.from(m - l + 1, 1));
    } else {
      reflect_columns(m, l, factor, ends.row(i), c.column(i), c.from(1, n - l + 1));
    }
  }
}

template void factorise_pivoted(Integer, Integer, OneBasedMatrix<QuarnFloat>, Integer*, QuarnFloat*);
template void factorise_pivoted(Integer, Integer, OneBasedMatrix<Complex>, Integer*, Complex*);
template Integer estimated_rank(Integer, OneBasedMatrix<QuarnFloat>, const QuarnFloat&);
template Integer estimated_rank(Integer, OneBasedMatrix<Complex>, const QuarnFloat&);
template void factorise_trapezoid(Integer, Integer, OneBasedMatrix<QuarnFloat>, QuarnFloat*);
template void factorise_trapezoid(Integer, Integer, OneBasedMatrix<Complex>, Complex*);
template void apply_z(Side, Op, Integer, Integer, Integer, Integer, OneBasedMatrix<QuarnFloat>, const QuarnFloat*,
                      OneBasedMatrix<QuarnFloat>);
template void apply_z(Side, Op, Integer, Integer, Integer, Integer, OneBasedMatrix<Complex>, const Complex*,
                      OneBasedMatrix<Complex>);

namespace {

template <class T>
Integer checked_pivoted(Integer m, Integer n, T* a, Integer lda, Integer* jpvt, T* tau, T* work, Integer lwork) {
  const Integer least = std::min(m, n) < 1 ? 1 : sizeof(T) == sizeof(QuarnFloat) ? 3 * n + 1 : n + 1;
  const Integer wrong =
      first_wrong({{m < 0, 1}, {n < 0, 2}, {lda < std::max<Integer>(1, m), 4}, {lwork < least && lwork != -1, 8}});
  if (wrong != 0) {
    return -wrong;
  }
  work[0] = T(double(least));
  if (lwork != -1) {
    factorise_pivoted<T>(m, n, {a, lda}, jpvt, tau);
  }
  return 0;
}

template <class T>
Integer checked_trapezoid(Integer m, Integer n, T* a, Integer lda, T* tau, T* work, Integer lwork) {
  const Integer least = std::max<Integer>(1, m);
  const Integer wrong = first_wrong({{m < 0, 1}, {n < m, 2}, {lda < least, 4}, {lwork < least && lwork != -1, 7}});
  if (wrong != 0) {
    return -wrong;
  }
  work[0] = T(double(least));
  if (lwork != -1) {
    factorise_trapezoid<T>(m, n, {a, lda}, tau);
  }
  return 0;
}

template <class T>
Integer checked_apply(const char* side, const char* trans, Integer m, Integer n, Integer k, Integer l, T* a,
                      Integer lda, const T* tau, T* c, Integer ldc, T* work, Integer lwork) {
  const bool left = letter(side) == 'L';
  const Integer order = left ? m : n;
  const Integer least = std::max<Integer>(1, left ? n : m);
  const Integer wrong = first_wrong({{!is_side(side), 1},
                                     {!is_adjoint_option<T>(trans), 2},
                                     {m < 0, 3},
                                     {n < 0, 4},
                                     {k < 0 || k > order, 5},
                                     {l < 0 || l > order - k, 6},
                                     {lda < std::max<Integer>(1, k), 8},
                                     {ldc < std::max<Integer>(1, m), 11},
                                     {lwork < least && lwork != -1, 13}});
  if (wrong != 0) {
    return -wrong;
  }
  work[0] = T(double(least));
  if (lwork != -1 && m > 0 && n > 0) {
    apply_z<T>(side_of(side), adjoint_option_of(trans), m, n, k, l, OneBasedMatrix<T>(a, lda).from(1, order - l + 1),
               tau, {c, ldc});
  }
  return 0;
}

}  // namespace
}  // namespace tesk

extern "C" {

void QuarnMPX_dgeqp3_(Integer m, Integer n, QuarnFloat* a, Integer lda, Integer* jpvt, QuarnFloat* tau,
                      QuarnFloat* work, Integer lwork, Integer* info) {
  *info = tesk::checked_pivoted(m, n, a, lda, jpvt, tau, work, lwork);
}

void QuarnMPX_zgeqp3_(Integer m, Integer n, Complex* a, Integer lda, Integer* jpvt, Complex* tau, Complex* work,
                      Integer lwork, QuarnFloat* /*rwork*/, Integer* info) {
  *info = tesk::checked_pivoted(m, n, a, lda, jpvt, tau, work, lwork);
}

void QuarnMPX_dtzrzf_(Integer m, Integer n, QuarnFloat* a, Integer lda, QuarnFloat* tau, QuarnFloat* work,
                      Integer lwork, Integer* info) {
  *info = tesk::checked_trapezoid(m, n, a, lda, tau, work, lwork);
}

void QuarnMPX_ztzrzf_(Integer m, Integer n, Complex* a, Integer lda, Complex* tau, Complex* work, Integer lwork,
                      Integer* info) {
  *info = tesk::checked_trapezoid(m, n, a, lda, tau, work, lwork);
}

void QuarnMPX_dormrz_(const char* side, const char* trans, Integer m, Integer n, Integer k, Integer l, QuarnFloat* a,
                      Integer lda, QuarnFloat* tau, QuarnFloat* c, Integer ldc, QuarnFloat* work, Integer lwork,
                      Integer* info, int /*side_length*/, int /*trans_length*/) {
  *info = tesk::checked_apply(side, trans, m, n, k, l, a, lda, tau, c, ldc, work, lwork);
}

void QuarnMPX_zunmrz_(const char* side, const char* trans, Integer m, Integer n, Integer k, Integer l, Complex* a,
                      Integer lda, Complex* tau, Complex* c, Integer ldc, Complex* work, Integer lwork, Integer* info,
                      int /*side_length*/, int /*trans_length*/) {
  *info = tesk::checked_apply(side, trans, m, n, k, l, a, lda, tau, c, ldc, work, lwork);
}
}
