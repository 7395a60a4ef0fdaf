// E. Anderson et al., LAPACK Users' Guide: xGEQRF, xORGQR and xUNGQR, xORMQR and xUNMQR, xGELS. G. H. Golub, Numerical
// methods for solving linear least squares problems, Numer. Math. 7 (1965).
#include "src/dense/qr.h"

#include <utility>

#include "quarn/quarnthread.h"
#include "tesk2mp/orthogonal.h"

namespace tesk {
namespace {

/// Columns one after the other; of m rows.
template <class T>
void factorise_columns(Integer m, Integer n, OneBasedMatrix<T> a, T* tau) {
  for (Integer j = 1; j <= std::min(m, n); ++j) {
    QuarnCheckInterrupt();
    const OneBasedVector<T> v = a.column(j).from(j);
    tau[j - 1] = make_reflector(m - j + 1, v);
    const T beta = std::exchange(v(1), T(1.0));
    reflect_left(m - j + 1, n - j, conjugate(tau[j - 1]), v, a.from(j, j + 1));
    v(1) = beta;
  }
}

}  // namespace

/// Columns by halves, so that most of the work is in products of matrices; then what is beside them.
template <class T>
void factorise_qr(Integer m, Integer n, OneBasedMatrix<T> a, T* tau) {
  constexpr Integer kFewColumns = 8;
  const Integer steps = std::min(m, n);
  if (n <= kFewColumns || m <= BlockReflector<T>::kFewRows) {
    return factorise_columns(m, n, a, tau);
  }
  const Integer left = std::min(BlockReflector<T>::kMost, steps / 2);
  factorise_qr(m, left, a, tau);
  BlockReflector<T>(m, left, a, tau).apply_left(Op::conjugate_transpose, n - left, a.from(1, left + 1));
  factorise_qr(m - left, n - left, a.from(left + 1, left + 1), tau + left);
}

template <class T>
void form_q(Integer m, Integer n, Integer k, OneBasedMatrix<T> a, const T* tau) {
  OwnMatrix<T> own(m, n);
  const OneBasedMatrix<T> q = own.view();
  for (Integer j = 1; j <= n; ++j) {
    q(j, j) = T(1.0);
  }
  apply_reflectors(Side::left, Op::none, m, n, k, a, tau, q);
  for (Integer j = 1; j <= n; ++j) {
    for (Integer i = 1; i <= m; ++i) {
      a(i, j) = std::move(q(i, j));
    }
  }
}

template void factorise_qr(Integer, Integer, OneBasedMatrix<QuarnFloat>, QuarnFloat*);
template void factorise_qr(Integer, Integer, OneBasedMatrix<Complex>, Complex*);
template void form_q(Integer, Integer, Integer, OneBasedMatrix<QuarnFloat>, const QuarnFloat*);
template void form_q(Integer, Integer, Integer, OneBasedMatrix<Complex>, const Complex*);

namespace {

template <class T>
Integer checked_qr(Integer m, Integer n, T* a, Integer lda, T* tau, T* work, Integer lwork) {
  const Integer least = std::max<Integer>(1, n);
  const Integer wrong =
      first_wrong({{m < 0, 1}, {n < 0, 2}, {lda < std::max<Integer>(1, m), 4}, {lwork < least && lwork != -1, 7}});
  if (wrong != 0) {
    return -wrong;
  }
  work[0] = T(double(least));
  if (lwork != -1) {
    factorise_qr<T>(m, n, {a, lda}, tau);
  }
  return 0;
}

template <class T>
Integer checked_form(Integer m, Integer n, Integer k, T* a, Integer lda, const T* tau, T* work, Integer lwork) {
  const Integer least = std::max<Integer>(1, n);
  const Integer wrong = first_wrong({{m < 0, 1},
                                     {n < 0 || n > m, 2},
                                     {k < 0 || k > n, 3},
                                     {lda < std::max<Integer>(1, m), 5},
                                     {lwork < least && lwork != -1, 8}});
  if (wrong != 0) {
    return -wrong;
  }
  work[0] = T(double(least));
  if (lwork != -1) {
    form_q<T>(m, n, k, {a, lda}, tau);
  }
  return 0;
}

template <class T>
Integer checked_apply(const char* side, const char* trans, Integer m, Integer n, Integer k, T* a, Integer lda,
                      const T* tau, T* c, Integer ldc, T* work, Integer lwork) {
  const bool left = letter(side) == 'L';
  const Integer order = left ? m : n;
  const Integer others = left ? n : m;
  const Integer least = std::max<Integer>(1, others);
  const Integer wrong = first_wrong({{!is_side(side), 1},
                                     {!is_adjoint_option<T>(trans), 2},
                                     {m < 0, 3},
                                     {n < 0, 4},
                                     {k < 0 || k > order, 5},
                                     {lda < std::max<Integer>(1, order), 7},
                                     {ldc < std::max<Integer>(1, m), 10},
                                     {lwork < least && lwork != -1, 12}});
  if (wrong != 0) {
    return -wrong;
  }
  work[0] = T(double(least));
  if (lwork != -1 && others > 0) {
    apply_reflectors<T>(side_of(side), adjoint_option_of(trans), order, others, k, {a, lda}, tau, {c, ldc});
  }
  return 0;
}

/// The x of least norm among those with the least norm(b - op(A) x), op(A) of full rank, for each column of B.
template <class T>
Integer least_squares(const char* trans, Integer m, Integer n, Integer nrhs, T* a, Integer lda, T* b, Integer ldb,
                      T* work, Integer lwork) {
  const Integer least = std::max<Integer>(1, std::min(m, n) + std::max(std::min(m, n), nrhs));
  const Integer wrong = first_wrong({{!is_adjoint_option<T>(trans), 1},
                                     {m < 0, 2},
                                     {n < 0, 3},
                                     {nrhs < 0, 4},
                                     {lda < std::max<Integer>(1, m), 6},
                                     {ldb < std::max<Integer>({1, m, n}), 8},
                                     {lwork < least && lwork != -1, 10}});
  if (wrong != 0) {
    return -wrong;
  }
  work[0] = T(double(least));
  if (lwork == -1) {
    return 0;
  }
  // The tall one of A and its adjoint is factorised; equations with the other one have x = Q R^-H b.
  const bool plain = letter(trans) == 'N';
  const bool tall = m >= n;
  OwnQR<T> qr(tall ? Op::none : Op::conjugate_transpose, m, n, {a, lda});
  const Integer rows = qr.rows();
  const Integer columns = qr.columns();
  if (const Integer zero = first_zero_on_diagonal(columns, qr.r()); zero != 0) {
    return zero;
  }
  const OneBasedMatrix<T> x(b, ldb);
  if (tall == plain) {
    qr.apply(Side::left, Op::conjugate_transpose, nrhs, x);
    solve_upper(Op::none, columns, nrhs, qr.r(), x);
    return 0;
  }
  solve_upper(Op::conjugate_transpose, columns, nrhs, qr.r(), x);
  for (Integer j = 1; j <= nrhs; ++j) {
    fill(rows - columns, T(), x.column(j).from(columns + 1));
  }
  qr.apply(Side::left, Op::none, nrhs, x);
  return 0;
}

}  // namespace
}  // namespace tesk

