// Proven eigenvalues, singular values, zeros and least squares, beside references with three times the digits and a
// hundred, or closed forms.
#include <doctest/doctest.h>

#include "spectra.h"
#include "support/digits.h"

using namespace spectra;

namespace {

/// Each reference near its value; what the reference may be off by is 10^-slack of the largest.
void check_ordered(const std::vector<Bounded<Real>>& values, const std::vector<Real>& references) {
  REQUIRE(values.size() == references.size());
  Real largest;
  for (const Real& reference : references) {
    largest = std::max(largest, fabs(reference));
  }
  const Real slack = largest * Real(1, -QuarnDigits() / 2);
  for (std::size_t i = 0; i < values.size(); ++i) {
    CHECK((!values[i].error.is_finite() || fabs(values[i].value - references[i]) <= values[i].error.value() + slack));
  }
}

template <class T>
void check_symmetric(support::Random& random, int digits) {
  const support::Digits scope(digits);
  const auto n = std::size_t(random.between(1, 7));
  const Matrix<T> a = random_matrix<T>(random, n, n);
  const auto system = proven::symmetric_eigen(a);
  const support::Digits wide(3 * digits + 100);
  const auto reference = tesk2mp::symmetric_eigen(a);
  check_ordered(system.values, reference.values);
  for (std::size_t j = 0; j < n; ++j) {
    if (!QuarnBound(system.vectors.errors()(0, j)).is_finite()) {
      continue;
    }
    std::vector<Complex> vector;
    for (std::size_t i = 0; i < n; ++i) {
      vector.emplace_back(reference.vectors(i, j));
    }
    CHECK(is_near_vector(system.vectors, j, vector));
  }
}

template <class T>
void check_singular(support::Random& random, int digits) {
  const support::Digits scope(digits);
  const Matrix<T> a = random_matrix<T>(random, std::size_t(random.between(1, 7)), std::size_t(random.between(1, 7)));
  const auto values = proven::singular_values(a);
  const support::Digits wide(3 * digits + 100);
  check_ordered(values, tesk2mp::singular_values(a));
}

template <class T>
std::size_t check_general(support::Random& random, int digits) {
  const support::Digits scope(digits);
  const auto n = std::size_t(random.between(1, 7));
  const Matrix<T> a = random_matrix<T>(random, n, n);
  const auto values = proven::eigenvalues(a);
  // Of an n-fold eigenvalue a reference has an n-th of its digits.
  const support::Digits wide(9 * (2 * digits + 20) + 100);
  check_roots(values, tesk2mp::eigenvalues(a), Real(1, -2 * digits - 30));
  return std::size_t(std::count_if(values.begin(), values.end(), [](const auto& v) { return v.error.is_finite(); }));
}

}  // namespace

TEST_CASE("eigenvalues and singular values are within their bounds") {
  support::Random random;
  for (const int digits : {1, 2, 3, 16, 50}) {
    CAPTURE(digits);
    std::size_t known = 0;
    for (int round = 0; round < (digits < 20 ? 12 : 5); ++round) {
      check_symmetric<Real>(random, digits);
      check_symmetric<Complex>(random, digits);
      check_singular<Real>(random, digits);
      check_singular<Complex>(random, digits);
      known += check_general<Real>(random, digits);
      known += check_general<Complex>(random, digits);
    }
    CHECK(known > 0);
  }
}

