// E. Anderson et al., LAPACK Users' Guide: xGEHRD, its panels (xLAHR2), DORGHR and ZUNGHR. G. Quintana-Orti, R. van de
// Geijn, Improving the performance of reduction to Hessenberg form, ACM Trans. Math. Softw. 32 (2006).
#include <utility>

#include "quarn/quarnthread.h"
#include "src/dense/householder.h"
#include "tesk2mp/dense.h"

namespace tesk {
namespace {

/// The reflectors of columns first, ..., first + k - 1 of the matrix of order n, of which rows and columns up to `last`
/// are worked on, and what they do to the rest of it.
template <class T>
class Panel {
 public:
  Panel(Integer n, Integer first, Integer last, Integer k, OneBasedMatrix<T> a)
      : n_(n), first_(first), last_(last), k_(k), a_(a), block_(last, k), y_(last, k) {}

  void reduce(T* tau) {
    for (Integer i = 1; i <= k_; ++i) {
      QuarnCheckInterrupt();
      const Integer c = first_ + i - 1;
      bring_up_to_date(i, a_.column(c));
      tau[i - 1] = make_reflector(last_ - c, a_.column(c).from(c + 1));
      block_.take(i, c + 1, a_.column(c).from(c + 1), tau[i - 1]);
      take_image(i, c + 1, tau[i - 1]);
    }
    update_rest();
  }

 private:
  /// The i - 1 reflectors so far, from the right and from the left.
  void bring_up_to_date(Integer i, OneBasedVector<T> column) {
    if (i == 1) {
      return;
    }
    const Integer below = last_ - first_;
    const OneBasedVector<T> active = column.from(first_ + 1);
    const OneBasedMatrix<T> v = block_.v().from(first_ + 1, 1);
    exact::multiply_matrices(Op::none, Op::conjugate_transpose, last_, Integer(1), i - 1, T(-1.0), y_.view(),
                             block_.v().from(first_ + i - 1, 1), T(1.0),
                             OneBasedMatrix<T>(column.first(), column.stride(), 0));
    std::vector<T> w(std::size_t(i - 1));
    std::vector<T> tw(w.size());
    const OneBasedVector<T> products(w.data(), 1);
    const OneBasedVector<T> turned(tw.data(), 1);
    exact::multiply_matrix_vector(Op::conjugate_transpose, below, i - 1, T(1.0), v, active, T(), products);
    exact::multiply_matrix_vector(Op::conjugate_transpose, i - 1, i - 1, T(1.0), block_.t(), products, T(), turned);
    exact::multiply_matrix_vector(Op::none, below, i - 1, T(-1.0), v, turned, T(1.0), active);
  }

  /// Column i of Y = A V T, whose vector begins in row `row`.
  void take_image(Integer i, Integer row, const T& tau) {
    const OneBasedVector<T> image = y_.view().column(i);
    const OneBasedVector<T> v = block_.v().column(i);
    const Integer size = last_ - row + 1;
    exact::multiply_matrix_vector(Op::none, last_, size, tau, a_.from(1, row), v.from(row), T(), image);
    if (i > 1) {
      // T(1..i-1, i) = -tau T V^H v, and Y T^-1 = A V.
      std::vector<T> w(std::size_t(i - 1));
      const OneBasedVector<T> products(w.data(), 1);
      exact::multiply_matrix_vector(Op::conjugate_transpose, size, i - 1, T(1.0), block_.v().from(row, 1), v.from(row),
                                    T(), products);
      exact::multiply_matrix_vector(Op::none, last_, i - 1, -tau, y_.view(), products, T(1.0), image);
    }
  }

  void update_rest() {
    const Integer next = first_ + k_;
    if (next <= last_) {
      exact::multiply_matrices(Op::none, Op::conjugate_transpose, last_, last_ - next + 1, k_, T(-1.0), y_.view(),
                               block_.v().from(next, 1), T(1.0), a_.from(1, next));
    }
    if (next <= n_) {
      block_.apply_left(Op::conjugate_transpose, n_ - next + 1, a_.from(1, next));
    }
  }

