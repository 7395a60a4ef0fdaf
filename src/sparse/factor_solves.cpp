#include "src/sparse/factor_solves.h"

#include <algorithm>
#include <cstdint>
#include <vector>

#include "quarn/substitution.h"
#include "src/frame/check_points.h"
#include "src/kernels/scalar.h"

namespace tesk {
namespace {

template <class Value>
std::vector<Value> gathered(Integer n, const Integer* order, const Value* y) {
  std::vector<Value> z;
  z.reserve(std::size_t(n));
  for (Integer k = 0; k < n; ++k) {
    z.push_back(y[order[k] - 1]);
  }
  return z;
}

template <class Value>
void scatter(std::vector<Value>& z, const Integer* order, Value* x) {
  for (std::size_t k = 0; k < z.size(); ++k) {
    x[order[k] - 1] = std::move(z[k]);
  }
}

constexpr Integer kAhead = 8;  // rows

/// Steps of a triangular solution by the elements first ... end - 1 of row k, counted from 1.
template <class Value>
class Sweep {
 public:
  Sweep(const FactorView<Value>& factors, std::vector<Value>& z) : factors_(factors), z_(z) {}

  /// Elements that a row some turns later takes are on their way meanwhile.
  void expect(Integer first, Integer end) const {
    for (Integer at = first; at < end; ++at) {
      __builtin_prefetch(&factors_.a[at - 1]);
    }
  }
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

/// Whether exact sums pay: they take longer than a few operations or than those of long numbers, and half the time of
/// many. A row of `triangles` triangles is summed at a time.
template <class Value>
bool are_long(const FactorView<Value>& factors, std::int64_t triangles) {
  constexpr std::int64_t kFew = 6;
  constexpr int kMostDigits = 125;
  const std::int64_t elements = std::int64_t(factors.istr[factors.n]) - factors.istr[0] - factors.n;
  return QuarnDigits() <= kMostDigits && elements > kFew * triangles * factors.n;
}

template <class Value>
void solve_lu_in_order(Op op, const FactorView<Value>& factors, std::vector<Value>& z) {
  const Integer* const istr = factors.istr;
  const Integer* const idiag = factors.idiag;
  const bool plain = op == Op::none;
  Sweep<Value> sweep(factors, z);
  for (Integer k = 0; k < factors.n; ++k) {
    if (const Integer later = k + kAhead; later < factors.n) {
      plain ? sweep.expect(istr[later], idiag[later]) : sweep.expect(idiag[later], istr[later + 1]);
    }
    const Value& pivot = factors.a[idiag[k] - 1];
    if (plain) {
      sweep.collect(k, istr[k], idiag[k]);
    } else {
      z[std::size_t(k)] = quotient(z[std::size_t(k)], conjugate(pivot));
      sweep.spread(k, idiag[k] + 1, istr[k + 1]);
    }
  }
  for (Integer k = factors.n - 1; k >= 0; --k) {
    if (const Integer later = k - kAhead; later >= 0) {
      plain ? sweep.expect(idiag[later], istr[later + 1]) : sweep.expect(istr[later], idiag[later]);
    }
    if (plain) {
      sweep.collect(k, idiag[k] + 1, istr[k + 1]);
      z[std::size_t(k)] = quotient(z[std::size_t(k)], factors.a[idiag[k] - 1]);
    } else {
      sweep.spread(k, istr[k], idiag[k]);
    }
  }
}

template <class Value>
void divide_by_pivots(const FactorView<Value>& factors, std::vector<Value>& z) {
  for (Integer k = 0; k < factors.n; ++k) {
    z[std::size_t(k)] = quotient(z[std::size_t(k)], factors.a[factors.istr[k + 1] - 2]);
  }
}

template <class Value>
void solve_cholesky_in_order(const FactorView<Value>& factors, std::vector<Value>& z) {
  const Integer* const istr = factors.istr;
  Sweep<Value> sweep(factors, z);
  for (Integer k = 0; k < factors.n; ++k) {
    if (const Integer later = k + kAhead; later < factors.n) {
      sweep.expect(istr[later], istr[later + 1]);
    }
    sweep.collect(k, istr[k], istr[k + 1] - 1);
  }
  divide_by_pivots(factors, z);
  for (Integer k = factors.n - 1; k >= 0; --k) {
    if (const Integer later = k - kAhead; later >= 0) {
      sweep.expect(istr[later], istr[later + 1]);
    }
    sweep.spread(k, istr[k], istr[k + 1] - 1);
  }
}

}  // namespace

template <class Value>
void solve_lu(Sums sums, Op op, const FactorView<Value>& factors, const Value* y, Value* x) {
  const bool plain = op == Op::none;
  std::vector<Value> z = gathered(factors.n, plain ? factors.row_order : factors.column_order, y);
  if (sums == Sums::in_order || !are_long(factors, 2)) {
    solve_lu_in_order(op, factors, z);
  } else {
    const QuarnSparseRows<Value> rows{z.size(), factors.a, factors.icol, factors.istr, factors.idiag};
    QuarnSparseSubstitution(rows, z.data(), plain ? unsigned(QuarnUnit) : unsigned(QuarnUpper) | QuarnAdjoint);
    QuarnSparseSubstitution(rows, z.data(), plain ? unsigned(QuarnUpper) : unsigned(QuarnUnit) | QuarnAdjoint);
  }
  scatter(z, plain ? factors.column_order : factors.row_order, x);
}

template <class Value>
void solve_cholesky(Sums sums, const FactorView<Value>& factors, const Value* y, Value* x) {
  std::vector<Value> z = gathered(factors.n, factors.row_order, y);
  if (sums == Sums::in_order || !are_long(factors, 1)) {
    solve_cholesky_in_order(factors, z);
  } else {
    std::vector<Integer> diagonals(z.size());
    std::transform(factors.istr + 1, factors.istr + 1 + factors.n, diagonals.begin(),
                   [](Integer next) { return Integer(next - 1); });
    const QuarnSparseRows<Value> rows{z.size(), factors.a, factors.icol, factors.istr, diagonals.data()};
    QuarnSparseSubstitution(rows, z.data(), QuarnUnit);
    divide_by_pivots(factors, z);
    QuarnSparseSubstitution(rows, z.data(), unsigned(QuarnUnit) | QuarnAdjoint);
  }
  scatter(z, factors.row_order, x);
}

template void solve_lu(Sums, Op, const FactorView<QuarnFloat>&, const QuarnFloat*, QuarnFloat*);
template void solve_lu(Sums, Op, const FactorView<Complex>&, const Complex*, Complex*);
template void solve_cholesky(Sums, const FactorView<QuarnFloat>&, const QuarnFloat*, QuarnFloat*);
template void solve_cholesky(Sums, const FactorView<Complex>&, const Complex*, Complex*);

}  // namespace tesk
