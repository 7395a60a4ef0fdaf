// E. Anderson et al., LAPACK Users' Guide: xPOTRI.
#include <vector>

#include "src/kernels/exact_level3.h"
#include "tesk2mp/linear.h"

namespace tesk {
namespace {

/// Checks, then the triangle of the inverse in the place of the factor: with A = L L^H it is M^H M, M = L^-1. Returns
/// INFO.
template <class T>
Integer invert(const char* uplo, Integer n, T* a, Integer lda) {
  const Integer wrong = first_wrong({{!is_triangle(uplo), 1}, {n < 0, 2}, {lda < std::max<Integer>(1, n), 4}});
  if (wrong != 0 || n == 0) {
    return -wrong;
  }
  const OneBasedMatrix<T> given(a, lda);
  for (Integer j = 1; j <= n; ++j) {
    if (is_zero(given(j, j))) {
      return j;
    }
  }
  // An upper factor is the lower one of the transposed, which is the conjugate, equation.
  const OneBasedMatrix<T> factor = triangle_of(uplo) == Triangle::lower ? given : given.transposed();
  std::vector<T> store(std::size_t(n) * std::size_t(n));
  const OneBasedMatrix<T> inverse(store.data(), n);
  for (Integer j = 1; j <= n; ++j) {
    inverse(j, j) = T(1.0);
  }
  exact::solve_lower(Diagonal::general, false, n, n, factor, inverse);
  exact::update_lower(true, n, n, T(1.0), inverse.transposed(), T(), factor);
  return 0;
}

}  // namespace
}  // namespace tesk

extern "C" {

void QuarnMPX_dpotri_(const char* uplo, Integer n, QuarnFloat* a, Integer lda, Integer* info, int /*uplo_length*/) {
  *info = tesk::invert(uplo, n, a, lda);
}

void QuarnMPX_zpotri_(const char* uplo, Integer n, Complex* a, Integer lda, Integer* info, int /*uplo_length*/) {
  *info = tesk::invert(uplo, n, a, lda);
}
}
