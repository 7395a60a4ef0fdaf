// The exported level-2 kernels: checks, views, call. Selector and published name do not change what is computed.
#include <algorithm>
#include <utility>

#include "src/kernels/entries.h"
#include "src/kernels/exact_level3.h"
#include "src/kernels/level2.h"
#include "tesk2mp/kernels.h"

namespace tesk {
namespace {

template <class T>
using VectorKernel = void (*)(Op, Integer, Integer, const T&, OneBasedMatrix<T>, OneBasedVector<T>, const T&,
                              OneBasedVector<T>);

template <class T>
void matrix_vector(const char* routine, VectorKernel<T> kernel, const char* trans, Integer m, Integer n, const T& alpha,
                   T* a, Integer lda, T* x, Integer incx, const T& beta, T* y, Integer incy) {
  const Integer wrong = first_wrong({{!is_op(trans), 1},
                                     {m < 0, 2},
                                     {n < 0, 3},
                                     {lda < std::max<Integer>(1, m), 6},
                                     {incx == 0, 8},
                                     {incy == 0, 11}});
  if (wrong != 0) {
    return report_bad_parameter(routine, wrong, kKernelNameLength);
  }
  const Op op = op_of(trans);
  const Integer lenx = op == Op::none ? n : m;
  kernel(op, m, n, alpha, {a, lda}, OneBasedVector<T>::of(x, lenx, incx), beta,
         OneBasedVector<T>::of(y, m + n - lenx, incy));
}

template <class T>
using TriangularKernel = void (*)(Triangle, Op, Diagonal, Integer, OneBasedMatrix<T>, OneBasedVector<T>);

template <class T>
void triangular(const char* routine, TriangularKernel<T> kernel, const char* uplo, const char* trans, const char* diag,
                Integer n, T* a, Integer lda, T* x, Integer incx) {
  const Integer wrong = first_wrong({{!is_triangle(uplo), 1},
                                     {!is_op(trans), 2},
                                     {!is_diagonal(diag), 3},
                                     {n < 0, 4},
                                     {lda < std::max<Integer>(1, n), 6},
                                     {incx == 0, 8}});
  if (wrong != 0) {
    return report_bad_parameter(routine, wrong, kKernelNameLength);
  }
  if (n > 0) {
    kernel(triangle_of(uplo), op_of(trans), diagonal_of(diag), n, {a, lda}, OneBasedVector<T>::of(x, n, incx));
  }
}

template <class T>
void rank_one(const char* routine, Op op, Integer m, Integer n, const T& alpha, T* x, Integer incx, T* y, Integer incy,
              T* a, Integer lda) {
  const Integer wrong =
      first_wrong({{m < 0, 1}, {n < 0, 2}, {incx == 0, 5}, {incy == 0, 7}, {lda < std::max<Integer>(1, m), 9}});
  if (wrong != 0) {
    return report_bad_parameter(routine, wrong, kKernelNameLength);
  }
  update_rank_one<T>(op, m, n, alpha, OneBasedVector<T>::of(x, m, incx), OneBasedVector<T>::of(y, n, incy), {a, lda});
}

}  // namespace
}  // namespace tesk

