// The implicit QR algorithm on a real upper bidiagonal matrix, with zero shifts where they keep small singular values:
// J. Demmel, W. Kahan, Accurate singular values of bidiagonal matrices, SIAM J. Sci. Stat. Comput. 11 (1990), as xBDSQR
// of E. Anderson et al., LAPACK Users' Guide, does it.
#include "src/dense/bidiagonal.h"
#include "src/dense/guard_digits.h"
#include "src/dense/rotation_sweeps.h"
#include "src/frame/constants.h"

namespace tesk {
namespace {

/// The smaller singular value of (f, g; 0, h), with nearly all digits: xLAS2.
QuarnFloat smaller_of_two(const QuarnFloat& f, const QuarnFloat& g, const QuarnFloat& h) {
  const QuarnFloat least = std::min(fabs(f), fabs(h));
  const QuarnFloat most = std::max(fabs(f), fabs(h));
  const QuarnFloat beside = fabs(g);
  if (least == 0) {
    return {};
  }
  const QuarnFloat sum = 1 + least / most;
  const QuarnFloat difference = (most - least) / most;
  if (beside < most) {
    const QuarnFloat squared = (beside / most) * (beside / most);
    return least * (2 / (sqrt(sum * sum + squared) + sqrt(difference * difference + squared)));
  }
  const QuarnFloat quotient = most / beside;
  const QuarnFloat a = sum * quotient;
  const QuarnFloat b = difference * quotient;
  return 2 * (least * (1 / (sqrt(1 + a * a) + sqrt(1 + b * b)))) * quotient;
}

/// A block of B and the columns of U and V that go with it. From the other end it is the transposed problem.
template <class T>
struct BidiagonalBlock {
  Integer n;
  OneBasedVector<QuarnFloat> d;
  OneBasedVector<QuarnFloat> e;
  Integer u_rows;
  OneBasedMatrix<T> u;
  Integer v_rows;
  OneBasedMatrix<T> v;

  BidiagonalBlock from(Integer first, Integer last) const {
    return {last - first + 1, d.from(first), e.from(first), u_rows, u.from(1, first), v_rows, v.from(1, first)};
  }
  BidiagonalBlock reversed() const {
    return {n,
            d.reversed(n),
            e.reversed(n - 1),
            v_rows,
            v_rows == 0 ? v : v.columns_reversed(n),
            u_rows,
            u_rows == 0 ? u : u.columns_reversed(n)};
  }
};

template <class T>
class BidiagonalQr {
 public:
  explicit BidiagonalQr(const BidiagonalBlock<T>& whole) : tolerance_(10 * epsilon()) {
    const std::int64_t published = std::int64_t(30) * whole.n;
    left_ = published + published * QuarnDigits() / 64;
  }

  bool solve(const BidiagonalBlock<T>& whole) {
    for (Integer last = whole.n; last > 1;) {
      if (set_zero_if_small(whole.e(last - 1), fabs(whole.d(last)))) {
        --last;
        continue;
      }
      Integer first = last - 1;
      while (first > 1 && whole.e(first - 1) != 0) {
        --first;
      }
      const BidiagonalBlock<T> block = whole.from(first, last);
      if (!solve_block(fabs(block.d(block.n)) > fabs(block.d(1)) ? block.reversed() : block)) {
        return false;
      }
    }
    return true;
  }

 private:
  bool set_zero_if_small(QuarnFloat& e, const QuarnFloat& neighbour) const {
    const bool small = e == 0 || fabs(e) <= tolerance_ * neighbour;
    if (small) {
      e = 0;
    }
    return small;
  }

  /// Sweeps from the top until an element of e is negligible.
  bool solve_block(const BidiagonalBlock<T>& block) {
    const Integer n = block.n;
    // Their planes go up; in columns reversed they go down.
    RotationSweeps<T> u(block.u_rows, block.u_rows == 0 ? block.u : block.u.columns_reversed(n));
    RotationSweeps<T> v(block.v_rows, block.v_rows == 0 ? block.v : block.v.columns_reversed(n));
    bool done = false;
    while (!done) {
      QuarnFloat largest = fabs(block.d(1));
      QuarnFloat mu = largest;
      QuarnFloat least = mu;
      for (Integer i = 1; i < n; ++i) {
        // What stands right of the smallest singular value that the rows above can have.
        const QuarnFloat beside = fabs(block.e(i));
        if (set_zero_if_small(block.e(i), mu)) {
          done = true;
          break;
        }
        const QuarnFloat next = fabs(block.d(i + 1));
        largest = std::max({largest, next, beside});
        mu = next * (mu / (mu + beside));
        least = std::min(least, mu);
      }
      done = done || set_zero_if_small(block.e(n - 1), fabs(block.d(n)));
      if (!done) {
        if (left_-- <= 0) {
          return false;
        }
        QuarnCheckInterrupt();
        u.begin(n - 1);
        v.begin(n - 1);
        const QuarnFloat shift = shift_of(block, least, largest);
        if (shift == 0) {
          zero_shift_sweep(block, u, v);
        } else {
          sweep(block, shift, u, v);
        }
      }
    }
    u.apply();
    v.apply();
    return true;
  }

