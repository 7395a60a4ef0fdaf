// Solutions, determinants, eigenvalues and zeros beside Arb's balls of the same problem, of data within their bounds.
#include "balls.h"
#include "spectra.h"
#include "support/digits.h"
#include "tesk2mp/proven_matrix_functions.hpp"

using namespace spectra;
using balls::Ball;
using balls::Place;

namespace {

constexpr int kDigits[] = {1, 2, 16, 50, 333};
constexpr int kFine = 400;

class BallMatrix {
 public:
  BallMatrix(std::size_t m, std::size_t n) { acb_mat_init(value_, slong(m), slong(n)); }
  BallMatrix(const Matrix<Complex>& a, slong bits) : BallMatrix(a.rows(), a.columns()) {
    for (std::size_t i = 0; i < a.rows(); ++i) {
      for (std::size_t j = 0; j < a.columns(); ++j) {
        Ball element(a(i, j), bits);
        acb_set(at(i, j), element.get());
      }
    }
  }
  ~BallMatrix() { acb_mat_clear(value_); }
  BallMatrix(const BallMatrix&) = delete;
  BallMatrix& operator=(const BallMatrix&) = delete;
  acb_mat_struct* get() { return value_; }
  acb_ptr at(std::size_t i, std::size_t j) { return acb_mat_entry(value_, slong(i), slong(j)); }

 private:
  acb_mat_t value_;
};

/// Numbers of balls that are roots.
class BallVector {
 public:
  explicit BallVector(std::size_t n) : n_(slong(n)), value_(_acb_vec_init(n_)) {}
  ~BallVector() { _acb_vec_clear(value_, n_); }
  BallVector(const BallVector&) = delete;
  BallVector& operator=(const BallVector&) = delete;
  acb_ptr get() { return value_; }
  acb_ptr at(std::size_t k) { return value_ + k; }

