// The QZ algorithm: C. B. Moler, G. W. Stewart, An algorithm for generalized matrix eigenvalue problems, SIAM J. Numer.
// Anal. 10 (1973), with the treatment of infinite eigenvalues of xGGHRD and xHGEQZ of E. Anderson et al., LAPACK Users'
// Guide.
#include "src/dense/generalised_schur.h"

#include <algorithm>
#include <cstdint>

#include "quarn/quarnthread.h"
#include "src/dense/guard_digits.h"
#include "src/dense/householder.h"
#include "src/dense/plane_rotation.h"
#include "src/frame/constants.h"

namespace tesk {
namespace {

/// H, T and their factors, with the columns and rows that rotations reach.
template <class T>
class Rotator {
 public:
  explicit Rotator(const Pencil<T>& pencil) : p_(pencil) {}

 protected:
  using Turn = PlaneRotation<T>;

  /// Rows i and i + 1 of H from column `first` on, and of T from its own first one.
  void turn_rows(const Turn& turn, Integer i, Integer first_h, Integer first_t, Integer last) const {
    turn.apply(last - first_h + 1, p_.h.row(i).from(first_h), p_.h.row(i + 1).from(first_h));
    turn.apply(last - first_t + 1, p_.t.row(i).from(first_t), p_.t.row(i + 1).from(first_t));
    turn.apply_adjoint(p_.q_rows, p_.q.column(i), p_.q.column(i + 1));
  }
  /// Columns j + 1 and j, in this order, down to these rows.
  void turn_columns(const Turn& turn, Integer j, Integer first, Integer last_h, Integer last_t) const {
    turn.apply(last_h - first + 1, p_.h.column(j + 1).from(first), p_.h.column(j).from(first));
    turn.apply(last_t - first + 1, p_.t.column(j + 1).from(first), p_.t.column(j).from(first));
    turn.apply(p_.z_rows, p_.z.column(j + 1), p_.z.column(j));
  }

  Pencil<T> p_;
};

template <class T>
class Reduction : Rotator<T> {
  using Rotator<T>::p_;
  using typename Rotator<T>::Turn;

 public:
  using Rotator<T>::Rotator;

  void run() const {
    const Integer n = p_.n;
    for (Integer j = 1; j <= n - 2; ++j) {
      QuarnCheckInterrupt();
      for (Integer i = n; i >= j + 2; --i) {
        const Turn left(p_.h(i - 1, j), p_.h(i, j));
        p_.h(i - 1, j) = left.r;
        p_.h(i, j) = T();
        this->turn_rows(left, i - 1, j + 1, i - 1, n);
        const Turn right(p_.t(i, i), p_.t(i, i - 1));
        p_.t(i, i) = right.r;
        p_.t(i, i - 1) = T();
        this->turn_columns(right, i - 1, 1, n, i - 1);
      }
    }
  }
};

/// Frobenius norm.
template <class T>
QuarnFloat norm_of(Integer n, OneBasedMatrix<T> a) {
  QuarnFloat squares;
  for (Integer j = 1; j <= n; ++j) {
    squares += sum_of_squares(n, a.column(j));
  }
  return sqrt(squares);
}

template <class T>
class Qz : Rotator<T> {
  using Rotator<T>::p_;
  using typename Rotator<T>::Turn;
  static constexpr bool kIsReal = sizeof(T) == sizeof(QuarnFloat);

 public:
  Qz(bool wants_schur_form, const Pencil<T>& pencil)
      : Rotator<T>(pencil), whole_(wants_schur_form), ulp_(5 * epsilon()) {
    small_h_ = ulp_ * norm_of(p_.n, p_.h);
    small_t_ = ulp_ * norm_of(p_.n, p_.t);
  }

  Integer solve() {
    const std::int64_t published = std::int64_t(30) * p_.n;
    std::int64_t left = published + published * QuarnDigits() / 8;
    Integer iteration = 0;
    for (Integer last = p_.n; last >= 1;) {
      QuarnCheckInterrupt();
      const Integer first = block_start(last);
      if (first == last) {
        make_positive(last);
        --last;
        iteration = 0;
      } else if (first + 1 == last && is_pair(first)) {
        last -= 2;
        iteration = 0;
      } else if (left-- <= 0) {
        return last;
      } else {
        sweep(first, last, ++iteration);
      }
    }
    return 0;
  }

