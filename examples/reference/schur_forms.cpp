// Examples of the routine reference: Schur forms.
#include "examples/reference/run.h"
#include "tesk2mp/tesk2mp.h"

namespace {

void dtrsyl() {
  //! [dtrsyl]
  const QuarnFloat a[] = {1, 0, 2, 3}, b[] = {4};  // (1, 2; 0, 3) X + X 4 = C
  QuarnFloat c[] = {12, 14}, scale;
  Integer info;
  QuarnMPX_dtrsyl_("N", "N", 1, 2, 1, a, 2, b, 1, c, 2, &scale, &info, 1, 1);
  std::cout << c[0] << " " << c[1] << "\n";
  //! [dtrsyl]
}

void dtrexc() {
  //! [dtrexc]
  QuarnFloat t[] = {1, 0, 0, 2};
  Integer ifst = 2, ilst = 1, info;
  QuarnMPX_dtrexc_("N", 2, t, 2, nullptr, 1, &ifst, &ilst, nullptr, &info, 1);
  std::cout << t[0] << " " << t[3] << "\n";
  //! [dtrexc]
}

void ztrexc() {
  //! [ztrexc]
  Complex t[] = {1, 0, 0, Complex(0, 2)};
  Integer info;
  QuarnMPX_ztrexc_("N", 2, t, 2, nullptr, 1, 2, 1, &info, 1);
  std::cout << t[0] << " " << t[3] << "\n";
  //! [ztrexc]
}

void dtrsen() {
  //! [dtrsen]
  QuarnFloat t[] = {4, 0, 0, -1}, wr[2], wi[2], s, sep;
  const Integer select[] = {0, 1};
  Integer m, info;
  QuarnMPX_dtrsen_("B", "N", select, 2, t, 2, nullptr, 1, wr, wi, &m, &s, &sep, nullptr, 0, nullptr, 0, &info, 1, 1);
  std::cout << wr[0] << " " << wr[1] << ", " << m << " selected, s " << s << ", sep " << sep << "\n";
  //! [dtrsen]
}

void ztrsen() {
  //! [ztrsen]
  Complex t[] = {4, 0, 0, Complex(4, 1)}, w[2];
  QuarnFloat s, sep;
  const Integer select[] = {0, 1};
  Integer m, info;
  QuarnMPX_ztrsen_("B", "N", select, 2, t, 2, nullptr, 1, w, &m, &s, &sep, nullptr, 0, &info, 1, 1);
  std::cout << w[0] << " " << w[1] << ", sep " << sep << "\n";
  //! [ztrsen]
}

}  // namespace

int main() {
  return run_examples(
      {{"dtrsyl", dtrsyl}, {"dtrexc", dtrexc}, {"ztrexc", ztrexc}, {"dtrsen", dtrsen}, {"ztrsen", ztrsen}});
}