TEST_CASE("bounds of approximations are little more than what these are off by") {
  const support::Digits scope(20);
  Real a(8);
  Real off("8.001");
  Real one(1);
  Real short_one("0.9");
  Real error;
  Real other;
  Integer info = -9;
  const auto is_near = [&](const char* exact, double above) {
    CHECK(info == 0);
    CHECK(error >= Real(exact));
    CHECK(error <= Real(exact) * Real(above));
  };
  QuarnMPX_dproven_symmetric_("L", 1, &a, 1, nullptr, 0, &off, &one, 1, &error, &other, &info, 1);
  is_near("0.001", 1.00001);
  // |8 - 0.81 * 8.001| and 8.001 times the defect 0.19
  QuarnMPX_dproven_symmetric_("L", 1, &a, 1, nullptr, 0, &off, &short_one, 1, &error, &other, &info, 1);
  is_near("3.03938", 1.00001);
  Real quarter("0.25");
  QuarnMPX_dproven_symmetric_("L", 1, &a, 1, &quarter, 1, &off, &one, 1, &error, &other, &info, 1);
  is_near("0.251", 1.00001);
  QuarnMPX_dproven_singular_(1, 1, &a, 1, nullptr, 0, &off, &short_one, 1, &one, 1, &error, &info);
  is_near("2.31929", 1.00001);
  Complex w(off);
  Complex x(3, 4);
  Integer count = 0;
  QuarnMPX_dproven_eigenvalues_(1, &a, 1, nullptr, 0, &w, &x, 1, &error, &count, &info);
  is_near("0.001", 1.00001);
  CHECK(count == 1);
  QuarnMPX_dproven_eigenvalues_(1, &a, 1, &quarter, 1, &w, &x, 1, &error, &count, &info);
  is_near("0.251", 1.00001);
  const Real line[] = {1, -8};
  w = Complex(Real("8.001"), Real("0.0001"));
  QuarnMPX_dproven_zeros_(1, line, &w, &error, &count, &info);
  CHECK(w.im == 0);
  is_near("0.001", 1.2);
  // Eigenvectors: of diag(0, 1) off by an angle whose sine is 0.01, the gap 1.
  Real diagonal[] = {0, 0, 0, 1};
  const Real values[] = {0, 1};
  const Real c("0.99994999874993749609");
  const Real s("0.01");
  Real vectors[] = {c, s, -s, c};
  Real errors[2];
  Real of_vectors[2];
  QuarnMPX_dproven_symmetric_("U", 2, diagonal, 2, nullptr, 0, values, vectors, 2, errors, of_vectors, &info, 1);
  CHECK(of_vectors[0] >= s);
  CHECK(of_vectors[0] <= Real("0.015"));
  // Rounding to two digits: 12.5 is a tie.
  const support::Digits few(2);
  const auto tie = proven::symmetric_eigenvalues(Matrix<Real>{{Real("0.125")}})[0];
  CHECK(tie.error.value() >= Real("0.005"));
  CHECK(tie.error.value() <= Real("0.0051"));
}

TEST_CASE("classic matrices to the digits that are asked for") {
  const support::Digits working(20);
  constexpr int kWanted = 30;
  const auto eigenvalues_of = [](const Matrix<Real>& a) {
    return proven::to_digits(kWanted, [&] { return proven::eigenvalues(a); });
  };
  // Clement's matrix of order 8 has the eigenvalues +-1, +-3, +-5, +-7.
  Matrix<Real> clement(8, 8);
  for (std::size_t i = 0; i < 7; ++i) {
    clement(i, i + 1) = Real(double(7 - i));
    clement(i + 1, i) = Real(double(i + 1));
  }
  for (const BoundedRoot& root : eigenvalues_of(clement)) {
    CHECK(root.is_real);
    const Real nearest = 2 * floor(root.value.re / 2) + 1;
    CHECK(fabs(root.value.re - nearest) <= root.error.value());
  }
  // A Jordan block of order 4, and the same as a companion matrix.
  Matrix<Real> jordan(4, 4);
  Matrix<Real> companion = {{12, -54, 108, -81}, {1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}};
  for (std::size_t i = 0; i < 4; ++i) {
    jordan(i, i) = 3;
    if (i < 3) {
      jordan(i, i + 1) = 1;
    }
  }
  for (const Matrix<Real>& a : {jordan, companion}) {
    for (const BoundedRoot& root : eigenvalues_of(a)) {
      CHECK(root.count == 4);
      CHECK(size(root.value - Complex(3)) <= root.error.value());
      CHECK(root.error.value() < Real("1e-29"));
    }
  }
  // Grcar's matrix, whose eigenvalues are ill-conditioned, beside a reference.
  Matrix<Real> grcar(12, 12);
  for (std::size_t i = 0; i < 12; ++i) {
    for (std::size_t j = i; j < std::min<std::size_t>(12, i + 4); ++j) {
      grcar(i, j) = 1;
    }
    if (i > 0) {
      grcar(i, i - 1) = -1;
    }
  }
  const auto roots = eigenvalues_of(grcar);
  {
    const support::Digits wide(200);
    check_roots(roots, tesk2mp::eigenvalues(grcar), Real("1e-150"));
  }
  // The Hilbert matrix that is meant: its determinant is the product of its eigenvalues and of its singular values.
  const auto hilbert = [] {
    Matrix<Real> a(6, 6);
    for (std::size_t i = 0; i < 6; ++i) {
      for (std::size_t j = 0; j < 6; ++j) {
        a(i, j) = Real(1) / Real(double(i + j + 1));
      }
    }
    return proven::rounded(a);
  };
  const auto spectrum = proven::to_digits(kWanted, [&] { return proven::symmetric_eigenvalues(hilbert()); });
  const auto singular = proven::to_digits(kWanted, [&] { return proven::singular_values(hilbert()); });
  const support::Digits wide(60);
  Real product(1);
  Real other(1);
  for (std::size_t i = 0; i < 6; ++i) {
    product *= spectrum[i].value;
    other *= singular[i].value;
  }
  const Real exact = 1 / Real("186313420339200000");
  CHECK(fabs(product / exact - 1) < Real("1e-28"));
  CHECK(fabs(other / exact - 1) < Real("1e-28"));
}

