// A chain of bulges of a multishift QR sweep: K. Braman, R. Byers, R. Mathias, The multishift QR algorithm, part I,
// SIAM J. Matrix Anal. Appl. 23 (2002).
//
// Each bulge is the one of a double shift, three rows of its own. The chain moves as a whole through a small window on
// the diagonal; what its reflectors do there makes an orthogonal matrix, and products with it, which round each element
// once, do the rest of their work.
#pragma once

#include <algorithm>
#include <vector>

#include "src/dense/householder.h"

namespace tesk {

/// Two shifts, the zeros of (x - first) (x - second) - cross.
template <class T>
struct ShiftPair {
  T first;
  T second;
  T cross;
};

/// Which rows and columns of H, and which rows of Z, similarity transformations of a block change.
template <class T>
struct SchurReach {
  Integer first;  // the first row of H
  Integer last;   // the last column of H
  OneBasedMatrix<T> h;
  Integer rows;
  OneBasedMatrix<T> z;

  /// With U, of columns low ... high, in the rows above `top` and the columns behind `high`, and in Z.
  void transform(Integer top, Integer low, Integer high, OneBasedMatrix<T> u) const {
    const Integer size = high - low + 1;
    if (top > first) {
      from_right(top - first, size, h.from(first, low), u);
    }
    if (rows > 0) {
      from_right(rows, size, z.from(1, low), u);
    }
    if (high < last) {
      const OneBasedMatrix<T> behind = h.from(low, high + 1);
      OwnMatrix<T> product(size, last - high);
      exact::multiply_matrices(Op::conjugate_transpose, Op::none, size, last - high, size, T(1.0), u, behind, T(),
                               product.view());
      for (Integer j = 1; j <= last - high; ++j) {
        swap_vectors(size, product.view().column(j), behind.column(j));
      }
    }
  }

 private:
  static void from_right(Integer count, Integer size, OneBasedMatrix<T> c, OneBasedMatrix<T> u) {
    OwnMatrix<T> product(count, size);
    exact::multiply_matrices(Op::none, Op::none, count, size, size, T(1.0), c, u, T(), product.view());
    for (Integer j = 1; j <= size; ++j) {
      swap_vectors(count, product.view().column(j), c.column(j));
    }
  }
};

/// The reflector of two or three elements that takes x to (beta, 0, 0).
template <class T>
class BulgeReflector {
 public:
  BulgeReflector(Integer n, T* x) : n_(n) {
    const T tau = make_reflector(n, OneBasedVector<T>(x, 1));
    beta_ = x[0];
    idle_ = is_zero(tau);
    v_[0] = T(1.0);
    for (Integer i = 1; i < n; ++i) {
      v_[i] = x[i];
    }
    for (Integer i = 0; i < n; ++i) {
      left_[i] = conjugate(tau) * v_[i];
      right_[i] = tau * conjugate(v_[i]);
    }
  }
  const T& beta() const { return beta_; }

  void apply_left(OneBasedVector<T> x) const {
    if (!idle_) {
      T sum = x(1);
      for (Integer i = 1; i < n_; ++i) {
        add_product(sum, Op::conjugate_transpose, v_[i], Op::none, x(i + 1));
      }
      subtract(sum, left_, x);
    }
  }
  void apply_right(OneBasedVector<T> x) const {
    if (!idle_) {
      T sum = x(1);
      for (Integer i = 1; i < n_; ++i) {
        add_product(sum, v_[i], x(i + 1));
      }
      subtract(sum, right_, x);
    }
  }

 private:
  void subtract(const T& sum, const T* factors, OneBasedVector<T> x) const {
    for (Integer i = 0; i < n_; ++i) {
      subtract_product(x(i + 1), sum, factors[i]);
    }
  }

  Integer n_;
  bool idle_;
  T beta_;
  T v_[3];
  T left_[3];
  T right_[3];
};

template <class T>
class BulgeChain {
 public:
  /// Of a block of at least three rows.
  BulgeChain(Integer low, Integer high, const std::vector<ShiftPair<T>>& shifts, const SchurReach<T>& reach)
      : low_(low), high_(high), shifts_(shifts), reach_(reach), h_(reach.h), at_(shifts.size(), low - 1) {}

