// J. R. Bunch, L. Kaufman, Some stable methods for calculating inertia and solving symmetric linear systems, Math.
// Comp. 31 (1977); E. Anderson et al., LAPACK Users' Guide: xSYTRF, xHETRF, xSYTRS, xHETRS. Symmetric and Hermitian
// matrices differ by conjugations alone. An upper triangle is a lower one with its indices reversed. Columns are
// brought up to date when they are looked at, and what is behind a panel by one product, so that an entry is rounded
// once for each panel.
#include <utility>
#include <vector>

#include "quarn/quarnthread.h"
#include "src/dense/householder.h"
#include "src/dense/norm_estimate.h"
#include "tesk2mp/structured.h"

namespace tesk {
namespace {

/// Whether a(j, i) is a(i, j) or its conjugate.
enum class Mirror { same, conjugate };

template <class T>
T mirrored(Mirror mirror, const T& x) {
  return mirror == Mirror::conjugate ? conjugate(x) : x;
}
template <class T>
void make_diagonal(Mirror mirror, T& x) {
  if (mirror == Mirror::conjugate) {
    exact::clear_imaginary(x);
  }
}
/// The place of the element of largest modulus, and that: with |re| + |im| a block of order 2 could be singular at few
/// digits.
struct Largest {
  Integer place = 0;
  QuarnFloat size;

  template <class T>
  void include(Integer i, const T& x) {
    QuarnFloat candidate = far_modulus(x);
    if (place == 0 || candidate > size) {
      place = i;
      size = std::move(candidate);
    }
  }
};

template <class T>
class Factorisation {
 public:
  /// Of the lower triangle.
  Factorisation(Mirror mirror, Integer n, OneBasedMatrix<T> a, Integer* ipiv)
      : mirror_(mirror), n_(n), a_(a), ipiv_(ipiv), alpha_((1 + sqrt(QuarnFloat(17))) / 8) {}

  /// Returns INFO.
  Integer run() {
    for (Integer first = 1; first <= n_;) {
      first = panel(first);
    }
    return info_;
  }

 private:
  static constexpr Integer kMostColumns = 32;

  /// Columns first, first + 1, ...; returns the first one behind.
  Integer panel(Integer first) {
    const Integer rows = n_ - first + 1;
    const Integer most = std::min(rows, kMostColumns);
    const bool all = most == rows;
    const OneBasedMatrix<T> a = a_.from(first, first);
    OwnMatrix<T> own(rows, most + 1);
    const OneBasedMatrix<T> w = own.view();
    Integer k = 1;
    // A block of order 2 needs room for two columns.
    while (all ? k <= rows : k < most) {
      QuarnCheckInterrupt();
      k += step(rows, k, a, w, ipiv_ + first - 1, first);
    }
    const Integer done = k - 1;
    if (k <= rows) {
      update_rest(rows, done, a, w);
    }
    // The published form interchanges no rows to the left of a pivot.
    for (Integer j = done; j >= 1;) {
      const Integer row = ipiv_[first - 1 + j - 1];
      const Integer other = (row < 0 ? -row : row);
      const Integer at = j;
      j -= row < 0 ? 2 : 1;
      if (other != at && j >= 1) {
        swap_vectors(j, a.row(other), a.row(at));
      }
    }
    for (Integer j = first; j < first + done; ++j) {
      Integer& row = ipiv_[j - 1];
      row += row < 0 ? 1 - first : first - 1;
    }
    return first + done;
  }

  /// w(from..rows, column) := that column of the matrix, less what the pivots before have done to it. `row` is the row
  /// of W that goes with it.
  void bring_up_to_date(Integer rows, Integer from, Integer done, Integer row, OneBasedMatrix<T> a, OneBasedMatrix<T> w,
                        Integer column) {
    if (done > 0) {
      exact::multiply_matrix_vector(Op::none, rows - from + 1, done, T(-1.0), a.from(from, 1), w.row(row), T(1.0),
                                    w.column(column).from(from));
    }
    make_diagonal(mirror_, w(row, column));
  }

