// The exported level-3 kernels: checks, views, call. Selector and published name do not change what is computed.
#include <algorithm>
#include <utility>

#include "src/kernels/entries.h"
#include "src/kernels/exact_level3.h"
#include "tesk2mp/kernels.h"

namespace tesk {
namespace {

template <class T>
using ProductKernel = void (*)(Op, Op, Integer, Integer, Integer, const T&, OneBasedMatrix<T>, OneBasedMatrix<T>,
                               const T&, OneBasedMatrix<T>);

template <class T>
void matrix_matrix(const char* routine, ProductKernel<T> kernel, const char* transa, const char* transb, Integer m,
                   Integer n, Integer k, const T& alpha, T* a, Integer lda, T* b, Integer ldb, const T& beta, T* c,
                   Integer ldc) {
  const Integer rows_a = letter(transa) == 'N' ? m : k;
  const Integer rows_b = letter(transb) == 'N' ? k : n;
  const Integer wrong = first_wrong({{!is_op(transa), 1},
                                     {!is_op(transb), 2},
                                     {m < 0, 3},
                                     {n < 0, 4},
                                     {k < 0, 5},
                                     {lda < std::max<Integer>(1, rows_a), 8},
                                     {ldb < std::max<Integer>(1, rows_b), 10},
                                     {ldc < std::max<Integer>(1, m), 13}});
  if (wrong != 0) {
    return report_bad_parameter(routine, wrong, kKernelNameLength);
  }
  kernel(op_of(transa), op_of(transb), m, n, k, alpha, {a, lda}, {b, ldb}, beta, {c, ldc});
}

template <class T>
using SolutionKernel = void (*)(Side, Triangle, Op, Diagonal, Integer, Integer, const T&, OneBasedMatrix<T>,
                                OneBasedMatrix<T>);

template <class T>
void triangular_matrix(const char* routine, SolutionKernel<T> kernel, const char* side, const char* uplo,
                       const char* transa, const char* diag, Integer m, Integer n, const T& alpha, T* a, Integer lda,
                       T* b, Integer ldb) {
  const Integer order = letter(side) == 'L' ? m : n;
  const Integer wrong = first_wrong({{!is_side(side), 1},
                                     {!is_triangle(uplo), 2},
                                     {!is_op(transa), 3},
                                     {!is_diagonal(diag), 4},
                                     {m < 0, 5},
                                     {n < 0, 6},
                                     {lda < std::max<Integer>(1, order), 9},
                                     {ldb < std::max<Integer>(1, m), 11}});
  if (wrong != 0) {
    return report_bad_parameter(routine, wrong, kKernelNameLength);
  }
  kernel(side_of(side), triangle_of(uplo), op_of(transa), diagonal_of(diag), m, n, alpha, {a, lda}, {b, ldb});
}

template <class T>
using UpdateKernel = void (*)(Triangle, Op, Integer, Integer, const QuarnFloat&, OneBasedMatrix<T>, const QuarnFloat&,
                              OneBasedMatrix<T>);

template <class T>
void hermitian_update(const char* routine, UpdateKernel<T> kernel, const char* uplo, const char* trans, Integer n,
                      Integer k, const QuarnFloat& alpha, T* a, Integer lda, const QuarnFloat& beta, T* c,
                      Integer ldc) {
  constexpr bool kComplex = sizeof(T) != sizeof(QuarnFloat);
  const Integer rows_a = letter(trans) == 'N' ? n : k;
  const Integer wrong = first_wrong({{!is_triangle(uplo), 1},
                                     {!is_op(trans) || (kComplex && letter(trans) == 'T'), 2},
                                     {n < 0, 3},
                                     {k < 0, 4},
                                     {lda < std::max<Integer>(1, rows_a), 7},
                                     {ldc < std::max<Integer>(1, n), 10}});
  if (wrong != 0) {
    return report_bad_parameter(routine, wrong, kKernelNameLength);
  }
  kernel(triangle_of(uplo), op_of(trans), n, k, alpha, {a, lda}, beta, {c, ldc});
}

}  // namespace
}  // namespace tesk