 private:
  Integer last_column(Integer last) const { return whole_ ? p_.n : last; }

  bool negligible(Integer k) const {
    const QuarnFloat element = magnitude(p_.h(k, k - 1));
    return element <= small_h_ || element <= ulp_ * (magnitude(p_.h(k - 1, k - 1)) + magnitude(p_.h(k, k)));
  }
  bool vanishes(Integer k) const { return magnitude(p_.t(k, k)) <= small_t_; }

  void turn_rows_to(Integer i, Integer first_t, Integer last, Integer j) const {
    const Turn turn(p_.h(i, j), p_.h(i + 1, j));
    p_.h(i, j) = turn.r;
    p_.h(i + 1, j) = T();
    this->turn_rows(turn, i, j + 1, first_t, last_column(last));
  }

  /// Infinite eigenvalue in the last row: h(last, last - 1) := 0.
  void split_last(Integer last) const {
    const Turn turn(p_.h(last, last), p_.h(last, last - 1));
    p_.h(last, last) = turn.r;
    p_.h(last, last - 1) = T();
    this->turn_columns(turn, last - 1, 1, last - 1, last - 1);
  }

  /// t(j, j) = 0 goes down to the last row.
  void chase_zero(Integer j, Integer last) const {
    for (Integer k = j; k < last; ++k) {
      const Turn left(p_.t(k, k + 1), p_.t(k + 1, k + 1));
      p_.t(k, k + 1) = left.r;
      p_.t(k + 1, k + 1) = T();
      this->turn_rows(left, k, k - 1, k + 2, last_column(last));
      const Turn right(p_.h(k + 1, k), p_.h(k + 1, k - 1));
      p_.h(k + 1, k) = right.r;
      p_.h(k + 1, k - 1) = T();
      this->turn_columns(right, k - 1, 1, k, k - 1);
    }
    split_last(last);
  }

  /// The first row of the block that ends in row `last` and has no zero on the diagonal of T; `last` itself when an
  /// eigenvalue has split off.
  Integer block_start(Integer last) const {
    if (last == 1) {
      return last;
    }
    if (negligible(last)) {
      p_.h(last, last - 1) = T();
      return last;
    }
    if (vanishes(last)) {
      p_.t(last, last) = T();
      split_last(last);
      return last;
    }
    Integer j = last - 1;
    for (;; --j) {
      const bool top = j == 1 || negligible(j);
      if (top && j > 1) {
        p_.h(j, j - 1) = T();
      }
      if (vanishes(j)) {
        p_.t(j, j) = T();
        return top ? split_first(j, last) : (chase_zero(j, last), last);
      }
      if (top) {
        return j;
      }
    }
  }

  /// Infinite eigenvalues in the first rows of a block split off there.
  Integer split_first(Integer j, Integer last) const {
    for (Integer k = j; k < last; ++k) {
      turn_rows_to(k, k + 1, last, k);
      if (!vanishes(k + 1)) {
        return k + 1;
      }
      p_.t(k + 1, k + 1) = T();
    }
    return last;
  }

  /// t(j, j) becomes real and not negative.
  void make_positive(Integer j) const {
    T& element = p_.t(j, j);
    if (vanishes(j)) {
      element = T();
      return;
    }
    const QuarnFloat size = modulus(element);
    if (element == T(size)) {
      return;
    }
    T unit = conjugate(element);
    multiply_by(unit, 1 / size);
    scale(whole_ ? j : 1, unit, whole_ ? p_.h.column(j) : p_.h.column(j).from(j));
    scale(whole_ ? j : 1, unit, whole_ ? p_.t.column(j) : p_.t.column(j).from(j));
    scale(p_.z_rows, unit, p_.z.column(j));
    p_.t(j, j) = T(size);
  }

