// E. Anderson et al., LAPACK Users' Guide: xGEBRD with its panels (xLABRD). J. J. Dongarra, S. J. Hammarling, D. C.
// Sorensen, Block reduction of matrices to condensed forms for eigenvalue computations, J. Comput. Appl. Math. 27
// (1989).
#include "src/dense/bidiagonal.h"

#include "src/dense/parts.h"

namespace tesk {
namespace {

/// The first k rows and columns of the m by n matrix; then the rest of it, in one product, as A - L R^H with
/// L = (v1, x1, v2, x2, ...) and R = (y1, w1, y2, w2, ...): v and w are the vectors of the reflectors from the left and
/// from the right.
template <class T>
class BidiagonalPanel {
 public:
  BidiagonalPanel(Integer m, Integer n, Integer k, OneBasedMatrix<T> a, OneBasedMatrix<T> right)
      : m_(m), n_(n), k_(k), a_(a), right_(right), left_factor_(m, 2 * k), right_factor_(n, 2 * k) {}

  void reduce(OneBasedVector<QuarnFloat> d, OneBasedVector<QuarnFloat> e, T* tauq, T* taup) {
    for (Integer i = 1; i <= k_; ++i) {
      QuarnCheckInterrupt();
      bring_up_to_date(m_ - i + 1, 1, 2 * (i - 1), i, i);
      const OneBasedVector<T> v = a_.column(i).from(i);
      tauq[i - 1] = make_reflector(m_ - i + 1, v);
      d(i) = real_part(v(1));
      take_left(i, v, tauq[i - 1]);
      if (i < n_) {
        bring_up_to_date(1, n_ - i, 2 * i - 1, i, i + 1);
        const OneBasedVector<T> w = right_.column(i).from(i + 1);
        copy(n_ - i, a_.row(i).from(i + 1), w);
        conjugate_vector(n_ - i, w);
        taup[i - 1] = make_reflector(n_ - i, w);
        e(i) = real_part(w(1));
        take_right(i, w, taup[i - 1]);
      }
    }
    bring_up_to_date(m_ - k_, n_ - k_, 2 * k_, k_ + 1, k_ + 1);
  }

 private:
  OneBasedMatrix<T> l() { return left_factor_.view(); }
  OneBasedMatrix<T> r() { return right_factor_.view(); }

  /// The rows by columns block of A at (i, j) less `known` columns of L R^H.
  void bring_up_to_date(Integer rows, Integer columns, Integer known, Integer i, Integer j) {
    exact::multiply_matrices(Op::none, Op::conjugate_transpose, rows, columns, known, T(-1.0), l().from(i, 1),
                             r().from(j, 1), T(1.0), a_.from(i, j));
  }

  /// result := tau (op(A) x - to from^H x) for the block of A at (i, j), which is rows by columns.
  void image(Op op, Integer i, Integer j, Integer known, const T& tau, OneBasedMatrix<T> to, OneBasedMatrix<T> from,
             OneBasedVector<T> x, OneBasedVector<T> result) {
    const Integer rows = m_ - i + 1;
    const Integer columns = n_ - j + 1;
    const Integer size = op == Op::none ? rows : columns;
    exact::multiply_matrix_vector(op, rows, columns, tau, a_.from(i, j), x, T(), result);
    if (known > 0) {
      std::vector<T> p(static_cast<std::size_t>(known));
      const OneBasedVector<T> products(p.data(), 1);
      exact::multiply_matrix_vector(Op::conjugate_transpose, rows + columns - size, known, T(1.0), from, x, T(),
                                    products);
      exact::multiply_matrix_vector(Op::none, size, known, -tau, to, products, T(1.0), result);
    }
  }

  void take_left(Integer i, OneBasedVector<T> x, const T& tau) {
    const OneBasedVector<T> v = l().column(2 * i - 1).from(i);
    v(1) = T(1.0);
    copy(m_ - i, x.from(2), v.from(2));
    if (i < n_) {
      image(Op::conjugate_transpose, i, i + 1, 2 * (i - 1), tau, r().from(i + 1, 1), l().from(i, 1), v,
            r().column(2 * i - 1).from(i + 1));
    }
  }

  void take_right(Integer i, OneBasedVector<T> x, const T& tau) {
    const OneBasedVector<T> w = r().column(2 * i).from(i + 1);
    w(1) = T(1.0);
    copy(n_ - i - 1, x.from(2), w.from(2));
    if (i < m_) {
      image(Op::none, i + 1, i + 1, 2 * i - 1, tau, l().from(i + 1, 1), r().from(i + 1, 1), w,
            l().column(2 * i).from(i + 1));
    }
  }

  Integer m_;
  Integer n_;
  Integer k_;
  OneBasedMatrix<T> a_;
  OneBasedMatrix<T> right_;
  OwnMatrix<T> left_factor_;
  OwnMatrix<T> right_factor_;
};

}  // namespace

template <class T>
void bidiagonalise(Integer m, Integer n, OneBasedMatrix<T> a, OneBasedMatrix<T> right, OneBasedVector<QuarnFloat> d,
                   OneBasedVector<QuarnFloat> e, T* tauq, T* taup) {
  constexpr Integer kColumns = 16;
  for (Integer first = 1; first <= n; first += kColumns) {
    const Integer order = n - first + 1;
    BidiagonalPanel<T>(m - first + 1, order, std::min(kColumns, order), a.from(first, first), right.from(first, first))
        .reduce(d.from(first), e.from(first), tauq + first - 1, taup + first - 1);
  }
}

template void bidiagonalise(Integer, Integer, OneBasedMatrix<QuarnFloat>, OneBasedMatrix<QuarnFloat>,
                            OneBasedVector<QuarnFloat>, OneBasedVector<QuarnFloat>, QuarnFloat*, QuarnFloat*);
template void bidiagonalise(Integer, Integer, OneBasedMatrix<Complex>, OneBasedMatrix<Complex>,
                            OneBasedVector<QuarnFloat>, OneBasedVector<QuarnFloat>, Complex*, Complex*);

}  // namespace tesk
