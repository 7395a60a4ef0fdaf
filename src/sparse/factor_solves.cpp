#include "src/sparse/factor_solves.h"

#include <vector>

#include "src/frame/check_points.h"
#include "src/kernels/scalar.h"

namespace tesk {
namespace {

template <class Value>
std::vector<Value> gathered(Integer n, const Integer* order, const Value* y) {
  auto z = std::vector<Value>(std::size_t(n));
  for (Integer k = 0; k < n; ++k) {
    z[std::size_t(k)] = y[order[k] - 1];
  }
  return z;
}

template <class Value>
void scatter(std::vector<Value>& z, const Integer* order, Value* x) {
  for (std::size_t k = 0; k < z.size(); ++k) {
    x[order[k] - 1] = std::move(z[k]);
  }
}

/// Steps of a triangular solution by the elements first ... end - 1 of row k, counted from 1.
template <class Value>
class Sweep {
 public:
  Sweep(const FactorView<Value>& factors, std::vector<Value>& z) : factors_(factors), z_(z) {}

  /// z_k := z_k - sum of elements times z
  void collect(Integer k, Integer first, Integer end) {
    Value& sum = z_[std::size_t(k)];
    for (Integer at = first; at < end; ++at) {
      subtract_product(sum, factors_.a[at - 1], z_[std::size_t(factors_.icol[at - 1] - 1)]);
    }
    check_points_.pass(end - first + 1);
  }
  /// z := z - conjugated elements times z_k
  void spread(Integer k, Integer first, Integer end) {
    const Value& source = z_[std::size_t(k)];
    for (Integer at = first; at < end; ++at) {
      subtract_product(z_[std::size_t(factors_.icol[at - 1] - 1)], Op::conjugate_transpose, factors_.a[at - 1], source);
    }
    check_points_.pass(end - first + 1);
  }

 private:
  const FactorView<Value>& factors_;
  std::vector<Value>& z_;
  CheckPoints check_points_;
};

}  // namespace

template <class Value>
void solve_lu(Op op, const FactorView<Value>& factors, const Value* y, Value* x) {
  const Integer* const istr = factors.istr;
  const Integer* const idiag = factors.idiag;
  const bool plain = op == Op::none;
  std::vector<Value> z = gathered(factors.n, plain ? factors.row_order : factors.column_order, y);
  Sweep<Value> sweep(factors, z);
  for (Integer k = 0; k < factors.n; ++k) {
    const Value& pivot = factors.a[idiag[k] - 1];
    if (plain) {
      sweep.collect(k, istr[k], idiag[k]);
    } else {
      z[std::size_t(k)] = quotient(z[std::size_t(k)], conjugate(pivot));
      sweep.spread(k, idiag[k] + 1, istr[k + 1]);
    }
  }
  for (Integer k = factors.n - 1; k >= 0; --k) {
    if (plain) {
      sweep.collect(k, idiag[k] + 1, istr[k + 1]);
      z[std::size_t(k)] = quotient(z[std::size_t(k)], factors.a[idiag[k] - 1]);
    } else {
      sweep.spread(k, istr[k], idiag[k]);
    }
  }
  scatter(z, plain ? factors.column_order : factors.row_order, x);
}

template <class Value>
void solve_cholesky(const FactorView<Value>& factors, const Value* y, Value* x) {
  const Integer* const istr = factors.istr;
  std::vector<Value> z = gathered(factors.n, factors.row_order, y);
  Sweep<Value> sweep(factors, z);
  for (Integer k = 0; k < factors.n; ++k) {
    sweep.collect(k, istr[k], istr[k + 1] - 1);
  }
  for (Integer k = 0; k < factors.n; ++k) {
    z[std::size_t(k)] = quotient(z[std::size_t(k)], factors.a[istr[k + 1] - 2]);
  }
  for (Integer k = factors.n - 1; k >= 0; --k) {
    sweep.spread(k, istr[k], istr[k + 1] - 1);
  }
  scatter(z, factors.row_order, x);
}

template void solve_lu(Op, const FactorView<QuarnFloat>&, const QuarnFloat*, QuarnFloat*);
template void solve_lu(Op, const FactorView<Complex>&, const Complex*, Complex*);
template void solve_cholesky(const FactorView<QuarnFloat>&, const QuarnFloat*, QuarnFloat*);
template void solve_cholesky(const FactorView<Complex>&, const Complex*, Complex*);

}  // namespace tesk