 private:
  slong n_;
  acb_ptr value_;
};

/// Data with bounds, and data that they allow.
template <class T>
struct Given {
  Given(support::Random& random, std::size_t m, std::size_t n, bool exact)
      : values(random_matrix<T>(random, m, n)), errors(m, n), within(m, n) {
    for (std::size_t i = 0; i < m; ++i) {
      for (std::size_t j = 0; j < n; ++j) {
        errors(i, j) = exact ? Real() : fabs(Complex(values(i, j)).re) * Real(1, -int(random.between(2, 40)));
        errors(i, j) = QuarnBound(errors(i, j)).value();
        const support::Digits wide(kFine);
        within(i, j) = Complex(values(i, j)) + Complex(Real(double(random.between(-2, 2))) / 2 * errors(i, j));
      }
    }
  }
  proven::BoundedMatrix<T> bounded() const { return {values, errors}; }
  Matrix<T> values;
  Matrix<Real> errors;
  Matrix<Complex> within;
};

template <class T>
void check_inside(acb_srcptr ball, const Bounded<T>& x, slong bits) {
  if (x.error.is_finite()) {
    CHECK(balls::place_of(ball, x.value, x.error, bits) == Place::inside);
  }
}

/// Each disc has as many balls as it counts; a real root's own is on the axis.
void check_roots(const std::vector<BoundedRoot>& roots, BallVector& references, slong bits) {
  for (const BoundedRoot& root : roots) {
    if (!root.error.is_finite()) {
      continue;
    }
    std::size_t inside = 0;
    bool may_be_real = false;
    for (std::size_t k = 0; k < roots.size(); ++k) {
      if (balls::place_of(references.at(k), root.value, root.error, bits) == Place::inside) {
        ++inside;
        may_be_real = may_be_real || arb_contains_zero(acb_imagref(references.at(k))) != 0;
      }
    }
    CAPTURE(root.count);
    CHECK(inside >= root.count);
    CHECK((!root.is_real || may_be_real));
  }
}

template <class T>
void check_linear(support::Random& random, int digits) {
  const auto n = std::size_t(random.between(1, 5));
  const bool exact = random.once_in(2);
  const Given<T> a(random, n, n, exact);
  const Given<T> b(random, n, 2, exact);
  const slong bits = balls::bits_of(3 * digits + 800);
  CAPTURE(digits);
  CAPTURE(n);
  CAPTURE(exact);
  BallMatrix left(a.within, bits);
  const auto determinant = exact ? proven::determinant(a.values) : proven::determinant(a.bounded());
  Ball det;
  acb_mat_det(det.get(), left.get(), bits);
  if (!determinant.error.is_zero()) {
    check_inside(det.get(), determinant, bits);
  } else {
    CHECK(acb_contains_zero(det.get()));
    return;
  }
  BallMatrix x(n, 2);
  BallMatrix right(b.within, bits);
  const bool solved = acb_mat_solve(x.get(), left.get(), right.get(), bits) != 0;
  const auto solution = exact ? proven::solve(a.values, b.values) : proven::solve(a.bounded(), b.bounded());
  for (std::size_t i = 0; i < n && solved; ++i) {
    check_inside(x.at(i, 0), solution(i, 0), bits);
    check_inside(x.at(i, 1), solution(i, 1), bits);
  }
}

template <class T>
void check_eigenvalues(support::Random& random, int digits) {
  const auto n = std::size_t(random.between(1, 5));
  const bool exact = random.once_in(2);
  const Given<T> a(random, n, n, exact);
  const auto roots = exact ? proven::eigenvalues(a.values) : proven::eigenvalues(a.bounded());
  const slong bits = balls::bits_of(3 * digits + 200);
  BallMatrix matrix(a.within, bits);
  BallMatrix vectors(n, n);
  BallVector approximations(n);
  BallVector values(n);
  acb_mat_approx_eig_qr(approximations.get(), nullptr, vectors.get(), matrix.get(), nullptr, 0, bits);
  if (acb_mat_eig_simple(values.get(), nullptr, nullptr, matrix.get(), approximations.get(), vectors.get(), bits) !=
      0) {
    CAPTURE(digits);
    CAPTURE(n);
    CAPTURE(exact);
    check_roots(roots, values, bits);
  }
}

/// exp(A), and A = L U where both choose the same pivots.
template <class T>
void check_matrix_functions(support::Random& random, int digits) {
  const auto n = std::size_t(random.between(1, 4));
  const bool exact = random.once_in(2);
  const Given<T> a(random, n, n, exact);
  const slong bits = balls::bits_of(3 * digits + 800);
  CAPTURE(digits);
  CAPTURE(n);
  CAPTURE(exact);
  BallMatrix given(a.within, bits);
  BallMatrix result(n, n);
  if (proven::norm(tesk2mp::Norm::largest, a.values).value < 100) {
    const auto power = exact ? proven::exponential(a.values) : proven::exponential(a.bounded());
    acb_mat_exp(result.get(), given.get(), bits);
    for (std::size_t i = 0; i < n; ++i) {
      for (std::size_t j = 0; j < n; ++j) {
        check_inside(result.at(i, j), power(i, j), bits);
      }
    }
  }
  // Of unit upper and lower triangular factors there is one pair.
  const auto factors = exact ? proven::lu(a.values) : proven::lu(a.bounded());
  BallMatrix packed(n, n);
  std::vector<slong> rows(n);
  for (std::size_t i = 0; i < n; ++i) {
    for (std::size_t j = 0; j < n; ++j) {
      Ball element(a.within(factors.rows[i], j), bits);
      acb_set(given.at(i, j), element.get());
    }
  }
  if (acb_mat_lu(rows.data(), packed.get(), given.get(), bits) != 0) {
    for (std::size_t i = 0; i < n; ++i) {
      if (rows[i] != slong(i)) {
        return;  // another pivot
      }
    }
    for (std::size_t i = 0; i < n; ++i) {
      for (std::size_t j = 0; j < n; ++j) {
        check_inside(packed.at(i, j), i > j ? factors.l(i, j) : factors.u(i, j), bits);
      }
    }
  }
}

void check_zeros(support::Random& random, int digits) {
  const auto n = std::size_t(random.between(1, 6));
  const Matrix<Complex> a = random_matrix<Complex>(random, n + 1, 1);
  const std::vector<Complex> coefficients(a.data(), a.data() + n + 1);
  if (coefficients[0] == Complex()) {
    return;
  }
  const auto roots = proven::zeros(coefficients);
  const slong bits = balls::bits_of(3 * digits + 200);
  acb_poly_t polynomial;
  acb_poly_init(polynomial);
  for (std::size_t k = 0; k <= n; ++k) {
    Ball coefficient(coefficients[n - k], bits);
    acb_poly_set_coeff_acb(polynomial, slong(k), coefficient.get());
  }
  BallVector values(n);
  const bool apart = acb_poly_find_roots(values.get(), polynomial, nullptr, 0, bits) == slong(n);
  acb_poly_clear(polynomial);
  if (apart) {
    CAPTURE(digits);
    CAPTURE(n);
    check_roots(roots, values, bits);
  }
}

}  // namespace

TEST_CASE("solutions, determinants, eigenvalues, zeros, factors and exponentials are where Arb's balls are") {
  support::Random random;
  for (const int digits : kDigits) {
    const support::Digits scope(digits);
    for (int round = 0; round < (digits > 100 ? 4 : 20) * balls::rounds(); ++round) {
      check_linear<Real>(random, digits);
      check_linear<Complex>(random, digits);
      check_eigenvalues<Real>(random, digits);
      check_eigenvalues<Complex>(random, digits);
      check_zeros(random, digits);
      check_matrix_functions<Real>(random, digits);
      check_matrix_functions<Complex>(random, digits);
    }
  }
}
