// Reordered Schur forms and Sylvester equations: residuals in units of the last place, eigenvalues in their new order,
// equations whose solution is known.
#include <doctest/doctest.h>

#include <algorithm>
#include <vector>

#include "dense/ratios.h"
#include "tesk2mp/tesk2mp.hpp"

using tesk2mp::Real;

namespace {

template <class T>
using Dense = tesk2mp::Matrix<T>;

template <class T>
Dense<T> random_matrix(std::size_t rows, std::size_t columns, support::RandomNumbers& random) {
  Dense<T> a(rows, columns);
  for (std::size_t j = 0; j < columns; ++j) {
    for (std::size_t i = 0; i < rows; ++i) {
      random.make(a(i, j));
    }
  }
  return a;
}

template <class T>
ratios::Matrix<T> guarded(const Dense<T>& a) {
  ratios::Matrix<T> copy(Integer(a.rows()), Integer(a.columns()));
  for (std::size_t j = 0; j < a.columns(); ++j) {
    for (std::size_t i = 0; i < a.rows(); ++i) {
      copy(Integer(i) + 1, Integer(j) + 1) = a(i, j);
    }
  }
  return copy;
}

tesk2mp::Schur form_of(const Dense<Real>& a) { return tesk2mp::schur(a); }
tesk2mp::ComplexSchur form_of(const Dense<Complex>& a) { return tesk2mp::complex_schur(a); }

/// |A - Z T Z^H| and |Z^H Z - I| in units of the last place; T is a Schur form.
template <class T, class Form>
void check_form(const Dense<T>& a, const Form& form, int digits) {
  const Integer n = Integer(a.rows());
  for (Integer j = 0; j < n; ++j) {
    for (Integer i = j + 1; i < n; ++i) {
      const bool below = !tesk::is_zero(form.t(std::size_t(i), std::size_t(j)));
      CHECK((!below || (i == j + 1 && std::is_same_v<T, Real>)));
      if (below && i + 1 < n) {
        CHECK(tesk::is_zero(form.t(std::size_t(i) + 1, std::size_t(j) + 1)));
      }
    }
  }
  const support::Digits finer(digits + ratios::kSpare);
  const auto z = guarded(form.z);
  const auto whole = guarded(a);
  const QuarnFloat norm = ratios::one_norm(whole);
  CHECK(ratios::ratio(ratios::distance(whole, product(product(z, guarded(form.t)), ratios::adjoint(z))), norm,
                      std::max<Integer>(n, 5), digits) < ratios::kLargestRatio);
  CHECK(ratios::ratio(ratios::distance(product(ratios::adjoint(z), z), ratios::unit<T>(n)), 1, std::max<Integer>(n, 5),
                      digits) < ratios::kLargestRatio);
}

}  // namespace

TEST_CASE_TEMPLATE("chosen eigenvalues come to the top", T, Real, Complex) {
  support::RandomNumbers random;
  for (const int digits : {1, 2, 16, 50, 100, 333}) {
    for (const std::size_t n : {0, 1, 2, 3, 5, 12, 40}) {
      if ((n == 40 && digits != 50) || (n > 5 && digits < 16)) {
        continue;
      }
      CAPTURE(digits);
      CAPTURE(n);
      const support::Digits scope(digits);
      const Dense<T> a = random_matrix<T>(n, n, random);
      const auto form = form_of(a);
      const auto chosen = [](const Complex& z) { return z.re < 0; };
      const std::size_t wanted = std::size_t(std::count_if(form.values.begin(), form.values.end(), chosen));
      const auto ordered = tesk2mp::order_schur(form, chosen);
      CHECK(ordered.dimension == wanted);
      check_form(a, ordered.form, digits);
      if (digits >= 16) {
        for (std::size_t i = 0; i < n; ++i) {
          CHECK(chosen(ordered.form.values[i]) == (i < wanted));
        }
      }
      CHECK(ordered.mean > 0);
      CHECK(ordered.mean <= 1);
    }
  }
}