  /// One pivot, of order 1 or 2, at column k of the panel; returns its order.
  Integer step(Integer rows, Integer k, OneBasedMatrix<T> a, OneBasedMatrix<T> w, Integer* ipiv, Integer first) {
    copy(rows - k + 1, a.column(k).from(k), w.column(k).from(k));
    make_diagonal(mirror_, w(k, k));
    bring_up_to_date(rows, k, k - 1, k, a, w, k);
    const QuarnFloat diagonal = far_modulus(w(k, k));
    Largest found;
    for (Integer i = k + 1; i <= rows; ++i) {
      found.include(i, w(i, k));
    }
    const Integer largest = found.place;
    const QuarnFloat& beside = found.size;
    Integer row = k;
    Integer order = 1;
    const bool zero = diagonal == 0 && beside == 0;
    if (zero) {
      info_ = info_ == 0 ? first + k - 1 : info_;
    } else if (diagonal < alpha_ * beside) {
      row = largest;
      order = second_choice(rows, k, a, w, largest, diagonal, beside);
      if (order == 0) {  // column k after all
        row = k;
        order = 1;
      }
    }
    const Integer last = k + order - 1;
    if (row != last) {
      exchange(rows, last, row, k, a, w);
    }
    if (order == 1) {
      ipiv[k - 1] = row;
      copy(rows - k + 1, w.column(k).from(k), a.column(k).from(k));
      if (!zero) {
        divide_column(rows, k, a);
      }
    } else {
      ipiv[k - 1] = -row;
      ipiv[k] = -row;
      divide_columns(rows, k, a, w);
    }
    if (mirror_ == Mirror::conjugate) {
      for (Integer j = k; j <= last; ++j) {
        conjugate_vector(rows - j, w.column(j).from(j + 1));
      }
    }
    return order;
  }

  /// With the column of the row of the largest element in w(., k + 1): the order of the pivot, 0 for column k itself.
  Integer second_choice(Integer rows, Integer k, OneBasedMatrix<T> a, OneBasedMatrix<T> w, Integer largest,
                        const QuarnFloat& diagonal, const QuarnFloat& beside) {
    for (Integer i = k; i < largest; ++i) {
      w(i, k + 1) = mirrored(mirror_, a(largest, i));
    }
    copy(rows - largest + 1, a.column(largest).from(largest), w.column(k + 1).from(largest));
    make_diagonal(mirror_, w(largest, k + 1));
    bring_up_to_date(rows, k, k - 1, largest, a, w, k + 1);
    Largest found;
    for (Integer i = k; i <= rows; ++i) {
      if (i != largest) {
        found.include(i, w(i, k + 1));
      }
    }
    const QuarnFloat& most = found.size;
    if (diagonal >= alpha_ * beside * (beside / most)) {
      return 0;
    }
    if (far_modulus(w(largest, k + 1)) >= alpha_ * most) {
      copy(rows - k + 1, w.column(k + 1).from(k), w.column(k).from(k));
      return 1;
    }
    return 2;
  }

  /// Row and column `to` take the place of `from`, of which the column itself is in W; the pivot starts at column k.
  void exchange(Integer rows, Integer from, Integer to, Integer k, OneBasedMatrix<T> a, OneBasedMatrix<T> w) {
    a(to, to) = a(from, from);
    make_diagonal(mirror_, a(to, to));
    for (Integer i = from + 1; i < to; ++i) {
      a(to, i) = mirrored(mirror_, a(i, from));
    }
    copy(rows - to, a.column(from).from(to + 1), a.column(to).from(to + 1));
    swap_vectors(k - 1, a.row(from), a.row(to));
    swap_vectors(from, w.row(from), w.row(to));
  }

  void divide_column(Integer rows, Integer k, OneBasedMatrix<T> a) {
    for (Integer i = k + 1; i <= rows; ++i) {
      a(i, k) = over_diagonal(a(i, k), a(k, k));
    }
  }
  static QuarnFloat over_diagonal(const QuarnFloat& x, const QuarnFloat& d) { return x / d; }
  Complex over_diagonal(const Complex& x, const Complex& d) const {
    return mirror_ == Mirror::conjugate ? Complex(x.re / d.re, x.im / d.re) : quotient(x, d);
  }

  /// Columns k and k + 1 of L, from W = L D; D is scaled by its element beside the diagonal, the largest one.
  void divide_columns(Integer rows, Integer k, OneBasedMatrix<T> a, OneBasedMatrix<T> w) {
    if (k < rows - 1) {
      const T d21 = w(k + 1, k);
      const T d11 = quotient(w(k + 1, k + 1), d21);
      const T d22 = quotient(w(k, k), mirrored(mirror_, d21));
      const T t = quotient(T(1.0), d11 * d22 - T(1.0));
      const T left = quotient(t, mirrored(mirror_, d21));
      const T right = quotient(t, d21);
      for (Integer j = k + 2; j <= rows; ++j) {
        T first = -w(j, k + 1);
        add_product(first, d11, w(j, k));
        T second = -w(j, k);
        add_product(second, d22, w(j, k + 1));
        a(j, k) = left * first;
        a(j, k + 1) = right * second;
      }
    }
    a(k, k) = w(k, k);
    a(k + 1, k) = w(k + 1, k);
    a(k + 1, k + 1) = w(k + 1, k + 1);
  }

