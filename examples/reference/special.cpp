// Examples of the routine reference: gamma and error functions.
#include "examples/reference/run.h"
#include "tesk2mp/tesk2mp.h"

namespace {

void gamma_function() {
  //! [gamma]
  QuarnFloat half(5, -1), pole(-2);
  Integer ifail = 1;
  std::cout << QuarnMPX_gamma_(&half, &ifail) << " IFAIL " << ifail << "\n";
  ifail = -13;
  QuarnMPX_gamma_(&pole, &ifail);
  std::cout << "IFAIL " << ifail << "\n";
  //! [gamma]
}

void lgamma_function() {
  //! [lgamma]
  QuarnFloat x(1000);
  Integer ifail = -1;
  std::cout << QuarnMPX_lgamma_(&x, &ifail) << "\n";
  //! [lgamma]
}

void digamma_function() {
  //! [digamma]
  QuarnFloat x(1);
  Integer ifail = -1;
  std::cout << QuarnMPX_digamma_(&x, &ifail) << "\n";
  //! [digamma]
}

void beta_function() {
  //! [beta]
  QuarnFloat x(25, -1), y(3);
  Integer ifail = -1;
  std::cout << QuarnMPX_beta_(&x, &y, &ifail) << "\n";
  //! [beta]
}

void erfc_function() {
  //! [erfc]
  QuarnFloat x(10);
  Integer ifail = -1;
  std::cout << QuarnMPX_erfc_(&x, &ifail) << "\n";
  //! [erfc]
}

void erf_function() {
  //! [erf]
  QuarnFloat x(5, -1);
  std::cout << QuarnMPX_erf_(&x) << "\n";
  //! [erf]
}

}  // namespace

int main() {
  return run_examples({{"gamma", gamma_function},
                       {"lgamma", lgamma_function},
                       {"digamma", digamma_function},
                       {"beta", beta_function},
                       {"erfc", erfc_function},
                       {"erf", erf_function}});
}
