// Proven eigenvalues where discs overlap, eigenvectors, and pencils, beside references with three times the digits of
// the proof and a hundred, or closed forms.
#include "spectra.h"
#include "support/digits.h"

using namespace spectra;

namespace {

std::vector<Complex> unit_column(const Matrix<Complex>& vectors, std::size_t j) {
  std::vector<Complex> x;
  Real squares;
  for (std::size_t i = 0; i < vectors.rows(); ++i) {
    x.push_back(vectors(i, j));
    squares += x[i].re * x[i].re + x[i].im * x[i].im;
  }
  for (Complex& element : x) {
    element = element / Complex(sqrt(squares));
  }
  return x;
}

/// How many vectors had bounds. of_reference: a bound of the errors of `values`, which have roundings where a 0 is
/// exact.
std::size_t check_vectors(const proven::EigenBounds& system, const std::vector<Complex>& values,
                          const Matrix<Complex>& vectors, const Real& of_reference) {
  std::size_t known = 0;
  for (std::size_t j = 0; j < system.values.size(); ++j) {
    if (system.vectors.errors().rows() > 0 && QuarnBound(system.vectors.errors()(0, j)).is_finite()) {
      ++known;
      CHECK(system.values[j].count == 1);
      bool found = false;
      for (std::size_t k = 0; k < values.size(); ++k) {
        found = found || (size(values[k] - system.values[j].value) <= system.values[j].error.value() + of_reference &&
                          is_near_vector(system.vectors, j, unit_column(vectors, k)));
      }
      CHECK(found);
    }
  }
  return known;
}

template <class T>
std::size_t check_eigen(support::Random& random, int digits) {
  const support::Digits scope(digits);
  const auto n = std::size_t(random.between(1, 7));
  const Matrix<T> a = random_matrix<T>(random, n, n);
  const auto system = proven::eigen(a);
  const support::Digits wide(9 * (4 * digits + 40) + 100);
  const auto reference = tesk2mp::eigen(a);
  check_roots(system.values, reference.values, Real(1, -4 * digits - 60));
  // Of discs that meet no other one the left eigenvector is that of the value.
  const auto left = [&] {
    const support::Digits narrow(digits);
    return proven::EigenBounds{system.values, proven::left_eigenvectors(a, system.values)};
  }();
  static_cast<void>(check_vectors(left, reference.values, reference.left, Real(1, -4 * digits - 60)));
  return check_vectors(system, reference.values, reference.right, Real(1, -4 * digits - 60));
}

template <class T>
std::size_t check_pencil(support::Random& random, int digits) {
  const support::Digits scope(digits);
  const auto n = std::size_t(random.between(1, 6));
  const Matrix<T> a = random_matrix<T>(random, n, n);
  const Matrix<T> b = random_matrix<T>(random, n, n);
  const auto system = proven::eigen(a, b);
  const support::Digits wide(9 * (4 * digits + 40) + 100);
  const tesk2mp::LU<T> factors(b);
  if (factors.singular()) {
    CHECK(!system.values[0].error.is_finite());
    return 0;
  }
  const auto reference = tesk2mp::eigen(factors.solve(a));
  check_roots(system.values, reference.values, Real(1, -4 * digits - 40));
  return check_vectors(system, reference.values, reference.right, Real(1, -4 * digits - 40));
}

template <class T>
void check_definite(support::Random& random, int digits) {
  const support::Digits scope(digits);
  const auto n = std::size_t(random.between(1, 6));
  const Matrix<T> half = random_matrix<T>(random, n, n);
  Matrix<T> a = random_matrix<T>(random, n, n);
  Matrix<T> b(n, n);
  {
    const support::Digits exact(400);
    tesk2mp::gemm(tesk2mp::Op::none, tesk2mp::Op::conjugate_transpose, T(1), half, half, T(0), b);
    for (std::size_t i = 0; i < n; ++i) {
      b(i, i) = b(i, i) + T(Real(1, -digits / 2));
      if constexpr (sizeof(T) > sizeof(Real)) {
        a(i, i) = Complex(a(i, i).re);
      }
      for (std::size_t j = 0; j < i; ++j) {
        if constexpr (sizeof(T) > sizeof(Real)) {
          a(j, i) = conj(a(i, j));
        } else {
          a(j, i) = a(i, j);
        }
      }
    }
  }
  std::vector<Bounded<Real>> values;
  try {
    values = proven::symmetric_eigenvalues(a, b);
  } catch (const tesk2mp::NumericalFailure&) {
    return;  // not definite as far as the digits reach
  }
  const support::Digits wide(6 * digits + 300);
  const auto reference = tesk2mp::symmetric_eigenvalues(a, b);
  const Real of_reference(1, -4 * digits - 40);  // which has roundings where a 0 is exact
  for (std::size_t i = 0; i < n; ++i) {
    CHECK((!values[i].error.is_finite() ||
           fabs(values[i].value - reference[i]) <= values[i].error.value() + of_reference));
  }
}

}  // namespace

