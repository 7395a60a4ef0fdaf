#include "tests/exports/digest/digest.h"

namespace digest {

namespace {

/// Every way of reporting that returns, in the classic and in the core form.
template <class Classic, class Core, class... A>
void both_forms(Suite& suite, Classic classic, Core core, const A&... arguments) {
  for (const Integer ifail : {1, -1, -13, 11}) {
    suite.run(classic, arguments..., ifail);
    suite.run(core, arguments..., std::vector<char>(200, '?'), ifail, 200);
  }
}

}  // namespace

void special(Suite& suite) {
  const auto gamma = ENTRY(QuarnMPX_gamma_);
  const auto gamma_core = ENTRY(QuarnMPX_gamman_);
  const auto lgamma = ENTRY(QuarnMPX_lgamma_);
  const auto lgamma_core = ENTRY(QuarnMPX_lgamman_);
  const auto digamma = ENTRY(QuarnMPX_digamma_);
  const auto digamma_core = ENTRY(QuarnMPX_digamman_);
  const auto beta = ENTRY(QuarnMPX_beta_);
  const auto beta_core = ENTRY(QuarnMPX_betan_);
  const auto erfc = ENTRY(QuarnMPX_erfc_);
  const auto erfc_core = ENTRY(QuarnMPX_erfcn_);
  const auto erf = ENTRY(QuarnMPX_erf_);
  const auto every = [&](const QuarnFloat& x) {
    both_forms(suite, gamma, gamma_core, x);
    both_forms(suite, lgamma, lgamma_core, x);
    both_forms(suite, digamma, digamma_core, x);
    both_forms(suite, beta, beta_core, x, QuarnFloat(25, -1));
    both_forms(suite, erfc, erfc_core, x);
    suite.run(erf, x);
  };
  suite.few_cases([&](Case& c) {
    for (const QuarnFloat& x : c.numbers<QuarnFloat>(3)) {
      every(x);
    }
    for (const char* text : {"0", "-3", "2e8", "-2e8", "1e999999999", "nan", "inf", "-inf", "5e4"}) {
      every(QuarnFloat(text));
    }
  });
}

}  // namespace digest
