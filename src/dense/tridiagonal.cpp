// E. Anderson et al., LAPACK Users' Guide: xSYTRD, xHETRD with their panels (xLATRD), xORGTR, xUNGTR. J. J. Dongarra,
// S. J. Hammarling, D. C. Sorensen, Block reduction of matrices to condensed forms for eigenvalue computations, J.
// Comput. Appl. Math. 27 (1989).
#include "src/dense/tridiagonal.h"

#include "src/dense/parts.h"
#include "tesk2mp/eigenproblems.h"

namespace tesk {
namespace {

/// The first k columns of the Hermitian matrix of order m; then the rest of it, in one product, as A - X Y^H with
/// X = (v1, w1, v2, w2, ...) and Y = (w1, v1, w2, v2, ...).
template <class T>
class TridiagonalPanel {
 public:
  TridiagonalPanel(Integer m, Integer k, OneBasedMatrix<T> a) : m_(m), k_(k), a_(a), x_(m, 2 * k), y_(m, 2 * k) {}

  void reduce(OneBasedVector<QuarnFloat> d, OneBasedVector<QuarnFloat> e, OneBasedVector<T> tau) {
    for (Integer i = 1; i <= k_; ++i) {
      QuarnCheckInterrupt();
      const Integer known = 2 * (i - 1);
      exact::multiply_matrices(Op::none, Op::conjugate_transpose, m_ - i + 1, Integer(1), known, T(-1.0),
                               x_.view().from(i, 1), y_.view().from(i, 1), T(1.0), a_.from(i, i));
      d(i) = real_part(a_(i, i));
      a_(i, i) = T(d(i));
      if (i < m_) {
        const OneBasedVector<T> v = a_.column(i).from(i + 1);
        tau(i) = make_reflector(m_ - i, v);
        e(i) = real_part(v(1));
        take(i, v, tau(i));
      }
    }
    const Integer rest = m_ - k_;
    exact::multiply_matrices(Op::none, Op::conjugate_transpose, rest, rest, 2 * k_, T(-1.0), x_.view().from(k_ + 1, 1),
                             y_.view().from(k_ + 1, 1), T(1.0), a_.from(k_ + 1, k_ + 1));
  }

 private:
  /// Columns v and w of reflector i: w = x - tau (x^H v) v / 2 with x = tau A v, A brought up to date.
  void take(Integer i, OneBasedVector<T> x, const T& tau) {
    const Integer size = m_ - i;
    const Integer known = 2 * (i - 1);
    const OneBasedVector<T> v = x_.view().column(2 * i - 1).from(i + 1);
    const OneBasedVector<T> w = x_.view().column(2 * i).from(i + 1);
    v(1) = T(1.0);
    copy(size - 1, x.from(2), v.from(2));
    exact::multiply_matrix_vector(Op::none, size, size, tau, a_.from(i + 1, i + 1), v, T(), w);
    if (known > 0) {
      std::vector<T> p(static_cast<std::size_t>(known));
      const OneBasedVector<T> products(p.data(), 1);
      exact::multiply_matrix_vector(Op::conjugate_transpose, size, known, T(1.0), y_.view().from(i + 1, 1), v, T(),
                                    products);
      exact::multiply_matrix_vector(Op::none, size, known, -tau, x_.view().from(i + 1, 1), products, T(1.0), w);
    }
    const T half = tau * T(-0.5);
    add_multiple(size, half * dot(size, w, v, Op::conjugate_transpose), v, w);
    copy(size, w, y_.view().column(2 * i - 1).from(i + 1));
    copy(size, v, y_.view().column(2 * i).from(i + 1));
  }

