// Divide and conquer for the symmetric tridiagonal eigenproblem: J. J. M. Cuppen, A divide and conquer method for the
// symmetric tridiagonal eigenproblem, Numer. Math. 36 (1981); M. Gu, S. C. Eisenstat, A divide-and-conquer algorithm
// for the symmetric tridiagonal eigenproblem, SIAM J. Matrix Anal. Appl. 16 (1995). xSTEDC of E. Anderson et al.,
// LAPACK Users' Guide.
#include <algorithm>
#include <numeric>
#include <utility>
#include <vector>

#include "quarn/quarnthread.h"
#include "src/dense/reflector.h"
#include "src/dense/secular.h"
#include "src/dense/tridiagonal.h"
#include "src/frame/constants.h"

namespace tesk {
namespace {

using Vector = OneBasedVector<QuarnFloat>;
using Square = OneBasedMatrix<QuarnFloat>;

constexpr Integer kSmallest = 24;

/// Two solved halves, rows and columns 1 ... half and the others of Q, and the element that stood between them.
class Merge {
 public:
  Merge(Integer n, Integer half, Vector d, Square q, const QuarnFloat& between)
      : n_(n), half_(half), d_(d), q_(q), rho_(fabs(between)) {
    for (Integer j = 1; j <= n; ++j) {
      columns_.push_back({d(j), j <= half ? q(half, j) : q(half + 1, j), j, j <= half, j > half});
      if (j > half && between < 0) {
        columns_.back().z = -columns_.back().z;
      }
    }
    std::stable_sort(columns_.begin(), columns_.end(), [](const Column& a, const Column& b) { return a.d < b.d; });
  }

  void solve() {
    deflate();
    solve_secular();
    put_in_order();
  }

 private:
  struct Column {
    QuarnFloat d;
    QuarnFloat z;
    Integer at;  // its column of Q
    bool top;    // whether rows of the first half, and of the second, may be other than zero
    bool bottom;
  };

  /// Eigenvalues that the connection does not change by more than a rounding, and those so near to each other that a
  /// rotation makes one of them such.
  void deflate() {
    QuarnFloat largest;
    for (const Column& column : columns_) {
      largest = std::max({largest, fabs(column.d), rho_ * fabs(column.z)});
    }
    const QuarnFloat small = 8 * epsilon() * largest;
    for (Column& column : columns_) {
      if (rho_ * fabs(column.z) <= small) {
        done_.push_back(std::move(column));
        continue;
      }
      if (!rest_.empty()) {
        Column& former = rest_.back();
        const QuarnFloat length = sqrt(former.z * former.z + column.z * column.z);
        const QuarnFloat c = column.z / length;
        const QuarnFloat s = -(former.z / length);
        const QuarnFloat gap = column.d - former.d;
        if (fabs(gap * c * s) <= small) {
          rotate(n_, q_.column(former.at), q_.column(column.at), c, s);
          const QuarnFloat moved = former.d * c * c + column.d * s * s;
          column.d = former.d * s * s + column.d * c * c;
          column.z = length;
          former.d = moved;
          former.top = column.top = former.top || column.top;
          former.bottom = column.bottom = former.bottom || column.bottom;
          done_.push_back(std::move(former));
          former = std::move(column);
          continue;
        }
      }
      rest_.push_back(std::move(column));
    }
  }