TEST_CASE("eigenvectors and eigenvalues of pencils are within their bounds") {
  support::Random random;
  for (const int digits : {1, 2, 16, 50}) {
    CAPTURE(digits);
    std::size_t vectors = 0;
    std::size_t of_pencils = 0;
    for (int round = 0; round < (digits < 20 ? 10 : 4); ++round) {
      vectors += check_eigen<Real>(random, digits);
      vectors += check_eigen<Complex>(random, digits);
      of_pencils += check_pencil<Real>(random, digits);
      of_pencils += check_pencil<Complex>(random, digits);
      check_definite<Real>(random, digits);
      check_definite<Complex>(random, digits);
    }
    CHECK(vectors > 0);
    CHECK(of_pencils > 0);
  }
}

TEST_CASE("fifteen classic matrices to 45 digits") {
  struct Classic {
    const char* name;
    std::size_t order;
    const char* closed_form;  // the only eigenvalue, where there is but one
  };
  constexpr Classic kClassics[] = {
      {"frank", 12, ""}, {"grcar", 16, ""},     {"jordan", 8, "1"}, {"triw", 8, "1"},      {"clement", 12, ""},
      {"kahan", 12, ""}, {"wilkinson", 21, ""}, {"godunov", 7, ""}, {"rosser", 8, ""},     {"chebyshev", 8, ""},
      {"lesp", 12, ""},  {"forsythe", 10, ""},  {"lotkin", 8, ""},  {"companion", 4, "1"}, {"pascal", 10, ""}};
  constexpr int kWanted = 45;
  const support::Digits working(50);
  for (const Classic& classic : kClassics) {
    CAPTURE(classic.name);
    const Matrix<Real> a = classic.name == std::string("companion")
                               ? tesk2mp::gallery::from_vectors(classic.name, std::vector<Real>{1, -4, 6, -4, 1})
                               : tesk2mp::gallery::matrix(classic.name, classic.order);
    const auto at_once = proven::eigenvalues(a);
    CHECK(std::all_of(at_once.begin(), at_once.end(), [](const auto& root) { return root.error.is_finite(); }));
    int worked_with = 0;
    const auto roots = proven::to_digits(kWanted, [&] {
      worked_with = QuarnDigits();
      return proven::eigenvalues(a);
    });
    CHECK(proven::fewest_true_digits(roots) >= kWanted);
    CHECK(worked_with <= 150);
    const support::Digits wide(6 * (worked_with + 6) + 100);
    if (*classic.closed_form != 0) {
      check_roots(roots, std::vector<Complex>(classic.order, Complex(Real(classic.closed_form))), Real());
    } else {
      check_roots(roots, tesk2mp::eigenvalues(a), Real(1, -3 * worked_with));
    }
  }
}

TEST_CASE("a double eigenvalue of a pencil is known whatever roundings stand for zeros of B^-1 A") {
  // B^-1 A is {{-13/2, 0, -18}, {-1, -2, -3}, {3/2, 0, 4}}, with the eigenvalues -2, twice, and -1/2.
  const Matrix<Real> a = {{-49, 6, -163}, {-24, 2, -83}, {16, -2, 53}};
  const Matrix<Real> b = {{50, -3, 182}, {29, -1, 109}, {-16, 1, -58}};
  for (const int digits : {20, 100, 333}) {
    const support::Digits scope(digits);
    const auto roots = proven::eigenvalues(a, b);
    check_roots(roots, {Complex(-2), Complex(-2), Complex(Real("-0.5"))}, Real());
    for (const auto& root : roots) {
      CHECK(root.error.value() <= Real(1, 3 - digits));
    }
  }
}

