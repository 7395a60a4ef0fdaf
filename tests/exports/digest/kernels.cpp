#include "tests/exports/digest/digest.h"

namespace digest {

namespace {

constexpr Integer kSteps[] = {1, 2, -1, -3};

Integer at_least_one(Integer n) { return n > 1 ? n : 1; }

std::int64_t reach(Integer n, Integer step) { return 1 + std::int64_t(at_least_one(n) - 1) * std::abs(step); }

/// An element that keeps triangular systems in bounds now and then.
template <class T>
std::vector<T> factor_or_not(Case& c) {
  return {c.below(3) == 0 ? T(0.0) : c.below(2) == 0 ? T(1.0) : c.number<T>()};
}

template <class T, class... E>
void matrix_vector(Suite& suite, E... entries) {
  suite.cases(2, [&](Case& c) {
    for (const char* trans : {"N", "t", "C"}) {
      const Integer m = c.size;
      const Integer n = at_least_one(c.size + c.below(3) - 1);
      const Integer lda = at_least_one(m) + c.below(2);
      const Integer incx = kSteps[c.below(4)];
      const Integer incy = kSteps[c.below(4)];
      const bool plain = *trans == 'N';
      const T alpha = factor_or_not<T>(c)[0];
      const T beta = factor_or_not<T>(c)[0];
      const auto a = c.numbers<T>(std::int64_t(lda) * n);
      const auto x = c.numbers<T>(reach(plain ? n : m, incx));
      const auto y = c.numbers<T>(reach(plain ? m : n, incy));
      (suite.run(entries, trans, m, n, alpha, a, lda, x, incx, beta, y, incy, 1), ...);
    }
  });
  suite.few_cases([&](Case& c) {
    const auto a = c.numbers<T>(16);
    const T one(1.0);
    const auto wrong = [&](const char* trans, Integer m, Integer n, Integer lda, Integer incx, Integer incy) {
      (suite.run_fatal(entries, trans, m, n, one, a, lda, a, incx, one, a, incy, 1), ...);
    };
    wrong("X", 2, 2, 2, 1, 1);
    wrong("N", -1, 2, 2, 1, 1);
    wrong("N", 2, -7, 2, 1, 1);
    wrong("N", 3, 2, 2, 1, 1);
    wrong("N", 2, 2, 2, 0, 1);
    wrong("N", 2, 2, 2, 1, 0);
  });
}

template <class T, class... E>
void triangular_vector(Suite& suite, E... entries) {
  suite.cases(2, [&](Case& c) {
    for (const char* uplo : {"U", "l"}) {
      for (const char* trans : {"n", "T", "C"}) {
        for (const char* diag : {"U", "n"}) {
          const Integer n = c.size;
          const Integer lda = at_least_one(n) + c.below(2);
          const Integer incx = kSteps[c.below(4)];
          const auto a = c.numbers<T>(std::int64_t(lda) * at_least_one(n));
          const auto x = c.numbers<T>(reach(n, incx));
          (suite.run(entries, uplo, trans, diag, n, a, lda, x, incx, 1, 1, 1), ...);
        }
      }
    }
  });
  suite.few_cases([&](Case& c) {
    const auto a = c.numbers<T>(16);
    const auto wrong = [&](const char* uplo, const char* trans, const char* diag, Integer n, Integer lda,
                           Integer incx) {
      (suite.run_fatal(entries, uplo, trans, diag, n, a, lda, a, incx, 1, 1, 1), ...);
    };
    wrong("X", "N", "N", 2, 2, 1);
    wrong("U", "X", "N", 2, 2, 1);
    wrong("U", "N", "X", 2, 2, 1);
    wrong("U", "N", "N", -1, 2, 1);
    wrong("U", "N", "N", 3, 2, 1);
    wrong("U", "N", "N", 2, 2, 0);
  });
}

template <class T, class... E>
void rank_one(Suite& suite, E... entries) {
  suite.cases(2, [&](Case& c) {
    const Integer m = c.size;
    const Integer n = at_least_one(c.size + c.below(3) - 1);
    const Integer lda = at_least_one(m) + c.below(2);
    const Integer incx = kSteps[c.below(4)];
    const Integer incy = kSteps[c.below(4)];
    const T alpha = factor_or_not<T>(c)[0];
    const auto x = c.numbers<T>(reach(m, incx));
    const auto y = c.numbers<T>(reach(n, incy));
    const auto a = c.numbers<T>(std::int64_t(lda) * n);
    (suite.run(entries, m, n, alpha, x, incx, y, incy, a, lda), ...);
  });
  suite.few_cases([&](Case& c) {
    const auto a = c.numbers<T>(16);
    const auto wrong = [&](Integer m, Integer n, Integer incx, Integer incy, Integer lda) {
      (suite.run_fatal(entries, m, n, T(1.0), a, incx, a, incy, a, lda), ...);
    };
    wrong(-1, 2, 1, 1, 2);
    wrong(2, -1, 1, 1, 2);
    wrong(2, 2, 0, 1, 2);
    wrong(2, 2, 1, 0, 2);
    wrong(3, 2, 1, 1, 2);
  });
}

template <class T, class... E>
void matrix_matrix(Suite& suite, E... entries) {
  suite.cases(3, [&](Case& c) {
    for (const char* transa : {"N", "t", "C"}) {
      for (const char* transb : {"n", "T", "c"}) {
        const Integer m = c.size;
        const Integer n = at_least_one(c.size + c.below(3) - 1);
        const Integer k = c.size + c.below(3);
        const Integer lda = at_least_one(*transa == 'N' ? m : k) + c.below(2);
        const Integer ldb = at_least_one(*transb == 'n' ? k : n) + c.below(2);
        const Integer ldc = at_least_one(m);
        const T alpha = factor_or_not<T>(c)[0];
        const T beta = factor_or_not<T>(c)[0];
        const auto a = c.numbers<T>(std::int64_t(lda) * (*transa == 'N' ? k : m));
        const auto b = c.numbers<T>(std::int64_t(ldb) * (*transb == 'n' ? n : k));
        const auto cc = c.numbers<T>(std::int64_t(ldc) * n);
        (suite.run(entries, transa, transb, m, n, k, alpha, a, lda, b, ldb, beta, cc, ldc, 1, 1), ...);
      }
    }
  });
  suite.few_cases([&](Case& c) {
    const auto a = c.numbers<T>(16);
    const auto wrong = [&](const char* transa, const char* transb, Integer m, Integer n, Integer k, Integer lda,
                           Integer ldb, Integer ldc) {
      (suite.run_fatal(entries, transa, transb, m, n, k, T(1.0), a, lda, a, ldb, T(1.0), a, ldc, 1, 1), ...);
    };
    wrong("X", "N", 2, 2, 2, 2, 2, 2);
    wrong("N", "X", 2, 2, 2, 2, 2, 2);
    wrong("N", "N", -1, 2, 2, 2, 2, 2);
    wrong("N", "N", 2, -1, 2, 2, 2, 2);
    wrong("N", "N", 2, 2, -1, 2, 2, 2);
    wrong("N", "N", 2, 2, 2, 1, 2, 2);
    wrong("N", "N", 2, 2, 2, 2, 1, 2);
    wrong("N", "N", 2, 2, 2, 2, 2, 1);
  });
}

template <class T, class... E>
void triangular_systems(Suite& suite, E... entries) {
  suite.cases(3, [&](Case& c) {
    for (int options = 0; options < 24; ++options) {
      const char* side = options % 2 == 0 ? "L" : "r";
      const char* uplo = options / 2 % 2 == 0 ? "U" : "l";
      const char* transa = options / 8 == 0 ? "N" : options / 8 == 1 ? "t" : "C";
      const char* diag = options / 4 % 2 == 0 ? "n" : "U";
      const Integer m = c.size;
      const Integer n = at_least_one(c.size + c.below(3) - 1);
      const Integer order = *side == 'L' ? m : n;
      const Integer lda = at_least_one(order) + c.below(2);
      const Integer ldb = at_least_one(m) + c.below(2);
      const T alpha = factor_or_not<T>(c)[0];
      const auto a = c.numbers<T>(std::int64_t(lda) * at_least_one(order));
      const auto b = c.numbers<T>(std::int64_t(ldb) * n);
      (suite.run(entries, side, uplo, transa, diag, m, n, alpha, a, lda, b, ldb, 1, 1, 1, 1), ...);
    }
  });
  suite.few_cases([&](Case& c) {
    const auto a = c.numbers<T>(16);
    const auto wrong = [&](const char* side, const char* uplo, const char* transa, const char* diag, Integer m,
                           Integer n, Integer lda, Integer ldb) {
      (suite.run_fatal(entries, side, uplo, transa, diag, m, n, T(1.0), a, lda, a, ldb, 1, 1, 1, 1), ...);
    };
    wrong("X", "U", "N", "N", 2, 2, 2, 2);
    wrong("L", "X", "N", "N", 2, 2, 2, 2);
    wrong("L", "U", "X", "N", 2, 2, 2, 2);
    wrong("L", "U", "N", "X", 2, 2, 2, 2);
    wrong("L", "U", "N", "N", -1, 2, 2, 2);
    wrong("L", "U", "N", "N", 2, -1, 2, 2);
    wrong("L", "U", "N", "N", 2, 2, 1, 2);
    wrong("L", "U", "N", "N", 2, 2, 2, 1);
  });
}

template <class T, class... E>
void hermitian_update(Suite& suite, E... entries) {
  suite.cases(3, [&](Case& c) {
    for (const char* uplo : {"U", "l"}) {
      for (const char* trans : {"N", "c"}) {
        const Integer n = c.size;
        const Integer k = c.size + c.below(2);
        const Integer lda = at_least_one(*trans == 'N' ? n : k) + c.below(2);
        const Integer ldc = at_least_one(n) + c.below(2);
        const auto alpha = factor_or_not<QuarnFloat>(c)[0];
        const auto beta = factor_or_not<QuarnFloat>(c)[0];
        const auto a = c.numbers<T>(std::int64_t(lda) * at_least_one(*trans == 'N' ? k : n));
        const auto cc = c.numbers<T>(std::int64_t(ldc) * at_least_one(n));
        (suite.run(entries, uplo, trans, n, k, alpha, a, lda, beta, cc, ldc, 1, 1), ...);
      }
    }
  });
  suite.few_cases([&](Case& c) {
    const auto a = c.numbers<T>(16);
    const auto wrong = [&](const char* uplo, const char* trans, Integer n, Integer k, Integer lda, Integer ldc) {
      (suite.run_fatal(entries, uplo, trans, n, k, QuarnFloat(1), a, lda, QuarnFloat(1), a, ldc, 1, 1), ...);
    };
    wrong("X", "N", 2, 2, 2, 2);
    if (!std::is_same_v<T, QuarnFloat>) {
      wrong("U", "T", 2, 2, 2, 2);
    }
    wrong("U", "N", -1, 2, 2, 2);
    wrong("U", "N", 2, -1, 2, 2);
    wrong("U", "N", 2, 2, 1, 2);
    wrong("U", "N", 2, 2, 2, 1);
  });
}

template <class T, class E1, class E2>
void norms(Suite& suite, E1 general, E2 hessenberg) {
  suite.cases(2, [&](Case& c) {
    for (const char* norm : {"M", "o", "1", "I", "F", "e", "X"}) {
      const Integer m = c.size;
      const Integer n = c.size + c.below(3) - 1;
      const Integer lda = at_least_one(m > n ? m : n);
      const auto a = c.numbers<T>(std::int64_t(lda) * lda);
      suite.run(general, norm, m, n, a, lda, Scratch<QuarnFloat>(std::size_t(lda)), 1);
      suite.run(hessenberg, norm, n, a, lda, Scratch<QuarnFloat>(std::size_t(lda)), 1);
    }
  });
}

void level1(Suite& suite) {
  const auto rotation = ENTRY(QuarnMP_f06aaf_);
  const auto scale = ENTRY(QuarnMP_f06caf_);
  const auto norm = ENTRY(QuarnMP_f06ejf_);
  const auto scaled = ENTRY(QuarnMP_f06fdf_);
  const auto scaled_complex = ENTRY(QuarnMP_f06hdf_);
  const auto copy = ENTRY(QuarnMP_f06jjf_);
  suite.cases(1.5, [&](Case& c) {
    const Integer n = c.size;
    const Integer incx = kSteps[c.below(4)];
    const Integer incy = kSteps[c.below(4)];
    const auto real = c.numbers<QuarnFloat>(reach(n, incx));
    const auto real_target = c.numbers<QuarnFloat>(reach(n, incy));
    const auto complex = c.numbers<Complex>(reach(n, incx));
    const auto complex_target = c.numbers<Complex>(reach(n, incy));
    const auto alpha = c.number<Complex>();
    suite.run(rotation, alpha.re, alpha.im, QuarnFloat(), QuarnFloat());
    suite.run(scale, n, alpha.re, complex, incx);
    suite.run(norm, n, real, incx);
    suite.run(scaled, n, alpha.re, real, incx, real_target, incy);
    suite.run(scaled_complex, n, alpha, complex, incx, complex_target, incy);
    suite.run(copy, n, complex, incx, complex_target, incy);
  });
}

}  // namespace

void kernels(Suite& suite) {
  level1(suite);
  matrix_vector<QuarnFloat>(suite, ENTRY(QuarnMP_f06paf_), ENTRY(QuarnMP_dgemv_), MASTER(QuarnMP_f06paf_ENTRY));
  matrix_vector<Complex>(suite, ENTRY(QuarnMP_f06saf_), ENTRY(QuarnMP_zgemv_), MASTER(QuarnMP_f06saf_ENTRY));
  triangular_vector<QuarnFloat>(suite, ENTRY(QuarnMP_f06pff_), ENTRY(QuarnMP_dtrmv_), MASTER(QuarnMP_f06pff_ENTRY));
  triangular_vector<QuarnFloat>(suite, ENTRY(QuarnMP_f06pjf_), ENTRY(QuarnMP_dtrsv_), MASTER(QuarnMP_f06pjf_ENTRY));
  triangular_vector<Complex>(suite, ENTRY(QuarnMP_f06sff_), ENTRY(QuarnMP_ztrmv_), MASTER(QuarnMP_f06sff_ENTRY));
  triangular_vector<Complex>(suite, ENTRY(QuarnMP_f06sjf_), ENTRY(QuarnMP_ztrsv_), MASTER(QuarnMP_f06sjf_ENTRY));
  rank_one<QuarnFloat>(suite, ENTRY(QuarnMP_f06pmf_), ENTRY(QuarnMP_dger_), MASTER(QuarnMP_f06pmf_ENTRY));
  rank_one<Complex>(suite, ENTRY(QuarnMP_f06smf_), ENTRY(QuarnMP_zgeru_), MASTER(QuarnMP_f06smf_ENTRY));
  rank_one<Complex>(suite, ENTRY(QuarnMP_f06snf_), ENTRY(QuarnMP_zgerc_), MASTER(QuarnMP_f06snf_ENTRY));
  matrix_matrix<QuarnFloat>(suite, ENTRY(QuarnMP_f06yaf_), ENTRY(QuarnMP_dgemm_), MASTER(QuarnMP_f06yaf_ENTRY));
  matrix_matrix<Complex>(suite, ENTRY(QuarnMP_f06zaf_), ENTRY(QuarnMP_zgemm_), MASTER(QuarnMP_f06zaf_ENTRY));
  triangular_systems<QuarnFloat>(suite, ENTRY(QuarnMP_f06yjf_), ENTRY(QuarnMP_dtrsm_), MASTER(QuarnMP_f06yjf_ENTRY));
  triangular_systems<Complex>(suite, ENTRY(QuarnMP_f06zjf_), ENTRY(QuarnMP_ztrsm_), MASTER(QuarnMP_f06zjf_ENTRY));
  hermitian_update<Complex>(suite, ENTRY(QuarnMP_f06zpf_), ENTRY(QuarnMP_zherk_), MASTER(QuarnMP_f06zpf_ENTRY));
  triangular_vector<QuarnFloat>(suite, ENTRY(QuarnMPX_f06pjf_), ENTRY(QuarnMPX_dtrsv_));
  triangular_vector<Complex>(suite, ENTRY(QuarnMPX_f06sjf_), ENTRY(QuarnMPX_ztrsv_));
  triangular_systems<QuarnFloat>(suite, ENTRY(QuarnMPX_f06yjf_), ENTRY(QuarnMPX_dtrsm_));
  triangular_systems<Complex>(suite, ENTRY(QuarnMPX_f06zjf_), ENTRY(QuarnMPX_ztrsm_));
  hermitian_update<Complex>(suite, ENTRY(QuarnMPX_f06zpf_), ENTRY(QuarnMPX_zherk_));
  hermitian_update<QuarnFloat>(suite, ENTRY(QuarnMPX_dsyrk_));
  matrix_vector<QuarnFloat>(suite, ENTRY(QuarnMPX_f06paf_), ENTRY(QuarnMPX_dgemv_));
  matrix_vector<Complex>(suite, ENTRY(QuarnMPX_f06saf_), ENTRY(QuarnMPX_zgemv_));
  matrix_matrix<QuarnFloat>(suite, ENTRY(QuarnMPX_f06yaf_), ENTRY(QuarnMPX_dgemm_));
  matrix_matrix<Complex>(suite, ENTRY(QuarnMPX_f06zaf_), ENTRY(QuarnMPX_zgemm_));
  norms<QuarnFloat>(suite, ENTRY(QuarnMP_f06raf_), ENTRY(QuarnMP_f06rmf_));
  norms<QuarnFloat>(suite, ENTRY(QuarnMPX_f06raf_), ENTRY(QuarnMPX_f06rmf_));
  norms<Complex>(suite, ENTRY(QuarnMP_f06uaf_), ENTRY(QuarnMP_f06umf_));
  norms<Complex>(suite, ENTRY(QuarnMPX_f06uaf_), ENTRY(QuarnMPX_f06umf_));
}

}  // namespace digest