  /// The trailing 2 by 2 block of H T^-1, with its last element's shift.
  struct Quotient {
    T a, b, c, d;
  };
  Quotient quotient_block(Integer k) const {
    const T& t1 = p_.t(k, k);
    const T& t2 = p_.t(k + 1, k + 1);
    Quotient m;
    m.a = quotient(p_.h(k, k), t1);
    m.c = quotient(p_.h(k + 1, k), t1);
    m.b = quotient(p_.h(k, k + 1) - m.a * p_.t(k, k + 1), t2);
    m.d = quotient(p_.h(k + 1, k + 1) - m.c * p_.t(k, k + 1), t2);
    return m;
  }

  /// Whether the block in rows first, first + 1 has no real eigenvalues; T becomes diagonal in it then.
  bool is_pair(Integer first) const {
    if constexpr (kIsReal) {
      if (discriminant(quotient_block(first)) < 0) {
        diagonalise(first);
        return discriminant(quotient_block(first)) < 0;
      }
    }
    return false;
  }
  static QuarnFloat discriminant(const Quotient& m) {
    if constexpr (kIsReal) {
      const QuarnFloat half = (m.a - m.d) * QuarnFloat(0.5);
      return half * half + m.b * m.c;
    }
    return {};
  }

  void diagonalise(Integer k) const {
    if constexpr (kIsReal) {
      const Integer last = k + 1;
      const Integer first = whole_ ? 1 : k;
      const QuarnFloat& a = p_.t(k, k);
      const QuarnFloat& b = p_.t(k, last);
      const QuarnFloat& d = p_.t(last, last);
      if (b != 0) {
        const QuarnFloat zeta = ((b - a) * (b + a) + d * d) / (2 * a * b);
        const QuarnFloat tangent = with_sign(1 / (fabs(zeta) + sqrt(1 + zeta * zeta)), zeta);
        const QuarnFloat c = 1 / sqrt(1 + tangent * tangent);
        const QuarnFloat s = -c * tangent;
        rotate(last - first + 1, p_.h.column(k).from(first), p_.h.column(last).from(first), c, s);
        rotate(last - first + 1, p_.t.column(k).from(first), p_.t.column(last).from(first), c, s);
        rotate(p_.z_rows, p_.z.column(k), p_.z.column(last), c, s);
        const Turn left(p_.t(k, k), p_.t(last, k));
        this->turn_rows(left, k, k, k, last_column(last));
        p_.t(last, k) = 0;
        p_.t(k, last) = 0;
      }
      for (Integer j = k; j <= last; ++j) {
        if (p_.t(j, j) < 0) {
          const QuarnFloat minus(-1);
          scale(last - first + 1, minus, p_.h.column(j).from(first));
          scale(last - first + 1, minus, p_.t.column(j).from(first));
          scale(p_.z_rows, minus, p_.z.column(j));
        }
      }
    }
  }

  /// The eigenvalue of the block at the end that is nearer to its last element.
  T shift(Integer last) const {
    const Quotient m = quotient_block(last - 1);
    const T product = m.b * m.c;
    if (is_zero(product)) {
      return m.d;
    }
    T half = m.a - m.d;
    multiply_by(half, QuarnFloat(0.5));
    T root = sqrt(half * half + product);
    T sum = half + root;
    if (T other = half - root; magnitude(other) > magnitude(sum)) {
      sum = std::move(other);
    }
    return m.d - quotient(product, sum);
  }

  /// Exceptional shifts are ever rarer: a defective eigenvalue is approached linearly, and each of them throws that
  /// back.
  bool is_exceptional(Integer iteration) const {
    const Integer turn = iteration / period_;
    return iteration % period_ == 0 && (turn & (turn - 1)) == 0;
  }

  void sweep(Integer first, Integer last, Integer iteration) {
    const bool exceptional = is_exceptional(iteration);
    if constexpr (kIsReal) {
      if (last - first > 1) {
        double_sweep(first, last, exceptional);
        return;
      }
    }
    T by;
    if (exceptional) {
      exceptional_ = exceptional_ + quotient(p_.h(last, last - 1), p_.t(last - 1, last - 1));
      by = exceptional_;
    } else {
      by = shift(last);
    }
    single_sweep(first, last, by);
  }

