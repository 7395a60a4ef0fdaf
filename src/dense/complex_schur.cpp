// The implicit single-shift QR algorithm on a complex upper Hessenberg matrix: J. G. F. Francis, The QR transformation,
// Comput. J. 4 (1961, 1962), as ZLAHQR of E. Anderson et al., LAPACK Users' Guide, does it; ZTREVC.
#include "src/dense/complex_schur.h"

#include <algorithm>
#include <utility>

#include "quarn/complex.h"
#include "quarn/quarnthread.h"
#include "src/dense/guard_digits.h"
#include "src/dense/multishift_qr.h"
#include "src/dense/plane_rotation.h"
#include "src/dense/power_of_ten.h"
#include "src/frame/constants.h"

namespace tesk {
namespace {

class ComplexQr {
 public:
  ComplexQr(bool wants_schur_form, Integer n, Integer ilo, Integer ihi, OneBasedMatrix<Complex> h, Integer rows,
            OneBasedMatrix<Complex> z)
      : wants_schur_form_(wants_schur_form), n_(n), ilo_(ilo), ihi_(ihi), h_(h), rows_(rows), z_(z) {}

  /// INFO
  Integer solve() {
    const std::int64_t published = std::int64_t(30) * (ihi_ - ilo_ + 1);
    std::int64_t left = published + published * QuarnDigits() / 8;
    for (Integer i = ihi_; i >= ilo_;) {
      for (std::int64_t iteration = 1;; ++iteration) {
        const Integer low = block_start(i);
        if (low == i) {
          break;
        }
        if (left-- <= 0) {
          return i;
        }
        QuarnCheckInterrupt();
        sweep(low, i, iteration % period_ == 0 ? exceptional_shift(i) : shift(i));
      }
      --i;
    }
    return 0;
  }

 private:
  bool negligible(Integer k) const {
    const QuarnFloat element = magnitude(h_(k, k - 1));
    QuarnFloat size = magnitude(h_(k - 1, k - 1)) + magnitude(h_(k, k));
    if (size == 0) {
      size = magnitude(h_(k - 1, k)) + (k > ilo_ + 1 ? magnitude(h_(k - 1, k - 2)) : QuarnFloat()) +
             (k < ihi_ ? magnitude(h_(k + 1, k)) : QuarnFloat());
    }
    return element <= ulp_ * size;
  }

  /// The first row of the block that ends in row i; the element beside it becomes zero.
  Integer block_start(Integer i) const {
    Integer k = i;
    while (k > ilo_ && !negligible(k)) {
      --k;
    }
    if (k > ilo_) {
      h_(k, k - 1) = Complex();
    }
    return k;
  }

  Complex exceptional_shift(Integer i) const { return h_(i, i) + Complex(QuarnFloat(0.75) * magnitude(h_(i, i - 1))); }

  /// The eigenvalue of the last 2 by 2 block that is nearer to its last element.
  Complex shift(Integer i) const {
    const Complex product = h_(i - 1, i) * h_(i, i - 1);
    if (is_zero(product)) {
      return h_(i, i);
    }
    Complex half = h_(i - 1, i - 1) - h_(i, i);
    multiply_by(half, QuarnFloat(0.5));
    Complex root = sqrt(half * half + product);
    if (half.re * root.re + half.im * root.im < 0) {
      root = -root;
    }
    return h_(i, i) - quotient(product, half + root);
  }

  void sweep(Integer low, Integer high, const Complex& by) {
    const Integer first = wants_schur_form_ ? 1 : low;
    const Integer last = wants_schur_form_ ? n_ : high;
    Complex x = h_(low, low) - by;
    Complex y = h_(low + 1, low);
    for (Integer k = low; k < high; ++k) {
      const ComplexRotation turn(x, y);
      if (k > low) {
        h_(k, k - 1) = turn.r;
        h_(k + 1, k - 1) = Complex();
      }
      turn.apply(last - k + 1, h_.row(k).from(k), h_.row(k + 1).from(k));
      const Integer reach = std::min(k + 2, high);
      turn.apply_adjoint(reach - first + 1, h_.column(k).from(first), h_.column(k + 1).from(first));
      turn.apply_adjoint(rows_, z_.column(k), z_.column(k + 1));
      if (k + 2 <= high) {
        x = h_(k + 1, k);
        y = h_(k + 2, k);
      }
    }
  }