extern "C" {

void QuarnMP_f06yaf_ENTRY(int, const char* transa, const char* transb, Integer m, Integer n, Integer k,
                          QuarnFloat alpha, QuarnFloat* a, Integer lda, QuarnFloat* b, Integer ldb, QuarnFloat beta,
                          QuarnFloat* c, Integer ldc, int, int) {
  tesk::matrix_matrix<QuarnFloat>("F06YAF/DGEMM ", tesk::multiply_matrices<QuarnFloat>, transa, transb, m, n, k, alpha,
                                  a, lda, b, ldb, beta, c, ldc);
}

void QuarnMP_f06yjf_ENTRY(int, const char* side, const char* uplo, const char* transa, const char* diag, Integer m,
                          Integer n, QuarnFloat alpha, QuarnFloat* a, Integer lda, QuarnFloat* b, Integer ldb, int, int,
                          int, int) {
  tesk::triangular_matrix<QuarnFloat>("F06YJF/DTRSM ", tesk::solve_triangular_matrix<QuarnFloat>, side, uplo, transa,
                                      diag, m, n, alpha, a, lda, b, ldb);
}

void QuarnMP_f06zaf_ENTRY(int, const char* transa, const char* transb, Integer m, Integer n, Integer k, Complex alpha,
                          Complex* a, Integer lda, Complex* b, Integer ldb, Complex beta, Complex* c, Integer ldc, int,
                          int) {
  tesk::matrix_matrix<Complex>("F06ZAF/ZGEMM ", tesk::multiply_matrices<Complex>, transa, transb, m, n, k, alpha, a,
                               lda, b, ldb, beta, c, ldc);
}

void QuarnMP_f06zjf_ENTRY(int, const char* side, const char* uplo, const char* transa, const char* diag, Integer m,
                          Integer n, Complex alpha, Complex* a, Integer lda, Complex* b, Integer ldb, int, int, int,
                          int) {
  tesk::triangular_matrix<Complex>("F06ZJF/ZTRSM ", tesk::solve_triangular_matrix<Complex>, side, uplo, transa, diag, m,
                                   n, alpha, a, lda, b, ldb);
}

void QuarnMP_f06zpf_ENTRY(int, const char* uplo, const char* trans, Integer n, Integer k, QuarnFloat alpha, Complex* a,
                          Integer lda, QuarnFloat beta, Complex* c, Integer ldc, int, int) {
  tesk::hermitian_update<Complex>("F06ZPF/ZHERK ", tesk::update_hermitian, uplo, trans, n, k, alpha, a, lda, beta, c,
                                  ldc);
}

void QuarnMPX_f06yaf_(const char* transa, const char* transb, Integer m, Integer n, Integer k, QuarnFloat alpha,
                      QuarnFloat* a, Integer lda, QuarnFloat* b, Integer ldb, QuarnFloat beta, QuarnFloat* c,
                      Integer ldc, int, int) {
  tesk::matrix_matrix<QuarnFloat>("F06YAF/DGEMM ", tesk::exact::multiply_matrices<QuarnFloat>, transa, transb, m, n, k,
                                  alpha, a, lda, b, ldb, beta, c, ldc);
}

void QuarnMPX_f06zaf_(const char* transa, const char* transb, Integer m, Integer n, Integer k, Complex alpha,
                      Complex* a, Integer lda, Complex* b, Integer ldb, Complex beta, Complex* c, Integer ldc, int,
                      int) {
  tesk::matrix_matrix<Complex>("F06ZAF/ZGEMM ", tesk::exact::multiply_matrices<Complex>, transa, transb, m, n, k, alpha,
                               a, lda, b, ldb, beta, c, ldc);
}

void QuarnMPX_f06yjf_(const char* side, const char* uplo, const char* transa, const char* diag, Integer m, Integer n,
                      QuarnFloat alpha, QuarnFloat* a, Integer lda, QuarnFloat* b, Integer ldb, int, int, int, int) {
  tesk::triangular_matrix<QuarnFloat>("F06YJF/DTRSM ", tesk::exact::solve_triangular_matrix<QuarnFloat>, side, uplo,
                                      transa, diag, m, n, alpha, a, lda, b, ldb);
}

void QuarnMPX_f06zjf_(const char* side, const char* uplo, const char* transa, const char* diag, Integer m, Integer n,
                      Complex alpha, Complex* a, Integer lda, Complex* b, Integer ldb, int, int, int, int) {
  tesk::triangular_matrix<Complex>("F06ZJF/ZTRSM ", tesk::exact::solve_triangular_matrix<Complex>, side, uplo, transa,
                                   diag, m, n, alpha, a, lda, b, ldb);
}

void QuarnMPX_f06zpf_(const char* uplo, const char* trans, Integer n, Integer k, QuarnFloat alpha, Complex* a,
                      Integer lda, QuarnFloat beta, Complex* c, Integer ldc, int, int) {
  tesk::hermitian_update<Complex>("F06ZPF/ZHERK ", tesk::exact::update_hermitian<Complex>, uplo, trans, n, k, alpha, a,
                                  lda, beta, c, ldc);
}

void QuarnMPX_dsyrk_(const char* uplo, const char* trans, Integer n, Integer k, QuarnFloat alpha, QuarnFloat* a,
                     Integer lda, QuarnFloat beta, QuarnFloat* c, Integer ldc, int, int) {
  tesk::hermitian_update<QuarnFloat>("DSYRK        ", tesk::exact::update_hermitian<QuarnFloat>, uplo, trans, n, k,
                                     alpha, a, lda, beta, c, ldc);
}
}
