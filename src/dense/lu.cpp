// E. Anderson et al., LAPACK Users' Guide: right-looking LU by blocks (xGETRF), its unblocked step (xGETF2) and the
// row interchanges (xLASWP). Row weights: H. J. Bowdler, R. S. Martin, G. Peters, J. H. Wilkinson, Solution of real and
// complex systems of linear equations, Numer. Math. 8 (1966). By halves: S. Toledo, Locality of reference in LU
// decomposition with partial pivoting, SIAM J. Matrix Anal. Appl. 18 (1997).

#include <algorithm>

#include "quarn/quarnthread.h"
#include "src/dense/factorise.h"
#include "src/dense/tuning.h"
#include "src/frame/constants.h"
#include "src/kernels/exact_level3.h"
#include "src/kernels/level3.h"
#include "tesk2mp/dense.h"

namespace tesk {
namespace {

/// Partial pivoting: the element of largest magnitude, usable unless it is exactly zero. A column without a pivot is
/// left as it is and the factorisation goes on.
class PartialPivots {
 public:
  static constexpr bool kStopsWhenSingular = false;

  explicit PartialPivots(Integer* ipiv) noexcept : ipiv_(ipiv) {}
  PartialPivots from(Integer j) const noexcept { return PartialPivots(ipiv_ + j - 1); }

  template <class T>
  Integer choose(Integer j, Integer m, OneBasedMatrix<T> a) const {
    return j - 1 + index_of_largest(m - j + 1, a.column(j).from(j));
  }
  template <class T>
  bool usable(Integer /*row*/, const T& pivot) const {
    return !is_zero(pivot);
  }
  void record(Integer j, Integer row) const noexcept { ipiv_[j - 1] = row; }
  Integer row(Integer j) const noexcept { return ipiv_[j - 1]; }
  void shift(Integer j, Integer offset) const noexcept { ipiv_[j - 1] += offset; }

 private:
  Integer* ipiv_;
};

/// Pivoting by magnitude times row weight. The weights, 1 / 2-norm of the row, stand in the pivot array until the
/// pivot of that step replaces them. A step whose best product is below 8 eps ends the factorisation.
class WeightedPivots {
 public:
  static constexpr bool kStopsWhenSingular = true;

  explicit WeightedPivots(QuarnFloat* ipiv) : ipiv_(ipiv), threshold_(QuarnFloat(8.0) * epsilon()) {}
  WeightedPivots from(Integer j) const { return WeightedPivots(ipiv_ + j - 1, threshold_); }

  /// Forms the weights; a row of zeros gets none.
  void weigh(Integer m, Integer n, OneBasedMatrix<QuarnFloat> a) const {
    for (Integer i = 1; i <= m; ++i) {
      QuarnFloat scale;
      QuarnFloat sumsq(1);
      add_squares(n, a.row(i), scale, sumsq);
      const QuarnFloat norm = scale * sqrt(sumsq);
      ipiv_[i - 1] = norm == 0 ? norm : 1 / norm;
    }
  }

  Integer choose(Integer j, Integer m, OneBasedMatrix<QuarnFloat> a) const {
    Integer best = j;
    QuarnFloat largest = fabs(a(j, j)) * ipiv_[j - 1];
    for (Integer i = j + 1; i <= m; ++i) {
      QuarnFloat product = fabs(a(i, j)) * ipiv_[i - 1];
      if (product > largest) {
        largest = std::move(product);
        best = i;
      }
    }
    return best;
  }
  bool usable(Integer row, const QuarnFloat& pivot) const {
    return !is_zero(pivot) && fabs(pivot) * ipiv_[row - 1] >= threshold_;
  }
  void record(Integer j, Integer row) const {
    ipiv_[row - 1] = ipiv_[j - 1];
    ipiv_[j - 1] = row;
  }
  Integer row(Integer j) const { return FloatToInt(ipiv_[j - 1]); }
  void shift(Integer j, Integer offset) const { ipiv_[j - 1] += offset; }

 private:
  WeightedPivots(QuarnFloat* ipiv, const QuarnFloat& threshold) : ipiv_(ipiv), threshold_(threshold) {}

