#include "src/sparse/spmv.h"

#include <algorithm>

#include "quarn/exact.h"
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

template <class Value>
void multiply_exactly(const CoordinateMatrix<Value>& matrix, const Value* x, Value* y, unsigned how) {
  const auto entries = std::size_t(std::max(matrix.nnz, Integer(0)));
  QuarnSparseProduct(std::size_t(std::max(matrix.n, Integer(0))), {entries, matrix.a, matrix.irow, matrix.icol}, x, y,
                     how);
}

}  // namespace

template <class Value>
void spmv(Sums sums, Storage storage, const CoordinateMatrix<Value>& a, const Value* x, Value* y) {
  if (sums == Sums::exact) {
    multiply_exactly(a, x, y, storage == Storage::general ? 0U : unsigned(QuarnMirrored));
  } else if (storage == Storage::general) {
    multiply<Storage::general, false>(a, x, y);
  } else {
    multiply<Storage::lower_triangle, false>(a, x, y);
  }
}

template <class Value>
void spmv_adjoint(Sums sums, const CoordinateMatrix<Value>& a, const Value* x, Value* y) {
  const CoordinateMatrix<Value> transposed{a.n, a.nnz, a.a, a.icol, a.irow};
  if (sums == Sums::exact) {
    multiply_exactly(transposed, x, y, QuarnConjugateA);
  } else {
    multiply<Storage::general, true>(transposed, x, y);
  }
}

template void spmv(Sums, Storage, const CoordinateMatrix<QuarnFloat>&, const QuarnFloat*, QuarnFloat*);
template void spmv(Sums, Storage, const CoordinateMatrix<Complex>&, const Complex*, Complex*);
template void spmv_adjoint(Sums, const CoordinateMatrix<QuarnFloat>&, const QuarnFloat*, QuarnFloat*);
template void spmv_adjoint(Sums, const CoordinateMatrix<Complex>&, const Complex*, Complex*);

}  // namespace tesk