  bool wants_schur_form_;
  Integer n_;
  Integer ilo_;
  Integer ihi_;
  OneBasedMatrix<Complex> h_;
  Integer rows_;
  OneBasedMatrix<Complex> z_;
  QuarnFloat ulp_ = 5 * epsilon();
  Integer period_ = exceptional_period();
};

}  // namespace

Integer complex_hessenberg_qr(bool wants_schur_form, Integer n, Integer ilo, Integer ihi, OneBasedMatrix<Complex> h,
                              OneBasedVector<Complex> w, Integer rows, OneBasedMatrix<Complex> z) {
  for (Integer i = ihi; i >= ilo && n > 0; --i) {
    for (Integer j = std::max(ilo, i - 1); j <= ihi; ++j) {
      if (!isfinite(h(i, j).re) || !isfinite(h(i, j).im)) {
        return i;
      }
    }
  }
  // What stands below the first subdiagonal is not part of the matrix.
  for (Integer j = ilo; j <= ihi - 2; ++j) {
    fill(n - j - 1, Complex(), h.column(j).from(j + 2));
  }
  const Integer whole = wants_schur_form ? n : ihi - ilo + 1;
  const OneBasedMatrix<QuarnFloat> part = parts(wants_schur_form ? h : h.from(ilo, ilo));
  const Integer exponent = n == 0 ? 0 : far_exponent(2 * whole, whole, part);
  multiply_by_power(2 * whole, whole, part, -exponent);
  const bool large = ihi - ilo + 1 >= fewest_for_multishift(wants_schur_form);
  const Integer info = n == 0  ? 0
                       : large ? multishift_qr(wants_schur_form, n, ilo, ihi, h, rows, z)
                               : ComplexQr(wants_schur_form, n, ilo, ihi, h, rows, z).solve();
  multiply_by_power(2 * whole, whole, part, exponent);
  for (Integer i = 1; i <= n; ++i) {
    w(i) = h(i, i);
  }
  return info;
}

Integer small_qr(bool wants_schur_form, Integer n, OneBasedMatrix<Complex> h, OneBasedMatrix<Complex> z) {
  return ComplexQr(wants_schur_form, n, 1, n, h, wants_schur_form ? n : 0, z).solve();
}

void triangular_eigenvector(Integer n, OneBasedMatrix<Complex> t, Integer k, OneBasedVector<Complex> x) {
  // Divisors that two equal eigenvalues give are replaced, and long chains of them are scaled on the way.
  constexpr int kLargeExponent = 200000000;
  const QuarnFloat large(1, kLargeExponent);
  const Complex lambda = t(k, k);
  QuarnFloat size = magnitude(lambda);
  for (Integer j = 1; j < k; ++j) {
    size = std::max(size, magnitude(t(j, j)));
  }
  const QuarnFloat smallest = size == 0 ? smallest_number() : epsilon() * kBase * size;
  fill(n, Complex(), x);
  x(k) = Complex(1.0);
  for (Integer i = 1; i < k; ++i) {
    x(i) = -t(i, k);
  }
  for (Integer j = k - 1; j >= 1; --j) {
    QuarnCheckInterrupt();
    Complex divisor = t(j, j) - lambda;
    if (magnitude(divisor) < smallest) {
      divisor = Complex(smallest);
    }
    x(j) = quotient(x(j), divisor);
    if (magnitude(x(j)) > large) {
      scale(k, 1 / large, x);
    }
    for (Integer i = 1; i < j; ++i) {
      subtract_product(x(i), x(j), t(i, j));
    }
  }
}

void left_triangular_eigenvector(Integer n, OneBasedMatrix<Complex> t, Integer k, OneBasedVector<Complex> y) {
  // Mirrored in the other diagonal T stays triangular; its right eigenvectors are the left ones of T, conjugated and in
  // the opposite order.
  triangular_eigenvector(n, t.antitransposed(n), n + 1 - k, y.reversed(n));
  conjugate_vector(n, y);
}

}  // namespace tesk