  QuarnFloat* ipiv_;
  QuarnFloat threshold_;
};

/// One column after the other; returns INFO.
template <class T, class Pivots>
Integer factorise_unblocked(Integer m, Integer n, OneBasedMatrix<T> a, const Pivots& pivots) {
  Integer info = 0;
  for (Integer j = 1; j <= std::min(m, n); ++j) {
    QuarnCheckInterrupt();
    const Integer row = pivots.choose(j, m, a);
    const bool usable = pivots.usable(row, a(row, j));
    pivots.record(j, row);
    if (Pivots::kStopsWhenSingular && !usable) {
      return j;
    }
    if (usable) {
      if (row != j) {
        swap_vectors(n, a.row(j), a.row(row));
      }
      scale(m - j, quotient(T(1.0), a(j, j)), a.column(j).from(j + 1));
    } else if (info == 0) {
      info = j;
    }
    update_rank_one(Op::none, m - j, n - j, T(-1.0), a.column(j).from(j + 1), a.row(j).from(j + 1),
                    a.from(j + 1, j + 1));
  }
  return info;
}

/// Applies the interchanges of steps first ... last to n columns.
template <class T, class Pivots>
void interchange_rows(Integer n, OneBasedMatrix<T> a, Integer first, Integer last, const Pivots& pivots) {
  for (Integer k = first; k <= last; ++k) {
    if (const Integer row = pivots.row(k); row != k) {
      swap_vectors(n, a.row(k), a.row(row));
    }
  }
}

template <class T, class Pivots>
Integer factorise(Integer nb, Integer m, Integer n, OneBasedMatrix<T> a, const Pivots& pivots) {
  const Integer steps = std::min(m, n);
  if (nb <= 1) {
    return factorise_unblocked(m, n, a, pivots);
  }
  Integer info = 0;
  for (Integer j = 1; j <= steps; j += std::min(nb, steps - j + 1)) {
    const Integer jb = std::min(nb, steps - j + 1);
    const Integer next = j + jb;
    const Integer panel_info = factorise_unblocked(m - j + 1, jb, a.from(j, j), pivots.from(j));
    if (info == 0 && panel_info > 0) {
      info = panel_info + j - 1;
    }
    // The steps of a panel that stopped early reach the columns beside it all the same.
    const bool stopped = Pivots::kStopsWhenSingular && panel_info > 0;
    const Integer done = stopped ? panel_info - 1 : jb;
    const Integer below = j + done;
    for (Integer i = j; i < j + (stopped ? panel_info : jb); ++i) {
      pivots.shift(i, j - 1);
    }
    interchange_rows(j - 1, a, j, below - 1, pivots);
    if (next <= n) {
      const OneBasedMatrix<T> right = a.from(1, next);
      interchange_rows(n - next + 1, right, j, below - 1, pivots);
      solve_triangular_matrix(Side::left, Triangle::lower, Op::none, Diagonal::unit, done, n - next + 1, T(1.0),
                              a.from(j, j), right.from(j, 1));
      if (below <= m) {
        multiply_matrices(Op::none, Op::none, m - below + 1, n - next + 1, done, T(-1.0), a.from(below, j),
                          right.from(j, 1), T(1.0), right.from(below, 1));
      }
    }
    if (stopped) {
      break;
    }
  }
  return info;
}

/// The columns from the left one after the other, each in sums of what is on its left; returns INFO.
template <class T>
Integer factorise_columns(Integer m, Integer n, OneBasedMatrix<T> a, const PartialPivots& pivots) {
  QuarnRows rows = exact::rows_of(m, n, a);
  Integer info = 0;
  for (Integer j = 1; j <= n; ++j) {
    interchange_rows(1, a.from(1, j), 1, j - 1, pivots);
    const OneBasedVector<T> column = a.column(j);
    rows.substitute(std::size_t(j - 1), column.first(), column.stride());
    const Integer row = pivots.choose(j, m, a);
    pivots.record(j, row);
    if (!pivots.usable(row, a(row, j))) {
      info = info == 0 ? j : info;
    } else {
      if (row != j) {
        swap_vectors(j, a.row(j), a.row(row));
        rows.exchange(std::size_t(j - 1), std::size_t(row - 1));
      }
      scale(m - j, quotient(T(1.0), a(j, j)), column.from(j + 1));
    }
    rows.prepare(std::size_t(j - 1), std::size_t(j), std::size_t(m));
  }
  return info;
}

/// Products of halves round each entry once: an entry is rounded some log2(n) times where the other orders of
/// operations round it up to n times. Returns INFO.
template <class T>
Integer factorise_by_halves(Integer m, Integer n, OneBasedMatrix<T> a, const PartialPivots& pivots) {
  const Integer steps = std::min(m, n);
  const exact::Leaf leaf;
  if (steps <= leaf.order && n == steps) {
    return leaf.in_sums ? factorise_columns(m, n, a, pivots) : factorise_unblocked(m, n, a, pivots);
  }
  const Integer left = steps <= leaf.order ? steps : steps / 2;
  const OneBasedMatrix<T> right = a.from(1, left + 1);
  const Integer info = factorise_by_halves(m, left, a, pivots);
  interchange_rows(n - left, right, 1, left, pivots);
  exact::solve_lower(Diagonal::unit, false, left, n - left, a, right);
  if (left == m) {
    return info;
  }
  const OneBasedMatrix<T> rest = right.from(left + 1, 1);
  exact::multiply_matrices(Op::none, Op::none, m - left, n - left, left, T(-1.0), a.from(left + 1, 1), right, T(1.0),
                           rest);
  const Integer rest_info = factorise_by_halves(m - left, n - left, rest, pivots.from(left + 1));
  for (Integer j = left + 1; j <= steps; ++j) {
    pivots.shift(j, left);
  }
  interchange_rows(left, a, left + 1, steps, pivots);
  return info != 0 || rest_info == 0 ? info : rest_info + left;
}

/// Checks, then what is to be done; returns INFO.
template <class T, class Factorise>
Integer checked_lu(Integer m, Integer n, T* a, Integer lda, const Factorise& factorise_view) {
  const Integer wrong = first_wrong({{m < 0, 1}, {n < 0, 2}, {lda < std::max<Integer>(1, m), 4}});
  if (wrong != 0 || m == 0 || n == 0) {
    return -wrong;
  }
  return factorise_view(OneBasedMatrix<T>(a, lda));
}

template <class T>
Integer lu_with_partial_pivoting(const char* routine, Integer m, Integer n, T* a, Integer lda, Integer* ipiv) {
  return checked_lu(m, n, a, lda, [&](OneBasedMatrix<T> view) {
    return factorise(tuning_value(kBlockSize, routine), m, n, view, PartialPivots(ipiv));
  });
}

template <class T>
Integer lu_by_halves(Integer m, Integer n, T* a, Integer lda, Integer* ipiv) {
  return checked_lu(m, n, a, lda,
                    [&](OneBasedMatrix<T> view) { return factorise_by_halves(m, n, view, PartialPivots(ipiv)); });
}

}  // namespace

template <class T>
Integer factorise_lu(Integer m, Integer n, OneBasedMatrix<T> a, Integer* ipiv) {
  return m == 0 || n == 0 ? 0 : factorise_by_halves(m, n, a, PartialPivots(ipiv));
}
template Integer factorise_lu(Integer, Integer, OneBasedMatrix<QuarnFloat>, Integer*);
template Integer factorise_lu(Integer, Integer, OneBasedMatrix<Complex>, Integer*);

}  // namespace tesk