TEST_CASE("zeros of polynomials are within their discs") {
  support::Random random;
  for (const int digits : {2, 16, 50}) {
    for (int round = 0; round < 8; ++round) {
      const support::Digits scope(digits);
      // Small integers as zeros, so that some are multiple.
      std::vector<Complex> zeros;
      for (std::int64_t k = random.between(0, 9); k > 0; --k) {
        zeros.emplace_back(double(random.between(-3, 3)), double(random.between(-1, 1)));
      }
      std::vector<Complex> a;
      {
        const support::Digits exact(100);
        a = tesk2mp::polynomial_from_zeros(zeros);
      }
      const auto found = proven::zeros(a);
      REQUIRE(found.size() == zeros.size());
      for (const BoundedRoot& root : found) {
        CHECK(root.error.is_finite());
        CHECK(std::size_t(std::count_if(zeros.begin(), zeros.end(), [&](const Complex& zero) {
                const support::Digits wide(300);
                return size(zero - root.value) <= root.error.value();
              })) == root.count);
      }
    }
  }
  // Wilkinson's polynomial of degree 20: exact coefficients, real zeros 1, ..., 20.
  const support::Digits scope(40);
  std::vector<Real> integers;
  for (int k = 1; k <= 20; ++k) {
    integers.emplace_back(k);
  }
  const auto wilkinson = proven::zeros(tesk2mp::polynomial_from_zeros(integers));
  for (std::size_t i = 0; i < 20; ++i) {
    CHECK(wilkinson[i].is_real);
    CHECK(fabs(wilkinson[i].value.re - Real(double(20 - i))) <= wilkinson[i].error.value());
    CHECK(wilkinson[i].error.value() < Real("1e-37"));
  }
  const auto at_zero = proven::zeros(std::vector<Real>{1, 0, -2, 0, 0});
  CHECK(at_zero[3].value == Complex());
  CHECK(at_zero[3].error.is_zero());
  CHECK(at_zero[3].count == 2);
  CHECK(proven::fewest_true_digits(at_zero) >= 37);
}

TEST_CASE("discs that touch by less than few digits show are connected") {
  // 1.2 + 0.86 is 2.06, and 2.1 in two digits; the radii, twice the errors, add up to 2.08.
  Real a[] = {Real("1.2"), 0, 0, Real("-0.86")};
  Real errors[] = {Real("0.52"), 0, 0, Real("0.52")};
  Complex x[] = {1, 0, 0, 1};
  Complex w[] = {Complex(a[0]), Complex(a[3])};
  Real radius[2];
  Integer count[2];
  Integer info = -99;
  const support::Digits scope(2);
  QuarnMPX_dproven_eigenvalues_(2, a, 2, errors, 2, w, x, 2, radius, count, &info);
  CHECK(info == 0);
  CHECK(count[0] == 2);
  CHECK(count[1] == 2);
}