  void chase() {
    while (at_.back() < high_ - 1) {
      QuarnCheckInterrupt();
      move();
    }
  }

 private:
  static constexpr Integer kRows = 3;

  /// All bulges go down by a little more than the length of the chain.
  void move() {
    const Integer hindmost = at_.back();
    Integer foremost = hindmost;
    for (const Integer at : at_) {
      if (at < high_ - 1) {
        foremost = at;
        break;
      }
    }
    const Integer begin = hindmost + 1;
    const Integer end = std::min(high_, foremost + kRows * (Integer(at_.size()) + 2));
    const Integer top = std::max(low_, hindmost);
    const Integer size = end - begin + 1;
    OwnMatrix<T> own(size, size);
    const OneBasedMatrix<T> u = own.view();
    set_identity(size, u);
    filled_.clear();
    for (Integer j = 1; j <= size; ++j) {
      filled_.push_back({j, j});
    }
    Integer limit = end == high_ ? high_ - 1 : end - kRows;
    for (std::size_t i = 0; i < at_.size(); ++i) {
      if (at_[i] == high_ - 1) {
        continue;
      }
      for (; at_[i] < limit; ++at_[i]) {
        step(at_[i], top, end, begin, shifts_[i], u);
      }
      limit = at_[i] == high_ - 1 ? limit : limit - kRows;
    }
    reach_.transform(top, begin, end, u);
  }

  /// The reflector on rows k + 1, ... of the bulge that stands in column k.
  void step(Integer k, Integer top, Integer end, Integer begin, const ShiftPair<T>& shifts, OneBasedMatrix<T> u) {
    const Integer nr = std::min(kRows, high_ - k);
    T x[kRows];
    if (k < low_) {
      first_column(shifts, x);
    } else {
      for (Integer i = 0; i < nr; ++i) {
        x[i] = h_(k + 1 + i, k);
      }
    }
    const BulgeReflector<T> reflector(nr, x);
    if (k >= low_) {
      h_(k + 1, k) = reflector.beta();
      for (Integer i = 1; i < nr; ++i) {
        h_(k + 1 + i, k) = T();
      }
    }
    for (Integer j = k + 1; j <= end; ++j) {
      reflector.apply_left(h_.column(j).from(k + 1));
    }
    for (Integer i = top; i <= std::min(k + kRows + 1, high_); ++i) {
      reflector.apply_right(h_.row(i).from(k + 1));
    }
    const Integer column = k + 2 - begin;
    Filled* columns = filled_.data() + (column - 1);
    Filled rows = columns[0];
    for (Integer i = 1; i < nr; ++i) {
      const Filled& other = columns[i];
      rows = {std::min(rows.first, other.first), std::max(rows.last, other.last)};
    }
    std::fill(columns, columns + nr, rows);
    for (Integer i = rows.first; i <= rows.last; ++i) {
      reflector.apply_right(u.row(i).from(column));
    }
  }

  /// Of (H - first) (H - second) - cross, over h(low + 1, low).
  void first_column(const ShiftPair<T>& shifts, T* x) const {
    const T& corner = h_(low_, low_);
    const T a = shifts.first - corner;
    const T b = shifts.second - corner;
    x[0] = quotient(a * b - shifts.cross, h_(low_ + 1, low_)) + h_(low_, low_ + 1);
    x[1] = h_(low_ + 1, low_ + 1) - corner - a - b;
    x[2] = h_(low_ + 2, low_ + 1);
  }

  /// The rows of a column of the orthogonal matrix that are not zero.
  struct Filled {
    Integer first;
    Integer last;
  };

  Integer low_;
  Integer high_;
  const std::vector<ShiftPair<T>>& shifts_;
  const SchurReach<T>& reach_;
  OneBasedMatrix<T> h_;
  std::vector<Integer> at_;  // the columns that the bulges stand in: low - 1 before they begin, high - 1 at their end
  std::vector<Filled> filled_;
};

}  // namespace tesk