extern "C" {

void QuarnMP_f06paf_ENTRY(int, const char* trans, Integer m, Integer n, QuarnFloat alpha, QuarnFloat* a, Integer lda,
                          QuarnFloat* x, Integer incx, QuarnFloat beta, QuarnFloat* y, Integer incy, int) {
  tesk::matrix_vector<QuarnFloat>("F06PAF/DGEMV ", tesk::multiply_matrix_vector<QuarnFloat>, trans, m, n, alpha, a, lda,
                                  x, incx, beta, y, incy);
}

void QuarnMP_f06pff_ENTRY(int, const char* uplo, const char* trans, const char* diag, Integer n, QuarnFloat* a,
                          Integer lda, QuarnFloat* x, Integer incx, int, int, int) {
  tesk::triangular<QuarnFloat>("F06PFF/DTRMV ", tesk::multiply_triangular<QuarnFloat>, uplo, trans, diag, n, a, lda, x,
                               incx);
}

void QuarnMP_f06pjf_ENTRY(int, const char* uplo, const char* trans, const char* diag, Integer n, QuarnFloat* a,
                          Integer lda, QuarnFloat* x, Integer incx, int, int, int) {
  tesk::triangular<QuarnFloat>("F06PJF/DTRSV ", tesk::solve_triangular<QuarnFloat>, uplo, trans, diag, n, a, lda, x,
                               incx);
}

void QuarnMP_f06pmf_ENTRY(int, Integer m, Integer n, QuarnFloat alpha, QuarnFloat* x, Integer incx, QuarnFloat* y,
                          Integer incy, QuarnFloat* a, Integer lda) {
  tesk::rank_one("F06PMF/DGER  ", tesk::Op::none, m, n, alpha, x, incx, y, incy, a, lda);
}

void QuarnMP_f06saf_ENTRY(int, const char* trans, Integer m, Integer n, Complex alpha, Complex* a, Integer lda,
                          Complex* x, Integer incx, Complex beta, Complex* y, Integer incy, int) {
  tesk::matrix_vector<Complex>("F06SAF/ZGEMV ", tesk::multiply_matrix_vector<Complex>, trans, m, n, alpha, a, lda, x,
                               incx, beta, y, incy);
}

void QuarnMP_f06sff_ENTRY(int, const char* uplo, const char* trans, const char* diag, Integer n, Complex* a,
                          Integer lda, Complex* x, Integer incx, int, int, int) {
  tesk::triangular<Complex>("F06SFF/ZTRMV ", tesk::multiply_triangular<Complex>, uplo, trans, diag, n, a, lda, x, incx);
}

void QuarnMP_f06sjf_ENTRY(int, const char* uplo, const char* trans, const char* diag, Integer n, Complex* a,
                          Integer lda, Complex* x, Integer incx, int, int, int) {
  tesk::triangular<Complex>("F06SJF/ZTRSV ", tesk::solve_triangular<Complex>, uplo, trans, diag, n, a, lda, x, incx);
}

void QuarnMP_f06smf_ENTRY(int, Integer m, Integer n, Complex alpha, Complex* x, Integer incx, Complex* y, Integer incy,
                          Complex* a, Integer lda) {
  tesk::rank_one("F06SMF/ZGERU ", tesk::Op::none, m, n, alpha, x, incx, y, incy, a, lda);
}

void QuarnMP_f06snf_ENTRY(int, Integer m, Integer n, Complex alpha, Complex* x, Integer incx, Complex* y, Integer incy,
                          Complex* a, Integer lda) {
  tesk::rank_one("F06SNF/ZGERC ", tesk::Op::conjugate_transpose, m, n, alpha, x, incx, y, incy, a, lda);
}

void QuarnMPX_f06paf_(const char* trans, Integer m, Integer n, QuarnFloat alpha, QuarnFloat* a, Integer lda,
                      QuarnFloat* x, Integer incx, QuarnFloat beta, QuarnFloat* y, Integer incy, int) {
  tesk::matrix_vector<QuarnFloat>("F06PAF/DGEMV ", tesk::exact::multiply_matrix_vector<QuarnFloat>, trans, m, n, alpha,
                                  a, lda, x, incx, beta, y, incy);
}

void QuarnMPX_f06saf_(const char* trans, Integer m, Integer n, Complex alpha, Complex* a, Integer lda, Complex* x,
                      Integer incx, Complex beta, Complex* y, Integer incy, int) {
  tesk::matrix_vector<Complex>("F06SAF/ZGEMV ", tesk::exact::multiply_matrix_vector<Complex>, trans, m, n, alpha, a,
                               lda, x, incx, beta, y, incy);
}

void QuarnMPX_f06pjf_(const char* uplo, const char* trans, const char* diag, Integer n, QuarnFloat* a, Integer lda,
                      QuarnFloat* x, Integer incx, int, int, int) {
  tesk::triangular<QuarnFloat>("F06PJF/DTRSV ", tesk::exact::solve_triangular<QuarnFloat>, uplo, trans, diag, n, a, lda,
                               x, incx);
}

void QuarnMPX_f06sjf_(const char* uplo, const char* trans, const char* diag, Integer n, Complex* a, Integer lda,
                      Complex* x, Integer incx, int, int, int) {
  tesk::triangular<Complex>("F06SJF/ZTRSV ", tesk::exact::solve_triangular<Complex>, uplo, trans, diag, n, a, lda, x,
                            incx);
}
}