TEST_CASE("least squares, and what cannot be proven") {
  const support::Digits scope(30);
  support::Random random;
  for (int round = 0; round < 6; ++round) {
    const auto n = std::size_t(random.between(1, 4));
    const auto m = n + std::size_t(random.between(0, 5));
    const auto check = [&]<class T>(T /*kind*/) {
      const support::Digits given(30);
      Matrix<T> a(m, n);
      Matrix<T> b(m, 1);
      for (std::size_t i = 0; i < m; ++i) {
        b(i, 0) = random_number<T>(random);
        for (std::size_t j = 0; j < n; ++j) {
          a(i, j) = random_number<T>(random);
        }
      }
      const auto x = proven::least_squares(a, b);
      const support::Digits wide(200);
      const auto exact = tesk2mp::least_squares(a, b);
      for (std::size_t j = 0; j < n; ++j) {
        CHECK(x(j, 0).error.is_finite());
        CHECK(size(Complex(x(j, 0).value) - Complex(exact(j, 0))) <= x(j, 0).error.value());
      }
      CHECK(proven::fewest_true_digits(x) >= 4);  // of some condition
    };
    check(Real());
    check(Complex());
  }
  CHECK_THROWS_AS((void)proven::least_squares(Matrix<Real>{{1, 1}, {1, 1}, {1, 1}}, Matrix<Real>{{1}, {2}, {3}}),
                  tesk2mp::NumericalFailure);
  CHECK_THROWS_AS((void)proven::least_squares(Matrix<Real>(1, 2), Matrix<Real>(1, 1)), tesk2mp::InvalidArgument);
  CHECK_THROWS_AS((void)proven::eigenvalues(Matrix<Real>{{Real("nan")}}), tesk2mp::InvalidArgument);
  CHECK_THROWS_AS((void)proven::singular_values(Matrix<Complex>{{Complex(1, Real("inf"))}}), tesk2mp::InvalidArgument);
  CHECK(proven::eigenvalues(Matrix<Real>(0, 0)).empty());
  CHECK(proven::singular_values(Matrix<Real>(0, 3)).empty());
  CHECK(proven::zeros(std::vector<Real>{5}).empty());
  // Vectors of a double eigenvalue are not known, the eigenvalues are.
  const auto twice = proven::symmetric_eigen(Matrix<Real>{{2, 0}, {0, 2}});
  CHECK(twice.values[0].error.is_finite());
  CHECK(!twice.vectors(0, 0).error.is_finite());
  Real a(1);
  const Real falling[] = {2, 1};
  Real error[2];
  Integer info = 0;
  QuarnMPX_dproven_symmetric_("L", 2, &a, 2, nullptr, 0, falling, &a, 2, error, error, &info, 1);
  CHECK(info == -7);
  QuarnMPX_dproven_singular_(1, 1, &a, 1, nullptr, 0, &a, &a, 0, &a, 1, error, &info);
  CHECK(info == -9);
  const Real leading_zero[] = {0, 1};
  Integer count = 0;
  Complex zero;
  QuarnMPX_dproven_zeros_(1, leading_zero, &zero, error, &count, &info);
  CHECK(info == -2);
}

