#include <algorithm>

#include "src/kernels/level1.h"
#include "tesk2mp/kernels.h"

namespace tesk {
namespace {

/// value := value if it is above the candidate, otherwise the candidate; so that a NaN is seen, at least at the end.
void keep_larger(QuarnFloat& value, QuarnFloat candidate) {
  if (!(value > candidate)) {
    value = std::move(candidate);
  }
}

enum class Profile { general, hessenberg };

template <class T>
QuarnFloat matrix_norm(const char* norm, Profile profile, Integer m, Integer n, MatrixView<T> a, QuarnFloat* work) {
  QuarnFloat value;
  if (m <= 0 || n <= 0) {
    return value;
  }
  // The last row of column j.
  const auto rows = [&](Integer j) { return profile == Profile::general || j >= m ? m : j + 1; };
  switch (letter(norm)) {
    case 'M':
      for (Integer j = 1; j <= n; ++j) {
        for (Integer i = 1; i <= rows(j); ++i) {
          keep_larger(value, modulus(a(i, j)));
        }
      }
      break;
    case 'O':
    case '1':
      for (Integer j = 1; j <= n; ++j) {
        QuarnFloat sum;
        for (Integer i = 1; i <= rows(j); ++i) {
          sum += modulus(a(i, j));
        }
        keep_larger(value, std::move(sum));
      }
      break;
    case 'I': {
      const VectorView<QuarnFloat> sums(work, 1);
      fill(m, QuarnFloat(), sums);
      for (Integer j = 1; j <= n; ++j) {
        for (Integer i = 1; i <= rows(j); ++i) {
          sums(i) += modulus(a(i, j));
        }
      }
      for (Integer i = 1; i <= m; ++i) {
        keep_larger(value, sums(i));
      }
      break;
    }
    case 'F':
    case 'E': {
      QuarnFloat scale;
      QuarnFloat sumsq(1);
      for (Integer j = 1; j <= n; ++j) {
        add_squares(rows(j), a.column(j), scale, sumsq);
      }
      value = scale * sqrt(sumsq);
      break;
    }
    default:
      break;
  }
  return value;
}

}  // namespace
}  // namespace tesk

using tesk::matrix_norm;
using tesk::Profile;

extern "C" {

QuarnFloat QuarnMP_f06raf_(const char* norm, Integer m, Integer n, QuarnFloat* a, Integer lda, QuarnFloat* work, int) {
  return matrix_norm<QuarnFloat>(norm, Profile::general, m, n, {a, lda}, work);
}

QuarnFloat QuarnMP_f06rmf_(const char* norm, Integer n, QuarnFloat* a, Integer lda, QuarnFloat* work, int) {
  return matrix_norm<QuarnFloat>(norm, Profile::hessenberg, n, n, {a, lda}, work);
}

QuarnFloat QuarnMP_f06uaf_(const char* norm, Integer m, Integer n, Complex* a, Integer lda, QuarnFloat* work, int) {
  return matrix_norm<Complex>(norm, Profile::general, m, n, {a, lda}, work);
}

QuarnFloat QuarnMP_f06umf_(const char* norm, Integer n, Complex* a, Integer lda, QuarnFloat* work, int) {
  return matrix_norm<Complex>(norm, Profile::hessenberg, n, n, {a, lda}, work);
}
}
