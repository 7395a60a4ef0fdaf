// Solutions with the factors of an incomplete factorisation.
#pragma once

#include "src/kernels/options.h"
#include "src/sparse/coordinate.h"
#include "src/sparse/spmv.h"

namespace tesk {

/// The factors as IncompleteFactors has them, but everything counts from 1.
template <class Value>
struct FactorView {
  Integer n;
  const Value* a;
  const Integer* icol;
  const Integer* istr;
  const Integer* idiag;  // of L D L^H null: the last element of each row
  const Integer* row_order;
  const Integer* column_order;
};

/// x := op(M)^-1 y with P M Q = L U; x may be y. Throws when storage runs out, x as it was. Sums::exact: what an
/// element loses to those before it is rounded once, where that pays.
template <class Value>
void solve_lu(Sums sums, Op op, const FactorView<Value>& factors, const Value* y, Value* x);

/// x := M^-1 y with P M P^T = L D L^H; likewise.
template <class Value>
void solve_cholesky(Sums sums, const FactorView<Value>& factors, const Value* y, Value* x);

}  // namespace tesk