namespace {

/// diag(x, y) by rows and columns.
template <class T>
Matrix<T> blocks(const Matrix<T>& x, const Matrix<T>& y) {
  Matrix<T> a(x.rows() + y.rows(), x.rows() + y.rows());
  for (std::size_t j = 0; j < a.columns(); ++j) {
    for (std::size_t i = 0; i < a.rows(); ++i) {
      const bool first = i < x.rows() && j < x.rows();
      const bool second = i >= x.rows() && j >= x.rows();
      a(i, j) = first ? x(i, j) : second ? y(i - x.rows(), j - x.rows()) : T(0);
    }
  }
  return a;
}

/// A sum of rows added to another, and of columns, the same ones of both matrices; rows times powers of ten.
template <class T>
void mix(support::Random& random, Matrix<T>& a, Matrix<T>& b) {
  const std::size_t n = a.rows();
  for (std::size_t step = 0; step < 3 * n && n > 1; ++step) {
    const auto from = std::size_t(random.between(0, double(n - 1)));
    const auto to = (from + std::size_t(random.between(1, double(n - 1)))) % n;
    const T factor(double(random.between(-2, 2)));
    for (Matrix<T>* each : {&a, &b}) {
      for (std::size_t k = 0; k < n; ++k) {
        T& element = step % 2 == 0 ? (*each)(to, k) : (*each)(k, to);
        element += factor * (step % 2 == 0 ? (*each)(from, k) : (*each)(k, from));
      }
    }
  }
  for (std::size_t i = 0; i < n; ++i) {
    const T scale(Real(1, int(random.between(-30, 30))));
    for (std::size_t j = 0; j < n; ++j) {
      a(i, j) *= scale;
      b(i, j) *= scale;
    }
  }
}

template <class T>
std::size_t check_infinite(support::Random& random) {
  // Weierstrass' form: diag(J, I) - x diag(I, N), N nilpotent.
  const auto finite = std::size_t(random.between(0, 4));
  const auto infinite = std::size_t(random.between(0, 4));
  Matrix<T> j(finite, finite);
  Matrix<T> n(infinite, infinite);
  std::vector<Complex> references;
  for (std::size_t k = 0; k < finite; ++k) {
    j(k, k) = T(double(random.between(-4, 4)));
    references.emplace_back(j(k, k));
    for (std::size_t i = 0; i < k; ++i) {
      j(i, k) = T(double(random.between(-2, 2)));
    }
  }
  for (std::size_t k = 0; k < infinite; ++k) {
    for (std::size_t i = 0; i < k; ++i) {
      n(i, k) = T(double(random.between(0, 1)));
    }
  }
  Matrix<T> a = blocks(j, Matrix<T>::identity(infinite));
  Matrix<T> b = blocks(Matrix<T>::identity(finite), n);
  {
    const support::Digits exact(200);
    mix(random, a, b);
  }
  const support::Digits scope(int(random.between(2, 60)));
  CHECK(proven::infinite_eigenvalues(a, b) == infinite);
  const auto roots = proven::finite_eigenvalues(a, b);
  check_roots(roots, references, Real());
  // With two rows that are the same, or one of zeros.
  if (const std::size_t order = finite + infinite; order > 0) {
    for (std::size_t k = 0; k < order; ++k) {
      a(0, k) = order == 1 ? T(0) : a(order - 1, k);
      b(0, k) = order == 1 ? T(0) : b(order - 1, k);
    }
    CHECK_THROWS_AS((void)proven::infinite_eigenvalues(a, b), tesk2mp::NumericalFailure);
    CHECK_THROWS_AS((void)proven::finite_eigenvalues(a, b), tesk2mp::NumericalFailure);
  }
  return std::size_t(
      std::count_if(roots.begin(), roots.end(), [](const auto& root) { return root.error.is_finite(); }));
}

}  // namespace

TEST_CASE("infinite eigenvalues of pencils, and the finite ones beside them") {
  support::Random random;
  std::size_t known = 0;
  for (int run = 0; run < 60; ++run) {
    known += check_infinite<Real>(random) + check_infinite<Complex>(random);
  }
  CHECK(known > 60);
  // Modulo the first two primes these are singular, and these pencils too.
  const Matrix<Real> first{{Real(2147483629.0)}};
  const Matrix<Real> both{{Real(2147483629.0) * Real(2147483549.0)}};
  CHECK(proven::infinite_eigenvalues(Matrix<Real>{{1}}, first) == 0U);
  CHECK(proven::infinite_eigenvalues(Matrix<Real>{{0}}, both) == 0U);
  CHECK(proven::infinite_eigenvalues(both, Matrix<Real>{{0}}) == 1U);
  CHECK(proven::infinite_eigenvalues(Matrix<Complex>{{Complex(0, 1)}},
                                     Matrix<Complex>{{Complex(0, Real("1e-900000000"))}}) == 0U);
  CHECK(!proven::infinite_eigenvalues(Matrix<Real>{{Real("nan")}}, first));
  CHECK(proven::finite_eigenvalues(Matrix<Real>(0, 0), Matrix<Real>(0, 0)).empty());
  CHECK_THROWS_AS((void)proven::infinite_eigenvalues(Matrix<Real>(1, 2), first), tesk2mp::InvalidArgument);
  CHECK_THROWS_AS((void)proven::infinite_eigenvalues(first, Matrix<Real>(2, 2)), tesk2mp::InvalidArgument);
  const auto root = proven::to_digits(50, [] {
    return proven::finite_eigenvalues(Matrix<Real>{{2, 1, 0}, {1, 0, 0}, {0, 0, 5}},
                                      Matrix<Real>{{1, 0, 1}, {0, 1, 1}, {1, 1, 2}});
  });
  CHECK(root.size() == 2);
}