  Integer m_;
  Integer k_;
  OneBasedMatrix<T> a_;
  OwnMatrix<T> x_;
  OwnMatrix<T> y_;
};

/// The lower triangle of the matrix that the option names; of an upper triangle with both indices reversed.
template <class T>
OneBasedMatrix<T> as_lower(Triangle triangle, Integer n, OneBasedMatrix<T> a) {
  return triangle == Triangle::lower || n == 0 ? a : a.reversed(n, n);
}
template <class T>
OneBasedVector<T> in_order(Triangle triangle, Integer n, OneBasedVector<T> x) {
  return triangle == Triangle::lower || n < 1 ? x : x.reversed(n);
}

template <class T>
Integer checked_reduction(const char* uplo, Integer n, T* a, Integer lda, QuarnFloat* d, QuarnFloat* e, T* tau, T* work,
                          Integer lwork) {
  const Integer wrong = first_wrong(
      {{!is_triangle(uplo), 1}, {n < 0, 2}, {lda < std::max<Integer>(1, n), 4}, {lwork < 1 && lwork != -1, 9}});
  if (wrong != 0) {
    return -wrong;
  }
  work[0] = T(1.0);
  if (lwork == -1 || n == 0) {
    return 0;
  }
  const Triangle triangle = triangle_of(uplo);
  const OneBasedMatrix<T> lower = as_lower<T>(triangle, n, {a, lda});
  OwnMatrix<T> own = hermitian_copy(Triangle::lower, n, lower);
  const OneBasedMatrix<T> full = own.view();
  tridiagonalise(n, full, in_order<QuarnFloat>(triangle, n, {d, 1}), in_order<QuarnFloat>(triangle, n - 1, {e, 1}),
                 in_order<T>(triangle, n - 1, {tau, 1}));
  for (Integer j = 1; j <= n; ++j) {
    copy(n - j + 1, full.column(j).from(j), lower.column(j).from(j));
  }
  return 0;
}

template <class T>
Integer checked_form(const char* uplo, Integer n, T* a, Integer lda, const T* tau, T* work, Integer lwork) {
  const Integer least = std::max<Integer>(1, n - 1);
  const Integer wrong = first_wrong(
      {{!is_triangle(uplo), 1}, {n < 0, 2}, {lda < std::max<Integer>(1, n), 4}, {lwork < least && lwork != -1, 7}});
  if (wrong != 0) {
    return -wrong;
  }
  work[0] = T(double(least));
  if (lwork == -1 || n == 0) {
    return 0;
  }
  const Triangle triangle = triangle_of(uplo);
  const OneBasedMatrix<T> lower = as_lower<T>(triangle, n, {a, lda});
  std::vector<T> factors(tau, tau + n - 1);
  if (triangle == Triangle::upper) {
    std::reverse(factors.begin(), factors.end());
  }
  OwnMatrix<T> q(n, n);
  form_q(n, lower, factors.data(), q.view());
  for (Integer j = 1; j <= n; ++j) {
    copy(n, q.view().column(j), lower.column(j));
  }
  return 0;
}

}  // namespace

template <class T>
void tridiagonalise(Integer n, OneBasedMatrix<T> a, OneBasedVector<QuarnFloat> d, OneBasedVector<QuarnFloat> e,
                    OneBasedVector<T> tau) {
  constexpr Integer kColumns = 16;
  for (Integer first = 1; first <= n; first += kColumns) {
    const Integer order = n - first + 1;
    TridiagonalPanel<T>(order, std::min(kColumns, order), a.from(first, first))
        .reduce(d.from(first), e.from(first), tau.from(first));
  }
}

template <class T>
void form_q(Integer n, OneBasedMatrix<T> reflectors, const T* tau, OneBasedMatrix<T> q) {
  for (Integer j = 1; j <= n; ++j) {
    fill(n, T(), q.column(j));
    q(j, j) = T(1.0);
  }
  if (n > 1) {
    apply_reflectors(Side::left, Op::none, n - 1, n - 1, n - 1, reflectors.from(2, 1), tau, q.from(2, 2));
  }
}

template void tridiagonalise(Integer, OneBasedMatrix<QuarnFloat>, OneBasedVector<QuarnFloat>,
                             OneBasedVector<QuarnFloat>, OneBasedVector<QuarnFloat>);
template void tridiagonalise(Integer, OneBasedMatrix<Complex>, OneBasedVector<QuarnFloat>, OneBasedVector<QuarnFloat>,
                             OneBasedVector<Complex>);
template void form_q(Integer, OneBasedMatrix<QuarnFloat>, const QuarnFloat*, OneBasedMatrix<QuarnFloat>);
template void form_q(Integer, OneBasedMatrix<Complex>, const Complex*, OneBasedMatrix<Complex>);

}  // namespace tesk

extern "C" {

void QuarnMPX_dsytrd_(const char* uplo, Integer n, QuarnFloat* a, Integer lda, QuarnFloat* d, QuarnFloat* e,
                      QuarnFloat* tau, QuarnFloat* work, Integer lwork, Integer* info, int /*uplo_length*/) {
  *info = tesk::checked_reduction(uplo, n, a, lda, d, e, tau, work, lwork);
}

void QuarnMPX_zhetrd_(const char* uplo, Integer n, Complex* a, Integer lda, QuarnFloat* d, QuarnFloat* e, Complex* tau,
                      Complex* work, Integer lwork, Integer* info, int /*uplo_length*/) {
  *info = tesk::checked_reduction(uplo, n, a, lda, d, e, tau, work, lwork);
}

void QuarnMPX_dorgtr_(const char* uplo, Integer n, QuarnFloat* a, Integer lda, const QuarnFloat* tau, QuarnFloat* work,
                      Integer lwork, Integer* info, int /*uplo_length*/) {
  *info = tesk::checked_form(uplo, n, a, lda, tau, work, lwork);
}

void QuarnMPX_zungtr_(const char* uplo, Integer n, Complex* a, Integer lda, const Complex* tau, Complex* work,
                      Integer lwork, Integer* info, int /*uplo_length*/) {
  *info = tesk::checked_form(uplo, n, a, lda, tau, work, lwork);
}
}