  void solve_secular() {
    const auto k = rest_.size();
    if (k == 0) {
      return;
    }
    std::vector<QuarnFloat> d;
    std::vector<QuarnFloat> z;
    for (const Column& column : rest_) {
      d.push_back(column.d);
      z.push_back(column.z);
    }
    const SecularEquation equation(d, z, rho_);
    std::vector<std::vector<QuarnFloat>> distances(k, std::vector<QuarnFloat>(k));  // d_j - value i
    std::vector<QuarnFloat> values;
    for (std::size_t i = 0; i < k; ++i) {
      QuarnCheckInterrupt();
      values.push_back(equation.zero(i, distances[i]));
    }
    // The connection of which these values are the exact ones: its vectors are orthogonal.
    for (std::size_t j = 0; j < k; ++j) {
      QuarnFloat product = -distances[j][j];
      for (std::size_t i = 0; i < k; ++i) {
        if (i != j) {
          product *= -distances[i][j] / (d[i] - d[j]);
        }
      }
      z[j] = with_sign(sqrt(fabs(product)), z[j]);
    }
    // Columns of the first half, of both, of the second.
    std::vector<std::size_t> order(k);
    std::iota(order.begin(), order.end(), std::size_t(0));
    const auto kind = [&](std::size_t j) { return !rest_[j].bottom ? 0 : rest_[j].top ? 1 : 2; };
    std::stable_sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) { return kind(a) < kind(b); });
    const auto count = [&](int which) {
      return Integer(std::count_if(order.begin(), order.end(), [&](std::size_t j) { return kind(j) == which; }));
    };
    const Integer size = Integer(k);
    OwnMatrix<QuarnFloat> vectors(size, size);
    OwnMatrix<QuarnFloat> given(n_, size);
    for (Integer i = 1; i <= size; ++i) {
      const Vector x = vectors.view().column(i);
      for (Integer j = 1; j <= size; ++j) {
        const std::size_t from = order[std::size_t(j - 1)];
        x(j) = z[from] / distances[std::size_t(i - 1)][from];
      }
      scale(size, 1 / sqrt(sum_of_squares(size, x)), x);
      copy(n_, q_.column(rest_[order[std::size_t(i - 1)]].at), given.view().column(i));
    }
    const Integer top = size - count(2);
    const Integer first = count(0) + 1;
    OwnMatrix<QuarnFloat> product(n_, size);
    multiply(half_, top, given.view(), vectors.view(), size, product.view());
    if (first <= size) {
      multiply(n_ - half_, size - first + 1, given.view().from(half_ + 1, first), vectors.view().from(first, 1), size,
               product.view().from(half_ + 1, 1));
    }
    for (Integer i = 1; i <= size; ++i) {
      Column& column = rest_[std::size_t(i - 1)];
      swap_vectors(n_, product.view().column(i), q_.column(column.at));
      column.d = std::move(values[std::size_t(i - 1)]);
    }
  }

  static void multiply(Integer rows, Integer inner, Square a, Square b, Integer columns, Square c) {
    exact::multiply_matrices(Op::none, Op::none, rows, columns, inner, QuarnFloat(1), a, b, QuarnFloat(), c);
  }

  void put_in_order() {
    std::move(done_.begin(), done_.end(), std::back_inserter(rest_));
    std::stable_sort(rest_.begin(), rest_.end(), [](const Column& a, const Column& b) { return a.d < b.d; });
    OwnMatrix<QuarnFloat> ordered(n_, n_);
    for (Integer j = 1; j <= n_; ++j) {
      swap_vectors(n_, q_.column(rest_[std::size_t(j - 1)].at), ordered.view().column(j));
    }
    for (Integer j = 1; j <= n_; ++j) {
      d_(j) = std::move(rest_[std::size_t(j - 1)].d);
      swap_vectors(n_, ordered.view().column(j), q_.column(j));
    }
  }

  Integer n_;
  Integer half_;
  Vector d_;
  Square q_;
  QuarnFloat rho_;
  std::vector<Column> columns_;
  std::vector<Column> rest_;
  std::vector<Column> done_;
};

/// Q, zero at first, becomes the eigenvectors.
Integer divide(Integer n, Vector d, Vector e, Square q) {
  if (n <= kSmallest) {
    set_identity(n, q);
    return tridiagonal_qr<QuarnFloat>(n, d, e, n, q);
  }
  const Integer half = n / 2;
  const QuarnFloat between = e(half);
  const QuarnFloat size = fabs(between);
  d(half) -= size;
  d(half + 1) -= size;
  const Integer first = divide(half, d, e, q);
  const Integer second = divide(n - half, d.from(half + 1), e.from(half + 1), q.from(half + 1, half + 1));
  if (first + second == 0) {
    Merge(n, half, d, q, between).solve();
  }
  return first + second;
}

}  // namespace

template <class T>
Integer divide_and_conquer(Integer n, OneBasedVector<QuarnFloat> d, OneBasedVector<QuarnFloat> e, Integer rows,
                           OneBasedMatrix<T> z) {
  OwnMatrix<QuarnFloat> vectors(n, n);
  const Integer info = near_one(n, d, e, [&] { return divide(n, d, e, vectors.view()); });
  if (info == 0 && rows > 0) {
    const Integer count = kParts<T> * rows;
    OwnMatrix<QuarnFloat> product(count, n);
    exact::multiply_matrices(Op::none, Op::none, count, n, n, QuarnFloat(1), parts(z), vectors.view(), QuarnFloat(),
                             product.view());
    for (Integer j = 1; j <= n; ++j) {
      swap_vectors(count, product.view().column(j), parts(z).column(j));
    }
  }
  return info;
}
template Integer divide_and_conquer(Integer, OneBasedVector<QuarnFloat>, OneBasedVector<QuarnFloat>, Integer,
                                    OneBasedMatrix<QuarnFloat>);
template Integer divide_and_conquer(Integer, OneBasedVector<QuarnFloat>, OneBasedVector<QuarnFloat>, Integer,
                                    OneBasedMatrix<Complex>);

}  // namespace tesk