  /// 0 when a shift would cost digits of small singular values, or changes nothing.
  QuarnFloat shift_of(const BidiagonalBlock<T>& block, const QuarnFloat& least, const QuarnFloat& largest) const {
    const Integer n = block.n;
    if (n * tolerance_ * least <= epsilon() * largest || block.d(1) == 0) {
      return {};
    }
    QuarnFloat shift = smaller_of_two(block.d(n - 1), block.e(n - 1), block.d(n));
    const QuarnFloat relative = shift / block.d(1);
    return relative * relative < epsilon() ? QuarnFloat() : shift;
  }

  static void sweep(const BidiagonalBlock<T>& block, const QuarnFloat& shift, RotationSweeps<T>& u,
                    RotationSweeps<T>& v) {
    const OneBasedVector<QuarnFloat>& d = block.d;
    const OneBasedVector<QuarnFloat>& e = block.e;
    QuarnFloat f = (fabs(d(1)) - shift) * (with_sign(1, d(1)) + shift / d(1));
    QuarnFloat g = e(1);
    for (Integer i = 1; i < block.n; ++i) {
      Rotation right(f, g);
      if (i > 1) {
        e(i - 1) = std::move(right.r);
      }
      f = right.c * d(i) + right.s * e(i);
      e(i) = right.c * e(i) - right.s * d(i);
      g = right.s * d(i + 1);
      d(i + 1) *= right.c;
      Rotation left(f, g);
      d(i) = std::move(left.r);
      f = left.c * e(i) + left.s * d(i + 1);
      d(i + 1) = left.c * d(i + 1) - left.s * e(i);
      if (i + 1 < block.n) {
        g = left.s * e(i + 1);
        e(i + 1) *= left.c;
      }
      v.add(right.c, right.s);
      u.add(left.c, left.s);
    }
    e(block.n - 1) = std::move(f);
  }

  static void zero_shift_sweep(const BidiagonalBlock<T>& block, RotationSweeps<T>& u, RotationSweeps<T>& v) {
    const OneBasedVector<QuarnFloat>& d = block.d;
    const OneBasedVector<QuarnFloat>& e = block.e;
    Rotation right(1, 0);
    Rotation left(1, 0);
    for (Integer i = 1; i < block.n; ++i) {
      right = Rotation(d(i) * right.c, e(i));
      if (i > 1) {
        e(i - 1) = left.s * right.r;
      }
      left = Rotation(left.c * right.r, d(i + 1) * right.s);
      d(i) = left.r;
      v.add(right.c, right.s);
      u.add(left.c, left.s);
    }
    const QuarnFloat h = d(block.n) * right.c;
    d(block.n) = h * left.c;
    e(block.n - 1) = h * left.s;
  }

  QuarnFloat tolerance_;
  std::int64_t left_ = 0;
};

/// Descending, and none below 0.
template <class T>
void sort_singular_values(const BidiagonalBlock<T>& whole) {
  for (Integer i = 1; i <= whole.n; ++i) {
    if (signbit(whole.d(i))) {
      whole.d(i) = -whole.d(i);
      for (Integer k = 1; k <= whole.v_rows; ++k) {
        whole.v(k, i) = -whole.v(k, i);
      }
    }
  }
  for (Integer i = 1; i < whole.n; ++i) {
    Integer most = i;
    for (Integer j = i + 1; j <= whole.n; ++j) {
      most = whole.d(j) > whole.d(most) ? j : most;
    }
    if (most != i) {
      std::swap(whole.d(i), whole.d(most));
      swap_vectors(whole.u_rows, whole.u.column(i), whole.u.column(most));
      swap_vectors(whole.v_rows, whole.v.column(i), whole.v.column(most));
    }
  }
}

}  // namespace

template <class T>
Integer bidiagonal_qr(Integer n, OneBasedVector<QuarnFloat> d, OneBasedVector<QuarnFloat> e, Integer u_rows,
                      OneBasedMatrix<T> u, Integer v_rows, OneBasedMatrix<T> v) {
  T none;
  const BidiagonalBlock<T> whole{n, d, e, u_rows, with_storage(u_rows, u, none), v_rows, with_storage(v_rows, v, none)};
  if (n > 1 && !BidiagonalQr<T>(whole).solve(whole)) {
    Integer failed = 0;
    for (Integer i = 1; i < n; ++i) {
      failed += e(i) == 0 ? 0 : 1;
    }
    return failed;
  }
  sort_singular_values(whole);
  return 0;
}

template Integer bidiagonal_qr(Integer, OneBasedVector<QuarnFloat>, OneBasedVector<QuarnFloat>, Integer,
                               OneBasedMatrix<QuarnFloat>, Integer, OneBasedMatrix<QuarnFloat>);
template Integer bidiagonal_qr(Integer, OneBasedVector<QuarnFloat>, OneBasedVector<QuarnFloat>, Integer,
                               OneBasedMatrix<Complex>, Integer, OneBasedMatrix<Complex>);

}  // namespace tesk
