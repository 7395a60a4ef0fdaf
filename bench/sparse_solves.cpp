// Products and preconditioner solves with five entries a row, as difference schemes on grids have them.
#include <tuple>

#include "bench/peers.h"
#include "tesk2mp/tesk2mp.h"

namespace bench {
namespace {

using mpfr::mpreal;

constexpr int kPasses[] = {20, 50, 100};
constexpr Integer kSide = 100;
constexpr Integer kFilledSide = 40;  // 80 elements of L and U a row

/// A five-point scheme with coefficients of all digits, dominated by its diagonal, and its factors behind it. Of the
/// symmetric one the lower triangle.
struct Grid {
  Integer side;
  Integer n = side * side;
  std::vector<QuarnFloat> a;
  std::vector<Integer> irow, icol, order, istr, idiag;
  Integer nnz = 0, la = 0, made = 0;

  Grid(int digits, bool symmetric, bool filled = false)
      : side(filled ? kFilledSide : kSide), order(std::size_t(n)), istr(std::size_t(n) + 1), idiag(std::size_t(n)) {
    const auto pool = Operands(digits, true, 5).make<QuarnFloat>(5 * std::size_t(n));
    for (Integer i = 0; i < n; ++i) {
      add(i, i - side, i >= side, pool);
      add(i, i - 1, i % side != 0, pool);
      add(i, i, true, pool);
      add(i, i + 1, !symmetric && (i + 1) % side != 0, pool);
      add(i, i + side, !symmetric && i + side < n, pool);
    }
    nnz = Integer(a.size());
    la = filled ? nnz + n * (2 * side + 1) : 2 * nnz;
    for (auto* places : {&irow, &icol}) {
      places->resize(std::size_t(la));
    }
    a.resize(std::size_t(la));
    const Integer level = filled ? -1 : 0;
    const QuarnFloat zero = 0;
    Integer corrected = 0;
    Integer ifail = -1;
    if (symmetric) {
      QuarnMP_f11jaf_(&n, &nnz, a.data(), &la, irow.data(), icol.data(), &level, &zero, "N", &zero, "N", order.data(),
                      istr.data(), &made, &corrected, &ifail, 1, 1);
    } else {
      std::vector<Integer> columns(order);
      QuarnMP_f11daf_(&n, &nnz, a.data(), &la, irow.data(), icol.data(), &level, &zero, "N", "N", order.data(),
                      columns.data(), istr.data(), idiag.data(), &made, &corrected, &ifail, 1, 1);
    }
  }