  /// The lower triangle behind the panel, less L W^T.
  void update_rest(Integer rows, Integer done, OneBasedMatrix<T> a, OneBasedMatrix<T> w) {
    for (Integer j = done + 1; j <= rows; j += kMostColumns) {
      QuarnCheckInterrupt();
      const Integer columns = std::min(kMostColumns, rows - j + 1);
      // The diagonal block beside itself, of which the lower triangle counts.
      OwnMatrix<T> block(columns, columns);
      for (Integer i = 1; i <= columns; ++i) {
        copy(columns - i + 1, a.column(j + i - 1).from(j + i - 1), block.view().column(i).from(i));
        make_diagonal(mirror_, block.view()(i, i));
      }
      exact::multiply_matrices(Op::none, Op::transpose, columns, columns, done, T(-1.0), a.from(j, 1), w.from(j, 1),
                               T(1.0), block.view());
      for (Integer i = 1; i <= columns; ++i) {
        make_diagonal(mirror_, block.view()(i, i));
        copy(columns - i + 1, block.view().column(i).from(i), a.column(j + i - 1).from(j + i - 1));
      }
      const Integer next = j + columns;
      if (next <= rows) {
        exact::multiply_matrices(Op::none, Op::transpose, rows - next + 1, columns, done, T(-1.0), a.from(next, 1),
                                 w.from(j, 1), T(1.0), a.from(next, j));
      }
    }
  }

  Mirror mirror_;
  Integer n_;
  OneBasedMatrix<T> a_;
  Integer* ipiv_;
  QuarnFloat alpha_;
  Integer info_ = 0;
};

/// The row numbers of the reversed matrix, or back.
void reverse_pivots(Integer n, Integer* ipiv) {
  std::reverse(ipiv, ipiv + n);
  for (Integer k = 0; k < n; ++k) {
    ipiv[k] = ipiv[k] < 0 ? -(n + 1) - ipiv[k] : n + 1 - ipiv[k];
  }
}

template <class T>
Integer checked_factorisation(Mirror mirror, const char* uplo, Integer n, T* a, Integer lda, Integer* ipiv, T* work,
                              Integer lwork) {
  const Integer wrong = first_wrong(
      {{!is_triangle(uplo), 1}, {n < 0, 2}, {lda < std::max<Integer>(1, n), 4}, {lwork < 1 && lwork != -1, 7}});
  if (wrong != 0) {
    return -wrong;
  }
  work[0] = T(1.0);
  if (lwork == -1 || n == 0) {
    return 0;
  }
  const bool lower = triangle_of(uplo) == Triangle::lower;
  const OneBasedMatrix<T> view(a, lda);
  // U D U^H has its columns and rows in the opposite order: L D L^H of the reversed matrix.
  const Integer info = Factorisation<T>(mirror, n, lower ? view : view.reversed(n, n), ipiv).run();
  if (!lower) {
    reverse_pivots(n, ipiv);
    return info == 0 ? 0 : n + 1 - info;
  }
  return info;
}

/// Checks, then the solution of A X = B from the factors; returns INFO.
template <class T>
Integer solve_with_factors(Mirror mirror, const char* uplo, Integer n, Integer nrhs, T* a, Integer lda,
                           const Integer* ipiv, T* b, Integer ldb) {
  const Integer least = std::max<Integer>(1, n);
  const Integer wrong =
      first_wrong({{!is_triangle(uplo), 1}, {n < 0, 2}, {nrhs < 0, 3}, {lda < least, 5}, {ldb < least, 8}});
  if (wrong != 0 || n == 0 || nrhs == 0) {
    return -wrong;
  }
  const bool lower = triangle_of(uplo) == Triangle::lower;
  const OneBasedMatrix<T> given(a, lda);
  const OneBasedMatrix<T> right(b, ldb);
  const OneBasedMatrix<T> factors = lower ? given : given.reversed(n, n);
  const OneBasedMatrix<T> x = lower ? right : right.rows_reversed(n);
  std::vector<Integer> pivots(ipiv, ipiv + n);
  if (!lower) {
    reverse_pivots(n, pivots.data());
  }
  // L with its rows where all interchanges bring them, without the blocks of D.
  OwnMatrix<T> own(n, n);
  const OneBasedMatrix<T> l = own.view();
  std::vector<std::pair<Integer, Integer>> exchanges{};
  for (Integer k = 1; k <= n; ++k) {
    const bool pair = pivots[std::size_t(k - 1)] < 0;
    const Integer last = pair ? k + 1 : k;
    const Integer row = pair ? -pivots[std::size_t(k - 1)] : pivots[std::size_t(k - 1)];
    if (row != last) {
      exchanges.emplace_back(last, row);
      swap_vectors(k - 1, l.row(last), l.row(row));
      swap_vectors(nrhs, x.row(last), x.row(row));
    }
    for (Integer j = k; j <= last; ++j) {
      l(j, j) = T(1.0);
      copy(n - last, factors.column(j).from(last + 1), l.column(j).from(last + 1));
    }
    k = last;
  }
  exact::solve_lower(Diagonal::unit, false, n, nrhs, l, x);
  for (Integer k = 1; k <= n; ++k) {
    if (pivots[std::size_t(k - 1)] > 0) {
      for (Integer j = 1; j <= nrhs; ++j) {
        x(k, j) = quotient(x(k, j), factors(k, k));
      }
      continue;
    }
    const T d21 = factors(k + 1, k);
    const T d12 = mirrored(mirror, d21);
    const T top = quotient(factors(k, k), d12);
    const T bottom = quotient(factors(k + 1, k + 1), d21);
    const T denominator = top * bottom - T(1.0);
    for (Integer j = 1; j <= nrhs; ++j) {
      const T first = quotient(x(k, j), d12);
      const T second = quotient(x(k + 1, j), d21);
      x(k, j) = quotient(bottom * first - second, denominator);
      x(k + 1, j) = quotient(top * second - first, denominator);
    }
    ++k;
  }
  exact::solve_triangular_matrix(Side::left, Triangle::lower,
                                 mirror == Mirror::conjugate ? Op::conjugate_transpose : Op::transpose, Diagonal::unit,
                                 n, nrhs, T(1.0), l, x);
  for (auto exchange = exchanges.rbegin(); exchange != exchanges.rend(); ++exchange) {
    swap_vectors(nrhs, x.row(exchange->first), x.row(exchange->second));
  }
  return 0;
}

}  // namespace
}  // namespace tesk

