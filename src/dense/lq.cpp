// E. Anderson et al., LAPACK Users' Guide: xGELQF, xORGLQ and xUNGLQ, xORMLQ and xUNMLQ. A = L Q is the adjoint of
// A^H = Q^H L^H: the reflectors of one are those of the other, their vectors conjugated in the rows of A.
#include "src/dense/qr.h"
#include "tesk2mp/orthogonal.h"

namespace tesk {
namespace {

template <class T>
Integer checked_lq(Integer m, Integer n, T* a, Integer lda, T* tau, T* work, Integer lwork) {
  const Integer least = std::max<Integer>(1, m);
  const Integer wrong = first_wrong({{m < 0, 1}, {n < 0, 2}, {lda < least, 4}, {lwork < least && lwork != -1, 7}});
  if (wrong != 0) {
    return -wrong;
  }
  work[0] = T(double(least));
  if (lwork != -1) {
    OwnMatrix<T> own(n, m);
    const OneBasedMatrix<T> given(a, lda);
    copy_adjoint(m, n, given, own.view());
    factorise_qr(n, m, own.view(), tau);
    copy_adjoint(n, m, own.view(), given);
  }
  return 0;
}

/// The first m rows of Q in the place of the k reflectors.
template <class T>
Integer checked_lq_form(Integer m, Integer n, Integer k, T* a, Integer lda, const T* tau, T* work, Integer lwork) {
  const Integer least = std::max<Integer>(1, m);
  const Integer wrong =
      first_wrong({{m < 0, 1}, {n < m, 2}, {k < 0 || k > m, 3}, {lda < least, 5}, {lwork < least && lwork != -1, 8}});
  if (wrong != 0) {
    return -wrong;
  }
  work[0] = T(double(least));
  if (lwork != -1) {
    OwnMatrix<T> own(n, m);
    const OneBasedMatrix<T> given(a, lda);
    copy_adjoint(k, n, given, own.view());
    form_q(n, m, k, own.view(), tau);
    copy_adjoint(n, m, own.view(), given);
  }
  return 0;
}

template <class T>
Integer checked_lq_apply(const char* side, const char* trans, Integer m, Integer n, Integer k, T* a, Integer lda,
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
                                     {lda < std::max<Integer>(1, k), 7},
                                     {ldc < std::max<Integer>(1, m), 10},
                                     {lwork < least && lwork != -1, 12}});
  if (wrong != 0) {
    return -wrong;
  }
  work[0] = T(double(least));
  if (lwork != -1 && others > 0) {
    OwnMatrix<T> own(order, k);
    copy_adjoint<T>(k, order, {a, lda}, own.view());
    apply_reflectors<T>(side_of(side), other(adjoint_option_of(trans)), order, others, k, own.view(), tau, {c, ldc});
  }
  return 0;
}

}  // namespace
}  // namespace tesk

extern "C" {

void QuarnMPX_dgelqf_(Integer m, Integer n, QuarnFloat* a, Integer lda, QuarnFloat* tau, QuarnFloat* work,
                      Integer lwork, Integer* info) {
  *info = tesk::checked_lq(m, n, a, lda, tau, work, lwork);
}

void QuarnMPX_zgelqf_(Integer m, Integer n, Complex* a, Integer lda, Complex* tau, Complex* work, Integer lwork,
                      Integer* info) {
  *info = tesk::checked_lq(m, n, a, lda, tau, work, lwork);
}

void QuarnMPX_dorglq_(Integer m, Integer n, Integer k, QuarnFloat* a, Integer lda, QuarnFloat* tau, QuarnFloat* work,
                      Integer lwork, Integer* info) {
  *info = tesk::checked_lq_form(m, n, k, a, lda, tau, work, lwork);
}

void QuarnMPX_zunglq_(Integer m, Integer n, Integer k, Complex* a, Integer lda, Complex* tau, Complex* work,
                      Integer lwork, Integer* info) {
  *info = tesk::checked_lq_form(m, n, k, a, lda, tau, work, lwork);
}

void QuarnMPX_dormlq_(const char* side, const char* trans, Integer m, Integer n, Integer k, QuarnFloat* a, Integer lda,
                      QuarnFloat* tau, QuarnFloat* c, Integer ldc, QuarnFloat* work, Integer lwork, Integer* info,
                      int /*side_length*/, int /*trans_length*/) {
  *info = tesk::checked_lq_apply(side, trans, m, n, k, a, lda, tau, c, ldc, work, lwork);
}

void QuarnMPX_zunmlq_(const char* side, const char* trans, Integer m, Integer n, Integer k, Complex* a, Integer lda,
                      Complex* tau, Complex* c, Integer ldc, Complex* work, Integer lwork, Integer* info,
                      int /*side_length*/, int /*trans_length*/) {
  *info = tesk::checked_lq_apply(side, trans, m, n, k, a, lda, tau, c, ldc, work, lwork);
}
}
