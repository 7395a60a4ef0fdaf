// Hessenberg matrices that are large enough for the multishift QR algorithm with aggressive early deflation.
#include <doctest/doctest.h>

#include <algorithm>
#include <type_traits>
#include <vector>

#include "dense/ratios.h"
#include "quarn/exact.h"
#include "tesk2mp/tesk2mp.h"

using namespace ratios;

namespace {

template <class T>
struct SchurForm {
  SchurForm(const Matrix<T>& h, const char* job, Integer ilo, Integer ihi)
      : t(h), z(unit<T>(h.rows())), values(std::size_t(h.rows())) {
    const Integer n = h.rows();
    std::vector<T> work(std::size_t(n) + 1);
    if constexpr (std::is_same_v<T, Complex>) {
      QuarnMPX_zhseqr_(job, "V", n, ilo, ihi, t.data(), t.lda(), values.data(), z.data(), z.lda(), work.data(), n + 1,
                       &info, 1, 1);
    } else {
      std::vector<QuarnFloat> re(values.size());
      std::vector<QuarnFloat> im(values.size());
      QuarnMPX_dhseqr_(job, "V", n, ilo, ihi, t.data(), t.lda(), re.data(), im.data(), z.data(), z.lda(), work.data(),
                       n + 1, &info, 1, 1);
      for (std::size_t i = 0; i < re.size(); ++i) {
        values[i] = Complex(re[i], im[i]);
      }
    }
  }
  Integer info = -99;
  Matrix<T> t;
  Matrix<T> z;
  std::vector<Complex> values;
};

/// Whether T is upper triangular but for standard blocks of two rows.
bool is_schur_form(const Matrix<Complex>& t) {
  for (Integer j = 1; j <= t.columns(); ++j) {
    for (Integer i = j + 1; i <= t.rows(); ++i) {
      if (!tesk::is_zero(t(i, j))) {
        return false;
      }
    }
  }
  return true;
}
bool is_schur_form(const Matrix<QuarnFloat>& t) {
  const Integer n = t.rows();
  for (Integer j = 1; j <= n; ++j) {
    for (Integer i = j + 2; i <= n; ++i) {
      if (t(i, j) != 0) {
        return false;
      }
    }
    if (j < n && t(j + 1, j) != 0 &&
        (t(j, j) != t(j + 1, j + 1) || t(j, j + 1) * t(j + 1, j) >= 0 || (j + 1 < n && t(j + 2, j + 1) != 0))) {
      return false;
    }
  }
  return true;
}

/// The largest distance of a value from the nearest of the others.
QuarnFloat largest_gap(const std::vector<Complex>& values, const std::vector<Complex>& others) {
  QuarnFloat largest;
  for (const Complex& value : values) {
    QuarnFloat nearest("inf");
    for (const Complex& other : others) {
      nearest = std::min(nearest, tesk::modulus(value - other));
    }
    largest = std::max(largest, nearest);
  }
  return largest;
}

template <class T>
Matrix<T> hessenberg_part(Matrix<T> a) {
  for (Integer j = 1; j <= a.columns(); ++j) {
    for (Integer i = j + 2; i <= a.rows(); ++i) {
      a(i, j) = T(0.0);
    }
  }
  return a;
}

/// A B with one rounding an element, A and B square.
template <class T>
Matrix<T> times(const Matrix<T>& a, const Matrix<T>& b) {
  Matrix<T> c = b;
  const auto n = std::size_t(a.rows());
  QuarnMatrixProduct(n, n, n, T(1.0), {&a(1, 1), 1, a.lda()}, {&b(1, 1), 1, b.lda()}, T(0.0), {&c(1, 1), 1, c.lda()});
  return c;
}

/// Rows ilo ... ihi of H alone are not triangular. `simple`: eigenvalues are well separated.
template <class T>
void check_form(const Matrix<T>& h, int digits, bool simple, Integer ilo = 1, Integer ihi = -1) {
  const Integer n = h.rows();
  CAPTURE(n);
  CAPTURE(digits);
  const SchurForm<T> form(h, "S", ilo, ihi < 0 ? n : ihi);
  REQUIRE(form.info == 0);
  CHECK(form.t.intact());
  CHECK(form.z.intact());
  CHECK(is_schur_form(form.t));
  const SchurForm<T> alone(h, "E", ilo, ihi < 0 ? n : ihi);
  REQUIRE(alone.info == 0);
  const support::Digits finer(digits + kSpare);
  CHECK(ratio(distance(times(h, form.z), times(form.z, form.t)), one_norm(h), n, digits) < kLargestRatio);
  CHECK(ratio(distance(times(adjoint(form.z), form.z), unit<T>(n)), QuarnFloat(1), n, digits) < kLargestRatio);
  if (simple) {
    // Ill conditioned they may be: half the digits.
    const QuarnFloat bound = one_norm(h) * QuarnFloat(1, -digits / 2);
    CHECK(largest_gap(form.values, alone.values) <= bound);
    CHECK(largest_gap(alone.values, form.values) <= bound);
  }
}

}  // namespace