using tesk::Mirror;

extern "C" {

void QuarnMPX_dsytrf_(const char* uplo, Integer n, QuarnFloat* a, Integer lda, Integer* ipiv, QuarnFloat* work,
                      Integer lwork, Integer* info, int /*uplo_length*/) {
  *info = tesk::checked_factorisation(Mirror::same, uplo, n, a, lda, ipiv, work, lwork);
}

void QuarnMPX_zsytrf_(const char* uplo, Integer n, Complex* a, Integer lda, Integer* ipiv, Complex* work, Integer lwork,
                      Integer* info, int /*uplo_length*/) {
  *info = tesk::checked_factorisation(Mirror::same, uplo, n, a, lda, ipiv, work, lwork);
}

void QuarnMPX_zhetrf_(const char* uplo, Integer n, Complex* a, Integer lda, Integer* ipiv, Complex* work, Integer lwork,
                      Integer* info, int /*uplo_length*/) {
  *info = tesk::checked_factorisation(Mirror::conjugate, uplo, n, a, lda, ipiv, work, lwork);
}

void QuarnMPX_dsytrs_(const char* uplo, Integer n, Integer nrhs, QuarnFloat* a, Integer lda, Integer* ipiv,
                      QuarnFloat* b, Integer ldb, Integer* info, int /*uplo_length*/) {
  *info = tesk::solve_with_factors(Mirror::same, uplo, n, nrhs, a, lda, ipiv, b, ldb);
}

void QuarnMPX_zsytrs_(const char* uplo, Integer n, Integer nrhs, Complex* a, Integer lda, Integer* ipiv, Complex* b,
                      Integer ldb, Integer* info, int /*uplo_length*/) {
  *info = tesk::solve_with_factors(Mirror::same, uplo, n, nrhs, a, lda, ipiv, b, ldb);
}

void QuarnMPX_zhetrs_(const char* uplo, Integer n, Integer nrhs, Complex* a, Integer lda, Integer* ipiv, Complex* b,
                      Integer ldb, Integer* info, int /*uplo_length*/) {
  *info = tesk::solve_with_factors(Mirror::conjugate, uplo, n, nrhs, a, lda, ipiv, b, ldb);
}
}