TEST_CASE("discs of multiple eigenvalues, and what is beside them") {
  const support::Digits scope(30);
  // A double eigenvalue 1 that is defective, another one that is not, and a pair.
  const Matrix<Real> a = {{1, 1, 5, 0, 2, 1}, {0, 1, 3, 1, 1, 0},  {0, 0, 2, 0, 1, 3},
                          {0, 0, 0, 2, 4, 1}, {0, 0, 0, 0, 3, -1}, {0, 0, 0, 0, 1, 3}};
  const auto system = proven::eigen(a);
  const auto count_at = [&](const Complex& centre) {
    return std::count_if(system.values.begin(), system.values.end(), [&](const BoundedRoot& root) {
      return size(root.value - centre) <= root.error.value() && root.error.value() < Real("1e-25");
    });
  };
  CHECK(count_at(Complex(1)) == 2);
  CHECK(count_at(Complex(2)) == 2);
  CHECK(count_at(Complex(3, 1)) == 1);
  CHECK(count_at(Complex(3, -1)) == 1);
  for (std::size_t j = 0; j < 6; ++j) {
    const bool simple = system.values[j].count == 1;
    CHECK(simple == (system.values[j].value.im != 0));
    CHECK(QuarnBound(system.vectors.errors()(0, j)).is_finite() == simple);
  }
  // Errors of the data spread a double eigenvalue by their root, which nearly attains the bound.
  Real block[] = {1, 0, 1, 1};
  Real errors[] = {0, Real("1e-6"), 0, 0};
  Complex w[] = {1, 1};
  Complex x[] = {1, 0, 0, 1};
  Real radius[2];
  Integer count[2];
  Integer info = -99;
  QuarnMPX_dproven_eigen_(2, block, 2, errors, 2, nullptr, 0, nullptr, 0, w, x, 2, radius, nullptr, count, nullptr,
                          &info);
  CHECK(info == 0);
  CHECK(count[0] == 2);
  CHECK(radius[0] >= Real("0.001"));
  CHECK(radius[0] <= Real("0.0011"));
}

TEST_CASE("bounds of eigenvectors and pencils are nearly attained") {
  const support::Digits scope(20);
  // Of A with an eigenvector off by 0.01 in a gap of 1.
  Real a[] = {0, 0, 0, 1};
  Complex w[] = {0, 1};
  Complex x[] = {Complex(Real("0.99995")), Complex(Real("0.01")), 0, 1};
  Real radius[2];
  Real of_vectors[2];
  Integer count[2];
  Integer info = -99;
  QuarnMPX_dproven_eigen_(2, a, 2, nullptr, 0, nullptr, 0, nullptr, 0, w, x, 2, radius, of_vectors, count, nullptr,
                          &info);
  CHECK(info == 0);
  CHECK(of_vectors[0] >= Real("0.01"));
  CHECK(of_vectors[0] <= Real("0.0103"));
  // 6 / 2 = 3, approximated by 3.001; then with errors of both.
  Real six(6);
  Real two(2);
  Real error_a("0.5");
  Real error_b("0.25");
  Complex one(1);
  const auto bound = [&](Integer errors_of_a, Integer errors_of_b) {
    w[0] = Complex(Real("3.001"));
    QuarnMPX_dproven_eigen_(1, &six, 1, &error_a, errors_of_a, &two, 1, &error_b, errors_of_b, w, &one, 1, radius,
                            nullptr, count, nullptr, &info);
    CHECK(info == 0);
    return radius[0];
  };
  CHECK(bound(0, 0) >= Real("0.001"));
  CHECK(bound(0, 0) <= Real("0.00101"));
  CHECK(bound(1, 0) >= Real("0.251"));
  CHECK(bound(1, 0) <= Real("0.25101"));
  CHECK(bound(0, 1) >= Real("0.427"));  // 6 / 1.75 - 3.001
  CHECK(bound(0, 1) <= Real("0.4301"));
  // A singular B, and wrong arguments.
  two = 0;
  QuarnMPX_dproven_eigen_(1, &six, 1, nullptr, 0, &two, 1, nullptr, 0, w, &one, 1, radius, nullptr, count, nullptr,
                          &info);
  CHECK(info == 1);
  CHECK(isinf(radius[0]));
  two = Real("nan");
  QuarnMPX_dproven_eigen_(1, &six, 1, nullptr, 0, &two, 1, nullptr, 0, w, &one, 1, radius, nullptr, count, nullptr,
                          &info);
  CHECK(info == 1);
  QuarnMPX_dproven_eigen_(2, a, 2, nullptr, 0, a, 1, nullptr, 0, w, x, 2, radius, nullptr, count, nullptr, &info);
  CHECK(info == -7);
  QuarnMPX_dproven_eigen_(2, a, 2, nullptr, 0, nullptr, 0, nullptr, 0, w, x, 1, radius, nullptr, count, nullptr, &info);
  CHECK(info == -12);
  CHECK(proven::eigen(Matrix<Complex>(0, 0)).values.empty());
  CHECK_THROWS_AS((void)proven::symmetric_eigenvalues(Matrix<Real>{{1}}, Matrix<Real>{{-1}}),
                  tesk2mp::NumericalFailure);
}