TEST_CASE("blocks of one and two rows change places, however they stand") {
  support::RandomNumbers random;
  // Blocks 1 2 1 2 2: each to each place.
  const int starts[] = {1, 2, 4, 5, 7};
  for (const int digits : {16, 50}) {
    const support::Digits scope(digits);
    Dense<Real> t = random_matrix<Real>(8, 8, random);
    for (std::size_t j = 0; j < 8; ++j) {
      for (std::size_t i = j + 1; i < 8; ++i) {
        t(i, j) = 0;
      }
      t(j, j) = int(j);
    }
    for (const std::size_t i : {1U, 4U, 6U}) {
      t(i + 1, i + 1) = t(i, i);
      t(i, i + 1) = 1 + int(i);
      t(i + 1, i) = Real(-1) / int(i + 2);
    }
    for (const int from : starts) {
      for (Integer to = 1; to <= 8; ++to) {
        CAPTURE(from);
        CAPTURE(to);
        tesk2mp::Schur form{t, Dense<Real>::identity(8), {}};
        Integer ifst = from;
        Integer ilst = to;
        Integer info = -99;
        QuarnMPX_dtrexc_("V", 8, form.t.data(), 8, form.z.data(), 8, &ifst, &ilst, nullptr, &info, 1);
        REQUIRE(info == 0);
        check_form(t, form, digits);
        // The eigenvalue is there now.
        CHECK(fabs(form.t(std::size_t(ilst) - 1, std::size_t(ilst) - 1) -
                   t(std::size_t(from) - 1, std::size_t(from) - 1)) < Real(1, 4 - digits));
        CHECK(std::abs(ilst - to) <= 1);
      }
    }
  }
}

TEST_CASE("eigenvalues that are equal, or next to it") {
  for (const int digits : {16, 50}) {
    const support::Digits scope(digits);
    for (const char* gap : {"0", "1e-60", "1e-20", "1e-8"}) {
      CAPTURE(gap);
      Dense<Real> t = {{1, 5, 2}, {0, 1 + Real(gap), 3}, {0, 0, 7}};
      tesk2mp::Schur form{t, Dense<Real>::identity(3), {1, t(1, 1), 7}};
      Integer ifst = 3;
      Integer ilst = 1;
      Integer info = -99;
      QuarnMPX_dtrexc_("V", 3, form.t.data(), 3, form.z.data(), 3, &ifst, &ilst, nullptr, &info, 1);
      CHECK(info == 0);
      ifst = 2;
      ilst = 3;
      QuarnMPX_dtrexc_("V", 3, form.t.data(), 3, form.z.data(), 3, &ifst, &ilst, nullptr, &info, 1);
      CHECK(info == 0);
      CHECK(form.t(0, 0) == 7);
      check_form(t, form, digits);
    }
    // Two pairs next to each other are exchanged, or left as they were.
    Dense<Real> pairs = {{1, 2, 3, 4}, {-2, 1, 5, 6}, {0, 0, 1, 2}, {0, 0, Real(-2) - Real(1, 2 - digits), 1}};
    tesk2mp::Schur form{pairs, Dense<Real>::identity(4), {}};
    Integer ifst = 1;
    Integer ilst = 3;
    Integer info = -99;
    QuarnMPX_dtrexc_("V", 4, form.t.data(), 4, form.z.data(), 4, &ifst, &ilst, nullptr, &info, 1);
    CHECK((info == 0 || info == 1));
    check_form(pairs, form, digits);
  }
}

