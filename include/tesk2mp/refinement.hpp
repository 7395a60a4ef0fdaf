// Refinement of solutions of the C++ interface. Part of tesk2mp.hpp; refinement.h describes method and cost.
#pragma once

#include <utility>
#include <vector>

#include "tesk2mp/dense.hpp"
#include "tesk2mp/refinement.h"

namespace tesk2mp {

/// What refine() found.
template <Scalar T>
struct Refined {
  Matrix<T> x;
  std::vector<Real> forward_errors;   ///< of each column: estimate of the largest error beside the largest element
  std::vector<Real> backward_errors;  ///< of each column: the largest |b - A x| / (|A| |x| + |b|)
  Integer corrections = 0;            ///< the most of a column
  bool converged = true;              ///< every column has; otherwise A is singular to the working precision
};

/// The solution of op(A) X = B, or of one system, from the factors of A, corrected by exact residuals until its largest
/// element is good to the last digit.
///
/// @code
/// const tesk2mp::LU factors(a);
/// const auto x = tesk2mp::refine(a, factors, b).x;
/// @endcode
template <MatrixSource A, MatrixSource B>
Refined<Element<A>> refine(const A& a, const LU<Element<A>>& factors, const B& b, Op op = Op::none) {
  using T = Element<A>;
  const char* const routine = detail::name<T>("DGERFS", "ZGERFS");
  const detail::RawMatrix<T> ra{MatrixView<const T>(a)};
  const detail::RawMatrix<T> rf{factors.factors().view()};
  const MatrixView<const T> right(b);
  detail::require(ra.rows == rf.rows && ra.columns == rf.columns, routine, 6, "factors of ", rf.rows, " by ",
                  rf.columns, " for a matrix of ", ra.rows, " by ", ra.columns);
  Refined<T> refined{factors.solve(right, op), {}, {}};
  refined.forward_errors.resize(right.columns());
  refined.backward_errors.resize(right.columns());
  const detail::RawMatrix<T> rb{right};
  const detail::RawMatrix<T> rx{refined.x.view()};
  std::vector<Integer> rows = factors.pivots();
  for (Integer& row : rows) {
    ++row;
  }
  T corrections(0);
  Integer info = 0;
  detail::pick<T>(QuarnMPX_dgerfs_, QuarnMPX_zgerfs_)(detail::Option(op), ra.rows, rb.columns, ra.data, ra.leading,
                                                      rf.data, rf.leading, rows.data(), rb.data, rb.leading, rx.data,
                                                      rx.leading, refined.forward_errors.data(),
                                                      refined.backward_errors.data(), &corrections, nullptr, &info, 1);
  refined.corrections = FloatToInt(Complex(corrections).re);
  refined.converged = info == 0;
  return refined;
}
template <MatrixSource A, VectorSource B>
Refined<Element<A>> refine(const A& a, const LU<Element<A>>& factors, const B& b, Op op = Op::none) {
  const std::vector<Element<A>> column = VectorView<const Element<A>>(b).to_vector();
  return refine(a, factors, MatrixView<const Element<A>>(column, column.size(), 1), op);
}

}  // namespace tesk2mp
