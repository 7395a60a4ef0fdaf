// Complete factorisations of sparse matrices: entries.
#include <algorithm>
#include <limits>
#include <new>
#include <utility>

#include "src/kernels/options.h"
#include "src/sparse/direct.h"
#include "src/sparse/fill_order.h"
#include "src/sparse/structure.h"
#include "tesk2mp/sparse_direct.h"

namespace tesk {
namespace {

/// The order from 0, or none where that given is no permutation.
std::vector<Integer> given_order(Integer n, const Integer* order) {
  std::vector<Integer> from_zero;
  std::vector<char> seen(static_cast<std::size_t>(n));
  for (Integer k = 0; k < n; ++k) {
    if (order[k] < 1 || order[k] > n || seen[std::size_t(order[k]) - 1] != 0) {
      return {};
    }
    seen[std::size_t(order[k]) - 1] = 1;
    from_zero.push_back(order[k] - 1);
  }
  return from_zero;
}

/// Where the caller wants the factors.
template <class Value, class Storage>
struct Delivery {
  Storage storage;
  void* context;
  Integer* row_order;
  Integer* column_order;  // null with Cholesky factors
  Integer* starts;
  Integer* diagonals;  // null with Cholesky factors

  void deliver(DirectFactors<Value>& factors) const {
    std::size_t count = 0;
    for (const FactorRow<Value>& row : factors.rows) {
      count += row.columns.size();
    }
    if (count > std::size_t(std::numeric_limits<Integer>::max() - 1)) {
      throw std::bad_alloc();
    }
    Value* a = nullptr;
    Integer* irow = nullptr;
    Integer* icol = nullptr;
    storage(context, Integer(count), &a, &irow, &icol);
    Integer place = 0;
    for (std::size_t k = 0; k < factors.rows.size(); ++k) {
      FactorRow<Value> row = std::move(factors.rows[k]);
      starts[k] = place + 1;
      if (diagonals != nullptr) {
        diagonals[k] = place + factors.diagonals[k] + 1;
        column_order[k] = factors.column_order[k] + 1;
      }
      row_order[k] = factors.row_order[k] + 1;
      for (std::size_t at = 0; at < row.columns.size(); ++at, ++place) {
        a[place] = std::move(row.values[at]);
        irow[place] = Integer(k) + 1;
        icol[place] = row.columns[at] + 1;
      }
    }
    starts[factors.rows.size()] = place + 1;
  }
};

/// Checks, factorises and delivers; returns INFO.
template <class Value, class Storage>
Integer factorise(tesk::Storage kind, const CoordinateMatrix<Value>& matrix, const Integer* order,
                  const Delivery<Value, Storage>& delivery) {
  const StructureFault fault = f11_check_cs(matrix.n, matrix.nnz, matrix.irow, matrix.icol, kind).fault;
  if (fault != StructureFault::none) {
    return -argument_at_fault(fault);
  }
  const bool general = kind == tesk::Storage::general;
  const std::vector<Integer> steps = order != nullptr
                                         ? given_order(matrix.n, order)
                                         : least_fill_order(general ? FillOf::rows : FillOf::symmetric, matrix.n,
                                                            matrix.nnz, matrix.irow, matrix.icol);
  if (steps.empty()) {
    return -6;
  }
  DirectFactors<Value> factors = general ? direct_lu(matrix, steps) : direct_cholesky(matrix, steps);
  if (factors.failed == 0) {
    delivery.deliver(factors);
  }
  return factors.failed;
}

bool all_in_range(Integer n, Integer nnz, const Integer* indices) {
  return std::all_of(indices, indices + std::max<Integer>(nnz, 0), [&](Integer i) { return i >= 1 && i <= n; });
}

}  // namespace
}  // namespace tesk

extern "C" {

void QuarnMPX_sparse_order_(const char* kind, Integer n, Integer nnz, const Integer* irow, const Integer* icol,
                            Integer* order, Integer* info, int /*kind_length*/) {
  const char letter = tesk::letter(kind);
  *info = -tesk::first_wrong({{letter != 'S' && letter != 'R', 1},
                              {n < 1, 2},
                              {nnz < 0, 3},
                              {!tesk::all_in_range(n, nnz, irow), 4},
                              {!tesk::all_in_range(n, nnz, icol), 5}});
  if (*info == 0) {
    const auto what = letter == 'S' ? tesk::FillOf::symmetric : tesk::FillOf::rows;
    const std::vector<Integer> found = tesk::least_fill_order(what, n, nnz, irow, icol);
    std::transform(found.begin(), found.end(), order, [](Integer i) { return i + 1; });
  }
}

void QuarnMPX_sparse_lu_(Integer n, Integer nnz, const QuarnFloat* a, const Integer* irow, const Integer* icol,
                         const Integer* order, QuarnRealFactorStorage storage, void* context, Integer* ipivp,
                         Integer* ipivq, Integer* istr, Integer* idiag, Integer* info) {
  *info = tesk::factorise<QuarnFloat, QuarnRealFactorStorage>(tesk::Storage::general, {n, nnz, a, irow, icol}, order,
                                                              {storage, context, ipivp, ipivq, istr, idiag});
}

void QuarnMPX_zsparse_lu_(Integer n, Integer nnz, const Complex* a, const Integer* irow, const Integer* icol,
                          const Integer* order, QuarnComplexFactorStorage storage, void* context, Integer* ipivp,
                          Integer* ipivq, Integer* istr, Integer* idiag, Integer* info) {
  *info = tesk::factorise<Complex, QuarnComplexFactorStorage>(tesk::Storage::general, {n, nnz, a, irow, icol}, order,
                                                              {storage, context, ipivp, ipivq, istr, idiag});
}

void QuarnMPX_sparse_cholesky_(Integer n, Integer nnz, const QuarnFloat* a, const Integer* irow, const Integer* icol,
                               const Integer* order, QuarnRealFactorStorage storage, void* context, Integer* ipiv,
                               Integer* istr, Integer* info) {
  *info = tesk::factorise<QuarnFloat, QuarnRealFactorStorage>(tesk::Storage::lower_triangle, {n, nnz, a, irow, icol},
                                                              order, {storage, context, ipiv, nullptr, istr, nullptr});
}

void QuarnMPX_zsparse_cholesky_(Integer n, Integer nnz, const Complex* a, const Integer* irow, const Integer* icol,
                                const Integer* order, QuarnComplexFactorStorage storage, void* context, Integer* ipiv,
                                Integer* istr, Integer* info) {
  *info = tesk::factorise<Complex, QuarnComplexFactorStorage>(tesk::Storage::lower_triangle, {n, nnz, a, irow, icol},
                                                              order, {storage, context, ipiv, nullptr, istr, nullptr});
}
}