TEST_CASE("condition numbers of a mean and a subspace that are known") {
  const support::Digits scope(30);
  // T11 X - X T22 = T12: -1 x = 3, so s = 1/sqrt(10); sep is 1.
  const tesk2mp::Schur form{{{1, 3}, {0, 2}}, Dense<Real>::identity(2), {1, 2}};
  const auto ordered = tesk2mp::order_schur(form, [](const Complex& z) { return z.re == 1; });
  CHECK(fabs(ordered.mean - 1 / sqrt(Real(10))) < Real("1e-28"));
  CHECK(fabs(ordered.separation - 1) < Real("1e-28"));
  const auto other = tesk2mp::order_schur(form, [](const Complex& z) { return z.re == 2; });
  CHECK(other.form.t(0, 0) == 2);
  CHECK(fabs(other.mean - 1 / sqrt(Real(10))) < Real("1e-28"));
  CHECK_THROWS_AS((void)tesk2mp::order_schur(tesk2mp::Schur{{{1}}, {}, {1}}, [](const Complex&) { return true; }),
                  tesk2mp::InvalidArgument);
}

TEST_CASE_TEMPLATE("Sylvester equations have their solutions", T, Real, Complex) {
  support::RandomNumbers random;
  for (const int digits : {3, 16, 50, 100, 333}) {
    for (const std::size_t m : {0, 1, 2, 5, 13}) {
      for (const std::size_t n : {0, 1, 3, 8}) {
        CAPTURE(digits);
        CAPTURE(m);
        CAPTURE(n);
        const support::Digits scope(digits);
        Dense<T> a = random_matrix<T>(m, m, random);
        Dense<T> b = random_matrix<T>(n, n, random);
        for (std::size_t i = 0; i < m; ++i) {
          a(i, i) = a(i, i) + T(double(2 * m));
        }
        for (std::size_t i = 0; i < n; ++i) {
          b(i, i) = b(i, i) + T(double(2 * n));
        }
        const Dense<T> c = random_matrix<T>(m, n, random);
        const Dense<T> x = tesk2mp::solve_sylvester(a, b, c);
        const support::Digits finer(digits + ratios::kSpare);
        const auto sum = [&](ratios::Matrix<T> left, const ratios::Matrix<T>& right) {
          for (Integer j = 1; j <= left.columns(); ++j) {
            for (Integer i = 1; i <= left.rows(); ++i) {
              left(i, j) = left(i, j) + right(i, j);
            }
          }
          return left;
        };
        const auto solution = guarded(x);
        const auto got = sum(product(guarded(a), solution), product(solution, guarded(b)));
        const QuarnFloat size = (ratios::one_norm(guarded(a)) + ratios::one_norm(guarded(b))) *
                                (ratios::one_norm(solution) + Real(1, -digits));
        CHECK(ratios::ratio(ratios::distance(got, guarded(c)), size, Integer(std::max<std::size_t>(m + n, 5)), digits) <
              ratios::kLargestRatio);
      }
    }
  }
  CHECK_THROWS_AS((void)tesk2mp::solve_sylvester(Dense<T>{{1}}, Dense<T>{{-1}}, Dense<T>{{1}}),
                  tesk2mp::NumericalFailure);
  CHECK_THROWS_AS((void)tesk2mp::solve_sylvester(Dense<T>{{1}}, Dense<T>{{1}}, Dense<T>{{1, 2}}),
                  tesk2mp::InvalidArgument);
}

