// Singular values to high relative accuracy: Z. Drmac, K. Veselic, New fast and accurate Jacobi SVD algorithm, SIAM J.
// Matrix Anal. Appl. 29 (2008): QR with column pivoting of sorted rows, then one-sided rotations of the columns of R^H.
#include <numeric>

#include "src/dense/bidiagonal.h"
#include "src/dense/complete_orthogonal.h"
#include "src/dense/rotation.h"
#include "src/frame/constants.h"

namespace tesk {
namespace {

/// Makes the columns of X orthogonal, X of order n, and J := J times what does it, J with `rows` rows.
template <class T>
class OneSidedRotations {
 public:
  OneSidedRotations(Integer n, OneBasedMatrix<T> x, Integer rows, OneBasedMatrix<T> j)
      : n_(n), x_(x), rows_(rows), j_(j) {
    constexpr Integer kOfRotation = 4;  // roundings of a rotation that the product of two columns shows
    const QuarnFloat tolerance = 5 * epsilon() * (n + kOfRotation);
    squared_ = tolerance * tolerance;
  }

  /// Whether a sweep found nothing to do in the end.
  bool converge() {
    const int most = 30 + QuarnDigits() / 4;
    for (int sweep = 0; sweep < most; ++sweep) {
      bool turned = false;
      for (Integer p = 1; p < n_; ++p) {
        QuarnCheckInterrupt();
        bring_largest(p);
        for (Integer q = p + 1; q <= n_; ++q) {
          turned |= rotate_pair(p, q);
        }
      }
      if (!turned) {
        return true;
      }
    }
    return false;
  }

 private:
  void bring_largest(Integer p) {
    Integer largest = p;
    QuarnFloat size = sum_of_squares(n_, x_.column(p));
    for (Integer q = p + 1; q <= n_; ++q) {
      if (QuarnFloat candidate = sum_of_squares(n_, x_.column(q)); candidate > size) {
        size = std::move(candidate);
        largest = q;
      }
    }
    if (largest != p) {
      swap_vectors(n_, x_.column(p), x_.column(largest));
      swap_vectors(rows_, j_.column(p), j_.column(largest));
    }
  }

  /// The product conjugated p^H q made real and not negative by a factor of modulus 1 of column q.
  static QuarnFloat make_real(const QuarnFloat& product, QuarnFloat& factor) {
    factor = signbit(product) ? -1 : 1;
    return fabs(product);
  }
  static QuarnFloat make_real(const Complex& product, Complex& factor) {
    QuarnFloat size = modulus(product);
    factor = conj(product);
    multiply_by(factor, 1 / size);
    return size;
  }

  bool rotate_pair(Integer p, Integer q) {
    const OneBasedVector<T> x = x_.column(p);
    const OneBasedVector<T> y = x_.column(q);
    T product{};
    exact::multiply_matrix_vector(Op::conjugate_transpose, n_, Integer(1), T(1.0),
                                  OneBasedMatrix<T>(x.first(), x.stride(), 0), y, T(), OneBasedVector<T>(&product, 1));
    if (is_zero(product)) {
      return false;
    }
    const QuarnFloat alpha = sum_of_squares(n_, x);
    const QuarnFloat beta = sum_of_squares(n_, y);
    T factor{};
    const QuarnFloat gamma = make_real(product, factor);
    if (gamma * gamma <= squared_ * alpha * beta) {
      return false;
    }
    scale(n_, factor, y);
    scale(rows_, factor, j_.column(q));
    const QuarnFloat zeta = (beta - alpha) / (2 * gamma);
    const QuarnFloat t = with_sign(1 / (fabs(zeta) + sqrt(1 + zeta * zeta)), zeta);
    const QuarnFloat c = 1 / sqrt(1 + t * t);
    const QuarnFloat s = -(c * t);
    rotate(n_, x, y, c, s);
    rotate(rows_, j_.column(p), j_.column(q), c, s);
    return true;
  }

