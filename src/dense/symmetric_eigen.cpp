// Eigenvalues and eigenvectors of symmetric and Hermitian matrices: E. Anderson et al., LAPACK Users' Guide, xSYEV and
// xHEEV.
#include "src/dense/guard_digits.h"
#include "src/dense/power_of_ten.h"
#include "src/dense/rotation_sweeps.h"
#include "src/dense/tridiagonal.h"
#include "tesk2mp/eigenproblems.h"

namespace tesk {
namespace {

// Fewer rows are left to the QL algorithm.
constexpr Integer kFewestToDivide = 40;

}  // namespace

template <class T>
Integer hermitian_eigen(bool wants_vectors, Triangle triangle, Integer n, OneBasedMatrix<T> a, QuarnFloat* w) {
  OwnMatrix<T> own = hermitian_copy(triangle, n, a);
  const OneBasedMatrix<T> full = own.view();
  const OneBasedMatrix<QuarnFloat> numbers = parts(full);
  const Integer height = n * kParts<T>;
  for (Integer j = 1; j <= n; ++j) {
    for (Integer i = 1; i <= height; ++i) {
      if (!isfinite(numbers(i, j))) {
        return n;
      }
    }
  }
  const Integer exponent = far_exponent(height, n, numbers);
  multiply_by_power(height, n, numbers, -exponent);
  std::vector<QuarnFloat> e(static_cast<std::size_t>(n));
  std::vector<T> tau(e.size());
  const OneBasedVector<QuarnFloat> d(w, 1);
  tridiagonalise<T>(n, full, d, {e.data(), 1}, {tau.data(), 1});
  if (wants_vectors) {
    form_q(n, full, tau.data(), a);
  }
  const Integer rows = wants_vectors ? n : 0;
  const Integer info = rows >= kFewestToDivide ? divide_and_conquer<T>(n, d, {e.data(), 1}, rows, a)
                                               : tridiagonal_qr<T>(n, d, {e.data(), 1}, rows, a);
  multiply_by_power(n, 1, {w, n}, exponent);
  return info;
}
template Integer hermitian_eigen(bool, Triangle, Integer, OneBasedMatrix<QuarnFloat>, QuarnFloat*);
template Integer hermitian_eigen(bool, Triangle, Integer, OneBasedMatrix<Complex>, QuarnFloat*);

namespace {

template <class T>
Integer checked_symmetric_eigen(const char* jobz, const char* uplo, Integer n, T* a, Integer lda, QuarnFloat* w,
                                T* work, Integer lwork, Integer least) {
  const Integer wrong = first_wrong({{letter(jobz) != 'N' && letter(jobz) != 'V', 1},
                                     {!is_triangle(uplo), 2},
                                     {n < 0, 3},
                                     {lda < std::max<Integer>(1, n), 5},
                                     {lwork < least && lwork != -1, 8}});
  if (wrong != 0) {
    return -wrong;
  }
  work[0] = T(double(least));
  if (lwork == -1 || n == 0) {
    return 0;
  }
  const bool wants_vectors = letter(jobz) == 'V';
  Integer info = 0;
  {
    const WorkingDigits more(guarded_digits(n));
    info = hermitian_eigen<T>(wants_vectors, triangle_of(uplo), n, {a, lda}, w);
  }
  round_elements<QuarnFloat>(n, 1, {w, n});
  round_elements<T>(n, wants_vectors ? n : 0, {a, lda});
  return info;
}

}  // namespace
}  // namespace tesk

extern "C" {

void QuarnMPX_dsyev_(const char* jobz, const char* uplo, Integer n, QuarnFloat* a, Integer lda, QuarnFloat* w,
                     QuarnFloat* work, Integer lwork, Integer* info, int /*jobz_length*/, int /*uplo_length*/) {
  *info = tesk::checked_symmetric_eigen(jobz, uplo, n, a, lda, w, work, lwork, std::max<Integer>(1, 3 * n - 1));
}

void QuarnMPX_zheev_(const char* jobz, const char* uplo, Integer n, Complex* a, Integer lda, QuarnFloat* w,
                     Complex* work, Integer lwork, QuarnFloat* /*rwork*/, Integer* info, int /*jobz_length*/,
                     int /*uplo_length*/) {
  *info = tesk::checked_symmetric_eigen(jobz, uplo, n, a, lda, w, work, lwork, std::max<Integer>(1, 2 * n - 1));
}
}