TEST_CASE_TEMPLATE("transposes and signs of Sylvester equations", T, Real, Complex) {
  support::RandomNumbers random;
  constexpr Integer m = 4;
  constexpr Integer n = 3;
  const support::Digits scope(30);
  ratios::Matrix<T> a(m, m);
  ratios::Matrix<T> b(n, n);
  a.randomise(random);
  b.randomise(random);
  for (Integer j = 1; j <= m; ++j) {
    for (Integer i = j + 1; i <= m; ++i) {
      a(i, j) = T(0.0);
    }
    a(j, j) = T(double(10 + j));
  }
  for (Integer j = 1; j <= n; ++j) {
    for (Integer i = j + 1; i <= n; ++i) {
      b(i, j) = T(0.0);
    }
    b(j, j) = T(double(j));
  }
  if constexpr (std::is_same_v<T, Real>) {
    a(2, 1) = -3;
    a(1, 2) = 2;
    a(2, 2) = a(1, 1);
  }
  const char* adjoint = std::is_same_v<T, Real> ? "T" : "C";
  for (const char* trana : {"N", adjoint}) {
    for (const char* tranb : {"N", adjoint}) {
      for (const Integer sign : {1, -1}) {
        ratios::Matrix<T> c(m, n);
        c.randomise(random);
        ratios::Matrix<T> x = c;
        QuarnFloat scale;
        Integer info = -99;
        if constexpr (std::is_same_v<T, Real>) {
          QuarnMPX_dtrsyl_(trana, tranb, sign, m, n, a.data(), a.lda(), b.data(), b.lda(), x.data(), x.lda(), &scale,
                           &info, 1, 1);
        } else {
          QuarnMPX_ztrsyl_(trana, tranb, sign, m, n, a.data(), a.lda(), b.data(), b.lda(), x.data(), x.lda(), &scale,
                           &info, 1, 1);
        }
        REQUIRE(info == 0);
        CHECK(x.intact());
        const auto left = product(*trana == 'N' ? a : ratios::adjoint(a), x);
        const auto right = product(x, *tranb == 'N' ? b : ratios::adjoint(b));
        for (Integer j = 1; j <= n; ++j) {
          for (Integer i = 1; i <= m; ++i) {
            const T sum = sign > 0 ? left(i, j) + right(i, j) : left(i, j) - right(i, j);
            CHECK(tesk::modulus(sum - c(i, j)) < Real(1, -27));
          }
        }
      }
    }
  }
}

TEST_CASE("wrong arguments of Schur forms") {
  Real t[4] = {1, 0, 0, 2};
  Complex z[4] = {1, 0, 0, 2};
  Complex w[2];
  Real wr[2];
  const Integer select[2] = {0, 1};
  Real s;
  Integer m = 0;
  Integer info = 0;
  const auto exchange = [&](const char* compq, Integer n, Integer ldt, Integer ldq, Integer from, Integer to) {
    QuarnMPX_dtrexc_(compq, n, t, ldt, t, ldq, &from, &to, nullptr, &info, 1);
    const Integer real = info;
    QuarnMPX_ztrexc_(compq, n, z, ldt, z, ldq, from, to, &info, 1);
    CHECK(info == real);
    return info;
  };
  CHECK(exchange("X", -1, 0, 0, 0, 0) == -1);
  CHECK(exchange("N", -1, 0, 0, 0, 0) == -2);
  CHECK(exchange("N", 2, 1, 0, 0, 0) == -4);
  CHECK(exchange("V", 2, 2, 1, 0, 0) == -6);
  CHECK(exchange("N", 2, 2, 1, 0, 0) == -7);
  CHECK(exchange("N", 2, 2, 1, 2, 3) == -8);
  CHECK(exchange("N", 0, 1, 1, 0, 0) == 0);
  QuarnMPX_ztrsen_("X", "N", select, 2, z, 2, nullptr, 1, w, &m, &s, &s, nullptr, 0, &info, 1, 1);
  CHECK(info == -1);
  QuarnMPX_dtrsen_("N", "V", select, 2, t, 2, nullptr, 1, wr, wr, &m, &s, &s, nullptr, 0, nullptr, 0, &info, 1, 1);
  CHECK(info == -8);
  QuarnMPX_ztrsen_("B", "N", select, 2, z, 2, nullptr, 1, w, &m, &s, &s, nullptr, 0, &info, 1, 1);
  CHECK(info == 0);
  CHECK(m == 1);
  CHECK(w[0] == Complex(2));
  QuarnMPX_dtrsyl_("C", "N", 0, 1, 1, t, 1, t, 1, wr, 1, &s, &info, 1, 1);
  CHECK(info == -3);
  QuarnMPX_ztrsyl_("T", "N", 1, 1, 1, z, 1, z, 1, w, 1, &s, &info, 1, 1);
  CHECK(info == -1);
}