 private:
  void add(Integer i, Integer j, bool is_there, const std::vector<QuarnFloat>& pool) {
    if (is_there) {
      const QuarnFloat& value = pool[a.size()];
      a.push_back(i == j ? value + 500 : -value);
      irow.push_back(i + 1);
      icol.push_back(j + 1);
    }
  }
};

std::vector<mpreal> converted(const std::vector<QuarnFloat>& values) {
  std::vector<mpreal> made;
  made.reserve(values.size());
  for (const QuarnFloat& value : values) {
    made.emplace_back(value.to_string().c_str());
  }
  return made;
}

template <class T>
std::vector<T> right_side(int digits, Integer n) {
  return Operands(digits, false, 6).make<T>(std::size_t(n));
}

template <auto kRoutine>
std::size_t product_ours(benchmark::State& state, int digits) {
  const Grid grid(digits, false);
  const auto x = right_side<QuarnFloat>(digits, grid.n);
  auto y = x;
  for (auto _ : state) {
    Integer ifail = -1;
    kRoutine("N", &grid.n, &grid.nnz, grid.a.data(), grid.irow.data(), grid.icol.data(), "N", x.data(), y.data(),
             &ifail, 1, 1);
    benchmark::ClobberMemory();
  }
  return std::size_t(grid.nnz);
}

std::size_t product_mpreal(benchmark::State& state, int digits) {
  const Grid grid(digits, false);
  const auto a = converted(grid.a);
  const auto x = right_side<mpreal>(digits, grid.n);
  auto y = x;
  for (auto _ : state) {
    std::fill(y.begin(), y.end(), mpreal(0));
    for (std::size_t k = 0; k < std::size_t(grid.nnz); ++k) {
      y[std::size_t(grid.irow[k] - 1)] += a[k] * x[std::size_t(grid.icol[k] - 1)];
    }
    benchmark::ClobberMemory();
  }
  return std::size_t(grid.nnz);
}

template <auto kRoutine, char kTrans, bool kFilled = false>
std::size_t lu_ours(benchmark::State& state, int digits) {
  const Grid grid(digits, false, kFilled);
  const auto y = right_side<QuarnFloat>(digits, grid.n);
  auto x = y;
  const char trans = kTrans;
  for (auto _ : state) {
    Integer ifail = -1;
    kRoutine(&trans, &grid.n, grid.a.data(), &grid.la, grid.irow.data(), grid.icol.data(), grid.order.data(),
             grid.order.data(), grid.istr.data(), grid.idiag.data(), "N", y.data(), x.data(), &ifail, 1, 1);
    benchmark::ClobberMemory();
  }
  return std::size_t(grid.made);
}

template <char kTrans, bool kFilled = false>
std::size_t lu_mpreal(benchmark::State& state, int digits) {
  const Grid grid(digits, false, kFilled);
  const auto a = converted(grid.a);
  const auto y = right_side<mpreal>(digits, grid.n);
  auto x = y;
  const auto at = [&](Integer k) { return std::size_t(grid.icol[std::size_t(k - 1)] - 1); };
  const auto eliminate = [&](std::size_t i, Integer first, Integer end) {
    for (Integer k = first; k < end; ++k) {
      if (kTrans == 'N') {
        x[i] -= a[std::size_t(k - 1)] * x[at(k)];
      } else {
        x[at(k)] -= a[std::size_t(k - 1)] * x[i];
      }
    }
  };
  for (auto _ : state) {
    x = y;
    for (std::size_t i = 0; i < x.size(); ++i) {
      if (kTrans == 'N') {
        eliminate(i, grid.istr[i], grid.idiag[i]);
      } else {
        x[i] /= a[std::size_t(grid.idiag[i] - 1)];
        eliminate(i, grid.idiag[i] + 1, grid.istr[i + 1]);
      }
    }
    for (std::size_t i = x.size(); i-- > 0;) {
      if (kTrans == 'N') {
        eliminate(i, grid.idiag[i] + 1, grid.istr[i + 1]);
        x[i] /= a[std::size_t(grid.idiag[i] - 1)];
      } else {
        eliminate(i, grid.istr[i], grid.idiag[i]);
      }
    }
    benchmark::ClobberMemory();
  }
  return std::size_t(grid.made);
}

template <auto kRoutine>
std::size_t cholesky_ours(benchmark::State& state, int digits) {
  const Grid grid(digits, true);
  const auto y = right_side<QuarnFloat>(digits, grid.n);
  auto x = y;
  for (auto _ : state) {
    Integer ifail = -1;
    kRoutine(&grid.n, grid.a.data(), &grid.la, grid.irow.data(), grid.icol.data(), grid.order.data(), grid.istr.data(),
             "N", y.data(), x.data(), &ifail, 1);
    benchmark::ClobberMemory();
  }
  return 2 * std::size_t(grid.nnz);
}

std::size_t cholesky_mpreal(benchmark::State& state, int digits) {
  const Grid grid(digits, true);
  const auto a = converted(grid.a);
  const auto y = right_side<mpreal>(digits, grid.n);
  auto x = y;
  const auto at = [&](Integer k) { return std::size_t(grid.icol[std::size_t(k - 1)] - 1); };
  for (auto _ : state) {
    x = y;
    for (std::size_t i = 0; i < x.size(); ++i) {
      for (Integer k = grid.istr[i]; k < grid.istr[i + 1] - 1; ++k) {
        x[i] -= a[std::size_t(k - 1)] * x[at(k)];
      }
    }
    for (std::size_t i = 0; i < x.size(); ++i) {
      x[i] /= a[std::size_t(grid.istr[i + 1] - 2)];
    }
    for (std::size_t i = x.size(); i-- > 0;) {
      for (Integer k = grid.istr[i]; k < grid.istr[i + 1] - 1; ++k) {
        x[at(k)] -= a[std::size_t(k - 1)] * x[i];
      }
    }
    benchmark::ClobberMemory();
  }
  return 2 * std::size_t(grid.nnz);
}

const bool registered = [] {
  register_work("product 5 a row", "quarn", kPasses, product_ours<QuarnMPX_f11xaf_>);
  register_work("product 5 a row", "classic", kPasses, product_ours<QuarnMP_f11xaf_>);
  register_work("product 5 a row", "mpreal", kPasses, product_mpreal);
  register_work("LU solve", "quarn", kPasses, lu_ours<QuarnMPX_f11dbf_, 'N'>);
  register_work("LU solve", "classic", kPasses, lu_ours<QuarnMP_f11dbf_, 'N'>);
  register_work("LU solve", "mpreal", kPasses, lu_mpreal<'N'>);
  register_work("LU solve transposed", "quarn", kPasses, lu_ours<QuarnMPX_f11dbf_, 'T'>);
  register_work("LU solve transposed", "classic", kPasses, lu_ours<QuarnMP_f11dbf_, 'T'>);
  register_work("LU solve transposed", "mpreal", kPasses, lu_mpreal<'T'>);
  register_work("filled LU solve", "quarn", kPasses, lu_ours<QuarnMPX_f11dbf_, 'N', true>);
  register_work("filled LU solve", "classic", kPasses, lu_ours<QuarnMP_f11dbf_, 'N', true>);
  register_work("filled LU solve", "mpreal", kPasses, lu_mpreal<'N', true>);
  register_work("Cholesky solve", "quarn", kPasses, cholesky_ours<QuarnMPX_f11jbf_>);
  register_work("Cholesky solve", "classic", kPasses, cholesky_ours<QuarnMP_f11jbf_>);
  register_work("Cholesky solve", "mpreal", kPasses, cholesky_mpreal);
  return true;
}();

}  // namespace
}  // namespace bench