extern "C" {

void QuarnMPX_dgeqrf_(Integer m, Integer n, QuarnFloat* a, Integer lda, QuarnFloat* tau, QuarnFloat* work,
                      Integer lwork, Integer* info) {
  *info = tesk::checked_qr(m, n, a, lda, tau, work, lwork);
}

void QuarnMPX_zgeqrf_(Integer m, Integer n, Complex* a, Integer lda, Complex* tau, Complex* work, Integer lwork,
                      Integer* info) {
  *info = tesk::checked_qr(m, n, a, lda, tau, work, lwork);
}

void QuarnMPX_dorgqr_(Integer m, Integer n, Integer k, QuarnFloat* a, Integer lda, QuarnFloat* tau, QuarnFloat* work,
                      Integer lwork, Integer* info) {
  *info = tesk::checked_form(m, n, k, a, lda, tau, work, lwork);
}

void QuarnMPX_zungqr_(Integer m, Integer n, Integer k, Complex* a, Integer lda, Complex* tau, Complex* work,
                      Integer lwork, Integer* info) {
  *info = tesk::checked_form(m, n, k, a, lda, tau, work, lwork);
}

void QuarnMPX_dormqr_(const char* side, const char* trans, Integer m, Integer n, Integer k, QuarnFloat* a, Integer lda,
                      QuarnFloat* tau, QuarnFloat* c, Integer ldc, QuarnFloat* work, Integer lwork, Integer* info,
                      int /*side_length*/, int /*trans_length*/) {
  *info = tesk::checked_apply(side, trans, m, n, k, a, lda, tau, c, ldc, work, lwork);
}

void QuarnMPX_zunmqr_(const char* side, const char* trans, Integer m, Integer n, Integer k, Complex* a, Integer lda,
                      Complex* tau, Complex* c, Integer ldc, Complex* work, Integer lwork, Integer* info,
                      int /*side_length*/, int /*trans_length*/) {
  *info = tesk::checked_apply(side, trans, m, n, k, a, lda, tau, c, ldc, work, lwork);
}

void QuarnMPX_dgels_(const char* trans, Integer m, Integer n, Integer nrhs, QuarnFloat* a, Integer lda, QuarnFloat* b,
                     Integer ldb, QuarnFloat* work, Integer lwork, Integer* info, int /*trans_length*/) {
  *info = tesk::least_squares(trans, m, n, nrhs, a, lda, b, ldb, work, lwork);
}

void QuarnMPX_zgels_(const char* trans, Integer m, Integer n, Integer nrhs, Complex* a, Integer lda, Complex* b,
                     Integer ldb, Complex* work, Integer lwork, Integer* info, int /*trans_length*/) {
  *info = tesk::least_squares(trans, m, n, nrhs, a, lda, b, ldb, work, lwork);
}
}
