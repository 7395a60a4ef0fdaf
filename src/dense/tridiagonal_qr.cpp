// The implicit QL algorithm on a real symmetric tridiagonal matrix: A. Dubrulle, R. S. Martin, J. H. Wilkinson, The
// implicit QL algorithm, Numer. Math. 12 (1968), as xSTEQR of E. Anderson et al., LAPACK Users' Guide, does it.
#include <vector>

#include "quarn/quarnthread.h"
#include "src/dense/guard_digits.h"
#include "src/dense/power_of_ten.h"
#include "src/dense/rotation_sweeps.h"
#include "src/dense/tridiagonal.h"
#include "src/frame/constants.h"
#include "src/kernels/safe_range.h"
#include "tesk2mp/eigenproblems.h"

namespace tesk {
namespace {

/// An unreduced block and the columns of Z that go with it. From the other end QL becomes QR.
template <class T>
struct TridiagonalBlock {
  Integer n;
  OneBasedVector<QuarnFloat> d;
  OneBasedVector<QuarnFloat> e;
  OneBasedMatrix<T> z;

  TridiagonalBlock reversed(Integer rows) const {
    return {n, d.reversed(n), e.reversed(n - 1), rows == 0 ? z : z.columns_reversed(n)};
  }
};

template <class T>
class TridiagonalQr {
 public:
  TridiagonalQr(Integer n, Integer rows) : rows_(rows), roundoff_(5 * epsilon()), squared_(roundoff_ * roundoff_) {
    const std::int64_t published = std::int64_t(30) * n;
    left_ = published + published * QuarnDigits() / 64;
  }

  /// Whether all of e became negligible.
  bool solve(const TridiagonalBlock<T>& whole) {
    for (Integer first = 1; first <= whole.n;) {
      const Integer last = block_end(whole, first);
      const TridiagonalBlock<T> block{last - first + 1, whole.d.from(first), whole.e.from(first),
                                      whole.z.from(1, first)};
      if (!solve_block(fabs(block.d(block.n)) < fabs(block.d(1)) ? block.reversed(rows_) : block)) {
        return false;
      }
      first = last + 1;
    }
    return true;
  }

 private:
  bool negligible(const TridiagonalBlock<T>& block, Integer i) const {
    const QuarnFloat e = fabs(block.e(i));
    return e > far_ ? e * e <= squared_ * fabs(block.d(i)) * fabs(block.d(i + 1)) : far_negligible(block, i, e);
  }

  /// The same where squares leave the range. An element far below one that it hangs together with counts as zero:
  /// sweeps, whose shifts underflow, may not reduce it.
  bool far_negligible(const TridiagonalBlock<T>& block, Integer i, const QuarnFloat& e) const {
    const QuarnFloat above = fabs(block.d(i));
    const QuarnFloat below = fabs(block.d(i + 1));
    if (e <= std::max(farther_, roundoff_ * sqrt(above) * sqrt(below))) {
      return true;
    }
    QuarnFloat largest = std::max(above, below);
    for (Integer k = i; k > 1 && block.e(k - 1) != 0; --k) {
      largest = std::max({largest, fabs(block.e(k - 1)), fabs(block.d(k - 1))});
    }
    for (Integer k = i + 1; k < block.n && block.e(k) != 0; ++k) {
      largest = std::max({largest, fabs(block.e(k)), fabs(block.d(k + 1))});
    }
    return e <= far_ * largest;
  }

  /// The last row of the unreduced block that begins in row `first`; what stands beside its end becomes zero.
  Integer block_end(const TridiagonalBlock<T>& block, Integer first) const {
    Integer last = first;
    while (last < block.n && !negligible(block, last)) {
      ++last;
    }
    if (last < block.n) {
      block.e(last) = 0;
    }
    return last;
  }

  /// Eigenvalues from the top.
  bool solve_block(const TridiagonalBlock<T>& block) {
    RotationSweeps<T> vectors(rows_, block.z);
    for (Integer low = 1; low < block.n;) {
      const Integer high = block_end(block, low);
      if (high == low) {
        ++low;
        continue;
      }
      if (left_-- <= 0) {
        return false;
      }
      QuarnCheckInterrupt();
      sweep(block, low, high, vectors);
    }
    vectors.apply();
    return true;
  }

  /// A sweep from row `high` up to row `low`, whose shift is the eigenvalue of the 2 by 2 block at `low` that is nearer
  /// to d(low).
  void sweep(const TridiagonalBlock<T>& block, Integer low, Integer high, RotationSweeps<T>& vectors) {
    vectors.begin(high - 1);
    const OneBasedVector<QuarnFloat>& d = block.d;
    const OneBasedVector<QuarnFloat>& e = block.e;
    QuarnFloat g = (d(low + 1) - d(low)) / (2 * e(low));
    g = d(high) - d(low) + e(low) / (g + with_sign(length_of(g, 1), g));
    QuarnFloat c = 1;
    QuarnFloat s = 1;
    QuarnFloat p;
    for (Integer i = high - 1; i >= low; --i) {
      const QuarnFloat b = c * e(i);
      Rotation turn(g, s * e(i));
      c = std::move(turn.c);
      s = std::move(turn.s);
      if (i < high - 1) {
        e(i + 1) = std::move(turn.r);
      }
      g = d(i + 1) - p;
      const QuarnFloat r = (d(i) - g) * s + 2 * c * b;
      p = s * r;
      d(i + 1) = g + p;
      g = c * r - b;
      vectors.add(c, s);
    }
    d(low) -= p;
    e(low) = std::move(g);
  }

