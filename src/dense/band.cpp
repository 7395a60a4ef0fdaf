// R. S. Martin, J. H. Wilkinson, Solution of symmetric and unsymmetric band equations and the calculations of
// eigenvectors of band matrices, Numer. Math. 9 (1967); E. Anderson et al., LAPACK Users' Guide: xGBTRF, xGBTRS. The
// band is seen as a matrix whose columns are one element less apart than they are stored; only its elements in the band
// are touched.
#include "quarn/quarnthread.h"
#include "src/kernels/level2.h"
#include "tesk2mp/structured.h"

namespace tesk {
namespace {

/// Element (i, j) of a band matrix with kl diagonals below the main one and kl + ku above it.
template <class T>
OneBasedMatrix<T> band_view(Integer kl, Integer ku, T* ab, Integer ldab) {
  return {ab + kl + ku, 1, std::ptrdiff_t(ldab) - 1};
}

template <class T>
Integer factorise(Integer m, Integer n, Integer kl, Integer ku, T* ab, Integer ldab, Integer* ipiv) {
  const Integer wrong =
      first_wrong({{m < 0, 1}, {n < 0, 2}, {kl < 0, 3}, {ku < 0, 4}, {ldab <= std::ptrdiff_t(kl) * 2 + ku, 6}});
  if (wrong != 0 || m == 0 || n == 0) {
    return -wrong;
  }
  const OneBasedMatrix<T> a = band_view(kl, ku, ab, ldab);
  // Interchanges fill up to kl diagonals above those that are given.
  for (Integer j = 1; j <= n; ++j) {
    for (Integer i = std::max<Integer>(1, j - ku - kl); i < j - ku && i <= m; ++i) {
      a(i, j) = T();
    }
  }
  Integer info = 0;
  Integer reach = 1;  // the last column that a pivot row has reached
  for (Integer j = 1; j <= std::min(m, n); ++j) {
    QuarnCheckInterrupt();
    const Integer below = std::min(kl, m - j);
    const Integer row = j - 1 + index_of_largest(below + 1, a.column(j).from(j));
    ipiv[j - 1] = row;
    if (is_zero(a(row, j))) {
      info = info == 0 ? j : info;
      continue;
    }
    reach = std::max(reach, std::min(row + ku, n));
    if (row != j) {
      swap_vectors(reach - j + 1, a.row(j).from(j), a.row(row).from(j));
    }
    scale(below, quotient(T(1.0), a(j, j)), a.column(j).from(j + 1));
    if (below > 0 && reach > j) {
      update_rank_one(Op::none, below, reach - j, T(-1.0), a.column(j).from(j + 1), a.row(j).from(j + 1),
                      a.from(j + 1, j + 1));
    }
  }
  return info;
}

template <class T>
void solve_column(Op op, Integer n, Integer kl, Integer ku, OneBasedMatrix<T> a, const Integer* ipiv,
                  OneBasedVector<T> x) {
  const Integer above = kl + ku;
  const auto multipliers = [&](Integer j) { return std::min(kl, n - j); };
  if (op == Op::none) {
    for (Integer j = 1; j < n; ++j) {
      if (ipiv[j - 1] != j) {
        std::swap(x(j), x(ipiv[j - 1]));
      }
      add_multiple(multipliers(j), -x(j), a.column(j).from(j + 1), x.from(j + 1));
    }
    for (Integer j = n; j >= 1; --j) {
      x(j) = quotient(x(j), a(j, j));
      const Integer first = std::max<Integer>(1, j - above);
      add_multiple(j - first, -x(j), a.column(j).from(first), x.from(first));
    }
    return;
  }
  for (Integer j = 1; j <= n; ++j) {
    for (Integer i = std::max<Integer>(1, j - above); i < j; ++i) {
      subtract_product(x(j), op, a(i, j), x(i));
    }
    x(j) = quotient(x(j), apply(op, a(j, j)));
  }
  for (Integer j = n - 1; j >= 1; --j) {
    for (Integer i = j + 1; i <= j + multipliers(j); ++i) {
      subtract_product(x(j), op, a(i, j), x(i));
    }
    if (ipiv[j - 1] != j) {
      std::swap(x(j), x(ipiv[j - 1]));
    }
  }
}

template <class T>
Integer solve(const char* trans, Integer n, Integer kl, Integer ku, Integer nrhs, T* ab, Integer ldab,
              const Integer* ipiv, T* b, Integer ldb) {
  const Integer wrong = first_wrong({{!is_op(trans), 1},
                                     {n < 0, 2},
                                     {kl < 0, 3},
                                     {ku < 0, 4},
                                     {nrhs < 0, 5},
                                     {ldab <= std::ptrdiff_t(kl) * 2 + ku, 7},
                                     {ldb < std::max<Integer>(1, n), 10}});
  if (wrong != 0 || n == 0) {
    return -wrong;
  }
  const OneBasedMatrix<T> right(b, ldb);
  for (Integer j = 1; j <= nrhs; ++j) {
    QuarnCheckInterrupt();
    solve_column(op_of(trans), n, kl, ku, band_view(kl, ku, ab, ldab), ipiv, right.column(j));
  }
  return 0;
}

}  // namespace
}  // namespace tesk

extern "C" {

void QuarnMPX_dgbtrf_(Integer m, Integer n, Integer kl, Integer ku, QuarnFloat* ab, Integer ldab, Integer* ipiv,
                      Integer* info) {
  *info = tesk::factorise(m, n, kl, ku, ab, ldab, ipiv);
}

void QuarnMPX_zgbtrf_(Integer m, Integer n, Integer kl, Integer ku, Complex* ab, Integer ldab, Integer* ipiv,
                      Integer* info) {
  *info = tesk::factorise(m, n, kl, ku, ab, ldab, ipiv);
}

void QuarnMPX_dgbtrs_(const char* trans, Integer n, Integer kl, Integer ku, Integer nrhs, QuarnFloat* ab, Integer ldab,
                      Integer* ipiv, QuarnFloat* b, Integer ldb, Integer* info, int /*trans_length*/) {
  *info = tesk::solve(trans, n, kl, ku, nrhs, ab, ldab, ipiv, b, ldb);
}

void QuarnMPX_zgbtrs_(const char* trans, Integer n, Integer kl, Integer ku, Integer nrhs, Complex* ab, Integer ldab,
                      Integer* ipiv, Complex* b, Integer ldb, Integer* info, int /*trans_length*/) {
  *info = tesk::solve(trans, n, kl, ku, nrhs, ab, ldab, ipiv, b, ldb);
}
}