extern "C" {

void QuarnMP_f07adf_ENTRY(int /*selector*/, Integer m, Integer n, QuarnFloat* a, Integer lda, Integer* ipiv,
                          Integer* info) {
  *info = tesk::lu_with_partial_pivoting("F07ADF", m, n, a, lda, ipiv);
}

void QuarnMP_f07arf_ENTRY(int /*selector*/, Integer m, Integer n, Complex* a, Integer lda, Integer* ipiv,
                          Integer* info) {
  *info = tesk::lu_with_partial_pivoting("F07ARF", m, n, a, lda, ipiv);
}

void QuarnMP_f07adg_(Integer m, Integer n, QuarnFloat* a, Integer lda, QuarnFloat* ipiv, Integer* info) {
  *info = tesk::checked_lu(m, n, a, lda, [&](tesk::OneBasedMatrix<QuarnFloat> view) {
    const tesk::WeightedPivots pivots(ipiv);
    pivots.weigh(m, n, view);
    return tesk::factorise(tesk::tuning_value(tesk::kBlockSize, "F07ADG"), m, n, view, pivots);
  });
}

void QuarnMPX_f07adf_(Integer m, Integer n, QuarnFloat* a, Integer lda, Integer* ipiv, Integer* info) {
  *info = tesk::lu_by_halves(m, n, a, lda, ipiv);
}

void QuarnMPX_f07arf_(Integer m, Integer n, Complex* a, Integer lda, Integer* ipiv, Integer* info) {
  *info = tesk::lu_by_halves(m, n, a, lda, ipiv);
}
}
