
#include "tesk2mp/norms.h"

#include <algorithm>

#include "src/frame/check_points.h"
#include "src/frame/constants.h"
#include "src/kernels/level1.h"

namespace tesk {
namespace {

/// value := value if it is above the candidate, otherwise the candidate. The published comparison loses a NaN that a
/// number follows; full accuracy keeps it.
void keep_larger(Accuracy accuracy, QuarnFloat& value, QuarnFloat candidate) {
  const bool keeps = value > candidate || (accuracy == Accuracy::full && isnan(value));
  if (!keeps) {
    value = std::move(candidate);
  }
}

enum class Profile { general, hessenberg };

template <class T>
QuarnFloat matrix_norm(Accuracy accuracy, const char* norm, Profile profile, Integer m, Integer n, OneBasedMatrix<T> a,
                       QuarnFloat* work) {
  QuarnFloat value;
  if (m <= 0 || n <= 0) {
    return value;
  }
  CheckPoints check_points;
  // The last row of column j.
  const auto rows = [&](Integer j) {
    check_points.pass(m);
    return profile == Profile::general || j >= m ? m : j + 1;
  };
  switch (letter(norm)) {
    case 'M':
      for (Integer j = 1; j <= n; ++j) {
        for (Integer i = 1, last = rows(j); i <= last; ++i) {
          keep_larger(accuracy, value, modulus(a(i, j)));
        }
      }
      break;
    case 'O':
    case '1':
      for (Integer j = 1; j <= n; ++j) {
        QuarnFloat sum;
        for (Integer i = 1, last = rows(j); i <= last; ++i) {
          sum += modulus(a(i, j));
        }
        keep_larger(accuracy, value, std::move(sum));
      }
      break;
    case 'I': {
      const OneBasedVector<QuarnFloat> sums(work, 1);
      fill(m, QuarnFloat(), sums);
      for (Integer j = 1; j <= n; ++j) {
        for (Integer i = 1, last = rows(j); i <= last; ++i) {
          sums(i) += modulus(a(i, j));
        }
      }
      for (Integer i = 1; i <= m; ++i) {
        keep_larger(accuracy, value, sums(i));
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

using tesk::Accuracy;
using tesk::matrix_norm;
using tesk::Profile;

extern "C" {

QuarnFloat QuarnMP_f06raf_(const char* norm, Integer m, Integer n, QuarnFloat* a, Integer lda, QuarnFloat* work, int) {
  return matrix_norm<QuarnFloat>(Accuracy::classic, norm, Profile::general, m, n, {a, lda}, work);
}

QuarnFloat QuarnMPX_f06raf_(const char* norm, Integer m, Integer n, QuarnFloat* a, Integer lda, QuarnFloat* work, int) {
  return matrix_norm<QuarnFloat>(Accuracy::full, norm, Profile::general, m, n, {a, lda}, work);
}

QuarnFloat QuarnMP_f06rmf_(const char* norm, Integer n, QuarnFloat* a, Integer lda, QuarnFloat* work, int) {
  return matrix_norm<QuarnFloat>(Accuracy::classic, norm, Profile::hessenberg, n, n, {a, lda}, work);
}

QuarnFloat QuarnMPX_f06rmf_(const char* norm, Integer n, QuarnFloat* a, Integer lda, QuarnFloat* work, int) {
  return matrix_norm<QuarnFloat>(Accuracy::full, norm, Profile::hessenberg, n, n, {a, lda}, work);
}

QuarnFloat QuarnMP_f06uaf_(const char* norm, Integer m, Integer n, Complex* a, Integer lda, QuarnFloat* work, int) {
  return matrix_norm<Complex>(Accuracy::classic, norm, Profile::general, m, n, {a, lda}, work);
}

QuarnFloat QuarnMPX_f06uaf_(const char* norm, Integer m, Integer n, Complex* a, Integer lda, QuarnFloat* work, int) {
  return matrix_norm<Complex>(Accuracy::full, norm, Profile::general, m, n, {a, lda}, work);
}

QuarnFloat QuarnMP_f06umf_(const char* norm, Integer n, Complex* a, Integer lda, QuarnFloat* work, int) {
  return matrix_norm<Complex>(Accuracy::classic, norm, Profile::hessenberg, n, n, {a, lda}, work);
}

QuarnFloat QuarnMPX_f06umf_(const char* norm, Integer n, Complex* a, Integer lda, QuarnFloat* work, int) {
  return matrix_norm<Complex>(Accuracy::full, norm, Profile::hessenberg, n, n, {a, lda}, work);
}
}
