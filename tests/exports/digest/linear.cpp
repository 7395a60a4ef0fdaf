#include "tests/exports/digest/digest.h"

namespace digest {

namespace {

Integer at_least_one(Integer n) { return n > 1 ? n : 1; }

template <class T, class Factorise, class Form, class Apply>
void lq(Suite& suite, const char* adjoint, Factorise factorise, Form form, Apply apply) {
  suite.cases(3, [&](Case& c) {
    const Integer m = c.size;
    const Integer n = m + c.below(3);
    const Integer ld = at_least_one(n);
    const auto a = c.numbers<T>(std::int64_t(ld) * ld);
    const auto b = c.numbers<T>(std::int64_t(2) * ld);
    const auto tau = c.numbers<T>(ld);
    const Scratch<T> work(static_cast<std::size_t>(ld));
    for (const Integer lwork : {ld, Integer(-1), Integer(0)}) {
      suite.run(factorise, m, n, a, ld, tau, work, lwork, Integer(-99));
      suite.run(form, m, n, m, a, ld, tau, work, lwork, Integer(-99));
    }
    for (const char* trans : {"N", adjoint, "X"}) {
      suite.run(apply, "L", trans, n, Integer(2), m, a, ld, tau, b, ld, work, ld, Integer(-99), 1, 1);
    }
  });
}

/// What the QR with column pivoting leads to; `rwork` is the argument that the complex routines have.
template <class T, class Pivoted, class Trapezoid, class Apply, class Solve, class... R>
void any_rank(Suite& suite, const char* adjoint, Pivoted pivoted, Trapezoid trapezoid, Apply apply, Solve solve,
              R... rwork) {
  suite.cases(3, [&](Case& c) {
    const Integer m = c.size;
    const Integer n = c.size + c.below(3);
    const Integer ld = at_least_one(n);
    const Integer lwork = 4 * ld + 6;
    const auto a = c.numbers<T>(std::int64_t(ld) * ld);
    const auto b = c.numbers<T>(std::int64_t(2) * ld);
    const auto tau = c.numbers<T>(ld);
    const Scratch<T> work(static_cast<std::size_t>(lwork));
    std::vector<Integer> order(static_cast<std::size_t>(ld));
    order[std::size_t(ld - 1)] = c.below(2);
    suite.run(pivoted, m, n, a, ld, order, tau, work, lwork, rwork..., Integer(-99));
    suite.run(trapezoid, m, n, a, ld, tau, work, lwork, Integer(-99));
    for (const char* trans : {"N", adjoint, "X"}) {
      suite.run(apply, "L", trans, n, Integer(2), m, n - m, a, ld, tau, b, ld, work, lwork, Integer(-99), 1, 1);
    }
    for (const Integer length : {lwork, Integer(0)}) {
      suite.run(solve, m, n, Integer(2), a, ld, b, ld, order, QuarnFloat(1, 3 - c.digits), Integer(-99), work, length,
                rwork..., Integer(-99));
    }
  });
}

template <class T, class Constrained, class Model>
void constraints(Suite& suite, Constrained constrained, Model model) {
  suite.cases(3, [&](Case& c) {
    const Integer m = c.size;
    const Integer n = c.size;
    const Integer p = c.below(c.size + 1);
    const Integer ld = at_least_one(n);
    const auto a = c.numbers<T>(std::int64_t(ld) * ld);
    const auto b = c.numbers<T>(std::int64_t(ld) * ld);
    const auto right = c.numbers<T>(ld);
    const std::vector<T> x(static_cast<std::size_t>(ld));
    const Integer lwork = 3 * ld;
    const Scratch<T> work(static_cast<std::size_t>(lwork));
    for (const Integer length : {lwork, Integer(0)}) {
      suite.run(constrained, m, n, p, a, ld, b, ld, right, right, x, work, length, Integer(-99));
      suite.run(model, n, p, n, a, ld, b, ld, right, x, x, work, length, Integer(-99));
    }
  });
}

/// From factors: condition numbers, inverses, solutions that scale.
template <class T, class General, class Definite, class Inverse, class Solve, class... Scales>
void systems(Suite& suite, General general, Definite definite, Inverse inverse, Solve solve, Scales... scales) {
  suite.cases(3, [&](Case& c) {
    const Integer n = c.size;
    const Integer ld = at_least_one(n);
    const auto a = c.numbers<T>(std::int64_t(ld) * ld);
    const auto b = c.numbers<T>(ld);
    const auto norm = c.number<QuarnFloat>();
    const std::vector<QuarnFloat> reals(static_cast<std::size_t>(ld));
    for (const char* which : {"1", "i", "X"}) {
      suite.run(general, which, n, a, ld, norm, QuarnFloat(-1), nullptr, nullptr, Integer(-99), 1);
    }
    for (const char* uplo : {"U", "l", "X"}) {
      suite.run(definite, uplo, n, a, ld, norm, QuarnFloat(-1), nullptr, nullptr, Integer(-99), 1);
      suite.run(inverse, uplo, n, a, ld, Integer(-99), 1);
      for (const char* trans : {"N", "T", "c"}) {
        suite.run(solve, uplo, trans, "N", "N", n, a, ld, b, QuarnFloat(-1), reals, Integer(-99), 1, 1, 1, 1);
      }
    }
    (suite.run(scales, n, n, a, ld, reals, reals, QuarnFloat(-1), QuarnFloat(-1), QuarnFloat(-1), Integer(-99)), ...);
  });
}

template <class T, class... E>
void determinants(Suite& suite, E... entries) {
  suite.cases(3, [&](Case& c) {
    const Integer n = c.size;
    const Integer ld = at_least_one(n);
    const std::vector<Integer> rows(static_cast<std::size_t>(ld));
    const auto a = c.numbers<T>(std::int64_t(ld) * ld);
    (suite.run_form<0>(entries, n, a, ld, rows, T(), Integer(-99), QuarnFloat(-1)), ...);
  });
  suite.few_cases([&](Case& c) {
    const std::vector<Integer> rows(4);
    auto a = c.numbers<T>(16);
    (suite.run_form<0>(entries, Integer(-1), a, Integer(4), rows, T(), Integer(-99), QuarnFloat(-1)), ...);
    (suite.run_form<0>(entries, Integer(4), a, Integer(3), rows, T(), Integer(-99), QuarnFloat(-1)), ...);
    for (const int power : {900000000, -900000000}) {
      for (Integer i = 0; i < 16; ++i) {
        a[std::size_t(i)] = i % 5 == 0 ? T(QuarnFloat(1, power)) : T();
      }
      (suite.run_form<0>(entries, Integer(4), a, Integer(4), rows, T(), Integer(-99), QuarnFloat(-1)), ...);
    }
  });
}

template <class T, class Factorise, class Solve>
void indefinite(Suite& suite, Factorise factorise, Solve solve) {
  suite.cases(3, [&](Case& c) {
    const Integer n = c.size;
    const Integer ld = at_least_one(n);
    const auto a = c.numbers<T>(std::int64_t(ld) * ld);
    const auto b = c.numbers<T>(std::int64_t(2) * ld);
    std::vector<Integer> rows(static_cast<std::size_t>(ld));
    for (Integer i = 0; i < n; ++i) {
      rows[std::size_t(i)] = i + 1;
    }
    for (const char* uplo : {"U", "l", "X"}) {
      suite.run(factorise, uplo, n, a, ld, rows, Scratch<T>(1), Integer(1), Integer(-99), 1);
      suite.run(solve, uplo, n, Integer(2), a, ld, rows, b, ld, Integer(-99), 1);
    }
  });
}

template <class T, class BandFactorise, class BandSolve, class Factorise, class Solve>
void bands(Suite& suite, BandFactorise band_factorise, BandSolve band_solve, Factorise factorise, Solve solve) {
  suite.cases(2, [&](Case& c) {
    const Integer n = c.size;
    const Integer ld = at_least_one(n);
    const Integer kl = c.below(3);
    const Integer ku = c.below(3);
    const Integer ldab = 2 * kl + ku + 1;
    const auto ab = c.numbers<T>(std::int64_t(ldab) * ld);
    const auto b = c.numbers<T>(std::int64_t(2) * ld);
    const auto d = c.numbers<T>(ld);
    std::vector<Integer> rows(static_cast<std::size_t>(ld));
    for (Integer i = 0; i < n; ++i) {
      rows[std::size_t(i)] = i + 1 + (i + 1 < n && kl > 0 ? c.below(2) : 0);
    }
    suite.run(band_factorise, n, n, kl, ku, ab, ldab, rows, Integer(-99));
    suite.run(factorise, n, d, d, d, d, rows, Integer(-99));
    for (const char* trans : {"N", "t", "C", "X"}) {
      suite.run(band_solve, trans, n, kl, ku, Integer(2), ab, ldab, rows, b, ld, Integer(-99), 1);
      suite.run(solve, trans, n, Integer(2), d, d, d, d, rows, b, ld, Integer(-99), 1);
    }
  });
}

template <class T, class Factorise>
void definite_tridiagonals(Suite& suite, Factorise factorise) {
  suite.cases(1, [&](Case& c) {
    const Integer n = c.size;
    const Integer ld = at_least_one(n);
    std::vector<QuarnFloat> d = c.numbers<QuarnFloat>(ld);
    for (QuarnFloat& each : d) {
      each = c.below(5) == 0 ? each : 4 * each * each;
    }
    const auto e = c.numbers<T>(ld);
    const auto b = c.numbers<T>(std::int64_t(2) * ld);
    suite.run(factorise, n, d, e, Integer(-99));
    if constexpr (std::is_same_v<T, Complex>) {
      for (const char* uplo : {"U", "l", "X"}) {
        suite.run(ENTRY(QuarnMPX_zpttrs_), uplo, n, Integer(2), d, e, b, ld, Integer(-99), 1);
      }
    } else {
      suite.run(ENTRY(QuarnMPX_dpttrs_), n, Integer(2), d, e, b, ld, Integer(-99));
    }
  });
}

}  // namespace

void linear(Suite& suite) {
  lq<QuarnFloat>(suite, "T", ENTRY(QuarnMPX_dgelqf_), ENTRY(QuarnMPX_dorglq_), ENTRY(QuarnMPX_dormlq_));
  lq<Complex>(suite, "C", ENTRY(QuarnMPX_zgelqf_), ENTRY(QuarnMPX_zunglq_), ENTRY(QuarnMPX_zunmlq_));
  any_rank<QuarnFloat>(suite, "T", ENTRY(QuarnMPX_dgeqp3_), ENTRY(QuarnMPX_dtzrzf_), ENTRY(QuarnMPX_dormrz_),
                       ENTRY(QuarnMPX_dgelsy_));
  any_rank<Complex>(suite, "C", ENTRY(QuarnMPX_zgeqp3_), ENTRY(QuarnMPX_ztzrzf_), ENTRY(QuarnMPX_zunmrz_),
                    ENTRY(QuarnMPX_zgelsy_), nullptr);
  constraints<QuarnFloat>(suite, ENTRY(QuarnMPX_dgglse_), ENTRY(QuarnMPX_dggglm_));
  constraints<Complex>(suite, ENTRY(QuarnMPX_zgglse_), ENTRY(QuarnMPX_zggglm_));
  systems<QuarnFloat>(suite, ENTRY(QuarnMPX_dgecon_), ENTRY(QuarnMPX_dpocon_), ENTRY(QuarnMPX_dpotri_),
                      ENTRY(QuarnMPX_dlatrs_), ENTRY(QuarnMPX_dgeequ_), ENTRY(QuarnMPX_dgeequb_));
  systems<Complex>(suite, ENTRY(QuarnMPX_zgecon_), ENTRY(QuarnMPX_zpocon_), ENTRY(QuarnMPX_zpotri_),
                   ENTRY(QuarnMPX_zlatrs_), ENTRY(QuarnMPX_zgeequ_), ENTRY(QuarnMPX_zgeequb_));
  indefinite<QuarnFloat>(suite, ENTRY(QuarnMPX_dsytrf_), ENTRY(QuarnMPX_dsytrs_));
  indefinite<Complex>(suite, ENTRY(QuarnMPX_zsytrf_), ENTRY(QuarnMPX_zsytrs_));
  indefinite<Complex>(suite, ENTRY(QuarnMPX_zhetrf_), ENTRY(QuarnMPX_zhetrs_));
  bands<QuarnFloat>(suite, ENTRY(QuarnMPX_dgbtrf_), ENTRY(QuarnMPX_dgbtrs_), ENTRY(QuarnMPX_dgttrf_),
                    ENTRY(QuarnMPX_dgttrs_));
  bands<Complex>(suite, ENTRY(QuarnMPX_zgbtrf_), ENTRY(QuarnMPX_zgbtrs_), ENTRY(QuarnMPX_zgttrf_),
                 ENTRY(QuarnMPX_zgttrs_));
  definite_tridiagonals<QuarnFloat>(suite, ENTRY(QuarnMPX_dpttrf_));
  definite_tridiagonals<Complex>(suite, ENTRY(QuarnMPX_zpttrf_));
  determinants<QuarnFloat>(suite, ENTRY(QuarnMPX_f03affn_), ENTRY(QuarnMPX_f03aff_));
  determinants<Complex>(suite, ENTRY(QuarnMPX_zdeterminantn_), ENTRY(QuarnMPX_zdeterminant_));
}

}  // namespace digest
