#include "tests/exports/digest/digest.h"

namespace digest {

namespace {

Integer at_least_one(Integer n) { return n > 1 ? n : 1; }

template <class T, class... E>
void lu(Suite& suite, E... entries) {
  suite.cases(3, [&](Case& c) {
    for (const Integer extra : {-1, 0, 2}) {
      const Integer m = c.size;
      const Integer n = c.size + extra > 0 ? c.size + extra : 0;
      const Integer lda = at_least_one(m) + c.below(2);
      const auto a = c.numbers<T>(std::int64_t(lda) * at_least_one(n));
      const std::vector<Integer> pivots(std::size_t(at_least_one(m)), -7);
      (suite.run(entries, m, n, a, lda, pivots, Integer(-99)), ...);
    }
  });
  suite.few_cases([&](Case& c) {
    const auto a = c.numbers<T>(16);
    const std::vector<Integer> pivots(4);
    (suite.run(entries, Integer(-1), Integer(2), a, Integer(2), pivots, Integer(-99)), ...);
    (suite.run(entries, Integer(2), Integer(-1), a, Integer(2), pivots, Integer(-99)), ...);
    (suite.run(entries, Integer(3), Integer(2), a, Integer(2), pivots, Integer(-99)), ...);
  });
}

template <class T, class E>
void solutions(Suite& suite, E entry) {
  suite.cases(3, [&](Case& c) {
    const Integer n = c.size;
    const Integer lda = at_least_one(n);
    const auto a = c.numbers<T>(std::int64_t(lda) * lda);
    const auto b = c.numbers<T>(std::int64_t(2) * lda);
    std::vector<Integer> rows(std::size_t(lda), 1);
    for (Integer i = 0; i < n; ++i) {
      rows[std::size_t(i)] = i + 1 + c.below(n - i);
    }
    for (const char* trans : {"N", "t", "C", "X"}) {
      suite.run(entry, trans, n, Integer(2), a, lda, rows, b, lda, Integer(-99), 1);
    }
  });
}

template <class T, class Unused, class E>
void refinement(Suite& suite, E entry) {
  suite.cases(3, [&](Case& c) {
    const Integer n = c.size;
    const Integer ld = at_least_one(n);
    const auto a = c.numbers<T>(std::int64_t(ld) * ld);
    const auto b = c.numbers<T>(std::int64_t(2) * ld);
    std::vector<Integer> rows(std::size_t(ld), 1);
    for (Integer i = 0; i < n; ++i) {
      rows[std::size_t(i)] = i + 1;
    }
    const std::vector<QuarnFloat> two(2, QuarnFloat(0));
    const Scratch<T> work(std::size_t(3) * std::size_t(ld));
    const Scratch<Unused> unused(static_cast<std::size_t>(ld));
    for (const char* trans : {"N", "t", "C", "X"}) {
      suite.run(entry, trans, n, Integer(2), a, ld, a, ld, rows, b, ld, b, ld, two, two, work, unused, Integer(-99), 1);
    }
  });
}

void unbalanced_vectors(Suite& suite) {
  const auto entry = ENTRY(QuarnMPX_dgebak_);
  suite.cases(3, [&](Case& c) {
    const Integer n = c.size;
    const Integer ld = at_least_one(n);
    const std::vector<QuarnFloat> scale(std::size_t(ld), QuarnFloat(1));
    const auto v = c.numbers<QuarnFloat>(std::int64_t(2) * ld);
    for (const char* job : {"N", "p", "S", "b", "X"}) {
      for (const char* side : {"R", "l"}) {
        suite.run(entry, job, side, n, Integer(1), n, scale, Integer(2), v, ld, Integer(-99), 1, 1);
      }
    }
  });
}

void weighted_lu(Suite& suite) {
  const auto entry = ENTRY(QuarnMP_f07adg_);
  suite.cases(3, [&](Case& c) {
    const Integer m = c.digits == 1 && c.size > 9 ? 9 : c.size;
    const Integer n = c.size;
    const Integer lda = at_least_one(m);
    suite.run(entry, m, n, c.numbers<QuarnFloat>(std::int64_t(lda) * at_least_one(n)), lda,
              std::vector<QuarnFloat>(std::size_t(lda)), Integer(-99));
  });
  suite.few_cases([&](Case& c) {
    const auto a = c.numbers<QuarnFloat>(16);
    suite.run(entry, Integer(-1), Integer(2), a, Integer(2), a, Integer(-99));
    suite.run(entry, Integer(2), Integer(-1), a, Integer(2), a, Integer(-99));
    suite.run(entry, Integer(3), Integer(2), a, Integer(2), a, Integer(-99));
  });
}

template <class T, class... E>
void cholesky(Suite& suite, E... entries) {
  suite.cases(3, [&](Case& c) {
    for (const char* uplo : {"U", "l"}) {
      const Integer n = c.size;
      const Integer lda = at_least_one(n) + c.below(2);
      auto a = c.numbers<T>(std::int64_t(lda) * at_least_one(n));
      for (Integer i = 0; i < n && c.below(5) != 0; ++i) {
        a[std::size_t(i) * std::size_t(lda + 1)] = T(double(n + 1));
      }
      (suite.run(entries, uplo, n, a, lda, Integer(-99), 1), ...);
    }
  });
  suite.few_cases([&](Case& c) {
    const auto a = c.numbers<T>(16);
    (suite.run(entries, "X", Integer(2), a, Integer(2), Integer(-99), 1), ...);
    (suite.run(entries, "U", Integer(-2), a, Integer(2), Integer(-99), 1), ...);
    (suite.run(entries, "U", Integer(2), a, Integer(1), Integer(-99), 1), ...);
  });
}

template <class T, class E>
void cholesky_solutions(Suite& suite, E entry) {
  suite.cases(3, [&](Case& c) {
    const Integer n = c.size;
    const Integer ld = at_least_one(n);
    const auto a = c.numbers<T>(std::int64_t(ld) * ld);
    const auto b = c.numbers<T>(std::int64_t(2) * ld);
    for (const char* uplo : {"U", "l", "X"}) {
      suite.run(entry, uplo, n, Integer(2), a, ld, b, ld, Integer(-99), 1);
    }
  });
}

template <class T, class E>
void inverses(Suite& suite, E entry) {
  suite.cases(3, [&](Case& c) {
    const Integer n = c.size;
    const Integer ld = at_least_one(n);
    std::vector<Integer> rows(std::size_t(ld), 1);
    for (Integer i = 0; i < n; ++i) {
      rows[std::size_t(i)] = i + 1 + c.below(n - i);
    }
    for (const Integer lwork : {ld, Integer(-1), Integer(0)}) {
      suite.run(entry, n, c.numbers<T>(std::int64_t(ld) * ld), ld, rows, Scratch<T>(std::size_t(ld)), lwork,
                Integer(-99));
    }
  });
}

void tuning(Suite& suite) {
  const auto entry = ENTRY(QuarnMP_f07zaz_);
  for (const char* name : {"F07ADF", "ADFF07", "F08PEF", "F07FRF", "F08AEF", "F08AGF", "F07XXF", "C06FAF", "abcdef"}) {
    for (Integer ispec = -1; ispec < 11; ++ispec) {
      suite.run(entry, ispec, name, Integer(-99), Integer(0), 6);
    }
  }
  for (const Integer value : {17, 1}) {
    suite.run(entry, Integer(1), "F07ADF", value, Integer(1), 6);
    suite.run(entry, Integer(1), "F07ADF", Integer(-99), Integer(0), 6);
  }
}

/// Upper Hessenberg, in an array with lda rows.
std::vector<QuarnFloat> hessenberg(Case& c, Integer n, Integer lda) {
  auto h = c.numbers<QuarnFloat>(std::int64_t(lda) * at_least_one(n));
  for (Integer j = 0; j < n; ++j) {
    for (Integer i = j + 2; i < n; ++i) {
      h[std::size_t(i) + std::size_t(j) * std::size_t(lda)] = 0;
    }
  }
  return h;
}

template <class... E>
void hessenberg_qr(Suite& suite, E... entries) {
  suite.cases(3.5, [&](Case& c) {
    const char* const jobs[] = {"E", "s"};
    const char* const vectors[] = {"n", "I", "V"};
    for (int options = 0; options < 6; ++options) {
      const Integer n = c.size;
      const Integer ld = at_least_one(n) + c.below(2);
      const Integer ilo = n > 4 && c.below(3) == 0 ? 2 : 1;
      const auto h = hessenberg(c, n, ld);
      const auto z = c.numbers<QuarnFloat>(std::int64_t(ld) * at_least_one(n));
      const std::vector<QuarnFloat> w(std::size_t(at_least_one(n)));
      (suite.run(entries, jobs[options % 2], vectors[options / 2], n, n == 0 ? Integer(1) : ilo, n, h, ld, w, w, z, ld,
                 Scratch<QuarnFloat>(std::size_t(ld)), ld, Integer(-99), 1, 1),
       ...);
    }
  });
  suite.few_cases([&](Case& c) {
    const auto a = c.numbers<QuarnFloat>(16);
    const auto wrong = [&](const char* job, const char* compz, Integer n, Integer ilo, Integer ihi, Integer ldh,
                           Integer ldz, Integer lwork) {
      (suite.run(entries, job, compz, n, ilo, ihi, a, ldh, a, a, a, ldz, a, lwork, Integer(-99), 1, 1), ...);
    };
    wrong("X", "N", 3, 1, 3, 3, 3, 3);
    wrong("E", "X", 3, 1, 3, 3, 3, 3);
    wrong("E", "N", -1, 1, 3, 3, 3, 3);
    wrong("E", "N", 3, 0, 3, 3, 3, 3);
    wrong("E", "N", 3, 1, 4, 3, 3, 3);
    wrong("E", "N", 3, 1, 3, 2, 3, 3);
    wrong("E", "I", 3, 1, 3, 3, 2, 3);
    wrong("E", "N", 3, 1, 3, 3, 3, 2);
    wrong("E", "N", 3, 1, 3, 3, 3, -1);
  });
}

template <class... E>
void double_shift_qr(Suite& suite, E... entries) {
  suite.cases(3.5, [&](Case& c) {
    for (const unsigned wanted : {0U, 1U}) {
      const Integer n = c.size;
      const Integer ld = at_least_one(n);
      const auto h = hessenberg(c, n, ld);
      const auto z = c.numbers<QuarnFloat>(std::int64_t(ld) * ld);
      const std::vector<QuarnFloat> w(std::size_t(ld), QuarnFloat(0));
      (suite.run(entries, wanted, wanted, n, Integer(1), n, h, ld, w, w, Integer(1), n, z, ld, Integer(-99)), ...);
    }
  });
}

template <class... E>
void balancing(Suite& suite, E... entries) {
  suite.cases(2.5, [&](Case& c) {
    if (c.kind == Kind::extreme) {
      return;  // takes 10^5 times as long as other numbers
    }
    for (const char* job : {"N", "p", "S", "b"}) {
      const Integer n = c.size;
      const Integer lda = at_least_one(n);
      auto a = c.numbers<QuarnFloat>(std::int64_t(lda) * lda);
      for (auto& each : a) {
        if (c.below(3) == 0) {
          each = 0;
        }
      }
      (suite.run(entries, job, n, a, lda, Integer(-9), Integer(-9), std::vector<QuarnFloat>(std::size_t(lda)),
                 Integer(-99), 1),
       ...);
    }
  });
  suite.few_cases([&](Case& c) {
    const auto a = c.numbers<QuarnFloat>(16);
    (suite.run(entries, "X", Integer(2), a, Integer(2), Integer(0), Integer(0), a, Integer(-99), 1), ...);
    (suite.run(entries, "B", Integer(-2), a, Integer(2), Integer(0), Integer(0), a, Integer(-99), 1), ...);
    (suite.run(entries, "B", Integer(3), a, Integer(2), Integer(0), Integer(0), a, Integer(-99), 1), ...);
  });
}

/// The Schur form of a random matrix, by the library that is examined.
struct Schur {
  std::vector<QuarnFloat> t, z;
};

template <class E>
Schur schur_form(E qr, Case& c, Integer n) {
  const Integer ld = at_least_one(n);
  Schur schur = {hessenberg(c, n, ld), std::vector<QuarnFloat>(std::size_t(ld) * std::size_t(ld))};
  std::vector<QuarnFloat> wr(std::size_t(ld), QuarnFloat(0));
  auto wi = wr;
  auto work = wr;
  Integer info = 0;
  qr.function("S", "I", n, 1, n, schur.t.data(), ld, wr.data(), wi.data(), schur.z.data(), ld, work.data(), ld, &info,
              1, 1);
  return schur;
}

template <class Q, class... E>
void eigenvectors(Suite& suite, Q qr, E... entries) {
  suite.cases(3.5, [&](Case& c) {
    const Integer n = c.size;
    const Integer ld = at_least_one(n);
    const Schur schur = schur_form(qr, c, n);
    const std::vector<QuarnFloat> empty(std::size_t(ld) * std::size_t(ld), QuarnFloat(0));
    std::vector<Integer> select(std::size_t(ld), 0);
    for (Integer& each : select) {
      each = c.below(2);
    }
    for (const char* side : {"R", "l", "B"}) {
      for (const char* howmny : {"A", "b", "S"}) {
        const auto& start = *howmny == 'b' ? schur.z : empty;
        (suite.run(entries, side, howmny, select, n, schur.t, ld, start, ld, start, ld, n, Integer(-9),
                   Scratch<QuarnFloat>(std::size_t(3 * ld)), Integer(-99), 1, 1),
         ...);
      }
    }
  });
  suite.few_cases([&](Case& c) {
    const auto a = c.numbers<QuarnFloat>(16);
    const std::vector<Integer> all(4, 1);
    const auto wrong = [&](const char* side, const char* howmny, Integer n, Integer ldt, Integer ldvl, Integer ldvr,
                           Integer mm) {
      (suite.run(entries, side, howmny, all, n, a, ldt, a, ldvl, a, ldvr, mm, Integer(-9), a, Integer(-99), 1, 1), ...);
    };
    wrong("X", "A", 3, 3, 3, 3, 3);
    wrong("B", "X", 3, 3, 3, 3, 3);
    wrong("B", "A", -1, 3, 3, 3, 3);
    wrong("B", "A", 3, 2, 3, 3, 3);
    wrong("B", "A", 3, 3, 2, 3, 3);
    wrong("B", "A", 3, 3, 3, 2, 3);
    wrong("B", "A", 3, 3, 3, 3, 2);
  });
}

template <class Q, class V, class... E>
void conditions(Suite& suite, Q qr, V vectors, E... entries) {
  suite.cases(4, [&](Case& c) {
    const Integer n = c.size;
    const Integer ld = at_least_one(n);
    Schur schur = schur_form(qr, c, n);
    std::vector<Integer> select(std::size_t(ld), 1);
    std::vector<QuarnFloat> left(schur.t.size());
    auto right = left;
    std::vector<QuarnFloat> work(std::size_t(3 * ld), QuarnFloat(0));
    Integer used = 0;
    Integer info = 0;
    vectors.function("B", "A", select.data(), n, schur.t.data(), ld, left.data(), ld, right.data(), ld, n, &used,
                     work.data(), &info, 1, 1);
    select[0] = 0;
    const std::vector<QuarnFloat> result(std::size_t(ld), QuarnFloat(0));
    for (const char* job : {"E", "v", "B"}) {
      for (const char* howmny : {"A", "s"}) {
        (suite.run(entries, job, howmny, select, n, schur.t, ld, left, ld, right, ld, result, result, n, Integer(-9),
                   Scratch<QuarnFloat>(std::size_t(ld) * std::size_t(ld + 6)), ld,
                   Scratch<Integer>(std::size_t(2 * ld)), Integer(-99), 1, 1),
         ...);
      }
    }
  });
  suite.few_cases([&](Case& c) {
    const auto a = c.numbers<QuarnFloat>(16);
    const std::vector<Integer> all(4, 1);
    const auto wrong = [&](const char* job, const char* howmny, Integer n, Integer ldt, Integer ldvl, Integer ldvr,
                           Integer mm, Integer ldwork) {
      (suite.run(entries, job, howmny, all, n, a, ldt, a, ldvl, a, ldvr, a, a, mm, Integer(-9), a, ldwork, all,
                 Integer(-99), 1, 1),
       ...);
    };
    wrong("X", "A", 3, 3, 3, 3, 3, 3);
    wrong("B", "X", 3, 3, 3, 3, 3, 3);
    wrong("B", "A", -1, 3, 3, 3, 3, 3);
    wrong("B", "A", 3, 2, 3, 3, 3, 3);
    wrong("B", "A", 3, 3, 2, 3, 3, 3);
    wrong("B", "A", 3, 3, 3, 2, 3, 3);
    wrong("B", "A", 3, 3, 3, 3, 2, 3);
    wrong("B", "A", 3, 3, 3, 3, 3, 2);
  });
}

template <class... E>
void quartic(Suite& suite, E... entries) {
  suite.cases(2, [&](Case& c) {
    if (c.kind == Kind::extreme) {
      return;
    }
    const std::vector<QuarnFloat> four(4, QuarnFloat(0));
    const auto coefficient = c.numbers<QuarnFloat>(5);
    (suite.run_form<0>(entries, coefficient[0], coefficient[1], coefficient[2], coefficient[3], coefficient[4], four,
                       four, four),
     ...);
  });
}

/// QR, its orthogonal factor formed and applied, least squares.
template <class T, class Factorise, class Form, class Apply, class Solve>
void orthogonal(Suite& suite, const char* adjoint, Factorise factorise, Form form, Apply apply, Solve solve) {
  suite.cases(3, [&](Case& c) {
    const Integer m = c.size;
    const Integer n = m > 2 ? m - c.below(2) : m;
    const Integer ld = at_least_one(m);
    const Integer lwork = 3 * ld + 4;
    const auto a = c.numbers<T>(std::int64_t(ld) * ld);
    const auto b = c.numbers<T>(std::int64_t(2) * ld);
    const auto tau = c.numbers<T>(ld);
    const Scratch<T> work(static_cast<std::size_t>(lwork));
    suite.run(factorise, m, n, a, ld, tau, work, lwork, Integer(-99));
    suite.run(form, m, n, n, a, ld, tau, work, lwork, Integer(-99));
    for (const char* trans : {"N", adjoint, "X"}) {
      suite.run(apply, "L", trans, m, Integer(2), n, a, ld, tau, b, ld, work, lwork, Integer(-99), 1, 1);
      suite.run(solve, trans, m, n, Integer(2), a, ld, b, ld, work, lwork, Integer(-99), 1);
    }
  });
}

template <class... E>
void hessenberg_form(Suite& suite, E... entries) {
  suite.cases(3, [&](Case& c) {
    const Integer n = c.size;
    const Integer ld = at_least_one(n);
    for (const Integer lwork : {ld, Integer(-1), Integer(0)}) {
      (suite.run(entries, n, Integer(1), n, c.numbers<QuarnFloat>(std::int64_t(ld) * ld), ld, c.numbers<QuarnFloat>(ld),
                 Scratch<QuarnFloat>(std::size_t(ld)), lwork, Integer(-99)),
       ...);
    }
  });
}

}  // namespace

void dense(Suite& suite) {
  lu<QuarnFloat>(suite, ENTRY(QuarnMP_f07adf_), ENTRY(QuarnMP_dgetrf_), MASTER(QuarnMP_f07adf_ENTRY));
  lu<Complex>(suite, ENTRY(QuarnMP_f07arf_), ENTRY(QuarnMP_zgetrf_), MASTER(QuarnMP_f07arf_ENTRY));
  lu<QuarnFloat>(suite, ENTRY(QuarnMPX_f07adf_), ENTRY(QuarnMPX_dgetrf_));
  lu<Complex>(suite, ENTRY(QuarnMPX_f07arf_), ENTRY(QuarnMPX_zgetrf_));
  solutions<QuarnFloat>(suite, ENTRY(QuarnMPX_dgetrs_));
  solutions<Complex>(suite, ENTRY(QuarnMPX_zgetrs_));
  refinement<QuarnFloat, Integer>(suite, ENTRY(QuarnMPX_dgerfs_));
  refinement<Complex, QuarnFloat>(suite, ENTRY(QuarnMPX_zgerfs_));
  weighted_lu(suite);
  inverses<QuarnFloat>(suite, ENTRY(QuarnMPX_dgetri_));
  inverses<Complex>(suite, ENTRY(QuarnMPX_zgetri_));
  cholesky<Complex>(suite, ENTRY(QuarnMPX_f07frf_), ENTRY(QuarnMPX_zpotrf_));
  cholesky<QuarnFloat>(suite, ENTRY(QuarnMPX_dpotrf_));
  cholesky_solutions<QuarnFloat>(suite, ENTRY(QuarnMPX_dpotrs_));
  cholesky_solutions<Complex>(suite, ENTRY(QuarnMPX_zpotrs_));
  cholesky<Complex>(suite, ENTRY(QuarnMP_f07frf_), ENTRY(QuarnMP_zpotrf_), MASTER(QuarnMP_f07frf_ENTRY),
                    ENTRY(QuarnMP_f07frz_), ENTRY(QuarnMP_zpotf2_));
  orthogonal<QuarnFloat>(suite, "T", ENTRY(QuarnMPX_dgeqrf_), ENTRY(QuarnMPX_dorgqr_), ENTRY(QuarnMPX_dormqr_),
                         ENTRY(QuarnMPX_dgels_));
  orthogonal<Complex>(suite, "C", ENTRY(QuarnMPX_zgeqrf_), ENTRY(QuarnMPX_zungqr_), ENTRY(QuarnMPX_zunmqr_),
                      ENTRY(QuarnMPX_zgels_));
  hessenberg_form(suite, ENTRY(QuarnMPX_dgehrd_), ENTRY(QuarnMPX_dorghr_));
  tuning(suite);
}

void eigenvalues(Suite& suite) {
  const auto qr = ENTRY(QuarnMP_f08pef_);
  const auto vectors = ENTRY(QuarnMP_f08qkf_);
  balancing(suite, ENTRY(QuarnMP_f08nhf_), ENTRY(QuarnMPX_f08nhf_), ENTRY(QuarnMPX_dgebal_));
  hessenberg_qr(suite, qr, ENTRY(QuarnMP_dhseqr_), MASTER(QuarnMP_f08pef_ENTRY), ENTRY(QuarnMPX_f08pef_),
                ENTRY(QuarnMPX_dhseqr_));
  unbalanced_vectors(suite);
  double_shift_qr(suite, ENTRY(QuarnMP_f08pez_), ENTRY(QuarnMP_dlahqr_));
  eigenvectors(suite, qr, vectors, ENTRY(QuarnMP_dtrevc_), ENTRY(QuarnMPX_f08qkf_), ENTRY(QuarnMPX_dtrevc_));
  conditions(suite, qr, vectors, ENTRY(QuarnMP_f08qlf_), ENTRY(QuarnMP_dtrsna_), ENTRY(QuarnMPX_f08qlf_),
             ENTRY(QuarnMPX_dtrsna_));
  quartic(suite, ENTRY(QuarnMP_c02alf_), ENTRY(QuarnMPX_c02alf_));
}

}  // namespace digest