TEST_CASE_TEMPLATE("large Schur forms: H Z = Z T, Z unitary, at any digits" * doctest::test_suite("long"), T,
                   QuarnFloat, Complex) {
  support::RandomNumbers random;
  constexpr bool kComplex = std::is_same_v<T, Complex>;
  for (const int digits : {2, 16, kComplex ? 40 : 200}) {
    const support::Digits scope(digits);
    const Integer n = digits == 16 && !kComplex ? 91 : 61;
    check_form(hessenberg_part(Matrix<T>(n, n).randomise(random)), digits, digits > 2);
  }
}

TEST_CASE_TEMPLATE("large Hessenberg matrices that split, are triangular beside the middle, or hold far numbers" *
                       doctest::test_suite("long"),
                   T, QuarnFloat, Complex) {
  support::RandomNumbers random;
  constexpr int kDigits = 20;
  const support::Digits scope(kDigits);
  constexpr Integer n = 91;
  const Matrix<T> h = hessenberg_part(Matrix<T>(n, n).randomise(random));
  Matrix<T> split = h;
  split(3, 2) = T(0.0);
  split(90, 89) = T(0.0);
  check_form(split, kDigits, true);
  Matrix<T> middle = h;
  for (Integer j = 1; j <= n; ++j) {
    if (j < 8 || j > 85) {
      middle(std::min(n, j + 1), j) = j < n ? T(0.0) : middle(n, n);
    }
  }
  middle(8, 7) = T(0.0);
  check_form(middle, kDigits, true, 8, 86);
  const QuarnFloat factor(1, 300000000);
  Matrix<T> far = h;
  for (Integer j = 1; j <= n; ++j) {
    for (Integer i = 1; i <= n; ++i) {
      tesk::multiply_by(far(i, j), factor);
    }
  }
  const SchurForm<T> form(far, "E", 1, n);
  const SchurForm<T> near(h, "E", 1, n);
  REQUIRE(form.info == 0);
  for (std::size_t i = 0; i < near.values.size(); ++i) {
    // Scaling by powers of ten rounds nothing.
    CHECK(form.values[i].re == near.values[i].re * factor);
  }
}

TEST_CASE_TEMPLATE("large matrices on which shifts alone get nowhere" * doctest::test_suite("long"), T, QuarnFloat,
                   Complex) {
  constexpr int kDigits = 20;
  const support::Digits scope(kDigits);
  constexpr Integer n = 61;
  for (int kind = 0; kind < 4; ++kind) {
    CAPTURE(kind);
    Matrix<T> h = unit<T>(n);
    for (Integer j = 1; j <= n; ++j) {
      for (Integer i = 1; i <= n; ++i) {
        const bool below = i == j + 1;
        const bool above = j == i + 1;
        // A cyclic permutation; a transposed Jordan block; zero diagonal with pairs on the axis; all equal.
        const double element = kind == 0   ? double(below || (i == 1 && j == n))
                               : kind == 1 ? double(below || i == j)
                               : kind == 2 ? double(below) - double(above)
                                           : double(i <= j + 1);
        h(i, j) = T(element);
      }
    }
    check_form(h, kDigits, kind == 0 || kind == 2);
  }
}

TEST_CASE("NaN and infinity in a large Hessenberg matrix end the work in their row") {
  const support::Digits scope(20);
  support::RandomNumbers random;
  constexpr Integer n = 95;
  for (const char* bad : {"nan", "inf"}) {
    Matrix<QuarnFloat> h = hessenberg_part(Matrix<QuarnFloat>(n, n).randomise(random));
    h(41, 77) = QuarnFloat(bad);
    CHECK(SchurForm<QuarnFloat>(h, "S", 1, n).info == 41);
    Matrix<Complex> c = hessenberg_part(Matrix<Complex>(n, n).randomise(random));
    c(41, 77) = Complex(QuarnFloat(), QuarnFloat(bad));
    CHECK(SchurForm<Complex>(c, "S", 1, n).info == 41);
  }
}
