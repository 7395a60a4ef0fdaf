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

}  // namespace

void spectra(Suite& suite) {
  tridiagonal<QuarnFloat>(suite, ENTRY(QuarnMPX_dsytrd_), ENTRY(QuarnMPX_dorgtr_), ENTRY(QuarnMPX_dsteqr_));
  tridiagonal<Complex>(suite, ENTRY(QuarnMPX_zhetrd_), ENTRY(QuarnMPX_zungtr_), ENTRY(QuarnMPX_zsteqr_));
  symmetric(suite);
}

}  // namespace digest
