// Bounds of the sizes of matrices.
#pragma once

#include "src/proven/approximate_inverse.h"

namespace tesk::proven {

/// Collects the elements of a matrix, and bounds its 2-norm: by the Frobenius norm, and by the root of the largest row
/// sum times the largest column sum.
class SpectralNorm {
 public:
  explicit SpectralNorm(Integer rows) : rows_(std::size_t(rows) + 1) {}

  void next_column() { column_ = QuarnBound(); }
  void take(Integer i, const QuarnBound& size) {
    squares_ += size * size;
    QuarnBound& row = rows_[std::size_t(i)];
    row += size;
    column_ += size;
    most_in_row_ = std::max(most_in_row_, row);
    most_in_column_ = std::max(most_in_column_, column_);
  }
  QuarnBound bound() const { return std::min(sqrt(squares_), sqrt(most_in_row_ * most_in_column_)); }

 private:
  std::vector<QuarnBound> rows_;
  QuarnBound column_;
  QuarnBound squares_;
  QuarnBound most_in_row_;
  QuarnBound most_in_column_;
};

/// ||I - U^H U|| for the k columns of U, of m elements.
template <class T>
QuarnBound defect(Integer m, Integer k, OneBasedMatrix<T> u, const Range& range) {
  const WorkingDigits scope(kFewDigits);
  const Rounded rounded(kFewDigits, range);
  OwnMatrix<T> own(k, k);
  const OneBasedMatrix<T> g = own.view();
  set_identity(k, g);
  exact::multiply_matrices(Op::conjugate_transpose, Op::none, k, k, m, T(-1.0), u, u, T(1.0), g);
  SpectralNorm norm(k);
  for (Integer j = 1; j <= k; ++j) {
    norm.next_column();
    for (Integer i = 1; i <= k; ++i) {
      norm.take(i, rounded.size(g(i, j)));
    }
  }
  return norm.bound();
}

/// A lower bound of |x| or |z| as a number of few digits.
template <class T>
QuarnFloat least_size(const T& x) {
  const WorkingDigits scope(kFewDigits);
  return modulus(x) * (1 - QuarnFloat(1, 6 - kFewDigits));
}
/// An upper bound of 1 / x where x > 0 is a lower bound; infinity otherwise.
inline QuarnBound reciprocal_bound(const QuarnFloat& x) {
  const WorkingDigits scope(kFewDigits);
  return x > 0 ? QuarnBound(1 / x * (1 + QuarnFloat(1, 3 - kFewDigits))) : QuarnBound::infinity();
}

}  // namespace tesk::proven
