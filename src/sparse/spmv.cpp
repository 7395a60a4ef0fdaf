#include "src/sparse/spmv.h"

#include <algorithm>

#include "src/frame/check_points.h"
#include "src/kernels/scalar.h"

namespace tesk {
namespace {

/// y := A x, or conj(A) x; of a lower triangle, also what its entries stand for in the upper one.
template <Storage kStorage, bool kConjugated, class Value>
void multiply(const CoordinateMatrix<Value>& matrix, const Value* x, Value* y) {
  std::fill_n(y, std::max(matrix.n, Integer(0)), Value());
  CheckPoints check_points;
  for (Integer k = 0; k < matrix.nnz; ++k) {
    check_points.pass(1);
    const Integer row = matrix.irow[k] - 1;
    const Integer column = matrix.icol[k] - 1;
    if constexpr (kConjugated) {
      add_product(y[row], Op::conjugate_transpose, matrix.a[k], Op::none, x[column]);
    } else {
      add_product(y[row], matrix.a[k], x[column]);
    }
    if constexpr (kStorage == Storage::lower_triangle) {
      if (row != column) {
        add_product(y[column], Op::conjugate_transpose, matrix.a[k], Op::none, x[row]);
      }
    }
  }
}

}  // namespace

template <class Value>
void spmv(Storage storage, const CoordinateMatrix<Value>& a, const Value* x, Value* y) {
  if (storage == Storage::general) {
    multiply<Storage::general, false>(a, x, y);
  } else {
    multiply<Storage::lower_triangle, false>(a, x, y);
  }
}

template <class Value>
void spmv_adjoint(const CoordinateMatrix<Value>& a, const Value* x, Value* y) {
  multiply<Storage::general, true>(CoordinateMatrix<Value>{a.n, a.nnz, a.a, a.icol, a.irow}, x, y);
}

template void spmv(Storage, const CoordinateMatrix<QuarnFloat>&, const QuarnFloat*, QuarnFloat*);
template void spmv(Storage, const CoordinateMatrix<Complex>&, const Complex*, Complex*);
template void spmv_adjoint(const CoordinateMatrix<QuarnFloat>&, const QuarnFloat*, QuarnFloat*);
template void spmv_adjoint(const CoordinateMatrix<Complex>&, const Complex*, Complex*);

}  // namespace tesk
