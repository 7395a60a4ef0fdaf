// Symmetric eigenproblems, singular values, complex eigenvalues, polynomials.
#include <algorithm>

#include "digest.h"

namespace digest {
namespace {

Integer at_least_one(Integer n) { return std::max<Integer>(1, n); }

template <class T, class Reduce, class Form, class Solve>
void tridiagonal(Suite& suite, Reduce reduce, Form form, Solve solve) {
  suite.cases(3, [&](Case& c) {
    const Integer n = c.size;
    const Integer ld = at_least_one(n);
    const auto a = c.numbers<T>(std::int64_t(ld) * ld);
    const auto d = c.numbers<QuarnFloat>(ld);
    const auto e = c.numbers<QuarnFloat>(ld);
    const auto tau = c.numbers<T>(ld);
    const Scratch<T> work(static_cast<std::size_t>(ld));
    const Scratch<QuarnFloat> unused(1);
    for (const char* uplo : {"U", "L", "X"}) {
      suite.run(reduce, uplo, n, a, ld, d, e, tau, work, ld, Integer(-99), 1);
      suite.run(form, uplo, n, a, ld, tau, work, ld, Integer(-99), 1);
    }
    for (const char* compz : {"N", "I", "V"}) {
      suite.run(solve, compz, n, d, e, a, ld, unused, Integer(-99), 1);
    }
  });
}

void divide_and_conquer(Suite& suite) {
  const auto real = ENTRY(QuarnMPX_dstedc_);
  const auto complex = ENTRY(QuarnMPX_zstedc_);
  suite.cases(3, [&](Case& c) {
    const Integer n = c.size;
    const Integer ld = at_least_one(n);
    const auto d = c.numbers<QuarnFloat>(ld);
    const auto e = c.numbers<QuarnFloat>(ld);
    const auto z = c.numbers<QuarnFloat>(std::int64_t(ld) * ld);
    const auto z2 = c.numbers<Complex>(std::int64_t(ld) * ld);
    const Scratch<QuarnFloat> work(1);
    const Scratch<Complex> work2(1);
    const Scratch<Integer> unused(1);
    for (const char* compz : {"N", "I", "V"}) {
      suite.run(real, compz, n, d, e, z, ld, work, Integer(1), unused, Integer(1), Integer(-99), 1);
      suite.run(complex, compz, n, d, e, z2, ld, work2, Integer(1), work, Integer(1), unused, Integer(1), Integer(-99),
                1);
    }
  });
}

void symmetric(Suite& suite) {
  const auto real = ENTRY(QuarnMPX_dsyev_);
  const auto hermitian = ENTRY(QuarnMPX_zheev_);
  suite.cases(3, [&](Case& c) {
    const Integer n = c.size;
    const Integer ld = at_least_one(n);
    const Integer lwork = 3 * ld;
    const Scratch<QuarnFloat> work(static_cast<std::size_t>(lwork));
    const Scratch<Complex> work2(static_cast<std::size_t>(lwork));
    const auto w = c.numbers<QuarnFloat>(ld);
    for (const char* jobz : {"N", "V"}) {
      suite.run(real, jobz, "L", n, c.numbers<QuarnFloat>(std::int64_t(ld) * ld), ld, w, work, lwork, Integer(-99), 1,
                1);
      suite.run(hermitian, jobz, "U", n, c.numbers<Complex>(std::int64_t(ld) * ld), ld, w, work2, lwork, work,
                Integer(-99), 1, 1);
    }
  });
}

void chosen(Suite& suite) {
  const auto values = ENTRY(QuarnMPX_dstebz_);
  const auto real_vectors = ENTRY(QuarnMPX_dstein_);
  const auto vectors = ENTRY(QuarnMPX_zstein_);
  const auto real = ENTRY(QuarnMPX_dsyevx_);
  const auto hermitian = ENTRY(QuarnMPX_zheevx_);
  suite.cases(3, [&](Case& c) {
    const Integer n = c.size;
    const Integer ld = at_least_one(n);
    const Integer lwork = 8 * ld;
    const auto d = c.numbers<QuarnFloat>(ld);
    const auto e = c.numbers<QuarnFloat>(ld);
    const auto a = c.numbers<QuarnFloat>(std::int64_t(ld) * ld);
    const auto b = c.numbers<Complex>(std::int64_t(ld) * ld);
    const Scratch<QuarnFloat> work(static_cast<std::size_t>(lwork));
    const Scratch<Complex> work2(static_cast<std::size_t>(lwork));
    const Scratch<Integer> unused(1);
    const std::vector<Integer> one(static_cast<std::size_t>(ld), 1);
    std::vector<Integer> split(static_cast<std::size_t>(ld), n);
    const QuarnFloat low(-1);
    const QuarnFloat high(1);
    for (const char* range : {"A", "V", "I"}) {
      suite.run(values, range, "B", n, low, high, Integer(1), n, QuarnFloat(), d, e, Integer(-99), Integer(-99), d, one,
                split, work, unused, Integer(-99), 1, 1);
      suite.run(real, "V", range, "L", n, a, ld, low, high, Integer(1), n, QuarnFloat(), Integer(-99), d, a, ld, work,
                lwork, unused, one, Integer(-99), 1, 1, 1);
      suite.run(hermitian, "V", range, "U", n, b, ld, low, high, Integer(1), n, QuarnFloat(), Integer(-99), d, b, ld,
                work2, lwork, work, unused, one, Integer(-99), 1, 1, 1);
    }
    suite.run(real_vectors, n, d, e, std::min<Integer>(n, 1), d, one, split, a, ld, work, unused, one, Integer(-99));
    suite.run(vectors, n, d, e, std::min<Integer>(n, 1), d, one, split, b, ld, work, unused, one, Integer(-99));
  });
}

template <class T, class Reduce>
void generalised_symmetric(Suite& suite, Reduce reduce) {
  const auto real = ENTRY(QuarnMPX_dsygv_);
  const auto hermitian = ENTRY(QuarnMPX_zhegv_);
  suite.cases(3, [&](Case& c) {
    const Integer n = c.size;
    const Integer ld = at_least_one(n);
    const Integer lwork = 3 * ld;
    const auto a = c.numbers<T>(std::int64_t(ld) * ld);
    auto b = c.numbers<T>(std::int64_t(ld) * ld);
    for (Integer i = 0; i < n; ++i) {
      b[std::size_t(i) * std::size_t(n + 1)] = T(QuarnFloat(1, 3));
    }
    const auto w = c.numbers<QuarnFloat>(ld);
    const Scratch<T> work(static_cast<std::size_t>(lwork));
    const Scratch<QuarnFloat> unused(1);
    for (const Integer itype : {1, 2, 3}) {
      suite.run(reduce, itype, "L", n, a, ld, b, ld, Integer(-99), 1);
      if constexpr (sizeof(T) == sizeof(QuarnFloat)) {
        suite.run(real, itype, "V", "U", n, a, ld, b, ld, w, work, lwork, Integer(-99), 1, 1);
      } else {
        suite.run(hermitian, itype, "V", "U", n, a, ld, b, ld, w, work, lwork, unused, Integer(-99), 1, 1);
      }
    }
  });
}

void pencils(Suite& suite) {
  const auto real = ENTRY(QuarnMPX_dggev_);
  const auto complex = ENTRY(QuarnMPX_zggev_);
  const auto reduce = ENTRY(QuarnMPX_dgghrd_);
  const auto reduce2 = ENTRY(QuarnMPX_zgghrd_);
  const auto schur = ENTRY(QuarnMPX_dhgeqz_);
  const auto schur2 = ENTRY(QuarnMPX_zhgeqz_);
  suite.cases(3, [&](Case& c) {
    const Integer n = c.size;
    const Integer ld = at_least_one(n);
    const Integer lwork = 8 * ld;
    const Scratch<QuarnFloat> work(static_cast<std::size_t>(lwork));
    const Scratch<Complex> work2(static_cast<std::size_t>(lwork));
    const std::int64_t count = std::int64_t(ld) * ld;
    const auto a = c.numbers<QuarnFloat>(count);
    const auto b = c.numbers<QuarnFloat>(count);
    const auto w = c.numbers<QuarnFloat>(ld);
    const auto a2 = c.numbers<Complex>(count);
    const auto b2 = c.numbers<Complex>(count);
    const auto w2 = c.numbers<Complex>(ld);
    for (const char* job : {"N", "V"}) {
      suite.run(real, job, "V", n, a, ld, b, ld, w, w, w, a, ld, a, ld, work, lwork, Integer(-99), 1, 1);
      suite.run(complex, job, "V", n, a2, ld, b2, ld, w2, w2, a2, ld, a2, ld, work2, lwork, work, Integer(-99), 1, 1);
    }
    for (const char* comp : {"N", "I", "V"}) {
      suite.run(reduce, comp, "I", n, Integer(1), n, a, ld, b, ld, a, ld, a, ld, Integer(-99), 1, 1);
      suite.run(reduce2, comp, "I", n, Integer(1), n, a2, ld, b2, ld, a2, ld, a2, ld, Integer(-99), 1, 1);
      suite.run(schur, "S", comp, "V", n, Integer(1), n, a, ld, b, ld, w, w, w, a, ld, a, ld, work, lwork, Integer(-99),
                1, 1, 1);
      suite.run(schur2, "E", comp, "N", n, Integer(1), n, a2, ld, b2, ld, w2, w2, a2, ld, a2, ld, work2, lwork, work,
                Integer(-99), 1, 1, 1);
    }
  });
}

void complex_eigen(Suite& suite) {
  const auto balance = ENTRY(QuarnMPX_zgebal_);
  const auto unbalance = ENTRY(QuarnMPX_zgebak_);
  const auto reduce = ENTRY(QuarnMPX_zgehrd_);
  const auto form = ENTRY(QuarnMPX_zunghr_);
  const auto schur = ENTRY(QuarnMPX_zhseqr_);
  const auto vectors = ENTRY(QuarnMPX_ztrevc_);
  const auto eigen = ENTRY(QuarnMPX_zgeev_);
  suite.cases(3, [&](Case& c) {
    const Integer n = c.size;
    const Integer ld = at_least_one(n);
    const Integer lwork = 2 * ld;
    const Scratch<Complex> work(static_cast<std::size_t>(lwork));
    const Scratch<QuarnFloat> unused(1);
    const auto a = c.numbers<Complex>(std::int64_t(ld) * ld);
    const auto w = c.numbers<Complex>(ld);
    const std::vector<QuarnFloat> scale(static_cast<std::size_t>(ld), 1);
    for (const char* job : {"B", "X"}) {
      suite.run(balance, job, n, a, ld, Integer(1), n, scale, Integer(-99), 1);
      suite.run(unbalance, job, "R", n, Integer(1), n, scale, n, a, ld, Integer(-99), 1, 1);
    }
    suite.run(reduce, n, Integer(1), n, a, ld, w, work, lwork, Integer(-99));
    suite.run(form, n, Integer(1), n, a, ld, w, work, lwork, Integer(-99));
    suite.run(schur, "S", "I", n, Integer(1), n, a, ld, w, a, ld, work, lwork, Integer(-99), 1, 1);
    const std::vector<Integer> select(static_cast<std::size_t>(ld), 1);
    suite.run(vectors, "B", "B", select, n, a, ld, a, ld, a, ld, n, Integer(-99), work, unused, Integer(-99), 1, 1);
    for (const char* job : {"N", "V"}) {
      suite.run(eigen, job, job, n, a, ld, w, a, ld, a, ld, work, lwork, unused, Integer(-99), 1, 1);
    }
  });
}

template <class T, class Z, class E, class D, class F>
void polynomials(Suite& suite, Z zeros, E value, D divide, F from) {
  suite.cases(3, [&](Case& c) {
    const Integer n = c.size;
    const auto a = c.numbers<T>(n + 1);
    const auto x = c.numbers<T>(at_least_one(n));
    suite.run(zeros, n, a, std::vector<Complex>(std::size_t(n) + 1), c.numbers<QuarnFloat>(n + 1), Integer(-99));
    suite.run(value, n, a, c.number<T>(), T(), Integer(-99));
    suite.run(divide, n, a, n / 2, x, a, a, Integer(-99));
    suite.run(from, n, x, a, Integer(-99));
  });
}

void singular(Suite& suite) {
  const auto real = ENTRY(QuarnMPX_dgesvd_);
  const auto hermitian = ENTRY(QuarnMPX_zgesvd_);
  const auto graded = ENTRY(QuarnMPX_dgejsv_);
  const auto graded_complex = ENTRY(QuarnMPX_zgejsv_);
  suite.cases(3, [&](Case& c) {
    const Integer n = c.size;
    const Integer ld = at_least_one(n);
    const Scratch<QuarnFloat> work(7);
    const Scratch<Complex> cwork(2);
    const auto s = c.numbers<QuarnFloat>(ld);
    const auto a = c.numbers<QuarnFloat>(std::int64_t(ld) * ld);
    const auto b = c.numbers<Complex>(std::int64_t(ld) * ld);
    const std::vector<Integer> iwork(3, 0);
    for (const char* job : {"U", "X"}) {
      suite.run(graded, "F", job, "V", "R", "N", "N", n, n, a, ld, s, a, ld, a, ld, work, Integer(7), iwork,
                Integer(-99), 1, 1, 1, 1, 1, 1);
      suite.run(graded_complex, "F", job, "V", "R", "N", "N", n, n, b, ld, s, b, ld, b, ld, cwork, Integer(2), work,
                Integer(7), iwork, Integer(-99), 1, 1, 1, 1, 1, 1);
    }
  });
  suite.cases(3, [&](Case& c) {
    const Integer n = c.size;
    const Integer m = n > 2 ? n - c.below(2) : n;
    const Integer ld = at_least_one(n);
    const Integer lwork = 5 * ld;
    const Scratch<QuarnFloat> work(static_cast<std::size_t>(lwork));
    const Scratch<Complex> work2(static_cast<std::size_t>(lwork));
    const auto s = c.numbers<QuarnFloat>(ld);
    const auto a = c.numbers<QuarnFloat>(std::int64_t(ld) * ld);
    const auto b = c.numbers<Complex>(std::int64_t(ld) * ld);
    for (const char* job : {"N", "S", "A"}) {
      suite.run(real, job, job, m, n, a, ld, s, a, ld, a, ld, work, lwork, Integer(-99), 1, 1);
      suite.run(hermitian, job, job, m, n, b, ld, s, b, ld, b, ld, work2, lwork, work, Integer(-99), 1, 1);
    }
  });
}

template <class T, class G, class R>
void gallery(Suite& suite, G matrix, R random) {
  suite.cases(2, [&](Case& c) {
    const Integer n = c.size;
    const Integer ld = at_least_one(n);
    const auto a = c.numbers<T>(std::int64_t(ld) * ld);
    const std::vector<Integer> seed = {6698, 7535, 26792, 30140};
    for (const char* name : {"hilbert", "kahan", "random_values", "nothing"}) {
      suite.run(matrix, name, n, a, Integer(0), seed, a, ld, Integer(-99), 1);
    }
    for (Integer idist = 0; idist <= 5; ++idist) {
      suite.run(random, idist, seed, n, c.numbers<T>(ld));
    }
  });
}

void function_zeros(Suite& suite) {
  const auto search = ENTRY(QuarnMPX_dbrack_);
  const auto search_core = ENTRY(QuarnMPX_dbrackn_);
  const auto refine = ENTRY(QuarnMPX_dzeroin_);
  const auto refine_core = ENTRY(QuarnMPX_dzeroinn_);
  suite.cases(2, [&](Case& c) {
    const QuarnFloat x = c.number<QuarnFloat>();
    const QuarnFloat y = c.number<QuarnFloat>();
    const std::vector<QuarnFloat> work(16);
    const std::vector<char> buffer(200);
    for (const Integer begin : {-1, 0, 1, 2}) {
      suite.run(search, begin, x, y, y, x, y, QuarnFloat(-2), QuarnFloat(2), work, Integer(1));
      suite.run(search_core, begin, x, y, y, x, y, QuarnFloat(-2), QuarnFloat(2), work, buffer, Integer(1), 200);
      suite.run(refine, begin, x, x, y, y, QuarnFloat(0), work, Integer(1));
      suite.run(refine_core, begin, x, x, y, y, QuarnFloat(0), work, buffer, Integer(1), 200);
    }
  });
}

void schur_forms(Suite& suite) {
  const auto real_equation = ENTRY(QuarnMPX_dtrsyl_);
  const auto complex_equation = ENTRY(QuarnMPX_ztrsyl_);
  const auto real_exchange = ENTRY(QuarnMPX_dtrexc_);
  const auto complex_exchange = ENTRY(QuarnMPX_ztrexc_);
  const auto real_selection = ENTRY(QuarnMPX_dtrsen_);
  const auto complex_selection = ENTRY(QuarnMPX_ztrsen_);
  suite.cases(2, [&](Case& c) {
    const Integer n = c.size;
    const Integer ld = at_least_one(n);
    auto a = c.numbers<QuarnFloat>(std::int64_t(ld) * ld);
    auto z = c.numbers<Complex>(std::int64_t(ld) * ld);
    for (Integer j = 0; j < n; ++j) {
      for (Integer i = j + 1; i < n; ++i) {
        a[std::size_t(i + j * ld)] = 0;
        z[std::size_t(i + j * ld)] = Complex();
      }
    }
    const auto w = c.numbers<QuarnFloat>(ld);
    std::vector<Integer> select(static_cast<std::size_t>(ld) + 1, 0);
    select[std::size_t(ld - 1)] = 1;
    const Scratch<QuarnFloat> work(1);
    const Scratch<Complex> work2(1);
    for (const char* op : {"N", "C"}) {
      suite.run(real_equation, op, "N", Integer(1), n, n, a, ld, a, ld, a, ld, QuarnFloat(), Integer(-99), 1, 1);
      suite.run(complex_equation, op, "N", Integer(1), n, n, z, ld, z, ld, z, ld, QuarnFloat(), Integer(-99), 1, 1);
    }
    suite.run(real_exchange, "V", n, a, ld, a, ld, Integer(1), n, work, Integer(-99), 1);
    suite.run(complex_exchange, "V", n, z, ld, z, ld, Integer(1), n, Integer(-99), 1);
    suite.run(real_selection, "B", "V", select, n, a, ld, a, ld, w, w, Integer(-99), QuarnFloat(), QuarnFloat(), work,
              Integer(1), select, Integer(1), Integer(-99), 1, 1);
    suite.run(complex_selection, "B", "V", select, n, z, ld, z, ld, z, Integer(-99), QuarnFloat(), QuarnFloat(), work2,
              Integer(1), Integer(-99), 1, 1);
  });
}

template <class T, class F, class P>
void matrix_functions(Suite& suite, P power, const std::vector<F>& functions) {
  suite.cases(1, [&](Case& c) {
    const Integer n = std::min<Integer>(c.size, 4);
    const Integer ld = at_least_one(n);
    const auto a = c.numbers<T>(std::int64_t(ld) * ld);
    for (const F& function : functions) {
      suite.run(function, n, a, ld, a, ld, Integer(-99));
    }
    suite.run(power, n, a, ld, QuarnFloat(2.5), a, ld, Integer(-99));
  });
}

template <class T, class E>
void from_factors(Suite& suite, E entry) {
  suite.cases(1, [&](Case& c) {
    const Integer n = c.size;
    const Integer ld = at_least_one(n);
    const auto a = c.numbers<T>(std::int64_t(ld) * ld);
    std::vector<Integer> rows(static_cast<std::size_t>(ld), n);
    const Scratch<T> work(static_cast<std::size_t>(ld));
    for (const Integer job : {10, 1, 11}) {
      suite.run(entry, a, ld, n, rows, std::vector<T>(2), work, job);
    }
  });
}

}  // namespace

void spectra(Suite& suite) {
  function_zeros(suite);
  schur_forms(suite);
  from_factors<QuarnFloat>(suite, ENTRY(QuarnMPX_dgedi_));
  from_factors<Complex>(suite, ENTRY(QuarnMPX_zgedi_));
  const std::vector real = {ENTRY(QuarnMPX_dexpm_), ENTRY(QuarnMPX_dsqrtm_), ENTRY(QuarnMPX_dlogm_)};
  const std::vector complex = {ENTRY(QuarnMPX_zexpm_), ENTRY(QuarnMPX_zsqrtm_), ENTRY(QuarnMPX_zlogm_)};
  matrix_functions<QuarnFloat>(suite, ENTRY(QuarnMPX_dpowm_), real);
  matrix_functions<Complex>(suite, ENTRY(QuarnMPX_zpowm_), complex);
  for (Integer field = 1; field <= 3; ++field) {
    suite.run(ENTRY(QuarnMPX_gallery_text_), Integer(1), field);
  }
  gallery<QuarnFloat>(suite, ENTRY(QuarnMPX_dgallery_), ENTRY(QuarnMPX_dlarnv_));
  gallery<Complex>(suite, ENTRY(QuarnMPX_zgallery_), ENTRY(QuarnMPX_zlarnv_));
  tridiagonal<QuarnFloat>(suite, ENTRY(QuarnMPX_dsytrd_), ENTRY(QuarnMPX_dorgtr_), ENTRY(QuarnMPX_dsteqr_));
  tridiagonal<Complex>(suite, ENTRY(QuarnMPX_zhetrd_), ENTRY(QuarnMPX_zungtr_), ENTRY(QuarnMPX_zsteqr_));
  divide_and_conquer(suite);
  symmetric(suite);
  chosen(suite);
  generalised_symmetric<QuarnFloat>(suite, ENTRY(QuarnMPX_dsygst_));
  generalised_symmetric<Complex>(suite, ENTRY(QuarnMPX_zhegst_));
  pencils(suite);
  complex_eigen(suite);
  singular(suite);
  polynomials<QuarnFloat>(suite, ENTRY(QuarnMPX_dpzeros_), ENTRY(QuarnMPX_dpeval_), ENTRY(QuarnMPX_dpdiv_),
                          ENTRY(QuarnMPX_dpfrom_));
  polynomials<Complex>(suite, ENTRY(QuarnMPX_zpzeros_), ENTRY(QuarnMPX_zpeval_), ENTRY(QuarnMPX_zpdiv_),
                       ENTRY(QuarnMPX_zpfrom_));
}

}  // namespace digest