  Integer rows_;
  QuarnFloat roundoff_;
  QuarnFloat squared_;
  QuarnFloat far_{1, -kFarthestSquared};  // beside numbers near 1: squares of less may leave the range,
  QuarnFloat farther_{1, -900'000'000};   // and quotients by less
  std::int64_t left_;
};

/// Ascending, with as few exchanges of columns as there can be.
template <class T>
void sort_eigenvalues(Integer n, OneBasedVector<QuarnFloat> d, Integer rows, OneBasedMatrix<T> z) {
  for (Integer i = 1; i < n; ++i) {
    Integer least = i;
    for (Integer j = i + 1; j <= n; ++j) {
      least = d(j) < d(least) ? j : least;
    }
    if (least != i) {
      std::swap(d(i), d(least));
      swap_vectors(rows, z.column(i), z.column(least));
    }
  }
}

/// `divides`: by divide and conquer where there are eigenvectors.
template <class T>
Integer checked_tridiagonal(bool divides, const char* compz, Integer n, QuarnFloat* d, QuarnFloat* e, T* z,
                            Integer ldz) {
  const char job = letter(compz);
  const bool wanted = job != 'N';
  const Integer wrong = first_wrong(
      {{job != 'N' && job != 'I' && job != 'V', 1}, {n < 0, 2}, {ldz < (wanted ? std::max<Integer>(1, n) : 1), 6}});
  if (wrong != 0) {
    return -wrong;
  }
  const OneBasedMatrix<T> vectors(z, ldz);
  if (job == 'I') {
    for (Integer j = 1; j <= n; ++j) {
      fill(n, T(), vectors.column(j));
      vectors(j, j) = T(1.0);
    }
  }
  const Integer rows = wanted ? n : 0;
  Integer info = 0;
  {
    const WorkingDigits more(guarded_digits(n));
    info = divides && wanted ? divide_and_conquer<T>(n, {d, 1}, {e, 1}, rows, vectors)
                             : tridiagonal_qr<T>(n, {d, 1}, {e, 1}, rows, vectors);
  }
  round_elements<QuarnFloat>(n, 1, {d, std::max<Integer>(1, n)});
  round_elements(rows, rows, vectors);
  return info;
}

}  // namespace

template <class T>
Integer tridiagonal_qr(Integer n, OneBasedVector<QuarnFloat> d, OneBasedVector<QuarnFloat> e, Integer rows,
                       OneBasedMatrix<T> z) {
  T none;
  z = with_storage(rows, z, none);
  return near_one(n, d, e, [&] {
    if (n < 2 || TridiagonalQr<T>(n, rows).solve({n, d, e, z})) {
      sort_eigenvalues(n, d, rows, z);
      return Integer(0);
    }
    Integer failed = 0;
    for (Integer i = 1; i < n; ++i) {
      failed += e(i) == 0 ? 0 : 1;
    }
    return failed;
  });
}

template Integer tridiagonal_qr(Integer, OneBasedVector<QuarnFloat>, OneBasedVector<QuarnFloat>, Integer,
                                OneBasedMatrix<QuarnFloat>);
template Integer tridiagonal_qr(Integer, OneBasedVector<QuarnFloat>, OneBasedVector<QuarnFloat>, Integer,
                                OneBasedMatrix<Complex>);

}  // namespace tesk

extern "C" {

void QuarnMPX_dsteqr_(const char* compz, Integer n, QuarnFloat* d, QuarnFloat* e, QuarnFloat* z, Integer ldz,
                      QuarnFloat* /*work*/, Integer* info, int /*compz_length*/) {
  *info = tesk::checked_tridiagonal(false, compz, n, d, e, z, ldz);
}

void QuarnMPX_zsteqr_(const char* compz, Integer n, QuarnFloat* d, QuarnFloat* e, Complex* z, Integer ldz,
                      QuarnFloat* /*work*/, Integer* info, int /*compz_length*/) {
  *info = tesk::checked_tridiagonal(false, compz, n, d, e, z, ldz);
}

void QuarnMPX_dstedc_(const char* compz, Integer n, QuarnFloat* d, QuarnFloat* e, QuarnFloat* z, Integer ldz,
                      QuarnFloat* /*work*/, Integer /*lwork*/, Integer* /*iwork*/, Integer /*liwork*/, Integer* info,
                      int /*compz_length*/) {
  *info = tesk::checked_tridiagonal(true, compz, n, d, e, z, ldz);
}

void QuarnMPX_zstedc_(const char* compz, Integer n, QuarnFloat* d, QuarnFloat* e, Complex* z, Integer ldz,
                      Complex* /*work*/, Integer /*lwork*/, QuarnFloat* /*rwork*/, Integer /*lrwork*/,
                      Integer* /*iwork*/, Integer /*liwork*/, Integer* info, int /*compz_length*/) {
  *info = tesk::checked_tridiagonal(true, compz, n, d, e, z, ldz);
}
}