  Integer n_;
  OneBasedMatrix<T> x_;
  Integer rows_;
  OneBasedMatrix<T> j_;
  QuarnFloat squared_;
};

/// The rows with the largest elements first.
template <class T>
std::vector<Integer> sorted_rows(Integer m, Integer n, OneBasedMatrix<T> a) {
  std::vector<QuarnFloat> sizes;
  for (Integer i = 1; i <= m; ++i) {
    sizes.push_back(n == 0 ? QuarnFloat() : magnitude(a(i, index_of_largest(n, a.row(i)))));
  }
  std::vector<Integer> order(static_cast<std::size_t>(m));
  std::iota(order.begin(), order.end(), 1);
  std::stable_sort(order.begin(), order.end(),
                   [&](Integer i, Integer j) { return sizes[std::size_t(i - 1)] > sizes[std::size_t(j - 1)]; });
  return order;
}

/// Columns r + 1, ..., n of W of order n orthonormal to the first r, which are orthonormal.
template <class T>
void complete_basis(Integer n, Integer r, OneBasedMatrix<T> w) {
  if (r == n) {
    return;
  }
  OwnMatrix<T> known(n, r);
  copy_matrix(n, r, w, known.view());
  std::vector<T> tau(static_cast<std::size_t>(r));
  factorise_qr(n, r, known.view(), tau.data());
  for (Integer j = r + 1; j <= n; ++j) {
    fill(n, T(), w.column(j));
    w(j, j) = T(1.0);
  }
  if (r > 0) {
    apply_reflectors(Side::left, Op::none, n, n - r, r, known.view(), tau.data(), w.from(1, r + 1));
  }
}

}  // namespace

template <class T>
Integer jacobi_svd(Integer m, Integer n, OneBasedMatrix<T> a, QuarnFloat* s, bool wants_u, OneBasedMatrix<T> u,
                   bool wants_v, OneBasedMatrix<T> v) {
  const std::vector<Integer> order = sorted_rows(m, n, a);
  OwnMatrix<T> sorted(m, n);
  const OneBasedMatrix<T> qr = sorted.view();
  for (Integer i = 1; i <= m; ++i) {
    copy(n, a.row(order[std::size_t(i - 1)]), qr.row(i));
  }
  std::vector<Integer> pivots(static_cast<std::size_t>(n), 0);
  std::vector<T> tau(pivots.size());
  factorise_pivoted(m, n, qr, pivots.data(), tau.data());
  OwnMatrix<T> triangle(n, n);
  const OneBasedMatrix<T> x = triangle.view();
  OwnMatrix<T> turned(m, wants_u ? n : 0);
  const OneBasedMatrix<T> j = turned.view();
  for (Integer k = 1; k <= n; ++k) {
    for (Integer i = k; i <= n; ++i) {
      x(i, k) = conjugate(qr(k, i));
    }
    if (wants_u) {
      j(k, k) = T(1.0);
    }
  }
  if (!OneSidedRotations<T>(n, x, wants_u ? n : 0, j).converge()) {
    return 1;
  }
  for (Integer k = 1; k <= n; ++k) {
    s[k - 1] = sqrt(sum_of_squares(n, x.column(k)));
  }
  Integer rank = 0;
  for (Integer k = 1; k <= n; ++k) {
    Integer most = k;
    for (Integer i = k + 1; i <= n; ++i) {
      most = s[i - 1] > s[most - 1] ? i : most;
    }
    if (most != k) {
      std::swap(s[k - 1], s[most - 1]);
      swap_vectors(n, x.column(k), x.column(most));
      swap_vectors(wants_u ? n : 0, j.column(k), j.column(most));
    }
    if (s[k - 1] != 0) {
      rank = k;
      scale(n, 1 / s[k - 1], x.column(k));
    }
  }
  if (wants_v) {
    complete_basis(n, rank, x);
    for (Integer i = 1; i <= n; ++i) {
      copy(n, x.row(i), v.row(pivots[std::size_t(i - 1)]));
    }
  }
  if (wants_u && n > 0) {
    apply_reflectors(Side::left, Op::none, m, n, n, qr, tau.data(), j);
    for (Integer i = 1; i <= m; ++i) {
      copy(n, j.row(i), u.row(order[std::size_t(i - 1)]));
    }
  }
  return 0;
}

template Integer jacobi_svd(Integer, Integer, OneBasedMatrix<QuarnFloat>, QuarnFloat*, bool, OneBasedMatrix<QuarnFloat>,
                            bool, OneBasedMatrix<QuarnFloat>);
template Integer jacobi_svd(Integer, Integer, OneBasedMatrix<Complex>, QuarnFloat*, bool, OneBasedMatrix<Complex>, bool,
                            OneBasedMatrix<Complex>);

}  // namespace tesk