  Integer n_;
  Integer first_;
  Integer last_;
  Integer k_;
  OneBasedMatrix<T> a_;
  BlockReflector<T> block_;
  OwnMatrix<T> y_;
};

/// Columns first, ..., last - 1 one after the other.
template <class T>
void reduce_columns(Integer n, Integer first, Integer last, OneBasedMatrix<T> a, T* tau) {
  for (Integer c = first; c < last; ++c) {
    QuarnCheckInterrupt();
    const OneBasedVector<T> v = a.column(c).from(c + 1);
    const Integer size = last - c;
    tau[c - first] = make_reflector(size, v);
    const T beta = std::exchange(v(1), T(1.0));
    reflect_right(size, last, tau[c - first], v, a.from(1, c + 1));
    reflect_left(size, n - c, conjugate(tau[c - first]), v, a.from(c + 1, c + 1));
    v(1) = beta;
  }
}

Integer wrong_argument(Integer n, Integer ilo, Integer ihi, Integer lda, Integer lwork) {
  const Integer least = std::max<Integer>(1, n);
  return first_wrong({{n < 0, 1},
                      {ilo < 1 || ilo > least, 2},
                      {ihi < std::min(ilo, n) || ihi > n, 3},
                      {lda < least, 5},
                      {lwork < least && lwork != -1, 8}});
}

template <class T>
Integer reduce(Integer n, Integer ilo, Integer ihi, T* a, Integer lda, T* tau, T* work, Integer lwork) {
  if (const Integer wrong = wrong_argument(n, ilo, ihi, lda, lwork); wrong != 0) {
    return -wrong;
  }
  work[0] = T(double(std::max<Integer>(1, n)));
  if (lwork == -1) {
    return 0;
  }
  for (Integer i = 1; i < n; ++i) {
    if (i < ilo || i >= ihi) {
      tau[i - 1] = T();
    }
  }
  using Block = BlockReflector<T>;
  Integer first = ilo;
  for (; ihi - first > Block::kFewRows; first += Block::kMost) {
    Panel<T>(n, first, ihi, Block::kMost, {a, lda}).reduce(tau + first - 1);
  }
  reduce_columns<T>(n, first, ihi, {a, lda}, tau + first - 1);
  return 0;
}

/// Q = H(ilo) ... H(ihi - 1) in the place of the reflectors.
template <class T>
Integer form_hessenberg_q(Integer n, Integer ilo, Integer ihi, T* a, Integer lda, const T* tau, T* work,
                          Integer lwork) {
  if (const Integer wrong = wrong_argument(n, ilo, ihi, lda, lwork); wrong != 0) {
    return -wrong;
  }
  work[0] = T(double(std::max<Integer>(1, n)));
  if (lwork == -1 || n == 0) {
    return 0;
  }
  const OneBasedMatrix<T> reflectors(a, lda);
  OwnMatrix<T> own(n, n);
  const OneBasedMatrix<T> q = own.view();
  for (Integer j = 1; j <= n; ++j) {
    q(j, j) = T(1.0);
  }
  using Block = BlockReflector<T>;
  Integer first = ilo;
  while (ihi - first > Block::kFewRows) {
    first += Block::kMost;
  }
  for (Integer c = ihi - 1; c >= first; --c) {
    std::vector<T> v(std::size_t(ihi - c));
    copy(ihi - c, reflectors.column(c).from(c + 1), OneBasedVector<T>(v.data(), 1));
    v[0] = T(1.0);
    reflect_left<T>(ihi - c, ihi - c, tau[c - 1], {v.data(), 1}, q.from(c + 1, c + 1));
  }
  for (first -= Block::kMost; first >= ilo; first -= Block::kMost) {
    QuarnCheckInterrupt();
    const Integer size = ihi - first;
    Block block(size, Block::kMost, reflectors.from(first + 1, first), tau + first - 1);
    block.apply_left(Op::none, size, q.from(first + 1, first + 1));
  }
  for (Integer j = 1; j <= n; ++j) {
    for (Integer i = 1; i <= n; ++i) {
      reflectors(i, j) = std::move(q(i, j));
    }
  }
  return 0;
}

}  // namespace
}  // namespace tesk

extern "C" {

void QuarnMPX_dgehrd_(Integer n, Integer ilo, Integer ihi, QuarnFloat* a, Integer lda, QuarnFloat* tau,
                      QuarnFloat* work, Integer lwork, Integer* info) {
  *info = tesk::reduce(n, ilo, ihi, a, lda, tau, work, lwork);
}

void QuarnMPX_dorghr_(Integer n, Integer ilo, Integer ihi, QuarnFloat* a, Integer lda, QuarnFloat* tau,
                      QuarnFloat* work, Integer lwork, Integer* info) {
  *info = tesk::form_hessenberg_q(n, ilo, ihi, a, lda, tau, work, lwork);
}

void QuarnMPX_zgehrd_(Integer n, Integer ilo, Integer ihi, Complex* a, Integer lda, Complex* tau, Complex* work,
                      Integer lwork, Integer* info) {
  *info = tesk::reduce(n, ilo, ihi, a, lda, tau, work, lwork);
}

void QuarnMPX_zunghr_(Integer n, Integer ilo, Integer ihi, Complex* a, Integer lda, const Complex* tau, Complex* work,
                      Integer lwork, Integer* info) {
  *info = tesk::form_hessenberg_q(n, ilo, ihi, a, lda, tau, work, lwork);
}
}