  void single_sweep(Integer first, Integer last, const T& by) const {
    const Integer columns = last_column(last);
    const Integer top = whole_ ? 1 : first;
    for (Integer j = first; j < last; ++j) {
      if (j == first) {
        const Turn turn(p_.h(j, j) - by * p_.t(j, j), p_.h(j + 1, j));
        this->turn_rows(turn, j, j, j, columns);
      } else {
        turn_rows_to(j, j, last, j - 1);
      }
      clear_below(j, top, std::min(j + 2, last));
    }
  }

  /// t(j + 1, j) := 0 from the right; H has rows down to last_h in these columns.
  void clear_below(Integer j, Integer top, Integer last_h) const {
    const Turn turn(p_.t(j + 1, j + 1), p_.t(j + 1, j));
    p_.t(j + 1, j + 1) = turn.r;
    p_.t(j + 1, j) = T();
    this->turn_columns(turn, j, top, last_h, j);
  }

  /// The first column of (H T^-1 - s1)(H T^-1 - s2) for the two eigenvalues of the block at the end.
  void first_column(Integer f, Integer last, QuarnFloat* v) const {
    const Quotient m = quotient_block(last - 1);
    const Quotient l = quotient_block(f);
    const QuarnFloat third = p_.h(f + 2, f + 1) / p_.t(f + 1, f + 1);
    v[0] = (m.a - l.a) * (m.d - l.a) - m.b * m.c + l.b * l.c;
    v[1] = (l.d - l.a - (m.a - l.a) - (m.d - l.a)) * l.c;
    v[2] = third * l.c;
  }

  void double_sweep(Integer first, Integer last, bool exceptional) const {
    const Integer columns = last_column(last);
    const Integer top = whole_ ? 1 : first;
    QuarnFloat v[3] = {0, 1, QuarnFloat(1.1605)};
    if (!exceptional) {
      first_column(first, last, v);
    }
    for (Integer j = first; j <= last - 2; ++j) {
      for (Integer i = 0; j > first && i < 3; ++i) {
        v[i] = p_.h(j + i, j - 1);
      }
      const Reflector left(3, v);
      if (j > first) {
        p_.h(j, j - 1) = left.beta();
        p_.h(j + 1, j - 1) = 0;
        p_.h(j + 2, j - 1) = 0;
      }
      for (Integer k = j; k <= columns; ++k) {
        left.apply(p_.h.column(k).from(j));
        left.apply(p_.t.column(k).from(j));
      }
      for (Integer i = 1; i <= p_.q_rows; ++i) {
        left.apply(p_.q.row(i).from(j));
      }
      // Row j + 2 of T: its elements backwards, so that the last one stays.
      const QuarnFloat w[3] = {p_.t(j + 2, j + 2), p_.t(j + 2, j + 1), p_.t(j + 2, j)};
      const Reflector right(3, w);
      const auto apply = [&](OneBasedVector<QuarnFloat> row) { right.apply(row.from(j).reversed(3)); };
      for (Integer i = top; i <= std::min(j + 3, last); ++i) {
        apply(p_.h.row(i));
      }
      for (Integer i = top; i <= j + 1; ++i) {
        apply(p_.t.row(i));
      }
      p_.t(j + 2, j + 2) = right.beta();
      p_.t(j + 2, j + 1) = 0;
      p_.t(j + 2, j) = 0;
      for (Integer i = 1; i <= p_.z_rows; ++i) {
        apply(p_.z.row(i));
      }
      clear_below(j, top, std::min(j + 3, last));
    }
    turn_rows_to(last - 1, last - 1, last, last - 2);
    clear_below(last - 1, top, last);
  }

  bool whole_;
  QuarnFloat ulp_;
  QuarnFloat small_h_;
  QuarnFloat small_t_;
  T exceptional_{};
  Integer period_ = exceptional_period();
};

}  // namespace

template <class T>
void reduce_pencil(const Pencil<T>& pencil) {
  Reduction<T>(pencil).run();
}
template <class T>
Integer qz(bool wants_schur_form, const Pencil<T>& pencil) {
  return Qz<T>(wants_schur_form, pencil).solve();
}

template void reduce_pencil(const Pencil<QuarnFloat>&);
template void reduce_pencil(const Pencil<Complex>&);
template Integer qz(bool, const Pencil<QuarnFloat>&);
template Integer qz(bool, const Pencil<Complex>&);

}  // namespace tesk
